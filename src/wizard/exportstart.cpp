#include "wizard/exportstart.h"

#include "engine/abbruch.h"
#include "frame/globals.h"
#include "frame/ini.h"
#include "frame/meldung.h"
#include "frame/platform.h"
#include "frame/sprache.h"
#include "gedcom/export.h"
#include "wizard/auswahl.h"

#include <chrono>
#include <filesystem>
#include <utility>
#include <vector>

namespace folio {

namespace {

const char* const ExportFehlgeschlagen =
    "9801 Der Export ist fehlgeschlagen, die alte Datei bleibt erhalten.";

// The controls that a run reads are disabled while it runs, so that nothing changes under
// it; they are as they were again when this goes, however the run ended.
class OptionenGesperrt {
public:
    explicit OptionenGesperrt(AuswahlForm& form) {
        for (int i = 0; i < 2; ++i)
            sperren(form.Zeichensatz(i));
        for (int i = 0; i < 4; ++i)
            sperren(form.Datenschutzcheck(i));
        for (int i = 0; i < 7; ++i)
            sperren(form.Verfasser(i));
        sperren(form.nur_auf_55());
        sperren(form.Chancheck());
        sperren(form.Anmerkung());
        sperren(form.Verzeichnis(1));
        sperren(form.Verzeichnis(2));
        sperren(form.control("Exportstarten"));
        wizard_ = &form.sevWizard();
        finish_ = wizard_->get("FinishEnabled");
        wizard_->set("FinishEnabled", Value(false));
        wizard_->set("Busy", Value(true));
    }
    ~OptionenGesperrt() {
        for (const auto& [control, enabled] : vorher_)
            control->set("Enabled", enabled);
        wizard_->set("FinishEnabled", finish_);
        wizard_->set("Busy", Value(false));
    }
    OptionenGesperrt(const OptionenGesperrt&) = delete;
    OptionenGesperrt& operator=(const OptionenGesperrt&) = delete;

private:
    void sperren(Control& c) {
        // A control that has never been switched is enabled.
        vorher_.emplace_back(&c, c.has("Enabled") ? c.get("Enabled") : Value(true));
        c.set("Enabled", Value(false));
    }
    std::vector<std::pair<Control*, Value>> vorher_;
    // The wizard frame: Finish is off and the pages stay while the run is busy.
    Control* wizard_ = nullptr;
    Value finish_;
};

} // namespace

void Formularanzeige::text(const std::string& text, bool anhaengen) {
    Control& c = form_.Fortschritttext();
    c.set("Text", Value(anhaengen ? c.text("Text") + text : text));
    platform().repaint(form_, &c);
}

void Formularanzeige::wert(long long wert) {
    form_.Fortschritt().set("Value", Value(wert));
}

// The platform's event loop, at most every 20 ms: a run asks at every event it writes, five
// million times for a million persons, and a loop that looks at the window system each time
// would cost more than the run. The first time it runs at once.
void Formularanzeige::ereignisse() {
    const auto jetzt = std::chrono::steady_clock::now();
    if (jetzt - zuletzt_ < std::chrono::milliseconds(20))
        return;
    zuletzt_ = jetzt;
    platform().doEvents();
}

Exportoptionen exportoptionen_aus_formular(AuswahlForm& form) {
    Exportoptionen o;
    const bool ansi = form.gewaehlt(form.Zeichensatz(0));
    o.zeichensatz = ansi ? Zeichensatz::Ansi : Zeichensatz::Utf8;
    o.zeichensatz_name = form.Zeichensatz(ansi ? 0 : 1).text("Caption");
    o.vornamen_kuerzen = form.angehakt(form.Datenschutzcheck(0));
    o.ohne_titel = form.angehakt(form.Datenschutzcheck(1));
    o.ohne_lebensdaten = form.angehakt(form.Datenschutzcheck(2));
    o.ohne_verknuepfungen = form.angehakt(form.Datenschutzcheck(3));
    o.nur_55 = form.angehakt(form.nur_auf_55());
    o.aenderungsdatum = form.angehakt(form.Chancheck());
    o.datenbankname = form.Datei(0).text("FileName");
    for (std::size_t i = 0; i < o.verfasser.size(); ++i)
        o.verfasser[i] = form.Verfasser(static_cast<int>(i)).text("Text");
    o.anmerkung = form.Anmerkung().text("Text");
    o.datumszusaetze = form.gedcom_zusaetze;
    return o;
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
    try {
        return export_ausfuehren(ziel);
    } catch (const Abbruch&) {
        // The user stopped the run with Cancel: the old file is there as it was.
        abbruch_zuruecksetzen();
        meldung(sprachtext(ExportFehlgeschlagen), StilInfo, Produktname);
        return ExportErgebnis::Abgebrochen;
    }
}

ExportErgebnis export_ausfuehren(const std::string& ziel) {
    AuswahlForm& form = Auswahl();
    OptionenGesperrt gesperrt(form);
    form.export_laeuft = true;
    struct Ende {
        AuswahlForm& form;
        ~Ende() { form.export_laeuft = false; }
    } ende{form};
    Formularanzeige anzeige(form);
    anzeige.text("", false);
    anzeige.wert(0);
    platform().doEvents();
    form.set("MousePointer", Value(MausSanduhr));
    try {
        // The options as the controls stand now; the controls stay as they are while it runs.
        exportieren(exportoptionen_aus_formular(form), ziel, anzeige);
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
