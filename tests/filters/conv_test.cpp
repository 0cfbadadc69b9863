#include "zqtest.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

using zqt::Image;
using zqt::Rng;

// The documented kernels, sizes 3, 5 and 7, orders 0 to 3.
std::vector<int> documented(int k, int order) {
    static const std::vector<int> table[3][4] = {
        {{1, 2, 1}, {-1, 0, 1}, {1, -2, 1}, {}},
        {{1, 4, 6, 4, 1}, {-1, -2, 0, 2, 1}, {1, 0, -2, 0, 1}, {-1, 2, 0, -2, 1}},
        {{1, 6, 15, 20, 15, 6, 1}, {-1, -4, -5, 0, 5, 4, 1}, {1, 2, -1, -4, -1, 2, 1}, {-1, 0, 3, 0, -3, 0, 1}}};
    return table[k / 2 - 1][order];
}

// The header through the offsets of this build.
struct Header {
    const ZeqiConvState* s;
    static constexpr bool narrow = sizeof(void*) == 4;
    const uint8_t* at(size_t off) const { return reinterpret_cast<const uint8_t*>(s) + off; }
    template <class V>
    V read(size_t off) const {
        V v;
        std::memcpy(&v, at(off), sizeof v);
        return v;
    }
    const uint8_t* row(int i) const { return read<const uint8_t*>(sizeof(void*) * size_t(1 + i)); }
    uint32_t descriptor() const { return read<uint32_t>(narrow ? 68 : 136); }
    int kernelSize() const { return read<int32_t>(narrow ? 72 : 140); }
    uint32_t rowBytes() const { return read<uint32_t>(narrow ? 76 : 144); }
    // Entry j of kernel 0 (x) or 1 (y): every copy equal, the padding zero.
    ::testing::AssertionResult entryIs(int which, int j, int want, bool isFloat) const {
        const size_t off = (narrow ? 96 : 160) + 256 * size_t(which) + 16 * size_t(j);
        for (int c = 0; c < 4; ++c) {
            const double got = isFloat ? read<float>(off + 4 * c) : read<int16_t>(off + 2 * c);
            if (got != want) return ::testing::AssertionFailure() << "entry " << j << " copy " << c << ": " << got;
        }
        for (int b = 8; b < 16 && !isFloat; ++b)
            if (*at(off + b)) return ::testing::AssertionFailure() << "entry " << j << " padding";
        return ::testing::AssertionSuccess();
    }
};

int rowBytesFor(int w) { return (4 * w + 31) / 32 * 32; }

TEST(ConvState, KernelsSlotsAndDescriptorOfEveryForm) {
    for (int type : {zeq8u, zeq8s, zeq32f})
        for (int k : {3, 5, 7})
            for (int form = 0; form < 18; ++form) {  // Sobel dx, dy < 4 with 0 < dx + dy; Laplace; Blur
                const int dx = form % 4, dy = form / 4 % 4, w = 1 + form * 3;
                const bool sobel = form < 16, laplace = form == 16;
                if (sobel && (dx + dy == 0 || dx >= k || dy >= k)) continue;
                ZeqiConvState* st = nullptr;
                const ZeqStatus status = sobel ? zeqiSobelInitAlloc(w, type, k, 0, dx, dy, &st)
                                         : laplace ? zeqiLaplaceInitAlloc(w, type, k, &st)
                                                   : zeqiBlurInitAlloc(w, type, k, &st);
                ASSERT_EQ(zeqStsOk, status);
                const Header h{st};
                const int slots = sobel ? k : laplace ? 2 * k : k + 1;
                EXPECT_EQ(h.at(Header::narrow ? 608 : 672), h.row(-1));  // rowArea
                for (int i = 0; i < 16; ++i)
                    EXPECT_EQ(i < slots ? h.row(-1) + ptrdiff_t(i) * rowBytesFor(w) : nullptr, h.row(i)) << i;
                EXPECT_EQ(k, h.kernelSize());
                EXPECT_EQ(sobel ? uint32_t(16 * k + 4 * dy + dx) : uint32_t(16 * k), h.descriptor());
                EXPECT_EQ(sobel || laplace ? 0u : uint32_t(rowBytesFor(w)), h.rowBytes());
                std::vector<int> kx(k, 0), ky(k, 0);
                if (sobel) kx = documented(k, dx), ky = documented(k, dy);
                if (laplace) kx = documented(k, 2), ky = documented(k, 0);
                for (int j = 0; j < 16; ++j) {
                    EXPECT_TRUE(h.entryIs(0, j, j < k ? kx[size_t(j)] : 0, type == zeq32f));
                    EXPECT_TRUE(h.entryIs(1, j, j < k ? ky[size_t(j)] : 0, type == zeq32f));
                }
                EXPECT_EQ(zeqStsOk, zeqiConvolFree(st));
            }
    // origin 1 negates an odd order across rows only.
    ZeqiConvState* st = nullptr;
    ASSERT_EQ(zeqStsOk, zeqiSobelInitAlloc(10, zeq8u, 5, 1, 1, 1, &st));
    const std::vector<int> d = documented(5, 1);
    for (int j = 0; j < 5; ++j) EXPECT_TRUE(Header{st}.entryIs(0, j, d[size_t(j)], false) && Header{st}.entryIs(1, j, -d[size_t(j)], false));
    EXPECT_EQ(uint32_t(80 + 128 + 4 + 1), Header{st}.descriptor());
    EXPECT_EQ(zeqStsOk, zeqiConvolFree(st));
}

