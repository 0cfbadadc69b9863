// Valid-mode comparison of a template with every position of a source image
// at which it lies wholly inside, through two-dimensional FFTs of tiles of
// the source. Shared by the normalised functions (zqcvtemplmatch.cpp), the
// un-normalised ones that run their tiles in threads (zqcvtemplmatchomp.cpp)
// and the kernels of every tier (zqcvtemplmatch.isa.cpp).
//
// A call chooses an FFT size fw x fh from the template size, transforms the
// zero-padded template once and conjugates its spectrum. Every tile is an
// fw x fh block of the source (zero-padded at the image's right and bottom
// edges); its spectrum times the template's, transformed back, holds at
// (x, y) the sum over the window at the tile's (x, y) of pixel times
// template pixel, valid for the tw x th positions whose window lies in the
// tile. Tiles go in rows from the top, each row from the left.
#ifndef ZQCV_TEMPLMATCH_H
#define ZQCV_TEMPLMATCH_H

#include "core/zqcvisa.h"
#include "zeqcv.h"

#include <cstddef>
#include <cstdint>

namespace zq {

// ---- kernels, one template over the tier (zqcvtemplmatch.isa.cpp) ----

// Copies a width x height block of `src` (rows srcStep bytes apart, at any
// address) into a dstWidth x dstHeight float array whose rows are dstWidth
// floats apart, converting 8-bit pixels exactly, and zeroes the rest of
// each row and the rows from height on.
template <Isa I, class T>
void owniClipRectZeroTail_C1R(const T* src, int srcStep, int width, int height, Zeq32f* dst, int dstWidth,
                              int dstHeight);

// For cols x rows positions of a w x h window over `tile` (rows tileStride
// floats apart), the sum of the squares (AutoCorr) or of the values
// (AutoMean) of the pixels under the window, into out[y * outStride + x].
// Double precision throughout: column sums over the window's rows, slid
// down a row at a time, and along each row of positions the first window in
// full, then each next one from the previous by its entering and leaving
// column. `colSums` is scratch for cols + w - 1 doubles.
template <Isa I>
void owniAutoCorr_C1R(const Zeq32f* tile, int tileStride, int w, int h, Zeq32f* out, int outStride, int cols,
                      int rows, double* colSums);
template <Isa I>
void owniAutoMean_C1R(const Zeq32f* tile, int tileStride, int w, int h, Zeq32f* out, int outStride, int cols,
                      int rows, double* colSums);

namespace match {

// The clamp of every denominator term.
constexpr Zeq32f kClamp = 0.0005f;

enum class Method {
    SqrDistance,         // S2 - 2P + ||T||^2
    CrossCorr,           // P
    CrossCorrLevel,      // sum of pixel times (T - mean of T)
    SqrDistanceNorm,     // SqrDistance / (sqrt(max(S2, c)) * max(||T||, c))
    CrossCorrNorm,       // P / (sqrt(max(S2, c)) * max(||T||, c))
    CrossCorrNormLevel,  // CrossCorrLevel / sqrt(max(S2 - S1^2/n, c) * max(||T||^2 - n m^2, c))
};

// Whether the tiles need the window sums of squares, and of values.
constexpr bool needsSquares(Method m) {
    return m == Method::SqrDistance || m == Method::SqrDistanceNorm || m == Method::CrossCorrNorm ||
           m == Method::CrossCorrNormLevel;
}
constexpr bool needsLevels(Method m) { return m == Method::CrossCorrNormLevel; }

// One call's arguments, as the caller passed them.
template <class T>
struct Images {
    const T* src;
    int srcStep;
    ZeqiSize srcSize;
    const T* tpl;
    int tplStep;
    ZeqiSize tplSize;
    Zeq32f* dst;
    int dstStep;
};

// Null pointers, then sizes (each below 1, then a template larger than the
// source), then steps below 1; steps are not compared with the widths.
template <class T>
ZeqStatus checkArguments(const Images<T>& im);

// FFT orders and tiling of a call. The sizes hold only when both orders
// are at most 30 (an FFT specification exists for them).
struct Tiling {
    int orderX, orderY;
    int fftW, fftH;
    int tileW, tileH;      // result columns and rows of one tile
    int resultW, resultH;
    int64_t tilesX, tilesY;

