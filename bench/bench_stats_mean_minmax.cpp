#include "zqbench.h"

namespace {

constexpr ZeqiSize kRoi{zqb::kWidth, zqb::kHeight};

void MeanStdDev_8u_zeqcv(benchmark::State& st) {
    const auto a = zqb::randomFrame<Zeq8u>(1, 0, 255);
    double mean, sd;
    for (auto _ : st) {
        zeqiMean_StdDev_8u_C1R(a.data(), zqb::kWidth, kRoi, &mean, &sd);
        benchmark::DoNotOptimize(sd);
    }
    zqb::setBytes(st, int64_t(a.size()));
}
BENCHMARK(MeanStdDev_8u_zeqcv)->Name("MeanStdDev_8u/zeqcv");

void MeanStdDev_32f_zeqcv(benchmark::State& st) {
    const auto a = zqb::randomFrame<Zeq32f>(1, -1e3, 1e3);
    double mean, sd;
    for (auto _ : st) {
        zeqiMean_StdDev_32f_C1R(a.data(), 4 * zqb::kWidth, kRoi, &mean, &sd);
        benchmark::DoNotOptimize(sd);
    }
    zqb::setBytes(st, 4 * int64_t(a.size()));
}
BENCHMARK(MeanStdDev_32f_zeqcv)->Name("MeanStdDev_32f/zeqcv");

void MinMaxIndx_8u_zeqcv(benchmark::State& st) {
    const auto a = zqb::randomFrame<Zeq8u>(1, 1, 254);
    Zeq32f lo, hi;
    ZeqiPoint loAt, hiAt;
    for (auto _ : st) {
        zeqiMinMaxIndx_8u_C1R(a.data(), zqb::kWidth, kRoi, &lo, &hi, &loAt, &hiAt);
        benchmark::DoNotOptimize(loAt);
    }
    zqb::setBytes(st, int64_t(a.size()));
}
BENCHMARK(MinMaxIndx_8u_zeqcv)->Name("MinMaxIndx_8u/zeqcv");

void MinMaxIndx_32f_zeqcv(benchmark::State& st) {
    const auto a = zqb::randomFrame<Zeq32f>(1, -1e3, 1e3);
    Zeq32f lo, hi;
    ZeqiPoint loAt, hiAt;
    for (auto _ : st) {
        zeqiMinMaxIndx_32f_C1R(a.data(), 4 * zqb::kWidth, kRoi, &lo, &hi, &loAt, &hiAt);
        benchmark::DoNotOptimize(loAt);
    }
    zqb::setBytes(st, 4 * int64_t(a.size()));
}
BENCHMARK(MinMaxIndx_32f_zeqcv)->Name("MinMaxIndx_32f/zeqcv");

#ifdef ZQ_HAVE_OPENCV
// The same frame as the zeqcv side, in a matrix of its own.
template <class T>
cv::Mat frame(int type, double lo, double hi) {
    auto data = zqb::randomFrame<T>(1, lo, hi);
    return cv::Mat(zqb::kHeight, zqb::kWidth, type, data.data()).clone();
}

template <class T, int Type>
void MeanStdDev_opencv(benchmark::State& st) {
    const cv::Mat a = Type == CV_8U ? frame<T>(Type, 0, 255) : frame<T>(Type, -1e3, 1e3);
    cv::Scalar mean, sd;
    for (auto _ : st) {
        cv::meanStdDev(a, mean, sd);
        benchmark::DoNotOptimize(sd[0]);
    }
    zqb::setBytes(st, int64_t(a.total() * a.elemSize()));
}
BENCHMARK(MeanStdDev_opencv<Zeq8u, CV_8U>)->Name("MeanStdDev_8u/opencv");
BENCHMARK(MeanStdDev_opencv<Zeq32f, CV_32F>)->Name("MeanStdDev_32f/opencv");

template <class T, int Type>
void MinMaxIndx_opencv(benchmark::State& st) {
    const cv::Mat a = Type == CV_8U ? frame<T>(Type, 1, 254) : frame<T>(Type, -1e3, 1e3);
    double lo, hi;
    cv::Point loAt, hiAt;
    for (auto _ : st) {
        cv::minMaxLoc(a, &lo, &hi, &loAt, &hiAt);
        benchmark::DoNotOptimize(loAt);
    }
    zqb::setBytes(st, int64_t(a.total() * a.elemSize()));
}
BENCHMARK(MinMaxIndx_opencv<Zeq8u, CV_8U>)->Name("MinMaxIndx_8u/opencv");
BENCHMARK(MinMaxIndx_opencv<Zeq32f, CV_32F>)->Name("MinMaxIndx_32f/opencv");
#endif

}  // namespace
