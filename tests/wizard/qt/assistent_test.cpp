// The wizard's window on a copy of the staged program, driven as a user drives it: the
// buttons as they show the conditions of Next and Finish, and the walk through the five pages
// that ends in the command line's file.
#include "rundgang.h"
#include "support/gedcom_vergleich.h"
#include "support/qt_anwendung.h"
#include "support/wizard_fixture.h"
#include "wizard/qt/assistent.h"

#include <gtest/gtest.h>

#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTreeWidget>

namespace folio::test {
namespace {

struct Fenster : WizardFixture {
    void SetUp() override {
        qt_anwendung();
        WizardFixture::SetUp();
    }
    QPushButton* knopf(qt::Assistent& f, qt::Assistent::Knopf k) { return f.knopf(k); }
};

TEST_F(Fenster, TheButtonsShowTheConditionsOfNextAndFinish) {
    laden(); // nothing proposed
    qt::Assistent f;
    f.show();
    using K = qt::Assistent::Knopf;
    EXPECT_EQ(f.seite(), 1);
    EXPECT_FALSE(f.knopf(K::Weiter)->isEnabled());
    EXPECT_FALSE(f.knopf(K::Zurueck)->isEnabled());
    EXPECT_FALSE(f.knopf(K::Starten)->isVisible());
    EXPECT_EQ(f.knopf(K::Weiter)->text(), "&Weiter>");

    // The file of the list opens; Next follows.
    QListWidget* liste = f.dateiseite()->dateien();
    ASSERT_EQ(liste->count(), 1);
    QTest::mouseClick(liste->viewport(), Qt::LeftButton, {},
                      liste->visualItemRect(liste->item(0)).center());
    EXPECT_TRUE(f.knopf(K::Weiter)->isEnabled());
    EXPECT_GT(f.dateiseite()->informationen()->topLevelItemCount(), 10);

    // Page 2 with nobody marked: Next off until a tick.
    rundgang::klicken(f.knopf(K::Weiter));
    rundgang::menue(f, "Abwählen");
    EXPECT_EQ(f.seite(), 2);
    EXPECT_FALSE(f.knopf(K::Weiter)->isEnabled());
    rundgang::haken(f, 0, 1, true);
    EXPECT_TRUE(f.knopf(K::Weiter)->isEnabled());

    // Page 5: a name of blanks switches both start buttons off.
    for (int i = 0; i < 3; ++i)
        rundgang::klicken(f.knopf(K::Weiter));
    EXPECT_EQ(f.seite(), 5);
    EXPECT_FALSE(f.knopf(K::Weiter)->isVisible());
    EXPECT_TRUE(f.knopf(K::Starten)->isEnabled());
    f.zielseite()->name()->selectAll();
    QTest::keyClicks(f.zielseite()->name(), "   ");
    EXPECT_FALSE(f.knopf(K::Starten)->isEnabled());
    EXPECT_FALSE(f.zielseite()->starten()->isEnabled());
    QTest::keyClicks(f.zielseite()->name(), "a:b");
    EXPECT_EQ(f.zielseite()->name()->text(), "   ab");
    EXPECT_TRUE(f.knopf(K::Starten)->isEnabled());

    // Back to page 4 and on: the note typed there is stored on leaving.
    rundgang::klicken(f.knopf(K::Zurueck));
    f.optionsseite()->anmerkung()->setPlainText("Notiz");
    rundgang::klicken(f.knopf(K::Zurueck));
    EXPECT_EQ(rs_Version->get("gedcom_anmerkung").text(), "Notiz");
}

TEST_F(Fenster, TheWalkThroughThePagesWritesWhatTheCommandLineWrites) {
    fs::create_directories(dir.file("cli"));
    const std::string kopie = dir.file("cli/Beispiel.SF6");
    fs::copy_file(dir.file("Daten/Beispiel.SF6"), kopie);
    beispiel_zuletzt();
    laden();
    qt::Assistent f;
    f.show();
    rundgang::Wahl wahl;
    wahl.zielordner = dir.path();
    wahl.streichen = false; // the command line can't strike out single records
    int seiten = 0;
    rundgang::gehen(f, wahl, [&](int seite) {
        EXPECT_EQ(f.seite(), seite);
        ++seiten;
    });
    EXPECT_EQ(seiten, 5);
    ASSERT_TRUE(fs::exists(dir.file("Familie.GED")));

    const Result r = run(cli + " export " + kopie + " -o " + dir.file("cli/Familie.GED") +
                         " --person 35 --ancestors --spouses --charset ansi --privacy none"
                         " --strict-55 --change-stamps --note 'Für Vetter Paul'");
    ASSERT_EQ(r.status, 0) << r.output;
    const std::string wizard = ohne_zeitpunkt(dir.file("Familie.GED"));
    EXPECT_GT(wizard.size(), 1000u);
    EXPECT_EQ(erste_abweichung(wizard, ohne_zeitpunkt(dir.file("cli/Familie.GED"))), "");
}

} // namespace
} // namespace folio::test
