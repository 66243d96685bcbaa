#include "gedcom/rtf.h"

#include "engine/utf8.h"

#include <unicode/ucnv.h>
#include <unicode/ustring.h>
#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace folio {

namespace {

constexpr int Cp1252 = 1252;

// Windows-1252 in the range 0x80 to 0x9F; the five bytes it leaves free stand for the C1
// control characters of the same number, as Windows reads them. The rest is Latin-1.
// The code page of a font's character set; 0 where the document's own code page applies
// (the Ansi and default sets, and the symbol set, whose bytes we read like Ansi).
int charset_code_page(int charset) {
    switch (charset) {
    case 77:
        return 10000;
    case 128:
        return 932;
    case 129:
        return 949;
    case 130:
        return 1361;
    case 134:
        return 936;
    case 136:
        return 950;
    case 161:
        return 1253;
    case 162:
        return 1254;
    case 163:
        return 1258;
    case 177:
        return 1255;
    case 178:
        return 1256;
    case 186:
        return 1257;
    case 204:
        return 1251;
    case 222:
        return 874;
    case 238:
        return 1250;
    case 254:
        return 437;
    case 255:
        return 850;
    default:
        return 0;
    }
}

struct ConverterClose {
    void operator()(UConverter* c) const { ucnv_close(c); }
};
using Converter = std::unique_ptr<UConverter, ConverterClose>;

// The converters one reading needs, opened on first use; a code page that can't be opened
// is remembered as missing and read as Windows-1252.
class Converters {
public:
    UConverter* get(int code_page) {
        for (auto& [cp, converter] : open_)
            if (cp == code_page)
                return converter.get();
        open_.emplace_back(code_page, open(code_page));
        return open_.back().second.get();
    }

private:
    static Converter open(int code_page) {
        std::vector<std::string> names;
        if (code_page == 65001)
            names = {"UTF-8"};
        else if (code_page == 10000)
            names = {"macintosh"};
        else if (code_page > 0)
            names = {"windows-" + std::to_string(code_page), "cp" + std::to_string(code_page),
                     "ibm-" + std::to_string(code_page)};
        for (const auto& name : names) {
            UErrorCode error = U_ZERO_ERROR;
            Converter converter(ucnv_open(name.c_str(), &error));
            if (!U_FAILURE(error) && converter)
                return converter;
        }
        return nullptr;
    }

    std::vector<std::pair<int, Converter>> open_;
};

// The plain text being built. Bytes of a code page are gathered and converted as one run,
// so that a double-byte character split over two escapes comes out whole; a high surrogate
// waits for the low one that should follow it.
class Klartext {
public:
    explicit Klartext(std::size_t reserve) { out_.reserve(reserve); }

    void byte(unsigned char b, int code_page) {
        if (b < 0x80 && bytes_.empty() && high_ == 0) {
            if (b != 0)
                out_ += static_cast<char>(b);
            return;
        }
        settle_high();
        if (!bytes_.empty() && code_page != bytes_cp_)
            flush_bytes();
        bytes_cp_ = code_page;
        bytes_ += static_cast<char>(b);
    }

    void unit(char16_t u) {
        flush_bytes();
        if (high_ != 0) {
            if (U16_IS_TRAIL(u)) {
                appendUtf8(out_, static_cast<char32_t>(U16_GET_SUPPLEMENTARY(high_, u)));
                high_ = 0;
                return;
            }
            settle_high();
        }
        if (U16_IS_LEAD(u))
            high_ = u;
        else if (U16_IS_TRAIL(u))
            appendUtf8(out_, 0xFFFD);
        else if (u != 0)
            appendUtf8(out_, u);
    }

    void code_point(char32_t c) {
        flush_bytes();
        settle_high();
        appendUtf8(out_, c);
    }

    void utf8(std::string_view sequence) {
        flush_bytes();
        settle_high();
        out_ += sequence;
    }

    std::string finish() {
        flush_bytes();
        settle_high();
        return std::move(out_);
    }

private:
    void settle_high() {
        if (high_ != 0)
            appendUtf8(out_, 0xFFFD);
        high_ = 0;
    }

    void flush_bytes() {
        if (bytes_.empty())
            return;
        if (bytes_cp_ == Cp1252 || !convert(converters_.get(bytes_cp_)))
            append_cp1252();
        bytes_.clear();
    }

