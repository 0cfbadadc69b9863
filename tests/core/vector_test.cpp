#include "zqtest.h"

#include <emmintrin.h>

#include <vector>

namespace {

using zqt::Rng;

// A float array at `misalign` bytes past a 64-byte boundary, guarded on both sides.
using Buffer = zqt::Image<float>;
Buffer buffer(int len, int misalign) { return Buffer(len, 1, 1, 0, misalign); }

// Aligned blocks remember their raw address; non-positive lengths give null.
TEST(Allocator, AlignedBlocksRememberTheirRawAddress) {
    for (int len : {1, 3, 31, 32, 33, 1000, 65537}) {
        for (int kind = 0; kind < 2; ++kind) {
            void* p = kind ? static_cast<void*>(zeqsMalloc_32f(len)) : static_cast<void*>(zeqsMalloc_8u(len));
            ASSERT_NE(nullptr, p);
            const uintptr_t a = reinterpret_cast<uintptr_t>(p);
            EXPECT_EQ(0u, a % 32);
            uintptr_t raw;
            std::memcpy(&raw, reinterpret_cast<char*>(p) - sizeof(void*), sizeof(void*));
            EXPECT_GE(a - raw, sizeof(void*));
            EXPECT_LE(a - raw, 31 + sizeof(void*));
            std::memset(p, 0x5a, size_t(len) * (kind ? 4 : 1));  // the whole block is usable
            zeqsFree(p);
        }
    }
    for (int len : {0, -1, -7}) EXPECT_TRUE(zeqsMalloc_8u(len) == nullptr && zeqsMalloc_32f(len) == nullptr);
    zeqsFree(nullptr);
}

TEST(VectorFill, SetZeroCopyExactlyTheirElements) {
    Rng rng(5);
    for (int iter = 0; iter < 120; ++iter) {
        const int len = iter < 70 ? iter + 1 : rng.uniform(1, 3000), mis = rng.uniform(0, 15);
        Buffer src = buffer(len, rng.uniform(0, 15)), dst = buffer(len, mis);
        auto* s8 = reinterpret_cast<Zeq8u*>(src.ptr());
        for (int i = 0; i < 4 * len; ++i) s8[i] = Zeq8u(rng.uniform(0, 255));
        auto* d8 = reinterpret_cast<Zeq8u*>(dst.ptr());

        ASSERT_EQ(zeqStsOk, zeqsCopy_32f(src.ptr(), dst.ptr(), len));
        ASSERT_EQ(0, std::memcmp(s8, d8, size_t(len) * 4));
        ASSERT_EQ(zeqStsOk, zeqsZero_16s(reinterpret_cast<Zeq16s*>(d8), len));
        for (int i = 0; i < 4 * len; ++i) ASSERT_EQ(i < 2 * len ? 0 : s8[i], d8[i]);
        ASSERT_EQ(zeqStsOk, zeqsSet_8u(0x3c, d8, len));
        for (int i = 0; i < 4 * len; ++i) ASSERT_EQ(i < len ? 0x3c : i < 2 * len ? 0 : s8[i], d8[i]);
        ASSERT_EQ(zeqStsOk, zeqsCopy_16s(reinterpret_cast<Zeq16s*>(s8), reinterpret_cast<Zeq16s*>(d8), len));
        ASSERT_EQ(zeqStsOk, zeqsCopy_8u(s8 + 2 * len, d8 + 2 * len, 2 * len));
        ASSERT_EQ(0, std::memcmp(s8, d8, size_t(len) * 4));
        ASSERT_EQ(zeqStsOk, zeqsZero_8u(d8, len));
        ASSERT_EQ(zeqStsOk, zeqsZero_32f(dst.ptr() + len / 2, len - len / 2));
        for (int i = 0; i < 4 * len; ++i) ASSERT_EQ(i < len || i >= 4 * (len / 2) ? 0 : s8[i], d8[i]);
        ASSERT_TRUE(dst.outsideUntouched()) << len;
    }
}

TEST(VectorChecks, NullBeforeLengthAndNothingWritten) {
    float a[4] = {1, 2, 3, 4}, b[4] = {5, 6, 7, 8};
    Zeq8u bytes[4] = {9, 9, 9, 9};
    EXPECT_EQ(zeqStsNullPtr, zeqsSet_8u(1, nullptr, 0));
    EXPECT_EQ(zeqStsSize, zeqsSet_8u(1, bytes, 0));
    EXPECT_EQ(zeqStsNullPtr, zeqsZero_8u(nullptr, 4));
    EXPECT_EQ(zeqStsSize, zeqsZero_16s(reinterpret_cast<Zeq16s*>(bytes), -1));
    EXPECT_EQ(zeqStsSize, zeqsZero_32f(a, 0));
    EXPECT_EQ(zeqStsNullPtr, zeqsCopy_8u(nullptr, bytes, -1));
    EXPECT_EQ(zeqStsSize, zeqsCopy_8u(bytes, bytes, 0));
    EXPECT_EQ(zeqStsNullPtr, zeqsCopy_16s(reinterpret_cast<Zeq16s*>(bytes), nullptr, 2));
    EXPECT_EQ(zeqStsNullPtr, zeqsCopy_32f(a, nullptr, 4));
    EXPECT_EQ(zeqStsNullPtr, zeqsDiv_32f(a, nullptr, b, 4));
    EXPECT_EQ(zeqStsNullPtr, zeqsDiv_32f(a, b, nullptr, 0));
    EXPECT_EQ(zeqStsSize, zeqsDiv_32f(a, b, b, 0));
    EXPECT_EQ(zeqStsNullPtr, zeqsSqr_32f_I(nullptr, 0));
    EXPECT_EQ(zeqStsSize, zeqsSqr_32f_I(a, -3));
    EXPECT_EQ(zeqStsNullPtr, zeqsSqrt_32f_I(nullptr, 4));
    EXPECT_EQ(zeqStsSize, zeqsSqrt_32f_I(b, 0));
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(i + 1, a[i]);
        EXPECT_EQ(i + 5, b[i]);
        EXPECT_EQ(9, bytes[i]);
    }
}

