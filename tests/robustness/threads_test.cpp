// The families with work buffers, states, specifications or internal
// threads, called from 16 threads at once on inputs the threads share
// read-only and on private copies, give the single-threaded bits. States
// (convolution, morphology) are per call; the FFT specifications are shared,
// since callers keep one per size and use it from every thread.
#include "zqtest.h"

#include <algorithm>
#include <atomic>
#include <functional>
#include <string>
#include <thread>

namespace {

constexpr int W = 83, H = 47;
constexpr ZeqiSize kRoi{W, H};
constexpr int kPad8 = 5, kPad32 = 12;

// Rows a few bytes longer than the region, so steps and rows differ.
struct Inputs {
    zqt::Image<Zeq8u> img8{W, H, 1, kPad8};
    zqt::Image<float> img32{W, H, 1, kPad32};
    const Zeq8u* p8() const { return img8.ptr(); }
    const Zeq32f* p32() const { return img32.ptr(); }
};

struct Specs {
    ZeqsFFTSpec_R_32f* fft1 = nullptr;
    ZeqiFFTSpec_R_32f* fft2 = nullptr;
    Specs() {
        zeqsFFTInitAlloc_R_32f(&fft1, 7, zeqFftScaleInvByN, zeqAlgHintNone);
        zeqiFFTInitAlloc_R_32f(&fft2, 5, 4, zeqFftScaleInvByN, zeqAlgHintNone);
    }
    ~Specs() {
        zeqsFFTFree_R_32f(fft1);
        zeqiFFTFree_R_32f(fft2);
    }
};

// One call (or a short chain) per family; the result is every byte written
// plus the statuses, so any difference between runs shows.
struct Out {
    std::vector<std::vector<uint8_t>> blocks;  // moving a block keeps its bytes in place
    template <class T>
    T* take(size_t count) {
        blocks.emplace_back(count * sizeof(T), 0);
        return reinterpret_cast<T*>(blocks.back().data());
    }
    std::vector<ZeqStatus> statuses;
    void status(ZeqStatus s) { statuses.push_back(s); }
    bool operator!=(const Out& o) const { return blocks != o.blocks || statuses != o.statuses; }
};
using Job = std::function<void(const Inputs&, const Specs&, Out&)>;

const std::vector<std::pair<std::string, Job>>& jobs() {
    static const std::vector<std::pair<std::string, Job>> all = {
        {"derivatives+canny", [](const Inputs& in, const Specs&, Out& o) {
             int size = 0;
             zeqiCannyGetSize(kRoi, &size);
             Zeq16s* dx = o.take<Zeq16s>(W * H);
             Zeq16s* dy = o.take<Zeq16s>(W * H);
             Zeq8u* edges = o.take<Zeq8u>(W * H);
             o.status(zeqiSobel3x3_Dx_8u16s_C1R(in.p8(), in.img8.step(), dx, 2 * W, kRoi));
             o.status(zeqiSobel3x3_Dy_8u16s_C1R(in.p8(), in.img8.step(), dy, 2 * W, 0, kRoi));
             std::vector<Zeq8u> work(static_cast<size_t>(size));
             o.status(zeqiCanny_16s8u_C1R(dx, 2 * W, dy, 2 * W, edges, W, kRoi, 40.f, 120.f, work.data()));
         }},
        {"state filter", [](const Inputs& in, const Specs&, Out& o) {
             Zeq16s* d = o.take<Zeq16s>(W * H);
             ZeqiConvState* st = nullptr;
             o.status(zeqiSobelInitAlloc(W, zeq8u, 5, 0, 1, 1, &st));
             ZeqiSize roi = kRoi;
             o.status(zeqiSobel_8u16s_C1R(in.p8(), in.img8.step(), d, 2 * W, &roi, st, 0));
             o.status(zeqiConvolFree(st));
         }},
        {"corners", [](const Inputs& in, const Specs&, Out& o) {
             int size = 0;
             zeqiMinEigenValGetSize(W, 3, 5, &size);
             Zeq32f* d = o.take<Zeq32f>(W * H);
             std::vector<Zeq8u> work(static_cast<size_t>(size));
             o.status(zeqiMinEigenVal_8u32f_C1R(in.p8(), in.img8.step(), d, 4 * W, kRoi, 3, 5, work.data()));
         }},
        {"pyramid", [](const Inputs& in, const Specs&, Out& o) {
             int size = 0;
             zeqiPyrDownGetBufSize_Gauss5x5(W, zeq8u, 1, &size);
             Zeq8u* d = o.take<Zeq8u>(W * H);
             std::vector<Zeq8u> work(static_cast<size_t>(size));
             o.status(zeqiPyrDown_Gauss5x5_8u_C1R(in.p8(), in.img8.step(), d, W, kRoi, work.data()));
         }},
        {"flood fill", [](const Inputs& in, const Specs&, Out& o) {
             int size = 0;
             zeqiFloodFillGetSize_Grad(kRoi, &size);
             Zeq8u* img = o.take<Zeq8u>(W * H);
             ZeqiConnectedComp* region = o.take<ZeqiConnectedComp>(1);
             zeqiCopy_8u_C1R(in.p8(), in.img8.step(), img, W, kRoi);
             std::vector<Zeq8u> work(static_cast<size_t>(size));
             o.status(zeqiFloodFill_Grad4Con_8u_C1IR(img, W, kRoi, {W / 2, H / 2}, 7, 30, 30, region, work.data()));
         }},
        {"morphology", [](const Inputs& in, const Specs&, Out& o) {
             Zeq8u* d = o.take<Zeq8u>(W * H);
             Zeq8u* m = o.take<Zeq8u>(W * H);
             ZeqiMorphState* st = nullptr;
             o.status(zeqiMorphologyInitAlloc(W, zeq8u, 1, {5, 5}, {2, 1}, 2, nullptr, &st));
             ZeqiSize roi = kRoi;
             o.status(zeqiDilateStrip_8u_C1R(in.p8(), in.img8.step(), d, W, &roi, st, 0));
             o.status(zeqiMorphologyFree(st));
             o.status(zeqiFilterMax_8u_C1R(in.img8.addr(2, 2), in.img8.step(), m, W, {W - 4, H - 4}, {5, 5}, {2, 2}));
         }},
        {"fft", [](const Inputs& in, const Specs& s, Out& o) {
             Zeq32f* d1 = o.take<Zeq32f>(128);
             Zeq32f* d2 = o.take<Zeq32f>(32 * 16);
             o.status(zeqsFFTFwd_RToPack_32f(in.p32(), d1, s.fft1, nullptr));
             o.status(zeqiFFTFwd_RToPack_32f_C1R(in.p32(), in.img32.step(), d2, 128, s.fft2, nullptr));
             o.status(zeqiMulPack_32f_C1IR(in.p32(), in.img32.step(), d2, 128, {32, 16}));
         }},
        {"matching", [](const Inputs& in, const Specs&, Out& o) {
             const ZeqiSize tpl{9, 7};
             const Zeq8u* t = in.img8.addr(30, 20);
             Zeq32f* a = o.take<Zeq32f>(W * H);
             Zeq32f* b = o.take<Zeq32f>(W * H);
             o.status(zeqiCrossCorrValid_Norm_8u32f_C1R(in.p8(), in.img8.step(), kRoi, t, in.img8.step(), tpl, a, 4 * W));
             o.status(zeqiSqrDistanceValid_8u32f_C1R(in.p8(), in.img8.step(), kRoi, t, in.img8.step(), tpl, b, 4 * W));
         }},
    };
    return all;
}

TEST(Threads, SixteenThreadsGiveTheSingleThreadedBits) {
    Inputs shared;
    zqt::Rng rng(77);
    shared.img8.fillRandom(rng);
    shared.img32.fill([&](int, int, int) { return rng.uniformf(-300.f, 300.f); });
    const Specs specs;
    ASSERT_TRUE(specs.fft1 && specs.fft2);
    const auto& all = jobs();
    std::vector<Out> expected;
    for (const auto& j : all) {
        Out o;
        j.second(shared, specs, o);
        for (ZeqStatus s : o.statuses) EXPECT_EQ(s, zeqStsOk) << j.first;
        expected.push_back(o);
    }

    constexpr int kThreads = 16;
    std::atomic<int> ready{0};
    std::vector<std::vector<std::string>> failures(kThreads);
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([&, t] {
            const Inputs own = shared;
            ready.fetch_add(1);
            while (ready.load() < kThreads) std::this_thread::yield();
            // Each thread starts at another family, so different families overlap too.
            for (size_t k = 0; k < 2 * all.size(); ++k) {
                const size_t i = (k + size_t(t)) % all.size();
                Out o;
                all[i].second(k < all.size() ? shared : own, specs, o);
                if (o != expected[i]) failures[t].push_back(all[i].first);
            }
        });
    }
    for (auto& th : threads) th.join();
    for (int t = 0; t < kThreads; ++t)
        for (const auto& f : failures[t]) ADD_FAILURE() << "thread " << t << ": " << f;
}

}  // namespace
