#include "engine/sqlite_handle.h"

#include "engine/abbruch.h"
#include "engine/errors.h"

#include <utility>

namespace folio::sqlite {

int errorNumber(int rc) {
    switch (rc & 0xff) {
    case SQLITE_READONLY:
        return err::ReadOnly;
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return err::FileInUse;
    case SQLITE_FULL:
        return err::DiskFull;
    case SQLITE_NOTADB:
        return err::NotADatabase;
    case SQLITE_CORRUPT:
        return err::DatabaseDamaged;
    case SQLITE_CANTOPEN:
        return err::CannotOpenFile;
    case SQLITE_CONSTRAINT:
        return rc == SQLITE_CONSTRAINT_CHECK ? err::ZeroLengthString : err::EngineError;
    case SQLITE_ERROR:
        return err::SyntaxError;
    default:
        return err::EngineError;
    }
}

void raise(sqlite3* db, int rc, const std::string& file, const std::string& statement) {
    // A statement interrupted because a stop was asked for: the work unwinds as stopped.
    if ((rc & 0xff) == SQLITE_INTERRUPT)
        abbruch_pruefen();
    const int extended = db ? sqlite3_extended_errcode(db) : rc;
    std::string message = db ? sqlite3_errmsg(db) : sqlite3_errstr(rc);
    switch (rc & 0xff) {
    case SQLITE_READONLY:
        message = "Cannot update: the database '" + file + "' is read-only (" + message + ")";
        break;
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        message = "The database '" + file + "' is in use by another program (" + message + ")";
        break;
    case SQLITE_FULL:
        message = "The disk is full: '" + file + "' could not be written (" + message + ")";
        break;
    case SQLITE_NOTADB:
        message = "'" + file + "' is not a family-tree database (" + message + ")";
        break;
    case SQLITE_CORRUPT:
        message = "The database '" + file + "' is damaged (" + message + ")";
        break;
    case SQLITE_IOERR:
        message = "The disk failed to read or write the database '" + file + "' (" + message + ")";
        break;
    default:
        message += " in '" + file + "'";
        break;
    }
    if (!statement.empty())
        message += "; statement: " + statement;
    throw DatabaseError(errorNumber(extended), message, file, statement);
}

Connection::Connection(const std::string& path, bool readOnly, bool create) : path_(path) {
    int flags = readOnly ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE;
    if (create)
        flags |= SQLITE_OPEN_CREATE;
    const int rc = sqlite3_open_v2(path.c_str(), &db_, flags | SQLITE_OPEN_NOMUTEX, nullptr);
    if (rc != SQLITE_OK) {
        sqlite3* failed = std::exchange(db_, nullptr);
        try {
            raise(failed, rc, path, {});
        } catch (...) {
            sqlite3_close_v2(failed);
            throw;
        }
    }
    sqlite3_extended_result_codes(db_, 1);
}

Connection::Connection(Connection&& other) noexcept
    : db_(std::exchange(other.db_, nullptr)), path_(std::move(other.path_)) {}

Connection& Connection::operator=(Connection&& other) noexcept {
    if (this != &other) {
        close();
        db_ = std::exchange(other.db_, nullptr);
        path_ = std::move(other.path_);
    }
    return *this;
}

Connection::~Connection() {
    close();
}

void Connection::close() {
    if (db_) {
        sqlite3_close_v2(db_);
        db_ = nullptr;
    }
}

void Connection::exec(const std::string& sql) {
    char* message = nullptr;
    const int rc = sqlite3_exec(db_, sql.c_str(), nullptr, nullptr, &message);
    sqlite3_free(message);
    if (rc != SQLITE_OK)
        raise(db_, rc, path_, sql);
}

Statement::Statement(const Connection& connection, std::string_view sql)
    : db_(connection.get()), file_(connection.path()), sql_(sql) {
    const char* tail = nullptr;
    const int rc = sqlite3_prepare_v3(db_, sql_.data(), static_cast<int>(sql_.size()),
                                      SQLITE_PREPARE_PERSISTENT, &stmt_, &tail);
    if (rc != SQLITE_OK)
        raise(db_, rc, file_, sql_);
    if (!stmt_)
        throw DatabaseError(err::SyntaxError, "The statement is empty", file_, sql_);
}

Statement::Statement(Statement&& other) noexcept
    : stmt_(std::exchange(other.stmt_, nullptr)), db_(other.db_), file_(std::move(other.file_)),
      sql_(std::move(other.sql_)) {}

Statement& Statement::operator=(Statement&& other) noexcept {
    if (this != &other) {
        finalize();
        stmt_ = std::exchange(other.stmt_, nullptr);
        db_ = other.db_;
        file_ = std::move(other.file_);
        sql_ = std::move(other.sql_);
    }
    return *this;
}

Statement::~Statement() {
    finalize();
}

void Statement::finalize() {
    if (stmt_) {
        sqlite3_finalize(stmt_);
        stmt_ = nullptr;
    }
}

bool Statement::step() {
    const int rc = sqlite3_step(stmt_);
    if (rc == SQLITE_ROW)
        return true;
    if (rc == SQLITE_DONE)
        return false;
    sqlite3_reset(stmt_);
    raise(db_, rc, file_, sql_);
}

void Statement::reset() {
    sqlite3_reset(stmt_);
    sqlite3_clear_bindings(stmt_);
}

void Statement::bindInt(int index, std::int64_t value) {
    sqlite3_bind_int64(stmt_, index, value);
}

void Statement::bind(int index, const Value& value) {
    switch (value.kind()) {
    case Value::Kind::Null:
        sqlite3_bind_null(stmt_, index);
        break;
    case Value::Kind::Boolean:
        sqlite3_bind_int(stmt_, index, value.toBool() ? -1 : 0);
        break;
    case Value::Kind::Integer:
        sqlite3_bind_int64(stmt_, index, value.toInt());
        break;
    case Value::Kind::Currency: {
        const RecordId id = value.toRecordId();
        if (id.isWhole())
            sqlite3_bind_int64(stmt_, index, id.units() / RecordId::Scale);
        else
            sqlite3_bind_double(stmt_, index, id.toDouble());
        break;
    }
    case Value::Kind::Double:
    case Value::Kind::Date:
        sqlite3_bind_double(stmt_, index, value.toDouble());
        break;
    case Value::Kind::Text: {
        const std::string& s = value.textRef();
        sqlite3_bind_text(stmt_, index, s.data(), static_cast<int>(s.size()), SQLITE_TRANSIENT);
        break;
    }
    }
}

} // namespace folio::sqlite
