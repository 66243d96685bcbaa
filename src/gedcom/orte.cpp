#include "gedcom/orte.h"

#include "database/tabellen.h"
#include "engine/text_util.h"
#include "gedcom/exportlauf.h"
#include "gedcom/rtf.h"
#include "gedcom/verknuepfungen.h"
#include "gedcom/zeilen.h"

namespace folio {

void ortschreiben(Exportlauf& lauf, std::int16_t nr, RecordId datensatz) {
    if (datensatz.isZero())
        return;
    const OrtEintrag& ort = lauf.tabellen.ort(datensatz);
    if (!ort.markiert)
        return;
    zeile(lauf, nr, "PLAC " + textwert(ort.name));
    if (ort.hat_text)
        zeile(lauf, nr + 1, "NOTE @ON" + ort.counter.text() + "@");
    Notizverknuepfungschreiben(lauf, static_cast<std::int16_t>(nr + 1), ort.notiz);
    Bildverknuepfungschreiben(lauf, static_cast<std::int16_t>(nr + 1), ort.bild);
}

void Adresseschreiben(Exportlauf& lauf, std::int16_t nr, RecordId datensatz) {
    const AdressEintrag& a = lauf.tabellen.adresse(datensatz);
    if (!a.markiert)
        return;
    const auto unter = static_cast<std::int16_t>(nr + 1);
    GEDtext(lauf, nr, "ADDR", a.adresse);
    zeile(lauf, unter, "TITL " + textwert(a.listenname));
    ortschreiben(lauf, unter, a.ort);
    if (!isBlank(a.memo))
        GEDtext(lauf, unter, "NOTE", a.memo);
}

} // namespace folio
