// zeqcv: the library's functions on real images, one subcommand per family.
// A new family adds a cmd_<family>.cpp and one row to the table below; its
// demo step (if any) then appears in `zeqcv demo` and its overview, in table
// order.
#include "commands.h"

#include <cstdio>
#include <cstring>

namespace tool {

const std::vector<Command>& commands() {
    static const std::vector<Command> table = {
        {"demo", "run every family on a generated scene (or --input PHOTO) and write overview.png",
         "zeqcv demo --out demo-out", runDemo, nullptr},
        {"diff", "absolute difference of two images, and the norms of their difference",
         "zeqcv diff before.png after.png --out out", runDiff, demoDiff},
        {"accumulate", "mean, standard deviation and running average of a sequence of frames",
         "zeqcv accumulate frames/ --alpha 0.2 --out out", runAccumulate, demoAccumulate},
        {"stats", "mean, standard deviation, minimum and maximum with positions, and norms",
         "zeqcv stats photo.jpg --mask mask.png", runStats, demoStats},
        {"gradient", "Sobel or Scharr derivatives, gradient magnitude and direction (fast arctangent)",
         "zeqcv gradient photo.jpg --operator scharr --out out", runGradient, demoGradient},
        {"edges", "Canny edge map from Sobel or Scharr derivatives",
         "zeqcv edges photo.jpg --low 40 --high 120 --out out", runEdges, demoEdges},
        {"spectrum", "centred log-magnitude of the 2-D FFT", "zeqcv spectrum photo.jpg --out out", runSpectrum,
         demoSpectrum},
        {"pyramid", "Gaussian 5x5 pyramid: every level down, and each expanded back up",
         "zeqcv pyramid photo.jpg --levels 3 --out out", runPyramid, demoPyramid},
        {"distance", "chamfer distance of the pixels at or above a threshold to the nearest one below it",
         "zeqcv distance shapes.png --threshold 100 --mask 5 --norm euclid --out out", runDistance, demoDistance},
        {"fill", "flood fill from a seed pixel (equal values, or steps within --lo/--hi); area and bounding box",
         "zeqcv fill photo.jpg --seed 120,80 --lo 4 --hi 4 --out out", runFill, demoFill},
        {"morph", "dilate, erode, open or close with a rectangle, cross or ellipse",
         "zeqcv morph scan.png --op close --shape ellipse --size 7 --out out", runMorph, demoMorph},
        {"motion", "motion-history image over a sequence of frames (where and how recently they changed)",
         "zeqcv motion frames/ --threshold 25 --duration 10 --out out", runMotion, demoMotion},
        {"sample-line", "the pixels along a straight line, with their positions (printed or CSV)",
         "zeqcv sample-line photo.jpg --from 10,200 --to 600,40 --csv --out out", runSampleLine, demoSampleLine},
        {"match", "template matching by one of six scores: best positions printed, score map written",
         "zeqcv match photo.jpg --template eye.png --method coeff-normed --best 3 --out out", runMatch, demoMatch},
        {"version", "the library's version record", "zeqcv version", runVersion, nullptr},
    };
    return table;
}

int runVersion(int argc, char** argv) {
    parseArgs(argc, argv, "", {}, false);
    const ZeqLibraryVersion* v = zeqcvGetLibVersion();
    std::printf("%s %s: interface %d.%d, build %d.%d, target %.4s, built %s (header %d.%d)\n", v->name, v->version,
                v->major, v->minor, v->majorBuild, v->build, v->targetCpu, v->buildDate, ZEQCV_VERSION_MAJOR,
                ZEQCV_VERSION_MINOR);
    return 0;
}

namespace {

void usage(FILE* to) {
    std::fprintf(to,
                 "usage: zeqcv COMMAND [options] [IMAGE|FOLDER...]\n"
                 "Runs the zeqcv library on PNG and JPEG images; colour is converted to grey with\n"
                 "the BT.601 weights 0.299 R + 0.587 G + 0.114 B. Commands:\n");
    for (const Command& c : commands()) std::fprintf(to, "  %-11s %s\n", c.name, c.summary);
    std::fprintf(to, "'zeqcv COMMAND --help' lists a command's options. Examples:\n");
    for (const Command& c : commands()) std::fprintf(to, "  %s\n", c.example);
}

}  // namespace

}  // namespace tool

int main(int argc, char** argv) {
    using namespace tool;
    if (argc < 2 || !std::strcmp(argv[1], "--help") || !std::strcmp(argv[1], "-h") || !std::strcmp(argv[1], "help")) {
        usage(argc < 2 ? stderr : stdout);
        return argc < 2 ? 2 : 0;
    }
    for (const Command& c : commands()) {
        if (std::strcmp(argv[1], c.name) != 0) continue;
        try {
            return c.run(argc - 1, argv + 1);
        } catch (const zeqcv::Error& e) {
            std::fprintf(stderr, "zeqcv %s: the library refused: %s\n", c.name, e.what());
        } catch (const Failure& e) {
            std::fprintf(stderr, "zeqcv %s: %s\n", c.name, e.what());
        } catch (const std::bad_alloc&) {
            std::fprintf(stderr, "zeqcv %s: out of memory\n", c.name);
        }
        return 1;
    }
    std::fprintf(stderr, "zeqcv: unknown command '%s'\n", argv[1]);
    usage(stderr);
    return 2;
}
