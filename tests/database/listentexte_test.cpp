#include "database/listentexte.h"
#include "database/schema/schema.h"
#include "engine/engine.h"
#include "engine/recordset.h"
#include "frame/globals.h"
#include "frame/ini.h"
#include "frame/sprache.h"
#include "support/language_db.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

using namespace folio;

TEST(Soundex, GermanVariantWordByWord) {
    EXPECT_EQ(soundex("Müller"), "M46 ");
    EXPECT_EQ(soundex("Schmitz Meier"), "S2532 M6 ");
    EXPECT_EQ(soundex(""), " ");
    EXPECT_EQ(soundex("A  B"), "A   B ");  // the second blank is a word of its own
    EXPECT_EQ(soundex("Strauß"), "S362 "); // ß counts as one 2
    EXPECT_EQ(soundex("Weiß"), "W2 ");
    EXPECT_EQ(soundex("Lill"), "L4 ");   // a vowel doesn't separate
    EXPECT_EQ(soundex("öhler"), "Ö46 "); // the first letter stays, upper-cased
    EXPECT_EQ(soundex("Pfaffenberger"), "P151626 ");
}

TEST(DatumText, FormsCarryingAndTheUnknownYear) {
    test::TempDir dir;
    Datenpfad = dir.path().string();
    EXPECT_EQ(datum_text(17, 5, 1848, 0), "17.05.1848");
    EXPECT_EQ(datum_text(17, 5, 1848, 1), "17-05-1848");
    EXPECT_EQ(datum_text(0, 3, 1848, 0), "Mär 1848");
    EXPECT_EQ(datum_text(0, 3, 1848, 1), "03-1848");
    EXPECT_EQ(datum_text(0, 0, 1848, 0), "1848");
    EXPECT_EQ(datum_text(0, 0, 0, 0), "");
    EXPECT_EQ(datum_text(5, 0, 1900, 0), "05.12.1899"); // month 0 runs back a year
    EXPECT_EQ(datum_text(31, 2, 1900, 1), "03-03-1900");
    EXPECT_EQ(datum_text(1, 1, 4000, 0), "");
    EXPECT_EQ(datum_text(3, 4, 0, 0), "");
    EXPECT_EQ(datum_text(1, 1, 1900, 2), "");
    ini_schreiben(programm_ini(), "Ansicht", "Datumformat_ddmmyyyy", "yyyy-mm-dd");
    ini_schreiben(programm_ini(), "Ansicht", "Datumformat_mmyyyy", "mmmm yyyy");
    EXPECT_EQ(datum_text(7, 1, 1901, 0), "1901-01-07");
    EXPECT_EQ(datum_text(0, 12, 1901, 0), "Dezember 1901");
    EXPECT_EQ(datum_text(7, 1, 1901, 1), "07-01-1901");
}

namespace {

// A family-tree file with a few persons and events, and a catalogue beside it.
struct Tree : ::testing::Test {
    test::TempDir dir;
    std::unique_ptr<dao::Database> db, katalogDb;
    std::unique_ptr<dao::Recordset> daten, ereignisdb, katalog;
    ListentextQuellen q;

    void SetUp() override {
        Datenpfad = dir.path().string();
        test::createLanguageDb(dir.file("language.mdb"), {{1250, Value("geb."), Value("née")}});
        sprache_oeffnen(dir.file("language.mdb"));
        db = dao::engine().workspace(0).CreateDatabase(dir.file("t.SF6"));
        for (const char* t : {"Daten", "Ereignis_DS", "Ereignisdb"})
            schema::createTable(*db, *schema::findTable(schema::mainTables(), t));
        katalogDb = dao::engine().workspace(0).CreateDatabase(dir.file("Ereignis.mdb"));
        schema::createTable(*katalogDb, schema::sideDatabases()[0].tables[0]);
        person(1, "Anna", "Meier", "", "Anna Meier ");
        person(2, "Karl", "Huber", "", "Karl Huber ");
        typ(*db, "Ereignisdb", 10, "Heirat von", "mit", 2, 0);
        typ(*katalogDb, "Deutsch", 11, "Taufe von", "", 1, 0);
        typ(*db, "Ereignisdb", 12, "Verlobung von", "mit", 2, 1);
        link(1, 100, "d");
        link(2, 100, "d");
        link(2, 101, "D"); // a capital D isn't a main person for the lookup
        daten = db->OpenRecordset("Daten");
        ereignisdb = db->OpenRecordset("Ereignisdb");
        katalog = katalogDb->OpenRecordset("Deutsch", dao::RecordsetType::Dynaset);
        q = {db.get(), daten.get(), ereignisdb.get(), katalog.get()};
    }
    void TearDown() override { sprache_schliessen(); }

