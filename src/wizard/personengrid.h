// The person grid, Datengrid(0), as far as the selection needs it without a window: a tick
// set or cleared in its column Markierung.
#pragma once

#include "engine/record_id.h"

namespace folio {

enum class Haken {
    Gesetzt,    // the mark is written and the walks have run
    Verweigert, // a living person while "Lebend" is pressed: the grid refuses the edit
    Unbekannt,  // no person of that number
};

// Ticks (or unticks) a person as the grid does: the edit permission, the write of the
// mark, the end of the edit (Next by whether any person is marked), and then the walks of
// the relatives as the switches say.
Haken haken_setzen(RecordId person, bool stand);

// What the grid does, while "Lebend" is pressed, as soon as it shows a living person: every
// living person loses the mark.
void lebende_abwaehlen();

} // namespace folio
