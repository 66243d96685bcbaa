#include "database/oeffnen.h"

#include "database/tabellen.h"
#include "database/upgrade/kette.h"
#include "engine/errors.h"
#include "engine/text_util.h"
#include "frame/fenster.h"
#include "frame/globals.h"
#include "frame/ini.h"
#include "frame/meldung.h"
#include "frame/settings_store.h"
#include "frame/sprache.h"

#include <cstdlib>
#include <filesystem>

namespace folio {

namespace fs = std::filesystem;

namespace {

bool endet_auf(const std::string& name, std::string_view endung) {
    return name.size() >= endung.size() &&
           equalsNoCase(std::string_view(name).substr(name.size() - endung.size()), endung);
}

bool existiert(const std::string& pfad) {
    std::error_code ec;
    return fs::is_regular_file(pfad, ec);
}

// Copies a file where the target doesn't exist yet; a failure names both files.
void kopieren(const std::string& von, const std::string& nach) {
    std::error_code ec;
    fs::copy_file(von, nach, fs::copy_options::skip_existing, ec);
    if (ec)
        throw Error(err::PathNotFound,
                    "Can't copy '" + von + "' to '" + nach + "': " + ec.message());
}

// The user's key of the settings store goes into a file that has none yet.
void guid_eintragen() {
    try {
        dao::Recordset& v = *rs_Version;
        v.MoveFirst();
        if (!isBlank(v.get("GUID_Anwender").text()))
            return;
        v.Edit();
        v.set("GUID_Anwender", Value(einstellung_lesen(HostAnwendung, "GUID", "Schluessel", "")));
        v.Update();
    } catch (const Error&) {
        // A file without the field, or a key the field can't hold: left as it is.
    }
}

// Steps 2 to 4: a file of the oldest extension is upgraded on a copy named .SF5, and that
// on a copy named .SF6: the old files stay beside them untouched. `datei` then names the
// .SF6 file.
void alte_endungen_umwandeln(std::string& pfad, std::string& datei) {
    for (;;) {
        alle_schliessen(pfad_verbinden(pfad, datei));
        if (!endet_auf(datei, ".SF"))
            break;
        const std::string alt = pfad_verbinden(pfad, datei);
        if (existiert(alt) && !existiert(alt + "5"))
            kopieren(alt, alt + "5");
        datei += "5";
        DB = dao::OpenDatabase(pfad_verbinden(pfad, datei));
        tabellen_oeffnen();
        datenbank_aktualisieren(pfad, datei, false);
    }
    if (endet_auf(datei, ".SF5")) {
        const std::string alt = pfad_verbinden(pfad, datei);
        // A name whose file is missing gets the "6" all the same; the next step reports it.
        if (existiert(alt)) {
            datei.pop_back();
            if (!existiert(pfad_verbinden(pfad, datei) + "6"))
                kopieren(alt, pfad_verbinden(pfad, datei) + "6");
        }
        datei += "6";
    }
}

} // namespace

std::string schreibschutz_meldung(const std::string& datei_mit_pfad, bool beenden, bool beispiel) {
    std::string text =
        "Die Datenbank ist schreibgeschützt.\r\n"
        "Damit Sie hiermit arbeiten können, muß der Schreibschutz entfernt werden. \r\n\r\n"
        "Bitte ändern Sie die Dateieigenschaften mit dem Explorer und Prüfen Sie über den "
        "Taskmanager, \r\n"
        "daß die Datenbank nicht durch ein anderes Programm geöffnet ist. Ggf. starten Sie bitte "
        "Windows neu\r\n\r\n" +
        datei_mit_pfad;
    if (beenden)
        text += beispiel ? "\r\n\r\nDas Programm wird nun beendet."
                         : "\r\n\r\nÖffne nun die Beispieldatenbank.";
    return text;
}

Geoeffnet datenbank_oeffnen(std::string& pfad, std::string& datei, bool beenden,
                            bool ohne_aktualisierung) {
    if (schreibgeschuetzt(pfad_verbinden(pfad, datei))) {
        const bool beispiel = equalsNoCase(datei, Beispieldatenbank);
        meldung(schreibschutz_meldung(pfad_verbinden(pfad, datei), beenden, beispiel), StilFehler,
                EigenerProduktname);
        if (beispiel)
            return beenden ? Geoeffnet::ProgrammEnde : Geoeffnet::Nein;
        datei = Beispieldatenbank;
    }

    alte_endungen_umwandeln(pfad, datei);
    if (!pfad.empty() && (pfad.back() == '/' || pfad.back() == '\\') && pfad.size() > 1)
        pfad.pop_back();

    if (!existiert(pfad_verbinden(pfad, datei))) {
        meldung(pfad_verbinden(pfad, datei) + " " + sprachtext("242") + datei + sprachtext("243"),
                StilInfoBeispiel, Produktname, 0, 0, false, "", -2, 10);
        pfad = Datenpfad;
        datei = Beispieldatenbank;
        const std::string beispiel = pfad_verbinden(pfad, datei);
        if (!existiert(beispiel)) {
            const std::string vorlage = pfad_verbinden(Programmpfad, Beispieldatenbank);
            kopieren(existiert(vorlage) ? vorlage : pfad_verbinden(Programmpfad, "SF.MDB"),
                     beispiel);
        }
    }

    aktuelle_datei = datei;
    const std::string ganz = pfad_verbinden(pfad, datei);
    try {
        DB = dao::OpenDatabase(ganz);
        tabellen_oeffnen();
    } catch (const Error& e) {
        // A file that is no family tree, or one that another program holds: nothing of it
        // stays open, and the user learns which file it was.
        alle_schliessen(ganz);
        DB.reset();
        meldung(sprachtext("9803 Diese Datei lässt sich nicht als Stammbaum-Datenbank öffnen:") +
                    "\r\n" + ganz + "\r\n\r\n" + e.what(),
                StilFehler, Produktname);
        return Geoeffnet::Nein;
    }
    if (!ohne_aktualisierung)
        datenbank_aktualisieren(pfad, datei, false);
    guid_eintragen();
    return Geoeffnet::Ja;
}

void datenbank_reparieren(const std::string& /*pfad*/, const std::string& /*datei*/) {
    // Only the host's own build checks and repairs a file here; this program, an add-in of
    // the host, leaves it as it is.
}

} // namespace folio
