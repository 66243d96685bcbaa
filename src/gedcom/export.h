// The export run behind the button Exportstarten: the question before overwriting, the
// remembered target, the header and submitter, the record classes in their order with
// their progress, and the trailer.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace folio {

enum class ExportErgebnis {
    Fertig,      // the file is written
    Abgebrochen, // the user didn't want to overwrite the target
    Fehler,      // the run failed; the message has been shown, the old target is unchanged
};

// Runs the export with the options that stand in the controls of Auswahl. The database and
// its long-lived cursors must be open.
ExportErgebnis Exportstarten();

// The run itself, into exactly the file `ziel`: without the question before overwriting
// and without remembering the target, which the caller settles. Replaces `ziel` only when
// the file is complete.
ExportErgebnis export_ausfuehren(const std::string& ziel);

namespace dao {
class Recordset;
}

// Every row of a stage's query, counted from 1, with the progress set before each row is
// written. The total is the record count after a move to the last row; an empty result is
// left alone and writes nothing.
void zeilen_durchlaufen(const std::string& sql, double basis, double spanne,
                        const std::function<void(dao::Recordset&)>& schreiben);

// Sets Fortschritt to count / total x span + base, rounded half to even.
void fortschritt_setzen(std::int64_t anzahl, std::int64_t gesamt, double basis, double spanne);

} // namespace folio
