// The whole chain on a file of every older generation: the result has the current schema
// field by field and keeps every record, the data of the old forms comes over by the rules
// of the migration and the later steps, a copy of the old file stays beside it, and a
// second opening changes nothing.
#include "alte_dateien.h"
#include "database/schema/generations.h"
#include "frame/start.h"
#include "support/stoerung_schleife.h"
#include "support/upgrade_fixture.h"

#include <filesystem>
#include <map>
#include <tuple>

using namespace folio;
namespace fs = std::filesystem;
using schema::Generation;

namespace {

struct Generationen : test::UpgradeFixture, ::testing::WithParamInterface<Generation> {
    // Every row of every table of the open file, as text.
    std::string inhalt() {
        std::string alles;
        std::vector<std::string> tabellen = DB->TableNames();
        std::sort(tabellen.begin(), tabellen.end());
        for (const std::string& t : tabellen) {
            auto rs = DB->OpenRecordset("SELECT * FROM " + t);
            for (; !rs->Eof(); rs->MoveNext()) {
                alles += t + ":";
                for (std::size_t i = 0; i < rs->Fields().size(); ++i)
                    alles += " " + rs->get(static_cast<int>(i)).text();
                alles += "\n";
            }
        }
        return alles;
    }
    std::string feld(const char* tabelle, int counter, const char* name) {
        auto rs = DB->OpenRecordset(std::string("SELECT ") + name + " FROM " + tabelle +
                                    " WHERE Counter = " + std::to_string(counter));
        return rs->Eof() ? "<none>" : rs->get(0).text();
    }
    long long anzahl(const char* sql) { return DB->OpenRecordset(sql)->get(0).toInt(); }
};

using Aelteste = test::UpgradeFixture;

std::string name(const ::testing::TestParamInfo<Generation>& info) {
    std::string n(schema::generationName(info.param));
    std::replace(n.begin(), n.end(), '.', '_');
    return n;
}

} // namespace

