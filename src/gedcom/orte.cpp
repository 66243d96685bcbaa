#include "gedcom/orte.h"

#include "database/tabellen.h"
#include "engine/text_util.h"
#include "gedcom/exportlauf.h"
#include "gedcom/rtf.h"
#include "gedcom/verknuepfungen.h"
#include "gedcom/zeilen.h"

namespace folio {

namespace {

// Seeks an address by its number; false where it isn't there or isn't marked.
bool markiert_gefunden(Exportlauf& lauf, dao::Recordset& rs, RecordId datensatz) {
    rs.Index("Counter");
    rs.Seek("=", Value(datensatz));
    return !rs.NoMatch() && lauf.tabellen.markiert(Verknuepft::Adressen, rs);
}

} // namespace

void ortschreiben(Exportlauf& lauf, std::int16_t nr, RecordId datensatz) {
    if (datensatz.isZero())
        return;
    const OrtEintrag& ort = lauf.tabellen.ort(datensatz);
    if (!ort.markiert)
        return;
    zeile(lauf, nr, "PLAC " + ort.name);
    if (ort.hat_text)
        zeile(lauf, nr + 1, "NOTE @ON" + ort.counter.text() + "@");
    Notizverknuepfungschreiben(lauf, static_cast<std::int16_t>(nr + 1), ort.notiz);
    Bildverknuepfungschreiben(lauf, static_cast<std::int16_t>(nr + 1), ort.bild);
}

void Adresseschreiben(Exportlauf& lauf, std::int16_t nr, RecordId datensatz) {
    dao::Recordset& adressen = *rs_Adressen;
    if (!markiert_gefunden(lauf, adressen, datensatz))
        return;
    const std::string adresse = rtf_klartext(adressen.get("adresse").text());
    const std::string listenname = adressen.get("Listenname").text();
    const RecordId ort = adressen.get("Ort").toRecordId();
    const std::string memo = rtf_klartext(adressen.get("Memo").text());
    const auto unter = static_cast<std::int16_t>(nr + 1);
    GEDtext(lauf, nr, "ADDR", adresse);
    zeile(lauf, unter, "TITL " + listenname);
    ortschreiben(lauf, unter, ort);
    if (!isBlank(memo))
        GEDtext(lauf, unter, "NOTE", memo);
}

} // namespace folio
