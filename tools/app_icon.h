// The application icon as a reviewable text source, and its pictures in the sizes of the
// icon theme.
//
// A drawing (data/icons/app/<name>-<size>.txt) is a palette and as many rows as each row has
// pixels: a square. A line that begins with "#" is a comment, a blank line is passed over. A
// palette line is a character, a blank and six hex digits (red, green, blue): "k 303030".
// Every other line is a row, one character a pixel; "." is transparent and needs no palette
// line.
//
// A picture of a size that no drawing has is scaled from the largest drawing with a box
// filter: each pixel of the picture is the mean of the drawing's pixels under it, weighted by
// the area they cover. Scaled up by a whole factor, that is the drawing's pixels made larger;
// scaled by 1.5, an edge between two colours becomes one pixel of their mix.
#pragma once

#include "sample_pictures.h"
#include "tsv.h"

#include <string>
#include <string_view>
#include <vector>

namespace folio::app_icon {

using SourceError = tsv::SourceError;
using sample_source::parseColour;
using sample_source::Rgba;

// A square picture, rows from the top.
struct Picture {
    int size = 0;
    std::vector<Rgba> pixels;
    const Rgba& at(int x, int y) const { return pixels[static_cast<std::size_t>(y * size + x)]; }
};

// Reads a drawing. Raises SourceError for a drawing that isn't square (rows of unequal
// length or a count of rows other than their length), no rows, a bad palette line, a
// character that the palette defines twice or lacks.
Picture parseDrawing(std::string_view text, const std::string& fileName);
Picture readDrawing(const std::string& path);

// The picture scaled to `size` by the box filter. Colours are weighted by their opacity, so
// that a transparent neighbour makes an edge fainter but not darker.
Picture scaled(const Picture& picture, int size);

// The picture of `size`: the drawing of that size if there is one, else the largest drawing
// scaled. `drawings` must not be empty.
Picture pictureOf(const std::vector<Picture>& drawings, int size);

} // namespace folio::app_icon
