// `zeqcv stats`: mean and standard deviation, minimum and maximum with their
// positions, and the Inf, L1 and L2 norms of an image (grey, and each colour
// channel through the channel-of-interest forms), optionally under a mask.
#include "commands.h"

#include <algorithm>
#include <cstdio>
#include <utility>

namespace tool {

namespace {

struct Stats {
    double mean = 0, stdDev = 0, l1 = 0, l2 = 0, inf = 0;
    Zeq32f min = 0, max = 0;
    ZeqiPoint minAt{0, 0}, maxAt{0, 0};
};

// A library function with its name, for messages.
template <class F>
struct Named {
    F fn;
    const char* name;
    template <class... A>
    void operator()(A&&... args) const {
        zeqcv::check(zeqcv::call(fn, std::forward<A>(args)...), name);
    }
};
#define ZEQCV_NAMED(f) Named<decltype(&f)>{&f, #f}

// The library functions of one element type, C1 and C3C forms.
template <class T>
struct StatsCalls;
template <>
struct StatsCalls<Zeq8u> {
    static constexpr auto meanStd = ZEQCV_NAMED(zeqiMean_StdDev_8u_C1MR);
    static constexpr auto meanStdC3 = ZEQCV_NAMED(zeqiMean_StdDev_8u_C3CMR);
    static constexpr auto minMax = ZEQCV_NAMED(zeqiMinMaxIndx_8u_C1MR);
    static constexpr auto minMaxC3 = ZEQCV_NAMED(zeqiMinMaxIndx_8u_C3CMR);
    static constexpr auto inf = ZEQCV_NAMED(zeqiNorm_Inf_8u_C1MR);
    static constexpr auto infC3 = ZEQCV_NAMED(zeqiNorm_Inf_8u_C3CMR);
    static constexpr auto l1 = ZEQCV_NAMED(zeqiNorm_L1_8u_C1MR);
    static constexpr auto l1C3 = ZEQCV_NAMED(zeqiNorm_L1_8u_C3CMR);
    static constexpr auto l2 = ZEQCV_NAMED(zeqiNorm_L2_8u_C1MR);
    static constexpr auto l2C3 = ZEQCV_NAMED(zeqiNorm_L2_8u_C3CMR);
};
template <>
struct StatsCalls<Zeq16u> {
    static constexpr auto meanStd = ZEQCV_NAMED(zeqiMean_StdDev_16u_C1MR);
    static constexpr auto meanStdC3 = ZEQCV_NAMED(zeqiMean_StdDev_16u_C3CMR);
    static constexpr auto minMax = ZEQCV_NAMED(zeqiMinMaxIndx_16u_C1MR);
    static constexpr auto minMaxC3 = ZEQCV_NAMED(zeqiMinMaxIndx_16u_C3CMR);
    static constexpr auto inf = ZEQCV_NAMED(zeqiNorm_Inf_16u_C1MR);
    static constexpr auto infC3 = ZEQCV_NAMED(zeqiNorm_Inf_16u_C3CMR);
    static constexpr auto l1 = ZEQCV_NAMED(zeqiNorm_L1_16u_C1MR);
    static constexpr auto l1C3 = ZEQCV_NAMED(zeqiNorm_L1_16u_C3CMR);
    static constexpr auto l2 = ZEQCV_NAMED(zeqiNorm_L2_16u_C1MR);
    static constexpr auto l2C3 = ZEQCV_NAMED(zeqiNorm_L2_16u_C3CMR);
};
#undef ZEQCV_NAMED

// Everything over the pixels where the mask is non-zero (the tool passes an
// all-255 mask when the user gives none). coi 0: a grey image; 1..3: that
// channel of a three-channel one.
template <class T>
Stats measure(zeqcv::ImageView<const T> image, zeqcv::ImageView<const Zeq8u> mask, int coi) {
    using C = StatsCalls<T>;
    Stats s;
    if (coi == 0) {
        C::meanStd(image, mask, zeqcv::roi, &s.mean, &s.stdDev);
        C::minMax(image, mask, zeqcv::roi, &s.min, &s.max, &s.minAt, &s.maxAt);
        C::inf(image, mask, zeqcv::roi, &s.inf);
        C::l1(image, mask, zeqcv::roi, &s.l1);
        C::l2(image, mask, zeqcv::roi, &s.l2);
    } else {
        C::meanStdC3(image, mask, zeqcv::roi, coi, &s.mean, &s.stdDev);
        C::minMaxC3(image, mask, zeqcv::roi, coi, &s.min, &s.max, &s.minAt, &s.maxAt);
        C::infC3(image, mask, zeqcv::roi, coi, &s.inf);
        C::l1C3(image, mask, zeqcv::roi, coi, &s.l1);
        C::l2C3(image, mask, zeqcv::roi, coi, &s.l2);
    }
    return s;
}

// The picture's samples as a library image: grey (luma at the file's depth)
// or its first three channels.
template <class T>
zeqcv::Image<T> samples(const Picture& p, bool colour) {
    const int channels = colour ? 3 : 1;
    auto out = newImage<T>(p.width, p.height, channels);
    for (int y = 0; y < p.height; ++y)
        for (int x = 0; x < p.width; ++x) {
            const size_t at = size_t(x) * p.channels;
            uint32_t v[3];
            for (int c = 0; c < 3; ++c) v[c] = p.depth == 8 ? p.row8(y)[at + (p.channels < 3 ? 0 : c)]
                                                            : p.row16(y)[at + (p.channels < 3 ? 0 : c)];
            if (colour) {
                for (int c = 0; c < 3; ++c) out.view().at(x, y, c) = T(v[c]);
            } else {
                // BT.601 luma, as grey8 computes it.
                out.view().at(x, y) = T(p.channels < 3 ? v[0]
                                                       : (19595ull * v[0] + 38470ull * v[1] + 7471ull * v[2] + 32768) >> 16);
            }
        }
    return out;
}

void printRow(const char* name, const Stats& s) {
    char minAt[32], maxAt[32];
    std::snprintf(minAt, sizeof minAt, "(%d, %d)", s.minAt.x, s.minAt.y);
    std::snprintf(maxAt, sizeof maxAt, "(%d, %d)", s.maxAt.x, s.maxAt.y);
    std::printf("  %-6s %12.6f %12.6f %7g %-12s %7g %-12s %14.0f %14.4f %7g\n", name, s.mean, s.stdDev, double(s.min),
                minAt, double(s.max), maxAt, s.l1, s.l2, s.inf);
}

template <class T>
double report(const Picture& p, zeqcv::ImageView<const Zeq8u> mask) {
    const bool colour = p.channels >= 3;
    Stats grey, channel[3];
    const auto g = samples<T>(p, false);
    zeqcv::Image<T> rgb;
    if (colour) rgb = samples<T>(p, true);
    const double ms = timeMs([&] {
        grey = measure<T>(g.view(), mask, 0);
        for (int c = 0; colour && c < 3; ++c) channel[c] = measure<T>(rgb.view(), mask, c + 1);
    });
    std::printf("  %-6s %12s %12s %7s %-12s %7s %-12s %14s %14s %7s\n", "", "mean", "std dev", "min", "at", "max", "at",
                "L1", "L2", "Inf");
    printRow("grey", grey);
    static const char* kNames[] = {"R", "G", "B"};
    for (int c = 0; colour && c < 3; ++c) printRow(kNames[c], channel[c]);
    return ms;
}

}  // namespace

int runStats(int argc, char** argv) {
    const Args args = parseArgs(argc, argv,
                                "[--mask MASK] IMAGE|FOLDER...\n"
                                "Prints the statistics of each image's grey values (BT.601 luma) and, for colour\n"
                                "images, of each channel; with a mask, over its non-zero pixels only.",
                                {{"mask", true, "grey image of the same size: non-zero pixels take part"}}, false);
    Args batch = args;
    batch.outDir.clear();  // nothing is written
    zeqcv::Image<Zeq8u> mask;
    std::string maskPath = args.text("mask", "");
    if (!maskPath.empty()) mask = grey8(readPicture(maskPath));
    return runBatch(batch, [&](const std::string& path) {
        const Picture p = readPicture(path);
        zeqcv::Image<Zeq8u> all;
        if (mask && (mask.width() != p.width || mask.height() != p.height))
            fail(path + ": is " + std::to_string(p.width) + " x " + std::to_string(p.height) + " but the mask " +
                 maskPath + " is " + std::to_string(mask.width()) + " x " + std::to_string(mask.height()));
        if (!mask) {
            all = newImage<Zeq8u>(p.width, p.height);
            for (int y = 0; y < p.height; ++y) std::fill(all.row(y), all.row(y) + p.width, Zeq8u(255));
        }
        const zeqcv::ImageView<const Zeq8u> m = mask ? mask.view() : all.view();
        long long n = 0;
        for (int y = 0; y < p.height; ++y)
            for (int x = 0; x < p.width; ++x) n += m.at(x, y) != 0;
        std::printf("%s: %d x %d, %s %d-bit%s%s (%lld pixels)\n", path.c_str(), p.width, p.height,
                    p.channels >= 3 ? "colour" : "grey", p.depth, mask ? ", under the mask " : "",
                    mask ? maskPath.c_str() : "", n);
        return p.depth == 8 ? report<Zeq8u>(p, m) : report<Zeq16u>(p, m);
    });
}

void demoStats(Demo& demo) {
    const zeqcv::Image<Zeq8u>& g = demo.grey;
    auto all = newImage<Zeq8u>(g.width(), g.height());
    for (int y = 0; y < g.height(); ++y) std::fill(all.row(y), all.row(y) + g.width(), Zeq8u(255));
    Stats s;
    demo.time("mean, std dev, min/max, norms", "zeqiMean_StdDev_8u_C1MR zeqiMinMaxIndx_8u_C1MR zeqiNorm_*_8u_C1MR",
              [&] { s = measure<Zeq8u>(g.view(), all.view(), 0); });

    Picture text = canvas(320, 240, {24, 24, 32});
    char line[64];
    const Rgb white = {235, 235, 235};
    int y = 12;
    auto put = [&](const char* t) {
        drawText(text, 12, y, t, white, 2);
        y += 22;
    };
    std::snprintf(line, sizeof line, "mean    %.3f", s.mean);
    put(line);
    std::snprintf(line, sizeof line, "std dev %.3f", s.stdDev);
    put(line);
    std::snprintf(line, sizeof line, "min %g at (%d,%d)", double(s.min), s.minAt.x, s.minAt.y);
    put(line);
    std::snprintf(line, sizeof line, "max %g at (%d,%d)", double(s.max), s.maxAt.x, s.maxAt.y);
    put(line);
    std::snprintf(line, sizeof line, "L1  %.4g", s.l1);
    put(line);
    std::snprintf(line, sizeof line, "L2  %.4g", s.l2);
    put(line);
    std::snprintf(line, sizeof line, "Inf %g", s.inf);
    put(line);
    demo.tile("stats of the grey image", text);

    // The grey image with the positions of its minimum (blue) and maximum (red).
    Picture marked = pictureOf(g.view());
    marked = fitRgb(marked, marked.width, marked.height);
    const int r = std::max(6, g.width() / 60);
    auto cross = [&](ZeqiPoint at, Rgb c) {
        for (int d = -r; d <= r; ++d)
            for (int t = -1; t <= 1; ++t) {
                const int pts[2][2] = {{at.x + d, at.y + t}, {at.x + t, at.y + d}};
                for (const auto& p : pts)
                    if (p[0] >= 0 && p[1] >= 0 && p[0] < marked.width && p[1] < marked.height) {
                        uint8_t* px = marked.row8(p[1]) + size_t(p[0]) * 3;
                        px[0] = c.r, px[1] = c.g, px[2] = c.b;
                    }
            }
    };
    cross(s.minAt, {40, 90, 255});
    cross(s.maxAt, {255, 40, 40});
    demo.save("minmax", marked);
    demo.tile("min (blue), max (red)", marked);
}

}  // namespace tool
