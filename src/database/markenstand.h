// The marks of the six linked tables held in memory: for each table the sorted numbers of
// its marked records. The closure computes them in one pass per table; the wizard writes them
// into the tree (its pages show and edit the marks there), while the command line hands them
// straight to its export run, which would only roll the writes back afterwards.
#pragma once

#include "engine/record_id.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace folio {

// The linked tables, in the order in which the closure clears them.
enum class Verknuepft : std::size_t { Ereignis, Dokument, Notiz, Bilder, Ort, Adressen };
inline constexpr std::size_t AnzahlVerknuepfte = 6;
inline constexpr std::array<const char*, AnzahlVerknuepfte> VerknuepfteTabellen = {
    "Ereignis", "Dokument", "Notiz", "Bilder", "Ort", "Adressen"};

// The linked table of that name (without regard to case); nullopt for any other.
std::optional<Verknuepft> verknuepfte_tabelle(std::string_view name);

// Which persons a run takes: those marked in the tree, or every person as "Auswählen" marks
// them (each record whose mark is False), then without the living as the person page leaves
// them ("Lebt" True). The command line selects every person this way instead of writing a
// mark into each of a million records that its rollback takes back again.
struct Personenwahl {
    bool alle = false;
    bool ohne_lebende = false; // only with `alle`; else the marks of the living are cleared

    // The selected persons as a condition on Daten, in the files' dialect: the records that
    // "Markierung = TRUE" would find after those writes.
    std::string bedingung() const;
    // With `alle`: the persons whose mark a lookup would find set after those writes (any
    // number but 0 counts as set there), as a condition.
    std::string suchbedingung() const;
};

class Markenstand {
public:
    // The marked records of a table: any numbers, sorted and made unique here.
    void setzen(Verknuepft tabelle, std::vector<RecordId> nummern);
    bool markiert(Verknuepft tabelle, RecordId nummer) const;
    // The sorted numbers of the marked records.
    const std::vector<RecordId>& nummern(Verknuepft tabelle) const {
        return nummern_[static_cast<std::size_t>(tabelle)];
    }
    std::size_t anzahl(Verknuepft tabelle) const { return nummern(tabelle).size(); }

    // Writes the marks into the open tree: every record of the six tables gets True where
    // it is marked here and 0 elsewhere. Only records whose mark changes are written, each
    // table with one statement through a temporary table of the numbers.
    void schreiben() const;

private:
    std::array<std::vector<RecordId>, AnzahlVerknuepfte> nummern_;
};

} // namespace folio
