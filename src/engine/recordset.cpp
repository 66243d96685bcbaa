#include "engine/recordset.h"

#include "engine/errors.h"
#include "engine/jet_sql.h"
#include "engine/spaltenwert.h"
#include "engine/text_util.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <unordered_set>

namespace folio::dao {

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
    return spaltenwert(stmt, column, layout_->fields[field].Type, layout_->dynamic[field]);
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
