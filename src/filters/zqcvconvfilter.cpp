// The Sobel, Laplace and Blur state filters: separable correlation with the
// state's kernels (Blur: the unnormalised box sum), borders replicated,
// whole images or strips of one image.
//
// Strips: after `consumed` rows of an image have come in, the rows out are
// those whose window lies within them, consumed - k/2 (all of them once the
// last strip has come). The state carries what the next strip needs in its
// row buffers: the row-pass results of the last k - 1 rows, or for the float
// filters that run across rows first, those source rows themselves. Every
// output row is computed from the same values in the same order however the
// image is split.
#include "core/zqcvcore.h"
#include "core/zqcvregs.h"
#include "filters/zqcvconv.h"

#include <emmintrin.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <type_traits>

namespace {

using zq::Taps;

enum class Kind { Sobel, Laplace, Blur };

constexpr int kWhole = 0, kFirst = 1, kLast = 2, kMiddle = 4;

// The lanes of a pipeline: 32-bit integers for 8-bit sources (16-bit ones
// where no sum can leave them, see narrowFits), floats for floats.
template <class T>
using Work = typename std::conditional<std::is_same<T, Zeq32f>::value, float, int32_t>::type;

// The taps of one kernel table (or the box's ones), in summing order.
template <class W>
Taps<W> tapsOf(const Zeq8u* table, int k) {
    W w[7];
    for (int j = 0; j < k; ++j) {
        if (table == nullptr) w[j] = W(1);
        else if constexpr (std::is_same<W, float>::value) std::memcpy(&w[j], table + 16 * j, 4);
        else {
            int16_t v;
            std::memcpy(&v, table + 16 * j, 2);
            w[j] = v;
        }
    }
    Taps<W> t;
    for (bool negative : {false, true})
        for (int j = 0; j < k; ++j)
            if (w[j] != W(0) && (w[j] < W(0)) == negative) {
                t.offset[t.n] = j - k / 2;
                t.weight[t.n] = negative ? W(-w[j]) : w[j];
                t.negative[t.n] = negative;
                ++t.n;
            }
    if (t.n == 0) t.offset[t.n] = 0, t.weight[t.n] = W(0), t.negative[t.n] = false, ++t.n;  // a zero kernel
    return t;
}

Kind kindOf(const ZeqiConvState& s) {
    if (s.descriptor & 15) return Kind::Sobel;
    return s.rowBytes != 0 ? Kind::Blur : Kind::Laplace;
}

// The state was made by the InitAlloc of this filter and holds rows this wide.
ZeqStatus stateFits(const ZeqiConvState& s, Kind kind, int width) {
    const int k = s.kernelSize;
    if ((k != 3 && k != 5 && k != 7) || kindOf(s) != kind) return zeqStsContextMatch;
    if (s.rows[0] == nullptr || s.rows[1] == nullptr || int64_t(s.rows[1] - s.rows[0]) < 4 * int64_t(width))
        return zeqStsContextMatch;
    return zeqStsOk;
}

template <class W>
int64_t magnitude(const Taps<W>& t) {
    int64_t m = 0;
    for (int i = 0; i < t.n; ++i) m += std::abs(int64_t(t.weight[i]));
    return m;
}

// Whether every partial sum of the integer pipelines stays within int16,
// for sources of magnitude up to `top`: the sum of |weight x| * |weight y|
// over the kernel pairs bounds them all. Then 16-bit lanes give the 32-bit
// results exactly (twice the lanes a register holds), and no result needs
// saturating. Every 8-bit Blur, and Sobel and Laplace up to 5x5, fit.
bool narrowFits(const Taps<int32_t>& x, const Taps<int32_t>& y, bool pair, int top) {
    const int64_t m = magnitude(x) * magnitude(y) * (pair ? 2 : 1);
    return m * top <= 32767;
}

template <class W>
Taps<int16_t> narrowed(const Taps<W>& t) {
    Taps<int16_t> n;
    n.n = t.n;
    for (int i = 0; i < t.n; ++i) n.offset[i] = t.offset[i], n.weight[i] = int16_t(t.weight[i]), n.negative[i] = t.negative[i];
    return n;
}

template <class T, class W, class D>
class Strip {
public:

    Strip(const T* src, ptrdiff_t srcStep, D* dst, ptrdiff_t dstStep, int width, int n, ZeqiConvState& s, int flag)
        : src_(src), srcStep_(srcStep), dst_(dst), dstStep_(dstStep), w_(width), s_(s), k_(s.kernelSize),
          k2_(k_ / 2) {
        const bool starts = flag == kWhole || flag == kFirst, ends = flag == kWhole || flag == kLast;
        first_ = starts ? 0 : s.consumed;
        end_ = first_ + n;
        from_ = std::max(first_ - k2_, 0);
        if (starts) from_ = 0;
        to_ = ends ? end_ : std::max(end_ - k2_, 0);
        s.consumed = ends ? 0 : end_;
        stream_ = zq::streamsRows(dst, dstStep, int64_t(width) * n * int64_t(sizeof(D)));
    }
    ~Strip() {
        if (stream_) _mm_sfence();
    }
    int produced() const { return to_ - from_; }

