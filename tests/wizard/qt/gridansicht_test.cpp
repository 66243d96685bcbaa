// The grids on the screen over the sample tree: the filter row typed into, picked from,
// switched off and cancelled; the tick with the switches of the tool bar; the sort by a click
// on a caption; the columns as the grid lays them out and as the user changes them; and the
// tables of the linked records.
#include "frame/ini.h"
#include "frame/sprache.h"
#include "support/qt_anwendung.h"
#include "support/wizard_fixture.h"
#include "wizard/filter.h"
#include "wizard/grid_aufbau.h"
#include "wizard/personengrid.h"
#include "wizard/qt/filterkopf.h"
#include "wizard/qt/gridansicht.h"
#include "wizard/qt/qt_plattform.h"
#include "wizard/qt/werkzeugleisten.h"
#include "wizard/seiten.h"
#include "wizard/zeile_vorbereiten.h"

#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QComboBox>
#include <QLineEdit>
#include <QMenu>
#include <QProgressBar>
#include <QTableView>
#include <QTest>
#include <QToolButton>

#include <memory>

namespace folio::test {
namespace {

struct Gridfenster : WizardFixture {
    std::unique_ptr<qt::Gridansicht> ansicht;
    qt::Gridtabelle* modell = nullptr;
    qt::Filterkopf* kopf = nullptr;

