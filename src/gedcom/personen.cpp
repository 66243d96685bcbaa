#include "gedcom/personen.h"

#include "database/tabellen.h"
#include "engine/durchlauf.h"
#include "engine/text_util.h"
#include "engine/utf8.h"
#include "frame/sprache.h"
#include "gedcom/ereignisse.h"
#include "gedcom/export.h"
#include "gedcom/exportlauf.h"
#include "gedcom/familientabelle.h"
#include "gedcom/orte.h"
#include "gedcom/reihenschreiber.h"
#include "gedcom/rtf.h"
#include "gedcom/verknuepfungen.h"
#include "gedcom/zeilen.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <vector>

namespace folio {

namespace {

// `laenge` characters from the character `start` on (counted from 1), as far as there are.
std::string mitte(const std::string& s, std::size_t start, std::size_t laenge) {
    const std::u32string t = codePoints(s);
    return start > t.size() ? "" : toUtf8(t.substr(start - 1, laenge));
}

// The first character of the trimmed given names and a point: the initial of a living
// person whose names are protected.
std::string initiale(const std::string& givn) {
    return mitte(trimmed(givn), 1, 1) + ".";
}

// The role of an associated person: a number from 1802 to 1898 stands for a language text.
std::string rolle(const std::string& asso) {
    std::string r = asso;
    const double n = std::trunc(numericValue(asso));
    if (n > 1801 && n < 1899)
        r = sprachtext(std::to_string(static_cast<int>(n)));
    if (upperAscii(r) == "TAUFPATE")
        r = "Godfather";
    return r;
}

// The fields of a person that the writer reads, in the order of its query.
enum Feld : int {
    Counter,
    Lebt,
    GIVN,
    SURN,
    ABBR,
    NICK,
    NPFX,
    NFSX,
    SPFX,
    NameNOTE,
    Geschlecht,
    TITL,
    OCCU,
    Memo,
    Ort,
    Bild,
    Notiz,
    Religion,
    Geaendert,
    GUID,
    Vater,
    Mutter
};
constexpr int AnzahlFelder = Mutter + 1;
const char* const Personen =
    "SELECT Counter, Lebt, GIVN, SURN, ABBR, NICK, NPFX, NFSX, SPFX, NameNOTE, Geschlecht, TITL, "
    "OCCU, Memo, Ort, Bild, Notiz, Religion, geaendert, GUID, Vater, Mutter FROM Daten WHERE ";

// A person's row copied out of the pass over Daten, so that another thread may write it:
// each column as Value, which converts it as the pass does.
class Personenzeile {
public:
    void lesen(const dao::Durchlauf& p) {
        for (int i = 0; i < AnzahlFelder; ++i)
            werte_[static_cast<std::size_t>(i)] = p.wert(i);
    }
    const Value& wert(int i) const { return werte_[static_cast<std::size_t>(i)]; }
    bool istNull(int i) const { return wert(i).isNull(); }
    RecordId nummer(int i) const { return wert(i).toRecordId(); }
    bool wahr(int i) const { return wert(i).toBool(); }
    std::string text(int i) const { return wert(i).text(); }

private:
    std::array<Value, AnzahlFelder> werte_;
};

// An associated person (Daten_DS of the kind "Z"): the number and the role, read on the
// run's own thread, for the role may be a language text.
struct Assoziierter {
    std::string ziel, rolle;
};

void namen(Exportlauf& lauf, const Personenzeile& p, bool geschuetzt) {
    const std::string givn = p.text(GIVN);
    const std::string surn = p.text(SURN);
    zeile(lauf, 1, "NAME " + textwert((geschuetzt ? initiale(givn) : givn) + " /" + surn + "/"));
    if (!isBlank(givn))
        zeile(lauf, 2, "GIVN " + textwert(geschuetzt ? initiale(givn) : trimmed(givn)));
    if (!isBlank(surn))
        zeile(lauf, 2, "SURN " + textwert(trimmed(surn)));
    if (geschuetzt)
        return;
    for (const auto& [feld, tag] : std::array<std::pair<Feld, const char*>, 5>{
             {{ABBR, "ABBR"}, {NICK, "NICK"}, {NPFX, "NPFX"}, {NFSX, "NSFX"}, {SPFX, "SPFX"}}}) {
        const std::string wert = p.text(feld);
        if (!isBlank(wert))
            zeile(lauf, 2, std::string(tag) + " " + textwert(trimmed(wert)));
    }
    const std::string notiz = p.text(NameNOTE);
    if (!isBlank(notiz))
        GEDtext(lauf, 2, "NOTE", notiz);
}

// The events of which the person is a main person (exactly "d"), in the order of their dates.
void ereignisse(Exportlauf& lauf, RecordId person) {
    const Ereignistabelle& tabelle = lauf.tabellen.ereignisse();
    Ereignisliste liste;
    for (const Ereignistabelle::Link& l : tabelle.links(person))
        if (l.genau_d())
            liste.hinzufuegen(tabelle, l.ereignis());
    liste.schreiben(lauf, 1);
}

void assoziierte_lesen(Exportlauf& lauf, RecordId person, std::vector<Assoziierter>& liste) {
    liste.clear();
    if (!lauf.tabellen.hat_assoziierte(person))
        return;
    auto rs = DB->OpenRecordset(
        "Select DISTINCT Ziel, ASSO FROM Daten_DS WHERE Art = 'Z' AND ( Quelle =" +
        person.sqlLiteral() + ") ORDER BY Asso ;");
    for (; !rs->Eof(); rs->MoveNext())
        liste.push_back({rs->get("Ziel").toRecordId().text(), rolle(rs->get("ASSO").text())});
}

// FAMC and FAMS by the rows of the family table, in the order of the rows.
void familien(Exportlauf& lauf, const Familientabelle& tabelle, RecordId person, RecordId vater,
              RecordId mutter) {
    const auto& kind = tabelle.zeilen_mit_eltern(vater, mutter);
    const auto& eltern = tabelle.zeilen_mit_person(person);
    auto k = kind.begin();
    auto e = eltern.begin();
    while (k != kind.end() || e != eltern.end()) {
        const std::size_t i =
            std::min(k != kind.end() ? *k : SIZE_MAX, e != eltern.end() ? *e : SIZE_MAX);
        if (k != kind.end() && *k == i) {
            zeile(lauf, 1, "FAMC @F" + std::to_string(i) + "@");
            ++k;
        }
        if (e != eltern.end() && *e == i) {
            zeile(lauf, 1, "FAMS @F" + std::to_string(i) + "@");
            ++e;
        }
    }
}

void person_schreiben(Exportlauf& lauf, const Personenzeile& p,
                      const std::vector<Assoziierter>& assoziierte,
                      const Familientabelle& tabelle) {
    // The privacy options hold for living persons alone.
    const Exportoptionen& o = lauf.optionen;
    const bool lebt = p.wahr(Lebt);
    const bool vornamen_kuerzen = lebt && o.vornamen_kuerzen, ohne_titel = lebt && o.ohne_titel,
               ohne_lebensdaten = lebt && o.ohne_lebensdaten,
               ohne_verknuepfungen = lebt && o.ohne_verknuepfungen;
    const RecordId counter = p.nummer(Counter);

    zeile(lauf, "0 @I" + counter.text() + "@ INDI");
    namen(lauf, p, vornamen_kuerzen);
    zeile(lauf, 1, p.text(Geschlecht) == "M" ? "SEX M" : "SEX F");
    const std::string titl = p.text(TITL);
    if (!isBlank(titl) && !ohne_titel)
        zeile(lauf, 1, "TITL " + textwert(trimmed(titl)));
    if (!ohne_lebensdaten) {
        const std::string occu = p.text(OCCU);
        if (!p.istNull(OCCU) && !isBlank(occu))
            GEDtext(lauf, 1, "OCCU", occu);
        ereignisse(lauf, counter);
    }
    if (!ohne_verknuepfungen) {
        const std::string klartext = p.istNull(Memo) ? "" : rtf_klartext(p.text(Memo));
        if (!isBlank(klartext))
            GEDtext(lauf, 1, "NOTE", klartext);
        const RecordId ort = p.nummer(Ort), bild = p.nummer(Bild), notiz = p.nummer(Notiz);
        const std::string religion = p.text(Religion);
        if (!o.nur_55)
            ortschreiben(lauf, 1, ort);
        Bildverknuepfungschreiben(lauf, 1, bild);
        Notizverknuepfungschreiben(lauf, 1, notiz);
        if (!isBlank(religion))
            zeile(lauf, 1, "RELI " + textwert(trimmed(religion)));
    }
    Chanschreiben(lauf, 1, p.wert(Geaendert));
    if (!p.istNull(GUID))
        zeile(lauf, 1, "_UID " + mitte(p.text(GUID), 2, 36)); // without the braces
    if (!ohne_verknuepfungen)
        Quellenschreiben(lauf, 1, counter, "D");
    for (const Assoziierter& a : assoziierte) {
        zeile(lauf, 1, "ASSO @I" + a.ziel + "@");
        zeile(lauf, 2, "RELA " + textwert(a.rolle));
    }
    familien(lauf, tabelle, counter, p.nummer(Vater), p.nummer(Mutter));
}

// Persons read in a row from the pass over Daten, with their associates.
struct Stapel {
    static constexpr std::size_t Groesse = 1024;
    std::vector<Personenzeile> zeilen = std::vector<Personenzeile>(Groesse);
    std::vector<std::vector<Assoziierter>> assoziierte =
        std::vector<std::vector<Assoziierter>>(Groesse);
    std::size_t anzahl = 0;

