// The second section, for every file: the event types that the file's types depend on,
// the occupation of each person from the events that carry one, the ancestor number as a
// Double, and the cause-as-tag mark of the event types.
#include "database/upgrade/abschnitt2.h"
#include "database/tabellen.h"
#include "database/upgrade/abschnitt1.h"
#include "database/upgrade/kette.h"
#include "database/upgrade/lauf.h"
#include "frame/platform.h"
#include "frame/start.h"

namespace folio::upgrade {

namespace {

// Each event of the kind gives its cause as the occupation of its first main person that
// Daten holds; with `nur_leere`, only where the person has none yet.
void berufe_aus(Zeilenbalken& balken, int art, bool nur_leere) {
    balken.bar.set("Value", Value(0));
    auto ereignisse =
        DB->OpenRecordset("Select Counter,Grund FROM Ereignis WHERE Art = " + std::to_string(art) +
                          " AND Grund <> ' ' AND Bjahr = 0 ;");
    balken.maximum(*ereignisse);
    dao::Recordset& daten = offen("Daten");
    daten.Index("Counter");
    for (; !ereignisse->Eof(); ereignisse->MoveNext()) {
        balken.weiter();
        auto links = DB->OpenRecordset("Select Quelle,Ursprung FROM Ereignis_DS WHERE Ziel = " +
                                       ereignisse->get("Counter").toRecordId().sqlLiteral() +
                                       " AND Ursprung = 'd' ;");
        for (; !links->Eof(); links->MoveNext()) {
            if (links->get("Ursprung").text() != "d")
                continue;
            daten.Seek("=", links->get("Quelle"));
            if (daten.NoMatch())
                continue;
            if (!nur_leere || daten.get("OCCU").text().empty()) {
                daten.Edit();
                daten.set("OCCU", ereignisse->get("Grund"));
                daten.Update();
            }
            break;
        }
    }
}

void ereignistypen_ergaenzen() {
    auto typen = DB->OpenRecordset(
        "SELECT Index, Mainindex FROM Ereignisdb WHERE Mainindex > -1 ORDER BY Mainindex");
    std::vector<int> oben;
    for (; !typen->Eof(); typen->MoveNext())
        oben.push_back(static_cast<int>(typen->get("Mainindex").toInt()));
    typen->Close();
    for (int index : oben) {
        ereignisdb_uebernehmen(index);
        platform().doEvents();
    }
}

} // namespace

void abschnitt2(Lauf& lauf) {
    lauf.abschnitt = 2;
    const std::string version = versionname();
    if (!version_mindestens(version, "5.1.100")) {
        if (!version_mindestens(version, "5.0.220"))
            lauf.schritt(51, ereignistypen_ergaenzen);
        if (lauf.feld_fehlt("Daten", "OCCU")) {
            lauf.schritt(52, [&] {
                lauf.hinweis();
                lauf.felder_anlegen({{"Daten", "OCCU", FieldType::Text, 255, true}});
                Zeilenbalken balken("Überarbeite Berufsfeld");
                berufe_aus(balken, 44, false);
                berufe_aus(balken, 9, true);
            });
            Fortschrittfrm().entladen();
        }
    }
    if (lauf.feld_fehlt("Daten", "Kekuelnr")) {
        lauf.schritt(53, [&] {
            lauf.hinweis();
            lauf.felder_anlegen({{"Daten", "Kekuelnr", FieldType::Double}});
            lauf.ausfuehren("UPDATE Daten SET Kekuelnr = Kekuel ;");
            cursor_schliessen("Daten");
            DB->tableDef("Daten").DeleteField("Kekuel");
            cursor_oeffnen("Daten");
        });
    }
    if (lauf.feld_fehlt("Ereignisdb", "CAUSasTAG")) {
        // The file is opened anew first, on its own, as the field is added to a table that
        // the catalogue's copies fill.
        lauf.hinweis();
        const std::string datei = DB->Name();
        alle_schliessen(datei);
        DB = dao::OpenDatabase(datei);
        tabellen_oeffnen();
        lauf.schritt(54, [&] {
            lauf.felder_anlegen({{"Ereignisdb", "CAUSasTAG", FieldType::Boolean}});
            lauf.ausfuehren("UPDATE Ereignisdb SET CAUSasTAG = 0 ;");
            offen("Ereignisdb").Index("Index");
            causastag_uebernehmen();
        });
    }
}

} // namespace folio::upgrade
