#include "gedcom/zeilen.h"

#include "gedcom/ausgabe.h"
#include "gedcom/zeichensatz.h"
#include "wizard/auswahl.h"

#include <algorithm>
#include <array>

namespace folio {

namespace {

std::u32string trim_rechts(std::u32string s) {
    while (!s.empty() && s.back() == U' ')
        s.pop_back();
    return s;
}

bool nur_blanks(const std::u32string& s) {
    for (char32_t c : s)
        if (c != U' ')
            return false;
    return true;
}

void ersetzen(std::u32string& text, const std::u32string& was, const std::u32string& durch) {
    for (std::size_t at = text.find(was); at != std::u32string::npos;
         at = text.find(was, at + durch.size()))
        text.replace(at, was.size(), durch);
}

const std::u32string CONT = U"#CONT#";
const std::u32string CONC = U"#CONC#";

} // namespace

std::string utf8_text(const std::string& text) {
    // The program's texts are UTF-8 already; only malformed bytes need the way round.
    return ist_utf8(text) ? text : utf8_aus(codepunkte(text));
}

std::string z(const std::string& zeile) {
    AuswahlForm& form = Auswahl();
    if (form.gewaehlt(form.Zeichensatz(0)))
        return ansi_text(zeile);
    if (form.gewaehlt(form.Zeichensatz(1)))
        return utf8_text(zeile);
    return "";
}

void zeile(const std::string& text) {
    ausgabe().schreiben(z(text) + "\r\n");
}

void zeile(int ebene, const std::string& text) {
    zeile(std::to_string(ebene) + " " + text);
}

std::string gedtext_gefaltet(std::int16_t ebene, const std::string& tag, const std::string& text) {
    std::u32string t = codepunkte(text);
    // 1. and 2. Nothing for blanks, nor for blanks and line breaks alone.
    if (nur_blanks(t))
        return "";
    {
        std::u32string ohne = t;
        ersetzen(ohne, U"\r\n", U"");
        if (nur_blanks(ohne))
            return "";
    }
    // 3. Line breaks become markers; blanks go from the right end.
    ersetzen(t, U"\r\n", CONT);
    t = trim_rechts(t);

    // 4. Fold. Positions count from 1 as the text reads; at(k) is the character at k.
    auto at = [&](std::size_t k) { return k >= 1 && k <= t.size() ? t[k - 1] : U'\0'; };
    std::size_t pos = 1;
    for (;;) {
        const std::size_t raute = t.find(U'#', pos - 1);
        const std::size_t p = raute == std::u32string::npos ? t.size() : raute + 1;
        if (p <= pos + 100) {
            pos = p + 7;
        } else {
            std::size_t i = 100;
            while (i <= 200 && (at(pos + i) == U' ' || at(pos + i + 1) == U' '))
                ++i;
            // A split never falls into the marker (or "#") that ends the piece: at the latest
            // it falls right in front of it.
            if (raute != std::u32string::npos && pos + i >= p)
                i = p - pos - 1;
            t.insert(std::min(pos + i, t.size()), CONC); // behind the character at pos + i
            pos = pos + i + 7;
        }
        if (pos > t.size())
            break;
    }
    // 5. The markers become lines.
    const std::u32string folge = codepunkte(std::to_string(ebene + 1));
    ersetzen(t, CONT, U"\r\n" + folge + U" CONT ");
    ersetzen(t, CONC, U"\r\n" + folge + U" CONC ");

    // 6. The tag's own line holds the first piece.
    std::u32string kopf = codepunkte(tag);
    while (!kopf.empty() && kopf.front() == U' ')
        kopf.erase(kopf.begin());
    kopf = trim_rechts(kopf);
    return std::to_string(ebene) + " " + utf8_aus(kopf) + " " + utf8_aus(t);
}

void GEDtext(std::int16_t ebene, const std::string& tag, const std::string& text) {
    const std::string gefaltet = gedtext_gefaltet(ebene, tag, text);
    if (!gefaltet.empty())
        zeile(gefaltet);
}

} // namespace folio
