#include "sample_fields.h"

#include <unicode/utf8.h>

#include <algorithm>
#include <cctype>
#include <charconv>
#include <map>

namespace folio::sample_source {

namespace {

constexpr unsigned bit(Kind kind) {
    return 1u << static_cast<unsigned>(kind);
}
constexpr unsigned LinkTargets = bit(Kind::Person) | bit(Kind::Event) | bit(Kind::Note) |
                                 bit(Kind::Place) | bit(Kind::Source) | bit(Kind::Address) |
                                 bit(Kind::Picture);

FieldRule text(std::string_view key, int size = 255, bool required = false) {
    return {key, Type::Text, 0, {}, size, false, required};
}
FieldRule of(std::string_view key, Type type) {
    return {key, type};
}
FieldRule ref(std::string_view key, Kind target) {
    return {key, Type::Ref, bit(target)};
}
FieldRule letter(std::string_view key, std::string_view letters) {
    return {key, Type::Letter, 0, letters};
}
FieldRule many(std::string_view key, Type type, unsigned targets) {
    return {key, type, targets, {}, 255, true};
}

// The fields that every record of a table with a record letter may have.
void addCommon(std::vector<FieldRule>& keys, bool changed, bool addresses) {
    keys.push_back(of("marked", Type::YesNo));
    keys.push_back(many("link", Type::Link, LinkTargets));
    keys.push_back(ref("status", Kind::Status));
    if (changed)
        keys.push_back(of("changed", Type::Stamp));
    if (addresses)
        keys.push_back(many("address", Type::Ref, bit(Kind::Address)));
}

std::vector<FieldRule> personKeys() {
    std::vector<FieldRule> k = {
        of("sex", Type::Sex),
        text("npfx"),
        text("givn"),
        text("spfx"),
        text("surn"),
        text("familienname"),
        text("nfsx"),
        text("titl"),
        text("nick"),
        text("abbr"),
        text("rufnamen"),
        text("patronym"),
        of("namenote", Type::Plain),
        ref("father", Kind::Person),
        ref("mother", Kind::Person),
        of("born", Type::Date),
        ref("born-at", Kind::Place),
        of("died", Type::Date),
        ref("died-at", Kind::Place),
        ref("lives-at", Kind::Place),
        ref("picture", Kind::Picture),
        ref("note", Kind::Note),
        text("occu"),
        text("religion"),
        of("memo", Type::Rich),
        of("guid", Type::Guid),
        of("living", Type::YesNo),
        many("partner", Type::Link, bit(Kind::Person)),
        many("association", Type::Association, bit(Kind::Person)),
    };
    addCommon(k, true, true);
    return k;
}

std::vector<FieldRule> eventKeys() {
    std::vector<FieldRule> k = {
        {"kind", Type::KindNumber, 0, {}, 255, false, true},
        of("date", Type::Date),
        of("until", Type::Until),
        ref("place", Kind::Place),
        ref("picture", Kind::Picture),
        ref("note", Kind::Note),
        text("kurztext"),
        of("text", Type::Rich),
        text("grund"),
        of("level", Type::Number),
        many("main", Type::Refs, bit(Kind::Person)),
        many("role", Type::Role, bit(Kind::Person)),
    };
    addCommon(k, true, false);
    return k;
}

std::vector<FieldRule> noteKeys() {
    std::vector<FieldRule> k = {
        text("name", 255, true),   of("memo", Type::Rich),     text("file"),
        ref("parent", Kind::Note), of("entered", Type::Stamp),
    };
    addCommon(k, true, true);
    return k;
}

std::vector<FieldRule> placeKeys() {
    std::vector<FieldRule> k = {
        text("name", 255, true),       ref("parent", Kind::Place), of("memo", Type::Rich),
        ref("picture", Kind::Picture), ref("note", Kind::Note),
    };
    addCommon(k, false, true);
    return k;
}

std::vector<FieldRule> sourceKeys() {
    std::vector<FieldRule> k = {
        text("title", 255, true),
        letter("kind", "DHTAF"),
        letter("form", "OKA?H"),
        ref("parent", Kind::Source),
        text("file"),
        of("date", Type::Date),
        of("text", Type::Rich),
        ref("place", Kind::Place),
        ref("picture", Kind::Picture),
        ref("note", Kind::Note),
    };
    addCommon(k, true, true);
    return k;
}

std::vector<FieldRule> addressKeys() {
    std::vector<FieldRule> k = {
        text("listname", 255, true), of("lines", Type::Rich), of("memo", Type::Rich),
        ref("place", Kind::Place),   ref("note", Kind::Note),
    };
    addCommon(k, true, false);
    return k;
}

std::vector<FieldRule> pictureKeys() {
    std::vector<FieldRule> k = {
        text("title", 255, true),       text("file", 255, true),        of("missing", Type::YesNo),
        of("size", Type::Number),       of("description", Type::Plain), text("second-file"),
        of("second-text", Type::Plain), of("date", Type::Date),         ref("place", Kind::Place),
        ref("note", Kind::Note),
    };
    addCommon(k, true, false);
    return k;
}

struct KindName {
    std::string_view word;
    Kind kind;
};
constexpr KindName KindNames[] = {
    {"person", Kind::Person},   {"event", Kind::Event},   {"note", Kind::Note},
    {"place", Kind::Place},     {"source", Kind::Source}, {"address", Kind::Address},
    {"picture", Kind::Picture}, {"status", Kind::Status}, {"kind", Kind::EventKind},
    {"file", Kind::File},
};

constexpr std::string_view Qualifiers[] = {"ca.",  "um",     "nach", "vor", "err.",
                                           "ber.", "gesch.", "ab",   "bis"};

bool isLeapYear(int y) {
    return (y % 4 == 0 && y % 100 != 0) || y % 400 == 0;
}

int daysInMonth(int year, int month) {
    static const int days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return month == 2 && (year == 0 || isLeapYear(year)) ? 29 : days[month - 1];
}

// "12.03.1850", "03.1850", "1850", each part 0 where it isn't known.
bool readDateParts(std::string_view s, Date& date) {
    std::vector<std::string_view> parts;
    for (std::size_t start = 0;;) {
        const std::size_t dot = s.find('.', start);
        parts.push_back(s.substr(start, dot - start));
        if (dot == std::string_view::npos)
            break;
        start = dot + 1;
    }
    if (parts.size() > 3)
        return false;
    long long n[3] = {0, 0, 0};
    for (std::size_t i = 0; i < parts.size(); ++i)
        if (!readNumber(parts[i], n[i]) || parts[i].size() > 4)
            return false;
    const std::size_t k = parts.size();
    date.year = static_cast<int>(n[k - 1]);
    date.month = k >= 2 ? static_cast<int>(n[k - 2]) : 0;
    date.day = k == 3 ? static_cast<int>(n[0]) : 0;
    if (date.month > 12 || (date.day > 0 && date.month == 0))
        return false;
    return date.day == 0 || date.day <= daysInMonth(date.year, date.month);
}

bool isGuid(std::string_view s) {
    if (s.size() != 38 || s.front() != '{' || s.back() != '}')
        return false;
    for (std::size_t i = 1; i < 37; ++i) {
        const char c = s[i];
        const bool dash = i == 9 || i == 14 || i == 19 || i == 24;
        if (dash ? c != '-' : !std::isxdigit(static_cast<unsigned char>(c)))
            return false;
    }
    return true;
}

} // namespace

const std::vector<FieldRule>& rulesOf(Kind kind) {
    static const std::map<Kind, std::vector<FieldRule>> rules = {
        {Kind::Person, personKeys()},
        {Kind::Event, eventKeys()},
        {Kind::Note, noteKeys()},
        {Kind::Place, placeKeys()},
        {Kind::Source, sourceKeys()},
        {Kind::Address, addressKeys()},
        {Kind::Picture, pictureKeys()},
        {Kind::Status,
         {text("name", 50, true), of("memo", Type::Rich), of("entered", Type::Stamp),
          of("changed", Type::Stamp)}},
        {Kind::EventKind,
         {text("name"), text("tag", 50), of("in-ereignisdb", Type::YesNo),
          of("in-catalogue", Type::YesNo)}},
        {Kind::File,
         {text("author-name"),
          text("author-address"),
          text("author-phone"),
          text("author-fax"),
          text("author-email"),
          text("author-web"),
          of("author-note", Type::Plain),
          of("gedcom-note", Type::Plain),
          of("author-locked", Type::YesNo),
          of("user-guid", Type::Guid),
          {"changed", Type::Stamp, 0, {}, 255, false, true}}},
    };
    return rules.at(kind);
}

const FieldRule* ruleOf(Kind kind, std::string_view key) {
    for (const FieldRule& rule : rulesOf(kind))
        if (rule.key == key)
            return &rule;
    return nullptr;
}

bool mayName(const FieldRule& rule, Kind kind) {
    return (rule.targets & bit(kind)) != 0;
}

std::string_view wordOf(Kind kind) {
    for (const KindName& k : KindNames)
        if (k.kind == kind)
            return k.word;
    return "?";
}

std::optional<Kind> kindOfWord(std::string_view word) {
    for (const KindName& k : KindNames)
        if (k.word == word)
            return k.kind;
    return std::nullopt;
}

std::string_view trim(std::string_view s) {
    const std::size_t first = s.find_first_not_of(' ');
    if (first == std::string_view::npos)
        return {};
    return s.substr(first, s.find_last_not_of(' ') - first + 1);
}

std::vector<std::string_view> words(std::string_view s, std::size_t limit) {
    std::vector<std::string_view> out;
    s = trim(s);
    while (!s.empty()) {
        if (limit && out.size() + 1 == limit) {
            out.push_back(s);
            break;
        }
        const std::size_t blank = s.find(' ');
        out.push_back(s.substr(0, blank));
        s = blank == std::string_view::npos ? std::string_view() : trim(s.substr(blank));
    }
    return out;
}

bool readNumber(std::string_view s, long long& n) {
    if (s.empty() || s.size() > 12)
        return false;
    const auto [end, ec] = std::from_chars(s.data(), s.data() + s.size(), n);
    return ec == std::errc() && end == s.data() + s.size() && n >= 0;
}

bool isId(std::string_view s) {
    if (s.empty() || s.front() == '-')
        return false;
    return std::all_of(s.begin(), s.end(), [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-';
    });
}

bool isUtf8(std::string_view s) {
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(s.data());
    const auto length = static_cast<std::int32_t>(s.size());
    for (std::int32_t i = 0; i < length;) {
        UChar32 c;
        U8_NEXT(bytes, i, length, c);
        if (c < 0)
            return false;
    }
    return true;
}

// --- Values -----------------------------------------------------------------------------------

void Reader::fail(const std::string& problem) const {
    throw SourceError(record_.file, entry_.line, entry_.key + ": " + problem);
}

Date Reader::date(bool qualifierAllowed) const {
    std::vector<std::string_view> w = words(entry_.value);
    Date date;
    if (!w.empty() && std::find(std::begin(Qualifiers), std::end(Qualifiers), w.front()) !=
                          std::end(Qualifiers)) {
        if (!qualifierAllowed)
            fail("this date takes no qualifier");
        date.qualifier = std::string(w.front());
        w.erase(w.begin());
    }
    if (w.size() != 1 || !readDateParts(w.front(), date))
        fail("\"" + entry_.value +
             "\" isn't a date such as 12.03.1850, 03.1850 or 1850, 0 for a part not known, "
             "with a qualifier (ca., um, nach, vor, err., ber., gesch., ab, bis) in front where "
             "allowed");
    return date;
}

Stamp Reader::stamp() const {
    const std::vector<std::string_view> w = words(entry_.value);
    Date d;
    long long hour = -1, minute = -1;
    const bool ok = w.size() == 2 && readDateParts(w[0], d) && d.day > 0 && d.year > 0 &&
                    w[1].size() == 5 && w[1][2] == ':' && readNumber(w[1].substr(0, 2), hour) &&
                    readNumber(w[1].substr(3, 2), minute) && hour < 24 && minute < 60;
    if (!ok)
        fail("\"" + entry_.value + "\" isn't a stamp such as 14.05.2004 18:30");
    return {d.year, d.month, d.day, static_cast<int>(hour), static_cast<int>(minute)};
}

bool Reader::yesNo() const {
    if (entry_.value != "yes" && entry_.value != "no")
        fail("write yes or no");
    return entry_.value == "yes";
}

long long Reader::number() const {
    long long n = 0;
    const std::vector<std::string_view> w = words(entry_.value, 2);
    if (w.empty() || !readNumber(w.front(), n))
        fail("\"" + entry_.value + "\" doesn't begin with a whole number");
    return n;
}

void checkValue(const Record& record, const Entry& entry, const FieldRule& rule) {
    const Reader r(record, entry);
    const bool block = entry.value.empty();
    const bool blockAllowed = rule.type == Type::Rich || rule.type == Type::Plain;
    if (block && !blockAllowed)
        r.fail("the value is missing");
    if (!entry.modifier.empty() && !(entry.modifier == "plain" && rule.type == Type::Rich) &&
        !(entry.modifier == "lower" && rule.key == "link"))
        r.fail("\"(" + entry.modifier + ")\" isn't known for this key");
    const std::vector<std::string_view> w = words(entry.value);
    switch (rule.type) {
    case Type::Text:
        if (tsv::characterCount(entry.value) > static_cast<std::size_t>(rule.size))
            r.fail("longer than " + std::to_string(rule.size) + " characters");
        break;
    case Type::Date:
    case Type::Until:
        r.date(rule.type == Type::Date);
        break;
    case Type::Stamp:
        r.stamp();
        break;
    case Type::YesNo:
        r.yesNo();
        break;
    case Type::Letter:
        if (entry.value.size() != 1 || rule.letters.find(entry.value[0]) == std::string::npos)
            r.fail("one of the letters " + std::string(rule.letters));
        break;
    case Type::Number:
        if (w.size() != 1)
            r.fail("a whole number alone");
        r.number();
        break;
    case Type::KindNumber:
        if (r.number() > 32767)
            r.fail("an event kind is a number up to 32767");
        break;
    case Type::Guid:
        if (entry.value != "blank" && !isGuid(entry.value))
            r.fail("a GUID of 38 characters, {XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}, or blank");
        break;
    case Type::Sex:
        if (entry.value != "M" && entry.value != "F" && entry.value != "-")
            r.fail("M, F, or - where it isn't known");
        break;
    case Type::Ref:
        if (w.size() != 1)
            r.fail("one id alone");
        break;
    case Type::Role:
        if (w.size() < 2 || w[0].size() != 1 || !std::isalpha(static_cast<unsigned char>(w[0][0])))
            r.fail("a role letter, the id of a person, and the role in words where wanted");
        break;
    case Type::Rich:
    case Type::Plain:
    case Type::Refs:
    case Type::Link:
    case Type::Association:
        break;
    }
}

} // namespace folio::sample_source
