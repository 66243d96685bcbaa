// folio-screenshots: the wizard's window walked through its five pages on a copy of the
// staged folders, one picture per page. Questions are answered as a user who agrees would
// answer them. Run it under a display (Xvfb for a machine without one):
//
//   folio-screenshots STAGE-COPY OUTPUT-FOLDER de|en

#include "database/tabellen.h"
#include "frame/globals.h"
#include "frame/ini.h"
#include "frame/sprache.h"
#include "frame/start.h"
#include "rundgang.h"
#include "wizard/auswahl.h"
#include "wizard/formular.h"
#include "wizard/qt/assistent.h"
#include "wizard/qt/qt_plattform.h"
#include "wizard/qt/startfenster.h"

#include <QApplication>
#include <QDir>
#include <QPixmap>

#include <cstdio>
#include <exception>
#include <memory>

using namespace folio;

namespace {

// The desktop's platform, but every message is answered with its default button at once and
// the help isn't opened.
class Vorfuehrung : public qt::QtPlattform {
public:
    MessageAnswer showMessage(const MessageRequest& request) override {
        std::printf("  message: %s\n", request.text.substr(0, 70).c_str());
        return {(request.style & 7) == 4 || (request.style & 7) == 3 ? AntwortJa : AntwortOk,
                request.checkboxValue};
    }
    void oeffnen(const std::string&) override {}
};

} // namespace

int main(int argc, char** argv) {
    if (argc != 4) {
        std::fprintf(stderr, "usage: folio-screenshots STAGE-COPY OUTPUT-FOLDER de|en\n");
        return 2;
    }
    const std::string stage = argv[1];
    const QString ziel = QString::fromLocal8Bit(argv[2]);
    const std::string sprache = argv[3];
    QApplication anwendung(argc, argv);
    auto eigene = std::make_unique<Vorfuehrung>();
    Vorfuehrung& plattform = *eigene;
    setPlatform(std::move(eigene));
    QDir().mkpath(ziel);
    try {
        StartForm start;
        if (!programm_starten(start, stage + "/Stammfolio/Folioexport").ok)
            return 3;
        qt::qt_texte_laden();
        ini_schreiben(programm_ini(), "SF-Files", "0", pfad_verbinden(Datenpfad, "Beispiel.SF6"));
        Form_Load(start);
        qt::Assistent fenster;
        plattform.abgleicher.push_back([&] { fenster.abgleichen(); });
        fenster.resize(1180, 780);
        fenster.show();
        rundgang::Wahl wahl;
        wahl.zielordner = stage;
        rundgang::gehen(fenster, wahl, [&](int seite) {
            fenster.abgleichen();
            for (int i = 0; i < 5; ++i)
                QApplication::processEvents();
            const QString datei =
                QStringLiteral("%1/%2-seite%3.png").arg(ziel).arg(sprache.c_str()).arg(seite);
            fenster.grab().save(datei);
            std::printf("%s\n", datei.toLocal8Bit().constData());
        });
        plattform.abgleicher.clear();
    } catch (const std::exception& e) {
        std::fprintf(stderr, "folio-screenshots: %s\n", e.what());
        return 1;
    }
    Auswahl_verwerfen();
    alle_schliessen("");
    sprache_schliessen();
    return 0;
}
