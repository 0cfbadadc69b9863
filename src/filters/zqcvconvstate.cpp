// Convolution states: the kernels of the Sobel, Laplace and Blur state
// filters and the ring of row buffers they work in, one block per state.
#include "core/zqcvcore.h"
#include "filters/zqcvconv.h"

#include <climits>
#include <cstring>

namespace {

bool acceptedType(int dataType) { return dataType == zeq8u || dataType == zeq8s || dataType == zeq32f; }
bool acceptedSize(int kernelSize) { return kernelSize == 3 || kernelSize == 5 || kernelSize == 7; }

// Binomial smoothing, then differencing, in the table's own arithmetic
// (float, or 16-bit integers); each pass reads the old values, which going
// downwards gives. Entry j: four equal floats, or four equal int16 followed
// by eight zero bytes.
template <class K>
void calcKer(Zeq8u* table, int order, int kernelSize, int origin) {
    K k[8] = {K(1)};
    for (int pass = 0; pass < kernelSize - order - 1; ++pass)
        for (int j = kernelSize - 1; j >= 1; --j) k[j] = K(k[j - 1] + k[j]);
    for (int pass = 0; pass < order; ++pass) {
        for (int j = kernelSize - 1; j >= 1; --j) k[j] = K(k[j - 1] - k[j]);
        k[0] = K(-k[0]);
    }
    const bool negate = (order & 1) && origin == 1;
    for (int j = 0; j < kernelSize; ++j) {
        const K v = negate ? K(-k[j]) : k[j];
        for (int c = 0; c < 4; ++c) std::memcpy(table + 16 * j + int(sizeof(K)) * c, &v, sizeof v);
    }
}

}  // namespace

void _zqcvCalcKer(Zeq8u* kernel, int order, int kernelSize, int dataType, int origin) {
    if (dataType == zeq32f) calcKer<float>(kernel, order, kernelSize, origin);
    else calcKer<int16_t>(kernel, order, kernelSize, origin);
}

// Row buffers: 32-bit elements, each row padded to 32 bytes (16-bit elements
// and 16 bytes for code 4). In 64 bits: the caller refuses what does not fit.
int64_t _zqcvCalcConvBufSize(int dataType, int width, int rows) {
    if (dataType == zeq16s) return int64_t(rows) * ((2 * int64_t(width) + 15) & ~int64_t(15));
    return int64_t(rows) * ((4 * int64_t(width) + 31) & ~int64_t(31));
}

namespace {

// One zeroed block: the header, then `slots` row buffers of one row each.
ZeqStatus newState(int roiWidth, int dataType, int rowsPerSlotArea, int slots, ZeqiConvState** out) {
    const int64_t area = _zqcvCalcConvBufSize(dataType, roiWidth, rowsPerSlotArea);
    const int64_t total = int64_t(zq::kConvHeaderBytes) + area;
    if (total > INT_MAX) return zeqStsMemAlloc;
    Zeq8u* block = zeqsMalloc_8u(int(total));
    if (block == nullptr) return zeqStsMemAlloc;
    zeqsZero_8u(block, int(total));
    auto* s = reinterpret_cast<ZeqiConvState*>(block);
    s->rowArea = block + zq::kConvHeaderBytes;
    const int64_t rowBytes = _zqcvCalcConvBufSize(dataType, roiWidth, 1);
    for (int i = 0; i < slots; ++i) s->rows[i] = s->rowArea + rowBytes * i;
    *out = s;
    return zeqStsOk;
}

}  // namespace

ZeqStatus zeqiSobelInitAlloc(int roiWidth, int dataType, int kernelSize, int origin, int dx, int dy,
                             ZeqiConvState** ppState) {
    ZQ_CHECK(zq::nonNull(ppState));
    if (roiWidth < 1 || dx < 0 || dy < 0 || dx + dy < 1 || !acceptedSize(kernelSize) || dx >= 4 || dy >= 4 ||
        dx >= kernelSize || dy >= kernelSize)
        return zeqStsSize;
    if (!acceptedType(dataType)) return zeqStsDataType;
    if ((origin != 0 && origin != 1) || kernelSize <= (dx > dy ? dx : dy)) return zeqStsBadArg;
    ZeqiConvState* s = nullptr;
    ZQ_CHECK(newState(roiWidth, dataType, kernelSize, kernelSize, &s));
    s->descriptor = uint32_t(16 * kernelSize + 128 * origin + 4 * dy + dx);
    s->kernelSize = kernelSize;
    _zqcvCalcKer(s->kernelX, dx, kernelSize, dataType, 0);
    _zqcvCalcKer(s->kernelY, dy, kernelSize, dataType, origin);
    *ppState = s;
    return zeqStsOk;
}

ZeqStatus zeqiLaplaceInitAlloc(int roiWidth, int dataType, int kernelSize, ZeqiConvState** ppState) {
    ZQ_CHECK(zq::nonNull(ppState));
    if (roiWidth < 1 || !acceptedSize(kernelSize)) return zeqStsSize;
    if (!acceptedType(dataType)) return zeqStsDataType;
    ZeqiConvState* s = nullptr;
    ZQ_CHECK(newState(roiWidth, dataType, 2 * kernelSize, 2 * kernelSize, &s));
    s->descriptor = uint32_t(16 * kernelSize);
    s->kernelSize = kernelSize;
    _zqcvCalcKer(s->kernelX, 2, kernelSize, dataType, 0);
    _zqcvCalcKer(s->kernelY, 0, kernelSize, dataType, 0);
    *ppState = s;
    return zeqStsOk;
}

ZeqStatus zeqiBlurInitAlloc(int roiWidth, int dataType, int kernelSize, ZeqiConvState** ppState) {
    ZQ_CHECK(zq::nonNull(ppState));
    if (roiWidth < 1 || !acceptedSize(kernelSize)) return zeqStsSize;
    if (!acceptedType(dataType)) return zeqStsDataType;
    ZeqiConvState* s = nullptr;
    ZQ_CHECK(newState(roiWidth, dataType, kernelSize + 1, kernelSize + 1, &s));
    s->descriptor = uint32_t(16 * kernelSize);
    s->kernelSize = kernelSize;
    s->rowBytes = uint32_t(_zqcvCalcConvBufSize(dataType, roiWidth, 1));
    *ppState = s;
    return zeqStsOk;
}

// The block is released from the state's own address, so nothing leaks; a
// state whose row area is null is refused like a null state.
ZeqStatus zeqiConvolFree(ZeqiConvState* pState) {
    if (pState == nullptr || pState->rowArea == nullptr) return zeqStsNullPtr;
    zeqsFree(pState);
    return zeqStsOk;
}
