#include "database/schema/schema.h"

#include "engine/engine.h"
#include "engine/recordset.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <set>

using namespace folio;
using folio::test::TempDir;
namespace fs = std::filesystem;

namespace {

// The template and the side databases, built once for all tests of this file.
class Schema : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        dir_ = std::make_unique<TempDir>();
        schema::buildTemplate(dir_->path());
        schema::buildSideDatabases(dir_->path());
    }
    static void TearDownTestSuite() { dir_.reset(); }

    static std::string file(std::string_view name) { return dir_->file(std::string(name)); }
    static std::unique_ptr<dao::Database> open(std::string_view name) {
        return dao::OpenDatabase(file(name));
    }

    static std::unique_ptr<TempDir> dir_;
};
std::unique_ptr<TempDir> Schema::dir_;

// The declared column type of each Jet type, written out here rather than taken from the
// engine, so that a change of the file format shows.
std::string expectedDeclaredType(const schema::Field& f) {
    switch (f.type) {
    case FieldType::Boolean:
        return "BOOLEAN";
    case FieldType::Byte:
        return "BYTE";
    case FieldType::Integer:
        return "SHORT";
    case FieldType::Long:
        return "LONG";
    case FieldType::Currency:
        return "CURRENCY";
    case FieldType::Double:
        return "DOUBLE";
    case FieldType::DateTime:
        return "DATETIME";
    case FieldType::Text:
        return "TEXT(" + std::to_string(f.size) + ")";
    case FieldType::Memo:
        return "LONGTEXT";
    }
    return "?";
}

// Column name to declared type, as the sqlite3 shell shows them.
std::map<std::string, std::string> declaredTypes(const std::string& path, std::string_view table) {
    sqlite3* db = nullptr;
    std::map<std::string, std::string> out;
    if (sqlite3_open_v2(path.c_str(), &db, SQLITE_OPEN_READONLY, nullptr) == SQLITE_OK) {
        sqlite3_stmt* stmt = nullptr;
        const std::string sql = "PRAGMA table_info(\"" + std::string(table) + "\")";
        if (sqlite3_prepare_v2(db, sql.c_str(), -1, &stmt, nullptr) == SQLITE_OK)
            while (sqlite3_step(stmt) == SQLITE_ROW)
                out[reinterpret_cast<const char*>(sqlite3_column_text(stmt, 1))] =
                    reinterpret_cast<const char*>(sqlite3_column_text(stmt, 2));
        sqlite3_finalize(stmt);
    }
    sqlite3_close(db);
    return out;
}

// Checks that the table `t` of `db` has exactly the fields and indexes of its description.
void expectTableAsDescribed(dao::Database& db, const std::string& path, const schema::Table& t) {
    SCOPED_TRACE(std::string(t.name));
    const std::vector<dao::FieldDef> fields = db.tableDef(t.name).Fields();
    ASSERT_EQ(fields.size(), t.fields.size());
    const auto declared = declaredTypes(path, t.name);
    for (std::size_t i = 0; i < fields.size(); ++i) {
        const schema::Field& want = t.fields[i];
        const dao::FieldDef& got = fields[i];
        SCOPED_TRACE(std::string(want.name));
        EXPECT_EQ(got.Name, want.name); // exact, case included
        EXPECT_EQ(got.Type, want.type);
        if (want.type == FieldType::Text) {
            EXPECT_EQ(got.Size, want.size);
        }
        EXPECT_EQ(got.AllowZeroLength, want.zeroLength);
        EXPECT_EQ(declared.at(got.Name), expectedDeclaredType(want));
    }
    std::set<std::string> indexes;
    for (const dao::IndexDef& i : db.tableDef(t.name).Indexes())
        indexes.insert(i.Name);
    std::set<std::string> wanted;
    for (const schema::Index& i : t.indexes)
        wanted.emplace(i.name);
    EXPECT_EQ(indexes, wanted);
}

} // namespace