    // Along rows first: each new row's row pass goes to ring slot g % k (and
    // k + g % k for the second pair of Laplace kernels); an output row is
    // the pass across the k slots of its window.
    void alongFirst(const Taps<W>& along, const Taps<W>& across, const Taps<W>* along2, const Taps<W>* across2) {
        int next = from_;
        for (int g = first_; g < end_; ++g) {
            const T* r = zq::row(src_, srcStep_, g - first_);
            zq::dispatch([&](auto tier) {
                zq::ownConvRow<tier.value>(r, w_, along, slot(g % k_));
                if (along2) zq::ownConvRow<tier.value>(r, w_, *along2, slot(k_ + g % k_));
            });
            for (; next <= g - k2_ && next < to_; ++next) acrossAt(next, across, across2);
        }
        for (; next < to_; ++next) acrossAt(next, across, across2);
    }

    // Across rows first (float filters whose row kernel only smooths, so
    // that a difference is always taken first): the source rows of the
    // window, carried ones from slots g % (k - 1), go through the pass
    // across into slot k - 1, then along into the output.
    void acrossFirst(const Taps<W>& along, const Taps<W>& across) {
        W* v = slot(k_ - 1);
        for (int y = from_; y < to_; ++y) {
            const W* rows[7];
            for (int j = 0; j < k_; ++j) rows[j] = sourceRow(y + j - k2_);
            W* out = reinterpret_cast<W*>(zq::row(dst_, dstStep_, y - from_));
            zq::dispatch([&](auto tier) {
                zq::ownConvCol<tier.value, W, W>(rows, across, nullptr, nullptr, k2_, v, w_, false);
                zq::ownConvRow<tier.value>(static_cast<const W*>(v), w_, along, out);
            });
        }
        if (s_.consumed == 0) return;
        for (int g = std::max(first_, end_ - (k_ - 1)); g < end_; ++g)
            std::memcpy(slot(g % (k_ - 1)), zq::row(src_, srcStep_, g - first_), sizeof(W) * size_t(w_));
    }

private:
    W* slot(int i) const { return reinterpret_cast<W*>(s_.rows[i]); }
    int clampRow(int g) const { return std::min(std::max(g, 0), end_ - 1); }

    const W* sourceRow(int g) const {
        g = clampRow(g);
        if (g >= first_) return reinterpret_cast<const W*>(zq::row(src_, srcStep_, g - first_));
        return slot(g % (k_ - 1));
    }

    void acrossAt(int y, const Taps<W>& across, const Taps<W>* across2) {
        const W* rows[7];
        const W* rows2[7];
        for (int j = 0; j < k_; ++j) {
            const int g = clampRow(y + j - k2_);
            rows[j] = slot(g % k_);
            rows2[j] = slot(k_ + g % k_);
        }
        D* out = zq::row(dst_, dstStep_, y - from_);
        zq::dispatch([&](auto tier) {
            zq::ownConvCol<tier.value, W, D>(rows, across, rows2, across2, k2_, out, w_, stream_);
        });
    }