    void append_cp1252() {
        for (char ch : bytes_) {
            const auto b = static_cast<unsigned char>(ch);
            if (b >= 0x80 && b < 0xA0)
                appendUtf8(out_, fromWindows1252(static_cast<unsigned char>(b)));
            else if (b != 0)
                appendUtf8(out_, b);
        }
    }

    bool convert(UConverter* converter) {
        if (converter == nullptr)
            return false;
        const auto length = static_cast<std::int32_t>(bytes_.size());
        units_.resize(2 * bytes_.size() + 1);
        UErrorCode error = U_ZERO_ERROR;
        const std::int32_t count =
            ucnv_toUChars(converter, units_.data(), static_cast<std::int32_t>(units_.size()),
                          bytes_.data(), length, &error);
        if (U_FAILURE(error))
            return false;
        const std::size_t start = out_.size();
        out_.resize(start + 3 * static_cast<std::size_t>(count));
        std::int32_t written = 0;
        u_strToUTF8WithSub(out_.data() + start, static_cast<std::int32_t>(out_.size() - start),
                           &written, units_.data(), count, 0xFFFD, nullptr, &error);
        if (U_FAILURE(error)) {
            out_.resize(start);
            return false;
        }
        out_.resize(start + static_cast<std::size_t>(written));
        // A converted U+0000 has no place in the text.
        out_.erase(std::remove(out_.begin() + static_cast<std::ptrdiff_t>(start), out_.end(), '\0'),
                   out_.end());
        return true;
    }

