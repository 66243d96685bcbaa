// The start of an export from the wizard's last page: the question before overwriting, the
// remembered target, the options read from the form's controls when the run starts, the
// progress shown on the form, and the message at the end.
#pragma once

#include "gedcom/exportlauf.h"

#include <chrono>
#include <string>

namespace folio {

class AuswahlForm;

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
// the file is complete. A stop asked for raises Abbruch.
ExportErgebnis export_ausfuehren(const std::string& ziel);

// A run's progress on the form: the text in Fortschritttext, the value in Fortschritt, and
// the platform's event loop.
class Formularanzeige : public Fortschrittsanzeige {
public:
    explicit Formularanzeige(AuswahlForm& form) : form_(form) {}
    void text(const std::string& text, bool anhaengen) override;
    void wert(long long wert) override;
    void ereignisse() override;

private:
    AuswahlForm& form_;
    std::chrono::steady_clock::time_point zuletzt_; // the event loop last ran
};

// What the controls of the form tell a run: the character set, the privacy boxes, strict
// 5.5, change stamps, the database's name, the author, the note, and the form's table of
// date modifiers.
Exportoptionen exportoptionen_aus_formular(AuswahlForm& form);

} // namespace folio
