// `zeqcv demo`, the main job: every family's demo step (the table of
// main.cpp) on a scene generated here, or on the user's photograph; each
// result is written to the output folder, with overview.png, a contact sheet
// of labelled tiles, and a table of the time each step took.
#include "commands.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace tool {

namespace {

constexpr int kTileW = 320, kTileH = 240, kLabelH = 24, kGap = 8, kColumns = 4;
constexpr int kSceneW = 640, kSceneH = 480, kFrames = 6;

// Deterministic noise, so every run draws the same scene.
struct Noise {
    uint32_t state = 0x9E3779B9u;
    int next(int amplitude) {
        state ^= state << 13;
        state ^= state >> 17;
        state ^= state << 5;
        return int(state % uint32_t(2 * amplitude + 1)) - amplitude;
    }
};

void fillRect(Picture& p, int x0, int y0, int x1, int y1, Rgb c) {
    for (int y = std::max(0, y0); y < std::min(p.height, y1); ++y)
        for (int x = std::max(0, x0); x < std::min(p.width, x1); ++x) {
            uint8_t* px = p.row8(y) + size_t(x) * 3;
            px[0] = c.r, px[1] = c.g, px[2] = c.b;
        }
}

// Blends a disc (hard edge) or a soft Gaussian blob onto the picture.
void blob(Picture& p, double cx, double cy, double r, Rgb c, bool soft) {
    for (int y = std::max(0, int(cy - 3 * r)); y < std::min(p.height, int(cy + 3 * r) + 1); ++y)
        for (int x = std::max(0, int(cx - 3 * r)); x < std::min(p.width, int(cx + 3 * r) + 1); ++x) {
            const double d2 = (x - cx) * (x - cx) + (y - cy) * (y - cy);
            const double a = soft ? std::exp(-d2 / (2 * r * r)) : (d2 <= r * r ? 1.0 : 0.0);
            uint8_t* px = p.row8(y) + size_t(x) * 3;
            const uint8_t rgb[3] = {c.r, c.g, c.b};
            for (int k = 0; k < 3; ++k) px[k] = uint8_t(px[k] + (rgb[k] - px[k]) * a + 0.5);
        }
}

void triangle(Picture& p, double ax, double ay, double bx, double by, double cx, double cy, Rgb c) {
    auto side = [](double x0, double y0, double x1, double y1, double x, double y) {
        return (x1 - x0) * (y - y0) - (y1 - y0) * (x - x0);
    };
    for (int y = 0; y < p.height; ++y)
        for (int x = 0; x < p.width; ++x) {
            const double s0 = side(ax, ay, bx, by, x, y), s1 = side(bx, by, cx, cy, x, y), s2 = side(cx, cy, ax, ay, x, y);
            if ((s0 >= 0 && s1 >= 0 && s2 >= 0) || (s0 <= 0 && s1 <= 0 && s2 <= 0)) fillRect(p, x, y, x + 1, y + 1, c);
        }
}

// The default scene at time t: a gradient, shapes with straight edges and
// corners, discs and soft blobs (one of them moving), text-like strokes, noise.
Picture scene(int t) {
    Picture p = canvas(kSceneW, kSceneH, {0, 0, 0});
    for (int y = 0; y < kSceneH; ++y)
        for (int x = 0; x < kSceneW; ++x) {
            uint8_t* px = p.row8(y) + size_t(x) * 3;
            px[0] = uint8_t(60 + 120 * x / kSceneW);
            px[1] = uint8_t(70 + 60 * y / kSceneH);
            px[2] = uint8_t(150 - 100 * x / kSceneW);
        }
    fillRect(p, 40, 40, 220, 170, {30, 40, 90});
    fillRect(p, 70, 70, 150, 140, {120, 220, 230});
    triangle(p, 430, 60, 600, 200, 380, 220, {250, 200, 60});
    blob(p, 300, 330, 55, {250, 250, 250}, false);
    blob(p, 300, 330, 25, {20, 20, 30}, false);
    blob(p, 520, 360, 40, {40, 200, 90}, true);
    blob(p, 90 + 14 * t, 390 - 4 * t, 22, {255, 140, 20}, false);  // moves right and up
    for (int i = 0; i < 6; ++i) fillRect(p, 250 + 14 * i, 40 + 8 * i, 256 + 14 * i, 200 - 6 * i, {25, 25, 25});
    drawText(p, 380, 250, "zeqcv", {15, 15, 20}, 7);
    drawText(p, 40, 200, "v4.1 demo", {245, 245, 245}, 3);
    Noise noise;
    for (uint8_t& b : p.bytes) b = uint8_t(std::clamp(int(b) + noise.next(6), 0, 255));
    return p;
}

// The photograph moved by (2t, t) pixels, edges replicated.
zeqcv::Image<Zeq8u> shifted(const zeqcv::Image<Zeq8u>& grey, int t) {
    const int sx = 2 * t, sy = t;
    auto big = newImage<Zeq8u>(grey.width() + sx, grey.height() + sy);
    ZEQCV_CHECKED(zeqiCopyReplicateBorder_8u_C1R, grey, grey.size(), big, big.size(), sy, sx);
    auto out = newImage<Zeq8u>(grey.width(), grey.height());
    ZEQCV_CHECKED(zeqiCopy_8u_C1R, big.view().sub({0, 0, grey.width(), grey.height()}), out, zeqcv::roi);
    return out;
}

// Image primitives: the grey image as float, its mean, and a threshold there.
void demoPrimitives(Demo& demo) {
    const int w = demo.grey.width(), h = demo.grey.height();
    auto f = newImage<Zeq32f>(w, h), t = newImage<Zeq32f>(w, h);
    Zeq64f mean = 0;
    demo.time("threshold at the mean", "zeqiConvert_8u32f_C1R zeqiMean_32f_C1R zeqiThreshold_LTVal_32f_C1R", [&] {
        ZEQCV_CHECKED(zeqiConvert_8u32f_C1R, demo.grey, f, zeqcv::roi);
        ZEQCV_CHECKED(zeqiMean_32f_C1R, f, zeqcv::roi, &mean, zeqAlgHintAccurate);
        ZEQCV_CHECKED(zeqiThreshold_LTVal_32f_C1R, f, t, zeqcv::roi, Zeq32f(mean), 0.0f);
    });
    demo.save("threshold", t.view());
    demo.tile("below the mean set to 0", scaleTo8u(t.view(), 0, 255).view());
}

Picture overview(const Demo& demo, const std::string& title) {
    const int n = int(demo.tiles.size()), rows = (n + kColumns - 1) / kColumns;
    const int cellW = kTileW + kGap, cellH = kTileH + kLabelH + kGap;
    const int top = 40;
    Picture sheet = canvas(kGap + kColumns * cellW, top + rows * cellH + kGap, {18, 18, 22});
    drawText(sheet, kGap + 4, 12, title, {250, 250, 250}, 2);
    for (int i = 0; i < n; ++i) {
        const int x0 = kGap + (i % kColumns) * cellW, y0 = top + (i / kColumns) * cellH;
        const Picture t = fitRgb(demo.tiles[size_t(i)].second, kTileW, kTileH);
        const int ox = x0 + (kTileW - t.width) / 2, oy = y0 + (kTileH - t.height) / 2;
        for (int y = 0; y < t.height; ++y)
            std::copy(t.row8(y), t.row8(y) + t.rowBytes(), sheet.row8(oy + y) + size_t(ox) * 3);
        std::string label = std::to_string(i + 1) + " " + demo.tiles[size_t(i)].first;
        if (textWidth(label, 2) > kTileW) label.resize(size_t(kTileW / 12));
        drawText(sheet, x0 + 2, y0 + kTileH + 6, label, {225, 225, 225}, 2);
    }
    return sheet;
}

}  // namespace