    const T* src_;
    ptrdiff_t srcStep_;
    D* dst_;
    ptrdiff_t dstStep_;
    int w_;
    ZeqiConvState& s_;
    int k_, k2_;
    int first_ = 0, end_ = 0, from_ = 0, to_ = 0;
    bool stream_ = false;
};

// One filter: checks in order, then the strip.
template <Kind K, class T, class D>
ZeqStatus stateFilter(const T* pSrc, int srcStep, D* pDst, int dstStep, ZeqiSize* roi, ZeqiConvState* pState,
                      int stripFlag) {
    using W = Work<T>;
    ZQ_CHECK(zq::nonNull(pSrc, pDst, roi, pState));
    ZQ_CHECK(zq::roiSize(*roi));
    ZQ_CHECK(zq::stepsAtLeast(zq::rowBytes<T>(roi->width), srcStep));
    ZQ_CHECK(zq::stepsAtLeast(zq::rowBytes<D>(roi->width), dstStep));
    ZQ_CHECK(zq::stepsEven(dstStep));
    if (stripFlag != kWhole && stripFlag != kFirst && stripFlag != kMiddle && stripFlag != kLast)
        return zeqStsBadArg;
    ZQ_CHECK(stateFits(*pState, K, roi->width));

    ZeqiConvState& s = *pState;
    const int k = s.kernelSize;
    const bool box = K == Kind::Blur;
    const Taps<W> x = tapsOf<W>(box ? nullptr : s.kernelX, k), y = tapsOf<W>(box ? nullptr : s.kernelY, k);
    auto run = [&](auto& strip, const auto& x, const auto& y) {
        if constexpr (K == Kind::Laplace) {
            strip.alongFirst(x, y, &y, &x);
        } else if constexpr (std::is_same<W, float>::value && K == Kind::Sobel) {
            if ((s.descriptor & 3) == 0) strip.acrossFirst(x, y);
            else strip.alongFirst(x, y, nullptr, nullptr);
        } else {
            strip.alongFirst(x, y, nullptr, nullptr);
        }
        roi->height = strip.produced();
    };
    if constexpr (std::is_same<W, float>::value) {
        Strip<T, W, D> strip(pSrc, srcStep, pDst, dstStep, roi->width, roi->height, s, stripFlag);
        run(strip, x, y);
    } else {
        const int top = std::is_signed<T>::value ? 128 : 255;
        if (narrowFits(x, y, K == Kind::Laplace, top)) {
            Strip<T, int16_t, D> strip(pSrc, srcStep, pDst, dstStep, roi->width, roi->height, s, stripFlag);
            run(strip, narrowed(x), narrowed(y));
        } else {
            Strip<T, W, D> strip(pSrc, srcStep, pDst, dstStep, roi->width, roi->height, s, stripFlag);
            run(strip, x, y);
        }
    }
    return zeqStsOk;
}

}  // namespace

ZeqStatus zeqiSobel_8u16s_C1R(const Zeq8u* pSrc, int srcStep, Zeq16s* pDst, int dstStep, ZeqiSize* roi,
                              ZeqiConvState* pState, int stripFlag) {
    return stateFilter<Kind::Sobel>(pSrc, srcStep, pDst, dstStep, roi, pState, stripFlag);
}

ZeqStatus zeqiSobel_8s16s_C1R(const Zeq8s* pSrc, int srcStep, Zeq16s* pDst, int dstStep, ZeqiSize* roi,
                              ZeqiConvState* pState, int stripFlag) {
    return stateFilter<Kind::Sobel>(pSrc, srcStep, pDst, dstStep, roi, pState, stripFlag);
}

ZeqStatus zeqiSobel_32f_C1R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep, ZeqiSize* roi,
                            ZeqiConvState* pState, int stripFlag) {
    return stateFilter<Kind::Sobel>(pSrc, srcStep, pDst, dstStep, roi, pState, stripFlag);
}

ZeqStatus zeqiLaplace_8u16s_C1R(const Zeq8u* pSrc, int srcStep, Zeq16s* pDst, int dstStep, ZeqiSize* roi,
                                ZeqiConvState* pState, int stripFlag) {
    return stateFilter<Kind::Laplace>(pSrc, srcStep, pDst, dstStep, roi, pState, stripFlag);
}

ZeqStatus zeqiLaplace_8s16s_C1R(const Zeq8s* pSrc, int srcStep, Zeq16s* pDst, int dstStep, ZeqiSize* roi,
                                ZeqiConvState* pState, int stripFlag) {
    return stateFilter<Kind::Laplace>(pSrc, srcStep, pDst, dstStep, roi, pState, stripFlag);
}

ZeqStatus zeqiLaplace_32f_C1R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep, ZeqiSize* roi,
                              ZeqiConvState* pState, int stripFlag) {
    return stateFilter<Kind::Laplace>(pSrc, srcStep, pDst, dstStep, roi, pState, stripFlag);
}

ZeqStatus zeqiBlur_8u16s_C1R(const Zeq8u* pSrc, int srcStep, Zeq16s* pDst, int dstStep, ZeqiSize* roi,
                             ZeqiConvState* pState, int stripFlag) {
    return stateFilter<Kind::Blur>(pSrc, srcStep, pDst, dstStep, roi, pState, stripFlag);
}

ZeqStatus zeqiBlur_8s16s_C1R(const Zeq8s* pSrc, int srcStep, Zeq16s* pDst, int dstStep, ZeqiSize* roi,
                             ZeqiConvState* pState, int stripFlag) {
    return stateFilter<Kind::Blur>(pSrc, srcStep, pDst, dstStep, roi, pState, stripFlag);
}

ZeqStatus zeqiBlur_32f_C1R(const Zeq32f* pSrc, int srcStep, Zeq32f* pDst, int dstStep, ZeqiSize* roi,
                           ZeqiConvState* pState, int stripFlag) {
    return stateFilter<Kind::Blur>(pSrc, srcStep, pDst, dstStep, roi, pState, stripFlag);
}
