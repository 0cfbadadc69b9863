// Valid-mode normalised cross-correlation (plain and with the means
// removed) and normalised squared distance of a template over a source
// image, for 32f, 8u and 8s pixels; and the tile machinery that the
// un-normalised functions share.
//
// The arithmetic after the window sums runs through the image primitives in
// a fixed order per method, so each result is that sequence of float
// operations on the FFT's sums.
#include "match/zqcvtemplmatch.h"

#include "core/zqcvcore.h"
#include "fft/zqcvfft2d.h"

#include <algorithm>
#include <climits>

namespace zq {
namespace match {

namespace {

// The order of the smallest power of two that is at least 2n, and at least
// 1; once more for small transforms (order below 7) when the results do not
// fit one of them, so that large images get many moderate tiles.
int fftOrder(int n, int results) {
    int order = 1;
    while ((int64_t(1) << order) < 2 * int64_t(n)) ++order;
    if (order < 7 && (int64_t(1) << order) < results) ++order;
    return order;
}

// Only errors end a call: a warning of a primitive (a NaN in the data met
// by a square root) changes nothing in what is written.
inline ZeqStatus errorOf(ZeqStatus s) { return s < 0 ? s : zeqStsOk; }

template <class T>
void clip(const T* src, int srcStep, int width, int height, Zeq32f* dst, int dstWidth, int dstHeight) {
    dispatch([&](auto tier) {
        owniClipRectZeroTail_C1R<tier.value>(src, srcStep, width, height, dst, dstWidth, dstHeight);
    });
}

}  // namespace

template <class T>
ZeqStatus checkArguments(const Images<T>& im) {
    ZQ_CHECK(nonNull(im.src, im.tpl, im.dst));
    ZQ_CHECK(roiSize(im.srcSize));
    ZQ_CHECK(roiSize(im.tplSize));
    if (im.srcSize.width < im.tplSize.width || im.srcSize.height < im.tplSize.height) return zeqStsSize;
    return stepsPositive(im.srcStep, im.tplStep, im.dstStep);
}

Tiling::Tiling(ZeqiSize srcSize, ZeqiSize tplSize)
    : resultW(srcSize.width - tplSize.width + 1), resultH(srcSize.height - tplSize.height + 1) {
    orderX = fftOrder(tplSize.width, resultW);
    orderY = fftOrder(tplSize.height, resultH);
    if (orderX > 30 || orderY > 30) {  // no FFT of that size: only the orders are of use
        fftW = fftH = tileW = tileH = 0;
        tilesX = tilesY = 0;
        return;
    }
    fftW = 1 << orderX;
    fftH = 1 << orderY;
    tileW = fftW - tplSize.width + 1;
    tileH = fftH - tplSize.height + 1;
    tilesX = (int64_t(resultW) + tileW - 1) / tileW;
    tilesY = (int64_t(resultH) + tileH - 1) / tileH;
}

Resources::~Resources() {
    if (spec_) zeqiFFTFree_R_32f(spec_);
    zeqsFree(array_);
}

ZeqStatus Resources::createSpec(const Tiling& t) {
    ZQ_CHECK(zeqiFFTInitAlloc_R_32f(&spec_, t.orderX, t.orderY, zeqFftScaleInvByN, 0));
    return zeqiFFTGetBufSize_R_32f(spec_, &bufSize_);
}

ZeqStatus Resources::allocate(int64_t floats) {
    if (floats > INT_MAX) return zeqStsNoMem;
    array_ = zeqsMalloc_32f(int(floats));
    return array_ ? zeqStsOk : zeqStsNoMem;
}

template <class T>
ZeqStatus prepareTemplate(Job<T>& job, Zeq8u* fftBuf) {
    const Images<T>& im = job.im;
    const Tiling& t = job.tiling;
    const int step = t.fftW * int(sizeof(Zeq32f));
    const ZeqiSize size = im.tplSize;
    clip(im.tpl, im.tplStep, size.width, size.height, job.spectrum, t.fftW, t.fftH);

    TemplateTerms& terms = job.terms;
    const Method m = job.method;
    double norm = 0, mean = 0;
    if (m != Method::CrossCorr && m != Method::CrossCorrLevel)
        ZQ_CHECK(zeqiNorm_L2_32f_C1R(job.spectrum, step, size, &norm, zeqAlgHintAccurate));
    if (m == Method::CrossCorrLevel || m == Method::CrossCorrNormLevel) {
        ZQ_CHECK(zeqiMean_32f_C1R(job.spectrum, step, size, &mean, zeqAlgHintAccurate));
        ZQ_CHECK(zeqiSubC_32f_C1IR(Zeq32f(mean), job.spectrum, step, size));
    }
    const double n = double(int64_t(size.width) * size.height);
    terms.norm = Zeq32f(norm < double(kClamp) ? double(kClamp) : norm);
    terms.energy = Zeq32f(norm * norm);
    const Zeq32f spread = Zeq32f(norm * norm - n * mean * mean);
    terms.levelFactor = spread < kClamp ? kClamp : spread;
    terms.invCount = 1.0f / Zeq32f(n);

    ZQ_CHECK(zeqiFFTFwd_RToPack_32f_C1R(job.spectrum, step, job.spectrum, step, job.spec, fftBuf));
    owniRCPack2DConj_32f_C1IR(job.spectrum, step, t.fftW, t.fftH);
    return zeqStsOk;
}

// The window sums and, for the normalised methods, the denominators that
// can be finished before the tile's correlation is known.
template <class T>
ZeqStatus windowTerms(const Job<T>& job, const TileWork& w, ZeqiSize roi) {
    const Method m = job.method;
    const Tiling& t = job.tiling;
    const ZeqiSize tpl = job.im.tplSize;
    const int sumStep = t.tileW * int(sizeof(Zeq32f));
    double* colSums = reinterpret_cast<double*>(w.fftBuf);
    dispatch([&](auto tier) {
        if (needsSquares(m))
            owniAutoCorr_C1R<tier.value>(w.tile, t.fftW, tpl.width, tpl.height, w.sums, t.tileW, roi.width,
                                         roi.height, colSums);
        if (needsLevels(m))
            owniAutoMean_C1R<tier.value>(w.tile, t.fftW, tpl.width, tpl.height, w.levels, t.tileW, roi.width,
                                         roi.height, colSums);
    });
    if (m == Method::CrossCorrNorm) {
        ZQ_CHECK(zeqiThreshold_LTVal_32f_C1IR(w.sums, sumStep, roi, kClamp, kClamp));
        ZQ_CHECK(errorOf(zeqiSqrt_32f_C1IR(w.sums, sumStep, roi)));
        ZQ_CHECK(zeqiMulC_32f_C1IR(job.terms.norm, w.sums, sumStep, roi));
    } else if (m == Method::CrossCorrNormLevel) {
        ZQ_CHECK(zeqiSqr_32f_C1IR(w.levels, sumStep, roi));
        ZQ_CHECK(zeqiMulC_32f_C1IR(job.terms.invCount, w.levels, sumStep, roi));
        ZQ_CHECK(zeqiSub_32f_C1IR(w.levels, sumStep, w.sums, sumStep, roi));
        ZQ_CHECK(zeqiThreshold_LTVal_32f_C1IR(w.sums, sumStep, roi, kClamp, kClamp));
        ZQ_CHECK(zeqiMulC_32f_C1IR(job.terms.levelFactor, w.sums, sumStep, roi));
        ZQ_CHECK(errorOf(zeqiSqrt_32f_C1IR(w.sums, sumStep, roi)));
    }
    return zeqStsOk;
}

// The numerator from the correlation in the tile, divided by the
// denominator where the method is normalised.
template <class T>
ZeqStatus finish(const Job<T>& job, const TileWork& w, ZeqiSize roi) {
    const Method m = job.method;
    const int tileStep = job.tiling.fftW * int(sizeof(Zeq32f)), sumStep = job.tiling.tileW * int(sizeof(Zeq32f));
    if (m == Method::SqrDistance || m == Method::SqrDistanceNorm) {
        ZQ_CHECK(zeqiMulC_32f_C1IR(-2.0f, w.tile, tileStep, roi));
        ZQ_CHECK(zeqiAdd_32f_C1IR(w.sums, sumStep, w.tile, tileStep, roi));
        ZQ_CHECK(zeqiAddC_32f_C1IR(job.terms.energy, w.tile, tileStep, roi));
    }
    if (m == Method::SqrDistanceNorm) {
        ZQ_CHECK(zeqiThreshold_LT_32f_C1IR(w.sums, sumStep, roi, kClamp));
        ZQ_CHECK(errorOf(zeqiSqrt_32f_C1IR(w.sums, sumStep, roi)));
        ZQ_CHECK(zeqiMulC_32f_C1IR(job.terms.norm, w.sums, sumStep, roi));
    }
    if (m == Method::SqrDistanceNorm || m == Method::CrossCorrNorm || m == Method::CrossCorrNormLevel)
        ZQ_CHECK(errorOf(zeqiDiv_32f_C1IR(w.sums, sumStep, w.tile, tileStep, roi)));
    return zeqStsOk;
}

template <class T>
ZeqStatus processTile(const Job<T>& job, int x0, int y0, const TileWork& w) {
    const Images<T>& im = job.im;
    const Tiling& t = job.tiling;
    const int tileStep = t.fftW * int(sizeof(Zeq32f));
    clip(row(im.src, im.srcStep, y0) + x0, im.srcStep, std::min(im.srcSize.width - x0, t.fftW),
         std::min(im.srcSize.height - y0, t.fftH), w.tile, t.fftW, t.fftH);
    const ZeqiSize roi{std::min(t.resultW - x0, t.tileW), std::min(t.resultH - y0, t.tileH)};
    ZQ_CHECK(windowTerms(job, w, roi));

    ZQ_CHECK(zeqiFFTFwd_RToPack_32f_C1R(w.tile, tileStep, w.tile, tileStep, job.spec, w.fftBuf));
    ZQ_CHECK(zeqiMulPack_32f_C1IR(job.spectrum, tileStep, w.tile, tileStep, {t.fftW, t.fftH}));
    ZQ_CHECK(zeqiFFTInv_PackToR_32f_C1R(w.tile, tileStep, w.tile, tileStep, job.spec, w.fftBuf));

    ZQ_CHECK(finish(job, w, roi));
    return zeqiCopy_32f_C1R(w.tile, tileStep, row(im.dst, im.dstStep, y0) + x0, im.dstStep, roi);
}

#define ZQ_MATCH_INSTANCES(T)                                               \
    template ZeqStatus checkArguments<T>(const Images<T>&);                 \
    template ZeqStatus prepareTemplate<T>(Job<T>&, Zeq8u*);                 \
    template ZeqStatus processTile<T>(const Job<T>&, int, int, const TileWork&);
ZQ_MATCH_INSTANCES(Zeq32f)
ZQ_MATCH_INSTANCES(Zeq8u)
ZQ_MATCH_INSTANCES(Zeq8s)

}  // namespace match
}  // namespace zq

