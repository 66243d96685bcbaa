#include "icon_source.h"

#include <algorithm>
#include <cctype>

namespace folio::icon_source {

namespace {

constexpr char Transparent = '.';
constexpr char Fill = '@', Shade = '%', Shine = '&';

std::uint8_t mix(std::uint8_t from, int to, double share) {
    return static_cast<std::uint8_t>(from + (to - from) * share + 0.5);
}

Rgba darker(Rgba c) {
    return {mix(c.r, 0, 0.45), mix(c.g, 0, 0.45), mix(c.b, 0, 0.45), 255};
}

Rgba lighter(Rgba c) {
    return {mix(c.r, 255, 0.5), mix(c.g, 255, 0.5), mix(c.b, 255, 0.5), 255};
}

// White on a dark colour, black on a light one.
Rgba glyphColour(Rgba c) {
    const int luminance = (299 * c.r + 587 * c.g + 114 * c.b) / 1000;
    return luminance < 150 ? Rgba{255, 255, 255, 255} : Rgba{32, 32, 32, 255};
}

} // namespace

Drawing parseDrawing(std::string_view text, const std::string& fileName, bool base) {
    Drawing drawing;
    for (const auto& [number, cells] : tsv::wholeLines(text, fileName)) {
        const std::string_view line = cells.front();
        if (line.size() == 8 && line[1] == ' ') {
            Rgba colour;
            const char c = line[0];
            if (c == Transparent || (base && (c == Fill || c == Shade || c == Shine)))
                throw SourceError(fileName, number, std::string("'") + c + "' is reserved");
            if (!parseColour(line.substr(2), colour))
                throw SourceError(fileName, number, "a palette line is a character and rrggbb");
            drawing.palette[c] = colour;
            continue;
        }
        if (line.size() != Size)
            throw SourceError(fileName, number, "a row has " + std::to_string(Size) + " pixels");
        drawing.rows.emplace_back(line);
    }
    if (drawing.rows.size() != Size)
        throw SourceError(fileName, 0, "a drawing has " + std::to_string(Size) + " rows");
    int number = 0;
    for (const std::string& row : drawing.rows) {
        ++number;
        for (char c : row) {
            const bool reserved = base && (c == Fill || c == Shade || c == Shine);
            if (c != Transparent && !reserved && !drawing.palette.count(c))
                throw SourceError(fileName, 0,
                                  "row " + std::to_string(number) + ": '" + c +
                                      "' isn't in the palette");
        }
    }
    return drawing;
}

Drawing readDrawing(const std::string& path, bool base) {
    return parseDrawing(tsv::readFile(path), path, base);
}

Icon render(const Drawing& drawing) {
    Icon icon;
    for (int y = 0; y < Size; ++y)
        for (int x = 0; x < Size; ++x) {
            const char c = drawing.rows[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)];
            if (c != Transparent)
                icon.at(x, y) = drawing.palette.at(c);
        }
    return icon;
}

Font parseFont(std::string_view text, const std::string& fileName) {
    Font font;
    Glyph* open = nullptr;
    char sign = 0;
    int headerLine = 0;
    auto finish = [&] {
        if (open && open->rows.size() != GlyphHeight)
            throw SourceError(fileName, headerLine,
                              std::string("the sign '") + sign + "' needs five rows");
    };
    for (const auto& [number, cells] : tsv::wholeLines(text, fileName)) {
        const std::string_view line = cells.front();
        if (line.size() == 3 && line.front() == '[' && line.back() == ']') {
            finish();
            sign = line[1];
            headerLine = number;
            if (font.count(sign))
                throw SourceError(fileName, number, std::string("the sign '") + sign + "' twice");
            open = &font[sign];
            continue;
        }
        if (!open)
            throw SourceError(fileName, number, "a row before the first sign");
        if (line.find_first_not_of("x.") != std::string_view::npos ||
            (!open->rows.empty() && line.size() != open->rows.front().size()) ||
            open->rows.size() == GlyphHeight)
            throw SourceError(fileName, number, "a row of a sign: x and . of one width");
        open->rows.emplace_back(line);
    }
    finish();
    return font;
}

Font readFont(const std::string& path) {
    return parseFont(tsv::readFile(path), path);
}

std::vector<Composition> parseCompositions(std::string_view text, const std::string& fileName) {
    std::vector<Composition> out;
    for (const tsv::Line& line : tsv::dataLines(text, fileName)) {
        if (line.cells.size() != 4)
            throw SourceError(fileName, line.number, "a line has four columns");
        Composition c;
        c.name = line.cells[0];
        c.base = line.cells[1];
        c.glyph = line.cells[3];
        c.line = line.number;
        if (c.name.empty() || c.base.empty())
            throw SourceError(fileName, line.number, "a name and a base drawing are needed");
        if (!parseColour(line.cells[2], c.colour))
            throw SourceError(fileName, line.number, "the colour is rrggbb");
        if (c.glyph.empty() || c.glyph.size() > 3)
            throw SourceError(fileName, line.number, "a glyph has one to three signs");
        out.push_back(std::move(c));
    }
    return out;
}

std::vector<Composition> readCompositions(const std::string& path) {
    return parseCompositions(tsv::readFile(path), path);
}

Icon compose(const Drawing& base, const Composition& composition, const Font& font,
             const std::string& fileName) {
    Drawing coloured = base;
    coloured.palette[Fill] = composition.colour;
    coloured.palette[Shade] = darker(composition.colour);
    coloured.palette[Shine] = lighter(composition.colour);
    Icon icon = render(coloured);

    int left = Size, right = -1, top = Size, bottom = -1;
    for (int y = 0; y < Size; ++y)
        for (int x = 0; x < Size; ++x)
            if (base.rows[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)] == Fill) {
                left = std::min(left, x);
                right = std::max(right, x);
                top = std::min(top, y);
                bottom = std::max(bottom, y);
            }

    std::vector<const Glyph*> signs;
    int width = -1;
    for (char c : composition.glyph) {
        const auto found = font.find(c);
        if (found == font.end())
            throw SourceError(fileName, composition.line,
                              std::string("the font has no sign '") + c + "'");
        signs.push_back(&found->second);
        width += found->second.width() + 1;
    }
    if (width > right - left + 1 || GlyphHeight > bottom - top + 1)
        throw SourceError(fileName, composition.line,
                          "the glyph is wider than the base drawing's inside");

    const Rgba ink = glyphColour(composition.colour);
    int x0 = left + (right - left + 1 - width) / 2;
    const int y0 = top + (bottom - top + 1 - GlyphHeight) / 2;
    for (const Glyph* g : signs) {
        for (int y = 0; y < GlyphHeight; ++y)
            for (int x = 0; x < g->width(); ++x)
                if (g->rows[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)] == 'x')
                    icon.at(x0 + x, y0 + y) = ink;
        x0 += g->width() + 1;
    }
    return icon;
}

} // namespace folio::icon_source
