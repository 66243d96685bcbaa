// Opening a family tree: old extensions upgraded on copies, the sample database in place of
// a missing file, write-protected files, a file that is no database, and the version written
// at every opening.
#include "database/upgrade/kette.h"
#include "engine/sqlite_handle.h"
#include "frame/fenster.h"
#include "support/upgrade_fixture.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

using namespace folio;
namespace fs = std::filesystem;
using folio::test::readFile;

namespace {

struct Oeffnen : test::UpgradeFixture {
    // Writes into the first row of Version of a closed file.
    void version_setzen(const std::string& pfad, const std::string& feld, const std::string& wert) {
        auto db = dao::OpenDatabase(pfad);
        db->Execute("UPDATE Version SET " + feld + " = '" + wert + "' ;");
    }
};

} // namespace

TEST_F(Oeffnen, ACurrentFileGetsTheProgramsVersionAndTheUsersKeyWithoutANote) {
    const std::string pfad = vorlage("Familie.SF6");
    version_setzen(pfad, "Versionname", "6.0.110");
    version_setzen(pfad, "GUID_Anwender", " ");
    std::string ordner = baeume + "/", datei = "Familie.SF6";
    ASSERT_EQ(datenbank_oeffnen(ordner, datei, false, false), Geoeffnet::Ja);
    EXPECT_EQ(ordner, baeume); // the trailing separator goes
    EXPECT_EQ(datei, "Familie.SF6");
    EXPECT_EQ(aktuelle_datei, "Familie.SF6");
    EXPECT_EQ(version(), "6.0.102");
    EXPECT_EQ(test::schema_unterschiede(*DB), std::vector<std::string>{});
    rs_Version->MoveFirst();
    EXPECT_EQ(rs_Version->get("GUID_Anwender").text(), "{00000000-1111-2222-3333-444444444444}");
    EXPECT_TRUE(scripted->shown.empty()) << messages();
    EXPECT_EQ(std::distance(fs::directory_iterator(baeume), fs::directory_iterator()), 1);
}

TEST_F(Oeffnen, OldExtensionsAreUpgradedOnCopiesAndTheOldFilesStay) {
    const std::string sf = vorlage("Alt.SF");
    version_setzen(sf, "Verfasser_Name", "aus SF");
    const std::string vorher = readFile(sf);
    ASSERT_EQ(oeffnen("Alt.SF"), Geoeffnet::Ja);
    EXPECT_EQ(aktuelle_datei, "Alt.SF6");
    EXPECT_EQ(readFile(sf), vorher);
    EXPECT_TRUE(fs::exists(baeume + "/Alt.SF5"));
    rs_Version->MoveFirst();
    EXPECT_EQ(rs_Version->get("Verfasser_Name").text(), "aus SF");
    alle_schliessen("");

    // Beside an existing .SF5 the old file isn't copied again: the .SF5 one goes on.
    const std::string zweite = vorlage("Zwei.SF");
    vorlage("Zwei.SF5");
    version_setzen(baeume + "/Zwei.SF5", "Verfasser_Name", "aus SF5");
    version_setzen(zweite, "Verfasser_Name", "aus SF");
    std::string ordner = baeume, datei = "Zwei.SF";
    ASSERT_EQ(datenbank_oeffnen(ordner, datei, false, false), Geoeffnet::Ja);
    EXPECT_EQ(datei, "Zwei.SF6");
    rs_Version->MoveFirst();
    EXPECT_EQ(rs_Version->get("Verfasser_Name").text(), "aus SF5");
}

TEST_F(Oeffnen, AMissingFileOpensTheSampleDatabaseMadeFromTheHostsFiles) {
    fs::remove(Datenpfad + "/Beispiel.SF6");
    fs::remove(host + "/Beispiel.SF6");
    std::string ordner = baeume, datei = "Fehlt.SF6";
    ASSERT_EQ(datenbank_oeffnen(ordner, datei, false, false), Geoeffnet::Ja);
    // A missing file counts as write-protected first; the sample name in the same folder is
    // missing too, and then the data folder's sample database is made from the template.
    ASSERT_EQ(scripted->shown.size(), 2u) << messages();
    EXPECT_NE(scripted->shown[0].text.find("schreibgeschützt"), std::string::npos);
    EXPECT_NE(scripted->shown[0].text.find(baeume + "/Fehlt.SF6"), std::string::npos);
    EXPECT_NE(scripted->shown[1].text.find("wurde nicht gefunden"), std::string::npos);
    EXPECT_EQ(ordner, Datenpfad);
    EXPECT_EQ(datei, "Beispiel.SF6");
    EXPECT_TRUE(fs::exists(Datenpfad + "/Beispiel.SF6"));
    EXPECT_EQ(version(), "6.0.102");
}

TEST_F(Oeffnen, AWriteProtectedSampleEndsOrReturnsWithNothingOpen) {
    const std::string beispiel = vorlage("beispiel.sf6");
    fs::permissions(beispiel,
                    fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write,
                    fs::perm_options::remove);
    std::string ordner = baeume, datei = "beispiel.sf6";
    EXPECT_EQ(datenbank_oeffnen(ordner, datei, true, false), Geoeffnet::ProgrammEnde);
    EXPECT_NE(scripted->shown.back().text.find("Das Programm wird nun beendet."),
              std::string::npos);
    EXPECT_EQ(scripted->shown.back().title, "SF-ADD-IN");
    EXPECT_EQ(datenbank_oeffnen(ordner, datei, false, false), Geoeffnet::Nein);
    EXPECT_FALSE(dao::engine().isOpen(beispiel));
}

