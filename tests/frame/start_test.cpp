#include "frame/globals.h"
#include "frame/platform.h"
#include "frame/settings_store.h"
#include "frame/sprache.h"
#include "frame/start.h"
#include "support/language_db.h"
#include "support/scripted_scope.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <fstream>

using namespace folio;
namespace fs = std::filesystem;

namespace {

// A host folder with the program below it, a home folder and a data folder of its own.
struct Installation : ::testing::Test {
    test::TempDir dir;
    std::string stamm, programm, daten, home;
    test::ScriptedScope scripted;

    void SetUp() override {
        stamm = dir.file("Stammfolio");
        programm = stamm + "/Folioexport";
        daten = dir.file("Daten");
        home = dir.file("home");
        for (const std::string& d : {programm, daten, home + "/Documents/Stammfolio"})
            fs::create_directories(d);
        setenv("HOME", home.c_str(), 1);
        setenv("XDG_CONFIG_HOME", (home + "/.config").c_str(), 1);
        unsetenv("XDG_DOCUMENTS_DIR");
        unsetenv("LC_ALL");
        unsetenv("LC_MESSAGES");
        setenv("LANG", "de_DE.UTF-8", 1); // a German user, unless a test says otherwise
        Programmpfad.clear();
    }
    void TearDown() override {
        sprache_schliessen();
        Sprache = "Deutsch";
        Kurzhilfe = 1;
    }
    void languageIn(const std::string& folder) {
        test::createLanguageDb(folder + "/language.mdb",
                               {{568, Value("GEDCOM Export 5.5"), Value("GEDCOM export 5.5")}});
    }
};

} // namespace

TEST_F(Installation, FoldersFromTheProgramsPlaceAndDatenpfadIni) {
    languageIn(home + "/Documents/Stammfolio");
    StartForm start;
    ASSERT_TRUE(programm_starten(start, programm + "/").ok);
    EXPECT_EQ(Programmpfad, programm);
    EXPECT_EQ(Stammpfad, stamm);
    EXPECT_EQ(Produktname, "Stammfolio");
    EXPECT_EQ(Datenpfad, home + "/Documents/Stammfolio"); // no datenpfad.ini
    EXPECT_TRUE(start.get("Visible").toBool());
    EXPECT_EQ(start.get("MousePointer"), Value(MausSanduhr));
    sprache_schliessen();

    // datenpfad.ini naming a folder that doesn't exist changes nothing.
    std::ofstream(stamm + "/datenpfad.ini") << dir.file("Nirgends") << "\r\n";
    Programmpfad.clear();
    ASSERT_TRUE(programm_starten(start, programm).ok);
    EXPECT_EQ(Datenpfad, home + "/Documents/Stammfolio");
    sprache_schliessen();

    // An existing folder, relative to the host's folder, with a second entry behind a comma.
    languageIn(daten);
    std::ofstream(stamm + "/datenpfad.ini") << "../Daten,something else\n";
    ASSERT_TRUE(programm_starten(start, programm).ok);
    EXPECT_EQ(Datenpfad, daten);
}

TEST_F(Installation, ANewUsersDataFolderIsMadeFromTheDataShippedBesideTheHost) {
    // No data folder in the documents; the installation's own beside the host's folder.
    fs::remove_all(home + "/Documents");
    languageIn(daten);
    std::ofstream(daten + "/Ereignis.mdb") << "side database";
    fs::permissions(daten + "/Ereignis.mdb", fs::perms::owner_read);
    StartForm start;
    ASSERT_TRUE(programm_starten(start, programm).ok);
    EXPECT_EQ(Datenpfad, home + "/Documents/Stammfolio");
    EXPECT_EQ(test::readFile(Datenpfad + "/Ereignis.mdb"), "side database");
    EXPECT_TRUE((fs::status(Datenpfad + "/Ereignis.mdb").permissions() & fs::perms::owner_write) !=
                fs::perms::none);
    EXPECT_EQ(sprachtext("568"), "GEDCOM Export 5.5");
    // A data folder that exists is the user's: it is never filled again.
    sprache_schliessen();
    fs::remove(Datenpfad + "/Ereignis.mdb");
    ASSERT_TRUE(programm_starten(start, programm).ok);
    EXPECT_FALSE(fs::exists(Datenpfad + "/Ereignis.mdb"));
}

