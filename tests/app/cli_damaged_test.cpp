// Damaged family trees through the whole command line (opening, version check, selection,
// closure, export): a tree cut short, a page of junk, a table, field or index missing, a
// Version without rows, numbers that stand twice, links to nothing, circles of parents and of
// places. Each run ends in time with a file that both readers accept, or with a message that
// names the tree; the tree stays as it was.

#include "engine/sqlite_handle.h"
#include "support/cli_fixture.h"

#include <map>
#include <random>
#include <regex>
#include <sstream>

using namespace folio;
using namespace folio::test;

namespace {

struct DamagedTree : Export {
    // A copy of the sample tree under a name of its own, and its target beside the others.
    std::string kopie(const std::string& fall) {
        fs::create_directories(dir.file("kaputt"));
        const std::string datei = dir.file("kaputt/" + fall + ".SF6");
        fs::copy_file(tree, datei, fs::copy_options::overwrite_existing);
        return datei;
    }
    // The copy damaged by SQL on the engine's own connection (several statements at once).
    std::string mitSql(const std::string& fall, const std::string& sql) {
        const std::string datei = kopie(fall);
        dao::OpenDatabase(datei)->connection().exec(sql);
        return datei;
    }
    std::string ziel(const std::string& fall) { return dir.file("out/" + fall + ".ged"); }

    // The command line on `datei`, stopped after a minute. What it may end with: status 0 and
    // a file that our reader finds sound (the independent one reads it at the end of the
    // test), or another status and a message that names the tree. Never a hang, a signal, a
    // sanitizer's report or a target left behind; and the tree's bytes stay as they were, with
    // no journal beside them.
    Result pruefen(const std::string& fall, const std::string& datei,
                   const std::string& optionen = "--all") {
        const std::string vorher = readFile(datei);
        const std::string gedcom = ziel(fall);
        Result r =
            run("timeout 60 " + cli + " export '" + datei + "' -o '" + gedcom + "' " + optionen);
        const std::string wie = fall + " " + optionen + "\n" + r.output;
        EXPECT_NE(r.status, 124) << "hangs: " << wie;
        EXPECT_LT(r.status, 124) << "ended by a signal: " << wie;
        EXPECT_EQ(r.output.find("Sanitizer"), std::string::npos) << wie;
        EXPECT_EQ(r.output.find("runtime error"), std::string::npos) << wie;
        if (r.status == 0) {
            // A family keeps a parent's number that no person has as its HUSB or WIFE.
            const auto probleme =
                gedcomProblems(readFile(gedcom), nullptr, {"ASSO", "HUSB", "WIFE"});
            EXPECT_TRUE(probleme.empty()) << wie << testing::PrintToString(probleme);
        } else {
            EXPECT_NE(r.output.find(datei), std::string::npos) << "the tree isn't named: " << wie;
            EXPECT_FALSE(fs::exists(gedcom)) << wie;
        }
        EXPECT_TRUE(readFile(datei) == vorher) << "the tree was changed: " << wie;
        for (const char* beiseite : {"-journal", "-wal"})
            EXPECT_FALSE(fs::exists(datei + beiseite)) << wie;
        // A tree that went out opens as before: its marks and its Version read as usual.
        if (r.status == 0) {
            EXPECT_NO_THROW(marks(datei)) << wie;
        }
        return r;
    }
};

// Whether the program's messages (not the summary) name `wort`, as a word of its own, in
// any case.
bool nennt(const std::string& ausgabe, const std::string& wort) {
    const std::regex als_wort("\\b" + wort + "\\b", std::regex::icase);
    std::istringstream zeilen(ausgabe);
    for (std::string zeile; std::getline(zeilen, zeile);)
        if (zeile.rfind("folioexport-cli: ", 0) == 0 && std::regex_search(zeile, als_wort))
            return true;
    return false;
}

} // namespace

