#include "zqbench.h"

namespace {

constexpr int W = zqb::kWidth, H = zqb::kHeight;
constexpr ZeqiSize kRoi{W, H};

// The 7x7 ellipse that the state builds for mask type 2, given to both
// libraries as an arbitrary mask.
const Zeq8u kEllipse7[49] = {0, 0, 1, 1, 1, 0, 0, 0, 1, 1, 1, 1, 1, 0, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1,
                             1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 0, 1, 1, 1, 1, 1, 0, 0, 0, 1, 1, 1, 0, 0};

// ---- minimum and maximum filters: the caller supplies the border, so the
// source frame is larger by the mask less one ----

void FilterMax_5x5_8u_zeqcv(benchmark::State& st) {
    const int sw = W + 4;
    auto src = zqb::randomFrame<Zeq8u>(1, 0, 255, sw, H + 4);
    std::vector<Zeq8u> dst(size_t(W) * H);
    for (auto _ : st) {
        zeqiFilterMax_8u_C1R(src.data() + 2 * sw + 2, sw, dst.data(), W, kRoi, {5, 5}, {2, 2});
        benchmark::DoNotOptimize(dst.data());
    }
    zqb::setBytes(st, 2LL * W * H);
}
BENCHMARK(FilterMax_5x5_8u_zeqcv)->Name("FilterMax_5x5_8u/zeqcv");

void FilterMin_7x7_32f_zeqcv(benchmark::State& st) {
    const int sw = W + 6;
    auto src = zqb::randomFrame<Zeq32f>(2, -1e3, 1e3, sw, H + 6);
    std::vector<Zeq32f> dst(size_t(W) * H);
    for (auto _ : st) {
        zeqiFilterMin_32f_C1R(src.data() + 3 * sw + 3, 4 * sw, dst.data(), 4 * W, kRoi, {7, 7}, {3, 3});
        benchmark::DoNotOptimize(dst.data());
    }
    zqb::setBytes(st, 8LL * W * H);
}
BENCHMARK(FilterMin_7x7_32f_zeqcv)->Name("FilterMin_7x7_32f/zeqcv");

// ---- strip morphology, the whole frame as one strip ----

template <class F>
void runStrip8u(benchmark::State& st, ZeqiSize mask, int maskType, const Zeq8u* pMask, F strip) {
    auto src = zqb::randomFrame<Zeq8u>(3, 0, 255);
    std::vector<Zeq8u> dst(size_t(W) * H);
    ZeqiMorphState* state = nullptr;
    zeqiMorphologyInitAlloc(W, zeq8u, 1, mask, {mask.width / 2, mask.height / 2}, maskType, pMask, &state);
    for (auto _ : st) {
        ZeqiSize roi = kRoi;
        strip(src.data(), W, dst.data(), W, &roi, state, 0);
        benchmark::DoNotOptimize(dst.data());
    }
    zeqiMorphologyFree(state);
    zqb::setBytes(st, 2LL * W * H);
}

void DilateStrip_Rect_5x5_8u_zeqcv(benchmark::State& st) {
    runStrip8u(st, {5, 5}, 0, nullptr, zeqiDilateStrip_Rect_8u_C1R);
}
BENCHMARK(DilateStrip_Rect_5x5_8u_zeqcv)->Name("DilateStrip_Rect_5x5_8u/zeqcv");

void ErodeStrip_Ellipse7x7Mask_8u_zeqcv(benchmark::State& st) {
    runStrip8u(st, {7, 7}, 100, kEllipse7, zeqiErodeStrip_8u_C1R);
}
BENCHMARK(ErodeStrip_Ellipse7x7Mask_8u_zeqcv)->Name("ErodeStrip_Ellipse7x7Mask_8u/zeqcv");

#ifdef ZQ_HAVE_OPENCV
// OpenCV replicates the border itself and runs on the roi alone.
template <class T>
void runMorphOpenCv(benchmark::State& st, int type, int op, cv::Mat kernel, double lo, double hi) {
    const auto data = zqb::randomFrame<T>(1, lo, hi);
    cv::Mat src(H, W, type), dst(H, W, type);
    std::copy(data.begin(), data.end(), src.ptr<T>());
    for (auto _ : st) {
        cv::morphologyEx(src, dst, op, kernel, cv::Point(-1, -1), 1, cv::BORDER_REPLICATE);
        benchmark::DoNotOptimize(dst.data);
    }
    zqb::setBytes(st, 2LL * W * H * int64_t(sizeof(T)));
}

void FilterMax_5x5_8u_opencv(benchmark::State& st) {
    runMorphOpenCv<Zeq8u>(st, CV_8U, cv::MORPH_DILATE, cv::Mat::ones(5, 5, CV_8U), 0, 255);
}
BENCHMARK(FilterMax_5x5_8u_opencv)->Name("FilterMax_5x5_8u/opencv");

void FilterMin_7x7_32f_opencv(benchmark::State& st) {
    runMorphOpenCv<Zeq32f>(st, CV_32F, cv::MORPH_ERODE, cv::Mat::ones(7, 7, CV_8U), -1e3, 1e3);
}
BENCHMARK(FilterMin_7x7_32f_opencv)->Name("FilterMin_7x7_32f/opencv");

void DilateStrip_Rect_5x5_8u_opencv(benchmark::State& st) {
    runMorphOpenCv<Zeq8u>(st, CV_8U, cv::MORPH_DILATE, cv::Mat::ones(5, 5, CV_8U), 0, 255);
}
BENCHMARK(DilateStrip_Rect_5x5_8u_opencv)->Name("DilateStrip_Rect_5x5_8u/opencv");

void ErodeStrip_Ellipse7x7Mask_8u_opencv(benchmark::State& st) {
    cv::Mat kernel(7, 7, CV_8U);
    std::copy(kEllipse7, kEllipse7 + 49, kernel.ptr<Zeq8u>());
    runMorphOpenCv<Zeq8u>(st, CV_8U, cv::MORPH_ERODE, kernel, 0, 255);
}
BENCHMARK(ErodeStrip_Ellipse7x7Mask_8u_opencv)->Name("ErodeStrip_Ellipse7x7Mask_8u/opencv");
#endif

}  // namespace
