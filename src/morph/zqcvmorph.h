// Morphology: the state record that the strip dilation and erosion take, and
// the kernels of strip morphology and of the minimum and maximum filters,
// templates over the tier (zqcvmorph.isa.cpp).
#ifndef ZQCV_MORPH_H
#define ZQCV_MORPH_H

#include "core/zqcvisa.h"
#include "zeqcv.h"

#include <cstddef>
#include <cstdint>

// One block from the aligned allocator: this header (64 bytes on i386, 96 on
// x86-64), the mask bytes, the expanded mask, then the row buffers.
struct ZeqiMorphState {
    int32_t maskWidth;
    int32_t maskHeight;
    int32_t anchorX;
    int32_t anchorY;
    int32_t right;  // columns right of the anchor
    int32_t below;  // rows below the anchor
    int32_t kind;   // zq::kMorphRect3x3, zq::kMorphRect or zq::kMorphMask
    Zeq8u* mask;      // 255 where the element is set, 0 elsewhere
    Zeq8u* expanded;  // 16 bytes per mask element, all ones where set
    Zeq8u* buffer;
    Zeq8u* buffer2;
    int32_t rowBytes;  // padded row of the buffer area
    int32_t dataType;
    int32_t channels;
    int32_t roiWidth;
};

namespace zq {

constexpr int kMorphRect3x3 = 33, kMorphRect = 99, kMorphMask = 0;
constexpr size_t kMorphHeaderBytes = sizeof(void*) == 4 ? 64 : 96;
static_assert(sizeof(ZeqiMorphState) <= kMorphHeaderBytes, "the state header outgrew its block");
static_assert(offsetof(ZeqiMorphState, mask) == (sizeof(void*) == 4 ? 28 : 32), "state header layout");
static_assert(offsetof(ZeqiMorphState, rowBytes) == (sizeof(void*) == 4 ? 44 : 64), "state header layout");

// Bytes of the state's buffer area: two rows of rowBytes per mask row, at
// least one element per channel and mask row.
constexpr int64_t morphBufferBytes(int64_t maskHeight, int64_t rowBytes, int64_t channels, int64_t elementBytes) {
    return 2 * maskHeight * rowBytes > channels * maskHeight * elementBytes ? 2 * maskHeight * rowBytes
                                                                           : channels * maskHeight * elementBytes;
}

// One strip of the state's image: roi->height rows in, the rows produced
// back in roi->height. The caller checked everything; T is Zeq8u or Zeq32f.
template <Isa I, class T, bool Max>
void ownMorphStrip(const T* src, ptrdiff_t srcStep, T* dst, ptrdiff_t dstStep, ZeqiSize* roi, ZeqiMorphState* state,
                   int stripFlag);

// The rectangular rank filter over a caller-supplied border, c channels per
// pixel all filtered. Steps are the ones rows advance by. Returns
// zeqStsNoMem when its row buffer cannot be allocated.
template <Isa I, class T, bool Max>
ZeqStatus ownFilterMax(const T* src, ptrdiff_t srcStep, T* dst, ptrdiff_t dstStep, ZeqiSize roi, ZeqiSize mask,
                       ZeqiPoint anchor, int channels);

}  // namespace zq

#endif
