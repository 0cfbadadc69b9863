#include "zqbench.h"

namespace {

constexpr int W = zqb::kWidth, H = zqb::kHeight;

// One whole-image call through a state made once, as a caller filtering a
// video would.
template <class T, class D, class Make, class F>
void runState(benchmark::State& st, Make make, F filter, double lo, double hi) {
    const auto src = zqb::randomFrame<T>(11, lo, hi);
    std::vector<D> dst(size_t(W) * H);
    ZeqiConvState* state = nullptr;
    make(&state);
    for (auto _ : st) {
        ZeqiSize roi{W, H};
        filter(src.data(), int(sizeof(T)) * W, dst.data(), int(sizeof(D)) * W, &roi, state, 0);
        benchmark::DoNotOptimize(dst.data());
    }
    zeqiConvolFree(state);
    zqb::setBytes(st, int64_t(W) * H * int64_t(sizeof(T) + sizeof(D)));
}

void Sobel_5x5_32f_zeqcv(benchmark::State& st) {
    runState<Zeq32f, Zeq32f>(st, [](ZeqiConvState** s) { zeqiSobelInitAlloc(W, zeq32f, 5, 0, 1, 0, s); },
                             zeqiSobel_32f_C1R, 0, 255);
}
BENCHMARK(Sobel_5x5_32f_zeqcv)->Name("Sobel_5x5_32f/zeqcv");

void Blur_5x5_8u16s_zeqcv(benchmark::State& st) {
    runState<Zeq8u, Zeq16s>(st, [](ZeqiConvState** s) { zeqiBlurInitAlloc(W, zeq8u, 5, s); }, zeqiBlur_8u16s_C1R,
                            0, 255);
}
BENCHMARK(Blur_5x5_8u16s_zeqcv)->Name("Blur_5x5_8u16s/zeqcv");

void Laplace_3x3_8u16s_zeqcv(benchmark::State& st) {
    runState<Zeq8u, Zeq16s>(st, [](ZeqiConvState** s) { zeqiLaplaceInitAlloc(W, zeq8u, 3, s); },
                            zeqiLaplace_8u16s_C1R, 0, 255);
}
BENCHMARK(Laplace_3x3_8u16s_zeqcv)->Name("Laplace_3x3_8u16s/zeqcv");

#ifdef ZQ_HAVE_OPENCV
// The same kernels with replicated borders: cv::Laplacian with ksize 3 is
// the sum of the two 3x3 second derivatives, as the Laplace state is.
template <class T, class F>
void runOpenCv(benchmark::State& st, int type, int dstType, F call, double lo, double hi) {
    const auto data = zqb::randomFrame<T>(11, lo, hi);
    cv::Mat src(H, W, type), dst(H, W, dstType);
    std::copy(data.begin(), data.end(), src.ptr<T>());
    for (auto _ : st) {
        call(src, dst);
        benchmark::DoNotOptimize(dst.data);
    }
    zqb::setBytes(st, int64_t(W) * H * int64_t(src.elemSize() + dst.elemSize()));
}

void Sobel_5x5_32f_opencv(benchmark::State& st) {
    runOpenCv<Zeq32f>(st, CV_32F, CV_32F, [](cv::Mat& s, cv::Mat& d) {
        cv::Sobel(s, d, CV_32F, 1, 0, 5, 1, 0, cv::BORDER_REPLICATE); }, 0, 255);
}
BENCHMARK(Sobel_5x5_32f_opencv)->Name("Sobel_5x5_32f/opencv");

void Blur_5x5_8u16s_opencv(benchmark::State& st) {
    runOpenCv<Zeq8u>(st, CV_8U, CV_16S, [](cv::Mat& s, cv::Mat& d) {
        cv::boxFilter(s, d, CV_16S, cv::Size(5, 5), cv::Point(-1, -1), false, cv::BORDER_REPLICATE); }, 0, 255);
}
BENCHMARK(Blur_5x5_8u16s_opencv)->Name("Blur_5x5_8u16s/opencv");

void Laplace_3x3_8u16s_opencv(benchmark::State& st) {
    runOpenCv<Zeq8u>(st, CV_8U, CV_16S, [](cv::Mat& s, cv::Mat& d) {
        cv::Laplacian(s, d, CV_16S, 3, 1, 0, cv::BORDER_REPLICATE); }, 0, 255);
}
BENCHMARK(Laplace_3x3_8u16s_opencv)->Name("Laplace_3x3_8u16s/opencv");
#endif

}  // namespace