TEST_F(DamagedTree, CutShortAtEveryTenthItIsNamedAsDamaged) {
    const auto laenge = fs::file_size(tree);
    for (int zehntel = 1; zehntel < 10; ++zehntel) {
        const std::string fall = "gekuerzt" + std::to_string(zehntel * 10);
        const std::string datei = kopie(fall);
        fs::resize_file(datei, laenge * static_cast<unsigned>(zehntel) / 10);
        const Result r = pruefen(fall, datei);
        EXPECT_EQ(r.status, 5) << fall << "\n" << r.output;
    }
}

// A table, a field or an index gone: the tables that an old file lacks too are passed over,
// anything else is named with the tree.
TEST_F(DamagedTree, ATableFieldOrIndexMissingIsNamedWithTheTree) {
    struct Fall {
        const char* name;
        const char* sql;
        const char* fehlt; // what the message names; nullptr where the file goes out
        const char* optionen = "--all";
    };
    const Fall faelle[] = {
        {"ohneDaten", "DROP TABLE Daten", "Daten"},
        {"ohneNotiz", "DROP TABLE Notiz", "Notiz"},
        {"ohneOrt", "DROP TABLE Ort", "Ort"},
        {"ohneQuellen_DS", "DROP TABLE Quellen_DS", "Quellen_DS"},
        {"ohneVersion", "DROP TABLE Version", "Version"},
        {"ohneEreignisdb", "DROP TABLE Ereignisdb", nullptr},
        {"ohneNavigation", "DROP TABLE Navigation; DROP TABLE Status", nullptr},
        {"ohneVater", "ALTER TABLE Daten DROP COLUMN Vater", "Vater"},
        {"ohneGeschlecht", "ALTER TABLE Daten DROP COLUMN Geschlecht", "Geschlecht"},
        {"ohneOrtsname", "ALTER TABLE Ort DROP COLUMN Name", "Name"},
        {"ohneNotiztext", "ALTER TABLE Notiz DROP COLUMN Memo", "Memo"},
        {"ohneGedTAG", "ALTER TABLE Ereignisdb DROP COLUMN GedTAG", "GedTAG"},
        {"ohneUrsprung", "ALTER TABLE Ereignis_DS DROP COLUMN Ursprung", "Ursprung"},
        {"ohneIndexDaten", "DROP INDEX Daten_Counter", "Counter", "--person 22 --ancestors"},
        {"ohneIndexOrt", "DROP INDEX Ort_Counter", "Counter"},
        {"ohneIndexNotiz", "DROP INDEX Notiz_Counter", "Counter"},
        {"ohneIndexEreignisdb", "DROP INDEX Ereignisdb_Index", "Index"},
    };
    for (const Fall& f : faelle) {
        const Result r = pruefen(f.name, mitSql(f.name, f.sql), f.optionen);
        if (!f.fehlt) {
            EXPECT_EQ(r.status, 0) << f.name << "\n" << r.output;
            continue;
        }
        EXPECT_EQ(r.status, 5) << f.name << "\n" << r.output;
        EXPECT_TRUE(nennt(r.output, f.fehlt)) << f.name << "\n" << r.output;
    }
}

// A page of junk: every sixth page of the tree, and the first pages of the two tables that are
// opened only where they exist (notes, kinds of events), whose damage was once passed over.
TEST_F(DamagedTree, APageOfJunkEndsWithAFileOrAMessageThatNamesTheTree) {
    std::int64_t seitengroesse = 0;
    std::map<std::int64_t, std::string> seiten; // page number (from 1), and its table
    {
        auto db = dao::OpenDatabase(tree, false, true);
        sqlite::Statement groesse(db->connection(), "PRAGMA page_size");
        ASSERT_TRUE(groesse.step());
        seitengroesse = groesse.int64(0);
        sqlite::Statement wurzeln(db->connection(),
                                  "SELECT rootpage, name FROM sqlite_master WHERE name IN "
                                  "('Notiz', 'Ereignisdb')");
        while (wurzeln.step())
            seiten[wurzeln.int64(0)] = wurzeln.text(1);
    }
    ASSERT_EQ(seiten.size(), 2u);
    const auto anzahl = static_cast<std::int64_t>(fs::file_size(tree)) / seitengroesse;
    for (std::int64_t s = 1; s <= anzahl; s += 6)
        seiten.emplace(s, "");
    std::mt19937 zufall(4711);
    for (const auto& [seite, tabelle] : seiten) {
        const std::string fall = "seite" + std::to_string(seite);
        const std::string datei = kopie(fall);
        std::string bytes = readFile(datei);
        for (std::int64_t i = 0; i < seitengroesse; ++i)
            bytes[static_cast<std::size_t>((seite - 1) * seitengroesse + i)] =
                static_cast<char>(zufall());
        std::ofstream(datei, std::ios::binary | std::ios::trunc) << bytes;
        const Result r = pruefen(fall, datei);
        if (!tabelle.empty()) {
            EXPECT_EQ(r.status, 5) << fall << "\n" << r.output;
            EXPECT_TRUE(nennt(r.output, tabelle)) << fall << "\n" << r.output;
        }
    }
}

