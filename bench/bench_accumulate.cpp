#include "zqbench.h"

namespace {

constexpr ZeqiSize kRoi = {zqb::kWidth, zqb::kHeight};
constexpr float kAlpha = 0.125f;

// A frame, a mask selecting about half of its pixels and a float accumulator.
// The frame has no zeros: averaging towards 0 over thousands of iterations
// would drive those pixels into subnormals and time that slow path instead.
struct Frames {
    std::vector<Zeq8u> src = zqb::randomFrame<Zeq8u>(1, 1, 255);
    std::vector<Zeq8u> mask = zqb::randomFrame<Zeq8u>(2, 0, 255);
    std::vector<Zeq32f> acc = zqb::randomFrame<Zeq32f>(3, 0, 255);
    Frames() {
        for (auto& m : mask) m = m >= 128 ? 255 : 0;
    }
};

// Source bytes, mask bytes (if any), accumulator read and written.
int64_t bytesPerFrame(bool masked) { return int64_t(zqb::kWidth) * zqb::kHeight * (1 + masked + 8); }

template <bool Masked, bool Weighted>
void Accumulate_zeqcv(benchmark::State& st) {
    Frames f;
    const int w = zqb::kWidth;
    for (auto _ : st) {
        if constexpr (Weighted && Masked)
            zeqiAddWeighted_8u32f_C1IMR(f.src.data(), w, f.mask.data(), w, f.acc.data(), 4 * w, kRoi, kAlpha);
        else if constexpr (Weighted)
            zeqiAddWeighted_8u32f_C1IR(f.src.data(), w, f.acc.data(), 4 * w, kRoi, kAlpha);
        else if constexpr (Masked)
            zeqiAdd_8u32f_C1IMR(f.src.data(), w, f.mask.data(), w, f.acc.data(), 4 * w, kRoi);
        else
            zeqiAdd_8u32f_C1IR(f.src.data(), w, f.acc.data(), 4 * w, kRoi);
        benchmark::DoNotOptimize(f.acc.data());
    }
    zqb::setBytes(st, bytesPerFrame(Masked));
}
BENCHMARK(Accumulate_zeqcv<false, false>)->Name("Accumulate_8u32f/zeqcv");
BENCHMARK(Accumulate_zeqcv<true, false>)->Name("AccumulateMasked_8u32f/zeqcv");
BENCHMARK(Accumulate_zeqcv<false, true>)->Name("AccumulateWeighted_8u32f/zeqcv");
BENCHMARK(Accumulate_zeqcv<true, true>)->Name("AccumulateWeightedMasked_8u32f/zeqcv");

#ifdef ZQ_HAVE_OPENCV
template <bool Masked, bool Weighted>
void Accumulate_opencv(benchmark::State& st) {
    Frames f;
    cv::Mat src(zqb::kHeight, zqb::kWidth, CV_8U, f.src.data());
    cv::Mat acc(zqb::kHeight, zqb::kWidth, CV_32F, f.acc.data());
    cv::Mat mask = Masked ? cv::Mat(zqb::kHeight, zqb::kWidth, CV_8U, f.mask.data()) : cv::Mat();
    for (auto _ : st) {
        if constexpr (Weighted) cv::accumulateWeighted(src, acc, kAlpha, mask);
        else cv::accumulate(src, acc, mask);
        benchmark::DoNotOptimize(acc.data);
    }
    zqb::setBytes(st, bytesPerFrame(Masked));
}
BENCHMARK(Accumulate_opencv<false, false>)->Name("Accumulate_8u32f/opencv");
BENCHMARK(Accumulate_opencv<true, false>)->Name("AccumulateMasked_8u32f/opencv");
BENCHMARK(Accumulate_opencv<false, true>)->Name("AccumulateWeighted_8u32f/opencv");
BENCHMARK(Accumulate_opencv<true, true>)->Name("AccumulateWeightedMasked_8u32f/opencv");
#endif

}  // namespace
