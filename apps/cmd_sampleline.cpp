// `zeqcv sample-line`: the pixels on the straight line between two points,
// printed (or written as CSV) with their positions. The positions come from
// the library too: the same line sampled over an image whose pixels hold
// their own coordinates (only the line's bounding box is built).
#include "commands.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace tool {

namespace {

struct Samples {
    std::vector<ZeqiPoint> at;
    std::vector<Zeq8u> values;  // channels per sample
    int channels = 1;
};

Samples sampleLine(const zeqcv::Image<Zeq8u>& image, ZeqiPoint from, ZeqiPoint to) {
    Samples s;
    s.channels = image.channels();
    long long n = std::max(std::llabs((long long)to.x - from.x), std::llabs((long long)to.y - from.y)) + 1;
    // A line between two pixels of the image has at most max(w, h) pixels; a
    // longer one has a point outside, which the library refuses before writing.
    if (n > std::max(image.width(), image.height())) n = 1;
    s.values.resize(size_t(n) * size_t(s.channels));
    if (s.channels == 3) ZEQCV_CHECKED(zeqiSampleLine_8u_C3R, image, zeqcv::roi, s.values.data(), from, to);
    else ZEQCV_CHECKED(zeqiSampleLine_8u_C1R, image, zeqcv::roi, s.values.data(), from, to);
    // Both points are inside the image now: build the coordinates of the box between them.
    const int x0 = std::min(from.x, to.x), y0 = std::min(from.y, to.y);
    auto coords = newImage<Zeq32f>(std::abs(to.x - from.x) + 1, std::abs(to.y - from.y) + 1, 3);
    for (int y = 0; y < coords.height(); ++y)
        for (int x = 0; x < coords.width(); ++x) {
            Zeq32f* px = coords.row(y) + size_t(x) * 3;
            px[0] = Zeq32f(x0 + x), px[1] = Zeq32f(y0 + y), px[2] = 0;
        }
    std::vector<Zeq32f> xy(size_t(n) * 3);
    ZEQCV_CHECKED(zeqiSampleLine_32f_C3R, coords, zeqcv::roi, xy.data(), ZeqiPoint{from.x - x0, from.y - y0},
                  ZeqiPoint{to.x - x0, to.y - y0});
    for (long long i = 0; i < n; ++i) s.at.push_back({int(xy[size_t(i) * 3]), int(xy[size_t(i) * 3 + 1])});
    return s;
}

std::string table(const Samples& s, char separator) {
    std::string out = s.channels == 3 ? "x y r g b\n" : "x y value\n";
    std::replace(out.begin(), out.end(), ' ', separator);
    char line[96];
    for (size_t i = 0; i < s.at.size(); ++i) {
        const Zeq8u* v = &s.values[i * size_t(s.channels)];
        if (s.channels == 3)
            std::snprintf(line, sizeof line, "%d%c%d%c%d%c%d%c%d\n", s.at[i].x, separator, s.at[i].y, separator, v[0],
                          separator, v[1], separator, v[2]);
        else std::snprintf(line, sizeof line, "%d%c%d%c%d\n", s.at[i].x, separator, s.at[i].y, separator, v[0]);
        out += line;
    }
    return out;
}

}  // namespace

int runSampleLine(int argc, char** argv) {
    Args args = parseArgs(argc, argv,
                          "--from X,Y --to X,Y [options] IMAGE|FOLDER...\n"
                          "Prints the grey value (RGB with --rgb) of every pixel on the line from one point to the\n"
                          "other, both included; with --csv writes NAME-line.csv into the output folder instead.",
                          {{"from", true, "the first point X,Y (0,0 is the top left)"},
                           {"to", true, "the last point X,Y"},
                           {"csv", false, "write NAME-line.csv instead of printing"},
                           {"rgb", false, "the three colour channels rather than grey"}});
    if (!args.has("from") || !args.has("to")) fail("--from X,Y and --to X,Y are required");
    const ZeqiPoint from = args.point("from", {0, 0}), to = args.point("to", {0, 0});
    const bool csv = args.has("csv");
    if (!csv) args.outDir.clear();  // prints only
    return runBatch(args, [&](const std::string& path) {
        const Picture picture = readPicture(path);
        const auto image = args.has("rgb") ? rgb8(picture) : grey8(picture);
        Samples s;
        const double ms = timeMs([&] { s = sampleLine(image, from, to); });
        if (csv) writeText(joinPath(args.outDir, stem(path) + "-line.csv"), table(s, ','));
        else std::printf("%s: %zu pixels from %d,%d to %d,%d\n%s", path.c_str(), s.at.size(), from.x, from.y, to.x,
                         to.y, table(s, ' ').c_str());
        return ms;
    });
}

void demoSampleLine(Demo& demo) {
    const int w = demo.grey.width(), h = demo.grey.height();
    const ZeqiPoint from = {w / 16, h * 5 / 6}, to = {w * 15 / 16, h / 5};
    Samples s;
    demo.time("sample a line", "zeqiSampleLine_8u_C1R zeqiSampleLine_32f_C3R",
              [&] { s = sampleLine(demo.grey, from, to); });
    // The line in red over the grey image; its profile in yellow over a
    // darkened band along the bottom.
    Picture p = fitRgb(pictureOf(demo.grey.view()), w, h);
    auto put = [&](int x, int y, Rgb c) {
        if (x < 0 || y < 0 || x >= w || y >= h) return;
        uint8_t* px = p.row8(y) + size_t(x) * 3;
        px[0] = c.r, px[1] = c.g, px[2] = c.b;
    };
    const int plotH = h / 3, thick = std::max(1, w / 200);
    for (int y = h - plotH - 4; y < h; ++y)
        for (size_t i = 0; i < size_t(w) * 3; ++i) p.row8(y)[i] = uint8_t(p.row8(y)[i] / 4);
    int lastY = -1;
    for (size_t i = 0; i < s.at.size(); ++i) {
        for (int d = 0; d < thick; ++d) put(s.at[i].x + d, s.at[i].y, {240, 40, 40});
        const int x = int(i * size_t(w) / s.at.size()), y = h - 2 - s.values[i] * plotH / 255;
        const int from = lastY < 0 ? y : std::min(y, lastY), to = lastY < 0 ? y : std::max(y, lastY);
        for (int yy = from - thick / 2; yy <= to + thick / 2; ++yy)
            for (int d = 0; d < thick; ++d) put(x + d, yy, {250, 220, 40});
        lastY = y;
    }
    std::string rows = table(s, ',');
    writeText(joinPath(demo.outDir, "line.csv"), rows);
    demo.written.push_back(joinPath(demo.outDir, "line.csv"));
    demo.save("line", p);
    demo.tile("line profile, " + std::to_string(s.at.size()) + " px", p);
}

}  // namespace tool
