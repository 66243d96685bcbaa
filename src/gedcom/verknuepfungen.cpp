#include "gedcom/verknuepfungen.h"
#include "engine/text_util.h"

#include "database/tabellen.h"
#include "gedcom/datum.h"
#include "gedcom/exportlauf.h"
#include "gedcom/nachschlagen.h"
#include "gedcom/orte.h"
#include "gedcom/zeilen.h"

namespace folio {

namespace {

void zeiger(Exportlauf& lauf, std::int16_t nr, RecordId datensatz, Verknuepft tabelle,
            dao::Recordset* rs, const char* tag, const char* praefix) {
    if (datensatz.isZero())
        return;
    if (const std::string* counter = lauf.tabellen.markiert(tabelle, rs, datensatz))
        zeile(lauf, nr, std::string(tag) + " @" + praefix + *counter + "@");
}

} // namespace

void Bildverknuepfungschreiben(Exportlauf& lauf, std::int16_t nr, RecordId datensatz) {
    zeiger(lauf, nr, datensatz, Verknuepft::Bilder, rs_Bilder.get(), "OBJE", "B");
}

void Notizverknuepfungschreiben(Exportlauf& lauf, std::int16_t nr, RecordId datensatz) {
    zeiger(lauf, nr, datensatz, Verknuepft::Notiz, rs_Notiz.get(), "NOTE", "N");
}

void Dokumentverknuepfungschreiben(Exportlauf& lauf, std::int16_t nr, RecordId datensatz) {
    zeiger(lauf, nr, datensatz, Verknuepft::Dokument, rs_Dokument.get(), "SOUR", "U");
}

void Quellenschreiben(Exportlauf& lauf, std::int16_t nr, RecordId datensatz,
                      const std::string& Datensatzart) {
    for (const Verknuepfung& v : lauf.tabellen.verknuepfungen(datensatz, Datensatzart)) {
        switch (v.art_ziel) { // the exact letter: a lower-case one writes nothing
        case 'A':
            Adresseschreiben(lauf, nr, v.ziel);
            break;
        case 'B':
            Bildverknuepfungschreiben(lauf, nr, v.ziel);
            break;
        case 'O':
            ortschreiben(lauf, nr, v.ziel);
            break;
        case 'R':
            Notizverknuepfungschreiben(lauf, nr, v.ziel);
            break;
        case 'U':
            Dokumentverknuepfungschreiben(lauf, nr, v.ziel);
            break;
        default:
            break;
        }
    }
}

void Chanschreiben(Exportlauf& lauf, std::int16_t nr, const Value& Datum) {
    if (!lauf.optionen.aenderungsdatum || Datum.isNull())
        return;
    const DateTime stempel = Datum.toDate();
    const CalendarDateTime c = stempel.calendar();
    zeile(lauf, nr, "CHAN");
    zeile(lauf, nr + 1, "DATE " + gedcom_datum(stempel, "DD MMM YYYY", "UK"));
    zeile(lauf, nr + 2, "TIME " + twoDigits(c.hour) + ":" + twoDigits(c.minute));
}

} // namespace folio