    Tiling(ZeqiSize srcSize, ZeqiSize tplSize);
    int64_t tiles() const { return tilesX * tilesY; }
    int64_t fftFloats() const { return int64_t(fftW) * fftH; }
    // Floats of the window-sum area of a tile, a whole number of quadruples.
    int64_t sumFloats() const { return (int64_t(tileW) * tileH + 3) & ~int64_t(3); }
};

// The FFT specification of a call and its one work array, both released
// when the call returns, whichever way it leaves.
class Resources {
public:
    Resources() = default;
    Resources(const Resources&) = delete;
    Resources& operator=(const Resources&) = delete;
    ~Resources();

    // Creates the specification (inverse scaled by 1/(fw fh)) and learns
    // its work size; their status on failure.
    ZeqStatus createSpec(const Tiling& t);
    // The work array of `floats` floats: zeqStsNoMem when it cannot be had.
    ZeqStatus allocate(int64_t floats);

    const ZeqiFFTSpec_R_32f* spec() const { return spec_; }
    Zeq32f* array() const { return array_; }
    // Floats that hold one FFT work buffer.
    int64_t bufFloats() const { return (int64_t(bufSize_) + 3) / 4; }

private:
    ZeqiFFTSpec_R_32f* spec_ = nullptr;
    int bufSize_ = 0;
    Zeq32f* array_ = nullptr;
};

// What the tiles use of the template besides its spectrum.
struct TemplateTerms {
    Zeq32f norm = 0;         // max(||T||, c), formed in double
    Zeq32f energy = 0;       // ||T||^2
    Zeq32f levelFactor = 0;  // max(||T||^2 - n m^2, c)
    Zeq32f invCount = 0;     // 1/n
};

// Everything a tile reads, shared by all tiles of a call.
template <class T>
struct Job {
    Method method;
    Images<T> im;
    Tiling tiling;
    const ZeqiFFTSpec_R_32f* spec;
    Zeq32f* spectrum;  // fw x fh: the conjugated template spectrum
    TemplateTerms terms;
};

// The private memory of one tile at a time.
struct TileWork {
    Zeq32f* tile;     // fw x fh
    Zeq32f* sums;     // window sums of squares, then denominators; rows tw floats apart
    Zeq32f* levels;   // window sums of values (CrossCorrNormLevel)
    Zeq8u* fftBuf;    // the FFT's work buffer, and the window sums' column sums
};

// Copies the template into the spectrum area with a zero tail, takes the
// terms the method needs (subtracting the mean from the template where the
// level is removed), transforms and conjugates it.
template <class T>
ZeqStatus prepareTemplate(Job<T>& job, Zeq8u* fftBuf);

// The results of the tile whose first position is (x0, y0), into the
// destination. A failed FFT ends the tile with its status.
template <class T>
ZeqStatus processTile(const Job<T>& job, int x0, int y0, const TileWork& work);

// Tile i of the row-major order, as its first position.
inline void tileOrigin(const Tiling& t, int64_t i, int& x0, int& y0) {
    x0 = int(i % t.tilesX) * t.tileW;
    y0 = int(i / t.tilesX) * t.tileH;
}

}  // namespace match
}  // namespace zq

// Defines the exported valid-mode function NAME, for pixels of type T, as
// the call RUN<METHOD>(its arguments).
#define ZQ_VALID_FUNCTION(NAME, RUN, METHOD, T)                                                              \
    ZeqStatus NAME(const T* pSrc, int srcStep, ZeqiSize srcSize, const T* pTpl, int tplStep, ZeqiSize tplSize, \
                   Zeq32f* pDst, int dstStep) {                                                              \
        return RUN<METHOD>(zq::match::Images<T>{pSrc, srcStep, srcSize, pTpl, tplStep, tplSize, pDst, dstStep}); \
    }

#endif
