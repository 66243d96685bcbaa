#include "gedcom/export.h"

#include "engine/abbruch.h"
#include "engine/date_time.h"
#include "engine/errors.h"
#include "database/tabellen.h"
#include "engine/text_util.h"
#include "frame/globals.h"
#include "frame/ini.h"
#include "frame/meldung.h"
#include "frame/platform.h"
#include "frame/sprache.h"
#include "gedcom/ausgabe.h"
#include "gedcom/datum.h"
#include "gedcom/stufen.h"
#include "gedcom/zeilen.h"
#include "wizard/auswahl.h"

#include <cmath>
#include <filesystem>

namespace folio {

namespace {

const char* const ExportFehlgeschlagen =
    "9801 Der Export ist fehlgeschlagen, die alte Datei bleibt erhalten.";

std::string zwei(int n) {
    return (n < 10 ? "0" : "") + std::to_string(n);
}

void fortschritttext(const std::string& text, bool anhaengen) {
    AuswahlForm& form = Auswahl();
    Control& c = form.Fortschritttext();
    c.set("Text", Value(anhaengen ? c.text("Text") + text : text));
    platform().repaint(form, &c);
}

void kopf_schreiben() {
    AuswahlForm& form = Auswahl();
    const int gewaehlt = form.gewaehlt(form.Zeichensatz(0)) ? 0 : 1;
    const DateTime jetzt = DateTime::now();
    const CalendarDateTime c = jetzt.calendar();
    zeile("0 HEAD");
    zeile("1 CHAR " + form.Zeichensatz(gewaehlt).text("Caption"));
    zeile("1 SOUR Stammfolio");
    zeile("2 VERS " + std::to_string(FOLIO_VERSION_MAJOR) + "." +
          std::to_string(FOLIO_VERSION_MINOR));
    zeile("2 NAME Stammfolio");
    zeile("2 CORP Orvanta");
    zeile("3 ADDR Lindengang 7");
    zeile("4 CONT 00000 Nirgendheim - Germany");
    zeile("3 PHON +49-(0)0000-000000");
    zeile("1 SUBM @00001@");
    zeile("1 DEST PAF");
    zeile("1 DATE " + gedcom_datum(jetzt, "DD MMM YYYY", "UK"));
    zeile("2 TIME " + zwei(c.hour) + ":" + zwei(c.minute) + ":" + zwei(c.second));
    GEDtext(1, "FILE", form.Datei(0).text("FileName"));
    zeile("1 GEDC");
    zeile("2 VERS 5.5");
    zeile("2 FORM LINEAGE-LINKED");
    GEDtext(1, "NOTE", form.Anmerkung().text("Text"));

    zeile("0 @00001@ SUBM");
    zeile("1 NAME " + form.Verfasser(0).text("Text"));
    const char* tags[] = {"ADDR", "PHON", "FAX ", "EMAIL", "WWW", "NOTE"};
    for (int i = 1; i <= 6; ++i)
        GEDtext(1, tags[i - 1], form.Verfasser(i).text("Text"));
}

// The run from opening the output to the trailer; raises on any failure.
void schreiben(const std::string& ziel) {
    GedcomAusgabe datei(ziel);
    LaufendeAusgabe laufend(datei);
    // The run only reads: one transaction over it spares every query its own.
    dao::Transaction lesen(*DB, false);
    AuswahlForm& form = Auswahl();

    fortschritttext(sprachtext("610"), false);
    platform().doEvents();
    kopf_schreiben();

    form.Fortschritt().set("Value", Value(5));
    fortschritttext(sprachtext("613"), false);
    platform().doEvents();
    ExportStufen stufen;
    stufen.familien_aus_eltern();
    stufen.familien_aus_partnerschaften();
    stufen.personen();
    stufen.ortsnotizen();
    stufen.notizen();
    stufen.quellen();
    stufen.adressen();
    stufen.medien();
    stufen.familien();

    fortschritttext(sprachtext("1546 Schließe Export ab"), true);
    form.Fortschritt().set("Value", Value(100));
    zeile("0 TRLR");
    lesen.commit();
    datei.abschliessen();
}

} // namespace

void zeilen_durchlaufen(const std::string& sql, double basis, double spanne,
                        const std::function<void(dao::Recordset&)>& schreiben) {
    auto rs = DB->OpenRecordset(sql);
    if (rs->Eof())
        return;
    // The number of rows that the last row of the query would tell, counted by the database:
    // a move to the last row would fix every row first and make each read a lookup.
    std::string innen = sql;
    while (!innen.empty() && (innen.back() == ';' || innen.back() == ' '))
        innen.pop_back();
    const std::int64_t gesamt =
        DB->OpenRecordset("SELECT count(*) FROM (" + innen + ")")->get(0).toInt();
    std::int64_t anzahl = 0;
    for (; !rs->Eof(); rs->MoveNext()) {
        fortschritt_setzen(++anzahl, gesamt, basis, spanne);
        schreiben(*rs);
    }
}

void fortschritt_setzen(std::int64_t anzahl, std::int64_t gesamt, double basis, double spanne) {
    const double wert =
        gesamt > 0 ? static_cast<double>(anzahl) / static_cast<double>(gesamt) * spanne + basis
                   : basis;
    Auswahl().Fortschritt().set("Value", Value(static_cast<long long>(std::nearbyint(wert))));
}

ExportErgebnis Exportstarten() {
    AuswahlForm& form = Auswahl();
    const std::string ordner = form.Verzeichnis(1).text("Text");
    const std::string name = form.Verzeichnis(2).text("Text");
    const std::string ziel = ordner + "/" + name + ".GED";

    std::error_code ec;
    if (std::filesystem::exists(ziel, ec) &&
        meldung(name + "\r\n\r\n" + sprachtext("609"), 273, Produktname) == AntwortAbbrechen)
        return ExportErgebnis::Abgebrochen;

    ini_schreiben(programm_ini(), "GEDCOM", "Pfad", ordner);
    ini_schreiben(programm_ini(), "GEDCOM", "Datei", name);
    return export_ausfuehren(ziel);
}

ExportErgebnis export_ausfuehren(const std::string& ziel) {
    AuswahlForm& form = Auswahl();
    fortschritttext("", false);
    form.Fortschritt().set("Value", Value(0));
    platform().doEvents();
    form.set("MousePointer", Value(MausSanduhr));
    try {
        schreiben(ziel);
    } catch (const Abbruch&) {
        // Stopped on request: the old target stays, the part written is gone; the caller
        // tells the user.
        form.set("MousePointer", Value(MausNormal));
        throw;
    } catch (const std::exception& e) {
        form.set("MousePointer", Value(MausNormal));
        meldung(sprachtext(ExportFehlgeschlagen) + "\r\n\r\n" + e.what(), StilFehler, Produktname);
        return ExportErgebnis::Fehler;
    }
    form.set("MousePointer", Value(MausNormal));
    meldung(sprachtext("612 Export der Daten beendet"), StilInfoBeispiel, Produktname);
    return ExportErgebnis::Fertig;
}

} // namespace folio