TEST_F(Oeffnen, AFileThatIsNoDatabaseIsNamedAndLeavesNothingOpen) {
    std::ofstream(baeume + "/Kaputt.SF6") << "Dies ist keine Datenbank.";
    const std::string vorher = readFile(baeume + "/Kaputt.SF6");
    EXPECT_EQ(oeffnen("Kaputt.SF6"), Geoeffnet::Nein);
    ASSERT_EQ(scripted->shown.size(), 1u);
    EXPECT_NE(scripted->shown[0].text.find(baeume + "/Kaputt.SF6"), std::string::npos);
    EXPECT_FALSE(DB);
    EXPECT_FALSE(dao::engine().isOpen(baeume + "/Kaputt.SF6"));
    EXPECT_EQ(readFile(baeume + "/Kaputt.SF6"), vorher);
}

// The tables that an older file lacks are opened only where they exist. Where one is
// missing its cursor is null, not the closed one of the file opened before; where one is
// damaged, the file is named with the table, and nothing of it stays open.
TEST_F(Oeffnen, ATableThatOldFilesLackIsPassedOverWhereMissingAndNamedWhereDamaged) {
    vorlage("Heil.SF6");
    ASSERT_EQ(oeffnen("Heil.SF6"), Geoeffnet::Ja);
    ASSERT_TRUE(rs_Ereignisdb && rs_Status);

    dao::OpenDatabase(vorlage("Ohne.SF6"))->connection().exec("DROP TABLE Status");
    EXPECT_EQ(oeffnen("Ohne.SF6"), Geoeffnet::Ja);
    EXPECT_FALSE(rs_Status);
    EXPECT_TRUE(rs_Ereignisdb && rs_Ereignisdb->isOpen());

    for (const std::string tabelle : {"Notiz", "Ereignisdb"}) {
        const std::string pfad = vorlage(tabelle + ".SF6");
        std::int64_t seite = 0, groesse = 0;
        {
            auto db = dao::OpenDatabase(pfad);
            sqlite::Statement wurzel(db->connection(),
                                     "SELECT rootpage FROM sqlite_master WHERE name = '" + tabelle +
                                         "'");
            sqlite::Statement seitengroesse(db->connection(), "PRAGMA page_size");
            ASSERT_TRUE(wurzel.step() && seitengroesse.step());
            seite = wurzel.int64(0);
            groesse = seitengroesse.int64(0);
        }
        std::string bytes = readFile(pfad);
        std::fill_n(bytes.begin() + (seite - 1) * groesse, groesse, '\xA5');
        std::ofstream(pfad, std::ios::binary | std::ios::trunc) << bytes;
        scripted->shown.clear();
        EXPECT_EQ(oeffnen(tabelle + ".SF6"), Geoeffnet::Nein) << tabelle;
        ASSERT_EQ(scripted->shown.size(), 1u) << messages();
        EXPECT_NE(scripted->shown[0].text.find(pfad), std::string::npos) << messages();
        EXPECT_NE(scripted->shown[0].text.find("damaged"), std::string::npos) << messages();
        EXPECT_NE(scripted->shown[0].text.find("\"" + tabelle + "\""), std::string::npos)
            << messages();
        EXPECT_FALSE(DB);
        EXPECT_FALSE(dao::engine().isOpen(pfad));
        EXPECT_EQ(readFile(pfad), bytes);
    }
}

// A Version without rows tells no version: the chain would take the file for the oldest
// schema. It is named as damaged before any step changes it.
TEST_F(Oeffnen, AFileWhoseVersionHasNoRowIsNamedAndLeftAsItWas) {
    const std::string pfad = vorlage("Leer.SF6");
    dao::OpenDatabase(pfad)->Execute("DELETE FROM Version ;");
    const std::string vorher = readFile(pfad);
    try {
        oeffnen("Leer.SF6");
        ADD_FAILURE() << "opened";
    } catch (const DatabaseError& e) {
        EXPECT_EQ(e.number(), err::DatabaseDamaged);
        EXPECT_NE(std::string(e.what()).find(pfad), std::string::npos) << e.what();
        EXPECT_NE(std::string(e.what()).find("Version"), std::string::npos) << e.what();
    }
    alle_schliessen("");
    DB.reset();
    EXPECT_EQ(readFile(pfad), vorher);
    EXPECT_TRUE(scripted->shown.empty()) << messages();
    EXPECT_EQ(std::distance(fs::directory_iterator(baeume), fs::directory_iterator()), 1);
}

TEST(Versionen, CompareAsStringsAndReadTheirLeadingNumber) {
    EXPECT_TRUE(version_mindestens("5.0.99", "5.0.190"));
    EXPECT_FALSE(version_mindestens("5.0.100", "5.0.190"));
    EXPECT_TRUE(version_mindestens("6.0.102", "5.1.100"));
    EXPECT_FALSE(version_mindestens("", "5.0.190"));
    EXPECT_DOUBLE_EQ(numerische_version("4.3.120"), 4.3);
    EXPECT_DOUBLE_EQ(numerische_version("5.0.100"), 5.0);
    EXPECT_DOUBLE_EQ(numerische_version(""), 0.0);
    const std::string guid = neue_guid();
    EXPECT_EQ(guid.size(), 38u);
    EXPECT_EQ(guid.front(), '{');
    EXPECT_NE(neue_guid(), guid);
    EXPECT_DOUBLE_EQ(datum_aus_teilen(0, 0, 0).days(), 767011.0);
}
