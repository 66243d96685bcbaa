// The one hierarchy of exceptions of the system. Each carries the error number that the
// engine would report (the numbers of the desktop database engine that family-tree files
// come from, so that callers can react to a particular failure) and says in its text what
// failed: the file, the statement or the field.
#pragma once

#include <stdexcept>
#include <string>
#include <system_error>

namespace folio {

class Error : public std::runtime_error {
public:
    Error(int number, const std::string& message) : std::runtime_error(message), number_(number) {}
    int number() const noexcept { return number_; }

private:
    int number_;
};

// Error numbers that the system raises and tests for.
namespace err {
inline constexpr int Overflow = 6;
inline constexpr int TypeMismatch = 13;
inline constexpr int InvalidUseOfNull = 94;
inline constexpr int OperationNotSupported = 3251;
inline constexpr int InvalidWithoutIndex = 3019;
inline constexpr int UpdateWithoutEdit = 3020;
inline constexpr int NoCurrentRecord = 3021;
inline constexpr int FileNotFound = 3024;
inline constexpr int CannotOpenFile = 3051;
inline constexpr int FileInUse = 3045;
inline constexpr int ReadOnly = 3027;
inline constexpr int SyntaxError = 3000;
inline constexpr int TableExists = 3010;
inline constexpr int TableNotFound = 3078;
inline constexpr int CharactersAfterStatement = 3142;
inline constexpr int FieldTooSmall = 3163;
inline constexpr int FieldNotUpdatable = 3164;
inline constexpr int RecordDeleted = 3167;
inline constexpr int FieldExists = 3191;
inline constexpr int DatabaseExists = 3204;
inline constexpr int InvalidPattern = 3220;
inline constexpr int ItemNotFound = 3265;
inline constexpr int IndexedField = 3280;
inline constexpr int ZeroLengthString = 3315;
inline constexpr int NotADatabase = 3343;
inline constexpr int DatabaseDamaged = 3049;
inline constexpr int AlreadyOpen = 3356;
inline constexpr int ObjectClosed = 3420;
inline constexpr int ConversionError = 3421;
inline constexpr int DiskFull = 3035;
inline constexpr int PathNotFound = 3044;        // a file can't be copied or found there
inline constexpr int ObjectVariableNotSet = 91;  // no database is open
inline constexpr int PropertyNotSupported = 438; // a control has no such property
inline constexpr int ControlArrayElement = 340;  // a form has no such control
inline constexpr int ElementNotFound = 35601;    // a tool bar has no button of that key
inline constexpr int EngineError = 3146;
inline constexpr int InvalidArgument = 5; // an argument that makes no sense
} // namespace err

// A failure of the database layer. `file`, `statement` and `field` say where it happened;
// any of them may be empty.
class DatabaseError : public Error {
public:
    DatabaseError(int number, const std::string& message, std::string file = {},
                  std::string statement = {}, std::string field = {})
        : Error(number, message), file_(std::move(file)), statement_(std::move(statement)),
          field_(std::move(field)) {}

    const std::string& file() const noexcept { return file_; }
    const std::string& statement() const noexcept { return statement_; }
    const std::string& field() const noexcept { return field_; }

private:
    std::string file_;
    std::string statement_;
    std::string field_;
};

// A failure of the file system as the program's error, a full disk as such: `was` says what
// couldn't be done, the system's words (where it gave any) why.
inline Error dateifehler(std::error_code grund, std::string was) {
    if (grund)
        was.append(": ").append(grund.message());
    return Error(grund == std::errc::no_space_on_device ? err::DiskFull : err::CannotOpenFile, was);
}

// Runs a stretch of work "with errors ignored": a failure of the program's own (any
// folio::Error) ends the stretch and is passed over. Nothing else is caught: running out of
// memory, a stop asked for and a fault of the program itself go on up.
template <typename Arbeit> void fehler_ignorieren(Arbeit&& arbeit) {
    try {
        arbeit();
    } catch (const Error&) {
    }
}

} // namespace folio
