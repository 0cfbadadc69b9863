// Drawing for the demo: a small built-in font for the labels of the contact
// sheet (and the strokes of the generated scene), and resizing into tiles.
#include "tool.h"

#include <algorithm>
#include <cctype>

namespace tool {

namespace {

// 5x7 glyphs, seven rows of five columns, '#' set. Lower case is drawn with
// the upper-case glyphs; anything missing is drawn as '?'.
struct Glyph {
    char c;
    const char* rows;
};
const Glyph kFont[] = {
    {' ', "..... ..... ..... ..... ..... ..... ....."},
    {'A', ".###. #...# #...# ##### #...# #...# #...#"},
    {'B', "####. #...# #...# ####. #...# #...# ####."},
    {'C', ".###. #...# #.... #.... #.... #...# .###."},
    {'D', "####. #...# #...# #...# #...# #...# ####."},
    {'E', "##### #.... #.... ####. #.... #.... #####"},
    {'F', "##### #.... #.... ####. #.... #.... #...."},
    {'G', ".###. #...# #.... #.### #...# #...# .####"},
    {'H', "#...# #...# #...# ##### #...# #...# #...#"},
    {'I', ".###. ..#.. ..#.. ..#.. ..#.. ..#.. .###."},
    {'J', "..### ...#. ...#. ...#. ...#. #..#. .##.."},
    {'K', "#...# #..#. #.#.. ##... #.#.. #..#. #...#"},
    {'L', "#.... #.... #.... #.... #.... #.... #####"},
    {'M', "#...# ##.## #.#.# #.#.# #...# #...# #...#"},
    {'N', "#...# #...# ##..# #.#.# #..## #...# #...#"},
    {'O', ".###. #...# #...# #...# #...# #...# .###."},
    {'P', "####. #...# #...# ####. #.... #.... #...."},
    {'Q', ".###. #...# #...# #...# #.#.# #..#. .##.#"},
    {'R', "####. #...# #...# ####. #.#.. #..#. #...#"},
    {'S', ".#### #.... #.... .###. ....# ....# ####."},
    {'T', "##### ..#.. ..#.. ..#.. ..#.. ..#.. ..#.."},
    {'U', "#...# #...# #...# #...# #...# #...# .###."},
    {'V', "#...# #...# #...# #...# #...# .#.#. ..#.."},
    {'W', "#...# #...# #...# #.#.# #.#.# #.#.# .#.#."},
    {'X', "#...# #...# .#.#. ..#.. .#.#. #...# #...#"},
    {'Y', "#...# #...# .#.#. ..#.. ..#.. ..#.. ..#.."},
    {'Z', "##### ....# ...#. ..#.. .#... #.... #####"},
    {'0', ".###. #...# #..## #.#.# ##..# #...# .###."},
    {'1', "..#.. .##.. ..#.. ..#.. ..#.. ..#.. .###."},
    {'2', ".###. #...# ....# ...#. ..#.. .#... #####"},
    {'3', "####. ....# ....# .###. ....# ....# ####."},
    {'4', "...#. ..##. .#.#. #..#. ##### ...#. ...#."},
    {'5', "##### #.... ####. ....# ....# #...# .###."},
    {'6', "..##. .#... #.... ####. #...# #...# .###."},
    {'7', "##### ....# ...#. ..#.. .#... .#... .#..."},
    {'8', ".###. #...# #...# .###. #...# #...# .###."},
    {'9', ".###. #...# #...# .#### ....# ...#. .##.."},
    {'.', "..... ..... ..... ..... ..... .##.. .##.."},
    {',', "..... ..... ..... ..... .##.. ..#.. .#..."},
    {':', "..... .##.. .##.. ..... .##.. .##.. ....."},
    {'-', "..... ..... ..... ##### ..... ..... ....."},
    {'+', "..... ..#.. ..#.. ##### ..#.. ..#.. ....."},
    {'=', "..... ..... ##### ..... ##### ..... ....."},
    {'/', "....# ....# ...#. ..#.. .#... #.... #...."},
    {'(', "...#. ..#.. .#... .#... .#... ..#.. ...#."},
    {')', ".#... ..#.. ...#. ...#. ...#. ..#.. .#..."},
    {'[', ".###. .#... .#... .#... .#... .#... .###."},
    {']', ".###. ...#. ...#. ...#. ...#. ...#. .###."},
    {'<', "...#. ..#.. .#... #.... .#... ..#.. ...#."},
    {'>', ".#... ..#.. ...#. ....# ...#. ..#.. .#..."},
    {'_', "..... ..... ..... ..... ..... ..... #####"},
    {'%', "##..# ##..# ...#. ..#.. .#... #..## #..##"},
    {'\'', "..#.. ..#.. ..... ..... ..... ..... ....."},
    {'!', "..#.. ..#.. ..#.. ..#.. ..#.. ..... ..#.."},
    {'?', ".###. #...# ....# ...#. ..#.. ..... ..#.."},
    {'*', "..... #.#.# .###. ##### .###. #.#.# ....."},
    {'#', ".#.#. .#.#. ##### .#.#. ##### .#.#. .#.#."},
    {'|', "..#.. ..#.. ..#.. ..#.. ..#.. ..#.. ..#.."},
};

const Glyph& glyphOf(char c) {
    const char up = char(std::toupper(static_cast<unsigned char>(c)));
    for (const Glyph& g : kFont)
        if (g.c == up) return g;
    for (const Glyph& g : kFont)
        if (g.c == '?') return g;
    return kFont[0];
}

void put(Picture& p, int x, int y, Rgb c) {
    if (x < 0 || y < 0 || x >= p.width || y >= p.height) return;
    uint8_t* px = p.row8(y) + size_t(x) * 3;
    px[0] = c.r;
    px[1] = c.g;
    px[2] = c.b;
}

}  // namespace

Picture canvas(int width, int height, Rgb fill) {
    Picture p;
    p.width = width;
    p.height = height;
    p.channels = 3;
    p.bytes.resize(p.rowBytes() * size_t(height));
    for (size_t i = 0; i < p.bytes.size(); i += 3) {
        p.bytes[i] = fill.r;
        p.bytes[i + 1] = fill.g;
        p.bytes[i + 2] = fill.b;
    }
    return p;
}

int textWidth(const std::string& text, int scale) { return int(text.size()) * 6 * scale - (text.empty() ? 0 : scale); }

int drawText(Picture& rgb, int x, int y, const std::string& text, Rgb colour, int scale) {
    for (size_t i = 0; i < text.size(); ++i) {
        const char* rows = glyphOf(text[i]).rows;
        const int gx = x + int(i) * 6 * scale;
        for (int r = 0; r < kGlyphHeight; ++r)
            for (int col = 0; col < 5; ++col)
                if (rows[r * 6 + col] == '#')
                    for (int dy = 0; dy < scale; ++dy)
                        for (int dx = 0; dx < scale; ++dx) put(rgb, gx + col * scale + dx, y + r * scale + dy, colour);
    }
    return textWidth(text, scale);
}

Picture fitRgb(const Picture& src, int w, int h) {
    // Keep the aspect ratio; average the source pixels that fall into each
    // target pixel (or repeat them when enlarging).
    const double s = std::min(double(w) / src.width, double(h) / src.height);
    const int tw = std::max(1, int(src.width * s + 0.5)), th = std::max(1, int(src.height * s + 0.5));
    Picture out = canvas(tw, th, {0, 0, 0});
    for (int y = 0; y < th; ++y) {
        const int y0 = int(double(y) * src.height / th), y1 = std::max(y0 + 1, int(double(y + 1) * src.height / th));
        for (int x = 0; x < tw; ++x) {
            const int x0 = int(double(x) * src.width / tw), x1 = std::max(x0 + 1, int(double(x + 1) * src.width / tw));
            unsigned sum[3] = {0, 0, 0};
            for (int sy = y0; sy < y1; ++sy)
                for (int sx = x0; sx < x1; ++sx)
                    for (int c = 0; c < 3; ++c) {
                        const int ch = src.channels < 3 ? 0 : c;
                        sum[c] += src.depth == 8 ? src.row8(sy)[size_t(sx) * src.channels + ch]
                                                 : src.row16(sy)[size_t(sx) * src.channels + ch] >> 8;
                    }
            const unsigned n = unsigned((y1 - y0) * (x1 - x0));
            put(out, x, y, {uint8_t((sum[0] + n / 2) / n), uint8_t((sum[1] + n / 2) / n), uint8_t((sum[2] + n / 2) / n)});
        }
    }
    return out;
}

}  // namespace tool
