#include "gedcom/verknuepfungen.h"

#include "database/tabellen.h"
#include "gedcom/datum.h"
#include "gedcom/nachschlagen.h"
#include "gedcom/orte.h"
#include "gedcom/zeilen.h"
#include "wizard/auswahl.h"

namespace folio {

namespace {

void zeiger(std::int16_t nr, RecordId datensatz, dao::Recordset& rs, const char* tag,
            const char* praefix) {
    if (datensatz.isZero())
        return;
    if (const std::string* counter = markiert_nachschlagen(rs, datensatz))
        zeile(nr, std::string(tag) + " @" + praefix + *counter + "@");
}

std::string zwei(int n) {
    return (n < 10 ? "0" : "") + std::to_string(n);
}

} // namespace

void Bildverknuepfungschreiben(std::int16_t nr, RecordId datensatz) {
    zeiger(nr, datensatz, *rs_Bilder, "OBJE", "B");
}

void Notizverknuepfungschreiben(std::int16_t nr, RecordId datensatz) {
    zeiger(nr, datensatz, *rs_Notiz, "NOTE", "N");
}

void Dokumentverknuepfungschreiben(std::int16_t nr, RecordId datensatz) {
    zeiger(nr, datensatz, *rs_Dokument, "SOUR", "U");
}

void Quellenschreiben(std::int16_t nr, RecordId datensatz, const std::string& Datensatzart) {
    for (const Verknuepfung& v : verknuepfungen_nachschlagen(datensatz, Datensatzart)) {
        switch (v.art_ziel) { // the exact letter: a lower-case one writes nothing
        case 'A':
            Adresseschreiben(nr, v.ziel);
            break;
        case 'B':
            Bildverknuepfungschreiben(nr, v.ziel);
            break;
        case 'O':
            ortschreiben(nr, v.ziel);
            break;
        case 'R':
            Notizverknuepfungschreiben(nr, v.ziel);
            break;
        case 'U':
            Dokumentverknuepfungschreiben(nr, v.ziel);
            break;
        default:
            break;
        }
    }
}

void Chanschreiben(std::int16_t nr, const Value& Datum) {
    AuswahlForm& form = Auswahl();
    if (!form.angehakt(form.Chancheck()) || Datum.isNull())
        return;
    const DateTime stempel = Datum.toDate();
    const CalendarDateTime c = stempel.calendar();
    zeile(nr, "CHAN");
    zeile(nr + 1, "DATE " + gedcom_datum(stempel, "DD MMM YYYY", "UK"));
    zeile(nr + 2, "TIME " + zwei(c.hour) + ":" + zwei(c.minute));
}

} // namespace folio
