// zeqcv.hpp: owners release on every path (the sanitizer build checks for
// leaks), views pass (pointer, step) and the size as the C calls expect, and
// errors become exceptions only when asked.
#include "zeqcv.hpp"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>

namespace {

TEST(Header, VersionMacrosMatchTheRecord) {
    EXPECT_EQ(ZEQCV_VERSION_MAJOR, zeqcvGetLibVersion()->major);
    EXPECT_EQ(ZEQCV_VERSION_MINOR, zeqcvGetLibVersion()->minor);
}

TEST(Header, EveryStatusHasItsName) {
    int named = 0;
    for (int code = -10000; code <= 10; ++code) {
        const std::string text = zeqcvStatusString(code);
        if (text == "unknown status") continue;
        ++named;
        EXPECT_EQ(0u, text.find("zeqSts")) << code;
        EXPECT_NE(std::string::npos, text.find(": ", 6)) << text << ": a meaning follows the name";
    }
    EXPECT_EQ(22, named);
    EXPECT_EQ(0u, std::string(zeqcvStatusString(zeqStsStepAlign)).find("zeqStsStepAlign: "));
}

TEST(Owner, InitKeepsTheObjectAndFailureKeepsTheOldOne) {
    zeqcv::FFTSpecC spec;
    EXPECT_FALSE(spec);
    ASSERT_EQ(zeqStsOk, spec.init(zeqsFFTInitAlloc_C_32fc, 5, zeqFftScaleNone, zeqAlgHintNone));
    ZeqsFFTSpec_C_32fc* first = spec.get();
    ASSERT_NE(nullptr, first);
    EXPECT_EQ(zeqStsFftOrder, spec.init(zeqsFFTInitAlloc_C_32fc, 31, zeqFftScaleNone, zeqAlgHintNone));
    EXPECT_EQ(zeqStsFftFlag, spec.init(zeqsFFTInitAlloc_C_32fc, 5, 3, zeqAlgHintNone));
    EXPECT_EQ(first, spec.get());
    // A second init replaces (and frees) the first object.
    ASSERT_EQ(zeqStsOk, spec.init(zeqsFFTInitAlloc_C_32fc, 6, zeqFftScaleNone, zeqAlgHintNone));
    int bytes = 0;
    EXPECT_EQ(zeqStsOk, zeqsFFTGetBufSize_C_32fc(spec.get(), &bytes));
    EXPECT_EQ(8 * 64 + 16, bytes);
}

TEST(Owner, MovesAndReleases) {
    zeqcv::FFTSpecR a;
    ASSERT_EQ(zeqStsOk, a.init(zeqsFFTInitAlloc_R_32f, 4, zeqFftScaleInvByN, zeqAlgHintNone));
    ZeqsFFTSpec_R_32f* raw = a.get();
    zeqcv::FFTSpecR b(std::move(a));
    EXPECT_FALSE(a);
    EXPECT_EQ(raw, b.get());
    zeqcv::FFTSpecR c;
    ASSERT_EQ(zeqStsOk, c.init(zeqsFFTInitAlloc_R_32f, 3, zeqFftScaleInvByN, zeqAlgHintNone));
    c = std::move(b);  // c's own spec is freed
    EXPECT_EQ(raw, c.get());
    ZeqsFFTSpec_R_32f* taken = c.release();
    EXPECT_FALSE(c);
    EXPECT_EQ(zeqStsOk, zeqsFFTFree_R_32f(taken));
    zeqcv::FFT2DSpecR spec2d;
    EXPECT_EQ(zeqStsOk, spec2d.init(zeqiFFTInitAlloc_R_32f, 2, 3, zeqFftScaleNone, zeqAlgHintNone));
    spec2d.reset();
    EXPECT_FALSE(spec2d);
    // The morphology state: InitAlloc takes the address last.
    zeqcv::MorphState morph;
    EXPECT_EQ(zeqStsAnchor, morph.init(zeqiMorphologyInitAlloc, 8, int(zeq8u), 1, ZeqiSize{3, 3}, ZeqiPoint{3, 0}, 0,
                                       nullptr));
    EXPECT_FALSE(morph);
    ASSERT_EQ(zeqStsOk, morph.init(zeqiMorphologyInitAlloc, 8, int(zeq8u), 1, ZeqiSize{3, 3}, ZeqiPoint{1, 1}, 2,
                                   nullptr));
    zeqcv::MorphState other = std::move(morph);
    EXPECT_TRUE(other && !morph);
    zeqcv::ConvState conv;
    EXPECT_EQ(zeqStsSize, conv.init(zeqiLaplaceInitAlloc, 8, zeq8u, 4));
    ASSERT_EQ(zeqStsOk, conv.init(zeqiSobelInitAlloc, 8, zeq32f, 5, 0, 1, 1));
    EXPECT_TRUE(conv);
}

TEST(Buffer, SizedByTheLibrarysQueries) {
    zeqcv::Buffer<Zeq8u> buf;
    const ZeqiSize roi = {7, 3};
    ASSERT_EQ(zeqStsOk, buf.sized(zeqiCannyGetSize, roi));
    EXPECT_EQ(13 * 9 * 5 + 64, buf.size());
    EXPECT_EQ(0u, reinterpret_cast<uintptr_t>(buf.data()) % 32);
    EXPECT_EQ(zeqStsSize, buf.sized(zeqiCannyGetSize, ZeqiSize{0, 3}));
    EXPECT_EQ(13 * 9 * 5 + 64, buf.size()) << "a failed query keeps the buffer";
    zeqcv::FFTSpecC spec;
    ASSERT_EQ(zeqStsOk, spec.init(zeqsFFTInitAlloc_C_32fc, 2, zeqFftScaleNone, zeqAlgHintNone));
    ASSERT_EQ(zeqStsOk, buf.sized(zeqsFFTGetBufSize_C_32fc, spec.get()));
    EXPECT_FALSE(buf) << "small transforms need no buffer";
    zeqcv::Buffer<Zeq32f> floats(10);
    ASSERT_TRUE(floats);
    zeqcv::Buffer<Zeq32f> moved = std::move(floats);
    EXPECT_FALSE(floats);
    EXPECT_EQ(10, moved.size());
    EXPECT_FALSE(zeqcv::Buffer<Zeq32f>(0x20000000LL)) << "more bytes than the allocator's int length";
    EXPECT_FALSE(zeqcv::Buffer<Zeq8u>(0));
}

TEST(Image, RowsAlignedAndTooLargeRefused) {
    zeqcv::Image<Zeq16s> img(33, 4);
    ASSERT_TRUE(img);
    EXPECT_EQ(96, img.step());
    EXPECT_EQ(0u, reinterpret_cast<uintptr_t>(img.row(3)) % 32);
    EXPECT_FALSE(zeqcv::Image<Zeq32f>(0x40000000, 1));
    EXPECT_FALSE(zeqcv::Image<Zeq8u>(70000, 70000));
    EXPECT_FALSE(zeqcv::Image<Zeq8u>(0, 5));
}

TEST(Call, PassesViewsAsPointerAndStepAndTheFirstSize) {
    zeqcv::Image<Zeq8u> a(9, 6), b(9, 6), viaViews(9, 6), direct(9, 6);
    for (int y = 0; y < 6; ++y)
        for (int x = 0; x < 9; ++x) {
            a.row(y)[x] = Zeq8u(x * 29 + y * 7);
            b.row(y)[x] = Zeq8u(x * 3 + 100);
            viaViews.row(y)[x] = direct.row(y)[x] = 0;
        }
    // A 5x3 region at (2, 1) of each image.
    const ZeqiRect r = {2, 1, 5, 3};
    const zeqcv::ImageView<const Zeq8u> ra = a.view().sub(r), rb = b.view().sub(r);
    ASSERT_EQ(zeqStsOk, zeqcv::call(zeqiAbsDiff_8u_C1R, ra, rb, viaViews.view().sub(r), zeqcv::roi));
    ASSERT_EQ(zeqStsOk, zeqiAbsDiff_8u_C1R(ra.data, a.step(), rb.data, b.step(), direct.view().sub(r).data,
                                           direct.step(), ZeqiSize{5, 3}));
    for (int y = 0; y < 6; ++y)
        for (int x = 0; x < 9; ++x) EXPECT_EQ(direct.row(y)[x], viaViews.row(y)[x]) << x << "," << y;

    double mean = -1, dev = -1;
    ASSERT_EQ(zeqStsOk, zeqcv::call(zeqiMean_StdDev_8u_C1R, ra, zeqcv::roi, &mean, &dev));
    double sum = 0;
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 5; ++x) sum += ra.at(x, y);
    EXPECT_DOUBLE_EQ(sum / 15, mean);
}

TEST(Check, ThrowsOnlyForErrors) {
    EXPECT_EQ(zeqStsDivByZero, zeqcv::check(zeqStsDivByZero));
    EXPECT_EQ(zeqStsOk, zeqcv::check(zeqStsOk, "x"));
    zeqcv::Image<Zeq8u> a(4, 2), d(4, 2);
    try {
        ZEQCV_CHECKED(zeqiAbsDiff_8u_C1R, a, a.data(), 2, d, zeqcv::roi);
        FAIL() << "a step of 2 for 4 pixels passed";
    } catch (const zeqcv::Error& e) {
        EXPECT_EQ(zeqStsStep, e.status());
        EXPECT_EQ(std::string("zeqiAbsDiff_8u_C1R: ") + zeqcvStatusString(zeqStsStep), e.what());
    }
}

}  // namespace
