#include "sample_pictures.h"

#include <algorithm>
#include <cctype>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace folio::sample_source {

namespace {

constexpr int Size = 16;

using Bytes = std::vector<std::uint8_t>;

void put16(Bytes& out, unsigned v) {
    out.push_back(static_cast<std::uint8_t>(v & 0xFF));
    out.push_back(static_cast<std::uint8_t>((v >> 8) & 0xFF));
}

void put32(Bytes& out, unsigned v) {
    put16(out, v & 0xFFFF);
    put16(out, v >> 16);
}

void write(const std::filesystem::path& path, const Bytes& bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(bytes.data()),
              static_cast<std::streamsize>(bytes.size()));
    if (!out)
        throw std::runtime_error(path.string() + ": can't be written");
}

bool onFrame(int x, int y) {
    return x == 0 || y == 0 || x == Size - 1 || y == Size - 1;
}

// 24 bits a pixel, rows from the bottom, each of 48 bytes (a multiple of four).
Bytes bmp(Colour fill, Colour frame) {
    const unsigned pixelBytes = Size * Size * 3;
    Bytes out = {'B', 'M'};
    put32(out, 14 + 40 + pixelBytes);
    put32(out, 0);
    put32(out, 14 + 40);
    put32(out, 40); // the information header
    put32(out, Size);
    put32(out, Size);
    put16(out, 1);  // planes
    put16(out, 24); // bits a pixel
    put32(out, 0);  // no compression
    put32(out, pixelBytes);
    put32(out, 2835); // 72 dots an inch, in dots a metre
    put32(out, 2835);
    put32(out, 0);
    put32(out, 0);
    for (int y = Size - 1; y >= 0; --y)
        for (int x = 0; x < Size; ++x) {
            const Colour c = onFrame(x, y) ? frame : fill;
            out.insert(out.end(), {c.b, c.g, c.r});
        }
    return out;
}

// The codes of a GIF's picture data, packed from the lowest bit up.
class CodeWriter {
public:
    void put(unsigned code, int width) {
        for (int i = 0; i < width; ++i) {
            if (bit_ == 0)
                bytes_.push_back(0);
            bytes_.back() |= static_cast<std::uint8_t>(((code >> i) & 1u) << bit_);
            bit_ = (bit_ + 1) % 8;
        }
    }
    const Bytes& bytes() const { return bytes_; }

private:
    Bytes bytes_;
    int bit_ = 0;
};

// The picture data sends a clear code before every run of 2^bits - 2 pixels, so that the
// table of the decoder never grows past codes of bits + 1 and no compression is needed.
Bytes gifBytes(int width, int height, const std::vector<Colour>& palette,
               const std::vector<std::uint8_t>& pixels) {
    if (palette.empty() || palette.size() > 256 || width <= 0 || height <= 0 ||
        pixels.size() != static_cast<std::size_t>(width) * static_cast<std::size_t>(height))
        throw std::invalid_argument("a GIF needs 1 to 256 colours and one index a pixel");
    int bits = 2;
    while ((1u << bits) < palette.size())
        ++bits;
    Bytes out = {'G', 'I', 'F', '8', '9', 'a'};
    put16(out, static_cast<unsigned>(width));
    put16(out, static_cast<unsigned>(height));
    out.insert(out.end(), {static_cast<std::uint8_t>(0x80 | (bits - 1)), 0, 0}); // global table
    for (std::size_t i = 0; i < (1u << bits); ++i) {
        const Colour c = i < palette.size() ? palette[i] : Colour{};
        out.insert(out.end(), {c.r, c.g, c.b});
    }
    out.push_back(0x2C); // image descriptor
    put16(out, 0);
    put16(out, 0);
    put16(out, static_cast<unsigned>(width));
    put16(out, static_cast<unsigned>(height));
    out.push_back(0);
    const unsigned clear = 1u << bits, end = clear + 1, run = clear - 2;
    const int codeWidth = bits + 1;
    out.push_back(static_cast<std::uint8_t>(bits)); // the smallest code size
    CodeWriter codes;
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        if (i % run == 0)
            codes.put(clear, codeWidth);
        if (pixels[i] >= palette.size())
            throw std::invalid_argument("a GIF pixel names no colour of the palette");
        codes.put(pixels[i], codeWidth);
    }
    codes.put(end, codeWidth);
    const Bytes& data = codes.bytes();
    for (std::size_t at = 0; at < data.size(); at += 255) {
        const std::size_t n = std::min<std::size_t>(255, data.size() - at);
        out.push_back(static_cast<std::uint8_t>(n));
        out.insert(out.end(), data.begin() + static_cast<long>(at),
                   data.begin() + static_cast<long>(at + n));
    }
    out.push_back(0);
    out.push_back(0x3B);
    return out;
}