namespace {

using zq::match::Method;

// One call of a normalised method: the specification and one array holding
// the template spectrum, the tile, its window sums, the FFT work buffer and,
// for the level-removed correlation, the tile's plain window sums; then the
// tiles in order, one after the other.
template <Method M, class T>
ZeqStatus validNormalised(const zq::match::Images<T>& im) {
    ZQ_CHECK(zq::match::checkArguments(im));
    const zq::match::Tiling t(im.srcSize, im.tplSize);
    zq::match::Resources res;
    ZQ_CHECK(res.createSpec(t));
    const int64_t fft = t.fftFloats(), sums = t.sumFloats(), buf = res.bufFloats();
    ZQ_CHECK(res.allocate(2 * fft + sums + buf + (zq::match::needsLevels(M) ? sums : 0)));

    Zeq32f* a = res.array();
    zq::match::Job<T> job{M, im, t, res.spec(), a, {}};
    const zq::match::TileWork work{a + fft, a + 2 * fft, a + 2 * fft + sums + buf,
                                   reinterpret_cast<Zeq8u*>(a + 2 * fft + sums)};
    ZQ_CHECK(zq::match::prepareTemplate(job, work.fftBuf));
    for (int64_t i = 0; i < t.tiles(); ++i) {
        int x0, y0;
        zq::match::tileOrigin(t, i, x0, y0);
        ZQ_CHECK(zq::match::processTile(job, x0, y0, work));
    }
    return zeqStsOk;
}

}  // namespace

