#include "wizard/grid_aufbau.h"

#include "database/tabellen.h"
#include "engine/errors.h"
#include "engine/text_util.h"
#include "frame/globals.h"
#include "frame/ini.h"
#include "frame/sprache.h"
#include "wizard/auswahl.h"
#include "wizard/icons.h"
#include "wizard/zeile_vorbereiten.h"

#include <algorithm>
#include <initializer_list>
#include <string_view>
#include <vector>

namespace folio {

namespace {

// How a column is set up. A width or minimum width of -1 and a null caption keep what the
// grid gave the column. A caption that begins with a digit is a language key.
enum class Zelle { Text, Bild, Haken };

struct Vorgabe {
    const char* key;
    bool sichtbar;
    int breite;
    int mindestbreite;
    const char* titel;
    Zelle zelle;
    const char* format;
};

constexpr int X = -1; // keep

// clang-format off
const Vorgabe Personenspalten[] = {
    {"Counter",    false, X,    X,    nullptr, Zelle::Text,  nullptr},
    {"Markierung", true,  200,  X,    nullptr, Zelle::Haken, nullptr},
    {"Lebt",       false, X,    X,    nullptr, Zelle::Text,  nullptr},
    {"Marker",     false, X,    X,    nullptr, Zelle::Text,  nullptr},
    {"Geschlecht", true,  330,  X,    nullptr, Zelle::Bild,  nullptr},
    {"NPFX",       true,  350,  200,  "346",   Zelle::Text,  nullptr},
    {"GIVN",       true,  1200, 700,  "347",   Zelle::Text,  nullptr},
    {"SPFX",       true,  350,  200,  "348",   Zelle::Text,  nullptr},
    {"SURN",       true,  1500, 1200, "349",   Zelle::Text,  nullptr},
    {"NFSX",       true,  350,  X,    "350",   Zelle::Text,  nullptr},
    {"TITL",       true,  1000, X,    "351",   Zelle::Text,  nullptr},
    {"Bild",       true,  330,  X,    "",      Zelle::Bild,  "####"},
    {"ca1",        true,  600,  X,    "352",   Zelle::Text,  nullptr},
    {"GSort",      true,  1000, X,    "345",   Zelle::Text,  nullptr},
    {"Gdatum",     false, X,    X,    nullptr, Zelle::Text,  nullptr},
    {"GOrt",       true,  1500, X,    "353",   Zelle::Text,  nullptr},
    {"ca2",        true,  600,  X,    "352",   Zelle::Text,  nullptr},
    {"SSort",      true,  1000, X,    "344",   Zelle::Text,  nullptr},
    {"Sdatum",     false, X,    X,    nullptr, Zelle::Text,  nullptr},
    {"SOrt",       true,  1500, X,    "354",   Zelle::Text,  nullptr},
    {"Status",     true,  1000, X,    "8038",  Zelle::Text,  nullptr},
    {"Ort",        true,  X,    X,    "1070",  Zelle::Text,  nullptr},
    {"OCCU",       true,  X,    X,    "1399",  Zelle::Text,  nullptr},
    {"Religion",   true,  X,    X,    "533",   Zelle::Text,  nullptr},
    {"Notiz",      true,  X,    X,    "3626",  Zelle::Text,  nullptr},
};

const Vorgabe Ereignisspalten[] = {
    {"Markierung", true,  200,  X,    nullptr, Zelle::Haken, nullptr},
    {"Art",        true,  600,  X,    nullptr, Zelle::Bild,  nullptr},
    {"ca",         true,  600,  X,    "8391",  Zelle::Text,  nullptr},
    {"vsort",      true,  1000, X,    "2803",  Zelle::Text,  nullptr},
    {"vdatum",     false, X,    X,    nullptr, Zelle::Text,  nullptr},
    {"bsort",      true,  1000, X,    "2804",  Zelle::Text,  nullptr},
    {"bdatum",     false, X,    X,    nullptr, Zelle::Text,  nullptr},
    {"Listentext", true,  X,    1000, "",      Zelle::Text,  nullptr},
    {"Bild",       true,  300,  X,    "",      Zelle::Bild,  "####"},
    {"Ort",        true,  1500, X,    "1070",  Zelle::Text,  nullptr},
    {"Status",     true,  1000, X,    "Status", Zelle::Text, nullptr},
};

const Vorgabe Ortspalten[] = {
    {"Markierung", true,  200,  X,    nullptr, Zelle::Haken, nullptr},
    {"Name",       true,  X,    2000, "Name",  Zelle::Text,  nullptr},
    {"Bild",       true,  300,  X,    "",      Zelle::Bild,  "####"},
    {"Oberort",    false, X,    X,    nullptr, Zelle::Text,  nullptr},
    {"Notiz",      true,  X,    X,    "Notiz", Zelle::Text,  nullptr},
    {"Status",     true,  1000, X,    "Status", Zelle::Text, nullptr},
};

const Vorgabe Dokumentspalten[] = {
    {"Markierung", true,  200,  X,    nullptr, Zelle::Haken, nullptr},
    {"Dok_art",    true,  300,  X,    nullptr, Zelle::Bild,  nullptr},
    {"Vorlage",    true,  300,  X,    nullptr, Zelle::Text,  nullptr},
    {"ca",         true,  600,  X,    "8391",  Zelle::Text,  nullptr},
    {"vsort",      true,  1000, X,    "2380",  Zelle::Text,  nullptr},
    {"vdatum",     false, X,    X,    nullptr, Zelle::Text,  nullptr},
    {"Listentext", true,  X,    2000, "7216 Dokumenten Titel", Zelle::Text, nullptr},
    {"Bild",       true,  300,  X,    "",      Zelle::Bild,  "####"},
    {"Oberdoc",    false, X,    X,    nullptr, Zelle::Text,  nullptr},
    {"Ort",        true,  X,    X,    "Ort",   Zelle::Text,  nullptr},
    {"Notiz",      true,  X,    X,    "Notiz", Zelle::Text,  nullptr},
    {"Status",     true,  1000, X,    "Status", Zelle::Text, nullptr},
};

const Vorgabe Bilderspalten[] = {
    {"Markierung", true,  200,  X,    nullptr, Zelle::Haken, nullptr},
    {"Listentext", true,  X,    2000, "1089 Listenname", Zelle::Text, nullptr},
    {"ca",         true,  600,  X,    "ca.",   Zelle::Text,  nullptr},
    {"vdatum",     true,  1000, X,    "8392 Datum", Zelle::Text, nullptr},
    {"Ort",        true,  X,    X,    "Ort",   Zelle::Text,  nullptr},
    {"Notiz",      true,  X,    X,    "Notiz", Zelle::Text,  nullptr},
    {"Status",     true,  1000, X,    "Status", Zelle::Text, nullptr},
    {"MCIPfad",    true,  330,  X,    nullptr, Zelle::Bild,  nullptr},
};

const Vorgabe Notizspalten[] = {
    {"Markierung", true,  200,  X,    nullptr, Zelle::Haken, nullptr},
    {"Name",       true,  X,    2000, "Listenbezeichnung", Zelle::Text, nullptr},
    {"Obernotiz",  false, X,    X,    nullptr, Zelle::Text,  nullptr},
    {"Status",     true,  1000, X,    "Status", Zelle::Text, nullptr},
};

const Vorgabe Adressspalten[] = {
    {"Markierung", true,  200,  X,    nullptr, Zelle::Haken, nullptr},
    {"Listenname", true,  X,    2000, "Bezeichnung", Zelle::Text, nullptr},
    {"Notiz",      true,  X,    X,    "Notiz", Zelle::Text,  nullptr},
    {"Ort",        true,  X,    X,    "Ort",   Zelle::Text,  nullptr},
    {"Status",     true,  1000, X,    "Status", Zelle::Text, nullptr},
};

// The tables of the linked records: the button's key, the query, the form name of the column
// settings, the sort, the columns, and the columns that stay hidden whatever the settings say.
struct Tabelle {
    const char* key;
    const char* abfrage;
    const char* formular;
    const char* sortierung;
    const Vorgabe* spalten;
    std::size_t anzahl;
    std::initializer_list<const char*> verborgen;
};

const Tabelle Tabellen[] = {
    {"Ereignisse", "SELECT Counter, Markierung,art,ca,vsort,vdatum,bsort,bdatum,listentext ,Bild,Ort, status  FROM Ereignis ",
     "Ereignis", "Vdatum", Ereignisspalten, std::size(Ereignisspalten), {}},
    {"Orte", "SELECT Counter,Markierung, Name,Bild,Oberort,Notiz, Status FROM Ort ",
     "Orteform", "Name", Ortspalten, std::size(Ortspalten), {"Oberort"}},
    {"Dokumente", "SELECT Counter,Markierung, Dok_art, Vorlage, ca, vsort, vdatum, Listentext,Bild, Oberdoc, Ort, Notiz, Status FROM Dokument ",
     "Dokumenten", "Listentext", Dokumentspalten, std::size(Dokumentspalten), {"vdatum", "Oberdoc"}},
    {"Bilder", "SELECT Counter, Markierung, Listentext, ca, vdatum, Ort, Notiz,Status, MCIPfad FROM Bilder ",
     "Bilder", "Listentext", Bilderspalten, std::size(Bilderspalten), {}},
    {"Notizen", "SELECT Counter, Markierung, Name, Obernotiz, Status FROM Notiz ",
     "Notizen", "Name", Notizspalten, std::size(Notizspalten), {"Obernotiz"}},
    {"Adressen", "SELECT Counter, Markierung, listenname, Ort,Notiz, Status  FROM Adressen ",
     "Adressen", "Listenname", Adressspalten, std::size(Adressspalten), {}},
};

const char* const Personenabfrage =
    "SELECT Counter, Markierung, Lebt, Marker, Geschlecht, NPFX, GIVN, SPFX, SURN, NFSX ,TITL, "
    "Bild, ca1,Gdatum,Gsort, Gort, ca2, Sdatum, Ssort ,SOrt, status, ORT,OCCU,Religion, Notiz  "
    "FROM Daten";
// clang-format on

constexpr const char* Produkt = "Stammfolio";
constexpr const char* Gridname = "Datengrid0_Cols";

std::string titel(const char* vorgabe) {
    const std::string_view t(vorgabe);
    return !t.empty() && t.front() >= '0' && t.front() <= '9' ? sprachtext(vorgabe)
                                                              : std::string(t);
}

void spalten_einrichten(Datengrid& grid, const Vorgabe* vorgaben, std::size_t anzahl) {
    for (Spalte& sp : grid.spalten())
        if (equalsNoCase(sp.Key, "Counter"))
            sp.Visible = false;
    for (std::size_t i = 0; i < anzahl; ++i) {
        const Vorgabe& v = vorgaben[i];
        if (grid.GetCol(v.key) == 0)
            continue;
        Spalte& sp = grid.Columns(v.key);
        sp.Visible = v.sichtbar;
        if (v.breite != X)
            sp.Width = v.breite;
        if (v.mindestbreite != X)
            sp.MinWidth = v.mindestbreite;
        if (v.titel)
            sp.Caption = titel(v.titel);
        if (v.format)
            sp.Format = v.format;
        sp.Bildspalte = v.zelle == Zelle::Bild;
        sp.Bearbeitbar = v.zelle == Zelle::Haken;
    }
}

// The grid's query, with the condition of the rows shown; the recordset that the grid was
// handed isn't kept: the grid reads its rows itself, at once in the order of the sort that
// the set-up ends with.
void binden(Datengrid& grid, const std::string& sql, const char* sortierung) {
    grid.Clear(true);
    grid.Recordset(*DB, sql, sortierung);
    grid.zeilenereignis = zeile_vorbereiten;
}

const Tabelle* tabelle(const std::string& key) {
    for (const Tabelle& t : Tabellen)
        if (key == t.key)
            return &t;
    return nullptr;
}

// The pictures of the second grid by table.
void bilder_der_tabelle(Datengrid& grid, const std::string& key) {
    if (key == "Ereignisse") {
        ereignisicons_laden(grid);
    } else if (key == "Orte") {
        grid.Icons = {{"Filter", bild_aus_lager("Filter")}, {"Bild2", bild_aus_lager("Bild2")}};
    } else if (key == "Dokumente") {
        grid.Icons = dokumentbilder();
    } else {
        grid.Icons = {{"Filter", bild_aus_lager("Filter")}};
    }
}

} // namespace

std::string spalten_ini() {
    return pfad_verbinden(Datenpfad, "columns.ini");
}

void personengrid_aufbauen() {
    AuswahlForm& form = Auswahl();
    Datengrid& grid = form.grid(0);
    form.grid_sql[0] = Personenabfrage;
    grid.LockUpdate(true);
    grid.Clear();
    grid.Icons.clear();
    for (const char* key : {"Filter", "Bild2", "Mann", "Frau"})
        grid.Icons.push_back({key, bild_aus_lager(key)});
    binden(grid, form.grid_sql[0], "SURN");
    spalten_einrichten(grid, Personenspalten, std::size(Personenspalten));
    grid.Formularname = "Datenblatt_FOLIOexport";
    spalteneinstellungen_laden(grid, Produkt, grid.Formularname, Gridname, spalten_ini());
    grid.DoSort("SURN");
    grid.LockUpdate(false);
    grid.Refresh();
    form.filter_merker[0].assign(static_cast<std::size_t>(grid.Cols() + 10), "");
}

void grid2_aufbauen(const std::string& key) {
    AuswahlForm& form = Auswahl();
    form.set("MousePointer", Value(MausSanduhr));
    if (const Tabelle* t = tabelle(key)) {
        Datengrid& grid = form.grid(1);
        form.grid_sql[1] = t->abfrage;
        grid.LockUpdate(true);
        grid.Clear(true);
        grid.Icons.clear();
        bilder_der_tabelle(grid, key);
        try {
            binden(grid, form.grid_sql[1] + " WHERE Markierung = True ", t->sortierung);
        } catch (...) {
            grid.LockUpdate(false);
            form.set("MousePointer", Value(MausNormal));
            throw;
        }
        spalten_einrichten(grid, t->spalten, t->anzahl);
        grid.Formularname = t->formular;
        spalteneinstellungen_laden(grid, Produkt, grid.Formularname, Gridname, spalten_ini());
        for (const char* verborgen : t->verborgen)
            grid.Columns(verborgen).Visible = false;
        grid.DoSort(t->sortierung);
        grid.LockUpdate(false);
        grid.Refresh();
        form.filter_merker[1].assign(static_cast<std::size_t>(grid.Cols() + 10), "");
    }
    form.set("MousePointer", Value(MausNormal));
}

std::string formularname(const Datengrid& grid) {
    return grid.Formularname;
}

// --- Column settings ----------------------------------------------------------------------

namespace {

std::string sektion(const std::string& produkt, const std::string& formular,
                    const std::string& gridname) {
    return produkt + "/" + formular + "/" + gridname;
}

// Gives every column a place 1, 2, ...: first the places that the settings asked for (the
// first column to ask gets a place), then the others in their order, into the free places.
void plaetze_vergeben(Datengrid& grid, const std::vector<int>& gewuenscht) {
    std::vector<bool> besetzt(static_cast<std::size_t>(grid.Cols()) + 1, false);
    std::vector<bool> platziert(gewuenscht.size(), false);
    for (std::size_t i = 0; i < gewuenscht.size(); ++i) {
        const int p = gewuenscht[i];
        if (p >= 1 && p <= grid.Cols() && !besetzt[static_cast<std::size_t>(p)]) {
            besetzt[static_cast<std::size_t>(p)] = true;
            platziert[i] = true;
            grid.spalten()[i].Position = p;
        }
    }
    std::size_t frei = 1;
    for (std::size_t i = 0; i < gewuenscht.size(); ++i) {
        if (platziert[i])
            continue;
        while (besetzt[frei])
            ++frei;
        besetzt[frei] = true;
        grid.spalten()[i].Position = static_cast<int>(frei);
    }
}

} // namespace

void spalteneinstellungen_laden(Datengrid& grid, const std::string& produkt,
                                const std::string& formular, const std::string& gridname,
                                const std::string& datei) {
    const std::string s = sektion(produkt, formular, gridname);
    std::vector<int> gewuenscht;
    for (Spalte& sp : grid.spalten()) {
        gewuenscht.push_back(0);
        const std::string eintrag = ini_lesen(datei, s, sp.Key, "");
        if (eintrag.empty())
            continue;
        const std::size_t k1 = eintrag.find(',');
        const std::size_t k2 = k1 == std::string::npos ? k1 : eintrag.find(',', k1 + 1);
        if (k2 == std::string::npos)
            continue; // a damaged entry keeps the defaults
        const double breite = numericValue(eintrag.substr(0, k1));
        const double position = numericValue(eintrag.substr(k1 + 1, k2 - k1 - 1));
        if (breite >= 0 && breite <= 100000)
            sp.Width = static_cast<int>(breite);
        gewuenscht.back() = static_cast<int>(position);
        sp.Visible = numericValue(eintrag.substr(k2 + 1)) != 0;
    }
    plaetze_vergeben(grid, gewuenscht);
}

void spalteneinstellungen_speichern(Datengrid& grid, const std::string& produkt,
                                    const std::string& formular, const std::string& gridname,
                                    const std::string& datei) {
    const std::string s = sektion(produkt, formular, gridname);
    for (const Spalte& sp : grid.spalten())
        ini_schreiben(datei, s, sp.Key,
                      std::to_string(sp.Width) + "," + std::to_string(sp.Position) + "," +
                          (sp.Visible ? "1" : "0"));
}

} // namespace folio