// ---- division ----

float refDivideOne(float n, float d) {
    if (d == d && d != 0) return n / d;
    if (d == 0 && n > 0) return std::numeric_limits<float>::infinity();
    if (d == 0 && n < 0) return -std::numeric_limits<float>::infinity();
    return std::numeric_limits<float>::quiet_NaN();
}

float refDivideFast(float n, float d) {
    const float r = _mm_cvtss_f32(_mm_rcp_ss(_mm_set_ss(d)));
    const float e = 1.0f - d * r, q0 = n * r;
    return q0 + (q0 + q0 * e) * e;
}

// Groups of four from the destination's first 16-byte boundary; the partial
// groups at both ends behave like groups padded with 1/1.
bool refDivide(const float* d, const float* n, float* q, int len) {
    const uintptr_t addr = reinterpret_cast<uintptr_t>(q);
    int head = int(((16 - (addr & 15)) & 15) / 4);
    if (head > len) head = len;
    bool zeroSeen = false;
    auto group = [&](int from, int to) {
        bool zero = false;
        for (int i = from; i < to; ++i) zero |= d[i] == 0;
        zeroSeen |= zero;
        for (int i = from; i < to; ++i) q[i] = zero ? refDivideOne(n[i], d[i]) : refDivideFast(n[i], d[i]);
    };
    if (head) group(0, head);
    int i = head;
    for (; i + 4 <= len; i += 4) group(i, i + 4);
    if (i < len) group(i, len);
    return zeroSeen;
}

TEST(VectorDiv, MatchesGroupedReference) {
    Rng rng(17);
    const float specials[] = {0.0f, -0.0f, std::numeric_limits<float>::quiet_NaN(), 1e-30f, 3e38f,
                              -std::numeric_limits<float>::infinity()};
    for (int iter = 0; iter < 200; ++iter) {
        const int len = iter < 40 ? iter + 1 : rng.uniform(1, 200);
        Buffer d = buffer(len, 4 * rng.uniform(0, 3)), n = buffer(len, 4 * rng.uniform(0, 3));
        Buffer q = buffer(len, 4 * rng.uniform(0, 3));
        const double zeroChance = iter % 3 == 0 ? 0.0 : 0.05;
        for (int i = 0; i < len; ++i) {
            d.ptr()[i] = rng.chance(zeroChance) ? specials[rng.uniform(0, 5)] : rng.uniformf(-100, 100);
            n.ptr()[i] = rng.chance(0.05) ? specials[rng.uniform(0, 5)] : rng.uniformf(-1e4f, 1e4f);
        }
        std::vector<float> want(size_t(len) + 8);
        // The reference must see the same destination alignment.
        float* w = want.data() + ((16 - (reinterpret_cast<uintptr_t>(want.data()) & 15)) & 15) / 4 +
                   (reinterpret_cast<uintptr_t>(q.ptr()) & 15) / 4;
        const bool zero = refDivide(d.ptr(), n.ptr(), w, len);
        ASSERT_EQ(zero ? zeqStsDivByZero : zeqStsOk, zeqsDiv_32f(d.ptr(), n.ptr(), q.ptr(), len));
        for (int i = 0; i < len; ++i) ASSERT_TRUE(zqt::sameFloat(w[i], q.ptr()[i])) << i << " of " << len;
        ASSERT_TRUE(q.outsideUntouched());
    }
}