TEST(ConvState, StatusesInOrderAndNothingStored) {
    ZeqiConvState* const sentinel = reinterpret_cast<ZeqiConvState*>(uintptr_t(0x40));
    ZeqiConvState* st = sentinel;
    EXPECT_EQ(zeqStsNullPtr, zeqiSobelInitAlloc(0, 4, 9, 5, 0, 0, nullptr));
    const int sizeCases[][4] = {{0, 3, 1, 0}, {5, 3, 0, 0}, {5, 3, -1, 1}, {5, 4, 1, 0}, {5, 9, 1, 0},
                                {5, 1, 1, 0}, {5, 3, 3, 0}, {5, 5, 0, 5}, {5, 7, 4, 0}};
    for (auto& c : sizeCases) EXPECT_EQ(zeqStsSize, zeqiSobelInitAlloc(c[0], 4, c[1], 5, c[2], c[3], &st));
    EXPECT_EQ(zeqStsDataType, zeqiSobelInitAlloc(5, 4, 3, 5, 1, 0, &st));
    EXPECT_EQ(zeqStsBadArg, zeqiSobelInitAlloc(5, 9, 3, 2, 1, 0, &st));
    EXPECT_EQ(zeqStsMemAlloc, zeqiSobelInitAlloc(1 << 30, 9, 7, 0, 1, 0, &st));
    EXPECT_EQ(zeqStsNullPtr, zeqiLaplaceInitAlloc(0, 4, 4, nullptr));
    EXPECT_EQ(zeqStsSize, zeqiLaplaceInitAlloc(5, 4, 4, &st));
    EXPECT_EQ(zeqStsDataType, zeqiBlurInitAlloc(5, 4, 5, &st));
    EXPECT_EQ(zeqStsSize, zeqiBlurInitAlloc(0, 1, 5, &st));
    EXPECT_EQ(sentinel, st);
    EXPECT_EQ(zeqStsNullPtr, zeqiConvolFree(nullptr));
}

// ---- the filters ----

enum Kind { kSobel, kLaplace, kBlur };

template <class T>
using Out = typename std::conditional<std::is_same<T, Zeq32f>::value, Zeq32f, Zeq16s>::type;

template <class T>
ZeqStatus filter(Kind kind, const T* s, int ss, Out<T>* d, int ds, ZeqiSize* roi, ZeqiConvState* st, int flag) {
    if constexpr (std::is_same<T, Zeq8u>::value)
        return (kind == kSobel ? zeqiSobel_8u16s_C1R : kind == kLaplace ? zeqiLaplace_8u16s_C1R : zeqiBlur_8u16s_C1R)(
            s, ss, d, ds, roi, st, flag);
    else if constexpr (std::is_same<T, Zeq8s>::value)
        return (kind == kSobel ? zeqiSobel_8s16s_C1R : kind == kLaplace ? zeqiLaplace_8s16s_C1R : zeqiBlur_8s16s_C1R)(
            s, ss, d, ds, roi, st, flag);
    else
        return (kind == kSobel ? zeqiSobel_32f_C1R : kind == kLaplace ? zeqiLaplace_32f_C1R : zeqiBlur_32f_C1R)(
            s, ss, d, ds, roi, st, flag);
}

