#include "sample_rtf.h"
#include "sample_source.h"

#include "database/listentexte.h"
#include "database/schema/schema.h"
#include "engine/engine.h"
#include "engine/recordset.h"
#include "frame/globals.h"
#include "frame/sprache.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <set>

using namespace folio;
using namespace folio::sample_source;

namespace {

const char* const FileRecord = "file\n  changed: 01.02.2003 04:05\n";

Sample parse(const std::string& text) {
    return parseFiles({{"t.txt", std::string(FileRecord) + text}});
}

// The line of the fault and its text, for a source that must be refused.
std::pair<int, std::string> fault(const std::string& text) {
    try {
        parse(text);
    } catch (const SourceError& e) {
        return {e.line(), e.what()};
    }
    return {-1, "accepted"};
}

} // namespace

TEST(SampleSource, ReadsRecordsTextsDatesAndReferences) {
    const Sample s = parse("person anna #7\n"
                           "  givn: Anna\n"
                           "  born: ca. 12.03.1850\n"
                           "  died: 0\n"
                           "  born-at: rom\n"
                           "  association: #998 Doktorvater\n"
                           "  # a comment between fields\n"
                           "  memo (plain):\n"
                           "    first\n"
                           "\n"
                           "      # indented text, not a comment\n"
                           "\n"
                           "place rom #7\n"
                           "  name: Rom\n"
                           "event e #1\n"
                           "  kind: 11 Kirchliche Trauung\n"
                           "  until: 03.1851\n"
                           "  main: anna\n"
                           "  role: P anna TaufPate\n");
    const Record& anna = *s.byId("anna");
    EXPECT_EQ(anna.counter, 7);
    EXPECT_EQ(anna.line, 3);
    const Date born = s.date(anna, *anna.find("born"));
    EXPECT_EQ(born.qualifier, "ca.");
    EXPECT_EQ(born.day * 10000 + born.month * 100, 120300);
    EXPECT_EQ(born.year, 1850);
    EXPECT_EQ(s.date(anna, *anna.find("died")).year, 0);
    EXPECT_EQ(s.ref(anna, "born-at"), s.byId("rom")); // the same number in another table
    const Reference dangling = s.reference(anna, *anna.find("association"));
    EXPECT_EQ(dangling.target, nullptr);
    EXPECT_EQ(dangling.number, 998);
    EXPECT_EQ(dangling.rest, "Doktorvater");
    const Entry& memo = *anna.find("memo");
    EXPECT_EQ(memo.modifier, "plain");
    EXPECT_EQ(memo.lines,
              (std::vector<std::string>{"first", "", "  # indented text, not a comment"}));
    const Record& e = *s.byId("e");
    EXPECT_EQ(s.number(e, *e.find("kind")), 11);
    const Role role = s.role(e, *e.find("role"));
    EXPECT_EQ(role.letter, 'P');
    EXPECT_EQ(role.person, &anna);
    EXPECT_EQ(role.asso, "TaufPate");
}

