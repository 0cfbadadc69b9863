// Tables of the one-dimensional FFT, all derived from one quarter-wave sine
// table so that every twiddle of a specification is the same float value
// wherever it recurs.
#include "fft/zqcvfft.h"

#include <climits>
#include <cmath>
#include <cstring>

namespace zq {
namespace {

// Indexed by complex order; orders below 16 never block.
constexpr int8_t tbl_blk_order[kFftMaxOrder + 1] = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
                                                    4, 4, 4, 5, 6, 6, 8, 8, 8, 8, 8, 8, 8, 8, 8};
constexpr int8_t tbl_buf_order[kFftMaxOrder + 1] = {0,  0,  0,  0,  0,  0,  0,  0,  0,  0,  0,
                                                    0,  0,  0,  0,  0,  9,  10, 10, 13, 13, 13,
                                                    14, 14, 14, 14, 14, 14, 14, 14, 14};

constexpr int32_t kInCacheBufBytes = 8 * 32768 + 16;

template <class T>
T* allocTable(uint64_t count) {
    const uint64_t bytes = count * sizeof(T);
    if (bytes == 0 || bytes > uint64_t(INT_MAX)) return nullptr;
    return reinterpret_cast<T*>(zeqsMalloc_8u(int(bytes)));
}

// cos and -sin of 2*pi*j/nb from the quarter-wave table of order log2(nb):
// the twiddle W^j = exp(-2*pi*i*j/nb) as (re, im).
struct Twiddle {
    float re, im;
};
Twiddle twiddle(const float* base, size_t nb, size_t j) {
    const size_t q = nb / 4;
    j &= nb - 1;
    float c, s;
    if (j <= q) c = base[q - j], s = base[j];
    else if (j <= 2 * q) c = -base[j - q], s = base[2 * q - j];
    else if (j <= 3 * q) c = -base[3 * q - j], s = -base[j - 2 * q];
    else c = base[j - 3 * q], s = -base[4 * q - j];
    return {c, -s};
}

// Twiddles of four neighbouring butterflies k .. k+3, laid out for the
// complex product a*w = a*(wr, wr) + swap(a)*(-wi, wi) on four complex values
// at once: eight floats (wr, wr) then eight floats (-wi, wi) per factor.
float* putQuad(float* out, const float* base, size_t nb, size_t j0, size_t dj) {
    for (size_t i = 0; i < 4; ++i) {
        const Twiddle w = twiddle(base, nb, j0 + i * dj);
        out[2 * i] = out[2 * i + 1] = w.re;
        out[8 + 2 * i] = -w.im;
        out[8 + 2 * i + 1] = w.im;
    }
    return out + 16;
}

// Stages of the in-cache transform of order m: the first pass makes DFTs of
// 4 (m even) or 8 (m odd) values, then radix-4 stages of span s combine four
// of them until the whole length is reached.
int firstSpan(int m) { return (m & 1) ? 8 : 4; }

uint64_t l1TableFloats(int m) {
    uint64_t total = 0;
    for (uint64_t s = uint64_t(firstSpan(m)); 4 * s <= (uint64_t(1) << m); s *= 4) total += 12 * s;
    return total;
}

float* zeqs_createTabTwd_L1_32f(int m, const float* base, int baseOrder) {
    const size_t nb = size_t(1) << baseOrder, n = size_t(1) << m;
    float* tab = allocTable<float>(l1TableFloats(m) + 4);
    if (!tab) return nullptr;
    float* out = tab;
    for (size_t s = size_t(firstSpan(m)); 4 * s <= n; s *= 4) {
        const size_t unit = nb / (4 * s);
        for (size_t k = 0; k < s; k += 4)
            for (size_t q = 1; q <= 3; ++q) out = putQuad(out, base, nb, q * k * unit, q * unit);
    }
    return tab;
}

// Cross-block twiddles of one nesting level of order m, in the order the
// blocked transform consumes them: per column group, per stage, per butterfly.
uint64_t stepTableFloats(int m) {
    const int b = tbl_blk_order[m];
    const uint64_t cols = uint64_t(1) << (tbl_buf_order[m] - b);
    const uint64_t groups = (uint64_t(1) << (m - b)) / cols;
    uint64_t perGroup = 0, span = cols;
    for (int t = 0; t < b / 2; ++t, span *= 4) perGroup += 12 * span;
    if (b & 1) perGroup += 4 * span;
    return groups * perGroup;
}

float* createTabTwd_Step(int m, const float* base, int baseOrder) {
    const int b = tbl_blk_order[m];
    const size_t nb = size_t(1) << baseOrder, rows = size_t(1) << (m - b);
    const size_t cols = size_t(1) << (tbl_buf_order[m] - b);
    const size_t unitN = nb >> m;  // base steps per 1/2^m turn
    float* tab = allocTable<float>(stepTableFloats(m) + 4);
    if (!tab) return nullptr;
    float* out = tab;
    // Buffer element kk of a group starting at column c is element
    // (kk / cols) * rows + c + kk % cols of the length-S sub-transforms.
    for (size_t c = 0; c < rows; c += cols) {
        size_t span = cols, sub = rows;
        for (int t = 0; t < b / 2; ++t, span *= 4, sub *= 4) {
            const size_t unit = unitN * ((size_t(1) << m) / (4 * sub));
            for (size_t kk = 0; kk < span; kk += 4) {
                const size_t k = (kk / cols) * rows + c + kk % cols;
                for (size_t q = 1; q <= 3; ++q) out = putQuad(out, base, nb, q * k * unit, q * unit);
            }
        }
        if (b & 1) {
            for (size_t kk = 0; kk < span; kk += 4) {
                const size_t k = (kk / cols) * rows + c + kk % cols;
                out = putQuad(out, base, nb, k * unitN, unitN);
            }
        }
    }
    return tab;
}

// The incrementing bit-reversed counter over the low m-2 bits, doubled.
int32_t* zeqs_createTabBitRevNorm(int m) {
    const uint32_t count = m < 2 ? 1u : uint32_t(1) << (m - 2);
    int32_t* tab = allocTable<int32_t>(uint64_t(count) + 1);
    if (!tab) return nullptr;
    uint32_t cur = 0;
    tab[0] = 0;
    for (uint32_t k = 1; k < count; ++k) {
        uint32_t bit = count / 2;
        while (bit <= cur) {
            cur -= bit;
            bit /= 2;
        }
        cur += bit;
        tab[k] = int32_t(2 * cur);
    }
    tab[count] = 0;
    return tab;
}

// (c, s) pairs for k = 1 .. N/4, in groups of four c then four s when N > 8.
float* createRecTable(const float* base, int n, bool ccs) {
    const size_t nn = size_t(1) << n, quarter = nn / 4, pairs = quarter < 2 ? 2 : quarter;
    float* tab = allocTable<float>(2 * uint64_t(pairs));
    if (!tab) return nullptr;
    std::memset(tab, 0, 2 * pairs * sizeof(float));
    for (size_t k = 1; k <= quarter; ++k) {
        const float c = ccs ? base[quarter - k] : 0.5f * base[quarter - k];
        const float s = ccs ? 0.0f - base[k] : 0.5f - 0.5f * base[k];
        const size_t i = k - 1;
        const size_t at = nn > 8 ? (i / 4) * 8 + i % 4 : 2 * i;
        tab[at] = c;
        tab[at + (nn > 8 ? 4 : 1)] = s;
    }
    return tab;
}

float* zeqs_createTabTwdRealRec_32f(const float* base, int n) { return createRecTable(base, n, false); }
float* zeqs_createTabTwdCcsRec_32f(const float* base, int n) { return createRecTable(base, n, true); }

}  // namespace

