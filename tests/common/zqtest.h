// Test support shared by every suite: seeded random numbers, and images that
// live inside a larger buffer with guard bytes around them and padding after
// each row, so a test can prove that nothing outside the region was written
// (or, after a failed check, that nothing was written at all).
#ifndef ZQTEST_H
#define ZQTEST_H

#include "zeqcv.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>
#include <type_traits>
#include <vector>

namespace zqt {

class Rng {
public:
    explicit Rng(uint32_t seed) : gen_(seed) {}
    int uniform(int lo, int hi) { return std::uniform_int_distribution<int>(lo, hi)(gen_); }
    float uniformf(float lo, float hi) { return std::uniform_real_distribution<float>(lo, hi)(gen_); }
    bool chance(double p) { return std::bernoulli_distribution(p)(gen_); }
    // A value spread over the whole range of T (floats: [-1000, 1000]).
    template <class T>
    T any() {
        if constexpr (std::is_floating_point<T>::value) return T(uniformf(-1000.f, 1000.f));
        else return T(uniform(std::numeric_limits<T>::min(), std::numeric_limits<T>::max()));
    }
    std::mt19937& engine() { return gen_; }

private:
    std::mt19937 gen_;
};

constexpr uint8_t kGuardByte = 0xA5;
constexpr int kGuardBytes = 64;

// An image of width x height pixels of `channels` elements of T. The first
// pixel sits `misalign` bytes past a 64-byte boundary; rows are `step` bytes
// apart (by default the row length plus `pad` bytes). Every byte that is not a
// pixel of the region holds kGuardByte.
template <class T>
class Image {
public:
    Image(int width, int height, int channels = 1, int pad = 0, int misalign = 0)
        : Image(width, height, channels, width * channels * int(sizeof(T)) + pad, misalign, true) {}

    // An explicit step, for layouts that advance by something else than the row length.
    static Image withStep(int width, int height, int channels, int step, int misalign = 0) {
        return Image(width, height, channels, step, misalign, true);
    }

    int width() const { return w_; }
    int height() const { return h_; }
    int channels() const { return c_; }
    int step() const { return step_; }
    ZeqiSize size() const { return {w_, h_}; }

    T* ptr() { return reinterpret_cast<T*>(base()); }
    const T* ptr() const { return reinterpret_cast<const T*>(base()); }
    T* row(int y) { return reinterpret_cast<T*>(base() + ptrdiff_t(y) * step_); }
    const T* row(int y) const { return reinterpret_cast<const T*>(base() + ptrdiff_t(y) * step_); }
    // Elements are read and written by value: an odd step leaves them
    // misaligned, where a T& would be undefined.
    class Ref {
    public:
        explicit Ref(T* p) : p_(p) {}
        Ref(const Ref&) = default;
        operator T() const { return load(p_); }
        Ref& operator=(T v) {
            std::memcpy(p_, &v, sizeof(T));
            return *this;
        }
        Ref& operator=(const Ref& other) { return *this = T(other); }
        Ref& operator+=(T v) { return *this = T(T(*this) + v); }

    private:
        T* p_;
    };
    static T load(const T* p) {
        T v;
        std::memcpy(&v, p, sizeof(T));
        return v;
    }
    T* addr(int x, int y, int c = 0) { return row(y) + ptrdiff_t(x) * c_ + c; }
    const T* addr(int x, int y, int c = 0) const { return row(y) + ptrdiff_t(x) * c_ + c; }
    Ref at(int x, int y, int c = 0) { return Ref(addr(x, y, c)); }
    T at(int x, int y, int c = 0) const { return load(addr(x, y, c)); }

    template <class F>
    void fill(F&& valueAt) {  // valueAt(x, y, c) -> T
        for (int y = 0; y < h_; ++y)
            for (int x = 0; x < w_; ++x)
                for (int c = 0; c < c_; ++c) at(x, y, c) = T(valueAt(x, y, c));
    }
    void fillRandom(Rng& rng) {
        fill([&](int, int, int) { return rng.any<T>(); });
    }

    // True when every byte outside the region still holds the guard pattern.
    ::testing::AssertionResult outsideUntouched() const {
        for (size_t i = 0; i < buf_.size(); ++i) {
            if (!inRegion_[i] && buf_[i] != kGuardByte)
                return ::testing::AssertionFailure() << "byte " << ptrdiff_t(i) - ptrdiff_t(offset_)
                                                     << " outside the region was written";
        }
        return ::testing::AssertionSuccess();
    }

    // The whole buffer, to compare before and after a call that must write nothing.
    std::vector<uint8_t> snapshot() const { return buf_; }
    ::testing::AssertionResult unchangedSince(const std::vector<uint8_t>& before) const {
        if (before == buf_) return ::testing::AssertionSuccess();
        return ::testing::AssertionFailure() << "the image was written";
    }

private:
    Image(int width, int height, int channels, int step, int misalign, bool)
        : w_(width), h_(height), c_(channels), step_(step) {
        const size_t rowLen = size_t(width) * channels * sizeof(T);
        const size_t span = height > 0 ? size_t(height - 1) * size_t(step) + rowLen : 0;
        buf_.assign(span + 2 * kGuardBytes + 128, kGuardByte);
        inRegion_.assign(buf_.size(), false);
        const uintptr_t start = reinterpret_cast<uintptr_t>(buf_.data()) + kGuardBytes;
        offset_ = size_t(((start + 63) & ~uintptr_t(63)) - reinterpret_cast<uintptr_t>(buf_.data())) + size_t(misalign);
        for (int y = 0; y < height; ++y)
            for (size_t b = 0; b < rowLen; ++b) inRegion_[offset_ + size_t(y) * size_t(step) + b] = true;
        fill([](int, int, int) { return T(0); });
    }
    uint8_t* base() { return buf_.data() + offset_; }
    const uint8_t* base() const { return buf_.data() + offset_; }

    int w_, h_, c_, step_;
    size_t offset_ = 0;
    std::vector<uint8_t> buf_;
    std::vector<bool> inRegion_;
};

// Bit-exact float comparison that treats every NaN as equal to every NaN.
inline bool sameFloat(float a, float b) {
    if (std::isnan(a) || std::isnan(b)) return std::isnan(a) && std::isnan(b);
    uint32_t x, y;
    std::memcpy(&x, &a, 4);
    std::memcpy(&y, &b, 4);
    return x == y;
}

inline uint32_t bitsOf(float v) {
    uint32_t b;
    std::memcpy(&b, &v, 4);
    return b;
}

inline float floatFromBits(uint32_t bits) {
    float f;
    std::memcpy(&f, &bits, 4);
    return f;
}

inline uint64_t bitsOf(double v) {
    uint64_t b;
    std::memcpy(&b, &v, 8);
    return b;
}

// Every region element of `got` equals `want` (bit for bit for floats).
template <class T>
::testing::AssertionResult sameImage(const Image<T>& got, const Image<T>& want) {
    for (int y = 0; y < want.height(); ++y)
        for (int x = 0; x < want.width(); ++x)
            for (int c = 0; c < want.channels(); ++c) {
                const T g = got.at(x, y, c), w = want.at(x, y, c);
                bool same;
                if constexpr (std::is_same<T, float>::value) same = sameFloat(g, w);
                else same = g == w;
                if (!same)
                    return ::testing::AssertionFailure() << "at (" << x << ", " << y << ", " << c << "): got "
                                                         << +g << ", want " << +w;
            }
    return ::testing::AssertionSuccess();
}

}  // namespace zqt

#endif
