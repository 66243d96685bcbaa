// RAII owners of the SQLite handles. Everything above this file talks to SQLite through
// these two classes, which turn every failure into a folio::DatabaseError that names the
// file and the statement.
#pragma once

#include "engine/value.h"

#include <sqlite3.h>

#include <string>
#include <string_view>

namespace folio::sqlite {

// Raises the error of a failed SQLite call on `db`.
[[noreturn]] void raise(sqlite3* db, int rc, const std::string& file, const std::string& statement);
// The engine error number for an SQLite result code.
int errorNumber(int rc);

class Connection {
public:
    Connection() = default;
    // Opens an existing file; `readOnly` opens it for reading only.
    Connection(const std::string& path, bool readOnly, bool create = false);
    Connection(Connection&& other) noexcept;
    Connection& operator=(Connection&& other) noexcept;
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    ~Connection();

    sqlite3* get() const { return db_; }
    const std::string& path() const { return path_; }
    bool isOpen() const { return db_ != nullptr; }
    void close();
    // Runs SQL that returns no rows (pragmas, transaction control, DDL of our own).
    void exec(const std::string& sql);

private:
    sqlite3* db_ = nullptr;
    std::string path_;
};

class Statement {
public:
    Statement() = default;
    Statement(const Connection& connection, std::string_view sql);
    Statement(Statement&& other) noexcept;
    Statement& operator=(Statement&& other) noexcept;
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;
    ~Statement();

    sqlite3_stmt* get() const { return stmt_; }
    bool isPrepared() const { return stmt_ != nullptr; }
    const std::string& sql() const { return sql_; }

    // Steps once: true when a row stands, false when done.
    bool step();
    void reset();
    void finalize();
    void bind(int index, const Value& value);
    void bindInt(int index, std::int64_t value);
    int columnCount() const { return sqlite3_column_count(stmt_); }

    // The columns of the row that stands: its storage class (SQLITE_INTEGER, ...), and its
    // value as text ("" for NULL), as a 64-bit integer and as a double.
    int type(int column) const { return sqlite3_column_type(stmt_, column); }
    std::string text(int column) const {
        const auto* p = reinterpret_cast<const char*>(sqlite3_column_text(stmt_, column));
        return p ? std::string(p, static_cast<std::size_t>(sqlite3_column_bytes(stmt_, column)))
                 : std::string();
    }
    std::int64_t int64(int column) const { return sqlite3_column_int64(stmt_, column); }
    double real(int column) const { return sqlite3_column_double(stmt_, column); }

private:
    sqlite3_stmt* stmt_ = nullptr;
    sqlite3* db_ = nullptr;
    std::string file_;
    std::string sql_;
};

} // namespace folio::sqlite
