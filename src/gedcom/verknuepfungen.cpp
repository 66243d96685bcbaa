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
    auto rs = DB->OpenRecordset("SELECT * FROM Quellen_DS WHERE Quelle =" + datensatz.sqlLiteral() +
                                " AND  Art_Quelle = '" + Datensatzart + "' ORDER BY art_ziel ;");
    for (; !rs->Eof(); rs->MoveNext()) {
        const std::string art = rs->get("art_ziel").text();
        const RecordId ziel = rs->get("ziel").toRecordId();
        if (art == "A")
            Adresseschreiben(nr, ziel);
        else if (art == "B")
            Bildverknuepfungschreiben(nr, ziel);
        else if (art == "O")
            ortschreiben(nr, ziel);
        else if (art == "R")
            Notizverknuepfungschreiben(nr, ziel);
        else if (art == "U")
            Dokumentverknuepfungschreiben(nr, ziel);
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
