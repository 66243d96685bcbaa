// The database layer of the system: the engine with its workspaces, databases and table
// definitions, in the shape in which family-tree code has always used its database, over
// SQLite files (one file per database). Recordsets are in recordset.h.
//
// Ownership: whoever opens a database or a recordset owns it (std::unique_ptr); the engine
// keeps a registry of what is open so that everything open on a file can be found and
// closed. Closing a database closes its recordsets; a closed object stays a valid C++
// object, and any use of it raises "Object invalid or no longer set".
#pragma once

#include "engine/errors.h"
#include "engine/field_type.h"
#include "engine/sqlite_handle.h"
#include "engine/value.h"

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace folio::dao {

class Database;
class Recordset;
class Workspace;

// Option of Execute: a failing statement raises an error. Every statement of the system
// runs with it, and the engine raises on failure in any case.
inline constexpr int dbFailOnError = 128;

enum class RecordsetType { Default = 0, Table = 1, Dynaset = 2 };

struct FieldDef {
    std::string Name;
    FieldType Type = FieldType::Text;
    int Size = 50; // characters for Text, bytes for numbers, 0 for Memo
    bool AllowZeroLength = false;
};

struct IndexDef {
    std::string Name;
    std::vector<std::string> Fields;
    bool Unique = false;
    bool Primary = false;
};

// What the engine knows of a table: its real name, fields and indexes.
struct TableInfo {
    std::string name;
    std::vector<FieldDef> fields;
    std::vector<IndexDef> indexes;
    int fieldIndex(std::string_view name) const; // -1 when there is no such field
    const IndexDef* index(std::string_view name) const;
};

// The fields of a recordset: shared by every recordset on the same query.
struct FieldLayout {
    std::vector<FieldDef> fields;                // one per column of the rows
    std::vector<std::string> baseNames;          // the base table's column behind each field, or ""
    std::vector<bool> dynamic;                   // no declared type: read by storage class
    std::unordered_map<std::string, int> byName; // lower-case name to field
    // The names asked for last, by the address of their text: code asks for fields by
    // literal names, again and again.
    mutable std::array<std::pair<const char*, int>, 8> zuletzt{};
    mutable std::size_t naechster = 0;
};

// The prepared form of a query that recordsets open again and again with other numbers:
// its SQL for the store with a parameter for each number, what it says of its rows, and
// statements ready to run.
struct CachedQuery {
    bool updatable = false; // its rows stand for rows of one table
    std::string table, qualifier, selectSql, fromTable;
    std::string sql; // what runs: the rowids in front where updatable
    std::shared_ptr<const FieldLayout> layout;
    std::vector<std::unique_ptr<sqlite::Statement>> pool;
};

// A table of a database, or a table being defined before it is appended to one.
class TableDef {
public:
    explicit TableDef(std::string name) : name_(std::move(name)) {}

    const std::string& Name() const { return name_; }
    // The fields with name, type, size and zero-length flag, in the order of the table.
    std::vector<FieldDef> Fields() const;
    bool hasField(std::string_view name) const;
    FieldDef field(std::string_view name) const; // throws "Item not found in this collection"
    std::vector<IndexDef> Indexes() const;

    static FieldDef CreateField(std::string name, FieldType type, int size = 0);
    static IndexDef CreateIndex(std::string name, std::vector<std::string> fields = {});

    void AppendField(const FieldDef& field);
    void DeleteField(std::string_view name);
    void RenameField(std::string_view name, const std::string& newName);
    void AppendIndex(const IndexDef& index);
    void DeleteIndex(std::string_view name);
    void Rename(const std::string& newName);

private:
    friend class Database;
    TableDef(Database* db, std::string name) : db_(db), name_(std::move(name)) {}
    Database& attached() const;

    Database* db_ = nullptr; // null until appended to a database
    std::string name_;
    std::vector<FieldDef> pendingFields_;
    std::vector<IndexDef> pendingIndexes_;
};

class Database {
public:
    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    // The path of the file.
    const std::string& Name() const { return path_; }
    bool isOpen() const { return connection_.isOpen(); }
    bool isReadOnly() const;
    void Close();

    // A table name gives a table cursor unless `type` asks for a dynaset; SQL text gives a
    // dynaset.
    std::unique_ptr<Recordset> OpenRecordset(std::string_view source,
                                             RecordsetType type = RecordsetType::Default);
    // Runs an action query (UPDATE, DELETE, INSERT, DDL). Raises on failure.
    void Execute(std::string_view sql, int options = dbFailOnError);
    std::int64_t RecordsAffected() const { return recordsAffected_; }

    std::vector<std::string> TableNames() const;
    bool hasTable(std::string_view name) const;
    TableDef tableDef(std::string_view name);
    static TableDef CreateTableDef(std::string name) { return TableDef(std::move(name)); }
    // Creates the table with the fields and indexes appended to `def` so far.
    void AppendTableDef(TableDef& def);
    void DeleteTableDef(std::string_view name);

    // `schreiben` False begins a transaction that only reads: it takes no lock for writing,
    // and spares each statement of a long read its own start and end.
    void BeginTrans(bool schreiben = true);
    void CommitTrans();
    void Rollback();
    bool inTransaction() const { return transactionDepth_ > 0; }

    // The open recordsets of this database, in the order of opening.
    const std::vector<Recordset*>& Recordsets() const { return recordsets_; }
    Workspace* parent() const { return workspace_; }

    // --- for the recordsets and table definitions of this layer ---
    sqlite::Connection& connection();
    const TableInfo& tableInfo(std::string_view table);
    // Called before every write through this connection: dynasets that are still reading
    // their rows fix them now, and rows read before become stale.
    void beforeWrite();
    std::uint64_t writeGeneration() const { return writeGeneration_; }
    // Runs DDL that changes `table` (empty: any table) and forgets what was known of it.
    void executeSchemaChange(const std::string& sql, std::string_view table);
    // The prepared form of a query whose numbers stand as parameters.
    std::shared_ptr<CachedQuery> cachedQuery(const std::string& key);
    // A statement of the query, and back when done with it.
    std::unique_ptr<sqlite::Statement> acquire(CachedQuery& query);
    void release(CachedQuery& query, std::unique_ptr<sqlite::Statement> statement);

private:
    friend class Workspace;
    friend class Recordset;
    Database(Workspace* workspace, std::string path, sqlite::Connection connection);
    void registerRecordset(Recordset* rs) { recordsets_.push_back(rs); }
    void unregisterRecordset(Recordset* rs);
    TableInfo loadTableInfo(std::string_view table);
    void releaseStatements(std::string_view table);
    bool transactionLost() const;
    DatabaseError lostTransaction() const;

    Workspace* workspace_;
    std::string path_;
    sqlite::Connection connection_;
    std::vector<Recordset*> recordsets_;
    std::map<std::string, TableInfo> tables_; // by lower-case name
    std::unordered_map<std::string, std::shared_ptr<CachedQuery>> queries_;
    std::uint64_t writeGeneration_ = 1;
    std::int64_t recordsAffected_ = 0;
    int transactionDepth_ = 0;
};

class Workspace {
public:
    explicit Workspace(std::string name) : name_(std::move(name)) {}
    ~Workspace();
    Workspace(const Workspace&) = delete;
    Workspace& operator=(const Workspace&) = delete;

    const std::string& Name() const { return name_; }
    // Opens an existing database file. Raises, naming the file, when it doesn't exist, is no
    // database, or is locked by another program. A write-protected file opens for reading
    // only; writing to it raises.
    std::unique_ptr<Database> OpenDatabase(const std::string& path, bool exclusive = false,
                                           bool readOnly = false);
    // Creates a new, empty database file; raises when the file exists.
    std::unique_ptr<Database> CreateDatabase(const std::string& path);
    // The open databases of this workspace, in the order of opening.
    const std::vector<Database*>& Databases() const { return databases_; }
    // Closes every database of this workspace.
    void Close();

private:
    friend class Database;
    void unregisterDatabase(Database* db);
    std::string name_;
    std::vector<Database*> databases_;
};

// The engine: the workspaces and the operations on whole files.
class DBEngine {
public:
    DBEngine();
    // The workspaces; the first one always exists.
    std::vector<Workspace*> Workspaces() const;
    Workspace& workspace(std::size_t index = 0) const;
    Workspace& CreateWorkspace(const std::string& name);
    // Closes and removes a workspace other than the first.
    void CloseWorkspace(Workspace& workspace);

    // Copies `source` into the new file `target`, compacted. The source must not be open;
    // the target must not exist. On failure no target is left behind.
    void CompactDatabase(const std::string& source, const std::string& target);
    // Checks the file; raises error 3356 when it is open, and an error naming the file when
    // it is damaged.
    void RepairDatabase(const std::string& path);
    // Whether a database of this path is open in any workspace.
    bool isOpen(const std::string& path) const;

private:
    std::vector<std::unique_ptr<Workspace>> workspaces_;
};

// The one engine of the process.
DBEngine& engine();
// Shorthand for engine().workspace(0).OpenDatabase(...).
std::unique_ptr<Database> OpenDatabase(const std::string& path, bool exclusive = false,
                                       bool readOnly = false);

// A transaction that rolls back unless committed: for work that must happen as a whole.
class Transaction {
public:
    explicit Transaction(Database& db, bool schreiben = true) : db_(db) {
        db_.BeginTrans(schreiben);
    }
    ~Transaction();
    void commit();

private:
    Database& db_;
    bool done_ = false;
};

} // namespace folio::dao