TEST_P(Generationen, ReachTheCurrentSchemaWithNothingLost) {
    const Generation g = GetParam();
    alt::beispieldatei(g, baeume + "/Familie.SF6");
    const long long personen = [&] {
        auto db = dao::OpenDatabase(baeume + "/Familie.SF6", false, true);
        return db->OpenRecordset("SELECT count(*) FROM Daten")->get(0).toInt();
    }();
    ASSERT_EQ(oeffnen("Familie.SF6"), Geoeffnet::Ja) << messages();
    // The oldest files keep the older marks of name input, which no step deletes; the
    // marks of today took their values.
    const std::vector<std::string> alte_felder = {
        "Version.kztitelliste is too many", "Version.kztiteltafel is too many",
        "Version.kzrufnameliste is too many", "Version.kzrufnametafel is too many"};
    EXPECT_EQ(test::schema_unterschiede(*DB),
              g == Generation::Urform ? alte_felder : std::vector<std::string>{});
    if (g == Generation::Urform) {
        EXPECT_EQ(DB->OpenRecordset("SELECT KzTitelvor & KzTitelnach & KzRufnamevor & "
                                    "KzGeburtsnamevor FROM Version")
                      ->get(0)
                      .text(),
                  "<>'{");
    }
    EXPECT_EQ(version(), "6.0.102");
    EXPECT_EQ(anzahl("SELECT count(*) FROM Daten"), personen);
    EXPECT_FALSE(Fortschrittfrm().geladen());

    // The copy of the old file lies beside it and says its version; the note told where.
    const std::string alt = std::string(schema::versionName(g));
    const std::string kopie = baeume + "/Familie (" + (alt.empty() ? "alt" : alt) + ").bak";
    ASSERT_TRUE(fs::exists(kopie)) << messages();
    EXPECT_NE(messages().find(kopie), std::string::npos);
    {
        auto vorher = dao::OpenDatabase(kopie, false, true);
        EXPECT_EQ(vorher->TableNames().size(), schema::tablesOf(g).size());
    }

    // Null fields got their values, in every generation below 5.0.190.
    if (!(g == Generation::V5_0_190 || g == Generation::V5_0_220 || g == Generation::V5_1_100 ||
          g == Generation::V6_0_100)) {
        EXPECT_EQ(anzahl("SELECT count(*) FROM Ereignis WHERE BTag IS NULL OR ca IS NULL"), 0);
        EXPECT_EQ(anzahl("SELECT count(*) FROM Daten WHERE Religion IS NULL OR gJahr = 4000"), 0);
    }
    // Every generation: the occupations, the picture sizes, the types that the file's types
    // depend on and the cause-as-tag marks of the catalogue.
    EXPECT_EQ(feld("Bilder", 300, "groesse"), "2048");
    EXPECT_EQ(feld("Bilder", 301, "groesse"), "0");
    const bool vor_5_0_220 =
        schema::oldSchema(g) || g == Generation::V5_0_100 || g == Generation::V5_0_190;
    EXPECT_EQ(anzahl("SELECT count(*) FROM Ereignisdb WHERE [Index] = 10"), vor_5_0_220 ? 1 : 0);
    EXPECT_EQ(anzahl("SELECT count(*) FROM Ereignisdb WHERE [Index] = 9 AND CAUSasTAG = TRUE"),
              schema::oldSchema(g) || g == Generation::V6_0_100 ? 0 : 1);

    if (schema::oldSchema(g)) {
        // Names from the old name table.
        EXPECT_EQ(feld("Daten", 1, "GIVN"), "Johann Hans");
        EXPECT_EQ(feld("Daten", 1, "RufNamen"), "Hans");
        EXPECT_EQ(feld("Daten", 1, "SURN"), "Müller");
        EXPECT_EQ(feld("Daten", 1, "Familienname"), "");
        EXPECT_EQ(feld("Daten", 2, "SURN"), "Schmidt");
        EXPECT_EQ(feld("Daten", 2, "Familienname"), "Müller");
        EXPECT_EQ(feld("Daten", 2, "NameNOTE"), "Müller,");
        EXPECT_EQ(feld("Daten", 3, "NPFX"), "Dr.");
        EXPECT_EQ(feld("Daten", 3, "SPFX"), "von");
        EXPECT_EQ(feld("Daten", 3, "TITL"), "Prof.");
        EXPECT_EQ(feld("Daten", 3, "NICK"), "Kalle");
        EXPECT_EQ(feld("Daten", 3, "Patronym"), "Karlsson");
        EXPECT_EQ(feld("Daten", 3, "NameNOTE"), "Notiz");
        EXPECT_EQ(feld("Daten", 5, "SURN"), "Rätsel");
        EXPECT_EQ(feld("Namen", 705, "Vorkommen"), " G");
        EXPECT_EQ(feld("Namen", 707, "Vorkommen"), " U");
        EXPECT_EQ(feld("Namen", 709, "Vorkommen"), " M");
        // A person without name rows keeps its list text from the old fields.
        EXPECT_EQ(feld("Daten", 4, "Listentext"), "OttoOhne ");
        // Dates by their marks, and the places of birth and death from their events.
        EXPECT_EQ(feld("Daten", 1, "GSort"), "18500312");
        EXPECT_EQ(feld("Daten", 1, "SSort"), "191006");
        EXPECT_EQ(feld("Daten", 1, "STag"), "0");
        EXPECT_EQ(feld("Daten", 2, "GSort"), "1855");
        EXPECT_EQ(feld("Daten", 2, "SDatum"), "");
        EXPECT_EQ(feld("Daten", 6, "GJahr"), "0");
        EXPECT_EQ(feld("Daten", 1, "GOrt"), "100");
        EXPECT_EQ(feld("Daten", 1, "SOrt"), "101");
        // The four renumbered types; the notes under their new name with their data.
        EXPECT_EQ(feld("Ereignis", 12, "Art"), "44");
        EXPECT_EQ(feld("Ereignis", 13, "Art"), "45");
        EXPECT_EQ(feld("Ereignis", 14, "Art"), "46");
        EXPECT_EQ(feld("Ereignis", 15, "Art"), "47");
        EXPECT_EQ(feld("Ereignis", 12, "vSort"), "1875");
        EXPECT_EQ(feld("Notiz", 201, "OberNotiz"), "200");
        EXPECT_EQ(feld("Daten", 1, "Notiz"), "200");
        EXPECT_EQ(feld("Dokument", 400, "Notiz"), "201");
        // The cause of the old occupation type, where the file had the field for it.
        EXPECT_EQ(feld("Daten", 1, "OCCU"), g == Generation::Urform ? "" : "Bauer");
        EXPECT_EQ(feld("Daten", 1, "Markierung"), "True");
    } else {
        EXPECT_EQ(feld("Daten", 1, "OCCU"),
                  g == Generation::V5_1_100 || g == Generation::V6_0_100 ? "" : "Müller");
        EXPECT_EQ(feld("Daten", 3, "Kekuelnr"), "6");
    }

    // A second opening changes nothing and says nothing.
    const std::string erst = inhalt();
    scripted->shown.clear();
    alle_schliessen("");
    ASSERT_EQ(oeffnen("Familie.SF6"), Geoeffnet::Ja);
    EXPECT_TRUE(scripted->shown.empty()) << messages();
    EXPECT_EQ(inhalt(), erst);
}

