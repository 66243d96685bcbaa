// The language texts as a reviewable text source, and the language database built from it.
//
// The source (data/language/texts.tsv) holds one key a line: the key number, the German text
// and the English text, divided by tabs. A line that begins with "#" is a comment, an empty
// line is passed over. Inside a text, "\n" stands for a line break, "\t" for a tab and "\\"
// for a backslash; every other character, blanks at either end included, is taken as it is.
// The file is UTF-8; a byte order mark at its start is passed over, and so is a CR before a
// line end.
//
// The database is language.mdb: table "Languages" with the key in `Counter` (unique index
// "Counter") and one Memo field per language, named as the language ("Deutsch", "English").
// A cell left empty in the source is stored as the empty text, not as Null: the lookup takes
// an empty field of a language as "no text in this language" either way, and a reader of the
// file doesn't have to tell the two apart.
#pragma once

#include "database/errors.h"

#include <string>
#include <string_view>
#include <vector>

namespace folio::language_source {

struct Row {
    int number = 0;
    std::string german;
    std::string english;
    int line = 0; // line of the source, for messages
};

// A bad line of the source, or a source that can't be read (line 0). what() reads
// "file:line: what is wrong", or "file: what is wrong" without a line.
class SourceError : public Error {
public:
    SourceError(const std::string& file, int line, const std::string& problem)
        : Error(0, file + (line > 0 ? ":" + std::to_string(line) : std::string()) + ": " + problem),
          file_(file), line_(line) {}
    const std::string& file() const noexcept { return file_; }
    int line() const noexcept { return line_; }

private:
    std::string file_;
    int line_;
};

// The rows of a source text, in the order of the text. `fileName` only names the source in
// messages. Raises SourceError at the first bad line: a line without exactly three columns, a
// number that isn't a whole number from 1 to 2147483647, a number given twice, an unknown
// escape, or bytes that aren't UTF-8.
std::vector<Row> parseTexts(std::string_view text, const std::string& fileName);

// Reads and parses a source file. Raises SourceError for a file that can't be read.
std::vector<Row> readTexts(const std::string& path);

// Writes the language database `path` with the rows. The file is written beside the target
// and put in its place when complete, so that a failure leaves no half file and an older file
// of that name as it was.
void buildLanguageDatabase(const std::vector<Row>& rows, const std::string& path);

} // namespace folio::language_source
