// A writer of PNG files, so that the builders need no image library: 8-bit RGBA, no
// interlace, and the image data in stored (uncompressed) deflate blocks. The files are larger
// than a compressor would make them, which doesn't matter for a few icons, and every reader
// takes them.
#pragma once

#include "sample_pictures.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace folio::png {

using sample_source::Rgba;

// The bytes of a PNG of `width` by `height` pixels, rows from the top. Throws
// std::invalid_argument for sizes that don't agree with the pixels or are not positive.
std::string encode(int width, int height, const std::vector<Rgba>& pixels);

// Writes encode(...) to `path`. Throws std::runtime_error when the file can't be written.
void write(const std::filesystem::path& path, int width, int height,
           const std::vector<Rgba>& pixels);

// The checksums of the format: CRC-32 of the chunks, Adler-32 of the zlib stream.
std::uint32_t crc32(std::string_view bytes, std::uint32_t crc = 0);
std::uint32_t adler32(std::string_view bytes);

} // namespace folio::png
