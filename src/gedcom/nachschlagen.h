// Lookups of records that the writers of a run make again and again (a place under every
// event, a source under many). The tree doesn't change while a run reads it, so each record
// is looked up once; what is kept is forgotten as soon as anything is written to the
// database or another database is open.
#pragma once

#include "database/record_id.h"

#include <cstdint>
#include <string>

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

// The record's Counter as text where it exists and is marked; nullptr otherwise.
const std::string* markiert_nachschlagen(dao::Recordset& rs, RecordId datensatz);

} // namespace folio
