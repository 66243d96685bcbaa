// The staged program finds its folders, its ini files and its language texts from where it
// lies, and the language of programm.ini decides the language of its texts. Its command
// "export" takes a family tree to a GEDCOM file and leaves the tree's marks as they were.

#include "alte_dateien.h"
#include "generate_tree.h"
#include "support/cli_fixture.h"

namespace fs = std::filesystem;
using namespace folio::test;

TEST_F(Staged, FindsItsFoldersAndSpeaksTheLanguageOfProgrammIni) {
    Result german = run(cli + " --version");
    ASSERT_EQ(german.status, 0) << german.output;
    EXPECT_NE(german.output.find("GEDCOM Export 5.5"), std::string::npos) << german.output;
    EXPECT_NE(german.output.find("Datenpfad:    " + dir.file("Daten")), std::string::npos)
        << german.output;
    EXPECT_NE(german.output.find("Stammpfad:    " + dir.file("Stammfolio")), std::string::npos);

    std::ofstream(dir.file("Daten/programm.ini")) << "[Ansicht]\nSprache=English\n";
    Result english = run(cli + " --version");
    ASSERT_EQ(english.status, 0) << english.output;
    EXPECT_NE(english.output.find("Sprache:      English"), std::string::npos);
    EXPECT_NE(english.output.substr(0, english.output.find('\n')),
              german.output.substr(0, german.output.find('\n')));
}

TEST_F(Staged, ADataFolderWithoutLanguageTextsIsNamed) {
    fs::remove(dir.file("Daten/language.mdb"));
    Result r = run(cli + " --version");
    EXPECT_NE(r.status, 0);
    EXPECT_NE(r.output.find(dir.file("Daten")), std::string::npos) << r.output;
}

TEST_F(Export, WritesTheMarkedPersonsAtThePathGivenAndLeavesTheMarksAsTheyWere) {
    const std::string before = marks(tree);
    Result r = exportieren("");
    ASSERT_EQ(r.status, 0) << r.output;
    // The file lies exactly where it was asked for, complete, and nothing else beside it.
    const std::string ged = folio::test::readFile(target);
    EXPECT_EQ(ged.rfind("0 HEAD\r\n1 CHAR UTF-8\r\n", 0), 0u);
    EXPECT_NE(ged.find("1 FILE Beispiel.SF6\r\n"), std::string::npos);
    EXPECT_NE(ged.find("0 TRLR\r\n"), std::string::npos);
    EXPECT_EQ(std::distance(fs::directory_iterator(dir.file("out")), fs::directory_iterator()), 1);
    // The branch marked in the sample, and the summary of what was chosen.
    EXPECT_EQ(persons(ged),
              (std::set<int>{22, 23, 34, 35, 36, 37, 50, 51, 52, 54, 55, 56, 57, 58, 59}));
    EXPECT_TRUE(std::regex_search(r.output, std::regex("  15 +Personen\\n"))) << r.output;
    EXPECT_NE(r.output.find("Verfasser"), std::string::npos);
    EXPECT_NE(r.output.find(target), std::string::npos);
    // The couple's events of the branch with partners outside it were left out, and said so.
    EXPECT_NE(r.output.find("Ehepartner"), std::string::npos);
    EXPECT_EQ(marks(tree), before);

    // An existing target is kept unless replacing it is asked for.
    std::ofstream(target) << "old";
    r = exportieren("--all");
    EXPECT_EQ(r.status, 7) << r.output;
    EXPECT_EQ(folio::test::readFile(target), "old");
    r = exportieren(
        "--all --overwrite --charset ansi --privacy none --strict-55 --note 'Für Anna'");
    ASSERT_EQ(r.status, 0) << r.output;
    const std::string alle = folio::test::readFile(target);
    EXPECT_EQ(persons(alle).size(), 53u);
    EXPECT_NE(alle.find("1 CHAR Ansi\r\n"), std::string::npos);
    EXPECT_NE(alle.find("1 NOTE F\xfcr Anna\r\n"), std::string::npos);
    EXPECT_EQ(marks(tree), before);
}

TEST_F(Export, DatesGoOutWithTheModifiersOfGeddateIni) {
    Result r = exportieren("--all");
    ASSERT_EQ(r.status, 0) << r.output;
    const std::string ged = folio::test::readFile(target);
    // ca., nach, vor, err. and gesch. of the sample, by the rows of the staged geddate.ini.
    for (const char* line : {"2 DATE ABT 1795\r\n", "2 DATE AFT MAY 1852\r\n",
                             "2 DATE BEF 1890\r\n", "2 DATE CAL 1824\r\n", "2 DATE EST 1856\r\n"})
        EXPECT_NE(ged.find(line), std::string::npos) << line;
    EXPECT_EQ(ged.find("DATE ca."), std::string::npos);

    // Without the file the qualifiers of the tree go out as they stand.
    fs::remove(dir.file("Stammfolio/Folioexport/geddate.ini"));
    r = exportieren("--all --overwrite");
    ASSERT_EQ(r.status, 0) << r.output;
    EXPECT_NE(folio::test::readFile(target).find("2 DATE ca. 1795\r\n"), std::string::npos);
}

