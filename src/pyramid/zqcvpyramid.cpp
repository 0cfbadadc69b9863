// Gaussian 5x5 pyramid: one level down (half size, rounded up) or up (double
// size), for 8u, 8s and 32f images of one or three channels. The kernels are
// in zqcvpyramid.isa.cpp, built for every tier.
#include "core/zqcvcore.h"
#include "pyramid/zqcvpyramid.h"

#include <climits>
#include <type_traits>

namespace {

enum class Direction { Down, Up };

// Checks, then the kernel. Float steps are tested for oddness only.
template <Direction D, int Ch, class T>
ZeqStatus pyramid(const T* pSrc, int srcStep, T* pDst, int dstStep, ZeqiSize roi, Zeq8u* pBuffer) {
    ZQ_CHECK(zq::nonNull(pSrc, pDst, pBuffer));
    ZQ_CHECK(zq::roiSize(roi));
    const int64_t dstRow = D == Direction::Down ? zq::rowBytes<T>((roi.width + 1) / 2, Ch)
                                                : 2 * zq::rowBytes<T>(roi.width, Ch);
    ZQ_CHECK(zq::stepsAtLeast(zq::rowBytes<T>(roi.width, Ch), srcStep));
    ZQ_CHECK(zq::stepsAtLeast(dstRow, dstStep));
    if constexpr (std::is_same<T, Zeq32f>::value) ZQ_CHECK(zq::stepsEven(srcStep, dstStep));
    zq::dispatch([&](auto tier) {
        if constexpr (D == Direction::Down)
            zq::ownPyrDown_Gauss5x5<tier.value, T, Ch>(pSrc, srcStep, pDst, dstStep, roi, pBuffer);
        else
            zq::ownPyrUp_Gauss5x5<tier.value, T, Ch>(pSrc, srcStep, pDst, dstStep, roi, pBuffer);
    });
    return zeqStsOk;
}

// rowsOfR rows of R bytes, R = bytesPerPixel x width x channels rounded up to
// 16, plus the 32 bytes that aligning the start may skip.
ZeqStatus bufSize(int roiWidth, ZeqDataType dataType, int channels, int* pBufSize, int bytesPerPixel, int rowsOfR) {
    ZQ_CHECK(zq::nonNull(pBufSize));
    if (roiWidth < 1) return zeqStsSize;
    if (channels != 1 && channels != 3) return zeqStsChannel;
    if (dataType != zeq8u && dataType != zeq8s && dataType != zeq32f) return zeqStsDataType;
    const int64_t r = (int64_t(bytesPerPixel) * roiWidth * channels + 15) & ~int64_t(15);
    const int64_t bytes = rowsOfR * r + 32;
    if (bytes > INT_MAX) return zeqStsSize;
    *pBufSize = int(bytes);
    return zeqStsOk;
}

}  // namespace

ZeqStatus zeqiPyrDownGetBufSize_Gauss5x5(int roiWidth, ZeqDataType dataType, int channels, int* pBufSize) {
    return bufSize(roiWidth, dataType, channels, pBufSize, 4, 6);
}

ZeqStatus zeqiPyrUpGetBufSize_Gauss5x5(int roiWidth, ZeqDataType dataType, int channels, int* pBufSize) {
    return bufSize(roiWidth, dataType, channels, pBufSize, 8, 3);
}

#define ZQ_PYRAMID(NAME, D, T, CH)                                                                   \
    ZeqStatus NAME(const T* pSrc, int srcStep, T* pDst, int dstStep, ZeqiSize roiSize, Zeq8u* pBuffer) { \
        return pyramid<D, CH>(pSrc, srcStep, pDst, dstStep, roiSize, pBuffer);                        \
    }

ZQ_PYRAMID(zeqiPyrDown_Gauss5x5_8u_C1R, Direction::Down, Zeq8u, 1)
ZQ_PYRAMID(zeqiPyrDown_Gauss5x5_8u_C3R, Direction::Down, Zeq8u, 3)
ZQ_PYRAMID(zeqiPyrDown_Gauss5x5_8s_C1R, Direction::Down, Zeq8s, 1)
ZQ_PYRAMID(zeqiPyrDown_Gauss5x5_8s_C3R, Direction::Down, Zeq8s, 3)
ZQ_PYRAMID(zeqiPyrDown_Gauss5x5_32f_C1R, Direction::Down, Zeq32f, 1)
ZQ_PYRAMID(zeqiPyrDown_Gauss5x5_32f_C3R, Direction::Down, Zeq32f, 3)
ZQ_PYRAMID(zeqiPyrUp_Gauss5x5_8u_C1R, Direction::Up, Zeq8u, 1)
ZQ_PYRAMID(zeqiPyrUp_Gauss5x5_8u_C3R, Direction::Up, Zeq8u, 3)
ZQ_PYRAMID(zeqiPyrUp_Gauss5x5_8s_C1R, Direction::Up, Zeq8s, 1)
ZQ_PYRAMID(zeqiPyrUp_Gauss5x5_8s_C3R, Direction::Up, Zeq8s, 3)
ZQ_PYRAMID(zeqiPyrUp_Gauss5x5_32f_C1R, Direction::Up, Zeq32f, 1)
ZQ_PYRAMID(zeqiPyrUp_Gauss5x5_32f_C3R, Direction::Up, Zeq32f, 3)
