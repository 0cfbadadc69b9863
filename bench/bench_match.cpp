// Template matching of a 16x16 and a 64x64 template over a 1280x720 8-bit
// frame. The normalised methods run single-threaded on both sides; the
// un-normalised ones, which zeqcv runs in OpenMP threads, with 1 and with 2
// threads on both sides (wall-clock time).
#include "zqbench.h"

#include <omp.h>

#include <cstdio>

namespace {

constexpr int W = 1280, H = 720;

using MatchFn = ZeqStatus (*)(const Zeq8u*, int, ZeqiSize, const Zeq8u*, int, ZeqiSize, Zeq32f*, int);

struct Method {
    const char* name;
    MatchFn zeqcv;
    int opencv;  // cv::TemplateMatchModes
    bool threaded;
};

#ifdef ZQ_HAVE_OPENCV
#define ZQB_CV(mode) cv::mode
#else
#define ZQB_CV(mode) 0
#endif

const Method kMethods[] = {
    {"CorrNormed", zeqiMatchTemplate_CorrNormed_8u32f_C1R, ZQB_CV(TM_CCORR_NORMED), false},
    {"CoeffNormed", zeqiMatchTemplate_CoeffNormed_8u32f_C1R, ZQB_CV(TM_CCOEFF_NORMED), false},
    {"SqDiffNormed", zeqiMatchTemplate_SqDiffNormed_8u32f_C1R, ZQB_CV(TM_SQDIFF_NORMED), false},
    {"Corr", zeqiMatchTemplate_Corr_8u32f_C1R, ZQB_CV(TM_CCORR), true},
    {"Coeff", zeqiMatchTemplate_Coeff_8u32f_C1R, ZQB_CV(TM_CCOEFF), true},
    {"SqDiff", zeqiMatchTemplate_SqDiff_8u32f_C1R, ZQB_CV(TM_SQDIFF), true},
};

// The frame, and the template cut from it at (300, 200).
struct Frame {
    std::vector<Zeq8u> src = zqb::randomFrame<Zeq8u>(1, 0, 255, W, H);
    std::vector<Zeq8u> tpl;
    explicit Frame(int t) {
        for (int y = 0; y < t; ++y)
            tpl.insert(tpl.end(), src.begin() + (200 + y) * W + 300, src.begin() + (200 + y) * W + 300 + t);
    }
};

void Match_zeqcv(benchmark::State& st, const Method* m, int t, int threads) {
    const Frame f(t);
    const int rw = W - t + 1, rh = H - t + 1;
    std::vector<Zeq32f> dst(size_t(rw) * rh);
    const int saved = omp_get_max_threads();
    omp_set_num_threads(threads);
    for (auto _ : st) {
        m->zeqcv(f.src.data(), W, {W, H}, f.tpl.data(), t, {t, t}, dst.data(), 4 * rw);
        benchmark::DoNotOptimize(dst.data());
    }
    omp_set_num_threads(saved);
    zqb::setBytes(st, int64_t(W) * H);
}

#ifdef ZQ_HAVE_OPENCV
void Match_opencv(benchmark::State& st, const Method* m, int t, int threads) {
    const Frame f(t);
    const cv::Mat src(H, W, CV_8U, const_cast<Zeq8u*>(f.src.data()));
    const cv::Mat tpl(t, t, CV_8U, const_cast<Zeq8u*>(f.tpl.data()));
    cv::Mat dst;
    cv::setNumThreads(threads);
    for (auto _ : st) {
        cv::matchTemplate(src, tpl, dst, m->opencv);
        benchmark::DoNotOptimize(dst.data);
    }
    cv::setNumThreads(1);
    zqb::setBytes(st, int64_t(W) * H);
}
#endif

const bool kRegistered = [] {
    for (const Method& m : kMethods) {
        for (int t : {16, 64}) {
            for (int threads : {1, 2}) {
                if (threads == 2 && !m.threaded) continue;
                char name[64];
                std::snprintf(name, sizeof(name), "Match%s_8u_%dx%d%s", m.name, t, t,
                              m.threaded ? (threads == 1 ? "_1T" : "_2T") : "");
                const std::string base = name;
                benchmark::RegisterBenchmark((base + "/zeqcv").c_str(), Match_zeqcv, &m, t, threads)
                    ->Unit(benchmark::kMicrosecond)
                    ->UseRealTime();
#ifdef ZQ_HAVE_OPENCV
                benchmark::RegisterBenchmark((base + "/opencv").c_str(), Match_opencv, &m, t, threads)
                    ->Unit(benchmark::kMicrosecond)
                    ->UseRealTime();
#endif
            }
        }
    }
    return true;
}();

}  // namespace
