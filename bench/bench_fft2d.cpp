// Forward two-dimensional real FFT of W x H float images, and the product of
// two packed spectra.
#include "zqbench.h"

#include <cstdio>
#include <cstring>

#ifdef ZQ_HAVE_FFTW
#include <fftw3.h>
#endif

namespace {

struct Size2D {
    int orderX, orderY;
    int w() const { return 1 << orderX; }
    int h() const { return 1 << orderY; }
};
const Size2D kSizes[] = {{8, 8}, {9, 9}, {10, 11}};

std::string workload(const char* what, const Size2D& s) {
    char name[64];
    std::snprintf(name, sizeof(name), "%s_%dx%d", what, s.w(), s.h());
    return name;
}

void FFT2DFwd_zeqcv(benchmark::State& st, Size2D s) {
    const auto src = zqb::randomFrame<Zeq32f>(1, -1, 1, s.w(), s.h());
    std::vector<Zeq32f> dst(src.size());
    ZeqiFFTSpec_R_32f* spec = nullptr;
    zeqiFFTInitAlloc_R_32f(&spec, s.orderX, s.orderY, zeqFftScaleNone, 0);
    int size = 0;
    zeqiFFTGetBufSize_R_32f(spec, &size);
    Zeq8u* buf = zeqsMalloc_8u(size);
    for (auto _ : st) {
        zeqiFFTFwd_RToPack_32f_C1R(src.data(), 4 * s.w(), dst.data(), 4 * s.w(), spec, buf);
        benchmark::DoNotOptimize(dst.data());
    }
    zeqsFree(buf);
    zeqiFFTFree_R_32f(spec);
    zqb::setBytes(st, 8LL * s.w() * s.h());
}

// The factor's values are +-1/sqrt(2): its complex entries have modulus 1, so
// repeating the product in place keeps the spectrum's magnitudes instead of
// letting them sink into denormals (which would time something else).
constexpr float kUnitPart = 0.70710677f;

void MulPack_zeqcv(benchmark::State& st, Size2D s) {
    auto a = zqb::randomFrame<Zeq32f>(1, -1, 1, s.w(), s.h());
    for (auto& v : a) v = v < 0 ? -kUnitPart : kUnitPart;
    auto d = zqb::randomFrame<Zeq32f>(2, -1, 1, s.w(), s.h());
    for (auto _ : st) {
        zeqiMulPack_32f_C1IR(a.data(), 4 * s.w(), d.data(), 4 * s.w(), {s.w(), s.h()});
        benchmark::DoNotOptimize(d.data());
    }
    zqb::setBytes(st, 12LL * s.w() * s.h());
}

#ifdef ZQ_HAVE_OPENCV
void FFT2DFwd_opencv(benchmark::State& st, Size2D s) {
    cv::Mat src(s.h(), s.w(), CV_32F), dst;
    cv::randu(src, -1, 1);
    for (auto _ : st) {
        cv::dft(src, dst);  // real input: CCS-packed output
        benchmark::DoNotOptimize(dst.data);
    }
    zqb::setBytes(st, 8LL * s.w() * s.h());
}

void MulPack_opencv(benchmark::State& st, Size2D s) {
    cv::Mat a(s.h(), s.w(), CV_32F), d(s.h(), s.w(), CV_32F);
    cv::randu(a, -1, 1);
    a.forEach<float>([](float& v, const int*) { v = v < 0 ? -kUnitPart : kUnitPart; });
    cv::randu(d, -1, 1);
    for (auto _ : st) {
        cv::mulSpectrums(d, a, d, 0);
        benchmark::DoNotOptimize(d.data);
    }
    zqb::setBytes(st, 12LL * s.w() * s.h());
}
#endif

#ifdef ZQ_HAVE_FFTW
void FFT2DFwd_fftw(benchmark::State& st, Size2D s) {
    float* src = fftwf_alloc_real(size_t(s.w()) * s.h());
    fftwf_complex* dst = fftwf_alloc_complex(size_t(s.w() / 2 + 1) * s.h());
    fftwf_plan plan = fftwf_plan_dft_r2c_2d(s.h(), s.w(), src, dst, FFTW_MEASURE);
    const auto data = zqb::randomFrame<float>(1, -1, 1, s.w(), s.h());
    std::memcpy(src, data.data(), data.size() * sizeof(float));
    for (auto _ : st) {
        fftwf_execute(plan);
        benchmark::DoNotOptimize(dst);
    }
    fftwf_destroy_plan(plan);
    fftwf_free(dst);
    fftwf_free(src);
    zqb::setBytes(st, 8LL * s.w() * s.h());
}
#endif

const bool kRegistered = [] {
    for (const Size2D& s : kSizes) {
        const std::string fwd = workload("FFT2DFwd", s);
        benchmark::RegisterBenchmark((fwd + "/zeqcv").c_str(), FFT2DFwd_zeqcv, s)->Unit(benchmark::kMicrosecond);
#ifdef ZQ_HAVE_OPENCV
        benchmark::RegisterBenchmark((fwd + "/opencv").c_str(), FFT2DFwd_opencv, s)->Unit(benchmark::kMicrosecond);
#endif
#ifdef ZQ_HAVE_FFTW
        benchmark::RegisterBenchmark((fwd + "/fftw").c_str(), FFT2DFwd_fftw, s)->Unit(benchmark::kMicrosecond);
#endif
    }
    const Size2D s{9, 9};
    const std::string mul = workload("MulPack", s);
    benchmark::RegisterBenchmark((mul + "/zeqcv").c_str(), MulPack_zeqcv, s)->Unit(benchmark::kMicrosecond);
#ifdef ZQ_HAVE_OPENCV
    benchmark::RegisterBenchmark((mul + "/opencv").c_str(), MulPack_opencv, s)->Unit(benchmark::kMicrosecond);
#endif
    return true;
}();

}  // namespace
