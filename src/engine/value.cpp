#include "engine/value.h"

#include "engine/errors.h"
#include "engine/text_util.h"

#include <charconv>
#include <cmath>
#include <cstdio>

namespace folio {

namespace {

[[noreturn]] void mismatch(const std::string& text) {
    throw Error(err::TypeMismatch, "Type mismatch: '" + text + "' is not a number");
}

double parseNumber(const std::string& s) {
    std::string_view t = trimWhitespace(s);
    if (!t.empty() && t.front() == '+')
        t.remove_prefix(1);
    double d = 0;
    auto [end, ec] = std::from_chars(t.data(), t.data() + t.size(), d);
    if (t.empty() || ec != std::errc() || end != t.data() + t.size())
        mismatch(s);
    return d;
}

std::string doubleText(double d) {
    if (d == std::trunc(d) && std::fabs(d) < 1e15)
        return std::to_string(static_cast<std::int64_t>(d));
    char buf[32];
    auto [end, ec] = std::to_chars(buf, buf + sizeof buf, d);
    return std::string(buf, ec == std::errc() ? end : buf);
}

} // namespace

bool Value::toBool() const {
    switch (kind()) {
    case Kind::Null:
        return false;
    case Kind::Boolean:
        return std::get<bool>(v_);
    case Kind::Text: {
        const std::string& s = std::get<std::string>(v_);
        const std::string_view t = trimBlanks(s);
        if (equalsNoCase(t, "true"))
            return true;
        if (equalsNoCase(t, "false"))
            return false;
        return parseNumber(s) != 0;
    }
    default:
        return toDouble() != 0;
    }
}

std::int64_t Value::toInt() const {
    switch (kind()) {
    case Kind::Null:
        return 0;
    case Kind::Boolean:
        return std::get<bool>(v_) ? -1 : 0;
    case Kind::Integer:
        return std::get<std::int64_t>(v_);
    default: {
        const double d = toDouble();
        if (!std::isfinite(d) || std::fabs(d) >= 9.2e18)
            throw Error(err::Overflow, "Overflow: " + text() + " is too large a number");
        return static_cast<std::int64_t>(std::nearbyint(d));
    }
    }
}

double Value::toDouble() const {
    switch (kind()) {
    case Kind::Null:
        return 0;
    case Kind::Boolean:
        return std::get<bool>(v_) ? -1 : 0;
    case Kind::Integer:
        return static_cast<double>(std::get<std::int64_t>(v_));
    case Kind::Currency:
        return std::get<RecordId>(v_).toDouble();
    case Kind::Double:
        return std::get<double>(v_);
    case Kind::Date:
        return std::get<DateTime>(v_).days();
    case Kind::Text:
        return parseNumber(std::get<std::string>(v_));
    }
    return 0;
}

RecordId Value::toRecordId() const {
    switch (kind()) {
    case Kind::Null:
        return RecordId();
    case Kind::Currency:
        return std::get<RecordId>(v_);
    case Kind::Integer:
        return RecordId::fromWhole(std::get<std::int64_t>(v_));
    case Kind::Text: {
        auto id = RecordId::parse(std::get<std::string>(v_));
        if (!id)
            mismatch(std::get<std::string>(v_));
        return *id;
    }
    default:
        return RecordId::fromDouble(toDouble());
    }
}

DateTime Value::toDate() const {
    return kind() == Kind::Date ? std::get<DateTime>(v_) : DateTime(toDouble());
}

std::string Value::text() const {
    switch (kind()) {
    case Kind::Null:
        return {};
    case Kind::Boolean:
        return std::get<bool>(v_) ? "True" : "False";
    case Kind::Integer:
        return std::to_string(std::get<std::int64_t>(v_));
    case Kind::Currency:
        return std::get<RecordId>(v_).text();
    case Kind::Double:
        return doubleText(std::get<double>(v_));
    case Kind::Date: {
        const CalendarDateTime c = std::get<DateTime>(v_).calendar();
        char buf[40];
        if (c.hour || c.minute || c.second)
            std::snprintf(buf, sizeof buf, "%04d-%02d-%02d %02d:%02d:%02d", c.year, c.month, c.day,
                          c.hour, c.minute, c.second);
        else
            std::snprintf(buf, sizeof buf, "%04d-%02d-%02d", c.year, c.month, c.day);
        return buf;
    }
    case Kind::Text:
        return std::get<std::string>(v_);
    }
    return {};
}

const std::string& Value::textRef() const {
    static const std::string empty;
    return kind() == Kind::Text ? std::get<std::string>(v_) : empty;
}

} // namespace folio
