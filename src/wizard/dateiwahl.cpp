#include "wizard/dateiwahl.h"

#include "database/oeffnen.h"
#include "database/tabellen.h"
#include "engine/connection_setup.h"
#include "engine/errors.h"
#include "engine/text_util.h"
#include "frame/fenster.h"
#include "frame/globals.h"
#include "frame/ini.h"
#include "frame/meldung.h"
#include "frame/settings_store.h"
#include "frame/sprache.h"
#include "selection/markierungen.h"
#include "wizard/auswahl.h"
#include "wizard/grid_aufbau.h"

#include <algorithm>
#include <cmath>
#include <filesystem>

namespace fs = std::filesystem;

namespace folio {

namespace {

bool datei_vorhanden(const std::string& pfad) {
    std::error_code ec;
    return !pfad.empty() && fs::is_regular_file(pfad, ec);
}

bool ordner_vorhanden(const std::string& pfad) {
    std::error_code ec;
    return !pfad.empty() && fs::is_directory(pfad, ec);
}

// Programmpfad stands for the host's folder while a tree is opened from the wizard, so that
// the template and the sample are found there; it is back when this goes.
class HostAlsProgrammpfad {
public:
    HostAlsProgrammpfad() : alt_(Programmpfad) { Programmpfad = Stammpfad; }
    ~HostAlsProgrammpfad() { Programmpfad = alt_; }
    HostAlsProgrammpfad(const HostAlsProgrammpfad&) = delete;
    HostAlsProgrammpfad& operator=(const HostAlsProgrammpfad&) = delete;

private:
    std::string alt_;
};

std::string anzahl(dao::Recordset* rs) {
    std::int64_t n = 0;
    fehler_ignorieren([&] {
        rs->MoveFirst();
        n = rs->RecordCount();
    });
    return std::to_string(n);
}

// The information list DBGrid(0) on the tree that is open. False where no tree is open.
bool informationen_zeigen(const std::string& datei) {
    AuswahlForm& form = Auswahl();
    form.DBGrid(0).items("Rows").clear();
    form.zeile_anfuegen(0, sprachtext("7265 Datei"), "", true);
    form.zeile_anfuegen(0, sprachtext("572 Dateigröße"), groesse_in_kb(datei_groesse(datei)));
    if (!DB || !rs_Version)
        return false;
    std::string guid;
    fehler_ignorieren([&] {
        rs_Version->MoveFirst();
        guid = rs_Version->get("guid_anwender").text();
    });
    if (guid != einstellung_lesen(HostAnwendung, "GUID", "Schluessel", "")) {
        form.zeile_anfuegen(0, sprachtext("3407 Datenbank"),
                            sprachtext("576 Nicht duch Sie erstellt"), false, true);
        form.DBGrid(0).items("Rows").back().set("StatusColor", Value(FarbeRot));
    }
    form.zeile_anfuegen(0, sprachtext("574 Datensätze"), "", true);
    const std::pair<const char*, dao::Recordset*> zaehlungen[] = {
        {"3704 Personen", rs_Daten.get()},     {"2050 Ereignisse", rs_Ereignis.get()},
        {"4105 Namen", rs_Namen.get()},        {"4114 Ereignisse", rs_Ort.get()},
        {"4111 Dokumente", rs_Dokument.get()}, {"4112 Notizen", rs_Notiz.get()},
        {"4115 Adressen", rs_Adressen.get()},  {"2151 Bilder", rs_Bilder.get()}};
    for (const auto& [text, rs] : zaehlungen)
        form.zeile_anfuegen(0, sprachtext(text), rs ? anzahl(rs) : "0");
    return true;
}

} // namespace

std::string groesse_in_kb(double bytes) {
    const long long kb = std::llround(bytes / 1000);
    std::string ziffern = kb > 0 ? std::to_string(kb) : "";
    const char trenner = Sprache == "Deutsch" ? '.' : ',';
    for (int i = static_cast<int>(ziffern.size()) - 3; i > 0; i -= 3)
        ziffern.insert(static_cast<std::size_t>(i), 1, trenner);
    return ziffern + " KB";
}

void dateiliste_zeigen(const std::string& ordner) {
    Control& liste = Auswahl().Datei(0);
    std::vector<std::string> namen;
    std::error_code ec;
    for (fs::directory_iterator it(ordner, ec), ende; !ec && it != ende; it.increment(ec)) {
        const std::string name = it->path().filename().string();
        std::error_code ec2;
        if (name.size() > 4 && equalsNoCase(name.substr(name.size() - 4), ".SF6") &&
            it->is_regular_file(ec2))
            namen.push_back(name);
    }
    std::sort(namen.begin(), namen.end(),
              [](const std::string& a, const std::string& b) { return compareNoCase(a, b) < 0; });
    auto& eintraege = liste.items("List");
    eintraege.clear();
    for (const std::string& name : namen)
        eintraege.emplace_back().set("Name", Value(name));
    liste.set("Path", Value(ordner));
    liste.set("FileName", Value(""));
    liste.set("ListIndex", Value(-1));
}

void datei_waehlen(int position) {
    Control& liste = Auswahl().Datei(0);
    auto& eintraege = liste.items("List");
    if (position < 0 || position >= static_cast<int>(eintraege.size()))
        return;
    liste.set("ListIndex", Value(position));
    liste.set("FileName", eintraege[static_cast<std::size_t>(position)].get("Name"));
    Datei_Click(0);
}

void datenbank_vorschlagen() {
    AuswahlForm& form = Auswahl();
    std::string pfad =
        ini_lesen(programm_ini(), "SF-Files", "0", pfad_verbinden(Datenpfad, "Beispiel.SF5"));
    if (!datei_vorhanden(pfad))
        pfad = pfad_verbinden(Datenpfad, "Beispiel.sf5");
    if (!datei_vorhanden(pfad))
        pfad = pfad_verbinden(Stammpfad, "Beispiel.sf5");
    const std::size_t trenner = pfad.find_last_of("/\\");
    const std::string name =
        datei_vorhanden(pfad) ? pfad.substr(trenner == std::string::npos ? 0 : trenner + 1) : "";
    std::string ordner = trenner == std::string::npos ? "" : pfad.substr(0, trenner);
    if (!ordner_vorhanden(ordner))
        ordner = Datenpfad;
    form.Verzeichnis(0).set("Text", Value(ordner));
    dateiliste_zeigen(ordner);
    auto& eintraege = form.Datei(0).items("List");
    for (std::size_t i = 0; i < eintraege.size(); ++i)
        if (eintraege[i].text("Name") == name) {
            datei_waehlen(static_cast<int>(i));
            // Next stands as the opening left it: a tree that couldn't be opened keeps it off.
            break;
        }
}

void Datei_Click(int index) {
    if (index != 0)
        return;
    AuswahlForm& form = Auswahl();
    form.weiter_freigeben(false);
    fehler_ignorieren([] { markierungen_zurueckholen(); });
    // The grids read the old tree; it is about to close.
    form.grid(0).Clear(true);
    form.grid(1).Clear(true);

    std::string ordner = form.Verzeichnis(0).text("Text");
    std::string datei = form.Datei(0).text("FileName");
    try {
        HostAlsProgrammpfad host;
        datenbank_oeffnen(ordner, datei, false, false);
    } catch (const Error& e) {
        meldung(e.what(), StilFehler, Produktname);
    }
    if (!informationen_zeigen(
            pfad_verbinden(form.Verzeichnis(0).text("Text"), form.Datei(0).text("FileName"))))
        return; // no tree open: Next stays off
    form.weiter_freigeben(true);
    markierungen_sichern();
    try {
        personengrid_aufbauen();
    } catch (const Error& e) {
        // The information on the tree stays; without persons to choose there is no going on.
        form.weiter_freigeben(false);
        meldung(e.what(), StilFehler, Produktname);
    }
    form.verknuepfungen_aktuell = false;
    form.Fortschritt().set("Value", Value(0));
    form.Fortschritttext().set("Text", Value(""));
}

} // namespace folio
