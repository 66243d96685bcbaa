// LIKE of the dialect against a slow matcher written from its rules: "*" any run, "?" one
// character, "#" one digit, "[...]" one of a set of characters or ranges, "[!...]" one outside
// it, letters without regard to case. The input is the pattern and the text, separated by a
// NUL byte.
#include "engine/errors.h"
#include "engine/jet_like.h"
#include "engine/utf8.h"
#include "fuzz_check.h"

#include <unicode/uchar.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace {

struct Stelle {
    char32_t art = 0; // '*', '?', '#', '[' or 0 for a character
    char32_t zeichen = 0;
    bool ausser = false;
    std::u32string menge; // pairs from, to
};

std::u32string gefaltet(std::string_view s) {
    std::u32string t = folio::codePoints(s);
    for (char32_t& c : t)
        c = static_cast<char32_t>(u_foldCase(static_cast<UChar32>(c), U_FOLD_CASE_DEFAULT));
    return t;
}

// The pattern's places; nothing for a pattern the dialect refuses (a "[" without "]", a range
// that falls).
std::optional<std::vector<Stelle>> lesen(const std::u32string& p) {
    std::vector<Stelle> s;
    for (std::size_t i = 0; i < p.size(); ++i) {
        Stelle st;
        if (p[i] == U'*' || p[i] == U'?' || p[i] == U'#') {
            st.art = p[i];
        } else if (p[i] == U'[') {
            const std::size_t zu = p.find(U']', i + 1);
            if (zu == std::u32string::npos)
                return std::nullopt;
            std::u32string innen = p.substr(i + 1, zu - i - 1);
            st.art = U'[';
            if (innen.size() >= 2 && innen[0] == U'!') {
                st.ausser = true;
                innen.erase(0, 1);
            }
            for (std::size_t k = 0; k < innen.size(); ++k) {
                if (k + 2 < innen.size() && innen[k + 1] == U'-') {
                    if (innen[k + 2] < innen[k])
                        return std::nullopt;
                    st.menge += {innen[k], innen[k + 2]};
                    k += 2;
                } else {
                    st.menge += {innen[k], innen[k]};
                }
            }
            i = zu;
        } else {
            st.zeichen = p[i];
        }
        s.push_back(st);
    }
    return s;
}

bool passt(const Stelle& st, char32_t c) {
    switch (st.art) {
    case U'?':
        return true;
    case U'#':
        return c >= U'0' && c <= U'9';
    case U'[': {
        bool drin = false;
        for (std::size_t k = 0; k + 1 < st.menge.size(); k += 2)
            drin = drin || (st.menge[k] <= c && c <= st.menge[k + 1]);
        return drin != st.ausser;
    }
    default:
        return c == st.zeichen;
    }
}

// Whether the text from `t` on matches the places from `s` on: every way tried.
bool vergleichen(const std::vector<Stelle>& s, std::size_t i, const std::u32string& text,
                 std::size_t t, std::vector<signed char>& gemerkt) {
    signed char& m = gemerkt[i * (text.size() + 1) + t];
    if (m >= 0)
        return m;
    bool ja;
    if (i == s.size())
        ja = t == text.size();
    else if (s[i].art == U'*')
        ja = vergleichen(s, i + 1, text, t, gemerkt) ||
             (t < text.size() && vergleichen(s, i, text, t + 1, gemerkt));
    else
        ja = t < text.size() && passt(s[i], text[t]) && vergleichen(s, i + 1, text, t + 1, gemerkt);
    m = ja;
    return ja;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* daten, std::size_t groesse) {
    const std::string eingabe(reinterpret_cast<const char*>(daten), groesse);
    const std::size_t nul = eingabe.find('\0');
    const std::string muster = eingabe.substr(0, nul);
    const std::string text = nul == std::string::npos ? "" : eingabe.substr(nul + 1);
    if (muster.size() > 64 || text.size() > 64) // the slow matcher recurses per character
        return 0;
    const auto stellen = lesen(gefaltet(muster));
    std::optional<bool> ergebnis;
    try {
        ergebnis = folio::jet::like(text, muster);
    } catch (const folio::DatabaseError&) {
    }
    folio::fuzz::pruefen(ergebnis.has_value() == stellen.has_value(),
                         "the pattern is refused by one reader only", eingabe);
    if (!stellen)
        return 0;
    const std::u32string t = gefaltet(text);
    std::vector<signed char> gemerkt((stellen->size() + 1) * (t.size() + 1), -1);
    folio::fuzz::pruefen(*ergebnis == vergleichen(*stellen, 0, t, 0, gemerkt),
                         "LIKE disagrees with the slow matcher", eingabe);
    return 0;
}
