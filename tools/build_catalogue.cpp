// folio-build-catalogue: writes the event catalogue Ereignis.mdb from its text source.
//
//   folio-build-catalogue <catalogue.tsv> <Ereignis.mdb>
#include "catalogue_source.h"

#include <exception>
#include <iostream>

int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "usage: " << (argc > 0 ? argv[0] : "folio-build-catalogue")
                  << " <catalogue.tsv> <Ereignis.mdb>\n";
        return 2;
    }
    try {
        const auto rows = folio::catalogue_source::readCatalogue(argv[1]);
        folio::catalogue_source::buildCatalogue(rows, argv[2]);
    } catch (const std::exception& e) {
        std::cerr << "folio-build-catalogue: " << e.what() << '\n';
        return 1;
    }
    return 0;
}
