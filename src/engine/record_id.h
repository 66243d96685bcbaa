// RecordId: the number of a record (field `Counter`) and of a reference to one. A 64-bit
// fixed-point number with four decimal places, as the family-tree files store it; 0 means
// "no reference".
#pragma once

#include <compare>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace folio {

class RecordId {
public:
    static constexpr std::int64_t Scale = 10000;

    constexpr RecordId() = default;
    constexpr explicit RecordId(std::int64_t whole) : units_(whole * Scale) {}

    static constexpr RecordId fromUnits(std::int64_t units) {
        RecordId id;
        id.units_ = units;
        return id;
    }
    // The whole number `whole`, as read from a file; throws folio::Error (overflow) where it
    // lies beyond the range of the type (a damaged file), which the constructor doesn't check.
    static RecordId fromWhole(std::int64_t whole) {
        if (whole > MaxWhole || whole < -MaxWhole)
            overflow(whole);
        return RecordId(whole);
    }
    // Rounds to four decimals, half to even, as a conversion to Currency does.
    // Throws folio::Error (overflow) outside the range of the type.
    static RecordId fromDouble(double value);
    // Parses a plain decimal ("123", " -4.25 "); nullopt when the text is no number.
    static std::optional<RecordId> parse(std::string_view text);

    constexpr std::int64_t units() const { return units_; }
    constexpr bool isZero() const { return units_ == 0; }
    constexpr bool isWhole() const { return units_ % Scale == 0; }
    double toDouble() const { return static_cast<double>(units_) / Scale; }

    // Plain decimal text without needless zeros: "123", "-4.25", "0.5".
    std::string text() const;
    // The number form with a leading blank for values that aren't negative, and no
    // zero in front of the decimal point: " 123", " .5", "-4.25".
    std::string numberText() const;
    // The literal for SQL text: plain decimal.
    std::string sqlLiteral() const { return text(); }

    constexpr auto operator<=>(const RecordId&) const = default;

private:
    static constexpr std::int64_t MaxWhole = INT64_MAX / Scale;
    [[noreturn]] static void overflow(std::int64_t whole);

    std::int64_t units_ = 0;
};

} // namespace folio

template <> struct std::hash<folio::RecordId> {
    std::size_t operator()(const folio::RecordId& id) const noexcept {
        return std::hash<std::int64_t>{}(id.units());
    }
};
