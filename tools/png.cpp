#include "png.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <stdexcept>

namespace folio::png {

namespace {

void put32(std::string& out, std::uint32_t v) {
    for (int shift = 24; shift >= 0; shift -= 8)
        out.push_back(static_cast<char>((v >> shift) & 0xff));
}

// A chunk: its length, type and data, and the CRC of type and data.
void chunk(std::string& out, std::string_view type, std::string_view data) {
    put32(out, static_cast<std::uint32_t>(data.size()));
    const std::size_t start = out.size();
    out.append(type);
    out.append(data);
    put32(out, crc32(std::string_view(out).substr(start)));
}

// A zlib stream of stored blocks: the header (deflate, 32K window, no dictionary, and a check
// that makes the first two bytes a multiple of 31), blocks of at most 65535 bytes, each with
// its length and that length's complement, and the Adler-32 of the data.
std::string stored(std::string_view data) {
    std::string out = {0x78, 0x01};
    std::size_t at = 0;
    do {
        const std::size_t n = std::min<std::size_t>(data.size() - at, 0xffff);
        const bool last = at + n == data.size();
        out.push_back(last ? 1 : 0);
        out.push_back(static_cast<char>(n & 0xff));
        out.push_back(static_cast<char>(n >> 8));
        out.push_back(static_cast<char>(~n & 0xff));
        out.push_back(static_cast<char>((~n >> 8) & 0xff));
        out.append(data.substr(at, n));
        at += n;
    } while (at < data.size());
    put32(out, adler32(data));
    return out;
}

} // namespace

std::uint32_t crc32(std::string_view bytes, std::uint32_t crc) {
    static const std::array<std::uint32_t, 256> table = [] {
        std::array<std::uint32_t, 256> t{};
        for (std::uint32_t n = 0; n < 256; ++n) {
            std::uint32_t c = n;
            for (int k = 0; k < 8; ++k)
                c = c & 1 ? 0xedb88320u ^ (c >> 1) : c >> 1;
            t[n] = c;
        }
        return t;
    }();
    crc = ~crc;
    for (unsigned char b : bytes)
        crc = table[(crc ^ b) & 0xff] ^ (crc >> 8);
    return ~crc;
}

std::uint32_t adler32(std::string_view bytes) {
    std::uint32_t a = 1, b = 0;
    for (unsigned char c : bytes) {
        a = (a + c) % 65521;
        b = (b + a) % 65521;
    }
    return b << 16 | a;
}

std::string encode(int width, int height, const std::vector<Rgba>& pixels) {
    if (width <= 0 || height <= 0 ||
        pixels.size() != static_cast<std::size_t>(width) * static_cast<std::size_t>(height))
        throw std::invalid_argument("png: the size doesn't agree with the pixels");

    std::string header;
    put32(header, static_cast<std::uint32_t>(width));
    put32(header, static_cast<std::uint32_t>(height));
    header += {8, 6, 0, 0, 0}; // 8 bits a sample, RGBA, deflate, adaptive filters, no interlace

    // Every row starts with its filter type, 0 (none).
    std::string raw;
    raw.reserve(static_cast<std::size_t>(height) * (1 + 4 * static_cast<std::size_t>(width)));
    for (int y = 0; y < height; ++y) {
        raw.push_back(0);
        for (int x = 0; x < width; ++x) {
            const Rgba& p = pixels[static_cast<std::size_t>(y * width + x)];
            raw += {static_cast<char>(p.r), static_cast<char>(p.g), static_cast<char>(p.b),
                    static_cast<char>(p.a)};
        }
    }

    std::string out = "\x89PNG\r\n\x1a\n";
    chunk(out, "IHDR", header);
    chunk(out, "IDAT", stored(raw));
    chunk(out, "IEND", {});
    return out;
}

void write(const std::filesystem::path& path, int width, int height,
           const std::vector<Rgba>& pixels) {
    const std::string bytes = encode(width, height, pixels);
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    out.close();
    if (!out)
        throw std::runtime_error("can't write " + path.string());
}

} // namespace folio::png
