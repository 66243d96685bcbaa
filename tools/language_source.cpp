#include "language_source.h"

#include "database/engine.h"
#include "database/file_beside.h"
#include "database/recordset.h"

#include <charconv>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <system_error>

namespace fs = std::filesystem;

namespace folio::language_source {

namespace {

constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";

// Whether `s` is well-formed UTF-8 (no overlong forms, no surrogates, nothing above U+10FFFF).
bool isUtf8(std::string_view s) {
    std::size_t i = 0;
    while (i < s.size()) {
        const auto c = static_cast<unsigned char>(s[i]);
        int follow = 0;
        unsigned char low = 0x80;
        unsigned char high = 0xBF;
        if (c < 0x80) {
            ++i;
            continue;
        } else if (c >= 0xC2 && c <= 0xDF) {
            follow = 1;
        } else if (c >= 0xE0 && c <= 0xEF) {
            follow = 2;
            low = c == 0xE0 ? 0xA0 : 0x80;
            high = c == 0xED ? 0x9F : 0xBF;
        } else if (c >= 0xF0 && c <= 0xF4) {
            follow = 3;
            low = c == 0xF0 ? 0x90 : 0x80;
            high = c == 0xF4 ? 0x8F : 0xBF;
        } else {
            return false;
        }
        if (s.size() - i <= static_cast<std::size_t>(follow))
            return false;
        for (int k = 1; k <= follow; ++k) {
            const auto b = static_cast<unsigned char>(s[i + k]);
            if (b < (k == 1 ? low : 0x80) || b > (k == 1 ? high : 0xBF))
                return false;
        }
        i += follow + 1;
    }
    return true;
}

// The key number of a row: digits only, from 1 to the largest Long.
bool parseNumber(std::string_view cell, int& number) {
    if (cell.empty())
        return false;
    for (char c : cell)
        if (c < '0' || c > '9')
            return false;
    const auto [end, ec] = std::from_chars(cell.data(), cell.data() + cell.size(), number);
    return ec == std::errc() && end == cell.data() + cell.size() && number > 0;
}

// Resolves the escapes of a text cell; `column` names the cell in a message.
std::string unescape(std::string_view cell, const char* column, const std::string& file, int line) {
    std::string text;
    text.reserve(cell.size());
    for (std::size_t i = 0; i < cell.size(); ++i) {
        if (cell[i] != '\\') {
            text += cell[i];
            continue;
        }
        if (i + 1 == cell.size())
            throw SourceError(file, line,
                              std::string("a backslash ends the ") + column +
                                  " text (write \\\\ for a backslash)");
        switch (const char next = cell[++i]) {
        case 'n':
            text += '\n';
            break;
        case 't':
            text += '\t';
            break;
        case '\\':
            text += '\\';
            break;
        default:
            throw SourceError(file, line,
                              std::string("unknown escape \\") + next + " in the " + column +
                                  " text (known are \\n, \\t and \\\\)");
        }
    }
    return text;
}

std::vector<std::string_view> splitTabs(std::string_view line) {
    std::vector<std::string_view> cells;
    std::size_t start = 0;
    for (;;) {
        const std::size_t tab = line.find('\t', start);
        cells.push_back(line.substr(start, tab - start));
        if (tab == std::string_view::npos)
            return cells;
        start = tab + 1;
    }
}

bool isBlankLine(std::string_view line) {
    return line.find_first_not_of(' ') == std::string_view::npos;
}

void createLanguagesTable(dao::Database& db) {
    using dao::TableDef;
    TableDef table = dao::Database::CreateTableDef("Languages");
    table.AppendField(TableDef::CreateField("Counter", FieldType::Long));
    for (const char* language : {"Deutsch", "English"}) {
        dao::FieldDef field = TableDef::CreateField(language, FieldType::Memo);
        field.AllowZeroLength = true;
        table.AppendField(field);
    }
    dao::IndexDef index = TableDef::CreateIndex("Counter", {"Counter"});
    index.Unique = true;
    table.AppendIndex(index);
    db.AppendTableDef(table);
}

} // namespace

std::vector<Row> parseTexts(std::string_view text, const std::string& fileName) {
    if (text.starts_with(ByteOrderMark))
        text.remove_prefix(ByteOrderMark.size());
    std::vector<Row> rows;
    std::map<int, int> lineOfNumber;
    int lineNumber = 0;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        std::string_view line = text.substr(0, end);
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        ++lineNumber;
        if (line.ends_with('\r'))
            line.remove_suffix(1);
        if (isBlankLine(line) || line.starts_with('#'))
            continue;
        if (!isUtf8(line))
            throw SourceError(fileName, lineNumber, "the line isn't valid UTF-8");

        const std::vector<std::string_view> cells = splitTabs(line);
        if (cells.size() != 3)
            throw SourceError(fileName, lineNumber,
                              "expected 3 columns divided by tabs (number, German, English), "
                              "found " +
                                  std::to_string(cells.size()));
        Row row;
        row.line = lineNumber;
        if (!parseNumber(cells[0], row.number))
            throw SourceError(fileName, lineNumber,
                              "the key \"" + std::string(cells[0]) +
                                  "\" isn't a whole number from 1 to 2147483647");
        const auto [first, isNew] = lineOfNumber.emplace(row.number, lineNumber);
        if (!isNew)
            throw SourceError(fileName, lineNumber,
                              "the key " + std::to_string(row.number) +
                                  " was given before, in line " + std::to_string(first->second));
        row.german = unescape(cells[1], "German", fileName, lineNumber);
        row.english = unescape(cells[2], "English", fileName, lineNumber);
        rows.push_back(std::move(row));
    }
    return rows;
}

std::vector<Row> readTexts(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in)
        throw SourceError(path, 0, "can't be read");
    std::ostringstream content;
    content << in.rdbuf();
    if (in.bad())
        throw SourceError(path, 0, "can't be read");
    return parseTexts(content.str(), path);
}

void buildLanguageDatabase(const std::vector<Row>& rows, const std::string& path) {
    const fs::path target = path;
    if (target.has_parent_path())
        fs::create_directories(target.parent_path());
    FileBeside file(target);
    {
        std::unique_ptr<dao::Database> db =
            dao::engine().workspace(0).CreateDatabase(file.path().string());
        dao::Transaction transaction(*db);
        createLanguagesTable(*db);
        std::unique_ptr<dao::Recordset> rs = db->OpenRecordset("Languages");
        for (const Row& row : rows) {
            rs->AddNew();
            rs->set("Counter", Value(row.number));
            rs->set("Deutsch", Value(row.german));
            rs->set("English", Value(row.english));
            rs->Update();
        }
        rs->Close();
        transaction.commit();
        db->Close();
    }
    file.putInPlace();
}

} // namespace folio::language_source