template <class T>
constexpr int typeCode() {
    return std::is_same<T, Zeq8u>::value ? zeq8u : std::is_same<T, Zeq8s>::value ? zeq8s : zeq32f;
}

// The separable correlation in double, edges replicated; `bound` collects
// the magnitudes summed, for the float tolerance.
template <class T>
double reference(const Image<T>& s, const std::vector<int>& kx, const std::vector<int>& ky, int x, int y,
                 double& bound) {
    const int k = int(kx.size()), k2 = k / 2;
    double sum = 0;
    for (int j = 0; j < k; ++j)
        for (int i = 0; i < k; ++i) {
            const double v = double(s.at(std::clamp(x + i - k2, 0, s.width() - 1), std::clamp(y + j - k2, 0, s.height() - 1)));
            sum += double(kx[size_t(i)]) * ky[size_t(j)] * v;
            bound += std::fabs(double(kx[size_t(i)]) * ky[size_t(j)] * v);
        }
    return sum;
}

template <class T>
class ConvFilter : public ::testing::Test {};
using SourceTypes = ::testing::Types<Zeq8u, Zeq8s, Zeq32f>;
TYPED_TEST_SUITE(ConvFilter, SourceTypes);

// Random forms, sizes and layouts against the definition; then random splits
// into strips against the whole image, bit for bit.
TYPED_TEST(ConvFilter, WholeImagesAndEverySplit) {
    using T = TypeParam;
    using D = Out<T>;
    constexpr bool isFloat = std::is_same<T, Zeq32f>::value;
    Rng rng(sizeof(T) * 7 + std::is_signed<T>::value);
    for (int iter = 0; iter < 120; ++iter) {
        const Kind kind = Kind(iter % 3);
        const int k = 3 + 2 * rng.uniform(0, 2), w = iter < 6 ? 1 + iter % 2 : rng.uniform(1, 70);
        const int h = iter < 6 ? 1 + iter / 2 : rng.uniform(1, 40);
        int dx = rng.uniform(0, std::min(3, k - 1)), dy = rng.uniform(dx == 0 ? 1 : 0, std::min(3, k - 1));
        const int origin = rng.uniform(0, 1);
        ZeqiConvState* st = nullptr;
        const int maxW = w + rng.uniform(0, 3);
        ASSERT_EQ(zeqStsOk, kind == kSobel     ? zeqiSobelInitAlloc(maxW, typeCode<T>(), k, origin, dx, dy, &st)
                            : kind == kLaplace ? zeqiLaplaceInitAlloc(maxW, typeCode<T>(), k, &st)
                                               : zeqiBlurInitAlloc(maxW, typeCode<T>(), k, &st));
        Image<T> src(w, h, 1, rng.uniform(0, 9), isFloat ? 4 * rng.uniform(0, 3) : rng.uniform(0, 15));
        src.fill([&](int, int, int) { return isFloat ? T(rng.uniformf(-100, 100)) : rng.any<T>(); });
        Image<D> dst(w, h, 1, 2 * rng.uniform(0, 4), 2 * rng.uniform(0, 7));
        ZeqiSize roi{w, h};
        ASSERT_EQ(zeqStsOk, filter<T>(kind, src.ptr(), src.step(), dst.ptr(), dst.step(), &roi, st, 0));
        ASSERT_EQ(h, roi.height);
        ASSERT_TRUE(dst.outsideUntouched());

        std::vector<int> ones(size_t(k), 1), kx = ones, ky = ones;
        if (kind == kSobel) {
            kx = documented(k, dx), ky = documented(k, dy);
            if (origin && dy % 2) for (int& v : ky) v = -v;
        } else if (kind == kLaplace) {
            kx = documented(k, 2), ky = documented(k, 0);
        }
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x) {
                double bound = 0;
                double want = reference(src, kx, ky, x, y, bound);
                if (kind == kLaplace) want += reference(src, ky, kx, x, y, bound);
                const double got = dst.at(x, y);
                if (isFloat) ASSERT_NEAR(want, got, 1e-6 * bound + 1e-30) << x << "," << y;
                else ASSERT_EQ(std::clamp(want, -32768.0, 32767.0), got) << x << "," << y << " kind " << kind;
            }

        // Strips of at least one row: first, middles, last.
        for (int split = 0; split < 2 && h > 1; ++split) {
            Image<D> parts(w, h, 1, 2 * rng.uniform(0, 4));
            int y = 0, produced = 0;
            while (y < h) {
                const int n = y == 0 ? rng.uniform(1, h - 1) : rng.uniform(1, h - y);
                const int flag = y == 0 ? 1 : y + n == h ? 2 : 4;
                ZeqiSize r{w, n};
                ASSERT_EQ(zeqStsOk, filter<T>(kind, src.row(y), src.step(), parts.row(produced), parts.step(),
                                              &r, st, flag));
                const int k2 = k / 2, want = flag == 1 ? std::max(n - k2, 0) : flag == 2 ? n + k2 : n;
                if (flag != 2 && y == 0) {
                    ASSERT_EQ(want, r.height);
                }
                produced += r.height;
                y += n;
            }
            ASSERT_EQ(h, produced);
            for (int yy = 0; yy < h; ++yy)
                ASSERT_EQ(0, std::memcmp(parts.row(yy), dst.row(yy), sizeof(D) * size_t(w))) << "row " << yy;
            ASSERT_TRUE(parts.outsideUntouched());
        }
        EXPECT_EQ(zeqStsOk, zeqiConvolFree(st));
    }
}

