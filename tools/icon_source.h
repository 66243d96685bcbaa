// The wizard's small pictures as reviewable text sources, and the pictures of 16 by 16 pixels
// made from them.
//
// A drawing (data/icons/*.txt) is a palette and 16 rows of 16 characters. A line that begins
// with "#" is a comment, a blank line is passed over. A palette line is a character, a blank
// and six hex digits (red, green, blue): "k 303030". Every other line is a row of pixels, one
// character a pixel. "." is transparent and needs no palette line.
//
// A base drawing, from which pictures of one shape and many colours are composed, uses three
// characters that it doesn't define: "@" the composed picture's colour, "%" a darker shade of
// it for the outline, "&" a lighter one for the shine. The glyph of the picture (one to three
// signs of the font) is drawn centred on the box of the "@" pixels, in white on a dark colour
// and in black on a light one.
//
// The font (data/icons/schrift.txt) holds one sign after each line "[c]": five rows of "x"
// (set) and "." (not set), all of one width.
//
// A table of compositions (data/icons/ereignisse.tsv, data/icons/dokumente.tsv) holds one
// picture a line, in four columns divided by tabs: name, base drawing (the name of its file
// without ".txt"), colour (six hex digits) and glyph. The table follows the common rules of
// the text sources (tsv.h).
#pragma once

#include "sample_pictures.h"
#include "tsv.h"

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace folio::icon_source {

using SourceError = tsv::SourceError;
using sample_source::parseColour;
using sample_source::Rgba;

inline constexpr int Size = 16;

// A picture of Size by Size pixels, rows from the top.
struct Icon {
    std::vector<Rgba> pixels = std::vector<Rgba>(Size * Size);
    Rgba& at(int x, int y) { return pixels[static_cast<std::size_t>(y * Size + x)]; }
    const Rgba& at(int x, int y) const { return pixels[static_cast<std::size_t>(y * Size + x)]; }
};

// A drawing as its source gives it.
struct Drawing {
    std::vector<std::string> rows;
    std::map<char, Rgba> palette;
};

// Reads a drawing. A base drawing may use "@", "%" and "&" without defining them; a plain one
// may not. Raises SourceError for a row of another length than Size, a count of rows other
// than Size, a bad palette line, or a character that the palette lacks.
Drawing parseDrawing(std::string_view text, const std::string& fileName, bool base);
Drawing readDrawing(const std::string& path, bool base);

// The picture of a plain drawing.
Icon render(const Drawing& drawing);

// One sign of the font: five rows of one width.
struct Glyph {
    std::vector<std::string> rows;
    int width() const { return rows.empty() ? 0 : static_cast<int>(rows.front().size()); }
};
using Font = std::map<char, Glyph>;

inline constexpr int GlyphHeight = 5;

Font parseFont(std::string_view text, const std::string& fileName);
Font readFont(const std::string& path);

struct Composition {
    std::string name;
    std::string base;
    Rgba colour;
    std::string glyph;
    int line = 0;
};

// Reads a table of compositions. Raises SourceError for a line without four columns, a bad
// colour, an empty name or base, or a glyph that isn't one to three characters.
std::vector<Composition> parseCompositions(std::string_view text, const std::string& fileName);
std::vector<Composition> readCompositions(const std::string& path);

// The picture of a composition: the base in its colours, the glyph on it. Raises SourceError
// (naming the composition's line in `fileName`) for a sign that the font lacks or a glyph
// wider than the box of the base's "@" pixels.
Icon compose(const Drawing& base, const Composition& composition, const Font& font,
             const std::string& fileName);

} // namespace folio::icon_source
