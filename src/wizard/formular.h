// The wizard form as a whole: its load behind the splash form, its unload, the buttons of the
// wizard frame (Help, Finish, Cancel), the page change, and the text boxes of the folders and
// the file name.
#pragma once

namespace folio {

class StartForm;

// Loads the form while the splash form `start` shows the progress: settings, captions, the
// version, the side picture, the lists, the date modifiers, the database proposed and
// opened, the target, the pictures, and the window's place.
void Form_Load(StartForm& start);

// Puts back the persons' marks as they were when the database was opened. Nothing else: no
// setting is written, and the database stays open.
void Form_Unload();

// The change event of the text box Verzeichnis(index).
void verzeichnis_geaendert(int index);

// The wizard's buttons. Help shows the help page of the user's language; Finish starts the
// export as the button Exportstarten does; Cancel ends the form, and while an export runs it
// asks first and then stops the run. Cancel returns whether the form may close now.
void hilfe_geklickt();
void beenden_geklickt();
bool abbrechen_geklickt();

} // namespace folio
