#include "export_befehl.h"

#include "database/dateiversion.h"
#include "database/markenstand.h"
#include "database/oeffnen.h"
#include "database/schema/schema.h"
#include "database/tabellen.h"
#include "engine/abbruch.h"
#include "engine/connection_setup.h"
#include "engine/engine.h"
#include "engine/errors.h"
#include "engine/text_util.h"
#include "frame/fenster.h"
#include "frame/globals.h"
#include "frame/meldung.h"
#include "frame/platform.h"
#include "frame/sprache.h"
#include "frame/start.h"
#include "frame/terminal_platform.h"
#include "gedcom/datum.h"
#include "gedcom/export.h"
#include "selection/markierungen.h"
#include "selection/verknuepfungen_markieren.h"
#include "wizard/auswahl.h"
#include "wizard/exportstart.h"
#include "wizard/personengrid.h"
#include "wizard/seiten.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <memory>
#include <optional>
#include <unistd.h>
#include <utility>

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
    meldung(text + (was.empty() ? "" : "\n" + was), StilFehler, Produktname);
}

void hinweis(const std::string& text) {
    meldung(text, StilInfo, Produktname);
}

// A failure of the database as a sentence the user understands, with the engine's words
// behind it, and the exit status that says what kind of failure it was.
Ausgang datenbankfehler(const Error& e, const std::string& datei) {
    const std::string text = e.what();
    auto satz = [&](const char* schluessel, Ausgang a) {
        fehler(sprachtext(schluessel) + " " + datei, text);
        return a;
    };
    switch (e.number()) {
    case err::FileInUse:
        return satz("9821 Die Datenbank wird von einem anderen Programm benutzt:",
                    DatenbankInBenutzung);
    case err::ReadOnly:
        return satz("9822 Die Datenbank ist schreibgeschützt:", ExportFehlgeschlagen);
    case err::DiskFull:
        return satz("9824 Der Datenträger ist voll:", ExportFehlgeschlagen);
    case err::DatabaseDamaged:
        return satz("9825 Die Datenbank ist beschädigt:", KeineStammbaumDatenbank);
    case err::NotADatabase:
    case err::CannotOpenFile:
    case err::FileNotFound:
        return satz("9803 Diese Datei lässt sich nicht als Stammbaum-Datenbank öffnen:",
                    KeineStammbaumDatenbank);
    case err::TableNotFound:
    case err::ItemNotFound:
        return satz("9823", KeineStammbaumDatenbank);
    default:
        // SQLite names a missing table or field only in its words.
        if (text.find("no such table") != std::string::npos ||
            text.find("no such column") != std::string::npos)
            return satz("9823", KeineStammbaumDatenbank);
        return satz("9801", ExportFehlgeschlagen);
    }
}

// A folder of this run alone, for a private copy of a tree that may not be written; it goes
// with everything in it when the run ends.
class PrivaterOrdner {
public:
    PrivaterOrdner() {
        std::string muster = (fs::temp_directory_path() / "folioexport-XXXXXX").string();
        if (!::mkdtemp(muster.data()))
            throw Error(err::CannotOpenFile, "No private folder for a copy of the tree in " +
                                                 fs::temp_directory_path().string() + ": " +
                                                 std::strerror(errno));
        pfad_ = muster;
    }
    ~PrivaterOrdner() {
        std::error_code ec;
        fs::remove_all(pfad_, ec);
    }
    PrivaterOrdner(const PrivaterOrdner&) = delete;
    PrivaterOrdner& operator=(const PrivaterOrdner&) = delete;
    // A copy of `datei` in the folder that its owner may write; the user is told.
    fs::path kopie(const fs::path& datei) {
        const fs::path kopie = pfad_ / datei.filename();
        fs::copy_file(datei, kopie);
        fs::permissions(kopie, fs::perms::owner_read | fs::perms::owner_write);
        hinweis(sprachtext("9831") + " " + datei.string());
        return kopie;
    }

private:
    fs::path pfad_;
};

// The run may write to the tree (inside its transaction) and to its folder (the journal).
bool beschreibbar(const fs::path& datei) {
    return !schreibgeschuetzt(datei.string()) && ::access(datei.parent_path().c_str(), W_OK) == 0;
}

// What alle_schliessen is given to close a tree and nothing else (the language texts and
// the side databases stay open): its path without the extension, which also names the
// files of its older extensions that an upgrade opens.
std::string baum(const fs::path& datei) {
    return (datei.parent_path() / datei.stem()).string();
}

bool endet_auf(const fs::path& datei, std::string_view endung) {
    return equalsNoCase(datei.extension().string(), endung);
}

