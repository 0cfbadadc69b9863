// `zeqcv filter`: the separable state filters (Sobel derivatives of any
// order, Laplace, box sum) with 3x3, 5x5 or 7x7 apertures, on the grey image
// as 8-bit source and 16-bit result, or with --float on floats.
#include "commands.h"

#include <cstdio>

namespace tool {

namespace {

struct FilterParams {
    std::string kind = "sobel";
    int size = 3, dx = 1, dy = 0;
    bool floats = false;
};

FilterParams filterParams(const Args& args) {
    FilterParams p;
    p.kind = args.choice("kind", {"sobel", "laplace", "blur"});
    p.size = args.integer("size", p.size);
    p.dx = args.integer("dx", p.dx);
    p.dy = args.integer("dy", p.dy);
    p.floats = args.has("float");
    return p;
}

// A state for the filter (its InitAlloc checks the sizes and orders).
zeqcv::ConvState stateFor(const FilterParams& p, int width, ZeqDataType type) {
    zeqcv::ConvState state;
    if (p.kind == "sobel")
        zeqcv::check(state.init(zeqiSobelInitAlloc, width, type, p.size, 0, p.dx, p.dy), "zeqiSobelInitAlloc");
    else if (p.kind == "laplace")
        zeqcv::check(state.init(zeqiLaplaceInitAlloc, width, type, p.size), "zeqiLaplaceInitAlloc");
    else zeqcv::check(state.init(zeqiBlurInitAlloc, width, type, p.size), "zeqiBlurInitAlloc");
    return state;
}

// The filtered grey image, as floats either way.
zeqcv::Image<Zeq32f> filter(const zeqcv::Image<Zeq8u>& grey, const FilterParams& p) {
    const int w = grey.width(), h = grey.height();
    ZeqiSize rows = grey.size();
    if (p.floats) {
        auto src = newImage<Zeq32f>(w, h), dst = newImage<Zeq32f>(w, h);
        ZEQCV_CHECKED(zeqiConvert_8u32f_C1R, grey, src, zeqcv::roi);
        zeqcv::ConvState state = stateFor(p, w, zeq32f);
        using F = ZeqStatus (*)(const Zeq32f*, int, Zeq32f*, int, ZeqiSize*, ZeqiConvState*, int);
        const F f = p.kind == "sobel" ? zeqiSobel_32f_C1R : p.kind == "laplace" ? zeqiLaplace_32f_C1R : zeqiBlur_32f_C1R;
        zeqcv::check(zeqcv::call(f, src, dst, &rows, state.get(), 0), "the 32f state filter");
        return dst;
    }
    auto dst = newImage<Zeq16s>(w, h);
    zeqcv::ConvState state = stateFor(p, w, zeq8u);
    using F = ZeqStatus (*)(const Zeq8u*, int, Zeq16s*, int, ZeqiSize*, ZeqiConvState*, int);
    const F f = p.kind == "sobel" ? zeqiSobel_8u16s_C1R : p.kind == "laplace" ? zeqiLaplace_8u16s_C1R : zeqiBlur_8u16s_C1R;
    zeqcv::check(zeqcv::call(f, grey, dst, &rows, state.get(), 0), "the 8u16s state filter");
    return toFloat(dst.view());
}

}  // namespace

int runFilter(int argc, char** argv) {
    const Args args = parseArgs(
        argc, argv,
        "[options] IMAGE|FOLDER...\n"
        "Writes NAME-KIND (a float result): the Sobel derivative of order dx along rows and dy across\n"
        "them, the Laplacian, or the unnormalised box sum, over SIZE x SIZE pixels, edges repeated\n"
        "outwards. 8-bit sources give 16-bit sums (saturated), --float float ones.",
        {{"kind", true, "sobel (default), laplace or blur"},
         {"size", true, "aperture 3 (default), 5 or 7"},
         {"dx", true, "Sobel: order along rows (default 1)"},
         {"dy", true, "Sobel: order across rows (default 0)"},
         {"float", false, "filter the grey image as floats"}},
        true, true);
    const FilterParams p = filterParams(args);
    return runBatch(args, [&](const std::string& path) {
        const auto grey = grey8(readPicture(path));
        zeqcv::Image<Zeq32f> result;
        const double ms = timeMs([&] { result = filter(grey, p); });
        std::printf("%s\n", saveFloat(joinPath(args.outDir, stem(path) + "-" + p.kind), result.view(), args.raw).c_str());
        return ms;
    });
}

void demoFilter(Demo& demo) {
    FilterParams p;
    p.kind = "laplace";
    p.size = 5;
    zeqcv::Image<Zeq32f> laplace;
    demo.time("Laplace 5x5 (8u16s)", "zeqiLaplaceInitAlloc zeqiLaplace_8u16s_C1R",
              [&] { laplace = filter(demo.grey, p); });
    demo.save("laplace5", laplace.view());
    float lo, hi;
    rangeOf(laplace.view(), lo, hi);
    const float m = std::max(-lo, hi) / 4;  // most of the range is near 0
    demo.tile("Laplace 5x5", scaleTo8u(laplace.view(), -m, m).view());
}

}  // namespace tool
