// The sample family tree as a reviewable text source (data/sample/*.txt), read into records
// whose fields are checked against what each kind of record may hold. The files of the folder
// together describe one family-tree file; the format is told in the head of the main file,
// data/sample/stammbaum.txt.
//
// In short: a record begins with a line at the left margin, "<kind> <id> #<number>", such as
// "person fritz #28"; its fields follow, indented by two blanks, as "key: value". A field
// with nothing behind the colon takes the lines below it that are indented by four blanks or
// more as its text. Lines whose first non-blank character is "#" are comments (inside a text
// they are text). References name the id of another record, in any file of the folder.
#pragma once

#include "tsv.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace folio::sample_source {

using SourceError = tsv::SourceError;

// The kinds of records. The first seven are the tables of the record letters.
enum class Kind { Person, Event, Note, Place, Source, Address, Picture, Status, EventKind, File };

// The table of a kind ("Daten" for persons) and its record letter ('D'); 0 for kinds
// without one.
std::string_view tableOf(Kind kind);
char letterOf(Kind kind);

// A partial date: 0 for what isn't known; the qualifier as written ("ca.", "nach"), or "".
struct Date {
    std::string qualifier;
    int day = 0;
    int month = 0;
    int year = 0;
};

// A change stamp, to the minute.
struct Stamp {
    int year = 0, month = 0, day = 0, hour = 0, minute = 0;
};

// One field line with what followed it.
struct Entry {
    std::string key;
    std::string modifier;           // "plain" or "lower" from "key (plain):", else ""
    std::string value;              // the text behind the colon, trimmed
    std::vector<std::string> lines; // a text: the value alone, or the lines of the block
    int line = 0;
};

struct Record {
    Kind kind = Kind::File;
    std::string id; // for an event kind: its number
    long long counter = 0;
    std::string file;
    int line = 0;
    std::vector<Entry> entries;

    const Entry* find(std::string_view key) const;
    std::vector<const Entry*> all(std::string_view key) const;
    bool has(std::string_view key) const { return find(key) != nullptr; }
    // A field's one-line text, or "" where the record hasn't the field.
    std::string text(std::string_view key) const;
};

// A reference with the text behind it: "link: taufregister S. 34" gives the record of
// "taufregister" and "S. 34". A raw number ("#998", allowed for associations alone) gives no
// record and the number.
struct Reference {
    const Record* target = nullptr;
    long long number = 0;
    std::string rest;
};

// The role of a person in an event: "role: P gottlieb Taufpate".
struct Role {
    char letter = 0;
    const Record* person = nullptr;
    std::string asso;
};

class Sample {
public:
    // The records of all files, in the order of the files and, within one, of the text.
    const std::vector<Record>& records() const { return records_; }
    std::vector<const Record*> recordsOf(Kind kind) const;
    const Record* byId(std::string_view id) const;
    const Record& file() const { return *file_; }

    // Typed reading of a field that the checks have passed; `entry` belongs to `record`.
    Date date(const Record& record, const Entry& entry) const;
    Stamp stamp(const Record& record, const Entry& entry) const;
    bool yes(const Record& record, std::string_view key) const; // a yes/no field, "no" if absent
    long long number(const Record& record, const Entry& entry) const;
    const Record* ref(const Record& record, std::string_view key) const; // null if absent
    std::vector<const Record*> refs(const Record& record, const Entry& entry) const;
    Reference reference(const Record& record, const Entry& entry) const;
    Role role(const Record& record, const Entry& entry) const;

private:
    friend Sample parseFiles(const std::vector<std::pair<std::string, std::string>>& files);
    void index();
    void check() const;

    std::vector<Record> records_;
    std::map<std::string, std::size_t, std::less<>> ids_;
    const Record* file_ = nullptr;
};

// Parses the texts (file name, content) and checks them as one sample: every key known for
// its kind and given no more often than allowed, values of the right form, ids unique, numbers
// unique within a table, every reference pointing at a record of a kind that it may name.
// Raises SourceError at the first fault, with the file and line.
Sample parseFiles(const std::vector<std::pair<std::string, std::string>>& files);

// Reads every *.txt of `folder`, in the order of the names.
Sample readFolder(const std::string& folder);

} // namespace folio::sample_source
