#include "wizard/filterbedingung.h"

#include "engine/date_time.h"
#include "engine/errors.h"
#include "engine/jet_sql.h"
#include "engine/text_util.h"
#include "frame/sprache.h"

#include <cmath>
#include <cstdio>

namespace folio {

namespace {

// The operators that a filter text can begin with. The first row that fits decides; words
// are compared without regard to case. The value is the rest, without leading blanks.
struct Operator {
    std::string_view anfang;
    std::string_view zeichen;
};
// clang-format off
constexpr Operator operatoren[] = {
    {"<>",        "<>"},
    {"NOT LIKE ", "NOT LIKE"},
    {"NOT ",      "NOT"},
    {"=>",        ">="},
    {">=",        ">="},
    {"=<",        "<="},
    {"<=",        "<="},
    {"<",         "<"},
    {">",         ">"},
    {"=",         "="},
};
// clang-format on

// Columns that compare in a way of their own when the text begins with no operator: the sort
// keys by a range of years, the event kind by its number. Neither counts as text then.
enum class Wertart { Jahresbereich, Ganzzahl };
struct Sonderspalte {
    std::string_view key;
    std::string_view zeichen;
    Wertart art;
};
// clang-format off
constexpr Sonderspalte sonderspalten[] = {
    {"GSORT", "",    Wertart::Jahresbereich},
    {"SSORT", "",    Wertart::Jahresbereich},
    {"VSORT", "",    Wertart::Jahresbereich},
    {"BSORT", "",    Wertart::Jahresbereich},
    {"ART",   " = ", Wertart::Ganzzahl},
};
// clang-format on

// The key columns, and further columns that hold the number of a record of their own table
// (their filters, too, compare the number of the entry picked, the column's Tag).
constexpr std::string_view schluesselspalten[] = {"Ort", "GOrt", "SOrt", "Status", "Notiz", "Art"};
constexpr std::string_view weitere_tagspalten[] = {"PLZID", "Obername", "OberOrt", "OberDoc",
                                                   "Vorkommen"};

// The entries of the fixed lists and the values that their conditions use. Any other text in
// such a column (the blank entry above all) gives no filter.
struct Listenwert {
    std::string_view spalte;
    std::string_view sprachschluessel;
    std::string_view buchstabe; // typed instead of the entry
    std::string_view wert;
};
// clang-format off
constexpr Listenwert listenwerte[] = {
    {"lebt",       "1266 Person lebt",                       "",  "ja"},
    {"lebt",       "1265 verstorben",                        "",  "nein"},
    {"Geschlecht", "1136 Männlich",                          "M", "M"},
    {"Geschlecht", "1137 Weiblich",                          "W", "W"},
    {"Markierung", "8214 Nur markierte Datensätze",          "",  "ja"},
    {"Markierung", "1267 Alle nicht markierten Datensätzen", "",  "nein"},
};
// clang-format on

// Words that may stand in a condition outside its string literals: those of the comparisons
// that the filter language writes, and the values of yes/no fields. Any other word would name
// a field, a function or a clause of a query of its own.
// clang-format off
constexpr std::string_view erlaubte_woerter[] = {
    "AND", "OR", "NOT", "LIKE", "BETWEEN", "IN", "IS", "NULL", "TRUE", "FALSE",
};
// clang-format on

bool gilt_als_text(int typ) {
    return typ == SpaltentypText || typ == SpaltentypMemo || typ == SpaltentypTextRaute;
}

bool ist_zwei_anfuehrungszeichen(std::string_view wert) {
    return wert == "\"\"" || wert == "''";
}

std::string_view ohne_fuehrende_blanks(std::string_view s) {
    while (!s.empty() && s.front() == ' ')
        s.remove_prefix(1);
    return s;
}

// The whole number of a text as the conversion of the dialect reads it; raises a type
// mismatch where the text isn't a number.
std::int64_t ganzzahl(std::string_view text) {
    return Value(std::string(text)).toInt();
}

std::string zahltext(double zahl) {
    return Value(zahl).text();
}

// A year as the date functions read it: 0-29 is this century, 30-99 the last one.
int jahr_mit_jahrhundert(int jahr) {
    if (jahr >= 0 && jahr < 30)
        return jahr + 2000;
    if (jahr >= 30 && jahr < 100)
        return jahr + 1900;
    return jahr;
}

// A number of one to four digits at the front of `s`, taken off it.
bool stellen_lesen(std::string_view& s, int& zahl, int& stellen) {
    zahl = 0;
    stellen = 0;
    while (!s.empty() && s.front() >= '0' && s.front() <= '9') {
        if (++stellen > 4)
            return false;
        zahl = zahl * 10 + (s.front() - '0');
        s.remove_prefix(1);
    }
    return stellen > 0;
}

// A date as the user types one: "d.m.yyyy" (also with "/" or "-"), or "yyyy-m-d"; a year of
// one or two digits is completed. False where the text is no date of the calendar.
bool datum_lesen(std::string_view text, int& jahr, int& monat, int& tag) {
    std::string_view s = trimBlanks(text);
    int teil[3] = {}, stellen[3] = {};
    char trenner = 0;
    for (int i = 0; i < 3; ++i) {
        if (!stellen_lesen(s, teil[i], stellen[i]))
            return false;
        if (i == 2)
            break;
        if (s.empty() || (s.front() != '.' && s.front() != '/' && s.front() != '-') ||
            (trenner != 0 && s.front() != trenner))
            return false;
        trenner = s.front();
        s.remove_prefix(1);
    }
    if (!s.empty())
        return false;
    if (stellen[0] >= 3) { // yyyy-m-d
        jahr = teil[0], monat = teil[1], tag = teil[2];
    } else {
        tag = teil[0], monat = teil[1], jahr = teil[2];
        if (stellen[2] <= 2)
            jahr = jahr_mit_jahrhundert(jahr);
    }
    if (monat < 1 || monat > 12 || tag < 1 || jahr < 100)
        return false;
    const DateTime d = DateTime::fromDate(jahr, monat, tag);
    return d.month() == monat && d.day() == tag;
}

std::string datum_mdy(int jahr, int monat, int tag, bool vierstellig) {
    char puffer[32];
    if (vierstellig)
        std::snprintf(puffer, sizeof puffer, "%d-%d-%04d", monat, tag, jahr);
    else
        std::snprintf(puffer, sizeof puffer, "%d-%d-%02d", monat, tag, jahr % 100);
    return puffer;
}

// The value of a date column: a date compares as it is, a year or a range of years "from..to"
// (an empty upper year is the present one) selects the days from the first of January of the
// lower year to the last of December of the upper one. Anything else stays as typed, and the
// database refuses it.
void datumsregel(const Spalte& spalte, std::string& zeichen, std::string& wert) {
    int jahr = 0, monat = 0, tag = 0;
    if (datum_lesen(wert, jahr, monat, tag)) {
        wert = "#" + datum_mdy(jahr, monat, tag, false) + "#";
        return;
    }
    const int dieses_jahr = DateTime::today().year();
    double unten = 0, oben = 0;
    const std::size_t erste = wert.find("..");
    if (erste != std::string::npos) {
        unten = numericValue(trimBlanks(std::string_view(wert).substr(0, erste)));
        const std::string_view rest =
            trimBlanks(std::string_view(wert).substr(wert.rfind("..") + 2));
        oben = rest.empty() ? dieses_jahr : numericValue(rest);
    } else {
        unten = oben = numericValue(wert);
    }
    // Years beyond 9999 make no date: the value stays, and the database refuses it.
    if (!(unten > 0) || oben > dieses_jahr || unten > 9999 || oben < -9999)
        return;
    const int von = static_cast<int>(std::lround(unten));
    const int bis = static_cast<int>(std::lround(oben));
    zeichen = ">";
    wert = "#" + datum_mdy(von, 1, 1, true) + "# AND" + " [" + spalte.Name + "] < #" +
           datum_mdy(bis, 12, 31, true) + "#";
}

// The value as the condition writes it: text in apostrophes, yes/no as True or False, dates by
// the date rule, anything else as typed. A value that the user put in apostrophes stands.
void wert_abschliessen(const Spalte& spalte, bool als_text, std::string& zeichen,
                       std::string& wert) {
    if (ist_zwei_anfuehrungszeichen(wert))
        wert.clear();
    if (als_text && !wert.empty() && wert.front() != '\'') {
        if (spalte.DataType == SpaltentypTextRaute)
            wert = "#" + wert;
        wert = "'" + wert + "'";
    } else if (spalte.DataType == SpaltentypJaNein) {
        wert = wert == "ja" ? "True" : "False";
    } else if (spalte.DataType == SpaltentypDatum) {
        datumsregel(spalte, zeichen, wert);
    }
}

// The operator of a text without one in front, by the column: a range of years on the sort
// keys, the number of an event kind, a pattern on text (a plain text selects what begins with
// it), and equality on everything else.
void ohne_operator(const Spalte& spalte, bool& als_text, std::string& zeichen, std::string& wert) {
    const std::string key = upperAscii(spalte.Key);
    for (const Sonderspalte& s : sonderspalten) {
        if (key != s.key)
            continue;
        zeichen = s.zeichen;
        wert =
            s.art == Wertart::Jahresbereich ? datumsbereich(wert) : std::to_string(ganzzahl(wert));
        als_text = false;
        return;
    }
    if (ist_zwei_anfuehrungszeichen(wert))
        wert.clear();
    if (!als_text) {
        zeichen = "=";
        return;
    }
    zeichen = "LIKE";
    if (!wert.empty() && wert.back() == '%')
        wert.back() = '*';
    if (wert.empty() || wert.back() != '*')
        wert += '*';
}

[[noreturn]] void verweigern(const Spalte& spalte, const std::string& bedingung) {
    throw DatabaseError(err::SyntaxError,
                        "Syntax error in the filter of the column " + spalte.Key + ": " + bedingung,
                        {}, bedingung);
}

// Checks that a column's condition is one parenthesised comparison of the column's own field:
// its literals are closed, its parentheses close only at its end, and outside its literals it
// holds no ";", no comment, no other name and no word but those of a comparison.
void bedingung_pruefen(const Spalte& spalte, const std::string& bedingung) {
    const std::vector<jet::Token> tokens = jet::tokenize(bedingung);
    int tiefe = 0;
    bool angefangen = false;
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        const jet::Token& t = tokens[i];
        if (t.kind == jet::TokenKind::Space)
            continue;
        if (!angefangen && t.text != "(")
            verweigern(spalte, bedingung);
        if (angefangen && tiefe == 0) // something behind the closing parenthesis
            verweigern(spalte, bedingung);
        angefangen = true;
        const std::string_view naechstes = i + 1 < tokens.size() ? tokens[i + 1].text : "";
        switch (t.kind) {
        case jet::TokenKind::Symbol:
            if (t.text == "(")
                ++tiefe;
            else if (t.text == ")")
                --tiefe;
            else if (t.text == ";" || (t.text == "-" && naechstes == "-") ||
                     (t.text == "/" && naechstes.starts_with("*")))
                verweigern(spalte, bedingung);
            break;
        case jet::TokenKind::Word: {
            bool erlaubt = false;
            for (std::string_view w : erlaubte_woerter)
                erlaubt = erlaubt || equalsNoCase(t.text, w);
            if (!erlaubt)
                verweigern(spalte, bedingung);
            break;
        }
        case jet::TokenKind::Quoted: {
            const std::string_view name = t.text.substr(1, t.text.size() - 2);
            if (!equalsNoCase(name, spalte.Name) &&
                (spalte.SourceTable.empty() || !equalsNoCase(name, spalte.SourceTable)))
                verweigern(spalte, bedingung);
            break;
        }
        default: // strings, numbers and dates
            break;
        }
    }
    if (tiefe != 0)
        verweigern(spalte, bedingung);
}

} // namespace

