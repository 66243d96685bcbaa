// Language texts. No user-visible word of the program is fixed in the code: a caption or a
// message is a key into the language database, a text that begins with a number ("485
// Meldung weiterhin anzeigen") or the number alone ("242"). Only the number counts; the
// words are the German text, left beside the number for the reader of the code.
#pragma once

#include <string>

namespace folio {

class Form;

// Opens the language database at `pfad` and its table "Languages" with the index Counter,
// and language2.mdb from the data folder where it exists. Raises, naming the file, where
// the database can't be opened.
void sprache_oeffnen(const std::string& pfad);
// Closes what sprache_oeffnen opened.
void sprache_schliessen();

// The text of a key in the language `Sprache`, else in "Deutsch"; "??n??" where both are
// empty, "???" where the number has no row, "" for a key without a number or a text "XXX".
// The placeholders #PROGNAME#, #APPNAME#, #APPPATH#, #DATENPATH#, #MAINPATH# and
// #SUPPORTEMAIL# are filled in.
std::string sprachtext(const std::string& schluessel);

// Translates the captions, tooltips and item texts of a form and its controls, control by
// control according to its class. Runs once per load of a form.
void formular_uebersetzen(Form& form);

} // namespace folio
