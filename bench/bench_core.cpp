// Copy and conversion to float of a full-HD frame, with contiguous rows and
// with padded rows. Both implementations work on the very same buffers, so
// neither gains from where its memory happens to lie.
#include "zqbench.h"

namespace {

constexpr int kW = zqb::kWidth, kH = zqb::kHeight;
constexpr int kPadded8u = kW + 64, kPadded32f = 4 * kW + 64;  // a region of a wider image

// Source and destination images, allocated once per layout.
struct Buffers {
    int srcStep, dstStep;
    Zeq8u* src;
    Zeq8u* dst;
    Buffers(int s, int d) : srcStep(s), dstStep(d), src(zeqsMalloc_8u(s * kH)), dst(zeqsMalloc_8u(d * kH)) {
        auto v = zqb::randomFrame<Zeq8u>(1, 0, 255, s, kH);
        std::copy(v.begin(), v.end(), src);
    }
};

template <int SrcStep, int DstStep>
Buffers& buffers() {
    static Buffers b(SrcStep, DstStep);
    return b;
}

template <int SrcStep>
void Copy_8u_zeqcv(benchmark::State& st) {
    auto& b = buffers<SrcStep, SrcStep>();
    for (auto _ : st) {
        zeqiCopy_8u_C1R(b.src, SrcStep, b.dst, SrcStep, {kW, kH});
        benchmark::DoNotOptimize(b.dst);
    }
    zqb::setBytes(st, 2LL * kW * kH);
}

template <int SrcStep, int DstStep>
void Convert_8u32f_zeqcv(benchmark::State& st) {
    auto& b = buffers<SrcStep, DstStep>();
    for (auto _ : st) {
        zeqiConvert_8u32f_C1R(b.src, SrcStep, reinterpret_cast<Zeq32f*>(b.dst), DstStep, {kW, kH});
        benchmark::DoNotOptimize(b.dst);
    }
    zqb::setBytes(st, 5LL * kW * kH);
}

#ifdef ZQ_HAVE_OPENCV
template <int SrcStep>
void Copy_8u_opencv(benchmark::State& st) {
    auto& b = buffers<SrcStep, SrcStep>();
    cv::Mat s(kH, kW, CV_8U, b.src, SrcStep), d(kH, kW, CV_8U, b.dst, SrcStep);
    for (auto _ : st) {
        s.copyTo(d);
        benchmark::DoNotOptimize(d.data);
    }
    zqb::setBytes(st, 2LL * kW * kH);
}

template <int SrcStep, int DstStep>
void Convert_8u32f_opencv(benchmark::State& st) {
    auto& b = buffers<SrcStep, DstStep>();
    cv::Mat s(kH, kW, CV_8U, b.src, SrcStep), d(kH, kW, CV_32F, b.dst, DstStep);
    for (auto _ : st) {
        s.convertTo(d, CV_32F);
        benchmark::DoNotOptimize(d.data);
    }
    zqb::setBytes(st, 5LL * kW * kH);
}
#endif

BENCHMARK(Copy_8u_zeqcv<kW>)->Name("Copy_8u/zeqcv");
BENCHMARK(Convert_8u32f_zeqcv<kW, 4 * kW>)->Name("Convert_8u32f/zeqcv");
BENCHMARK(Copy_8u_zeqcv<kPadded8u>)->Name("Copy_8u_Padded/zeqcv");
BENCHMARK(Convert_8u32f_zeqcv<kPadded8u, kPadded32f>)->Name("Convert_8u32f_Padded/zeqcv");
#ifdef ZQ_HAVE_OPENCV
BENCHMARK(Copy_8u_opencv<kW>)->Name("Copy_8u/opencv");
BENCHMARK(Convert_8u32f_opencv<kW, 4 * kW>)->Name("Convert_8u32f/opencv");
BENCHMARK(Copy_8u_opencv<kPadded8u>)->Name("Copy_8u_Padded/opencv");
BENCHMARK(Convert_8u32f_opencv<kPadded8u, kPadded32f>)->Name("Convert_8u32f_Padded/opencv");
#endif

}  // namespace
