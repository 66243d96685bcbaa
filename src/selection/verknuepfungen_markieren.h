// The closure: from the marked persons, everything else that the export takes with them —
// their events, places, images, documents, notes and addresses, and what those refer to in
// turn. It is no search for a fixed point but nine passes over the tables, each once, in a
// fixed order; a record marked after the pass of its table has run isn't followed further.
// That order is what an export contains.
#pragma once

#include "database/markenstand.h"
#include "engine/record_id.h"

#include <string>

namespace folio {

// What the closure found: which of the six tables it marked records in, and whether a
// couple's event was left out because one of the partners isn't selected; and the marks
// themselves.
struct Huelle {
    bool hat_ereignisse = false, hat_orte = false, hat_notizen = false, hat_dokumente = false,
         hat_bilder = false, hat_adressen = false;
    bool partner_fehlt = false;
    Markenstand marken;
};

// Where the closure reports how far it is: its bar over the marked persons, and points where
// pending events may run.
class Huellenanzeige {
public:
    virtual ~Huellenanzeige() = default;
    virtual void balken(long long wert, long long maximum) = 0;
    virtual void ereignisse() = 0;
};

// Computes the closure for the present selection of persons (the marks of Daten, or the
// run's own selection `personen`) in memory: each table and link table is read once, the passes run
// over the numbers, and the tree is left as it is. The marks of the six linked tables before don't
// count.
Huelle huelle_berechnen(Huellenanzeige& anzeige, const Personenwahl& personen = {});

// Runs the closure and writes its marks into the tree, in one transaction: every record of
// the six linked tables ends marked or not as the passes leave it.
Huelle huelle_bilden(Huellenanzeige& anzeige);

// Marks the targets of the general links (Quellen_DS) of one record, `Datensatz_art` being
// the letter of its table. Doesn't follow the targets further.
void quellen_markieren(Huelle& h, RecordId datensatz, const std::string& Datensatz_art);

} // namespace folio