INSTANTIATE_TEST_SUITE_P(Alle, Generationen, ::testing::ValuesIn(schema::AllGenerations), name);

namespace {
using Migration = test::UpgradeFixture;
}

TEST_F(Migration, AFailedMigrationLeavesTheOldFileAndTheNextOpeningDoesItAll) {
    alt::beispieldatei(Generation::V4, baeume + "/Alt.SF6");
    oeffnen_scheitert_bei(27, "Alt.SF6");
    {
        auto alt = dao::OpenDatabase(baeume + "/Alt.SF6", false, true);
        EXPECT_TRUE(alt->hasTable("Namen_DS"));
        EXPECT_TRUE(alt->hasTable("Referenz"));
        EXPECT_EQ(alt->OpenRecordset("SELECT Versionname FROM Version")->get(0).text(), "4.3.120");
    }
    ASSERT_EQ(oeffnen("Alt.SF6"), Geoeffnet::Ja);
    EXPECT_EQ(test::schema_unterschiede(*DB), std::vector<std::string>{});
    EXPECT_EQ(DB->OpenRecordset("SELECT GIVN FROM Daten WHERE Counter = 1")->get(0).text(),
              "Johann Hans");
}

TEST_F(Migration, ACompactionThatCannotWriteLeavesTheMigratedFileAsItWas) {
    alt::beispieldatei(Generation::V4, baeume + "/Alt.SF6");
    // Where the compacted file would be written, something stands that can't be replaced.
    fs::create_directories(baeume + "/Alt.SF6.part/belegt");
    EXPECT_THROW(oeffnen("Alt.SF6"), std::exception);
    alle_schliessen("");
    DB.reset();
    {
        auto halb = dao::OpenDatabase(baeume + "/Alt.SF6", false, true);
        EXPECT_FALSE(halb->hasTable("Namen_DS"));
        EXPECT_EQ(halb->OpenRecordset("SELECT Versionname FROM Version")->get(0).text(), "5.0.100");
        EXPECT_EQ(halb->OpenRecordset("SELECT GIVN FROM Daten WHERE Counter = 1")->get(0).text(),
                  "Johann Hans");
    }
    fs::remove_all(baeume + "/Alt.SF6.part");
    ASSERT_EQ(oeffnen("Alt.SF6"), Geoeffnet::Ja);
    EXPECT_EQ(test::schema_unterschiede(*DB), std::vector<std::string>{});
    EXPECT_EQ(version(), "6.0.102");
}

TEST_F(Migration, AnEmptyTreeOfTheOldestGenerationPassesEveryStep) {
    alt::erzeugte_datei(Generation::Urform, baeume + "/Leer.SF6", 0);
    ASSERT_EQ(oeffnen("Leer.SF6"), Geoeffnet::Ja) << messages();
    EXPECT_EQ(version(), "6.0.102");
    EXPECT_EQ(DB->OpenRecordset("SELECT count(*) FROM Daten")->get(0).toInt(), 0);
}

