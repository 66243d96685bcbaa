#include "engine/jet_sql.h"

#include "engine/date_time.h"
#include "engine/errors.h"
#include "engine/text_util.h"

#include <charconv>
#include <cstdio>

namespace folio::jet {

namespace {

[[noreturn]] void syntax(const std::string& what, std::string_view sql) {
    throw DatabaseError(err::SyntaxError,
                        "Syntax error in SQL: " + what + "; statement: " + std::string(sql), {},
                        std::string(sql));
}

bool isWordStart(unsigned char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' || c >= 0x80;
}
bool isWordChar(unsigned char c) {
    return isWordStart(c) || (c >= '0' && c <= '9') || c == '$';
}
bool isDigit(unsigned char c) {
    return c >= '0' && c <= '9';
}

// End of a literal that starts at `i` with `close`, where a doubled `close` stands for itself.
std::size_t literalEnd(std::string_view sql, std::size_t i, char close, bool doubling) {
    for (std::size_t j = i + 1; j < sql.size(); ++j) {
        if (sql[j] != close)
            continue;
        if (doubling && j + 1 < sql.size() && sql[j + 1] == close) {
            ++j;
            continue;
        }
        return j + 1;
    }
    syntax("unterminated literal", sql);
}

bool isKeyword(const Token& t, std::string_view word) {
    return t.kind == TokenKind::Word && equalsNoCase(t.text, word);
}

std::string numberText(double d) {
    char buf[32];
    auto [end, ec] = std::to_chars(buf, buf + sizeof buf, d);
    return std::string(buf, ec == std::errc() ? end : buf);
}

} // namespace

std::vector<Token> tokenize(std::string_view sql) {
    std::vector<Token> tokens;
    std::size_t i = 0;
    while (i < sql.size()) {
        const unsigned char c = static_cast<unsigned char>(sql[i]);
        std::size_t end = i + 1;
        TokenKind kind = TokenKind::Symbol;
        if (c == ' ' || c == '\t' || c == '\r' || c == '\n') {
            kind = TokenKind::Space;
            while (end < sql.size() &&
                   (sql[end] == ' ' || sql[end] == '\t' || sql[end] == '\r' || sql[end] == '\n'))
                ++end;
        } else if (c == '\'' || c == '"') {
            kind = TokenKind::String;
            end = literalEnd(sql, i, static_cast<char>(c), true);
        } else if (c == '[') {
            kind = TokenKind::Quoted;
            end = literalEnd(sql, i, ']', false);
        } else if (c == '`') {
            kind = TokenKind::Quoted;
            end = literalEnd(sql, i, '`', true);
        } else if (c == '#') {
            kind = TokenKind::Date;
            end = literalEnd(sql, i, '#', false);
        } else if (isDigit(c) || (c == '.' && i + 1 < sql.size() && isDigit(sql[i + 1]))) {
            kind = TokenKind::Number;
            while (end < sql.size() && (isDigit(sql[end]) || sql[end] == '.'))
                ++end;
            if (end < sql.size() && (sql[end] == 'e' || sql[end] == 'E')) {
                std::size_t k = end + 1;
                if (k < sql.size() && (sql[k] == '+' || sql[k] == '-'))
                    ++k;
                if (k < sql.size() && isDigit(sql[k])) {
                    end = k;
                    while (end < sql.size() && isDigit(sql[end]))
                        ++end;
                }
            }
        } else if (isWordStart(c)) {
            kind = TokenKind::Word;
            while (end < sql.size() && isWordChar(static_cast<unsigned char>(sql[end])))
                ++end;
        } else if (i + 1 < sql.size()) {
            const std::string_view two = sql.substr(i, 2);
            if (two == "<>" || two == "<=" || two == ">=" || two == "||" || two == "!=" ||
                two == "==")
                end = i + 2;
        }
        tokens.push_back({kind, sql.substr(i, end - i)});
        i = end;
    }
    return tokens;
}

double dateLiteralValue(std::string_view inside) {
    const std::string text(trimWhitespace(inside));
    int a = 0, b = 0, c = 0, h = 0, m = 0, s = 0;
    char sep1 = 0, sep2 = 0;
    int thirdStart = 0, consumed = 0;
    if (std::sscanf(text.c_str(), "%d%c%d%c%n%d%n", &a, &sep1, &b, &sep2, &thirdStart, &c,
                    &consumed) != 5 ||
        sep1 != sep2 || (sep1 != '-' && sep1 != '/'))
        throw DatabaseError(err::SyntaxError, "Syntax error in date: #" + text + "#");
    std::string_view rest = trimWhitespace(std::string_view(text).substr(consumed));
    if (!rest.empty()) {
        const std::string time(rest);
        int n = std::sscanf(time.c_str(), "%d:%d:%d", &h, &m, &s);
        if (n < 2)
            throw DatabaseError(err::SyntaxError, "Syntax error in date: #" + text + "#");
    }
    const bool isoOrder = a > 31; // yyyy-m-d
    int year = isoOrder ? a : c;
    // A year of one or two digits is read as the dialect reads it: 00-29 in this century,
    // 30-99 in the last one ("#3-15-50#" is 1950).
    const std::string_view written = std::string_view(text).substr(
        static_cast<std::size_t>(thirdStart), static_cast<std::size_t>(consumed - thirdStart));
    if (!isoOrder && trimWhitespace(written).size() <= 2 && year >= 0)
        year += year < 30 ? 2000 : 1900;
    const int month = isoOrder ? b : a;
    const int day = isoOrder ? c : b;
    if (month < 1 || month > 12 || day < 1 || day > 31 || h > 23 || m > 59 || s > 59)
        throw DatabaseError(err::SyntaxError, "Syntax error in date: #" + text + "#");
    return DateTime::fromDateTime(year, month, day, h, m, s).days();
}

std::string translate(std::string_view sql) {
    // The store stops reading at a NUL: what stands behind it would vanish unseen.
    if (sql.find('\0') != std::string_view::npos)
        throw DatabaseError(err::SyntaxError, "A NUL character in the statement", {},
                            std::string(sql));
    const std::vector<Token> tokens = tokenize(sql);
    std::string out;
    out.reserve(sql.size() + 16);
    const Token* previous = nullptr; // last token that isn't a blank
    bool ended = false;              // a ";" has been seen
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        const Token& t = tokens[i];
        if (t.kind == TokenKind::Space) {
            out += t.text;
            continue;
        }
        if (ended && !(t.kind == TokenKind::Symbol && t.text == ";"))
            throw DatabaseError(err::CharactersAfterStatement,
                                "Characters found after end of SQL statement: " + std::string(sql),
                                {}, std::string(sql));
        // A number followed at once by a word ("= 5OR Ziel") is two tokens to the dialect;
        // the store wants a blank between them.
        if (t.kind == TokenKind::Word && i > 0 && tokens[i - 1].kind == TokenKind::Number)
            out += ' ';
        const std::size_t anfang = out.size();
        switch (t.kind) {
        case TokenKind::Word:
            if (equalsNoCase(t.text, "TRUE"))
                out += "-1";
            else if (equalsNoCase(t.text, "FALSE"))
                out += "0";
            else if (equalsNoCase(t.text, "INDEX") &&
                     !(previous &&
                       (isKeyword(*previous, "CREATE") || isKeyword(*previous, "UNIQUE") ||
                        isKeyword(*previous, "DROP"))))
                out += quoteIdentifier(t.text); // a field named Index
            else
                out += t.text;
            break;
        case TokenKind::String:
            if (t.text.front() == '"') {
                // A string in double quotes: inner "" stand for one ".
                std::string inner;
                for (std::size_t k = 1; k + 1 < t.text.size(); ++k) {
                    inner += t.text[k];
                    if (t.text[k] == '"')
                        ++k;
                }
                out += quoteString(inner);
            } else {
                out += t.text;
            }
            break;
        case TokenKind::Date:
            out += numberText(dateLiteralValue(t.text.substr(1, t.text.size() - 2)));
            break;
        case TokenKind::Symbol:
            if (t.text == "*" && previous && isKeyword(*previous, "DELETE")) {
                previous = &t;
                continue; // DELETE * FROM
            }
            if (t.text == ";") // the store ends a statement there, in parentheses too
                ended = true;
            out += t.text == "&" ? std::string_view("||") : t.text;
            break;
        default:
            out += t.text;
            break;
        }
        // The dialect knows no comments: "a--1" and "a-TRUE" are a minus minus one, "/*" a
        // division; to the store they would open a comment that hides what follows, quotes
        // and a ";" too.
        if (anfang > 0 && anfang < out.size() &&
            ((out[anfang - 1] == '-' && out[anfang] == '-') ||
             (out[anfang - 1] == '/' && out[anfang] == '*')))
            out.insert(anfang, 1, ' ');
        previous = &t;
    }
    return out;
}

