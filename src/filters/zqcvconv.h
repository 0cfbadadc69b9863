// Convolution states and the separable engine of the Sobel, Laplace and Blur
// state filters: the state record, and the two passes written once over the
// tier (zqcvconv.isa.cpp).
#ifndef ZQCV_CONV_H
#define ZQCV_CONV_H

#include "core/zqcvisa.h"
#include "zeqcv.h"

#include <cstddef>
#include <cstdint>

// One block from the aligned allocator: this header (608 bytes on i386, 672
// on x86-64), then the row buffers.
struct ZeqiConvState {
    Zeq8u* rowArea;
    Zeq8u* rows[16];
    uint32_t descriptor;
    int32_t kernelSize;
    uint32_t rowBytes;
    // Rows of the current image taken in so far by strip calls. It sits in
    // what would otherwise be padding before the kernel tables.
    int32_t consumed;
    alignas(16) Zeq8u kernelX[256];
    alignas(16) Zeq8u kernelY[256];
};

// One kernel table: entry j (16 bytes) holds weight j of the binomial
// smoothing and differencing kernel of `order`, as four equal floats (zeq32f)
// or four equal int16 (the other types); `origin` 1 negates odd orders.
void _zqcvCalcKer(Zeq8u* kernel, int order, int kernelSize, int dataType, int origin);
// Bytes of `rows` row buffers for `width` pixels (64-bit).
int64_t _zqcvCalcConvBufSize(int dataType, int width, int rows);

namespace zq {

constexpr size_t kConvHeaderBytes = sizeof(void*) == 4 ? 608 : 672;
static_assert(sizeof(ZeqiConvState) == kConvHeaderBytes, "state header layout");
static_assert(offsetof(ZeqiConvState, descriptor) == (sizeof(void*) == 4 ? 68 : 136), "state header layout");
static_assert(offsetof(ZeqiConvState, kernelX) == (sizeof(void*) == 4 ? 96 : 160), "state header layout");
static_assert(offsetof(ZeqiConvState, kernelY) == (sizeof(void*) == 4 ? 352 : 416), "state header layout");

// The non-zero weights of one pass, in the order they are summed: positive
// weights from the left, then negative ones from the left. Float sums thus
// come out as the fixed 3x3 filters write them: c - a, (a + 2b) + c and
// (a + c) - 2b. `offset` is the tap's distance from the centre, `weight` its
// magnitude, `negative` its sign.
template <class W>
struct Taps {
    int n = 0;
    int offset[7];
    W weight[7];
    bool negative[7];
};

// Along a row: out[x] = the taps over src[x + offset], the row's first and
// last pixels standing in for those beyond it. W is int16_t (where no sum
// can leave it) or int32_t for 8-bit sources, float for float ones.
template <Isa I, class T, class W>
void ownConvRow(const T* src, int width, const Taps<W>& taps, W* out);

// Across rows: out[x] = the taps over rows[k2 + offset][x], plus the second
// set when `taps2` is given, then saturated to int16 (integer pipelines) or
// stored as it is (float). `out` may sit at any byte address, unless
// `stream`: then it is 16-byte aligned and written past the caches (the
// caller fences).
template <Isa I, class W, class D>
void ownConvCol(const W* const* rows, const Taps<W>& taps, const W* const* rows2, const Taps<W>* taps2, int k2,
                D* out, int width, bool stream);

}  // namespace zq

#endif