TEST(SampleSource, RefusesFaultsNamingTheirLine) {
    const std::string person = "person p #1\n  givn: P\n";
    struct Case {
        std::string text;
        int line;
        std::string words;
    };
    const std::vector<Case> cases = {
        {"persn p #1\n", 3, "isn't a kind"},
        {"person P #1\n", 3, "an id of small letters"},
        {"person p #0\n", 3, "from 1"},
        {person + "  givn: Q\n", 5, "given twice"},
        {person + "  colour: red\n", 5, "isn't a field of a person"},
        {person + "  born: 31.02.1850\n", 5, "isn't a date"},
        {person + "  born: 13.1850\n", 5, "isn't a date"},
        {person + "  born: 12.0.1850\n", 5, "isn't a date"},
        {person + "  born: circa 1850\n", 5, "isn't a date"},
        {person + "  father: q\n", 5, "no record has the id \"q\""},
        {person + "  father: #998\n", 5, "no record has the id \"#998\""},
        {person + "  father: x\nplace x #1\n  name: X\n", 5, "a place, which this field can't"},
        {person + "  memo:\n  givn: Q\n", 5, "neither a value nor lines"},
        {person + "  memo:\n", 5, "neither a value nor lines"},
        {person + "   givn: Q\n", 5, "indent a field by two blanks"},
        {person + "\tgivn: Q\n", 5, "a tab"},
        {person + "  occu (plain): Q\n", 5, "isn't known for this key"},
        {person + "  living: yes\n  died: 1900\n", 6, "living person has no death date"},
        {person + "  guid: {1234}\n", 5, "a GUID of 38 characters"},
        {person + "person p #2\n", 5, "the id \"p\" was given before, in t.txt:3"},
        {person + "person q #1\n", 5, "the number 1 of table Daten was given before"},
        {"status s #1\n  memo: m\n", 3, "lacks the field \"name\""},
        {"status s #1\n  name: " + std::string(51, 'x') + "\n", 4, "longer than 50"},
        {"picture b #1\n  title: B\n  file: b.jpg\n  missing: yes\n", 3, "gives its size"},
        {"event e #1\n  kind: 1\n  until: ca. 1850\n", 5, "takes no qualifier"},
    };
    for (const Case& c : cases) {
        const auto [line, what] = fault(c.text);
        EXPECT_EQ(line, c.line) << c.text << "\n" << what;
        EXPECT_NE(what.find(c.words), std::string::npos) << c.text << "\n" << what;
    }
    for (const auto& [text, words] :
         {std::pair("person p #1\n", "the record file"),
          std::pair("  givn: P\nfile\n", "a field before the first record")}) {
        try {
            parseFiles({{"t.txt", text}});
            ADD_FAILURE() << text;
        } catch (const SourceError& e) {
            EXPECT_NE(std::string(e.what()).find(words), std::string::npos) << e.what();
        }
    }
}

TEST(SampleRtf, WritesTheCodePageAndUnicodeAsTheTextBoxesDo) {
    const std::string rtf = richText({"Mühle {1} \\ <b>fett</b> 5 €", "Łódź 青 𝄞", ""});
    EXPECT_TRUE(rtf.starts_with("{\\rtf1\\ansi\\ansicpg1252"));
    EXPECT_NE(rtf.find("M\\'fchle \\{1\\} \\\\ \\b fett\\b0  5 \\'80\\par"), std::string::npos)
        << rtf;
    EXPECT_NE(rtf.find("\\u321?\\'f3d\\u378? \\u-26798? \\u-10188?\\u-8930?\\par"),
              std::string::npos)
        << rtf;
    EXPECT_TRUE(rtf.ends_with("\\par\r\n\\par\r\n}\r\n")) << rtf; // one paragraph a line
    for (unsigned char c : rtf)
        EXPECT_LT(c, 0x80);
    EXPECT_EQ(plainText({"a", "", "b"}), "a\r\n\r\nb");
}

// --- The staged sample file ---------------------------------------------------------------------

namespace {

std::string datenpfad() {
    const char* stage = std::getenv("FOLIO_STAGE");
    return stage ? std::string(stage) + "/Daten" : std::string();
}

class StagedSample : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        Datenpfad = datenpfad();
        if (Datenpfad.empty())
            return;
        sprache_oeffnen(Datenpfad + "/language.mdb");
        db = dao::OpenDatabase(Datenpfad + "/Beispiel.SF6", false, true);
        catalogue = dao::OpenDatabase(Datenpfad + "/Ereignis.mdb", false, true);
    }
    void SetUp() override {
        ASSERT_NE(db, nullptr) << "no staged Beispiel.SF6 (FOLIO_STAGE: " << datenpfad() << ")";
    }
    static void TearDownTestSuite() {
        db.reset();
        catalogue.reset();
        sprache_schliessen();
    }

    // The values of `field` over the rows of a query.
    static std::vector<Value> column(const std::string& sql, const std::string& field) {
        std::vector<Value> out;
        for (auto rs = db->OpenRecordset(sql); !rs->Eof(); rs->MoveNext())
            out.push_back(rs->get(field));
        return out;
    }
    static std::set<long long> counters(const std::string& table,
                                        const std::string& field = "Counter") {
        std::set<long long> out;
        for (const Value& v : column("SELECT [" + field + "] FROM " + table, field))
            out.insert(v.toInt());
        return out;
    }
    static long long count(const std::string& sql) {
        return static_cast<long long>(column(sql, "Counter").size());
    }

    inline static std::unique_ptr<dao::Database> db;
    inline static std::unique_ptr<dao::Database> catalogue;
};

