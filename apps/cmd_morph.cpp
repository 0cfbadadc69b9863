// `zeqcv morph`: dilation, erosion, opening and closing with a rectangle,
// cross or ellipse, through a morphology state and the whole-image strip
// calls; rectangles can also go through the min/max filters over a border
// replicated beforehand (--minmax), which gives the same result.
#include "commands.h"

#include <cstdio>

namespace tool {

namespace {

struct MorphParams {
    std::string op = "dilate", shape = "rect";
    ZeqiSize size = {5, 5};
    bool minmax = false;
    ZeqiPoint anchor() const { return {size.width / 2, size.height / 2}; }
};

MorphParams morphParams(const Args& args) {
    MorphParams p;
    p.op = args.choice("op", {"dilate", "erode", "open", "close"});
    p.shape = args.choice("shape", {"rect", "cross", "ellipse"});
    const std::string size = args.text("size", "5");
    int w = 0, h = 0, used = 0;
    if (std::sscanf(size.c_str(), "%dx%d%n", &w, &h, &used) == 2 && size_t(used) == size.size()) p.size = {w, h};
    else if (std::sscanf(size.c_str(), "%d%n", &w, &used) == 1 && size_t(used) == size.size()) p.size = {w, w};
    else fail("--size: '" + size + "' is neither N nor WxH");
    if (p.size.width < 1 || p.size.height < 1 || p.size.width > 255 || p.size.height > 255)
        fail("--size: " + size + " is outside 1..255");
    p.minmax = args.has("minmax");
    if (p.minmax && p.shape != "rect") fail("--minmax works with --shape rect only");
    return p;
}

using StripFunction = ZeqStatus (*)(const Zeq8u*, int, Zeq8u*, int, ZeqiSize*, ZeqiMorphState*, int);
using MinMaxFunction = ZeqStatus (*)(const Zeq8u*, int, Zeq8u*, int, ZeqiSize, ZeqiSize, ZeqiPoint);

StripFunction stripFunction(bool dilate, const std::string& shape, int channels) {
    const bool c3 = channels == 3;
    if (shape == "rect")
        return dilate ? (c3 ? zeqiDilateStrip_Rect_8u_C3R : zeqiDilateStrip_Rect_8u_C1R)
                      : (c3 ? zeqiErodeStrip_Rect_8u_C3R : zeqiErodeStrip_Rect_8u_C1R);
    if (shape == "cross")
        return dilate ? (c3 ? zeqiDilateStrip_Cross_8u_C3R : zeqiDilateStrip_Cross_8u_C1R)
                      : (c3 ? zeqiErodeStrip_Cross_8u_C3R : zeqiErodeStrip_Cross_8u_C1R);
    return dilate ? (c3 ? zeqiDilateStrip_Ellipse_8u_C3R : zeqiDilateStrip_Ellipse_8u_C1R)
                  : (c3 ? zeqiErodeStrip_Ellipse_8u_C3R : zeqiErodeStrip_Ellipse_8u_C1R);
}

// One dilation or erosion of the whole image.
zeqcv::Image<Zeq8u> extreme(const zeqcv::Image<Zeq8u>& src, bool dilate, const MorphParams& p) {
    const int c = src.channels();
    auto dst = newImage<Zeq8u>(src.width(), src.height(), c);
    if (p.minmax) {
        // The min/max filters read the border from the caller: replicate the edges first.
        const ZeqiPoint a = p.anchor();
        auto framed = newImage<Zeq8u>(src.width() + p.size.width - 1, src.height() + p.size.height - 1, c);
        if (c == 3) ZEQCV_CHECKED(zeqiCopyReplicateBorder_8u_C3R, src, src.size(), framed, framed.size(), a.y, a.x);
        else ZEQCV_CHECKED(zeqiCopyReplicateBorder_8u_C1R, src, src.size(), framed, framed.size(), a.y, a.x);
        const auto inside = zeqcv::ImageView<const Zeq8u>(framed.view().sub({a.x, a.y, src.width(), src.height()}));
        const MinMaxFunction f = dilate ? (c == 3 ? zeqiFilterMax_8u_C3R : zeqiFilterMax_8u_C1R)
                                        : (c == 3 ? zeqiFilterMin_8u_C3R : zeqiFilterMin_8u_C1R);
        zeqcv::check(zeqcv::call(f, inside, dst, zeqcv::roi, p.size, a), dilate ? "zeqiFilterMax_8u" : "zeqiFilterMin_8u");
        return dst;
    }
    const int kind = p.shape == "rect" ? 0 : p.shape == "cross" ? 1 : 2;
    zeqcv::MorphState state;
    zeqcv::check(state.init(zeqiMorphologyInitAlloc, src.width(), int(zeq8u), c, p.size, p.anchor(), kind, nullptr),
                 "zeqiMorphologyInitAlloc");
    ZeqiSize rows = src.size();
    zeqcv::check(zeqcv::call(stripFunction(dilate, p.shape, c), src, dst, &rows, state.get(), 0),
                 dilate ? "zeqiDilateStrip_8u" : "zeqiErodeStrip_8u");
    return dst;
}

zeqcv::Image<Zeq8u> morph(const zeqcv::Image<Zeq8u>& src, const MorphParams& p) {
    if (p.op == "dilate") return extreme(src, true, p);
    if (p.op == "erode") return extreme(src, false, p);
    const bool open = p.op == "open";
    return extreme(extreme(src, !open, p), open, p);
}

}  // namespace

int runMorph(int argc, char** argv) {
    const Args args = parseArgs(argc, argv,
                                "[options] IMAGE|FOLDER...\n"
                                "Writes NAME-OP.png: the maximum (dilate), minimum (erode), erode then dilate (open)\n"
                                "or dilate then erode (close) over the shape centred on each pixel; image edges are\n"
                                "repeated outwards. Colour images keep their three channels unless --grey.",
                                {{"op", true, "dilate (default), erode, open or close"},
                                 {"shape", true, "rect (default), cross or ellipse"},
                                 {"size", true, "N or WxH, 1..255 (default 5)"},
                                 {"minmax", false, "rectangles through the min/max filters (same result)"},
                                 {"grey", false, "work on the grey image even for colour input"}});
    const MorphParams p = morphParams(args);
    return runBatch(args, [&](const std::string& path) {
        const Picture picture = readPicture(path);
        const auto image = picture.channels >= 3 && !args.has("grey") ? rgb8(picture) : grey8(picture);
        zeqcv::Image<Zeq8u> result;
        const double ms = timeMs([&] { result = morph(image, p); });
        writePng(joinPath(args.outDir, stem(path) + "-" + p.op + ".png"), pictureOf(result.view(), image.channels()));
        return ms;
    });
}

void demoMorph(Demo& demo) {
    MorphParams p;
    p.op = "close";
    p.shape = "ellipse";
    p.size = {9, 9};
    zeqcv::Image<Zeq8u> closed, dilated;
    demo.time("close, 9x9 ellipse", "zeqiMorphologyInitAlloc zeqiDilate/ErodeStrip_Ellipse_8u_C1R",
              [&] { closed = morph(demo.grey, p); });
    p.op = "dilate";
    p.shape = "rect";
    p.size = {7, 7};
    p.minmax = true;
    demo.time("dilate, 7x7 max filter", "zeqiCopyReplicateBorder_8u_C1R zeqiFilterMax_8u_C1R",
              [&] { dilated = morph(demo.grey, p); });
    demo.save("close-ellipse9", closed.view());
    demo.save("dilate-rect7", dilated.view());
    demo.tile("close, 9x9 ellipse", closed.view());
}

}  // namespace tool
