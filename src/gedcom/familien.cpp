#include "gedcom/familien.h"

#include "database/tabellen.h"
#include "engine/durchlauf.h"
#include "gedcom/ereignisse.h"
#include "gedcom/export.h"
#include "gedcom/exportlauf.h"
#include "gedcom/familientabelle.h"
#include "gedcom/reihenschreiber.h"
#include "gedcom/zeilen.h"

#include <algorithm>
#include <string>
#include <unordered_set>
#include <vector>

namespace folio {

namespace {

// A parent as the family's row holds it: 0 for a person who is in the tree but not in the
// export. A number without a person stays, and stands in the file as HUSB or WIFE.
RecordId im_export(Exportlauf& lauf, RecordId elternteil) {
    if (elternteil.isZero())
        return elternteil;
    const auto person = lauf.tabellen.person(elternteil);
    return person && !person->markiert ? RecordId() : elternteil;
}

// Puts a partner of a marriage link in the place of the father when his sex is "M", else in
// that of the mother; false when the partner isn't a marked person.
bool partner_einsetzen(Exportlauf& lauf, RecordId partner, RecordId& vater, RecordId& mutter) {
    const auto person = lauf.tabellen.person(partner);
    if (!person || !person->markiert)
        return false;
    (person->maennlich ? vater : mutter) = partner;
    return true;
}

// The marked children of both parents, or of the one parent a row has: a family of one
// parent takes all of that parent's children, also those of another family with both. The
// family table noted them while it was built, in the order of a query of them.
void kinder(Exportlauf& lauf, const Familientabelle& tabelle, RecordId vater, RecordId mutter) {
    for (RecordId kind : tabelle.kinder(vater, mutter))
        zeile(lauf, 1, "CHIL @I" + kind.text() + "@");
}

// The first link of each event among a person's links as a main person, as a query of the
// person's links with DISTINCT gives them: "d" and "D" are the same letter there, and the
// first row found stands for both.
std::vector<Ereignistabelle::Link> erste_links(std::span<const Ereignistabelle::Link> links) {
    std::vector<Ereignistabelle::Link> erste;
    std::unordered_set<std::uint32_t> gesehen;
    for (const Ereignistabelle::Link& l : links)
        if (gesehen.insert(l.ereignis()).second)
            erste.push_back(l);
    return erste;
}

// The events in which both partners are main persons, in the order of their dates: each
// event of the father's distinct links with exactly "d", where the mother's distinct link to
// it has exactly "d" as well. The event writer keeps those whose kind has two main persons;
// a row with a 0 finds none.
void ereignisse(Exportlauf& lauf, RecordId vater, RecordId mutter) {
    const Ereignistabelle& tabelle = lauf.tabellen.ereignisse();
    const auto des_vaters = tabelle.links(vater);
    const auto der_mutter = tabelle.links(mutter);
    if (des_vaters.empty() || der_mutter.empty())
        return;
    const std::vector<Ereignistabelle::Link> der_mutter_erste = erste_links(der_mutter);
    Ereignisliste liste;
    for (const Ereignistabelle::Link& l : erste_links(des_vaters)) {
        if (!l.genau_d())
            continue;
        auto m = std::find_if(
            der_mutter_erste.begin(), der_mutter_erste.end(),
            [&](const Ereignistabelle::Link& e) { return e.ereignis() == l.ereignis(); });
        if (m != der_mutter_erste.end() && m->genau_d())
            liste.hinzufuegen(tabelle, l.ereignis());
    }
    liste.schreiben(lauf, 2);
}

void familie_schreiben(Exportlauf& lauf, const Familientabelle& tabelle, std::size_t nummer,
                       const Familientabelle::Familie& familie) {
    zeile(lauf, "0 @F" + std::to_string(nummer) + "@ FAM");
    if (!familie.vater.isZero())
        zeile(lauf, 1, "HUSB @I" + familie.vater.text() + "@");
    if (!familie.mutter.isZero())
        zeile(lauf, 1, "WIFE @I" + familie.mutter.text() + "@");
    kinder(lauf, tabelle, familie.vater, familie.mutter);
    ereignisse(lauf, familie.vater, familie.mutter);
}

} // namespace

void familien_aus_eltern(Exportlauf& lauf, Familientabelle& tabelle) {
    ErstesMal erstes_mal; // a person's number that stands twice is a child once, by its first row
    zeilen_durchlaufen(lauf,
                       "SELECT Counter, Vater, Mutter FROM Daten WHERE " +
                           lauf.optionen.personen.bedingung() + " ;",
                       5, 5, [&](const dao::Durchlauf& person) {
                           if (lauf.tabellen.doppelte_person(person.nummer(0)) &&
                               !erstes_mal(person.nummer(0)))
                               return;
                           const RecordId vater = person.nummer(1);
                           const RecordId mutter = person.nummer(2);
                           tabelle.kind_merken(person.nummer(0), vater, mutter);
                           // The stored parents against the rows, which hold the cleared ones:
                           // where a parent isn't marked, a brother's or sister's row isn't found
                           // and the child adds its own.
                           if (tabelle.suchen(vater, mutter))
                               return;
                           const RecordId v = im_export(lauf, vater);
                           const RecordId m = im_export(lauf, mutter);
                           if (!v.isZero() || !m.isZero())
                               tabelle.hinzufuegen(v, m);
                       });
}

void familien_aus_partnerschaften(Exportlauf& lauf, Familientabelle& tabelle) {
    // A tree without marriage links gives an empty result, which is left alone.
    zeilen_durchlaufen(lauf, "Select DISTINCT Ziel , Quelle FROM Daten_DS WHERE Art = 'E' ;", 10, 5,
                       [&](const dao::Durchlauf& paar) {
                           // Two partners of the same kind: the second takes the place of the
                           // first.
                           RecordId vater, mutter;
                           if (!partner_einsetzen(lauf, paar.nummer(0), vater, mutter) ||
                               !partner_einsetzen(lauf, paar.nummer(1), vater, mutter))
                               return;
                           if (!tabelle.suchen(vater, mutter))
                               tabelle.hinzufuegen(vater, mutter);
                       });
}

// The families are written on two threads at once (Reihenschreiber), a row of them each.
void familien_schreiben(Exportlauf& lauf, const Familientabelle& tabelle) {
    lauf.tabellen.alles_laden();
    tabelle.vorbereiten();
    constexpr std::size_t Stapel = 2048;
    const std::size_t anzahl = tabelle.anzahl();
    Reihenschreiber reihen(lauf);
    for (std::size_t von = 1; von <= anzahl; von += Stapel) {
        const std::size_t bis = std::min(von + Stapel, anzahl + 1);
        reihen.schreiben(
            [&tabelle, von, bis](Exportlauf& teil) {
                for (std::size_t i = von; i < bis; ++i)
                    familie_schreiben(teil, tabelle, i, tabelle.zeile(i));
            },
            static_cast<std::int64_t>(bis - von));
        fortschritt_setzen(lauf, reihen.geschrieben(), static_cast<std::int64_t>(anzahl), 80, 20);
        lauf.fortschritt.ereignisse();
    }
    reihen.beenden();
    fortschritt_setzen(lauf, reihen.geschrieben(), static_cast<std::int64_t>(anzahl), 80, 20);
}

} // namespace folio
