// The two-dimensional real FFT record, and conjugation of a two-dimensional
// packed spectrum (template matching correlates through it).
//
// Packed layout of a W x H spectrum F(u, v): every row is laid out like a
// one-dimensional Pack of length W (element 0 real, then (re, im) pairs of
// u = 1 .. W/2-1, then u = W/2 real); columns 0 and W-1 hold F(0, v) and
// F(W/2, v), which are spectra of real sequences, laid out down the column
// like one-dimensional Packs of length H.
#ifndef ZQCV_FFT2D_H
#define ZQCV_FFT2D_H

#include "zeqcv.h"

#include <emmintrin.h>

#include <cstddef>

struct ZeqiFFTSpec_R_32f {
    int specId;                    // kSpec2DId while alive, 0 once freed
    int orderX, orderY;            // W = 2^orderX, H = 2^orderY
    int hint;                      // stored for the caller, never consulted
    int bufSize;                   // work bytes of one transform, 16 bytes of alignment slack included
    ZeqsFFTSpec_C_32fc* reserved;  // always null
    ZeqsFFTSpec_C_32fc* colCplx;   // order orderY: the complex columns
    ZeqsFFTSpec_R_32f* row;        // order orderX: the rows
    ZeqsFFTSpec_R_32f* colReal;    // order orderY: columns 0 and W-1; null when W == H (row serves)
};

namespace zq {
constexpr int kSpec2DId = 26;
}

// Replaces a packed spectrum by the packed spectrum of its complex conjugate:
// every imaginary part becomes 0 - x. Those are the even elements from 2 on
// in every row, and in the even rows from 2 on also element 0 and, for an
// even width, element W-1 (the imaginary parts of the real columns' Packs).
// No checks; any width and height of at least 1.
inline void owniRCPack2DConj_32f_C1IR(Zeq32f* pSrcDst, int step, int width, int height) {
    const __m128 zero = _mm_setzero_ps();
    // Lanes 1 and 3 of a group starting at an odd element hold even elements.
    const __m128 oddLanes = _mm_castsi128_ps(_mm_set_epi32(-1, 0, -1, 0));
    for (int y = 0; y < height; ++y) {
        float* r = reinterpret_cast<float*>(reinterpret_cast<char*>(pSrcDst) + ptrdiff_t(step) * y);
        if (y % 2 == 0 && y > 0) {
            r[0] = 0.0f - r[0];
            if (width % 2 == 0) r[width - 1] = 0.0f - r[width - 1];
        }
        int x = 1;
        for (; x + 4 <= width; x += 4) {
            const __m128 v = _mm_loadu_ps(r + x);
            const __m128 neg = _mm_sub_ps(zero, v);
            _mm_storeu_ps(r + x, _mm_or_ps(_mm_and_ps(oddLanes, neg), _mm_andnot_ps(oddLanes, v)));
        }
        for (x += x % 2; x < width; x += 2) r[x] = 0.0f - r[x];
    }
}

#endif
