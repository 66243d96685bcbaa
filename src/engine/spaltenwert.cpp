#include "engine/spaltenwert.h"

namespace folio::dao {

namespace {

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
        return Value(spaltentext(stmt, column));
    }
}

} // namespace

std::string spaltentext(sqlite3_stmt* stmt, int column) {
    const auto* p = reinterpret_cast<const char*>(sqlite3_column_text(stmt, column));
    return p ? std::string(p, static_cast<std::size_t>(sqlite3_column_bytes(stmt, column)))
             : std::string();
}

Value spaltenwert(sqlite3_stmt* stmt, int column, FieldType type, bool dynamic) {
    const int storage = sqlite3_column_type(stmt, column);
    if (storage == SQLITE_NULL)
        return Value();
    if (dynamic)
        return dynamicValue(stmt, column);
    switch (type) {
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
            return Value(RecordId::fromWhole(sqlite3_column_int64(stmt, column)));
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
        return Value(spaltentext(stmt, column));
    }
    return Value();
}

} // namespace folio::dao
