#include "gedcom/ereignisse.h"

#include "database/tabellen.h"
#include "engine/text_util.h"
#include "engine/utf8.h"
#include "frame/sprache.h"
#include "gedcom/datum.h"
#include "gedcom/exportlauf.h"
#include "gedcom/orte.h"
#include "gedcom/rtf.h"
#include "gedcom/verknuepfungen.h"
#include "gedcom/zeilen.h"

#include <algorithm>

namespace folio {

namespace {

// The role of an associate: its words, else (where they are empty once trimmed) the language
// text of its letter.
std::string rolle(Exportlauf& lauf, const std::string& asso, const std::string& ursprung) {
    std::string r = isBlank(asso) ? "" : asso;
    if (r.empty() && !ursprung.empty()) {
        const std::string zeichen = toWindows1252(toUtf8(codePoints(ursprung).substr(0, 1)));
        r = lauf.tabellen.sprachtext(1800 + static_cast<unsigned char>(zeichen[0]));
    }
    if (upperAscii(r) == "TAUFPATE")
        r = "Godfather";
    return r;
}

void assoziierte(Exportlauf& lauf, std::int16_t nr, RecordId ereignis) {
    for (const Beteiligter& b : lauf.tabellen.beteiligte(ereignis)) {
        zeile(lauf, nr + 1, "ASSO @I" + b.quelle.text() + "@");
        zeile(lauf, nr + 2,
              "RELA " + textwert(rolle(lauf, lauf.tabellen.beteiligtentext(b.asso),
                                       lauf.tabellen.beteiligtentext(b.ursprung))));
    }
}

} // namespace

RecordId ereignis_sortschluessel(int jahr, int monat, int tag) {
    if (jahr == 0)
        jahr = 2200;
    if (monat == 0)
        monat = 12;
    if (tag == 0 && ++monat == 13) {
        ++jahr;
        monat = 1;
    }
    return RecordId(static_cast<std::int64_t>(DateTime::fromDate(jahr, monat, tag).days()));
}

// Equal keys are never exchanged: any stable sort gives the order of the exchange sort.
void Ereignisliste::sortieren() {
    std::stable_sort(eintraege_.begin(), eintraege_.end(), [](const Eintrag& a, const Eintrag& b) {
        return a.schluessel < b.schluessel;
    });
}

void Ereignisliste::schreiben(Exportlauf& lauf, std::int16_t maxHP) {
    sortieren();
    const Ereignistabelle& tabelle = lauf.tabellen.ereignisse();
    for (const Eintrag& e : eintraege_) {
        lauf.fortschritt.ereignisse();
        ereignis_schreiben(lauf, 1, tabelle.lesen(e.ereignis), maxHP);
    }
}

void ereignisschreiben(Exportlauf& lauf, std::int16_t nr, RecordId datensatz, std::int16_t maxHP) {
    lauf.fortschritt.ereignisse();
    const Ereignistabelle& tabelle = lauf.tabellen.ereignisse();
    if (const auto ereignis = tabelle.finden(datensatz))
        ereignis_schreiben(lauf, nr, tabelle.lesen(*ereignis), maxHP);
}

void ereignis_schreiben(Exportlauf& lauf, std::int16_t nr, const Ereignistabelle::Ereignis& e,
                        std::int16_t maxHP) {
    const Ereignisart* gefunden = lauf.tabellen.ereignisart(e.art);
    if (!gefunden)
        return;
    const Ereignisart& art = *gefunden;
    const std::string grund(e.grund);
    const std::string& tag = art.gedtag;
    // The cause as the tag's value, for the kinds that have it there.
    std::string tagwert;
    if (art.causAlsTag)
        tagwert.append(" ").append(textwert(trimmed(grund)));
    if (maxHP != art.maxhauptpersonen)
        return;

    const auto unter = static_cast<std::int16_t>(nr + 1);
    if (tag.empty()) {
        zeile(lauf, nr, "EVEN");
        zeile(lauf, unter, "TYPE " + textwert(art.art));
    } else {
        zeile(lauf, nr, tag + tagwert);
    }
    datumschreiben(lauf, unter, std::string(e.ca), e.tag, e.monat, e.jahr);
    const std::string kurztext(e.kurztext);
    const std::string text(e.klartext);
    if (!isBlank(kurztext))
        GEDtext(lauf, unter, "NOTE", kurztext);
    if (!isBlank(text))
        GEDtext(lauf, unter, "TEXT", text);
    if (!isBlank(grund) && tagwert.empty()) {
        const bool alsNotiz = lauf.optionen.nur_55 && isBlank(kurztext);
        GEDtext(lauf, unter, alsNotiz ? " NOTE " : " CAUS ", grund);
    }
    ortschreiben(lauf, unter, e.ort);
    Bildverknuepfungschreiben(lauf, unter, e.bild);
    Chanschreiben(lauf, unter, e.geaendert ? Value(DateTime(*e.geaendert)) : Value());
    Quellenschreiben(lauf, unter, e.counter, "E");
    assoziierte(lauf, nr, e.counter);
}

} // namespace folio