TEST_F(Migration, ListTextsOfEventsHaveTheWordsOfTheirTypeAndWholeCharacters) {
    alt::beispieldatei(Generation::V4, baeume + "/Alt.SF6");
    {
        // Anna Meier and Karl Huber marry in Rom; a person whose names are longer than a
        // list text, all in two-byte characters, is born.
        auto db = dao::OpenDatabase(baeume + "/Alt.SF6");
        auto zeile = [&](const char* tabelle,
                         std::initializer_list<std::pair<const char*, Value>> felder) {
            auto rs = db->OpenRecordset(tabelle);
            rs->AddNew();
            for (const auto& [name, wert] : felder)
                rs->set(name, wert);
            rs->Update();
        };
        std::string aeh, oeh;
        for (int i = 0; i < 130; ++i) {
            aeh += "Ä";
            oeh += "Ö";
        }
        const std::pair<int, const char*> personen[] = {{20, "W"}, {21, "M"}, {22, "M"}};
        for (const auto& [nr, geschlecht] : personen)
            zeile("Daten", {{"Counter", Value(RecordId(nr))},
                            {"Geschlecht", Value(geschlecht)},
                            {"Vater", Value(RecordId())},
                            {"Mutter", Value(RecordId())}});
        const std::tuple<int, const std::string, const char*> namen[] = {
            {20, "Anna", "V"},  {20, "Meier", "N"}, {21, "Karl", "V"},
            {21, "Huber", "N"}, {22, aeh, "V"},     {22, oeh, "N"}};
        int n = 900;
        for (const auto& [person, name, art] : namen)
            zeile("Namen_DS", {{"Counter", Value(RecordId(++n))},
                               {"Namen", Value(name)},
                               {"Stellung", Value(n)},
                               {"Ursprung", Value("D")},
                               {"Quelle", Value(RecordId(person))},
                               {"Ziel", Value(RecordId(n))},
                               {"Art", Value(art)}});
        zeile("Ort", {{"Counter", Value(RecordId(102))}, {"Name", Value("Rom")}});
        const std::tuple<int, int, int> ereignisse[] = {{30, 10, 102}, {31, 1, 0}};
        for (const auto& [nr, art, ort] : ereignisse)
            zeile("Ereignis", {{"Counter", Value(RecordId(nr))},
                               {"Art", Value(art)},
                               {"Ort", Value(RecordId(ort))},
                               {"Datum_von_XX", Value("XXX")},
                               {"Datum_bis_XX", Value("XXX")}});
        const std::pair<int, int> links[] = {{20, 30}, {21, 30}, {22, 31}};
        for (const auto& [person, ereignis] : links)
            zeile("Ereignis_DS", {{"Counter", Value(RecordId(++n))},
                                  {"Quelle", Value(RecordId(person))},
                                  {"Ziel", Value(RecordId(ereignis))},
                                  {"Ursprung", Value("d")}});
    }
    ASSERT_EQ(oeffnen("Alt.SF6"), Geoeffnet::Ja) << messages();
    auto text = [&](const char* tabelle, int counter) {
        return DB
            ->OpenRecordset(std::string("SELECT Listentext FROM ") + tabelle +
                            " WHERE Counter = " + std::to_string(counter))
            ->get(0)
            .text();
    };
    // The words of the type come from the catalogue: the file had no table of types yet.
    EXPECT_EQ(text("Ereignis", 30), "Heirat von Anna Meier in Rom mit Karl Huber ");
    // Cut at 255 characters, never inside one.
    const std::string person = text("Daten", 22);
    const std::string geburt = text("Ereignis", 31);
    EXPECT_EQ(utf8Length(person), 255u);
    EXPECT_EQ(person.size(), 2 * 254u + 1); // 130 Ä, a blank, 124 Ö
    EXPECT_EQ(geburt.rfind("Geburt von ÄÄÄ", 0), 0u);
    EXPECT_EQ(utf8Length(geburt), 255u);
    EXPECT_EQ((static_cast<unsigned char>(geburt.back()) & 0xC0), 0x80u); // ends in a whole Ö
}

// The oldest file on a failing disk: the migration, its compaction and the steps behind them
// with each read, write and sync failing in turn, and with the disk full from each write on.
// The file stays at a finished step (the compaction leaves it whole), and the next opening
// brings it to today's schema with every person.
TEST_F(Aelteste, EachFailingReadWriteOrSyncOfTheMigrationLeavesAFileTheNextOpeningFinishes) {
    const std::string baum = baeume + "/Familie.SF6";
    auto vorbereiten = [&] {
        neu_anfangen();
        alt::beispieldatei(Generation::Urform, baum);
    };
    auto oeffnen_lassen = [&] { return oeffnen_versuchen("Familie.SF6"); };
    vorbereiten();
    const long long personen = [&] {
        auto db = dao::OpenDatabase(baum, false, true);
        return db->OpenRecordset("SELECT count(*) FROM Daten")->get(0).toInt();
    }();
    // What a finished conversion lacks of today's schema or holds otherwise: nothing. (A chain
    // broken off between the step that renames Kekuel and the last one adds an empty Kekuel
    // again when it runs anew, as the old steps test for their fields: one field too many.)
    auto fehlt_etwas = [] {
        std::vector<std::string> u = test::schema_unterschiede(*DB);
        std::erase_if(u, [](const std::string& s) { return s.ends_with(" is too many"); });
        return u;
    };
    test::auf_fehlerhafter_platte(
        vorbereiten, oeffnen_lassen,
        [&](const stoerung::Plan&, bool ausgeloest, const std::string& fehler) {
            if (!fehler.empty()) {
                EXPECT_TRUE(ausgeloest) << fehler;
                EXPECT_NE(fehler.find(dir.path().string()), std::string::npos) << fehler;
            }
            for (const auto& f : std::filesystem::directory_iterator(baeume))
                EXPECT_NE(f.path().extension(), ".part") << f.path();
            schliessen();
            ASSERT_EQ(oeffnen("Familie.SF6"), Geoeffnet::Ja) << fehler << "\n" << messages();
            EXPECT_EQ(version(), "6.0.102");
            EXPECT_EQ(DB->OpenRecordset("SELECT count(*) FROM Daten")->get(0).toInt(), personen);
            EXPECT_EQ(fehlt_etwas(), std::vector<std::string>{}) << fehler;
        });
}
