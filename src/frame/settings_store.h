// The per-user settings store of the host family: values by application, section and key,
// kept in an ini file in the user's configuration folder ($XDG_CONFIG_HOME, else
// ~/.config), one file per application.
#pragma once

#include <string>

namespace folio {

// The file that holds the settings of `anwendung`.
std::string einstellungen_datei(const std::string& anwendung);
std::string einstellung_lesen(const std::string& anwendung, const std::string& sektion,
                              const std::string& schluessel, const std::string& standard = "");
void einstellung_schreiben(const std::string& anwendung, const std::string& sektion,
                           const std::string& schluessel, const std::string& wert);

// The application under which the host keeps its settings.
inline constexpr const char* HostAnwendung = "Sippenkunde";

} // namespace folio
