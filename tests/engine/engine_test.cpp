#include "engine/durchlauf.h"
#include "engine/engine.h"
#include "engine/errors.h"
#include "engine/nebenlauf.h"
#include "engine/recordset.h"
#include "support/small_db.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <filesystem>
#include <fstream>
#include <unistd.h>

using namespace folio;
using folio::test::SmallDb;
using folio::test::TempDir;

namespace {

// Runs `f` and returns the error it raised; fails the test when it raised none.
template <class F> DatabaseError raised(F&& f) {
    try {
        f();
    } catch (const DatabaseError& e) {
        return e;
    }
    ADD_FAILURE() << "no error raised";
    return DatabaseError(0, "");
}

bool mentions(const DatabaseError& e, const std::string& text) {
    return std::string(e.what()).find(text) != std::string::npos;
}

std::vector<std::string> names(dao::Database& db, const std::string& sql) {
    std::vector<std::string> out;
    auto rs = db.OpenRecordset(sql);
    while (!rs->Eof()) {
        out.push_back(rs->get("Name").text());
        rs->MoveNext();
    }
    return out;
}

} // namespace

TEST(Engine, OpeningBadFilesRaisesErrorsThatNameTheFile) {
    TempDir dir;
    auto& ws = dao::engine().workspace(0);

    const std::string missing = dir.file("nowhere.SF6");
    auto e = raised([&] { ws.OpenDatabase(missing); });
    EXPECT_EQ(e.number(), err::FileNotFound);
    EXPECT_TRUE(mentions(e, missing));
    EXPECT_FALSE(std::filesystem::exists(missing)); // opening never creates a file

    e = raised([&] { ws.OpenDatabase(dir.path().string()); });
    EXPECT_EQ(e.number(), err::CannotOpenFile);

    const std::string empty = dir.file("empty.SF6");
    std::ofstream(empty).close();
    e = raised([&] { ws.OpenDatabase(empty); });
    EXPECT_EQ(e.number(), err::NotADatabase);
    EXPECT_TRUE(mentions(e, empty));

    const std::string text = dir.file("letter.SF6");
    std::ofstream(text) << "Dear cousin, here is the family tree you asked for.\n";
    e = raised([&] { ws.OpenDatabase(text); });
    EXPECT_EQ(e.number(), err::NotADatabase);
    EXPECT_TRUE(mentions(e, text));
    EXPECT_TRUE(ws.Databases().empty()); // nothing stays half open
}

