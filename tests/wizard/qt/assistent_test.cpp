// The wizard's window on a copy of the staged program, driven as a user drives it: the
// buttons as they show the conditions of Next and Finish, and the walk through the five pages
// that ends in the command line's file.
#include "frame/start.h"
#include "rundgang.h"
#include "support/gedcom_vergleich.h"
#include "support/qt_anwendung.h"
#include "support/wizard_fixture.h"
#include "wizard/qt/assistent.h"
#include "wizard/qt/qt_plattform.h"
#include "wizard/qt/startfenster.h"
#include "wizard/zeile_vorbereiten.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>
#include <QTreeWidget>

#include <functional>
#include <sstream>

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

TEST_F(Fenster, MessageBoxesInTheStylesOfTheProgram) {
    qt::QtPlattform plattform;
    Sprache = "Deutsch";
    qt::qt_texte_laden();
    // Looks at the box once it is up, then answers with `antworten`.
    auto pruefen = [](const std::function<void(QMessageBox&)>& antworten) {
        QTimer::singleShot(0, [antworten] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            ASSERT_TRUE(box);
            antworten(*box);
        });
    };

    // Yes and No, a question, the second button the default one, the check box ticked.
    MessageRequest frage;
    frage.text = "Weiter?";
    frage.style = 4 + 32 + 256;
    frage.title = "Titel";
    frage.checkboxShown = true;
    frage.checkboxText = "Meldung weiterhin anzeigen";
    frage.checkboxValue = 1;
    pruefen([](QMessageBox& box) {
        EXPECT_EQ(box.windowTitle(), "Titel");
        EXPECT_EQ(box.icon(), QMessageBox::Question);
        ASSERT_EQ(box.buttons().size(), 2);
        EXPECT_EQ(box.defaultButton(), box.button(QMessageBox::No));
        EXPECT_EQ(box.button(QMessageBox::Yes)->text(), "&Ja");
        ASSERT_TRUE(box.checkBox());
        EXPECT_EQ(box.checkBox()->text(), "Meldung weiterhin anzeigen");
        EXPECT_TRUE(box.checkBox()->isChecked());
        QTest::keyClick(&box, Qt::Key_Return);
    });
    MessageAnswer antwort = plattform.showMessage(frage);
    EXPECT_EQ(antwort.button, AntwortNein);
    EXPECT_EQ(antwort.checkboxValue, 1);

    // Yes pressed with the box cleared.
    pruefen([](QMessageBox& box) {
        box.checkBox()->setChecked(false);
        box.button(QMessageBox::Yes)->click();
    });
    antwort = plattform.showMessage(frage);
    EXPECT_EQ(antwort.button, AntwortJa);
    EXPECT_EQ(antwort.checkboxValue, 0);

    // An error: OK alone, the icon of an error, no check box; its state comes back as given.
    pruefen([](QMessageBox& box) {
        EXPECT_EQ(box.icon(), QMessageBox::Critical);
        EXPECT_EQ(box.buttons().size(), 1);
        EXPECT_FALSE(box.checkBox());
        QTest::keyClick(&box, Qt::Key_Escape);
    });
    MessageRequest fehler;
    fehler.text = "Fehler";
    fehler.style = 16;
    antwort = plattform.showMessage(fehler);
    EXPECT_EQ(antwort.button, AntwortOk);
    EXPECT_EQ(antwort.checkboxValue, -2);
}

TEST_F(Fenster, TheProgressOfAnUpgradeComesAndGoesWithItsFormAndTakesEscape) {
    qt::Fortschrittsdialog dialog;
    dialog.abgleichen();
    EXPECT_FALSE(dialog.isVisible());

    FortschrittForm& form = Fortschrittfrm();
    form.steuerelement("Info").set("Caption", Value("Tabelle Daten"));
    form.steuerelement("Update").set("Max", Value(8));
    form.steuerelement("Update").set("Value", Value(3));
    dialog.abgleichen();
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_EQ(dialog.findChild<QLabel*>()->text(), "Tabelle Daten");
    EXPECT_EQ(dialog.findChild<QProgressBar*>()->value(), 3);

    // Escape asks the upgrade to stop; the dialog stays until the upgrade unloads it.
    QTest::keyClick(&dialog, Qt::Key_Escape);
    EXPECT_TRUE(form.abbrechen);
    EXPECT_TRUE(dialog.isVisible());
    form.entladen();
    dialog.abgleichen();
    EXPECT_FALSE(dialog.isVisible());
}

// The lines that `mit` has beyond `ohne`, where `ohne` is `mit` with one run of lines taken
// out; "?" where the two differ otherwise.
std::string herausgenommen(const std::string& mit, const std::string& ohne) {
    std::size_t vorn = 0;
    while (vorn < ohne.size() && mit[vorn] == ohne[vorn])
        ++vorn;
    vorn = mit.rfind('\n', vorn - 1) + 1; // whole lines
    const std::size_t laenge = mit.size() - ohne.size();
    if (mit.size() < ohne.size() || mit.compare(vorn + laenge, std::string::npos, ohne, vorn) != 0)
        return "?";
    return mit.substr(vorn, laenge);
}

TEST_F(Fenster, TheWalkThroughThePagesWritesWhatTheCommandLineWrites) {
    const std::string kopie = kopie_anlegen();
    beispiel_zuletzt();
    laden();
    qt::Assistent f;
    f.show();
    rundgang::Wahl wahl;
    wahl.zielordner = dir.path();
    int seiten = 0;
    std::string gestrichen;
    rundgang::gehen(f, wahl, [&](int seite) {
        EXPECT_EQ(f.seite(), seite);
        ++seiten;
        if (seite == 3) {
            Datengrid& g = Auswahl().grid(1);
            EXPECT_FALSE(ist_wahr(g.Text("Markierung", 1)));
            gestrichen = g.Text("Listentext", 1);
        }
    });
    EXPECT_EQ(seiten, 5);
    ASSERT_TRUE(fs::exists(dir.file("Familie.GED")));

    // The command line with the same options; it can't strike out single records, so the
    // wizard's file is the command line's without the lines of the event struck out.
    const std::string befehl = wie_die_befehlszeile(kopie);
    const std::string wizard = ohne_zeitpunkt(dir.file("Familie.GED"));
    EXPECT_GT(wizard.size(), 1000u);
    const std::string weg = herausgenommen(befehl, wizard);
    ASSERT_NE(weg, "?") << erste_abweichung(wizard, befehl);
    ASSERT_FALSE(weg.empty());
    // The first row of the linked events is the baptism of Friedrich Wilhelm on 1 September
    // 1907: its block, all of it and nothing else.
    EXPECT_TRUE(gestrichen.starts_with("Taufe von Friedrich Wilhelm Hollerbach")) << gestrichen;
    EXPECT_TRUE(weg.starts_with("1 CHR\r\n2 DATE 01 SEP 1907\r\n")) << weg;
    std::istringstream zeilen(weg);
    std::string zeile;
    std::getline(zeilen, zeile);
    while (std::getline(zeilen, zeile))
        EXPECT_GE(zeile.front(), '2') << weg;
}

} // namespace
} // namespace folio::test
