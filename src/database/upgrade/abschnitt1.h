// The first section of the chain, for files from before version 5.0.190 and files without
// a version name: the steps recognised by a missing field, the migration of the old
// schema, the later fields, and the cleaning of Null fields and of the year 4000.
#pragma once

#include <functional>
#include <string>

namespace folio::upgrade {

class Lauf;

// Steps 1 to 26, the migration (27) and steps 28 to 43 with the cleaning.
void abschnitt1(Lauf& lauf, bool ohne_komprimieren);

// Step 27: the migration of a file of the old schema to version 5.
void migration(Lauf& lauf, bool ohne_komprimieren);

// Null fields of the current schema get a value: 0, one blank, or the empty text.
void nullfelder_fuellen(const std::function<void(const std::string&)>& ausfuehren);
// The year 4000, the old mark of an unknown date, becomes 0 in the dates of events and
// of birth and death.
void jahr_4000_loeschen(const std::function<void(const std::string&)>& ausfuehren);

// Where a type of Ereignisdb marks its cause as a tag differently from the catalogue, the
// catalogue's value is taken over.
void causastag_uebernehmen();

} // namespace folio::upgrade
