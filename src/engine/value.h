// Value: the content of one field of a record, or of a parameter. Null is a value of its
// own, distinct from the empty text. The conversions follow the rules of the desktop
// database the files come from: Null converts to 0, False and "" where a caller asks for a
// plain number, flag or text (callers that must tell Null apart test isNull() first).
#pragma once

#include "engine/date_time.h"
#include "engine/record_id.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

namespace folio {

class Value {
public:
    enum class Kind { Null, Boolean, Integer, Currency, Double, Date, Text };

    Value() = default;
    Value(std::nullptr_t) {}
    Value(bool b) : v_(b) {}
    Value(int i) : v_(static_cast<std::int64_t>(i)) {}
    Value(long i) : v_(static_cast<std::int64_t>(i)) {}
    Value(long long i) : v_(static_cast<std::int64_t>(i)) {}
    Value(RecordId id) : v_(id) {}
    Value(double d) : v_(d) {}
    Value(DateTime d) : v_(d) {}
    Value(std::string s) : v_(std::move(s)) {}
    Value(std::string_view s) : v_(std::string(s)) {}
    Value(const char* s) : v_(std::string(s)) {}

    static Value null() { return Value(); }

    Kind kind() const { return static_cast<Kind>(v_.index()); }
    bool isNull() const { return kind() == Kind::Null; }
    bool isText() const { return kind() == Kind::Text; }
    bool isNumeric() const { return !isNull() && !isText(); }

    // Conversions. Text converts to a number only where it reads as one (blanks around it
    // allowed); anything else throws folio::Error (type mismatch).
    bool toBool() const;
    std::int64_t toInt() const; // rounded half to even
    double toDouble() const;
    RecordId toRecordId() const;
    DateTime toDate() const;
    // Text of the value: numbers in plain decimal with a point, Booleans as "True" and
    // "False", dates as yyyy-mm-dd (with hh:mm:ss when there is a time), Null as "".
    std::string text() const;
    // The text as stored, without a copy; empty for anything but Text.
    const std::string& textRef() const;

    // Same kind and same content; Null equals Null.
    bool operator==(const Value& other) const = default;

private:
    std::variant<std::monostate, bool, std::int64_t, RecordId, double, DateTime, std::string> v_;
};

} // namespace folio
