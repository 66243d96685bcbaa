// What the fuzz targets share: a failed invariant that stops the fuzzer with the input's
// story, and the statements of SQL text as the store's own lexer splits them, written from its
// rules (strings in '', names in "", [], ``, comments -- and /* */), independent of the
// dialect's tokenizer that the targets test.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

namespace folio::fuzz {

[[noreturn]] inline void verletzt(const std::string& was, std::string_view eingabe = {}) {
    std::fprintf(stderr, "invariant broken: %s\ninput: %.*s\n", was.c_str(),
                 static_cast<int>(eingabe.size()), eingabe.data());
    std::abort();
}

inline void pruefen(bool gilt, const std::string& was, std::string_view eingabe = {}) {
    if (!gilt)
        verletzt(was, eingabe);
}

// The SQL text split as the store splits it: the text outside literals, names and comments
// (each of them replaced by one blank), and whether anything but blanks, comments and ";"
// follows the first ";". `offen` tells of a literal or name that isn't closed.
struct SqliteSicht {
    std::string gerippe;
    std::vector<std::string> namen; // inside [], "" and ``
    bool zweite_anweisung = false;
    bool offen = false;
};

inline SqliteSicht sqlite_sicht(std::string_view sql) {
    SqliteSicht s;
    bool nach_semikolon = false;
    sql = sql.substr(0, sql.find('\0')); // where the store stops reading
    for (std::size_t i = 0; i < sql.size();) {
        const char c = sql[i];
        auto bis = [&](char ende, bool doppelt_ist_zeichen) {
            std::size_t k = i + 1;
            for (;; ++k) {
                if (k >= sql.size()) {
                    s.offen = true;
                    return sql.size();
                }
                if (sql[k] == ende) {
                    if (doppelt_ist_zeichen && k + 1 < sql.size() && sql[k + 1] == ende) {
                        ++k;
                        continue;
                    }
                    return k + 1;
                }
            }
        };
        std::size_t weiter = i + 1;
        bool leer = false;
        if (c == '\'' || c == '"' || c == '`')
            weiter = bis(c, true);
        else if (c == '[')
            weiter = bis(']', false);
        if (c == '"' || c == '`' || c == '[')
            s.namen.emplace_back(sql.substr(i + 1, weiter - i - 2 + (s.offen ? 1 : 0)));
        else if (c == '-' && i + 1 < sql.size() && sql[i + 1] == '-') {
            const std::size_t ende = sql.find('\n', i);
            weiter = ende == std::string_view::npos ? sql.size() : ende + 1;
            leer = true;
        } else if (c == '/' && i + 1 < sql.size() && sql[i + 1] == '*') {
            const std::size_t ende = sql.find("*/", i + 2);
            weiter = ende == std::string_view::npos ? sql.size() : ende + 2;
            leer = true;
        } else if (c == ' ' || c == '\t' || c == '\n' || c == '\f' || c == '\r') {
            leer = true;
        }
        if (c == ';' && !leer)
            nach_semikolon = true;
        else if (nach_semikolon && !leer)
            s.zweite_anweisung = true;
        s.gerippe += weiter == i + 1 && !leer ? std::string(1, c) : std::string(" ");
        i = weiter;
    }
    return s;
}

} // namespace folio::fuzz
