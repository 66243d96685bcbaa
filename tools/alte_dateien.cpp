#include "alte_dateien.h"

#include "engine/date_time.h"
#include "engine/engine.h"
#include "engine/recordset.h"

#include <fstream>
#include <initializer_list>
#include <random>
#include <string>
#include <utility>

namespace folio::alt {

namespace fs = std::filesystem;
using schema::Generation;

// The generations and their contents are tables of data, laid out by hand.
// clang-format off
namespace {

using Felder = std::initializer_list<std::pair<const char*, Value>>;

// Adds a row; fields that the generation's table lacks are left out, so one description of
// the content serves every generation.
void zeile(dao::Recordset& rs, Felder felder) {
    rs.AddNew();
    for (const auto& [name, wert] : felder)
        if (rs.hasField(name))
            rs.set(name, wert);
    rs.Update();
}

Value datum(int jahr, int monat, int tag) {
    return Value(DateTime::fromDate(jahr, monat, tag));
}

Value id(int n) {
    return Value(RecordId(n));
}

// The content of a tree of the old schema.
void alte_inhalte(dao::Database& db, Generation g, const fs::path& ordner) {
    auto version = db.OpenRecordset("Version");
    zeile(*version, {{"Versionname", Value(std::string(schema::versionName(g)))},
                     {"kztitelliste", Value("<")},
                     {"kztiteltafel", Value(">")},
                     {"kzrufnameliste", Value("'")},
                     {"kzrufnametafel", Value("'")},
                     {"Vornamen_Laenge", Value(20)},
                     {"Nachnamen_Laenge", Value(30)}});

    // Persons: 1 given names with a call name, a surname; 2 a birth surname beside the
    // family name with a trailing comma; 3 the three roles of "T" and the rarer kinds;
    // 4 no name rows at all; 5 a name of an unknown kind; 6 born in the year 4000, the old
    // mark of an unknown date.
    auto daten = db.OpenRecordset("Daten");
    struct Person {
        int nr;
        const char *vnamen, *nnamen;
        Value geburt;
        const char* geburt_xx;
        Value tod;
        const char* tod_xx;
    };
    const Person personen[] = {
        {1, "Johann Hans", "Müller", datum(1850, 3, 12), "   ", datum(1910, 6, 15), "X__"},
        {2, "Anna", "Schmidt", datum(1855, 7, 2), "XX_", datum(1920, 1, 1), "XXX"},
        {3, "Karl", "Berg", datum(1880, 1, 1), "XXX", datum(4000, 1, 1), "XXX"},
        {4, "Otto", "Ohne", datum(1890, 5, 5), "   ", datum(4000, 1, 1), "XXX"},
        {5, " ", "Rätsel", datum(1899, 9, 9), "   ", datum(4000, 1, 1), "XXX"},
        {6, "Paula", "Vier", datum(4000, 1, 1), "   ", datum(4000, 1, 1), "   "},
    };
    for (const Person& p : personen)
        zeile(*daten, {{"Counter", id(p.nr)},
                       {"Markierung", Value(p.nr <= 2)},
                       {"Marker", Value(p.nr <= 2 ? 1 : 0)},
                       {"Geschlecht", Value(p.nr == 2 || p.nr == 6 ? "W" : "M")},
                       {"Vater", id(0)},
                       {"Mutter", id(0)},
                       {"Vnamen", Value(p.vnamen)},
                       {"Nnamen", Value(p.nnamen)},
                       {"Geburtsdatum", p.geburt},
                       {"Geburt_XX", Value(p.geburt_xx)},
                       {"Sterbedatum", p.tod},
                       {"Sterbe_XX", Value(p.tod_xx)},
                       {"Referenz", id(p.nr == 1 ? 200 : 0)},
                       {"Kekuel", Value(p.nr)}});

    auto namen = db.OpenRecordset("Namen");
    auto namen_ds = db.OpenRecordset("Namen_DS");
    struct Name {
        int person, stellung;
        const char *name, *art;
    };
    const Name namenszeilen[] = {
        {1, 1, "Johann", "V"},  {1, 2, "Hans", "VR"},       {1, 3, "Müller", "N"},
        {2, 1, "Anna", "V"},    {2, 2, "Schmidt", "G"},     {2, 3, "Müller,", "N"},
        {3, 1, "Dr.", "T"},     {3, 2, "Karl", "V"},        {3, 3, "von", "T"},
        {3, 4, "Berg", "N"},    {3, 5, "Prof.", "T"},       {3, 6, "Kalle", "S"},
        {3, 7, "Karlsson", "P"}, {3, 8, " Notiz ", "D"},    {5, 1, "Rätsel", "X"},
        {6, 1, "Paula", "V"},   {6, 2, "Vier", "N"},
    };
    int n = 0;
    for (const Name& z : namenszeilen) {
        ++n;
        zeile(*namen, {{"Counter", id(700 + n)}, {"Namen", Value(z.name)}, {"Vorkommen", Value(" ")}});
        zeile(*namen_ds, {{"Counter", id(n)},
                          {"Namen", Value(z.name)},
                          {"Stellung", Value(z.stellung)},
                          {"Ursprung", Value("D")},
                          {"Quelle", id(z.person)},
                          {"Ziel", id(700 + n)},
                          {"Art", Value(z.art)}});
    }

    // Events: birth and death of person 1 on its dates (their places become the person's),
    // the four types that get new numbers, and a marriage with a witness.
    auto ereignis = db.OpenRecordset("Ereignis");
    auto ereignis_ds = db.OpenRecordset("Ereignis_DS");
    struct Ereignis {
        int nr, art;
        Value von;
        const char* von_xx;
        Value bis;
        const char* bis_xx;
        int ort;
    };
    const Ereignis ereignisse[] = {
        {10, 1, datum(1850, 3, 12), "   ", datum(1850, 3, 12), "   ", 100},
        {11, 5, datum(1910, 6, 1), "X__", datum(4000, 1, 1), "XXX", 101},
        {12, 50, datum(1875, 4, 1), "XX_", datum(4000, 1, 1), "XXX", 0},
        {13, 60, datum(1880, 1, 1), "   ", datum(4000, 1, 1), "XXX", 0},
        {14, 500, datum(1881, 1, 1), "   ", datum(4000, 1, 1), "XXX", 0},
        {15, 501, datum(4000, 1, 1), "XXX", datum(4000, 1, 1), "XXX", 0},
        {16, 10, datum(1878, 5, 20), "   ", datum(4000, 1, 1), "XXX", 100},
    };
    int link = 0;
    for (const Ereignis& e : ereignisse) {
        zeile(*ereignis, {{"Counter", id(e.nr)},
                          {"Art", Value(e.art)},
                          {"Datum_von", e.von},
                          {"Datum_von_XX", Value(e.von_xx)},
                          {"Datum_bis", e.bis},
                          {"Datum_bis_XX", Value(e.bis_xx)},
                          {"Ort", id(e.ort)},
                          {"Grund", Value(e.art == 50 ? "Bauer" : " ")},
                          {"Kurztext", Value(" ")},
                          {"Markierung", Value(false)}});
        zeile(*ereignis_ds, {{"Counter", id(++link)}, {"Quelle", id(1)}, {"Ziel", id(e.nr)},
                             {"Ursprung", Value("d")}});
    }
    for (int e : {14, 16})
        zeile(*ereignis_ds, {{"Counter", id(++link)}, {"Quelle", id(2)}, {"Ziel", id(e)},
                             {"Ursprung", Value("d")}});
    zeile(*ereignis_ds, {{"Counter", id(++link)}, {"Quelle", id(3)}, {"Ziel", id(16)},
                         {"Ursprung", Value("Z")}});

    auto ort = db.OpenRecordset("Ort");
    zeile(*ort, {{"Counter", id(100)}, {"Name", Value("Eichwalde")}});
    zeile(*ort, {{"Counter", id(101)}, {"Name", Value("Kleinbrunn")}});
    auto notizen = db.OpenRecordset("Referenz");
    zeile(*notizen, {{"Counter", id(200)}, {"Name", Value("Kirchenbuch")}, {"Memo", Value("Taufen 1850")}});
    zeile(*notizen, {{"Counter", id(201)}, {"Name", Value("Seite 12")}, {"OberReferenz", id(200)}});

    std::ofstream(ordner / "vorhanden.jpg") << std::string(2048, 'b');
    auto bilder = db.OpenRecordset("Bilder");
    zeile(*bilder, {{"Counter", id(300)}, {"bildpfad", Value(ordner.string() + "/")},
                    {"bildfile", Value("vorhanden.jpg")}, {"Datum", datum(1900, 8, 1)},
                    {"Datum_XX", Value("X__")}});
    zeile(*bilder, {{"Counter", id(301)}, {"bildpfad", Value(ordner.string() + "/")},
                    {"bildfile", Value("fehlt.jpg")}, {"Datum", datum(1901, 1, 1)}, {"Datum_XX", Value("   ")}});
    auto dokument = db.OpenRecordset("Dokument");
    zeile(*dokument, {{"Counter", id(400)}, {"Datum", datum(4000, 1, 1)}, {"Datum_XX", Value("XXX")},
                      {"Referenz", id(201)}});
    auto adressen = db.OpenRecordset("Adressen");
    zeile(*adressen, {{"Counter", id(500)}, {"Adresse", Value("Am Markt 1")}});
    auto familie = db.OpenRecordset("Familie");
    zeile(*familie, {{"Counter", id(600)}});
    auto daten_ds = db.OpenRecordset("Daten_DS");
    zeile(*daten_ds, {{"Counter", id(1)}, {"Quelle", id(1)}, {"Ziel", id(2)}, {"Art", Value("E")}});
    auto quellen = db.OpenRecordset("Quellen_DS");
    zeile(*quellen, {{"Counter", id(1)}, {"Quelle", id(1)}, {"Ziel", id(200)},
                     {"Art_Quelle", Value("D")}, {"Art_Ziel", Value("R")}});
    if (db.hasTable("Galerie")) {
        auto galerie = db.OpenRecordset("Galerie");
        zeile(*galerie, {{"Counter", id(1)}, {"Name", Value("Ahnen")}, {"Hintergrundbild", Value(" ")},
                         {"INI", Value("[alt]")}});
    }
}

// The content of a tree of version 5 or 6.
void neue_inhalte(dao::Database& db, Generation g, const fs::path& ordner) {
    auto version = db.OpenRecordset("Version");
    zeile(*version, {{"Versionname", Value(std::string(schema::versionName(g)))},
                     {"KzTitelvor", Value("[")},
                     {"KzTitelnach", Value("]")},
                     {"GUID_Anwender", Value(" ")}});
    auto daten = db.OpenRecordset("Daten");
    for (int p = 1; p <= 4; ++p)
        zeile(*daten, {{"Counter", id(p)},
                       {"Markierung", Value(p == 1)},
                       {"Marker", Value(p == 1 ? 1 : 0)},
                       {"GIVN", Value("Person")},
                       {"SURN", Value("Nummer " + std::to_string(p))},
                       {"GJahr", Value(p == 4 ? 4000 : 1900 + p)},
                       {"SJahr", Value(p == 4 ? 4000 : 0)},
                       {"SSort", Value(p == 4 ? "40000101" : "")},
                       {"Kekuel", Value(p * 2)},
                       {"Kekuelnr", Value(p * 2.0)}});
    // Occupations: person 1 two events of kind 44 (the later row wins) and one of kind 9;
    // person 2 kind 9 twice (the first stands); person 3 kind 44 with a second date.
    auto ereignis = db.OpenRecordset("Ereignis");
    auto ereignis_ds = db.OpenRecordset("Ereignis_DS");
    struct Ereignis {
        int nr, art;
        const char* grund;
        int bjahr, person, vjahr;
    };
    const Ereignis ereignisse[] = {{10, 44, "Bauer", 0, 1, 1920},   {11, 44, "Müller", 0, 1, 1925},
                                   {12, 9, "Knecht", 0, 1, 1915},   {13, 9, "Weber", 0, 2, 1930},
                                   {14, 9, "Färber", 0, 2, 1931},   {15, 44, "Lehrer", 1950, 3, 1940},
                                   {16, 11, " ", 0, 1, 4000}};
    int link = 0;
    for (const Ereignis& e : ereignisse) {
        zeile(*ereignis, {{"Counter", id(e.nr)}, {"Art", Value(e.art)}, {"Grund", Value(e.grund)},
                          {"BJahr", Value(e.bjahr)}, {"vJahr", Value(e.vjahr)}, {"ca", Value(" ")}});
        zeile(*ereignis_ds, {{"Counter", id(++link)}, {"Quelle", id(e.person)}, {"Ziel", id(e.nr)},
                             {"Ursprung", Value("d")}});
    }
    // The file's own event types: the church wedding without the civil one it depends on,
    // and the occupation with a mark that differs from the catalogue.
    auto typen = db.OpenRecordset("Ereignisdb");
    zeile(*typen, {{"Index", Value(11)}, {"Art", Value("Kirchliche Trauung")}, {"mainindex", Value(10)},
                   {"maxhauptpersonen", Value(2)}, {"CAUSasTAG", Value(false)}});
    zeile(*typen, {{"Index", Value(9)}, {"Art", Value("Beruf")}, {"mainindex", Value(-1)},
                   {"maxhauptpersonen", Value(1)}, {"CAUSasTAG", Value(false)}});

    std::ofstream(ordner / "vorhanden.jpg") << std::string(2048, 'b');
    auto bilder = db.OpenRecordset("Bilder");
    zeile(*bilder, {{"Counter", id(300)}, {"bildpfad", Value(ordner.string() + "/")},
                    {"bildfile", Value("vorhanden.jpg")}});
    zeile(*bilder, {{"Counter", id(301)}, {"bildpfad", Value(ordner.string() + "/")},
                    {"bildfile", Value("fehlt.jpg")}});
    auto notiz = db.OpenRecordset("Notiz");
    zeile(*notiz, {{"Counter", id(200)}, {"Name", Value("Kirchenbuch")}});
}

} // namespace

void beispieldatei(Generation g, const fs::path& target) {
    const fs::path ordner = fs::absolute(target).parent_path();
    schema::writeDatabase(target, schema::tablesOf(g), [&](dao::Database& db) {
        if (schema::oldSchema(g))
            alte_inhalte(db, g, ordner);
        else
            neue_inhalte(db, g, ordner);
    });
}

void erzeugte_datei(Generation g, const fs::path& target, std::int64_t personen,
                    std::uint64_t seed) {
    std::mt19937_64 zufall(seed);
    auto bis = [&](int n) { return static_cast<int>(zufall() % static_cast<std::uint64_t>(n)); };
    const char* vornamen[] = {"Johann", "Anna", "Karl", "Maria", "Friedrich", "Luise", "Wilhelm", "Emma"};
    const char* nachnamen[] = {"Müller", "Schmidt", "Weber", "Fischer", "Becker", "Hoffmann", "Schäfer"};
    const char* marken[] = {"   ", "X__", "XX_", "XXX"};
    const int arten[] = {1, 2, 5, 6, 9, 10, 50, 60};
    schema::writeDatabase(target, schema::tablesOf(g), [&](dao::Database& db) {
        auto version = db.OpenRecordset("Version");
        zeile(*version, {{"Versionname", Value(std::string(schema::versionName(g)))},
                         {"Vornamen_Laenge", Value(20)},
                         {"Nachnamen_Laenge", Value(30)}});
        auto daten = db.OpenRecordset("Daten");
        auto namen_ds = db.OpenRecordset("Namen_DS");
        auto ereignis = db.OpenRecordset("Ereignis");
        auto ereignis_ds = db.OpenRecordset("Ereignis_DS");
        auto ort = db.OpenRecordset("Ort");
        for (int o = 1; o <= 100; ++o)
            zeile(*ort, {{"Counter", id(o)}, {"Name", Value("Ort " + std::to_string(o))}});
        std::int64_t name_nr = 0, ereignis_nr = 0, link_nr = 0;
        for (std::int64_t p = 1; p <= personen; ++p) {
            const int jahr = 1600 + bis(400);
            const std::string vorname = vornamen[bis(8)], nachname = nachnamen[bis(7)];
            zeile(*daten, {{"Counter", Value(RecordId(p))},
                           {"Markierung", Value(false)},
                           {"Vnamen", Value(vorname)},
                           {"Nnamen", Value(nachname)},
                           {"Geburtsdatum", datum(jahr, 1 + bis(12), 1 + bis(28))},
                           {"Geburt_XX", Value(marken[bis(4)])},
                           {"Sterbedatum", datum(jahr + 30 + bis(50), 1 + bis(12), 1 + bis(28))},
                           {"Sterbe_XX", Value(marken[bis(4)])},
                           {"Vater", id(0)},
                           {"Mutter", id(0)}});
            const int zahl = 2 + bis(3);
            for (int k = 1; k <= zahl; ++k)
                zeile(*namen_ds, {{"Counter", Value(RecordId(++name_nr))},
                                  {"Namen", Value(k == zahl ? nachname : vorname)},
                                  {"Stellung", Value(k)},
                                  {"Ursprung", Value("D")},
                                  {"Quelle", Value(RecordId(p))},
                                  {"Ziel", id(0)},
                                  {"Art", Value(k == zahl ? "N" : k == 1 ? "V" : "R")}});
            const int ereignisse = 4 + bis(3);
            for (int k = 0; k < ereignisse; ++k) {
                zeile(*ereignis, {{"Counter", Value(RecordId(++ereignis_nr))},
                                  {"Art", Value(arten[bis(8)])},
                                  {"Datum_von", datum(jahr + bis(60), 1 + bis(12), 1 + bis(28))},
                                  {"Datum_von_XX", Value(marken[bis(4)])},
                                  {"Datum_bis", datum(4000, 1, 1)},
                                  {"Datum_bis_XX", Value("XXX")},
                                  {"Ort", id(1 + bis(100))},
                                  {"Grund", Value(" ")},
                                  {"Kurztext", Value(" ")}});
                zeile(*ereignis_ds, {{"Counter", Value(RecordId(++link_nr))},
                                     {"Quelle", Value(RecordId(p))},
                                     {"Ziel", Value(RecordId(ereignis_nr))},
                                     {"Ursprung", Value("d")}});
            }
        }
    });
}

// clang-format on
} // namespace folio::alt
