// Dates: the DATE line of an event or a source, the GEDCOM text of a date, and the table of
// date modifiers from geddate.ini.
#pragma once

#include "engine/date_time.h"

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace folio {

namespace dao {
class Recordset;
}
class Exportlauf;

// Reads geddate.ini from the program's folder: the table of date modifiers, one row per
// line, split at the first tab (the text for the DATE line, then the qualifier of the
// database), nothing trimmed. A missing file gives an empty table.
std::vector<std::pair<std::string, std::string>> gedcom_zusaetze_laden();

// Writes the DATE line of the record on which `rs` stands, from `ca`, `vtag`, `vmonat` and
// `vjahr`, with the run's modifier table; nothing where no part of the date is known.
void datumschreiben(Exportlauf& lauf, std::int16_t nr, dao::Recordset& rs);
// The same from the values of those fields.
void datumschreiben(Exportlauf& lauf, std::int16_t nr, const std::string& ca, std::int64_t vtag,
                    std::int64_t vmonat, std::int64_t vjahr);

// A date as GEDCOM text: "DD MMM YYYY", "MMM YYYY", "YYYY" or "DD MM YYYY" with the English
// month names of GEDCOM for the languages "GB", "UK" and "E".
std::string gedcom_datum(DateTime datum, const std::string& format, const std::string& sprache);

// A date built from its parts as the host builds it: carrying days and months, and a year
// below 100 read as a two-digit year (0 to 29 the 2000s, 30 to 99 the 1900s).
DateTime datum_aus_zahlen(int jahr, int monat, int tag);

} // namespace folio
