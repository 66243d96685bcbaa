// The writes of a recordset: the edit buffer of AddNew and Edit, Update, and Delete.
#include "engine/recordset.h"

#include "engine/errors.h"
#include "engine/jet_sql.h"
#include "engine/text_util.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <unordered_set>

namespace folio::dao {

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

} // namespace folio::dao
