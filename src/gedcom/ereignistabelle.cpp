#include "gedcom/ereignistabelle.h"

#include "database/markenstand.h"
#include "database/tabellen.h"
#include "engine/durchlauf.h"
#include "gedcom/ereignisse.h"
#include "gedcom/rtf.h"

#include <algorithm>
#include <cstring>

namespace folio {

namespace {

// The values of an event stand in the block one after the other: whole numbers as
// variable-length zigzag numbers, texts as their length and bytes, and flags that tell which
// of the rarer values follow.
constexpr std::int64_t MitOrt = 1, MitBild = 2, MitAenderung = 4;

void zahl_anhaengen(std::string& block, std::int64_t wert) {
    auto z = (static_cast<std::uint64_t>(wert) << 1) ^ static_cast<std::uint64_t>(wert >> 63);
    while (z >= 0x80) {
        block.push_back(static_cast<char>(z | 0x80));
        z >>= 7;
    }
    block.push_back(static_cast<char>(z));
}

void text_anhaengen(std::string& block, std::string_view text) {
    zahl_anhaengen(block, static_cast<std::int64_t>(text.size()));
    block.append(text);
}

class Leser {
public:
    explicit Leser(const char* p) : p_(p) {}
    std::int64_t zahl() {
        std::uint64_t z = 0;
        for (int shift = 0;; shift += 7) {
            const auto b = static_cast<unsigned char>(*p_++);
            z |= static_cast<std::uint64_t>(b & 0x7f) << shift;
            if (b < 0x80)
                break;
        }
        return static_cast<std::int64_t>((z >> 1) ^ (~(z & 1) + 1));
    }
    std::string_view text() {
        const auto n = static_cast<std::size_t>(zahl());
        const std::string_view t(p_, n);
        p_ += n;
        return t;
    }
    double gleitzahl() {
        double d;
        std::memcpy(&d, p_, sizeof d);
        p_ += sizeof d;
        return d;
    }

private:
    const char* p_;
};

} // namespace

void Ereignistabelle::laden(const Markenstand* marken, bool mit_aenderung) {
    ereignisse_laden(marken, mit_aenderung);
    links_laden();
}

void Ereignistabelle::ereignisse_laden(const Markenstand* marken, bool mit_aenderung) {
    dao::Durchlauf e(*DB, std::string("SELECT Counter, Markierung, Art, ca, vTag, vMonat, vJahr, "
                                      "Kurztext, Text, Grund, Ort, Bild") +
                              (mit_aenderung ? ", geaendert" : "") + " FROM Ereignis");
    while (e.weiter()) {
        const RecordId counter = e.nummer(0);
        if (marken ? !marken->markiert(Verknuepft::Ereignis, counter) : !e.wahr(1))
            continue;
        eintraege_.push_back({counter, daten_.size()});
        const std::int64_t tag = e.ganz(4), monat = e.ganz(5), jahr = e.ganz(6);
        const RecordId ort = e.nummer(10), bild = e.nummer(11);
        const bool aenderung = mit_aenderung && !e.istNull(12);
        zahl_anhaengen(daten_, e.ganz(2));
        zahl_anhaengen(daten_, tag);
        zahl_anhaengen(daten_, monat);
        zahl_anhaengen(daten_, jahr);
        zahl_anhaengen(daten_,
                       ereignis_sortschluessel(static_cast<int>(jahr), static_cast<int>(monat),
                                               static_cast<int>(tag))
                           .units());
        zahl_anhaengen(daten_, (ort.isZero() ? 0 : MitOrt) | (bild.isZero() ? 0 : MitBild) |
                                   (aenderung ? MitAenderung : 0));
        if (!ort.isZero())
            zahl_anhaengen(daten_, ort.units());
        if (!bild.isZero())
            zahl_anhaengen(daten_, bild.units());
        if (aenderung) {
            const double tage = e.wert(12).toDate().days();
            daten_.append(reinterpret_cast<const char*>(&tage), sizeof tage);
        }
        text_anhaengen(daten_, e.textAnsicht(3));
        text_anhaengen(daten_, e.textAnsicht(7));
        const std::string_view text = e.textAnsicht(8);
        if (text.starts_with("{\\rtf"))
            text_anhaengen(daten_, rtf_klartext(std::string(text)));
        else
            text_anhaengen(daten_, text); // a text without RTF is its own plain text
        text_anhaengen(daten_, e.textAnsicht(9));
    }
    // The first row of a number is the one that a seek finds.
    std::stable_sort(eintraege_.begin(), eintraege_.end(),
                     [](const Eintrag& a, const Eintrag& b) { return a.counter < b.counter; });
    eintraege_.erase(
        std::unique(eintraege_.begin(), eintraege_.end(),
                    [](const Eintrag& a, const Eintrag& b) { return a.counter == b.counter; }),
        eintraege_.end());
    eintraege_.shrink_to_fit();
    daten_.shrink_to_fit();
}

// The links of main persons, grouped by person in the order of the table. The letter is
// compared without regard to case, as the queries of a person's links compare it.
void Ereignistabelle::links_laden() {
    struct Zeile {
        RecordId person;
        std::uint32_t folge;
        Link link;
    };
    std::vector<Zeile> zeilen;
    dao::Durchlauf l(*DB, "SELECT Quelle, Ziel, Ursprung FROM Ereignis_DS");
    std::uint32_t folge = 0;
    while (l.weiter()) {
        const std::string ursprung = l.text(2);
        if (ursprung != "d" && ursprung != "D")
            continue;
        if (const auto ereignis = finden(l.nummer(1)))
            zeilen.push_back({l.nummer(0), folge++, {*ereignis, ursprung == "d"}});
    }
    std::sort(zeilen.begin(), zeilen.end(), [](const Zeile& a, const Zeile& b) {
        return a.person != b.person ? a.person < b.person : a.folge < b.folge;
    });
    links_.reserve(zeilen.size());
    for (const Zeile& z : zeilen) {
        if (personen_.empty() || personen_.back() != z.person) {
            personen_.push_back(z.person);
            anfaenge_.push_back(static_cast<std::uint32_t>(links_.size()));
        }
        links_.push_back(z.link);
    }
    anfaenge_.push_back(static_cast<std::uint32_t>(links_.size()));
}

std::optional<std::uint32_t> Ereignistabelle::finden(RecordId counter) const {
    auto it = std::lower_bound(eintraege_.begin(), eintraege_.end(), counter,
                               [](const Eintrag& e, RecordId c) { return e.counter < c; });
    if (it == eintraege_.end() || it->counter != counter)
        return std::nullopt;
    return static_cast<std::uint32_t>(it - eintraege_.begin());
}

Ereignistabelle::Ereignis Ereignistabelle::lesen(std::uint32_t ereignis) const {
    const Eintrag& eintrag = eintraege_[ereignis];
    Leser l(daten_.data() + eintrag.daten);
    Ereignis e;
    e.counter = eintrag.counter;
    e.art = l.zahl();
    e.tag = l.zahl();
    e.monat = l.zahl();
    e.jahr = l.zahl();
    l.zahl(); // the sort key
    const std::int64_t flaggen = l.zahl();
    if (flaggen & MitOrt)
        e.ort = RecordId::fromUnits(l.zahl());
    if (flaggen & MitBild)
        e.bild = RecordId::fromUnits(l.zahl());
    if (flaggen & MitAenderung)
        e.geaendert = l.gleitzahl();
    e.ca = l.text();
    e.kurztext = l.text();
    e.klartext = l.text();
    e.grund = l.text();
    return e;
}

RecordId Ereignistabelle::schluessel(std::uint32_t ereignis) const {
    Leser l(daten_.data() + eintraege_[ereignis].daten);
    for (int i = 0; i < 4; ++i)
        l.zahl();
    return RecordId::fromUnits(l.zahl());
}

std::span<const Ereignistabelle::Link> Ereignistabelle::links(RecordId person) const {
    auto it = std::lower_bound(personen_.begin(), personen_.end(), person);
    if (it == personen_.end() || *it != person)
        return {};
    const auto i = static_cast<std::size_t>(it - personen_.begin());
    return {links_.data() + anfaenge_[i], links_.data() + anfaenge_[i + 1]};
}

} // namespace folio
