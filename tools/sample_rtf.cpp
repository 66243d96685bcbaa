#include "sample_rtf.h"

#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include <cstdio>
#include <string_view>

namespace folio::sample_source {

namespace {

// The byte of Windows-1252 for a character, or 0 where the code page lacks it.
unsigned char windows1252(UChar32 c) {
    if (c < 0x80 || (c >= 0xA0 && c <= 0xFF))
        return static_cast<unsigned char>(c);
    static const UChar32 high[32] = {
        0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
        0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
        0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};
    for (int i = 0; i < 32; ++i)
        if (high[i] == c)
            return static_cast<unsigned char>(0x80 + i);
    return 0;
}

struct Mark {
    std::string_view tag;
    std::string_view control;
};
constexpr Mark Marks[] = {{"<b>", "\\b "},   {"</b>", "\\b0 "}, {"<i>", "\\i "},
                          {"</i>", "\\i0 "}, {"<u>", "\\ul "},  {"</u>", "\\ulnone "}};

void appendCharacter(std::string& out, UChar32 c) {
    char buf[16];
    if (c == '\\' || c == '{' || c == '}') {
        out += '\\';
        out += static_cast<char>(c);
    } else if (c == '\t') {
        out += "\\tab ";
    } else if (c >= 0x20 && c < 0x80) {
        out += static_cast<char>(c);
    } else if (const unsigned char b = windows1252(c); b >= 0x80) {
        std::snprintf(buf, sizeof buf, "\\'%02x", b);
        out += buf;
    } else {
        UChar units[2];
        int n = 0;
        UBool error = false;
        U16_APPEND(units, n, 2, c, error);
        for (int i = 0; i < n && !error; ++i) {
            std::snprintf(buf, sizeof buf, "\\u%d?",
                          static_cast<int>(static_cast<std::int16_t>(units[i])));
            out += buf;
        }
    }
}

void appendLine(std::string& out, std::string_view line) {
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(line.data());
    const auto length = static_cast<std::int32_t>(line.size());
    for (std::int32_t i = 0; i < length;) {
        bool marked = false;
        for (const Mark& mark : Marks)
            if (line.substr(static_cast<std::size_t>(i)).starts_with(mark.tag)) {
                out += mark.control;
                i += static_cast<std::int32_t>(mark.tag.size());
                marked = true;
                break;
            }
        if (marked)
            continue;
        UChar32 c;
        U8_NEXT(bytes, i, length, c);
        if (c >= 0)
            appendCharacter(out, c);
    }
}

} // namespace

std::string richText(const std::vector<std::string>& lines) {
    std::string out = "{\\rtf1\\ansi\\ansicpg1252\\deff0\\deflang1031"
                      "{\\fonttbl{\\f0\\fswiss\\fcharset0 Arial;}}\r\n"
                      "{\\*\\generator Stammfolio;}\\viewkind4\\uc1\\pard\\f0\\fs20 ";
    for (const std::string& line : lines) {
        appendLine(out, line);
        out += "\\par\r\n";
    }
    out += "}\r\n";
    return out;
}

std::string plainText(const std::vector<std::string>& lines) {
    std::string out;
    for (std::size_t i = 0; i < lines.size(); ++i)
        out += (i ? "\r\n" : "") + lines[i];
    return out;
}

} // namespace folio::sample_source
