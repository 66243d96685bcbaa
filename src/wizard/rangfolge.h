// The order of rows by the values of one column, as the grids sort: texts by the program's
// collation, empty values first, rows of equal values in the order in which they came.
#pragma once

#include "engine/sqlite_handle.h"

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

namespace folio {

// Each distinct value gets a rank (texts that the collation holds equal share one, empty
// values rank first); the rows are then counted into their ranks. A column has far fewer
// distinct values than rows, as a rule, so the collation runs on few texts, and the cost of
// the order grows with the number of rows only linearly.
class Rangfolge {
public:
    explicit Rangfolge(bool text) : text_(text) {}

    // The value of the next row: column `spalte` of the row on which `s` stands.
    void hinzufuegen(const sqlite::Statement& s, int spalte);

    // The rows' positions (from 0, in the order of adding) in sorted order.
    std::vector<std::uint32_t> folge(bool absteigend) const;

private:
    // The rank of each distinct value (index 0: the empty value, rank 0).
    std::vector<std::uint32_t> raenge() const;

    bool text_;
    std::vector<std::uint32_t> wert_; // per row: the number of its distinct value, 0 empty
    std::unordered_map<std::string, std::uint32_t> texte_;
    std::unordered_map<double, std::uint32_t> zahlen_;
};

} // namespace folio
