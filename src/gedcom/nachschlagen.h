// Lookups of records that the writers of a run make again and again (a place under every
// event, a source under many). The tree doesn't change while a run reads it, so each record
// is looked up once, into tables that belong to the run and go with it.
#pragma once

#include "database/markenstand.h"
#include "engine/record_id.h"
#include "gedcom/ereignistabelle.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <unordered_map>
#include <unordered_set>
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

// An address as its writer needs it.
struct AdressEintrag {
    bool markiert = false; // the address exists and is marked
    std::string adresse;   // plain text
    std::string listenname;
    RecordId ort;
    std::string memo; // plain text
};

// The four columns of the kinds of events that the event writer needs.
struct Ereignisart {
    std::string gedtag; // trimmed
    std::string art;
    std::int64_t maxhauptpersonen = 0;
    bool causAlsTag = false;
};

// A person who takes part in an event in another role than a main person: the distinct rows
// of the event's links, as a query of them with DISTINCT gives them (in an order of its own).
struct Beteiligter {
    RecordId ereignis;
    RecordId quelle;
    // The texts, as numbers in the table's list of the texts that links hold: a handful of
    // letters and roles stand in a million links.
    std::uint32_t ursprung, asso;
};

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

// Whether a pass over a table meets a number for the first time. In a damaged tree a number
// may stand on two records; the file gets one record of it, its first row (the one a seek
// finds), as two records of one identifier would leave the file's pointers ambiguous.
// The whole numbers from 1 up, which are nearly all, take a bit each: a pass over millions of
// events stays fast and small.
class ErstesMal {
public:
    bool operator()(RecordId nummer) {
        const std::int64_t ganz = nummer.units() / RecordId::Scale;
        if (!nummer.isWhole() || ganz < 1 || ganz >= Bitgrenze)
            return uebrige_.insert(nummer).second;
        const auto i = static_cast<std::size_t>(ganz);
        if (i >= bits_.size())
            bits_.resize(
                std::min(std::max(i + 1, 2 * bits_.size()), static_cast<std::size_t>(Bitgrenze)));
        if (bits_[i])
            return false;
        bits_[i] = true;
        return true;
    }

private:
    static constexpr std::int64_t Bitgrenze = std::int64_t{1} << 27; // 16 MB of bits at most
    std::vector<bool> bits_;
    std::unordered_set<RecordId> uebrige_;
};

class Nachschlagetabellen {
public:
    // `marken`: the marks of the linked tables where the run was given them in memory, else
    // null and the tree's marks count; `mit_aenderung`: the change stamps are written.
    Nachschlagetabellen(const Markenstand* marken, Personenwahl personen, bool mit_aenderung)
        : marken_(marken), personenwahl_(std::move(personen)), mit_aenderung_(mit_aenderung) {}

    // Whether the record of a linked table on which `rs` stands is marked.
    bool markiert(Verknuepft tabelle, dao::Recordset& rs);
    // Reads everything that the writers of persons and their events look up, so that from
    // then on the tables only answer and several threads may write persons at once.
    void alles_laden();

    // The place, marked or not, as the writers need it.
    const OrtEintrag& ort(RecordId datensatz);
    // The address, marked or not.
    const AdressEintrag& adresse(RecordId datensatz);
    // The kind of event from the file's own table of kinds, else from the catalogue; nullptr
    // where neither knows it.
    const Ereignisart* ereignisart(std::int64_t art);
    std::span<const Beteiligter> beteiligte(RecordId ereignis);
    // A text of the associates' links by its number.
    const std::string& beteiligtentext(std::uint32_t nummer) const {
        return beteiligtentexte_[nummer];
    }
    std::span<const Verknuepfung> verknuepfungen(RecordId quelle, const std::string& art_quelle);
    // The language text of a number, looked up once per run.
    const std::string& sprachtext(int nummer);
    // Whether the person has links to associates (Daten_DS of the kind "Z", in any case):
    // only theirs are asked for.
    bool hat_assoziierte(RecordId person);
    // A person as the family table needs it: nullopt where the number has no person, else
    // whether the person is marked (as a lookup of the mark finds it) and male (Geschlecht
    // exactly "M").
    struct Person {
        bool markiert = false, maennlich = false;
    };
    std::optional<Person> person(RecordId nummer);
    // Whether the number stands on more than one person, as only in a damaged tree.
    bool doppelte_person(RecordId nummer);
    // Starts reading the marked events beside the run where the tree allows it, so that
    // they are there when the first is asked for.
    void ereignisse_vorladen() { ereignisse_.beginnen(marken_, mit_aenderung_); }
    // The marked events, read when first asked for.
    const Ereignistabelle& ereignisse();
    // The record's Counter as text where it exists and is marked; nullptr otherwise. `rs` is
    // the table's long-lived cursor, null where the table couldn't be opened.
    const std::string* markiert(Verknuepft tabelle, dao::Recordset* rs, RecordId datensatz);

private:
    void beteiligte_ordnen();
    void verknuepfungen_laden();

    void personen_laden();
    const Markenstand* marken_;
    Personenwahl personenwahl_;
    bool mit_aenderung_;
    bool alles_geladen_ = false;
    // The tables read whole: a number not found there has no record, and isn't noted.
    bool orte_ganz_ = false, adressen_ganz_ = false;
    std::array<bool, AnzahlVerknuepfte> ganz_{};
    std::unordered_map<RecordId, OrtEintrag> orte_;
    std::unordered_map<RecordId, AdressEintrag> adressen_;
    std::unordered_map<std::int64_t, std::optional<Ereignisart>> arten_;
    std::vector<Beteiligter> beteiligte_; // by event
    std::vector<std::string> beteiligtentexte_;
    std::unordered_map<int, std::string> sprachtexte_;
    bool personen_geladen_ = false;
    struct PersonEintrag {
        RecordId nummer;
        Person person;
    };
    std::vector<PersonEintrag> personen_;     // by number
    std::vector<RecordId> mit_assoziierten_;  // sorted
    std::vector<RecordId> doppelte_personen_; // sorted; empty in a sound tree
    bool ereignisse_geladen_ = false;
    Ereignistabelle ereignisse_;
    bool verknuepfungen_geladen_ = false;
    std::vector<Verknuepfung> verknuepfungen_; // by record, kind and target letter
    // By table: the numbers looked up, each with its Counter as text where marked.
    std::array<std::unordered_map<RecordId, std::optional<std::string>>, AnzahlVerknuepfte>
        markiert_;
};

} // namespace folio
