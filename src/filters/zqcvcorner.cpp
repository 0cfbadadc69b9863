// Corner measures: the smaller eigenvalue, or both eigenvalues and unit
// eigenvectors, of the structure matrix [Sxx Sxy; Sxy Syy] of box-summed
// derivative products at every pixel.
//
// Two Sobel states and three box-sum states run strip by strip over the
// image, so the caller's work buffer holds only S + 1 rows of each of three
// areas: A (dx, then dx^2, then Sxx), C (dy, dy^2, Syy) and B (dx dy, Sxy),
// in that order. Derivatives land one row into their area and the box sums on
// its first row, so a box-sum state reads each row before the sum row above
// it is written. The kernels are in zqcvcorner.isa.cpp.
#include "core/zqcvcore.h"
#include "filters/zqcvcorner.h"

#include <algorithm>
#include <climits>
#include <type_traits>

namespace {

bool oneOf357(int k) { return k == 3 || k == 5 || k == 7; }

// Rows per strip: the largest of the two kernel sizes, and at least 7.
int stripRows(int apertureSize, int avgWindow) { return std::max({apertureSize, avgWindow, 7}); }

ZeqStatus bufferSize(int roiWidth, int apertureSize, int avgWindow, int* pBufferSize) {
    ZQ_CHECK(zq::nonNull(pBufferSize));
    if (roiWidth < 1 || !oneOf357(apertureSize) || !oneOf357(avgWindow)) return zeqStsSize;
    const int64_t w = roiWidth;
    const int64_t bytes = 12 * w + 12 * w * stripRows(apertureSize, avgWindow);
    if (bytes > INT_MAX) return zeqStsSize;
    *pBufferSize = int(bytes);
    return zeqStsOk;
}

}  // namespace

ZeqStatus zeqiMinEigenValGetSize(int roiWidth, int apertureSize, int avgWindow, int* pBufferSize) {
    return bufferSize(roiWidth, apertureSize, avgWindow, pBufferSize);
}

ZeqStatus zeqiEigenValsVecsGetSize(int roiWidth, int apertureSize, int avgWindow, int* pBufferSize) {
    return bufferSize(roiWidth, apertureSize, avgWindow, pBufferSize);
}
