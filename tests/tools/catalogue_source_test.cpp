#include "catalogue_source.h"

#include "database/schema/schema.h"
#include "engine/engine.h"
#include "engine/recordset.h"
#include "support/temp_dir.h"
#include "tsv.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

using namespace folio;
using namespace folio::catalogue_source;
using folio::test::TempDir;

namespace {

const std::string ShippedCatalogue = FOLIO_SOURCE_DIR "/data/events/catalogue.tsv";

// The cells of a plain kind of one person, to be changed by a test.
std::vector<std::string> kind(int index) {
    const std::string_view rest =
        "BIRT|1|-1|0|0|1|10|dAHZ|*|Geburt|Geburt von||durch|Birth|Birth of||by";
    std::vector<std::string> cells = {std::to_string(index)};
    for (std::size_t start = 0, bar = 0; bar != std::string_view::npos; start = bar + 1) {
        bar = rest.find('|', start);
        cells.emplace_back(rest.substr(start, bar - start));
    }
    return cells;
}

std::string line(const std::vector<std::string>& cells) {
    std::string text = cells.front();
    for (std::size_t i = 1; i < cells.size(); ++i)
        text += "\t" + cells[i];
    return text + "\n";
}

// The message of the error that parsing `text` raises, or "" when it parses.
std::string parseError(const std::string& text) {
    try {
        parseCatalogue(text, "catalogue.tsv");
    } catch (const SourceError& e) {
        return e.what();
    }
    return "";
}

} // namespace

TEST(CatalogueSource, ReadsEveryColumnIntoItsField) {
    const auto rows = parseCatalogue("# Index\tgedtag\n\n" + line(kind(0)) +
                                         "1\tMARR\t2\t0\t1\t0\t3\t200\tdSTZ\too\t"
                                         "Heirat\tHeirat von\tmit\tdurch\\t\t"
                                         "Marriage\tMarriage of\tto\tby\n",
                                     "catalogue.tsv");
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[0].line, 3);
    EXPECT_EQ(rows[0].german.textNach, "");
    const Row& r = rows[1];
    EXPECT_EQ(r.index, 1);
    EXPECT_EQ(r.gedtag, "MARR");
    EXPECT_EQ(r.maxhauptpersonen, 2);
    EXPECT_EQ(r.mainindex, 0);
    EXPECT_EQ(r.ortPos, 1);
    EXPECT_FALSE(r.causAsTag);
    EXPECT_EQ(r.level, 3);
    EXPECT_EQ(r.sortindex, 200);
    EXPECT_EQ(r.personenarten, "dSTZ");
    EXPECT_EQ(r.txtzeichen, "oo");
    EXPECT_EQ(r.german.art + "|" + r.german.textVor + "|" + r.german.textNach + "|" +
                  r.german.ereignisgrund,
              "Heirat|Heirat von|mit|durch\t");
    EXPECT_EQ(r.english.art + "|" + r.english.textVor + "|" + r.english.textNach + "|" +
                  r.english.ereignisgrund,
              "Marriage|Marriage of|to|by");
}

