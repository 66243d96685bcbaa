// folio-build-template: writes the template SF.MDB and the empty side databases.
//
//   folio-build-template <folder> [<data folder>]
//
// With one folder everything goes there; with two, the side databases go into the second
// (the host's data folder), as the installation keeps them apart.
#include "database/schema/schema.h"

#include <exception>
#include <filesystem>
#include <iostream>

int main(int argc, char** argv) {
    if (argc < 2 || argc > 3) {
        std::cerr << "usage: " << (argc > 0 ? argv[0] : "folio-build-template")
                  << " <folder> [<data folder>]\n";
        return 2;
    }
    const std::filesystem::path folder = argv[1];
    const std::filesystem::path dataFolder = argc == 3 ? argv[2] : argv[1];
    try {
        folio::schema::buildTemplate(folder);
        folio::schema::buildSideDatabases(dataFolder);
    } catch (const std::exception& e) {
        std::cerr << "folio-build-template: " << e.what() << '\n';
        return 1;
    }
    return 0;
}
