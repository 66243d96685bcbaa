#include "export_befehl.h"

#include "database/errors.h"
#include "database/oeffnen.h"
#include "database/tabellen.h"
#include "database/text_util.h"
#include "frame/fenster.h"
#include "frame/globals.h"
#include "frame/meldung.h"
#include "frame/platform.h"
#include "frame/sprache.h"
#include "frame/terminal_platform.h"
#include "gedcom/datum.h"
#include "gedcom/export.h"
#include "selection/markierungen.h"
#include "wizard/auswahl.h"
#include "wizard/personengrid.h"
#include "wizard/seiten.h"

#include <filesystem>
#include <iostream>
#include <unistd.h>

namespace folio::cli {

namespace fs = std::filesystem;

namespace {

bool datenschutz_lesen(const std::string& liste, bool (&boxen)[4]) {
    if (liste == "all" || liste == "none") {
        for (bool& b : boxen)
            b = liste == "all";
        return true;
    }
    for (bool& b : boxen)
        b = false;
    std::size_t anfang = 0;
    while (anfang <= liste.size()) {
        const std::size_t ende = std::min(liste.find(',', anfang), liste.size());
        const std::string teil(trimWhitespace(liste.substr(anfang, ende - anfang)));
        if (teil.size() != 1 || teil[0] < '0' || teil[0] > '3')
            return false;
        boxen[teil[0] - '0'] = true;
        anfang = ende + 1;
    }
    return true;
}

void fehler(const std::string& text, const std::string& was = "") {
    meldung(text + (was.empty() ? "" : "\n  " + was), StilFehler, Produktname);
}

// Opens the family tree through the program's one road to a database, which brings an
// older file to the current version (an old extension on a copy beside it). `pfad` then
// names the file that is open. A file that isn't one leaves nothing open.
Ausgang datenbank_laden(std::string& pfad) {
    std::error_code ec;
    const fs::path ganz = fs::absolute(pfad);
    if (fs::is_directory(ganz, ec)) {
        fehler(sprachtext("9803 Diese Datei lässt sich nicht als Stammbaum-Datenbank öffnen:"),
               pfad);
        return KeineStammbaumDatenbank;
    }
    // The opening would take the sample database in place of a write-protected file.
    if (schreibgeschuetzt(ganz.string())) {
        meldung(schreibschutz_meldung(ganz.string(), false, false), StilFehler, EigenerProduktname);
        return DatenbankSchreibgeschuetzt;
    }
    std::string ordner = ganz.parent_path().string(), datei = ganz.filename().string();
    // While a database opens, Programmpfad stands for the host's folder, where the template
    // lies.
    const std::string programmpfad = Programmpfad;
    Programmpfad = Stammpfad;
    Geoeffnet ergebnis;
    try {
        ergebnis = datenbank_oeffnen(ordner, datei, false, false);
    } catch (...) {
        Programmpfad = programmpfad;
        throw;
    }
    Programmpfad = programmpfad;
    if (ergebnis != Geoeffnet::Ja)
        return KeineStammbaumDatenbank;
    pfad = pfad_verbinden(ordner, datei);
    return Fertig;
}

// The target may be written: its folder exists and takes files, an existing file is
// replaced only when asked, and never is it the database itself.
Ausgang ziel_pruefen(const ExportOptionen& o) {
    std::error_code ec;
    const fs::path ziel = fs::absolute(o.ziel, ec);
    const fs::path ordner = ziel.parent_path();
    auto nicht_beschreibbar = [&](const std::string& grund) {
        fehler(sprachtext("9806 In die Zieldatei kann nicht geschrieben werden:"),
               ziel.string() + "\n  " + grund);
        return ZielNichtBeschreibbar;
    };
    if (!fs::is_directory(ordner, ec))
        return nicht_beschreibbar("No such folder: " + ordner.string());
    if (::access(ordner.c_str(), W_OK) != 0)
        return nicht_beschreibbar("The folder doesn't take new files: " + ordner.string());
    if (!fs::exists(ziel, ec))
        return Fertig;
    if (fs::equivalent(ziel, o.datenbank, ec))
        return nicht_beschreibbar("It is the database itself.");
    if (fs::is_directory(ziel, ec))
        return nicht_beschreibbar("It is a folder.");
    if (!o.ueberschreiben) {
        fehler(sprachtext("9805 Die Zieldatei gibt es schon; mit --overwrite wird sie ersetzt:"),
               ziel.string());
        return ZielVorhanden;
    }
    if (schreibgeschuetzt(ziel.string()))
        return nicht_beschreibbar("The file is write-protected.");
    return Fertig;
}

// The selection as the person page would leave it.
Ausgang personen_waehlen(const ExportOptionen& o) {
    AuswahlForm& form = Auswahl();
    const std::pair<const char*, bool> schalter[] = {{"Vorfahren", o.vorfahren},
                                                     {"Nachfahren", o.nachfahren},
                                                     {"Ehepartner", o.ehepartner},
                                                     {"Lebend", o.ohne_lebende}};
    for (const auto& [key, an] : schalter)
        form.knopf(0, key).set("Value", Value(an ? 1 : 0));

    switch (o.auswahl) {
    case Auswahlart::Markierte:
        break;
    case Auswahlart::Alle:
        markieren_befehl(0, "Auswählen");
        break;
    case Auswahlart::Personen:
        markieren_befehl(0, "Abwählen");
        for (RecordId person : o.personen) {
            switch (haken_setzen(person, true)) {
            case Haken::Gesetzt:
                break;
            case Haken::Verweigert:
                meldung(sprachtext("9808 Diese Person lebt und bleibt ausgeschlossen:") + " " +
                            person.text(),
                        StilWarnung, Produktname);
                break;
            case Haken::Unbekannt:
                fehler(sprachtext("9807 Diese Person gibt es in der Datenbank nicht:"),
                       person.text());
                return PersonUnbekannt;
            }
        }
        break;
    }
    // The person grid, showing its rows with "Lebend" pressed, takes the living out.
    if (o.ohne_lebende)
        lebende_abwaehlen();
    if (!personen_gewaehlt()) {
        fehler(sprachtext("9804 Es ist keine Person ausgewählt; es gibt nichts zu exportieren."));
        return KeinePersonGewaehlt;
    }
    return Fertig;
}

void optionen_setzen(const ExportOptionen& o) {
    AuswahlForm& form = Auswahl();
    form.Zeichensatz(0).set("Value", Value(o.ansi));
    form.Zeichensatz(1).set("Value", Value(!o.ansi));
    for (int i = 0; i < 4; ++i)
        form.Datenschutzcheck(i).set("Value", Value(o.datenschutz[i] ? 1 : 0));
    form.nur_auf_55().set("Value", Value(o.nur_55 ? 1 : 0));
    form.Chancheck().set("Value", Value(o.aenderungsdatum ? 1 : 0));
    if (o.anmerkung)
        form.Anmerkung().set("Text", Value(*o.anmerkung));
}

void zusammenfassung_drucken() {
    std::cout << sprachtext("9811 Ausgewählt:") << "\n";
    for (const PropertyBag& zeile : Auswahl().DBGrid(1).items("Rows")) {
        std::string info = zeile.text("Info");
        if (utf8Length(info) < 12)
            info += std::string(12 - utf8Length(info), ' ');
        std::string status = zeile.text("Status");
        for (char& c : status)
            if (c == '\r' || c == '\n')
                c = ' ';
        std::cout << "  " << info << " " << status << "\n";
    }
    std::cout.flush();
}

// Where the bar of the terminal takes its state from: the closure's bar while it runs,
// then the run's.
void fortschritt_anzeigen(bool huelle) {
    auto* terminal = dynamic_cast<TerminalPlatform*>(&platform());
    if (!terminal)
        return;
    terminal->fortschritt_quelle([huelle]() -> std::optional<Fortschrittsstand> {
        AuswahlForm& form = Auswahl();
        if (huelle) {
            Control& balken = form.Personen_fortschritt();
            return Fortschrittsstand{form.control("Label1").text("Caption"),
                                     balken.get("Value").toInt(), balken.get("Max").toInt()};
        }
        std::string text = form.Fortschritttext().text("Text");
        text.erase(text.find_last_not_of("\r\n .") + 1);
        const std::size_t umbruch = text.find_last_of("\r\n");
        if (umbruch != std::string::npos)
            text = text.substr(umbruch + 1);
        return Fortschrittsstand{text, form.Fortschritt().get("Value").toInt(), 100};
    });
}

void fortschritt_beenden() {
    if (auto* terminal = dynamic_cast<TerminalPlatform*>(&platform())) {
        terminal->fortschritt_beenden();
        terminal->fortschritt_quelle(nullptr);
    }
}

// The marks of the database go back to what they were when it was opened, whatever
// happens in between, as when the wizard closes.
struct MarkierungenZurueck {
    ~MarkierungenZurueck() { markierungen_zurueckholen(); }
};

} // namespace

std::optional<ExportOptionen> optionen_lesen(const std::vector<std::string>& argumente,
                                             std::string& fehler) {
    ExportOptionen o;
    bool markiert = false, alle = false;
    for (std::size_t i = 0; i < argumente.size(); ++i) {
        const std::string& a = argumente[i];
        auto wert = [&](std::string& ziel) {
            if (i + 1 >= argumente.size()) {
                fehler = sprachtext("9812 Diese Option braucht einen Wert:") + " " + a;
                return false;
            }
            ziel = argumente[++i];
            return true;
        };
        std::string w;
        if (a == "-o" || a == "--output") {
            if (!wert(o.ziel))
                return std::nullopt;
        } else if (a == "--marked") {
            markiert = true;
        } else if (a == "--all") {
            alle = true;
        } else if (a == "--person") {
            if (!wert(w))
                return std::nullopt;
            const std::optional<RecordId> nummer = RecordId::parse(w);
            if (!nummer || nummer->isZero()) {
                fehler = sprachtext("9819 Ungültiger Wert:") + " --person " + w;
                return std::nullopt;
            }
            o.personen.push_back(*nummer);
        } else if (a == "--ancestors") {
            o.vorfahren = true;
        } else if (a == "--descendants") {
            o.nachfahren = true;
        } else if (a == "--spouses") {
            o.ehepartner = true;
        } else if (a == "--exclude-living") {
            o.ohne_lebende = true;
        } else if (a == "--charset") {
            if (!wert(w))
                return std::nullopt;
            const std::string z = lowerAscii(w);
            if (z != "utf-8" && z != "utf8" && z != "ansi") {
                fehler = sprachtext("9819 Ungültiger Wert:") + " --charset " + w;
                return std::nullopt;
            }
            o.ansi = z == "ansi";
        } else if (a == "--privacy") {
            if (!wert(w))
                return std::nullopt;
            if (!datenschutz_lesen(lowerAscii(w), o.datenschutz)) {
                fehler = sprachtext("9819 Ungültiger Wert:") + " --privacy " + w;
                return std::nullopt;
            }
        } else if (a == "--strict-55") {
            o.nur_55 = true;
        } else if (a == "--change-stamps") {
            o.aenderungsdatum = true;
        } else if (a == "--note") {
            if (!wert(w))
                return std::nullopt;
            o.anmerkung = w;
        } else if (a == "--overwrite") {
            o.ueberschreiben = true;
        } else if (!a.empty() && a[0] == '-') {
            fehler = sprachtext("9813 Unbekannte Option:") + " " + a;
            return std::nullopt;
        } else if (o.datenbank.empty()) {
            o.datenbank = a;
        } else {
            fehler = sprachtext("9814 Nur eine Datenbank, diese ist zu viel:") + " " + a;
            return std::nullopt;
        }
    }
    if (o.datenbank.empty() || o.ziel.empty()) {
        fehler = sprachtext(o.datenbank.empty() ? "9815" : "9816");
        return std::nullopt;
    }
    if (markiert + alle + !o.personen.empty() > 1) {
        fehler = sprachtext("9817 --marked, --all und --person schließen einander aus.");
        return std::nullopt;
    }
    if ((o.vorfahren || o.nachfahren || o.ehepartner) && o.personen.empty()) {
        fehler = sprachtext("9818 --ancestors, --descendants und --spouses gehören zu --person.");
        return std::nullopt;
    }
    o.auswahl = alle                  ? Auswahlart::Alle
                : !o.personen.empty() ? Auswahlart::Personen
                                      : Auswahlart::Markierte;
    return o;
}

Ausgang exportieren(const ExportOptionen& o) {
    AuswahlForm& form = Auswahl();
    formular_uebersetzen(form);
    // The table of date modifiers, once for the form, from the program's own folder (the
    // opening of a tree lends Programmpfad to the host's folder for a while).
    gedcom_zusaetze_laden(form);
    form.set("MousePointer", Value(MausNormal));
    std::string datenbank_pfad = o.datenbank;
    std::error_code ec;
    if (!fs::exists(datenbank_pfad, ec)) {
        fehler(sprachtext("9802 Diese Datenbank gibt es nicht:"), datenbank_pfad);
        return DatenbankFehlt;
    }
    if (const Ausgang a = ziel_pruefen(o); a != Fertig)
        return a;
    try {
        if (const Ausgang a = datenbank_laden(datenbank_pfad); a != Fertig)
            return a;
    } catch (const std::exception& e) {
        fehler(sprachtext("9803 Diese Datei lässt sich nicht als Stammbaum-Datenbank öffnen:"),
               o.datenbank + "\n  " + e.what());
        alle_schliessen(o.datenbank);
        return KeineStammbaumDatenbank;
    }
    const fs::path datenbank = datenbank_pfad;
    form.Verzeichnis(0).set("Text", Value(datenbank.parent_path().string()));
    form.Datei(0).set("FileName", Value(datenbank.filename().string()));

    const Ausgang ausgang = [&] {
        try {
            MarkierungenZurueck zurueck;
            markierungen_sichern();
            form.verknuepfungen_aktuell = false;
            if (const Ausgang a = personen_waehlen(o); a != Fertig)
                return a;

            fortschritt_anzeigen(true);
            seite_gewechselt(2, 3);
            fortschritt_beenden();
            seite_gewechselt(3, 4);
            optionen_setzen(o);
            seite_gewechselt(4, 5);
            zusammenfassung_drucken();

            const fs::path ziel = fs::absolute(o.ziel);
            form.Verzeichnis(1).set("Text", Value(ziel.parent_path().string()));
            form.Verzeichnis(2).set("Text", Value(ziel.stem().string()));
            fortschritt_anzeigen(false);
            const ExportErgebnis ergebnis = export_ausfuehren(ziel.string());
            fortschritt_beenden();
            if (ergebnis != ExportErgebnis::Fertig)
                return ExportFehlgeschlagen;
            std::cout << sprachtext("9809 Die GEDCOM-Datei ist geschrieben:") << " "
                      << ziel.string() << "\n";
            return Fertig;
        } catch (const std::exception& e) {
            fortschritt_beenden();
            fehler(sprachtext("9801"), e.what());
            return ExportFehlgeschlagen;
        }
    }();
    alle_schliessen(datenbank_pfad);
    return ausgang;
}

} // namespace folio::cli
