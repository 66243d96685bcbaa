// folioexport: the GEDCOM export wizard on the desktop. Start-up as the command line starts
// (folders, language, the splash), the form's load behind the splash, then the wizard's
// window until the user ends it.

#include "database/tabellen.h"
#include "frame/globals.h"
#include "frame/meldung.h"
#include "frame/sprache.h"
#include "frame/start.h"
#include "wizard/auswahl.h"
#include "wizard/formular.h"
#include "wizard/qt/assistent.h"
#include "wizard/qt/qt_plattform.h"
#include "wizard/qt/startfenster.h"

#include <QApplication>
#include <QIcon>

#include <exception>
#include <memory>

using namespace folio;

int main(int argc, char** argv) {
    QApplication anwendung(argc, argv);
    QApplication::setApplicationName(QStringLiteral("folioexport"));
    QApplication::setApplicationVersion(QStringLiteral(FOLIO_VERSION));
    QApplication::setWindowIcon(QIcon::fromTheme(QStringLiteral("folioexport")));

    auto eigene = std::make_unique<qt::QtPlattform>();
    qt::QtPlattform& plattform = *eigene;
    setPlatform(std::move(eigene));

    StartForm start;
    qt::Startfenster startfenster(start);
    qt::Fortschrittsdialog fortschritt;
    plattform.abgleicher.push_back([&] { startfenster.abgleichen(); });
    plattform.abgleicher.push_back([&] { fortschritt.abgleichen(); });

    if (!programm_starten(start).ok)
        return 3;
    qt::qt_texte_laden();
    int ergebnis = 0;
    try {
        Form_Load(start);
        startfenster.abgleichen();
        qt::Assistent fenster;
        plattform.abgleicher.push_back([&] { fenster.abgleichen(); });
        fenster.show();
        ergebnis = QApplication::exec();
        plattform.abgleicher.pop_back();
    } catch (const std::exception& e) {
        meldung(e.what(), StilFehler, Produktname);
        ergebnis = 1;
    }
    Auswahl_verwerfen();
    alle_schliessen("");
    sprache_schliessen();
    return ergebnis;
}