// ---- square and square root ----

float refSqrtFast(float x) {
    const float r = _mm_cvtss_f32(_mm_rsqrt_ss(_mm_set_ss(x)));
    const float s = x * r;
    return 0.5f * s * (3.0f - s * r);
}

float refSqrtExact(float x) { return _mm_cvtss_f32(_mm_sqrt_ss(_mm_set_ss(x))); }

bool refSqrt(const float* x, float* out, int len) {
    const uintptr_t addr = reinterpret_cast<uintptr_t>(x);
    int i = 0, head = int(((16 - (addr & 15)) & 15) / 4);
    bool negative = false;
    for (int k = 0; k < len; ++k) negative |= (zqt::bitsOf(x[k]) >> 31) != 0;
    for (; i < head && i < len; ++i) out[i] = refSqrtExact(x[i]);
    for (; i + 8 <= len; i += 8) {
        bool fast = true;
        for (int k = i; k < i + 8; ++k) fast &= x[k] >= zqt::floatFromBits(0x00800000);
        for (int k = i; k < i + 8; ++k) out[k] = fast ? refSqrtFast(x[k]) : refSqrtExact(x[k]);
    }
    for (; i < len; ++i) out[i] = refSqrtExact(x[i]);
    return negative;
}

TEST(VectorSqrt, MatchesGroupedReference) {
    Rng rng(23);
    const float specials[] = {-0.0f, 0.0f, zqt::floatFromBits(0x00000003), zqt::floatFromBits(0x00800000), -1.0f,
                              std::numeric_limits<float>::quiet_NaN(), 3e38f};
    for (int iter = 0; iter < 200; ++iter) {
        const int len = iter < 40 ? iter + 1 : rng.uniform(1, 200);
        Buffer b = buffer(len, 4 * rng.uniform(0, 3));
        const double odd = iter % 2 ? 0.02 : 0.0;
        for (int i = 0; i < len; ++i) b.ptr()[i] = rng.chance(odd) ? specials[rng.uniform(0, 6)] : rng.uniformf(0, 1e6f);
        std::vector<float> want(static_cast<size_t>(len));
        const bool negative = refSqrt(b.ptr(), want.data(), len);
        ASSERT_EQ(negative ? zeqStsSqrtNegArg : zeqStsOk, zeqsSqrt_32f_I(b.ptr(), len));
        for (int i = 0; i < len; ++i) ASSERT_TRUE(zqt::sameFloat(want[size_t(i)], b.ptr()[i])) << i;
        ASSERT_TRUE(b.outsideUntouched());
    }
}

// Denormals are honoured even when the caller asked for them to be read as
// zero, and the caller's control word comes back unchanged.
TEST(VectorSqrt, ControlWordIsRestoredAndDenormalsAreRoots) {
    const unsigned saved = _mm_getcsr();
    const unsigned callers = (saved | 0x0040u) & ~0x0200u;  // DAZ on, divide-by-zero unmasked
    _mm_setcsr(callers);
    float v[9];
    for (float& x : v) x = zqt::floatFromBits(0x00000010);
    const ZeqStatus st = zeqsSqrt_32f_I(v, 9);
    const unsigned after = _mm_getcsr();
    _mm_setcsr(saved);
    EXPECT_EQ(zeqStsOk, st);
    EXPECT_EQ(callers & ~0x3fu, after & ~0x3fu);
    for (float x : v) EXPECT_EQ(refSqrtExact(zqt::floatFromBits(0x00000010)), x);
    EXPECT_NE(0.0f, v[0]);
}

TEST(VectorSqr, SquaresInSinglePrecision) {
    Rng rng(29);
    for (int len : {1, 3, 4, 7, 8, 9, 31, 64, 101}) {
        Buffer b = buffer(len, 4 * rng.uniform(0, 3));
        std::vector<float> want(static_cast<size_t>(len));
        for (int i = 0; i < len; ++i) {
            b.ptr()[i] = rng.uniformf(-3e19f, 3e19f);
            want[size_t(i)] = b.ptr()[i] * b.ptr()[i];
        }
        ASSERT_EQ(zeqStsOk, zeqsSqr_32f_I(b.ptr(), len));
        for (int i = 0; i < len; ++i) ASSERT_TRUE(zqt::sameFloat(want[size_t(i)], b.ptr()[i]));
        ASSERT_TRUE(b.outsideUntouched());
    }
}

}  // namespace
