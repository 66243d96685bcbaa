#include "gedcom/ereignistabelle.h"

#include "database/markenstand.h"
#include "database/tabellen.h"
#include "engine/durchlauf.h"
#include "engine/errors.h"
#include "gedcom/ereignisse.h"
#include "gedcom/rtf.h"

#include <algorithm>
#include <cstring>
#include <unordered_set>

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

// A number of a record: a whole number as itself times two, else its units times two plus
// one, so that the common numbers take two or three bytes.
void nummer_anhaengen(std::string& block, RecordId nummer) {
    zahl_anhaengen(block, nummer.isWhole() ? nummer.units() / RecordId::Scale * 2
                                           : nummer.units() * 2 + 1);
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
    RecordId nummer() {
        const std::int64_t z = zahl();
        return z & 1 ? RecordId::fromUnits((z - 1) / 2) : RecordId(z / 2);
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

void Ereignistabelle::beginnen(const Markenstand* marken, bool mit_aenderung) {
    if (lesen_)
        return;
    lesen_ = std::make_unique<dao::Nebenlauf>(
        *DB, [this, marken, mit_aenderung](const sqlite::Connection& verbindung) {
            ereignisse_lesen(verbindung, marken, mit_aenderung);
        });
}

void Ereignistabelle::laden(const Markenstand* marken, bool mit_aenderung,
                            const AndereLinks& andere) {
    beginnen(marken, mit_aenderung);
    Rohlinks roh = links_lesen(DB->connection(), marken, andere);
    lesen_->warten();
    lesen_.reset();
    links_ordnen(std::move(roh), marken);
}

void Ereignistabelle::ereignisse_lesen(const sqlite::Connection& verbindung,
                                       const Markenstand* marken, bool mit_aenderung) {
    // The run's marks tell how many events there are; the tree's are counted as they come.
    if (marken) {
        nummern_.reserve(marken->anzahl(Verknuepft::Ereignis));
        stellen_.reserve(marken->anzahl(Verknuepft::Ereignis));
    }
    dao::Durchlauf e(verbindung,
                     std::string("SELECT Counter, Markierung, Art, ca, vTag, vMonat, vJahr, "
                                 "Kurztext, Text, Grund, Ort, Bild") +
                         (mit_aenderung ? ", geaendert" : "") + " FROM Ereignis");
    std::string satz;
    std::unordered_set<std::int64_t> arten;
    while (e.weiter()) {
        const RecordId counter = e.nummer(0);
        if (marken ? !marken->markiert(Verknuepft::Ereignis, counter) : !e.wahr(1))
            continue;
        satz.clear();
        const std::int64_t tag = e.ganz(4), monat = e.ganz(5), jahr = e.ganz(6);
        const RecordId ort = e.nummer(10), bild = e.nummer(11);
        const bool aenderung = mit_aenderung && !e.istNull(12);
        const std::int64_t art = e.ganz(2);
        if (arten_.empty() || arten_.back() != art) // mostly the kind of the row before
            if (arten.insert(art).second)
                arten_.push_back(art);
        zahl_anhaengen(satz, art);
        zahl_anhaengen(satz, tag);
        zahl_anhaengen(satz, monat);
        zahl_anhaengen(satz, jahr);
        zahl_anhaengen(satz, (ort.isZero() ? 0 : MitOrt) | (bild.isZero() ? 0 : MitBild) |
                                 (aenderung ? MitAenderung : 0));
        if (!ort.isZero())
            nummer_anhaengen(satz, ort);
        if (!bild.isZero())
            nummer_anhaengen(satz, bild);
        if (aenderung) {
            const double tage = e.wert(12).toDate().days();
            satz.append(reinterpret_cast<const char*>(&tage), sizeof tage);
        }
        text_anhaengen(satz, e.textAnsicht(3));
        text_anhaengen(satz, e.textAnsicht(7));
        const std::string_view text = e.textAnsicht(8);
        if (text.starts_with("{\\rtf"))
            text_anhaengen(satz, rtf_klartext(std::string(text)));
        else
            text_anhaengen(satz, text); // a text without RTF is its own plain text
        text_anhaengen(satz, e.textAnsicht(9));
        nummern_.push_back(counter);
        satz_ablegen(satz);
    }
    // The first marked row of a number counts: the rows are ordered by
    // number through an array of their places, and of equal numbers the first stays.
    if (!std::is_sorted(nummern_.begin(), nummern_.end())) {
        std::vector<std::uint32_t> ordnung(nummern_.size());
        for (std::uint32_t i = 0; i < ordnung.size(); ++i)
            ordnung[i] = i;
        std::stable_sort(ordnung.begin(), ordnung.end(), [&](std::uint32_t a, std::uint32_t b) {
            return nummern_[a] < nummern_[b];
        });
        std::vector<RecordId> nummern(nummern_.size());
        std::vector<std::uint32_t> stellen(stellen_.size());
        for (std::size_t i = 0; i < ordnung.size(); ++i) {
            nummern[i] = nummern_[ordnung[i]];
            stellen[i] = stellen_[ordnung[i]];
        }
        nummern_ = std::move(nummern);
        stellen_ = std::move(stellen);
    }
    std::size_t behalten = 0;
    for (std::size_t i = 0; i < nummern_.size(); ++i)
        if (behalten == 0 || nummern_[i] != nummern_[behalten - 1]) {
            nummern_[behalten] = nummern_[i];
            stellen_[behalten++] = stellen_[i];
        }
    nummern_.resize(behalten);
    stellen_.resize(behalten);
}

// A place in the blocks takes four bytes: the block in the upper bits, the place in it in
// the lower ones. A record longer than a block gets one of its own, at its place 0.
constexpr unsigned Stellenbits = 23;
constexpr std::size_t Blockgroesse = std::size_t{1} << Stellenbits;
constexpr std::size_t Hoechstens = std::size_t{1} << (32 - Stellenbits); // blocks

void Ereignistabelle::satz_ablegen(const std::string& satz) {
    if (bloecke_.empty() || bloecke_.back().size() + satz.size() > Blockgroesse) {
        if (bloecke_.size() == Hoechstens)
            throw Error(err::Overflow, "The events of this export take more than " +
                                           std::to_string(Hoechstens * Blockgroesse >> 30) +
                                           " GB; export fewer persons at a time");
        bloecke_.emplace_back().reserve(std::max(Blockgroesse, satz.size()));
    }
    stellen_.push_back(
        static_cast<std::uint32_t>((bloecke_.size() - 1) << Stellenbits | bloecke_.back().size()));
    bloecke_.back().append(satz);
}

const char* Ereignistabelle::satz(std::uint32_t ereignis) const {
    const std::uint32_t stelle = stellen_[ereignis];
    return bloecke_[stelle >> Stellenbits].data() + (stelle & (Blockgroesse - 1));
}

// The links of main persons, in the order of the table. The letter is compared without
// regard to case, as the queries of a person's links compare it.
Ereignistabelle::Rohlinks Ereignistabelle::links_lesen(const sqlite::Connection& verbindung,
                                                       const Markenstand* marken,
                                                       const AndereLinks& andere) {
    Rohlinks roh;
    // Room for every link spares the copies of growing, beside the events being read.
    dao::Durchlauf anzahl(verbindung, "SELECT count(*) FROM Ereignis_DS");
    const auto zeilen = static_cast<std::size_t>(anzahl.weiter() ? anzahl.ganz(0) : 0);
    roh.personen.reserve(zeilen);
    if (marken) {
        roh.markierte.reserve(zeilen);
    } else {
        roh.ereignisse.reserve(zeilen);
        roh.genau_d.reserve(zeilen);
    }
    const std::vector<RecordId>* markiert =
        marken ? &marken->nummern(Verknuepft::Ereignis) : nullptr;
    dao::Durchlauf l(verbindung, "SELECT Quelle, Ziel, Ursprung, ASSO FROM Ereignis_DS");
    while (l.weiter()) {
        const std::string_view ursprung = l.textAnsicht(2);
        if (ursprung != "d" && ursprung != "D") {
            if (andere)
                andere(l);
            continue;
        }
        if (!markiert) {
            roh.personen.push_back(l.nummer(0));
            roh.ereignisse.push_back(l.nummer(1));
            roh.genau_d.push_back(ursprung == "d");
            continue;
        }
        const RecordId ziel = l.nummer(1);
        const auto it = std::lower_bound(markiert->begin(), markiert->end(), ziel);
        if (it == markiert->end() || *it != ziel)
            continue; // an event not marked isn't in the table
        roh.personen.push_back(l.nummer(0));
        roh.markierte.emplace_back(static_cast<std::uint32_t>(it - markiert->begin()),
                                   ursprung == "d");
    }
    return roh;
}

// The links to events in the table, grouped by person in the order of the table of links:
// kept as two arrays and ordered through a third, of their places.
void Ereignistabelle::links_ordnen(Rohlinks roh, const Markenstand* marken) {
    std::vector<RecordId>& personen = roh.personen;
    std::vector<Link>& links = roh.markierte;
    std::size_t behalten = 0;
    if (marken) {
        // The table holds the marked events alone, each once: mostly their places are the
        // same.
        const std::vector<RecordId>& markiert = marken->nummern(Verknuepft::Ereignis);
        const bool gleich = markiert == nummern_;
        for (std::size_t i = 0; i < links.size(); ++i) {
            const std::uint32_t stelle = links[i].ereignis();
            const auto ereignis =
                gleich ? std::optional<std::uint32_t>(stelle) : finden(markiert[stelle]);
            if (ereignis) {
                personen[behalten] = personen[i];
                links[behalten++] = Link(*ereignis, links[i].genau_d());
            }
        }
        links.erase(links.begin() + static_cast<std::ptrdiff_t>(behalten), links.end());
    } else {
        links.reserve(roh.ereignisse.size());
        for (std::size_t i = 0; i < roh.ereignisse.size(); ++i)
            if (const auto ereignis = finden(roh.ereignisse[i])) {
                personen[behalten++] = personen[i];
                links.emplace_back(*ereignis, roh.genau_d[i]);
            }
        roh.ereignisse = {};
        roh.genau_d = {};
    }
    personen.resize(behalten);
    std::vector<std::uint32_t> ordnung(personen.size());
    for (std::uint32_t i = 0; i < ordnung.size(); ++i)
        ordnung[i] = i;
    if (!std::is_sorted(personen.begin(), personen.end()))
        std::stable_sort(ordnung.begin(), ordnung.end(), [&](std::uint32_t a, std::uint32_t b) {
            return personen[a] < personen[b];
        });
    links_.reserve(links.size());
    for (std::uint32_t i : ordnung) {
        if (personen_.empty() || personen_.back() != personen[i]) {
            personen_.push_back(personen[i]);
            anfaenge_.push_back(static_cast<std::uint32_t>(links_.size()));
        }
        links_.push_back(links[i]);
    }
    anfaenge_.push_back(static_cast<std::uint32_t>(links_.size()));
    personen_.shrink_to_fit();
    anfaenge_.shrink_to_fit();
}

std::optional<std::uint32_t> Ereignistabelle::finden(RecordId counter) const {
    auto it = std::lower_bound(nummern_.begin(), nummern_.end(), counter);
    if (it == nummern_.end() || *it != counter)
        return std::nullopt;
    return static_cast<std::uint32_t>(it - nummern_.begin());
}

Ereignistabelle::Ereignis Ereignistabelle::lesen(std::uint32_t ereignis) const {
    Leser l(satz(ereignis));
    Ereignis e;
    e.counter = nummern_[ereignis];
    e.art = l.zahl();
    e.tag = l.zahl();
    e.monat = l.zahl();
    e.jahr = l.zahl();
    const std::int64_t flaggen = l.zahl();
    if (flaggen & MitOrt)
        e.ort = l.nummer();
    if (flaggen & MitBild)
        e.bild = l.nummer();
    if (flaggen & MitAenderung)
        e.geaendert = l.gleitzahl();
    e.ca = l.text();
    e.kurztext = l.text();
    e.klartext = l.text();
    e.grund = l.text();
    return e;
}

RecordId Ereignistabelle::schluessel(std::uint32_t ereignis) const {
    Leser l(satz(ereignis));
    l.zahl(); // the kind
    const auto tag = static_cast<int>(l.zahl());
    const auto monat = static_cast<int>(l.zahl());
    return ereignis_sortschluessel(static_cast<int>(l.zahl()), monat, tag);
}

std::span<const Ereignistabelle::Link> Ereignistabelle::links(RecordId person) const {
    auto it = std::lower_bound(personen_.begin(), personen_.end(), person);
    if (it == personen_.end() || *it != person)
        return {};
    const auto i = static_cast<std::size_t>(it - personen_.begin());
    return {links_.data() + anfaenge_[i], links_.data() + anfaenge_[i + 1]};
}

} // namespace folio
