#include "zqtest.h"

namespace {

using zqt::Rng;

ZeqStatus convert(const Zeq8u* s, int ss, float* d, int ds, ZeqiSize roi) { return zeqiConvert_8u32f_C1R(s, ss, d, ds, roi); }
ZeqStatus convert(const Zeq8s* s, int ss, float* d, int ds, ZeqiSize roi) { return zeqiConvert_8s32f_C1R(s, ss, d, ds, roi); }

template <class S>
class ConvertOddRows : public ::testing::Test {};
using Types = ::testing::Types<Zeq8u, Zeq8s>;
TYPED_TEST_SUITE(ConvertOddRows, Types);

// Float rows at any byte and any step (each tier's aligned head, whole
// registers and tail, small and streamed regions), read back bytewise; the
// bytes between rows stay as they were.
TYPED_TEST(ConvertOddRows, EveryValueExactly) {
    using S = TypeParam;
    Rng rng(7);
    const ZeqiSize sizes[] = {{1, 1}, {3, 2}, {17, 3}, {70, 4}, {129, 3}, {300, 400}};
    for (ZeqiSize sz : sizes)
        for (int misalign : {1, 2, 3, 4}) {
            const int step = 4 * sz.width + rng.uniform(1, 7), sstep = sz.width + rng.uniform(0, 3);
            std::vector<S> src(size_t(sstep) * sz.height);
            for (auto& v : src) v = rng.any<S>();
            std::vector<uint8_t> dst(size_t(step) * sz.height + 8, zqt::kGuardByte);
            uint8_t* d = dst.data() + misalign;
            ASSERT_EQ(zeqStsOk, convert(src.data(), sstep, reinterpret_cast<float*>(d), step, sz));
            for (int y = 0; y < sz.height; ++y)
                for (int x = 0; x < step; ++x) {
                    const uint8_t* p = d + ptrdiff_t(step) * y + x;
                    if (x >= 4 * sz.width) {
                        if (y + 1 < sz.height) {
                            ASSERT_EQ(zqt::kGuardByte, *p);
                        }
                        continue;
                    }
                    if (x % 4) continue;
                    float v;
                    std::memcpy(&v, p, 4);
                    ASSERT_EQ(float(src[size_t(sstep) * y + x / 4]), v)
                        << sz.width << "x" << sz.height << " misalign " << misalign << " at " << x / 4 << "," << y;
                }
            for (int k = 0; k < misalign; ++k) ASSERT_EQ(zqt::kGuardByte, dst[size_t(k)]);
        }
}

}  // namespace
