// Speed of the person grid on the screen (the offscreen platform) on generated trees: page 2
// entered with the grid set up already (as the choice of the tree on page 1 leaves it), until
// the first screen is painted; scrolling to the end and back a screen at a time, with the
// slowest repaint; a filter on the surname typed into the filter row, until its rows are
// painted. Prints the times and the rows shown.
//
//   bench_grid_qt [persons...]      (default 10000 100000)

#include "baeume.h"
#include "wizard/auswahl.h"
#include "wizard/datengrid.h"
#include "wizard/grid_aufbau.h"
#include "wizard/qt/filterkopf.h"
#include "wizard/qt/gridansicht.h"

#include <QApplication>
#include <QLineEdit>
#include <QScrollBar>
#include <QTableView>
#include <QTest>

#include <algorithm>
#include <cstdio>
#include <string>

using namespace folio;
using bench::sekunden;

namespace {

// The rows are counted after the step has run.
void bericht(const char* was, double s, const Datengrid& grid) {
    std::printf("    %-44s %8.3f s, %9lld rows\n", was, s, static_cast<long long>(grid.Rows()));
}

// Paints what the table shows now, as the screen would.
void malen(qt::Gridansicht& ansicht) {
    QApplication::processEvents();
    ansicht.tabelle()->viewport()->repaint();
}

// A screen at a time from the top to the end and back; the slowest step.
double blaettern(qt::Gridansicht& ansicht, int schritte_hoechstens, int& schritte) {
    QScrollBar* balken = ansicht.tabelle()->verticalScrollBar();
    const int seite = std::max(balken->pageStep(), 1);
    const int weite =
        std::max((balken->maximum() + schritte_hoechstens - 1) / schritte_hoechstens, seite);
    double langsamste = 0;
    schritte = 0;
    for (int richtung : {1, -1})
        for (int wert = richtung > 0 ? 0 : balken->maximum();
             richtung > 0 ? wert <= balken->maximum() : wert >= 0; wert += richtung * weite) {
            langsamste = std::max(langsamste, sekunden([&] {
                                      balken->setValue(wert);
                                      malen(ansicht);
                                  }));
            ++schritte;
        }
    return langsamste;
}

void run(long long persons) {
    bench::im_persongrid(persons, [](Datengrid& grid) {
        bericht("grid set up on page 1 (model only)", sekunden([] { personengrid_aufbauen(); }),
                grid);
        std::unique_ptr<qt::Gridansicht> ansicht;
        bericht("page 2 entered: first screen painted", sekunden([&] {
                    ansicht = std::make_unique<qt::Gridansicht>(0);
                    ansicht->resize(1100, 600);
                    ansicht->show();
                    malen(*ansicht);
                }),
                grid);
        bericht("to the last row and back", sekunden([&] {
                    ansicht->tabelle()->scrollToBottom();
                    malen(*ansicht);
                    ansicht->tabelle()->scrollToTop();
                    malen(*ansicht);
                }),
                grid);
        int schritte = 0;
        const double langsamste = blaettern(*ansicht, 400, schritte);
        std::printf("    %-44s %8.3f s, %9d steps\n", "scrolling down and up: slowest repaint",
                    langsamste, schritte);
        auto* surn = qobject_cast<QLineEdit*>(ansicht->filterkopf()->zelle(grid.GetCol("SURN")));
        if (surn)
            bericht("filter on the surname \"M\" typed, painted", sekunden([&] {
                        QTest::keyClicks(surn, "M");
                        QTest::keyClick(surn, Qt::Key_Return);
                        malen(*ansicht);
                    }),
                    grid);
    });
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication anwendung(argc, argv);
    return bench::hauptprogramm(argc, argv, "bench_grid_qt", run);
}
