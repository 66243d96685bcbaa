// The moves of a recordset: the table cursor's stream in index order, the rows a dynaset
// fixed, Seek on an index and the Find family of a criterion.
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

bool isComparison(std::string_view op) {
    return op == "=" || op == ">=" || op == ">" || op == "<=" || op == "<";
}

} // namespace

// --- positions ---------------------------------------------------------------------------

void Recordset::positionOn(sqlite::Statement& stmt) {
    row_ = &stmt;
    rowid_ = stmt.int64(0);
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
            rowids_.push_back(stream_->int64(0));
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
        rowids_.push_back(stream_->int64(0));
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
        const std::int64_t n = stmt.int64(0);
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
        hits.insert(stmt.int64(0));
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

} // namespace folio::dao
