#include "wizard/personengrid.h"

#include "database/tabellen.h"
#include "selection/verwandte.h"
#include "wizard/auswahl.h"
#include "wizard/seiten.h"

namespace folio {

Haken haken_setzen(RecordId person, bool stand) {
    dao::Recordset& d = *rs_Daten;
    d.Index("Counter");
    d.Seek("=", Value(person));
    if (d.NoMatch())
        return Haken::Unbekannt;
    if (Auswahl().gedrueckt(0, "Lebend") && d.get("Lebt").toBool())
        return Haken::Verweigert;
    d.Edit();
    d.set("Markierung", Value(stand));
    d.Update();
    personen_gewaehlt();
    markierung_geaendert(0, person, stand);
    return Haken::Gesetzt;
}

void lebende_abwaehlen() {
    DB->Execute("Update Daten Set Markierung = 0 WHERE Lebt = True ;", dao::dbFailOnError);
}

} // namespace folio
