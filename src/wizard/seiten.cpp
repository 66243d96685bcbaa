#include "wizard/seiten.h"

#include "database/markenstand.h"
#include "database/tabellen.h"
#include "engine/errors.h"
#include "engine/text_util.h"
#include "frame/settings_store.h"
#include "frame/sprache.h"
#include "wizard/auswahl.h"
#include "wizard/verknuepfungen.h"

#include <functional>
#include <optional>
#include <string>

namespace folio {

namespace {

// The author's boxes and the fields of Version behind them; the note comes last.
const char* const VersionFelder[] = {
    "verfasser_Name",  "verfasser_Adresse", "verfasser_telefon",   "verfasser_fax",
    "verfasser_email", "verfasser_http",    "verfasser_anmerkung", "gedcom_anmerkung"};

Control& box(int i) {
    return i < 7 ? Auswahl().Verfasser(i) : Auswahl().Anmerkung();
}

// A count in a field of ten characters, right-aligned.
std::string rechtsbuendig(std::int64_t zahl) {
    const std::string s = std::string(10, ' ') + std::to_string(zahl);
    return s.substr(s.size() - 10);
}

void anzahlen_zeigen(const Markenstand* marken, const Personenwahl& personen) {
    AuswahlForm& form = Auswahl();
    form.zeile_anfuegen(1, "", sprachtext("605 ausgewählte Datensätze"), false, true);
    struct Zaehlung {
        const char* sql;
        const char* text;
        bool immer;
        std::optional<Verknuepft> tabelle; // where the marks may be held in memory
    };
    // The tree's marks ("Markierung = TRUE", that is -1), or the run's own selection.
    const std::string personensql = "Select * FROM Daten WHERE " + personen.bedingung() + " ;";
    const Zaehlung zaehlungen[] = {
        {personensql.c_str(), "3704 Personen", true, std::nullopt},
        {"Select Counter FROM Ereignis WHERE Markierung = TRUE ;", "2050 Ereignisse", false,
         Verknuepft::Ereignis},
        {"Select Counter FROM Ort WHERE Markierung = TRUE;", "4114 Orte", false, Verknuepft::Ort},
        {"Select Counter FROM Dokument WHERE Markierung = TRUE;", "4111 Dokumente", false,
         Verknuepft::Dokument},
        {"Select Counter FROM Notiz WHERE Markierung = TRUE;", "4112 Notizen", false,
         Verknuepft::Notiz},
        {"Select Counter FROM Bilder WHERE Markierung = TRUE;", "2151 Bilder", false,
         Verknuepft::Bilder},
        {"Select Counter FROM Adressen WHERE Markierung = TRUE;", "4115 Adressen", false,
         Verknuepft::Adressen},
    };
    for (const Zaehlung& z : zaehlungen)
        fehler_ignorieren([&] {
            std::int64_t anzahl = 0;
            if (marken && z.tabelle) {
                anzahl = static_cast<std::int64_t>(marken->anzahl(*z.tabelle));
            } else {
                // The database counts, so that the rows aren't fixed one by one.
                std::string innen = z.sql;
                innen.erase(innen.find_last_not_of("; ") + 1);
                anzahl = DB->OpenRecordset("SELECT count(*) FROM (" + innen + ")")->get(0).toInt();
            }
            if (z.immer || anzahl > 0)
                form.zeile_anfuegen(1, rechtsbuendig(anzahl), sprachtext(z.text));
        });
}

void optionen_zeigen() {
    AuswahlForm& form = Auswahl();
    std::string verfasser;
    for (int i = 0; i < 7; ++i)
        verfasser += trimBlanks(form.Verfasser(i).text("Text"));
    if (!verfasser.empty()) {
        form.zeile_anfuegen(1, sprachtext("592 Verfasser"), "", true);
        for (int i = 0; i < 6; ++i)
            if (!isBlank(form.Verfasser(i).text("Text")))
                form.zeile_anfuegen(1, form.Verfasser(i).text("Caption"),
                                    form.Verfasser(i).text("Text"));
    }
    if (!isBlank(form.Anmerkung().text("Text"))) {
        form.zeile_anfuegen(1, "", sprachtext("593 Weitere Daten"), false, true);
        form.zeile_anfuegen(1, form.Anmerkung().text("Caption"), form.Anmerkung().text("Text"));
    }
    form.zeile_anfuegen(1, "", sprachtext("599 Datenschutz zu lebender Personen"), false, true);
    for (int i = 0; i < 4; ++i)
        form.zeile_anfuegen(
            1, sprachtext(form.angehakt(form.Datenschutzcheck(i)) ? "606 Ja" : "607 Nein"),
            form.Datenschutzcheck(i).text("Caption"));
    form.zeile_anfuegen(1, "", sprachtext("626 Zeichensatz"), false, true);
    const int an = form.gewaehlt(form.Zeichensatz(0)) ? 0 : 1;
    form.zeile_anfuegen(1, "", form.Zeichensatz(an).text("Caption"));
}

} // namespace

bool personen_gewaehlt(const Personenwahl& personen) {
    const bool gewaehlt =
        !DB->OpenRecordset("Select Counter FROM Daten WHERE " + personen.bedingung() + " ;")->Eof();
    Auswahl().weiter_freigeben(gewaehlt);
    return gewaehlt;
}

void verfasser_laden() {
    AuswahlForm& form = Auswahl();
    dao::Recordset& v = *rs_Version;
    v.MoveFirst();
    std::string guid;
    fehler_ignorieren([&] { guid = v.get("guid_anwender").text(); });
    const bool eigene = guid == einstellung_lesen(HostAnwendung, "GUID", "Schluessel", "");
    for (int i = 0; i < 7; ++i)
        form.Verfasser(i).set("Enabled", Value(eigene));
    for (int i = 0; i < 8; ++i)
        box(i).set("Text", Value(""));
    for (int i = 0; i < 8; ++i)
        fehler_ignorieren([&] { box(i).set("Text", Value(v.get(VersionFelder[i]).text())); });
}

void verfasser_speichern() {
    dao::Recordset& v = *rs_Version;
    v.MoveFirst();
    v.Edit();
    for (int i = 0; i < 8; ++i)
        v.set(VersionFelder[i], Value(box(i).text("Text")));
    v.Update();
}

void zusammenfassung_fuellen(const Markenstand* marken, const Personenwahl& personen) {
    Auswahl().DBGrid(1).items("Rows").clear();
    anzahlen_zeigen(marken, personen);
    optionen_zeigen();
}

void seite_gewechselt(int verlassen, int betreten) {
    switch (betreten) {
    case 2:
        personen_gewaehlt();
        break;
    case 3:
        verknuepfungen_markieren();
        break;
    case 4:
        verfasser_laden();
        break;
    case 5:
        zusammenfassung_fuellen();
        break;
    default:
        break;
    }
    if (verlassen == 4)
        verfasser_speichern();
}

} // namespace folio
