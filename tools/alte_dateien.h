// Family trees of the older generations, for the tests and the benchmark of the upgrade
// chain: a small hand-made tree that holds every case the chain treats, and large
// generated ones.
#pragma once

#include "database/schema/generations.h"

#include <cstdint>
#include <filesystem>

namespace folio::alt {

// A small tree of generation `g` at `target` (replaced when complete). Pictures it names
// lie beside it, one of them missing.
void beispieldatei(schema::Generation g, const std::filesystem::path& target);

// A tree of the old schema (`g` Urform or V4) with `personen` persons, each with two to four
// names in the old name table and four to six events with old dates.
void erzeugte_datei(schema::Generation g, const std::filesystem::path& target,
                    std::int64_t personen, std::uint64_t seed = 42);

} // namespace folio::alt
