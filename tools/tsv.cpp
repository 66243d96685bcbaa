#include "tsv.h"

#include <charconv>
#include <fstream>
#include <sstream>
#include <system_error>

namespace folio::tsv {

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

} // namespace

std::vector<Line> wholeLines(std::string_view text, const std::string& fileName) {
    if (text.starts_with(ByteOrderMark))
        text.remove_prefix(ByteOrderMark.size());
    std::vector<Line> lines;
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
        lines.push_back({lineNumber, {line}});
    }
    return lines;
}

std::vector<Line> dataLines(std::string_view text, const std::string& fileName) {
    std::vector<Line> lines = wholeLines(text, fileName);
    for (Line& line : lines)
        line.cells = splitTabs(line.cells.front());
    return lines;
}

std::string unescape(std::string_view cell, std::string_view column, const std::string& fileName,
                     int line) {
    std::string text;
    text.reserve(cell.size());
    for (std::size_t i = 0; i < cell.size(); ++i) {
        if (cell[i] != '\\') {
            text += cell[i];
            continue;
        }
        if (i + 1 == cell.size())
            throw SourceError(fileName, line,
                              "a backslash ends the " + std::string(column) +
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
            throw SourceError(fileName, line,
                              std::string("unknown escape \\") + next + " in the " +
                                  std::string(column) + " text (known are \\n, \\t and \\\\)");
        }
    }
    return text;
}

bool parseInteger(std::string_view cell, int& number) {
    const char* first = cell.data();
    const char* last = cell.data() + cell.size();
    const auto [end, ec] = std::from_chars(first, last, number);
    return !cell.empty() && ec == std::errc() && end == last;
}

std::size_t characterCount(std::string_view utf8) {
    std::size_t count = 0;
    for (char c : utf8)
        if ((static_cast<unsigned char>(c) & 0xC0) != 0x80)
            ++count;
    return count;
}

std::string readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in)
        throw SourceError(path, 0, "can't be read");
    std::ostringstream content;
    content << in.rdbuf();
    if (in.bad())
        throw SourceError(path, 0, "can't be read");
    return content.str();
}

} // namespace folio::tsv
