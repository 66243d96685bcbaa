// What every connection of the system gets before it is used: text compared and sorted
// without regard to case and by German rules (in place of SQLite's ASCII-only NOCASE), the
// LIKE of the family-tree files, and the settings for speed and safety.
#pragma once

#include "database/sqlite_handle.h"

namespace folio {

void setUpConnection(sqlite::Connection& connection);
// Compares two texts as the connection's NOCASE does: <0, 0, >0.
int compareNoCase(std::string_view a, std::string_view b);

} // namespace folio
