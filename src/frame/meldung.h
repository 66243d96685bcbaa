// Messages to the user and questions: every one goes through meldung, which can show a
// check box "485 Meldung weiterhin anzeigen" and remembers its state in programm.ini.
#pragma once

#include <string>

namespace folio {

class Form;

// Message styles.
inline constexpr int StilFehler = 16;
inline constexpr int StilWarnung = 48;
inline constexpr int StilInfo = 64;
inline constexpr int StilInfoBeispiel = 71; // with the number 10 in the ninth place

// Shows a message box and returns the button pressed. Where `ini_schluessel` isn't empty,
// the state of the check box is written under that key in section Msgboxen of programm.ini.
int meldung(const std::string& text, int stil = 0, const std::string& titel = "",
            int reserviert1 = 0, int reserviert2 = 0, bool mit_checkbox = false,
            const std::string& checkbox_text = "", int checkbox_wert = -2, int nummer = 0,
            Form* besitzer = nullptr, const std::string& ini_schluessel = "");

// A message that the user can silence: shown only while the key of section Msgboxen of
// programm.ini is 1 (the default), with the check box "485 Meldung weiterhin anzeigen".
// Returns the button pressed, or 0 when the message is silenced.
int meldung_abschaltbar(const std::string& text, int stil, const std::string& titel,
                        const std::string& ini_schluessel, int nummer = 0);

} // namespace folio
