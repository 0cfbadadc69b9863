// One-dimensional FFT of power-of-two length: specifications, complex
// transforms and real transforms in the packed Pack format
// (R0, R1, I1, ..., R(N/2-1), I(N/2-1), R(N/2)).
#include "fft/zqcvfft.h"

#include <cmath>
#include <cstring>

namespace {

using zq::FftSpec;

const FftSpec* asSpec(const void* p) { return static_cast<const FftSpec*>(p); }

ZeqStatus kindMatches(const FftSpec* spec, int32_t id) {
    return spec->specId == id ? zeqStsOk : zeqStsContextMatch;
}

ZeqStatus ownFFTInitAlloc(FftSpec** ppSpec, int order, int flag, int hint, int32_t id) {
    if (order < 0 || order > zq::kFftMaxOrder) return zeqStsFftOrder;
    auto* spec = reinterpret_cast<FftSpec*>(zeqsMalloc_8u(int(sizeof(FftSpec))));
    if (!spec) return zeqStsNoMem;
    std::memset(spec, 0, sizeof(FftSpec));
    spec->specId = id;
    spec->order = order;
    spec->hint = hint;
    const float n = float(int64_t(1) << order);
    switch (flag) {
    case zeqFftScaleFwdByN:
        spec->fwdScale = 1;
        spec->scale = 1.0f / n;
        break;
    case zeqFftScaleInvByN:
        spec->invScale = 1;
        spec->scale = 1.0f / n;
        break;
    case zeqFftScaleBySqrtN:
        spec->fwdScale = spec->invScale = 1;
        spec->scale = float(1.0 / std::sqrt(double(n)));
        break;
    case zeqFftScaleNone:
        break;
    default:
        zeqsFree(spec);
        return zeqStsFftFlag;
    }
    if (order >= 4) {
        bool built;
        if (id == zq::kFftComplexId) {
            float* base = zq::zeqs_createTabTwdBase_32f(order);
            built = base && zq::createTablesCFFT(*spec, order, base, order);
            zeqsFree(base);
            spec->bufSize = zq::complexBufSize(order);
        } else {
            built = zq::createTablesRFFT(*spec, order);
            spec->bufSize = order <= zq::kFftInCacheOrder + 1 ? (4 << order) + 16 : zq::complexBufSize(order - 1);
        }
        if (!built) {
            zq::freeTables(*spec);
            zeqsFree(spec);
            return zeqStsNoMem;
        }
    }
    *ppSpec = spec;
    return zeqStsOk;
}

ZeqStatus ownFFTFree(const void* pSpec, int32_t id) {
    ZQ_CHECK(zq::nonNull(pSpec));
    FftSpec* spec = const_cast<FftSpec*>(asSpec(pSpec));
    ZQ_CHECK(kindMatches(spec, id));
    zq::freeTables(*spec);
    spec->specId = 0;
    zeqsFree(spec);
    return zeqStsOk;
}

ZeqStatus ownFFTGetBufSize(const void* pSpec, int* pSize, int32_t id) {
    ZQ_CHECK(zq::nonNull(pSpec, pSize));
    ZQ_CHECK(kindMatches(asSpec(pSpec), id));
    *pSize = asSpec(pSpec)->bufSize;
    return zeqStsOk;
}

// The caller's buffer rounded up to 16 bytes, or a temporary one of bufSize bytes.
class WorkBuffer {
public:
    WorkBuffer(const FftSpec& spec, Zeq8u* caller) {
        if (caller) {
            ptr_ = reinterpret_cast<float*>((reinterpret_cast<uintptr_t>(caller) + 15) & ~uintptr_t(15));
        } else if (spec.bufSize > 0) {
            owned_ = zeqsMalloc_8u(spec.bufSize);
            ptr_ = reinterpret_cast<float*>(owned_);
        }
    }
    ~WorkBuffer() { zeqsFree(owned_); }
    WorkBuffer(const WorkBuffer&) = delete;
    WorkBuffer& operator=(const WorkBuffer&) = delete;
    ZeqStatus status(const FftSpec& spec) const {
        return (ptr_ || spec.bufSize == 0) ? zeqStsOk : zeqStsNoMem;
    }
    float* get() const { return ptr_; }

private:
    Zeq8u* owned_ = nullptr;
    float* ptr_ = nullptr;
};

ZeqStatus ownComplexFFT(const float* src, float* dst, const FftSpec& spec, Zeq8u* pBuffer, bool inverse) {
    const bool doScale = inverse ? spec.invScale : spec.fwdScale;
    if (spec.order < 4) {
        zq::smallComplex(src, dst, spec.order, inverse, doScale ? &spec.scale : nullptr);
        return zeqStsOk;
    }
    WorkBuffer buf(spec, pBuffer);
    ZQ_CHECK(buf.status(spec));
    zq::complexTransform(src, dst, spec.order, spec, buf.get(), inverse, doScale);
    return zeqStsOk;
}

// The engine's real spectra hold R(N/2) at position 1; Pack holds it last.
void intermediateToPack(float* x, size_t n) {
    const float last = x[1];
    std::memmove(x + 1, x + 2, (n - 2) * sizeof(float));
    x[n - 1] = last;
}
void packToIntermediate(const float* src, float* dst, size_t n) {
    const float last = src[n - 1];
    std::memmove(dst + 2, src + 1, (n - 2) * sizeof(float));
    dst[0] = src[0];
    dst[1] = last;
}

ZeqStatus ownRealFwd(const float* src, float* dst, const FftSpec& spec, Zeq8u* pBuffer) {
    const int n = spec.order;
    const size_t len = size_t(1) << n;
    if (n < 4) {
        zq::smallRealFwd(src, dst, n, spec.fwdScale ? &spec.scale : nullptr);
        if (len >= 4) intermediateToPack(dst, len);
        return zeqStsOk;
    }
    WorkBuffer buf(spec, pBuffer);
    ZQ_CHECK(buf.status(spec));
    // N reals are N/2 complex values; their spectrum splits into the real one.
    zq::complexTransform(src, dst, n - 1, spec, buf.get(), false, spec.fwdScale);
    zq::zeqs_cRealRecombine_32f(dst, len, spec.realRec);
    intermediateToPack(dst, len);
    return zeqStsOk;
}

ZeqStatus ownRealInv(const float* src, float* dst, const FftSpec& spec, Zeq8u* pBuffer) {
    const int n = spec.order;
    const size_t len = size_t(1) << n;
    if (n < 4) {
        if (len >= 4) packToIntermediate(src, dst, len);
        else std::memmove(dst, src, len * sizeof(float));
        zq::smallRealInv(dst, n, spec.invScale ? &spec.scale : nullptr);
        return zeqStsOk;
    }
    // The buffer first: a call that cannot get it writes nothing.
    WorkBuffer buf(spec, pBuffer);
    ZQ_CHECK(buf.status(spec));
    packToIntermediate(src, dst, len);
    zq::zeqs_cCcsRecombine_32f(dst, len, spec.ccsRec);
    zq::complexTransform(dst, dst, n - 1, spec, buf.get(), true, spec.invScale);
    return zeqStsOk;
}

const float* floats(const Zeq32fc* p) { return reinterpret_cast<const float*>(p); }
float* floats(Zeq32fc* p) { return reinterpret_cast<float*>(p); }

}  // namespace