bool ist_schluesselspalte(std::string_view key) {
    for (std::string_view k : schluesselspalten)
        if (equalsNoCase(key, k))
            return true;
    return false;
}

std::string filtertext(const Spalte& spalte) {
    bool feste_liste = false;
    for (const Listenwert& l : listenwerte) {
        if (!equalsNoCase(spalte.Key, l.spalte))
            continue;
        feste_liste = true;
        if (spalte.Filter == sprachtext(std::string(l.sprachschluessel)) ||
            (!l.buchstabe.empty() && spalte.Filter == l.buchstabe))
            return std::string(l.wert);
    }
    return feste_liste ? std::string() : spalte.Filter;
}

std::string spaltenbedingung(const Spalte& spalte, const std::string& text) {
    bool als_text = gilt_als_text(spalte.DataType);
    std::string wert = text;
    bool tagspalte = ist_schluesselspalte(spalte.Key);
    for (std::string_view key : weitere_tagspalten)
        tagspalte = tagspalte || equalsNoCase(spalte.Key, key);
    if (tagspalte)
        wert = spalte.Tag.text();

    std::string zeichen;
    bool gefunden = false;
    for (const Operator& op : operatoren) {
        if (wert.size() >= op.anfang.size() &&
            equalsNoCase(std::string_view(wert).substr(0, op.anfang.size()), op.anfang)) {
            zeichen = op.zeichen;
            wert =
                std::string(ohne_fuehrende_blanks(std::string_view(wert).substr(op.anfang.size())));
            gefunden = true;
            break;
        }
    }
    if (!gefunden)
        ohne_operator(spalte, als_text, zeichen, wert);
    wert_abschliessen(spalte, als_text, zeichen, wert);

    const std::string feld = spalte.SourceTable.empty()
                                 ? "[" + spalte.Name + "]"
                                 : "[" + spalte.SourceTable + "].[" + spalte.Name + "]";
    std::string bedingung = "(" + feld + " " + zeichen + " " + wert + ")";
    bedingung_pruefen(spalte, bedingung);
    return bedingung;
}

std::string datumsbereich(const std::string& text) {
    std::int64_t unten = 0;
    std::string oben;
    const std::size_t punkte = text.find("..");
    if (punkte != std::string::npos) {
        unten = ganzzahl(std::string_view(text).substr(0, punkte));
        oben = zahltext(numericValue(std::string_view(text).substr(punkte + 2)));
    } else {
        unten = ganzzahl(text);
        oben = std::to_string(unten);
    }
    return " between '" + std::to_string(unten) + "' AND '" + oben + "9999'";
}

} // namespace folio
