// The events of a run, read in one pass each over Ereignis and Ereignis_DS: the marked
// events with just the fields that the event writer uses, packed into one block of bytes,
// and the links of their main persons, so that writing a person or a family asks the
// database nothing. A million persons bring some five million events; a record costs 12 bytes of
// index and the twenty-odd bytes of its values.
#pragma once

#include "engine/record_id.h"

#include <cstddef>
#include <functional>
#include <cstdint>
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

    // Reads the events marked in the tree, or in `marken` where given; their change stamps
    // only `mit_aenderung`. Then the links of main persons to them, in one pass over the
    // links that hands every other link (Quelle, Ziel, Ursprung, ASSO) to `andere`.
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

private:
    void ereignisse_laden(const Markenstand* marken, bool mit_aenderung);
    void links_laden(const AndereLinks& andere);

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
};

} // namespace folio
