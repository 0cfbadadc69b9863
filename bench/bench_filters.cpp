#include "zqbench.h"

namespace {

constexpr int W = zqb::kWidth, H = zqb::kHeight;
constexpr ZeqiSize kRoi{W, H};

template <class F>
void runSobel8u(benchmark::State& st, F filter) {
    auto src = zqb::randomFrame<Zeq8u>(1, 0, 255);
    std::vector<Zeq16s> dst(size_t(W) * H);
    for (auto _ : st) {
        filter(src.data(), W, dst.data(), 2 * W);
        benchmark::DoNotOptimize(dst.data());
    }
    zqb::setBytes(st, 3LL * W * H);
}

template <class F>
void runSobel32f(benchmark::State& st, F filter) {
    auto src = zqb::randomFrame<Zeq32f>(1, -1e3, 1e3);
    std::vector<Zeq32f> dst(size_t(W) * H);
    for (auto _ : st) {
        filter(src.data(), 4 * W, dst.data(), 4 * W);
        benchmark::DoNotOptimize(dst.data());
    }
    zqb::setBytes(st, 8LL * W * H);
}

void SobelDx_8u16s_zeqcv(benchmark::State& st) {
    runSobel8u(st, [](auto s, int ss, auto d, int ds) { zeqiSobel3x3_Dx_8u16s_C1R(s, ss, d, ds, kRoi); });
}
void SobelDy_8u16s_zeqcv(benchmark::State& st) {
    runSobel8u(st, [](auto s, int ss, auto d, int ds) { zeqiSobel3x3_Dy_8u16s_C1R(s, ss, d, ds, 0, kRoi); });
}
void ScharrDx_8u16s_zeqcv(benchmark::State& st) {
    runSobel8u(st, [](auto s, int ss, auto d, int ds) { zeqiScharr_Dx_8u16s_C1R(s, ss, d, ds, kRoi, 0); });
}
void SobelDx_32f_zeqcv(benchmark::State& st) {
    runSobel32f(st, [](auto s, int ss, auto d, int ds) { zeqiSobel3x3_Dx_32f_C1R(s, ss, d, ds, kRoi); });
}
void SobelDy_32f_zeqcv(benchmark::State& st) {
    runSobel32f(st, [](auto s, int ss, auto d, int ds) { zeqiSobel3x3_Dy_32f_C1R(s, ss, d, ds, 0, kRoi); });
}
BENCHMARK(SobelDx_8u16s_zeqcv)->Name("SobelDx_8u16s/zeqcv");
BENCHMARK(SobelDy_8u16s_zeqcv)->Name("SobelDy_8u16s/zeqcv");
BENCHMARK(ScharrDx_8u16s_zeqcv)->Name("ScharrDx_8u16s/zeqcv");
BENCHMARK(SobelDx_32f_zeqcv)->Name("SobelDx_32f/zeqcv");
BENCHMARK(SobelDy_32f_zeqcv)->Name("SobelDy_32f/zeqcv");

void FastArctan_zeqcv(benchmark::State& st) {
    const int n = W * H;
    auto y = zqb::randomFrame<Zeq32f>(1, -1e3, 1e3), x = zqb::randomFrame<Zeq32f>(2, -1e3, 1e3);
    std::vector<Zeq32f> angle(static_cast<size_t>(n));
    for (auto _ : st) {
        zeqibFastArctan_32f(y.data(), x.data(), angle.data(), n);
        benchmark::DoNotOptimize(angle.data());
    }
    zqb::setBytes(st, 12LL * n);
}
BENCHMARK(FastArctan_zeqcv)->Name("FastArctan_32f/zeqcv");

#ifdef ZQ_HAVE_OPENCV
// The same frames as above, derivatives with replicated borders.
template <int Depth, int DstDepth>
void derivative_opencv(benchmark::State& st, int dx, int dy, bool scharr) {
    cv::Mat src(H, W, Depth), dst(H, W, DstDepth);
    if (Depth == CV_8U) cv::randu(src, 0, 256);
    else cv::randu(src, -1e3, 1e3);
    for (auto _ : st) {
        if (scharr) cv::Scharr(src, dst, DstDepth, dx, dy, 1, 0, cv::BORDER_REPLICATE);
        else cv::Sobel(src, dst, DstDepth, dx, dy, 3, 1, 0, cv::BORDER_REPLICATE);
        benchmark::DoNotOptimize(dst.data);
    }
    zqb::setBytes(st, int64_t(src.total() * (src.elemSize() + dst.elemSize())));
}
void SobelDx_8u16s_opencv(benchmark::State& st) { derivative_opencv<CV_8U, CV_16S>(st, 1, 0, false); }
void SobelDy_8u16s_opencv(benchmark::State& st) { derivative_opencv<CV_8U, CV_16S>(st, 0, 1, false); }
void ScharrDx_8u16s_opencv(benchmark::State& st) { derivative_opencv<CV_8U, CV_16S>(st, 1, 0, true); }
void SobelDx_32f_opencv(benchmark::State& st) { derivative_opencv<CV_32F, CV_32F>(st, 1, 0, false); }
void SobelDy_32f_opencv(benchmark::State& st) { derivative_opencv<CV_32F, CV_32F>(st, 0, 1, false); }
BENCHMARK(SobelDx_8u16s_opencv)->Name("SobelDx_8u16s/opencv");
BENCHMARK(SobelDy_8u16s_opencv)->Name("SobelDy_8u16s/opencv");
BENCHMARK(ScharrDx_8u16s_opencv)->Name("ScharrDx_8u16s/opencv");
BENCHMARK(SobelDx_32f_opencv)->Name("SobelDx_32f/opencv");
BENCHMARK(SobelDy_32f_opencv)->Name("SobelDy_32f/opencv");

void FastArctan_opencv(benchmark::State& st) {
    cv::Mat y(1, W * H, CV_32F), x(1, W * H, CV_32F), angle(1, W * H, CV_32F);
    cv::randu(y, -1e3, 1e3);
    cv::randu(x, -1e3, 1e3);
    for (auto _ : st) {
        cv::phase(x, y, angle, true);
        benchmark::DoNotOptimize(angle.data);
    }
    zqb::setBytes(st, 12LL * W * H);
}
BENCHMARK(FastArctan_opencv)->Name("FastArctan_32f/opencv");
#endif

}  // namespace
