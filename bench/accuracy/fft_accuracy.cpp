// Accuracy of the single-precision FFTs against FFTW's single-precision
// transforms on the same input: relative L2 error of each against a
// long-double reference, and their ratio (zeqcv / FFTW, at most 2 wanted).
#include "zeqcv.h"

#include <fftw3.h>

#include <cmath>
#include <complex>
#include <cstdio>
#include <random>
#include <vector>

namespace {

using cl = std::complex<long double>;

std::vector<cl> reference(std::vector<cl> x) {
    const size_t n = x.size();
    for (size_t i = 1, j = 0; i < n; ++i) {
        size_t bit = n >> 1;
        for (; j & bit; bit >>= 1) j ^= bit;
        j ^= bit;
        if (i < j) std::swap(x[i], x[j]);
    }
    const long double pi = 3.141592653589793238462643383279502884L;
    for (size_t len = 2; len <= n; len *= 2)
        for (size_t k = 0; k < len / 2; ++k) {
            const cl w = std::polar(1.0L, -2 * pi * (long double)k / (long double)len);
            for (size_t g = 0; g < n; g += len) {
                const cl a = x[g + k], b = x[g + k + len / 2] * w;
                x[g + k] = a + b;
                x[g + k + len / 2] = a - b;
            }
        }
    return x;
}

// Relative L2 error of the first `count` bins of `got` (interleaved re, im).
double relError(const float* got, const std::vector<cl>& want, size_t count) {
    long double num = 0, den = 0;
    for (size_t k = 0; k < count; ++k) {
        const long double dr = got[2 * k] - want[k].real(), di = got[2 * k + 1] - want[k].imag();
        num += dr * dr + di * di;
        den += std::norm(want[k]);
    }
    return double(std::sqrt(num / den));
}

}  // namespace

int main() {
    std::mt19937 gen(5);
    std::uniform_real_distribution<float> dist(-1, 1);
    std::printf("| order | complex zeqcv | complex FFTW | ratio | real zeqcv | real FFTW | ratio |\n");
    std::printf("|---:|---:|---:|---:|---:|---:|---:|\n");
    double worst = 0;
    for (int order = 4; order <= 20; order += 2) {
        const size_t n = size_t(1) << order;
        std::vector<float> x(2 * n), got(2 * n + 2);
        for (auto& v : x) v = dist(gen);

        // Complex: n points.
        std::vector<cl> xc(n);
        for (size_t j = 0; j < n; ++j) xc[j] = cl(x[2 * j], x[2 * j + 1]);
        const std::vector<cl> want = reference(xc);
        ZeqsFFTSpec_C_32fc* cs = nullptr;
        zeqsFFTInitAlloc_C_32fc(&cs, order, zeqFftScaleNone, 0);
        zeqsFFTFwd_CToC_32fc(reinterpret_cast<const Zeq32fc*>(x.data()), reinterpret_cast<Zeq32fc*>(got.data()), cs,
                             nullptr);
        zeqsFFTFree_C_32fc(cs);
        const double ec = relError(got.data(), want, n);
        std::vector<float> in(x), out(2 * n);
        fftwf_plan p = fftwf_plan_dft_1d(int(n), reinterpret_cast<fftwf_complex*>(in.data()),
                                         reinterpret_cast<fftwf_complex*>(out.data()), FFTW_FORWARD, FFTW_ESTIMATE);
        fftwf_execute(p);
        fftwf_destroy_plan(p);
        const double fc = relError(out.data(), want, n);

        // Real: the first n values as a real sequence; Pack unpacked to bins 0..n/2.
        std::vector<cl> xr(x.begin(), x.begin() + n);
        const std::vector<cl> wantR = reference(xr);
        ZeqsFFTSpec_R_32f* rs = nullptr;
        zeqsFFTInitAlloc_R_32f(&rs, order, zeqFftScaleNone, 0);
        std::vector<float> pack(n);
        zeqsFFTFwd_RToPack_32f(x.data(), pack.data(), rs, nullptr);
        zeqsFFTFree_R_32f(rs);
        std::vector<float> bins(n + 2, 0.0f);
        bins[0] = pack[0];
        for (size_t k = 1; k < n / 2; ++k) {
            bins[2 * k] = pack[2 * k - 1];
            bins[2 * k + 1] = pack[2 * k];
        }
        bins[n] = pack[n - 1];
        const double er = relError(bins.data(), wantR, n / 2 + 1);
        std::vector<float> rin(x.begin(), x.begin() + n), rout(n + 2);
        fftwf_plan pr = fftwf_plan_dft_r2c_1d(int(n), rin.data(), reinterpret_cast<fftwf_complex*>(rout.data()),
                                              FFTW_ESTIMATE);
        fftwf_execute(pr);
        fftwf_destroy_plan(pr);
        const double fr = relError(rout.data(), wantR, n / 2 + 1);

        std::printf("| %d | %.3g | %.3g | %.2f | %.3g | %.3g | %.2f |\n", order, ec, fc, ec / fc, er, fr, er / fr);
        worst = std::max(worst, std::max(ec / fc, er / fr));
    }
    std::printf("\nworst ratio %.2f (at most 2 wanted)\n", worst);
    return worst <= 2 ? 0 : 1;
}