TEST_F(Schema, TemplateHoldsEveryTableOfTheSchemaWithItsFieldsAndIndexes) {
    const std::set<std::string> current = {
        "Adressen",   "Adressen_DS", "Baum",      "Baum_DS",      "Bilder",     "Daten",
        "Daten_DS",   "Dokument",    "Ereignis",  "Ereignis_DS",  "Ereignisdb", "Familie",
        "Galerie",    "Galerie_DS",  "Namen",     "Navigation",   "Notiz",      "Ort",
        "Quellen_DS", "Status",      "Stichwort", "Stichwort_DS", "Version"};
    std::set<std::string> described;
    for (const schema::Table& t : schema::mainTables())
        described.emplace(t.name);
    EXPECT_EQ(schema::mainTables().size(), 23u);
    EXPECT_EQ(described, current);

    auto db = open(schema::TemplateFile);
    const std::vector<std::string> names = db->TableNames();
    EXPECT_EQ(std::set<std::string>(names.begin(), names.end()), current);
    for (const schema::Table& t : schema::mainTables())
        expectTableAsDescribed(*db, file(schema::TemplateFile), t);
}

TEST_F(Schema, SideDatabasesButTheCatalogueHoldTheirTablesEmpty) {
    std::set<std::string> files;
    for (const schema::SideDatabase& side : schema::sideDatabases())
        files.emplace(side.file);
    EXPECT_EQ(files, (std::set<std::string>{"Ereignis.mdb", "Geschichte.mdb", "namen.mdb",
                                            "Orte.mdb", "Adressen.mdb", "Notizen.mdb"}));
    // The event catalogue is described here but built with its rows by a tool of its own.
    EXPECT_FALSE(fs::exists(file(schema::EventCatalogueFile)));
    for (const schema::SideDatabase& side : schema::sideDatabases()) {
        if (side.file == schema::EventCatalogueFile)
            continue;
        auto db = open(side.file);
        EXPECT_EQ(db->TableNames().size(), side.tables.size()) << side.file;
        for (const schema::Table& t : side.tables) {
            expectTableAsDescribed(*db, file(side.file), t);
            EXPECT_EQ(db->OpenRecordset(t.name)->RecordCount(), 0);
        }
    }
    auto adressen = open("Adressen.mdb");
    EXPECT_TRUE(adressen->tableDef("Adressen").hasField("Gebiet"));
    EXPECT_TRUE(adressen->tableDef("Adressen").hasField("Land"));
}

TEST_F(Schema, EveryNumberedTableCanBeSearchedByCounter) {
    for (const schema::Table& t : schema::mainTables()) {
        SCOPED_TRACE(std::string(t.name));
        const bool numbered = t.field("Counter") != nullptr;
        EXPECT_EQ(numbered, t.name != "Version" && t.name != "Ereignisdb");
        const bool link = t.name.ends_with("_DS");
        for (const schema::Index& i : t.indexes) {
            ASSERT_EQ(i.fields.size(), 1u);
            const schema::Field* f = t.field(i.fields[0]);
            ASSERT_NE(f, nullptr) << i.name;
            EXPECT_FALSE(isTextType(f->type)) << i.name; // text is never indexed
        }
        auto has = [&](std::string_view name) {
            return std::any_of(t.indexes.begin(), t.indexes.end(), [&](const schema::Index& i) {
                return i.name == name && i.fields[0] == name;
            });
        };
        EXPECT_EQ(has("Counter"), numbered);
        EXPECT_EQ(has("Quelle"), link);
        EXPECT_EQ(has("Ziel"), link);
    }

    // Seek through the index on the empty tables of the template.
    auto db = open(schema::TemplateFile);
    for (const char* table : {"Daten", "Ereignis", "Ort", "Notiz", "Status", "Navigation"}) {
        auto rs = db->OpenRecordset(table, dao::RecordsetType::Table);
        rs->Index("Counter");
        rs->Seek("=", Value(RecordId(1)));
        EXPECT_TRUE(rs->NoMatch()) << table;
    }
    auto types = db->OpenRecordset("Ereignisdb", dao::RecordsetType::Table);
    types->Index("Index");
    types->Seek("=", Value(1));
    EXPECT_TRUE(types->NoMatch());
}