const std::map<char, std::string> Tables = {{'D', "Daten"}, {'E', "Ereignis"}, {'R', "Notiz"},
                                            {'O', "Ort"},   {'U', "Dokument"}, {'A', "Adressen"},
                                            {'B', "Bilder"}};

} // namespace

TEST_F(StagedSample, IsAFileOfTheCurrentVersionWithAnAuthor) {
    for (const schema::Table& table : schema::mainTables())
        EXPECT_TRUE(db->hasTable(table.name)) << table.name;
    auto version = db->OpenRecordset("Version");
    EXPECT_EQ(version->get("Versionname").text(), schema::CurrentVersion);
    EXPECT_FALSE(version->get("Verfasser_Name").text().empty());
    EXPECT_FALSE(version->get("GEDCOM_Anmerkung").text().empty());
    const long long persons = count("SELECT Counter FROM Daten");
    EXPECT_GE(persons, 40);
    EXPECT_LE(persons, 80);
    EXPECT_GE(count("SELECT Counter FROM Status"), 1);
}

TEST_F(StagedSample, EveryLinkPointsAtARecord) {
    std::map<char, std::set<long long>> records;
    for (const auto& [letter, table] : Tables)
        records[letter] = counters(table);
    auto expectIn = [&](char letter, const Value& v, const std::string& where) {
        const long long n = v.toInt();
        EXPECT_TRUE(n == 0 || records[letter].count(n)) << where << " -> " << n;
    };
    const std::vector<std::tuple<std::string, std::string, char>> fields = {
        {"Daten", "Vater", 'D'},      {"Daten", "Mutter", 'D'},       {"Daten", "Bild", 'B'},
        {"Daten", "Notiz", 'R'},      {"Daten", "Ort", 'O'},          {"Daten", "GOrt", 'O'},
        {"Daten", "SOrt", 'O'},       {"Ereignis", "Ort", 'O'},       {"Ereignis", "Bild", 'B'},
        {"Ereignis", "Notiz", 'R'},   {"Ort", "Oberort", 'O'},        {"Ort", "Bild", 'B'},
        {"Ort", "Notiz", 'R'},        {"Notiz", "Obernotiz", 'R'},    {"Dokument", "Oberdoc", 'U'},
        {"Dokument", "Ort", 'O'},     {"Dokument", "Bild", 'B'},      {"Dokument", "Notiz", 'R'},
        {"Bilder", "Ort", 'O'},       {"Bilder", "Notiz", 'R'},       {"Adressen", "Ort", 'O'},
        {"Adressen", "Notiz", 'R'},   {"Ereignis_DS", "Quelle", 'D'}, {"Ereignis_DS", "Ziel", 'E'},
        {"Adressen_DS", "Ziel", 'A'}, {"Daten_DS", "Quelle", 'D'},
    };
    for (const auto& [table, field, letter] : fields)
        for (const Value& v : column("SELECT " + field + " FROM " + table, field))
            expectIn(letter, v, table + "." + field);
    const std::set<long long> states = counters("Status");
    for (const char* table : {"Daten", "Ereignis", "Ort", "Notiz", "Dokument", "Bilder"})
        for (const Value& v : column(std::string("SELECT Status FROM ") + table, "Status"))
            EXPECT_TRUE(v.toInt() == 0 || states.count(v.toInt())) << table;
    // The one deliberate dangling reference: an association with a deleted person.
    for (const Value& v : column("SELECT Ziel FROM Daten_DS", "Ziel"))
        EXPECT_TRUE(records['D'].count(v.toInt()) || v.toInt() == 998) << v.toInt();
    for (auto rs = db->OpenRecordset("SELECT * FROM Quellen_DS"); !rs->Eof(); rs->MoveNext()) {
        const char from = rs->get("Art_Quelle").text()[0];
        const char to = static_cast<char>(std::toupper(rs->get("Art_Ziel").text()[0]));
        expectIn(from, rs->get("Quelle"), std::string("Quellen_DS from ") + from);
        expectIn(to, rs->get("Ziel"), std::string("Quellen_DS to ") + to);
    }
    for (auto rs = db->OpenRecordset("SELECT * FROM Adressen_DS"); !rs->Eof(); rs->MoveNext())
        expectIn(rs->get("Ursprung").text()[0], rs->get("Quelle"), "Adressen_DS");
}

