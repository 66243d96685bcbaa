#include "database/listentexte.h"

#include "engine/date_time.h"
#include "engine/engine.h"
#include "engine/errors.h"
#include "engine/recordset.h"
#include "engine/text_util.h"
#include "frame/globals.h"
#include "frame/ini.h"
#include "frame/sprache.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <functional>

namespace folio {

namespace {

// The code of one word (with its blank, if it has one).
std::string soundex_wort(std::string_view wort) {
    std::string gemacht;
    std::int32_t i = 0;
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(wort.data());
    const auto length = static_cast<std::int32_t>(wort.size());
    bool erstes = true;
    while (i < length) {
        UChar32 c;
        U8_NEXT(bytes, i, length, c);
        if (c < 0)
            c = 0xFFFD;
        c = u_toupper(c);
        if (erstes) {
            appendUtf8(gemacht, static_cast<char32_t>(c));
            erstes = false;
            continue;
        }
        switch (c) {
        case 'B':
        case 'F':
        case 'P':
        case 'V':
            gemacht += '1';
            break;
        case 'C':
        case 'G':
        case 'J':
        case 'K':
        case 'Q':
        case 'S':
        case 'X':
        case 'Z':
            gemacht += '2';
            break;
        case 'D':
        case 'T':
            gemacht += '3';
            break;
        case 'L':
            gemacht += '4';
            break;
        case 'M':
        case 'N':
            gemacht += '5';
            break;
        case 'R':
            gemacht += '6';
            break;
        case 0xDF:
            gemacht += "22";
            break; // ß
        default:
            break;
        }
    }
    // Runs of one digit shrink to one; the first character is never a digit of the code.
    std::string code;
    std::size_t erstes_ende = 0;
    while (erstes_ende < gemacht.size() &&
           (erstes_ende == 0 || (static_cast<unsigned char>(gemacht[erstes_ende]) & 0xC0) == 0x80))
        ++erstes_ende;
    code = gemacht.substr(0, erstes_ende);
    char vorgaenger = code.size() == 1 ? code[0] : '\0';
    for (std::size_t k = erstes_ende; k < gemacht.size(); ++k) {
        if (gemacht[k] != vorgaenger)
            code += gemacht[k];
        vorgaenger = gemacht[k];
    }
    return code;
}

// A date as the classic Format draws it, for the patterns of the date formats: d, dd, m,
// mm, mmm, mmmm, yy, yyyy; other characters stand as they are.
std::string formatieren(const CalendarDateTime& d, const std::string& muster) {
    static const char* kurz[] = {"Jan", "Feb", "Mär", "Apr", "Mai", "Jun",
                                 "Jul", "Aug", "Sep", "Okt", "Nov", "Dez"};
    static const char* lang[] = {"Januar",    "Februar", "März",     "April",
                                 "Mai",       "Juni",    "Juli",     "August",
                                 "September", "Oktober", "November", "Dezember"};
    std::string out;
    for (std::size_t i = 0; i < muster.size();) {
        const char c = static_cast<char>(muster[i] | 0x20);
        std::size_t n = 1;
        while (i + n < muster.size() && static_cast<char>(muster[i + n] | 0x20) == c &&
               (c == 'd' || c == 'm' || c == 'y'))
            ++n;
        if (c == 'd')
            out += n == 1 ? std::to_string(d.day) : twoDigits(d.day);
        else if (c == 'm')
            out += n == 1   ? std::to_string(d.month)
                   : n == 2 ? twoDigits(d.month)
                   : n == 3 ? kurz[d.month - 1]
                            : lang[d.month - 1];
        else if (c == 'y')
            out += n <= 2 ? twoDigits(d.year % 100) : std::to_string(d.year);
        else
            out += muster.substr(i, n);
        i += n;
    }
    return out;
}

// "The text so far and F, joined and trimmed, plus one blank."
void anhaengen(std::string& text, const std::string& f) {
    text = trimmed(text + f) + " ";
}

// Pads with blanks or cuts to exactly `laenge` characters.
std::string auf_laenge(const std::string& text, std::size_t laenge) {
    std::string out = utf8Left(text, laenge);
    return out + std::string(laenge - utf8Length(out), ' ');
}

std::string datumszusaetze(dao::Recordset& daten) {
    std::string out;
    fehler_ignorieren([&] {
        const std::string g = trimmed(daten.get("GDatum").text());
        if (!g.empty())
            out += " *" + trimmed(trimmed(daten.get("ca1").text()) + " " + g);
    });
    fehler_ignorieren([&] {
        const std::string s = trimmed(daten.get("SDatum").text());
        if (!s.empty())
            out += " +" + trimmed(trimmed(daten.get("ca2").text()) + " " + s);
    });
    return out;
}

} // namespace

std::string soundex(const std::string& text) {
    if (text.empty())
        return " ";
    std::string ergebnis;
    std::size_t start = 0;
    while (start < text.size()) {
        const std::size_t blank = text.find(' ', start);
        const std::size_t ende = blank == std::string::npos ? text.size() : blank + 1;
        ergebnis += soundex_wort(std::string_view(text).substr(start, ende - start)) + " ";
        start = ende;
    }
    return trimmed(ergebnis) + " ";
}

std::string datum_text(int tag, int monat, int jahr, int form) {
    if (form != 0 && form != 1)
        return "";
    std::string muster;
    CalendarDateTime datum;
    if (tag != 0) {
        muster = form == 0
                     ? ini_lesen(programm_ini(), "Ansicht", "Datumformat_ddmmyyyy", "dd.mm.yyyy")
                     : "dd-mm-yyyy";
        datum = DateTime::fromDate(jahr, monat, tag).calendar();
    } else if (monat != 0) {
        muster = form == 0 ? ini_lesen(programm_ini(), "Ansicht", "Datumformat_mmyyyy", "mmm yyyy")
                           : "mm-yyyy";
        datum = DateTime::fromDate(jahr, monat, 1).calendar();
    } else if (jahr >= 1) {
        muster =
            form == 0 ? ini_lesen(programm_ini(), "Ansicht", "Datumformat_yyyy", "yyyy") : "yyyy";
        datum = DateTime::fromDate(jahr, 1, 1).calendar();
    } else {
        return "";
    }
    if (jahr == 0 || jahr == 4000)
        return "";
    return formatieren(datum, muster);
}

std::string liste_name(dao::Recordset& daten, bool nachname_vorn, bool mit_lebensdaten,
                       bool mit_datumstexten) {
    auto feld = [&](const char* name) {
        std::string wert;
        fehler_ignorieren([&] { wert = daten.get(name).text(); });
        return wert;
    };
    const std::string familienname = feld("Familienname");
    const std::string surn = feld("SURN");
    const bool c = !trimmed(familienname).empty() && surn != familienname;
    const std::string nachname = c ? familienname : surn;

    std::string text;
    if (!nachname_vorn) {
        text = trimmed(feld("NPFX")) + " ";
        anhaengen(text, feld("GIVN"));
        anhaengen(text, feld("SPFX"));
        anhaengen(text, nachname);
        anhaengen(text, feld("NFSX"));
        anhaengen(text, feld("TITL"));
    } else {
        text = trimmed(feld("NPFX"));
        anhaengen(text, nachname);
        anhaengen(text, feld("NFSX"));
        text = trimmed(text) + ", ";
        anhaengen(text, feld("GIVN"));
        anhaengen(text, feld("SPFX"));
        anhaengen(text, feld("TITL"));
    }
    if (c)
        anhaengen(text, sprachtext("1250 geb.") + surn);
    const std::string nick = trimmed(feld("NICK"));
    if (!nick.empty())
        text += " [" + nick + "]";
    if (mit_lebensdaten) {
        text = auf_laenge(text, 50);
        replaceAll(text, "_", " ");
        fehler_ignorieren([&] {
            const std::string g = datum_text(static_cast<int>(daten.get("GTag").toInt()),
                                             static_cast<int>(daten.get("GMonat").toInt()),
                                             static_cast<int>(daten.get("GJahr").toInt()), 0);
            if (!g.empty())
                text += " *" + g;
        });
        fehler_ignorieren([&] {
            const std::string s = datum_text(static_cast<int>(daten.get("STag").toInt()),
                                             static_cast<int>(daten.get("SMonat").toInt()),
                                             static_cast<int>(daten.get("SJahr").toInt()), 0);
            if (!s.empty())
                text += " +" + s;
        });
    }
    if (mit_datumstexten)
        text += datumszusaetze(daten);
    replaceAll(text, "\r\n", " ");
    replaceAll(text, "\r", " ");
    replaceAll(text, "\n", " ");
    return text;
}

std::string person_kurztext(const ListentextQuellen& q, RecordId person, bool mit_datumstexten) {
    dao::Recordset& daten = *q.daten;
    daten.Index("Counter");
    daten.Seek("=", Value(person));
    if (daten.NoMatch())
        return "?";
    std::string text = trimmed(daten.get("Listentext").text());
    if (mit_datumstexten)
        text += datumszusaetze(daten);
    return text;
}

RecordId ereignis_hauptperson(const ListentextQuellen& q, RecordId erste, RecordId ereignis) {
    auto rs = q.db->OpenRecordset("Select DISTINCT Quelle,Ursprung FROM Ereignis_DS WHERE ( "
                                  "Ursprung = 'D' OR Ursprung = 'd' ) AND Ziel = " +
                                  ereignis.sqlLiteral() + " ;");
    for (; !rs->Eof(); rs->MoveNext()) {
        // The query finds "D" too; only the exact "d" is a main person here.
        if (rs->get("Ursprung").text() == "d" && rs->get("Quelle").toRecordId() != erste)
            return rs->get("Quelle").toRecordId();
    }
    return RecordId();
}

std::string ereignis_text(const ListentextQuellen& q, const std::string& art, RecordId person1,
                          int typ, const std::string& /*ca*/, const std::string& /*datum1*/,
                          const std::string& /*datum2*/, const std::string& kurztext,
                          const std::string& grund, const std::string& ort, RecordId person2,
                          RecordId ereignis, RecordId /*weitere*/) {
    if (art != "Listentext")
        return "";
    const std::string p1 = person1.isZero() ? "?" : person_kurztext(q, person1, false);

    std::string vor, nach, grundwort;
    int ortpos = 0, maxhauptpersonen = 1;
    fehler_ignorieren([&] {
        dao::Recordset* typen = nullptr;
        // While the old schema is migrated the file has no table of event types yet: the
        // catalogue alone gives the words of the type then.
        if (q.ereignisdb) {
            q.ereignisdb->Index("Index");
            q.ereignisdb->Seek("=", Value(typ));
            if (!q.ereignisdb->NoMatch())
                typen = q.ereignisdb;
        }
        if (!typen && q.katalog) {
            q.katalog->FindFirst("Index = " + std::to_string(typ));
            if (!q.katalog->NoMatch())
                typen = q.katalog;
        }
        if (!typen)
            return;
        fehler_ignorieren([&] { vor = trimmed(typen->get("Text_vor").text()) + " "; });
        fehler_ignorieren([&] {
            const std::string n = trimmed(typen->get("Text_nach").text());
            nach = n.empty() ? "" : " " + n;
        });
        fehler_ignorieren([&] { grundwort = trimmed(typen->get("Ereignisgrund").text()); });
        fehler_ignorieren([&] { ortpos = static_cast<int>(typen->get("OrtPos").toInt()); });
        fehler_ignorieren(
            [&] { maxhauptpersonen = static_cast<int>(typen->get("maxhauptpersonen").toInt()); });
    });

    if (maxhauptpersonen > 1 && person2.isZero())
        person2 = ereignis_hauptperson(q, person1, ereignis);
    const std::string p2 = person2.isZero() ? " ?" : " " + person_kurztext(q, person2, false);
    const std::string ort_text = trimmed(ort).empty() ? "" : " in " + trimmed(ort);
    const std::string grund_text =
        trimmed(grund).empty() ? "" : " " + grundwort + " " + trimmed(grund);

    std::string text;
    if (person2.isZero())
        text = vor + p1 + ort_text + nach;
    else if (person2 != person1)
        text = ortpos == 0 ? vor + p1 + ort_text + nach + p2 : vor + p1 + nach + p2 + ort_text;
    text += grund_text + " " + kurztext;
    return utf8Left(text, 255);
}

} // namespace folio
