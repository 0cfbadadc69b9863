#include "zqbench.h"

namespace {

constexpr int W = zqb::kWidth, H = zqb::kHeight;

// Features (zeros) scattered over 1 % of the frame.
std::vector<Zeq8u> features() {
    auto v = zqb::randomFrame<Zeq8u>(3, 0, 99.999);
    for (auto& p : v) p = p == 0 ? 0 : 255;
    return v;
}

void distance_zeqcv(benchmark::State& st, int kernel) {
    const auto src = features();
    std::vector<Zeq32f> dst(size_t(W) * H);
    float m[4];
    zeqiGetDistanceTransformMask_32f(kernel, 2, m);
    for (auto _ : st) {
        if (kernel == 3) zeqiDistanceTransform_3x3_8u32f_C1R(src.data(), W, dst.data(), 4 * W, {W, H}, m);
        else zeqiDistanceTransform_5x5_8u32f_C1R(src.data(), W, dst.data(), 4 * W, {W, H}, m);
        benchmark::DoNotOptimize(dst.data());
    }
    zqb::setBytes(st, 5LL * W * H);
}
void DistanceL2_3x3_zeqcv(benchmark::State& st) { distance_zeqcv(st, 3); }
void DistanceL2_5x5_zeqcv(benchmark::State& st) { distance_zeqcv(st, 5); }
BENCHMARK(DistanceL2_3x3_zeqcv)->Name("DistanceL2_3x3_8u32f/zeqcv");
BENCHMARK(DistanceL2_5x5_zeqcv)->Name("DistanceL2_5x5_8u32f/zeqcv");

#ifdef ZQ_HAVE_OPENCV
// The peer's L2 chamfer masks use the same weights (0.955, 1.3693 and 1, 1.4, 2.1969).
void distance_opencv(benchmark::State& st, int kernel) {
    auto src = features();
    cv::Mat s(H, W, CV_8U, src.data()), d(H, W, CV_32F);
    for (auto _ : st) {
        cv::distanceTransform(s, d, cv::DIST_L2, kernel, CV_32F);
        benchmark::DoNotOptimize(d.data);
    }
    zqb::setBytes(st, 5LL * W * H);
}
void DistanceL2_3x3_opencv(benchmark::State& st) { distance_opencv(st, 3); }
void DistanceL2_5x5_opencv(benchmark::State& st) { distance_opencv(st, 5); }
BENCHMARK(DistanceL2_3x3_opencv)->Name("DistanceL2_3x3_8u32f/opencv");
BENCHMARK(DistanceL2_5x5_opencv)->Name("DistanceL2_5x5_8u32f/opencv");
#endif

}  // namespace
