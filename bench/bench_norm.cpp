#include "zqbench.h"

namespace {

constexpr int kW = zqb::kWidth, kH = zqb::kHeight;

// About half of the pixels take part.
std::vector<Zeq8u> halfMask() { return zqb::randomFrame<Zeq8u>(9, 0, 1.999); }

void NormL2_8u_zeqcv(benchmark::State& st) {
    auto a = zqb::randomFrame<Zeq8u>(1, 0, 255);
    auto m = halfMask();
    double r = 0;
    for (auto _ : st) {
        zeqiNorm_L2_8u_C1MR(a.data(), kW, m.data(), kW, {kW, kH}, &r);
        benchmark::DoNotOptimize(r);
    }
    zqb::setBytes(st, 2LL * kW * kH);
}
BENCHMARK(NormL2_8u_zeqcv)->Name("NormL2_8u_Mask/zeqcv");

void NormDiffL1_32f_zeqcv(benchmark::State& st) {
    auto a = zqb::randomFrame<Zeq32f>(1, -1e3, 1e3), b = zqb::randomFrame<Zeq32f>(2, -1e3, 1e3);
    auto m = halfMask();
    double r = 0;
    for (auto _ : st) {
        zeqiNormDiff_L1_32f_C1MR(a.data(), 4 * kW, b.data(), 4 * kW, m.data(), kW, {kW, kH}, &r);
        benchmark::DoNotOptimize(r);
    }
    zqb::setBytes(st, 9LL * kW * kH);
}
BENCHMARK(NormDiffL1_32f_zeqcv)->Name("NormDiffL1_32f_Mask/zeqcv");

void NormRelInf_8u_zeqcv(benchmark::State& st) {
    auto a = zqb::randomFrame<Zeq8u>(1, 0, 255), b = zqb::randomFrame<Zeq8u>(2, 0, 255);
    auto m = halfMask();
    double r = 0;
    for (auto _ : st) {
        zeqiNormRel_Inf_8u_C1MR(a.data(), kW, b.data(), kW, m.data(), kW, {kW, kH}, &r);
        benchmark::DoNotOptimize(r);
    }
    zqb::setBytes(st, 3LL * kW * kH);
}
BENCHMARK(NormRelInf_8u_zeqcv)->Name("NormRelInf_8u_Mask/zeqcv");

#ifdef ZQ_HAVE_OPENCV
// The same frames and mask wrapped as matrices.
template <class T>
cv::Mat wrap(std::vector<T>& v, int type) {
    return cv::Mat(kH, kW, type, v.data());
}

void NormL2_8u_opencv(benchmark::State& st) {
    auto a = zqb::randomFrame<Zeq8u>(1, 0, 255);
    auto m = halfMask();
    const cv::Mat ma = wrap(a, CV_8U), mm = wrap(m, CV_8U);
    for (auto _ : st) benchmark::DoNotOptimize(cv::norm(ma, cv::NORM_L2, mm));
    zqb::setBytes(st, 2LL * kW * kH);
}
BENCHMARK(NormL2_8u_opencv)->Name("NormL2_8u_Mask/opencv");

void NormDiffL1_32f_opencv(benchmark::State& st) {
    auto a = zqb::randomFrame<Zeq32f>(1, -1e3, 1e3), b = zqb::randomFrame<Zeq32f>(2, -1e3, 1e3);
    auto m = halfMask();
    const cv::Mat ma = wrap(a, CV_32F), mb = wrap(b, CV_32F), mm = wrap(m, CV_8U);
    for (auto _ : st) benchmark::DoNotOptimize(cv::norm(ma, mb, cv::NORM_L1, mm));
    zqb::setBytes(st, 9LL * kW * kH);
}
BENCHMARK(NormDiffL1_32f_opencv)->Name("NormDiffL1_32f_Mask/opencv");

void NormRelInf_8u_opencv(benchmark::State& st) {
    auto a = zqb::randomFrame<Zeq8u>(1, 0, 255), b = zqb::randomFrame<Zeq8u>(2, 0, 255);
    auto m = halfMask();
    const cv::Mat ma = wrap(a, CV_8U), mb = wrap(b, CV_8U), mm = wrap(m, CV_8U);
    for (auto _ : st) benchmark::DoNotOptimize(cv::norm(ma, mb, cv::NORM_RELATIVE | cv::NORM_INF, mm));
    zqb::setBytes(st, 3LL * kW * kH);
}
BENCHMARK(NormRelInf_8u_opencv)->Name("NormRelInf_8u_Mask/opencv");
#endif

}  // namespace
