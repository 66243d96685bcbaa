// The marks of the export. A record belongs to the export when its field Markierung is
// True; nothing else holds the selection. The family tree is shared with the host program,
// which gives Markierung a meaning of its own, so the persons' marks are saved in Marker
// when a database is opened here and put back when this program leaves it.
#pragma once

#include <string_view>

namespace folio {

// Saves the persons' marks into Marker: 1 for marked, 0 for not marked.
void markierungen_sichern();

// Puts the marks of the seven marked tables back from Marker. Never fails: a statement
// that fails (no database open, a table missing) is passed over.
void markierungen_zurueckholen();

} // namespace folio