namespace {

std::string unquoteName(const Token& t) {
    if (t.kind == TokenKind::Quoted || (t.kind == TokenKind::String && t.text.front() == '"'))
        return std::string(t.text.substr(1, t.text.size() - 2));
    return std::string(t.text);
}

bool isName(const Token& t) {
    return t.kind == TokenKind::Word || t.kind == TokenKind::Quoted;
}

bool isClauseWord(const Token& t) {
    static constexpr std::string_view words[] = {"WHERE", "ORDER", "GROUP",  "HAVING",   "UNION",
                                                 "LIMIT", "JOIN",  "INNER",  "LEFT",     "RIGHT",
                                                 "CROSS", "ON",    "EXCEPT", "INTERSECT"};
    for (std::string_view w : words)
        if (isKeyword(t, w))
            return true;
    return false;
}

bool isAggregate(const Token& t) {
    static constexpr std::string_view words[] = {"COUNT", "SUM",  "AVG",   "MIN",         "MAX",
                                                 "FIRST", "LAST", "TOTAL", "GROUP_CONCAT"};
    for (std::string_view w : words)
        if (isKeyword(t, w))
            return true;
    return false;
}

} // namespace

SelectShape analyzeSelect(std::string_view sql) {
    SelectShape shape;
    const std::vector<Token> all = tokenize(sql);
    std::vector<std::size_t> sig; // indexes of tokens that aren't blanks
    for (std::size_t i = 0; i < all.size(); ++i)
        if (all[i].kind != TokenKind::Space)
            sig.push_back(i);
    if (sig.empty() || !isKeyword(all[sig[0]], "SELECT"))
        return shape;
    shape.isSelect = true;
    auto offset = [&](std::size_t tokenIndex) {
        return static_cast<std::size_t>(all[tokenIndex].text.data() - sql.data());
    };

    bool plain = true;
    int depth = 0;
    std::size_t from = 0; // position in sig of the top-level FROM
    for (std::size_t k = 1; k < sig.size(); ++k) {
        const Token& t = all[sig[k]];
        if (t.text == "(")
            ++depth;
        else if (t.text == ")")
            --depth;
        else if (depth == 0 && isKeyword(t, "FROM")) {
            from = k;
            break;
        } else if (isKeyword(t, "DISTINCT") || isKeyword(t, "DISTINCTROW") || isKeyword(t, "TOP"))
            plain = false;
        else if (isAggregate(t) && k + 1 < sig.size() && all[sig[k + 1]].text == "(")
            plain = false;
    }
    if (from == 0 || from + 1 >= sig.size() || !isName(all[sig[from + 1]]))
        return shape;
    shape.selectList = std::string(
        trimWhitespace(sql.substr(offset(sig[0]) + 6, offset(sig[from]) - offset(sig[0]) - 6)));
    shape.table = unquoteName(all[sig[from + 1]]);
    shape.qualifier = shape.table;
    std::size_t next = from + 2; // behind the table name
    if (next < sig.size() && isKeyword(all[sig[next]], "AS") && next + 1 < sig.size()) {
        shape.qualifier = unquoteName(all[sig[next + 1]]);
        next += 2;
    } else if (next < sig.size() && isName(all[sig[next]]) && !isClauseWord(all[sig[next]])) {
        shape.qualifier = unquoteName(all[sig[next]]);
        next += 1;
    }
    const std::size_t restStart = next < sig.size() ? offset(sig[next]) : sql.size();
    shape.fromTable = std::string(sql.substr(offset(sig[from]), restStart - offset(sig[from])));
    shape.rest = std::string(sql.substr(restStart));
    while (!shape.rest.empty() &&
           (shape.rest.back() == ';' || shape.rest.back() == ' ' || shape.rest.back() == '\n' ||
            shape.rest.back() == '\r' || shape.rest.back() == '\t'))
        shape.rest.pop_back();

    depth = 0;
    for (std::size_t k = next; k < sig.size() && plain; ++k) {
        const Token& t = all[sig[k]];
        if (t.text == "(")
            ++depth;
        else if (t.text == ")")
            --depth;
        else if (depth == 0 && (t.text == "," || isKeyword(t, "JOIN") || isKeyword(t, "GROUP") ||
                                isKeyword(t, "UNION") || isKeyword(t, "HAVING") ||
                                isKeyword(t, "EXCEPT") || isKeyword(t, "INTERSECT")))
            plain = false;
    }
    shape.updatable = plain;
    return shape;
}

