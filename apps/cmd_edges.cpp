// `zeqcv gradient` and `zeqcv edges`: the fixed 3x3 derivative filters, the
// fast arctangent and the Canny detector.
#include "commands.h"

#include <cmath>
#include <cstdio>

namespace tool {

namespace {

// Scharr's weights (3, 10, 3) sum to 16, Sobel's (1, 2, 1) to 4: shifting
// Scharr's 8u16s results right by 2 puts both on one scale, so one pair of
// Canny thresholds suits either.
constexpr int kScharrShift = 2;

bool useScharr(const Args& args) {
    const std::string op = args.text("operator", "sobel");
    if (op != "sobel" && op != "scharr") fail("--operator: '" + op + "' is neither sobel nor scharr");
    return op == "scharr";
}

struct Derivatives {
    zeqcv::Image<Zeq32f> dx, dy;
};

// Float derivatives of a grey image (Scharr unscaled).
Derivatives derivatives(const zeqcv::Image<Zeq8u>& grey, bool scharr) {
    const int w = grey.width(), h = grey.height();
    auto f = newImage<Zeq32f>(w, h);
    Derivatives d{newImage<Zeq32f>(w, h), newImage<Zeq32f>(w, h)};
    ZEQCV_CHECKED(zeqiConvert_8u32f_C1R, grey, f, zeqcv::roi);
    if (scharr) {
        ZEQCV_CHECKED(zeqiScharr_Dx_32f_C1R, f, d.dx, zeqcv::roi, 0);
        ZEQCV_CHECKED(zeqiScharr_Dy_32f_C1R, f, d.dy, 0, zeqcv::roi, 0);
    } else {
        ZEQCV_CHECKED(zeqiSobel3x3_Dx_32f_C1R, f, d.dx, zeqcv::roi);
        ZEQCV_CHECKED(zeqiSobel3x3_Dy_32f_C1R, f, d.dy, 0, zeqcv::roi);
    }
    return d;
}

// sqrt(dx^2 + dy^2) with the library's float image arithmetic.
zeqcv::Image<Zeq32f> magnitude(const Derivatives& d) {
    const int w = d.dx.width(), h = d.dx.height();
    auto m = newImage<Zeq32f>(w, h), t = newImage<Zeq32f>(w, h);
    ZEQCV_CHECKED(zeqiCopy_32f_C1R, d.dx, m, zeqcv::roi);
    ZEQCV_CHECKED(zeqiCopy_32f_C1R, d.dy, t, zeqcv::roi);
    ZEQCV_CHECKED(zeqiSqr_32f_C1IR, m, zeqcv::roi);
    ZEQCV_CHECKED(zeqiSqr_32f_C1IR, t, zeqcv::roi);
    ZEQCV_CHECKED(zeqiAdd_32f_C1IR, t, m, zeqcv::roi);
    ZEQCV_CHECKED(zeqiSqrt_32f_C1IR, m, zeqcv::roi);
    return m;
}

// Gradient direction in degrees, row by row (the rows are padded).
zeqcv::Image<Zeq32f> direction(const Derivatives& d) {
    auto a = newImage<Zeq32f>(d.dx.width(), d.dx.height());
    for (int y = 0; y < a.height(); ++y)
        zeqcv::check(zeqibFastArctan_32f(d.dy.row(y), d.dx.row(y), a.row(y), a.width()), "zeqibFastArctan_32f");
    return a;
}

// Direction as hue, magnitude as brightness.
Picture directionPicture(const zeqcv::Image<Zeq32f>& mag, const zeqcv::Image<Zeq32f>& angle) {
    float lo, hi;
    rangeOf(mag.view(), lo, hi);
    Picture p = canvas(mag.width(), mag.height(), {0, 0, 0});
    for (int y = 0; y < p.height; ++y)
        for (int x = 0; x < p.width; ++x) {
            const float v = hi > 0 ? std::min(1.0f, 2.0f * mag.row(y)[x] / hi) : 0.0f;
            float hue = angle.row(y)[x] / 60.0f;
            hue = hue < 0 ? hue + 6 : hue >= 6 ? hue - 6 : hue;
            const int sector = int(hue);
            const float f = hue - sector, q = v * (1 - f), t = v * f;
            const float rgb[6][3] = {{v, t, 0}, {q, v, 0}, {0, v, t}, {0, q, v}, {t, 0, v}, {v, 0, q}};
            uint8_t* px = p.row8(y) + size_t(x) * 3;
            for (int c = 0; c < 3; ++c) px[c] = uint8_t(rgb[sector % 6][c] * 255.0f + 0.5f);
        }
    return p;
}

struct CannyParams {
    bool scharr = false;
    float low = 40, high = 120;
};

CannyParams cannyParams(const Args& args) {
    CannyParams p;
    p.scharr = useScharr(args);
    p.low = float(args.number("low", p.low));
    p.high = float(args.number("high", p.high));
    return p;
}

// Canny on 16-bit derivatives.
void canny(const zeqcv::Image<Zeq8u>& grey, zeqcv::Image<Zeq8u>& edges, const CannyParams& p) {
    const int w = grey.width(), h = grey.height();
    auto dx = newImage<Zeq16s>(w, h), dy = newImage<Zeq16s>(w, h);
    if (p.scharr) {
        ZEQCV_CHECKED(zeqiScharr_Dx_8u16s_C1R, grey, dx, zeqcv::roi, kScharrShift);
        ZEQCV_CHECKED(zeqiScharr_Dy_8u16s_C1R, grey, dy, 0, zeqcv::roi, kScharrShift);
    } else {
        ZEQCV_CHECKED(zeqiSobel3x3_Dx_8u16s_C1R, grey, dx, zeqcv::roi);
        ZEQCV_CHECKED(zeqiSobel3x3_Dy_8u16s_C1R, grey, dy, 0, zeqcv::roi);
    }
    zeqcv::Buffer<Zeq8u> buffer;
    zeqcv::check(buffer.sized(zeqiCannyGetSize, grey.size()), "zeqiCannyGetSize");
    ZEQCV_CHECKED(zeqiCanny_16s8u_C1R, dx, dy, edges, zeqcv::roi, p.low, p.high, buffer.data());
}

const std::vector<Option> kOperator = {{"operator", true, "sobel (default) or scharr"}};

}  // namespace

int runGradient(int argc, char** argv) {
    const Args args = parseArgs(argc, argv, "[options] IMAGE|FOLDER...\n"
                                            "Writes NAME-dx, NAME-dy, NAME-magnitude (float results) and "
                                            "NAME-direction.png (hue: direction, brightness: magnitude).",
                                kOperator, true, true);
    const bool scharr = useScharr(args);
    return runBatch(args, [&](const std::string& path) {
        const auto grey = grey8(readPicture(path));
        Derivatives d;
        zeqcv::Image<Zeq32f> mag, angle;
        const double ms = timeMs([&] {
            d = derivatives(grey, scharr);
            mag = magnitude(d);
            angle = direction(d);
        });
        const std::string base = joinPath(args.outDir, stem(path));
        std::printf("%s\n", saveFloat(base + "-dx", d.dx.view(), args.raw).c_str());
        std::printf("%s\n", saveFloat(base + "-dy", d.dy.view(), args.raw).c_str());
        std::printf("%s\n", saveFloat(base + "-magnitude", mag.view(), args.raw).c_str());
        if (args.raw == Raw::None)
            writePng(base + "-direction.png", directionPicture(mag, angle));
        else
            std::printf("%s\n", saveFloat(base + "-direction", angle.view(), args.raw).c_str());
        return ms;
    });
}

int runEdges(int argc, char** argv) {
    std::vector<Option> options = kOperator;
    options.push_back({"low", true, "lower threshold on |dx| + |dy| (default 40)"});
    options.push_back({"high", true, "upper threshold, seeds edges (default 120)"});
    const Args args = parseArgs(argc, argv, "[options] IMAGE|FOLDER...\nWrites NAME-edges.png: 255 on edges, 0 elsewhere.",
                                options);
    const CannyParams p = cannyParams(args);
    return runBatch(args, [&](const std::string& path) {
        const auto grey = grey8(readPicture(path));
        auto edges = newImage<Zeq8u>(grey.width(), grey.height());
        const double ms = timeMs([&] { canny(grey, edges, p); });
        saveGrey(joinPath(args.outDir, stem(path) + "-edges.png"), edges.view());
        return ms;
    });
}

void demoGradient(Demo& demo) {
    Derivatives d;
    zeqcv::Image<Zeq32f> mag, angle;
    demo.time("Sobel dx, dy (32f)", "zeqiConvert_8u32f_C1R zeqiSobel3x3_Dx/Dy_32f_C1R",
              [&] { d = derivatives(demo.grey, false); });
    demo.time("gradient magnitude", "zeqiCopy/Sqr/Add/Sqrt_32f_C1IR", [&] { mag = magnitude(d); });
    demo.time("direction (fast arctangent)", "zeqibFastArctan_32f", [&] { angle = direction(d); });
    demo.save("sobel-dx", d.dx.view());
    demo.save("sobel-dy", d.dy.view());
    demo.save("magnitude", mag.view());
    const Picture dir = directionPicture(mag, angle);
    demo.save("direction", dir);
    float lo, hi;
    rangeOf(d.dx.view(), lo, hi);
    demo.tile("Sobel dx", scaleTo8u(d.dx.view(), lo, hi).view());
    rangeOf(d.dy.view(), lo, hi);
    demo.tile("Sobel dy", scaleTo8u(d.dy.view(), lo, hi).view());
    demo.tile("direction (arctan)", dir);
}

void demoEdges(Demo& demo) {
    auto edges = newImage<Zeq8u>(demo.grey.width(), demo.grey.height());
    const CannyParams p;
    demo.time("Canny (Sobel 8u16s, 40/120)", "zeqiSobel3x3_Dx/Dy_8u16s_C1R zeqiCanny_16s8u_C1R",
              [&] { canny(demo.grey, edges, p); });
    demo.save("edges", edges.view());
    demo.tile("Canny edges", edges.view());
}

}  // namespace tool
