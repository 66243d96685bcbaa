// Small procedures for forms and files, used all over the program.
#pragma once

#include <string>

namespace folio {

class Form;

// Hourglass, and the form in the middle of the screen.
void fenster_zentrieren(Form& form);
// Mode -1 puts the form on top of all windows, 0 releases it, 1 leaves its place; with
// `aktivieren` False the window isn't activated. False where the call fails or the mode is
// another.
bool fenster_vordergrund(Form& form, int modus, bool aktivieren);
// The size of a file in bytes; 0 for an empty path or where the size can't be read.
double datei_groesse(const std::string& pfad);
// True where the file can't be written: it is write-protected or doesn't exist.
bool schreibgeschuetzt(const std::string& pfad);

} // namespace folio
