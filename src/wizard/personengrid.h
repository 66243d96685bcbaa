// The person grid, Datengrid(0), as far as the selection needs it without a window: a tick
// set or cleared in its column Markierung.
#pragma once

#include "engine/record_id.h"

#include <string_view>

namespace folio {

// The cell changed event of the grid `grid`. `counter` and `markierung` are the cells
// Counter and Markierung of the changed row; the grid has written the tick itself. For
// the person grid (0) the walks of the relatives run as the switches of its tool bar say,
// the living lose their marks while "Lebend" is pressed, and the closure becomes stale; any
// grid then has the person grid refreshed.
void markierung_geaendert(int grid, RecordId counter, bool markierung);

enum class Haken {
    Gesetzt,    // the mark is written and the walks have run
    Verweigert, // a living person while "Lebend" is pressed: the grid refuses the edit
    Unbekannt,  // no person of that number
};

// Ticks (or unticks) a person as the grid does: the edit permission, the write of the
// mark, the end of the edit (Next by whether any person is marked), and then the walks of
// the relatives as the switches say.
Haken haken_setzen(RecordId person, bool stand);

// A command of the menu "Markieren" of the tool bar Coolbar_Datengrid(coolbar):
// "Auswählen" marks every person, "Abwählen" none, "Alle_gezeigten" adds the persons
// that were marked when the database was opened. Any command makes the closure stale.
void markieren_befehl(int coolbar, std::string_view key);

// What the grid does, while "Lebend" is pressed, as soon as it shows a living person: every
// living person loses the mark.
void lebende_abwaehlen();

} // namespace folio