TYPED_TEST(ConvFilter, StatusesInOrderAndNothingWritten) {
    using T = TypeParam;
    using D = Out<T>;
    Image<T> src(9, 4);
    Image<D> dst(9, 4);
    ZeqiConvState *sobel = nullptr, *blur = nullptr;
    ASSERT_EQ(zeqStsOk, zeqiSobelInitAlloc(8, typeCode<T>(), 3, 0, 1, 0, &sobel));
    ASSERT_EQ(zeqStsOk, zeqiBlurInitAlloc(8, typeCode<T>(), 3, &blur));
    const auto snap = dst.snapshot();
    const int ss = src.step(), ds = dst.step(), e = int(sizeof(D));
    auto call = [&](Kind kind, const T* s, int sStep, D* d, int dStep, ZeqiSize r, ZeqiConvState* st, int flag,
                    bool nullRoi = false) { return filter<T>(kind, s, sStep, d, dStep, nullRoi ? nullptr : &r, st, flag); };
    EXPECT_EQ(zeqStsNullPtr, call(kSobel, nullptr, 0, dst.ptr(), 0, {0, 0}, sobel, 9));
    EXPECT_EQ(zeqStsNullPtr, call(kSobel, src.ptr(), 0, dst.ptr(), 0, {0, 0}, sobel, 9, true));
    EXPECT_EQ(zeqStsNullPtr, call(kSobel, src.ptr(), 0, dst.ptr(), 0, {0, 0}, nullptr, 9));
    EXPECT_EQ(zeqStsSize, call(kSobel, src.ptr(), 0, dst.ptr(), 0, {8, 0}, sobel, 9));
    EXPECT_EQ(zeqStsStep, call(kSobel, src.ptr(), 8 * int(sizeof(T)) - 1, dst.ptr(), ds, {8, 4}, sobel, 9));
    EXPECT_EQ(zeqStsStep, call(kSobel, src.ptr(), ss, dst.ptr(), 8 * e - 2, {8, 4}, sobel, 9));
    EXPECT_EQ(zeqStsStepAlign, call(kSobel, src.ptr(), ss, dst.ptr(), ds + 1, {8, 4}, sobel, 9));
    EXPECT_EQ(zeqStsBadArg, call(kSobel, src.ptr(), ss, dst.ptr(), ds, {8, 4}, sobel, 3));
    EXPECT_EQ(zeqStsContextMatch, call(kSobel, src.ptr(), ss, dst.ptr(), ds, {9, 4}, sobel, 0));
    EXPECT_EQ(zeqStsContextMatch, call(kBlur, src.ptr(), ss, dst.ptr(), ds, {8, 4}, sobel, 0));
    EXPECT_EQ(zeqStsContextMatch, call(kLaplace, src.ptr(), ss, dst.ptr(), ds, {8, 4}, blur, 0));
    EXPECT_TRUE(dst.unchangedSince(snap));
    zeqiConvolFree(sobel);
    zeqiConvolFree(blur);
}

}  // namespace
