// Places and addresses as nested structures: the PLAC line of a place with what hangs under
// it, and the ADDR block of an address. Both stay silent for a record that isn't marked.
#pragma once

#include "engine/record_id.h"

#include <cstdint>

namespace folio {

class Exportlauf;

void ortschreiben(Exportlauf& lauf, std::int16_t nr, RecordId datensatz);
void Adresseschreiben(Exportlauf& lauf, std::int16_t nr, RecordId datensatz);

} // namespace folio