TEST(CatalogueSource, ReportsABadLineWithFileAndLineNumber) {
    struct Case {
        std::size_t column;
        std::string value;
        std::string message;
    };
    const std::vector<Case> cases = {
        {0, "x", "catalogue.tsv:3: the Index \"x\" isn't a whole number from 0 to 32767"},
        {0, "2.0", "catalogue.tsv:3: the Index \"2.0\""},
        {0, "1", "catalogue.tsv:3: the Index 1 was given before, in line 2"},
        {0, "3", "catalogue.tsv:3: expected the Index 2, found 3: the kinds are numbered"},
        {1, "birt", "catalogue.tsv:3: the gedtag \"birt\" isn't a GEDCOM tag"},
        {1, " ", "catalogue.tsv:3: the gedtag \" \" isn't a GEDCOM tag"},
        {2, "3", "catalogue.tsv:3: the maxhauptpersonen \"3\" isn't a whole number from 1 to 2"},
        {2, "0", "catalogue.tsv:3: the maxhauptpersonen \"0\""},
        {3, "-2", "catalogue.tsv:3: the mainindex \"-2\""},
        {3, "7", "catalogue.tsv:3: the mainindex 7 names no kind of the catalogue"},
        {3, "2", "catalogue.tsv:3: the mainindex chain comes back to the kind 2: 2 -> 2"},
        {4, "2", "catalogue.tsv:3: the OrtPos \"2\""},
        {5, "True", "catalogue.tsv:3: the CAUSasTAG \"True\""},
        {7, "32768", "catalogue.tsv:3: the Sortindex \"32768\""},
        {9, "12345678901",
         "catalogue.tsv:3: the txtzeichen text is 11 characters long, the field holds 10"},
        {10, " ", "catalogue.tsv:3: the German Art is empty"},
        {14, "", "catalogue.tsv:3: the English Art is empty"},
        {15, "of\\x", "catalogue.tsv:3: unknown escape \\x in the English Text_vor text"},
    };
    const std::string start = line(kind(0)) + line(kind(1));
    for (const Case& c : cases) {
        std::vector<std::string> cells = kind(2);
        cells[c.column] = c.value;
        const std::string error = parseError(start + line(cells));
        EXPECT_TRUE(error.starts_with(c.message)) << c.value << " gives: " << error;
    }

    std::vector<std::string> cells = kind(2);
    cells.pop_back();
    EXPECT_EQ(parseError(start + line(cells)),
              "catalogue.tsv:3: expected 18 columns divided by tabs, found 17");
    EXPECT_EQ(parseError(line(kind(1))).substr(0, 50),
              "catalogue.tsv:1: expected the Index 0, found 1: th");

    // A circle through two kinds; a kind that only leads into it is no part of it.
    std::vector<std::string> zero = kind(0), one = kind(1), two = kind(2);
    zero[3] = "1", one[3] = "0", two[3] = "0";
    EXPECT_EQ(parseError(line(zero) + line(one) + line(two)),
              "catalogue.tsv:1: the mainindex chain comes back to the kind 0: 0 -> 1 -> 0");

    // Lengths are counted in characters: 255 umlauts fill the field of 255.
    std::string umlauts;
    for (int i = 0; i < 255; ++i)
        umlauts += "\xC3\xA4";
    cells = kind(2);
    cells[11] = umlauts;
    EXPECT_EQ(parseError(start + line(cells)), "");
    cells[11] += "a";
    EXPECT_TRUE(parseError(start + line(cells))
                    .starts_with("catalogue.tsv:3: the German Text_vor text is 256 characters"));
}

// The shipped catalogue, built as the build stages it and read back through the engine.
TEST(CatalogueSource, BuiltCatalogueHoldsBothLanguagesWithTheSameKinds) {
    TempDir dir;
    const std::string path = dir.file("Daten/Ereignis.mdb");
    const auto rows = readCatalogue(ShippedCatalogue);
    buildCatalogue(rows, path);

    auto db = dao::OpenDatabase(path);
    const std::vector<std::string> names = db->TableNames();
    EXPECT_EQ(std::set<std::string>(names.begin(), names.end()),
              (std::set<std::string>{"Deutsch", "English"}));
    for (const char* language : {"Deutsch", "English"}) {
        SCOPED_TRACE(language);
        auto rs = db->OpenRecordset(std::string("SELECT * FROM ") + language + " ORDER BY Index",
                                    dao::RecordsetType::Dynaset);
        int expected = 0;
        for (; !rs->Eof(); rs->MoveNext(), ++expected) {
            EXPECT_EQ(rs->get("Index").toInt(), expected);
            // Every text field holds a text, one blank where the source left it empty.
            for (const char* field : {"Art", "Text_vor", "Text_nach", "GedTAG", "Personenarten",
                                      "Ereignisgrund", "txtzeichen"})
                EXPECT_FALSE(rs->get(field).text().empty()) << expected << " " << field;
        }
        EXPECT_EQ(expected, static_cast<int>(rows.size()));
    }

    auto deutsch = db->OpenRecordset("Deutsch", dao::RecordsetType::Dynaset);
    deutsch->FindFirst("Index = 10");
    ASSERT_FALSE(deutsch->NoMatch());
    EXPECT_EQ(deutsch->get("Art"), Value("Standesamtliche Heirat"));
    EXPECT_EQ(deutsch->get("gedtag"), Value("MARR"));
    EXPECT_EQ(deutsch->get("maxhauptpersonen").toInt(), 2);
    deutsch->FindFirst("Index = 0");
    EXPECT_EQ(deutsch->get("GedTAG"), Value(" "));
    deutsch->FindFirst("Index = 9");
    EXPECT_TRUE(deutsch->get("CAUSasTAG").toBool());

    auto english = db->OpenRecordset("English", dao::RecordsetType::Table);
    english->Index("Index");
    english->Seek("=", Value(2));
    ASSERT_FALSE(english->NoMatch());
    EXPECT_EQ(english->get("mainindex").toInt(), 1);
    EXPECT_NE(english->get("Art"), Value("Taufe"));
}