TEST_F(StagedSample, EveryRecordLetterLinksAndIsLinked) {
    std::set<std::string> from, to, addressOwners;
    for (auto rs = db->OpenRecordset("SELECT * FROM Quellen_DS"); !rs->Eof(); rs->MoveNext()) {
        from.insert(rs->get("Art_Quelle").text());
        to.insert(rs->get("Art_Ziel").text());
    }
    for (const auto& [letter, table] : Tables) {
        EXPECT_TRUE(from.count(std::string(1, letter))) << letter;
        EXPECT_TRUE(to.count(std::string(1, letter))) << letter;
    }
    EXPECT_TRUE(to.count("b")); // one target letter in lower case
    for (const Value& v : column("SELECT Ursprung FROM Adressen_DS", "Ursprung"))
        addressOwners.insert(v.text());
    EXPECT_EQ(addressOwners, (std::set<std::string>{"D", "O", "R", "U"}));
}

TEST_F(StagedSample, EventKindsComeFromTheFileOrTheCatalogue) {
    const std::set<long long> file = counters("Ereignisdb", "Index");
    std::set<long long> known;
    for (auto rs = catalogue->OpenRecordset("SELECT [Index] FROM Deutsch"); !rs->Eof();
         rs->MoveNext())
        known.insert(rs->get("Index").toInt());
    std::set<long long> gaps;
    for (const Value& art : column("SELECT Art FROM Ereignis", "Art"))
        if (!file.count(art.toInt()) && !known.count(art.toInt()))
            gaps.insert(art.toInt());
    EXPECT_EQ(gaps, std::set<long long>{99});
    EXPECT_FALSE(file.count(44));
    EXPECT_TRUE(known.count(44));
    EXPECT_EQ(count("SELECT Counter FROM Ereignis WHERE Art = 44"), 1);
    // A kind renamed in the file, and one taken along by its chain (Taufe depends on Geburt).
    auto renamed = db->OpenRecordset("SELECT Art FROM Ereignisdb WHERE [Index] = 38");
    EXPECT_EQ(renamed->get("Art").text(), "Orden und Ehrenzeichen");
    EXPECT_TRUE(file.count(1) && file.count(2));
    EXPECT_GE(file.size(), 40u);
}

