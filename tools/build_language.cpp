// folio-build-language: writes the language database from its text source.
//
//   folio-build-language <texts.tsv> <language.mdb>
#include "language_source.h"

#include <exception>
#include <iostream>

int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "usage: " << (argc > 0 ? argv[0] : "folio-build-language")
                  << " <texts.tsv> <language.mdb>\n";
        return 2;
    }
    try {
        const auto rows = folio::language_source::readTexts(argv[1]);
        folio::language_source::buildLanguageDatabase(rows, argv[2]);
    } catch (const std::exception& e) {
        std::cerr << "folio-build-language: " << e.what() << '\n';
        return 1;
    }
    return 0;
}
