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
std::string rolle(const std::string& asso, const std::string& ursprung) {
    std::string r = isBlank(asso) ? "" : asso;
    if (r.empty() && !ursprung.empty()) {
        const std::string zeichen = toWindows1252(toUtf8(codePoints(ursprung).substr(0, 1)));
        r = sprachtext(std::to_string(1800 + static_cast<unsigned char>(zeichen[0])));
    }
    if (upperAscii(r) == "TAUFPATE")
        r = "Godfather";
    return r;
}

void assoziierte(Exportlauf& lauf, std::int16_t nr, RecordId ereignis) {
    for (const Beteiligter& b : lauf.tabellen.beteiligte(ereignis)) {
        zeile(lauf, nr + 1, "ASSO @I" + b.quelle.text() + "@");
        zeile(lauf, nr + 2, "RELA " + rolle(b.asso, b.ursprung));
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

void Ereignisliste::hinzufuegen(int jahr, int monat, int tag, RecordId ereignis) {
    eintraege_.push_back({ereignis_sortschluessel(jahr, monat, tag), ereignis});
}

// Equal keys are never exchanged: any stable sort gives the order of the exchange sort.
void Ereignisliste::sortieren() {
    std::stable_sort(eintraege_.begin(), eintraege_.end(), [](const Eintrag& a, const Eintrag& b) {
        return a.schluessel < b.schluessel;
    });
}

void Ereignisliste::schreiben(Exportlauf& lauf, std::int16_t maxHP) {
    sortieren();
    for (const Eintrag& e : eintraege_)
        ereignisschreiben(lauf, 1, e.ereignis, maxHP);
}

void ereignis_einreihen(Ereignisliste& liste, RecordId ziel) {
    dao::Recordset& e = *rs_Ereignis;
    e.Index("Counter");
    e.Seek("=", Value(ziel));
    if (!e.NoMatch())
        liste.hinzufuegen(static_cast<int>(e.get("vjahr").toInt()),
                          static_cast<int>(e.get("vmonat").toInt()),
                          static_cast<int>(e.get("vtag").toInt()), ziel);
}

void ereignisschreiben(Exportlauf& lauf, std::int16_t nr, RecordId datensatz, std::int16_t maxHP) {
    lauf.fortschritt.ereignisse();
    dao::Recordset& e = *rs_Ereignis;
    e.Index("Counter");
    e.Seek("=", Value(datensatz));
    if (e.NoMatch() || !e.get("markierung").toBool())
        return;
    const Ereignisart* gefunden = lauf.tabellen.ereignisart(e.get("Art").toInt());
    if (!gefunden)
        return;
    const Ereignisart& art = *gefunden;
    const std::string grund = e.get("Grund").text();
    const std::string tag = trimmed(art.gedtag);
    const std::string tagwert = art.causAlsTag ? " " + trimmed(grund) : "";
    if (maxHP != art.maxhauptpersonen)
        return;

    const auto unter = static_cast<std::int16_t>(nr + 1);
    if (tag.empty()) {
        zeile(lauf, nr, "EVEN");
        zeile(lauf, unter, "TYPE " + art.art);
    } else {
        zeile(lauf, nr, tag + tagwert);
    }
    datumschreiben(lauf, unter, e);
    const std::string kurztext = e.get("Kurztext").text();
    const RecordId counter = e.get("Counter").toRecordId();
    const RecordId ort = e.get("Ort").toRecordId();
    const RecordId bild = e.get("Bild").toRecordId();
    const Value geaendert = e.get("geaendert");
    const std::string text = rtf_klartext(e.get("Text").text());
    if (!isBlank(kurztext))
        GEDtext(lauf, unter, "NOTE", kurztext);
    if (!isBlank(text))
        GEDtext(lauf, unter, "TEXT", text);
    if (!isBlank(grund) && tagwert.empty()) {
        const bool alsNotiz = lauf.optionen.nur_55 && isBlank(kurztext);
        GEDtext(lauf, unter, alsNotiz ? " NOTE " : " CAUS ", grund);
    }
    ortschreiben(lauf, unter, ort);
    Bildverknuepfungschreiben(lauf, unter, bild);
    Chanschreiben(lauf, unter, geaendert);
    Quellenschreiben(lauf, unter, counter, "E");
    assoziierte(lauf, nr, counter);
}

} // namespace folio