TEST_F(StagedSample, DerivedFieldsAreThoseTheProgramComputes) {
    auto sortKey = [](long long d, long long m, long long y) {
        char buf[16];
        if (y == 0)
            return std::string();
        std::snprintf(buf, sizeof buf,
                      d   ? "%04lld%02lld%02lld"
                      : m ? "%04lld%02lld"
                          : "%04lld",
                      y, m, d);
        return std::string(buf);
    };
    auto checkDates = [&](dao::Recordset& rs, const std::string& p) {
        const long long d = rs.get(p + "Tag").toInt(), m = rs.get(p + "Monat").toInt(),
                        y = rs.get(p + "Jahr").toInt();
        EXPECT_EQ(rs.get(p + "Sort").text(), sortKey(d, m, y)) << p << d << "." << m << "." << y;
        EXPECT_EQ(rs.get(p + "Datum").text(), datum_text(int(d), int(m), int(y), 0));
    };
    auto daten = db->OpenRecordset("Daten", dao::RecordsetType::Table);
    for (; !daten->Eof(); daten->MoveNext()) {
        checkDates(*daten, "G");
        checkDates(*daten, "S");
        EXPECT_EQ(daten->get("Listentext").text(), liste_name(*daten, false, false, false));
        const std::string surn = daten->get("SURN").text();
        EXPECT_EQ(daten->get("NNSoundex").text(), surn.empty() ? " " : soundex(surn));
    }
    for (const char* table : {"Ereignis", "Bilder", "Dokument"})
        for (auto rs = db->OpenRecordset(table); !rs->Eof(); rs->MoveNext())
            checkDates(*rs, "v");
    for (auto rs = db->OpenRecordset("Ereignis"); !rs->Eof(); rs->MoveNext())
        checkDates(*rs, "b");
    for (auto rs = db->OpenRecordset("Ort"); !rs->Eof(); rs->MoveNext())
        EXPECT_EQ(rs->get("Soundex").text(), soundex(rs->get("Name").text()));
    for (auto rs = db->OpenRecordset("Namen"); !rs->Eof(); rs->MoveNext())
        EXPECT_EQ(rs->get("Soundex").text(), soundex(rs->get("Namen").text()));

    // The list texts of events, made anew from the stored fields.
    auto ereignisdb = db->OpenRecordset("Ereignisdb", dao::RecordsetType::Table);
    auto katalog = catalogue->OpenRecordset("SELECT * FROM Deutsch", dao::RecordsetType::Dynaset);
    const ListentextQuellen q{db.get(), daten.get(), ereignisdb.get(), katalog.get()};
    auto orte = db->OpenRecordset("Ort", dao::RecordsetType::Table);
    orte->Index("Counter");
    for (auto rs = db->OpenRecordset("Ereignis"); !rs->Eof(); rs->MoveNext()) {
        const RecordId ereignis = rs->get("Counter").toRecordId();
        auto first = db->OpenRecordset("SELECT Quelle FROM Ereignis_DS WHERE Ursprung = 'd' "
                                       "AND Ziel = " +
                                       ereignis.sqlLiteral());
        RecordId p1;
        for (; !first->Eof() && p1.isZero(); first->MoveNext())
            p1 = first->get("Quelle").toRecordId();
        std::string ort;
        if (!rs->get("Ort").toRecordId().isZero()) {
            orte->Seek("=", rs->get("Ort"));
            ort = std::string(orte->get("Name").text());
        }
        const std::string expected = ereignis_text(
            q, "Listentext", p1, int(rs->get("Art").toInt()), rs->get("ca").text(),
            rs->get("vDatum").text(), rs->get("bDatum").text(), rs->get("Kurztext").text(),
            rs->get("Grund").text(), ort, ereignis_hauptperson(q, p1, ereignis));
        EXPECT_EQ(rs->get("Listentext").text(), expected) << ereignis.text();
    }
}

