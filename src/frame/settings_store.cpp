#include "frame/settings_store.h"

#include "frame/globals.h"
#include "frame/ini.h"

#include <cstdlib>
#include <filesystem>

namespace folio {

std::string einstellungen_datei(const std::string& anwendung) {
    std::string folder;
    if (const char* config = std::getenv("XDG_CONFIG_HOME"); config && *config)
        folder = config;
    else if (const char* home = std::getenv("HOME"); home && *home)
        folder = pfad_verbinden(home, ".config");
    else
        folder = ".";
    return pfad_verbinden(pfad_verbinden(folder, anwendung), "settings.ini");
}

std::string einstellung_lesen(const std::string& anwendung, const std::string& sektion,
                              const std::string& schluessel, const std::string& standard) {
    return ini_lesen(einstellungen_datei(anwendung), sektion, schluessel, standard);
}

void einstellung_schreiben(const std::string& anwendung, const std::string& sektion,
                           const std::string& schluessel, const std::string& wert) {
    const std::string file = einstellungen_datei(anwendung);
    std::error_code ec;
    std::filesystem::create_directories(std::filesystem::path(file).parent_path(), ec);
    ini_schreiben(file, sektion, schluessel, wert);
}

} // namespace folio
