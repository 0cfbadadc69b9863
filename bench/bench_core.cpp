#include "zqbench.h"

namespace {

constexpr int kW = zqb::kWidth, kH = zqb::kHeight;
// Padded rows, as in a region of interest of a wider image.
constexpr int kPadded8u = kW + 64, kPadded32f = 4 * kW + 64;

void Copy_8u_zeqcv(benchmark::State& st) {
    auto s = zqb::randomFrame<Zeq8u>(1, 0, 255), d = s;
    for (auto _ : st) {
        zeqiCopy_8u_C1R(s.data(), kW, d.data(), kW, {kW, kH});
        benchmark::DoNotOptimize(d.data());
    }
    zqb::setBytes(st, 2LL * kW * kH);
}
BENCHMARK(Copy_8u_zeqcv)->Name("Copy_8u/zeqcv");

void Convert_8u32f_zeqcv(benchmark::State& st) {
    auto s = zqb::randomFrame<Zeq8u>(1, 0, 255);
    std::vector<Zeq32f> d(size_t(kW) * kH);
    for (auto _ : st) {
        zeqiConvert_8u32f_C1R(s.data(), kW, d.data(), 4 * kW, {kW, kH});
        benchmark::DoNotOptimize(d.data());
    }
    zqb::setBytes(st, 5LL * kW * kH);
}
BENCHMARK(Convert_8u32f_zeqcv)->Name("Convert_8u32f/zeqcv");

void Copy_8u_Padded_zeqcv(benchmark::State& st) {
    auto s = zqb::randomFrame<Zeq8u>(1, 0, 255, kPadded8u, kH), d = s;
    for (auto _ : st) {
        zeqiCopy_8u_C1R(s.data(), kPadded8u, d.data(), kPadded8u, {kW, kH});
        benchmark::DoNotOptimize(d.data());
    }
    zqb::setBytes(st, 2LL * kW * kH);
}
BENCHMARK(Copy_8u_Padded_zeqcv)->Name("Copy_8u_Padded/zeqcv");

void Convert_8u32f_Padded_zeqcv(benchmark::State& st) {
    auto s = zqb::randomFrame<Zeq8u>(1, 0, 255, kPadded8u, kH);
    std::vector<Zeq32f> d(size_t(kPadded32f / 4) * kH);
    for (auto _ : st) {
        zeqiConvert_8u32f_C1R(s.data(), kPadded8u, d.data(), kPadded32f, {kW, kH});
        benchmark::DoNotOptimize(d.data());
    }
    zqb::setBytes(st, 5LL * kW * kH);
}
BENCHMARK(Convert_8u32f_Padded_zeqcv)->Name("Convert_8u32f_Padded/zeqcv");

#ifdef ZQ_HAVE_OPENCV
cv::Mat randomMat8u(int cols) {
    cv::Mat m(kH, cols, CV_8U);
    cv::randu(m, 0, 255);
    return m;
}

void Copy_8u_opencv(benchmark::State& st) {
    cv::Mat s = randomMat8u(kW), d(kH, kW, CV_8U);
    for (auto _ : st) {
        s.copyTo(d);
        benchmark::DoNotOptimize(d.data);
    }
    zqb::setBytes(st, 2LL * kW * kH);
}
BENCHMARK(Copy_8u_opencv)->Name("Copy_8u/opencv");

void Convert_8u32f_opencv(benchmark::State& st) {
    cv::Mat s = randomMat8u(kW), d(kH, kW, CV_32F);
    for (auto _ : st) {
        s.convertTo(d, CV_32F);
        benchmark::DoNotOptimize(d.data);
    }
    zqb::setBytes(st, 5LL * kW * kH);
}
BENCHMARK(Convert_8u32f_opencv)->Name("Convert_8u32f/opencv");

void Copy_8u_Padded_opencv(benchmark::State& st) {
    cv::Mat sAll = randomMat8u(kPadded8u), dAll(kH, kPadded8u, CV_8U);
    const cv::Rect roi(0, 0, kW, kH);
    cv::Mat s = sAll(roi), d = dAll(roi);
    for (auto _ : st) {
        s.copyTo(d);
        benchmark::DoNotOptimize(d.data);
    }
    zqb::setBytes(st, 2LL * kW * kH);
}
BENCHMARK(Copy_8u_Padded_opencv)->Name("Copy_8u_Padded/opencv");

void Convert_8u32f_Padded_opencv(benchmark::State& st) {
    cv::Mat sAll = randomMat8u(kPadded8u), dAll(kH, kPadded32f / 4, CV_32F);
    const cv::Rect roi(0, 0, kW, kH);
    cv::Mat s = sAll(roi), d = dAll(roi);
    for (auto _ : st) {
        s.convertTo(d, CV_32F);
        benchmark::DoNotOptimize(d.data);
    }
    zqb::setBytes(st, 5LL * kW * kH);
}
BENCHMARK(Convert_8u32f_Padded_opencv)->Name("Convert_8u32f_Padded/opencv");
#endif

}  // namespace
