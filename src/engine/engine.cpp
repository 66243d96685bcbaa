#include "engine/engine.h"

#include "engine/connection_setup.h"
#include "engine/errors.h"
#include "engine/jet_sql.h"
#include "engine/recordset.h"
#include "engine/text_util.h"

#include <algorithm>
#include <filesystem>
#include <malloc.h>

namespace fs = std::filesystem;

namespace folio::dao {

namespace {

// The declaration of a column: type, case-insensitive collation for text, and the check
// that keeps the empty text out of a text field that doesn't allow it.
std::string columnDefinition(const FieldDef& f) {
    std::string def = quoteIdentifier(f.Name) + " " + declaredType(f.Type, f.Size);
    if (isTextType(f.Type)) {
        def += " COLLATE NOCASE";
        if (!f.AllowZeroLength)
            def += " CHECK (length(" + quoteIdentifier(f.Name) + ") > 0)";
    }
    return def;
}

std::string indexObjectName(std::string_view table, std::string_view index) {
    return std::string(table) + "_" + std::string(index);
}

std::string createIndexSql(std::string_view table, const IndexDef& index) {
    std::string sql = (index.Unique || index.Primary) ? "CREATE UNIQUE INDEX " : "CREATE INDEX ";
    sql += quoteIdentifier(indexObjectName(table, index.Name)) + " ON " + quoteIdentifier(table) +
           " (";
    for (std::size_t i = 0; i < index.Fields.size(); ++i)
        sql += (i ? ", " : "") + quoteIdentifier(index.Fields[i]);
    return sql + ")";
}

// Which columns of a CREATE TABLE statement carry a CHECK (lower-case names).
std::vector<std::string> checkedColumns(std::string_view createSql) {
    std::vector<std::string> checked;
    const auto tokens = jet::tokenize(createSql);
    int depth = 0;
    bool first = true; // at the first token of a column definition
    std::string current;
    for (const jet::Token& t : tokens) {
        if (t.kind == jet::TokenKind::Space)
            continue;
        if (t.text == "(") {
            ++depth;
            if (depth == 1) {
                first = true;
                continue;
            }
        } else if (t.text == ")") {
            --depth;
        } else if (depth == 1 && t.text == ",") {
            first = true;
            continue;
        }
        if (depth < 1)
            continue;
        if (depth == 1 && first) {
            current = t.kind == jet::TokenKind::Word
                          ? std::string(t.text)
                          : std::string(t.text.substr(1, t.text.size() - 2));
            current = lowerAscii(current);
            first = false;
        } else if (t.kind == jet::TokenKind::Word && equalsNoCase(t.text, "CHECK")) {
            checked.push_back(current);
        }
    }
    return checked;
}

DatabaseError closedError(std::string_view what) {
    return DatabaseError(err::ObjectClosed,
                         "Object invalid or no longer set: " + std::string(what) + " is closed");
}

} // namespace

// --- TableInfo -------------------------------------------------------------------------

int TableInfo::fieldIndex(std::string_view name) const {
    for (std::size_t i = 0; i < fields.size(); ++i)
        if (equalsNoCase(fields[i].Name, name))
            return static_cast<int>(i);
    return -1;
}

const IndexDef* TableInfo::index(std::string_view indexName) const {
    for (const IndexDef& i : indexes)
        if (equalsNoCase(i.Name, indexName))
            return &i;
    return nullptr;
}

// --- TableDef ----------------------------------------------------------------------------

Database& TableDef::attached() const {
    if (!db_ || !db_->isOpen())
        throw closedError("the database of table '" + name_ + "'");
    return *db_;
}

std::vector<FieldDef> TableDef::Fields() const {
    return db_ ? attached().tableInfo(name_).fields : pendingFields_;
}

bool TableDef::hasField(std::string_view name) const {
    if (db_)
        return attached().tableInfo(name_).fieldIndex(name) >= 0;
    return std::any_of(pendingFields_.begin(), pendingFields_.end(),
                       [&](const FieldDef& f) { return equalsNoCase(f.Name, name); });
}

FieldDef TableDef::field(std::string_view name) const {
    for (const FieldDef& f : Fields())
        if (equalsNoCase(f.Name, name))
            return f;
    throw DatabaseError(err::ItemNotFound,
                        "Item not found in this collection: the table '" + name_ +
                            "' has no field '" + std::string(name) + "'",
                        db_ ? db_->Name() : std::string(), {}, std::string(name));
}

std::vector<IndexDef> TableDef::Indexes() const {
    return db_ ? attached().tableInfo(name_).indexes : pendingIndexes_;
}

FieldDef TableDef::CreateField(std::string name, FieldType type, int size) {
    FieldDef f;
    f.Name = std::move(name);
    f.Type = type;
    f.Size = type == FieldType::Text ? (size > 0 ? size : 50) : fixedSize(type);
    return f;
}

IndexDef TableDef::CreateIndex(std::string name, std::vector<std::string> fields) {
    IndexDef i;
    i.Name = std::move(name);
    i.Fields = std::move(fields);
    return i;
}

void TableDef::AppendField(const FieldDef& f) {
    if (isBlank(f.Name))
        throw DatabaseError(err::SyntaxError, "A field of table '" + name_ + "' needs a name");
    if (hasField(f.Name))
        throw DatabaseError(err::FieldExists,
                            "The field '" + name_ + "." + f.Name + "' already exists",
                            db_ ? db_->Name() : std::string(), {}, f.Name);
    if (!db_) {
        pendingFields_.push_back(f);
        return;
    }
    attached().executeSchemaChange(
        "ALTER TABLE " + quoteIdentifier(name_) + " ADD COLUMN " + columnDefinition(f), name_);
}

void TableDef::DeleteField(std::string_view name) {
    const FieldDef f = field(name);
    if (!db_) {
        std::erase_if(pendingFields_,
                      [&](const FieldDef& p) { return equalsNoCase(p.Name, name); });
        return;
    }
    for (const IndexDef& index : Indexes())
        for (const std::string& col : index.Fields)
            if (equalsNoCase(col, name))
                throw DatabaseError(err::IndexedField,
                                    "The field '" + name_ + "." + f.Name +
                                        "' is part of the index '" + index.Name +
                                        "' and can't be deleted",
                                    db_->Name(), {}, f.Name);
    attached().executeSchemaChange(
        "ALTER TABLE " + quoteIdentifier(name_) + " DROP COLUMN " + quoteIdentifier(f.Name), name_);
}

void TableDef::RenameField(std::string_view name, const std::string& newName) {
    const FieldDef f = field(name);
    if (!equalsNoCase(name, newName) && hasField(newName))
        throw DatabaseError(err::FieldExists,
                            "The field '" + name_ + "." + newName + "' already exists",
                            db_ ? db_->Name() : std::string(), {}, newName);
    if (!db_) {
        for (FieldDef& p : pendingFields_)
            if (equalsNoCase(p.Name, name))
                p.Name = newName;
        return;
    }
    attached().executeSchemaChange("ALTER TABLE " + quoteIdentifier(name_) + " RENAME COLUMN " +
                                       quoteIdentifier(f.Name) + " TO " + quoteIdentifier(newName),
                                   name_);
}

void TableDef::AppendIndex(const IndexDef& index) {
    if (index.Fields.empty())
        throw DatabaseError(err::SyntaxError,
                            "The index '" + index.Name + "' of table '" + name_ + "' has no field");
    for (const IndexDef& existing : Indexes())
        if (equalsNoCase(existing.Name, index.Name))
            throw DatabaseError(err::FieldExists,
                                "The index '" + name_ + "." + index.Name + "' already exists");
    for (const std::string& col : index.Fields)
        field(col); // raises for a field that doesn't exist
    if (!db_) {
        pendingIndexes_.push_back(index);
        return;
    }
    attached().executeSchemaChange(createIndexSql(name_, index), name_);
}

void TableDef::DeleteIndex(std::string_view name) {
    const std::vector<IndexDef> indexes = Indexes();
    auto it = std::find_if(indexes.begin(), indexes.end(),
                           [&](const IndexDef& i) { return equalsNoCase(i.Name, name); });
    if (it == indexes.end())
        throw DatabaseError(err::ItemNotFound, "Item not found in this collection: the table '" +
                                                   name_ + "' has no index '" + std::string(name) +
                                                   "'");
    if (!db_) {
        std::erase_if(pendingIndexes_,
                      [&](const IndexDef& i) { return equalsNoCase(i.Name, name); });
        return;
    }
    attached().executeSchemaChange(
        "DROP INDEX " + quoteIdentifier(indexObjectName(name_, it->Name)), name_);
}

void TableDef::Rename(const std::string& newName) {
    if (!db_) {
        name_ = newName;
        return;
    }
    Database& db = attached();
    if (!equalsNoCase(newName, name_) && db.hasTable(newName))
        throw DatabaseError(err::TableExists, "The table '" + newName + "' already exists",
                            db.Name());
    const std::vector<IndexDef> indexes = Indexes();
    Transaction t(db);
    db.executeSchemaChange(
        "ALTER TABLE " + quoteIdentifier(name_) + " RENAME TO " + quoteIdentifier(newName), name_);
    // The indexes carry the table's name in theirs.
    for (const IndexDef& index : indexes) {
        db.executeSchemaChange("DROP INDEX " + quoteIdentifier(indexObjectName(name_, index.Name)),
                               newName);
        db.executeSchemaChange(createIndexSql(newName, index), newName);
    }
    t.commit();
    name_ = newName;
}

// --- Database ----------------------------------------------------------------------------

Database::Database(Workspace* workspace, std::string path, sqlite::Connection connection)
    : workspace_(workspace), path_(std::move(path)), connection_(std::move(connection)) {}

Database::~Database() {
    Close();
}

sqlite::Connection& Database::connection() {
    if (!connection_.isOpen())
        throw closedError("the database '" + path_ + "'");
    return connection_;
}

bool Database::isReadOnly() const {
    return connection_.isOpen() && sqlite3_db_readonly(connection_.get(), "main") == 1;
}

void Database::Close() {
    if (!connection_.isOpen())
        return;
    while (!recordsets_.empty())
        recordsets_.back()->Close();
    if (transactionDepth_ > 0) {
        sqlite3_exec(connection_.get(), "ROLLBACK", nullptr, nullptr, nullptr);
        transactionDepth_ = 0;
    }
    queries_.clear();
    connection_.close();
    tables_.clear();
    if (workspace_)
        workspace_->unregisterDatabase(this);
    workspace_ = nullptr;
}

void Database::unregisterRecordset(Recordset* rs) {
    std::erase(recordsets_, rs);
}

std::unique_ptr<Recordset> Database::OpenRecordset(std::string_view source, RecordsetType type) {
    connection();
    std::unique_ptr<Recordset> rs(new Recordset(*this, std::string(source), type));
    registerRecordset(rs.get());
    const std::string table = jet::bareTableName(source);
    if (!table.empty()) {
        if (!hasTable(table))
            throw DatabaseError(err::TableNotFound,
                                "The table '" + table + "' doesn't exist in '" + path_ + "'", path_,
                                std::string(source));
        if (type == RecordsetType::Dynaset)
            rs->openDynaset("SELECT * FROM [" + tableInfo(table).name + "]"); // Jet SQL
        else
            rs->openTable(tableInfo(table).name);
    } else {
        if (type == RecordsetType::Table)
            throw DatabaseError(err::OperationNotSupported,
                                "A table cursor is opened on a table name, not on SQL: " +
                                    std::string(source),
                                path_, std::string(source));
        rs->type_ = RecordsetType::Dynaset;
        rs->openDynaset(std::string(source));
    }
    return rs;
}

void Database::Execute(std::string_view sql, int /*options*/) {
    connection();
    const std::string translated = jet::translate(sql);
    const auto tokens = jet::tokenize(translated);
    auto first = std::find_if(tokens.begin(), tokens.end(),
                              [](const jet::Token& t) { return t.kind != jet::TokenKind::Space; });
    if (first == tokens.end())
        throw DatabaseError(err::SyntaxError, "The statement is empty", path_, std::string(sql));
    if (equalsNoCase(first->text, "SELECT"))
        throw DatabaseError(err::OperationNotSupported,
                            "Cannot execute a select query: " + std::string(sql), path_,
                            std::string(sql));
    const bool ddl = equalsNoCase(first->text, "CREATE") || equalsNoCase(first->text, "ALTER") ||
                     equalsNoCase(first->text, "DROP");
    if (ddl) {
        executeSchemaChange(translated, {});
        recordsAffected_ = 0;
        return;
    }
    beforeWrite();
    sqlite::Statement stmt(connection_, translated);
    while (stmt.step()) {
    }
    recordsAffected_ = sqlite3_changes64(connection_.get());
}

void Database::beforeWrite() {
    if (transactionLost())
        throw lostTransaction();
    for (Recordset* rs : recordsets_)
        rs->beforeWrite();
    ++writeGeneration_;
}

// A failing disk (a full one, a failed write or read) can make the store roll back the whole
// transaction on its own. Where that happened and the work went on, no write may follow: it
// would stand on its own, outside the work that it belongs to, and leave the file half
// changed. Every write then fails until the work's transaction ends.
bool Database::transactionLost() const {
    return transactionDepth_ > 0 && connection_.get() && sqlite3_get_autocommit(connection_.get());
}

DatabaseError Database::lostTransaction() const {
    return DatabaseError(err::EngineError,
                         "The changes to the database '" + path_ +
                             "' were undone after a failure of the disk; the work stops",
                         path_);
}

void Database::releaseStatements(std::string_view table) {
    for (Recordset* rs : recordsets_) {
        rs->releaseStatements();
        if (table.empty() || equalsNoCase(rs->table_, table))
            rs->schemaChanged_ = true;
    }
}

void Database::executeSchemaChange(const std::string& sql, std::string_view table) {
    connection();
    beforeWrite();
    releaseStatements(table);
    tables_.clear();
    queries_.clear();
    connection_.exec(sql);
    tables_.clear();
}

std::shared_ptr<CachedQuery> Database::cachedQuery(const std::string& key) {
    auto it = queries_.find(key);
    if (it != queries_.end())
        return it->second;
    auto query = std::make_shared<CachedQuery>();
    const std::string translated = jet::translate(key);
    const jet::SelectShape shape = jet::analyzeSelect(translated);
    if (!shape.isSelect)
        throw DatabaseError(err::OperationNotSupported,
                            "Only a SELECT query can be opened as a recordset: " + key, path_, key);
    if (shape.updatable && hasTable(shape.table)) {
        query->updatable = true;
        query->table = tableInfo(shape.table).name;
        query->qualifier = shape.qualifier;
        const std::string rowid = quoteIdentifier(shape.qualifier) + ".rowid";
        query->selectSql = "SELECT " + rowid + ", " + shape.selectList + " " + shape.fromTable;
        query->fromTable = shape.fromTable;
        query->sql = query->selectSql + " " + shape.rest;
    } else {
        query->sql = translated;
    }
    if (queries_.size() > 1000) // SQL built in a loop with texts in it: don't keep all
        queries_.clear();
    queries_.emplace(key, query);
    return query;
}

std::unique_ptr<sqlite::Statement> Database::acquire(CachedQuery& query) {
    if (!query.pool.empty()) {
        std::unique_ptr<sqlite::Statement> s = std::move(query.pool.back());
        query.pool.pop_back();
        return s;
    }
    return std::make_unique<sqlite::Statement>(connection(), query.sql);
}

void Database::release(CachedQuery& query, std::unique_ptr<sqlite::Statement> statement) {
    statement->reset();
    if (query.pool.size() < 4)
        query.pool.push_back(std::move(statement));
}

std::vector<std::string> Database::TableNames() const {
    std::vector<std::string> names;
    sqlite::Statement stmt(connection_, "SELECT name FROM sqlite_master WHERE type = 'table' AND "
                                        "substr(name, 1, 7) <> 'sqlite_' ORDER BY rowid");
    while (stmt.step())
        names.emplace_back(stmt.text(0));
    return names;
}

bool Database::hasTable(std::string_view name) const {
    if (tables_.count(lowerAscii(name)))
        return true;
    sqlite::Statement stmt(
        connection_,
        "SELECT 1 FROM sqlite_master WHERE type = 'table' AND name = ?1 COLLATE NOCASE");
    stmt.bind(1, Value(name));
    return stmt.step();
}

TableDef Database::tableDef(std::string_view name) {
    return TableDef(this, tableInfo(name).name);
}

void Database::AppendTableDef(TableDef& def) {
    connection();
    if (def.db_)
        throw DatabaseError(err::TableExists, "The table '" + def.name_ + "' is appended already",
                            path_);
    if (hasTable(def.name_))
        throw DatabaseError(err::TableExists, "The table '" + def.name_ + "' already exists",
                            path_);
    if (def.pendingFields_.empty())
        throw DatabaseError(err::SyntaxError, "The table '" + def.name_ + "' has no field", path_);
    std::string sql = "CREATE TABLE " + quoteIdentifier(def.name_) + " (";
    for (std::size_t i = 0; i < def.pendingFields_.size(); ++i)
        sql += (i ? ", " : "") + columnDefinition(def.pendingFields_[i]);
    sql += ")";
    Transaction t(*this);
    executeSchemaChange(sql, def.name_);
    for (const IndexDef& index : def.pendingIndexes_)
        executeSchemaChange(createIndexSql(def.name_, index), def.name_);
    t.commit();
    def.db_ = this;
    def.pendingFields_.clear();
    def.pendingIndexes_.clear();
}

void Database::DeleteTableDef(std::string_view name) {
    const std::string real = tableInfo(name).name;
    executeSchemaChange("DROP TABLE " + quoteIdentifier(real), real);
}

const TableInfo& Database::tableInfo(std::string_view table) {
    const std::string key = lowerAscii(table);
    auto it = tables_.find(key);
    if (it == tables_.end())
        it = tables_.emplace(key, loadTableInfo(table)).first;
    return it->second;
}

TableInfo Database::loadTableInfo(std::string_view table) {
    sqlite::Connection& c = connection();
    TableInfo info;
    std::string createSql;
    {
        sqlite::Statement stmt(c, "SELECT name, sql FROM sqlite_master WHERE type = 'table' AND "
                                  "name = ?1 COLLATE NOCASE");
        stmt.bind(1, Value(table));
        if (!stmt.step())
            throw DatabaseError(
                err::TableNotFound,
                "The table '" + std::string(table) + "' doesn't exist in '" + path_ + "'", path_);
        info.name = stmt.text(0);
        createSql = stmt.text(1);
    }
    const std::vector<std::string> checked = checkedColumns(createSql);
    {
        sqlite::Statement stmt(c, "SELECT name, type FROM pragma_table_info(?1)");
        stmt.bind(1, Value(info.name));
        while (stmt.step()) {
            FieldDef f;
            f.Name = stmt.text(0);
            f.Type = typeFromDeclared(stmt.text(1), f.Size);
            f.AllowZeroLength =
                isTextType(f.Type) &&
                std::find(checked.begin(), checked.end(), lowerAscii(f.Name)) == checked.end();
            info.fields.push_back(std::move(f));
        }
    }
    const std::string prefix = lowerAscii(info.name) + "_";
    sqlite::Statement indexes(c, "SELECT name, sql FROM sqlite_master WHERE type = 'index' AND "
                                 "tbl_name = ?1 AND sql IS NOT NULL ORDER BY rowid");
    indexes.bind(1, Value(info.name));
    while (indexes.step()) {
        const std::string name = indexes.text(0);
        if (!lowerAscii(name).starts_with(prefix))
            continue;
        IndexDef index;
        index.Name = name.substr(prefix.size());
        const std::string sql = indexes.text(1);
        index.Unique = upperAscii(sql).starts_with("CREATE UNIQUE");
        index.Primary = index.Unique && equalsNoCase(index.Name, "PrimaryKey");
        sqlite::Statement cols(c, "SELECT name FROM pragma_index_info(?1) ORDER BY seqno");
        cols.bind(1, Value(name));
        while (cols.step())
            index.Fields.emplace_back(cols.text(0));
        info.indexes.push_back(std::move(index));
    }
    return info;
}

void Database::BeginTrans(bool schreiben) {
    connection();
    // Dynasets fix their rows now, so that a rollback can't cut a query short.
    for (Recordset* rs : recordsets_)
        rs->beforeWrite();
    if (transactionDepth_ == 0)
        connection_.exec(schreiben ? "BEGIN IMMEDIATE" : "BEGIN DEFERRED");
    else
        connection_.exec("SAVEPOINT folio_" + std::to_string(transactionDepth_));
    ++transactionDepth_;
}

void Database::CommitTrans() {
    connection();
    if (transactionDepth_ == 0)
        throw DatabaseError(err::EngineError, "Commit without a transaction in '" + path_ + "'",
                            path_);
    if (transactionLost()) {
        --transactionDepth_;
        throw lostTransaction();
    }
    if (transactionDepth_ == 1)
        connection_.exec("COMMIT");
    else
        connection_.exec("RELEASE folio_" + std::to_string(transactionDepth_ - 1));
    --transactionDepth_;
}

void Database::Rollback() {
    connection();
    if (transactionDepth_ == 0)
        throw DatabaseError(err::EngineError, "Rollback without a transaction in '" + path_ + "'",
                            path_);
    // A rolled-back schema change is undone too: every cursor reads its fields anew.
    for (Recordset* rs : recordsets_) {
        rs->releaseStatements();
        rs->schemaChanged_ = true;
    }
    if (transactionLost()) {
        // Undone already.
    } else if (transactionDepth_ == 1) {
        connection_.exec("ROLLBACK");
    } else {
        const std::string sp = "folio_" + std::to_string(transactionDepth_ - 1);
        connection_.exec("ROLLBACK TO " + sp + "; RELEASE " + sp);
    }
    --transactionDepth_;
    tables_.clear();
    queries_.clear();
    ++writeGeneration_;
}

// --- Transaction -------------------------------------------------------------------------

Transaction::~Transaction() {
    if (!done_ && db_.isOpen() && db_.inTransaction()) {
        try {
            db_.Rollback();
        } catch (...) {
            // Nothing more can be done here; the connection rolls back when it closes.
        }
    }
}

void Transaction::commit() {
    db_.CommitTrans();
    done_ = true;
}

// --- Workspace and engine ----------------------------------------------------------------

Workspace::~Workspace() {
    Close();
}

void Workspace::Close() {
    while (!databases_.empty()) {
        Database* db = databases_.back();
        db->Close(); // unregisters itself
    }
}

void Workspace::unregisterDatabase(Database* db) {
    std::erase(databases_, db);
}

namespace {

// The checks before a file is opened: it exists, is a file, and isn't empty.
void checkDatabaseFile(const std::string& path) {
    std::error_code ec;
    const fs::file_status status = fs::status(path, ec);
    if (!fs::exists(status))
        throw DatabaseError(err::FileNotFound, "The database '" + path + "' doesn't exist", path);
    if (fs::is_directory(status))
        throw DatabaseError(err::CannotOpenFile, "'" + path + "' is a folder, not a database",
                            path);
    if (fs::file_size(path, ec) == 0 && !ec)
        throw DatabaseError(err::NotADatabase,
                            "'" + path + "' is not a family-tree database (the file is empty)",
                            path);
}

sqlite::Connection openChecked(const std::string& path, bool readOnly) {
    checkDatabaseFile(path);
    sqlite::Connection c(path, readOnly);
    setUpConnection(c);
    c.exec("SELECT count(*) FROM sqlite_master"); // reads the file: not a database, locked
    return c;
}

} // namespace

std::unique_ptr<Database> Workspace::OpenDatabase(const std::string& path, bool exclusive,
                                                  bool readOnly) {
    sqlite::Connection c = openChecked(path, readOnly);
    if (exclusive)
        c.exec("PRAGMA locking_mode = EXCLUSIVE; BEGIN EXCLUSIVE; COMMIT");
    std::unique_ptr<Database> db(new Database(this, path, std::move(c)));
    databases_.push_back(db.get());
    return db;
}

std::unique_ptr<Database> Workspace::CreateDatabase(const std::string& path) {
    std::error_code ec;
    if (fs::exists(path, ec))
        throw DatabaseError(err::DatabaseExists, "The database '" + path + "' already exists",
                            path);
    sqlite::Connection c(path, false, true);
    setUpConnection(c);
    c.exec("PRAGMA application_id = 1397108278"); // "SF66": writes the header, makes the file
    std::unique_ptr<Database> db(new Database(this, path, std::move(c)));
    databases_.push_back(db.get());
    return db;
}

DBEngine::DBEngine() {
    // Each connection is used by one thread at a time (a run reads a second table on a
    // connection of its own): SQLite needs no locks per connection and no count of its
    // memory, which spares every statement a part of its cost.
    sqlite3_config(SQLITE_CONFIG_MULTITHREAD);
    // A run's tables of a million records are arrays of many megabytes, dropped when the
    // run has done with them: each gets pages of its own that go back to the system with it,
    // rather than a share of the heap that stays with the process.
    mallopt(M_MMAP_THRESHOLD, 1 << 20);
    sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0);
    workspaces_.push_back(std::make_unique<Workspace>("#Default Workspace#"));
}

