// Opening a family tree: the one road to a database. It deals with write-protected files,
// the old extensions .SF and .SF5 (upgraded on a copy, the old file stays beside it),
// missing files (the sample database instead, made from the template where needed), opens
// the tree with its side databases and cursors, and has it brought to the current version.
#pragma once

#include <string>

namespace folio {

enum class Geoeffnet {
    Ja,           // DB and its cursors are open; pfad and datei name what was opened
    Nein,         // nothing is open: the sample database was write-protected, or the
                  // file couldn't be opened as a database (the user has been told)
    ProgrammEnde, // the sample database is write-protected and `beenden` asked to end
};

// Opens `pfad` + "/" + `datei`. Both may change and name what was really opened. With
// `beenden` True the program is to end when even the sample database is write-protected;
// with `ohne_aktualisierung` True the upgrade chain isn't run (the chain itself opens the
// file again so between its steps). While this runs, Programmpfad must name the host's
// folder, where the template SF.MDB and the sample database lie.
Geoeffnet datenbank_oeffnen(std::string& pfad, std::string& datei, bool beenden,
                            bool ohne_aktualisierung);

// The message of a write-protected file, as the opening shows it.
std::string schreibschutz_meldung(const std::string& datei_mit_pfad, bool beenden, bool beispiel);

// The repair step of an upgrade. Only the host's own build repairs; this program leaves
// the file as it is.
void datenbank_reparieren(const std::string& pfad, const std::string& datei);

// The sample database's name.
inline constexpr const char* Beispieldatenbank = "Beispiel.SF6";

} // namespace folio
