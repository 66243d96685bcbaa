#include "app_icon.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <map>
#include <stdexcept>

namespace folio::app_icon {

namespace {

constexpr char Transparent = '.';

// The share of the source pixel `j` (of `to` units) that covers the target pixel `i` (of
// `from` units), both measured in units of which the picture has from * to.
long overlap(int i, int from, int j, int to) {
    const long start = std::max(static_cast<long>(i) * from, static_cast<long>(j) * to);
    const long end = std::min(static_cast<long>(i + 1) * from, static_cast<long>(j + 1) * to);
    return std::max(0L, end - start);
}

std::uint8_t rounded(long sum, long weight) {
    return static_cast<std::uint8_t>((sum + weight / 2) / weight);
}

} // namespace

Picture parseDrawing(std::string_view text, const std::string& fileName) {
    std::map<char, Rgba> palette;
    std::vector<std::pair<int, std::string>> rows;
    for (const auto& [number, cells] : tsv::wholeLines(text, fileName)) {
        const std::string_view line = cells.front();
        if (line.size() > 1 && line[1] == ' ') {
            Rgba colour;
            if (line[0] == Transparent)
                throw SourceError(fileName, number, "'.' is transparent");
            if (!parseColour(line.substr(2), colour))
                throw SourceError(fileName, number, "a palette line is a character and rrggbb");
            if (!palette.emplace(line[0], colour).second)
                throw SourceError(fileName, number,
                                  std::string("'") + line[0] + "' is in the palette twice");
            continue;
        }
        rows.emplace_back(number, std::string(line));
    }
    if (rows.empty())
        throw SourceError(fileName, 0, "a drawing without rows");

    Picture picture;
    picture.size = static_cast<int>(rows.size());
    picture.pixels.resize(rows.size() * rows.size());
    for (std::size_t y = 0; y < rows.size(); ++y) {
        const auto& [line, row] = rows[y];
        if (row.size() != rows.size())
            throw SourceError(fileName, line,
                              "a drawing of " + std::to_string(rows.size()) +
                                  " rows is square: each row has as many pixels");
        for (std::size_t x = 0; x < row.size(); ++x) {
            if (row[x] == Transparent)
                continue;
            const auto colour = palette.find(row[x]);
            if (colour == palette.end())
                throw SourceError(fileName, line,
                                  std::string("'") + row[x] + "' isn't in the palette");
            picture.pixels[y * rows.size() + x] = colour->second;
        }
    }
    return picture;
}

Picture readDrawing(const std::string& path) {
    return parseDrawing(tsv::readFile(path), path);
}

Picture scaled(const Picture& picture, int size) {
    const int from = picture.size;
    if (size <= 0 || from <= 0)
        throw std::invalid_argument("app_icon: a picture has a positive size");
    Picture out;
    out.size = size;
    out.pixels.resize(static_cast<std::size_t>(size) * static_cast<std::size_t>(size));
    // A target pixel is `from` units wide, a source pixel `size` units: the pixels under a
    // target pixel start at its left edge divided by `size`.
    const long area = static_cast<long>(from) * from;
    for (int y = 0; y < size; ++y)
        for (int x = 0; x < size; ++x) {
            long r = 0, g = 0, b = 0, a = 0;
            for (int sy = y * from / size; sy < from && sy * size < (y + 1) * from; ++sy)
                for (int sx = x * from / size; sx < from && sx * size < (x + 1) * from; ++sx) {
                    const Rgba& p = picture.at(sx, sy);
                    const long w = overlap(x, from, sx, size) * overlap(y, from, sy, size) * p.a;
                    r += p.r * w;
                    g += p.g * w;
                    b += p.b * w;
                    a += w;
                }
            if (a > 0)
                out.pixels[static_cast<std::size_t>(y * size + x)] = {
                    rounded(r, a), rounded(g, a), rounded(b, a), rounded(a, area)};
        }
    return out;
}

Picture pictureOf(const std::vector<Picture>& drawings, int size) {
    if (drawings.empty())
        throw std::invalid_argument("app_icon: no drawing");
    const Picture* largest = &drawings.front();
    for (const Picture& d : drawings) {
        if (d.size == size)
            return d;
        if (d.size > largest->size)
            largest = &d;
    }
    return scaled(*largest, size);
}

} // namespace folio::app_icon
