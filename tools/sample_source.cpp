#include "sample_source.h"

#include "sample_fields.h"

#include <algorithm>
#include <filesystem>

namespace fs = std::filesystem;

namespace folio::sample_source {

namespace {

// --- Scanning the text into records -----------------------------------------------------------

std::size_t indentOf(std::string_view line) {
    const std::size_t n = line.find_first_not_of(' ');
    return n == std::string_view::npos ? line.size() : n;
}

class Scanner {
public:
    Scanner(std::vector<Record>& out, const std::string& file) : out_(out), file_(file) {}

    void line(std::string_view text, int number) {
        number_ = number;
        if (text.find('\t') != std::string_view::npos)
            fail("a tab; indent and divide with blanks");
        if (!isUtf8(text))
            fail("the line isn't valid UTF-8");
        const std::size_t indent = indentOf(text);
        const bool blank = indent == text.size();
        if (openBlock_ && (blank || indent >= 4)) {
            if (blank)
                ++pendingBlank_;
            else
                blockLine(text.substr(4));
            return;
        }
        closeBlock();
        if (blank || text[indent] == '#')
            return;
        if (indent == 0)
            header(text);
        else if (indent == 2)
            field(text.substr(2));
        else
            fail("indent a field by two blanks, the lines of a text by four or more");
    }

    void finish() { closeBlock(); }

private:
    [[noreturn]] void fail(const std::string& problem) const {
        throw SourceError(file_, number_, problem);
    }

    void header(std::string_view text) {
        const std::vector<std::string_view> w = words(text);
        const std::optional<Kind> kind = kindOfWord(w[0]);
        if (!kind)
            fail("\"" + std::string(w[0]) +
                 "\" isn't a kind of record (person, event, note, place, source, address, "
                 "picture, status, kind, file), or a field lacks its indentation");
        Record record;
        record.kind = *kind;
        record.file = file_;
        record.line = number_;
        if (record.kind == Kind::File) {
            if (w.size() != 1)
                fail("the record file has no id and no number");
        } else if (record.kind == Kind::EventKind) {
            long long n = 0;
            if (w.size() != 2 || !readNumber(w[1], n) || n > 32767)
                fail("write kind and the number of the event kind, as \"kind 44\"");
            record.id = std::string(w[1]);
            record.counter = n;
        } else {
            if (w.size() != 3 || !isId(w[1]) || w[2].size() < 2 || w[2][0] != '#' ||
                !readNumber(w[2].substr(1), record.counter) || record.counter == 0)
                fail("write the kind, an id of small letters, digits and hyphens, and the "
                     "record's number from 1, as \"person fritz #28\"");
            record.id = std::string(w[1]);
        }
        out_.push_back(std::move(record));
    }

    void field(std::string_view text) {
        if (out_.empty())
            fail("a field before the first record");
        Record& record = out_.back();
        const std::size_t colon = text.find(':');
        if (colon == std::string_view::npos)
            fail("a field is written \"key: value\"");
        Entry entry;
        entry.line = number_;
        std::string_view key = trim(text.substr(0, colon));
        if (key.ends_with(')')) {
            const std::size_t open = key.find(" (");
            if (open == std::string_view::npos)
                fail("a modifier is written \"key (plain):\"");
            entry.modifier = std::string(key.substr(open + 2, key.size() - open - 3));
            key = key.substr(0, open);
        }
        entry.key = std::string(key);
        entry.value = std::string(trim(text.substr(colon + 1)));
        const FieldRule* rule = ruleOf(record.kind, entry.key);
        if (!rule)
            fail("\"" + entry.key + "\" isn't a field of a " + std::string(wordOf(record.kind)));
        if (!rule->many && record.has(entry.key))
            fail("\"" + entry.key + "\" is given twice");
        if (entry.value.empty())
            openBlock_ = true;
        else
            entry.lines.push_back(entry.value);
        record.entries.push_back(std::move(entry));
    }

    void blockLine(std::string_view text) {
        std::vector<std::string>& lines = out_.back().entries.back().lines;
        lines.insert(lines.end(), lines.empty() ? 0 : pendingBlank_, std::string());
        pendingBlank_ = 0;
        lines.emplace_back(text);
    }

