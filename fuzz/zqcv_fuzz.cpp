// A libFuzzer target: the input picks an entry of the table below and the
// sizes, steps, parameters and pixels of its call. Every exported function
// has an entry (fuzz/check_coverage.sh compares `zqcv_fuzz --list` with the
// export map); most are one line, a call shape and the function. Every image lives at the
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
#include <limits>
#include <memory>
#include <tuple>
#include <type_traits>
#include <vector>

namespace {

class Input {
public:
    Input(const uint8_t* p, size_t n) : p_(p), n_(n) {}
    uint8_t byte() { return i_ < n_ ? p_[i_++] : 0; }
    int range(int lo, int hi) { return lo + int(byte() % unsigned(hi - lo + 1)); }
    bool chance(int outOf) { return byte() % outOf == 0; }
    float value() { return float(int(byte()) - 128) * 0.75f; }
    // A width, height or length up to 255 * 2^23, for size arithmetic near int's end.
    int huge() { return range(0, 255) << range(0, 23); }

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
        null = in.chance(48);
    }
    // The image's pointer, or now and then NULL.
    template <class T = uint8_t>
    T* ptr() { return null ? nullptr : reinterpret_cast<T*>(mem->data()); }
    bool null = false;
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

// ---- argument generators ----

// Scalar results and small parameter arrays that calls read or write.
struct Scratch {
    double d[8];
    float f[8];
    ZeqiPoint p[8];
    int32_t i[8];
    int n = 0;
};

template <class X>
struct Gen;
// Origins, channels of interest, flags, hints, comparison codes, shifts:
// mostly small, sometimes anything up to a few hundred.
template <>
struct Gen<int> {
    static int get(Input& in, Scratch&) { return in.chance(4) ? in.range(-1, 300) : in.range(-1, 5); }
};
template <>
struct Gen<Zeq32f> {
    static float get(Input& in, Scratch&) { return in.chance(16) ? std::numeric_limits<float>::quiet_NaN() : in.value(); }
};
// Result pointers: somewhere to write; double results (sums, means, norms,
// deviations), which are checked or optional, now and then NULL. The
// minimum and maximum results are documented as required.
template <class T>
struct Gen<T*> {
    static T* get(Input& in, Scratch& s) {
        if (std::is_same<T, double>::value && in.chance(24)) return nullptr;
        if constexpr (std::is_same<T, double>::value) return &s.d[s.n++ % 8];
        else if constexpr (std::is_same<T, float>::value) return &s.f[s.n++ % 8];
        else return &s.p[s.n++ % 8];
    }
};
// Distance metrics: a few weights from the input.
template <>
struct Gen<const Zeq32f*> {
    static const Zeq32f* get(Input& in, Scratch& s) {
        for (float& f : s.f) f = in.value();
        return in.chance(24) ? nullptr : s.f;
    }
};
template <>
struct Gen<const Zeq32s*> {
    static const Zeq32s* get(Input& in, Scratch& s) {
        for (int32_t& v : s.i) v = in.range(-1, 20);
        return in.chance(24) ? nullptr : s.i;
    }
};

// The extra arguments of a call, in order.
template <class... X>
std::tuple<X...> extras(Input& in, Scratch& s) {
    return std::tuple<X...>{Gen<X>::get(in, s)...};
}

// Channels of a layout from the function's name.
int channelsOf(const char* name) {
    if (std::strstr(name, "C4")) return 4;
    if (std::strstr(name, "C3")) return 3;
    return 1;
}

template <class T>
constexpr int typeCode() {
    if constexpr (std::is_same<T, Zeq8u>::value) return zeq8u;
    else if constexpr (std::is_same<T, Zeq8s>::value) return zeq8s;
    else if constexpr (std::is_same<T, Zeq16s>::value) return zeq16s;
    else return zeq32f;
}

struct Entry {
    const char* name;
    std::function<void(Input&)> run;
};

#define ZQF(fn) #fn, fn

// ---- call shapes ----

// f(src, step, dst, step, roi, extras...): one source and one destination of
// the same size (in-place accumulation included).
template <class S, class D, class... X>
Entry unary(const char* name, ZeqStatus (*fn)(const S*, int, D*, int, ZeqiSize, X...)) {
    return {name, [=](Input& in) {
                const int c = channelsOf(name);
                const ZeqiSize r = anySize(in);
                Scratch sc;
                const auto x = extras<X...>(in, sc);
                Image src(in, r.width, r.height, c * int(sizeof(S)), true), dst(in, r.width, r.height, c * int(sizeof(D)));
                const ZeqStatus st = std::apply([&](auto... a) {
                    return fn(src.template ptr<S>(), src.step, dst.template ptr<D>(), dst.step, r, a...);
                }, x);
                dst.verify(st, name);
                src.verify(zeqStsNullPtr, name);
            }};
}

// f(src, step, dst, step, origin, roi, extras...).
template <class S, class D, class... X>
Entry unaryOrigin(const char* name, ZeqStatus (*fn)(const S*, int, D*, int, int, ZeqiSize, X...)) {
    return {name, [=](Input& in) {
                const ZeqiSize r = anySize(in);
                const int origin = in.range(-1, 2);
                Scratch sc;
                const auto x = extras<X...>(in, sc);
                Image src(in, r.width, r.height, int(sizeof(S)), true), dst(in, r.width, r.height, int(sizeof(D)));
                const ZeqStatus st = std::apply([&](auto... a) {
                    return fn(src.template ptr<S>(), src.step, dst.template ptr<D>(), dst.step, origin, r, a...);
                }, x);
                dst.verify(st, name);
            }};
}

// f(src1, step, src2, step, dst, step, roi, extras...): two sources (the
// second may be a mask) and one destination.
template <class S1, class S2, class D, class... X>
Entry binary(const char* name, ZeqStatus (*fn)(const S1*, int, const S2*, int, D*, int, ZeqiSize, X...)) {
    return {name, [=](Input& in) {
                const ZeqiSize r = anySize(in);
                Scratch sc;
                const auto x = extras<X...>(in, sc);
                Image a(in, r.width, r.height, int(sizeof(S1)), true), b(in, r.width, r.height, int(sizeof(S2)), true);
                Image dst(in, r.width, r.height, int(sizeof(D)));
                const ZeqStatus st = std::apply([&](auto... e) {
                    return fn(a.template ptr<S1>(), a.step, b.template ptr<S2>(), b.step, dst.template ptr<D>(), dst.step, r, e...);
                }, x);
                dst.verify(st, name);
            }};
}

// f(src1, step, src2, step, mask, step, dst, step, roi).
template <class S, class D>
Entry ternary(const char* name, ZeqStatus (*fn)(const S*, int, const S*, int, const Zeq8u*, int, D*, int, ZeqiSize)) {
    return {name, [=](Input& in) {
                const ZeqiSize r = anySize(in);
                Image a(in, r.width, r.height, int(sizeof(S)), true), b(in, r.width, r.height, int(sizeof(S)), true);
                Image m(in, r.width, r.height, 1), dst(in, r.width, r.height, int(sizeof(D)));
                dst.verify(fn(a.template ptr<S>(), a.step, b.template ptr<S>(), b.step, m.ptr(), m.step,
                              dst.template ptr<D>(), dst.step, r), name);
            }};
}

// f(srcDst, step, roi, extras...) and f(value, srcDst, step, roi): in place.
template <class T, class... X>
Entry inPlace(const char* name, ZeqStatus (*fn)(T*, int, ZeqiSize, X...)) {
    return {name, [=](Input& in) {
                const ZeqiSize r = anySize(in);
                Scratch sc;
                const auto x = extras<X...>(in, sc);
                Image img(in, r.width, r.height, int(sizeof(T)));
                img.verify(std::apply([&](auto... a) { return fn(img.template ptr<T>(), img.step, r, a...); }, x), name);
            }};
}
template <class T>
Entry valueInPlace(const char* name, ZeqStatus (*fn)(Zeq32f, T*, int, ZeqiSize)) {
    return {name, [=](Input& in) {
                const ZeqiSize r = anySize(in);
                const float v = in.value();
                Image img(in, r.width, r.height, int(sizeof(T)));
                img.verify(fn(v, img.template ptr<T>(), img.step, r), name);
            }};
}

// Statistics: the sources stay as they were; results go to scalars.
template <class S, class... X>
Entry stat(const char* name, ZeqStatus (*fn)(const S*, int, ZeqiSize, X...)) {
    return {name, [=](Input& in) {
                const ZeqiSize r = anySize(in);
                Scratch sc;
                const auto x = extras<X...>(in, sc);
                Image src(in, r.width, r.height, channelsOf(name) * int(sizeof(S)), true);
                std::apply([&](auto... a) { return fn(src.template ptr<S>(), src.step, r, a...); }, x);
                src.verify(zeqStsNullPtr, name);
            }};
}
template <class S, class... X>
Entry statMasked(const char* name, ZeqStatus (*fn)(const S*, int, const Zeq8u*, int, ZeqiSize, X...)) {
    return {name, [=](Input& in) {
                const ZeqiSize r = anySize(in);
                Scratch sc;
                const auto x = extras<X...>(in, sc);
                Image src(in, r.width, r.height, channelsOf(name) * int(sizeof(S)), true), m(in, r.width, r.height, 1);
                std::apply([&](auto... a) { return fn(src.template ptr<S>(), src.step, m.ptr(), m.step, r, a...); }, x);
                src.verify(zeqStsNullPtr, name);
                m.verify(zeqStsNullPtr, name);
            }};
}
template <class S, class... X>
Entry statPair(const char* name, ZeqStatus (*fn)(const S*, int, const S*, int, ZeqiSize, X...)) {
    return {name, [=](Input& in) {
                const ZeqiSize r = anySize(in);
                Scratch sc;
                const auto x = extras<X...>(in, sc);
                const int bpp = channelsOf(name) * int(sizeof(S));
                Image a(in, r.width, r.height, bpp, true), b(in, r.width, r.height, bpp, true);
                std::apply([&](auto... e) { return fn(a.template ptr<S>(), a.step, b.template ptr<S>(), b.step, r, e...); }, x);
                a.verify(zeqStsNullPtr, name);
                b.verify(zeqStsNullPtr, name);
            }};
}
template <class S, class... X>
Entry statPairMasked(const char* name, ZeqStatus (*fn)(const S*, int, const S*, int, const Zeq8u*, int, ZeqiSize, X...)) {
    return {name, [=](Input& in) {
                const ZeqiSize r = anySize(in);
                Scratch sc;
                const auto x = extras<X...>(in, sc);
                const int bpp = channelsOf(name) * int(sizeof(S));
                Image a(in, r.width, r.height, bpp, true), b(in, r.width, r.height, bpp, true), m(in, r.width, r.height, 1);
                std::apply([&](auto... e) {
                    return fn(a.template ptr<S>(), a.step, b.template ptr<S>(), b.step, m.ptr(), m.step, r, e...);
                }, x);
                a.verify(zeqStsNullPtr, name);
                b.verify(zeqStsNullPtr, name);
            }};
}

// Template matching: a source, a template and the valid-mode result.
template <class T>
Entry matching(const char* name, ZeqStatus (*fn)(const T*, int, ZeqiSize, const T*, int, ZeqiSize, Zeq32f*, int)) {
    return {name, [=](Input& in) {
                const ZeqiSize s = anySize(in, 30, 16), t{in.range(1, 8), in.range(1, 6)};
                Image src(in, s.width, s.height, int(sizeof(T))), tpl(in, t.width, t.height, int(sizeof(T)));
                Image dst(in, std::max(s.width - t.width + 1, 1), std::max(s.height - t.height + 1, 1), 4);
                dst.verify(fn(src.template ptr<T>(), src.step, s, tpl.template ptr<T>(), tpl.step, t, dst.template ptr<Zeq32f>(),
                              dst.step), name);
            }};
}

// A state of the strip filter `name` (or, now and then, of another one).
ZeqiConvState* convState(Input& in, const char* name, int width, int type) {
    ZeqiConvState* st = nullptr;
    const int k = 3 + 2 * in.range(0, 2), which = in.chance(8) ? in.range(0, 2)
                                                 : std::strstr(name, "Sobel") ? 0 : std::strstr(name, "Laplace") ? 1 : 2;
    if (which == 0) {
        const int dx = in.range(0, 2), dy = in.range(dx ? 0 : 1, 2);
        zeqiSobelInitAlloc(width, type, k, in.range(0, 1), dx, dy, &st);
    } else if (which == 1) {
        zeqiLaplaceInitAlloc(width, type, k, &st);
    } else {
        zeqiBlurInitAlloc(width, type, k, &st);
    }
    return st;
}

template <class S, class D>
Entry stateFilter(const char* name, ZeqStatus (*fn)(const S*, int, D*, int, ZeqiSize*, ZeqiConvState*, int)) {
    return {name, [=](Input& in) {
                const ZeqiSize s = anySize(in);
                ZeqiConvState* st = convState(in, name, std::max(s.width, 1) + (in.chance(8) ? -1 : 0),
                                              in.chance(12) ? zeq8u : typeCode<S>());
                if (!st) return;
                Image src(in, s.width, s.height, int(sizeof(S))), dst(in, s.width, s.height + 8, int(sizeof(D)), true);
                ZeqiSize roi = s;
                dst.verify(fn(src.template ptr<S>(), src.step, dst.template ptr<D>(), dst.step, &roi, st, in.range(0, 4)), name);
                zeqiConvolFree(st);
            }};
}

// Strip dilation and erosion with a state of the matching kind (or not).
template <class T>
Entry strip(const char* name, ZeqStatus (*fn)(const T*, int, T*, int, ZeqiSize*, ZeqiMorphState*, int)) {
    return {name, [=](Input& in) {
                const int c = channelsOf(name);
                const ZeqiSize s = anySize(in), m{in.range(1, 6), in.range(1, 6)};
                int kind = std::strstr(name, "_Rect") ? 0 : std::strstr(name, "_Cross") ? 1 : std::strstr(name, "_Ellipse") ? 2
                                                                                                 : in.chance(2) ? 100 : 2;
                if (in.chance(10)) kind = in.range(0, 2);
                uint8_t mask[36];
                for (uint8_t& b : mask) b = uint8_t(in.chance(2));
                ZeqiMorphState* st = nullptr;
                if (zeqiMorphologyInitAlloc(std::max(s.width, 1), in.chance(12) ? zeq8u : typeCode<T>(), in.chance(12) ? 1 : c, m,
                                            {in.range(0, m.width - 1), in.range(0, m.height - 1)}, kind, mask, &st) != zeqStsOk)
                    return;
                Image src(in, s.width, s.height, c * int(sizeof(T))), dst(in, s.width, s.height + m.height, c * int(sizeof(T)));
                ZeqiSize roi = s;
                dst.verify(fn(src.template ptr<T>(), src.step, dst.template ptr<T>(), dst.step, &roi, st, in.range(0, 4)), name);
                zeqiMorphologyFree(st);
            }};
}

// Minimum and maximum filters read as far outside the roi as the mask reaches.
template <class T>
Entry minMaxFilter(const char* name, ZeqStatus (*fn)(const T*, int, T*, int, ZeqiSize, ZeqiSize, ZeqiPoint)) {
    return {name, [=](Input& in) {
                const int bpp = channelsOf(name) * int(sizeof(T));
                const ZeqiSize s = anySize(in), m{in.range(1, 5), in.range(1, 5)};
                const ZeqiPoint a{in.range(0, m.width - 1), in.range(0, m.height - 1)};
                Image src(in, std::max(s.width, 1) + m.width - 1, std::max(s.height, 1) + m.height - 1, bpp);
                Image dst(in, s.width, s.height, bpp);
                const T* origin = reinterpret_cast<const T*>(src.mem->data() + ptrdiff_t(a.y) * src.step + ptrdiff_t(a.x) * bpp);
                dst.verify(fn(origin, src.step, dst.template ptr<T>(), dst.step, s, m, a), name);
            }};
}

template <class T>
Entry pyramid(const char* name, ZeqStatus (*fn)(const T*, int, T*, int, ZeqiSize, Zeq8u*)) {
    return {name, [=](Input& in) {
                const int c = channelsOf(name);
                const bool up = std::strstr(name, "PyrUp") != nullptr;
                const ZeqiSize s = anySize(in, up ? 20 : 40, up ? 10 : 20);
                int bytes = 0;
                auto buf = buffer(up ? zeqiPyrUpGetBufSize_Gauss5x5(std::max(s.width, 1), typeCode<T>(), c, &bytes)
                                     : zeqiPyrDownGetBufSize_Gauss5x5(std::max(s.width, 1), typeCode<T>(), c, &bytes), bytes);
                const int bpp = c * int(sizeof(T));
                Image src(in, s.width, s.height, bpp);
                Image dst = up ? Image(in, 2 * s.width, 2 * s.height, bpp) : Image(in, (s.width + 1) / 2, (s.height + 1) / 2, bpp);
                dst.verify(fn(src.template ptr<T>(), src.step, dst.template ptr<T>(), dst.step, s, buf->data()), name);
            }};
}

template <class S>
Entry corners(const char* name, ZeqStatus (*fn)(const S*, int, Zeq32f*, int, ZeqiSize, int, int, Zeq8u*)) {
    return {name, [=](Input& in) {
                const bool vectors = std::strstr(name, "EigenValsVecs") != nullptr;
                const ZeqiSize s = anySize(in);
                const int ap = in.range(2, 7), win = in.range(2, 7);
                int bytes = 0;
                auto buf = buffer(vectors ? zeqiEigenValsVecsGetSize(std::max(s.width, 1), ap, win, &bytes)
                                          : zeqiMinEigenValGetSize(std::max(s.width, 1), ap, win, &bytes), bytes);
                Image src(in, s.width, s.height, int(sizeof(S))), dst(in, s.width, s.height, vectors ? 24 : 4);
                dst.verify(fn(src.template ptr<S>(), src.step, dst.template ptr<Zeq32f>(), dst.step, s, ap, win, buf->data()), name);
            }};
}

template <class T>
Entry canny(const char* name, ZeqStatus (*fn)(const T*, int, const T*, int, Zeq8u*, int, ZeqiSize, Zeq32f, Zeq32f, Zeq8u*)) {
    return {name, [=](Input& in) {
                const ZeqiSize s = anySize(in);
                Image dx(in, s.width, s.height, int(sizeof(T))), dy(in, s.width, s.height, int(sizeof(T)));
                Image dst(in, s.width, s.height, 1);
                int bytes = 0;
                auto buf = buffer(zeqiCannyGetSize(s, &bytes), bytes);
                dst.verify(fn(dx.template ptr<T>(), dx.step, dy.template ptr<T>(), dy.step, dst.ptr(), dst.step, s,
                              float(in.range(-1, 300)), float(in.range(0, 900)), buf->data()), name);
            }};
}

// Plain fills of height 1 read (and may fill) the row above the region, as
// documented: the fuzzer keeps them to two rows or more.
template <class T, class V>
Entry fill(const char* name, ZeqStatus (*fn)(T*, int, ZeqiSize, ZeqiPoint, V, ZeqiConnectedComp*, Zeq8u*)) {
    return {name, [=](Input& in) {
                const ZeqiSize s{in.range(1, 40), in.range(2, 20)};
                Image img(in, s.width, s.height, int(sizeof(T)));
                int bytes = 0;
                auto buf = buffer(zeqiFloodFillGetSize(s, &bytes), bytes);
                ZeqiConnectedComp region;
                img.verify(fn(img.template ptr<T>(), img.step, s, {in.range(-1, 40), in.range(-1, 20)}, V(in.range(-1, 300)),
                              &region, buf->data()), name);
            }};
}
template <class T, class V>
Entry gradFill(const char* name, ZeqStatus (*fn)(T*, int, ZeqiSize, ZeqiPoint, V, V, V, ZeqiConnectedComp*, Zeq8u*)) {
    return {name, [=](Input& in) {
                const ZeqiSize s = anySize(in);
                Image img(in, s.width, s.height, int(sizeof(T)));
                int bytes = 0;
                auto buf = buffer(zeqiFloodFillGetSize_Grad(s, &bytes), bytes);
                ZeqiConnectedComp region;
                img.verify(fn(img.template ptr<T>(), img.step, s, {in.range(0, 40), in.range(0, 20)}, V(in.range(0, 255)),
                              V(in.range(-1, 40)), V(in.range(0, 40)), &region, buf->data()), name);
            }};
}

template <class T>
Entry sampleLine(const char* name, ZeqStatus (*fn)(const T*, int, ZeqiSize, T*, ZeqiPoint, ZeqiPoint)) {
    return {name, [=](Input& in) {
                const int bpp = channelsOf(name) * int(sizeof(T));
                const ZeqiSize s = anySize(in);
                const ZeqiPoint p1{in.range(-1, 40), in.range(-1, 20)}, p2{in.range(-1, 40), in.range(-1, 20)};
                Image src(in, s.width, s.height, bpp);
                Image dst(in, std::max(std::abs(p2.x - p1.x), std::abs(p2.y - p1.y)) + 1, 1, bpp);
                dst.verify(fn(src.template ptr<T>(), src.step, s, dst.template ptr<T>(), p1, p2), name);
            }};
}

template <class T>
Entry border(const char* name, ZeqStatus (*fn)(const T*, int, ZeqiSize, T*, int, ZeqiSize, int, int)) {
    return {name, [=](Input& in) {
                const int bpp = channelsOf(name) * int(sizeof(T));
                const ZeqiSize s = anySize(in, 20, 10);
                const int top = in.range(-1, 4), left = in.range(-1, 4);
                const ZeqiSize d{s.width + left + in.range(-1, 4), s.height + top + in.range(-1, 4)};
                Image src(in, s.width, s.height, bpp), dst(in, d.width, d.height, bpp);
                dst.verify(fn(src.template ptr<T>(), src.step, s, dst.template ptr<T>(), dst.step, d, top, left), name);
            }};
}

// f(args..., int* size): any arguments, huge sizes included; the size is the caller's.
template <class... A>
Entry query(const char* name, ZeqStatus (*fn)(A...)) {
    return {name, [=](Input& in) {
                int size = 0;
                auto arg = [&](auto tag) {
                    using T = typename decltype(tag)::type;
                    if constexpr (std::is_same<T, int*>::value) return in.chance(24) ? nullptr : &size;
                    else if constexpr (std::is_same<T, ZeqiSize>::value)
                        return in.chance(4) ? ZeqiSize{in.huge(), in.huge()}
                                            : anySize(in);
                    else return T(in.chance(4) ? in.huge() : in.range(-1, 9));
                };
                const std::tuple<A...> args{arg(std::common_type<A>{})...};
                std::apply(fn, args);
            }};
}

// ---- FFT ----

template <bool Complex>
Entry fft1d(const char* name, bool inverse) {
    return {name, [=](Input& in) {
                using Spec = std::conditional_t<Complex, ZeqsFFTSpec_C_32fc, ZeqsFFTSpec_R_32f>;
                const int order = in.range(0, 10);
                Spec* spec = nullptr;
                const ZeqStatus made = Complex ? zeqsFFTInitAlloc_C_32fc(reinterpret_cast<ZeqsFFTSpec_C_32fc**>(&spec), order,
                                                                         in.range(0, 9), in.range(0, 2))
                                               : zeqsFFTInitAlloc_R_32f(reinterpret_cast<ZeqsFFTSpec_R_32f**>(&spec), order,
                                                                        in.range(0, 9), in.range(0, 2));
                if (made != zeqStsOk) return;
                int bytes = 0;
                ZeqStatus sized;
                if constexpr (Complex) sized = zeqsFFTGetBufSize_C_32fc(spec, &bytes);
                else sized = zeqsFFTGetBufSize_R_32f(spec, &bytes);
                auto buf = buffer(sized, bytes);
                const int e = Complex ? 8 : 4;
                Image src(in, 1 << order, 1, e), dst(in, 1 << order, 1, e);
                Zeq8u* work = bytes > 0 && !in.chance(4) ? buf->data() : nullptr;
                ZeqStatus st;
                if constexpr (Complex) {
                    auto* s = src.template ptr<Zeq32fc>();
                    auto* d = dst.template ptr<Zeq32fc>();
                    st = inverse ? zeqsFFTInv_CToC_32fc(s, d, spec, work) : zeqsFFTFwd_CToC_32fc(s, d, spec, work);
                    dst.verify(st, name);
                    zeqsFFTFree_C_32fc(spec);
                } else {
                    auto* s = src.template ptr<Zeq32f>();
                    auto* d = dst.template ptr<Zeq32f>();
                    st = inverse ? zeqsFFTInv_PackToR_32f(s, d, spec, work) : zeqsFFTFwd_RToPack_32f(s, d, spec, work);
                    dst.verify(st, name);
                    zeqsFFTFree_R_32f(spec);
                }
            }};
}

Entry fft2d(const char* name, bool inverse) {
    return {name, [=](Input& in) {
                const int ox = in.range(0, 5), oy = in.range(0, 5);
                ZeqiFFTSpec_R_32f* spec = nullptr;
                if (zeqiFFTInitAlloc_R_32f(&spec, ox, oy, in.range(0, 9), in.range(0, 2)) != zeqStsOk) return;
                int bytes = 0;
                auto buf = buffer(zeqiFFTGetBufSize_R_32f(spec, &bytes), bytes);
                Image src(in, 1 << ox, 1 << oy, 4, true), dst(in, 1 << ox, 1 << oy, 4, true);
                Zeq8u* work = bytes > 0 && !in.chance(4) ? buf->data() : nullptr;
                const auto* s = src.template ptr<Zeq32f>();
                auto* d = dst.template ptr<Zeq32f>();
                dst.verify(inverse ? zeqiFFTInv_PackToR_32f_C1R(s, src.step, d, dst.step, spec, work)
                                   : zeqiFFTFwd_RToPack_32f_C1R(s, src.step, d, dst.step, spec, work), name);
                zeqiFFTFree_R_32f(spec);
            }};
}

// ---- one-dimensional helpers, as one-row images ----

template <class T>
Entry vecCopy(const char* name, ZeqStatus (*fn)(const T*, T*, int)) {
    return {name, [=](Input& in) {
                const int n = in.range(-1, 80);
                Image src(in, std::max(n, 1), 1, int(sizeof(T))), dst(in, n, 1, int(sizeof(T)));
                dst.verify(fn(src.template ptr<T>(), dst.template ptr<T>(), n), name);
            }};
}
template <class T>
Entry vecInPlace(const char* name, ZeqStatus (*fn)(T*, int)) {
    return {name, [=](Input& in) {
                const int n = in.range(-1, 80);
                Image dst(in, n, 1, int(sizeof(T)));
                dst.verify(fn(dst.template ptr<T>(), n), name);
            }};
}

const std::vector<Entry>& entries() {
    static const std::vector<Entry> table = {
        // core: version, allocator, vector helpers, image primitives
        {"zeqcvGetLibVersion", [](Input&) {
             const ZeqLibraryVersion* v = zeqcvGetLibVersion();
             if (!v || !v->name || !v->version || !v->buildDate) Image::fail("zeqcvGetLibVersion", "incomplete record");
         }},
        {"zeqsMalloc_8u", [](Input& in) {
             const int n = in.chance(8) ? in.range(0, 255) << 16 : in.range(-1, 4096);
             Zeq8u* p = zeqsMalloc_8u(n);
             if (p && n > 0) std::memset(p, 1, size_t(n));
             zeqsFree(p);
             Zeq32f* q = zeqsMalloc_32f(n / 4);
             if (q && n / 4 > 0) q[n / 4 - 1] = 1.0f;
             zeqsFree(q);
         }},
        {"zeqsMalloc_32f", [](Input& in) { zeqsFree(zeqsMalloc_32f(in.range(-1, 1000))); }},
        {"zeqsFree", [](Input&) { zeqsFree(nullptr); }},
        {"zeqsSet_8u", [](Input& in) {
             const int n = in.range(-1, 80);
             const Zeq8u v = in.byte();
             Image dst(in, n, 1, 1);
             dst.verify(zeqsSet_8u(v, dst.ptr(), n), "zeqsSet_8u");
         }},
        vecInPlace<Zeq8u>(ZQF(zeqsZero_8u)),
        vecInPlace<Zeq16s>(ZQF(zeqsZero_16s)),
        vecInPlace<Zeq32f>(ZQF(zeqsZero_32f)),
        vecInPlace<Zeq32f>(ZQF(zeqsSqr_32f_I)),
        vecInPlace<Zeq32f>(ZQF(zeqsSqrt_32f_I)),
        vecCopy<Zeq8u>(ZQF(zeqsCopy_8u)),
        vecCopy<Zeq16s>(ZQF(zeqsCopy_16s)),
        vecCopy<Zeq32f>(ZQF(zeqsCopy_32f)),
        {"zeqsDiv_32f", [](Input& in) {
             const int n = in.range(-1, 80);
             Image a(in, std::max(n, 1), 1, 4), b(in, std::max(n, 1), 1, 4), d(in, n, 1, 4);
             d.verify(zeqsDiv_32f(a.ptr<Zeq32f>(), b.ptr<Zeq32f>(), d.ptr<Zeq32f>(), n), "zeqsDiv_32f");
         }},
        unary(ZQF(zeqiCopy_8u_C1R)), unary(ZQF(zeqiCopy_8u_C3R)), unary(ZQF(zeqiCopy_8u_C4R)),
        unary(ZQF(zeqiCopy_32f_C1R)), unary(ZQF(zeqiCopy_32f_C3R)), unary(ZQF(zeqiCopy_32f_AC4R)),
        valueInPlace(ZQF(zeqiSet_32f_C1R)),
        unary(ZQF(zeqiConvert_8u32f_C1R)), unary(ZQF(zeqiConvert_8s32f_C1R)),
        valueInPlace(ZQF(zeqiAddC_32f_C1IR)), valueInPlace(ZQF(zeqiSubC_32f_C1IR)), valueInPlace(ZQF(zeqiMulC_32f_C1IR)),
        unary(ZQF(zeqiAdd_32f_C1IR)), unary(ZQF(zeqiSub_32f_C1IR)),
        binary(ZQF(zeqiDiv_32f_C1R)), unary(ZQF(zeqiDiv_32f_C1IR)),
        inPlace(ZQF(zeqiSqr_32f_C1IR)), inPlace(ZQF(zeqiSqrt_32f_C1IR)),
        stat(ZQF(zeqiSum_32f_C1R)), stat(ZQF(zeqiMean_32f_C1R)), stat(ZQF(zeqiNorm_L2_32f_C1R)),
        unary(ZQF(zeqiThreshold_32f_C1R)), unary(ZQF(zeqiThreshold_Val_32f_C1R)),
        unary(ZQF(zeqiThreshold_LT_32f_C1R)), unary(ZQF(zeqiThreshold_LTVal_32f_C1R)),
        inPlace(ZQF(zeqiThreshold_LT_32f_C1IR)), inPlace(ZQF(zeqiThreshold_LTVal_32f_C1IR)),
        border(ZQF(zeqiCopyReplicateBorder_8u_C1R)), border(ZQF(zeqiCopyReplicateBorder_8u_C3R)),
        border(ZQF(zeqiCopyReplicateBorder_8u_C4R)), border(ZQF(zeqiCopyReplicateBorder_32s_C1R)),
        border(ZQF(zeqiCopyReplicateBorder_32s_C3R)), border(ZQF(zeqiCopyReplicateBorder_32s_C4R)),
        // absolute difference and accumulation
        binary(ZQF(zeqiAbsDiff_8u_C1R)), binary(ZQF(zeqiAbsDiff_16u_C1R)), binary(ZQF(zeqiAbsDiff_32f_C1R)),
        unary(ZQF(zeqiAbsDiffC_8u_C1R)), unary(ZQF(zeqiAbsDiffC_16u_C1R)), unary(ZQF(zeqiAbsDiffC_32f_C1R)),
        unary(ZQF(zeqiAdd_8u32f_C1IR)), unary(ZQF(zeqiAdd_8s32f_C1IR)), unary(ZQF(zeqiAdd_16u32f_C1IR)),
        binary(ZQF(zeqiAdd_8u32f_C1IMR)), binary(ZQF(zeqiAdd_8s32f_C1IMR)), binary(ZQF(zeqiAdd_16u32f_C1IMR)),
        binary(ZQF(zeqiAdd_32f_C1IMR)),
        unary(ZQF(zeqiAddSquare_8u32f_C1IR)), unary(ZQF(zeqiAddSquare_8s32f_C1IR)), unary(ZQF(zeqiAddSquare_16u32f_C1IR)),
        unary(ZQF(zeqiAddSquare_32f_C1IR)),
        binary(ZQF(zeqiAddSquare_8u32f_C1IMR)), binary(ZQF(zeqiAddSquare_8s32f_C1IMR)),
        binary(ZQF(zeqiAddSquare_16u32f_C1IMR)), binary(ZQF(zeqiAddSquare_32f_C1IMR)),
        binary(ZQF(zeqiAddProduct_8u32f_C1IR)), binary(ZQF(zeqiAddProduct_8s32f_C1IR)),
        binary(ZQF(zeqiAddProduct_16u32f_C1IR)), binary(ZQF(zeqiAddProduct_32f_C1IR)),
        ternary(ZQF(zeqiAddProduct_8u32f_C1IMR)), ternary(ZQF(zeqiAddProduct_8s32f_C1IMR)),
        ternary(ZQF(zeqiAddProduct_16u32f_C1IMR)), ternary(ZQF(zeqiAddProduct_32f_C1IMR)),
        unary(ZQF(zeqiAddWeighted_8u32f_C1IR)), unary(ZQF(zeqiAddWeighted_8s32f_C1IR)),
        unary(ZQF(zeqiAddWeighted_16u32f_C1IR)), unary(ZQF(zeqiAddWeighted_32f_C1IR)),
        binary(ZQF(zeqiAddWeighted_8u32f_C1IMR)), binary(ZQF(zeqiAddWeighted_8s32f_C1IMR)),
        binary(ZQF(zeqiAddWeighted_16u32f_C1IMR)), binary(ZQF(zeqiAddWeighted_32f_C1IMR)),
        // statistics
        stat(ZQF(zeqiMean_StdDev_8u_C1R)), stat(ZQF(zeqiMean_StdDev_8s_C1R)), stat(ZQF(zeqiMean_StdDev_16u_C1R)),
        stat(ZQF(zeqiMean_StdDev_32f_C1R)), stat(ZQF(zeqiMean_StdDev_8u_C3CR)), stat(ZQF(zeqiMean_StdDev_8s_C3CR)),
        stat(ZQF(zeqiMean_StdDev_16u_C3CR)), stat(ZQF(zeqiMean_StdDev_32f_C3CR)),
        statMasked(ZQF(zeqiMean_StdDev_8u_C1MR)), statMasked(ZQF(zeqiMean_StdDev_8s_C1MR)),
        statMasked(ZQF(zeqiMean_StdDev_16u_C1MR)), statMasked(ZQF(zeqiMean_StdDev_32f_C1MR)),
        statMasked(ZQF(zeqiMean_StdDev_8u_C3CMR)), statMasked(ZQF(zeqiMean_StdDev_8s_C3CMR)),
        statMasked(ZQF(zeqiMean_StdDev_16u_C3CMR)), statMasked(ZQF(zeqiMean_StdDev_32f_C3CMR)),
        statMasked(ZQF(zeqiMean_8u_C1MR)), statMasked(ZQF(zeqiMean_8s_C1MR)), statMasked(ZQF(zeqiMean_16u_C1MR)),
        statMasked(ZQF(zeqiMean_32f_C1MR)), statMasked(ZQF(zeqiMean_8u_C3CMR)), statMasked(ZQF(zeqiMean_8s_C3CMR)),
        statMasked(ZQF(zeqiMean_16u_C3CMR)), statMasked(ZQF(zeqiMean_32f_C3CMR)),
        stat(ZQF(zeqiMinMaxIndx_8u_C1R)), stat(ZQF(zeqiMinMaxIndx_8s_C1R)), stat(ZQF(zeqiMinMaxIndx_16u_C1R)),
        stat(ZQF(zeqiMinMaxIndx_32f_C1R)), stat(ZQF(zeqiMinMaxIndx_8u_C3CR)), stat(ZQF(zeqiMinMaxIndx_8s_C3CR)),
        stat(ZQF(zeqiMinMaxIndx_16u_C3CR)), stat(ZQF(zeqiMinMaxIndx_32f_C3CR)),
        statMasked(ZQF(zeqiMinMaxIndx_8u_C1MR)), statMasked(ZQF(zeqiMinMaxIndx_8s_C1MR)),
        statMasked(ZQF(zeqiMinMaxIndx_16u_C1MR)), statMasked(ZQF(zeqiMinMaxIndx_32f_C1MR)),
        statMasked(ZQF(zeqiMinMaxIndx_8u_C3CMR)), statMasked(ZQF(zeqiMinMaxIndx_8s_C3CMR)),
        statMasked(ZQF(zeqiMinMaxIndx_16u_C3CMR)), statMasked(ZQF(zeqiMinMaxIndx_32f_C3CMR)),
        // norms
        stat(ZQF(zeqiNorm_L2_32f_C1R)), statMasked(ZQF(zeqiNorm_Inf_8u_C1MR)),
        statMasked(ZQF(zeqiNorm_Inf_8u_C3CMR)), statMasked(ZQF(zeqiNorm_Inf_8s_C1MR)),
        statMasked(ZQF(zeqiNorm_Inf_8s_C3CMR)), statMasked(ZQF(zeqiNorm_Inf_16u_C1MR)),
        statMasked(ZQF(zeqiNorm_Inf_16u_C3CMR)), statMasked(ZQF(zeqiNorm_Inf_32f_C1MR)),
        statMasked(ZQF(zeqiNorm_Inf_32f_C3CMR)), statMasked(ZQF(zeqiNorm_L1_8u_C1MR)),
        statMasked(ZQF(zeqiNorm_L1_8u_C3CMR)), statMasked(ZQF(zeqiNorm_L1_8s_C1MR)),
        statMasked(ZQF(zeqiNorm_L1_8s_C3CMR)), statMasked(ZQF(zeqiNorm_L1_16u_C1MR)),
        statMasked(ZQF(zeqiNorm_L1_16u_C3CMR)), statMasked(ZQF(zeqiNorm_L1_32f_C1MR)),
        statMasked(ZQF(zeqiNorm_L1_32f_C3CMR)), statMasked(ZQF(zeqiNorm_L2_8u_C1MR)),
        statMasked(ZQF(zeqiNorm_L2_8u_C3CMR)), statMasked(ZQF(zeqiNorm_L2_8s_C1MR)),
        statMasked(ZQF(zeqiNorm_L2_8s_C3CMR)), statMasked(ZQF(zeqiNorm_L2_16u_C1MR)),
        statMasked(ZQF(zeqiNorm_L2_16u_C3CMR)), statMasked(ZQF(zeqiNorm_L2_32f_C1MR)),
        statMasked(ZQF(zeqiNorm_L2_32f_C3CMR)), statPairMasked(ZQF(zeqiNormDiff_Inf_8u_C1MR)),
        statPairMasked(ZQF(zeqiNormDiff_Inf_8u_C3CMR)), statPairMasked(ZQF(zeqiNormDiff_Inf_8s_C1MR)),
        statPairMasked(ZQF(zeqiNormDiff_Inf_8s_C3CMR)), statPairMasked(ZQF(zeqiNormDiff_Inf_16u_C1MR)),
        statPairMasked(ZQF(zeqiNormDiff_Inf_16u_C3CMR)), statPairMasked(ZQF(zeqiNormDiff_Inf_32f_C1MR)),
        statPairMasked(ZQF(zeqiNormDiff_Inf_32f_C3CMR)), statPairMasked(ZQF(zeqiNormDiff_L1_8u_C1MR)),
        statPairMasked(ZQF(zeqiNormDiff_L1_8u_C3CMR)), statPairMasked(ZQF(zeqiNormDiff_L1_8s_C1MR)),
        statPairMasked(ZQF(zeqiNormDiff_L1_8s_C3CMR)), statPairMasked(ZQF(zeqiNormDiff_L1_16u_C1MR)),
        statPairMasked(ZQF(zeqiNormDiff_L1_16u_C3CMR)), statPairMasked(ZQF(zeqiNormDiff_L1_32f_C1MR)),
        statPairMasked(ZQF(zeqiNormDiff_L1_32f_C3CMR)), statPairMasked(ZQF(zeqiNormDiff_L2_8u_C1MR)),
        statPairMasked(ZQF(zeqiNormDiff_L2_8u_C3CMR)), statPairMasked(ZQF(zeqiNormDiff_L2_8s_C1MR)),
        statPairMasked(ZQF(zeqiNormDiff_L2_8s_C3CMR)), statPairMasked(ZQF(zeqiNormDiff_L2_16u_C1MR)),
        statPairMasked(ZQF(zeqiNormDiff_L2_16u_C3CMR)), statPairMasked(ZQF(zeqiNormDiff_L2_32f_C1MR)),
        statPairMasked(ZQF(zeqiNormDiff_L2_32f_C3CMR)), statPairMasked(ZQF(zeqiNormRel_Inf_8u_C1MR)),
        statPairMasked(ZQF(zeqiNormRel_Inf_8u_C3CMR)), statPairMasked(ZQF(zeqiNormRel_Inf_8s_C1MR)),
        statPairMasked(ZQF(zeqiNormRel_Inf_8s_C3CMR)), statPairMasked(ZQF(zeqiNormRel_Inf_16u_C1MR)),
        statPairMasked(ZQF(zeqiNormRel_Inf_16u_C3CMR)), statPairMasked(ZQF(zeqiNormRel_Inf_32f_C1MR)),
        statPairMasked(ZQF(zeqiNormRel_Inf_32f_C3CMR)), statPairMasked(ZQF(zeqiNormRel_L1_8u_C1MR)),
        statPairMasked(ZQF(zeqiNormRel_L1_8u_C3CMR)), statPairMasked(ZQF(zeqiNormRel_L1_8s_C1MR)),
        statPairMasked(ZQF(zeqiNormRel_L1_8s_C3CMR)), statPairMasked(ZQF(zeqiNormRel_L1_16u_C1MR)),
        statPairMasked(ZQF(zeqiNormRel_L1_16u_C3CMR)), statPairMasked(ZQF(zeqiNormRel_L1_32f_C1MR)),
        statPairMasked(ZQF(zeqiNormRel_L1_32f_C3CMR)), statPairMasked(ZQF(zeqiNormRel_L2_8u_C1MR)),
        statPairMasked(ZQF(zeqiNormRel_L2_8u_C3CMR)), statPairMasked(ZQF(zeqiNormRel_L2_8s_C1MR)),
        statPairMasked(ZQF(zeqiNormRel_L2_8s_C3CMR)), statPairMasked(ZQF(zeqiNormRel_L2_16u_C1MR)),
        statPairMasked(ZQF(zeqiNormRel_L2_16u_C3CMR)), statPairMasked(ZQF(zeqiNormRel_L2_32f_C1MR)),
        statPairMasked(ZQF(zeqiNormRel_L2_32f_C3CMR)),
        // fixed derivative filters, fast arctangent, Canny, corners
        unary(ZQF(zeqiSobel3x3_Dx_8u16s_C1R)), unary(ZQF(zeqiSobel3x3_Dx_8s16s_C1R)), unary(ZQF(zeqiSobel3x3_Dx_32f_C1R)),
        unaryOrigin(ZQF(zeqiSobel3x3_Dy_8u16s_C1R)), unaryOrigin(ZQF(zeqiSobel3x3_Dy_8s16s_C1R)),
        unaryOrigin(ZQF(zeqiSobel3x3_Dy_32f_C1R)),
        unary(ZQF(zeqiSobel3x3_D2x_8u16s_C1R)), unary(ZQF(zeqiSobel3x3_D2x_8s16s_C1R)), unary(ZQF(zeqiSobel3x3_D2x_32f_C1R)),
        unary(ZQF(zeqiSobel3x3_D2y_8u16s_C1R)), unary(ZQF(zeqiSobel3x3_D2y_8s16s_C1R)), unary(ZQF(zeqiSobel3x3_D2y_32f_C1R)),
        unaryOrigin(ZQF(zeqiSobel3x3_DxDy_8u16s_C1R)), unaryOrigin(ZQF(zeqiSobel3x3_DxDy_8s16s_C1R)),
        unaryOrigin(ZQF(zeqiSobel3x3_DxDy_32f_C1R)),
        unary(ZQF(zeqiScharr_Dx_8u16s_C1R)), unary(ZQF(zeqiScharr_Dx_8s16s_C1R)), unary(ZQF(zeqiScharr_Dx_32f_C1R)),
        unaryOrigin(ZQF(zeqiScharr_Dy_8u16s_C1R)), unaryOrigin(ZQF(zeqiScharr_Dy_8s16s_C1R)),
        unaryOrigin(ZQF(zeqiScharr_Dy_32f_C1R)),
        {"zeqiSobelInitAlloc/zeqiLaplaceInitAlloc/zeqiBlurInitAlloc/zeqiConvolFree", [](Input& in) {
             ZeqiConvState* st = nullptr;
             const int w = in.chance(8) ? in.huge() : in.range(-1, 50);
             const int type = in.range(0, 10), k = in.range(1, 8);
             const int which = in.range(0, 2);
             const ZeqStatus made = which == 0 ? zeqiSobelInitAlloc(w, type, k, in.range(-1, 2), in.range(-1, 3), in.range(-1, 3), &st)
                                  : which == 1 ? zeqiLaplaceInitAlloc(w, type, k, &st) : zeqiBlurInitAlloc(w, type, k, &st);
             if ((made == zeqStsOk) != (st != nullptr)) Image::fail("conv state", "status and state disagree");
             zeqiConvolFree(st);
         }},
        stateFilter(ZQF(zeqiSobel_8u16s_C1R)), stateFilter(ZQF(zeqiSobel_8s16s_C1R)), stateFilter(ZQF(zeqiSobel_32f_C1R)),
        stateFilter(ZQF(zeqiLaplace_8u16s_C1R)), stateFilter(ZQF(zeqiLaplace_8s16s_C1R)), stateFilter(ZQF(zeqiLaplace_32f_C1R)),
        stateFilter(ZQF(zeqiBlur_8u16s_C1R)), stateFilter(ZQF(zeqiBlur_8s16s_C1R)), stateFilter(ZQF(zeqiBlur_32f_C1R)),
        {"zeqibFastArctan_32f", [](Input& in) {
             const int n = in.range(-1, 70);
             Image y(in, std::max(n, 1), 1, 4), x(in, std::max(n, 1), 1, 4), d(in, n, 1, 4);
             d.verify(zeqibFastArctan_32f(y.ptr<Zeq32f>(), x.ptr<Zeq32f>(), d.ptr<Zeq32f>(), n), "zeqibFastArctan_32f");
         }},
        query(ZQF(zeqiCannyGetSize)), canny(ZQF(zeqiCanny_16s8u_C1R)), canny(ZQF(zeqiCanny_32f8u_C1R)),
        query(ZQF(zeqiMinEigenValGetSize)), query(ZQF(zeqiEigenValsVecsGetSize)),
        corners(ZQF(zeqiMinEigenVal_8u32f_C1R)), corners(ZQF(zeqiMinEigenVal_8s32f_C1R)), corners(ZQF(zeqiMinEigenVal_32f_C1R)),
        corners(ZQF(zeqiEigenValsVecs_8u32f_C1R)), corners(ZQF(zeqiEigenValsVecs_8s32f_C1R)),
        corners(ZQF(zeqiEigenValsVecs_32f_C1R)),
        // pyramids, distance transforms, flood fill
        query(ZQF(zeqiPyrDownGetBufSize_Gauss5x5)), query(ZQF(zeqiPyrUpGetBufSize_Gauss5x5)),
        pyramid(ZQF(zeqiPyrDown_Gauss5x5_8u_C1R)), pyramid(ZQF(zeqiPyrDown_Gauss5x5_8u_C3R)),
        pyramid(ZQF(zeqiPyrDown_Gauss5x5_8s_C1R)), pyramid(ZQF(zeqiPyrDown_Gauss5x5_8s_C3R)),
        pyramid(ZQF(zeqiPyrDown_Gauss5x5_32f_C1R)), pyramid(ZQF(zeqiPyrDown_Gauss5x5_32f_C3R)),
        pyramid(ZQF(zeqiPyrUp_Gauss5x5_8u_C1R)), pyramid(ZQF(zeqiPyrUp_Gauss5x5_8u_C3R)),
        pyramid(ZQF(zeqiPyrUp_Gauss5x5_8s_C1R)), pyramid(ZQF(zeqiPyrUp_Gauss5x5_8s_C3R)),
        pyramid(ZQF(zeqiPyrUp_Gauss5x5_32f_C1R)), pyramid(ZQF(zeqiPyrUp_Gauss5x5_32f_C3R)),
        {"zeqiGetDistanceTransformMask_32f/zeqiGetDistanceTransformMask_32s/zeqiGetDistanceTransformMask", [](Input& in) {
             // The float 5x5 city-block table writes its third weight to the
             // fourth element, as documented: float tables of 5x5 get four.
             const int k = in.range(1, 6), norm = in.range(-1, 3), type = 10 * k + norm;
             Image f(in, k == 5 ? 4 : 2, 1, 4), i(in, k == 5 ? 3 : 2, 1, 4), t(in, type / 10 == 5 ? 4 : 2, 1, 4);
             f.verify(zeqiGetDistanceTransformMask_32f(k, norm, f.ptr<Zeq32f>()), "zeqiGetDistanceTransformMask_32f");
             i.verify(zeqiGetDistanceTransformMask_32s(k, norm, i.ptr<Zeq32s>()), "zeqiGetDistanceTransformMask_32s");
             t.verify(zeqiGetDistanceTransformMask(type, t.ptr<Zeq32f>()), "zeqiGetDistanceTransformMask");
         }},
        unary(ZQF(zeqiDistanceTransform_3x3_8u32f_C1R)), unary(ZQF(zeqiDistanceTransform_5x5_8u32f_C1R)),
        unary(ZQF(zeqiDistanceTransform_3x3_8u16u_C1R)), unary(ZQF(zeqiDistanceTransform_5x5_8u16u_C1R)),
        unary(ZQF(zeqiDistanceTransform_3x3_8u_C1R)), unary(ZQF(zeqiDistanceTransform_5x5_8u_C1R)),
        query(ZQF(zeqiFloodFillGetSize)), query(ZQF(zeqiFloodFillGetSize_Grad)),
        fill(ZQF(zeqiFloodFill_4Con_8u_C1IR)), fill(ZQF(zeqiFloodFill_8Con_8u_C1IR)),
        fill(ZQF(zeqiFloodFill_4Con_32f_C1IR)), fill(ZQF(zeqiFloodFill_8Con_32f_C1IR)),
        gradFill(ZQF(zeqiFloodFill_Grad4Con_8u_C1IR)), gradFill(ZQF(zeqiFloodFill_Grad8Con_8u_C1IR)),
        gradFill(ZQF(zeqiFloodFill_Grad4Con_32f_C1IR)), gradFill(ZQF(zeqiFloodFill_Grad8Con_32f_C1IR)),
        // morphology, minimum and maximum filters
        {"zeqiMorphologyInitAlloc/zeqiMorphologyFree", [](Input& in) {
             uint8_t mask[64];
             for (uint8_t& b : mask) b = in.byte();
             const ZeqiSize m{in.range(-1, 8), in.range(-1, 8)};
             ZeqiMorphState* st = nullptr;
             const int w = in.chance(8) ? in.huge() : in.range(-1, 50);
             const ZeqStatus made = zeqiMorphologyInitAlloc(w, in.range(0, 10), in.range(0, 5), m, {in.range(-1, 8), in.range(-1, 8)},
                                                            in.chance(4) ? 100 : in.range(-1, 3), in.chance(8) ? nullptr : mask, &st);
             if ((made == zeqStsOk) != (st != nullptr)) Image::fail("morphology state", "status and state disagree");
             zeqiMorphologyFree(st);
         }},
        strip(ZQF(zeqiDilateStrip_8u_C1R)), strip(ZQF(zeqiDilateStrip_8u_C3R)),
        strip(ZQF(zeqiDilateStrip_8u_C4R)), strip(ZQF(zeqiDilateStrip_32f_C1R)),
        strip(ZQF(zeqiDilateStrip_32f_C3R)), strip(ZQF(zeqiDilateStrip_32f_C4R)),
        strip(ZQF(zeqiDilateStrip_Rect_8u_C1R)), strip(ZQF(zeqiDilateStrip_Rect_8u_C3R)),
        strip(ZQF(zeqiDilateStrip_Rect_8u_C4R)), strip(ZQF(zeqiDilateStrip_Rect_32f_C1R)),
        strip(ZQF(zeqiDilateStrip_Rect_32f_C3R)), strip(ZQF(zeqiDilateStrip_Rect_32f_C4R)),
        strip(ZQF(zeqiDilateStrip_Cross_8u_C1R)), strip(ZQF(zeqiDilateStrip_Cross_8u_C3R)),
        strip(ZQF(zeqiDilateStrip_Cross_8u_C4R)), strip(ZQF(zeqiDilateStrip_Cross_32f_C1R)),
        strip(ZQF(zeqiDilateStrip_Cross_32f_C3R)), strip(ZQF(zeqiDilateStrip_Cross_32f_C4R)),
        strip(ZQF(zeqiDilateStrip_Ellipse_8u_C1R)), strip(ZQF(zeqiDilateStrip_Ellipse_8u_C3R)),
        strip(ZQF(zeqiDilateStrip_Ellipse_8u_C4R)), strip(ZQF(zeqiDilateStrip_Ellipse_32f_C1R)),
        strip(ZQF(zeqiDilateStrip_Ellipse_32f_C3R)), strip(ZQF(zeqiDilateStrip_Ellipse_32f_C4R)),
        strip(ZQF(zeqiErodeStrip_8u_C1R)), strip(ZQF(zeqiErodeStrip_8u_C3R)),
        strip(ZQF(zeqiErodeStrip_8u_C4R)), strip(ZQF(zeqiErodeStrip_32f_C1R)),
        strip(ZQF(zeqiErodeStrip_32f_C3R)), strip(ZQF(zeqiErodeStrip_32f_C4R)),
        strip(ZQF(zeqiErodeStrip_Rect_8u_C1R)), strip(ZQF(zeqiErodeStrip_Rect_8u_C3R)),
        strip(ZQF(zeqiErodeStrip_Rect_8u_C4R)), strip(ZQF(zeqiErodeStrip_Rect_32f_C1R)),
        strip(ZQF(zeqiErodeStrip_Rect_32f_C3R)), strip(ZQF(zeqiErodeStrip_Rect_32f_C4R)),
        strip(ZQF(zeqiErodeStrip_Cross_8u_C1R)), strip(ZQF(zeqiErodeStrip_Cross_8u_C3R)),
        strip(ZQF(zeqiErodeStrip_Cross_8u_C4R)), strip(ZQF(zeqiErodeStrip_Cross_32f_C1R)),
        strip(ZQF(zeqiErodeStrip_Cross_32f_C3R)), strip(ZQF(zeqiErodeStrip_Cross_32f_C4R)),
        strip(ZQF(zeqiErodeStrip_Ellipse_8u_C1R)), strip(ZQF(zeqiErodeStrip_Ellipse_8u_C3R)),
        strip(ZQF(zeqiErodeStrip_Ellipse_8u_C4R)), strip(ZQF(zeqiErodeStrip_Ellipse_32f_C1R)),
        strip(ZQF(zeqiErodeStrip_Ellipse_32f_C3R)), strip(ZQF(zeqiErodeStrip_Ellipse_32f_C4R)),
        minMaxFilter(ZQF(zeqiFilterMax_8u_C1R)), minMaxFilter(ZQF(zeqiFilterMax_8u_C3R)), minMaxFilter(ZQF(zeqiFilterMax_8u_C4R)),
        minMaxFilter(ZQF(zeqiFilterMax_32f_C1R)), minMaxFilter(ZQF(zeqiFilterMax_32f_C3R)),
        minMaxFilter(ZQF(zeqiFilterMax_32f_C4R)),
        minMaxFilter(ZQF(zeqiFilterMin_8u_C1R)), minMaxFilter(ZQF(zeqiFilterMin_8u_C3R)), minMaxFilter(ZQF(zeqiFilterMin_8u_C4R)),
        minMaxFilter(ZQF(zeqiFilterMin_32f_C1R)), minMaxFilter(ZQF(zeqiFilterMin_32f_C3R)),
        minMaxFilter(ZQF(zeqiFilterMin_32f_C4R)),
        // motion history, line sampling
        unary(ZQF(zeqiUpdateMotionHistory_8u32f_C1IR)), unary(ZQF(zeqiUpdateMotionHistory_16u32f_C1IR)),
        unary(ZQF(zeqiUpdateMotionHistory_32f_C1IR)),
        sampleLine(ZQF(zeqiSampleLine_8u_C1R)), sampleLine(ZQF(zeqiSampleLine_8u_C3R)), sampleLine(ZQF(zeqiSampleLine_16u_C1R)),
        sampleLine(ZQF(zeqiSampleLine_16u_C3R)), sampleLine(ZQF(zeqiSampleLine_32f_C1R)), sampleLine(ZQF(zeqiSampleLine_32f_C3R)),
        // FFT
        fft1d<true>("zeqsFFTFwd_CToC_32fc", false), fft1d<true>("zeqsFFTInv_CToC_32fc", true),
        fft1d<false>("zeqsFFTFwd_RToPack_32f", false), fft1d<false>("zeqsFFTInv_PackToR_32f", true),
        {"zeqsFFTInitAlloc_C_32fc/zeqsFFTInitAlloc_R_32f/zeqsFFTFree_C_32fc/zeqsFFTFree_R_32f/zeqsFFTGetBufSize_C_32fc/"
         "zeqsFFTGetBufSize_R_32f/zeqiFFTInitAlloc_R_32f/zeqiFFTFree_R_32f/zeqiFFTGetBufSize_R_32f",
         [](Input& in) {
             // Specifications of every kind, handed now and then to the calls of another kind.
             ZeqsFFTSpec_C_32fc* c = nullptr;
             ZeqsFFTSpec_R_32f* r = nullptr;
             ZeqiFFTSpec_R_32f* i = nullptr;
             zeqsFFTInitAlloc_C_32fc(in.chance(16) ? nullptr : &c, in.range(-1, 12), in.range(0, 9), in.range(0, 3));
             zeqsFFTInitAlloc_R_32f(&r, in.range(-1, 12), in.range(0, 9), in.range(0, 3));
             zeqiFFTInitAlloc_R_32f(&i, in.range(-1, 8), in.range(-1, 8), in.range(0, 9), in.range(0, 3));
             int size = 0;
             const bool swap = in.chance(4);
             zeqsFFTGetBufSize_C_32fc(swap ? reinterpret_cast<ZeqsFFTSpec_C_32fc*>(r) : c, &size);
             zeqsFFTGetBufSize_R_32f(swap ? reinterpret_cast<ZeqsFFTSpec_R_32f*>(c) : r, &size);
             zeqiFFTGetBufSize_R_32f(swap ? reinterpret_cast<ZeqiFFTSpec_R_32f*>(r) : i, &size);
             if (swap && r) zeqsFFTFree_C_32fc(reinterpret_cast<ZeqsFFTSpec_C_32fc*>(r));  // refused: the wrong kind
             zeqsFFTFree_C_32fc(c);
             zeqsFFTFree_R_32f(r);
             zeqiFFTFree_R_32f(i);
         }},
        fft2d("zeqiFFTFwd_RToPack_32f_C1R", false), fft2d("zeqiFFTInv_PackToR_32f_C1R", true),
        unary(ZQF(zeqiMulPack_32f_C1IR)),
        // template matching
        matching(ZQF(zeqiCrossCorrValid_Norm_32f_C1R)), matching(ZQF(zeqiCrossCorrValid_Norm_8u32f_C1R)),
        matching(ZQF(zeqiCrossCorrValid_Norm_8s32f_C1R)), matching(ZQF(zeqiCrossCorrValid_NormLevel_32f_C1R)),
        matching(ZQF(zeqiCrossCorrValid_NormLevel_8u32f_C1R)), matching(ZQF(zeqiCrossCorrValid_NormLevel_8s32f_C1R)),
        matching(ZQF(zeqiSqrDistanceValid_Norm_32f_C1R)), matching(ZQF(zeqiSqrDistanceValid_Norm_8u32f_C1R)),
        matching(ZQF(zeqiSqrDistanceValid_Norm_8s32f_C1R)), matching(ZQF(zeqiMatchTemplate_SqDiff_8u32f_C1R)),
        matching(ZQF(zeqiMatchTemplate_SqDiff_8s32f_C1R)), matching(ZQF(zeqiMatchTemplate_SqDiff_32f_C1R)),
        matching(ZQF(zeqiMatchTemplate_SqDiffNormed_8u32f_C1R)), matching(ZQF(zeqiMatchTemplate_SqDiffNormed_8s32f_C1R)),
        matching(ZQF(zeqiMatchTemplate_SqDiffNormed_32f_C1R)), matching(ZQF(zeqiMatchTemplate_Corr_8u32f_C1R)),
        matching(ZQF(zeqiMatchTemplate_Corr_8s32f_C1R)), matching(ZQF(zeqiMatchTemplate_Corr_32f_C1R)),
        matching(ZQF(zeqiMatchTemplate_CorrNormed_8u32f_C1R)), matching(ZQF(zeqiMatchTemplate_CorrNormed_8s32f_C1R)),
        matching(ZQF(zeqiMatchTemplate_CorrNormed_32f_C1R)), matching(ZQF(zeqiMatchTemplate_Coeff_8u32f_C1R)),
        matching(ZQF(zeqiMatchTemplate_Coeff_8s32f_C1R)), matching(ZQF(zeqiMatchTemplate_Coeff_32f_C1R)),
        matching(ZQF(zeqiMatchTemplate_CoeffNormed_8u32f_C1R)), matching(ZQF(zeqiMatchTemplate_CoeffNormed_8s32f_C1R)),
        matching(ZQF(zeqiMatchTemplate_CoeffNormed_32f_C1R)), query(ZQF(zeqiMatchTemplateGetBufSize_SqDiff)),
        query(ZQF(zeqiMatchTemplateGetBufSize_SqDiffNormed)), query(ZQF(zeqiMatchTemplateGetBufSize_Corr)),
        query(ZQF(zeqiMatchTemplateGetBufSize_CorrNormed)), query(ZQF(zeqiMatchTemplateGetBufSize_Coeff)),
        query(ZQF(zeqiMatchTemplateGetBufSize_CoeffNormed)), matching(ZQF(zeqiSqrDistanceValid_8u32f_C1R)),
        matching(ZQF(zeqiSqrDistanceValid_8s32f_C1R)), matching(ZQF(zeqiSqrDistanceValid_32f_C1R)),
        matching(ZQF(zeqiCrossCorrValid_8u32f_C1R)), matching(ZQF(zeqiCrossCorrValid_8s32f_C1R)),
        matching(ZQF(zeqiCrossCorrValid_32f_C1R)), matching(ZQF(zeqiCrossCorrValid_Level_8u32f_C1R)),
        matching(ZQF(zeqiCrossCorrValid_Level_8s32f_C1R)), matching(ZQF(zeqiCrossCorrValid_Level_32f_C1R)),
    };
    return table;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 2) return 0;
    Input in(data, size);
    const auto& table = entries();
    const unsigned pick = in.byte();
    table[(pick | unsigned(in.byte()) << 8) % table.size()].run(in);
    return 0;
}

// The names the table covers, one per line, for the coverage check.
extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
    for (int i = 1; i < *argc; ++i)
        if (std::strcmp((*argv)[i], "--list") == 0) {
            for (const Entry& e : entries()) std::printf("%s\n", e.name);
            std::exit(0);
        }
    return 0;
}
