// The filter language of the grids: whatever a user types into a column's filter, the
// condition either is refused or stays inside its column. Put into the grid's query and
// translated, it is one statement to the store's own lexer, one parenthesised expression, and
// outside its literals it names no field but the column's and holds no word but those of a
// comparison. The first byte of the input picks the column, the second its picked entry.
#include "engine/errors.h"
#include "engine/jet_sql.h"
#include "engine/text_util.h"
#include "frame/globals.h"
#include "frame/sprache.h"
#include "fuzz_check.h"
#include "wizard/filterbedingung.h"

#include <cctype>
#include <cstddef>
#include <cstdint>

namespace {

using namespace folio;

Spalte spalte(std::uint8_t wahl, std::uint8_t eintrag) {
    struct Art {
        const char* key;
        int typ;
        const char* tabelle;
    };
    static constexpr Art arten[] = {
        {"SURN", SpaltentypText, "Daten"},       {"Counter", SpaltentypZahl, "Daten"},
        {"GSort", SpaltentypText, "Daten"},      {"Geburt", SpaltentypDatum, ""},
        {"lebt", SpaltentypJaNein, "Daten"},     {"Geschlecht", SpaltentypText, "Daten"},
        {"Ort", SpaltentypZahl, "Ereignis"},     {"Art", SpaltentypZahl, "Ereignis"},
        {"Memo", SpaltentypMemo, "Ort"},         {"PLZ", SpaltentypTextRaute, "Ort"},
        {"Markierung", SpaltentypJaNein, "Ort"}, {"vJahr", SpaltentypZahl, "Ereignis"},
    };
    const Art& a = arten[wahl % std::size(arten)];
    Spalte s;
    s.Key = s.Name = a.key;
    s.DataType = a.typ;
    s.SourceTable = a.tabelle;
    s.Tag = Value(static_cast<int>(eintrag) - 1);
    return s;
}

constexpr std::string_view woerter[] = {"AND", "OR", "NOT", "LIKE", "BETWEEN", "IN", "IS", "NULL"};

void pruefen(const Spalte& sp, const std::string& bedingung, std::string_view eingabe) {
    const std::string abfrage = "SELECT [Counter] FROM [" +
                                (sp.SourceTable.empty() ? std::string("Daten") : sp.SourceTable) +
                                "] WHERE " + bedingung;
    std::string uebersetzt;
    try {
        uebersetzt = jet::translate(abfrage);
    } catch (const DatabaseError&) {
        return; // refused where the grid runs it
    }
    const fuzz::SqliteSicht sicht = fuzz::sqlite_sicht(uebersetzt);
    const std::string was = sp.Key + ": " + uebersetzt;
    fuzz::pruefen(!sicht.zweite_anweisung && !sicht.offen, "not one closed statement: " + was,
                  eingabe);
    for (const std::string& n : sicht.namen)
        fuzz::pruefen(n == "Counter" || equalsNoCase(n, sp.Name) ||
                          equalsNoCase(n, sp.SourceTable.empty() ? "Daten" : sp.SourceTable),
                      "another name: " + n + " in " + was, eingabe);
    // The expression behind WHERE: one pair of parentheses around everything, words only of a
    // comparison.
    const std::string& g = sicht.gerippe;
    const std::size_t wo = g.find(" WHERE ");
    fuzz::pruefen(wo != std::string::npos, "no WHERE: " + was, eingabe);
    const std::string_view ausdruck = trimWhitespace(std::string_view(g).substr(wo + 7));
    int tiefe = 0;
    for (std::size_t i = 0; i < ausdruck.size(); ++i) {
        const char c = ausdruck[i];
        fuzz::pruefen(i == 0 ? c == '(' : tiefe > 0, "the condition ends early: " + was, eingabe);
        fuzz::pruefen(c != ';', "a semicolon: " + was, eingabe);
        tiefe += c == '(' ? 1 : c == ')' ? -1 : 0;
        if (std::isalpha(static_cast<unsigned char>(c)) || c == '_') {
            std::size_t ende = i;
            while (ende < ausdruck.size() &&
                   (std::isalnum(static_cast<unsigned char>(ausdruck[ende])) ||
                    ausdruck[ende] == '_' || static_cast<unsigned char>(ausdruck[ende]) >= 0x80))
                ++ende;
            const std::string_view wort = ausdruck.substr(i, ende - i);
            const bool zahl = i > 0 && (std::isdigit(static_cast<unsigned char>(ausdruck[i - 1])) ||
                                        ausdruck[i - 1] == '.');
            bool erlaubt = zahl;
            for (std::string_view w : woerter)
                erlaubt = erlaubt || equalsNoCase(wort, w);
            fuzz::pruefen(erlaubt, "the word " + std::string(wort) + ": " + was, eingabe);
            i = ende - 1;
        }
    }
    fuzz::pruefen(tiefe == 0, "the parentheses don't close: " + was, eingabe);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* daten, std::size_t groesse) {
    // The fixed lists of the filter cells are in the user's language.
    static const bool sprache = [] {
        Sprache = "Deutsch";
        sprache_oeffnen(std::string(FOLIO_STAGE) + "/Daten/language.mdb");
        return true;
    }();
    (void)sprache;
    if (groesse < 2)
        return 0;
    Spalte sp = spalte(daten[0], daten[1]);
    sp.Filter.assign(reinterpret_cast<const char*>(daten) + 2, groesse - 2);
    const std::string text = filtertext(sp);
    if (text.empty())
        return 0;
    std::string bedingung;
    try {
        bedingung = spaltenbedingung(sp, text);
    } catch (const Error&) {
        return 0; // refused with a message
    }
    pruefen(sp, bedingung, sp.Filter);
    return 0;
}
