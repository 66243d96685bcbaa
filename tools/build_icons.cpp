// folio-build-icons: draws the wizard's pictures from their text sources into the host's folder.
//
//   folio-build-icons <data/icons> <catalogue.tsv> <Stammpfad>
//
// writes, under the host's folder:
//   bmp/icons16/<file>       the design pictures of the store Icons16, named by the wizard's
//                            table of keys and files
//   bmp/Ereignisse/<n>.ICO   the picture of each event kind of the catalogue
//   prog/unbekannt.ico       the picture of an event kind without one
//   bmp/prog/archivar.gif    the side picture of the wizard
//
// The source folder holds the drawings (<name>.txt), the base drawings of the composed
// pictures (basis/<name>.txt), the font (schrift.txt), and the tables of the composed
// pictures: ereignisse.tsv (one line per event kind, named by its number) and dokumente.tsv
// (the pictures of the documents grid, named as their files without ".ico").
#include "catalogue_source.h"
#include "icon_source.h"
#include "side_picture.h"
#include "wizard/icons.h"

#include <exception>
#include <filesystem>
#include <iostream>
#include <map>
#include <set>
#include <string>

namespace {

namespace fs = std::filesystem;
using namespace folio::icon_source;

void write(const fs::path& path, const Icon& icon) {
    fs::create_directories(path.parent_path());
    folio::sample_source::writeIcon(path, Size, Size, icon.pixels);
}

class Builder {
public:
    explicit Builder(fs::path source)
        : source_(std::move(source)), font_(readFont((source_ / "schrift.txt").string())) {}

    Icon composed(const Composition& c, const fs::path& table) {
        auto found = bases_.find(c.base);
        if (found == bases_.end()) {
            const fs::path path = source_ / "basis" / (c.base + ".txt");
            if (!fs::exists(path))
                throw SourceError(table.string(), c.line, "no base drawing " + path.string());
            found = bases_.emplace(c.base, readDrawing(path.string(), true)).first;
        }
        return compose(found->second, c, font_, table.string());
    }

    Icon drawn(const std::string& name) {
        return render(readDrawing((source_ / (name + ".txt")).string(), false));
    }

    const fs::path& source() const { return source_; }

private:
    fs::path source_;
    Font font_;
    std::map<std::string, Drawing> bases_;
};

// One picture per kind of the catalogue, each kind told from the others by its shape and
// glyph alone, so that the colour only helps.
void eventIcons(Builder& builder, const std::string& catalogue, const fs::path& target) {
    const fs::path table = builder.source() / "ereignisse.tsv";
    std::map<int, Composition> kinds;
    std::set<std::pair<std::string, std::string>> looks;
    for (const Composition& c : readCompositions(table.string())) {
        int index = 0;
        if (!folio::tsv::parseInteger(c.name, index) || index < 0)
            throw SourceError(table.string(), c.line, "the name is the number of a kind");
        if (!kinds.emplace(index, c).second)
            throw SourceError(table.string(), c.line, "the kind " + c.name + " twice");
        if (!looks.emplace(c.base, c.glyph).second)
            throw SourceError(table.string(), c.line,
                              "another kind has the base " + c.base + " and the glyph " + c.glyph);
    }
    std::set<int> known;
    for (const auto& row : folio::catalogue_source::readCatalogue(catalogue)) {
        known.insert(row.index);
        const auto kind = kinds.find(row.index);
        if (kind == kinds.end())
            throw SourceError(table.string(), 0,
                              "no picture for the kind " + std::to_string(row.index));
        write(target / (std::to_string(row.index) + ".ICO"), builder.composed(kind->second, table));
    }
    for (const auto& [index, c] : kinds)
        if (!known.count(index))
            throw SourceError(table.string(), c.line, "the catalogue has no kind " + c.name);
}

// The design pictures of the store: composed where the table of the documents names them,
// drawn otherwise.
void storeIcons(Builder& builder, const fs::path& target) {
    const fs::path table = builder.source() / "dokumente.tsv";
    std::map<std::string, Composition> composed;
    for (const Composition& c : readCompositions(table.string()))
        composed.emplace(c.name, c);
    for (const folio::Lagerbild& bild : folio::Lagerbilder) {
        const std::string name = fs::path(bild.datei).stem().string();
        const auto c = composed.find(name);
        write(target / bild.datei,
              c != composed.end() ? builder.composed(c->second, table) : builder.drawn(name));
    }
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 4) {
        std::cerr << "usage: " << (argc > 0 ? argv[0] : "folio-build-icons")
                  << " <data/icons> <catalogue.tsv> <Stammpfad>\n";
        return 2;
    }
    try {
        Builder builder(argv[1]);
        const fs::path host = argv[3];
        storeIcons(builder, host / "bmp" / "icons16");
        eventIcons(builder, argv[2], host / "bmp" / "Ereignisse");
        write(host / "prog" / "unbekannt.ico", builder.drawn("unbekannt"));
        fs::create_directories(host / "bmp" / "prog");
        folio::side_picture::drawSidePicture(host / "bmp" / "prog" / "archivar.gif");
    } catch (const std::exception& e) {
        std::cerr << "folio-build-icons: " << e.what() << '\n';
        return 1;
    }
    return 0;
}