// Four colours (fill, frame, two unused).
Bytes gif(Colour fill, Colour frame) {
    std::vector<std::uint8_t> pixels;
    for (int i = 0; i < Size * Size; ++i)
        pixels.push_back(onFrame(i % Size, i / Size) ? 1 : 0);
    return gifBytes(Size, Size, {fill, frame, Colour{255, 255, 255}, Colour{0, 0, 0}}, pixels);
}

// One picture as a DIB of 32 bits a pixel (blue, green, red, alpha), rows from the bottom,
// under a header that counts the height twice (colours and mask), then the AND mask of one
// bit a pixel, rows padded to four bytes, set where the pixel is transparent.
Bytes ico(int width, int height, const std::vector<Rgba>& pixels) {
    if (width <= 0 || width > 256 || height <= 0 || height > 256 ||
        pixels.size() != static_cast<std::size_t>(width) * static_cast<std::size_t>(height))
        throw std::invalid_argument("an icon is 1 to 256 pixels a side, one colour a pixel");
    const unsigned maskRow = ((static_cast<unsigned>(width) + 31) / 32) * 4;
    const unsigned colourBytes = static_cast<unsigned>(width * height) * 4;
    const unsigned imageBytes = 40 + colourBytes + maskRow * static_cast<unsigned>(height);
    Bytes out;
    put16(out, 0);                                          // reserved
    put16(out, 1);                                          // an icon
    put16(out, 1);                                          // one image
    out.push_back(static_cast<std::uint8_t>(width & 0xFF)); // 256 is written as 0
    out.push_back(static_cast<std::uint8_t>(height & 0xFF));
    out.push_back(0); // no palette
    out.push_back(0);
    put16(out, 1);  // planes
    put16(out, 32); // bits a pixel
    put32(out, imageBytes);
    put32(out, 6 + 16); // where the image begins
    put32(out, 40);
    put32(out, static_cast<unsigned>(width));
    put32(out, static_cast<unsigned>(height) * 2);
    put16(out, 1);
    put16(out, 32);
    put32(out, 0); // no compression
    put32(out, colourBytes + maskRow * static_cast<unsigned>(height));
    for (int i = 0; i < 4; ++i)
        put32(out, 0);
    for (int y = height - 1; y >= 0; --y)
        for (int x = 0; x < width; ++x) {
            const Rgba& p = pixels[static_cast<std::size_t>(y * width + x)];
            out.insert(out.end(), {p.b, p.g, p.r, p.a});
        }
    for (int y = height - 1; y >= 0; --y) {
        Bytes row(maskRow, 0);
        for (int x = 0; x < width; ++x)
            if (pixels[static_cast<std::size_t>(y * width + x)].a == 0)
                row[static_cast<std::size_t>(x / 8)] |= static_cast<std::uint8_t>(0x80 >> (x % 8));
        out.insert(out.end(), row.begin(), row.end());
    }
    return out;
}

} // namespace

bool drawPicture(const std::filesystem::path& path, Colour fill, Colour frame) {
    std::string extension = path.extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    if (extension == ".bmp")
        write(path, bmp(fill, frame));
    else if (extension == ".gif")
        write(path, gif(fill, frame));
    else
        return false;
    return true;
}

void writeGif(const std::filesystem::path& path, int width, int height,
              const std::vector<Colour>& palette, const std::vector<std::uint8_t>& pixels) {
    write(path, gifBytes(width, height, palette, pixels));
}

void writeIcon(const std::filesystem::path& path, int width, int height,
               const std::vector<Rgba>& pixels) {
    write(path, ico(width, height, pixels));
}

void writeSound(const std::filesystem::path& path, int pitch) {
    const unsigned rate = 8000, samples = rate / 10;
    Bytes out = {'R', 'I', 'F', 'F'};
    put32(out, 36 + samples);
    out.insert(out.end(), {'W', 'A', 'V', 'E', 'f', 'm', 't', ' '});
    put32(out, 16);
    put16(out, 1); // PCM
    put16(out, 1); // mono
    put32(out, rate);
    put32(out, rate);
    put16(out, 1);
    put16(out, 8);
    out.insert(out.end(), {'d', 'a', 't', 'a'});
    put32(out, samples);
    const unsigned half = rate / static_cast<unsigned>(std::max(pitch, 1)) / 2;
    for (unsigned i = 0; i < samples; ++i)
        out.push_back((i / std::max(half, 1u)) % 2 ? 0xA0 : 0x60);
    write(path, out);
}

} // namespace folio::sample_source
