// Small text helpers of the whole program (ASCII case folding, trimming, quoting, numbers).
// UTF-8 has a module of its own: engine/utf8.h.
#pragma once

#include "engine/utf8.h"

#include <string>
#include <string_view>

namespace folio {

std::string upperAscii(std::string_view s);
std::string lowerAscii(std::string_view s);
bool equalsNoCase(std::string_view a, std::string_view b);
// Trimming as the program means it everywhere: blanks (" ") go from both ends, nothing else;
// a tab is text. A text is empty "once trimmed" when it holds blanks alone.
std::string_view trimBlanks(std::string_view s);
std::string trimmed(std::string_view s);
std::string_view trimBlanksRight(std::string_view s);
bool isBlank(std::string_view s);
// For reading numbers, SQL and file formats: blanks, tabs, CR and LF go from both ends.
std::string_view trimWhitespace(std::string_view s);
// Replaces every `was` in `text` by `durch`, left to right; what is put in isn't searched
// again.
void replaceAll(std::string& text, std::string_view was, std::string_view durch);
// "name" with inner double quotes doubled: an SQL identifier.
std::string quoteIdentifier(std::string_view name);
// 'text' with inner apostrophes doubled: an SQL string literal.
std::string quoteString(std::string_view text);
// The number that a text begins with, read as the classic Val does: leading blanks skipped,
// blanks between the digits ignored, a sign, digits and one decimal point; 0 when the text
// begins with no number ("12 Apostel" gives 12, "1.0" gives 1, "x1" gives 0).
double numericValue(std::string_view s);
// A number of at least two digits, with a leading zero below 10 ("05", "12", "123").
std::string twoDigits(int n);

} // namespace folio
