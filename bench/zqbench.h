// Shared set-up of the benchmarks. Each workload is registered as
// "<Workload>/zeqcv" and, when a peer is installed, "<Workload>/opencv" or
// "<Workload>/fftw"; bench/ratios.py pairs them up.
#ifndef ZQBENCH_H
#define ZQBENCH_H

#include "zeqcv.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <random>
#include <vector>

#ifdef ZQ_HAVE_OPENCV
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#endif

namespace zqb {

constexpr int kWidth = 1920, kHeight = 1080;

// A full-HD frame of random values in [lo, hi], rows contiguous.
template <class T>
std::vector<T> randomFrame(uint32_t seed, double lo, double hi, int w = kWidth, int h = kHeight) {
    std::mt19937 gen(seed);
    std::uniform_real_distribution<double> dist(lo, hi);
    std::vector<T> v(size_t(w) * h);
    for (auto& x : v) x = T(dist(gen));
    return v;
}

// Bytes processed per iteration, so the report shows throughput too.
inline void setBytes(benchmark::State& st, int64_t bytesPerIteration) {
    st.SetBytesProcessed(int64_t(st.iterations()) * bytesPerIteration);
}

#ifdef ZQ_HAVE_OPENCV
// Peers run single-threaded, as zeqcv does.
struct OpenCvSingleThread {
    OpenCvSingleThread() { cv::setNumThreads(1); }
};
inline const OpenCvSingleThread kOpenCvSingleThread;
#endif

}  // namespace zqb

#endif
