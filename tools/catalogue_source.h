// The event catalogue as a reviewable text source, and Ereignis.mdb built from it.
//
// The source (data/events/catalogue.tsv) holds one kind of event a line, in 18 columns divided
// by tabs: Index, gedtag, maxhauptpersonen, mainindex, OrtPos, CAUSasTAG (0 or 1), Level,
// Sortindex, Personenarten, txtzeichen, then Art, Text_vor, Text_nach and Ereignisgrund in
// German and the same four in English. Comments, escapes and the encoding follow the common
// rules of the text sources (tsv.h).
//
// The kinds are numbered from 0 without a gap, in the order of the lines: events store the
// number of their kind, and the event icons are loaded by it. `mainindex` names the kind on
// which a kind depends, -1 for none. Taking a kind into a family tree's own `Ereignisdb`
// takes the whole chain with it and stops only at -1 or a missing kind, so every chain must
// end at -1 and never come back to a kind it has passed.
//
// The database has one table per language, "Deutsch" and "English", with the fields of
// `Ereignisdb` and a `Counter`; the columns that don't depend on the language stand the same
// in both. The text fields of the catalogue don't take the empty text, so a cell left empty
// is stored as one blank; every reader trims.
#pragma once

#include "tsv.h"

#include <string>
#include <string_view>
#include <vector>

namespace folio::catalogue_source {

// The columns of a kind that are said in words, in one language.
struct Texts {
    std::string art;
    std::string textVor;
    std::string textNach;
    std::string ereignisgrund;
};

struct Row {
    int index = 0;
    std::string gedtag; // empty where GEDCOM has no tag for the kind
    int maxhauptpersonen = 1;
    int mainindex = -1;
    int ortPos = 0;
    bool causAsTag = false;
    int level = 1;
    int sortindex = 0;
    std::string personenarten;
    std::string txtzeichen;
    Texts german;
    Texts english;
    int line = 0; // line of the source, for messages
};

// A bad line of the source, or a source that can't be read (line 0).
using SourceError = tsv::SourceError;

// The kinds of a source text, in the order of their numbers. `fileName` only names the source
// in messages. Raises SourceError at the first bad line: a line without exactly 18 columns, a
// number that isn't whole or lies outside its field's range, an Index given twice or out of
// the sequence 0, 1, 2 ..., a maxhauptpersonen other than 1 or 2, an OrtPos or CAUSasTAG other
// than 0 or 1, a gedtag that isn't a tag, an empty Art, a text longer than its field, a
// mainindex that names no kind, or a mainindex chain that comes back to a kind.
std::vector<Row> parseCatalogue(std::string_view text, const std::string& fileName);

// Reads and parses a source file. Raises SourceError for a file that can't be read.
std::vector<Row> readCatalogue(const std::string& path);

// Writes the catalogue database `path` with the rows. The file is written beside the target
// and put in its place when complete, so that a failure leaves no half file and an older file
// of that name as it was.
void buildCatalogue(const std::vector<Row>& rows, const std::string& path);

} // namespace folio::catalogue_source
