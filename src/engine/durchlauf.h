// A forward pass over the rows of a query: what a run reads once from a whole table. It keeps
// nothing of the rows behind it (no row numbers, no copy) and reads the columns by their
// position, with the conversions of a recordset's fields, so that a million rows cost no
// more than the store's own reading.
#pragma once

#include "engine/field_type.h"
#include "engine/record_id.h"
#include "engine/sqlite_handle.h"
#include "engine/value.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace folio::dao {

class Database;

class Durchlauf {
public:
    // The SELECT in the files' dialect. Raises as a recordset on it would.
    Durchlauf(Database& db, std::string_view sql);
    // The same on a connection of its own (a Nebenlauf's).
    Durchlauf(const sqlite::Connection& verbindung, std::string_view sql);
    Durchlauf(const Durchlauf&) = delete;
    Durchlauf& operator=(const Durchlauf&) = delete;

    // Moves to the next row; false behind the last one.
    bool weiter();

    // The columns of the row, counted from 0, each as Recordset::get gives it and then
    // converted as Value does: without a Value where the stored form is the declared one.
    Value wert(int spalte) const;
    bool istNull(int spalte) const { return stmt_.type(spalte) == SQLITE_NULL; }
    RecordId nummer(int spalte) const;
    std::int64_t ganz(int spalte) const;
    bool wahr(int spalte) const;
    std::string text(int spalte) const;
    // The same as text(), valid until the next move: no copy where the column holds text.
    std::string_view textAnsicht(int spalte) const;

private:
    std::optional<std::int64_t> ganzzahl(int spalte) const;
    sqlite::Statement stmt_;
    std::vector<FieldType> typen_;
    std::vector<bool> dynamisch_;
    mutable std::string umgewandelt_; // the text of a column that holds none, for textAnsicht
};

} // namespace folio::dao
