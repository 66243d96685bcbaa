// The export run behind the button Exportstarten: the question before overwriting, the
// remembered target, the header and submitter, the record classes in their order with
// their progress, and the trailer.
#pragma once

#include <cstdint>

namespace folio {

enum class ExportErgebnis {
    Fertig,      // the file is written
    Abgebrochen, // the user didn't want to overwrite the target
    Fehler,      // the run failed; the message has been shown, the old target is unchanged
};

// Runs the export with the options that stand in the controls of Auswahl. The database and
// its long-lived cursors must be open.
ExportErgebnis Exportstarten();

// Sets Fortschritt to count / total x span + base, rounded half to even.
void fortschritt_setzen(std::int64_t anzahl, std::int64_t gesamt, double basis, double spanne);

} // namespace folio
