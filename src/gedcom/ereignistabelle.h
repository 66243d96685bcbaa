// The events of a run, read in one pass each over Ereignis and Ereignis_DS (the events beside
// the run, on a second connection, where the tree allows it): the marked events with just the
// fields that the event writer uses, packed into blocks of bytes, and the links of their main
// persons, so that writing a person or a family asks the database nothing. A million persons
// bring some five million events; a record costs 12 bytes of index and the twenty-odd bytes
// of its values.
#pragma once

#include "engine/nebenlauf.h"
#include "engine/record_id.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace folio {

class Markenstand;
namespace dao {
class Durchlauf;
}

class Ereignistabelle {
public:
    // One event as the writer reads it. The texts point into the table.
    struct Ereignis {
        RecordId counter, ort, bild;
        std::int64_t art = 0, tag = 0, monat = 0, jahr = 0;
        std::optional<double> geaendert; // the change stamp, where read and not Null
        std::string_view ca, kurztext, klartext, grund;
    };
    // A link of a main person: the event's place in the table, and whether the link's
    // letter is exactly "d" (else it is "D"), in four bytes.
    class Link {
    public:
        Link(std::uint32_t ereignis, bool genau_d) : wert_(ereignis << 1 | (genau_d ? 1 : 0)) {}
        std::uint32_t ereignis() const { return wert_ >> 1; }
        bool genau_d() const { return wert_ & 1; }

    private:
        std::uint32_t wert_;
    };

    Ereignistabelle() = default;
    Ereignistabelle(const Ereignistabelle&) = delete;
    Ereignistabelle& operator=(const Ereignistabelle&) = delete;

    // Starts reading the events marked in the tree, or in `marken` where given (their change
    // stamps only `mit_aenderung`): on a second connection beside the run where the tree
    // allows it, so that they are read while the run does other things.
    void beginnen(const Markenstand* marken, bool mit_aenderung);
    // Reads the links of main persons on the run's connection, in one pass over the links
    // that hands every other link (Quelle, Ziel, Ursprung, ASSO) to `andere`; waits for the
    // events and puts the two together. Begins first where beginnen wasn't called.
    using AndereLinks = std::function<void(const dao::Durchlauf&)>;
    void laden(const Markenstand* marken, bool mit_aenderung, const AndereLinks& andere = {});

    // The place of a marked event in the table; nullopt where it isn't there or isn't
    // marked. Where a number stands twice (the unique index on Counter forbids it), its
    // first marked row counts.
    std::optional<std::uint32_t> finden(RecordId counter) const;
    Ereignis lesen(std::uint32_t ereignis) const;
    // The sort key of the event's first date.
    RecordId schluessel(std::uint32_t ereignis) const;
    // The links of a person as a main person ("d" or "D") to marked events, in the order
    // of the table of links.
    std::span<const Link> links(RecordId person) const;
    // The kinds of the events in the table, each once.
    const std::vector<std::int64_t>& arten() const { return arten_; }

private:
    // The links of main persons as the table gives them, before the events are known: where
    // the run has its marks in memory, each with the place of its event among the marked
    // ones; else with the event's number.
    struct Rohlinks {
        std::vector<RecordId> personen;
        std::vector<Link> markierte;
        std::vector<RecordId> ereignisse;
        std::vector<bool> genau_d;
    };
    void ereignisse_lesen(const sqlite::Connection& verbindung, const Markenstand* marken,
                          bool mit_aenderung);
    static Rohlinks links_lesen(const sqlite::Connection& verbindung, const Markenstand* marken,
                                const AndereLinks& andere);
    void links_ordnen(Rohlinks roh, const Markenstand* marken);

    // The values of the events stand in blocks of a few megabytes, so that the table never
    // needs twice its size while it grows.
    void satz_ablegen(const std::string& satz);
    const char* satz(std::uint32_t ereignis) const;
    std::vector<RecordId> nummern_;      // sorted
    std::vector<std::uint32_t> stellen_; // of each number's values: block and place in it
    std::vector<std::string> bloecke_;
    std::vector<RecordId> personen_;      // by number
    std::vector<std::uint32_t> anfaenge_; // of each person's links, and the end
    std::vector<Link> links_;
    std::vector<std::int64_t> arten_;
    std::unique_ptr<dao::Nebenlauf> lesen_; // of the events, while it runs: ends first
};

} // namespace folio
