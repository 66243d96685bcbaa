// Small text helpers of the database layer (ASCII case folding, trimming, quoting).
#pragma once

#include <string>
#include <string_view>

namespace folio {

std::string upperAscii(std::string_view s);
std::string lowerAscii(std::string_view s);
bool equalsNoCase(std::string_view a, std::string_view b);
std::string_view trimBlanks(std::string_view s);
// "name" with inner double quotes doubled: an SQL identifier.
std::string quoteIdentifier(std::string_view name);
// 'text' with inner apostrophes doubled: an SQL string literal.
std::string quoteString(std::string_view text);
// The number that a text begins with, read as the classic Val does: leading blanks skipped,
// blanks between the digits ignored, a sign, digits and one decimal point; 0 when the text
// begins with no number ("12 Apostel" gives 12, "1.0" gives 1, "x1" gives 0).
double numericValue(std::string_view s);
// Number of characters (code points) of a UTF-8 text.
std::size_t utf8Length(std::string_view s);

} // namespace folio
