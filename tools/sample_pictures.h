// The small files that the pictures of the sample tree point at, drawn by the builder so that
// no binary file is kept in the sources: a picture of 16 by 16 pixels as BMP or GIF, and a
// short sound as the second file of a medium.
#pragma once

#include <cstdint>
#include <filesystem>

namespace folio::sample_source {

// A colour as red, green and blue.
struct Colour {
    std::uint8_t r = 0, g = 0, b = 0;
};

// Draws a square of `fill` with a frame of `frame` into `path`, as BMP or GIF by the
// extension of the path (in any case). Returns false for another extension, leaving no file.
// Throws std::runtime_error when the file can't be written.
bool drawPicture(const std::filesystem::path& path, Colour fill, Colour frame);

// Writes a tenth of a second of a tone as 8-bit WAV, whatever the file's name.
void writeSound(const std::filesystem::path& path, int pitch);

} // namespace folio::sample_source