// A Version without rows tells no version; the file isn't taken for the oldest schema and
// upgraded by guess, but named as damaged, and no copy of it is made for an upgrade.
TEST_F(DamagedTree, AVersionWithoutRowsIsNamedAndNotUpgraded) {
    const std::string datei = mitSql("ohneVersionszeile", "DELETE FROM Version");
    const Result r = pruefen("ohneVersionszeile", datei);
    EXPECT_EQ(r.status, 5) << r.output;
    EXPECT_TRUE(nennt(r.output, "Version")) << r.output;
    EXPECT_EQ(std::distance(fs::directory_iterator(dir.file("kaputt")), fs::directory_iterator()),
              1);
}

// Numbers that stand twice, with a plain index in place of the unique one: a record goes out
// once, as its first row, whichever way the persons are chosen.
TEST_F(DamagedTree, NumbersThatStandTwiceGoOutOnce) {
    std::string sql =
        // Emma takes Otto Friedrich's number behind him; two persons are there twice.
        "DROP INDEX Daten_Counter; UPDATE Daten SET Counter = 22 WHERE Counter = 24;"
        "INSERT INTO Daten SELECT * FROM Daten WHERE Counter IN (15, 35);"
        "CREATE INDEX Daten_Counter ON Daten (Counter);"
        "DROP INDEX Ort_Counter; UPDATE Ort SET Counter = 3 WHERE Counter = 4;"
        "INSERT INTO Ort SELECT * FROM Ort WHERE Counter = 5;"
        "CREATE INDEX Ort_Counter ON Ort (Counter);"
        "DROP INDEX Ereignisdb_Index; INSERT INTO Ereignisdb SELECT * FROM Ereignisdb;"
        "CREATE INDEX Ereignisdb_Index ON Ereignisdb (\"Index\");"
        "UPDATE Daten SET Markierung = -1 WHERE Counter IN (1, 2, 5, 6, 15, 16, 22);";
    // Every record of the other tables twice, and every link.
    for (const char* t : {"Ereignis", "Notiz", "Dokument", "Bilder", "Adressen", "Ereignis_DS",
                          "Daten_DS", "Quellen_DS", "Adressen_DS"}) {
        const std::string index = std::string(t) + "_Counter";
        sql += "DROP INDEX " + index + "; INSERT INTO " + t + " SELECT * FROM " + t +
               "; CREATE INDEX " + index + " ON " + t + " (Counter);";
    }
    const std::string datei = mitSql("doppelt", sql);
    int fall = 0;
    for (const char* optionen :
         {"--all", "--marked", "--person 22 --ancestors --descendants --spouses",
          "--person 35 --ancestors --descendants --spouses --exclude-living"}) {
        const std::string name = "doppelt" + std::to_string(++fall);
        const Result r = pruefen(name, datei, optionen);
        ASSERT_EQ(r.status, 0) << optionen << "\n" << r.output;
        const std::string ged = readFile(ziel(name));
        EXPECT_NE(ged.find("0 @I22@ INDI\r\n1 NAME Otto"), std::string::npos) << optionen;
        EXPECT_EQ(ged.find("NAME Emma"), std::string::npos) << optionen;
    }
}

