// Person records: one INDI record for each marked person, with the privacy rules for living
// persons.
#pragma once

namespace folio {

class Exportlauf;
class Familientabelle;

// The stage of the persons: every marked person in the order of the query, with progress.
void personen_schreiben(Exportlauf& lauf, const Familientabelle& familien);

} // namespace folio
