// Selecting relatives: a changed tick in the person grid brings along the ancestors, the
// descendants and the spouses of that person, as the switches "Vorfahren", "Nachfahren" and
// "Ehepartner" of Coolbar_Datengrid(0) say. All persons reached take the new state of the
// tick, set or cleared.
#pragma once

#include "engine/record_id.h"

namespace folio {

// The cell changed event of the grid `grid`. `counter` and `markierung` are the cells
// Counter and Markierung of the changed row; the grid has written the tick itself. For
// the person grid (0) the walks run, the living lose their marks while "Lebend" is pressed,
// and the closure becomes stale; any grid then has the person grid refreshed.
void markierung_geaendert(int grid, RecordId counter, bool markierung);

// Generations: a person is followed to its parents below generation 99, to its children
// below 100, counting the ticked person as 1.
inline constexpr int VorfahrenGrenze = 99;
inline constexpr int NachfahrenGrenze = 100;

} // namespace folio