    void SetUp() override {
        qt_anwendung();
        WizardFixture::SetUp();
        beispiel_zuletzt();
        laden();
    }
    void TearDown() override {
        ansicht.reset();
        WizardFixture::TearDown();
    }
    void zeigen(int index, int breite = 1400) {
        ansicht = std::make_unique<qt::Gridansicht>(index);
        ansicht->resize(breite, 700);
        ansicht->show();
        QApplication::processEvents();
        modell = ansicht->modell();
        kopf = ansicht->filterkopf();
    }
    Datengrid& g() { return modell->grid(); }
    // The section of a column by its key.
    int sektion(const char* key) { return g().GetCol(key) - 1; }
    QString zelle(int zeile, const char* key, int rolle = Qt::DisplayRole) {
        return modell->data(modell->index(zeile, sektion(key)), rolle).toString();
    }
    QLineEdit* textzelle(const char* key) {
        return qobject_cast<QLineEdit*>(kopf->zelle(g().GetCol(key)));
    }
    QComboBox* listenzelle(const char* key) {
        return qobject_cast<QComboBox*>(kopf->zelle(g().GetCol(key)));
    }
    // A click on the caption of a column, above its filter cell.
    void kopfklick(const char* key) {
        const int s = sektion(key);
        QTest::mouseClick(kopf->viewport(), Qt::LeftButton, {},
                          QPoint(kopf->sectionViewportPosition(s) + kopf->sectionSize(s) / 2, 4));
    }
    QToolButton* knopf(const char* key) { return ansicht->werkzeugleiste()->knopf(key); }
    bool markiert(const std::string& counter) {
        return DB->OpenRecordset("SELECT Markierung FROM Daten WHERE Counter = " + counter)
            ->get(0)
            .toBool();
    }
};

TEST_F(Gridfenster, TheFilterRow) {
    // Set up again: the load proposes the tree before the store of pictures is filled.
    personengrid_aufbauen();
    zeigen(0);
    const int alle = modell->rowCount();
    ASSERT_EQ(alle, g().Rows());

    // A surname typed and confirmed.
    QLineEdit* surn = textzelle("SURN");
    ASSERT_TRUE(surn);
    QTest::keyClicks(surn, "Hollerbach");
    QTest::keyClick(surn, Qt::Key_Return);
    const int hollerbach = modell->rowCount();
    EXPECT_GT(hollerbach, 0);
    EXPECT_LT(hollerbach, alle);
    for (int r = 0; r < hollerbach; ++r)
        EXPECT_TRUE(zelle(r, "SURN").startsWith("Hollerbach")) << zelle(r, "SURN").toStdString();
    EXPECT_FALSE(modell->headerData(sektion("SURN"), Qt::Horizontal, Qt::DecorationRole)
                     .value<QIcon>()
                     .isNull());

    // A place picked from its list: the column takes the key of the entry.
    QComboBox* gort = listenzelle("GOrt");
    ASSERT_TRUE(gort);
    QString ort;
    for (int r = 0; r < hollerbach && ort.isEmpty(); ++r)
        ort = zelle(r, "GOrt");
    const int eintrag = gort->findText(ort);
    ASSERT_GE(eintrag, 0) << ort.toStdString();
    const Filterliste liste = filterliste_fuellen(g(), g().GetCol("GOrt"));
    gort->showPopup();
    gort->view()->setCurrentIndex(gort->model()->index(eintrag, 0));
    QTest::keyClick(gort->view(), Qt::Key_Return);
    EXPECT_EQ(g().Columns("GOrt").Tag.text(),
              liste.eintraege[static_cast<std::size_t>(eintrag)].schluessel.text());
    const int dort = modell->rowCount();
    EXPECT_GT(dort, 0);
    EXPECT_LE(dort, hollerbach);
    for (int r = 0; r < dort; ++r)
        EXPECT_EQ(zelle(r, "GOrt"), ort);

    // The right button switches the surname off, its text struck out, and on again.
    QTest::mouseClick(surn, Qt::RightButton);
    EXPECT_TRUE(g().Columns("SURN").FilterShowDisabled);
    EXPECT_EQ(surn->text(), "Hollerbach");
    EXPECT_TRUE(surn->font().strikeOut());
    EXPECT_GE(modell->rowCount(), dort);
    QTest::mouseClick(surn, Qt::RightButton);
    EXPECT_FALSE(surn->font().strikeOut());
    EXPECT_EQ(modell->rowCount(), dort);

    // Escape: No keeps what was typed, Yes gives back the texts last applied.
    surn->selectAll();
    QTest::keyClicks(surn, "Meier");
    scripted->answers = {{AntwortNein, -2}};
    QTest::keyClick(surn, Qt::Key_Escape);
    ASSERT_EQ(scripted->shown.size(), 1u);
    EXPECT_EQ(scripted->shown[0].text, "Filterbearbeitung wirklich abbrechen?");
    EXPECT_EQ(surn->text(), "Meier");
    scripted->answers = {{AntwortJa, -2}};
    QTest::keyClick(surn, Qt::Key_Escape);
    EXPECT_EQ(surn->text(), "Hollerbach");
    EXPECT_EQ(gort->currentText(), ort);
    EXPECT_EQ(modell->rowCount(), dort) << "the query isn't run again";
}

TEST_F(Gridfenster, TheTickWithTheSwitches) {
    zeigen(0);
    QMenu* menue = knopf("Markieren")->menu();
    ASSERT_TRUE(menue);
    auto abwaehlen = [&] {
        for (QAction* a : menue->actions())
            if (a->text() == QString::fromStdString(sprachtext("232 Alle Abwählen")))
                a->trigger();
        EXPECT_EQ(
            DB->OpenRecordset("SELECT count(*) FROM Daten WHERE Markierung = True")->get(0).toInt(),
            0);
    };
    abwaehlen();

    // The ancestors, and the spouses that the question brings along (answered OK).
    QTest::mouseClick(knopf("Vorfahren"), Qt::LeftButton);
    EXPECT_TRUE(knopf("Vorfahren")->isChecked());
    EXPECT_EQ(scripted->shown.size(), 1u);
    EXPECT_TRUE(knopf("Ehepartner")->isChecked()) << "the view shows what the switch brought";
    EXPECT_TRUE(Auswahl().gedrueckt(0, "Ehepartner"));

    // A person far down the list with both parents: the tick marks them, and the row stays
    // the current one.
    int zeile = -1;
    std::string vater, mutter;
    for (int r = modell->rowCount() - 1; r >= 0 && zeile < 0; --r) {
        auto rs = DB->OpenRecordset("SELECT Vater, Mutter FROM Daten WHERE Counter = " +
                                    zelle(r, "Counter").toStdString());
        if (rs->get(0).toInt() > 0 && rs->get(1).toInt() > 0) {
            zeile = r;
            vater = rs->get(0).text();
            mutter = rs->get(1).text();
        }
    }
    ASSERT_GE(zeile, 0);
    const QModelIndex haken = modell->index(zeile, sektion("Markierung"));
    ASSERT_TRUE(modell->flags(haken) & Qt::ItemIsUserCheckable);
    ansicht->tabelle()->setCurrentIndex(haken);
    EXPECT_TRUE(modell->setData(haken, Qt::Checked, Qt::CheckStateRole));
    EXPECT_EQ(modell->data(haken, Qt::CheckStateRole).toInt(), Qt::Checked);
    EXPECT_TRUE(markiert(zelle(zeile, "Counter").toStdString()));
    EXPECT_TRUE(markiert(vater));
    EXPECT_TRUE(markiert(mutter));
    QApplication::processEvents();
    EXPECT_EQ(ansicht->tabelle()->currentIndex(), haken);

    // Descendants alone: the father's tick marks his child, not his wife.
    abwaehlen();
    QTest::mouseClick(knopf("Vorfahren"), Qt::LeftButton);
    QTest::mouseClick(knopf("Nachfahren"), Qt::LeftButton);
    QTest::mouseClick(knopf("Ehepartner"), Qt::LeftButton);
    EXPECT_FALSE(knopf("Vorfahren")->isChecked());
    EXPECT_TRUE(knopf("Nachfahren")->isChecked());
    EXPECT_FALSE(knopf("Ehepartner")->isChecked());
    const std::string kind = zelle(zeile, "Counter").toStdString();
    int vaterzeile = -1;
    for (int r = 0; r < modell->rowCount() && vaterzeile < 0; ++r)
        if (zelle(r, "Counter").toStdString() == vater)
            vaterzeile = r;
    ASSERT_GE(vaterzeile, 0);
    EXPECT_TRUE(modell->setData(modell->index(vaterzeile, sektion("Markierung")), Qt::Checked,
                                Qt::CheckStateRole));
    EXPECT_TRUE(markiert(vater));
    EXPECT_TRUE(markiert(kind));
    EXPECT_FALSE(markiert(mutter));

    // "Lebend": the living are red, and their tick is refused without a word.
    QTest::mouseClick(knopf("Lebend"), Qt::LeftButton);
    EXPECT_TRUE(knopf("Lebend")->isChecked());
    int lebend = -1;
    for (int r = 0; r < modell->rowCount() && lebend < 0; ++r)
        if (ist_wahr(zelle(r, "Lebt").toStdString()))
            lebend = r;
    ASSERT_GE(lebend, 0);
    const QModelIndex lebender = modell->index(lebend, sektion("Markierung"));
    EXPECT_EQ(modell->data(lebender, Qt::ForegroundRole).value<QColor>(), QColor(Qt::red));
    const std::size_t gezeigt = scripted->shown.size();
    EXPECT_FALSE(modell->setData(lebender, Qt::Checked, Qt::CheckStateRole));
    EXPECT_EQ(modell->data(lebender, Qt::CheckStateRole).toInt(), Qt::Unchecked);
    EXPECT_FALSE(markiert(zelle(lebend, "Counter").toStdString()));
    EXPECT_EQ(scripted->shown.size(), gezeigt);
}

TEST_F(Gridfenster, AClickOnACaptionSorts) {
    zeigen(0);
    EXPECT_EQ(kopf->sortIndicatorSection(), sektion("SURN"));
    kopfklick("GIVN");
    EXPECT_EQ(g().SortOrder(), "[GIVN]");
    EXPECT_EQ(kopf->sortIndicatorSection(), sektion("GIVN"));
    EXPECT_EQ(kopf->sortIndicatorOrder(), Qt::AscendingOrder);
    kopfklick("GIVN");
    EXPECT_EQ(g().SortOrder(), "[GIVN] DESC");
    EXPECT_EQ(kopf->sortIndicatorOrder(), Qt::DescendingOrder);
    EXPECT_GE(zelle(0, "GIVN").localeAwareCompare(zelle(modell->rowCount() - 1, "GIVN")), 0);

    // A place is a number behind its name: refused, with the message.
    scripted->answers = {{AntwortNein, 1}};
    kopfklick("GOrt");
    EXPECT_EQ(g().SortOrder(), "[GIVN] DESC");
    ASSERT_EQ(scripted->shown.size(), 1u);
    EXPECT_EQ(scripted->shown[0].text, sprachtext("454"));
    EXPECT_EQ(kopf->sortIndicatorSection(), sektion("GIVN"));
    EXPECT_EQ(kopf->sortIndicatorOrder(), Qt::DescendingOrder);
}

TEST_F(Gridfenster, TheColumnsAsLaidOutAndAsTheUserChangesThem) {
    zeigen(0, 600); // narrower than the columns
    EXPECT_TRUE(kopf->isSectionHidden(sektion("Counter")));
    EXPECT_EQ(kopf->zelle(g().GetCol("Counter")), nullptr);
    EXPECT_EQ(kopf->sectionSize(sektion("SURN")), qt::in_pixel(kopf, 1500));
    for (int i = 1; i <= g().Cols(); ++i) {
        const Spalte& sp = g().Columns(i);
        EXPECT_EQ(kopf->visualIndex(i - 1) + 1, sp.Position) << sp.Key;
        // No caption is cut off, however narrow the grid makes its column.
        if (sp.Visible) {
            EXPECT_GE(kopf->sectionSize(i - 1), kopf->beschriftungsbreite(i - 1)) << sp.Key;
        }
    }
    EXPECT_TRUE(zelle(0, "Geschlecht").isEmpty()) << "a picture column shows no text";
    EXPECT_TRUE(modell->headerData(sektion("Markierung"), Qt::Horizontal).toString().isEmpty());

    const std::string sektion_ini = "Stammfolio/" + g().Formularname + "/Datengrid0_Cols";
    auto gespeichert = [&](const char* key) {
        return ini_lesen(spalten_ini(), sektion_ini, key, "");
    };
    // Wider: kept in the grid and stored; narrower than the minimum or the caption: held there.
    kopf->resizeSection(sektion("SURN"), 150);
    const int surn = qt::in_twips(kopf, 150);
    EXPECT_EQ(g().Columns("SURN").Width, surn);
    kopf->resizeSection(sektion("GIVN"), 10);
    const int givn = kopf->sectionSize(sektion("GIVN"));
    EXPECT_EQ(givn, std::max(qt::in_pixel(kopf, 700), kopf->beschriftungsbreite(sektion("GIVN"))));
    // Moved to the front.
    kopf->moveSection(kopf->visualIndex(sektion("SURN")), 0);
    EXPECT_EQ(g().Columns("SURN").Position, 1);
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return gespeichert("SURN") == std::to_string(surn) + ",1,1"; }, 3000))
        << gespeichert("SURN");
    EXPECT_TRUE(gespeichert("GIVN").starts_with(std::to_string(qt::in_twips(kopf, givn)) + ","))
        << gespeichert("GIVN");
    QApplication::processEvents();
    QWidget* feld = kopf->zelle(g().GetCol("SURN"));
    ASSERT_TRUE(feld);
    EXPECT_EQ(feld->x(), kopf->sectionViewportPosition(sektion("SURN")));
    EXPECT_EQ(feld->width(), 150);

    // The next set-up of the grid takes them back, and the view follows.
    personengrid_aufbauen();
    EXPECT_EQ(kopf->sectionSize(sektion("SURN")), 150);
    EXPECT_EQ(kopf->visualIndex(sektion("SURN")), 0);

    // A window wider than the columns: the surname, the widest text column, takes the rest
    // on the screen only.
    ansicht->resize(4000, 700);
    QApplication::processEvents();
    EXPECT_EQ(kopf->length(), ansicht->tabelle()->viewport()->width());
    EXPECT_GT(kopf->sectionSize(sektion("SURN")), 150);
    EXPECT_EQ(g().Columns("SURN").Width, surn);
}

