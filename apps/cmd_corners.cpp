// `zeqcv corners`: the smaller eigenvalue of the structure matrix at every
// pixel (large at corners, small along edges and in flat areas), the
// strongest corners printed; with --vectors also both eigenvalues and the
// direction of the first eigenvector.
#include "commands.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace tool {

namespace {

struct CornerParams {
    int aperture = 3, window = 5, best = 20;
};

CornerParams cornerParams(const Args& args) {
    CornerParams p;
    p.aperture = args.integer("aperture", p.aperture);
    p.window = args.integer("window", p.window);
    p.best = args.integer("best", p.best);
    if (p.best < 0) fail("--best: must not be negative");
    return p;
}

zeqcv::Image<Zeq32f> minEigen(const zeqcv::Image<Zeq8u>& grey, const CornerParams& p) {
    auto out = newImage<Zeq32f>(grey.width(), grey.height());
    zeqcv::Buffer<Zeq8u> buffer;
    zeqcv::check(buffer.sized(zeqiMinEigenValGetSize, grey.width(), p.aperture, p.window), "zeqiMinEigenValGetSize");
    ZEQCV_CHECKED(zeqiMinEigenVal_8u32f_C1R, grey, out, zeqcv::roi, p.aperture, p.window, buffer.data());
    return out;
}

// Six floats per pixel: l1, l2, (x1, y1) of l1, (x2, y2) of l2.
zeqcv::Image<Zeq32f> eigenVectors(const zeqcv::Image<Zeq8u>& grey, const CornerParams& p) {
    auto out = newImage<Zeq32f>(grey.width(), grey.height(), 6);
    zeqcv::Buffer<Zeq8u> buffer;
    zeqcv::check(buffer.sized(zeqiEigenValsVecsGetSize, grey.width(), p.aperture, p.window), "zeqiEigenValsVecsGetSize");
    ZEQCV_CHECKED(zeqiEigenValsVecs_8u32f_C1R, grey, out, zeqcv::roi, p.aperture, p.window, buffer.data());
    return out;
}

// One channel of the six as an image of its own.
zeqcv::Image<Zeq32f> channel(const zeqcv::Image<Zeq32f>& vv, int c) {
    auto out = newImage<Zeq32f>(vv.width(), vv.height());
    for (int y = 0; y < vv.height(); ++y)
        for (int x = 0; x < vv.width(); ++x) out.row(y)[x] = vv.row(y)[size_t(x) * 6 + size_t(c)];
    return out;
}

// The n strongest positive responses, none within `gap` pixels of a stronger one.
std::vector<ZeqiPoint> strongest(const zeqcv::Image<Zeq32f>& response, int n, int gap) {
    auto work = newImage<Zeq32f>(response.width(), response.height());
    ZEQCV_CHECKED(zeqiCopy_32f_C1R, response, work, zeqcv::roi);
    std::vector<ZeqiPoint> found;
    for (int i = 0; i < n; ++i) {
        Zeq32f lo, hi;
        ZeqiPoint atLo, at;
        ZEQCV_CHECKED(zeqiMinMaxIndx_32f_C1R, work, zeqcv::roi, &lo, &hi, &atLo, &at);
        if (!(hi > 0)) break;
        found.push_back(at);
        const int x0 = std::max(0, at.x - gap), y0 = std::max(0, at.y - gap);
        const int x1 = std::min(work.width(), at.x + gap + 1), y1 = std::min(work.height(), at.y + gap + 1);
        ZEQCV_CHECKED(zeqiSet_32f_C1R, 0.0f, work.view().sub({x0, y0, x1 - x0, y1 - y0}), zeqcv::roi);
    }
    return found;
}

}  // namespace

int runCorners(int argc, char** argv) {
    const Args args = parseArgs(
        argc, argv,
        "[options] IMAGE|FOLDER...\n"
        "Writes NAME-corners (the smaller eigenvalue of the structure matrix of Sobel derivatives summed\n"
        "over a window) and prints the strongest corners; --vectors also writes NAME-l1 and NAME-l2 (both\n"
        "eigenvalues) and prints the direction of the first eigenvector at each corner.",
        {{"aperture", true, "Sobel aperture 3 (default), 5 or 7"},
         {"window", true, "summing window 3, 5 (default) or 7"},
         {"best", true, "how many corners to print (default 20), at least 2 windows apart"},
         {"vectors", false, "eigenvalues and eigenvectors as well"}},
        true, true);
    const CornerParams p = cornerParams(args);
    const bool vectors = args.has("vectors");
    return runBatch(args, [&](const std::string& path) {
        const auto grey = grey8(readPicture(path));
        zeqcv::Image<Zeq32f> response, vv;
        const double ms = timeMs([&] {
            response = minEigen(grey, p);
            if (vectors) vv = eigenVectors(grey, p);
        });
        const std::string base = joinPath(args.outDir, stem(path));
        std::printf("%s\n", saveFloat(base + "-corners", response.view(), args.raw).c_str());
        if (vectors) {
            std::printf("%s\n", saveFloat(base + "-l1", channel(vv, 0).view(), args.raw).c_str());
            std::printf("%s\n", saveFloat(base + "-l2", channel(vv, 1).view(), args.raw).c_str());
        }
        const std::vector<ZeqiPoint> found = strongest(response, p.best, 2 * p.window);
        for (size_t i = 0; i < found.size(); ++i) {
            const ZeqiPoint at = found[i];
            std::printf("%s: corner %zu at %d,%d strength %.9g", path.c_str(), i + 1, at.x, at.y,
                        double(response.row(at.y)[at.x]));
            if (vectors) {
                const Zeq32f* e = vv.row(at.y) + size_t(at.x) * 6;
                std::printf(" l1 %.9g l2 %.9g direction %.1f deg", double(e[0]), double(e[1]),
                            std::atan2(double(e[3]), double(e[2])) * 180 / std::acos(-1.0));
            }
            std::printf("\n");
        }
        return ms;
    });
}

void demoCorners(Demo& demo) {
    const CornerParams p;
    zeqcv::Image<Zeq32f> response;
    demo.time("corner strength (min eigenvalue)", "zeqiMinEigenValGetSize zeqiMinEigenVal_8u32f_C1R",
              [&] { response = minEigen(demo.grey, p); });
    demo.save("corners", response.view());
    // The 40 strongest corners as red crosses over the grey image.
    Picture p8 = fitRgb(pictureOf(demo.grey.view()), demo.grey.width(), demo.grey.height());
    const int arm = std::max(2, demo.grey.width() / 64);
    for (const ZeqiPoint at : strongest(response, 40, 2 * p.window))
        for (int d = -arm; d <= arm; ++d)
            for (const ZeqiPoint q : {ZeqiPoint{at.x + d, at.y}, ZeqiPoint{at.x + d, at.y + 1}, ZeqiPoint{at.x, at.y + d},
                                      ZeqiPoint{at.x + 1, at.y + d}})
                if (q.x >= 0 && q.y >= 0 && q.x < p8.width && q.y < p8.height) {
                    uint8_t* px = p8.row8(q.y) + size_t(q.x) * 3;
                    px[0] = 240, px[1] = 30, px[2] = 30;
                }
    demo.save("corners-marked", p8);
    demo.tile("40 strongest corners", p8);
}

}  // namespace tool
