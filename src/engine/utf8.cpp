#include "engine/utf8.h"

#include <unicode/utf8.h>

#include <array>
#include <cstdint>

namespace folio {

namespace {

// Windows-1252 in the range 0x80 to 0x9F.
constexpr std::array<char32_t, 32> Hoch = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

} // namespace

bool isUtf8(std::string_view bytes) {
    std::int32_t i = 0;
    const auto* b = reinterpret_cast<const std::uint8_t*>(bytes.data());
    const auto n = static_cast<std::int32_t>(bytes.size());
    while (i < n) {
        UChar32 c;
        U8_NEXT(b, i, n, c);
        if (c < 0)
            return false;
    }
    return true;
}

std::u32string codePoints(std::string_view utf8) {
    std::u32string out;
    out.reserve(utf8.size());
    std::int32_t i = 0;
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(utf8.data());
    const auto length = static_cast<std::int32_t>(utf8.size());
    while (i < length) {
        UChar32 c;
        U8_NEXT(bytes, i, length, c);
        out.push_back(static_cast<char32_t>(c < 0 ? 0xFFFD : c));
    }
    return out;
}

void appendUtf8(std::string& out, char32_t c) {
    std::uint8_t buf[U8_MAX_LENGTH];
    std::int32_t n = 0;
    UBool fehler = false;
    U8_APPEND(buf, n, U8_MAX_LENGTH, static_cast<UChar32>(c), fehler);
    if (!fehler)
        out.append(reinterpret_cast<const char*>(buf), static_cast<std::size_t>(n));
}

std::string toUtf8(std::u32string_view text) {
    std::string out;
    out.reserve(text.size());
    for (char32_t c : text)
        appendUtf8(out, c);
    return out;
}

std::size_t utf8Length(std::string_view s) {
    std::size_t n = 0;
    for (unsigned char c : s)
        n += (c & 0xC0) != 0x80;
    return n;
}

std::string utf8Left(std::string_view s, std::size_t n) {
    std::size_t i = 0;
    for (std::size_t zeichen = 0; i < s.size(); ++i) {
        if ((static_cast<unsigned char>(s[i]) & 0xC0) != 0x80 && zeichen++ == n)
            break;
    }
    return std::string(s.substr(0, i));
}

char32_t fromWindows1252(unsigned char byte) {
    return byte >= 0x80 && byte < 0xA0 ? Hoch[byte - 0x80] : byte;
}

std::string toWindows1252(std::string_view utf8) {
    std::string out;
    out.reserve(utf8.size());
    for (char32_t c : codePoints(utf8)) {
        char byte = '?';
        if (c < 0x80 || (c >= 0xA0 && c <= 0xFF)) {
            byte = static_cast<char>(c);
        } else {
            for (std::size_t i = 0; i < Hoch.size(); ++i)
                if (Hoch[i] == c)
                    byte = static_cast<char>(0x80 + i);
        }
        out += byte;
    }
    return out;
}

std::string fromWindows1252Text(std::string_view bytes) {
    if (isUtf8(bytes))
        return std::string(bytes);
    std::string out;
    out.reserve(bytes.size() * 2);
    for (unsigned char c : bytes)
        appendUtf8(out, fromWindows1252(c));
    return out;
}

} // namespace folio
