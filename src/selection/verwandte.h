// Selecting relatives: a changed tick in the person grid brings along the ancestors, the
// descendants and the spouses of that person, as the switches "Vorfahren", "Nachfahren" and
// "Ehepartner" of Coolbar_Datengrid(0) say. All persons reached take the new state of the
// tick, set or cleared.
#pragma once

#include "engine/record_id.h"

#include <functional>

namespace folio {

// Which relatives come along: the switches "Vorfahren", "Nachfahren", "Ehepartner" and
// "Lebend" of the person grid's tool bar.
struct Verwandtenwahl {
    bool vorfahren = false;
    bool nachfahren = false;
    bool ehepartner = false;
    bool ohne_lebende = false; // the living lose their marks afterwards
};

// Gives `person` (whose own mark the grid has written) and the relatives that `wahl` asks
// for the state `markierung`, in one transaction. `nach_vorfahren` runs once the ancestors
// are marked, before the descendants are looked for (the grid shows them meanwhile).
void verwandte_markieren(RecordId person, bool markierung, const Verwandtenwahl& wahl,
                         const std::function<void()>& nach_vorfahren = nullptr);

// Generations: a person is followed to its parents below generation 99, to its children
// below 100, counting the ticked person as 1.
inline constexpr int VorfahrenGrenze = 99;
inline constexpr int NachfahrenGrenze = 100;

} // namespace folio
