#include "wizard/personengrid.h"

#include "database/tabellen.h"
#include "engine/text_util.h"
#include "frame/globals.h"
#include "frame/ini.h"
#include "frame/meldung.h"
#include "frame/platform.h"
#include "frame/sprache.h"
#include "selection/verwandte.h"
#include "wizard/auswahl.h"
#include "wizard/grid_aufbau.h"
#include "wizard/seiten.h"
#include "wizard/zeile_vorbereiten.h"

namespace folio {

void markierung_geaendert(int grid, RecordId counter, bool markierung) {
    AuswahlForm& form = Auswahl();
    auto auffrischen = [&] { form.grid(0).Refresh(); };
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
    auto auffrischen = [&] { form.grid(0).Refresh(); };
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

bool bearbeiten_erlaubt(int grid, std::int64_t row, std::string_view key) {
    if (!equalsNoCase(key, "Markierung"))
        return false;
    AuswahlForm& form = Auswahl();
    return !(grid == 0 && form.gedrueckt(0, "Lebend") && ist_wahr(form.grid(0).Text("Lebt", row)));
}

void bearbeitung_beendet(int grid) {
    if (grid == 0)
        personen_gewaehlt();
}

bool zelle_aendern(int grid, std::int64_t row, std::string_view key, const Value& wert) {
    if (!bearbeiten_erlaubt(grid, row, key))
        return false;
    Datengrid& g = Auswahl().grid(grid);
    g.schreiben(row, key, wert);
    bearbeitung_beendet(grid);
    markierung_geaendert(grid, RecordId::fromDouble(numericValue(g.Text("Counter", row))),
                         wert.toBool());
    return true;
}

bool sortieren_erlaubt(int grid, const std::string& sortierung) {
    if (grid != 0)
        return true;
    for (const char* name : {"[Notiz]", "[ORT]", "[status]", "[SOrt]", "[Gort]"})
        if (sortierung.find(name) != std::string::npos) {
            meldung_abschaltbar(sprachtext("454"), 71, Produktname, "Sortierung");
            return false;
        }
    return true;
}

void schalter_geklickt(std::string_view key, bool an) {
    AuswahlForm& form = Auswahl();
    form.knopf(0, key).set("Value", Value(an ? 1 : 0));
    if (equalsNoCase(key, "Lebend")) {
        form.grid(0).Refresh();
    } else if ((equalsNoCase(key, "Vorfahren") || equalsNoCase(key, "Nachfahren")) && an &&
               !form.gedrueckt(0, "Ehepartner")) {
        if (numericValue(ini_lesen(programm_ini(), "Msgboxen", "EhepartnerwahlGEDCOM", "1")) == 1 &&
            meldung(sprachtext("1659"), 65, Produktname) == AntwortOk)
            form.knopf(0, "Ehepartner").set("Value", Value(1));
    }
}

void tabellenknopf_geklickt(const std::string& key) {
    AuswahlForm& form = Auswahl();
    for (PropertyBag& knopf : form.control("Coolbar_Datengrid", 1).items("Buttons"))
        knopf.set("Value", Value(knopf.text("Key") == key ? 1 : 0));
    grid2_aufbauen(key);
}

bool referenzspalte(int grid, int spalte, int& ergebnis, int& breite) {
    if (grid == 1 && spalte != 6)
        return false;
    ergebnis = sortierspalte_ermitteln(grid, grid == 0 ? 7 : 5, breite);
    return true;
}

int sortierspalte_ermitteln(int grid, int startspalte, int& breite) {
    constexpr int TwipsProPixel = 15;
    Datengrid& g = Auswahl().grid(grid);
    int ergebnis = startspalte;
    for (int i = 1; i <= g.Cols(); ++i) {
        const Spalte& sp = g.Columns(i);
        if (!sp.Visible || sp.SortState == SortKeine)
            continue;
        ergebnis = sp.Index;
        const std::pair<const char*, const char*> daten[] = {
            {"Gsort", "GDatum"}, {"Ssort", "SDatum"}, {"vsort", "vDatum"}, {"bsort", "bDatum"}};
        for (const auto& [sortkey, datum] : daten)
            if (equalsNoCase(sp.Key, sortkey) && g.GetCol(datum) != 0)
                ergebnis = g.Columns(datum).Index;
        if (sp.DataType == SpaltentypJaNein)
            ergebnis = startspalte;
        break;
    }
    breite = ergebnis >= 1 && ergebnis <= g.Cols() ? g.Columns(ergebnis).Width / TwipsProPixel : 0;
    return ergebnis;
}

} // namespace folio
