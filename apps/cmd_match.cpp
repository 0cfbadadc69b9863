// `zeqcv match`: template matching of a grey template over a grey image by
// one of the six comparisons; the score map is written and the best
// positions are printed, each window excluded from the later ones.
#include "commands.h"

#include <algorithm>
#include <cstdio>

namespace tool {

namespace {

using MatchFunction = ZeqStatus (*)(const Zeq8u*, int, ZeqiSize, const Zeq8u*, int, ZeqiSize, Zeq32f*, int);

struct Method {
    const char* name;
    MatchFunction function;
    const char* functionName;
    bool lowIsBest;  // the distances: the best match scores lowest
};

const Method kMethods[] = {
    {"coeff-normed", zeqiMatchTemplate_CoeffNormed_8u32f_C1R, "zeqiMatchTemplate_CoeffNormed_8u32f_C1R", false},
    {"coeff", zeqiMatchTemplate_Coeff_8u32f_C1R, "zeqiMatchTemplate_Coeff_8u32f_C1R", false},
    {"corr-normed", zeqiMatchTemplate_CorrNormed_8u32f_C1R, "zeqiMatchTemplate_CorrNormed_8u32f_C1R", false},
    {"corr", zeqiMatchTemplate_Corr_8u32f_C1R, "zeqiMatchTemplate_Corr_8u32f_C1R", false},
    {"sqdiff-normed", zeqiMatchTemplate_SqDiffNormed_8u32f_C1R, "zeqiMatchTemplate_SqDiffNormed_8u32f_C1R", true},
    {"sqdiff", zeqiMatchTemplate_SqDiff_8u32f_C1R, "zeqiMatchTemplate_SqDiff_8u32f_C1R", true},
};

const Method& methodOf(const Args& args) {
    std::vector<std::string> names;
    for (const Method& m : kMethods) names.push_back(m.name);
    const std::string name = args.choice("method", names);
    return *std::find_if(std::begin(kMethods), std::end(kMethods), [&](const Method& m) { return name == m.name; });
}

zeqcv::Image<Zeq32f> scores(const zeqcv::Image<Zeq8u>& image, const zeqcv::Image<Zeq8u>& tpl, const Method& m,
                            const std::string& path = "the image") {
    if (tpl.width() > image.width() || tpl.height() > image.height())
        fail(path + ": the template (" + std::to_string(tpl.width()) + " x " + std::to_string(tpl.height()) +
             ") is larger than the image (" + std::to_string(image.width()) + " x " + std::to_string(image.height()) + ")");
    auto map = newImage<Zeq32f>(image.width() - tpl.width() + 1, image.height() - tpl.height() + 1);
    zeqcv::check(zeqcv::call(m.function, image, image.size(), tpl, tpl.size(), map), m.functionName);
    return map;
}

struct Match {
    ZeqiPoint at;
    float score;
};

// The n best window positions, each window (template-sized, centred on a
// found position) excluded from the search for the next.
std::vector<Match> best(const zeqcv::Image<Zeq32f>& map, ZeqiSize tpl, const Method& m, int n) {
    auto work = newImage<Zeq32f>(map.width(), map.height());
    ZEQCV_CHECKED(zeqiCopy_32f_C1R, map, work, zeqcv::roi);
    std::vector<Match> found;
    Zeq32f lo, hi;
    ZeqiPoint atLo, atHi;
    ZEQCV_CHECKED(zeqiMinMaxIndx_32f_C1R, work, zeqcv::roi, &lo, &hi, &atLo, &atHi);
    const Zeq32f worst = m.lowIsBest ? hi : lo;
    for (int i = 0; i < n; ++i) {
        ZEQCV_CHECKED(zeqiMinMaxIndx_32f_C1R, work, zeqcv::roi, &lo, &hi, &atLo, &atHi);
        const ZeqiPoint at = m.lowIsBest ? atLo : atHi;
        const Zeq32f score = map.row(at.y)[at.x];
        if (i > 0 && score == worst) break;  // nothing left but excluded windows
        found.push_back({at, score});
        const int x0 = std::max(0, at.x - tpl.width / 2), y0 = std::max(0, at.y - tpl.height / 2);
        const int x1 = std::min(map.width(), at.x + tpl.width - tpl.width / 2),
                  y1 = std::min(map.height(), at.y + tpl.height - tpl.height / 2);
        ZEQCV_CHECKED(zeqiSet_32f_C1R, worst, work.view().sub({x0, y0, x1 - x0, y1 - y0}), zeqcv::roi);
    }
    return found;
}

std::string describe(const Match& match, ZeqiSize tpl) {
    char text[160];
    std::snprintf(text, sizeof text, "at %d,%d (centre %d,%d) score %.9g", match.at.x, match.at.y,
                  match.at.x + tpl.width / 2, match.at.y + tpl.height / 2, double(match.score));
    return text;
}

}  // namespace

int runMatch(int argc, char** argv) {
    const Args args = parseArgs(
        argc, argv,
        "--template T.png [options] IMAGE|FOLDER...\n"
        "Compares the template with every window of each image it fits in wholly; writes NAME-match (the\n"
        "score of the window whose top-left pixel is there) and prints the best windows' top-left positions.",
        {{"template", true, "the template image (PNG or JPEG, converted to grey)"},
         {"method", true, "coeff-normed (default), coeff, corr-normed, corr, sqdiff-normed or sqdiff"},
         {"best", true, "how many best positions to print (default 1)"}},
        true, true);
    if (!args.has("template")) fail("--template T.png is required");
    const Method& m = methodOf(args);
    const int n = args.integer("best", 1);
    if (n < 1) fail("--best: must be at least 1");
    const auto tpl = grey8(readPicture(args.text("template", "")));
    return runBatch(args, [&](const std::string& path) {
        const auto image = grey8(readPicture(path));
        zeqcv::Image<Zeq32f> map;
        const double ms = timeMs([&] { map = scores(image, tpl, m, path); });
        const std::vector<Match> found = best(map, tpl.size(), m, n);
        const std::string base = joinPath(args.outDir, stem(path));
        std::printf("%s\n", saveFloat(base + "-match", map.view(), args.raw).c_str());
        for (size_t i = 0; i < found.size(); ++i)
            std::printf("%s: best %zu %s\n", path.c_str(), i + 1, describe(found[i], tpl.size()).c_str());
        return ms;
    });
}

void demoMatch(Demo& demo) {
    // A window of the first frame, searched for in the last one.
    const int w = demo.grey.width(), h = demo.grey.height();
    const int tw = std::max(1, w / 10), th = std::max(1, h / 8);
    const ZeqiRect cut = {std::min(w - tw, w * 300 / 640 - tw / 2), std::min(h - th, h * 330 / 480 - th / 2), tw, th};
    auto tpl = newImage<Zeq8u>(tw, th);
    ZEQCV_CHECKED(zeqiCopy_8u_C1R, demo.grey.view().sub(cut), tpl, zeqcv::roi);
    const Method& m = kMethods[0];
    zeqcv::Image<Zeq32f> map;
    demo.time("template match " + std::to_string(tw) + "x" + std::to_string(th), m.functionName,
              [&] { map = scores(demo.frames.back(), tpl, m); });
    const std::vector<Match> found = best(map, tpl.size(), m, 1);
    std::printf("match: template from %d,%d found %s\n", cut.x, cut.y, describe(found[0], tpl.size()).c_str());
    demo.save("match", map.view());
    demo.tile("match, best at " + std::to_string(found[0].at.x) + "," + std::to_string(found[0].at.y),
              scaleTo8u(map.view(), -1, 1).view());
}

}  // namespace tool
