#include "engine/recordset.h"

#include "engine/errors.h"
#include "engine/jet_sql.h"
#include "engine/text_util.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <unordered_set>

namespace folio::dao {

namespace {

std::string columnText(sqlite3_stmt* stmt, int column) {
    const auto* p = reinterpret_cast<const char*>(sqlite3_column_text(stmt, column));
    return p ? std::string(p, static_cast<std::size_t>(sqlite3_column_bytes(stmt, column)))
             : std::string();
}

// A value by its storage class, for columns of no declared type (expressions).
Value dynamicValue(sqlite3_stmt* stmt, int column) {
    switch (sqlite3_column_type(stmt, column)) {
    case SQLITE_INTEGER:
        return Value(static_cast<long long>(sqlite3_column_int64(stmt, column)));
    case SQLITE_FLOAT:
        return Value(sqlite3_column_double(stmt, column));
    case SQLITE_NULL:
        return Value();
    default:
        return Value(columnText(stmt, column));
    }
}

bool isComparison(std::string_view op) {
    return op == "=" || op == ">=" || op == ">" || op == "<=" || op == "<";
}

} // namespace

// --- FieldRef ----------------------------------------------------------------------------

Value FieldRef::value() const {
    return rs_.get(index_);
}

FieldRef& FieldRef::operator=(const Value& v) {
    rs_.set(index_, v);
    return *this;
}

// --- opening and closing -----------------------------------------------------------------

Recordset::Recordset(Database& db, std::string source, RecordsetType type)
    : db_(&db), source_(std::move(source)), type_(type) {}

Recordset::~Recordset() {
    Close();
}

void Recordset::Close() {
    if (!db_)
        return;
    returnLease();
    seekStatements_.clear();
    refetch_ = nullptr;
    statements_.clear();
    stream_ = nullptr;
    row_ = nullptr;
    db_->unregisterRecordset(this);
    db_ = nullptr;
    at_ = At::End;
}

void Recordset::requireOpen() const {
    if (!db_ || !db_->isOpen())
        throw DatabaseError(err::ObjectClosed, "Object invalid or no longer set: the recordset '" +
                                                   source_ + "' is closed");
}

void Recordset::requireRow() const {
    requireOpen();
    if (at_ != At::Row)
        throw DatabaseError(err::NoCurrentRecord, "No current record in '" + source_ + "'",
                            db_->Name(), source_);
}

sqlite::Statement& Recordset::cached(const std::string& sql) {
    auto it = statements_.find(sql);
    if (it == statements_.end())
        it = statements_.emplace(sql, sqlite::Statement(db_->connection(), sql)).first;
    else
        it->second.reset();
    return it->second;
}

void Recordset::setFields(std::vector<FieldDef> fields, std::vector<std::string> baseNames,
                          std::vector<bool> dynamic) {
    auto layout = std::make_shared<FieldLayout>();
    layout->fields = std::move(fields);
    layout->baseNames = std::move(baseNames);
    layout->dynamic = std::move(dynamic);
    for (std::size_t i = 0; i < layout->fields.size(); ++i)
        layout->byName.emplace(lowerAscii(layout->fields[i].Name), static_cast<int>(i));
    layout_ = std::move(layout);
}

void Recordset::openTable(const std::string& table) {
    const TableInfo& info = db_->tableInfo(table);
    table_ = info.name;
    qualifier_ = info.name;
    std::vector<std::string> names;
    for (const FieldDef& f : info.fields)
        names.push_back(f.Name);
    setFields(info.fields, std::move(names), std::vector<bool>(info.fields.size(), false));
    selectSql_ = "SELECT rowid, * FROM " + quoteIdentifier(table_);
    type_ = RecordsetType::Table;
    if (!indexName_.empty())
        Index(indexName_);
    startTableStream(true, false);
}

void Recordset::openDynaset(const std::string& sql) {
    querySql_ = sql;
    const jet::Parameterized p = jet::parameterize(sql);
    query_ = db_->cachedQuery(p.key);
    snapshot_.clear();
    rowids_.clear();
    leased_ = db_->acquire(*query_);
    for (std::size_t i = 0; i < p.numbers.size(); ++i) {
        if (p.whole[i])
            leased_->bindInt(static_cast<int>(i + 1), static_cast<std::int64_t>(p.numbers[i]));
        else
            leased_->bind(static_cast<int>(i + 1), Value(p.numbers[i]));
    }
    if (query_->updatable) {
        table_ = query_->table;
        qualifier_ = query_->qualifier;
        selectSql_ = query_->selectSql;
        fromTable_ = query_->fromTable;
        stream_ = leased_.get();
        if (!query_->layout) {
            deriveFields(*stream_, 1);
            query_->layout = layout_;
        }
        layout_ = query_->layout;
        streaming_ = true;
        stepStream();
    } else {
        table_.clear();
        if (!query_->layout) {
            deriveFields(*leased_, 0);
            query_->layout = layout_;
        }
        layout_ = query_->layout;
        while (leased_->step()) {
            std::vector<Value> row;
            row.reserve(layout_->fields.size());
            for (std::size_t i = 0; i < layout_->fields.size(); ++i)
                row.push_back(readColumn(leased_->get(), static_cast<int>(i), i));
            snapshot_.push_back(std::move(row));
        }
        returnLease();
        position_ = 0;
        at_ = snapshot_.empty() ? At::End : At::Row;
    }
}

// Gives the statement of the query back, for the next recordset on it.
void Recordset::returnLease() {
    if (!leased_)
        return;
    if (stream_ == leased_.get())
        stream_ = nullptr;
    if (row_ == leased_.get())
        row_ = nullptr;
    if (db_ && db_->isOpen() && query_)
        db_->release(*query_, std::move(leased_));
    leased_.reset();
}

// The fields of a dynaset from the columns of its statement; where a column comes straight
// from the base table, it can be written and has that field's type.
void Recordset::deriveFields(sqlite::Statement& stmt, int offset) {
    std::vector<FieldDef> fields;
    std::vector<std::string> baseNames;
    std::vector<bool> dynamic;
    const TableInfo* base = table_.empty() ? nullptr : &db_->tableInfo(table_);
    for (int c = offset; c < stmt.columnCount(); ++c) {
        FieldDef f;
        f.Name = sqlite3_column_name(stmt.get(), c);
        const char* declared = sqlite3_column_decltype(stmt.get(), c);
        const char* origin = sqlite3_column_origin_name(stmt.get(), c);
        const char* table = sqlite3_column_table_name(stmt.get(), c);
        std::string baseName;
        if (declared)
            f.Type = typeFromDeclared(declared, f.Size);
        if (base && origin && table && equalsNoCase(table, table_)) {
            const int i = base->fieldIndex(origin);
            if (i >= 0) {
                const std::string name = f.Name;
                f = base->fields[static_cast<std::size_t>(i)];
                f.Name = name;
                baseName = base->fields[static_cast<std::size_t>(i)].Name;
            }
        }
        fields.push_back(f);
        baseNames.push_back(baseName);
        dynamic.push_back(declared == nullptr);
    }
    setFields(std::move(fields), std::move(baseNames), std::move(dynamic));
}

// After a change of the table's schema the statements and fields are made anew.
void Recordset::refreshSchema() {
    schemaChanged_ = false;
    returnLease();
    query_.reset();
    statements_.clear();
    seekStatements_.clear();
    refetch_ = nullptr;
    stream_ = nullptr;
    streamOnRow_ = false;
    row_ = nullptr;
    editMode_ = EditMode::None;
    if (table_.empty())
        return; // a read-only dynaset holds its rows already
    if (type_ == RecordsetType::Table) {
        const TableInfo& info = db_->tableInfo(table_);
        std::vector<std::string> names;
        for (const FieldDef& f : info.fields)
            names.push_back(f.Name);
        setFields(info.fields, std::move(names), std::vector<bool>(info.fields.size(), false));
        if (!indexName_.empty()) {
            const IndexDef* index = info.index(indexName_);
            indexColumns_ = index ? index->Fields : std::vector<std::string>{};
            indexFields_.clear();
            for (const std::string& c : indexColumns_)
                indexFields_.push_back(info.fieldIndex(c));
            if (!index)
                indexName_.clear();
        }
    } else {
        sqlite::Statement probe(db_->connection(), selectSql_);
        deriveFields(probe, 1);
    }
}

void Recordset::prepareUse() {
    requireOpen();
    if (schemaChanged_)
        refreshSchema();
}

// --- positions ---------------------------------------------------------------------------

void Recordset::positionOn(sqlite::Statement& stmt) {
    row_ = &stmt;
    rowid_ = sqlite3_column_int64(stmt.get(), 0);
    rowGeneration_ = db_->writeGeneration();
    at_ = At::Row;
    if (!indexFields_.empty()) {
        key_.clear();
        for (int f : indexFields_)
            key_.push_back(readColumn(stmt.get(), f + 1, static_cast<std::size_t>(f)));
    }
}

void Recordset::leaveRow(At where) {
    at_ = where;
    row_ = nullptr;
    streamOnRow_ = false;
}

std::string Recordset::orderBy(bool ascending) const {
    const char* dir = ascending ? "" : " DESC";
    std::string sql = " ORDER BY ";
    for (const std::string& c : indexColumns_)
        sql += quoteIdentifier(c) + dir + ", ";
    return sql + "rowid" + dir;
}

// A table cursor walks its table through one statement in the order of its index; after a
// Seek, or when the statement had to be given up, the walk goes on from the key of the
// current row.
void Recordset::startTableStream(bool ascending, bool fromCurrent) {
    std::string sql = selectSql_;
    if (fromCurrent) {
        const char* op = ascending ? " > " : " < ";
        if (indexColumns_.empty()) {
            sql += std::string(" WHERE rowid") + op + "?1";
        } else {
            sql += " WHERE (";
            for (const std::string& c : indexColumns_)
                sql += quoteIdentifier(c) + ", ";
            sql += std::string("rowid)") + op + "(";
            for (std::size_t i = 0; i <= indexColumns_.size(); ++i)
                sql += (i ? ", ?" : "?") + std::to_string(i + 1);
            sql += ")";
        }
    }
    sql += orderBy(ascending);
    sqlite::Statement& stmt = cached(sql);
    if (fromCurrent) {
        int p = 1;
        for (const Value& k : key_)
            stmt.bind(p++, k);
        stmt.bindInt(p, rowid_);
    }
    stream_ = &stmt;
    streamAscending_ = ascending;
    stepStream();
}

void Recordset::stepStream() {
    if (stream_->step()) {
        if (type_ == RecordsetType::Dynaset) {
            rowids_.push_back(sqlite3_column_int64(stream_->get(), 0));
            position_ = rowids_.size() - 1;
        }
        positionOn(*stream_);
        streamOnRow_ = true;
        return;
    }
    stream_->reset();
    if (type_ == RecordsetType::Dynaset) {
        streaming_ = false;
        position_ = rowids_.size();
        returnLease();
    }
    leaveRow(At::End);
}

// Reads the rest of a dynaset's rows so that its rows are fixed from now on.
void Recordset::drain() {
    if (!streaming_)
        return;
    while (stream_->step())
        rowids_.push_back(sqlite3_column_int64(stream_->get(), 0));
    stream_->reset();
    streaming_ = false;
    if (row_ == stream_)
        row_ = nullptr; // the row is read again by its rowid when it is needed
    streamOnRow_ = false;
    returnLease();
}

void Recordset::moveToIndex(std::size_t index) {
    position_ = index;
    rowid_ = rowids_[index];
    row_ = nullptr;
    streamOnRow_ = false;
    at_ = At::Row;
}

// Makes row_ stand on the current row with the values it has now.
void Recordset::freshen() {
    if (row_ && rowGeneration_ == db_->writeGeneration())
        return;
    if (!refetch_)
        refetch_ = &cached(selectSql_ + " WHERE " + quoteIdentifier(qualifier_) + ".rowid = ?1");
    else
        refetch_->reset();
    sqlite::Statement& stmt = *refetch_;
    stmt.bindInt(1, rowid_);
    if (!stmt.step())
        throw DatabaseError(err::RecordDeleted, "The record was deleted from '" + table_ + "'",
                            db_->Name(), source_);
    row_ = &stmt;
    rowGeneration_ = db_->writeGeneration();
}

void Recordset::cancelEdit() {
    editMode_ = EditMode::None;
}

void Recordset::MoveFirst() {
    prepareUse();
    cancelEdit();
    if (type_ == RecordsetType::Table) {
        startTableStream(true, false);
    } else if (table_.empty()) {
        position_ = 0;
        at_ = snapshot_.empty() ? At::End : At::Row;
    } else if (!rowids_.empty()) {
        moveToIndex(0);
    } else if (streaming_) {
        stepStream();
    } else {
        leaveRow(At::End);
    }
    requireRow();
}

void Recordset::MoveNext() {
    prepareUse();
    requireRow();
    cancelEdit();
    if (type_ == RecordsetType::Table) {
        if (streamOnRow_ && streamAscending_)
            stepStream();
        else
            startTableStream(true, true);
    } else if (table_.empty()) {
        if (++position_ >= snapshot_.size())
            at_ = At::End;
    } else if (position_ + 1 < rowids_.size()) {
        moveToIndex(position_ + 1);
    } else if (streaming_) {
        stepStream();
    } else {
        position_ = rowids_.size();
        leaveRow(At::End);
    }
}

void Recordset::MovePrevious() {
    prepareUse();
    requireRow();
    cancelEdit();
    if (type_ == RecordsetType::Table) {
        if (streamOnRow_ && !streamAscending_)
            stepStream();
        else
            startTableStream(false, true);
    } else if (position_ == 0) {
        leaveRow(At::End);
    } else if (table_.empty()) {
        --position_;
    } else {
        moveToIndex(position_ - 1);
    }
}

void Recordset::MoveLast() {
    prepareUse();
    cancelEdit();
    if (type_ == RecordsetType::Table) {
        startTableStream(false, false);
    } else if (table_.empty()) {
        position_ = snapshot_.empty() ? 0 : snapshot_.size() - 1;
        at_ = snapshot_.empty() ? At::End : At::Row;
    } else {
        drain();
        if (rowids_.empty())
            leaveRow(At::End);
        else
            moveToIndex(rowids_.size() - 1);
    }
    requireRow();
}

std::int64_t Recordset::RecordCount() {
    prepareUse();
    if (type_ == RecordsetType::Table) {
        sqlite::Statement& stmt = cached("SELECT count(*) FROM " + quoteIdentifier(table_));
        stmt.step();
        const std::int64_t n = sqlite3_column_int64(stmt.get(), 0);
        stmt.reset();
        return n;
    }
    if (table_.empty())
        return static_cast<std::int64_t>(snapshot_.size());
    drain();
    return static_cast<std::int64_t>(rowids_.size());
}

void Recordset::Requery() {
    prepareUse();
    cancelEdit();
    noMatch_ = false;
    if (type_ == RecordsetType::Table) {
        startTableStream(true, false);
        return;
    }
    returnLease();
    statements_.clear();
    seekStatements_.clear();
    refetch_ = nullptr;
    stream_ = nullptr;
    row_ = nullptr;
    openDynaset(std::string(querySql_));
}

// --- Seek and Find -----------------------------------------------------------------------

void Recordset::Index(std::string_view name) {
    prepareUse();
    if (type_ != RecordsetType::Table)
        throw DatabaseError(err::OperationNotSupported,
                            "Operation is not supported for this type of object: an index is "
                            "selected on a table cursor, not on '" +
                                source_ + "'",
                            db_->Name(), source_);
    // Selecting the index in use again changes nothing: the writers select their index
    // before every Seek, and a Seek sets the current row anyway.
    if (!indexName_.empty() && equalsNoCase(indexName_, name))
        return;
    const TableInfo& info = db_->tableInfo(table_);
    const IndexDef* index = info.index(name);
    if (!index)
        throw DatabaseError(err::ItemNotFound,
                            "'" + std::string(name) + "' is not an index of the table '" + table_ +
                                "'",
                            db_->Name(), source_);
    indexName_ = index->Name;
    indexColumns_ = index->Fields;
    seekStatements_.clear();
    refetch_ = nullptr;
    indexFields_.clear();
    for (const std::string& c : indexColumns_)
        indexFields_.push_back(info.fieldIndex(c));
    cancelEdit();
    startTableStream(true, false);
}

void Recordset::Seek(std::string_view comparison, const Value& key) {
    Seek(comparison, std::vector<Value>{key});
}

void Recordset::Seek(std::string_view comparison, const std::vector<Value>& keys) {
    prepareUse();
    if (type_ != RecordsetType::Table)
        throw DatabaseError(err::OperationNotSupported,
                            "Operation is not supported for this type of object: Seek works on "
                            "table cursors, not on '" +
                                source_ + "'",
                            db_->Name(), source_);
    if (indexColumns_.empty())
        throw DatabaseError(err::InvalidWithoutIndex,
                            "Operation invalid without a current index: Seek on '" + table_ + "'",
                            db_->Name(), source_);
    if (!isComparison(comparison) || keys.empty() || keys.size() > indexColumns_.size())
        throw DatabaseError(err::SyntaxError,
                            "Seek on '" + table_ + "' needs a comparison and one to " +
                                std::to_string(indexColumns_.size()) + " key values",
                            db_->Name(), source_);
    cancelEdit();
    sqlite::Statement& stmt = seekStatement(comparison, keys.size());
    for (std::size_t i = 0; i < keys.size(); ++i)
        stmt.bind(static_cast<int>(i + 1), keys[i]);
    stream_ = nullptr;
    if (stmt.step()) {
        positionOn(stmt);
        streamOnRow_ = false;
        noMatch_ = false;
    } else {
        leaveRow(At::None);
        noMatch_ = true;
    }
}

// The statement of a Seek, made once per comparison and number of keys.
sqlite::Statement& Recordset::seekStatement(std::string_view comparison, std::size_t keyCount) {
    static constexpr std::string_view comparisons[] = {"=", ">=", ">", "<=", "<"};
    const std::size_t op = static_cast<std::size_t>(
        std::find(std::begin(comparisons), std::end(comparisons), comparison) -
        std::begin(comparisons));
    const std::size_t slot = op * 8 + keyCount - 1;
    if (seekStatements_.size() <= slot)
        seekStatements_.resize(slot + 1, nullptr);
    if (seekStatements_[slot]) {
        seekStatements_[slot]->reset();
        return *seekStatements_[slot];
    }
    std::string sql = selectSql_ + " WHERE ";
    if (keyCount == 1) {
        sql += quoteIdentifier(indexColumns_[0]) + " " + std::string(comparison) + " ?1";
    } else {
        std::string lhs, rhs;
        for (std::size_t i = 0; i < keyCount; ++i) {
            lhs += (i ? ", " : "") + quoteIdentifier(indexColumns_[i]);
            rhs += (i ? ", ?" : "?") + std::to_string(i + 1);
        }
        sql += "(" + lhs + ") " + std::string(comparison) + " (" + rhs + ")";
    }
    sql += orderBy(comparison[0] != '<') + " LIMIT 1";
    seekStatements_[slot] = &cached(sql);
    return *seekStatements_[slot];
}

bool Recordset::find(std::string_view criterion, std::size_t from) {
    if (type_ != RecordsetType::Dynaset || table_.empty())
        throw DatabaseError(err::OperationNotSupported,
                            "Operation is not supported for this type of object: FindFirst works "
                            "on dynasets over one table, not on '" +
                                source_ + "'",
                            db_->Name(), source_);
    cancelEdit();
    drain();
    const std::string sql = "SELECT " + quoteIdentifier(qualifier_) + ".rowid " + fromTable_ +
                            " WHERE (" + jet::translate(criterion) + ")";
    sqlite::Statement& stmt = cached(sql);
    std::unordered_set<std::int64_t> hits;
    while (stmt.step())
        hits.insert(sqlite3_column_int64(stmt.get(), 0));
    stmt.reset();
    for (std::size_t i = from; i < rowids_.size(); ++i) {
        if (hits.count(rowids_[i])) {
            moveToIndex(i);
            noMatch_ = false;
            return true;
        }
    }
    noMatch_ = true;
    return false;
}

void Recordset::FindFirst(std::string_view criterion) {
    prepareUse();
    find(criterion, 0);
}

void Recordset::FindNext(std::string_view criterion) {
    prepareUse();
    find(criterion, at_ == At::Row ? position_ + 1 : 0);
}

// --- fields ------------------------------------------------------------------------------

int Recordset::fieldIndex(std::string_view name) const {
    requireOpen();
    const FieldLayout& l = *layout_;
    for (const auto& [text, index] : l.zuletzt)
        if (text == name.data() &&
            equalsNoCase(l.fields[static_cast<std::size_t>(index)].Name, name))
            return index;
    auto it = layout_->byName.find(lowerAscii(name));
    if (it == layout_->byName.end())
        throw DatabaseError(err::ItemNotFound,
                            "Item not found in this collection: '" + source_ + "' has no field '" +
                                std::string(name) + "'",
                            db_->Name(), source_, std::string(name));
    l.zuletzt[l.naechster++ % l.zuletzt.size()] = {name.data(), it->second};
    return it->second;
}

bool Recordset::hasField(std::string_view name) const {
    return layout_->byName.count(lowerAscii(name)) != 0;
}

Value Recordset::readColumn(sqlite3_stmt* stmt, int column, std::size_t field) const {
    const int storage = sqlite3_column_type(stmt, column);
    if (storage == SQLITE_NULL)
        return Value();
    if (layout_->dynamic[field])
        return dynamicValue(stmt, column);
    switch (layout_->fields[field].Type) {
    case FieldType::Boolean:
        return Value(sqlite3_column_int64(stmt, column) != 0);
    case FieldType::Byte:
    case FieldType::Integer:
    case FieldType::Long:
        if (storage == SQLITE_INTEGER)
            return Value(static_cast<long long>(sqlite3_column_int64(stmt, column)));
        return dynamicValue(stmt, column);
    case FieldType::Currency:
        if (storage == SQLITE_INTEGER)
            return Value(RecordId(sqlite3_column_int64(stmt, column)));
        if (storage == SQLITE_FLOAT)
            return Value(RecordId::fromDouble(sqlite3_column_double(stmt, column)));
        return dynamicValue(stmt, column);
    case FieldType::Double:
        if (storage == SQLITE_INTEGER || storage == SQLITE_FLOAT)
            return Value(sqlite3_column_double(stmt, column));
        return dynamicValue(stmt, column);
    case FieldType::DateTime:
        if (storage == SQLITE_INTEGER || storage == SQLITE_FLOAT)
            return Value(DateTime(sqlite3_column_double(stmt, column)));
        return dynamicValue(stmt, column);
    case FieldType::Text:
    case FieldType::Memo:
        return Value(columnText(stmt, column));
    }
    return Value();
}

Value Recordset::get(int index) {
    prepareUse();
    const auto i = static_cast<std::size_t>(index);
    if (i >= layout_->fields.size())
        throw DatabaseError(err::ItemNotFound, "Item not found in this collection: field " +
                                                   std::to_string(index) + " of '" + source_ + "'");
    if (editMode_ != EditMode::None && buffer_[i])
        return *buffer_[i];
    if (editMode_ == EditMode::AddNew)
        return Value();
    requireRow();
    if (table_.empty())
        return snapshot_[position_][i];
    freshen();
    return readColumn(row_->get(), index + 1, i);
}

// The value as the field will hold it; refuses what the field can't hold.
Value Recordset::coerce(int index, const Value& value) const {
    const FieldDef& f = layout_->fields[static_cast<std::size_t>(index)];
    if (value.isNull())
        return value;
    auto range = [&](std::int64_t lo, std::int64_t hi) {
        const std::int64_t n = value.toInt();
        if (n < lo || n > hi)
            throw DatabaseError(err::Overflow,
                                "Overflow: " + value.text() + " doesn't fit the " +
                                    typeName(f.Type) + " field '" + f.Name + "'",
                                db_->Name(), source_, f.Name);
        return Value(static_cast<long long>(n));
    };
    try {
        switch (f.Type) {
        case FieldType::Boolean:
            return Value(value.toBool());
        case FieldType::Byte:
            return range(0, 255);
        case FieldType::Integer:
            return range(-32768, 32767);
        case FieldType::Long:
            return range(std::numeric_limits<std::int32_t>::min(),
                         std::numeric_limits<std::int32_t>::max());
        case FieldType::Currency:
            return Value(value.toRecordId());
        case FieldType::Double:
            return Value(value.toDouble());
        case FieldType::DateTime:
            return Value(value.toDate());
        case FieldType::Text:
        case FieldType::Memo: {
            std::string text = value.text();
            if (f.Type == FieldType::Text && utf8Length(text) > static_cast<std::size_t>(f.Size))
                throw DatabaseError(err::FieldTooSmall,
                                    "The field '" + f.Name + "' is too small for the " +
                                        std::to_string(utf8Length(text)) +
                                        " characters given (it holds " + std::to_string(f.Size) +
                                        ")",
                                    db_->Name(), source_, f.Name);
            if (text.empty() && !f.AllowZeroLength)
                throw DatabaseError(err::ZeroLengthString,
                                    "The field '" + f.Name + "' can't be a zero-length string",
                                    db_->Name(), source_, f.Name);
            return Value(std::move(text));
        }
        }
    } catch (const DatabaseError&) {
        throw;
    } catch (const Error& e) {
        throw DatabaseError(err::ConversionError,
                            "Data type conversion error in the field '" + f.Name + "': " + e.what(),
                            db_->Name(), source_, f.Name);
    }
    return value;
}

void Recordset::set(int index, const Value& value) {
    prepareUse();
    const auto i = static_cast<std::size_t>(index);
    if (i >= layout_->fields.size())
        throw DatabaseError(err::ItemNotFound, "Item not found in this collection: field " +
                                                   std::to_string(index) + " of '" + source_ + "'");
    if (editMode_ == EditMode::None)
        throw DatabaseError(err::UpdateWithoutEdit,
                            "The field '" + layout_->fields[i].Name +
                                "' is written without Edit or AddNew",
                            db_->Name(), source_, layout_->fields[i].Name);
    if (layout_->baseNames[i].empty())
        throw DatabaseError(err::FieldNotUpdatable,
                            "The field '" + layout_->fields[i].Name + "' can't be updated",
                            db_->Name(), source_, layout_->fields[i].Name);
    buffer_[i] = coerce(index, value);
}

// --- writing -----------------------------------------------------------------------------

void Recordset::requireWritable() const {
    if (table_.empty())
        throw DatabaseError(err::ReadOnly,
                            "Cannot update: the recordset '" + source_ + "' is read-only",
                            db_->Name(), source_);
}

void Recordset::Edit() {
    prepareUse();
    requireWritable();
    requireRow();
    editMode_ = EditMode::Edit;
    buffer_.assign(layout_->fields.size(), std::nullopt);
}

void Recordset::AddNew() {
    prepareUse();
    requireWritable();
    editMode_ = EditMode::AddNew;
    buffer_.assign(layout_->fields.size(), std::nullopt);
}

void Recordset::CancelUpdate() {
    prepareUse();
    cancelEdit();
}

void Recordset::Update() {
    prepareUse();
    if (editMode_ == EditMode::None)
        throw DatabaseError(err::UpdateWithoutEdit,
                            "Update without AddNew or Edit on '" + source_ + "'", db_->Name(),
                            source_);
    if (editMode_ == EditMode::Edit)
        writeUpdate();
    else
        writeInsert();
    editMode_ = EditMode::None; // only after success: a failed Update stays in edit mode
}

void Recordset::writeUpdate() {
    std::string sql;
    std::vector<const Value*> values;
    for (std::size_t i = 0; i < layout_->fields.size(); ++i) {
        if (!buffer_[i])
            continue;
        values.push_back(&*buffer_[i]);
        sql += (values.size() > 1 ? ", " : "") + quoteIdentifier(layout_->baseNames[i]) + " = ?" +
               std::to_string(values.size());
    }
    if (values.empty())
        return;
    sql = "UPDATE " + quoteIdentifier(table_) + " SET " + sql + " WHERE rowid = ?" +
          std::to_string(values.size() + 1);
    db_->beforeWrite();
    sqlite::Statement& stmt = cached(sql);
    for (std::size_t i = 0; i < values.size(); ++i)
        stmt.bind(static_cast<int>(i + 1), *values[i]);
    stmt.bindInt(static_cast<int>(values.size() + 1), rowid_);
    stmt.step();
    stmt.reset();
    if (sqlite3_changes(db_->connection().get()) == 0)
        throw DatabaseError(err::RecordDeleted, "The record was deleted from '" + table_ + "'",
                            db_->Name(), source_);
}

void Recordset::writeInsert() {
    std::string columns, params;
    std::vector<const Value*> values;
    for (std::size_t i = 0; i < layout_->fields.size(); ++i) {
        if (!buffer_[i])
            continue;
        values.push_back(&*buffer_[i]);
        columns += (values.size() > 1 ? ", " : "") + quoteIdentifier(layout_->baseNames[i]);
        params += (values.size() > 1 ? ", ?" : "?") + std::to_string(values.size());
    }
    const std::string sql = "INSERT INTO " + quoteIdentifier(table_) +
                            (values.empty() ? std::string(" DEFAULT VALUES")
                                            : " (" + columns + ") VALUES (" + params + ")");
    db_->beforeWrite();
    sqlite::Statement& stmt = cached(sql);
    for (std::size_t i = 0; i < values.size(); ++i)
        stmt.bind(static_cast<int>(i + 1), *values[i]);
    stmt.step();
    stmt.reset();
    if (type_ == RecordsetType::Dynaset)
        rowids_.push_back(sqlite3_last_insert_rowid(db_->connection().get()));
}

// --- called by the database --------------------------------------------------------------

void Recordset::beforeWrite() {
    if (streaming_)
        drain();
}

void Recordset::releaseStatements() {
    if (streaming_)
        drain();
    for (auto& [sql, stmt] : statements_)
        stmt.reset();
    row_ = nullptr;
    streamOnRow_ = false;
}

} // namespace folio::dao