// Links to records that don't exist, of each kind: they are left out, and the records they
// point from go out.
TEST_F(DamagedTree, LinksToNothingAreLeftOut) {
    const std::string datei = mitSql(
        "insleere",
        "UPDATE Daten SET Vater = 9001 WHERE Counter = 22; UPDATE Daten SET Mutter = 9002 "
        "WHERE Counter = 23;"
        "UPDATE Daten SET Ort = 9003, GOrt = 9004, SOrt = -5, Notiz = 9005, Bild = 9006 WHERE "
        "Counter IN (22, 34, 35);"
        "UPDATE Ereignis SET Ort = 9007, Bild = 9008, Notiz = 9009 WHERE Counter % 2 = 0;"
        "UPDATE Ereignis_DS SET Ziel = Ziel + 90000 WHERE Counter % 3 = 0;"
        "UPDATE Ereignis_DS SET Quelle = Quelle + 90000 WHERE Counter % 3 = 1;"
        "UPDATE Quellen_DS SET Ziel = Ziel + 9000 WHERE Counter % 2 = 0;"
        "UPDATE Quellen_DS SET Quelle = Quelle + 9000 WHERE Counter % 2 = 1;"
        "UPDATE Daten_DS SET Ziel = Ziel + 9000 WHERE Counter % 2 = 0;"
        "UPDATE Adressen_DS SET Ziel = Ziel + 9000 WHERE Counter % 2 = 0;"
        "UPDATE Adressen_DS SET Quelle = Quelle + 9000 WHERE Counter % 2 = 1;"
        "UPDATE Ort SET Bild = 9010, Notiz = 9011, Oberort = 9012;"
        "UPDATE Dokument SET Notiz = 9013, Bild = 9014, Ort = 9015;"
        "UPDATE Bilder SET Ort = 9016, Notiz = 9017; UPDATE Adressen SET Ort = 9018;"
        "UPDATE Daten SET Markierung = -1 WHERE Counter IN (22, 23, 34);");
    int fall = 0;
    for (const char* optionen :
         {"--all --privacy none --change-stamps", "--marked --strict-55",
          "--person 22 --ancestors --descendants --spouses", "--person 34 --ancestors"}) {
        const std::string name = "insleere" + std::to_string(++fall);
        const Result r = pruefen(name, datei, optionen);
        ASSERT_EQ(r.status, 0) << optionen << "\n" << r.output;
        EXPECT_TRUE(persons(readFile(ziel(name))).count(22)) << optionen;
    }
}

// Circles: a person their own father, their own ancestor through a grandchild, a father
// and son each the other's father; places their own parent place, in a circle of two and
// of three. Walks of ancestors and descendants end, and every person goes out once.
TEST_F(DamagedTree, CirclesOfParentsAndOfPlacesEnd) {
    const std::string datei =
        mitSql("kreise",
               // 22's father is his grandson 50; 15's mother is her great-grandson 54; 1 is his own
               // father; 5 and 8 are each the other's father.
               "UPDATE Daten SET Vater = 50 WHERE Counter = 22;"
               "UPDATE Daten SET Mutter = 54 WHERE Counter = 15;"
               "UPDATE Daten SET Vater = 1, Mutter = 1 WHERE Counter = 1;"
               "UPDATE Daten SET Vater = 8 WHERE Counter = 5; UPDATE Daten SET Vater = 5 WHERE "
               "Counter = 8;"
               "UPDATE Ort SET Oberort = 1 WHERE Counter = 1;"
               "UPDATE Ort SET Oberort = 3 WHERE Counter = 5;"
               "UPDATE Ort SET Oberort = 11 WHERE Counter = 10; UPDATE Ort SET Oberort = 12 WHERE "
               "Counter = 11; UPDATE Ort SET Oberort = 10 WHERE Counter = 12;"
               "UPDATE Daten SET Markierung = -1 WHERE Counter IN (1, 22, 50);");
    struct Fall {
        const char* optionen;
        std::set<int> mindestens;
    };
    const Fall faelle[] = {
        {"--person 22 --ancestors", {22, 50, 35, 16, 23}},
        {"--person 22 --descendants --spouses", {22, 35, 50, 54, 23}},
        {"--person 54 --ancestors --descendants --spouses", {54, 35, 22, 50, 15}},
        {"--person 1 --ancestors --descendants", {1, 7}},
        {"--person 5 --ancestors --descendants --spouses --exclude-living", {5, 8}},
        {"--all --privacy none", {1, 5, 8, 22, 50, 54}},
        {"--marked", {1, 22, 50}},
    };
    int fall = 0;
    for (const Fall& f : faelle) {
        const std::string name = "kreise" + std::to_string(++fall);
        const Result r = pruefen(name, datei, f.optionen);
        ASSERT_EQ(r.status, 0) << f.optionen << "\n" << r.output;
        const std::set<int> exportiert = persons(readFile(ziel(name)));
        for (int p : f.mindestens)
            EXPECT_TRUE(exportiert.count(p)) << f.optionen << ": " << p;
    }
}

