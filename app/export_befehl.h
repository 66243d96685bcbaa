// The command "export" of folioexport-cli: the wizard's whole way without a window, from
// the database to the GEDCOM file.
#pragma once

#include "engine/record_id.h"

#include <optional>
#include <string>
#include <vector>

namespace folio::cli {

// Exit status of the program, one for each way it can end.
enum Ausgang {
    Fertig = 0,
    ExportFehlgeschlagen = 1,
    FalscherAufruf = 2,
    StartFehlgeschlagen = 3,
    DatenbankFehlt = 4,
    KeineStammbaumDatenbank = 5,
    KeinePersonGewaehlt = 6,
    ZielVorhanden = 7,
    ZielNichtBeschreibbar = 8,
    PersonUnbekannt = 9,
    // 10 is no longer used: a write-protected tree is exported from a private copy.
    DatenbankInBenutzung = 11,
    UnbekannteVersion = 12,
    // A run stopped by a signal ends with 128 + the signal's number (130, 143).
};

enum class Auswahlart { Markierte, Alle, Personen };

struct ExportOptionen {
    std::string datenbank;
    std::string ziel;
    Auswahlart auswahl = Auswahlart::Markierte;
    std::vector<RecordId> personen;
    bool vorfahren = false, nachfahren = false, ehepartner = false, ohne_lebende = false;
    bool ansi = false;
    bool datenschutz[4] = {true, true, true, true};
    bool nur_55 = false;
    bool aenderungsdatum = false;
    std::optional<std::string> anmerkung;
    bool ueberschreiben = false;
    // How long to wait for a tree that another program holds, in seconds.
    int warten = 30;
};

// Reads the arguments behind "export"; on a mistake, returns nothing and says in `fehler`
// what is wrong.
std::optional<ExportOptionen> optionen_lesen(const std::vector<std::string>& argumente,
                                             std::string& fehler);

// Runs the export and returns the exit status. Messages go to the platform (the terminal),
// the summary of the selection to standard output. A stop asked for by a signal raises
// Abbruch once the tree and the target are as they were.
Ausgang exportieren(const ExportOptionen& optionen);

} // namespace folio::cli
