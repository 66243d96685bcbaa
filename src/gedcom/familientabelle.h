// The family table of an export run: one row per family, made from the parents of the
// marked persons and from their partnerships. A row's number is the family's number in the
// file. Indexes beside the rows keep every search linear in the size of the export.
#pragma once

#include "engine/record_id.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <unordered_map>
#include <vector>

namespace folio {

class Familientabelle {
public:
    struct Familie {
        RecordId vater;
        RecordId mutter;
    };

    std::size_t anzahl() const { return zeilen_.size(); }
    // Row i, counted from 1.
    const Familie& zeile(std::size_t i) const { return zeilen_[i - 1]; }
    // The first row with exactly this father and mother.
    std::optional<std::size_t> suchen(RecordId vater, RecordId mutter) const;
    // Adds a row and gives its number.
    std::size_t hinzufuegen(RecordId vater, RecordId mutter);
    // The rows with this father and mother, in ascending order.
    std::vector<std::size_t> zeilen_mit_eltern(RecordId vater, RecordId mutter) const;
    // The rows in which the person is father or mother, in ascending order. Asked for once
    // the table is complete.
    std::vector<std::size_t> zeilen_mit_person(RecordId person) const;

    // The marked persons with their stored parents, noted in the order of the query of the
    // marked persons, which is the order in which a query of the children gives them.
    void kind_merken(RecordId kind, RecordId vater, RecordId mutter);
    // The marked children of a row: of both parents, or of the one parent that the row has.
    std::vector<RecordId> kinder(RecordId vater, RecordId mutter) const;
    // Builds the indexes that the searches above build when first asked, so that from then
    // on several threads may search at once. The table is complete.
    void vorbereiten() const;

private:
    struct PaarHash {
        std::size_t operator()(const std::pair<RecordId, RecordId>& p) const noexcept;
    };
    std::vector<Familie> zeilen_;
    // The first row of each pair of parents, and for each row the next one of its pair (0
    // where none follows): a few bytes a family where a list per pair would cost a hundred.
    std::unordered_map<std::pair<RecordId, RecordId>, std::uint32_t, PaarHash> erste_;
    std::vector<std::uint32_t> naechste_;
    std::vector<std::uint32_t> letzte_; // the last row of the pair of each first row
    // The rows by the persons in them, sorted when first asked for.
    mutable std::vector<std::pair<RecordId, std::uint32_t>> nach_person_;
    mutable bool nach_person_fertig_ = false;
    // The noted children in the order of noting, and three orders of them (by both parents,
    // by father, by mother), sorted when first asked for.
    struct Kind {
        RecordId kind, vater, mutter;
    };
    std::vector<Kind> kinder_;
    mutable std::vector<std::uint32_t> nachPaar_, nachVater_, nachMutter_;
    mutable bool sortiert_ = false;
    void sortieren() const;
};

} // namespace folio