// A text or an overlarge number where a record's number belongs: where the run can't go on,
// the tree is named with what it found.
TEST_F(DamagedTree, AValueOfTheWrongKindEndsWithTheTreeNamed) {
    const std::pair<const char*, const char*> faelle[] = {
        {"textVater", "UPDATE Daten SET Vater = 'abc' WHERE Counter = 22"},
        {"textOrt", "UPDATE Daten SET Ort = 'x' WHERE Counter = 22"},
        {"textArt", "UPDATE Ereignis SET Art = 'foo'"},
        {"textZiel", "UPDATE Ereignis_DS SET Ziel = 'q' WHERE Counter = 3"},
        {"riesig", "UPDATE Ort SET Counter = 1e30 WHERE Counter = 3"},
        {"textMarken", "UPDATE Daten SET Markierung = 'ja'"},
    };
    for (const auto& [fall, sql] : faelle) {
        const std::string datei = mitSql(fall, sql);
        pruefen(std::string(fall) + "1", datei, "--all");
        pruefen(std::string(fall) + "2", datei, "--person 22 --ancestors --descendants --spouses");
    }
}

// Junk where a kind of event keeps its GEDCOM tag would break the line of every such event:
// the kind goes out as EVEN with its name, as a kind without a tag does.
TEST_F(DamagedTree, AKindOfEventWhoseTagIsJunkGoesOutAsEven) {
    const std::string datei =
        mitSql("marken", "UPDATE Ereignisdb SET GedTAG = CAST(X'2D39BC1B' AS TEXT) WHERE "
                         "GedTAG = 'BIRT'; UPDATE Ereignisdb SET GedTAG = 'MA RR' WHERE "
                         "GedTAG = 'MARR'");
    const Result r = pruefen("marken", datei, "--all --privacy none");
    ASSERT_EQ(r.status, 0) << r.output;
    const std::string ged = readFile(ziel("marken"));
    EXPECT_EQ(ged.find("BIRT"), std::string::npos);
    EXPECT_EQ(ged.find("MA RR"), std::string::npos);
    EXPECT_NE(ged.find("\r\n1 EVEN\r\n2 TYPE Geburt\r\n"), std::string::npos);
    EXPECT_NE(ged.find("\r\n1 EVEN\r\n2 TYPE Standesamtliche Heirat\r\n"), std::string::npos);
}

// A whole number beyond the range of record numbers where a place's number belongs: it is
// refused as it is read, not multiplied past 64 bits into some other number.
TEST_F(DamagedTree, ANumberBeyondTheRangeOfRecordNumbersEndsWithTheTreeNamed) {
    const std::string datei =
        mitSql("uebergross", "UPDATE Ereignis SET Ort = 4611686018427387904 WHERE Counter = 1");
    const Result r = pruefen("uebergross", datei);
    EXPECT_NE(r.output.find("4611686018427387904 is no record number"), std::string::npos)
        << r.output;
}
