// What a family-tree file says of its version, read before anything opens it for work, so
// that a file which this program doesn't know is refused before a byte of it changes.
#pragma once

#include "engine/errors.h"

#include <string>

namespace folio {

enum class Versionsart {
    Aktuell,   // the version of this program: nothing to upgrade
    Aelter,    // an older version, or the old schema without a version name: to upgrade
    Neuer,     // a version newer than the newest that the upgrade chain knows
    Unbekannt, // a version name that is no version at all
};

struct Dateiversion {
    std::string name; // Versionname of the file, trimmed
    Versionsart art = Versionsart::Unbekannt;
};

// Reads the version of a file without changing it. Raises a DatabaseError where the file is
// no database, has no table Version or no row in it, or is locked by another program.
Dateiversion dateiversion_lesen(const std::string& pfad);

// The error of a file whose table Version has no row: every file has one, so the file is
// damaged, and its version can't be told. The upgrade chain would take it for the oldest
// schema and rebuild it by guess.
DatabaseError ohne_versionszeile(const std::string& pfad);

// The kind of a version name: its numbers compared one by one with the current version.
Versionsart versionsart(const std::string& versionname);

} // namespace folio
