#include "language_source.h"

#include "engine/engine.h"
#include "engine/recordset.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <regex>

using namespace folio;
using namespace folio::language_source;
using folio::test::TempDir;

namespace {

// The message of the error that parsing `text` raises, or "" when it parses.
std::string parseError(const std::string& text) {
    try {
        parseTexts(text, "texts.tsv");
    } catch (const SourceError& e) {
        return e.what();
    }
    return "";
}

} // namespace

TEST(LanguageSource, ReadsRowsWithEscapesAndKeepsBlanks) {
    const auto rows = parseTexts("\xEF\xBB\xBF# comment\n\n"
                                 "242\tnicht gefunden.\\n\\nAnstelle von \tnot found. \r\n"
                                 "   \n"
                                 "7\tA\\tB\\\\C\t\n"
                                 "1001\tVersion \tVersion ",
                                 "texts.tsv");
    ASSERT_EQ(rows.size(), 3u);
    EXPECT_EQ(rows[0].line, 3);
    EXPECT_EQ(rows[0].german, "nicht gefunden.\n\nAnstelle von ");
    EXPECT_EQ(rows[0].english, "not found. "); // the CR of a CR LF line end goes, the blank stays
    EXPECT_EQ(rows[1].german, "A\tB\\C");
    EXPECT_EQ(rows[1].english, "");
    EXPECT_EQ(rows[2].english, "Version "); // a last line without a line end
}

TEST(LanguageSource, ReportsABadLineWithFileAndLineNumber) {
    const std::map<std::string, std::string> cases = {
        {"2\tzwei", "texts.tsv:2: expected 3 columns divided by tabs (number, German, English), "
                    "found 2"},
        {"2\tzwei\ttwo\tdeux", "texts.tsv:2: expected 3 columns"},
        {"0\tnull\tzero", "texts.tsv:2: the key \"0\" isn't a whole number from 1"},
        {" 2\tzwei\ttwo", "texts.tsv:2: the key \" 2\""},
        {"2147483648\tzu groß\ttoo big", "texts.tsv:2: the key \"2147483648\""},
        {"1\tnochmal\tagain", "texts.tsv:2: the key 1 was given before, in line 1"},
        {"2\tzwei\\r\ttwo", "texts.tsv:2: unknown escape \\r in the German text"},
        {"2\tzwei\ttwo\\", "texts.tsv:2: a backslash ends the English text"},
        {"2\tgr\xFC\xDF\tgreeting", "texts.tsv:2: the line isn't valid UTF-8"},
    };
    for (const auto& [line, message] : cases) {
        const std::string error = parseError("1\teins\tone\n" + line + "\n");
        EXPECT_TRUE(error.starts_with(message)) << line << " gives: " << error;
    }
    EXPECT_EQ(parseError("2147483647\tgroß\tbig\n"), "");
}

TEST(LanguageSource, BuiltDatabaseGivesTheTextsBackBySeek) {
    TempDir dir;
    const std::string path = dir.file("Daten/language.mdb");
    buildLanguageDatabase({{485, "Meldung weiterhin anzeigen", "", 1}, {242, " nicht ", "not ", 2}},
                          path);
    auto db = dao::OpenDatabase(path);
    auto rs = db->OpenRecordset("Languages", dao::RecordsetType::Table);
    rs->Index("Counter");
    rs->Seek("=", Value(242));
    ASSERT_FALSE(rs->NoMatch());
    EXPECT_EQ(rs->get("Deutsch"), Value(" nicht "));
    EXPECT_EQ(rs->get("English"), Value("not "));
    rs->Seek("=", Value(485));
    ASSERT_FALSE(rs->NoMatch());
    EXPECT_EQ(rs->get("English"), Value("")); // an empty cell is the empty text, not Null
    rs->Seek("=", Value(486));
    EXPECT_TRUE(rs->NoMatch());
    EXPECT_TRUE(db->tableDef("Languages").Indexes().at(0).Unique);
}

TEST(LanguageSource, FailedBuildLeavesTheOldFileAsItWas) {
    TempDir dir;
    const std::string path = dir.file("language.mdb");
    buildLanguageDatabase({{1, "alt", "old", 1}}, path);
    // Rows that don't come from the parser may repeat a number; the unique index refuses it.
    EXPECT_THROW(buildLanguageDatabase({{2, "neu", "new", 1}, {2, "neu", "new", 2}}, path),
                 DatabaseError);
    EXPECT_FALSE(std::filesystem::exists(path + ".part"));
    auto db = dao::OpenDatabase(path);
    auto rs = db->OpenRecordset("Languages");
    EXPECT_EQ(rs->RecordCount(), 1);
    EXPECT_EQ(rs->get("Deutsch"), Value("alt"));
}

// The texts that the program ships with.
TEST(LanguageSource, TheShippedTextsAreComplete) {
    std::map<int, Row> rows;
    int last = 0;
    for (const Row& row : readTexts(FOLIO_SOURCE_DIR "/data/language/texts.tsv")) {
        EXPECT_LT(last, row.number) << "rows stand in the order of their numbers";
        last = row.number;
        rows[row.number] = row;
    }
    const std::regex unknownPlaceholder(
        "#(?!(PROGNAME|APPNAME|APPPATH|DATENPATH|MAINPATH|SUPPORTEMAIL)#)[A-Z]+#");
    for (const auto& [number, row] : rows)
        for (const std::string& text : {row.german, row.english}) {
            EXPECT_NE(text.find_first_not_of(" \n\t"), std::string::npos) << number;
            EXPECT_FALSE(std::regex_search(text, unknownPlaceholder)) << number << ": " << text;
        }

    // Keys that the program looks up by their number alone, with no German words beside them
    // in the code.
    for (int number :
         {242,  243,  344,  345,  346,  347,  348,  349,  350,  351,  352,  353, 354, 452,
          454,  533,  567,  609,  610,  611,  613,  614,  615,  616,  617,  618, 619, 1001,
          1070, 1399, 1659, 1660, 1661, 2380, 2803, 2804, 3626, 8038, 8391, 9951})
        EXPECT_TRUE(rows.contains(number)) << "no text for key " << number;

    // The captions of the character sets go into the GEDCOM header in every language.
    EXPECT_EQ(rows[627].german + rows[627].english, "AnsiAnsi");
    EXPECT_EQ(rows[628].german + rows[628].english, "UTF-8UTF-8");

    // Role texts, key 1800 + the code of the letter: a letter in either case names the same
    // role, and the letters of the main persons have none.
    int roles = 0;
    for (int letter = 'A'; letter <= 'Z'; ++letter) {
        const int upper = 1800 + letter;
        const int lower = upper + ('a' - 'A');
        ASSERT_EQ(rows.contains(upper), rows.contains(lower)) << char(letter);
        if (!rows.contains(upper))
            continue;
        ++roles;
        EXPECT_EQ(rows[upper].german + rows[upper].english,
                  rows[lower].german + rows[lower].english);
    }
    EXPECT_GE(roles, 10);
    EXPECT_FALSE(rows.contains(1800 + 'D') || rows.contains(1800 + 'd'));
}