// Brings a tree of an older version to the current one, through the program's one road to
// a database; the upgrade is the one change that a run makes to a tree, and it is committed
// before the export begins. `datei` then names the upgraded file (an old extension is
// upgraded on a copy beside it).
// While a tree opens, Programmpfad stands for the host's folder, where the template lies;
// it is the program's own folder again when this goes, however the opening ended.
class ProgrammpfadDesWirts {
public:
    ProgrammpfadDesWirts() : eigener_(std::exchange(Programmpfad, Stammpfad)) {}
    ~ProgrammpfadDesWirts() { Programmpfad = eigener_; }
    ProgrammpfadDesWirts(const ProgrammpfadDesWirts&) = delete;
    ProgrammpfadDesWirts& operator=(const ProgrammpfadDesWirts&) = delete;

private:
    std::string eigener_;
};

// What the opening left open of the tree is closed when this goes.
class BaumSchliessen {
public:
    explicit BaumSchliessen(std::string baum) : baum_(std::move(baum)) {}
    ~BaumSchliessen() {
        try {
            alle_schliessen(baum_);
        } catch (const Abbruch&) {
            // Everything is closed; the stop stays asked for and the next point raises it.
        }
    }
    BaumSchliessen(const BaumSchliessen&) = delete;
    BaumSchliessen& operator=(const BaumSchliessen&) = delete;

private:
    std::string baum_;
};

