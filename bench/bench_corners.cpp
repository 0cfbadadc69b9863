// Corner measures on a full-HD 8u frame, aperture 3 and window 3, replicated
// borders on both sides.
#include "zqbench.h"

namespace {

constexpr int kAperture = 3, kWindow = 3;

const std::vector<Zeq8u>& frame() {
    static const std::vector<Zeq8u> f = zqb::randomFrame<Zeq8u>(23, 0, 255);
    return f;
}

template <bool Vecs>
void corners_zeqcv(benchmark::State& st) {
    const int w = zqb::kWidth, h = zqb::kHeight, ch = Vecs ? 6 : 1;
    int size = 0;
    zeqiMinEigenValGetSize(w, kAperture, kWindow, &size);
    Zeq8u* buffer = zeqsMalloc_8u(size);
    std::vector<Zeq32f> dst(size_t(w) * h * ch);
    for (auto _ : st) {
        if (Vecs)
            zeqiEigenValsVecs_8u32f_C1R(frame().data(), w, dst.data(), 4 * ch * w, {w, h}, kAperture, kWindow, buffer);
        else
            zeqiMinEigenVal_8u32f_C1R(frame().data(), w, dst.data(), 4 * w, {w, h}, kAperture, kWindow, buffer);
        benchmark::DoNotOptimize(dst.data());
    }
    zeqsFree(buffer);
    zqb::setBytes(st, int64_t(w) * h);
}
BENCHMARK(corners_zeqcv<false>)->Name("MinEigenVal_8u32f/zeqcv")->Unit(benchmark::kMillisecond);
BENCHMARK(corners_zeqcv<true>)->Name("EigenValsVecs_8u32f/zeqcv")->Unit(benchmark::kMillisecond);

#ifdef ZQ_HAVE_OPENCV
template <bool Vecs>
void corners_opencv(benchmark::State& st) {
    const int w = zqb::kWidth, h = zqb::kHeight;
    const cv::Mat src(h, w, CV_8U, const_cast<Zeq8u*>(frame().data()));
    cv::Mat dst;
    for (auto _ : st) {
        if (Vecs) cv::cornerEigenValsAndVecs(src, dst, kWindow, kAperture, cv::BORDER_REPLICATE);
        else cv::cornerMinEigenVal(src, dst, kWindow, kAperture, cv::BORDER_REPLICATE);
        benchmark::DoNotOptimize(dst.data);
    }
    zqb::setBytes(st, int64_t(w) * h);
}
BENCHMARK(corners_opencv<false>)->Name("MinEigenVal_8u32f/opencv")->Unit(benchmark::kMillisecond);
BENCHMARK(corners_opencv<true>)->Name("EigenValsVecs_8u32f/opencv")->Unit(benchmark::kMillisecond);
#endif

}  // namespace