void Demo::time(const std::string& step, const std::string& calls, const std::function<void()>& f) {
    // The best of three runs: the first pays for page faults of new memory.
    double best = timeMs(f);
    for (int i = 0; i < 2; ++i) best = std::min(best, timeMs(f));
    rows.push_back({step, calls, best});
}

void Demo::save(const std::string& name, zeqcv::ImageView<const Zeq8u> image) {
    const std::string path = joinPath(outDir, name + ".png");
    saveGrey(path, image);
    written.push_back(path);
}

void Demo::save(const std::string& name, zeqcv::ImageView<const Zeq32f> image) {
    written.push_back(saveFloat(joinPath(outDir, name), image, raw));
}

void Demo::save(const std::string& name, const Picture& picture) {
    const std::string path = joinPath(outDir, name + ".png");
    writePng(path, picture);
    written.push_back(path);
}

void Demo::tile(const std::string& label, const Picture& picture) { tiles.emplace_back(label, picture); }

void Demo::tile(const std::string& label, zeqcv::ImageView<const Zeq8u> image) { tile(label, pictureOf(image)); }

int runDemo(int argc, char** argv) {
    const Args args = parseArgs(argc, argv,
                                "[--input PHOTO] [--out DIR]\n"
                                "Runs every family on a generated scene (or on PHOTO, PNG or JPEG), writes each result and\n"
                                "overview.png into DIR (default zeqcv-demo-out) and prints the time of each step.",
                                {{"input", true, "a photograph to use instead of the generated scene"}}, true, true);
    if (!args.inputs.empty()) fail("unexpected argument '" + args.inputs[0] + "' (a photograph is given with --input)");
    Demo demo;
    demo.outDir = args.outGiven ? args.outDir : "zeqcv-demo-out";
    demo.raw = args.raw;
    std::string source;
    if (args.has("input")) {
        const std::string path = args.text("input", "");
        const Picture photo = readPicture(path);
        demo.colour = fitRgb(photo, photo.width, photo.height);  // as 8-bit RGB
        demo.grey = grey8(photo);
        source = path + ", " + std::to_string(photo.width) + " x " + std::to_string(photo.height);
    } else {
        demo.colour = scene(0);
        demo.grey = grey8(demo.colour);
        source = "generated scene, " + std::to_string(kSceneW) + " x " + std::to_string(kSceneH);
    }
    prepareOutputDir(demo.outDir);
    const ZeqLibraryVersion* v = zeqcvGetLibVersion();
    std::printf("zeqcv demo: %s %s, %s\n", v->name, v->version, source.c_str());

    // Frames over time for the families that compare or accumulate frames.
    for (int t = 0; t < kFrames; ++t) {
        if (t == 0) demo.frames.push_back(newImage<Zeq8u>(demo.grey.width(), demo.grey.height()));
        else demo.frames.push_back(args.has("input") ? shifted(demo.grey, t) : grey8(scene(t)));
    }
    ZEQCV_CHECKED(zeqiCopy_8u_C1R, demo.grey, demo.frames[0], zeqcv::roi);

    demo.save("input", demo.colour);
    demo.save("grey", demo.grey.view());
    demo.tile(args.has("input") ? "input" : "scene", demo.colour);
    demo.tile("grey (BT.601)", demo.grey.view());
    demoPrimitives(demo);
    for (const Command& c : commands())
        if (c.demo) c.demo(demo);

    const std::string sheet = joinPath(demo.outDir, "overview.png");
    writePng(sheet, overview(demo, std::string("zeqcv ") + v->version + " demo - " + source));

    std::printf("\n  %-32s %9s  %s\n", "step", "ms", "library calls");
    double total = 0;
    for (const Demo::Row& r : demo.rows) {
        std::printf("  %-32s %9.2f  %s\n", r.step.c_str(), r.ms, r.calls.c_str());
        total += r.ms;
    }
    std::printf("  %-32s %9.2f\n\n", "total", total);
    std::printf("wrote %zu results and %s\n", demo.written.size(), sheet.c_str());
    return 0;
}

}  // namespace tool
