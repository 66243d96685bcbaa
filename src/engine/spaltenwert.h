// The value of a column of a statement's row as a field of its type holds it: the one
// conversion of stored values that recordsets and forward passes share.
#pragma once

#include "engine/field_type.h"
#include "engine/value.h"

#include <sqlite3.h>

#include <string>

namespace folio::dao {

// The column's text; "" for Null.
std::string spaltentext(sqlite3_stmt* stmt, int column);

// The column as a field of `type` reads it; `dynamic` for a column of no declared type (an
// expression), read by its storage class.
Value spaltenwert(sqlite3_stmt* stmt, int column, FieldType type, bool dynamic);

} // namespace folio::dao
