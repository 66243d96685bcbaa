#include "engine/text_util.h"

namespace folio {

std::string upperAscii(std::string_view s) {
    std::string out(s);
    for (char& c : out)
        if (c >= 'a' && c <= 'z')
            c = static_cast<char>(c - 'a' + 'A');
    return out;
}

std::string lowerAscii(std::string_view s) {
    std::string out(s);
    for (char& c : out)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    return out;
}

bool equalsNoCase(std::string_view a, std::string_view b) {
    if (a.size() != b.size())
        return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        char x = a[i], y = b[i];
        if (x >= 'A' && x <= 'Z')
            x = static_cast<char>(x - 'A' + 'a');
        if (y >= 'A' && y <= 'Z')
            y = static_cast<char>(y - 'A' + 'a');
        if (x != y)
            return false;
    }
    return true;
}

std::string_view trimBlanks(std::string_view s) {
    while (!s.empty() && s.front() == ' ')
        s.remove_prefix(1);
    return trimBlanksRight(s);
}

std::string trimmed(std::string_view s) {
    return std::string(trimBlanks(s));
}

std::string_view trimBlanksRight(std::string_view s) {
    while (!s.empty() && s.back() == ' ')
        s.remove_suffix(1);
    return s;
}

bool isBlank(std::string_view s) {
    return trimBlanks(s).empty();
}

std::string_view trimWhitespace(std::string_view s) {
    auto space = [](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; };
    while (!s.empty() && space(s.front()))
        s.remove_prefix(1);
    while (!s.empty() && space(s.back()))
        s.remove_suffix(1);
    return s;
}

void replaceAll(std::string& text, std::string_view was, std::string_view durch) {
    std::size_t at = was.empty() ? std::string::npos : text.find(was);
    if (at == std::string::npos)
        return;
    // Built anew rather than replaced in place: linear also for a long text with many hits.
    std::string out;
    out.reserve(text.size());
    std::size_t von = 0;
    for (; at != std::string::npos; at = text.find(was, von)) {
        out.append(text, von, at - von);
        out += durch;
        von = at + was.size();
    }
    out.append(text, von);
    text = std::move(out);
}

std::string quoteIdentifier(std::string_view name) {
    std::string out = "\"";
    for (char c : name) {
        if (c == '"')
            out += '"';
        out += c;
    }
    return out + '"';
}

std::string quoteString(std::string_view text) {
    std::string out = "'";
    for (char c : text) {
        if (c == '\'')
            out += '\'';
        out += c;
    }
    return out + '\'';
}

double numericValue(std::string_view s) {
    std::size_t i = 0;
    while (i < s.size() && (s[i] == ' ' || s[i] == '\t' || s[i] == '\n' || s[i] == '\r'))
        ++i;
    bool negative = false;
    if (i < s.size() && (s[i] == '-' || s[i] == '+'))
        negative = s[i++] == '-';
    double value = 0, scale = 0;
    for (; i < s.size(); ++i) {
        const char c = s[i];
        if (c >= '0' && c <= '9') {
            if (scale == 0) {
                value = value * 10 + (c - '0');
            } else {
                value += (c - '0') * scale;
                scale /= 10;
            }
        } else if (c == '.' && scale == 0) {
            scale = 0.1;
        } else if (c != ' ' && c != '\t') {
            break;
        }
    }
    return negative ? -value : value;
}

std::string twoDigits(int n) {
    return (n >= 0 && n < 10 ? "0" : "") + std::to_string(n);
}

} // namespace folio
