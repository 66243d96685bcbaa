#include "side_picture.h"

#include "sample_pictures.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <vector>

namespace folio::side_picture {

namespace {

using sample_source::Colour;

// The palette: six shades of the sky from the top down, then the colours of the drawing.
constexpr int SkyShades = 6;
enum : std::uint8_t {
    Sky0 = 0, // Sky0 .. Sky0 + SkyShades - 1
    Bark = SkyShades,
    BarkDark,
    Leaf,
    LeafDark,
    Face,
    Wood,
    Book0, // Book0 .. Book0 + 3
};

const std::vector<Colour> Palette = {
    {24, 44, 82},  {34, 62, 108}, {52, 88, 136},  {82, 120, 160}, {128, 160, 186}, {186, 200, 206},
    {112, 78, 46}, {70, 48, 28},  {70, 138, 64},  {40, 92, 44},   {240, 226, 196}, {132, 94, 58},
    {158, 48, 40}, {46, 82, 140}, {196, 150, 52}, {96, 120, 96},
};

class Canvas {
public:
    Canvas() : pixels_(static_cast<std::size_t>(Width * Height), Sky0) {}

    void put(int x, int y, std::uint8_t colour) {
        if (x >= 0 && x < Width && y >= 0 && y < Height)
            pixels_[static_cast<std::size_t>(y * Width + x)] = colour;
    }
    void rectangle(int x0, int y0, int x1, int y1, std::uint8_t colour) {
        for (int y = y0; y <= y1; ++y)
            for (int x = x0; x <= x1; ++x)
                put(x, y, colour);
    }
    // A disc with a rim of `rim` pixels in the second colour.
    void disc(int cx, int cy, int r, std::uint8_t fill, std::uint8_t edge, int rim) {
        for (int y = -r; y <= r; ++y)
            for (int x = -r; x <= r; ++x) {
                const int d = x * x + y * y;
                if (d <= r * r)
                    put(cx + x, cy + y, d > (r - rim) * (r - rim) ? edge : fill);
            }
    }
    // A thick line between two points.
    void line(int x0, int y0, int x1, int y1, int thickness, std::uint8_t colour) {
        const int steps = std::max(std::abs(x1 - x0), std::abs(y1 - y0));
        for (int i = 0; i <= steps; ++i) {
            const int x = x0 + (x1 - x0) * i / std::max(steps, 1);
            const int y = y0 + (y1 - y0) * i / std::max(steps, 1);
            rectangle(x - thickness / 2, y - thickness / 2, x + (thickness - 1) / 2,
                      y + (thickness - 1) / 2, colour);
        }
    }
    const std::vector<std::uint8_t>& pixels() const { return pixels_; }

private:
    std::vector<std::uint8_t> pixels_;
};

// The sky from dark to light, the steps between the shades dithered (ordered, 4 by 4).
void sky(Canvas& c) {
    static const int Bayer[4][4] = {{0, 8, 2, 10}, {12, 4, 14, 6}, {3, 11, 1, 9}, {15, 7, 13, 5}};
    for (int y = 0; y < Height; ++y) {
        const double level = static_cast<double>(y) * (SkyShades - 1) / (Height - 1);
        const int shade = static_cast<int>(level);
        const int share = static_cast<int>((level - shade) * 16);
        for (int x = 0; x < Width; ++x) {
            const bool next = share > Bayer[y % 4][x % 4] && shade + 1 < SkyShades;
            c.put(x, y, static_cast<std::uint8_t>(Sky0 + shade + (next ? 1 : 0)));
        }
    }
}

// A pedigree as a tree: the trunk, three generations of branches, a face at each end.
void tree(Canvas& c) {
    const int rootX = Width / 2, rootY = 232;
    c.line(rootX, rootY, rootX, 168, 12, BarkDark);
    c.line(rootX, rootY, rootX, 168, 8, Bark);
    struct Node {
        int x, y;
    };
    std::vector<Node> generation = {{rootX, 168}};
    const int rise[] = {42, 38, 34};
    const int spread[] = {34, 18, 9};
    for (int g = 0; g < 3; ++g) {
        std::vector<Node> next;
        for (const Node& n : generation)
            for (int side : {-1, 1}) {
                const Node to{n.x + side * spread[g], n.y - rise[g]};
                c.line(n.x, n.y, to.x, to.y, 6 - g * 2, BarkDark);
                c.line(n.x, n.y, to.x, to.y, 4 - g, Bark);
                next.push_back(to);
            }
        generation = std::move(next);
    }
    for (const Node& n : generation)
        c.disc(n.x, n.y - 5, 8, Leaf, LeafDark, 2);
    for (const Node& n : generation)
        c.disc(n.x, n.y - 5, 3, Face, LeafDark, 1);
    c.disc(rootX, 168, 7, Face, BarkDark, 2);
}

// Two shelves of archive books, their widths and colours in a fixed pattern.
void shelf(Canvas& c) {
    for (int board : {270, 308}) {
        int x = 8;
        for (int i = 0; x < Width - 12; ++i) {
            const int w = 6 + (i * 7) % 5;
            const int h = 26 + (i * 11) % 9;
            const auto colour = static_cast<std::uint8_t>(Book0 + (i * 3 + board) % 4);
            c.rectangle(x, board - h, x + w - 1, board - 1, colour);
            c.rectangle(x + 1, board - h + 4, x + w - 2, board - h + 5, Face);
            x += w + 1;
        }
        c.rectangle(2, board, Width - 3, board + 3, Wood);
    }
    c.rectangle(2, 232, Width - 3, 235, Wood); // the ground the tree stands on
}

} // namespace

void drawSidePicture(const std::filesystem::path& path) {
    Canvas canvas;
    sky(canvas);
    shelf(canvas);
    tree(canvas);
    sample_source::writeGif(path, Width, Height, Palette, canvas.pixels());
}

} // namespace folio::side_picture
