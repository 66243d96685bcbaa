// Pointer lines to top-level media, notes and sources, the walk over the general links of a
// record, and the change stamp. A pointer is written only where its target exists and is
// marked, so that every pointer has its record in the same file.
#pragma once

#include "engine/record_id.h"
#include "engine/value.h"

#include <cstdint>
#include <string>

namespace folio {

class Exportlauf;

void Bildverknuepfungschreiben(Exportlauf& lauf, std::int16_t nr, RecordId datensatz);
void Notizverknuepfungschreiben(Exportlauf& lauf, std::int16_t nr, RecordId datensatz);
void Dokumentverknuepfungschreiben(Exportlauf& lauf, std::int16_t nr, RecordId datensatz);
// One structure per link of the record in Quellen_DS: addresses inline, pointers to media,
// notes and sources, places as PLAC.
void Quellenschreiben(Exportlauf& lauf, std::int16_t nr, RecordId datensatz,
                      const std::string& Datensatzart);
// The CHAN structure of a change stamp, where the wizard asks for change stamps; nothing for
// a record without a stamp (Null).
void Chanschreiben(Exportlauf& lauf, std::int16_t nr, const Value& Datum);

} // namespace folio
