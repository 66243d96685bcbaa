// The folding of free texts into CONT and CONC lines. For any text and level: nothing for a
// text of blanks and line breaks alone; else lines that each begin with their level and tag,
// no CR or LF inside a line, no marker left, no piece longer than the folding allows; and
// joined again (CONT as a line break, CONC as nothing, a doubled "@" at a line's start as one)
// the lines give the text back as it was given, its line breaks CR LF, its other control
// characters blanks, its right end trimmed.
#include "engine/text_util.h"
#include "engine/utf8.h"
#include "fuzz_check.h"
#include "gedcom/zeilen.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace {

using folio::fuzz::pruefen;

void alle_ersetzen(std::string& s, const std::string& was, const std::string& durch) {
    for (std::size_t p = s.find(was); p != std::string::npos; p = s.find(was, p + durch.size()))
        s.replace(p, was.size(), durch);
}

// The text as the lines must give it back, in code points.
std::u32string erwartet(const std::string& text) {
    std::string s = text;
    alle_ersetzen(s, "\r\n", "#CONT#");
    std::u32string t = folio::codePoints(std::string(folio::trimBlanksRight(s)));
    for (char32_t& c : t)
        if (c < 0x20 && c != U'\t')
            c = U' ';
    std::string u = folio::toUtf8(t);
    alle_ersetzen(u, "#CONT#", "\r\n");
    alle_ersetzen(u, "#CONC#", "");
    return folio::codePoints(u);
}

bool nur_blanks_und_umbrueche(const std::string& text) {
    std::string s = text;
    alle_ersetzen(s, "\r\n", "");
    return s.find_first_not_of(' ') == std::string::npos;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* daten, std::size_t groesse) {
    if (groesse < 1)
        return 0;
    const std::int16_t ebene = static_cast<std::int16_t>(daten[0] % 4);
    const std::string text(reinterpret_cast<const char*>(daten) + 1, groesse - 1);
    const std::string gefaltet = folio::gedtext_gefaltet(ebene, " NOTE ", text);
    if (nur_blanks_und_umbrueche(text)) {
        pruefen(gefaltet.empty(), "a text of blanks and line breaks gives lines", text);
        return 0;
    }
    pruefen(!gefaltet.empty(), "a text gives no line", text);

    // The lines, each checked, and the text they carry.
    const std::string kopf = std::to_string(ebene) + " NOTE ";
    const std::string cont = std::to_string(ebene + 1) + " CONT ";
    const std::string conc = std::to_string(ebene + 1) + " CONC ";
    std::string zusammen;
    std::size_t anfang = 0;
    for (bool erste = true;; erste = false) {
        const std::size_t ende = gefaltet.find("\r\n", anfang);
        const std::string zeile = gefaltet.substr(anfang, ende - anfang);
        std::string wert;
        if (erste) {
            pruefen(zeile.rfind(kopf, 0) == 0, "the first line isn't the tag's", text);
            wert = zeile.substr(kopf.size());
        } else if (zeile.rfind(cont, 0) == 0) {
            zusammen += "\r\n";
            wert = zeile.substr(cont.size());
        } else {
            pruefen(zeile.rfind(conc, 0) == 0, "a line is neither CONT nor CONC: " + zeile, text);
            wert = zeile.substr(conc.size());
        }
        pruefen(wert.find_first_of("\r\n") == std::string::npos, "a lone CR or LF in a line", text);
        // A value that begins with "@" would read as a pointer; the text's own "@" is doubled.
        if (!wert.empty() && wert.front() == '@') {
            pruefen(wert.rfind("@@", 0) == 0, "a line's value begins with one @: " + zeile, text);
            wert.erase(0, 1);
        }
        pruefen(wert.find("#CONT#") == std::string::npos &&
                    wert.find("#CONC#") == std::string::npos,
                "a marker is left in a line", text);
        // A piece is split at 202 characters at the latest; the count restarts seven characters
        // behind a "#" (a marker's or the user's), so up to six more stand uncounted in front.
        std::size_t lauf = 0;
        for (char32_t c : folio::codePoints(wert)) {
            lauf = c == U'#' ? 0 : lauf + 1;
            pruefen(lauf <= 208, "a line holds too long a piece: " + zeile, text);
        }
        zusammen += wert;
        if (ende == std::string::npos)
            break;
        anfang = ende + 2;
    }
    pruefen(folio::codePoints(zusammen) == erwartet(text), "the lines don't give the text back",
            text);
    return 0;
}
