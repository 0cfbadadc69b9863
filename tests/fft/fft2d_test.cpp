#include "fft/zqcvfft2d.h"
#include "pack2d_ref.h"

#include <memory>

namespace {

using zqt::Image;
using zqt::Rng;

const int kFlags[] = {zeqFftScaleFwdByN, zeqFftScaleInvByN, zeqFftScaleBySqrtN, zeqFftScaleNone};

struct SpecDeleter {
    void operator()(ZeqiFFTSpec_R_32f* s) const { zeqiFFTFree_R_32f(s); }
};
using SpecPtr = std::unique_ptr<ZeqiFFTSpec_R_32f, SpecDeleter>;

SpecPtr makeSpec(int orderX, int orderY, int flag) {
    ZeqiFFTSpec_R_32f* s = nullptr;
    EXPECT_EQ(zeqStsOk, zeqiFFTInitAlloc_R_32f(&s, orderX, orderY, flag, 0));
    return SpecPtr(s);
}

std::vector<Zeq8u> bufferFor(const ZeqiFFTSpec_R_32f* s) {
    int size = 0;
    EXPECT_EQ(zeqStsOk, zeqiFFTGetBufSize_R_32f(s, &size));
    return std::vector<Zeq8u>(size_t(size) + 1);
}

// Factors by which the forward and the inverse result differ from the unscaled sums.
double forwardScale(int flag, int w, int h) {
    if (flag == zeqFftScaleFwdByN) return 1.0 / (double(w) * h);
    if (flag == zeqFftScaleBySqrtN) return 1.0 / std::sqrt(double(w) * h);
    return 1.0;
}
double inverseScale(int flag, int w, int h) {
    if (flag == zeqFftScaleInvByN) return 1.0 / (double(w) * h);
    if (flag == zeqFftScaleBySqrtN) return 1.0 / std::sqrt(double(w) * h);
    return 1.0;
}

// Single-precision transforms carry an error of a few units in the last place
// per level, relative to the largest output.
::testing::AssertionResult closeEnough(const pack2d::Error& e, int orderX, int orderY) {
    const double tol = 2e-7 * (orderX + orderY + 2) * std::max(e.maxWant, 1e-30);
    if (e.maxErr <= tol) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "error " << e.maxErr << " above " << tol;
}

std::vector<std::pair<int, int>> orderPairs() {
    std::vector<std::pair<int, int>> pairs;
    for (int oy = 0; oy <= 6; ++oy)
        for (int ox = 0; ox <= 6; ++ox) pairs.push_back({ox, oy});
    for (auto p : {std::pair<int, int>{8, 3}, {3, 9}, {7, 7}, {10, 1}, {1, 10}}) pairs.push_back(p);
    return pairs;
}

// Forward: the packed reference spectrum. Inverse: any packed array is the
// spectrum of some real image; extend it to the full spectrum and sum it back.
// Padded and misaligned rows (so W = 1 runs both contiguous and strided
// columns); the inverse never writes its source.
TEST(FFT2D, MatchesReferenceBothWays) {
    Rng rng(1);
    for (auto [ox, oy] : orderPairs()) {
        const int w = 1 << ox, h = 1 << oy;
        auto randomImage = [&] {
            Image<float> img(w, h, 1, 4 * rng.uniform(0, 3), 4 * rng.uniform(0, 3));
            img.fill([&](int, int, int) { return rng.uniformf(-1, 1); });
            return img;
        };
        const Image<float> image = randomImage(), packed = randomImage();
        const auto wantFwd = pack2d::pack(pack2d::spectrumOf(image));
        pack2d::Spectrum full = pack2d::unpack(packed);
        pack2d::dft2(full, +1);
        std::vector<double> wantInv(full.v.size());
        for (size_t i = 0; i < wantInv.size(); ++i) wantInv[i] = full.v[i].real();
        const auto packedBefore = packed.snapshot();

        for (int flag : kFlags) {
            SpecPtr spec = makeSpec(ox, oy, flag);
            auto buf = bufferFor(spec.get());
            Image<float> fwd = randomImage(), inv = randomImage();
            ASSERT_EQ(zeqStsOk, zeqiFFTFwd_RToPack_32f_C1R(image.ptr(), image.step(), fwd.ptr(), fwd.step(),
                                                           spec.get(), buf.data()));
            ASSERT_TRUE(closeEnough(pack2d::compare(fwd, wantFwd, forwardScale(flag, w, h)), ox, oy))
                << "forward " << w << "x" << h << " flag " << flag;
            ASSERT_EQ(zeqStsOk, zeqiFFTInv_PackToR_32f_C1R(packed.ptr(), packed.step(), inv.ptr(), inv.step(),
                                                           spec.get(), buf.data()));
            ASSERT_TRUE(closeEnough(pack2d::compare(inv, wantInv, inverseScale(flag, w, h)), ox, oy))
                << "inverse " << w << "x" << h << " flag " << flag;
            ASSERT_TRUE(fwd.outsideUntouched());
            ASSERT_TRUE(inv.outsideUntouched());
            ASSERT_TRUE(packed.unchangedSince(packedBefore));
            if (flag != kFlags[0]) continue;
            // Rows at odd addresses, odd steps apart, both ways.
            pack2d::OddRows oi(image, 1, 3), of(fwd, 3, 1), op(packed, 2, 5), ov(inv, 1, 1);
            ASSERT_EQ(zeqStsOk, zeqiFFTFwd_RToPack_32f_C1R(oi.ptr(), oi.step, of.ptr(), of.step, spec.get(), buf.data()));
            ASSERT_EQ(zeqStsOk, zeqiFFTInv_PackToR_32f_C1R(op.ptr(), op.step, ov.ptr(), ov.step, spec.get(), buf.data()));
            of.back(fwd);
            ov.back(inv);
            ASSERT_TRUE(closeEnough(pack2d::compare(fwd, wantFwd, forwardScale(flag, w, h)), ox, oy)) << "odd rows";
            ASSERT_TRUE(closeEnough(pack2d::compare(inv, wantInv, inverseScale(flag, w, h)), ox, oy)) << "odd rows";
        }
    }
}

// The forward transform is, bit for bit, the row transforms followed by a
// real transform of columns 0 and W-1 and a complex transform of every column
// pair: whether a pair went in a group of four or alone (W = 16: (1,2) to
// (7,8) grouped, (9,10) to (13,14) alone) cannot show.
TEST(FFT2D, ComposedOfOneDimensionalTransforms) {
    Rng rng(4);
    for (int ox : {1, 2, 3, 4, 5, 6}) {
        for (int oy : {1, 2, 4, 5}) {
            const int w = 1 << ox, h = 1 << oy;
            Image<float> src(w, h, 1, 4), dst(w, h, 1, 8);
            src.fill([&](int, int, int) { return rng.uniformf(-1, 1); });
            SpecPtr spec = makeSpec(ox, oy, zeqFftScaleFwdByN);
            ASSERT_EQ(zeqStsOk,
                      zeqiFFTFwd_RToPack_32f_C1R(src.ptr(), src.step(), dst.ptr(), dst.step(), spec.get(), nullptr));

            ZeqsFFTSpec_R_32f *rowSpec = nullptr, *colSpec = nullptr;
            ZeqsFFTSpec_C_32fc* pairSpec = nullptr;
            ASSERT_EQ(zeqStsOk, zeqsFFTInitAlloc_R_32f(&rowSpec, ox, zeqFftScaleFwdByN, 0));
            ASSERT_EQ(zeqStsOk, zeqsFFTInitAlloc_R_32f(&colSpec, oy, zeqFftScaleFwdByN, 0));
            ASSERT_EQ(zeqStsOk, zeqsFFTInitAlloc_C_32fc(&pairSpec, oy, zeqFftScaleFwdByN, 0));
            std::vector<float> rows(size_t(w) * h), col(static_cast<size_t>(h)), pair(2 * size_t(h));
            for (int y = 0; y < h; ++y)
                ASSERT_EQ(zeqStsOk, zeqsFFTFwd_RToPack_32f(src.row(y), &rows[size_t(y * w)], rowSpec, nullptr));
            for (int x : {0, w - 1}) {
                for (int y = 0; y < h; ++y) col[size_t(y)] = rows[size_t(y * w + x)];
                ASSERT_EQ(zeqStsOk, zeqsFFTFwd_RToPack_32f(col.data(), col.data(), colSpec, nullptr));
                for (int y = 0; y < h; ++y) ASSERT_TRUE(zqt::sameFloat(col[size_t(y)], dst.at(x, y))) << x << "," << y;
            }
            for (int x = 1; x < w - 1; x += 2) {
                for (int y = 0; y < h; ++y) {
                    pair[size_t(2 * y)] = rows[size_t(y * w + x)];
                    pair[size_t(2 * y + 1)] = rows[size_t(y * w + x + 1)];
                }
                Zeq32fc* z = reinterpret_cast<Zeq32fc*>(pair.data());
                ASSERT_EQ(zeqStsOk, zeqsFFTFwd_CToC_32fc(z, z, pairSpec, nullptr));
                for (int y = 0; y < h; ++y) {
                    ASSERT_TRUE(zqt::sameFloat(pair[size_t(2 * y)], dst.at(x, y))) << w << "x" << h << " " << x;
                    ASSERT_TRUE(zqt::sameFloat(pair[size_t(2 * y + 1)], dst.at(x + 1, y))) << x + 1;
                }
            }
            zeqsFFTFree_R_32f(rowSpec);
            zeqsFFTFree_R_32f(colSpec);
            zeqsFFTFree_C_32fc(pairSpec);
            ASSERT_TRUE(dst.outsideUntouched());
        }
    }
}

// A null buffer makes the call allocate its own: the result is the same, bit
// for bit, as with a caller's buffer that starts at an odd address, and as in
// place.
TEST(FFT2D, NullBufferMatchesCallerBufferAtOddAddress) {
    Rng rng(6);
    for (auto [ox, oy] : {std::pair<int, int>{0, 5}, {3, 0}, {4, 4}, {6, 3}, {3, 6}, {9, 2}}) {
        const int w = 1 << ox, h = 1 << oy;
        Image<float> src(w, h, 1, 8);
        src.fill([&](int, int, int) { return rng.uniformf(-10, 10); });
        SpecPtr spec = makeSpec(ox, oy, zeqFftScaleBySqrtN);
        auto buf = bufferFor(spec.get());
        Image<float> a(w, h), b(w, h), c(w, h), d(w, h);
        ASSERT_EQ(zeqStsOk, zeqiFFTFwd_RToPack_32f_C1R(src.ptr(), src.step(), a.ptr(), a.step(), spec.get(), nullptr));
        ASSERT_EQ(zeqStsOk, zeqiFFTFwd_RToPack_32f_C1R(src.ptr(), src.step(), b.ptr(), b.step(), spec.get(), buf.data() + 1));
        EXPECT_TRUE(zqt::sameImage(b, a));
        ASSERT_EQ(zeqStsOk, zeqiFFTInv_PackToR_32f_C1R(src.ptr(), src.step(), c.ptr(), c.step(), spec.get(), nullptr));
        ASSERT_EQ(zeqStsOk, zeqiFFTInv_PackToR_32f_C1R(src.ptr(), src.step(), d.ptr(), d.step(), spec.get(), buf.data() + 1));
        EXPECT_TRUE(zqt::sameImage(d, c));
        ASSERT_EQ(zeqStsOk, zeqiFFTFwd_RToPack_32f_C1R(src.ptr(), src.step(), src.ptr(), src.step(), spec.get(), nullptr));
        EXPECT_TRUE(zqt::sameImage(src, a));
        ASSERT_EQ(zeqStsOk, zeqiFFTInv_PackToR_32f_C1R(a.ptr(), a.step(), c.ptr(), c.step(), spec.get(), nullptr));
        ASSERT_EQ(zeqStsOk, zeqiFFTInv_PackToR_32f_C1R(src.ptr(), src.step(), src.ptr(), src.step(), spec.get(), nullptr));
        EXPECT_TRUE(zqt::sameImage(src, c));
        EXPECT_TRUE(src.outsideUntouched());
    }
}

TEST(FFT2D, RecordHoldsTheOneDimensionalSpecifications) {
    for (auto [ox, oy] : {std::pair<int, int>{0, 0}, {3, 3}, {5, 2}, {2, 9}, {12, 12}}) {
        SpecPtr spec = makeSpec(ox, oy, zeqFftScaleInvByN);
        const ZeqiFFTSpec_R_32f& s = *spec;
        EXPECT_EQ(26, s.specId);
        EXPECT_EQ(ox, s.orderX);
        EXPECT_EQ(oy, s.orderY);
        EXPECT_EQ(nullptr, s.reserved);
        ASSERT_NE(nullptr, s.row);
        ASSERT_NE(nullptr, s.colCplx);
        EXPECT_EQ(ox == oy, s.colReal == nullptr);
        int rowBuf = 0, colRealBuf = 0, colCplxBuf = 0, size = 0;
        ASSERT_EQ(zeqStsOk, zeqsFFTGetBufSize_R_32f(s.row, &rowBuf));
        ASSERT_EQ(zeqStsOk, zeqsFFTGetBufSize_R_32f(s.colReal ? s.colReal : s.row, &colRealBuf));
        ASSERT_EQ(zeqStsOk, zeqsFFTGetBufSize_C_32fc(s.colCplx, &colCplxBuf));
        const int w = 1 << ox, h = 1 << oy;
        const int want = std::max({16 * w + rowBuf, 16 * h + colRealBuf, 64 * h + colCplxBuf}) + 16;
        ASSERT_EQ(zeqStsOk, zeqiFFTGetBufSize_R_32f(&s, &size));
        EXPECT_EQ(want, size);
        EXPECT_EQ(want, s.bufSize);
    }
    ZeqiFFTSpec_R_32f* s = nullptr;
    ASSERT_EQ(zeqStsOk, zeqiFFTInitAlloc_R_32f(&s, 1, 2, zeqFftScaleNone, 77));
    EXPECT_EQ(77, s->hint);
    EXPECT_EQ(zeqStsOk, zeqiFFTFree_R_32f(s));
}

TEST(FFT2D, StatusesInOrderAndNothingWritten) {
    ZeqiFFTSpec_R_32f* const untouched = reinterpret_cast<ZeqiFFTSpec_R_32f*>(uintptr_t(0x40));
    ZeqiFFTSpec_R_32f* s = untouched;
    EXPECT_EQ(zeqStsNullPtr, zeqiFFTInitAlloc_R_32f(nullptr, 31, 0, 0, 0));
    EXPECT_EQ(zeqStsFftOrder, zeqiFFTInitAlloc_R_32f(&s, -1, 0, 0, 0));
    EXPECT_EQ(zeqStsFftOrder, zeqiFFTInitAlloc_R_32f(&s, 0, 31, zeqFftScaleNone, 0));
    for (int flag : {0, 3, 16})  // the first one-dimensional specification rejects it; nothing is kept
        for (auto [ox, oy] : {std::pair<int, int>{2, 2}, {2, 5}}) EXPECT_EQ(zeqStsFftFlag, zeqiFFTInitAlloc_R_32f(&s, ox, oy, flag, 0));
    EXPECT_EQ(untouched, s);

    SpecPtr spec = makeSpec(3, 2, zeqFftScaleNone);
    ZeqiFFTSpec_R_32f other{};
    other.specId = 6;  // the identifier of a one-dimensional real specification
    Image<float> src(8, 4), dst(8, 4);
    const auto before = dst.snapshot();
    int size = -1;
    for (int inverse = 0; inverse < 2; ++inverse) {
        auto run = [&](const float* s, int ss, float* d, int ds, const ZeqiFFTSpec_R_32f* sp) {
            return inverse ? zeqiFFTInv_PackToR_32f_C1R(s, ss, d, ds, sp, nullptr)
                           : zeqiFFTFwd_RToPack_32f_C1R(s, ss, d, ds, sp, nullptr);
        };
        EXPECT_EQ(zeqStsNullPtr, run(nullptr, 0, nullptr, 0, nullptr));
        EXPECT_EQ(zeqStsContextMatch, run(nullptr, 0, nullptr, 0, &other));
        EXPECT_EQ(zeqStsNullPtr, run(nullptr, 32, dst.ptr(), 32, spec.get()));
        EXPECT_EQ(zeqStsNullPtr, run(src.ptr(), 0, nullptr, 0, spec.get()));
        EXPECT_EQ(zeqStsStep, run(src.ptr(), 0, dst.ptr(), 32, spec.get()));
        EXPECT_EQ(zeqStsStep, run(src.ptr(), 32, dst.ptr(), -32, spec.get()));
    }
    EXPECT_TRUE(dst.unchangedSince(before));
    EXPECT_EQ(zeqStsNullPtr, zeqiFFTGetBufSize_R_32f(nullptr, &size));
    EXPECT_EQ(zeqStsNullPtr, zeqiFFTGetBufSize_R_32f(spec.get(), nullptr));
    EXPECT_EQ(zeqStsContextMatch, zeqiFFTGetBufSize_R_32f(&other, &size));
    EXPECT_EQ(-1, size);
    EXPECT_EQ(zeqStsNullPtr, zeqiFFTFree_R_32f(nullptr));
    EXPECT_EQ(zeqStsContextMatch, zeqiFFTFree_R_32f(&other));
}

// A failing one-dimensional transform ends the two-dimensional one with its
// status (here: a complex specification where the row transform expects a
// real one), and a buffer allocated for the call is still released.
TEST(FFT2D, NestedStatusEndsTheTransform) {
    for (auto [ox, oy] : {std::pair<int, int>{3, 3}, {4, 0}}) {
        SpecPtr spec = makeSpec(ox, oy, zeqFftScaleNone);
        ZeqsFFTSpec_R_32f* const row = spec->row;
        spec->row = reinterpret_cast<ZeqsFFTSpec_R_32f*>(spec->colCplx);
        Image<float> src(1 << ox, 1 << oy), dst(1 << ox, 1 << oy);
        EXPECT_EQ(zeqStsContextMatch,
                  zeqiFFTFwd_RToPack_32f_C1R(src.ptr(), src.step(), dst.ptr(), dst.step(), spec.get(), nullptr));
        EXPECT_EQ(zeqStsContextMatch,
                  zeqiFFTInv_PackToR_32f_C1R(src.ptr(), src.step(), dst.ptr(), dst.step(), spec.get(), nullptr));
        spec->row = row;
    }
}

}  // namespace
