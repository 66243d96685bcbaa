// A generator of large family trees for tests and benchmarks: persons in families over
// generations, with events, places, sources, notes, pictures, addresses and links in the
// proportions of a real tree (about five events and two source links per person).
// Deterministic for a given seed.
#pragma once

#include <cstdint>
#include <string>

namespace folio::generator {

struct Options {
    std::int64_t persons = 1000;
    std::uint64_t seed = 1;
    std::string catalogue; // Ereignis.mdb whose table "Deutsch" fills the file's Ereignisdb
};

struct Counts {
    std::int64_t persons = 0, events = 0, eventLinks = 0, personLinks = 0, sourceLinks = 0,
                 places = 0, sources = 0, notes = 0, pictures = 0, addresses = 0, addressLinks = 0;
};

// Writes the tree into a new file of the current version at `path` (a file of that name is
// replaced only when the new one is complete).
Counts generateTree(const Options& options, const std::string& path);

} // namespace folio::generator
