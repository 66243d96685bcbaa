#include "app_icon.h"
#include "png.h"

#include <QByteArray>
#include <QImage>

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

using namespace folio::app_icon;

namespace {

// The message of the error that parsing `text` raises, or "" when it parses.
std::string parseError(const std::string& text) {
    try {
        parseDrawing(text, "icon.txt");
    } catch (const SourceError& e) {
        return e.what();
    }
    return "";
}

bool same(const Rgba& a, const Rgba& b) {
    return a.r == b.r && a.g == b.g && a.b == b.b && a.a == b.a;
}

std::string show(const Rgba& p) {
    return std::to_string(p.r) + "," + std::to_string(p.g) + "," + std::to_string(p.b) + "," +
           std::to_string(p.a);
}

constexpr Rgba Red{255, 0, 0, 255}, Blue{0, 0, 255, 255}, Green{0, 255, 0, 255}, None{};

// A picture of 2 by 2: red, blue above; transparent, green below.
Picture quarters() {
    return parseDrawing("r ff0000\nb 0000ff\ng 00ff00\nrb\n.g\n", "quarters.txt");
}

QImage read(const std::string& png) {
    QImage image;
    image.loadFromData(QByteArray(png.data(), static_cast<qsizetype>(png.size())), "PNG");
    return image;
}

} // namespace

TEST(AppIcon, DrawingReadsPaletteRowsAndTransparency) {
    const Picture p = parseDrawing("# a comment\r\n\r\nk 102030\r\nw FFfFff\r\n"
                                   "k.w\r\n   \r\n...\r\nwwk",
                                   "icon.txt");
    ASSERT_EQ(p.size, 3);
    EXPECT_TRUE(same(p.at(0, 0), Rgba{16, 32, 48, 255}));
    EXPECT_TRUE(same(p.at(1, 0), None));
    EXPECT_TRUE(same(p.at(2, 0), Rgba{255, 255, 255, 255}));
    EXPECT_TRUE(same(p.at(1, 1), None));
    EXPECT_TRUE(same(p.at(2, 2), Rgba{16, 32, 48, 255}));
}

TEST(AppIcon, DrawingFaultsNameTheLine) {
    EXPECT_EQ(parseError("k 000000\nkk\nk\n"), "icon.txt:3: a drawing of 2 rows is square: "
                                               "each row has as many pixels");
    EXPECT_EQ(parseError("k 000000\nkkk\nkkk\n"),
              "icon.txt:2: a drawing of 2 rows is square: each row has as many pixels");
    EXPECT_EQ(parseError("k 000000\nkx\nkk\n"), "icon.txt:2: 'x' isn't in the palette");
    EXPECT_EQ(parseError("k 000000\nk 111111\nk\n"), "icon.txt:2: 'k' is in the palette twice");
    EXPECT_EQ(parseError(". 000000\n.\n"), "icon.txt:1: '.' is transparent");
    EXPECT_EQ(parseError("k 00000g\nk\n"), "icon.txt:1: a palette line is a character and rrggbb");
    EXPECT_EQ(parseError("# nothing\nk 000000\n"), "icon.txt: a drawing without rows");
}

TEST(AppIcon, ScalingByAWholeFactorMakesEachPixelABlock) {
    const Picture source = quarters();
    const Picture big = scaled(source, 8);
    ASSERT_EQ(big.size, 8);
    ASSERT_EQ(big.pixels.size(), 64u);
    for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 8; ++x)
            EXPECT_TRUE(same(big.at(x, y), source.at(x / 4, y / 4)))
                << x << "," << y << ": " << show(big.at(x, y));
}

// By 1.5 the middle row and column straddle two source pixels; a transparent neighbour halves
// the opacity but leaves the colour as it is.
TEST(AppIcon, ScalingByOneAndAHalfMixesTheEdgesByOpacity) {
    const Picture p = scaled(quarters(), 3);
    ASSERT_EQ(p.size, 3);
    EXPECT_TRUE(same(p.at(0, 0), Red));
    EXPECT_TRUE(same(p.at(2, 0), Blue));
    EXPECT_TRUE(same(p.at(0, 2), None));
    EXPECT_TRUE(same(p.at(2, 2), Green));
    EXPECT_TRUE(same(p.at(1, 0), (Rgba{128, 0, 128, 255}))) << show(p.at(1, 0));
    EXPECT_TRUE(same(p.at(0, 1), (Rgba{255, 0, 0, 128}))) << show(p.at(0, 1));
    EXPECT_TRUE(same(p.at(2, 1), (Rgba{0, 128, 128, 255}))) << show(p.at(2, 1));
    EXPECT_TRUE(same(p.at(1, 1), (Rgba{85, 85, 85, 191}))) << show(p.at(1, 1));
}

TEST(AppIcon, PictureOfTakesTheDrawnSizeElseScalesTheLargest) {
    const Picture small = parseDrawing("k 000000\nk\n", "1.txt");
    const Picture large = quarters();
    const std::vector<Picture> drawings = {large, small};

    const Picture one = pictureOf(drawings, 1);
    ASSERT_EQ(one.size, 1);
    EXPECT_TRUE(same(one.at(0, 0), (Rgba{0, 0, 0, 255}))) << "not the mean of the larger";

    const Picture four = pictureOf(drawings, 4);
    ASSERT_EQ(four.size, 4);
    EXPECT_TRUE(same(four.at(3, 3), Green));
    EXPECT_TRUE(same(four.at(0, 3), None));
    EXPECT_THROW(pictureOf({}, 4), std::invalid_argument);
}

// An independent reader (Qt's, on libpng and zlib, which check every CRC and the Adler-32)
// reads back what the writer wrote: a picture not square, with every kind of opacity, and
// large enough to need several stored deflate blocks.
TEST(Png, ReadBackByAnotherReaderIsThePicture) {
    const int width = 200, height = 170;
    std::vector<Rgba> pixels;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            pixels.push_back({static_cast<std::uint8_t>(x), static_cast<std::uint8_t>(y * 7),
                              static_cast<std::uint8_t>(x ^ y),
                              static_cast<std::uint8_t>((x + y) % 256)});
    const std::string bytes = folio::png::encode(width, height, pixels);
    ASSERT_GT(bytes.size(), 2u * 65535u);

    QImage image = read(bytes);
    ASSERT_FALSE(image.isNull());
    ASSERT_EQ(image.width(), width);
    ASSERT_EQ(image.height(), height);
    ASSERT_TRUE(image.hasAlphaChannel());
    image = image.convertToFormat(QImage::Format_RGBA8888);
    int wrong = 0;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const uchar* p = image.constScanLine(y) + 4 * x;
            const Rgba& want = pixels[static_cast<std::size_t>(y * width + x)];
            wrong += !same(Rgba{p[0], p[1], p[2], p[3]}, want);
        }
    EXPECT_EQ(wrong, 0);

    const QImage tiny = read(folio::png::encode(1, 1, {Red}));
    ASSERT_FALSE(tiny.isNull());
    EXPECT_EQ(tiny.pixel(0, 0), 0xffff0000u);

    EXPECT_THROW(folio::png::encode(2, 2, pixels), std::invalid_argument);
    EXPECT_THROW(folio::png::encode(0, 0, {}), std::invalid_argument);
}
