#include "frame/form.h"
#include "frame/globals.h"
#include "frame/ini.h"
#include "frame/meldung.h"
#include "frame/platform.h"
#include "frame/sprache.h"
#include "support/language_db.h"
#include "support/scripted_scope.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

using namespace folio;

namespace {

// A language database with the awkward rows, opened as the program's language texts.
struct Texts : ::testing::Test {
    test::TempDir dir;
    test::ScriptedScope scripted;

    void SetUp() override {
        const std::string path = dir.file("language.mdb");
        test::createLanguageDb(
            path, {{485, Value("Meldung weiterhin anzeigen"), Value("Show this message again")},
                   {242, Value("wurde nicht gefunden: "), Value("")}, // no English text
                   {300, Value(""), Value(nullptr)},                  // no text at all
                   {301, Value("XXX"), Value("XXX")},                 // blanked by a translator
                   {302, Value("#PROGNAME# in #DATENPATH#"), Value("#APPNAME# #SUPPORTEMAIL#!")},
                   {604, Value("GEDCOM Export starten"), Value("Start GEDCOM export")},
                   {610, Value("Kopf"), Value("Header")},
                   {611, Value("Tipp"), Value("Tip")}});
        Datenpfad = dir.path().string();
        Produktname = "Stammfolio";
        Sprache = "Deutsch";
        Kurzhilfe = 1;
        sprache_oeffnen(path);
    }
    void TearDown() override {
        sprache_schliessen();
        Sprache = "Deutsch";
    }
};

} // namespace

TEST_F(Texts, FallbacksOfSprachtext) {
    EXPECT_EQ(sprachtext("485 Meldung weiterhin anzeigen"), "Meldung weiterhin anzeigen");
    EXPECT_EQ(sprachtext("485"), "Meldung weiterhin anzeigen");
    EXPECT_EQ(sprachtext("  485 anything"), "Meldung weiterhin anzeigen");
    Sprache = "English";
    EXPECT_EQ(sprachtext("485 Meldung weiterhin anzeigen"), "Show this message again");
    EXPECT_EQ(sprachtext("242"), "wurde nicht gefunden: "); // German where English is empty
    EXPECT_EQ(sprachtext("300"), "??300??");                // empty in both
    EXPECT_EQ(sprachtext("301"), "");                       // "XXX"
    EXPECT_EQ(sprachtext("999 Gibt es nicht"), "???");      // no row
    EXPECT_EQ(sprachtext(""), "");
    EXPECT_EQ(sprachtext("   "), "");
    EXPECT_EQ(sprachtext("Ohne Nummer"), "");
    EXPECT_EQ(sprachtext("0"), "");
    EXPECT_EQ(sprachtext("302"), "Stammfolio !");
    Sprache = "Deutsch";
    EXPECT_EQ(sprachtext("302"), "Stammfolio in " + Datenpfad);
    Sprache = "Klingonisch"; // a language without a field
    EXPECT_EQ(sprachtext("485"), "???");
}

TEST_F(Texts, FormsAreTranslatedClassByClass) {
    Form form("Auswahl");
    form.set("Caption", Value("568 GEDCOM Export 5.5"));
    Control& command = form.addControl("Command", "Exportstarten");
    command.set("Caption", Value("604 GEDCOM Export starten"));
    command.set("ToolTipText", Value("611"));
    command.items("MenuButtons") = {PropertyBag(), PropertyBag()};
    command.items("MenuButtons")[0].set("Caption", Value("610"));
    command.items("MenuButtons")[1].set("Caption", Value("-"));
    Control& check = form.addControl("CheckBox", "Chancheck");
    check.set("Caption", Value("design text"));
    check.set("Tag", Value("485"));
    Control& noTag = form.addControl("CheckBox", "nur_auf_55");
    noTag.set("Caption", Value("keeps its text"));
    noTag.set("Tag", Value(""));
    Control& label = form.addControl("Label", "Hinweis");
    label.set("Caption", Value("Kein Schlüssel")); // no number: becomes ""
    Control& bare = form.addControl("Label", "OhneTipp");
    bare.set("Caption", Value("610")); // lacks ToolTipText: the rest still happens
    Control& list = form.addControl("ListView", "Liste");
    list.items("ColumnHeaders") = {PropertyBag()};
    list.items("ColumnHeaders")[0].set("Tag", Value("610"));
    list.items("ColumnHeaders")[0].set("Text", Value("x"));
    list.items("ColumnHeaders")[0].set("ToolTipText", Value("0"));
    Control& tree = form.addControl("TreeView", "Baum");
    tree.set("Caption", Value("604"));

    Sprache = "English";
    formular_uebersetzen(form);
    EXPECT_EQ(form.text("Caption"), "???"); // 568 isn't in this small database
    EXPECT_EQ(form.get("MousePointer"), Value(MausSanduhr));
    EXPECT_EQ(command.text("Caption"), "Start GEDCOM export");
    EXPECT_EQ(command.text("ToolTipText"), "Tip");
    EXPECT_EQ(command.items("MenuButtons")[0].text("Caption"), "Header");
    EXPECT_EQ(command.items("MenuButtons")[1].text("Caption"), "-");
    EXPECT_EQ(check.text("Caption"), "Show this message again");
    EXPECT_EQ(noTag.text("Caption"), "keeps its text");
    EXPECT_EQ(label.text("Caption"), "");
    EXPECT_EQ(bare.text("Caption"), "Header");
    EXPECT_EQ(list.items("ColumnHeaders")[0].text("Text"), "Header");
    EXPECT_EQ(list.items("ColumnHeaders")[0].text("ToolTipText"), "0"); // n > 0 only
    EXPECT_EQ(tree.text("Caption"), "604");

    // Without short help the tooltips go.
    Kurzhilfe = 0;
    Form other("Other");
    Control& c = other.addControl("Command", "Knopf");
    c.set("Caption", Value("604"));
    c.set("ToolTipText", Value("611"));
    formular_uebersetzen(other);
    EXPECT_EQ(c.text("ToolTipText"), "");
    Kurzhilfe = 1;
}

TEST_F(Texts, MeldungRemembersTheCheckBox) {
    scripted->answers.push_back({AntwortAbbrechen, 0}); // the user unticks the box
    EXPECT_EQ(meldung_abschaltbar("Achtung", StilInfo, "T", "Sortierung"), AntwortAbbrechen);
    ASSERT_EQ(scripted->shown.size(), 1u);
    EXPECT_TRUE(scripted->shown[0].checkboxShown);
    EXPECT_EQ(scripted->shown[0].checkboxText, "Meldung weiterhin anzeigen");
    EXPECT_EQ(scripted->shown[0].checkboxValue, 1);
    EXPECT_EQ(ini_lesen(programm_ini(), "Msgboxen", "Sortierung", "1"), "0");
    // Silenced from now on.
    EXPECT_EQ(meldung_abschaltbar("Achtung", StilInfo, "T", "Sortierung"), 0);
    EXPECT_EQ(scripted->shown.size(), 1u);

    // Without an ini key nothing is written.
    EXPECT_EQ(meldung("Text", StilFehler, "Titel"), AntwortOk);
    EXPECT_EQ(scripted->shown.back().style, StilFehler);
    EXPECT_EQ(ini_lesen(programm_ini(), "Msgboxen", "", "none"), "none");
}
