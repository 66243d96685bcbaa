#include "frame/ini.h"
#include "frame/settings_store.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

using namespace folio;

TEST(Ini, ReadsLikeTheProfileCalls) {
    test::TempDir dir;
    const std::string file = dir.file("programm.ini");
    std::ofstream(file, std::ios::binary)
        << "; comment\r\n[Ansicht]\r\n  Sprache =  English  \r\nKurzhilfe=0\r\n"
           "Quoted=\"  a b  \"\r\n[GEDCOM]\r\nPfad=/home/x\r\nSprache=wrong section\r\n";

    EXPECT_EQ(ini_lesen(file, "ansicht", "SPRACHE", "Deutsch"), "English");
    EXPECT_EQ(ini_lesen(file, "Ansicht", "Kurzhilfe", "1"), "0");
    EXPECT_EQ(ini_lesen(file, "Ansicht", "Quoted", ""), "  a b  ");
    EXPECT_EQ(ini_lesen(file, "GEDCOM", "Pfad", ""), "/home/x");
    EXPECT_EQ(ini_lesen(file, "GEDCOM", "Datei", "Gedcom-Export"), "Gedcom-Export");
    EXPECT_EQ(ini_lesen(file, "Nirgends", "Sprache", ""), "");
    EXPECT_EQ(ini_lesen(file, "Ansicht", "Fehlt", "default  "), "default"); // blanks go
    EXPECT_EQ(ini_lesen(dir.file("missing.ini"), "Ansicht", "Sprache", "Deutsch"), "Deutsch");
    EXPECT_EQ(ini_lesen(dir.path().string(), "Ansicht", "Sprache", "Deutsch"), "Deutsch");
}

TEST(Ini, ValuesAreCutAt255Characters) {
    test::TempDir dir;
    const std::string file = dir.file("x.ini");
    ini_schreiben(file, "S", "exact", std::string(255, 'a'));
    ini_schreiben(file, "S", "long", std::string(300, 'b'));
    ini_schreiben(file, "S", "umlaut", std::string(254, 'c') + "äö");
    std::string umlauts;
    for (int i = 0; i < 200; ++i)
        umlauts += "Ä";
    ini_schreiben(file, "S", "umlauts", umlauts);
    EXPECT_EQ(ini_lesen(file, "S", "exact", ""), std::string(255, 'a'));
    EXPECT_EQ(ini_lesen(file, "S", "long", ""), std::string(255, 'b'));
    // Characters are counted, not bytes, and no character is cut in half.
    EXPECT_EQ(ini_lesen(file, "S", "umlaut", ""), std::string(254, 'c') + "ä");
    EXPECT_EQ(ini_lesen(file, "S", "umlauts", ""), umlauts);
}

TEST(Ini, WritesInPlaceAndNeverWritesADefault) {
    test::TempDir dir;
    const std::string file = dir.file("programm.ini");
    ini_lesen(file, "GEDCOM", "Datei", "Gedcom-Export");
    EXPECT_FALSE(std::filesystem::exists(file)); // reading a default writes nothing

    ini_schreiben(file, "GEDCOM", "Pfad", "/a");
    ini_schreiben(file, "Ansicht", "Sprache", "English");
    ini_schreiben(file, "gedcom", "Datei", "Familie");
    ini_schreiben(file, "GEDCOM", "PFAD", "/b");
    EXPECT_EQ(test::readFile(file),
              "[GEDCOM]\nPfad=/b\nDatei=Familie\n[Ansicht]\nSprache=English\n");

    // A file written elsewhere keeps its line ends and its other lines.
    std::ofstream(file, std::ios::binary) << "[Msgboxen]\r\n;note\r\nSortierung=1\r\n\r\n[X]\r\n";
    ini_schreiben(file, "Msgboxen", "Reparieren", "0");
    EXPECT_EQ(test::readFile(file),
              "[Msgboxen]\r\n;note\r\nSortierung=1\r\nReparieren=0\r\n\r\n[X]\r\n");

    // A folder that doesn't exist isn't created, and nothing breaks.
    ini_schreiben(dir.file("no/such/folder.ini"), "S", "k", "v");
    EXPECT_FALSE(std::filesystem::exists(dir.file("no")));
}

TEST(Ini, SettingsStoreLivesInTheUsersConfigurationFolder) {
    test::TempDir dir;
    setenv("XDG_CONFIG_HOME", dir.path().c_str(), 1);
    EXPECT_EQ(einstellung_lesen(HostAnwendung, "GUID", "Schluessel", "none"), "none");
    einstellung_schreiben(HostAnwendung, "GUID", "Schluessel", "{1234}");
    EXPECT_EQ(einstellung_lesen(HostAnwendung, "guid", "schluessel"), "{1234}");
    EXPECT_TRUE(std::filesystem::exists(dir.file("Sippenkunde/settings.ini")));
    unsetenv("XDG_CONFIG_HOME");
}
