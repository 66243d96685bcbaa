// Events: the writer of one event structure, and the list of a person's or a family's
// events in the order of their dates.
#pragma once

#include "engine/record_id.h"
#include "gedcom/ereignistabelle.h"

#include <cstdint>
#include <vector>

namespace folio {

class Exportlauf;

// Writes the event `datensatz` at level `nr` with its tag (or EVEN and TYPE), date, texts,
// cause, place, picture, change stamp, sources and associates; nothing where the event isn't
// there or isn't marked, where neither catalogue knows its kind, or where its kind has another
// number of main persons than `maxHP` (1 under a person, 2 under a family).
void ereignisschreiben(Exportlauf& lauf, std::int16_t nr, RecordId datensatz, std::int16_t maxHP);
// The same for an event of the run's table of marked events.
void ereignis_schreiben(Exportlauf& lauf, std::int16_t nr, const Ereignistabelle::Ereignis& e,
                        std::int16_t maxHP);

// The sort key of a partial date: an unknown year sorts behind all dated events, an unknown
// month at the end of its year, an unknown day at the end of its month.
RecordId ereignis_sortschluessel(int jahr, int monat, int tag);

// The events of one record (places in the run's table of events), in the order of their
// dates; events of the same day keep the order in which they were added.
class Ereignisliste {
public:
    struct Eintrag {
        RecordId schluessel;
        std::uint32_t ereignis;
    };
    void leeren() { eintraege_.clear(); }
    void hinzufuegen(const Ereignistabelle& tabelle, std::uint32_t ereignis) {
        eintraege_.push_back({tabelle.schluessel(ereignis), ereignis});
    }
    void sortieren();
    // Sorts the list and writes its events at level 1 with `maxHP` main persons.
    void schreiben(Exportlauf& lauf, std::int16_t maxHP);
    const std::vector<Eintrag>& eintraege() const { return eintraege_; }

private:
    std::vector<Eintrag> eintraege_;
};

} // namespace folio
