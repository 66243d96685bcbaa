// Start-up: which edition of the host this runs beside, the three folders that everything
// else works with, the splash form, the language texts; and the progress form of upgrades.
#pragma once

#include "frame/form.h"

#include <string>

namespace folio {

// The user's documents folder: $XDG_DOCUMENTS_DIR, else ~/Documents.
std::string eigene_dateien_pfad();

// The splash form: `Bild`, `Titel(0)` and `Titel(1)` (text and shadow), `Fortschritt`,
// `Shape1`.
class StartForm : public Form {
public:
    StartForm();
    // Hourglass, and the picture bmp/prog/add-in start.gif of the host's folder where it
    // exists.
    void laden();
};

// The progress form of an upgrade: `Info`, `Update` (a bar), `WaitBar`. It comes up at the
// first touch of one of its controls.
class FortschrittForm : public Form {
public:
    FortschrittForm();
    // The control, after loading the form if it isn't loaded.
    Control& steuerelement(std::string_view name);
    bool geladen() const { return geladen_; }
    void entladen();
    // A key pressed on the form; Escape (27) sets `abbrechen`.
    void taste(int code);
    bool abbrechen = false;

private:
    void laden();
    bool geladen_ = false;
};

FortschrittForm& Fortschrittfrm();

// What start-up settled, for the caller that goes on to the wizard or the command line.
struct StartErgebnis {
    bool ok = false;
    std::string fehler; // the message shown where start-up failed
};

// Runs start-up: the edition from the settings store, Programmpfad (given, else the folder
// of the running program), Stammpfad, Datenpfad (the edition's folder in the documents, or
// the first entry of datenpfad.ini in Stammpfad where it names an existing folder; a
// relative entry counts from Stammpfad; a data folder that doesn't exist yet is made from
// the folder Daten beside Stammpfad, where an installation ships one), the splash form,
// Sprache and Kurzhilfe from programm.ini (with none stored, the locale's), and the
// language texts. A data folder without a usable language.mdb ends with a message that
// names the folder.
StartErgebnis programm_starten(StartForm& start, const std::string& programmpfad = "");

// The language of the user's locale (LC_ALL, LC_MESSAGES, LANG, the first that is set):
// "Deutsch" for German ("de..."), "English" otherwise.
std::string sprache_des_gebietsschemas();

// The first comma- or line-delimited entry of a file (quotes around it removed); "" where
// the file can't be read.
std::string erster_eintrag(const std::string& datei);

} // namespace folio