TEST_F(StagedSample, HoldsTheAwkwardCases) {
    auto any = [&](const std::string& where) {
        return count("SELECT Counter FROM Daten WHERE " + where) > 0;
    };
    EXPECT_TRUE(any("GIVN = '' AND Geschlecht = ' '"));
    for (const char* piece :
         {"NPFX", "GIVN", "SPFX", "SURN", "Familienname", "NFSX", "TITL", "NICK", "ABBR",
          "RufNamen", "Patronym", "NameNOTE", "OCCU", "Religion"})
        EXPECT_TRUE(any(std::string(piece) + " <> ''")) << piece;
    EXPECT_TRUE(any("GUID IS NULL"));
    EXPECT_TRUE(any("GUID LIKE '{*-*-*-*-*}'"));
    EXPECT_TRUE(any("SJahr = 0 AND ca2 = 'err.'"));
    // A marked child of a marked mother and an unmarked father.
    EXPECT_GE(count("SELECT k.Counter FROM Daten k, Daten m, Daten v WHERE k.Mutter = "
                    "m.Counter AND k.Vater = v.Counter AND k.Markierung AND m.Markierung AND "
                    "NOT v.Markierung"),
              2);
    // Partners without a child of both.
    EXPECT_GE(count("SELECT d.Counter FROM Daten_DS d WHERE d.Art = 'E' AND NOT EXISTS (SELECT "
                    "* FROM Daten k WHERE (k.Vater = d.Quelle AND k.Mutter = d.Ziel) OR (k.Vater "
                    "= d.Ziel AND k.Mutter = d.Quelle))"),
              2);
    // Two women as partners, with their partnership.
    EXPECT_EQ(count("SELECT d.Counter FROM Daten_DS d, Daten a, Daten b WHERE d.Art = 'E' AND "
                    "a.Counter = d.Quelle AND b.Counter = d.Ziel AND a.Geschlecht = 'F' AND "
                    "b.Geschlecht = 'F' AND EXISTS (SELECT * FROM Ereignis_DS x, Ereignis e, "
                    "Ereignis_DS y WHERE x.Quelle = a.Counter AND y.Quelle = b.Counter AND "
                    "x.Ziel = e.Counter AND y.Ziel = e.Counter AND e.Art = 46)"),
              1);
    // Living persons: born in 1930 or later and not dead.
    for (auto rs = db->OpenRecordset("Daten"); !rs->Eof(); rs->MoveNext())
        EXPECT_EQ(rs->get("Lebt").toBool(),
                  rs->get("GJahr").toInt() >= 1930 && rs->get("SJahr").toInt() == 0 &&
                      rs->get("ca2").text().find_first_not_of(' ') == std::string::npos)
            << rs->get("Listentext").text();
    // An occupation in OCCU and in events of kinds 9 and 44 of the same person.
    EXPECT_TRUE(any("OCCU <> '' AND EXISTS (SELECT * FROM Ereignis_DS x, Ereignis e WHERE "
                    "x.Quelle = Daten.Counter AND x.Ziel = e.Counter AND e.Art = 9) AND EXISTS "
                    "(SELECT * FROM Ereignis_DS x, Ereignis e WHERE x.Quelle = Daten.Counter "
                    "AND x.Ziel = e.Counter AND e.Art = 44)"));
    EXPECT_GT(count("SELECT Counter FROM Ort WHERE Name LIKE '*,*,*'"), 0);
    EXPECT_GT(count("SELECT Counter FROM Ereignis WHERE vJahr = 0 AND ca <> '      '"), 0);
    bool longText = false;
    for (const Value& v : column("SELECT [Text] FROM Ereignis", "Text"))
        longText |= v.text().size() > 300 && v.text().find("#CONT#") != std::string::npos &&
                    v.text().find("#CONC#") != std::string::npos;
    EXPECT_TRUE(longText);

    std::set<std::string> letters, roles;
    for (auto rs = db->OpenRecordset("SELECT * FROM Ereignis_DS"); !rs->Eof(); rs->MoveNext()) {
        letters.insert(rs->get("Ursprung").text());
        roles.insert(rs->get("ASSO").text());
    }
    for (const char* letter :
         {"d", "D", "A", "B", "E", "F", "G", "H", "N", "P", "S", "T", "V", "Z"})
        EXPECT_TRUE(letters.count(letter)) << letter;
    EXPECT_TRUE(roles.count("Taufpate") && roles.count("TaufPate"));
    std::set<std::string> associations;
    for (const Value& v : column("SELECT ASSO FROM Daten_DS WHERE Art = 'Z'", "ASSO"))
        associations.insert(v.text());
    EXPECT_TRUE(associations.count("1880") && associations.count("TAUFPATE") &&
                associations.count("Jugendfreund"));
}

TEST_F(StagedSample, RichTextsAreRtfAndPicturesExist) {
    const std::vector<std::pair<std::string, std::string>> rich = {
        {"Ereignis", "Text"},    {"Daten", "Memo"},    {"Notiz", "Memo"},   {"Ort", "Memo"},
        {"Adressen", "Adresse"}, {"Adressen", "Memo"}, {"Dokument", "Text"}};
    int rtf = 0, plain = 0;
    for (const auto& [table, field] : rich)
        for (const Value& v : column("SELECT [" + field + "] FROM " + table, field)) {
            const std::string& text = v.textRef();
            if (text.find("\\rtf") != std::string::npos) {
                EXPECT_TRUE(text.starts_with("{\\rtf")) << table << "." << field;
                ++rtf;
            } else if (text != " ") {
                ++plain;
            }
        }
    EXPECT_GT(rtf, 20);
    EXPECT_GT(plain, 3);

    int missing = 0;
    for (auto rs = db->OpenRecordset("Bilder"); !rs->Eof(); rs->MoveNext()) {
        const std::filesystem::path file =
            std::filesystem::path(rs->get("bildpfad").text()) / rs->get("bildfile").text();
        if (!std::filesystem::exists(file)) {
            ++missing;
            EXPECT_GT(rs->get("groesse").toInt(), 0);
            continue;
        }
        EXPECT_EQ(static_cast<long long>(std::filesystem::file_size(file)),
                  rs->get("groesse").toInt())
            << file;
    }
    EXPECT_EQ(missing, 1);
}
