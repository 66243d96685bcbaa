// The closure: from the marked persons, everything else that the export takes with them —
// their events, places, images, documents, notes and addresses, and what those refer to in
// turn. It is no search for a fixed point but nine passes over the tables, each once, in a
// fixed order; a record marked after the pass of its table has run isn't followed further.
// That order is what an export contains.
#pragma once

#include "engine/record_id.h"

#include <string>

namespace folio {

// Runs the closure for the present selection of persons, unless it has run for it already
// (verknuepfungen_aktuell). Clears the marks of the six linked tables, runs the passes,
// switches the buttons of Coolbar_Datengrid(1) by what was marked, shows the events and,
// when couples' events were left out because a partner wasn't selected, tells the user
// once.
void verknuepfungen_markieren();

// Marks the targets of the general links (Quellen_DS) of one record, `Datensatz_art` being
// the letter of its table. Doesn't follow the targets further.
void quellen_markieren(RecordId datensatz, const std::string& Datensatz_art);

} // namespace folio