TEST_F(Export, AGeneratedTreeGoesOutWholeInBothCharacterSets) {
    tree = dir.file("Erzeugt.SF6");
    folio::generator::generateTree({500, 3, dir.file("Daten/Ereignis.mdb")}, tree);
    for (const std::string charset : {"utf-8", "ansi"}) {
        target = dir.file("out/Erzeugt-" + charset + ".ged");
        Result r = exportieren("--all --charset " + charset);
        ASSERT_EQ(r.status, 0) << r.output;
        EXPECT_EQ(persons(folio::test::readFile(target)).size(), 500u);
    }
    // The independent reader reads both files when the test ends.
}

TEST_F(Export, TicksAPersonWithItsRelativesAsTheSwitchesSay) {
    Result r = exportieren("--person 22 --ancestors --spouses");
    ASSERT_EQ(r.status, 0) << r.output;
    EXPECT_EQ(persons(folio::test::readFile(target)), (std::set<int>{1, 2, 5, 6, 15, 16, 22, 23}));

    // Descendants without the living; a living person ticked alone is refused, and then
    // nobody is left to export.
    r = exportieren("--overwrite --person 35 --descendants --exclude-living");
    ASSERT_EQ(r.status, 0) << r.output;
    EXPECT_EQ(persons(folio::test::readFile(target)), (std::set<int>{35, 50}));
    r = exportieren("--overwrite --person 54 --exclude-living");
    EXPECT_EQ(r.status, 6) << r.output;
    EXPECT_NE(r.output.find("54"), std::string::npos);
}

TEST_F(Export, EachFailureHasItsStatusAndAMessageInTheUsersLanguage) {
    const std::string before = marks(tree);
    EXPECT_EQ(run(cli + " export '" + dir.file("keine.SF6") + "' -o x.ged").status, 4);
    std::ofstream(dir.file("text.SF6")) << "no database";
    Result r = run(cli + " export '" + dir.file("text.SF6") + "' -o '" + target + "'");
    EXPECT_EQ(r.status, 5);
    EXPECT_NE(r.output.find("Stammbaum-Datenbank"), std::string::npos) << r.output;
    EXPECT_EQ(run(cli + " export '" + tree + "' -o '" + dir.file("fehlt/x.ged") + "'").status, 8);
    EXPECT_EQ(run(cli + " export '" + tree + "' -o '" + tree + "' --overwrite").status, 8);
    EXPECT_EQ(exportieren("--person 4711").status, 9);
    EXPECT_EQ(exportieren("--ancestors").status, 2);
    EXPECT_EQ(exportieren("--privacy 5").status, 2);
    EXPECT_FALSE(fs::exists(target));
    EXPECT_EQ(marks(tree), before);

    std::ofstream(dir.file("Daten/programm.ini")) << "[Ansicht]\nSprache=English\n";
    r = run(cli + " export '" + dir.file("keine.SF6") + "' -o x.ged");
    EXPECT_NE(r.output.find("This database doesn't exist"), std::string::npos) << r.output;
    r = run(cli + " --help");
    EXPECT_EQ(r.status, 0);
    EXPECT_NE(r.output.find("--exclude-living"), std::string::npos);
}

TEST_F(Export, AFileOfTheOldestGenerationIsUpgradedAndExported) {
    const std::string alt = dir.file("Alt.SF6");
    folio::alt::beispieldatei(folio::schema::Generation::Urform, alt);
    Result r = run(cli + " export '" + alt + "' --all -o '" + target + "'");
    ASSERT_EQ(r.status, 0) << r.output;
    EXPECT_EQ(persons(folio::test::readFile(target)), (std::set<int>{1, 2, 3, 4, 5, 6}));
    // The conversion was told on the terminal, with the copy of the old file beside it.
    EXPECT_NE(r.output.find(dir.file("Alt (alt).bak")), std::string::npos) << r.output;
    EXPECT_TRUE(fs::exists(dir.file("Alt (alt).bak")));
    auto db = folio::dao::OpenDatabase(alt, false, true);
    EXPECT_EQ(db->OpenRecordset("SELECT Versionname FROM Version")->get(0).text(), "6.0.102");
    EXPECT_FALSE(db->hasTable("Namen_DS"));
}
