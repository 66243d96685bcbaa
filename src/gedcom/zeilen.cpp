#include "gedcom/zeilen.h"

#include "engine/text_util.h"
#include "engine/utf8.h"
#include "gedcom/ausgabe.h"
#include "gedcom/exportlauf.h"

#include <algorithm>
#include <charconv>
#include <string_view>

namespace folio {

namespace {

// The in-band markers of a folded text; a text typed with them breaks there as well.
const std::u32string CONT = U"#CONT#";
const std::u32string CONC = U"#CONC#";

// A marker begins at position k (counted from 1).
bool marke_bei(const std::u32string& t, std::size_t k) {
    return k >= 1 && k + 5 <= t.size() &&
           (t.compare(k - 1, 6, CONT) == 0 || t.compare(k - 1, 6, CONC) == 0);
}

// The text with "#CONC#" put in wherever a piece grows too long: the folding of GEDtext.
// Positions count from 1 in the text as given. A marker put in lies behind the scan, which
// then goes on with the character behind the split, so the text is never moved about: the
// folding is linear in its length.
std::u32string falten(const std::u32string& t) {
    // A position behind the end holds no blank.
    auto blank = [&](std::size_t k) { return k >= 1 && k <= t.size() && t[k - 1] == U' '; };
    std::u32string out;
    out.reserve(t.size() + t.size() / 16);
    std::size_t pos = 1, geschrieben = 0; // the first `geschrieben` characters are in `out`
    for (;;) {
        // A piece ends at the next "#", whether it begins a marker or was typed by the user.
        const std::size_t raute = t.find(U'#', pos - 1);
        const std::size_t p = raute == std::u32string::npos ? t.size() : raute + 1;
        if (p <= pos + 100) {
            pos = p + 7;
        } else {
            std::size_t i = 100;
            while (i <= 200 && (blank(pos + i) || blank(pos + i + 1)))
                ++i;
            // A split behind the character at pos + i never falls inside a marker: where it
            // would, it falls right in front of it. A "#" of the user's is no marker.
            for (std::size_t m = pos + i; m + 4 >= pos + i && m > pos; --m) {
                if (marke_bei(t, m)) {
                    i = m - pos - 1;
                    break;
                }
            }
            // Nor does it fall in front of a "CONT#" or "CONC#" typed by the user: with the
            // last "#" of the marker put in, that would read as a marker, and the one put in
            // would be lost. It falls one character earlier then.
            if (marke_bei(U"#" + t.substr(std::min(pos + i, t.size()), 5), 1))
                --i;
            const std::size_t hinter = std::min(pos + i, t.size());
            out.append(t, geschrieben, hinter - geschrieben);
            out += CONC;
            geschrieben = hinter;
            pos = pos + i + 1;
        }
        if (pos > t.size())
            break;
    }
    out.append(t, geschrieben);
    return out;
}

// Writes `kopf` and `text` as one or more lines ending in CR LF, in the run's character set;
// `einzeilig` turns control characters into blanks first. Valid UTF-8 for a UTF-8 file, the
// common case, goes straight into the run's line buffer: a line costs no allocation.
void ausgeben(Exportlauf& lauf, std::string_view kopf, std::string_view text, bool einzeilig) {
    std::string& puffer = lauf.zeilenpuffer;
    puffer.clear();
    if (lauf.optionen.zeichensatz == Zeichensatz::Utf8 && isUtf8(text)) {
        puffer.append(kopf);
        puffer.append(text);
        if (einzeilig)
            for (std::size_t i = kopf.size(); i < puffer.size(); ++i)
                if (static_cast<unsigned char>(puffer[i]) < 0x20 && puffer[i] != '\t')
                    puffer[i] = ' ';
    } else {
        std::string zeile(kopf);
        zeile.append(text);
        puffer = z(lauf.optionen.zeichensatz,
                   einzeilig ? folio::einzeilig(std::move(zeile)) : std::move(zeile));
    }
    puffer.append("\r\n");
    if (lauf.speicher)
        lauf.speicher->append(puffer);
    else
        lauf.ausgabe.schreiben(puffer);
}

} // namespace

std::string utf8_text(const std::string& text) {
    // The program's texts are UTF-8 already; only malformed bytes need the way round.
    return isUtf8(text) ? text : toUtf8(codePoints(text));
}

std::string z(Zeichensatz zeichensatz, const std::string& zeile) {
    return zeichensatz == Zeichensatz::Ansi ? toWindows1252(zeile) : utf8_text(zeile);
}

std::string textwert(std::string text) {
    if (!text.empty() && text.front() == '@')
        text.insert(0, 1, '@');
    return text;
}

std::string einzeilig(std::string text) {
    for (char& c : text)
        if (static_cast<unsigned char>(c) < 0x20 && c != '\t')
            c = ' ';
    return text;
}

void zeile(Exportlauf& lauf, const std::string& text) {
    ausgeben(lauf, {}, text, true);
}

void zeile(Exportlauf& lauf, int ebene, const std::string& text) {
    char kopf[16];
    char* ende = std::to_chars(kopf, kopf + sizeof kopf - 1, ebene).ptr;
    *ende++ = ' ';
    ausgeben(lauf, std::string_view(kopf, static_cast<std::size_t>(ende - kopf)), text, true);
}

std::string gedtext_gefaltet(std::int16_t ebene, const std::string& tag, const std::string& text) {
    // 1. and 2. Nothing for blanks, nor for blanks and line breaks alone.
    if (isBlank(text))
        return "";
    std::string s = text;
    replaceAll(s, "\r\n", "");
    if (isBlank(s))
        return "";
    // 3. Line breaks become markers; blanks go from the right end. A lone CR or LF is text.
    s = text;
    replaceAll(s, "\r\n", "#CONT#");
    // 4. Fold; the count is in characters. A lone CR or LF, or another control character,
    // counts as one and then becomes a blank, as on every other line: in the file it would end
    // the line or begin a record.
    std::u32string gefaltet = falten(codePoints(std::string(trimBlanksRight(s))));
    for (char32_t& c : gefaltet)
        if (c < 0x20 && c != U'\t')
            c = U' ';
    s = toUtf8(gefaltet);
    // 5. The markers become lines, and a piece that begins with "@" begins with "@@" (see
    // textwert); the control characters are blanks by now, so every line break is a marker's.
    const std::string folge = "\r\n" + std::to_string(ebene + 1);
    replaceAll(s, "#CONT#", folge + " CONT ");
    replaceAll(s, "#CONC#", folge + " CONC ");
    replaceAll(s, folge + " CONT @", folge + " CONT @@");
    replaceAll(s, folge + " CONC @", folge + " CONC @@");
    // 6. The tag's own line holds the first piece.
    return std::to_string(ebene) + " " + trimmed(tag) + " " + textwert(std::move(s));
}

void GEDtext(Exportlauf& lauf, std::int16_t ebene, const std::string& tag,
             const std::string& text) {
    const std::string gefaltet = gedtext_gefaltet(ebene, tag, text);
    if (!gefaltet.empty())
        ausgeben(lauf, {}, gefaltet, false);
}

} // namespace folio
