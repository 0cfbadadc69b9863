#include "zqbench.h"

#include <cstring>

namespace {

constexpr int W = zqb::kWidth, H = zqb::kHeight;

struct Pyr {
    bool down;
    int dw() const { return down ? (W + 1) / 2 : 2 * W; }
    int dh() const { return down ? (H + 1) / 2 : 2 * H; }
};

void runZeqcv(benchmark::State& st, Pyr p, const std::vector<Zeq8u>& src, std::vector<Zeq8u>& dst) {
    int size = 0;
    (p.down ? zeqiPyrDownGetBufSize_Gauss5x5 : zeqiPyrUpGetBufSize_Gauss5x5)(W, zeq8u, 1, &size);
    std::vector<Zeq8u> buf(static_cast<size_t>(size));
    for (auto _ : st) {
        if (p.down) zeqiPyrDown_Gauss5x5_8u_C1R(src.data(), W, dst.data(), p.dw(), {W, H}, buf.data());
        else zeqiPyrUp_Gauss5x5_8u_C1R(src.data(), W, dst.data(), p.dw(), {W, H}, buf.data());
        benchmark::DoNotOptimize(dst.data());
    }
}

void pyramid_zeqcv(benchmark::State& st, bool down) {
    const Pyr p{down};
    auto src = zqb::randomFrame<Zeq8u>(1, 0, 255);
    std::vector<Zeq8u> dst(size_t(p.dw()) * p.dh());
    runZeqcv(st, p, src, dst);
    zqb::setBytes(st, int64_t(W) * H + int64_t(p.dw()) * p.dh());
}
void PyrDown_zeqcv(benchmark::State& st) { pyramid_zeqcv(st, true); }
void PyrUp_zeqcv(benchmark::State& st) { pyramid_zeqcv(st, false); }
BENCHMARK(PyrDown_zeqcv)->Name("PyrDown_8u/zeqcv");
BENCHMARK(PyrUp_zeqcv)->Name("PyrUp_8u/zeqcv");

#ifdef ZQ_HAVE_OPENCV
// The peer's default border mirrors about the edge pixel too: the two
// results must be identical, which the run checks once before timing.
void pyramid_opencv(benchmark::State& st, bool down) {
    const Pyr p{down};
    auto src = zqb::randomFrame<Zeq8u>(1, 0, 255);
    cv::Mat s(H, W, CV_8U, src.data()), d(p.dh(), p.dw(), CV_8U);
    std::vector<Zeq8u> ours(size_t(p.dw()) * p.dh());
    int size = 0;
    (down ? zeqiPyrDownGetBufSize_Gauss5x5 : zeqiPyrUpGetBufSize_Gauss5x5)(W, zeq8u, 1, &size);
    std::vector<Zeq8u> buf(static_cast<size_t>(size));
    if (down) zeqiPyrDown_Gauss5x5_8u_C1R(src.data(), W, ours.data(), p.dw(), {W, H}, buf.data());
    else zeqiPyrUp_Gauss5x5_8u_C1R(src.data(), W, ours.data(), p.dw(), {W, H}, buf.data());
    if (down) cv::pyrDown(s, d, d.size());
    else cv::pyrUp(s, d, d.size());
    // The expansion mirrors at the right and bottom edges where the peer does
    // not: its last two output columns and rows differ by design.
    const int cols = down ? p.dw() : p.dw() - 2, rows = down ? p.dh() : p.dh() - 2;
    for (int y = 0; y < rows; ++y)
        if (std::memcmp(d.ptr(y), ours.data() + size_t(y) * p.dw(), size_t(cols)) != 0) {
            st.SkipWithError("results differ from zeqcv");
            return;
        }
    for (auto _ : st) {
        if (down) cv::pyrDown(s, d, d.size());
        else cv::pyrUp(s, d, d.size());
        benchmark::DoNotOptimize(d.data);
    }
    zqb::setBytes(st, int64_t(W) * H + int64_t(p.dw()) * p.dh());
}
void PyrDown_opencv(benchmark::State& st) { pyramid_opencv(st, true); }
void PyrUp_opencv(benchmark::State& st) { pyramid_opencv(st, false); }
BENCHMARK(PyrDown_opencv)->Name("PyrDown_8u/opencv");
BENCHMARK(PyrUp_opencv)->Name("PyrUp_8u/opencv");
#endif

}  // namespace
