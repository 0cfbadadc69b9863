// The fixed 3x3 derivative filters: the separable kernels and the interior
// row kernel, one template over the tier (zqcvsobel3x3.isa.cpp).
//
// Every member is a three-tap factor along the row times a three-tap factor
// across rows. A difference factor is applied first and the smoothing factor
// combines its results (DxDy takes the horizontal difference first), which
// fixes the order of the float sums. Integer sums are exact in 16-bit lanes
// (at most 16 x 255 in magnitude), so their order does not matter.
#ifndef ZQCV_SOBEL3X3_H
#define ZQCV_SOBEL3X3_H

#include "core/zqcvisa.h"
#include "zeqcv.h"

namespace zq {

enum class Deriv3x3 { SobelDx, SobelDy, SobelD2x, SobelD2y, SobelDxDy, ScharrDx, ScharrDy };

// The final step of a result: integer members shift right arithmetically
// (Sobel by 0), float members multiply by 1 / 2^shift (1 for Sobel).
struct Finish3x3 {
    int shift;
    float scale;
};

// Interior columns 1 .. width-2 of one destination row from the source rows
// above, at and below it, a register at a time. False, with nothing written,
// when the row is narrower than a register plus two. 8-bit sources give
// 16-bit results, float ones float.
template <Isa I, Deriv3x3 K, class T, class Dst>
bool ownDeriv3x3Interior(const T* const rows[3], Dst* d, int width, Finish3x3 f);

ZQ_TIER_BEGIN

// ---- the three-tap factors, applied to (previous, centre, next) ----

struct Difference {  // (-1, 0, 1)
    static constexpr bool smoothing = false;
    template <class R> static R apply(R a, R, R c) { return c - a; }
};
struct SecondDifference {  // (1, -2, 1)
    static constexpr bool smoothing = false;
    template <class R> static R apply(R a, R b, R c) { return (a + c) - b * 2; }
};
struct Smooth121 {
    static constexpr bool smoothing = true;
    template <class R> static R apply(R a, R b, R c) { return (a + b * 2) + c; }
};
struct Smooth3_10_3 {
    static constexpr bool smoothing = true;
    template <class R> static R apply(R a, R b, R c) { return (a * 3 + b * 10) + c * 3; }
};

template <class Horizontal, class Vertical>
struct Kernel3x3 {
    using H = Horizontal;
    using V = Vertical;
    // The smoothing factor runs second; with two differences the horizontal one runs first.
    static constexpr bool horizontalFirst = !H::smoothing;
    // A difference across one pixel is zero: such a region is cleared without being read.
    static bool isZero(ZeqiSize roi) {
        return (!H::smoothing && roi.width == 1) || (!V::smoothing && roi.height == 1);
    }

    // p[j][i]: the pixel in row j (0 above, 1 centre, 2 below) and column i (0 left, 1 centre, 2 right).
    template <class R>
    static R apply(const R (&p)[3][3]) {
        if constexpr (horizontalFirst)
            return V::apply(H::apply(p[0][0], p[0][1], p[0][2]), H::apply(p[1][0], p[1][1], p[1][2]),
                            H::apply(p[2][0], p[2][1], p[2][2]));
        else
            return H::apply(V::apply(p[0][0], p[1][0], p[2][0]), V::apply(p[0][1], p[1][1], p[2][1]),
                            V::apply(p[0][2], p[1][2], p[2][2]));
    }
};

template <Deriv3x3 K>
struct KernelOf;
template <> struct KernelOf<Deriv3x3::SobelDx> : Kernel3x3<Difference, Smooth121> {};
template <> struct KernelOf<Deriv3x3::SobelDy> : Kernel3x3<Smooth121, Difference> {};
template <> struct KernelOf<Deriv3x3::SobelD2x> : Kernel3x3<SecondDifference, Smooth121> {};
template <> struct KernelOf<Deriv3x3::SobelD2y> : Kernel3x3<Smooth121, SecondDifference> {};
template <> struct KernelOf<Deriv3x3::SobelDxDy> : Kernel3x3<Difference, Difference> {};
template <> struct KernelOf<Deriv3x3::ScharrDx> : Kernel3x3<Difference, Smooth3_10_3> {};
template <> struct KernelOf<Deriv3x3::ScharrDy> : Kernel3x3<Smooth3_10_3, Difference> {};

ZQ_TIER_END

}  // namespace zq

#endif
