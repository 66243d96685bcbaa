// Recordsets: the cursors through which family-tree code reads and writes records.
//
// A table cursor (RecordsetType::Table) walks a whole table, in the order of its current
// index when one is selected, and finds rows by Seek on that index. A dynaset is opened on
// SQL text: it fixes its rows when it is opened (rows that are changed later show their new
// values, rows added later by others don't appear) and finds rows by FindFirst with a
// criterion. A dynaset over one table can be written; one over DISTINCT, grouped or joined
// rows is read-only.
//
// Fields are addressed by name in any case. Reading a field of a row gives a Value of the
// field's type (Null distinct from ""); writing one needs Edit or AddNew first and Update
// after, and converts the value to the field's type, refusing what the field can't hold.
#pragma once

#include "engine/engine.h"
#include "engine/sqlite_handle.h"
#include "engine/value.h"

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace folio::dao {

class Recordset;

// One field of the current row: reads convert, assignment writes into the edit buffer.
class FieldRef {
public:
    FieldRef(Recordset& rs, int index) : rs_(rs), index_(index) {}
    Value value() const;
    operator Value() const { return value(); }
    FieldRef& operator=(const Value& v);
    bool isNull() const { return value().isNull(); }
    std::string text() const { return value().text(); }
    bool toBool() const { return value().toBool(); }
    std::int64_t toInt() const { return value().toInt(); }
    double toDouble() const { return value().toDouble(); }
    RecordId toRecordId() const { return value().toRecordId(); }

private:
    Recordset& rs_;
    int index_;
};

class Recordset {
public:
    ~Recordset();
    Recordset(const Recordset&) = delete;
    Recordset& operator=(const Recordset&) = delete;

    void Close();
    bool isOpen() const { return db_ != nullptr; }
    RecordsetType Type() const { return type_; }
    // The table name or the SQL text it was opened on.
    const std::string& Name() const { return source_; }
    Database* parent() const { return db_; }

    void MoveFirst();
    void MoveNext();
    void MovePrevious();
    void MoveLast();
    // Past the last row (or before the first); also after a Seek that found nothing. The
    // system's name for it is EOF, which C++ reserves for a macro.
    bool Eof() const { return at_ != At::Row; }
    std::int64_t RecordCount();
    bool NoMatch() const { return noMatch_; }

    // Table cursors: select the index by its name, then Seek with "=", ">=", ">", "<=" or
    // "<" and one value per indexed field (fewer compare a leading part).
    void Index(std::string_view name);
    const std::string& Index() const { return indexName_; }
    void Seek(std::string_view comparison, const Value& key);
    void Seek(std::string_view comparison, const std::vector<Value>& keys);
    // Dynasets: the first (next) row that meets a criterion in SQL, as in a WHERE clause.
    void FindFirst(std::string_view criterion);
    void FindNext(std::string_view criterion);

    void Edit();
    void AddNew();
    void Update();
    void CancelUpdate();
    // Runs the query again (dynaset) or goes back to the first row (table cursor).
    void Requery();

    const std::vector<FieldDef>& Fields() const { return layout_->fields; }
    // Index of a field by name in any case; raises "Item not found in this collection".
    int fieldIndex(std::string_view name) const;
    bool hasField(std::string_view name) const;
    Value get(int index);
    Value get(std::string_view name) { return get(fieldIndex(name)); }
    void set(int index, const Value& value);
    void set(std::string_view name, const Value& value) { set(fieldIndex(name), value); }
    FieldRef operator[](std::string_view name) { return FieldRef(*this, fieldIndex(name)); }

private:
    friend class Database;
    Recordset(Database& db, std::string source, RecordsetType type);
    void openTable(const std::string& table);
    void openDynaset(const std::string& sql);

    enum class At { Row, End, None };
    void requireOpen() const;
    void requireRow() const;
    void requireWritable() const;
    void prepareUse();
    void refreshSchema();
    void setFields(std::vector<FieldDef> fields, std::vector<std::string> baseNames,
                   std::vector<bool> dynamic);
    void returnLease();
    void deriveFields(sqlite::Statement& stmt, int offset);
    void positionOn(sqlite::Statement& stmt);
    void leaveRow(At where);
    void cancelEdit();
    std::string orderBy(bool ascending) const;
    void startTableStream(bool ascending, bool fromCurrent);
    void stepStream();
    void freshen();
    Value readColumn(sqlite3_stmt* stmt, int column, std::size_t field) const;
    Value coerce(int index, const Value& value) const;
    // Dynasets.
    void drain();
    void moveToIndex(std::size_t index);
    bool find(std::string_view criterion, std::size_t from);
    sqlite::Statement& seekStatement(std::string_view comparison, std::size_t keyCount);
    // Writes.
    void writeUpdate();
    void writeInsert();
    sqlite::Statement& cached(const std::string& sql);
    // Called by the database before a write through the connection.
    void beforeWrite();
    // Called before a schema change or a rollback: no statement may stay active.
    void releaseStatements();

    Database* db_;
    std::string source_;
    RecordsetType type_;
    std::string table_;     // base table; empty for read-only dynasets
    std::string qualifier_; // how SQL of a dynaset refers to the base table
    std::shared_ptr<const FieldLayout> layout_;
    std::shared_ptr<CachedQuery> query_;        // the prepared form of a dynaset's SQL
    std::unique_ptr<sqlite::Statement> leased_; // the query's statement while this one uses it
    std::string selectSql_;                     // "SELECT rowid, fields... FROM table" of the rows
    std::string querySql_;                      // the SQL of a dynaset, as given
    std::string collectSql_;                    // the query with the rowid in front
    std::string fromTable_;                     // "FROM table [alias]" of a dynaset
    bool schemaChanged_ = false;

    At at_ = At::End;
    bool noMatch_ = false;
    std::int64_t rowid_ = 0;
    sqlite::Statement* row_ = nullptr; // statement positioned on the current row, if fresh
    std::uint64_t rowGeneration_ = 0;  // write generation when row_ was read

    // Table cursors.
    std::string indexName_;
    std::vector<std::string> indexColumns_;
    std::vector<int> indexFields_;
    std::vector<Value> key_;              // index key of the current row
    sqlite::Statement* stream_ = nullptr; // the walk (table) or the query (dynaset), if active
    bool streamOnRow_ = false;            // stream_ stands on the current row
    bool streamAscending_ = true;

    // Dynasets.
    std::vector<std::int64_t> rowids_;
    std::size_t position_ = 0;
    bool streaming_ = false;                   // stream_ is still collecting rows
    std::vector<std::vector<Value>> snapshot_; // rows of a read-only dynaset

    // Edit buffer.
    enum class EditMode { None, Edit, AddNew } editMode_ = EditMode::None;
    std::vector<std::optional<Value>> buffer_;

    // Every statement of the recordset, made once; the pointers below point into it.
    std::map<std::string, sqlite::Statement> statements_;
    std::vector<sqlite::Statement*> seekStatements_; // by comparison and number of keys
    sqlite::Statement* refetch_ = nullptr;           // reads the row of a rowid
};

} // namespace folio::dao
