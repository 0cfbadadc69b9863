#include "zqbench.h"

#ifdef ZQ_HAVE_OPENCV_OPTFLOW
#include <opencv2/optflow/motempl.hpp>
#endif

namespace {

constexpr int W = zqb::kWidth, H = zqb::kHeight;
constexpr ZeqiSize kRoi{W, H};

// ---- motion history: a quarter of the silhouette set, history of the
// last two seconds, a frame every 40 ms kept for one second ----

constexpr float kFrame = 0.04f, kDuration = 1.0f;

std::vector<Zeq8u> silhouette() {
    auto s = zqb::randomFrame<Zeq8u>(1, 0, 3.99);
    for (auto& v : s) v = v == 0 ? 255 : 0;
    return s;
}

void UpdateMotionHistory_zeqcv(benchmark::State& st) {
    const auto sil = silhouette();
    auto mhi = zqb::randomFrame<Zeq32f>(2, 98.0, 100.0);
    float ts = 100.0f;
    for (auto _ : st) {
        zeqiUpdateMotionHistory_8u32f_C1IR(sil.data(), W, mhi.data(), 4 * W, kRoi, ts += kFrame, kDuration);
        benchmark::DoNotOptimize(mhi.data());
    }
    zqb::setBytes(st, 9LL * W * H);
}
BENCHMARK(UpdateMotionHistory_zeqcv)->Name("UpdateMotionHistory_8u32f/zeqcv");

#ifdef ZQ_HAVE_OPENCV_OPTFLOW
void UpdateMotionHistory_opencv(benchmark::State& st) {
    auto silData = silhouette();
    auto mhiData = zqb::randomFrame<Zeq32f>(2, 98.0, 100.0);
    cv::Mat sil(H, W, CV_8U), mhi(H, W, CV_32F);
    std::copy(silData.begin(), silData.end(), sil.ptr<Zeq8u>());
    std::copy(mhiData.begin(), mhiData.end(), mhi.ptr<Zeq32f>());
    float ts = 100.0f;
    for (auto _ : st) {
        cv::motempl::updateMotionHistory(sil, mhi, ts += kFrame, kDuration);
        benchmark::DoNotOptimize(mhi.data);
    }
    zqb::setBytes(st, 9LL * W * H);
}
BENCHMARK(UpdateMotionHistory_opencv)->Name("UpdateMotionHistory_8u32f/opencv");
#endif

// ---- line sampling: 512 lines between random points of the frame ----

constexpr int kLines = 512;

struct Line {
    ZeqiPoint a, b;
};

std::vector<Line> randomLines() {
    std::mt19937 gen(3);
    std::uniform_int_distribution<int> x(0, W - 1), y(0, H - 1);
    std::vector<Line> lines(kLines);
    for (auto& l : lines) l = {{x(gen), y(gen)}, {x(gen), y(gen)}};
    return lines;
}

int64_t pointsOf(const std::vector<Line>& lines) {
    int64_t n = 0;
    for (const auto& l : lines) n += std::max(std::abs(l.b.x - l.a.x), std::abs(l.b.y - l.a.y)) + 1;
    return n;
}

template <class T, int C, class F>
void runSampleLine(benchmark::State& st, F sample) {
    const auto src = zqb::randomFrame<T>(4, 0, 255, W * C, H);
    const auto lines = randomLines();
    std::vector<T> dst(size_t(W) * C);
    for (auto _ : st) {
        for (const auto& l : lines) sample(src.data(), W * C * int(sizeof(T)), dst.data(), l.a, l.b);
        benchmark::DoNotOptimize(dst.data());
    }
    zqb::setBytes(st, pointsOf(lines) * C * int64_t(sizeof(T)));
}

void SampleLine_8u_C1_zeqcv(benchmark::State& st) {
    runSampleLine<Zeq8u, 1>(st, [](auto s, int ss, auto d, ZeqiPoint a, ZeqiPoint b) {
        zeqiSampleLine_8u_C1R(s, ss, kRoi, d, a, b);
    });
}
void SampleLine_8u_C3_zeqcv(benchmark::State& st) {
    runSampleLine<Zeq8u, 3>(st, [](auto s, int ss, auto d, ZeqiPoint a, ZeqiPoint b) {
        zeqiSampleLine_8u_C3R(s, ss, kRoi, d, a, b);
    });
}
void SampleLine_32f_C1_zeqcv(benchmark::State& st) {
    runSampleLine<Zeq32f, 1>(st, [](auto s, int ss, auto d, ZeqiPoint a, ZeqiPoint b) {
        zeqiSampleLine_32f_C1R(s, ss, kRoi, d, a, b);
    });
}
BENCHMARK(SampleLine_8u_C1_zeqcv)->Name("SampleLine_8u_C1/zeqcv");
BENCHMARK(SampleLine_8u_C3_zeqcv)->Name("SampleLine_8u_C3/zeqcv");
BENCHMARK(SampleLine_32f_C1_zeqcv)->Name("SampleLine_32f_C1/zeqcv");

#ifdef ZQ_HAVE_OPENCV
// The usual loop over an eight-connected iterator, one pixel copied per point.
template <class T, int C>
void SampleLine_opencv(benchmark::State& st) {
    using Pixel = cv::Vec<T, C>;
    const auto data = zqb::randomFrame<T>(4, 0, 255, W * C, H);
    const cv::Mat src(H, W, CV_MAKETYPE(cv::DataType<T>::depth, C), const_cast<T*>(data.data()));
    const auto lines = randomLines();
    std::vector<Pixel> dst(W);
    for (auto _ : st) {
        for (const auto& l : lines) {
            cv::LineIterator it(src, {l.a.x, l.a.y}, {l.b.x, l.b.y}, 8);
            for (int i = 0; i < it.count; ++i, ++it) dst[size_t(i)] = *reinterpret_cast<const Pixel*>(*it);
        }
        benchmark::DoNotOptimize(dst.data());
    }
    zqb::setBytes(st, pointsOf(lines) * C * int64_t(sizeof(T)));
}
BENCHMARK(SampleLine_opencv<Zeq8u, 1>)->Name("SampleLine_8u_C1/opencv");
BENCHMARK(SampleLine_opencv<Zeq8u, 3>)->Name("SampleLine_8u_C3/opencv");
BENCHMARK(SampleLine_opencv<Zeq32f, 1>)->Name("SampleLine_32f_C1/opencv");
#endif

}  // namespace