TEST(Engine, LockedAndWriteProtectedFiles) {
    SmallDb s;
    test::addPerson(*s.db, 1, "Huber");
    s.db->Close();

    // Another program holds the file locked.
    sqlite3* other = nullptr;
    ASSERT_EQ(sqlite3_open(s.path.c_str(), &other), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(other, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
    auto e = raised([&] { dao::OpenDatabase(s.path); });
    EXPECT_EQ(e.number(), err::FileInUse);
    EXPECT_TRUE(mentions(e, s.path));
    sqlite3_exec(other, "ROLLBACK", nullptr, nullptr, nullptr);
    sqlite3_close(other);

    // A file opened for reading only, or write-protected, can be read; writing raises and
    // names the file.
    auto readOnly = dao::OpenDatabase(s.path, false, true);
    EXPECT_TRUE(readOnly->isReadOnly());
    auto e2 = raised([&] { readOnly->Execute("UPDATE Personen SET Name = 'x'"); });
    EXPECT_EQ(e2.number(), err::ReadOnly);
    EXPECT_TRUE(mentions(e2, s.path));
    readOnly->Close();

    std::filesystem::permissions(s.path, std::filesystem::perms::owner_read);
    if (::access(s.path.c_str(), W_OK) == 0)
        GTEST_SKIP() << "running with rights that ignore write protection";
    auto db = dao::OpenDatabase(s.path);
    EXPECT_TRUE(db->isReadOnly());
    EXPECT_EQ(names(*db, "SELECT * FROM Personen"), std::vector<std::string>{"Huber"});
    auto rs = db->OpenRecordset("Personen");
    rs->Edit();
    rs->set("Name", Value("Maier"));
    e = raised([&] { rs->Update(); });
    EXPECT_EQ(e.number(), err::ReadOnly);
    EXPECT_TRUE(mentions(e, s.path));
}

TEST(Engine, ExecuteSpeaksTheDialectOfTheFamilyTreeFiles) {
    SmallDb s;
    auto& db = *s.db;
    for (auto [id, name] : std::vector<std::pair<int, std::string>>{
             {1, "Anger"}, {2, "MÜLLER"}, {3, "Zander"}, {4, "Ärger"}, {5, "müller"}, {6, "Bauer"}})
        test::addPerson(db, id, name, id % 2 == 0);

    db.Execute("UPDATE Personen SET Zahl = 7 WHERE Markierung = TRUE ;", dao::dbFailOnError);
    EXPECT_EQ(db.RecordsAffected(), 3);
    db.Execute("UPDATE Personen SET Geburt = #5-17-1848# WHERE Counter = 2", 128);
    auto rs = db.OpenRecordset("SELECT * FROM Personen WHERE Geburt = #5-17-1848#");
    EXPECT_EQ(rs->get("Counter").toRecordId(), RecordId(2));
    EXPECT_EQ(rs->get("Geburt").toDate().year(), 1848);

    // Text is compared and sorted without regard to case, umlauts by German rules.
    EXPECT_EQ(names(db, "SELECT * FROM Personen WHERE Name = 'Müller' ORDER BY Counter"),
              (std::vector<std::string>{"MÜLLER", "müller"}));
    EXPECT_EQ(names(db, "SELECT * FROM Personen ORDER BY Name, Counter"),
              (std::vector<std::string>{"Anger", "Ärger", "Bauer", "MÜLLER", "müller", "Zander"}));
    // LIKE with the pattern language of the files.
    EXPECT_EQ(names(db, "SELECT * FROM Personen WHERE Name LIKE 'm*' ORDER BY Counter"),
              (std::vector<std::string>{"MÜLLER", "müller"}));
    EXPECT_EQ(names(db, "SELECT * FROM Personen WHERE Name LIKE '[!a-m]*' ORDER BY Counter"),
              (std::vector<std::string>{"Zander", "Ärger"}));
    EXPECT_EQ(names(db, "SELECT * FROM Personen WHERE Name NOT LIKE '*ll*' ORDER BY Counter"),
              (std::vector<std::string>{"Anger", "Zander", "Ärger", "Bauer"}));
    EXPECT_EQ(names(db, "SELECT * FROM Personen WHERE [Personen].[Name] LIKE \"?auer\""),
              (std::vector<std::string>{"Bauer"}));

    db.Execute("DELETE * FROM Personen WHERE Markierung = False ;", dao::dbFailOnError);
    EXPECT_EQ(db.RecordsAffected(), 3);

    auto e = raised([&] { db.Execute("UPDATE Personen SET Zahl = 1; DELETE * FROM Personen"); });
    EXPECT_EQ(e.number(), err::CharactersAfterStatement);
    EXPECT_EQ(db.OpenRecordset("Personen")->RecordCount(), 3); // nothing of it ran
    e = raised([&] { db.Execute("UPDATE Leute SET Zahl = 1"); });
    EXPECT_TRUE(mentions(e, "UPDATE Leute SET Zahl = 1"));
    EXPECT_TRUE(mentions(e, "Leute"));
    e = raised([&] { db.Execute("UPDATE Personen SET Unbekannt = 1"); });
    EXPECT_TRUE(mentions(e, "Unbekannt"));
    e = raised([&] { db.Execute("SELECT * FROM Personen"); });
    EXPECT_EQ(e.number(), err::OperationNotSupported);
    // A text field that doesn't allow the empty text refuses it from SQL too.
    e = raised([&] { db.Execute("UPDATE Personen SET Name = ''"); });
    EXPECT_EQ(e.number(), err::ZeroLengthString);
    EXPECT_NO_THROW(db.Execute("UPDATE Personen SET Vorname = ''"));
}

TEST(Engine, TableFieldAndIndexDefinitions) {
    SmallDb s;
    auto& db = *s.db;
    test::addPerson(db, 1, "Huber");
    auto t = db.tableDef("personen"); // any case
    EXPECT_EQ(t.Name(), "Personen");

    const auto fields = t.Fields();
    ASSERT_EQ(fields.size(), 10u);
    EXPECT_EQ(fields[0].Name, "Counter");
    EXPECT_EQ(fields[0].Type, FieldType::Currency);
    EXPECT_EQ(fields[0].Size, 8);
    EXPECT_EQ(fields[2].Type, FieldType::Text);
    EXPECT_EQ(fields[2].Size, 20);
    EXPECT_FALSE(fields[2].AllowZeroLength);
    EXPECT_TRUE(fields[3].AllowZeroLength);
    EXPECT_EQ(fields[9].Type, FieldType::Memo);
    EXPECT_TRUE(fields[9].AllowZeroLength);

    auto occu = dao::TableDef::CreateField("OCCU", FieldType::Text, 255);
    occu.AllowZeroLength = true;
    t.AppendField(occu);
    t.AppendField(dao::TableDef::CreateField("Kekuel", FieldType::Integer));
    EXPECT_TRUE(t.hasField("occu"));
    EXPECT_TRUE(t.field("OCCU").AllowZeroLength);
    EXPECT_EQ(t.field("Kekuel").Type, FieldType::Integer);
    EXPECT_EQ(raised([&] { t.AppendField(occu); }).number(), err::FieldExists);

    t.RenameField("Kekuel", "Kekuelnr");
    EXPECT_FALSE(t.hasField("Kekuel"));
    EXPECT_TRUE(t.hasField("Kekuelnr"));
    t.DeleteField("Kekuelnr");
    EXPECT_FALSE(t.hasField("Kekuelnr"));
    EXPECT_EQ(raised([&] { t.DeleteField("Counter"); }).number(), err::IndexedField);
    EXPECT_EQ(raised([&] { t.DeleteField("Nichts"); }).number(), err::ItemNotFound);

    t.AppendIndex(dao::TableDef::CreateIndex("Zahl", {"Zahl"}));
    ASSERT_EQ(t.Indexes().size(), 2u);
    EXPECT_EQ(t.Indexes()[1].Name, "Zahl");
    t.DeleteIndex("Zahl");
    EXPECT_EQ(t.Indexes().size(), 1u);

    // A renamed table keeps its rows and its indexes.
    t.Rename("Leute");
    EXPECT_FALSE(db.hasTable("Personen"));
    auto rs = db.OpenRecordset("Leute");
    rs->Index("Counter");
    rs->Seek("=", Value(RecordId(1)));
    EXPECT_FALSE(rs->NoMatch());
    EXPECT_EQ(rs->get("Name").text(), "Huber");
    rs->Close();
    db.DeleteTableDef("Leute");
    EXPECT_FALSE(db.hasTable("Leute"));
    EXPECT_EQ(raised([&] { db.tableDef("Leute"); }).number(), err::TableNotFound);
}

TEST(Engine, TheFileStaysReadableByOtherTools) {
    SmallDb s;
    test::addPerson(*s.db, 1, "Huber");
    s.db->Close();
    sqlite3* plain = nullptr;
    ASSERT_EQ(sqlite3_open(s.path.c_str(), &plain), SQLITE_OK);
    sqlite3_stmt* stmt = nullptr;
    ASSERT_EQ(sqlite3_prepare_v2(plain, "SELECT name, type FROM pragma_table_info('Personen')", -1,
                                 &stmt, nullptr),
              SQLITE_OK);
    std::vector<std::string> types;
    while (sqlite3_step(stmt) == SQLITE_ROW)
        types.emplace_back(reinterpret_cast<const char*>(sqlite3_column_text(stmt, 1)));
    sqlite3_finalize(stmt);
    EXPECT_EQ(types,
              (std::vector<std::string>{"CURRENCY", "BOOLEAN", "TEXT(20)", "TEXT(20)", "DATETIME",
                                        "BYTE", "SHORT", "LONG", "DOUBLE", "LONGTEXT"}));
    // Its built-in NOCASE serves where ours isn't loaded.
    ASSERT_EQ(sqlite3_prepare_v2(plain, "SELECT count(*) FROM Personen WHERE Name = 'HUBER'", -1,
                                 &stmt, nullptr),
              SQLITE_OK);
    ASSERT_EQ(sqlite3_step(stmt), SQLITE_ROW);
    EXPECT_EQ(sqlite3_column_int(stmt, 0), 1);
    sqlite3_finalize(stmt);
    sqlite3_close(plain);
}

TEST(Engine, RegistryOfOpenDatabasesAndRecordsets) {
    SmallDb s;
    auto& ws = dao::engine().workspace(0);
    ASSERT_EQ(ws.Databases().size(), 1u);
    EXPECT_EQ(ws.Databases()[0], s.db.get());
    auto a = s.db->OpenRecordset("Personen");
    auto b = s.db->OpenRecordset("SELECT * FROM Personen");
    ASSERT_EQ(s.db->Recordsets().size(), 2u);
    EXPECT_EQ(s.db->Recordsets()[1], b.get());
    b.reset(); // a recordset that goes away leaves the registry
    EXPECT_EQ(s.db->Recordsets().size(), 1u);
    EXPECT_TRUE(dao::engine().isOpen(s.path));

    s.db->Close(); // closes its recordsets
    EXPECT_TRUE(ws.Databases().empty());
    EXPECT_FALSE(a->isOpen());
    EXPECT_EQ(raised([&] { a->MoveFirst(); }).number(), err::ObjectClosed);
    EXPECT_EQ(raised([&] { s.db->OpenRecordset("Personen"); }).number(), err::ObjectClosed);

    auto& second = dao::engine().CreateWorkspace("second");
    auto db2 = second.OpenDatabase(s.path);
    EXPECT_EQ(dao::engine().Workspaces().size(), 2u);
    dao::engine().CloseWorkspace(second);
    EXPECT_EQ(dao::engine().Workspaces().size(), 1u);
    EXPECT_FALSE(db2->isOpen());
}

TEST(Engine, CompactAndRepair) {
    SmallDb s;
    for (int i = 1; i <= 50; ++i)
        test::addPerson(*s.db, i, "P" + std::to_string(i));
    s.db->Execute("DELETE * FROM Personen WHERE Counter > 10");
    const std::string target = s.dir.file("compact.SF6");
    EXPECT_EQ(raised([&] { dao::engine().CompactDatabase(s.path, target); }).number(),
              err::AlreadyOpen);
    EXPECT_EQ(raised([&] { dao::engine().RepairDatabase(s.path); }).number(), err::AlreadyOpen);
    s.db->Close();

    dao::engine().CompactDatabase(s.path, target);
    auto db = dao::OpenDatabase(target);
    EXPECT_EQ(db->OpenRecordset("Personen")->RecordCount(), 10);
    EXPECT_EQ(db->tableDef("Personen").Indexes().size(), 1u);
    db->Close();
    EXPECT_EQ(raised([&] { dao::engine().CompactDatabase(s.path, target); }).number(),
              err::DatabaseExists);
    EXPECT_NO_THROW(dao::engine().RepairDatabase(target));
    EXPECT_EQ(raised([&] {
                  dao::engine().CompactDatabase(s.dir.file("no.SF6"), s.dir.file("x"));
              }).number(),
              err::FileNotFound);
    EXPECT_FALSE(std::filesystem::exists(s.dir.file("x")));
}

TEST(Engine, TransactionsCommitOrLeaveNothing) {
    SmallDb s;
    test::addPerson(*s.db, 1, "Huber");
    {
        dao::Transaction t(*s.db);
        s.db->Execute("UPDATE Personen SET Name = 'Maier'");
        test::addPerson(*s.db, 2, "Koch");
    } // not committed
    auto rs = s.db->OpenRecordset("Personen");
    EXPECT_EQ(rs->RecordCount(), 1);
    EXPECT_EQ(rs->get("Name").text(), "Huber");
    {
        dao::Transaction t(*s.db);
        s.db->Execute("UPDATE Personen SET Name = 'Maier'");
        t.commit();
    }
    rs->Requery();
    EXPECT_EQ(rs->get("Name").text(), "Maier");
}

// Reading beside the run: on a connection of its own where it sees what the run sees,
// otherwise on the run's connection when waited for; either way the same rows, and a
// failure reaches the one who waits.
TEST(Engine, ReadingBesideTheRunSeesWhatTheRunSees) {
    SmallDb s;
    for (int i = 1; i <= 500; ++i)
        test::addPerson(*s.db, i, "P" + std::to_string(i));
    auto namen = [](const sqlite::Connection& c) {
        std::string alle;
        dao::Durchlauf d(c, "SELECT Name FROM Personen ORDER BY Counter");
        while (d.weiter())
            alle += d.text(0) + ",";
        return alle;
    };
    const std::string erwartet = namen(s.db->connection());

    std::string gelesen;
    {
        dao::Transaction lesen(*s.db, false);
        dao::Nebenlauf n(*s.db, [&](const sqlite::Connection& c) { gelesen = namen(c); });
        EXPECT_TRUE(n.nebenher());
        n.warten();
        lesen.commit();
    }
    EXPECT_EQ(gelesen, erwartet);

    // A change of the run not yet committed: a second connection wouldn't see it.
    {
        dao::Transaction t(*s.db);
        s.db->Execute("UPDATE Personen SET Name = 'X' WHERE Counter = 7");
        dao::Nebenlauf n(*s.db, [&](const sqlite::Connection& c) { gelesen = namen(c); });
        EXPECT_FALSE(n.nebenher());
        n.warten();
        EXPECT_NE(gelesen.find(",X,"), std::string::npos);
    }

    dao::Nebenlauf kaputt(*s.db, [](const sqlite::Connection& c) {
        dao::Durchlauf d(c, "SELECT Name FROM Nirgends");
    });
    EXPECT_THROW(kaputt.warten(), DatabaseError);

    // Nobody waits: the work is stopped, and the tree stays usable.
    {
        dao::Nebenlauf verlassen(*s.db, [&](const sqlite::Connection& c) { namen(c); });
    }
    EXPECT_EQ(namen(s.db->connection()), erwartet);
}
