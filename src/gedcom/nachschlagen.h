// Lookups of records that the writers of a run make again and again (a place under every
// event, a source under many). The tree doesn't change while a run reads it, so each record
// is looked up once; what is kept is forgotten as soon as anything is written to the
// database or another database is open.
#pragma once

#include "engine/record_id.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace folio {

namespace dao {
class Recordset;
}

struct OrtEintrag {
    bool markiert = false; // the place exists and is marked
    RecordId counter, notiz, bild;
    std::string name;      // trimmed
    bool hat_text = false; // its memo has a text
};

const OrtEintrag& ort_nachschlagen(RecordId datensatz);

// The four columns of the kinds of events that the event writer needs.
struct Ereignisart {
    std::string gedtag;
    std::string art;
    std::int64_t maxhauptpersonen = 0;
    bool causAlsTag = false;
};

// The kind of event from the file's own table of kinds, else from the catalogue; nullptr
// where neither knows it.
const Ereignisart* ereignisart_nachschlagen(std::int64_t art);

// A person who takes part in an event in another role than a main person: the distinct rows
// of the event's links, as a query of them with DISTINCT gives them (in an order of its own).
struct Beteiligter {
    RecordId ereignis;
    RecordId quelle;
    std::string ursprung;
    std::string asso;
};
std::span<const Beteiligter> beteiligte_nachschlagen(RecordId ereignis);

// The general links of a record: its rows of Quellen_DS for a kind of record (compared
// without regard to case), ordered by the letter of the target as a query ordered by it.
// `art_ziel` is the target's letter, or 0 for a value of another length, which no writer
// takes.
struct Verknuepfung {
    RecordId quelle;
    char art_quelle; // upper case
    char art_ziel;
    RecordId ziel;
};
std::span<const Verknuepfung> verknuepfungen_nachschlagen(RecordId quelle,
                                                          const std::string& art_quelle);

// The events of which a person is a main person ("d"), in the order of the person's links,
// each with the sort key of its first date; links to events that don't exist are left out.
struct Hauptereignis {
    RecordId person;
    RecordId ereignis;
    RecordId schluessel;
};
std::span<const Hauptereignis> hauptereignisse_nachschlagen(RecordId person);

// The record's Counter as text where it exists and is marked; nullptr otherwise.
const std::string* markiert_nachschlagen(dao::Recordset& rs, RecordId datensatz);

} // namespace folio
