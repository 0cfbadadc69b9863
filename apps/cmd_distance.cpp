// `zeqcv distance`: the grey image thresholded into objects and background,
// then the chamfer distance of every object pixel to the nearest background
// pixel, with the library's standard 3x3 or 5x5 metrics.
#include "commands.h"

#include <cstdio>

namespace tool {

namespace {

struct DistanceParams {
    int threshold = 128;
    bool invert = false;  // objects are the dark pixels
    int mask = 5;
    int norm = 2;  // 0 chessboard, 1 city block, 2 Euclidean
};

const std::vector<std::string> kNorms = {"euclid", "city", "chess"};

DistanceParams distanceParams(const Args& args) {
    DistanceParams p;
    p.threshold = args.integer("threshold", p.threshold);
    if (p.threshold < 1 || p.threshold > 255) fail("--threshold: " + std::to_string(p.threshold) + " is not in 1..255");
    p.invert = args.has("invert");
    p.mask = args.integer("mask", p.mask);
    if (p.mask != 3 && p.mask != 5) fail("--mask: " + std::to_string(p.mask) + " is neither 3 nor 5");
    const std::string norm = args.choice("norm", kNorms);
    p.norm = norm == "euclid" ? 2 : norm == "city" ? 1 : 0;
    return p;
}

// 255 on objects (grey >= threshold, or below it with invert), 0 on the
// background the distances are measured to.
zeqcv::Image<Zeq8u> objects(const zeqcv::Image<Zeq8u>& grey, const DistanceParams& p, long long& background) {
    auto out = newImage<Zeq8u>(grey.width(), grey.height());
    background = 0;
    for (int y = 0; y < grey.height(); ++y)
        for (int x = 0; x < grey.width(); ++x) {
            const bool object = (grey.row(y)[x] >= p.threshold) != p.invert;
            out.row(y)[x] = object ? 255 : 0;
            background += !object;
        }
    return out;
}

// The metrics (a, b[, c]) of the mask and norm; four floats (the 5x5 city
// block table writes the fourth).
std::vector<Zeq32f> metricsOf(const DistanceParams& p) {
    std::vector<Zeq32f> m(4, 0.0f);
    zeqcv::check(zeqiGetDistanceTransformMask_32f(p.mask, p.norm, m.data()), "zeqiGetDistanceTransformMask_32f");
    if (p.mask == 5 && p.norm == 1) m[2] = m[3];
    return m;
}

void distance(const zeqcv::Image<Zeq8u>& binary, zeqcv::Image<Zeq32f>& dst, const DistanceParams& p) {
    const std::vector<Zeq32f> m = metricsOf(p);
    if (p.mask == 3) ZEQCV_CHECKED(zeqiDistanceTransform_3x3_8u32f_C1R, binary, dst, zeqcv::roi, m.data());
    else ZEQCV_CHECKED(zeqiDistanceTransform_5x5_8u32f_C1R, binary, dst, zeqcv::roi, m.data());
}

}  // namespace

int runDistance(int argc, char** argv) {
    const Args args = parseArgs(
        argc, argv,
        "[options] IMAGE|FOLDER...\n"
        "Objects are the pixels whose grey is at least the threshold (below it with --invert); writes\n"
        "NAME-distance (each object pixel's distance to the nearest other pixel, in pixels) and NAME-objects.png.",
        {{"threshold", true, "grey level of objects (default 128)"},
         {"invert", false, "objects are the pixels below the threshold"},
         {"mask", true, "3 or 5 (default 5): the chamfer mask"},
         {"norm", true, "euclid (default), city or chess: the metric approximated"}},
        true, true);
    const DistanceParams p = distanceParams(args);
    const std::vector<Zeq32f> m = metricsOf(p);
    std::printf("%dx%d mask, weights %g, %g", p.mask, p.mask, double(m[0]), double(m[1]));
    if (p.mask == 5) std::printf(", %g", double(m[2]));
    std::printf("\n");
    return runBatch(args, [&](const std::string& path) {
        const auto grey = grey8(readPicture(path));
        long long background = 0;
        const auto binary = objects(grey, p, background);
        if (background == 0) fail(path + ": no pixel outside the objects to measure distances to (try --threshold)");
        auto dst = newImage<Zeq32f>(grey.width(), grey.height());
        const double ms = timeMs([&] { distance(binary, dst, p); });
        const std::string base = joinPath(args.outDir, stem(path));
        saveGrey(base + "-objects.png", binary.view());
        std::printf("%s\n", saveFloat(base + "-distance", dst.view(), args.raw).c_str());
        return ms;
    });
}

void demoDistance(Demo& demo) {
    const DistanceParams p;
    long long background = 0;
    const auto binary = objects(demo.grey, p, background);
    auto dst = newImage<Zeq32f>(demo.grey.width(), demo.grey.height());
    if (background == 0) {  // a photograph without dark pixels: every distance is unbounded
        std::printf("distance: no pixel below %d, step skipped\n", p.threshold);
        return;
    }
    demo.time("distance transform 5x5 (32f)", "zeqiGetDistanceTransformMask_32f zeqiDistanceTransform_5x5_8u32f_C1R",
              [&] { distance(binary, dst, p); });
    demo.save("distance", dst.view());
    float lo, hi;
    rangeOf(dst.view(), lo, hi);
    demo.tile("distance to grey < 128", scaleTo8u(dst.view(), lo, hi).view());
}

}  // namespace tool