Ausgang aktualisieren(fs::path& datei) {
    std::string ordner = datei.parent_path().string(), name = datei.filename().string();
    Geoeffnet ergebnis;
    {
        BaumSchliessen schliessen(baum(datei));
        ProgrammpfadDesWirts wirt;
        ergebnis = datenbank_oeffnen(ordner, name, false, false);
    }
    if (ergebnis != Geoeffnet::Ja)
        return KeineStammbaumDatenbank;
    datei = fs::path(pfad_verbinden(ordner, name));
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

// The selection as the person page would leave it. Every person is selected in memory
// (`personen`), not by a mark written into each record.
Ausgang personen_waehlen(const ExportOptionen& o, const fs::path& datei, Personenwahl& personen) {
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
        personen.alle = true;
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
    if (o.ohne_lebende) {
        if (personen.alle)
            personen.ohne_lebende = true;
        else
            lebende_abwaehlen();
    }
    if (!personen_gewaehlt(personen)) {
        // The tree is named: where its marks are junk, even --all may find nobody.
        fehler(sprachtext("9804 Es ist keine Person ausgewählt; es gibt nichts zu exportieren."),
               datei.string());
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

// The progress of the upgrade on the terminal's bar, from the upgrade's form, while a tree
// of an older version is opened.
void fortschritt_des_oeffnens() {
    if (auto* terminal = dynamic_cast<TerminalPlatform*>(&platform()))
        terminal->fortschritt_quelle([]() -> std::optional<Fortschrittsstand> {
            FortschrittForm& f = Fortschrittfrm();
            if (!f.geladen())
                return std::nullopt;
            return Fortschrittsstand{f.steuerelement("Info").text("Caption"),
                                     f.steuerelement("Update").get("Value").toInt(), 100};
        });
}

void fortschritt_beenden() {
    if (auto* terminal = dynamic_cast<TerminalPlatform*>(&platform())) {
        terminal->fortschritt_beenden();
        terminal->fortschritt_quelle(nullptr);
    }
}

// The progress of the closure and of the export on the terminal's bar: the last line of
// their text and how far they are.
class Terminalanzeige : public Fortschrittsanzeige, public Huellenanzeige {
public:
    Terminalanzeige() {
        if (auto* terminal = dynamic_cast<TerminalPlatform*>(&platform()))
            terminal->fortschritt_quelle([this] { return std::optional(stand_); });
    }
    ~Terminalanzeige() override { fortschritt_beenden(); }
    Terminalanzeige(const Terminalanzeige&) = delete;
    Terminalanzeige& operator=(const Terminalanzeige&) = delete;

    void text(const std::string& text, bool anhaengen) override {
        text_ = anhaengen ? text_ + text : text;
        std::string zeile = text_;
        zeile.erase(zeile.find_last_not_of("\r\n .") + 1);
        const std::size_t umbruch = zeile.find_last_of("\r\n");
        stand_.text = umbruch == std::string::npos ? zeile : zeile.substr(umbruch + 1);
    }
    void wert(long long wert) override {
        stand_.wert = wert;
        stand_.maximum = 100;
    }
    void balken(long long wert, long long maximum) override {
        stand_ = {sprachtext("9838 Verknüpfte Datensätze werden markiert"), wert, maximum};
    }
    void ereignisse() override { platform().doEvents(); }

private:
    std::string text_;
    Fortschrittsstand stand_;
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
        } else if (a == "--wait") {
            if (!wert(w))
                return std::nullopt;
            if (w.empty() || w.size() > 6 ||
                w.find_first_not_of("0123456789") != std::string::npos) {
                fehler = sprachtext("9819 Ungültiger Wert:") + " --wait " + w;
                return std::nullopt;
            }
            o.warten = std::stoi(w);
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

namespace {

// The tree that the run reads: where X.SF5 is given and X.SF6 stands beside it from an
// earlier conversion, the opening takes X.SF6 (the old file is never converted twice), and
// the user is told so.
fs::path datei_der_sitzung(const fs::path& gegeben) {
    if (!endet_auf(gegeben, ".SF5"))
        return gegeben;
    fs::path umgewandelt = gegeben;
    umgewandelt.replace_extension(".SF6");
    std::error_code ec;
    if (!fs::is_regular_file(umgewandelt, ec))
        return gegeben;
    hinweis(sprachtext("9826 Exportiert wird die früher umgewandelte Datei:") + " " +
            umgewandelt.string() + "\n" + sprachtext("9827 Die alte Datei bleibt, wie sie ist:") +
            " " + gegeben.string());
    return umgewandelt;
}

// A tree that this program doesn't know is refused before anything is written to it.
Ausgang version_pruefen(const fs::path& datei, bool& aelter) {
    const Dateiversion v = dateiversion_lesen(datei.string());
    aelter = v.art == Versionsart::Aelter || !endet_auf(datei, ".SF6");
    if (v.art == Versionsart::Neuer) {
        fehler(sprachtext("9828") + " " + datei.string(),
               "Versionname " + v.name + ", " + sprachtext("9830 dieses Programm kennt bis") + " " +
                   std::string(schema::CurrentVersion));
        return UnbekannteVersion;
    }
    if (v.art == Versionsart::Unbekannt) {
        fehler(sprachtext("9829") + " " + datei.string(), "Versionname \"" + v.name + "\"");
        return UnbekannteVersion;
    }
    return Fertig;
}

// A hook for the tests of interruption: FOLIO_TEST_HALT="stage:SIGNAL" (INT, TERM or KILL)
// has the process send itself that signal when the run reaches the stage: "auswahl" (the
// persons are ticked) or "huelle" (the closure has run).
void haltepunkt(std::string_view stufe) {
    const char* halt = std::getenv("FOLIO_TEST_HALT");
    if (!halt)
        return;
    const std::string_view h = halt;
    const std::size_t doppelpunkt = h.find(':');
    if (doppelpunkt == std::string_view::npos || h.substr(0, doppelpunkt) != stufe)
        return;
    const std::string_view signal = h.substr(doppelpunkt + 1);
    ::raise(signal == "INT" ? SIGINT : signal == "TERM" ? SIGTERM : SIGKILL);
}

// The closure, on the terminal's bar; where a couple's event was left out because one
// partner isn't selected, the user is told. Its marks stay in memory: written into the tree,
// they would only be rolled back with the run.
std::shared_ptr<const Markenstand> huelle(Terminalanzeige& anzeige, const ExportOptionen& o,
                                          const Personenwahl& personen) {
    Huelle h = huelle_berechnen(anzeige, personen);
    if (h.partner_fehlt)
        meldung(sprachtext(o.ehepartner ? "1661" : "1660"), StilInfo, Produktname);
    return std::make_shared<const Markenstand>(std::move(h.marken));
}

// The failures that the output raises itself; their text names the target.
bool fehler_des_ziels(const std::exception& e) {
    const auto* f = dynamic_cast<const Error*>(&e);
    return f && !dynamic_cast<const DatabaseError*>(f) &&
           (f->number() == err::CannotOpenFile || f->number() == err::DiskFull);
}

// The run itself: the options as the form's controls now hold them, with the closure's
// marks, from the tree `datei` into `ziel`.
Ausgang schreiben(Terminalanzeige& anzeige, std::shared_ptr<const Markenstand> marken,
                  const Personenwahl& personen, const fs::path& datei, const fs::path& ziel) {
    try {
        Exportoptionen optionen = exportoptionen_aus_formular(Auswahl());
        optionen.marken = std::move(marken);
        optionen.personen = personen;
        exportieren(optionen, ziel.string(), anzeige);
    } catch (const Abbruch&) {
        throw;
    } catch (const DatabaseError& e) {
        // A tree whose damage shows only as it is read (a field or an index missing, a page
        // of junk in a table) is named and said to be damaged, as at its opening: the
        // engine's words alone don't always name the file.
        fortschritt_beenden();
        return datenbankfehler(e, datei.string());
    } catch (const std::exception& e) {
        // Anything but the target's own failure came from the tree's data (a text where a
        // number belongs), so the tree is named with it.
        fortschritt_beenden();
        fehler(sprachtext("9801") + (fehler_des_ziels(e) ? "" : " " + datei.string()), e.what());
        return ExportFehlgeschlagen;
    }
    fortschritt_beenden();
    hinweis(sprachtext("612 Export der Daten beendet"));
    std::cout << sprachtext("9809 Die GEDCOM-Datei ist geschrieben:") << " " << ziel.string()
              << "\n";
    return Fertig;
}

// On the open tree: the persons selected, the closure, the author's data and the options,
// the summary, and the run. The persons' marks aren't saved for the host as the wizard saves
// them: the run's transaction is rolled back, and with it any mark it set.
Ausgang auswaehlen_und_schreiben(const ExportOptionen& o, const fs::path& datei,
                                 const fs::path& ziel) {
    Personenwahl personen;
    if (const Ausgang a = personen_waehlen(o, datei, personen); a != Fertig)
        return a;
    haltepunkt("auswahl");
    Terminalanzeige anzeige;
    std::shared_ptr<const Markenstand> marken = huelle(anzeige, o, personen);
    haltepunkt("huelle");
    verfasser_laden();
    optionen_setzen(o);
    zusammenfassung_fuellen(marken.get(), personen);
    zusammenfassung_drucken();
    return schreiben(anzeige, std::move(marken), personen, datei, ziel);
}

// The run on a tree of the current version. Everything it writes to the tree (the marks of
// the selection and the closure, the author's data of the fourth page) happens inside one
// transaction that is never committed: SQLite rolls it back when the run ends, however it
// ends, and after a crash or a kill when the file is next opened. So the tree stays as it
// was by construction.
Ausgang lauf(const ExportOptionen& o, const fs::path& datei, const fs::path& ziel) {
    BaumSchliessen schliessen(baum(datei)); // after the rollback, however the run ends
    DB = dao::OpenDatabase(datei.string());
    dao::Transaction nie_festgeschrieben(*DB);
    tabellen_oeffnen();
    AuswahlForm& form = Auswahl();
    form.Verzeichnis(0).set("Text", Value(datei.parent_path().string()));
    form.Datei(0).set("FileName", Value(datei.filename().string()));
    return auswaehlen_und_schreiben(o, datei, ziel);
}

// What every run needs before it looks at the tree: the wait for a tree that another program
// holds (the user learns what for), the form's texts, and the table of date modifiers, once
// for the form, from the program's own folder (the opening of a tree lends Programmpfad to
// the host's folder for a while).
void vorbereiten(const ExportOptionen& o) {
    wartezeit_setzen(std::chrono::seconds(o.warten), [](const std::string& datei) {
        hinweis(sprachtext("9834 Ein anderes Programm benutzt die Datenbank; es wird gewartet:") +
                " " + datei);
    });
    AuswahlForm& form = Auswahl();
    formular_uebersetzen(form);
    form.gedcom_zusaetze = gedcom_zusaetze_laden();
    form.set("MousePointer", Value(MausNormal));
}

} // namespace

Ausgang exportieren(const ExportOptionen& o) {
    vorbereiten(o);
    std::error_code ec;
    if (!fs::exists(o.datenbank, ec)) {
        fehler(sprachtext("9802 Diese Datenbank gibt es nicht:") + " " + o.datenbank);
        return DatenbankFehlt;
    }
    if (fs::is_directory(o.datenbank, ec)) {
        fehler(sprachtext("9803") + " " + o.datenbank);
        return KeineStammbaumDatenbank;
    }
    if (const Ausgang a = ziel_pruefen(o); a != Fertig)
        return a;
    const fs::path ziel = fs::absolute(o.ziel);

    fs::path datei = datei_der_sitzung(fs::absolute(o.datenbank));
    std::optional<PrivaterOrdner> privat;
    try {
        bool aelter = false;
        if (const Ausgang a = version_pruefen(datei, aelter); a != Fertig)
            return a;
        // A tree that may not be written is exported all the same, from a copy of its own.
        if (!beschreibbar(datei))
            datei = privat.emplace().kopie(datei);
        if (aelter) {
            fortschritt_des_oeffnens();
            const Ausgang a = aktualisieren(datei);
            fortschritt_beenden();
            if (a != Fertig)
                return a;
        }
        return lauf(o, datei, ziel);
    } catch (const Abbruch&) {
        fortschritt_beenden();
        throw;
    } catch (const Error& e) {
        fortschritt_beenden();
        abbruch_pruefen(); // a wait for the tree that a signal ended is a stop, not a failure
        return datenbankfehler(e, datei.string());
    } catch (const std::exception& e) {
        fortschritt_beenden();
        fehler(sprachtext("9801") + " " + datei.string(), e.what());
        return ExportFehlgeschlagen;
    }
}

} // namespace folio::cli
