// What every connection of the system gets before it is used: text compared and sorted
// without regard to case and by German rules (in place of SQLite's ASCII-only NOCASE), the
// LIKE of the family-tree files, and the settings for speed and safety.
#pragma once

#include "engine/sqlite_handle.h"

#include <chrono>
#include <functional>
#include <string>

namespace folio {

void setUpConnection(sqlite::Connection& connection);

// How long a connection opened from now on waits for a file that another program holds
// locked, before the statement fails as "in use"; and whom it tells, once per wait, which
// file it waits for (nobody by default). A stop asked for ends the wait at once.
void wartezeit_setzen(std::chrono::milliseconds hoechstens,
                      std::function<void(const std::string& datei)> ansage = nullptr);
// Compares two texts as the connection's NOCASE does: <0, 0, >0.
int compareNoCase(std::string_view a, std::string_view b);
// The key under which `text` sorts as the connection's NOCASE sorts it: two keys compared
// byte by byte order their texts as compareNoCase does. Meant for sorting many texts at once.
void sortierschluessel(std::string_view text, std::string& schluessel);

} // namespace folio