TEST_F(Installation, EditionLanguageAndShortHelp) {
    fs::create_directories(home + "/Documents/Wurzelwart");
    languageIn(home + "/Documents/Wurzelwart");
    einstellung_schreiben(HostAnwendung, "Sippe", "Daten", "1.0");
    std::ofstream(home + "/Documents/Wurzelwart/programm.ini")
        << "[Ansicht]\nSprache=English\nKurzhilfe=0\n";
    StartForm start;
    ASSERT_TRUE(programm_starten(start, programm).ok);
    EXPECT_EQ(Produktname, "Wurzelwart");
    EXPECT_EQ(Sprache, "English");
    EXPECT_EQ(Kurzhilfe, 0);
    EXPECT_EQ(sprachtext("568 GEDCOM Export 5.5"), "GEDCOM export 5.5");

    // With no language in programm.ini, the locale decides: the first variable that is set.
    einstellung_schreiben(HostAnwendung, "Sippe", "Daten", "2");
    sprache_schliessen();
    languageIn(home + "/Documents/Stammfolio");
    const std::pair<const char*, const char*> gebiete[] = {
        {"de_AT.UTF-8", "Deutsch"}, {"en_GB.UTF-8", "English"}, {"C", "English"}};
    unsetenv("LC_ALL");
    unsetenv("LC_MESSAGES");
    for (const auto& [lang, sprache] : gebiete) {
        setenv("LANG", lang, 1);
        ASSERT_TRUE(programm_starten(start, programm).ok);
        sprache_schliessen();
        EXPECT_EQ(Sprache, sprache) << lang;
    }
    setenv("LC_MESSAGES", "de_DE.UTF-8", 1);
    ASSERT_TRUE(programm_starten(start, programm).ok);
    EXPECT_EQ(Produktname, "Stammfolio");
    EXPECT_EQ(Sprache, "Deutsch");
    setenv("LC_ALL", "fr_FR.UTF-8", 1);
    EXPECT_EQ(sprache_des_gebietsschemas(), "English");
    unsetenv("LC_ALL");
    unsetenv("LC_MESSAGES");
}

TEST_F(Installation, AMissingOrBrokenLanguageFileIsReportedByItsFolder) {
    StartForm start;
    StartErgebnis result = programm_starten(start, programm);
    EXPECT_FALSE(result.ok);
    ASSERT_EQ(scripted->shown.size(), 1u);
    EXPECT_NE(scripted->shown[0].text.find(home + "/Documents/Stammfolio"), std::string::npos);

    std::ofstream(home + "/Documents/Stammfolio/language.mdb") << "not a database";
    result = programm_starten(start, programm);
    EXPECT_FALSE(result.ok);
    EXPECT_NE(result.fehler.find("language.mdb"), std::string::npos);
    EXPECT_NE(result.fehler.find("not a family-tree database"), std::string::npos);
}

TEST_F(Installation, ProgressFormComesUpAtTheFirstTouch) {
    test::createLanguageDb(dir.file("lang.mdb"),
                           {{3502, Value("Importiere Daten aus älterer Version."),
                             Value("Importing data from an older version.")}});
    sprache_oeffnen(dir.file("lang.mdb"));
    FortschrittForm form;
    EXPECT_FALSE(form.geladen());
    form.steuerelement("Update").set("Value", Value(40));
    EXPECT_TRUE(form.geladen());
    EXPECT_TRUE(form.get("Visible").toBool());
    EXPECT_TRUE(form.get("AlwaysOnTop").toBool());
    EXPECT_EQ(form.text("Caption"), "Importiere Daten aus älterer Version.");
    form.taste(27);
    EXPECT_TRUE(form.abbrechen);
    form.entladen();
    EXPECT_FALSE(form.geladen());
    EXPECT_FALSE(form.abbrechen);
}

TEST(ErsterEintrag, FirstEntryOfAFile) {
    test::TempDir dir;
    const std::string f = dir.file("datenpfad.ini");
    std::ofstream(f) << "  \"C:/Meine Daten, alt\",x\n";
    EXPECT_EQ(erster_eintrag(f), "C:/Meine Daten, alt");
    std::ofstream(f) << "/data/x\r\n/other\r\n";
    EXPECT_EQ(erster_eintrag(f), "/data/x");
    EXPECT_EQ(erster_eintrag(dir.file("missing")), "");
}