Parameterized parameterize(std::string_view sql) {
    Parameterized out;
    out.key.reserve(sql.size());
    const std::vector<Token> tokens = tokenize(sql);
    auto isComparison = [](const Token& t) {
        return t.kind == TokenKind::Symbol && (t.text == "=" || t.text == "<>" || t.text == "<" ||
                                               t.text == ">" || t.text == "<=" || t.text == ">=");
    };
    const Token* previous = nullptr;
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        const Token& t = tokens[i];
        if (t.kind == TokenKind::Space) {
            out.key += t.text;
            continue;
        }
        bool negative = false;
        std::size_t number = i;
        if (previous && isComparison(*previous) && t.kind == TokenKind::Symbol && t.text == "-" &&
            i + 1 < tokens.size() && tokens[i + 1].kind == TokenKind::Number) {
            negative = true;
            number = i + 1;
        }
        if (previous && isComparison(*previous) && tokens[number].kind == TokenKind::Number) {
            const std::string digits(tokens[number].text);
            double value = 0;
            auto [end, ec] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
            if (ec == std::errc() && end == digits.data() + digits.size()) {
                out.key += "?";
                out.numbers.push_back(negative ? -value : value);
                out.whole.push_back(digits.find_first_of(".eE") == std::string::npos);
                previous = &tokens[number];
                i = number;
                continue;
            }
        }
        out.key += t.text;
        previous = &t;
    }
    return out;
}

std::string bareTableName(std::string_view text) {
    const std::string_view t = trimWhitespace(text);
    if (t.empty())
        return {};
    if (t.front() == '[' && t.back() == ']' && t.find(']') == t.size() - 1)
        return std::string(t.substr(1, t.size() - 2));
    for (char c : t)
        if (!isWordChar(static_cast<unsigned char>(c)))
            return {};
    return std::string(t);
}

} // namespace folio::jet
