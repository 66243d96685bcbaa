// What each kind of record of the sample source may hold, and the reading of the values of
// its fields. Used by the reader of the source (sample_source.cpp) alone.
#pragma once

#include "sample_source.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace folio::sample_source {

enum class Type {
    Text,        // one line
    Rich,        // a line or a block, turned into rich text unless marked "(plain)"
    Plain,       // a line or a block, lines joined by line breaks
    Date,        // a partial date with an optional qualifier
    Until,       // a partial date without a qualifier
    Stamp,       // dd.mm.yyyy hh:mm
    YesNo,       // yes or no
    Letter,      // one of `letters`
    Number,      // a whole number from 0
    KindNumber,  // the number of an event kind, a label may follow
    Guid,        // {XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}, or "blank"
    Sex,         // M, F, or - for not known
    Ref,         // one id
    Refs,        // ids divided by blanks
    Link,        // an id, a note may follow
    Role,        // a letter, an id, a role in words may follow
    Association, // an id or #number, a role may follow
};

struct FieldRule {
    std::string_view key;
    Type type;
    unsigned targets = 0;          // kinds that a reference may name, a bit per kind
    std::string_view letters = {}; // Letter: the letters allowed
    int size = 255;                // Text: at most this many characters
    bool many = false;
    bool required = false;
};

// The fields of a kind of record, and one of them by its key (null for an unknown key).
const std::vector<FieldRule>& rulesOf(Kind kind);
const FieldRule* ruleOf(Kind kind, std::string_view key);
// Whether a reference of `rule` may name a record of `kind`.
bool mayName(const FieldRule& rule, Kind kind);
// The word of a kind in a record's first line ("person"), and the kind of a word.
std::string_view wordOf(Kind kind);
std::optional<Kind> kindOfWord(std::string_view word);

std::string_view trim(std::string_view s);
// The words of a text divided by blanks; with `limit`, the last word takes the rest.
std::vector<std::string_view> words(std::string_view s, std::size_t limit = 0);
// A whole number from 0 of at most 12 digits.
bool readNumber(std::string_view s, long long& n);
// Small letters, digits and hyphens, not beginning with a hyphen.
bool isId(std::string_view s);
bool isUtf8(std::string_view s);

// Reads the value of one field, raising SourceError at the field's line where it doesn't fit.
class Reader {
public:
    Reader(const Record& record, const Entry& entry) : record_(record), entry_(entry) {}

    [[noreturn]] void fail(const std::string& problem) const;
    Date date(bool qualifierAllowed) const;
    Stamp stamp() const;
    bool yesNo() const;
    long long number() const; // the number at the start of the value

private:
    const Record& record_;
    const Entry& entry_;
};

// Checks the form of one value against its field; references are checked apart, once all
// records are known.
void checkValue(const Record& record, const Entry& entry, const FieldRule& rule);

} // namespace folio::sample_source