TEST(CatalogueSource, ShippedKindsCarryTheirGedcomTags) {
    const std::set<std::string> individualEvents = {
        "BIRT", "CHR",  "DEAT", "BURI", "CREM", "ADOP", "BAPM", "BARM", "BASM", "BLES", "CHRA",
        "CONF", "FCOM", "ORDN", "NATU", "EMIG", "IMMI", "CENS", "PROB", "WILL", "GRAD", "RETI"};
    // Attributes with a value on the tag line, and RESI, which has none.
    const std::set<std::string> valuedAttributes = {"CAST", "DSCR", "EDUC", "IDNO", "NATI", "NCHI",
                                                    "NMR",  "OCCU", "PROP", "RELI", "SSN",  "TITL"};
    const std::set<std::string> familyEvents = {"MARR", "DIV",  "ENGA", "MARB", "MARC",
                                                "MARL", "ANUL", "DIVF", "MARS"};
    const std::set<int> couplesWithoutTag = {46, 47};

    const auto rows = readCatalogue(ShippedCatalogue);
    ASSERT_EQ(rows.size(), 48u);
    EXPECT_EQ(rows[1].gedtag, "BIRT");
    EXPECT_EQ(rows[5].gedtag, "DEAT");
    for (int occupation : {9, 44}) {
        EXPECT_EQ(rows[occupation].gedtag, "OCCU");
        EXPECT_TRUE(rows[occupation].causAsTag);
    }

    std::set<std::string> germanNames, englishNames;
    for (const Row& row : rows) {
        SCOPED_TRACE(row.index);
        const std::string& tag = row.gedtag;
        const bool family = familyEvents.contains(tag);
        const bool valued = valuedAttributes.contains(tag);
        EXPECT_TRUE(tag.empty() || tag == "RESI" || individualEvents.contains(tag) || valued ||
                    family)
            << tag;
        const bool couple = family || (tag.empty() && couplesWithoutTag.contains(row.index));
        EXPECT_EQ(row.maxhauptpersonen, couple ? 2 : 1);
        // The value of an attribute goes on its tag line; without a tag it would be lost.
        EXPECT_EQ(row.causAsTag, valued);
        // A couple's list text names the second person behind Text_nach.
        for (const Texts* texts : {&row.german, &row.english}) {
            EXPECT_FALSE(texts->textVor.empty());
            EXPECT_EQ(texts->textNach.empty(), !couple);
        }
        // The name of a kind without a tag is its TYPE in the file: two alike can't be told.
        EXPECT_TRUE(germanNames.insert(row.german.art).second) << row.german.art;
        EXPECT_TRUE(englishNames.insert(row.english.art).second) << row.english.art;
    }
}

TEST(Geddate, EveryRowMapsAQualifierToAGedcomModifier) {
    const std::string text = tsv::readFile(FOLIO_SOURCE_DIR "/data/geddate.ini");
    ASSERT_TRUE(text.ends_with('\n'));
    // ASCII alone reads the same in the single-byte code page that the program assumes.
    for (char c : text)
        EXPECT_TRUE(c == '\n' || c == '\t' || (c >= ' ' && c <= '~')) << int(c);

    const std::set<std::string> modifiers = {"ABT", "CAL", "EST", "AFT", "BEF"};
    std::map<std::string, std::string> modifierOf;
    std::size_t start = 0;
    for (std::size_t end; (end = text.find('\n', start)) != std::string::npos; start = end + 1) {
        const std::string row = text.substr(start, end - start);
        SCOPED_TRACE(row);
        const std::size_t tab = row.find('\t');
        ASSERT_NE(tab, std::string::npos);
        EXPECT_EQ(row.find('\t', tab + 1), std::string::npos);
        const std::string modifier = row.substr(0, tab);
        const std::string ca = row.substr(tab + 1);
        EXPECT_TRUE(modifiers.contains(modifier));
        // `ca` holds 6 characters and is compared trimmed: a longer text or one with blanks
        // at its ends would never match.
        EXPECT_FALSE(ca.empty());
        EXPECT_LE(ca.size(), 6u);
        EXPECT_NE(ca.front(), ' ');
        EXPECT_NE(ca.back(), ' ');
        EXPECT_TRUE(modifierOf.emplace(ca, modifier).second) << "given twice";
    }
    EXPECT_EQ(modifierOf["ca."], "ABT");
    EXPECT_EQ(modifierOf["nach"], "AFT");
    EXPECT_EQ(modifierOf["vor"], "BEF");
    EXPECT_EQ(modifierOf["err."], "CAL");
    EXPECT_EQ(modifierOf["gesch."], "EST");
}
