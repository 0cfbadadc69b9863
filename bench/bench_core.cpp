// Copy and conversion to float of a full-HD frame, with contiguous rows and
// with padded rows. Each zeqcv workload is registered next to its peer so
// both run under the same machine load.
#include "zqbench.h"

namespace {

constexpr int kW = zqb::kWidth, kH = zqb::kHeight;
constexpr int kPadded8u = kW + 64, kPadded32f = 4 * kW + 64;  // a region of a wider image

template <int SrcStep>
void Copy_8u_zeqcv(benchmark::State& st) {
    auto s = zqb::randomFrame<Zeq8u>(1, 0, 255, SrcStep, kH), d = s;
    for (auto _ : st) {
        zeqiCopy_8u_C1R(s.data(), SrcStep, d.data(), SrcStep, {kW, kH});
        benchmark::DoNotOptimize(d.data());
    }
    zqb::setBytes(st, 2LL * kW * kH);
}

template <int SrcStep, int DstStep>
void Convert_8u32f_zeqcv(benchmark::State& st) {
    auto s = zqb::randomFrame<Zeq8u>(1, 0, 255, SrcStep, kH);
    std::vector<Zeq32f> d(size_t(DstStep / 4) * kH);
    for (auto _ : st) {
        zeqiConvert_8u32f_C1R(s.data(), SrcStep, d.data(), DstStep, {kW, kH});
        benchmark::DoNotOptimize(d.data());
    }
    zqb::setBytes(st, 5LL * kW * kH);
}

#ifdef ZQ_HAVE_OPENCV
// The first kW columns of images `cols` wide.
template <int Cols>
void Copy_8u_opencv(benchmark::State& st) {
    cv::Mat sAll(kH, Cols, CV_8U), dAll(kH, Cols, CV_8U);
    cv::randu(sAll, 0, 255);
    cv::Mat s = sAll(cv::Rect(0, 0, kW, kH)), d = dAll(cv::Rect(0, 0, kW, kH));
    for (auto _ : st) {
        s.copyTo(d);
        benchmark::DoNotOptimize(d.data);
    }
    zqb::setBytes(st, 2LL * kW * kH);
}

template <int SrcCols, int DstCols>
void Convert_8u32f_opencv(benchmark::State& st) {
    cv::Mat sAll(kH, SrcCols, CV_8U), dAll(kH, DstCols, CV_32F);
    cv::randu(sAll, 0, 255);
    cv::Mat s = sAll(cv::Rect(0, 0, kW, kH)), d = dAll(cv::Rect(0, 0, kW, kH));
    for (auto _ : st) {
        s.convertTo(d, CV_32F);
        benchmark::DoNotOptimize(d.data);
    }
    zqb::setBytes(st, 5LL * kW * kH);
}
#endif

BENCHMARK(Copy_8u_zeqcv<kW>)->Name("Copy_8u/zeqcv");
#ifdef ZQ_HAVE_OPENCV
BENCHMARK(Copy_8u_opencv<kW>)->Name("Copy_8u/opencv");
#endif
BENCHMARK(Convert_8u32f_zeqcv<kW, 4 * kW>)->Name("Convert_8u32f/zeqcv");
#ifdef ZQ_HAVE_OPENCV
BENCHMARK(Convert_8u32f_opencv<kW, kW>)->Name("Convert_8u32f/opencv");
#endif
BENCHMARK(Copy_8u_zeqcv<kPadded8u>)->Name("Copy_8u_Padded/zeqcv");
#ifdef ZQ_HAVE_OPENCV
BENCHMARK(Copy_8u_opencv<kPadded8u>)->Name("Copy_8u_Padded/opencv");
#endif
BENCHMARK(Convert_8u32f_zeqcv<kPadded8u, kPadded32f>)->Name("Convert_8u32f_Padded/zeqcv");
#ifdef ZQ_HAVE_OPENCV
BENCHMARK(Convert_8u32f_opencv<kPadded8u, kPadded32f / 4>)->Name("Convert_8u32f_Padded/opencv");
#endif

}  // namespace
