// `zeqcv pyramid`: Gaussian 5x5 pyramid levels, each half the size of the
// one before, and each level expanded back to twice its size. Colour images
// keep their three channels (the C3 forms), grey ones use the C1 forms.
#include "commands.h"

#include <algorithm>
#include <cstdio>

namespace tool {

namespace {

using PyrFunction = ZeqStatus (*)(const Zeq8u*, int, Zeq8u*, int, ZeqiSize, Zeq8u*);

// One level down (ceil(w/2) x ceil(h/2)) or up (2w x 2h) of an 8-bit image.
zeqcv::Image<Zeq8u> pyramidStep(const zeqcv::Image<Zeq8u>& src, bool down) {
    const int c = src.channels(), w = src.width(), h = src.height();
    auto dst = down ? newImage<Zeq8u>((w + 1) / 2, (h + 1) / 2, c) : newImage<Zeq8u>(2 * w, 2 * h, c);
    zeqcv::Buffer<Zeq8u> buffer;
    if (down) {
        zeqcv::check(buffer.sized(zeqiPyrDownGetBufSize_Gauss5x5, w, zeq8u, c), "zeqiPyrDownGetBufSize_Gauss5x5");
        const PyrFunction f = c == 3 ? zeqiPyrDown_Gauss5x5_8u_C3R : zeqiPyrDown_Gauss5x5_8u_C1R;
        zeqcv::check(zeqcv::call(f, src, dst, zeqcv::roi, buffer.data()), "zeqiPyrDown_Gauss5x5_8u");
    } else {
        zeqcv::check(buffer.sized(zeqiPyrUpGetBufSize_Gauss5x5, w, zeq8u, c), "zeqiPyrUpGetBufSize_Gauss5x5");
        const PyrFunction f = c == 3 ? zeqiPyrUp_Gauss5x5_8u_C3R : zeqiPyrUp_Gauss5x5_8u_C1R;
        zeqcv::check(zeqcv::call(f, src, dst, zeqcv::roi, buffer.data()), "zeqiPyrUp_Gauss5x5_8u");
    }
    return dst;
}

// Levels 1..n below the image (fewer when it reaches 1 x 1).
std::vector<zeqcv::Image<Zeq8u>> levelsOf(const zeqcv::Image<Zeq8u>& image, int n) {
    std::vector<zeqcv::Image<Zeq8u>> levels;
    const zeqcv::Image<Zeq8u>* last = &image;
    while (int(levels.size()) < n && (last->width() > 1 || last->height() > 1)) {
        levels.push_back(pyramidStep(*last, true));
        last = &levels.back();
    }
    return levels;
}

}  // namespace

int runPyramid(int argc, char** argv) {
    const Args args = parseArgs(argc, argv,
                                "[options] IMAGE|FOLDER...\n"
                                "Writes NAME-down1.png .. NAME-downN.png (each half the size of the one before) and\n"
                                "NAME-up1.png .. NAME-upN.png (each level expanded back to twice its size).",
                                {{"levels", true, "number of levels below the image (default 4, 1..30)"},
                                 {"grey", false, "work on the grey image even for colour input"}});
    const int n = args.integer("levels", 4);
    if (n < 1 || n > 30) fail("--levels: " + std::to_string(n) + " is not between 1 and 30");
    return runBatch(args, [&](const std::string& path) {
        const Picture picture = readPicture(path);
        const auto image = picture.channels >= 3 && !args.has("grey") ? rgb8(picture) : grey8(picture);
        std::vector<zeqcv::Image<Zeq8u>> down, up;
        const double ms = timeMs([&] {
            down = levelsOf(image, n);
            for (const auto& level : down) up.push_back(pyramidStep(level, false));
        });
        const std::string base = joinPath(args.outDir, stem(path));
        for (size_t i = 0; i < down.size(); ++i) {
            const std::string k = std::to_string(i + 1);
            writePng(base + "-down" + k + ".png", pictureOf(down[i].view(), image.channels()));
            writePng(base + "-up" + k + ".png", pictureOf(up[i].view(), image.channels()));
            std::printf("%s-down%s.png %d x %d, %s-up%s.png %d x %d\n", base.c_str(), k.c_str(), down[i].width(),
                        down[i].height(), base.c_str(), k.c_str(), up[i].width(), up[i].height());
        }
        return ms;
    });
}

void demoPyramid(Demo& demo) {
    const auto colour = rgb8(demo.colour);
    std::vector<zeqcv::Image<Zeq8u>> down;
    zeqcv::Image<Zeq8u> up;
    demo.time("Gaussian pyramid, 4 levels (RGB)", "zeqiPyrDown_Gauss5x5_8u_C3R", [&] { down = levelsOf(colour, 4); });
    demo.time("level 1 expanded (RGB)", "zeqiPyrUp_Gauss5x5_8u_C3R", [&] { up = pyramidStep(down[0], false); });
    // The levels side by side, level 1 on the left.
    int width = 0;
    for (const auto& level : down) width += level.width();
    Picture strip = canvas(std::max(1, width), down[0].height(), {18, 18, 22});
    int x0 = 0;
    for (size_t i = 0; i < down.size(); ++i) {
        const auto& level = down[i];
        demo.save("pyramid-down" + std::to_string(i + 1), pictureOf(level.view(), 3));
        for (int y = 0; y < level.height(); ++y)
            std::copy(level.row(y), level.row(y) + size_t(level.width()) * 3, strip.row8(y) + size_t(x0) * 3);
        x0 += level.width();
    }
    demo.save("pyramid-up1", pictureOf(up.view(), 3));
    demo.tile("pyramid levels 1-" + std::to_string(down.size()), strip);
}

}  // namespace tool
