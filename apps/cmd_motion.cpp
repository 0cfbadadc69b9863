// `zeqcv motion`: a motion-history image over a sequence of frames. Frame i
// (from 1) marks where it differs from frame i-1 by more than a threshold;
// those pixels get the timestamp i, and marks older than the duration fade
// to 0, so the result shows where and how recently things moved.
#include "commands.h"

#include <cstdio>

namespace tool {

namespace {

class MotionHistory {
public:
    MotionHistory(int threshold, float duration) : threshold_(threshold), duration_(duration) {}

    // Adds the next frame (of the first frame's size); the first only starts.
    void add(const zeqcv::Image<Zeq8u>& frame) {
        const int w = frame.width(), h = frame.height();
        if (!previous_) {
            previous_ = newImage<Zeq8u>(w, h);
            silhouette_ = newImage<Zeq8u>(w, h);
            mhi = newImage<Zeq32f>(w, h);
            ZEQCV_CHECKED(zeqiSet_32f_C1R, 0.0f, mhi, zeqcv::roi);
        } else {
            ++frames;
            ZEQCV_CHECKED(zeqiAbsDiff_8u_C1R, frame, previous_, silhouette_, zeqcv::roi);
            for (int y = 0; y < h; ++y) {
                Zeq8u* s = silhouette_.row(y);
                for (int x = 0; x < w; ++x) s[x] = s[x] > threshold_ ? 255 : 0;
            }
            ZEQCV_CHECKED(zeqiUpdateMotionHistory_8u32f_C1IR, silhouette_, mhi, zeqcv::roi, Zeq32f(frames), duration_);
        }
        ZEQCV_CHECKED(zeqiCopy_8u_C1R, frame, previous_, zeqcv::roi);
    }

    int frames = 0;  // updates so far, the last timestamp
    zeqcv::Image<Zeq32f> mhi;

private:
    int threshold_;
    float duration_;
    zeqcv::Image<Zeq8u> previous_, silhouette_;
};

std::string sizeOf(int w, int h) { return std::to_string(w) + " x " + std::to_string(h); }

}  // namespace

int runMotion(int argc, char** argv) {
    const Args args = parseArgs(
        argc, argv,
        "[options] FRAME FRAME...|FOLDER\n"
        "Frames of one size, in the order given (a folder's in name order). Writes motion-mhi: the\n"
        "number of the last frame that differed from its predecessor by more than the threshold at\n"
        "each pixel (frames numbered from 1 after the first), 0 where that is longer ago than the duration.",
        {{"threshold", true, "grey difference that counts as motion (default 30)"},
         {"duration", true, "frames a mark lasts (default: all of them)"}},
        true, true);
    const int threshold = args.integer("threshold", 30);
    if (threshold < 0 || threshold > 254) fail("--threshold: " + std::to_string(threshold) + " is not in 0..254");
    const size_t count = expandInputs(args.inputs).size();
    if (count == 1) fail("a motion history needs at least two frames");
    const double duration = args.number("duration", double(count));
    if (duration < 0) fail("--duration: must not be negative");
    MotionHistory history(threshold, float(duration));
    std::string first;
    int w = 0, h = 0;
    const int status = runBatch(args, [&](const std::string& path) {
        const auto frame = grey8(readPicture(path));
        if (first.empty()) first = path, w = frame.width(), h = frame.height();
        else if (frame.width() != w || frame.height() != h)
            fail(path + ": is " + sizeOf(frame.width(), frame.height()) + " but " + first + " is " + sizeOf(w, h));
        return timeMs([&] { history.add(frame); });
    });
    if (status != 0) return status;  // a history with a frame missing would mislead
    std::printf("%s\n", saveFloat(joinPath(args.outDir, "motion-mhi"), history.mhi.view(), args.raw).c_str());
    return 0;
}

void demoMotion(Demo& demo) {
    MotionHistory history(30, float(demo.frames.size()));
    demo.time("motion history, " + std::to_string(demo.frames.size()) + " frames",
              "zeqiAbsDiff_8u_C1R zeqiUpdateMotionHistory_8u32f_C1IR", [&] {
                  history = MotionHistory(30, float(demo.frames.size()));
                  for (const auto& frame : demo.frames) history.add(frame);
              });
    demo.save("motion-mhi", history.mhi.view());
    demo.tile("motion history", scaleTo8u(history.mhi.view(), 0, float(history.frames)).view());
}

}  // namespace tool