    std::string out_;
    std::string bytes_;
    int bytes_cp_ = Cp1252;
    char16_t high_ = 0;
    std::vector<UChar> units_;
    Converters converters_;
};

enum class Wirkung {
    Absatz,        // a line break in the text: CR LF
    Tab,           // TAB
    Zeichen,       // the character of the entry
    Unicode,       // \uN
    Ersatzlaenge,  // \ucN
    Ueberspringen, // a destination whose group gives no text
    Schrifttabelle,
    Schrift,
    Zeichensatz, // \fcharsetN of a font being defined
    Codeseite,   // \cpgN of a font being defined
    Dokumentcodeseite,
    Ansi,
    Mac,
    Pc,
    Pca,
    Standardschrift,
    Plain,
    Binaer,
};

struct Steuerwort {
    std::string_view name;
    Wirkung wirkung;
    char32_t zeichen = 0;
};

// Sorted by name for the binary search.
constexpr std::array Steuerwoerter = {
    Steuerwort{"ansi", Wirkung::Ansi},
    Steuerwort{"ansicpg", Wirkung::Dokumentcodeseite},
    Steuerwort{"bin", Wirkung::Binaer},
    Steuerwort{"bkmkend", Wirkung::Ueberspringen},
    Steuerwort{"bkmkstart", Wirkung::Ueberspringen},
    Steuerwort{"bullet", Wirkung::Zeichen, 0x2022},
    Steuerwort{"cell", Wirkung::Tab},
    Steuerwort{"colortbl", Wirkung::Ueberspringen},
    Steuerwort{"cpg", Wirkung::Codeseite},
    Steuerwort{"datastore", Wirkung::Ueberspringen},
    Steuerwort{"deff", Wirkung::Standardschrift},
    Steuerwort{"emdash", Wirkung::Zeichen, 0x2014},
    Steuerwort{"emspace", Wirkung::Zeichen, 0x2003},
    Steuerwort{"endash", Wirkung::Zeichen, 0x2013},
    Steuerwort{"enspace", Wirkung::Zeichen, 0x2002},
    Steuerwort{"f", Wirkung::Schrift},
    Steuerwort{"fcharset", Wirkung::Zeichensatz},
    Steuerwort{"filetbl", Wirkung::Ueberspringen},
    Steuerwort{"fldinst", Wirkung::Ueberspringen},
    Steuerwort{"fonttbl", Wirkung::Schrifttabelle},
    Steuerwort{"footer", Wirkung::Ueberspringen},
    Steuerwort{"footerf", Wirkung::Ueberspringen},
    Steuerwort{"footerl", Wirkung::Ueberspringen},
    Steuerwort{"footerr", Wirkung::Ueberspringen},
    Steuerwort{"generator", Wirkung::Ueberspringen},
    Steuerwort{"header", Wirkung::Ueberspringen},
    Steuerwort{"headerf", Wirkung::Ueberspringen},
    Steuerwort{"headerl", Wirkung::Ueberspringen},
    Steuerwort{"headerr", Wirkung::Ueberspringen},
    Steuerwort{"info", Wirkung::Ueberspringen},
    Steuerwort{"latentstyles", Wirkung::Ueberspringen},
    Steuerwort{"ldblquote", Wirkung::Zeichen, 0x201C},
    Steuerwort{"line", Wirkung::Absatz},
    Steuerwort{"listoverridetable", Wirkung::Ueberspringen},
    Steuerwort{"listtable", Wirkung::Ueberspringen},
    Steuerwort{"listtext", Wirkung::Ueberspringen},
    Steuerwort{"lquote", Wirkung::Zeichen, 0x2018},
    Steuerwort{"ltrmark", Wirkung::Zeichen, 0x200E},
    Steuerwort{"mac", Wirkung::Mac},
    Steuerwort{"mmathPr", Wirkung::Ueberspringen},
    Steuerwort{"nonshppict", Wirkung::Ueberspringen},
    Steuerwort{"object", Wirkung::Ueberspringen},
    Steuerwort{"page", Wirkung::Absatz},
    Steuerwort{"par", Wirkung::Absatz},
    Steuerwort{"pc", Wirkung::Pc},
    Steuerwort{"pca", Wirkung::Pca},
    Steuerwort{"pgdsctbl", Wirkung::Ueberspringen},
    Steuerwort{"pict", Wirkung::Ueberspringen},
    Steuerwort{"plain", Wirkung::Plain},
    Steuerwort{"pntext", Wirkung::Ueberspringen},
    Steuerwort{"qmspace", Wirkung::Zeichen, 0x2005},
    Steuerwort{"rdblquote", Wirkung::Zeichen, 0x201D},
    Steuerwort{"revtbl", Wirkung::Ueberspringen},
    Steuerwort{"row", Wirkung::Absatz},
    Steuerwort{"rquote", Wirkung::Zeichen, 0x2019},
    Steuerwort{"rsidtbl", Wirkung::Ueberspringen},
    Steuerwort{"rtlmark", Wirkung::Zeichen, 0x200F},
    Steuerwort{"sect", Wirkung::Absatz},
    Steuerwort{"shp", Wirkung::Ueberspringen},
    Steuerwort{"stylesheet", Wirkung::Ueberspringen},
    Steuerwort{"tab", Wirkung::Tab},
    Steuerwort{"tc", Wirkung::Ueberspringen},
    Steuerwort{"themedata", Wirkung::Ueberspringen},
    Steuerwort{"u", Wirkung::Unicode},
    Steuerwort{"uc", Wirkung::Ersatzlaenge},
    Steuerwort{"xe", Wirkung::Ueberspringen},
    Steuerwort{"xmlnstbl", Wirkung::Ueberspringen},
    Steuerwort{"zwj", Wirkung::Zeichen, 0x200D},
    Steuerwort{"zwnj", Wirkung::Zeichen, 0x200C},
};

constexpr bool nach_name(const Steuerwort& a, const Steuerwort& b) {
    return a.name < b.name;
}
static_assert(std::is_sorted(Steuerwoerter.begin(), Steuerwoerter.end(), nach_name));

const Steuerwort* finde(std::string_view name) {
    const auto it = std::lower_bound(Steuerwoerter.begin(), Steuerwoerter.end(),
                                     Steuerwort{name, Wirkung::Absatz}, nach_name);
    return it != Steuerwoerter.end() && it->name == name ? &*it : nullptr;
}

bool ist_buchstabe(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}
bool ist_ziffer(char c) {
    return c >= '0' && c <= '9';
}

int hexwert(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

enum class Ziel { Text, Ueberspringen, Schrifttabelle };

// What a group inherits and gets back when an inner group closes.
struct Zustand {
    Ziel ziel = Ziel::Text;
    int uc = 1;       // fallback characters behind \uN
    int schrift = -1; // current font, -1 for none
    int cp = Cp1252;  // code page of the current font
};

struct Schriftart {
    int charset = -1;
    int cpg = 0;
};

class Leser {
public:
    explicit Leser(std::string_view rtf) : s_(rtf), text_(rtf.size()) {}

    std::string lesen() {
        while (i_ < s_.size()) {
            const char c = s_[i_];
            if (c == '{') {
                ++i_;
                ersatz_ = 0;
                stapel_.push_back(z_);
            } else if (c == '}') {
                ++i_;
                ersatz_ = 0;
                if (stapel_.empty())
                    break;
                z_ = stapel_.back();
                stapel_.pop_back();
                if (stapel_.empty())
                    break; // the outermost group is closed; what follows isn't read
                z_.cp = codeseite(z_.schrift);
            } else if (c == '\\') {
                steuerung();
            } else if (c == '\r' || c == '\n') {
                ++i_;
            } else {
                buchstabe();
            }
        }
        return text_.finish();
    }

private:
    // Whether the next character is a fallback of \uN and is to be dropped.
    bool ersatz_verbrauchen() {
        if (ersatz_ == 0)
            return false;
        --ersatz_;
        return true;
    }

    // A character of the source: ASCII, a UTF-8 sequence, or a stray byte of the code page.
    void buchstabe() {
        const auto* bytes = reinterpret_cast<const std::uint8_t*>(s_.data());
        const auto n = static_cast<std::int32_t>(s_.size());
        auto next = static_cast<std::int32_t>(i_);
        UChar32 c;
        U8_NEXT(bytes, next, n, c);
        const std::string_view sequenz = s_.substr(i_, static_cast<std::size_t>(next) - i_);
        i_ = static_cast<std::size_t>(next);
        if (ersatz_verbrauchen() || z_.ziel != Ziel::Text)
            return;
        if (c < 0) {
            for (char b : sequenz)
                text_.byte(static_cast<unsigned char>(b), z_.cp);
        } else if (c < 0x80) {
            text_.byte(static_cast<unsigned char>(c), z_.cp);
        } else {
            text_.utf8(sequenz);
        }
    }

    void steuerung() {
        ++i_; // the backslash
        if (i_ >= s_.size())
            return;
        const char c = s_[i_];
        if (ist_buchstabe(c)) {
            steuerwort();
            return;
        }
        ++i_;
        if (c == '\'') {
            int wert = 0, ziffern = 0;
            while (ziffern < 2 && i_ < s_.size() && hexwert(s_[i_]) >= 0) {
                wert = wert * 16 + hexwert(s_[i_]);
                ++ziffern;
                ++i_;
            }
            // A cut-off escape gives nothing, though it still counts as a fallback.
            if (ersatz_verbrauchen() || ziffern < 2 || z_.ziel != Ziel::Text)
                return;
            text_.byte(static_cast<unsigned char>(wert), z_.cp);
            return;
        }
        if (c == '*') {
            z_.ziel = Ziel::Ueberspringen;
            return;
        }
        if (ersatz_verbrauchen() || z_.ziel != Ziel::Text)
            return;
        switch (c) {
        case '\\':
        case '{':
        case '}':
            text_.byte(static_cast<unsigned char>(c), z_.cp);
            break;
        case '~':
            text_.code_point(0x00A0);
            break;
        case '_':
            text_.code_point(0x2011);
            break;
        case '\r':
        case '\n':
            text_.utf8("\r\n");
            break;
        case '\t':
            text_.code_point('\t');
            break;
        default: // \- (optional hyphen), \:, \| and unknown symbols give nothing
            break;
        }
    }

    void steuerwort() {
        const std::size_t anfang = i_;
        while (i_ < s_.size() && ist_buchstabe(s_[i_]))
            ++i_;
        const std::string_view name = s_.substr(anfang, i_ - anfang);
        bool mit_wert = false, negativ = false;
        std::int64_t wert = 0;
        if (i_ < s_.size() && s_[i_] == '-' && i_ + 1 < s_.size() && ist_ziffer(s_[i_ + 1])) {
            negativ = true;
            ++i_;
        }
        while (i_ < s_.size() && ist_ziffer(s_[i_])) {
            mit_wert = true;
            wert = std::min<std::int64_t>(wert * 10 + (s_[i_] - '0'), 1'000'000'000);
            ++i_;
        }
        if (i_ < s_.size() && s_[i_] == ' ')
            ++i_;
        if (negativ)
            wert = -wert;
        const Steuerwort* wort = finde(name);
        if (wort != nullptr && wort->wirkung == Wirkung::Binaer) {
            // Binary data belongs to the word whatever the group: never read it as text.
            const auto laenge = static_cast<std::size_t>(std::max<std::int64_t>(wert, 0));
            i_ += std::min(laenge, s_.size() - i_);
            return;
        }
        if (ersatz_verbrauchen() || wort == nullptr || z_.ziel == Ziel::Ueberspringen)
            return;
        const int n = static_cast<int>(wert);
        if (z_.ziel == Ziel::Schrifttabelle)
            schriftdefinition(*wort, mit_wert ? n : 0);
        else
            wirken(*wort, mit_wert, n);
    }

    // What a control word does in the text: a character, a destination, a font, a code page.
    void wirken(const Steuerwort& wort, bool mit_wert, int n) {
        switch (wort.wirkung) {
        case Wirkung::Absatz:
            text_.utf8("\r\n");
            break;
        case Wirkung::Tab:
            text_.code_point('\t');
            break;
        case Wirkung::Zeichen:
            text_.code_point(wort.zeichen);
            break;
        case Wirkung::Unicode:
            unicode(mit_wert, n);
            break;
        case Wirkung::Ersatzlaenge:
            z_.uc = mit_wert ? std::clamp(n, 0, 1000) : 1;
            break;
        case Wirkung::Ueberspringen:
            z_.ziel = Ziel::Ueberspringen;
            break;
        case Wirkung::Schrifttabelle:
            z_.ziel = Ziel::Schrifttabelle;
            break;
        case Wirkung::Schrift:
            schrift_setzen(mit_wert ? n : -1);
            break;
        case Wirkung::Dokumentcodeseite:
            if (mit_wert && n > 0)
                dokument_cp(n);
            break;
        case Wirkung::Ansi:
            dokument_cp(Cp1252);
            break;
        case Wirkung::Mac:
            dokument_cp(10000);
            break;
        case Wirkung::Pc:
            dokument_cp(437);
            break;
        case Wirkung::Pca:
            dokument_cp(850);
            break;
        case Wirkung::Standardschrift:
            standardschrift_ = mit_wert ? n : -1;
            if (z_.schrift < 0)
                schrift_setzen(standardschrift_);
            break;
        case Wirkung::Plain:
            schrift_setzen(standardschrift_);
            break;
        default: // words of the font table, outside it
            break;
        }
    }

    void schriftdefinition(const Steuerwort& wort, int n) {
        switch (wort.wirkung) {
        case Wirkung::Schrift:
            definiert_ = n;
            break;
        case Wirkung::Zeichensatz:
            schriften_[definiert_].charset = n;
            break;
        case Wirkung::Codeseite:
            schriften_[definiert_].cpg = n;
            break;
        case Wirkung::Ueberspringen:
            z_.ziel = Ziel::Ueberspringen;
            break;
        default:
            break;
        }
    }

    void unicode(bool mit_wert, int n) {
        if (!mit_wert)
            return;
        if (n < 0)
            n += 65536;
        if (n < 0 || n > 0xFFFF)
            return; // unreadable; the fallback that follows stands in for it
        text_.unit(static_cast<char16_t>(n));
        ersatz_ = z_.uc;
    }

    void schrift_setzen(int schrift) {
        z_.schrift = schrift;
        z_.cp = codeseite(schrift);
    }

    void dokument_cp(int cp) {
        dokument_cp_ = cp;
        z_.cp = codeseite(z_.schrift);
    }

    int codeseite(int schrift) const {
        if (schrift >= 0) {
            if (const auto it = schriften_.find(schrift); it != schriften_.end()) {
                if (it->second.cpg > 0)
                    return it->second.cpg;
                if (const int cp = charset_code_page(it->second.charset); cp != 0)
                    return cp;
            }
        }
        return dokument_cp_;
    }

    std::string_view s_;
    std::size_t i_ = 0;
    Klartext text_;
    Zustand z_;
    std::vector<Zustand> stapel_;
    int ersatz_ = 0; // fallback characters still to drop
    int dokument_cp_ = Cp1252;
    int standardschrift_ = -1;
    int definiert_ = 0; // the font the font table is defining
    std::unordered_map<int, Schriftart> schriften_;
};

} // namespace

std::string rtf_klartext(const std::string& gespeichert) {
    if (!gespeichert.starts_with("{\\rtf"))
        return gespeichert;
    return Leser(gespeichert).lesen();
}

} // namespace folio
