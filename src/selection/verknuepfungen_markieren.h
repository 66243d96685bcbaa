// The closure: from the marked persons, everything else that the export takes with them —
// their events, places, images, documents, notes and addresses, and what those refer to in
// turn. It is no search for a fixed point but nine passes over the tables, each once, in a
// fixed order; a record marked after the pass of its table has run isn't followed further.
// That order is what an export contains.
#pragma once

#include "engine/record_id.h"

#include <string>

namespace folio {

// What the closure found: which of the six tables it marked records in, and whether a
// couple's event was left out because one of the partners isn't selected.
struct Huelle {
    bool hat_ereignisse = false, hat_orte = false, hat_notizen = false, hat_dokumente = false,
         hat_bilder = false, hat_adressen = false;
    bool partner_fehlt = false;
};

// Where the closure reports how far it is: its bar over the marked persons, and points where
// pending events may run.
class Huellenanzeige {
public:
    virtual ~Huellenanzeige() = default;
    virtual void balken(long long wert, long long maximum) = 0;
    virtual void ereignisse() = 0;
};

// Runs the closure for the present selection of persons, in one transaction: clears the
// marks of the six linked tables and runs the passes.
Huelle huelle_bilden(Huellenanzeige& anzeige);

// Marks the targets of the general links (Quellen_DS) of one record, `Datensatz_art` being
// the letter of its table. Doesn't follow the targets further.
void quellen_markieren(Huelle& h, RecordId datensatz, const std::string& Datensatz_art);

} // namespace folio
