#include "zqtest.h"

#include <cstddef>

namespace {

// The header read through the documented offsets of this build.
struct Header {
    const ZeqiMorphState* s;
    static constexpr bool narrow = sizeof(void*) == 4;
    const uint8_t* bytes() const { return reinterpret_cast<const uint8_t*>(s); }
    int field(int i) const {  // fields 1-7 and 12-15
        const size_t off = i <= 7 ? 4 * size_t(i - 1) : (narrow ? 44 : 64) + 4 * size_t(i - 12);
        int v;
        std::memcpy(&v, bytes() + off, 4);
        return v;
    }
    const uint8_t* pointer(int i) const {  // fields 8-11
        const uint8_t* p;
        std::memcpy(&p, bytes() + (narrow ? 28 : 32) + sizeof(void*) * size_t(i - 8), sizeof p);
        return p;
    }
    size_t headerBytes() const { return narrow ? 64 : 96; }
};

// The ellipse as documented, row pairs from the outside in.
std::vector<uint8_t> ellipse(int mw, int mh) {
    std::vector<uint8_t> m(size_t(mw) * mh);
    const float a = mw * 0.5f, b = mh * 0.5f, k = a / b;
    for (int i = 0; i <= int(mh * 0.5f); ++i) {
        const float t = i + 0.5f, h = std::sqrt(mh * t - t * t) * k;
        const int x0 = std::max(int(double(a - h) + 0.5), 0), x1 = std::min(int(double(a + h) - 0.5), mw);
        for (int x = 0; x < mw; ++x) m[size_t(i) * mw + x] = m[size_t(mh - 1 - i) * mw + x] = x >= x0 && x <= x1 ? 255 : 0;
    }
    return m;
}

TEST(MorphState, HeaderMasksAndLayoutOfEveryKind) {
    zqt::Rng rng(1);
    for (int iter = 0; iter < 300; ++iter) {
        static const int types[] = {0, 1, 2, 100}, channels[] = {1, 3, 4};
        const int type = types[iter % 4];
        const int mw = rng.uniform(1, 12), mh = rng.uniform(1, 12), w = rng.uniform(1, 50);
        const int dataType = rng.chance(0.5) ? zeq8u : zeq32f, c = channels[rng.uniform(0, 2)];
        const ZeqiPoint anchor{rng.uniform(0, mw - 1), rng.uniform(0, mh - 1)};
        std::vector<uint8_t> given(size_t(mw) * mh), want(given.size());
        for (size_t i = 0; i < given.size(); ++i) given[i] = rng.chance(0.5) ? 0 : uint8_t(rng.uniform(1, 255));
        if (type == 100) {
            for (size_t i = 0; i < given.size(); ++i) want[i] = given[i] ? 255 : 0;
        } else if (type == 1) {
            for (int y = 0; y < mh; ++y)
                for (int x = 0; x < mw; ++x) want[size_t(y) * mw + x] = x == anchor.x || y == anchor.y ? 255 : 0;
        } else if (type == 2) {
            want = ellipse(mw, mh);
        }
        ZeqiMorphState* st = nullptr;
        ASSERT_EQ(zeqStsOk, zeqiMorphologyInitAlloc(w, dataType, c, {mw, mh}, anchor, type,
                                                    type == 100 ? given.data() : nullptr, &st));
        const Header h{st};
        const int kind = type != 0 ? 0 : (mw == 3 && mh == 3) ? 33 : 99;
        const int e = dataType == zeq8u ? 1 : 4, m = type == 0 ? 0 : (mw * mh + 15) / 16 * 16;
        const int want15[] = {mw, mh, anchor.x, anchor.y, mw - anchor.x - 1, mh - anchor.y - 1, kind};
        for (int i = 1; i <= 7; ++i) EXPECT_EQ(want15[i - 1], h.field(i)) << "field " << i;
        EXPECT_EQ(((w * c + c * mw) * e + 15) / 16 * 16, h.field(12));
        EXPECT_EQ(dataType, h.field(13));
        EXPECT_EQ(c, h.field(14));
        EXPECT_EQ(w, h.field(15));
        const uint8_t* mask = h.pointer(8);
        EXPECT_EQ(h.bytes() + h.headerBytes(), mask);
        EXPECT_EQ(mask + m, h.pointer(9));
        EXPECT_EQ(mask + 17 * m, h.pointer(10));
        EXPECT_EQ(mask + 17 * m, h.pointer(11));
        EXPECT_EQ(0u, reinterpret_cast<uintptr_t>(st) % 32);
        if (type != 0) {
            for (size_t i = 0; i < want.size(); ++i) {
                ASSERT_EQ(want[i], mask[i]) << "type " << type << " " << mw << "x" << mh << " element " << i;
                for (int j = 0; j < 16; ++j) ASSERT_EQ(want[i], h.pointer(9)[16 * i + j]);
            }
        }
        EXPECT_EQ(zeqStsOk, zeqiMorphologyFree(st));
    }
}

TEST(MorphState, DocumentedShapes) {
    ZeqiMorphState* st = nullptr;
    ASSERT_EQ(zeqStsOk, zeqiMorphologyInitAlloc(10, zeq8u, 1, {5, 5}, {0, 0}, 1, nullptr, &st));
    const uint8_t* m = Header{st}.pointer(8);
    for (int i = 0; i < 25; ++i) EXPECT_EQ((i < 5 || i % 5 == 0) ? 255 : 0, m[i]) << i;
    zeqiMorphologyFree(st);
    // The 7x7 ellipse of the benchmarks, as the formula builds it.
    ASSERT_EQ(zeqStsOk, zeqiMorphologyInitAlloc(10, zeq8u, 1, {7, 7}, {3, 3}, 2, nullptr, &st));
    const char* rows[] = {"..###..", ".#####.", "#######", "#######", "#######", ".#####.", "..###.."};
    for (int y = 0; y < 7; ++y)
        for (int x = 0; x < 7; ++x) EXPECT_EQ(rows[y][x] == '#' ? 255 : 0, Header{st}.pointer(8)[7 * y + x]);
    zeqiMorphologyFree(st);
}

TEST(MorphState, StatusesInOrderAndNothingAllocated) {
    ZeqiMorphState* const sentinel = reinterpret_cast<ZeqiMorphState*>(uintptr_t(0x40));
    ZeqiMorphState* st = sentinel;
    const uint8_t mask[4] = {1, 0, 0, 1};
    auto f = [&](int w, int type, int ch, ZeqiSize m, ZeqiPoint a, int kind, const uint8_t* p) {
        return zeqiMorphologyInitAlloc(w, type, ch, m, a, kind, p, &st);
    };
    EXPECT_EQ(zeqStsNullPtr, zeqiMorphologyInitAlloc(0, 2, 2, {0, 0}, {9, 9}, 7, nullptr, nullptr));
    EXPECT_EQ(zeqStsSize, f(0, 2, 2, {3, 3}, {9, 9}, 7, nullptr));
    EXPECT_EQ(zeqStsSize, f(5, 2, 2, {3, 0}, {9, 9}, 7, nullptr));
    EXPECT_EQ(zeqStsDataType, f(5, 2, 2, {3, 3}, {9, 9}, 7, nullptr));
    EXPECT_EQ(zeqStsChannel, f(5, 9, 2, {3, 3}, {9, 9}, 7, nullptr));
    EXPECT_EQ(zeqStsAnchor, f(5, 9, 4, {3, 3}, {3, 0}, 7, nullptr));
    EXPECT_EQ(zeqStsAnchor, f(5, 9, 4, {3, 3}, {0, -1}, 7, nullptr));
    EXPECT_EQ(zeqStsOutOfRange, f(5, 9, 4, {3, 3}, {2, 2}, 7, nullptr));
    EXPECT_EQ(zeqStsNullPtr, f(5, 9, 4, {3, 3}, {2, 2}, 100, nullptr));
    EXPECT_EQ(zeqStsNoMem, f(1 << 30, 9, 4, {3, 3}, {2, 2}, 0, nullptr));
    EXPECT_EQ(sentinel, st);
    EXPECT_EQ(zeqStsNullPtr, zeqiMorphologyFree(nullptr));
    ASSERT_EQ(zeqStsOk, f(5, 1, 1, {2, 2}, {1, 1}, 100, mask));
    EXPECT_EQ(zeqStsOk, zeqiMorphologyFree(st));
}

}  // namespace