TEST_F(Gridfenster, TheTablesOfTheLinkedRecords) {
    markieren_befehl(0, "Auswählen");
    zeigen(1);
    EXPECT_FALSE(ansicht->findChild<QProgressBar*>()->isVisibleTo(ansicht.get()));

    // While the closure runs its bar stands in place of the table.
    Auswahl().Datengrid(1).set("Visible", Value(false));
    ansicht->abgleichen();
    EXPECT_TRUE(ansicht->findChild<QProgressBar*>()->isVisibleTo(ansicht.get()));
    EXPECT_FALSE(ansicht->tabelle()->isVisibleTo(ansicht.get()));
    seite_gewechselt(2, 3);
    ansicht->abgleichen();
    EXPECT_TRUE(ansicht->tabelle()->isVisibleTo(ansicht.get()));
    EXPECT_TRUE(knopf("Ereignisse")->isChecked());
    EXPECT_EQ(modell->rowCount(), g().Rows());
    EXPECT_TRUE(textzelle("Listentext"));

    // Another table: one button pressed, the columns and their filter cells anew.
    QTest::mouseClick(knopf("Orte"), Qt::LeftButton);
    EXPECT_TRUE(knopf("Orte")->isChecked());
    EXPECT_FALSE(knopf("Ereignisse")->isChecked());
    EXPECT_EQ(g().Formularname, "Orteform");
    EXPECT_EQ(modell->columnCount(), g().Cols());
    EXPECT_EQ(modell->rowCount(), g().Rows());
    EXPECT_TRUE(kopf->isSectionHidden(sektion("Oberort")));
    QLineEdit* name = textzelle("Name");
    ASSERT_TRUE(name);
    QTest::keyClicks(name, "*zzzz*");
    QTest::keyClick(name, Qt::Key_Return);
    EXPECT_EQ(modell->rowCount(), 0);
    // The same button again: the table anew, without its filters.
    QTest::mouseClick(knopf("Orte"), Qt::LeftButton);
    EXPECT_TRUE(knopf("Orte")->isChecked());
    EXPECT_EQ(textzelle("Name")->text(), "");
    EXPECT_GT(modell->rowCount(), 0);
}

} // namespace
} // namespace folio::test
