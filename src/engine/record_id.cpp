#include "engine/record_id.h"

#include "engine/errors.h"
#include "engine/text_util.h"

#include <cmath>
#include <cstdio>
#include <limits>

namespace folio {

void RecordId::overflow(std::int64_t whole) {
    throw Error(err::Overflow, "Overflow: " + std::to_string(whole) + " is no record number");
}

RecordId RecordId::fromDouble(double value) {
    const double scaled = value * Scale;
    if (!std::isfinite(scaled) || scaled >= 9.2233720368547758e18 ||
        scaled < -9.2233720368547758e18)
        throw Error(err::Overflow, "Overflow: " + std::to_string(value) + " is no record number");
    // Round the decimal that the double stands for (0.00015 is 1.5 units, not 1.4999...).
    char buf[40];
    std::snprintf(buf, sizeof buf, "%.15g", value);
    if (auto exact = parse(buf))
        return *exact;
    return fromUnits(static_cast<std::int64_t>(std::nearbyint(scaled)));
}

std::optional<RecordId> RecordId::parse(std::string_view text) {
    text = trimWhitespace(text);
    bool negative = false;
    if (!text.empty() && (text.front() == '-' || text.front() == '+')) {
        negative = text.front() == '-';
        text.remove_prefix(1);
    }
    if (text.empty())
        return std::nullopt;
    std::int64_t whole = 0;
    std::int64_t fraction = 0;
    int fractionDigits = 0;
    int roundingDigit = -1;   // the fifth decimal
    bool restNonZero = false; // any digit behind it that isn't 0
    bool seenPoint = false;
    bool seenDigit = false;
    for (char c : text) {
        if (c == '.' && !seenPoint) {
            seenPoint = true;
        } else if (c >= '0' && c <= '9') {
            seenDigit = true;
            if (!seenPoint) {
                if (whole > (std::numeric_limits<std::int64_t>::max() / Scale - 9) / 10)
                    return std::nullopt;
                whole = whole * 10 + (c - '0');
            } else if (fractionDigits < 4) {
                fraction = fraction * 10 + (c - '0');
                ++fractionDigits;
            } else if (roundingDigit < 0) {
                roundingDigit = c - '0';
            } else if (c != '0') {
                restNonZero = true;
            }
        } else {
            return std::nullopt;
        }
    }
    if (!seenDigit)
        return std::nullopt;
    for (int i = fractionDigits; i < 4; ++i)
        fraction *= 10;
    std::int64_t units = whole * Scale + fraction;
    // Half to even, as a conversion to Currency rounds.
    if (roundingDigit > 5 || (roundingDigit == 5 && (restNonZero || units % 2 != 0)))
        ++units;
    return fromUnits(negative ? -units : units);
}

namespace {

// Digits of |units| as "whole" and "fraction without trailing zeros".
void splitDigits(std::int64_t units, std::string& whole, std::string& fraction) {
    const std::uint64_t magnitude = units < 0 ? static_cast<std::uint64_t>(-(units + 1)) + 1
                                              : static_cast<std::uint64_t>(units);
    whole = std::to_string(magnitude / RecordId::Scale);
    std::uint64_t rest = magnitude % RecordId::Scale;
    fraction.clear();
    if (rest != 0) {
        fraction = std::to_string(rest + RecordId::Scale).substr(1); // four digits, zero-padded
        while (fraction.back() == '0')
            fraction.pop_back();
    }
}

} // namespace

std::string RecordId::text() const {
    std::string whole, fraction;
    splitDigits(units_, whole, fraction);
    std::string out = units_ < 0 ? "-" : "";
    out += whole;
    if (!fraction.empty())
        out += "." + fraction;
    return out;
}

std::string RecordId::numberText() const {
    std::string whole, fraction;
    splitDigits(units_, whole, fraction);
    std::string out = units_ < 0 ? "-" : " ";
    if (fraction.empty())
        return out + whole;
    if (whole != "0")
        out += whole;
    return out + "." + fraction;
}

} // namespace folio
