// Texts between UTF-8, in which the program holds them, and Windows-1252, the single-byte
// code page of the users' systems.
#pragma once

#include <string>

namespace folio {

// Whether the bytes are well-formed UTF-8.
bool ist_utf8(const std::string& bytes);
// The code points of a UTF-8 text; malformed bytes become U+FFFD.
std::u32string codepunkte(const std::string& utf8);
std::string utf8_aus(const std::u32string& text);
// The Windows-1252 bytes of a text; a character that the code page lacks becomes "?".
std::string ansi_text(const std::string& text);
// A text of the single-byte code page in UTF-8; a text that is valid UTF-8 already stays.
std::string aus_ansi(const std::string& bytes);

} // namespace folio
