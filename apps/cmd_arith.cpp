// `zeqcv diff` (absolute difference, difference and relative norms) and
// `zeqcv accumulate` (sum, sum of squares and running average of frames).
#include "commands.h"

#include <algorithm>
#include <cstdio>

namespace tool {

namespace {

std::string sizeText(int w, int h) { return std::to_string(w) + " x " + std::to_string(h); }

zeqcv::Image<Zeq8u> fullMask(int w, int h) {
    auto m = newImage<Zeq8u>(w, h);
    for (int y = 0; y < h; ++y) std::fill(m.row(y), m.row(y) + w, Zeq8u(255));
    return m;
}

struct Norms {
    double diff[3], rel[3];  // Inf, L1, L2
    ZeqStatus relStatus[3];
};

Norms norms(const zeqcv::Image<Zeq8u>& a, const zeqcv::Image<Zeq8u>& b, const zeqcv::Image<Zeq8u>& mask) {
    Norms n;
    ZEQCV_CHECKED(zeqiNormDiff_Inf_8u_C1MR, a, b, mask, zeqcv::roi, &n.diff[0]);
    ZEQCV_CHECKED(zeqiNormDiff_L1_8u_C1MR, a, b, mask, zeqcv::roi, &n.diff[1]);
    ZEQCV_CHECKED(zeqiNormDiff_L2_8u_C1MR, a, b, mask, zeqcv::roi, &n.diff[2]);
    // A zero norm of the second image is a warning: the ratio is then inf or NaN.
    n.relStatus[0] = ZEQCV_CHECKED(zeqiNormRel_Inf_8u_C1MR, a, b, mask, zeqcv::roi, &n.rel[0]);
    n.relStatus[1] = ZEQCV_CHECKED(zeqiNormRel_L1_8u_C1MR, a, b, mask, zeqcv::roi, &n.rel[1]);
    n.relStatus[2] = ZEQCV_CHECKED(zeqiNormRel_L2_8u_C1MR, a, b, mask, zeqcv::roi, &n.rel[2]);
    return n;
}

// Keeps `image` if it has this size, else makes a new one.
void ensure(zeqcv::Image<Zeq32f>& image, int w, int h) {
    if (!image || image.width() != w || image.height() != h) image = newImage<Zeq32f>(w, h);
}

// Frames over time: running sums of values and squares, and a running average.
// Set frames to 0 to start again (the images are reused).
struct Accumulator {
    zeqcv::Image<Zeq32f> sum, sumSq, running, work;
    int frames = 0;

    void add(const zeqcv::Image<Zeq8u>& frame, float alpha) {
        if (frames == 0) {
            ensure(sum, frame.width(), frame.height());
            ensure(sumSq, frame.width(), frame.height());
            ensure(running, frame.width(), frame.height());
            ZEQCV_CHECKED(zeqiSet_32f_C1R, 0.0f, sum, zeqcv::roi);
            ZEQCV_CHECKED(zeqiSet_32f_C1R, 0.0f, sumSq, zeqcv::roi);
            ZEQCV_CHECKED(zeqiConvert_8u32f_C1R, frame, running, zeqcv::roi);  // the average starts at frame 1
        } else {
            ZEQCV_CHECKED(zeqiAddWeighted_8u32f_C1IR, frame, running, zeqcv::roi, alpha);
        }
        ZEQCV_CHECKED(zeqiAdd_8u32f_C1IR, frame, sum, zeqcv::roi);
        ZEQCV_CHECKED(zeqiAddSquare_8u32f_C1IR, frame, sumSq, zeqcv::roi);
        ++frames;
    }

