// The file's own table of event types takes its rows from the catalogue when the file
// first needs them; a type comes with the chain of types (mainindex) on which it depends.
#include "database/tabellen.h"
#include "database/upgrade/abschnitt1.h"
#include "database/upgrade/kette.h"
#include "database/upgrade/lauf.h"
#include "engine/errors.h"

namespace folio {

namespace {

// The catalogue's table of event types, open.
dao::Recordset& katalog() {
    return upgrade::offen(rs_Deutsch, "The catalogue of event types");
}

bool im_katalog(long long index) {
    dao::Recordset& k = katalog();
    k.FindFirst("Index = " + std::to_string(index));
    return !k.NoMatch();
}

bool in_der_datei(long long index) {
    dao::Recordset& typen = upgrade::offen("Ereignisdb");
    typen.Seek("=", Value(index));
    return !typen.NoMatch();
}

// Copies the current row of the catalogue; its order and its cause-as-tag stay behind.
void ereignisdb_zeile_kopieren() {
    dao::Recordset& von = katalog();
    dao::Recordset& nach = upgrade::offen("Ereignisdb");
    nach.AddNew();
    for (const char* feld :
         {"Index", "Art", "Text_vor", "Text_nach", "Level", "GedTAG", "Personenarten",
          "maxhauptpersonen", "Ereignisgrund", "txtzeichen", "mainindex", "OrtPos"})
        nach.set(feld, von.get(feld));
    nach.Update();
}

} // namespace

void ereignisdb_uebernehmen(int index) {
    upgrade::offen("Ereignisdb").Index("Index");
    if (in_der_datei(index) || !im_katalog(index))
        return;
    ereignisdb_zeile_kopieren();
    // Up the chain of types; the catalogue holds no circle of them.
    for (long long oben = rs_Deutsch->get("mainindex").toInt(); oben != -1;
         oben = rs_Deutsch->get("mainindex").toInt()) {
        if (!im_katalog(oben))
            return;
        if (!in_der_datei(oben))
            ereignisdb_zeile_kopieren();
    }
}

namespace upgrade {

void causastag_uebernehmen() {
    dao::Recordset& typen = offen("Ereignisdb");
    for (upgrade::zum_anfang(typen); !typen.Eof(); typen.MoveNext()) {
        if (!im_katalog(typen.get("Index").toInt()))
            continue;
        const Value wert = rs_Deutsch->get("CAUSasTAG");
        if (typen.get("CAUSasTAG").toBool() != wert.toBool()) {
            typen.Edit();
            typen.set("CAUSasTAG", wert);
            typen.Update();
        }
    }
}

} // namespace upgrade

} // namespace folio