TEST_F(Schema, VersionHasOneRowWithTheProgramsVersionAndTheDefaultMarks) {
    auto db = open(schema::TemplateFile);
    auto rs = db->OpenRecordset("Version");
    ASSERT_EQ(rs->RecordCount(), 1);
    rs->MoveFirst();
    EXPECT_EQ(rs->get("versionname").text(), "6.0.102");
    EXPECT_EQ(rs->get("KzTitelvor").text(), "[");
    EXPECT_EQ(rs->get("KzTitelnach").text(), "]");
    EXPECT_EQ(rs->get("KzRufnamevor").text(), "°");
    EXPECT_EQ(rs->get("KzRufnamenach").text(), "°");
    EXPECT_EQ(rs->get("KzGeburtsnamevor").text(), "{");
    EXPECT_EQ(rs->get("KzGeburtsnamenach").text(), "}");
    EXPECT_EQ(rs->get("GUID_Anwender").text(), " ");
    EXPECT_EQ(rs->get("Verfasser_Name").text(), "");
    EXPECT_FALSE(rs->get("Verfasser_Name").isNull());
    EXPECT_EQ(rs->get("GEDCOM_Anmerkung").text(), "");
    EXPECT_EQ(rs->get("Navigation").toInt(), 0);
    EXPECT_FALSE(rs->get("Verfasser_gesperrt").toBool());
}

// Fields whose type, size or zero-length flag the program relies on, written out here as a
// guard against slips in the schema data.
TEST_F(Schema, FieldsWhoseTypesTheProgramReliesOn) {
    struct Expected {
        const char* table;
        const char* field;
        FieldType type;
        int size;
        bool zeroLength;
    };
    const Expected expected[] = {
        {"Daten", "GUID", FieldType::Text, 38, false},
        {"Daten", "NameNOTE", FieldType::Memo, 0, true},
        {"Daten", "GSort", FieldType::Text, 8, true},
        {"Daten", "ca1", FieldType::Text, 6, false},
        {"Daten", "GJahr", FieldType::Integer, 2, false},
        {"Daten", "Marker", FieldType::Integer, 2, false},
        {"Daten", "Kekuelnr", FieldType::Double, 8, false},
        {"Namen", "Marker", FieldType::Boolean, 1, false},
        {"Ereignis", "Grund", FieldType::Text, 255, false},
        {"Ereignisdb", "OrtPos", FieldType::Byte, 1, false},
        {"Ereignisdb", "Personenarten", FieldType::Text, 200, false},
        {"Status", "Namen", FieldType::Text, 50, false},
        {"Navigation", "Counter", FieldType::Integer, 2, false},
        {"Daten_DS", "ASSO", FieldType::Text, 255, true},
        {"Ereignis_DS", "Info", FieldType::Memo, 0, true},
        {"Notiz", "Dateipfad", FieldType::Memo, 0, true},
        {"Dokument", "Dateipfad", FieldType::Memo, 0, false},
        {"Bilder", "groesse", FieldType::Long, 4, false},
        {"Version", "KzTitelvor", FieldType::Text, 1, false},
        {"Version", "GUID_Anwender", FieldType::Text, 38, false},
        {"Version", "Verfasser_HTTP", FieldType::Text, 255, true},
    };
    auto db = open(schema::TemplateFile);
    for (const Expected& e : expected) {
        const dao::FieldDef f = db->tableDef(e.table).field(e.field);
        SCOPED_TRACE(std::string(e.table) + "." + e.field);
        EXPECT_EQ(f.Type, e.type);
        EXPECT_EQ(f.Size, e.size);
        EXPECT_EQ(f.AllowZeroLength, e.zeroLength);
    }
}

TEST(SchemaTemplateBuild, ReplacesAnOldFileAndLeavesItWhole) {
    TempDir dir;
    const fs::path target = dir.path() / "SF.MDB";
    std::ofstream(target) << "an old template";

    schema::buildTemplate(dir.path());
    EXPECT_EQ(dao::OpenDatabase(target.string())->TableNames().size(), 23u);
    EXPECT_FALSE(fs::exists(dir.path() / "SF.MDB.part"));

    // A build that fails (here: the file beside can't be made) keeps the good file as it was.
    const auto before = fs::file_size(target);
    fs::create_directories(dir.path() / "SF.MDB.part" / "in the way");
    EXPECT_THROW(schema::buildTemplate(dir.path()), std::exception);
    EXPECT_EQ(fs::file_size(target), before);
    EXPECT_EQ(dao::OpenDatabase(target.string())->TableNames().size(), 23u);
}