    // mean = sum / n; deviation = sqrt(max(0, sumSq / n - mean^2)).
    void finish(zeqcv::Image<Zeq32f>& mean, zeqcv::Image<Zeq32f>& deviation) {
        const int w = sum.width(), h = sum.height();
        ensure(mean, w, h);
        ensure(deviation, w, h);
        ensure(work, w, h);
        zeqcv::Image<Zeq32f>& sq = work;
        ZEQCV_CHECKED(zeqiCopy_32f_C1R, sum, mean, zeqcv::roi);
        ZEQCV_CHECKED(zeqiMulC_32f_C1IR, 1.0f / float(frames), mean, zeqcv::roi);
        ZEQCV_CHECKED(zeqiCopy_32f_C1R, sumSq, deviation, zeqcv::roi);
        ZEQCV_CHECKED(zeqiMulC_32f_C1IR, 1.0f / float(frames), deviation, zeqcv::roi);
        ZEQCV_CHECKED(zeqiCopy_32f_C1R, mean, sq, zeqcv::roi);
        ZEQCV_CHECKED(zeqiSqr_32f_C1IR, sq, zeqcv::roi);
        ZEQCV_CHECKED(zeqiSub_32f_C1IR, sq, deviation, zeqcv::roi);
        ZEQCV_CHECKED(zeqiThreshold_LT_32f_C1IR, deviation, zeqcv::roi, 0.0f);  // rounding can dip below 0
        ZEQCV_CHECKED(zeqiSqrt_32f_C1IR, deviation, zeqcv::roi);
    }
};

}  // namespace

int runDiff(int argc, char** argv) {
    const Args args = parseArgs(argc, argv,
                                "[options] IMAGE1 IMAGE2\n"
                                "Writes NAME1-NAME2-diff.png = |grey1 - grey2| and prints the Inf, L1 and L2 norms of\n"
                                "grey1 - grey2 and the same relative to grey2 (over the mask's non-zero pixels).",
                                {{"mask", true, "grey image of the same size: non-zero pixels count in the norms"}});
    if (args.inputs.size() != 2) fail("needs exactly two images (try --help)");
    prepareOutputDir(args.outDir);
    const auto a = grey8(readPicture(args.inputs[0])), b = grey8(readPicture(args.inputs[1]));
    if (a.width() != b.width() || a.height() != b.height())
        fail(args.inputs[1] + ": is " + sizeText(b.width(), b.height()) + " but " + args.inputs[0] + " is " +
             sizeText(a.width(), a.height()));
    zeqcv::Image<Zeq8u> mask;
    if (args.has("mask")) {
        mask = grey8(readPicture(args.text("mask", "")));
        if (mask.width() != a.width() || mask.height() != a.height())
            fail(args.text("mask", "") + ": the mask is " + sizeText(mask.width(), mask.height()) + " but the images are " +
                 sizeText(a.width(), a.height()));
    } else {
        mask = fullMask(a.width(), a.height());
    }
    auto d = newImage<Zeq8u>(a.width(), a.height());
    Norms n;
    const double ms = timeMs([&] {
        ZEQCV_CHECKED(zeqiAbsDiff_8u_C1R, a, b, d, zeqcv::roi);
        n = norms(a, b, mask);
    });
    const std::string out = joinPath(args.outDir, stem(args.inputs[0]) + "-" + stem(args.inputs[1]) + "-diff.png");
    saveGrey(out, d.view());
    std::printf("%s\n", out.c_str());
    std::printf("  %-10s %14s %14s %14s\n", "", "Inf", "L1", "L2");
    std::printf("  %-10s %14g %14.0f %14.6f\n", "diff", n.diff[0], n.diff[1], n.diff[2]);
    std::printf("  %-10s %14.6g %14.6g %14.6g%s\n", "relative", n.rel[0], n.rel[1], n.rel[2],
                n.relStatus[0] == zeqStsDivByZero ? "  (the second image is zero there)" : "");
    std::fprintf(stderr, "%s: %.1f ms of library time\n", args.command.c_str(), ms);
    return 0;
}

int runAccumulate(int argc, char** argv) {
    const Args args = parseArgs(argc, argv,
                                "[options] FRAME|FOLDER...\n"
                                "Accumulates grey frames of one size: writes accumulate-mean, accumulate-stddev (per pixel\n"
                                "over the frames) and accumulate-running (acc += (frame - acc) * alpha).",
                                {{"alpha", true, "weight of each new frame in the running average (default 0.1)"}}, true,
                                true);
    const float alpha = float(args.number("alpha", 0.1));
    Accumulator acc;
    int w = 0, h = 0;
    std::string first;
    const int status = runBatch(args, [&](const std::string& path) {
        const auto frame = grey8(readPicture(path));
        if (acc.frames == 0) {
            w = frame.width(), h = frame.height(), first = path;
        } else if (frame.width() != w || frame.height() != h) {
            fail(path + ": is " + sizeText(frame.width(), frame.height()) + " but " + first + " is " + sizeText(w, h));
        }
        return timeMs([&] { acc.add(frame, alpha); });
    });
    if (acc.frames == 0) return 1;
    zeqcv::Image<Zeq32f> mean, deviation;
    acc.finish(mean, deviation);
    const std::string base = joinPath(args.outDir, "accumulate");
    std::printf("%s\n", saveFloat(base + "-mean", mean.view(), args.raw).c_str());
    std::printf("%s\n", saveFloat(base + "-stddev", deviation.view(), args.raw).c_str());
    std::printf("%s\n", saveFloat(base + "-running", acc.running.view(), args.raw).c_str());
    return status;
}

void demoDiff(Demo& demo) {
    const auto& a = demo.frames.front();
    const auto& b = demo.frames.back();
    auto d = newImage<Zeq8u>(a.width(), a.height());
    demo.time("absolute difference", "zeqiAbsDiff_8u_C1R", [&] { ZEQCV_CHECKED(zeqiAbsDiff_8u_C1R, a, b, d, zeqcv::roi); });
    const auto mask = fullMask(a.width(), a.height());
    demo.time("difference norms", "zeqiNormDiff/NormRel_*_8u_C1MR", [&] { norms(a, b, mask); });
    demo.save("absdiff", d.view());
    demo.tile("|first - last frame|", d.view());
}

void demoAccumulate(Demo& demo) {
    Accumulator acc;
    zeqcv::Image<Zeq32f> mean, deviation;
    demo.time("accumulate " + std::to_string(demo.frames.size()) + " frames",
              "zeqiAdd/AddSquare/AddWeighted_8u32f_C1IR", [&] {
                  acc.frames = 0;
                  for (const auto& f : demo.frames) acc.add(f, 0.3f);
                  acc.finish(mean, deviation);
              });
    demo.save("running-average", acc.running.view());
    demo.save("frame-stddev", deviation.view());
    demo.tile("running average", scaleTo8u(acc.running.view(), 0, 255).view());
    float lo, hi;
    rangeOf(deviation.view(), lo, hi);
    demo.tile("std dev over frames", scaleTo8u(deviation.view(), lo, hi).view());
}

}  // namespace tool
