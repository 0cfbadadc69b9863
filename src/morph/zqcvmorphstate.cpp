// The morphology state: structuring element, anchor, blend masks and row
// buffers for one region width, data type and channel count, in one block of
// the aligned allocator.
#include "core/zqcvcore.h"
#include "morph/zqcvmorph.h"

#include <algorithm>
#include <climits>
#include <cmath>

namespace {

constexpr int kMaskRect = 0, kMaskCross = 1, kMaskEllipse = 2, kMaskArbitrary = 100;

// Rows i and mh - 1 - i from the top down, in single precision; the column
// bounds are widened to double only for the rounding offsets.
void buildEllipse(Zeq8u* m, int mw, int mh) {
    const float a = 0.5f * float(mw), b = 0.5f * float(mh), k = a / b;
    const int last = int(0.5f * float(mh));
    for (int i = 0; i <= last; ++i) {
        const float t = float(i) + 0.5f;
        const float h = std::sqrt(float(mh) * t - t * t) * k;
        int x0 = int(double(a - h) + 0.5);
        if (x0 < 1) x0 = 0;
        int x1 = int(double(a + h) - 0.5);
        if (x1 > mw) x1 = mw;
        Zeq8u* top = m + ptrdiff_t(i) * mw;
        Zeq8u* bottom = m + ptrdiff_t(mh - 1 - i) * mw;
        for (int x = 0; x < mw; ++x) top[x] = bottom[x] = (x >= x0 && x <= x1) ? 255 : 0;
    }
}

}  // namespace

ZeqStatus zeqiMorphologyInitAlloc(int roiWidth, int dataType, int channels, ZeqiSize maskSize, ZeqiPoint anchor,
                                  int maskType, const Zeq8u* pMask, ZeqiMorphState** ppState) {
    ZQ_CHECK(zq::nonNull(ppState));
    if (roiWidth < 1 || maskSize.width < 1 || maskSize.height < 1) return zeqStsSize;
    if (dataType != zeq8u && dataType != zeq32f) return zeqStsDataType;
    if (channels != 1 && channels != 3 && channels != 4) return zeqStsChannel;
    const int mw = maskSize.width, mh = maskSize.height;
    if (anchor.x < 0 || anchor.x >= mw || anchor.y < 0 || anchor.y >= mh) return zeqStsAnchor;
    if (maskType != kMaskRect && maskType != kMaskCross && maskType != kMaskEllipse && maskType != kMaskArbitrary)
        return zeqStsOutOfRange;
    if (maskType == kMaskArbitrary && pMask == nullptr) return zeqStsNullPtr;

    const int64_t e = dataType == zeq8u ? 1 : 4, c = channels;
    const int64_t elements = int64_t(mw) * mh;
    if (elements > INT_MAX) return zeqStsNoMem;  // 17 mask bytes per element could leave 64 bits
    const int64_t maskBytes = maskType == kMaskRect ? 0 : (elements + 15) & ~int64_t(15);
    const int64_t rowBytes = ((int64_t(roiWidth) * c + c * mw) * e + 15) & ~int64_t(15);
    if (rowBytes > INT_MAX) return zeqStsNoMem;
    const int64_t buffers = zq::morphBufferBytes(mh, rowBytes, c, e);
    const int64_t total = int64_t(zq::kMorphHeaderBytes) + buffers + 17 * maskBytes;
    if (total > INT_MAX) return zeqStsNoMem;
    Zeq8u* block = zeqsMalloc_8u(int(total));
    if (block == nullptr) return zeqStsNoMem;

    auto* s = reinterpret_cast<ZeqiMorphState*>(block);
    std::memset(block, 0, zq::kMorphHeaderBytes);
    s->maskWidth = mw;
    s->maskHeight = mh;
    s->anchorX = anchor.x;
    s->anchorY = anchor.y;
    s->right = mw - anchor.x - 1;
    s->below = mh - anchor.y - 1;
    s->kind = maskType != kMaskRect ? zq::kMorphMask : (mw == 3 && mh == 3) ? zq::kMorphRect3x3 : zq::kMorphRect;
    s->mask = block + zq::kMorphHeaderBytes;
    s->expanded = s->mask + maskBytes;
    s->buffer = s->buffer2 = s->expanded + 16 * maskBytes;
    s->rowBytes = int32_t(rowBytes);
    s->dataType = dataType;
    s->channels = channels;
    s->roiWidth = roiWidth;

    if (maskType != kMaskRect) {
        Zeq8u* m = s->mask;
        std::memset(m, 0, size_t(maskBytes));
        if (maskType == kMaskArbitrary) {
            for (int64_t i = 0; i < elements; ++i) m[i] = pMask[i] ? 255 : 0;
        } else if (maskType == kMaskCross) {
            for (int y = 0; y < mh; ++y) m[ptrdiff_t(y) * mw + anchor.x] = 255;
            std::memset(m + ptrdiff_t(anchor.y) * mw, 255, size_t(mw));
        } else {
            buildEllipse(m, mw, mh);
        }
        for (int64_t i = 0; i < maskBytes; ++i) std::memset(s->expanded + 16 * i, m[i], 16);
    }
    *ppState = s;
    return zeqStsOk;
}

ZeqStatus zeqiMorphologyFree(ZeqiMorphState* pState) {
    ZQ_CHECK(zq::nonNull(pState));
    zeqsFree(reinterpret_cast<Zeq8u*>(pState));
    return zeqStsOk;
}