    void person(int id, const char* givn, const char* surn, const char* familienname,
                const char* listentext) {
        auto rs = db->OpenRecordset("Daten");
        rs->AddNew();
        rs->set("Counter", Value(RecordId(id)));
        rs->set("GIVN", Value(givn));
        rs->set("SURN", Value(surn));
        rs->set("Familienname", Value(familienname));
        rs->set("Listentext", Value(listentext));
        rs->Update();
    }
    void typ(dao::Database& d, const char* table, int index, const char* vor, const char* nach,
             int max, int ortpos) {
        auto rs = d.OpenRecordset(table);
        rs->AddNew();
        rs->set("Index", Value(index));
        rs->set("Text_vor", Value(vor));
        rs->set("Text_nach", Value(*nach ? nach : " "));
        rs->set("Ereignisgrund", Value("wegen"));
        rs->set("maxhauptpersonen", Value(max));
        rs->set("OrtPos", Value(ortpos));
        rs->Update();
    }
    void link(int quelle, int ziel, const char* ursprung) {
        auto rs = db->OpenRecordset("Ereignis_DS");
        rs->AddNew();
        rs->set("Counter", Value(RecordId(quelle * 1000 + ziel)));
        rs->set("Quelle", Value(RecordId(quelle)));
        rs->set("Ziel", Value(RecordId(ziel)));
        rs->set("Ursprung", Value(ursprung));
        rs->Update();
    }
    void seek(int id) {
        daten->Index("Counter");
        daten->Seek("=", Value(RecordId(id)));
    }
    void edit(int id, const char* field, Value v) {
        seek(id);
        daten->Edit();
        daten->set(field, std::move(v));
        daten->Update();
    }
};

} // namespace

TEST_F(Tree, ListeName) {
    edit(1, "NPFX", Value("Dr."));
    edit(1, "TITL", Value("Prof."));
    seek(1);
    EXPECT_EQ(liste_name(*daten, false, false, false), "Dr. Anna Meier Prof. ");
    EXPECT_EQ(liste_name(*daten, true, false, false), "Dr.Meier, Anna Prof. ");

    // A married name beside the birth name brings "geb."; a nickname goes behind.
    edit(1, "Familienname", Value("Huber"));
    edit(1, "NICK", Value(" Anni "));
    seek(1);
    EXPECT_EQ(liste_name(*daten, false, false, false), "Dr. Anna Huber Prof. geb.Meier  [Anni]");
    edit(1, "Familienname", Value("Meier")); // equal to SURN: no "geb."
    edit(1, "NICK", Value(""));
    edit(1, "GIVN", Value("Anna\r\nMaria"));
    seek(1);
    EXPECT_EQ(liste_name(*daten, false, false, false), "Dr. Anna Maria Meier Prof. ");

    edit(1, "GTag", Value(3));
    edit(1, "GMonat", Value(2));
    edit(1, "GJahr", Value(1850));
    edit(1, "GDatum", Value("03.02.1850"));
    edit(1, "ca1", Value("ca.   "));
    edit(1, "SJahr", Value(1900));
    edit(1, "SDatum", Value("1900"));
    edit(1, "ca2", Value(" "));
    edit(1, "NPFX", Value("_"));
    edit(1, "GIVN", Value("Anna Maria"));
    seek(1);
    const std::string mit = liste_name(*daten, false, true, false);
    EXPECT_EQ(mit.substr(0, 50), "  Anna Maria Meier Prof." + std::string(26, ' '));
    EXPECT_EQ(mit.substr(50), " *03.02.1850 +1900");
    EXPECT_EQ(liste_name(*daten, false, false, true),
              "_ Anna Maria Meier Prof.  *ca. 03.02.1850 +1900");

    EXPECT_EQ(person_kurztext(q, RecordId(2), false), "Karl Huber");
    EXPECT_EQ(person_kurztext(q, RecordId(1), true), "Anna Meier *ca. 03.02.1850 +1900");
    EXPECT_EQ(person_kurztext(q, RecordId(99), false), "?");
}

TEST_F(Tree, EreignisText) {
    EXPECT_EQ(
        ereignis_text(q, "Listentext", RecordId(1), 10, "", "", "", "", "", "Rom", RecordId(2)),
        "Heirat von Anna Meier in Rom mit Karl Huber ");
    // The second main person is found from the links of the event.
    EXPECT_EQ(ereignis_text(q, "Listentext", RecordId(1), 10, "", "", "", "", "", "Rom", RecordId(),
                            RecordId(100)),
              "Heirat von Anna Meier in Rom mit Karl Huber ");
    EXPECT_EQ(ereignis_hauptperson(q, RecordId(2), RecordId(100)), RecordId(1));
    EXPECT_EQ(ereignis_hauptperson(q, RecordId(1), RecordId(101)), RecordId());
    // OrtPos 1: the place goes behind the second person; a cause with its word.
    EXPECT_EQ(ereignis_text(q, "Listentext", RecordId(1), 12, "", "", "", "kurz", " Krieg ", "Rom",
                            RecordId(2)),
              "Verlobung von Anna Meier mit Karl Huber in Rom wegen Krieg kurz");
    // A type from the catalogue; the same person twice leaves only the additions.
    EXPECT_EQ(ereignis_text(q, "Listentext", RecordId(2), 11, "", "", "", "", "", "", RecordId()),
              "Taufe von Karl Huber ");
    EXPECT_EQ(ereignis_text(q, "Listentext", RecordId(2), 10, "", "", "", "k", "", "", RecordId(2)),
              " k");
    // A type nobody knows: the person with the place, and the additions.
    EXPECT_EQ(ereignis_text(q, "Listentext", RecordId(), 77, "", "", "", "", "", "Ulm", RecordId()),
              "? in Ulm ");
    EXPECT_EQ(ereignis_text(q, "Anders", RecordId(1), 10, "", "", "", "", "", "", RecordId()), "");
    EXPECT_LE(ereignis_text(q, "Listentext", RecordId(1), 11, "", "", "", std::string(300, 'x'), "",
                            "", RecordId())
                  .size(),
              255u);
}
