// Both grids on the sample tree: the row event row by row against what the tree holds, the
// living while "Lebend" is pressed, the sort event, the switches and their question, the
// tables of the linked records, and the column settings.
#include "engine/connection_setup.h"
#include "engine/text_util.h"
#include "support/wizard_fixture.h"
#include "wizard/grid_aufbau.h"
#include "wizard/personengrid.h"
#include "wizard/seiten.h"
#include "wizard/zeile_vorbereiten.h"

#include <gtest/gtest.h>

#include <map>

namespace folio::test {
namespace {

struct Grids : WizardFixture {
    void SetUp() override {
        WizardFixture::SetUp();
        beispiel_zuletzt();
        laden();
    }
    // A field of every person, looked up by the database itself: Counter -> text.
    std::map<std::string, std::string> je_person(const std::string& sql) {
        std::map<std::string, std::string> m;
        for (auto rs = DB->OpenRecordset(sql); !rs->Eof(); rs->MoveNext())
            m[rs->get(0).text()] = trimmed(rs->get(1).text());
        return m;
    }
};

TEST_F(Grids, ThePersonGridRowByRow) {
    Datengrid& g = Auswahl().grid(0);
    EXPECT_FALSE(g.Columns("Counter").Visible);
    EXPECT_EQ(g.Columns("SURN").Width, 1500);
    EXPECT_EQ(g.Columns("SURN").MinWidth, 1200);
    EXPECT_EQ(g.Columns("SURN").Caption, sprachtext("349"));
    EXPECT_TRUE(g.Columns("Bild").Bildspalte);
    EXPECT_EQ(g.Columns("Bild").Format, "####");
    EXPECT_TRUE(g.Columns("Markierung").Bearbeitbar);
    ASSERT_EQ(g.Icons.size(), 4u);
    EXPECT_EQ(g.Icons[2].key, "Mann");

    const auto gort = je_person("SELECT d.Counter, o.Name FROM Daten d LEFT JOIN Ort o "
                                "ON o.Counter = d.GOrt");
    const auto status = je_person("SELECT d.Counter, s.Namen FROM Daten d LEFT JOIN Status s "
                                  "ON s.Counter = d.Status");
    const auto notiz = je_person("SELECT d.Counter, n.Name FROM Daten d LEFT JOIN Notiz n "
                                 "ON n.Counter = d.Notiz");
    const auto gdatum = je_person("SELECT Counter, GDatum FROM Daten");
    int mit_ort = 0, mit_bild = 0;
    std::string vorher;
    for (std::int64_t r = 1; r <= g.Rows(); ++r) {
        const Zeile& z = g.zeile(r);
        const std::string counter = g.Text("Counter", r);
        SCOPED_TRACE("person " + counter);
        EXPECT_EQ(g.Text("GOrt", r), gort.at(counter));
        EXPECT_EQ(g.Text("Status", r), status.at(counter));
        EXPECT_EQ(g.Text("Notiz", r), notiz.at(counter));
        EXPECT_EQ(g.Text("GSort", r), gdatum.at(counter));
        const std::string geschlecht =
            DB->OpenRecordset("SELECT Geschlecht FROM Daten WHERE Counter = " + counter)
                ->get(0)
                .text();
        const int bild = z.zellen[static_cast<std::size_t>(g.GetCol("Geschlecht") - 1)].bild;
        EXPECT_EQ(bild, geschlecht == "M" ? 3 : geschlecht == "W" ? 4 : 0);
        const Zeile::Zelle& b = z.zellen[static_cast<std::size_t>(g.GetCol("Bild") - 1)];
        EXPECT_EQ(b.bild == 2, !b.tooltip.empty());
        mit_ort += !g.Text("GOrt", r).empty();
        mit_bild += b.bild == 2;
        EXPECT_EQ(z.farbe, FarbeStandard);
        // Sorted by surname as the program compares texts.
        const std::string name = g.Text("SURN", r);
        EXPECT_LE(compareNoCase(vorher, name), 0);
        vorher = name;
    }
    EXPECT_GT(mit_ort, 10);
    EXPECT_GT(mit_bild, 0);
}

TEST_F(Grids, TheLivingWhileLebendIsPressed) {
    Datengrid& g = Auswahl().grid(0);
    markieren_befehl(0, "Auswählen");
    schalter_geklickt("Lebend", true);
    g.sichtbar(1, g.Rows());
    g.Refresh();
    EXPECT_EQ(DB->OpenRecordset("SELECT count(*) FROM Daten WHERE Lebt = True AND "
                                "Markierung = True")
                  ->get(0)
                  .toInt(),
              0);
    std::int64_t lebend = 0;
    for (std::int64_t r = 1; r <= g.Rows(); ++r)
        if (ist_wahr(g.Text("Lebt", r))) {
            lebend = r;
            EXPECT_EQ(g.zeile(r).farbe, FarbeRot);
            EXPECT_EQ(g.Text("Markierung", r), "False");
        }
    ASSERT_GT(lebend, 0);
    EXPECT_FALSE(zelle_aendern(0, lebend, "Markierung", Value(true)));

    // Off: the colour goes, the marks don't come back, and the tick is allowed again.
    schalter_geklickt("Lebend", false);
    EXPECT_EQ(g.zeile(lebend).farbe, FarbeStandard);
    EXPECT_EQ(g.Text("Markierung", lebend), "False");
    EXPECT_TRUE(zelle_aendern(0, lebend, "Markierung", Value(true)));
}

TEST_F(Grids, TheSortEventAndTheSwitches) {
    // The columns that show a name for a number can't be sorted by; the message can be
    // switched off by its check box.
    scripted->answers = {{AntwortNein, 0}};
    EXPECT_FALSE(sortieren_erlaubt(0, "[Gort]"));
    ASSERT_EQ(scripted->shown.size(), 1u);
    EXPECT_EQ(scripted->shown[0].style, 71);
    EXPECT_TRUE(scripted->shown[0].checkboxShown);
    EXPECT_FALSE(sortieren_erlaubt(0, "[status] DESC"));
    EXPECT_EQ(scripted->shown.size(), 1u);
    EXPECT_TRUE(sortieren_erlaubt(0, "[Gsort]"));
    EXPECT_TRUE(sortieren_erlaubt(1, "[Ort]"));

    int breite = 0;
    EXPECT_EQ(sortierspalte_ermitteln(0, 7, breite), Auswahl().grid(0).GetCol("SURN"));
    EXPECT_EQ(breite, 100);
    Auswahl().grid(0).DoSort("[Gsort]");
    EXPECT_EQ(sortierspalte_ermitteln(0, 7, breite), Auswahl().grid(0).GetCol("Gdatum"));

    // Ancestors without spouses: the question; OK switches the spouses on.
    scripted->answers = {{AntwortAbbrechen, -2}};
    schalter_geklickt("Nachfahren", true);
    EXPECT_EQ(scripted->shown.back().style, 65);
    EXPECT_EQ(Auswahl().knopf(0, "Ehepartner").get("Value").toInt(), 0);
    ini_schreiben(programm_ini(), "Msgboxen", "EhepartnerwahlGEDCOM", "0");
    const std::size_t gezeigt = scripted->shown.size();
    schalter_geklickt("Vorfahren", true);
    EXPECT_EQ(scripted->shown.size(), gezeigt);
    EXPECT_EQ(Auswahl().knopf(0, "Ehepartner").get("Value").toInt(), 0);
}

TEST_F(Grids, TheLinkedRecordsAndTheColumnSettings) {
    markieren_befehl(0, "Auswählen");
    seite_gewechselt(2, 3);
    Datengrid& g = Auswahl().grid(1);
    EXPECT_EQ(g.Formularname, "Ereignis");
    const std::int64_t marked =
        DB->OpenRecordset("SELECT count(*) FROM Ereignis WHERE Markierung = True")->get(0).toInt();
    EXPECT_EQ(g.Rows(), marked);
    EXPECT_EQ(g.SortOrder(), "[vdatum]");
    ASSERT_GT(g.Icons.size(), 3u);
    EXPECT_EQ(g.Icons[1].key, "Bild");
    EXPECT_EQ(g.Icons[2].key, " 0.ICO");
    for (std::int64_t r = 1; r <= g.Rows(); ++r) {
        const Zeile& z = g.zeile(r);
        const int art = std::stoi(
            DB->OpenRecordset("SELECT Art FROM Ereignis WHERE Counter = " + g.Text("Counter", r))
                ->get(0)
                .text());
        EXPECT_EQ(z.zellen[static_cast<std::size_t>(g.GetCol("Art") - 1)].bild, art + 3);
        if (g.Text("vdatum", r) == g.Text("bdatum", r)) {
            EXPECT_EQ(g.Text("bsort", r), "");
        }
    }
    // A record struck out is out at once and stays so while the selection stands.
    ASSERT_TRUE(zelle_aendern(1, 1, "Markierung", Value(false)));
    seite_gewechselt(3, 4);
    seite_gewechselt(4, 3);
    EXPECT_EQ(
        DB->OpenRecordset("SELECT count(*) FROM Ereignis WHERE Markierung = True")->get(0).toInt(),
        marked - 1);

    // A filter is dropped when the table is chosen again, the same one too.
    g.Columns("Listentext").Filter = "x";
    tabellenknopf_geklickt("Ereignisse");
    EXPECT_EQ(g.Columns("Listentext").Filter, "");
    EXPECT_EQ(Auswahl().knopf(1, "Ereignisse").get("Value").toInt(), 1);
    tabellenknopf_geklickt("Orte");
    EXPECT_EQ(Auswahl().knopf(1, "Ereignisse").get("Value").toInt(), 0);
    EXPECT_EQ(g.Formularname, "Orteform");

    // Settings of the user win over the defaults, but a column that must stay hidden does.
    ini_schreiben(spalten_ini(), "Stammfolio/Orteform/Datengrid0_Cols", "Name", "2500,1,1");
    ini_schreiben(spalten_ini(), "Stammfolio/Orteform/Datengrid0_Cols", "Oberort", "900,2,1");
    ini_schreiben(spalten_ini(), "Stammfolio/Orteform/Datengrid0_Cols", "Status", "kaputt");
    grid2_aufbauen("Orte");
    EXPECT_EQ(g.Columns("Name").Width, 2500);
    EXPECT_EQ(g.Columns("Name").Position, 1);
    EXPECT_FALSE(g.Columns("Oberort").Visible);
    EXPECT_EQ(g.Columns("Status").Width, 1000);
    std::vector<int> plaetze;
    for (const Spalte& sp : g.spalten())
        plaetze.push_back(sp.Position);
    std::sort(plaetze.begin(), plaetze.end());
    for (std::size_t i = 0; i < plaetze.size(); ++i)
        EXPECT_EQ(plaetze[i], static_cast<int>(i) + 1);
    // What the view stores comes back.
    g.Columns("Status").Width = 1777;
    g.Columns("Status").Visible = false;
    spalteneinstellungen_speichern(g, "Stammfolio", g.Formularname, "Datengrid0_Cols",
                                   spalten_ini());
    grid2_aufbauen("Orte");
    EXPECT_EQ(g.Columns("Status").Width, 1777);
    EXPECT_FALSE(g.Columns("Status").Visible);
    EXPECT_EQ(g.Columns("Name").Position, 1);
    // An unknown key leaves the grid as it is.
    grid2_aufbauen("Quellen");
    EXPECT_EQ(g.Formularname, "Orteform");
}

} // namespace
} // namespace folio::test
