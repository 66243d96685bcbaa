// The wizard as a whole on a copy of the staged program: the load, the first page, the
// buttons' conditions, help and cancel, and a walk through the five pages that writes the same
// file as the command line.
#include "engine/abbruch.h"
#include "frame/meldung.h"
#include "selection/markierungen.h"
#include "support/gedcom_vergleich.h"
#include "support/wizard_fixture.h"
#include "wizard/dateiwahl.h"
#include "wizard/exportstart.h"
#include "wizard/icons.h"
#include "wizard/personengrid.h"
#include "wizard/seiten.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

namespace folio::test {
namespace {

bool weiter() {
    return Auswahl().sevWizard().get("NextEnabled").toBool();
}
bool starten() {
    return Auswahl().sevWizard().get("FinishEnabled").toBool() &&
           Auswahl().control("Exportstarten").get("Enabled").toBool();
}

// The cells of the information list as "Info|Status" lines, with the red cells marked.
std::vector<std::string> liste(int i) {
    std::vector<std::string> zeilen;
    for (PropertyBag& z : Auswahl().DBGrid(i).items("Rows"))
        zeilen.push_back(z.text("Info") + "|" + z.text("Status") +
                         (z.has("StatusColor") ? "|rot" : ""));
    return zeilen;
}

int anzahl(const char* sql) {
    return static_cast<int>(DB->OpenRecordset(sql)->get(0).toInt());
}

// The rows of the person grid whose Counter is `person`.
std::int64_t zeile_von(int person) {
    Datengrid& g = Auswahl().grid(0);
    for (std::int64_t r = 1; r <= g.Rows(); ++r)
        if (g.Text("Counter", r) == std::to_string(person))
            return r;
    return 0;
}

using Wizard = WizardFixture;

TEST_F(Wizard, LoadProposesTheTreeUsedLastAndOpensIt) {
    beispiel_zuletzt();
    fs::create_directories(pfad_verbinden(Datenpfad, "INI"));
    ini_schreiben(pfad_verbinden(Datenpfad, "INI/Folioexport.ini"), "Fenster", "Links", "1234");
    laden();
    AuswahlForm& form = Auswahl();

    EXPECT_EQ(form.text("Caption"), "GEDCOM Export 5.5");
    EXPECT_EQ(start.control("Titel", 1).text("Caption"), "GEDCOM Export 5.5");
    EXPECT_EQ(start.control("Fortschritt").get("Value").toInt(), 90);
    EXPECT_FALSE(start.get("Visible").toBool());
    EXPECT_EQ(scripted->sleptMilliseconds, 1000);
    EXPECT_EQ(form.get("MousePointer").toInt(), MausNormal);
    EXPECT_EQ(form.sevWizard().text("NextBtnText"), "&Weiter>");
    EXPECT_EQ(form.control("sevWizardPage", 1).text("HeaderTitle"), "Personen wählen");
    EXPECT_EQ(form.DBGrid(0).text("Caption"), "Informationen zur Datenbank");
    EXPECT_EQ(form.get("Left").toInt(), 1234);
    // Without a stored Top the form stays centred.
    EXPECT_EQ(form.get("Top").toInt(),
              (platform().screenHeight() - form.get("Height").toInt()) / 2);
    EXPECT_EQ(form.hilfedatei, Stammpfad + "/help/de");

    EXPECT_EQ(form.Verzeichnis(0).text("Text"), Datenpfad);
    EXPECT_EQ(form.Datei(0).text("FileName"), "Beispiel.SF6");
    EXPECT_TRUE(weiter());
    // The target: the folder of the tree and the default name, which enables the start.
    EXPECT_EQ(form.Verzeichnis(1).text("Text"), Datenpfad);
    EXPECT_EQ(form.Verzeichnis(2).text("Text"), "Gedcom-Export");
    EXPECT_TRUE(starten());

    const auto info = liste(0);
    ASSERT_GE(info.size(), 11u);
    EXPECT_EQ(info[0], "Datei|");
    EXPECT_TRUE(info[1].starts_with("Dateigröße|") && info[1].ends_with(" KB")) << info[1];
    // The sample wasn't made by this user (no key in the settings): the red row.
    EXPECT_EQ(info[2], "Datenbank|Nicht duch Sie erstellt|rot");
    EXPECT_EQ(info[4], "Personen|" + std::to_string(anzahl("SELECT count(*) FROM Daten")));
    EXPECT_EQ(info[7], "Orte|" + std::to_string(anzahl("SELECT count(*) FROM Ort")));

    // The person grid is ready for page 2, sorted by surname, and the pictures are loaded.
    EXPECT_EQ(form.grid(0).Rows(), anzahl("SELECT count(*) FROM Daten"));
    EXPECT_EQ(form.grid(0).SortOrder(), "[SURN]");
    EXPECT_NE(bild_aus_lager("Mann"), "");
    EXPECT_NE(bild_aus_lager("0.ICO"), "");
}

TEST_F(Wizard, WithoutAProposalNothingIsOpened) {
    laden();
    AuswahlForm& form = Auswahl();
    // No tree used last and no old sample: the host's folder, listed but not chosen.
    EXPECT_EQ(form.Verzeichnis(0).text("Text"), Stammpfad);
    EXPECT_EQ(form.Datei(0).items("List").size(), 1u);
    EXPECT_EQ(form.Datei(0).text("FileName"), "");
    EXPECT_FALSE(weiter());
    EXPECT_TRUE(!DB || !DB->isOpen());
    EXPECT_TRUE(form.DBGrid(0).items("Rows").empty());

    // Choosing the file of the list opens it.
    datei_waehlen(0);
    EXPECT_TRUE(weiter());
    EXPECT_TRUE(DB);
    EXPECT_GT(form.grid(0).Rows(), 10);
}

TEST_F(Wizard, TheBoxesOfTheFoldersAndTheFileName) {
    beispiel_zuletzt();
    laden();
    AuswahlForm& form = Auswahl();

    // A folder without trees: nothing current, Next off; the folder is remembered.
    const std::string leer = dir.file("leer");
    fs::create_directories(leer);
    std::ofstream(leer + "/notizen.txt") << "x";
    std::ofstream(leer + "/Zweiter.sf6") << "";
    form.Verzeichnis(0).set("Text", Value(leer));
    verzeichnis_geaendert(0);
    EXPECT_FALSE(weiter());
    ASSERT_EQ(form.Datei(0).items("List").size(), 1u); // the pattern ignores the case
    EXPECT_EQ(ini_lesen(form.folioexport_ini, "Datei", "Verzeichnis0", ""), leer);
    // The old tree stays open until a file is chosen.
    EXPECT_TRUE(DB);

    form.Verzeichnis(2).set("Text", Value("C:\\Export\\Familie:1"));
    verzeichnis_geaendert(2);
    EXPECT_EQ(form.Verzeichnis(2).text("Text"), "CExportFamilie1");
    EXPECT_TRUE(starten());
    form.Verzeichnis(2).set("Text", Value("   "));
    verzeichnis_geaendert(2);
    EXPECT_EQ(form.Verzeichnis(2).text("Text"), "   ");
    EXPECT_FALSE(starten());

    // An empty file that isn't a tree: the opening tells the user, and Next stays off.
    const std::size_t gezeigt = scripted->shown.size();
    datei_waehlen(0);
    EXPECT_FALSE(weiter());
    EXPECT_GT(scripted->shown.size(), gezeigt);
    ASSERT_EQ(liste(0).size(), 2u);
    EXPECT_EQ(liste(0)[1], "Dateigröße| KB");
}

TEST_F(Wizard, ChoosingAnotherTreePutsBackTheMarksOfTheFirst) {
    beispiel_zuletzt();
    laden();
    const std::string zweite = pfad_verbinden(Datenpfad, "Zweite.SF6");
    fs::copy_file(pfad_verbinden(Datenpfad, "Beispiel.SF6"), zweite);
    const int markiert = anzahl("SELECT count(*) FROM Daten WHERE Markierung = True");
    markieren_befehl(0, "Auswählen");
    ASSERT_GT(anzahl("SELECT count(*) FROM Daten WHERE Markierung = True"), markiert);

    dateiliste_zeigen(Datenpfad);
    auto& eintraege = Auswahl().Datei(0).items("List");
    for (std::size_t i = 0; i < eintraege.size(); ++i)
        if (eintraege[i].text("Name") == "Zweite.SF6")
            datei_waehlen(static_cast<int>(i));
    ASSERT_EQ(aktuelle_datei, "Zweite.SF6");
    auto erste = dao::OpenDatabase(pfad_verbinden(Datenpfad, "Beispiel.SF6"));
    EXPECT_EQ(
        erste->OpenRecordset("SELECT count(*) FROM Daten WHERE Markierung = True")->get(0).toInt(),
        markiert);
}

TEST_F(Wizard, NextFollowsTheMarksOfThePersons) {
    beispiel_zuletzt();
    laden();
    markieren_befehl(0, "Abwählen");
    seite_gewechselt(1, 2);
    EXPECT_FALSE(weiter());
    const std::int64_t r = zeile_von(35);
    ASSERT_GT(r, 0);
    EXPECT_TRUE(zelle_aendern(0, r, "Markierung", Value(true)));
    EXPECT_TRUE(weiter());
    EXPECT_EQ(Auswahl().grid(0).Text("Markierung", r), "True");
    EXPECT_FALSE(zelle_aendern(0, r, "SURN", Value("x")));
    EXPECT_TRUE(zelle_aendern(0, r, "Markierung", Value(false)));
    EXPECT_FALSE(weiter());
    seite_gewechselt(1, 2);
    EXPECT_FALSE(weiter());
}

TEST_F(Wizard, HelpAndCancel) {
    beispiel_zuletzt();
    laden();
    hilfe_geklickt();
    ASSERT_EQ(scripted->geoeffnet.size(), 1u);
    EXPECT_EQ(scripted->geoeffnet[0], Stammpfad + "/help/de/Programm.htm");
    EXPECT_TRUE(fs::exists(scripted->geoeffnet[0]));

    // Cancel during a run asks, and Yes stops it: the old file stays, nothing half-written.
    AuswahlForm& form = Auswahl();
    markieren_befehl(0, "Auswählen");
    form.Verzeichnis(1).set("Text", Value(dir.path()));
    form.Verzeichnis(2).set("Text", Value("Abbruch"));
    std::ofstream(dir.file("Abbruch.GED")) << "alt";
    scripted->answers = {{AntwortOk, -2}, {AntwortJa, -2}};
    bool gefragt = false;
    scripted->onEvents = [&] {
        if (!gefragt && form.export_laeuft) {
            gefragt = true;
            EXPECT_FALSE(form.Zeichensatz(0).get("Enabled").toBool());
            EXPECT_FALSE(abbrechen_geklickt());
        }
    };
    EXPECT_EQ(Exportstarten(), ExportErgebnis::Abgebrochen);
    scripted->onEvents = nullptr;
    EXPECT_TRUE(gefragt);
    EXPECT_EQ(readFile(dir.file("Abbruch.GED")), "alt");
    EXPECT_FALSE(fs::exists(dir.file("Abbruch.GED.part")));
    EXPECT_EQ(abbruch_angefordert(), 0);
    EXPECT_TRUE(form.Zeichensatz(0).get("Enabled").toBool());

    // Without a run, Cancel closes and puts the marks back.
    EXPECT_TRUE(abbrechen_geklickt());
}

// The five pages as a user goes through them, and the command line with the same choice: the
// same file, but for the moment it was written.
TEST_F(Wizard, TheWalkThroughThePagesWritesWhatTheCommandLineWrites) {
    const std::string kopie = kopie_anlegen();
    beispiel_zuletzt();
    laden();
    AuswahlForm& form = Auswahl();

    markieren_befehl(0, "Abwählen");
    seite_gewechselt(1, 2);
    schalter_geklickt("Vorfahren", true); // asks for the spouses too: OK
    EXPECT_EQ(form.knopf(0, "Ehepartner").get("Value").toInt(), 1);
    ASSERT_TRUE(zelle_aendern(0, zeile_von(35), "Markierung", Value(true)));
    ASSERT_TRUE(weiter());

    seite_gewechselt(2, 3);
    EXPECT_TRUE(form.verknuepfungen_aktuell);
    EXPECT_GT(form.grid(1).Rows(), 0);
    seite_gewechselt(3, 4);
    form.Zeichensatz(0).set("Value", Value(true));
    form.Zeichensatz(1).set("Value", Value(false));
    for (int i = 0; i < 4; ++i)
        form.Datenschutzcheck(i).set("Value", Value(0));
    form.nur_auf_55().set("Value", Value(1));
    form.Chancheck().set("Value", Value(1));
    form.Anmerkung().set("Text", Value("Für Vetter Paul"));
    seite_gewechselt(4, 5);
    form.Verzeichnis(1).set("Text", Value(dir.path()));
    form.Verzeichnis(2).set("Text", Value("Familie"));
    verzeichnis_geaendert(2);
    ASSERT_TRUE(starten());
    ASSERT_EQ(Exportstarten(), ExportErgebnis::Fertig);

    const std::string befehl = wie_die_befehlszeile(kopie);
    const std::string wizard = ohne_zeitpunkt(dir.file("Familie.GED"));
    EXPECT_GT(wizard.size(), 1000u);
    EXPECT_EQ(erste_abweichung(wizard, befehl), "");
}

} // namespace
} // namespace folio::test
