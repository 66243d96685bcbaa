#include "wizard/formular.h"

#include "engine/abbruch.h"
#include "engine/errors.h"
#include "engine/text_util.h"
#include "frame/fenster.h"
#include "frame/globals.h"
#include "frame/ini.h"
#include "frame/meldung.h"
#include "frame/platform.h"
#include "frame/sprache.h"
#include "frame/start.h"
#include "gedcom/datum.h"
#include "selection/markierungen.h"
#include "wizard/auswahl.h"
#include "wizard/dateiwahl.h"
#include "wizard/exportstart.h"
#include "wizard/icons.h"

#include <csignal>
#include <filesystem>

#ifndef FOLIO_VERSION
#define FOLIO_VERSION "0.0.0"
#endif

namespace folio {

namespace {

constexpr int TwipsProPixel = 15;

// The splash form's bar, and the pending events run once.
void fortschritt(StartForm& start, int wert) {
    start.control("Fortschritt").set("Value", Value(wert));
    platform().repaint(start, &start.control("Fortschritt"));
    platform().doEvents();
}

PropertyBag& fussknopf(AuswahlForm& form, std::string_view key) {
    for (PropertyBag& b : form.control("Coolbar").items("Buttons"))
        if (equalsNoCase(b.text("Key"), key))
            return b;
    throw Error(err::ElementNotFound, "Element not found: " + std::string(key));
}

void zweispaltige_listen(AuswahlForm& form) {
    for (int i = 0; i < 2; ++i) {
        auto& spalten = form.DBGrid(i).items("Columns");
        spalten.clear();
        for (const auto& [key, breite] : {std::pair{"Info", 1400}, std::pair{"Status", 3000}}) {
            PropertyBag& sp = spalten.emplace_back();
            sp.set("Key", Value(key));
            sp.set("Caption", Value(""));
            sp.set("Width", Value(breite));
        }
    }
}

// The steps of the load that set up the frame: size, place, language, help, caption,
// version and side picture.
void rahmen_einrichten(AuswahlForm& form, StartForm& start) {
    Control& wizard = form.sevWizard();
    form.set("Width", Value(wizard.get("Width").toInt() + 100));
    form.set("Height",
             Value(form.control("Coolbar").get("Height").toInt() + wizard.get("Height").toInt()));
    fenster_zentrieren(form);
    formular_uebersetzen(form);
    fortschritt(start, 40);

    form.hilfedatei = Stammpfad + sprachtext("567");
    form.set("Caption", Value(sprachtext("568 GEDCOM Export 5.5")));
    fussknopf(form, "Version").set("Text", Value(sprachtext("1001") + FOLIO_VERSION));
    fussknopf(form, "space").set("Width", Value(form.get("Width").toInt() / TwipsProPixel - 180));
    const std::string bild = pfad_verbinden(Stammpfad, "bmp/prog/archivar.gif");
    std::error_code ec;
    if (std::filesystem::exists(bild, ec))
        wizard.set("Picture", Value(bild));
    fortschritt(start, 60);
}

// The target of the export as it was last used.
void ziel_vorschlagen(AuswahlForm& form) {
    form.Verzeichnis(1).set("Text", Value(ini_lesen(programm_ini(), "GEDCOM", "Pfad",
                                                    form.Verzeichnis(0).text("Text"))));
    form.Verzeichnis(2).set("Text",
                            Value(ini_lesen(programm_ini(), "GEDCOM", "Datei", "Gedcom-Export")));
    verzeichnis_geaendert(2);
}

void startknoepfe_freigeben(AuswahlForm& form, bool an) {
    form.control("Exportstarten").set("Enabled", Value(an));
    form.sevWizard().set("FinishEnabled", Value(an));
}

} // namespace

void Form_Load(StartForm& start) {
    AuswahlForm& form = Auswahl();
    form.set("MousePointer", Value(MausSanduhr));
    for (int i = 0; i < 2; ++i) {
        start.control("Titel", i).set("Caption", Value(sprachtext("568 GEDCOM Export 5.5")));
        platform().repaint(start, &start.control("Titel", i));
    }
    fortschritt(start, 10);
    form.folioexport_ini = pfad_verbinden(Datenpfad, "INI/Folioexport.ini");
    // The folder of the program's settings; a data folder made by hand may lack it.
    std::error_code ec;
    std::filesystem::create_directories(pfad_verbinden(Datenpfad, "INI"), ec);
    rahmen_einrichten(form, start);

    zweispaltige_listen(form);
    for (int i = 0; i < 2; ++i) {
        form.Datengrid(i).set("Left", Value(30));
        form.Datengrid(i).set("Top", Value(0));
    }
    fortschritt(start, 80);

    form.gedcom_zusaetze = gedcom_zusaetze_laden();
    form.weiter_freigeben(false);
    datenbank_vorschlagen();
    ziel_vorschlagen(form);
    fortschritt(start, 90);

    icons16_laden();
    // Without a catalogue the event kinds show no picture; the wizard works on.
    fehler_ignorieren([] { ereignisgrafiken_laden(); });

    const std::string links = form.get("Left").text();
    const std::string oben = form.get("Top").text();
    form.set("Left",
             Value(numericValue(ini_lesen(form.folioexport_ini, "Fenster", "Links", links))));
    form.set("Top", Value(numericValue(ini_lesen(form.folioexport_ini, "Fenster", "Top", oben))));

    platform().doEvents();
    platform().sleep(1000);
    start.set("Visible", Value(false));
    form.set("MousePointer", Value(MausNormal));
}

void Form_Unload() {
    fehler_ignorieren([] { markierungen_zurueckholen(); });
}

void verzeichnis_geaendert(int index) {
    AuswahlForm& form = Auswahl();
    if (index == 0) {
        const std::string ordner = form.Verzeichnis(0).text("Text");
        dateiliste_zeigen(ordner);
        ini_schreiben(form.folioexport_ini, "Datei", "Verzeichnis0", ordner);
        const std::string datei = form.Datei(0).text("FileName");
        std::error_code ec;
        form.weiter_freigeben(!datei.empty() &&
                              std::filesystem::is_regular_file(pfad_verbinden(ordner, datei), ec));
    } else if (index == 2) {
        Control& box = form.Verzeichnis(2);
        std::string name = box.text("Text");
        replaceAll(name, "\\", "");
        replaceAll(name, ":", "");
        box.set("Text", Value(name));
        startknoepfe_freigeben(form, !isBlank(name));
    }
}

void hilfe_geklickt() {
    fehler_ignorieren(
        [] { platform().oeffnen(pfad_verbinden(Auswahl().hilfedatei, Hilfe_Uebersicht)); });
}

void beenden_geklickt() {
    Exportstarten();
}

bool abbrechen_geklickt() {
    if (Auswahl().export_laeuft) {
        if (meldung(sprachtext("9839"), 292, Produktname) == AntwortJa)
            abbruch_anfordern(SIGINT);
        return false; // the run ends first; the form closes after it
    }
    Form_Unload();
    return true;
}

} // namespace folio
