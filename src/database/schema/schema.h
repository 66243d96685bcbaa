// The schema of the family-tree files as data: every table, field, type, size, zero-length
// flag and index of the current version, and the tables of the side databases. The template
// SF.MDB and the side databases are built from it (tools/), and tests compare files with it.
#pragma once

#include "engine/field_type.h"
#include "engine/value.h"

#include <filesystem>
#include <functional>
#include <string_view>
#include <vector>

namespace folio::dao {
class Database;
}

namespace folio::schema {

// The version that the template carries in `Version.Versionname`.
inline constexpr std::string_view CurrentVersion = "6.0.102";

struct Field {
    std::string_view name;
    FieldType type;
    int size = 0;            // characters, for Text only
    bool zeroLength = false; // the empty text is allowed (Text and Memo)
};

struct Index {
    std::string_view name;
    std::vector<std::string_view> fields;
    bool unique = false;
};

struct Table {
    std::string_view name;
    std::vector<Field> fields;
    std::vector<Index> indexes;
    const Field* field(std::string_view name) const;
};

struct SideDatabase {
    std::string_view file; // file name in the data folder
    std::vector<Table> tables;
};

// The 23 tables of the main database of the current version, in the order in which the
// program opens them.
const std::vector<Table>& mainTables();
// The side databases of the data folder with their tables (without the language database).
const std::vector<SideDatabase>& sideDatabases();
const Table* findTable(const std::vector<Table>& tables, std::string_view name);

// Creates `table` with its fields and indexes in `db`.
void createTable(dao::Database& db, const Table& table);

// The file name of the empty family tree from which new files are made.
inline constexpr std::string_view TemplateFile = "SF.MDB";

// Writes the template SF.MDB into `folder`: the tables of the current version, empty but for
// the one row of `Version`. A file of that name is replaced; on failure it stays as it was.
void buildTemplate(const std::filesystem::path& folder);
// The side database of the event catalogue. It is built with its rows from a text source of
// its own, not by buildSideDatabases.
inline constexpr std::string_view EventCatalogueFile = "Ereignis.mdb";

// Writes the side databases but the event catalogue, with their tables and no rows, into
// `folder`, replacing files of the same names in the same way.
void buildSideDatabases(const std::filesystem::path& folder);

// Creates the database `target` with `tables`, lets `fill` write its rows in one transaction,
// and puts it in place of a file of that name; on failure that file stays as it was.
void writeDatabase(const std::filesystem::path& target, const std::vector<Table>& tables,
                   const std::function<void(dao::Database&)>& fill = {});
// The value of a field where a row has nothing to say: 0, False, or the empty text, which is
// one blank in a field that doesn't allow the empty string.
Value emptyValue(const Field& field);
// Adds the one row of `Version` that every file has: the program's version and the default
// marks in front of and behind a title, a call name and a birth name.
void writeVersionRow(dao::Database& db);

} // namespace folio::schema