ZeqStatus zeqsFFTInitAlloc_C_32fc(ZeqsFFTSpec_C_32fc** ppSpec, int order, int flag, int hint) {
    ZQ_CHECK(zq::nonNull(ppSpec));
    return ownFFTInitAlloc(reinterpret_cast<FftSpec**>(ppSpec), order, flag, hint, zq::kFftComplexId);
}

ZeqStatus zeqsFFTInitAlloc_R_32f(ZeqsFFTSpec_R_32f** ppSpec, int order, int flag, int hint) {
    ZQ_CHECK(zq::nonNull(ppSpec));
    return ownFFTInitAlloc(reinterpret_cast<FftSpec**>(ppSpec), order, flag, hint, zq::kFftRealId);
}

ZeqStatus zeqsFFTFree_C_32fc(ZeqsFFTSpec_C_32fc* pSpec) { return ownFFTFree(pSpec, zq::kFftComplexId); }
ZeqStatus zeqsFFTFree_R_32f(ZeqsFFTSpec_R_32f* pSpec) { return ownFFTFree(pSpec, zq::kFftRealId); }

ZeqStatus zeqsFFTGetBufSize_C_32fc(const ZeqsFFTSpec_C_32fc* pSpec, int* pSize) {
    return ownFFTGetBufSize(pSpec, pSize, zq::kFftComplexId);
}
ZeqStatus zeqsFFTGetBufSize_R_32f(const ZeqsFFTSpec_R_32f* pSpec, int* pSize) {
    return ownFFTGetBufSize(pSpec, pSize, zq::kFftRealId);
}

ZeqStatus zeqsFFTFwd_CToC_32fc(const Zeq32fc* pSrc, Zeq32fc* pDst, const ZeqsFFTSpec_C_32fc* pSpec,
                               Zeq8u* pBuffer) {
    ZQ_CHECK(zq::nonNull(pSpec));
    ZQ_CHECK(kindMatches(asSpec(pSpec), zq::kFftComplexId));
    ZQ_CHECK(zq::nonNull(pSrc, pDst));
    return ownComplexFFT(floats(pSrc), floats(pDst), *asSpec(pSpec), pBuffer, false);
}

ZeqStatus zeqsFFTInv_CToC_32fc(const Zeq32fc* pSrc, Zeq32fc* pDst, const ZeqsFFTSpec_C_32fc* pSpec,
                               Zeq8u* pBuffer) {
    ZQ_CHECK(zq::nonNull(pSpec));
    ZQ_CHECK(kindMatches(asSpec(pSpec), zq::kFftComplexId));
    ZQ_CHECK(zq::nonNull(pSrc, pDst));
    return ownComplexFFT(floats(pSrc), floats(pDst), *asSpec(pSpec), pBuffer, true);
}

ZeqStatus zeqsFFTFwd_RToPack_32f(const Zeq32f* pSrc, Zeq32f* pDst, const ZeqsFFTSpec_R_32f* pSpec,
                                 Zeq8u* pBuffer) {
    ZQ_CHECK(zq::nonNull(pSpec));
    ZQ_CHECK(kindMatches(asSpec(pSpec), zq::kFftRealId));
    ZQ_CHECK(zq::nonNull(pSrc, pDst));
    return ownRealFwd(pSrc, pDst, *asSpec(pSpec), pBuffer);
}

ZeqStatus zeqsFFTInv_PackToR_32f(const Zeq32f* pSrc, Zeq32f* pDst, const ZeqsFFTSpec_R_32f* pSpec,
                                 Zeq8u* pBuffer) {
    ZQ_CHECK(zq::nonNull(pSpec));
    ZQ_CHECK(kindMatches(asSpec(pSpec), zq::kFftRealId));
    ZQ_CHECK(zq::nonNull(pSrc, pDst));
    return ownRealInv(pSrc, pDst, *asSpec(pSpec), pBuffer);
}
