#include "wizard/filter.h"

#include "database/tabellen.h"
#include "engine/date_time.h"
#include "engine/errors.h"
#include "engine/recordset.h"
#include "engine/text_util.h"
#include "frame/meldung.h"
#include "frame/platform.h"
#include "frame/sprache.h"
#include "wizard/auswahl.h"
#include "wizard/datengrid.h"

#include <cstdio>
#include <utility>

namespace folio {

namespace {

constexpr std::string_view Umbruch = "\r\n";

// The lists of the filter cells, by column key, whatever the grid. Kind 1 lists show the rows
// of a query, kind 2 lists two language texts and a blank item that removes the filter.
enum class Listendatenbank { Keine, Stammbaum, Adressen };
struct Listenquelle {
    std::string_view key;
    int art;
    std::string_view abfrage;
    Listendatenbank datenbank;
    int anzeigespalte;
    int breite;
    std::string_view erster, zweiter, leer; // kind 2: language keys, then the blank item
};
// clang-format off
constexpr Listenquelle listenquellen[] = {
    {"OCCU",       1, "SELECT DISTINCT OCCU FROM Daten WHERE OCCU <> '' ORDER BY OCCU",            Listendatenbank::Stammbaum, 1, 3000, "", "", ""},
    {"Art",        1, "SELECT DISTINCT Index, Art FROM Ereignisdb ORDER BY Art",                   Listendatenbank::Stammbaum, 2, 3000, "", "", ""},
    {"Gebiet",     1, "SELECT DISTINCT Gebiet FROM Adressen WHERE Gebiet <> '' ORDER BY Gebiet",   Listendatenbank::Adressen,  1, 3000, "", "", ""},
    {"Land",       1, "SELECT DISTINCT Land FROM Adressen WHERE Land <> '' ORDER BY Land",         Listendatenbank::Adressen,  1, 3000, "", "", ""},
    {"Notiz",      1, "SELECT Counter, Name FROM Notiz ORDER BY Name",                             Listendatenbank::Stammbaum, 2, 3000, "", "", ""},
    {"Obername",   1, "SELECT Counter, Namen FROM Namen ORDER BY Namen",                           Listendatenbank::Stammbaum, 2, 3000, "", "", ""},
    {"Ort",        1, "SELECT Counter, Name FROM Ort ORDER BY Name",                               Listendatenbank::Stammbaum, 2, 3000, "", "", ""},
    {"OberOrt",    1, "SELECT Counter, Name FROM Ort ORDER BY Name",                               Listendatenbank::Stammbaum, 2, 3000, "", "", ""},
    {"GOrt",       1, "SELECT Counter, Name FROM Ort ORDER BY Name",                               Listendatenbank::Stammbaum, 2, 3000, "", "", ""},
    {"SOrt",       1, "SELECT Counter, Name FROM Ort ORDER BY Name",                               Listendatenbank::Stammbaum, 2, 3000, "", "", ""},
    {"Status",     1, "SELECT Counter, Namen FROM Status ORDER BY Namen",                          Listendatenbank::Stammbaum, 2, 3000, "", "", ""},
    {"lebt",       2, "", Listendatenbank::Keine, 0, 1000, "1266 Person lebt",              "1265 verstorben",                        "        "},
    {"Geschlecht", 2, "", Listendatenbank::Keine, 0, 1000, "1136 Männlich",                 "1137 Weiblich",                          "        "},
    {"Markierung", 2, "", Listendatenbank::Keine, 0, 2500, "8214 Nur markierte Datensätze", "1267 Alle nicht markierten Datensätzen", "  "},
};
// clang-format on

// The tooltips of the column headers, by the key letter for letter.
struct Kopfhilfe {
    std::string_view key, titel, text;
};
// clang-format off
constexpr Kopfhilfe kopfhilfen[] = {
    {"GIVN",       "Vornamen",                     "der Personen"},
    {"SURN",       "Nachnamen",                    "der Personen"},
    {"Geschlecht", "Geschlecht",                   "der Personen"},
    {"TITL",       "Titel der Personen",           "Beispiel:\r\nGraf_von , Großherzog_von etc. ..."},
    {"NPFX",       "Vorangestellter Namenszusatz", "Beispiel:\r\nRegierungsrat , Dr. , Professor etc. ..."},
    {"NFSX",       "Nachgestellter Namenszusatz",  "Beispiel:\r\njun. , sen. etc. ..."},
    {"SPFX",       "Namenszusatz vor Nachname",    "Beispiel:\r\nvon , zu, etc. ... "},
    {"ca1",        "Vorangestellte Ergänzung",     "zum Geburtsdatum\r\n\r\nBeispiel:\r\nca. , ab , bis etc. "},
    {"ca2",        "Vorangestellte Ergänzung",     "zum Sterbedatum\r\n\r\nBeispiel:\r\nca. , ab , bis etc. "},
    {"Markierung", "Markierung",                   "Markieren Sie hier Datensätze\r\n z.B. um diese später zu exportieren."},
};
// clang-format on

// The filter texts of the grid as last applied; empty for a grid of no known index.
std::vector<std::string>* filter_merker(Datengrid& grid) {
    if (grid.index() != 0 && grid.index() != 1)
        return nullptr;
    return &Auswahl().filter_merker[grid.index()];
}

// The key of an entry picked from a list, as a whole number; -1 for none.
Value listenschluessel(const Value& wahl) {
    if (wahl.isNull())
        return Value(-1);
    try {
        return Value(static_cast<long long>(wahl.toInt()));
    } catch (const Error&) {
        return Value(-1);
    }
}

void eintraege_lesen(Filterliste& liste) {
    if (!liste.datenbank)
        return;
    auto rs = liste.datenbank->OpenRecordset(liste.abfrage);
    for (; !rs->Eof(); rs->MoveNext())
        liste.eintraege.push_back(
            {rs->get(liste.schluesselspalte - 1), rs->get(liste.anzeigespalte - 1).text()});
}

// The condition of all active filters of the grid, each followed by " AND ", in the order of
// the columns; the header of each column shows whether its filter counts.
std::string bedingung_aufbauen(Datengrid& grid) {
    std::string bedingung;
    for (int i = 1; i <= grid.Cols(); ++i) {
        Spalte& spalte = grid.Columns(i);
        const std::string text = filtertext(spalte);
        if (isBlank(text) || spalte.FilterShowDisabled) {
            spalte.Image = 0;
            continue;
        }
        spalte.ImageAlign = 1;
        spalte.Image = 1;
        bedingung += spaltenbedingung(spalte, text) + " AND ";
    }
    return bedingung;
}

// The query that the grid is bound to: the base query, with the condition where there is one;
// the second grid stays on the records that the closure marked.
std::string gefilterte_abfrage(const std::string& abfrage, std::string bedingung,
                               bool nur_markierte) {
    if (nur_markierte)
        bedingung =
            bedingung.empty() ? " Markierung = true     " : bedingung + " Markierung = true";
    if (bedingung.empty())
        return abfrage;
    if (bedingung.ends_with(" AND "))
        bedingung.resize(bedingung.size() - 5);
    return abfrage + " WHERE " + bedingung;
}

std::string beispiele(const Spalte& spalte) {
    const DateTime heute = DateTime::today();
    const std::string jahr = std::to_string(heute.year());
    if (spalte.DataType == SpaltentypDatum) {
        char datum[16];
        std::snprintf(datum, sizeof datum, "%02d.%02d.%04d", heute.day(), heute.month(),
                      heute.year());
        return std::string(datum) + "\t (ein bestimmtes Datum)" + std::string(Umbruch) +
               "Jahr\t\t (ein bestimmtes Jahr)" + std::string(Umbruch) +
               "Jahr .. Jahr\t (vom Jahr bis Jahr)";
    }
    const std::string key = upperAscii(spalte.Key);
    if (key == "GSORT" || key == "SSORT" || key == "VSORT" || key == "BSORT")
        return jahr + "\t (ein bestimmtes Jahr)" + std::string(Umbruch) + std::string(Umbruch) +
               std::to_string(heute.year() - 10) + ".." + jahr + "\t (für die letzten 10 Jahre)";
    return "a*\t\t (alle Einträge, die mit 'a' beginnen)" + std::string(Umbruch) +
           "*a\t\t (alle Einträge, welche ein 'a' enthalten)" + std::string(Umbruch) +
           "NOT LIKE *a*\t (alle Einträge, die kein 'a' enthalten)";
}

} // namespace

void filter_uebernehmen(Datengrid& grid, int spalte, const std::string& text) {
    Spalte& s = grid.Columns(spalte);
    const Value wahl = std::exchange(grid.filterwahl, Value());
    s.Filter = text;
    if (isBlank(text)) {
        s.FilterShowDisabled = true;
        s.filter_aktiv = false;
        return;
    }
    s.FilterShowDisabled = false;
    s.filter_aktiv = true;
    if (ist_schluesselspalte(s.Key))
        s.Tag = listenschluessel(wahl);
}

Filterliste filterliste_fuellen(Datengrid& grid, int spalte) {
    const std::string& key = grid.Columns(spalte).Key;
    Filterliste liste;
    for (const Listenquelle& q : listenquellen) {
        if (!equalsNoCase(key, q.key))
            continue;
        liste.art = q.art;
        liste.breite = q.breite;
        if (q.art == 2) {
            for (std::string_view schluessel : {q.erster, q.zweiter})
                liste.eintraege.push_back({Value(), sprachtext(std::string(schluessel))});
            liste.eintraege.push_back({Value(), std::string(q.leer)});
            break;
        }
        liste.gebunden = true;
        liste.abfrage = q.abfrage;
        liste.datenbank = (q.datenbank == Listendatenbank::Adressen ? DB_Adressen : DB).get();
        liste.schluesselspalte = 1;
        liste.anzeigespalte = q.anzeigespalte;
        liste.schluessel_verborgen = q.anzeigespalte == 2;
        liste.sichtbare_zeilen = 10;
        eintraege_lesen(liste);
        break;
    }
    return liste;
}

void filter_umschalten(Datengrid& grid, int spalte, int taste, bool im_bearbeiten) {
    if (taste != MausRechts || im_bearbeiten)
        return;
    Spalte& s = grid.Columns(spalte);
    if (isBlank(s.Filter))
        return;
    s.FilterShowDisabled = !s.FilterShowDisabled;
    filter_bestaetigen(grid);
}

void filter_abbrechen(Datengrid& grid, int& taste) {
    if (taste != TasteEscape)
        return;
    if (meldung("Filterbearbeitung wirklich abbrechen?", StilFrageJaNeinNein) != AntwortJa) {
        taste = 0;
        return;
    }
    const std::vector<std::string>* merker = filter_merker(grid);
    for (int i = 1; i <= grid.Cols(); ++i) {
        const auto n = static_cast<std::size_t>(i - 1);
        Spalte& s = grid.Columns(i);
        s.Filter = merker && n < merker->size() ? (*merker)[n] : std::string();
        if (isBlank(s.Filter))
            s.FilterShowDisabled = true;
    }
}

void filter_anwenden(Datengrid& grid, const std::string& abfrage, dao::Database& db,
                     bool nur_markierte) {
    grid.LockUpdate(true);
    try {
        const std::string bedingung = bedingung_aufbauen(grid);
        const std::string sortierung = grid.SortOrder();
        const int hscroll = grid.HScrollPos;
        grid.Recordset(db, gefilterte_abfrage(abfrage, bedingung, nur_markierte));
        grid.DoSort(sortierung);
        grid.HScrollPos = hscroll;
        grid.LockUpdate(false);
        grid.Refresh();
        if (grid.Rows() > 0)
            grid.Row = 1;
        // What Escape gives back: the texts of the filter that now stands.
        if (std::vector<std::string>* merker = filter_merker(grid)) {
            if (merker->size() < static_cast<std::size_t>(grid.Cols()))
                merker->resize(static_cast<std::size_t>(grid.Cols()) + 10);
            for (int i = 1; i <= grid.Cols(); ++i)
                (*merker)[static_cast<std::size_t>(i - 1)] = grid.Columns(i).Filter;
        }
    } catch (const Error& e) {
        meldung("Fehler beim Setzen des Filters!" + std::string(Umbruch) +
                    std::to_string(e.number()) + " - " + e.what() + std::string(Umbruch) +
                    std::string(Umbruch) + db.Name() + std::string(Umbruch) + abfrage,
                0);
        grid.LockUpdate(false);
    }
}

void filter_bestaetigen(Datengrid& grid) {
    if (!DB)
        return;
    const int index = grid.index();
    filter_anwenden(grid, Auswahl().grid_sql[index == 1 ? 1 : 0], *DB, index == 1);
}

Tooltip filter_hilfe(Datengrid& grid, int spalte) {
    const std::string u(Umbruch);
    return {"Auto-Filter",
            "Klicken Sie hier um einen Filter zu setzen." + u + u + "Beispiel:" + u +
                beispiele(grid.Columns(spalte)) + u + u +
                "mit der rechten Maustaste können Sie Filter deaktivieren!",
            true, 1};
}

Tooltip spaltenkopf_hilfe(Datengrid& grid, int spalte) {
    const std::string& key = grid.Columns(spalte).Key;
    Tooltip hilfe{"", "", true, 1};
    for (const Kopfhilfe& k : kopfhilfen)
        if (key == k.key) {
            hilfe.titel = k.titel;
            hilfe.text = k.text;
        }
    return hilfe;
}

} // namespace folio
