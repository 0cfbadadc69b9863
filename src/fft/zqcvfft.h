// One-dimensional FFT engine: the specification record shared by the complex
// and real transforms, the table builders and the transform kernels.
//
// Data is always interleaved (re, im) floats. A complex transform of order m
// runs, by size: straight-line kernels for N <= 8, an in-cache radix-4
// transform up to m = 15, and from m = 16 a blocked transform that splits the
// data into cache-sized blocks and combines them through the work buffer.
#ifndef ZQCV_FFT_H
#define ZQCV_FFT_H

#include "core/zqcvcore.h"
#include "core/zqcvisa.h"

#include <cstddef>
#include <cstdint>

namespace zq {

constexpr int32_t kFftComplexId = 4;
constexpr int32_t kFftRealId = 6;
constexpr int kFftMaxOrder = 30;
constexpr int kFftInCacheOrder = 15;  // largest complex order done in one pass over the array

// The specification record behind both opaque specification types.
struct FftSpec {
    int32_t specId;
    int32_t order;
    int32_t fwdScale;
    int32_t invScale;
    float scale;
    int32_t hint;
    int32_t bufSize;
    int32_t* bitRev;      // 2*rev(k) over the low m-2 bits, k < 2^(m-2), then a 0
    float* twdL1;         // radix-4 twiddles of the in-cache transform (innermost block when blocked)
    void* unusedLarge[2];
    float* realRec;       // (c, s) pairs of the forward real recombination
    float* ccsRec;        // (c', s') pairs of the inverse real recombination
    void* unused[3];
    float* stepTwd[3];    // cross-block twiddles of the blocked transform, per nesting level
};

// ---- tables (zqcvffttables.cpp) ----

// Blocked-transform geometry by complex order: log2 of the block count, and
// log2 of the complex values the work buffer holds during the cross-block stages.
int blkOrder(int m);
int bufOrder(int m);

// Bytes of work memory a complex transform of order m needs (16 bytes of
// alignment slack included).
int32_t complexBufSize(int m);

// Builds the tables of a specification whose record is already filled in;
// false when an allocation failed (what was built stays in the record).
bool createTablesCFFT(FftSpec& spec, int m, const float* base, int baseOrder);
bool createTablesRFFT(FftSpec& spec, int n);
float* zeqs_createTabTwdBase_32f(int order);
void freeTables(FftSpec& spec);

// ---- kernels (zqcvfftkernels.cpp) ----

// The transforms of 2^order values, order 0..3; the real ones write or read
// the intermediate order R0, R(N/2), R1, I1, ...
// factor == nullptr means no scaling.
void smallComplex(const float* src, float* dst, int order, bool inverse, const float* factor);
void smallRealFwd(const float* src, float* dst, int order, const float* factor);
void smallRealInv(float* data, int order, const float* factor);

// Complex transform of order m >= 3 by the method of its size, src to dst
// (which may be the same array). `buf` holds at least complexBufSize(m) - 16
// bytes, 16-byte aligned. Scales all 2^(m+1) floats when doScale.
void complexTransform(const float* src, float* dst, int m, const FftSpec& spec, float* buf, bool inverse,
                      bool doScale);

// Forward: half-length spectrum -> real spectrum in intermediate order.
void zeqs_cRealRecombine_32f(float* data, size_t n, const float* tab);
// Inverse: intermediate order -> half-length spectrum for the complex inverse.
void zeqs_cCcsRecombine_32f(float* data, size_t n, const float* tab);

void zeqs_rbMpy1_32f(float factor, float* data, size_t count);

// The radix stages with 256-bit registers (zqcvfftwide.isa.cpp), for the
// AVX2 and AVX-512 tiers only.
template <Isa I>
void fact4Wide(float* d, size_t n, size_t span, const float* tw, bool inverse);
template <Isa I>
void fact16Wide(float* d, size_t n, size_t span, const float* twA, const float* twB, bool inverse);
template <Isa I>
void fact2Wide(float* d, size_t span, const float* tw, bool inverse);
// First passes of the in-cache transform, four blocks at a time (groups % 4 == 0).
template <Isa I>
void firstPassGatherWide(const float* src, float* dst, int m, const int32_t* rev, size_t groups, bool inverse);
template <Isa I>
void firstPassInPlaceWide(float* d, int m, size_t groups, bool inverse);
// The whole first pass of order m >= 5 with contiguous loads.
template <Isa I>
void firstPassGatherAllWide(const float* src, float* dst, int m, const int32_t* rev, bool inverse);
// The whole complex transform of order 6, src to a different dst.
template <Isa I>
void complexOrder6Wide(const float* src, float* dst, const int32_t* rev, const float* tw, bool inverse);

// Runs f(tier) and returns true on the tiers that have the 256-bit kernels;
// false on the SSE2 tier.
template <class F>
inline bool onWideTier(F&& f) {
    return dispatch([&](auto tier) {
        if constexpr (tier.value == Isa::Sse2) return false;
        else {
            f(tier);
            return true;
        }
    });
}

}  // namespace zq

#endif