int blkOrder(int m) { return tbl_blk_order[m]; }
int bufOrder(int m) { return tbl_buf_order[m]; }

int32_t complexBufSize(int m) {
    if (m < 4) return 0;
    if (m <= kFftInCacheOrder) return (8 << m) + 16;
    // The top level has the largest buffer order of all nesting levels.
    return 8 * (int32_t(1) << tbl_buf_order[m]) + kInCacheBufBytes;
}

float* zeqs_createTabTwdBase_32f(int order) {
    const size_t n = size_t(1) << order, quarter = n / 4;
    float* base = allocTable<float>(uint64_t(quarter) + 1);
    if (!base) return nullptr;
    const double w = 2.0 * 3.14159265358979323846 / double(n);
    for (size_t k = 0; k <= quarter; ++k) base[k] = float(std::sin(w * double(k)));
    return base;
}

bool createTablesCFFT(FftSpec& spec, int m, const float* base, int baseOrder) {
    spec.bitRev = zeqs_createTabBitRevNorm(m);
    if (!spec.bitRev) return false;
    if (m <= kFftInCacheOrder) {
        spec.twdL1 = zeqs_createTabTwd_L1_32f(m, base, baseOrder);
        return spec.twdL1 != nullptr;
    }
    // zeqs_createTabTwd_Large_32f: one step table per nesting level, the
    // in-cache table for the innermost block order.
    int level = 0, order = m;
    for (; order > kFftInCacheOrder; ++level) {
        spec.stepTwd[level] = createTabTwd_Step(order, base, baseOrder);
        if (!spec.stepTwd[level]) return false;
        order -= tbl_blk_order[order];
    }
    spec.twdL1 = zeqs_createTabTwd_L1_32f(order, base, baseOrder);
    return spec.twdL1 != nullptr;
}

bool createTablesRFFT(FftSpec& spec, int n) {
    float* base = zeqs_createTabTwdBase_32f(n);
    if (!base) return false;
    bool ok = createTablesCFFT(spec, n - 1, base, n);
    if (ok) spec.realRec = zeqs_createTabTwdRealRec_32f(base, n);
    if (spec.realRec) spec.ccsRec = zeqs_createTabTwdCcsRec_32f(base, n);
    ok = ok && spec.ccsRec;
    zeqsFree(base);
    return ok;
}

void freeTables(FftSpec& spec) {
    void* owned[12] = {spec.bitRev,    spec.twdL1,     spec.unusedLarge[0], spec.unusedLarge[1],
                       spec.realRec,   spec.ccsRec,    spec.unused[0],      spec.unused[1],
                       spec.unused[2], spec.stepTwd[0], spec.stepTwd[1],    spec.stepTwd[2]};
    for (void* p : owned) zeqsFree(p);
}

}  // namespace zq
