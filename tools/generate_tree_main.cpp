// folio-generate-tree: writes a large generated family tree for tests and benchmarks.
//
//   folio-generate-tree --persons N [--seed S] [--catalogue Ereignis.mdb] OUTPUT.SF6

#include "generate_tree.h"

#include <chrono>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <string>

int main(int argc, char** argv) {
    folio::generator::Options options;
    std::string output;
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        if ((arg == "--persons" || arg == "--seed" || arg == "--catalogue") && i + 1 < argc) {
            const std::string value = argv[++i];
            if (arg == "--persons")
                options.persons = std::stoll(value);
            else if (arg == "--seed")
                options.seed = std::stoull(value);
            else
                options.catalogue = value;
        } else if (output.empty() && arg[0] != '-') {
            output = arg;
        } else {
            output.clear();
            break;
        }
    }
    if (output.empty() || options.persons < 1) {
        std::cerr << "usage: folio-generate-tree --persons N [--seed S] [--catalogue Ereignis.mdb] "
                     "OUTPUT.SF6\n";
        return 2;
    }
    try {
        const auto start = std::chrono::steady_clock::now();
        const folio::generator::Counts c = folio::generator::generateTree(options, output);
        const double seconds =
            std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        std::cout << output << ": " << c.persons << " persons, " << c.events << " events, "
                  << c.eventLinks << " event links, " << c.sourceLinks << " source links, "
                  << c.personLinks << " partner links, " << c.places << " places, " << c.sources
                  << " sources, " << c.notes << " notes, " << c.pictures << " pictures, "
                  << c.addresses << " addresses; " << seconds << " s, "
                  << std::filesystem::file_size(output) / 1e6 << " MB\n";
    } catch (const std::exception& e) {
        std::cerr << "folio-generate-tree: " << e.what() << "\n";
        return 1;
    }
    return 0;
}
