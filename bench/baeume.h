// What the benchmarks on generated trees share: the staged data folder, a generated tree
// of a size (made once, kept in the temp folder between runs), and the peak memory.
#pragma once

#include "database/tabellen.h"
#include "frame/globals.h"
#include "frame/sprache.h"
#include "generate_tree.h"
#include "wizard/auswahl.h"
#include "wizard/datengrid.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

namespace folio::bench {

inline std::filesystem::path arbeitsordner() {
    const auto work = std::filesystem::temp_directory_path() / "folio-bench";
    std::filesystem::create_directories(work);
    return work;
}

// Points the program at the staged folders and opens the language texts.
inline void stage_verwenden() {
    Datenpfad = FOLIO_STAGE_DIR "/Daten";
    Programmpfad = FOLIO_STAGE_DIR "/Stammfolio/Folioexport";
    sprache_oeffnen(Datenpfad + "/language.mdb");
}

// The generated tree of that many persons, made where it doesn't exist yet.
inline std::string baum(long long persons) {
    const std::string tree =
        (arbeitsordner() / ("bench_" + std::to_string(persons) + ".SF6")).string();
    if (!std::filesystem::exists(tree)) {
        std::printf("generating %lld persons ...\n", persons);
        generator::generateTree({persons, 42, Datenpfad + "/Ereignis.mdb"}, tree);
    }
    return tree;
}

// The wall time of `f` in seconds.
inline double sekunden(const std::function<void()>& f) {
    const auto start = std::chrono::steady_clock::now();
    f();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

inline long spitzenspeicher_kb() {
    std::ifstream status("/proc/self/status");
    std::string line;
    while (std::getline(status, line))
        if (line.rfind("VmHWM:", 0) == 0)
            return std::stol(line.substr(6));
    return 0;
}

// The person grid of the generated tree of that many persons, for `lauf` to measure; the
// peak memory is printed afterwards, and the tree is left as it was found.
inline void im_persongrid(long long persons, const std::function<void(Datengrid&)>& lauf) {
    const std::string tree = baum(persons);
    DB = dao::OpenDatabase(tree);
    tabellen_oeffnen();
    Datengrid& grid = Auswahl().grid(0);
    std::printf("%9lld persons:\n", persons);
    lauf(grid);
    std::printf("    peak memory %.1f MB\n", spitzenspeicher_kb() / 1024.0);
    grid.Clear(true);
    alle_schliessen(tree);
    DB.reset();
}

// The main program of a benchmark: runs it on each size given as an argument (10,000 and
// 100,000 persons without one) after pointing the program at the stage.
inline int hauptprogramm(int argc, char** argv, const char* name,
                         const std::function<void(long long)>& lauf) {
    std::vector<long long> sizes;
    for (int i = 1; i < argc; ++i) {
        char* ende = nullptr;
        const long long n = std::strtoll(argv[i], &ende, 10);
        if (ende == argv[i] || *ende != '\0' || n <= 0) {
            std::fprintf(stderr,
                         "usage: %s [PERSONS...]  (each a whole number above 0; '%s' is none)\n",
                         name, argv[i]);
            return 2;
        }
        sizes.push_back(n);
    }
    if (sizes.empty())
        sizes = {10000, 100000};
    try {
        stage_verwenden();
        for (long long n : sizes)
            lauf(n);
    } catch (const std::exception& e) {
        std::fprintf(stderr, "%s: %s\n", name, e.what());
        return 1;
    }
    return 0;
}

} // namespace folio::bench
