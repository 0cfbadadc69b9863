// A libFuzzer target: the input picks an entry of the table below and the
// sizes, steps, parameters and pixels of its call. Every image lives at the
// end of its own mapping, right before an inaccessible page, so a read or
// write past it faults. After the call:
//   - an error status means nothing was written, not a byte;
//   - success means nothing outside the image's region was written (the
//     padding between rows included).
// Work buffers and states are not checked: they are the library's to write.
#include "zeqcv.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <memory>
#include <vector>

namespace {

class Input {
public:
    Input(const uint8_t* p, size_t n) : p_(p), n_(n) {}
    uint8_t byte() { return i_ < n_ ? p_[i_++] : 0; }
    int range(int lo, int hi) { return lo + int(byte() % unsigned(hi - lo + 1)); }
    bool chance(int outOf) { return byte() % outOf == 0; }
    float value() { return float(int(byte()) - 128) * 0.75f; }

private:
    const uint8_t* p_;
    size_t n_, i_ = 0;
};

// `len` bytes that end where an inaccessible page begins.
class Guarded {
public:
    explicit Guarded(size_t len) : len_(len) {
        const size_t page = size_t(sysconf(_SC_PAGESIZE));
        map_ = (len + page - 1) / page * page + page;
        base_ = static_cast<uint8_t*>(mmap(nullptr, map_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
        if (base_ == MAP_FAILED) abort();
        mprotect(base_ + map_ - page, page, PROT_NONE);
        data_ = base_ + map_ - page - len;
    }
    ~Guarded() { munmap(base_, map_); }
    Guarded(const Guarded&) = delete;
    Guarded& operator=(const Guarded&) = delete;
    uint8_t* data() { return data_; }
    size_t size() const { return len_; }

private:
    size_t len_, map_;
    uint8_t* base_;
    uint8_t* data_;
};

// An image of w x h pixels of `bpp` bytes, rows `step` bytes apart, filled
// from the input. Sizes and steps may be illegal: then the library must
// refuse, and write nothing.
struct Image {
    int w, h, bpp, step;
    std::unique_ptr<Guarded> mem;
    std::vector<uint8_t> before;

    // Steps are any byte count for 8-bit pixels and for `oddSteps` (families
    // whose rows advance by the step in bytes), whole elements otherwise
    // (families that advance by step / element size elements).
    Image(Input& in, int width, int height, int bytesPerPixel, bool oddSteps = false)
        : w(width), h(height), bpp(bytesPerPixel) {
        const int row = std::max(w, 1) * bpp;
        const bool anyStep = oddSteps || bpp == 1 || bpp == 3;
        step = row + (anyStep ? in.range(0, 9) : bpp * in.range(0, 3));
        if (in.chance(16)) step = row - 1;  // too short
        const size_t rows = size_t(std::max(h, 1));
        mem = std::make_unique<Guarded>((rows - 1) * size_t(std::max(step, row)) + size_t(row));
        for (size_t i = 0; i < mem->size(); ++i) mem->data()[i] = in.byte();
        before.assign(mem->data(), mem->data() + mem->size());
    }
    template <class T = uint8_t>
    T* ptr() { return reinterpret_cast<T*>(mem->data()); }
    ZeqiSize size() const { return {w, h}; }

    // Aborts when the call broke a promise about this image.
    void verify(ZeqStatus st, const char* name) const {
        const uint8_t* now = mem->data();
        if (st < 0) {
            if (std::memcmp(now, before.data(), before.size()) != 0) fail(name, "written after an error status");
            return;
        }
        // Byte i is in the region when the last row starting at or before
        // it covers it (rows may overlap when a family takes short steps).
        const size_t row = size_t(std::max(w, 0)) * size_t(bpp);
        for (size_t i = 0; i < before.size(); ++i) {
            if (now[i] == before[i]) continue;
            const size_t y = step > 0 ? std::min(i / size_t(step), size_t(std::max(h - 1, 0))) : 0;
            if (h < 1 || i - y * size_t(std::max(step, 0)) >= row) fail(name, "written outside the region");
        }
    }
    [[noreturn]] static void fail(const char* name, const char* what) {
        std::fprintf(stderr, "zqcv_fuzz: %s: %s\n", name, what);
        abort();
    }
};

// The sizes of most calls: small, sometimes illegal.
ZeqiSize anySize(Input& in, int maxW = 40, int maxH = 20) {
    ZeqiSize s{in.range(1, maxW), in.range(1, maxH)};
    if (in.chance(24)) s.width = in.range(-2, 0);
    if (in.chance(24)) s.height = in.range(-2, 0);
    return s;
}

// A work buffer of a size query's size (the library's to write).
std::unique_ptr<Guarded> buffer(ZeqStatus st, int bytes) {
    return std::make_unique<Guarded>(st == zeqStsOk && bytes > 0 ? size_t(bytes) : 1);
}

struct Entry {
    const char* name;
    std::function<void(Input&)> run;
};

// A call on one source and one destination of the same size.
// `wholeElements`: the family advances its destination rows by whole
// elements (a step of 4n + 2 acts as 4n), so the fuzzer keeps such steps.
template <class F>
void unary(Input& in, const char* name, int srcBpp, int dstBpp, F call, bool oddSteps = false) {
    const ZeqiSize s = anySize(in);
    Image src(in, s.width, s.height, srcBpp, true), dst(in, s.width, s.height, dstBpp, oddSteps);
    const ZeqStatus st = call(src, dst, s);
    dst.verify(st, name);
    src.verify(zeqStsNullPtr, name);  // sources are never written
}

template <class F>
void matching(Input& in, const char* name, int bpp, F call) {
    const ZeqiSize s = anySize(in, 30, 16), t{in.range(1, 8), in.range(1, 6)};
    Image src(in, s.width, s.height, bpp), tpl(in, t.width, t.height, bpp);
    Image dst(in, std::max(s.width - t.width + 1, 1), std::max(s.height - t.height + 1, 1), 4);
    const ZeqStatus st = call(src, s, tpl, t, dst);
    dst.verify(st, name);
}

const std::vector<Entry>& entries() {
    static const std::vector<Entry> table = {
        {"zeqiCopy_8u_C3R", [](Input& in) { unary(in, "zeqiCopy_8u_C3R", 3, 3, [](Image& s, Image& d, ZeqiSize r) {
             return zeqiCopy_8u_C3R(s.ptr(), s.step, d.ptr(), d.step, r); }); }},
        {"zeqiCopy_32f_C1R", [](Input& in) { unary(in, "zeqiCopy_32f_C1R", 4, 4, [](Image& s, Image& d, ZeqiSize r) {
             return zeqiCopy_32f_C1R(s.ptr<Zeq32f>(), s.step, d.ptr<Zeq32f>(), d.step, r); }, true); }},
        {"zeqiAbsDiff_8u_C1R", [](Input& in) { unary(in, "zeqiAbsDiff_8u_C1R", 1, 1, [](Image& s, Image& d, ZeqiSize r) {
             return zeqiAbsDiff_8u_C1R(s.ptr(), s.step, s.ptr(), s.step, d.ptr(), d.step, r); }); }},
        {"zeqiAdd_8u32f_C1IR", [](Input& in) { unary(in, "zeqiAdd_8u32f_C1IR", 1, 4, [](Image& s, Image& d, ZeqiSize r) {
             return zeqiAdd_8u32f_C1IR(s.ptr(), s.step, d.ptr<Zeq32f>(), d.step, r); }); }},
        {"zeqiSobel3x3_Dx_8u16s_C1R", [](Input& in) { unary(in, "zeqiSobel3x3_Dx_8u16s_C1R", 1, 2, [](Image& s, Image& d, ZeqiSize r) {
             return zeqiSobel3x3_Dx_8u16s_C1R(s.ptr(), s.step, d.ptr<Zeq16s>(), d.step, r); }, true); }},
        {"zeqiSobel3x3_Dy_32f_C1R", [](Input& in) { const int o = in.range(0, 2);
             unary(in, "zeqiSobel3x3_Dy_32f_C1R", 4, 4, [o](Image& s, Image& d, ZeqiSize r) {
             return zeqiSobel3x3_Dy_32f_C1R(s.ptr<Zeq32f>(), s.step, d.ptr<Zeq32f>(), d.step, o, r); }, true); }},
        {"zeqiCanny_16s8u_C1R", [](Input& in) {
             const ZeqiSize s = anySize(in);
             Image dx(in, s.width, s.height, 2), dy(in, s.width, s.height, 2), dst(in, s.width, s.height, 1);
             int bytes = 0;
             auto buf = buffer(zeqiCannyGetSize(s, &bytes), bytes);
             const ZeqStatus st = zeqiCanny_16s8u_C1R(dx.ptr<Zeq16s>(), dx.step, dy.ptr<Zeq16s>(), dy.step, dst.ptr(),
                                                      dst.step, s, float(in.range(-1, 300)), float(in.range(0, 900)), buf->data());
             dst.verify(st, "zeqiCanny_16s8u_C1R"); }},
        {"zeqiPyrDown_Gauss5x5_8u_C1R", [](Input& in) {
             const ZeqiSize s = anySize(in);
             Image src(in, s.width, s.height, 1), dst(in, (s.width + 1) / 2, (s.height + 1) / 2, 1);
             int bytes = 0;
             auto buf = buffer(zeqiPyrDownGetBufSize_Gauss5x5(s.width, zeq8u, 1, &bytes), bytes);
             const ZeqStatus st = zeqiPyrDown_Gauss5x5_8u_C1R(src.ptr(), src.step, dst.ptr(), dst.step, s, buf->data());
             dst.verify(st, "zeqiPyrDown_Gauss5x5_8u_C1R"); }},
        {"zeqiPyrUp_Gauss5x5_8u_C3R", [](Input& in) {
             const ZeqiSize s = anySize(in, 20, 10);
             Image src(in, s.width, s.height, 3), dst(in, 2 * s.width, 2 * s.height, 3);
             int bytes = 0;
             auto buf = buffer(zeqiPyrUpGetBufSize_Gauss5x5(s.width, zeq8u, 3, &bytes), bytes);
             const ZeqStatus st = zeqiPyrUp_Gauss5x5_8u_C3R(src.ptr(), src.step, dst.ptr(), dst.step, s, buf->data());
             dst.verify(st, "zeqiPyrUp_Gauss5x5_8u_C3R"); }},
        {"zeqiDistanceTransform_3x3_8u32f_C1R", [](Input& in) {
             const float metrics[2] = {in.value(), in.value()};
             unary(in, "zeqiDistanceTransform_3x3_8u32f_C1R", 1, 4, [&](Image& s, Image& d, ZeqiSize r) {
                 return zeqiDistanceTransform_3x3_8u32f_C1R(s.ptr(), s.step, d.ptr<Zeq32f>(), d.step, r, metrics); }); }},
        {"zeqiFloodFill_4Con_8u_C1IR", [](Input& in) {
             // Height 1 reads (and may fill) the row above the region, as
             // documented: the fuzzer keeps to two rows or more.
             const ZeqiSize s{in.range(1, 40), in.range(2, 20)};
             Image img(in, s.width, s.height, 1);
             int bytes = 0;
             auto buf = buffer(zeqiFloodFillGetSize(s, &bytes), bytes);
             ZeqiConnectedComp region;
             const ZeqStatus st = zeqiFloodFill_4Con_8u_C1IR(img.ptr(), img.step, s, {in.range(-1, 40), in.range(-1, 20)},
                                                             in.range(0, 300), &region, buf->data());
             img.verify(st, "zeqiFloodFill_4Con_8u_C1IR"); }},
        {"zeqiFloodFill_Grad4Con_8u_C1IR", [](Input& in) {
             const ZeqiSize s = anySize(in);
             Image img(in, s.width, s.height, 1);
             int bytes = 0;
             auto buf = buffer(zeqiFloodFillGetSize_Grad(s, &bytes), bytes);
             ZeqiConnectedComp region;
             const ZeqStatus st = zeqiFloodFill_Grad4Con_8u_C1IR(img.ptr(), img.step, s, {in.range(0, 40), in.range(0, 20)},
                                                                 in.range(0, 255), in.range(-1, 40), in.range(0, 40),
                                                                 &region, buf->data());
             img.verify(st, "zeqiFloodFill_Grad4Con_8u_C1IR"); }},
        {"zeqiFilterMax_8u_C1R", [](Input& in) {
             const ZeqiSize s = anySize(in), m{in.range(1, 5), in.range(1, 5)};
             const ZeqiPoint a{in.range(0, m.width - 1), in.range(0, m.height - 1)};
             Image src(in, std::max(s.width, 1) + m.width - 1, std::max(s.height, 1) + m.height - 1, 1, false);
             Image dst(in, s.width, s.height, 1);
             const ZeqStatus st = zeqiFilterMax_8u_C1R(src.ptr() + ptrdiff_t(a.y) * src.step + a.x, src.step, dst.ptr(),
                                                       dst.step, s, m, a);
             dst.verify(st, "zeqiFilterMax_8u_C1R"); }},
        {"zeqiDilateStrip_Rect_8u_C1R", [](Input& in) {
             const ZeqiSize s = anySize(in), m{in.range(1, 5), in.range(1, 5)};
             ZeqiMorphState* state = nullptr;
             if (zeqiMorphologyInitAlloc(std::max(s.width, 1), zeq8u, 1, m, {m.width / 2, m.height / 2}, 0, nullptr, &state) != zeqStsOk) return;
             Image src(in, s.width, s.height, 1), dst(in, s.width, s.height, 1);
             ZeqiSize roi = s;
             const ZeqStatus st = zeqiDilateStrip_Rect_8u_C1R(src.ptr(), src.step, dst.ptr(), dst.step, &roi, state, 0);
             dst.verify(st, "zeqiDilateStrip_Rect_8u_C1R");
             zeqiMorphologyFree(state); }},
        {"zeqiUpdateMotionHistory_8u32f_C1IR", [](Input& in) {
             const float ts = in.value(), dur = in.value();
             unary(in, "zeqiUpdateMotionHistory_8u32f_C1IR", 1, 4, [&](Image& s, Image& d, ZeqiSize r) {
                 return zeqiUpdateMotionHistory_8u32f_C1IR(s.ptr(), s.step, d.ptr<Zeq32f>(), d.step, r, ts, dur); }); }},
        {"zeqiSampleLine_8u_C1R", [](Input& in) {
             const ZeqiSize s = anySize(in);
             const ZeqiPoint p1{in.range(-1, 40), in.range(-1, 20)}, p2{in.range(-1, 40), in.range(-1, 20)};
             Image src(in, s.width, s.height, 1);
             Image dst(in, std::max(std::abs(p2.x - p1.x), std::abs(p2.y - p1.y)) + 1, 1, 1);
             const ZeqStatus st = zeqiSampleLine_8u_C1R(src.ptr(), src.step, s, dst.ptr(), p1, p2);
             dst.verify(st, "zeqiSampleLine_8u_C1R"); }},
        {"zeqiCrossCorrValid_8u32f_C1R", [](Input& in) {
             matching(in, "zeqiCrossCorrValid_8u32f_C1R", 1, [](Image& s, ZeqiSize ss, Image& t, ZeqiSize ts, Image& d) {
                 return zeqiCrossCorrValid_8u32f_C1R(s.ptr(), s.step, ss, t.ptr(), t.step, ts, d.ptr<Zeq32f>(), d.step); }); }},
        {"zeqiSqrDistanceValid_Norm_8u32f_C1R", [](Input& in) {
             matching(in, "zeqiSqrDistanceValid_Norm_8u32f_C1R", 1, [](Image& s, ZeqiSize ss, Image& t, ZeqiSize ts, Image& d) {
                 return zeqiSqrDistanceValid_Norm_8u32f_C1R(s.ptr(), s.step, ss, t.ptr(), t.step, ts, d.ptr<Zeq32f>(), d.step); }); }},
        {"zeqiMatchTemplate_CoeffNormed_32f_C1R", [](Input& in) {
             matching(in, "zeqiMatchTemplate_CoeffNormed_32f_C1R", 4, [](Image& s, ZeqiSize ss, Image& t, ZeqiSize ts, Image& d) {
                 return zeqiMatchTemplate_CoeffNormed_32f_C1R(s.ptr<Zeq32f>(), s.step, ss, t.ptr<Zeq32f>(), t.step, ts,
                                                              d.ptr<Zeq32f>(), d.step); }); }},
        {"zeqiSobel_8u16s_C1R", [](Input& in) {
             const ZeqiSize s = anySize(in);
             const int k = 3 + 2 * in.range(0, 2), dx = in.range(0, 2), dy = in.range(dx ? 0 : 1, 2), flag = in.range(0, 4);
             ZeqiConvState* state = nullptr;
             if (zeqiSobelInitAlloc(std::max(s.width, 1), zeq8u, k, in.range(0, 1), dx, dy, &state) != zeqStsOk) return;
             Image src(in, s.width, s.height, 1), dst(in, s.width, s.height + k, 2, true);
             ZeqiSize roi = s;
             const ZeqStatus st = zeqiSobel_8u16s_C1R(src.ptr(), src.step, dst.ptr<Zeq16s>(), dst.step, &roi, state, flag);
             dst.verify(st, "zeqiSobel_8u16s_C1R");
             zeqiConvolFree(state); }},
        {"zeqiBlur_32f_C1R", [](Input& in) {
             const ZeqiSize s = anySize(in);
             const int k = 3 + 2 * in.range(0, 2);
             ZeqiConvState* state = nullptr;
             if (zeqiBlurInitAlloc(std::max(s.width, 1), zeq32f, k, &state) != zeqStsOk) return;
             Image src(in, s.width, s.height, 4), dst(in, s.width, s.height + k, 4, true);
             ZeqiSize roi = s;
             const ZeqStatus st = zeqiBlur_32f_C1R(src.ptr<Zeq32f>(), src.step, dst.ptr<Zeq32f>(), dst.step, &roi, state, 0);
             dst.verify(st, "zeqiBlur_32f_C1R");
             zeqiConvolFree(state); }},
        {"zeqiConvert_8u32f_C1R", [](Input& in) { unary(in, "zeqiConvert_8u32f_C1R", 1, 4, [](Image& s, Image& d, ZeqiSize r) {
             return zeqiConvert_8u32f_C1R(s.ptr(), s.step, d.ptr<Zeq32f>(), d.step, r); }); }},
        {"zeqiThreshold_32f_C1R", [](Input& in) {
             const float t = in.value();
             const int op = in.range(0, 5);
             unary(in, "zeqiThreshold_32f_C1R", 4, 4, [&](Image& s, Image& d, ZeqiSize r) {
                 return zeqiThreshold_32f_C1R(s.ptr<Zeq32f>(), s.step, d.ptr<Zeq32f>(), d.step, r, t, op); }); }},
        {"zeqiMulPack_32f_C1IR", [](Input& in) { unary(in, "zeqiMulPack_32f_C1IR", 4, 4, [](Image& s, Image& d, ZeqiSize r) {
             return zeqiMulPack_32f_C1IR(s.ptr<Zeq32f>(), s.step, d.ptr<Zeq32f>(), d.step, r); }); }},
        {"zeqiMean_StdDev_8u_C1R/zeqiMinMaxIndx_8u_C1R/zeqiNorm_L2_8u_C1MR", [](Input& in) {
             // Results go to the caller's scalars; the images must stay as they were.
             const ZeqiSize s = anySize(in);
             Image src(in, s.width, s.height, 1, true), mask(in, s.width, s.height, 1, true);
             double mean, sd, norm;
             float lo, hi;
             ZeqiPoint at1, at2;
             zeqiMean_StdDev_8u_C1R(src.ptr(), src.step, s, &mean, &sd);
             zeqiMinMaxIndx_8u_C1R(src.ptr(), src.step, s, &lo, &hi, &at1, &at2);
             zeqiNorm_L2_8u_C1MR(src.ptr(), src.step, mask.ptr(), mask.step, s, &norm);
             src.verify(zeqStsNullPtr, "statistics");
             mask.verify(zeqStsNullPtr, "statistics"); }},
        {"zeqibFastArctan_32f", [](Input& in) {
             const int n = in.range(-1, 70);
             Image y(in, std::max(n, 1), 1, 4), x(in, std::max(n, 1), 1, 4), d(in, n, 1, 4);
             d.verify(zeqibFastArctan_32f(y.ptr<Zeq32f>(), x.ptr<Zeq32f>(), d.ptr<Zeq32f>(), n), "zeqibFastArctan_32f"); }},
        {"zeqiErodeStrip_Ellipse_32f_C3R", [](Input& in) {
             const ZeqiSize s = anySize(in), m{in.range(1, 7), in.range(1, 7)};
             ZeqiMorphState* state = nullptr;
             if (zeqiMorphologyInitAlloc(std::max(s.width, 1), zeq32f, 3, m, {m.width / 2, m.height / 2}, 2, nullptr, &state) != zeqStsOk) return;
             Image src(in, s.width, s.height, 12), dst(in, s.width, s.height + m.height, 12);
             ZeqiSize roi = s;
             const ZeqStatus st = zeqiErodeStrip_Ellipse_32f_C3R(src.ptr<Zeq32f>(), src.step, dst.ptr<Zeq32f>(), dst.step, &roi,
                                                                 state, in.range(0, 4));
             dst.verify(st, "zeqiErodeStrip_Ellipse_32f_C3R");
             zeqiMorphologyFree(state); }},
        {"zeqsFFTFwd_RToPack_32f", [](Input& in) {
             const int order = in.range(0, 10);
             ZeqsFFTSpec_R_32f* spec = nullptr;
             if (zeqsFFTInitAlloc_R_32f(&spec, order, in.range(0, 9), in.range(0, 2)) != zeqStsOk) return;
             int bytes = 0;
             auto buf = buffer(zeqsFFTGetBufSize_R_32f(spec, &bytes), bytes);
             Image src(in, 1 << order, 1, 4), dst(in, 1 << order, 1, 4);
             dst.verify(zeqsFFTFwd_RToPack_32f(src.ptr<Zeq32f>(), dst.ptr<Zeq32f>(), spec, bytes > 0 ? buf->data() : nullptr),
                        "zeqsFFTFwd_RToPack_32f");
             zeqsFFTFree_R_32f(spec); }},
        {"zeqiFFTFwd_RToPack_32f_C1R", [](Input& in) {
             const int ox = in.range(0, 5), oy = in.range(0, 5);
             ZeqiFFTSpec_R_32f* spec = nullptr;
             if (zeqiFFTInitAlloc_R_32f(&spec, ox, oy, in.range(0, 9), in.range(0, 2)) != zeqStsOk) return;
             int bytes = 0;
             auto buf = buffer(zeqiFFTGetBufSize_R_32f(spec, &bytes), bytes);
             Image src(in, 1 << ox, 1 << oy, 4, true), dst(in, 1 << ox, 1 << oy, 4, true);
             dst.verify(zeqiFFTFwd_RToPack_32f_C1R(src.ptr<Zeq32f>(), src.step, dst.ptr<Zeq32f>(), dst.step, spec,
                                                   bytes > 0 ? buf->data() : nullptr), "zeqiFFTFwd_RToPack_32f_C1R");
             zeqiFFTFree_R_32f(spec); }},
        {"zeqiMinEigenVal_8u32f_C1R", [](Input& in) {
             const ZeqiSize s = anySize(in);
             const int ap = 3 + 2 * in.range(0, 2), win = 3 + 2 * in.range(0, 2);
             int bytes = 0;
             auto buf = buffer(zeqiMinEigenValGetSize(std::max(s.width, 1), ap, win, &bytes), bytes);
             Image src(in, s.width, s.height, 1), dst(in, s.width, s.height, 4);
             const ZeqStatus st = zeqiMinEigenVal_8u32f_C1R(src.ptr(), src.step, dst.ptr<Zeq32f>(), dst.step, s, ap, win,
                                                            buf->data());
             dst.verify(st, "zeqiMinEigenVal_8u32f_C1R"); }},
    };
    return table;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 1) return 0;
    Input in(data, size);
    const auto& table = entries();
    table[in.byte() % table.size()].run(in);
    return 0;
}
