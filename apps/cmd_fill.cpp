// `zeqcv fill`: flood fill of the grey image from a seed pixel, either the
// pixels equal to the seed's value or (with --lo/--hi) those reached by steps
// of at most lo down and hi up; prints the region's area and bounding box.
#include "commands.h"

#include <cstdio>

namespace tool {

namespace {

struct FillParams {
    ZeqiPoint seed = {0, 0};
    bool gradient = false;
    int lo = 0, hi = 0, value = 255, connectivity = 4;
};

FillParams fillParams(const Args& args) {
    FillParams p;
    if (!args.has("seed")) fail("--seed X,Y is required");
    p.seed = args.point("seed", p.seed);
    p.gradient = args.has("lo") || args.has("hi");
    p.lo = args.integer("lo", 0);
    p.hi = args.integer("hi", 0);
    p.value = args.integer("value", p.value);
    p.connectivity = args.integer("connectivity", p.connectivity);
    if (p.connectivity != 4 && p.connectivity != 8)
        fail("--connectivity: " + std::to_string(p.connectivity) + " is neither 4 nor 8");
    return p;
}

using PlainFill = ZeqStatus (*)(Zeq8u*, int, ZeqiSize, ZeqiPoint, int, ZeqiConnectedComp*, Zeq8u*);
using GradFill = ZeqStatus (*)(Zeq8u*, int, ZeqiSize, ZeqiPoint, int, int, int, ZeqiConnectedComp*, Zeq8u*);

// Fills `image` in place. A plain fill of a one-row image also reads the row
// above it, so the image is filled as part of a copy with one row more,
// whose first row never matches the seed.
ZeqiConnectedComp fill(zeqcv::Image<Zeq8u>& image, const FillParams& p) {
    const int w = image.width(), h = image.height();
    ZeqiConnectedComp region = {0, 0, {0, 0, 0, 0}};
    zeqcv::Buffer<Zeq8u> buffer;
    if (p.gradient) {
        zeqcv::check(buffer.sized(zeqiFloodFillGetSize_Grad, image.size()), "zeqiFloodFillGetSize_Grad");
        const GradFill f = p.connectivity == 8 ? zeqiFloodFill_Grad8Con_8u_C1IR : zeqiFloodFill_Grad4Con_8u_C1IR;
        zeqcv::check(zeqcv::call(f, image, zeqcv::roi, p.seed, p.value, p.lo, p.hi, &region, buffer.data()),
                     "zeqiFloodFill_Grad8u_C1IR");
        return region;
    }
    zeqcv::check(buffer.sized(zeqiFloodFillGetSize, image.size()), "zeqiFloodFillGetSize");
    auto framed = newImage<Zeq8u>(w, h + 1);
    const auto inside = framed.view().sub({0, 1, w, h});
    ZEQCV_CHECKED(zeqiCopy_8u_C1R, image, inside, zeqcv::roi);
    const bool seedInside = p.seed.x >= 0 && p.seed.x < w && p.seed.y >= 0 && p.seed.y < h;
    const Zeq8u above = seedInside ? Zeq8u(image.row(p.seed.y)[p.seed.x] + 1) : 0;
    std::fill(framed.row(0), framed.row(0) + w, above);
    const PlainFill f = p.connectivity == 8 ? zeqiFloodFill_8Con_8u_C1IR : zeqiFloodFill_4Con_8u_C1IR;
    zeqcv::check(zeqcv::call(f, inside, zeqcv::roi, p.seed, p.value, &region, buffer.data()), "zeqiFloodFill_8u_C1IR");
    ZEQCV_CHECKED(zeqiCopy_8u_C1R, zeqcv::ImageView<const Zeq8u>(inside), image, zeqcv::roi);
    return region;
}

std::string describe(const ZeqiConnectedComp& r) {
    char text[160];
    std::snprintf(text, sizeof text, "area %.0f, bounding box x %d, y %d, %d x %d", r.area, r.rect.x, r.rect.y,
                  r.rect.width, r.rect.height);
    return text;
}

}  // namespace

int runFill(int argc, char** argv) {
    const Args args = parseArgs(argc, argv,
                                "--seed X,Y [options] IMAGE|FOLDER...\n"
                                "Fills the seed's region of the grey image with --value and writes NAME-fill.png.\n"
                                "Without --lo/--hi the region is the pixels equal to the seed's value; with them,\n"
                                "the pixels reached by steps from P to N with P - lo <= N <= P + hi.",
                                {{"seed", true, "the start pixel X,Y (0,0 is the top left)"},
                                 {"lo", true, "largest step down between neighbours (gradient fill)"},
                                 {"hi", true, "largest step up between neighbours (gradient fill)"},
                                 {"value", true, "the value filled in (default 255)"},
                                 {"connectivity", true, "4 (default) or 8 neighbours"}});
    const FillParams p = fillParams(args);
    return runBatch(args, [&](const std::string& path) {
        auto grey = grey8(readPicture(path));
        ZeqiConnectedComp region;
        const double ms = timeMs([&] { region = fill(grey, p); });
        const std::string out = joinPath(args.outDir, stem(path) + "-fill.png");
        saveGrey(out, grey.view());
        std::printf("%s: %s\n", out.c_str(), describe(region).c_str());
        return ms;
    });
}

void demoFill(Demo& demo) {
    FillParams p;
    p.gradient = true;
    p.lo = p.hi = 3;
    p.seed = {demo.grey.width() / 6, demo.grey.height() / 4};  // inside the scene's dark rectangle
    zeqcv::Image<Zeq8u> filled;
    ZeqiConnectedComp region;
    demo.time("flood fill, gradient 3/3", "zeqiFloodFillGetSize_Grad zeqiFloodFill_Grad4Con_8u_C1IR", [&] {
        filled = newImage<Zeq8u>(demo.grey.width(), demo.grey.height());
        ZEQCV_CHECKED(zeqiCopy_8u_C1R, demo.grey, filled, zeqcv::roi);
        region = fill(filled, p);
    });
    demo.save("fill", filled.view());
    // The filled pixels in red over the grey image.
    Picture tint = pictureOf(demo.grey.view());
    tint = fitRgb(tint, tint.width, tint.height);
    for (int y = 0; y < tint.height; ++y)
        for (int x = 0; x < tint.width; ++x)
            if (filled.row(y)[x] != demo.grey.row(y)[x]) {
                uint8_t* px = tint.row8(y) + size_t(x) * 3;
                px[0] = 230, px[1] = 40, px[2] = 40;
            }
    std::printf("fill from %d,%d: %s\n", p.seed.x, p.seed.y, describe(region).c_str());
    demo.tile("flood fill, " + std::to_string(long(region.area)) + " px", tint);
}

}  // namespace tool