    void closeBlock() {
        if (openBlock_ && out_.back().entries.back().lines.empty()) {
            number_ = out_.back().entries.back().line;
            fail("\"" + out_.back().entries.back().key +
                 "\" has neither a value nor lines indented by four blanks below it");
        }
        openBlock_ = false;
        pendingBlank_ = 0;
    }

    std::vector<Record>& out_;
    const std::string& file_;
    int number_ = 0;
    bool openBlock_ = false;
    int pendingBlank_ = 0;
};

void scan(std::vector<Record>& out, std::string_view text, const std::string& file) {
    if (text.starts_with("\xEF\xBB\xBF"))
        text.remove_prefix(3);
    Scanner scanner(out, file);
    int number = 0;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        std::string_view line = text.substr(0, end);
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        if (line.ends_with('\r'))
            line.remove_suffix(1);
        scanner.line(line, ++number);
    }
    scanner.finish();
}

} // namespace

// --- Records and the sample ---------------------------------------------------------------------

std::string_view tableOf(Kind kind) {
    switch (kind) {
    case Kind::Person:
        return "Daten";
    case Kind::Event:
        return "Ereignis";
    case Kind::Note:
        return "Notiz";
    case Kind::Place:
        return "Ort";
    case Kind::Source:
        return "Dokument";
    case Kind::Address:
        return "Adressen";
    case Kind::Picture:
        return "Bilder";
    case Kind::Status:
        return "Status";
    case Kind::EventKind:
        return "Ereignisdb";
    case Kind::File:
        return "Version";
    }
    return "";
}

char letterOf(Kind kind) {
    switch (kind) {
    case Kind::Person:
        return 'D';
    case Kind::Event:
        return 'E';
    case Kind::Note:
        return 'R';
    case Kind::Place:
        return 'O';
    case Kind::Source:
        return 'U';
    case Kind::Address:
        return 'A';
    case Kind::Picture:
        return 'B';
    default:
        return 0;
    }
}

const Entry* Record::find(std::string_view key) const {
    for (const Entry& entry : entries)
        if (entry.key == key)
            return &entry;
    return nullptr;
}

std::vector<const Entry*> Record::all(std::string_view key) const {
    std::vector<const Entry*> out;
    for (const Entry& entry : entries)
        if (entry.key == key)
            out.push_back(&entry);
    return out;
}

std::string Record::text(std::string_view key) const {
    const Entry* entry = find(key);
    return entry ? entry->value : std::string();
}

std::vector<const Record*> Sample::recordsOf(Kind kind) const {
    std::vector<const Record*> out;
    for (const Record& record : records_)
        if (record.kind == kind)
            out.push_back(&record);
    return out;
}

const Record* Sample::byId(std::string_view id) const {
    const auto it = ids_.find(id);
    return it == ids_.end() ? nullptr : &records_[it->second];
}

Date Sample::date(const Record& record, const Entry& entry) const {
    return Reader(record, entry).date(entry.key != "until");
}

Stamp Sample::stamp(const Record& record, const Entry& entry) const {
    return Reader(record, entry).stamp();
}

bool Sample::yes(const Record& record, std::string_view key) const {
    const Entry* entry = record.find(key);
    return entry && Reader(record, *entry).yesNo();
}

long long Sample::number(const Record& record, const Entry& entry) const {
    return Reader(record, entry).number();
}

const Record* Sample::ref(const Record& record, std::string_view key) const {
    const Entry* entry = record.find(key);
    return entry ? reference(record, *entry).target : nullptr;
}

std::vector<const Record*> Sample::refs(const Record& record, const Entry& entry) const {
    std::vector<const Record*> out;
    for (std::string_view id : words(entry.value)) {
        const Record* target = byId(id);
        if (!target)
            Reader(record, entry).fail("no record has the id \"" + std::string(id) + "\"");
        out.push_back(target);
    }
    return out;
}

Reference Sample::reference(const Record& record, const Entry& entry) const {
    const std::vector<std::string_view> w = words(entry.value, 2);
    Reference out;
    out.rest = w.size() > 1 ? std::string(w[1]) : std::string();
    if (w.front().starts_with('#') && entry.key == "association") {
        if (!readNumber(w.front().substr(1), out.number) || out.number == 0)
            Reader(record, entry).fail("a raw number is written #998");
        return out;
    }
    out.target = byId(w.front());
    if (!out.target)
        Reader(record, entry).fail("no record has the id \"" + std::string(w.front()) + "\"");
    out.number = out.target->counter;
    return out;
}

