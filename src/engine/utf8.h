// UTF-8, in which the program holds every text, and Windows-1252, the single-byte code page
// of the users' systems ("Ansi"): checking, decoding, encoding, counting and cutting by
// characters, and the way between the two. The one place where bytes become characters.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace folio {

// Whether the bytes are well-formed UTF-8.
bool isUtf8(std::string_view bytes);
// The characters of a UTF-8 text; each malformed byte becomes U+FFFD.
std::u32string codePoints(std::string_view utf8);
// Appends the UTF-8 bytes of a character; a value that is no character adds nothing.
void appendUtf8(std::string& out, char32_t c);
std::string toUtf8(std::u32string_view text);

// Number of characters of a UTF-8 text.
std::size_t utf8Length(std::string_view s);
// The first `n` characters of a UTF-8 text: a cut never leaves half a character.
std::string utf8Left(std::string_view s, std::size_t n);

// The character of a Windows-1252 byte (the five bytes that the code page leaves free stand
// for the C1 control characters of the same number).
char32_t fromWindows1252(unsigned char byte);
// The Windows-1252 bytes of a text; a character that the code page lacks becomes "?".
std::string toWindows1252(std::string_view utf8);
// A text of the single-byte code page in UTF-8; a text that is valid UTF-8 already stays.
std::string fromWindows1252Text(std::string_view bytes);

} // namespace folio
