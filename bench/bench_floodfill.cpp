#include "zqbench.h"

#include <cstring>

namespace {

constexpr int W = zqb::kWidth, H = zqb::kHeight;

// A winding corridor: every fourth row open, joined at alternate ends, walls
// of 0 between. Its floor is 100 for the plain fill and ramps through
// 100..103 for the gradient fill.
std::vector<Zeq8u> corridor(bool ramp) {
    std::vector<Zeq8u> v(size_t(W) * H, 0);
    for (int y = 0; y < H; y += 4) {
        for (int x = 0; x < W; ++x) v[size_t(y) * W + x] = Zeq8u(ramp ? 100 + (x / 7 + y) % 4 : 100);
        const int x = (y / 4) % 2 ? 0 : W - 1;
        for (int k = 1; k < 4 && y + k < H; ++k) v[size_t(y + k) * W + x] = 100;
    }
    return v;
}

// Each iteration restores the frame first, on both sides alike.
void fill_zeqcv(benchmark::State& st, bool gradient) {
    const auto frame = corridor(gradient);
    auto img = frame;
    int size = 0;
    (gradient ? zeqiFloodFillGetSize_Grad : zeqiFloodFillGetSize)({W, H}, &size);
    std::vector<Zeq8u> buf(static_cast<size_t>(size));
    ZeqiConnectedComp r;
    for (auto _ : st) {
        std::memcpy(img.data(), frame.data(), frame.size());
        if (gradient) zeqiFloodFill_Grad4Con_8u_C1IR(img.data(), W, {W, H}, {0, 0}, 7, 3, 3, &r, buf.data());
        else zeqiFloodFill_4Con_8u_C1IR(img.data(), W, {W, H}, {0, 0}, 7, &r, buf.data());
        benchmark::DoNotOptimize(img.data());
    }
}
void FloodFill4_zeqcv(benchmark::State& st) { fill_zeqcv(st, false); }
void FloodFillGrad4_zeqcv(benchmark::State& st) { fill_zeqcv(st, true); }
BENCHMARK(FloodFill4_zeqcv)->Name("FloodFill_4Con_8u/zeqcv");
BENCHMARK(FloodFillGrad4_zeqcv)->Name("FloodFill_Grad4Con_8u/zeqcv");

#ifdef ZQ_HAVE_OPENCV
void fill_opencv(benchmark::State& st, bool gradient) {
    auto frame = corridor(gradient);
    auto img = frame;
    cv::Mat m(H, W, CV_8U, img.data());
    for (auto _ : st) {
        std::memcpy(img.data(), frame.data(), frame.size());
        if (gradient) cv::floodFill(m, cv::Point(0, 0), cv::Scalar(7), nullptr, cv::Scalar(3), cv::Scalar(3), 4);
        else cv::floodFill(m, cv::Point(0, 0), cv::Scalar(7), nullptr, cv::Scalar(), cv::Scalar(), 4);
        benchmark::DoNotOptimize(img.data());
    }
}
void FloodFill4_opencv(benchmark::State& st) { fill_opencv(st, false); }
void FloodFillGrad4_opencv(benchmark::State& st) { fill_opencv(st, true); }
BENCHMARK(FloodFill4_opencv)->Name("FloodFill_4Con_8u/opencv");
BENCHMARK(FloodFillGrad4_opencv)->Name("FloodFill_Grad4Con_8u/opencv");
#endif

}  // namespace