Role Sample::role(const Record& record, const Entry& entry) const {
    const std::vector<std::string_view> w = words(entry.value, 3);
    Role out;
    out.letter = w[0][0];
    out.person = byId(w[1]);
    if (!out.person)
        Reader(record, entry).fail("no record has the id \"" + std::string(w[1]) + "\"");
    out.asso = w.size() > 2 ? std::string(w[2]) : std::string();
    return out;
}

void Sample::index() {
    std::map<std::pair<Kind, long long>, const Record*> numbers;
    for (std::size_t i = 0; i < records_.size(); ++i) {
        const Record& record = records_[i];
        auto fail = [&](const std::string& problem) {
            throw SourceError(record.file, record.line, problem);
        };
        if (record.kind == Kind::File) {
            if (file_)
                fail("a second record file; the first stands in " + file_->file + ":" +
                     std::to_string(file_->line));
            file_ = &record;
            continue;
        }
        const auto [number, isNew] =
            numbers.emplace(std::pair(record.kind, record.counter), &record);
        if (!isNew)
            fail("the number " + std::to_string(record.counter) + " of table " +
                 std::string(tableOf(record.kind)) + " was given before, in " +
                 number->second->file + ":" + std::to_string(number->second->line));
        if (record.kind == Kind::EventKind)
            continue;
        const auto [id, isNewId] = ids_.emplace(record.id, i);
        if (!isNewId)
            fail("the id \"" + record.id + "\" was given before, in " + records_[id->second].file +
                 ":" + std::to_string(records_[id->second].line));
    }
    if (!file_)
        throw SourceError(records_.empty() ? std::string("sample") : records_.front().file, 0,
                          "the record file (author, change stamp) is missing");
}

void Sample::check() const {
    for (const Record& record : records_) {
        for (const FieldRule& rule : rulesOf(record.kind))
            if (rule.required && !record.has(rule.key))
                throw SourceError(record.file, record.line,
                                  std::string(wordOf(record.kind)) + " " + record.id +
                                      " lacks the field \"" + std::string(rule.key) + "\"");
        for (const Entry& entry : record.entries) {
            const FieldRule& rule = *ruleOf(record.kind, entry.key);
            checkValue(record, entry, rule);
            std::vector<const Record*> targets;
            if (rule.type == Type::Ref || rule.type == Type::Link || rule.type == Type::Association)
                targets.push_back(reference(record, entry).target);
            else if (rule.type == Type::Refs)
                targets = refs(record, entry);
            else if (rule.type == Type::Role)
                targets.push_back(role(record, entry).person);
            for (const Record* target : targets)
                if (target && !mayName(rule, target->kind))
                    Reader(record, entry)
                        .fail("\"" + target->id + "\" is a " + std::string(wordOf(target->kind)) +
                              ", which this field can't name");
        }
        if (record.kind == Kind::Person && yes(record, "living") && record.has("died"))
            throw SourceError(record.file, record.find("died")->line,
                              "a living person has no death date");
        if (record.kind == Kind::Picture && yes(record, "missing") != record.has("size"))
            throw SourceError(record.file, record.line,
                              "a picture whose file is missing gives its size, and only such "
                              "a picture: the size of the others is that of their files");
    }
}

Sample parseFiles(const std::vector<std::pair<std::string, std::string>>& files) {
    Sample sample;
    for (const auto& [name, text] : files)
        scan(sample.records_, text, name);
    sample.index();
    sample.check();
    return sample;
}

Sample readFolder(const std::string& folder) {
    std::vector<std::string> names;
    std::error_code ec;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder, ec))
        if (entry.path().extension() == ".txt")
            names.push_back(entry.path().string());
    if (ec)
        throw SourceError(folder, 0, "can't be read: " + ec.message());
    std::sort(names.begin(), names.end());
    std::vector<std::pair<std::string, std::string>> files;
    for (const std::string& name : names)
        files.emplace_back(name, tsv::readFile(name));
    return parseFiles(files);
}

} // namespace folio::sample_source
