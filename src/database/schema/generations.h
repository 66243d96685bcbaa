// The older generations of family-tree files that the upgrade chain meets, as data: each
// generation is told by what it lacks or has otherwise than the next newer one, so that a
// file of any of them can be made for tests and benchmarks.
#pragma once

#include "database/schema/schema.h"

#include <string_view>
#include <vector>

namespace folio::schema {

enum class Generation {
    Urform,   // before version names: the old name table, old dates, Referenz for notes
    V4,       // 4.x: the old schema with every field that the early steps of the chain add
    V5_0_100, // as the migration to version 5 leaves a file
    V5_0_190,
    V5_0_220,
    V5_1_100,
    V6_0_100,
};

inline constexpr Generation AllGenerations[] = {
    Generation::Urform,   Generation::V4,       Generation::V5_0_100, Generation::V5_0_190,
    Generation::V5_0_220, Generation::V5_1_100, Generation::V6_0_100};

// The version name that files of the generation carry; "" for the oldest, whose Version has
// no such field.
std::string_view versionName(Generation g);
// A short name for messages and test output.
std::string_view generationName(Generation g);
// Whether files of the generation have the old schema that the migration converts.
inline bool oldSchema(Generation g) {
    return g == Generation::Urform || g == Generation::V4;
}

// The tables of the main database as files of the generation have them.
std::vector<Table> tablesOf(Generation g);

} // namespace folio::schema
