// What the wizard's pages do when they are entered and left: the check of the selection on
// the page of the persons, the closure on the page of the linked records, the author and
// the note on the fourth page, and the summary on the last.
#pragma once

#include "database/markenstand.h"

namespace folio {

// The page change event, with the pages numbered from 1.
void seite_gewechselt(int verlassen, int betreten);

// Whether any person is marked (or selected by `personen`); enables or disables the wizard's
// Next button by it.
bool personen_gewaehlt(const Personenwahl& personen = {});

// Page 4: the author's boxes and the note from the first record of Version; the boxes can
// be changed only in the user's own database (its guid_anwender is the user's key).
void verfasser_laden();
// Leaving page 4: the boxes and the note go back to Version.
void verfasser_speichern();

// Page 5: DBGrid(1) emptied and filled with the counts of the marked records, the author,
// the note, the privacy options and the character set.
// `marken` and `personen`: the marks of the linked tables and the persons where a run keeps
// them itself (the command line); else the tree's marks are counted.
void zusammenfassung_fuellen(const Markenstand* marken = nullptr,
                             const Personenwahl& personen = {});

} // namespace folio
