// Line output: every line of the GEDCOM file passes through here. Lines end in CR LF; the
// character set is the run's: Ansi is Windows-1252 (a character it lacks becomes "?"),
// UTF-8 the UTF-8 bytes, and no byte order mark stands anywhere.
#pragma once

#include <cstdint>
#include <string>

namespace folio {

class Exportlauf;
enum class Zeichensatz;

// The line as the file holds it, in the character set of the run (without the line end).
std::string z(Zeichensatz zeichensatz, const std::string& zeile);
// The UTF-8 bytes of a text (the program's texts are UTF-8 already; malformed bytes become
// U+FFFD).
std::string utf8_text(const std::string& text);

// A text for a line of its own: every control character but the tab (CR, LF, ...) becomes a
// blank, so that no value from a tree or a user can end its line or begin a record.
std::string einzeilig(std::string text);

// A text of a tree or a user as the value of a line: a leading "@" doubled, as GEDCOM writes
// an "@" of a text, so that no reader takes "@Hof Ulm@" for a pointer to a record.
std::string textwert(std::string text);

// Writes one line: z of it, made einzeilig, and CR LF. Every line but the folded text of
// GEDtext goes out here.
void zeile(Exportlauf& lauf, const std::string& text);
// Writes a line of a level, a tag and a value: "level tag value".
void zeile(Exportlauf& lauf, int ebene, const std::string& text);

// Writes `tag` with a free text of any length at `ebene`, folded into CONT lines at its line
// breaks and CONC lines where a piece grows longer than about 100 characters; nothing for a
// text of blanks and line breaks alone. A lone CR or LF and the other control characters but
// the tab go out as blanks.
void GEDtext(Exportlauf& lauf, std::int16_t ebene, const std::string& tag, const std::string& text);

// The folded form of GEDtext without the output: the string that GEDtext hands to z.
std::string gedtext_gefaltet(std::int16_t ebene, const std::string& tag, const std::string& text);

} // namespace folio
