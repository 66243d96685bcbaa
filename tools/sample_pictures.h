// Picture files drawn by the builders so that no binary file is kept in the sources: the
// small files that the pictures of the sample tree point at (a picture of 16 by 16 pixels as
// BMP or GIF, and a short sound as the second file of a medium), and the writers of GIF and
// ICO files that the wizard's pictures are made with.
#pragma once

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace folio::sample_source {

// A colour as red, green and blue.
struct Colour {
    std::uint8_t r = 0, g = 0, b = 0;
};

// A colour with its opacity: alpha 0 is transparent, 255 opaque.
struct Rgba {
    std::uint8_t r = 0, g = 0, b = 0, a = 0;
};

// An opaque colour written as six hexadecimal digits rrggbb, as the drawings' palettes write
// it; false for anything else.
inline bool parseColour(std::string_view hex, Rgba& colour) {
    if (hex.size() != 6 ||
        !std::all_of(hex.begin(), hex.end(), [](unsigned char c) { return std::isxdigit(c) != 0; }))
        return false;
    const unsigned long v = std::stoul(std::string(hex), nullptr, 16);
    colour = {static_cast<std::uint8_t>(v >> 16), static_cast<std::uint8_t>(v >> 8),
              static_cast<std::uint8_t>(v), 255};
    return true;
}

// Draws a square of `fill` with a frame of `frame` into `path`, as BMP or GIF by the
// extension of the path (in any case). Returns false for another extension, leaving no file.
// Throws std::runtime_error when the file can't be written.
bool drawPicture(const std::filesystem::path& path, Colour fill, Colour frame);

// Writes a GIF of `width` by `height` pixels: one index into `palette` (1 to 256 colours) a
// pixel, rows from the top. Throws std::invalid_argument for sizes that don't agree and
// std::runtime_error when the file can't be written.
void writeGif(const std::filesystem::path& path, int width, int height,
              const std::vector<Colour>& palette, const std::vector<std::uint8_t>& pixels);

// Writes a Windows icon of one image: 32-bit colours with alpha and the AND mask, which is
// set where alpha is 0. Rows from the top, at most 256 pixels a side. Throws as writeGif.
void writeIcon(const std::filesystem::path& path, int width, int height,
               const std::vector<Rgba>& pixels);

// Writes a tenth of a second of a tone as 8-bit WAV, whatever the file's name.
void writeSound(const std::filesystem::path& path, int pitch);

} // namespace folio::sample_source
