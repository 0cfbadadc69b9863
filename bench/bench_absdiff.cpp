#include "zqbench.h"

namespace {

void AbsDiff_8u_zeqcv(benchmark::State& st) {
    auto a = zqb::randomFrame<Zeq8u>(1, 0, 255), b = zqb::randomFrame<Zeq8u>(2, 0, 255), d = a;
    for (auto _ : st) {
        zeqiAbsDiff_8u_C1R(a.data(), zqb::kWidth, b.data(), zqb::kWidth, d.data(), zqb::kWidth,
                           {zqb::kWidth, zqb::kHeight});
        benchmark::DoNotOptimize(d.data());
    }
    zqb::setBytes(st, 3LL * zqb::kWidth * zqb::kHeight);
}
BENCHMARK(AbsDiff_8u_zeqcv)->Name("AbsDiff_8u/zeqcv");

void AbsDiff_32f_zeqcv(benchmark::State& st) {
    auto a = zqb::randomFrame<Zeq32f>(1, -1e3, 1e3), b = zqb::randomFrame<Zeq32f>(2, -1e3, 1e3), d = a;
    for (auto _ : st) {
        zeqiAbsDiff_32f_C1R(a.data(), 4 * zqb::kWidth, b.data(), 4 * zqb::kWidth, d.data(), 4 * zqb::kWidth,
                            {zqb::kWidth, zqb::kHeight});
        benchmark::DoNotOptimize(d.data());
    }
    zqb::setBytes(st, 12LL * zqb::kWidth * zqb::kHeight);
}
BENCHMARK(AbsDiff_32f_zeqcv)->Name("AbsDiff_32f/zeqcv");

#ifdef ZQ_HAVE_OPENCV
template <int Type>
void AbsDiff_opencv(benchmark::State& st) {
    cv::Mat a(zqb::kHeight, zqb::kWidth, Type), b(zqb::kHeight, zqb::kWidth, Type), d;
    cv::randu(a, 0, 255);
    cv::randu(b, 0, 255);
    for (auto _ : st) {
        cv::absdiff(a, b, d);
        benchmark::DoNotOptimize(d.data);
    }
    zqb::setBytes(st, 3LL * int64_t(a.total() * a.elemSize()));
}
BENCHMARK(AbsDiff_opencv<CV_8U>)->Name("AbsDiff_8u/opencv");
BENCHMARK(AbsDiff_opencv<CV_32F>)->Name("AbsDiff_32f/opencv");
#endif

}  // namespace