// ---- exported functions ----

ZQ_VALID_FUNCTION(zeqiCrossCorrValid_Norm_32f_C1R, validNormalised, Method::CrossCorrNorm, Zeq32f)
ZQ_VALID_FUNCTION(zeqiCrossCorrValid_Norm_8u32f_C1R, validNormalised, Method::CrossCorrNorm, Zeq8u)
ZQ_VALID_FUNCTION(zeqiCrossCorrValid_Norm_8s32f_C1R, validNormalised, Method::CrossCorrNorm, Zeq8s)
ZQ_VALID_FUNCTION(zeqiCrossCorrValid_NormLevel_32f_C1R, validNormalised, Method::CrossCorrNormLevel, Zeq32f)
ZQ_VALID_FUNCTION(zeqiCrossCorrValid_NormLevel_8u32f_C1R, validNormalised, Method::CrossCorrNormLevel, Zeq8u)
ZQ_VALID_FUNCTION(zeqiCrossCorrValid_NormLevel_8s32f_C1R, validNormalised, Method::CrossCorrNormLevel, Zeq8s)
ZQ_VALID_FUNCTION(zeqiSqrDistanceValid_Norm_32f_C1R, validNormalised, Method::SqrDistanceNorm, Zeq32f)
ZQ_VALID_FUNCTION(zeqiSqrDistanceValid_Norm_8u32f_C1R, validNormalised, Method::SqrDistanceNorm, Zeq8u)
ZQ_VALID_FUNCTION(zeqiSqrDistanceValid_Norm_8s32f_C1R, validNormalised, Method::SqrDistanceNorm, Zeq8s)
