// folio-build-app-icon: draws the application icon into an icon theme folder.
//
//   folio-build-app-icon <theme folder> <name> <sizes> <drawing>...
//
// writes <theme folder>/<N>x<N>/apps/<name>.png for each size N of the comma-separated list
// <sizes>, from the drawing of that size or else the largest drawing scaled (app_icon.h).
#include "app_icon.h"
#include "png.h"

#include <exception>
#include <filesystem>
#include <iostream>
#include <set>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;
using namespace folio::app_icon;

std::vector<int> parseSizes(const std::string& list) {
    std::vector<int> sizes;
    std::size_t at = 0;
    while (at <= list.size()) {
        const std::size_t comma = std::min(list.find(',', at), list.size());
        int size = 0;
        if (!folio::tsv::parseInteger(list.substr(at, comma - at), size) || size <= 0 ||
            size > 1024)
            throw std::invalid_argument("the sizes are whole numbers divided by commas: " + list);
        sizes.push_back(size);
        at = comma + 1;
    }
    return sizes;
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 5) {
        std::cerr << "usage: " << (argc > 0 ? argv[0] : "folio-build-app-icon")
                  << " <theme folder> <name> <sizes> <drawing>...\n";
        return 2;
    }
    try {
        const fs::path theme = argv[1];
        const std::string name = argv[2];
        std::vector<Picture> drawings;
        std::set<int> drawn;
        for (int i = 4; i < argc; ++i) {
            drawings.push_back(readDrawing(argv[i]));
            if (!drawn.insert(drawings.back().size).second)
                throw SourceError(argv[i], 0, "another drawing has the same size");
        }
        for (int size : parseSizes(argv[3])) {
            const std::string folder = std::to_string(size) + "x" + std::to_string(size);
            const fs::path target = theme / folder / "apps" / (name + ".png");
            fs::create_directories(target.parent_path());
            const Picture picture = pictureOf(drawings, size);
            folio::png::write(target, picture.size, picture.size, picture.pixels);
        }
    } catch (const std::exception& e) {
        std::cerr << "folio-build-app-icon: " << e.what() << '\n';
        return 1;
    }
    return 0;
}
