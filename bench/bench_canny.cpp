#include "zqbench.h"

#include <algorithm>
#include <cmath>

namespace {

// Thresholds on the L1 magnitude of 3x3 Sobel derivatives of the frame below;
// they mark about 5% of the pixels as edges, as in a busy natural scene.
constexpr float kLow = 80.0f, kHigh = 200.0f;

// A smooth synthetic scene (overlapping discs and soft gradients) with mild
// noise, and its 3x3 Sobel derivatives computed once.
struct Derivatives {
    std::vector<Zeq16s> dx, dy;
};

const Derivatives& derivatives() {
    static const Derivatives d = [] {
        const int w = zqb::kWidth, h = zqb::kHeight;
        std::vector<float> img(size_t(w) * h);
        std::mt19937 gen(17);
        std::uniform_real_distribution<float> pos(0.0f, 1.0f);
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x)
                img[size_t(y) * w + x] = 60.0f + 40.0f * std::sin(float(x) * 0.004f) * std::cos(float(y) * 0.006f);
        for (int k = 0; k < 600; ++k) {
            const float cx = pos(gen) * float(w), cy = pos(gen) * float(h), r = 6.0f + pos(gen) * 70.0f;
            const float level = pos(gen) * 120.0f - 40.0f;
            for (int y = std::max(0, int(cy - r)); y < std::min(h, int(cy + r) + 1); ++y)
                for (int x = std::max(0, int(cx - r)); x < std::min(w, int(cx + r) + 1); ++x)
                    if ((float(x) - cx) * (float(x) - cx) + (float(y) - cy) * (float(y) - cy) < r * r)
                        img[size_t(y) * w + x] += level;
        }
        std::normal_distribution<float> noise(0.0f, 6.0f);
        std::vector<Zeq8u> src(img.size());
        for (size_t i = 0; i < img.size(); ++i) src[i] = Zeq8u(std::clamp(img[i] + noise(gen), 0.0f, 255.0f));
        // Sobel 3x3 with replicated borders, written out here so the zeqcv side
        // needs no peer to build its input.
        Derivatives out{std::vector<Zeq16s>(src.size()), std::vector<Zeq16s>(src.size())};
        auto at = [&](int x, int y) {
            return int(src[size_t(std::clamp(y, 0, h - 1)) * w + std::clamp(x, 0, w - 1)]);
        };
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x) {
                out.dx[size_t(y) * w + x] = Zeq16s(at(x + 1, y - 1) + 2 * at(x + 1, y) + at(x + 1, y + 1) -
                                                   at(x - 1, y - 1) - 2 * at(x - 1, y) - at(x - 1, y + 1));
                out.dy[size_t(y) * w + x] = Zeq16s(at(x - 1, y + 1) + 2 * at(x, y + 1) + at(x + 1, y + 1) -
                                                   at(x - 1, y - 1) - 2 * at(x, y - 1) - at(x + 1, y - 1));
            }
        return out;
    }();
    return d;
}

// Higher thresholds on the same frame keep only the discs' strongest rims,
// well under 1% of the pixels: a sparse scene, where the fixed per-pixel
// stages dominate.
constexpr float kSparseLow = 300.0f, kSparseHigh = 600.0f;

void Canny_16s8u_zeqcv(benchmark::State& st, float low, float high) {
    const auto& d = derivatives();
    const int w = zqb::kWidth, h = zqb::kHeight;
    int size = 0;
    zeqiCannyGetSize({w, h}, &size);
    Zeq8u* buffer = zeqsMalloc_8u(size);
    std::vector<Zeq8u> edges(size_t(w) * h);
    for (auto _ : st) {
        zeqiCanny_16s8u_C1R(d.dx.data(), 2 * w, d.dy.data(), 2 * w, edges.data(), w, {w, h}, low, high, buffer);
        benchmark::DoNotOptimize(edges.data());
    }
    zeqsFree(buffer);
    int n = 0;
    for (Zeq8u e : edges) n += e != 0;
    st.counters["edge%"] = 100.0 * n / double(edges.size());
    zqb::setBytes(st, 5LL * w * h);
}
BENCHMARK_CAPTURE(Canny_16s8u_zeqcv, busy, kLow, kHigh)->Name("Canny_16s8u/zeqcv")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Canny_16s8u_zeqcv, sparse, kSparseLow, kSparseHigh)
    ->Name("Canny_16s8u_sparse/zeqcv")
    ->Unit(benchmark::kMillisecond);

#ifdef ZQ_HAVE_OPENCV
void Canny_16s8u_opencv(benchmark::State& st, float low, float high) {
    const auto& d = derivatives();
    const int w = zqb::kWidth, h = zqb::kHeight;
    const cv::Mat dx(h, w, CV_16S, const_cast<Zeq16s*>(d.dx.data()));
    const cv::Mat dy(h, w, CV_16S, const_cast<Zeq16s*>(d.dy.data()));
    cv::Mat edges;
    for (auto _ : st) {
        cv::Canny(dx, dy, edges, low, high, false);
        benchmark::DoNotOptimize(edges.data);
    }
    st.counters["edge%"] = 100.0 * cv::countNonZero(edges) / double(edges.total());
    zqb::setBytes(st, 5LL * w * h);
}
BENCHMARK_CAPTURE(Canny_16s8u_opencv, busy, kLow, kHigh)->Name("Canny_16s8u/opencv")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Canny_16s8u_opencv, sparse, kSparseLow, kSparseHigh)
    ->Name("Canny_16s8u_sparse/opencv")
    ->Unit(benchmark::kMillisecond);
#endif

}  // namespace
