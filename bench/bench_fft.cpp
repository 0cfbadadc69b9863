// One-dimensional complex and real FFT, out of place, at orders 6 .. 20.
#include "zqbench.h"

#include <cstdio>
#include <cstring>

#ifdef ZQ_HAVE_FFTW
#include <fftw3.h>
#endif

namespace {

void FFT_C_zeqcv(benchmark::State& st, int order) {
    const int n = 1 << order;
    auto src = zqb::randomFrame<float>(1, -1, 1, 2 * n, 1), dst = src;
    ZeqsFFTSpec_C_32fc* spec = nullptr;
    zeqsFFTInitAlloc_C_32fc(&spec, order, zeqFftScaleNone, 0);
    int size = 0;
    zeqsFFTGetBufSize_C_32fc(spec, &size);
    std::vector<Zeq8u> buf(size_t(size) + 1);
    for (auto _ : st) {
        zeqsFFTFwd_CToC_32fc(reinterpret_cast<const Zeq32fc*>(src.data()), reinterpret_cast<Zeq32fc*>(dst.data()),
                             spec, buf.data());
        benchmark::DoNotOptimize(dst.data());
    }
    zeqsFFTFree_C_32fc(spec);
    zqb::setBytes(st, 16LL * n);
}

void FFT_R_zeqcv(benchmark::State& st, int order) {
    const int n = 1 << order;
    auto src = zqb::randomFrame<float>(1, -1, 1, n, 1), dst = src;
    ZeqsFFTSpec_R_32f* spec = nullptr;
    zeqsFFTInitAlloc_R_32f(&spec, order, zeqFftScaleNone, 0);
    int size = 0;
    zeqsFFTGetBufSize_R_32f(spec, &size);
    std::vector<Zeq8u> buf(size_t(size) + 1);
    for (auto _ : st) {
        zeqsFFTFwd_RToPack_32f(src.data(), dst.data(), spec, buf.data());
        benchmark::DoNotOptimize(dst.data());
    }
    zeqsFFTFree_R_32f(spec);
    zqb::setBytes(st, 8LL * n);
}

// "FFT_<kind>_<order>/<impl>": the order is part of the workload so that
// bench/ratios.py pairs the peers up.
template <class F>
bool registerOrders(const char* kind, const char* impl, F fn) {
    for (int order : {6, 10, 13, 16, 20}) {
        char name[64];
        std::snprintf(name, sizeof name, "FFT_%s_%02d/%s", kind, order, impl);
        benchmark::RegisterBenchmark(name, fn, order);
    }
    return true;
}

const bool registeredC_zeqcv = registerOrders("C", "zeqcv", FFT_C_zeqcv);
const bool registeredR_zeqcv = registerOrders("R", "zeqcv", FFT_R_zeqcv);

#ifdef ZQ_HAVE_FFTW
void FFT_C_fftw(benchmark::State& st, int order) {
    const int n = 1 << order;
    auto* in = fftwf_alloc_complex(size_t(n));
    auto* out = fftwf_alloc_complex(size_t(n));
    fftwf_plan plan = fftwf_plan_dft_1d(n, in, out, FFTW_FORWARD, FFTW_MEASURE);
    auto src = zqb::randomFrame<float>(1, -1, 1, 2 * n, 1);
    std::memcpy(in, src.data(), src.size() * sizeof(float));
    for (auto _ : st) {
        fftwf_execute(plan);
        benchmark::DoNotOptimize(out);
    }
    fftwf_destroy_plan(plan);
    fftwf_free(in);
    fftwf_free(out);
    zqb::setBytes(st, 16LL * n);
}

void FFT_R_fftw(benchmark::State& st, int order) {
    const int n = 1 << order;
    float* in = fftwf_alloc_real(size_t(n));
    auto* out = fftwf_alloc_complex(size_t(n / 2 + 1));
    fftwf_plan plan = fftwf_plan_dft_r2c_1d(n, in, out, FFTW_MEASURE);
    auto src = zqb::randomFrame<float>(1, -1, 1, n, 1);
    std::memcpy(in, src.data(), src.size() * sizeof(float));
    for (auto _ : st) {
        fftwf_execute(plan);
        benchmark::DoNotOptimize(out);
    }
    fftwf_destroy_plan(plan);
    fftwf_free(in);
    fftwf_free(out);
    zqb::setBytes(st, 8LL * n);
}

const bool registeredC_fftw = registerOrders("C", "fftw", FFT_C_fftw);
const bool registeredR_fftw = registerOrders("R", "fftw", FFT_R_fftw);
#endif

#ifdef ZQ_HAVE_OPENCV
template <int Type>
void FFT_opencv(benchmark::State& st, int order) {
    const int n = 1 << order;
    cv::Mat src(1, n, Type), dst;
    cv::randu(src, -1, 1);
    for (auto _ : st) {
        cv::dft(src, dst);
        benchmark::DoNotOptimize(dst.data);
    }
    zqb::setBytes(st, 2LL * int64_t(src.total() * src.elemSize()));
}
const bool registeredOpenCvC = registerOrders("C", "opencv", FFT_opencv<CV_32FC2>);
const bool registeredOpenCvR = registerOrders("R", "opencv", FFT_opencv<CV_32FC1>);
#endif

}  // namespace