std::vector<Workspace*> DBEngine::Workspaces() const {
    std::vector<Workspace*> out;
    for (const auto& w : workspaces_)
        out.push_back(w.get());
    return out;
}

Workspace& DBEngine::workspace(std::size_t index) const {
    if (index >= workspaces_.size())
        throw DatabaseError(err::ItemNotFound, "Item not found in this collection: workspace " +
                                                   std::to_string(index));
    return *workspaces_[index];
}

Workspace& DBEngine::CreateWorkspace(const std::string& name) {
    workspaces_.push_back(std::make_unique<Workspace>(name));
    return *workspaces_.back();
}

void DBEngine::CloseWorkspace(Workspace& workspace) {
    workspace.Close();
    if (&workspace == workspaces_.front().get())
        return; // the first workspace stays
    std::erase_if(workspaces_, [&](const auto& w) { return w.get() == &workspace; });
}

bool DBEngine::isOpen(const std::string& path) const {
    std::error_code ec;
    const fs::path wanted = fs::weakly_canonical(path, ec);
    for (const auto& w : workspaces_)
        for (const Database* db : w->Databases())
            if (fs::weakly_canonical(db->Name(), ec) == wanted)
                return true;
    return false;
}

void DBEngine::CompactDatabase(const std::string& source, const std::string& target) {
    if (isOpen(source))
        throw DatabaseError(err::AlreadyOpen,
                            "The database '" + source + "' is open; it can't be compacted", source);
    std::error_code ec;
    if (fs::exists(target, ec))
        throw DatabaseError(err::DatabaseExists, "The database '" + target + "' already exists",
                            target);
    sqlite::Connection c = openChecked(source, true);
    try {
        c.exec("VACUUM INTO " + quoteString(target));
    } catch (...) {
        fs::remove(target, ec); // no half-written target stays behind
        throw;
    }
}

void DBEngine::RepairDatabase(const std::string& path) {
    if (isOpen(path))
        throw DatabaseError(err::AlreadyOpen,
                            "The database '" + path + "' is already open and can't be repaired",
                            path);
    sqlite::Connection c = openChecked(path, false);
    sqlite::Statement check(c, "PRAGMA integrity_check");
    std::string report;
    while (check.step()) {
        const std::string line = check.text(0);
        if (line != "ok")
            report += (report.empty() ? "" : "; ") + line;
    }
    if (!report.empty())
        throw DatabaseError(err::NotADatabase, "The database '" + path + "' is damaged: " + report,
                            path);
}

DBEngine& engine() {
    static DBEngine instance;
    return instance;
}

std::unique_ptr<Database> OpenDatabase(const std::string& path, bool exclusive, bool readOnly) {
    return engine().workspace(0).OpenDatabase(path, exclusive, readOnly);
}

} // namespace folio::dao
