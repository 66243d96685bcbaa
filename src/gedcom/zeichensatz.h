// The character sets of the GEDCOM file: Ansi (Windows-1252) and UTF-8, by the program's one
// module of encodings (engine/utf8.h).
#pragma once

#include "engine/utf8.h"

#include <string>

namespace folio {

// The Windows-1252 bytes of a text; a character that the code page lacks becomes "?".
inline std::string ansi_text(const std::string& text) {
    return toWindows1252(text);
}
// A text of the single-byte code page in UTF-8; a text that is valid UTF-8 already stays.
inline std::string aus_ansi(const std::string& bytes) {
    return fromWindows1252Text(bytes);
}

} // namespace folio
