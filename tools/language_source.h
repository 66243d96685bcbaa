// The language texts as a reviewable text source, and the language database built from it.
//
// The source (data/language/texts.tsv) holds one key a line: the key number, the German text
// and the English text, divided by tabs. Comments, escapes and the encoding follow the common
// rules of the text sources (tsv.h).
//
// The database is language.mdb: table "Languages" with the key in `Counter` (unique index
// "Counter") and one Memo field per language, named as the language ("Deutsch", "English").
// A cell left empty in the source is stored as the empty text, not as Null: the lookup takes
// an empty field of a language as "no text in this language" either way, and a reader of the
// file doesn't have to tell the two apart.
#pragma once

#include "tsv.h"

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

// A bad line of the source, or a source that can't be read (line 0).
using SourceError = tsv::SourceError;

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