    // Reads up to Groesse persons; false where none was left. `ende` notes that the pass
    // is through: a further step would begin it again. A number that stands twice is read
    // once (`erstes_mal`).
    bool fuellen(Exportlauf& lauf, dao::Durchlauf& personen, ErstesMal& erstes_mal, bool& ende) {
        while (anzahl < Groesse && !ende) {
            if (!personen.weiter()) {
                ende = true;
                break;
            }
            zeilen[anzahl].lesen(personen);
            const RecordId nummer = zeilen[anzahl].nummer(Counter);
            if (lauf.tabellen.doppelte_person(nummer) && !erstes_mal(nummer))
                continue;
            assoziierte_lesen(lauf, nummer, assoziierte[anzahl]);
            ++anzahl;
        }
        return anzahl > 0;
    }
    void schreiben(Exportlauf& teil, const Familientabelle& familien) const {
        for (std::size_t i = 0; i < anzahl; ++i)
            person_schreiben(teil, zeilen[i], assoziierte[i], familien);
    }
};

} // namespace

// The persons are written on two threads at once (Reihenschreiber), while the run's own
// thread reads the next row of them from the tree. The lookups are read whole before, so that
// the writers only ask them.
void personen_schreiben(Exportlauf& lauf, const Familientabelle& familien) {
    lauf.tabellen.alles_laden();
    familien.vorbereiten();
    const std::string sql = Personen + lauf.optionen.personen.bedingung() + " ;";
    const std::int64_t gesamt = zeilen_zaehlen(sql);
    dao::Durchlauf personen(*DB, sql);
    Reihenschreiber reihen(lauf);
    ErstesMal erstes_mal;
    for (bool ende = false;;) {
        auto stapel = std::make_shared<Stapel>();
        if (!stapel->fuellen(lauf, personen, erstes_mal, ende))
            break;
        const auto anzahl = static_cast<std::int64_t>(stapel->anzahl);
        reihen.schreiben(
            [stapel, &familien](Exportlauf& teil) { stapel->schreiben(teil, familien); }, anzahl);
        fortschritt_setzen(lauf, reihen.geschrieben(), gesamt, 15, 50);
        lauf.fortschritt.ereignisse();
    }
    reihen.beenden();
    fortschritt_setzen(lauf, reihen.geschrieben(), gesamt, 15, 50);
}

} // namespace folio
