// The mean/deviation and minimum/maximum families of one element type behind
// one call each, so tests can loop over layouts (one channel or a channel of
// interest) and masks.
#ifndef STATS_API_H
#define STATS_API_H

#include "zqtest.h"

namespace statst {

// Which elements take part: `channels` 1 or 3 (then `coi` 1..3), under `mask` or not.
struct Layout {
    int channels = 1;
    int coi = 1;
    const Zeq8u* mask = nullptr;
    int maskStep = 0;
    bool masked = false;  // the masked form even with a null mask
};

template <class T>
struct Api;

#define STATST_API(T, t)                                                                                        \
    template <>                                                                                                 \
    struct Api<T> {                                                                                             \
        static ZeqStatus mean(const T* p, int step, const Layout& l, ZeqiSize roi, Zeq64f* m) {                  \
            return l.channels == 1 ? zeqiMean_##t##_C1MR(p, step, l.mask, l.maskStep, roi, m)                   \
                                   : zeqiMean_##t##_C3CMR(p, step, l.mask, l.maskStep, roi, l.coi, m);          \
        }                                                                                                       \
        static ZeqStatus meanStdDev(const T* p, int step, const Layout& l, ZeqiSize roi, Zeq64f* m, Zeq64f* s) { \
            if (l.mask || l.masked)                                                                                         \
                return l.channels == 1                                                                          \
                           ? zeqiMean_StdDev_##t##_C1MR(p, step, l.mask, l.maskStep, roi, m, s)                 \
                           : zeqiMean_StdDev_##t##_C3CMR(p, step, l.mask, l.maskStep, roi, l.coi, m, s);        \
            return l.channels == 1 ? zeqiMean_StdDev_##t##_C1R(p, step, roi, m, s)                               \
                                   : zeqiMean_StdDev_##t##_C3CR(p, step, roi, l.coi, m, s);                     \
        }                                                                                                       \
        static ZeqStatus minMax(const T* p, int step, const Layout& l, ZeqiSize roi, Zeq32f* lo, Zeq32f* hi,      \
                                ZeqiPoint* loAt, ZeqiPoint* hiAt) {                                             \
            if (l.mask || l.masked)                                                                                         \
                return l.channels == 1                                                                          \
                           ? zeqiMinMaxIndx_##t##_C1MR(p, step, l.mask, l.maskStep, roi, lo, hi, loAt, hiAt)    \
                           : zeqiMinMaxIndx_##t##_C3CMR(p, step, l.mask, l.maskStep, roi, l.coi, lo, hi, loAt,  \
                                                        hiAt);                                                  \
            return l.channels == 1 ? zeqiMinMaxIndx_##t##_C1R(p, step, roi, lo, hi, loAt, hiAt)                  \
                                   : zeqiMinMaxIndx_##t##_C3CR(p, step, roi, l.coi, lo, hi, loAt, hiAt);        \
        }                                                                                                       \
    };
STATST_API(Zeq8u, 8u)
STATST_API(Zeq8s, 8s)
STATST_API(Zeq16u, 16u)
STATST_API(Zeq32f, 32f)
#undef STATST_API

using Types = ::testing::Types<Zeq8u, Zeq8s, Zeq16u, Zeq32f>;

// The taking-part element at pixel (x, y) of an image whose rows may start at
// any byte offset.
template <class T>
T pixel(const void* base, int step, const Layout& l, int x, int y) {
    T v;
    std::memcpy(&v, static_cast<const char*>(base) + ptrdiff_t(step) * y + (ptrdiff_t(x) * l.channels + l.coi - 1) * ptrdiff_t(sizeof(T)),
                sizeof(T));
    return v;
}
inline bool takesPart(const Layout& l, int x, int y) {
    return !l.mask || l.mask[ptrdiff_t(l.maskStep) * y + x] != 0;
}

// A random test case: size (one pixel and odd widths included), layout, mask
// of random density (sometimes empty), padding and misalignment.
struct Case {
    int w, h, channels, coi, pad, misalign;
    bool masked;
    std::vector<Zeq8u> mask;
    int maskStep;
    Layout layout() const { return {channels, coi, masked ? mask.data() : nullptr, maskStep}; }
};

template <class T>
Case randomCase(zqt::Rng& rng, int iter) {
    Case c;
    c.w = iter == 0 ? 1 : rng.uniform(1, 90);
    c.h = iter == 0 ? 1 : rng.uniform(1, 6);
    c.channels = rng.chance(0.5) ? 1 : 3;
    c.coi = c.channels == 3 ? rng.uniform(1, 3) : 1;
    // Now and then rows at odd addresses, an odd number of elements apart
    // (16u: any byte count; 32f: 2 mod 4, since only odd steps are refused).
    const bool odd = rng.chance(0.3);
    c.pad = odd ? (sizeof(T) == 4 ? 6 : 3) : int(sizeof(T)) * rng.uniform(0, 4);
    c.misalign = odd ? rng.uniform(1, 3) : int(sizeof(T)) * rng.uniform(0, 5);
    c.masked = rng.chance(0.5);
    c.maskStep = c.w + rng.uniform(0, 5);
    c.mask.assign(size_t(c.maskStep) * c.h, 0);
    const double density = rng.chance(0.1) ? 0.0 : rng.uniformf(0.05f, 1.0f);
    for (auto& m : c.mask) m = rng.chance(density) ? Zeq8u(rng.uniform(1, 255)) : 0;
    return c;
}

}  // namespace statst

#endif
