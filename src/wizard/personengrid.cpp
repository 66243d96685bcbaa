#include "wizard/personengrid.h"

#include "database/tabellen.h"
#include "engine/text_util.h"
#include "selection/verwandte.h"
#include "wizard/auswahl.h"
#include "wizard/seiten.h"

namespace folio {

void markierung_geaendert(int grid, RecordId counter, bool markierung) {
    AuswahlForm& form = Auswahl();
    auto auffrischen = [&] {
        if (form.personengrid_auffrischen)
            form.personengrid_auffrischen();
    };
    if (grid == 0) {
        Verwandtenwahl wahl;
        wahl.vorfahren = form.gedrueckt(0, "Vorfahren");
        wahl.nachfahren = form.gedrueckt(0, "Nachfahren");
        wahl.ehepartner = form.gedrueckt(0, "Ehepartner");
        wahl.ohne_lebende = form.gedrueckt(0, "Lebend");
        form.set("MousePointer", Value(MausSanduhr));
        try {
            verwandte_markieren(counter, markierung, wahl, auffrischen);
        } catch (...) {
            form.set("MousePointer", Value(MausNormal));
            throw;
        }
        form.set("MousePointer", Value(MausNormal));
        form.verknuepfungen_aktuell = false;
    }
    auffrischen();
}

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

void markieren_befehl(int coolbar, std::string_view key) {
    if (coolbar != 0)
        return;
    AuswahlForm& form = Auswahl();
    form.set("MousePointer", Value(MausSanduhr));
    auto auffrischen = [&] {
        if (form.personengrid_auffrischen)
            form.personengrid_auffrischen();
    };
    if (equalsNoCase(key, "Auswählen")) {
        DB->Execute("Update Daten Set Markierung = -1 WHERE Markierung = 0 ;", dao::dbFailOnError);
        auffrischen();
        form.weiter_freigeben(true);
    } else if (equalsNoCase(key, "Abwählen")) {
        DB->Execute("Update Daten Set Markierung = 0 WHERE Markierung <> 0 ;", dao::dbFailOnError);
        auffrischen();
        form.weiter_freigeben(false);
    } else if (equalsNoCase(key, "Alle_gezeigten")) {
        DB->Execute("Update Daten Set Markierung = -1 WHERE Marker = 1 ;", dao::dbFailOnError);
    }
    form.verknuepfungen_aktuell = false;
    form.set("MousePointer", Value(MausNormal));
}

void lebende_abwaehlen() {
    DB->Execute("Update Daten Set Markierung = 0 WHERE Lebt = True ;", dao::dbFailOnError);
}

} // namespace folio
