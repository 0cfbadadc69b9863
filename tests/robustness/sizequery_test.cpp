// Size queries at the edge of what an int holds: the largest argument whose
// size fits gets exactly the documented size, the next one zeqStsSize with the
// output left alone, and nothing wraps into a small size a caller would
// allocate and overrun. States whose block would not fit are refused too.
#include "zqtest.h"

#include <climits>
#include <functional>

namespace {

using Query = std::function<ZeqStatus(int, int*)>;  // one free size argument
using Formula = std::function<int64_t(int64_t)>;    // the documented size, in 64 bits

// The largest n in [1, INT_MAX] with formula(n) <= INT_MAX (sizes grow with n).
int lastFitting(const Formula& f) {
    int64_t lo = 1, hi = INT_MAX;
    while (lo < hi) {
        const int64_t mid = (lo + hi + 1) / 2;
        if (f(mid) <= INT_MAX) lo = mid;
        else hi = mid - 1;
    }
    return int(lo);
}

void expectBoundary(const char* what, const Query& q, const Formula& f) {
    SCOPED_TRACE(what);
    int size = -1;
    int n = 0;  // the largest argument that fits, 0 when none does
    if (f(1) <= INT_MAX) {
        n = lastFitting(f);
        ASSERT_LT(n, INT_MAX) << "the size always fits";
        EXPECT_EQ(q(1, &size), zeqStsOk);
        EXPECT_EQ(size, f(1));
        EXPECT_EQ(q(n, &size), zeqStsOk);
        EXPECT_EQ(size, f(n));
    }
    for (int beyond : {n + 1, n + 2, INT_MAX}) {
        size = -1;
        EXPECT_EQ(q(beyond, &size), zeqStsSize) << beyond;
        EXPECT_EQ(size, -1) << beyond;
    }
}

int64_t round16(int64_t v) { return (v + 15) & ~int64_t(15); }

TEST(SizeQuery, CannyInEitherDimension) {
    for (int other : {1, 1080, 429496728}) {
        expectBoundary("width", [&](int w, int* s) { return zeqiCannyGetSize({w, other}, s); },
                       [&](int64_t w) { return 13 * (w + 2) * (int64_t(other) + 2) + 64; });
        expectBoundary("height", [&](int h, int* s) { return zeqiCannyGetSize({other, h}, s); },
                       [&](int64_t h) { return 13 * (int64_t(other) + 2) * (h + 2) + 64; });
    }
    int size = -1;  // the case that once wrapped to 64 bytes
    EXPECT_EQ(zeqiCannyGetSize({2147483646, 429496728}, &size), zeqStsSize);
    EXPECT_EQ(zeqiCannyGetSize({0, 0}, nullptr), zeqStsNullPtr);
    EXPECT_EQ(zeqiCannyGetSize({0, 1}, &size), zeqStsSize);
    EXPECT_EQ(size, -1);
}

TEST(SizeQuery, CornerMeasures) {
    for (int aperture : {3, 5, 7})
        for (int window : {3, 5, 7}) {
            const int64_t rows = std::max({aperture, window, 7});
            const Formula f = [&](int64_t w) { return 12 * w + 12 * w * rows; };
            expectBoundary("min eigenvalue", [&](int w, int* s) { return zeqiMinEigenValGetSize(w, aperture, window, s); }, f);
            expectBoundary("eigenvectors", [&](int w, int* s) { return zeqiEigenValsVecsGetSize(w, aperture, window, s); }, f);
        }
}

TEST(SizeQuery, Pyramids) {
    for (ZeqDataType type : {zeq8u, zeq8s, zeq32f})
        for (int c : {1, 3}) {
            expectBoundary("down", [&](int w, int* s) { return zeqiPyrDownGetBufSize_Gauss5x5(w, type, c, s); },
                           [&](int64_t w) { return 6 * round16(4 * w * c) + 32; });
            expectBoundary("up", [&](int w, int* s) { return zeqiPyrUpGetBufSize_Gauss5x5(w, type, c, s); },
                           [&](int64_t w) { return 3 * round16(8 * w * c) + 32; });
        }
}

TEST(SizeQuery, FloodFill) {
    for (int other : {1, 7, 100000}) {
        const auto plain = [&](int64_t w, int64_t h) { return ((h * 24 * w) >> 2) + 8; };
        const auto grad = [&](int64_t w, int64_t h) { return (w + 2) * (h + 2) + plain(w, h); };
        expectBoundary("plain width", [&](int w, int* s) { return zeqiFloodFillGetSize({w, other}, s); },
                       [&](int64_t w) { return plain(w, other); });
        expectBoundary("plain height", [&](int h, int* s) { return zeqiFloodFillGetSize({other, h}, s); },
                       [&](int64_t h) { return plain(other, h); });
        expectBoundary("gradient width", [&](int w, int* s) { return zeqiFloodFillGetSize_Grad({w, other}, s); },
                       [&](int64_t w) { return grad(w, other); });
        expectBoundary("gradient height", [&](int h, int* s) { return zeqiFloodFillGetSize_Grad({other, h}, s); },
                       [&](int64_t h) { return grad(other, h); });
    }
}

// A state larger than an int can describe is refused, never allocated short.
TEST(SizeQuery, StatesTooLargeAreRefused) {
    ZeqiConvState* conv = nullptr;
    EXPECT_EQ(zeqiSobelInitAlloc(INT_MAX, zeq32f, 7, 0, 1, 0, &conv), zeqStsMemAlloc);
    EXPECT_EQ(zeqiLaplaceInitAlloc(INT_MAX / 4, zeq8u, 7, &conv), zeqStsMemAlloc);
    EXPECT_EQ(zeqiBlurInitAlloc(INT_MAX / 2, zeq32f, 5, &conv), zeqStsMemAlloc);
    EXPECT_EQ(conv, nullptr);
    ZeqiMorphState* morph = nullptr;
    EXPECT_EQ(zeqiMorphologyInitAlloc(INT_MAX, zeq32f, 4, {9, 9}, {4, 4}, 0, nullptr, &morph), zeqStsNoMem);
    EXPECT_EQ(zeqiMorphologyInitAlloc(INT_MAX / 16, zeq8u, 3, {9, 9}, {4, 4}, 2, nullptr, &morph), zeqStsNoMem);
    EXPECT_EQ(zeqiMorphologyInitAlloc(1, zeq8u, 1, {INT_MAX, INT_MAX}, {0, 0}, 2, nullptr, &morph), zeqStsNoMem);
    EXPECT_EQ(zeqiMorphologyInitAlloc(INT_MAX, zeq32f, 4, {1, INT_MAX}, {0, 0}, 0, nullptr, &morph), zeqStsNoMem);
    EXPECT_EQ(morph, nullptr);
}

}  // namespace
