#include "zqtest.h"

#include <complex>
#include <vector>

namespace {

using cd = std::complex<double>;
using zqt::Rng;

const int kFlags[] = {zeqFftScaleFwdByN, zeqFftScaleInvByN, zeqFftScaleBySqrtN, zeqFftScaleNone};

// Radix-2 reference in double precision with directly computed twiddles.
std::vector<cd> refDft(std::vector<cd> x, bool inverse) {
    const size_t n = x.size();
    for (size_t i = 1, j = 0; i < n; ++i) {
        size_t bit = n >> 1;
        for (; j & bit; bit >>= 1) j ^= bit;
        j ^= bit;
        if (i < j) std::swap(x[i], x[j]);
    }
    std::vector<cd> w(n / 2 + 1);
    for (size_t j = 0; j < w.size(); ++j)
        w[j] = std::polar(1.0, (inverse ? 2.0 : -2.0) * M_PI * double(j) / double(n));
    for (size_t len = 2; len <= n; len *= 2)
        for (size_t g = 0; g < n; g += len)
            for (size_t k = 0; k < len / 2; ++k) {
                const cd a = x[g + k], b = x[g + k + len / 2] * w[k * (n / len)];
                x[g + k] = a + b;
                x[g + k + len / 2] = a - b;
            }
    return x;
}

double scaleOf(int flag, int order, bool inverse) {
    const double n = double(int64_t(1) << order);
    if (flag == zeqFftScaleBySqrtN) return 1.0 / std::sqrt(n);
    if (flag == (inverse ? zeqFftScaleInvByN : zeqFftScaleFwdByN)) return 1.0 / n;
    return 1.0;
}

template <class V>
double relError(const float* got, const V& want) {  // want: doubles
    double num = 0, den = 0;
    for (size_t i = 0; i < want.size(); ++i) {
        num += (double(got[i]) - want[i]) * (double(got[i]) - want[i]);
        den += want[i] * want[i];
    }
    return std::sqrt(num / (den > 0 ? den : 1));
}

// Single precision leaves about 1e-7 per stage; a wrong twiddle or index costs O(1).
double tolerance(int order) { return 2e-7 * (4 + order); }

std::vector<float> randomFloats(Rng& rng, size_t n) {
    std::vector<float> v(n);
    for (auto& x : v) x = rng.uniformf(-1, 1);
    return v;
}

template <class S, ZeqStatus (*Init)(S**, int, int, int), ZeqStatus (*Free)(S*), ZeqStatus (*Buf)(const S*, int*)>
struct Spec {
    Spec(int order, int flag) { EXPECT_EQ(zeqStsOk, Init(&p, order, flag, 0)); }
    ~Spec() { Free(p); }
    int bufSize() const {
        int s = -1;
        Buf(p, &s);
        return s;
    }
    S* p = nullptr;
};
using ComplexSpec = Spec<ZeqsFFTSpec_C_32fc, zeqsFFTInitAlloc_C_32fc, zeqsFFTFree_C_32fc, zeqsFFTGetBufSize_C_32fc>;
using RealSpec = Spec<ZeqsFFTSpec_R_32f, zeqsFFTInitAlloc_R_32f, zeqsFFTFree_R_32f, zeqsFFTGetBufSize_R_32f>;

// The i386 build runs under emulation: there the large orders are few.
constexpr bool kEmulated = sizeof(void*) == 4;

// Orders up to 20, the large ones with fewer flags: that still covers
// scaling inside the blocked transform and in both directions.
std::vector<std::pair<int, int>> ordersAndFlags() {
    std::vector<std::pair<int, int>> out;
    for (int order = 0; order <= 14; ++order)
        for (int f : kFlags) out.push_back({order, f});
    if (kEmulated) {
        out.insert(out.end(), {{15, zeqFftScaleFwdByN}, {16, zeqFftScaleBySqrtN}, {17, zeqFftScaleInvByN}});
    } else {
        for (int order : {15, 16, 17, 19, 20}) {
            out.push_back({order, zeqFftScaleFwdByN});
            out.push_back({order, zeqFftScaleBySqrtN});
        }
    }
    return out;
}

// Forward against the reference spectrum; inverse of that spectrum against N times the input.
TEST(FFT1D, ComplexMatchesReference) {
    Rng rng(1);
    for (auto [order, flag] : ordersAndFlags()) {
        const size_t n = size_t(1) << order;
        const std::vector<float> x = randomFloats(rng, 2 * n);
        std::vector<cd> xc(n);
        for (size_t j = 0; j < n; ++j) xc[j] = cd(x[2 * j], x[2 * j + 1]);
        const std::vector<cd> spectrum = refDft(xc, false);
        ComplexSpec spec(order, flag);
        std::vector<float> got(2 * n), want(2 * n), spectrumF(2 * n), back(2 * n);
        std::vector<Zeq8u> buf(size_t(spec.bufSize()) + 1);
        ASSERT_EQ(zeqStsOk, zeqsFFTFwd_CToC_32fc(reinterpret_cast<const Zeq32fc*>(x.data()),
                                                 reinterpret_cast<Zeq32fc*>(got.data()), spec.p, buf.data()));
        const double fs = scaleOf(flag, order, false);
        for (size_t k = 0; k < n; ++k) {
            want[2 * k] = float(spectrum[k].real() * fs);  // float only to share relError
            want[2 * k + 1] = float(spectrum[k].imag() * fs);
            spectrumF[2 * k] = float(spectrum[k].real());
            spectrumF[2 * k + 1] = float(spectrum[k].imag());
        }
        std::vector<double> wantD(want.begin(), want.end());
        EXPECT_LT(relError(got.data(), wantD), tolerance(order)) << "forward, order " << order << " flag " << flag;

        ASSERT_EQ(zeqStsOk, zeqsFFTInv_CToC_32fc(reinterpret_cast<const Zeq32fc*>(spectrumF.data()),
                                                 reinterpret_cast<Zeq32fc*>(back.data()), spec.p, buf.data()));
        const double is = scaleOf(flag, order, true) * double(n);
        std::vector<double> wantX(2 * n);
        for (size_t i = 0; i < 2 * n; ++i) wantX[i] = double(x[i]) * is;
        EXPECT_LT(relError(back.data(), wantX), tolerance(order)) << "inverse, order " << order << " flag " << flag;
    }
}

// From order 24 the blocked transform nests a second level of blocks; scaling
// happens inside it, so the scaled forward transform is the one to check.
TEST(FFT1D, TwoLevelBlockedTransform) {
    if (kEmulated) GTEST_SKIP() << "too large to emulate";
    const int order = 24;
    const size_t n = size_t(1) << order;
    Rng rng(24);
    const std::vector<float> x = randomFloats(rng, 2 * n);
    std::vector<cd> xc(n);
    for (size_t j = 0; j < n; ++j) xc[j] = cd(x[2 * j], x[2 * j + 1]);
    xc = refDft(std::move(xc), false);
    std::vector<double> want(2 * n);
    for (size_t k = 0; k < n; ++k) {
        want[2 * k] = xc[k].real() / double(n);
        want[2 * k + 1] = xc[k].imag() / double(n);
    }
    xc = std::vector<cd>();
    ComplexSpec spec(order, zeqFftScaleFwdByN);
    std::vector<float> got(2 * n);
    ASSERT_EQ(zeqStsOk, zeqsFFTFwd_CToC_32fc(reinterpret_cast<const Zeq32fc*>(x.data()),
                                             reinterpret_cast<Zeq32fc*>(got.data()), spec.p, nullptr));
    EXPECT_LT(relError(got.data(), want), tolerance(order));
}

// The expected Pack of a real sequence, from the double reference.
std::vector<double> refPack(const std::vector<float>& x) {
    const size_t n = x.size();
    std::vector<cd> xc(x.begin(), x.end());
    const std::vector<cd> s = refDft(xc, false);
    std::vector<double> pack(n);
    pack[0] = s[0].real();
    for (size_t k = 1; k < n / 2; ++k) {
        pack[2 * k - 1] = s[k].real();
        pack[2 * k] = s[k].imag();
    }
    if (n > 1) pack[n - 1] = s[n / 2].real();
    return pack;
}

TEST(FFT1D, RealMatchesReferenceInPackLayout) {
    Rng rng(2);
    for (auto [order, flag] : ordersAndFlags()) {
        const size_t n = size_t(1) << order;
        const std::vector<float> x = randomFloats(rng, n);
        const std::vector<double> pack = refPack(x);
        RealSpec spec(order, flag);
        std::vector<Zeq8u> buf(size_t(spec.bufSize()) + 1);
        std::vector<float> got(n), packF(n), back(n);
        ASSERT_EQ(zeqStsOk, zeqsFFTFwd_RToPack_32f(x.data(), got.data(), spec.p, buf.data()));
        const double fs = scaleOf(flag, order, false), is = scaleOf(flag, order, true) * double(n);
        std::vector<double> want(n), wantX(n);
        for (size_t i = 0; i < n; ++i) {
            want[i] = pack[i] * fs;
            packF[i] = float(pack[i]);
            wantX[i] = double(x[i]) * is;
        }
        EXPECT_LT(relError(got.data(), want), tolerance(order)) << "forward, order " << order << " flag " << flag;
        if (order <= 5) {  // position by position, where a swapped pair would hide in the norm
            for (size_t i = 0; i < n; ++i) EXPECT_NEAR(want[i], got[i], 1e-5) << "order " << order << " at " << i;
        }
        const std::vector<float> packCopy = packF;
        ASSERT_EQ(zeqStsOk, zeqsFFTInv_PackToR_32f(packF.data(), back.data(), spec.p, buf.data()));
        EXPECT_EQ(packCopy, packF) << "the inverse wrote its source";
        EXPECT_LT(relError(back.data(), wantX), tolerance(order)) << "inverse, order " << order << " flag " << flag;
    }
}

int expectedBufSize(bool complex, int order) {
    const int m = complex ? order : order - 1;
    if (order < 4) return 0;
    if (!complex && order <= 16) return (4 << order) + 16;
    if (m <= 15) return (8 << m) + 16;
    const int bufOrder[] = {9, 10, 10, 13, 13, 13, 14};
    return 8 * (1 << bufOrder[std::min(m - 16, 6)]) + 262160;
}

// The documented record: seven 32-bit words, then twelve table pointers.
struct SpecRecord {
    int32_t specId, order, fwdScale, invScale;
    float scale;
    int32_t hint, bufSize;
    const int32_t* bitRev;
    void* tables[11];
};

TEST(FFT1D, SpecificationRecordAndBufferSizes) {
    for (int order = 0; order <= (kEmulated ? 18 : 21); ++order) {
        ComplexSpec c(order, zeqFftScaleNone);
        RealSpec r(order, zeqFftScaleNone);
        EXPECT_EQ(expectedBufSize(true, order), c.bufSize()) << order;
        EXPECT_EQ(expectedBufSize(false, order), r.bufSize()) << order;
    }
    const float n = 1024.0f;
    const struct {
        int flag, fwd, inv;
        float scale;
    } cases[] = {{zeqFftScaleFwdByN, 1, 0, 1.0f / n},
                 {zeqFftScaleInvByN, 0, 1, 1.0f / n},
                 {zeqFftScaleBySqrtN, 1, 1, float(1.0 / std::sqrt(1024.0))},
                 {zeqFftScaleNone, 0, 0, 0.0f}};
    for (const auto& cs : cases) {
        ZeqsFFTSpec_R_32f* p = nullptr;
        ASSERT_EQ(zeqStsOk, zeqsFFTInitAlloc_R_32f(&p, 10, cs.flag, 77));
        const auto* rec = reinterpret_cast<const SpecRecord*>(p);
        EXPECT_EQ(0u, reinterpret_cast<uintptr_t>(p) % 32);
        EXPECT_EQ(6, rec->specId);
        EXPECT_EQ(10, rec->order);
        EXPECT_EQ(cs.fwd, rec->fwdScale);
        EXPECT_EQ(cs.inv, rec->invScale);
        EXPECT_EQ(zqt::bitsOf(cs.scale), zqt::bitsOf(rec->scale));
        EXPECT_EQ(77, rec->hint);
        // Bit-reverse table of the half-length order 9: 2*rev7(k) for 128 entries, then 0.
        for (int k = 0; k < 128; ++k) {
            int rev = 0;
            for (int b = 0; b < 7; ++b) rev |= ((k >> b) & 1) << (6 - b);
            ASSERT_EQ(2 * rev, rec->bitRev[k]) << k;
        }
        EXPECT_EQ(0, rec->bitRev[128]);
        zeqsFFTFree_R_32f(p);
    }
    ZeqsFFTSpec_C_32fc* c = nullptr;
    ASSERT_EQ(zeqStsOk, zeqsFFTInitAlloc_C_32fc(&c, 5, zeqFftScaleNone, 0));
    EXPECT_EQ(4, reinterpret_cast<const SpecRecord*>(c)->specId);
    zeqsFFTFree_C_32fc(c);
}

// In place equals out of place, and a null buffer equals a caller's buffer
// at an odd address, bit for bit, in every code path of the engine.
TEST(FFT1D, InPlaceAndBufferChoiceGiveIdenticalBits) {
    Rng rng(3);
    for (int order : {0, 3, 4, 5, 14, 15, 16, 17}) {
        for (int flag : {zeqFftScaleNone, zeqFftScaleBySqrtN}) {
            if (kEmulated && order >= 16 && flag == zeqFftScaleNone) continue;
            ComplexSpec c(order, flag);
            RealSpec r(order, flag);
            const size_t n = size_t(1) << order;
            const std::vector<float> x = randomFloats(rng, 2 * n);
            std::vector<Zeq8u> raw(size_t(std::max(c.bufSize(), r.bufSize())) + 32);
            Zeq8u* odd = raw.data() + ((reinterpret_cast<uintptr_t>(raw.data()) & 1) ? 0 : 1);
            for (int dir = 0; dir < 2; ++dir) {
                auto cfft = dir ? zeqsFFTInv_CToC_32fc : zeqsFFTFwd_CToC_32fc;
                std::vector<float> out(2 * n), inPlace = x, withBuf(2 * n);
                const auto* src = reinterpret_cast<const Zeq32fc*>(x.data());
                ASSERT_EQ(zeqStsOk, cfft(src, reinterpret_cast<Zeq32fc*>(out.data()), c.p, nullptr));
                ASSERT_EQ(zeqStsOk, cfft(reinterpret_cast<Zeq32fc*>(inPlace.data()),
                                         reinterpret_cast<Zeq32fc*>(inPlace.data()), c.p, nullptr));
                ASSERT_EQ(zeqStsOk, cfft(src, reinterpret_cast<Zeq32fc*>(withBuf.data()), c.p, odd));
                EXPECT_EQ(out, inPlace) << "complex order " << order << " dir " << dir;
                EXPECT_EQ(out, withBuf) << "complex order " << order << " dir " << dir;

                auto rfft = dir ? zeqsFFTInv_PackToR_32f : zeqsFFTFwd_RToPack_32f;
                std::vector<float> rout(n), rin(x.begin(), x.begin() + n), rbuf(n);
                ASSERT_EQ(zeqStsOk, rfft(x.data(), rout.data(), r.p, nullptr));
                ASSERT_EQ(zeqStsOk, rfft(rin.data(), rin.data(), r.p, odd));
                ASSERT_EQ(zeqStsOk, rfft(x.data(), rbuf.data(), r.p, odd));
                EXPECT_EQ(rout, rin) << "real order " << order << " dir " << dir;
                EXPECT_EQ(rout, rbuf) << "real order " << order << " dir " << dir;
            }
        }
    }
}

// Checks in order: specification before data pointers; a failed InitAlloc leaves *ppSpec alone.
TEST(FFT1D, Statuses) {
    ZeqsFFTSpec_C_32fc* c = nullptr;
    ZeqsFFTSpec_R_32f* r = nullptr;
    EXPECT_EQ(zeqStsNullPtr, zeqsFFTInitAlloc_C_32fc(nullptr, 31, 0, 0));
    EXPECT_EQ(zeqStsNullPtr, zeqsFFTInitAlloc_R_32f(nullptr, 3, zeqFftScaleNone, 0));
    auto* const sentinelC = reinterpret_cast<ZeqsFFTSpec_C_32fc*>(uintptr_t(64));
    auto* const sentinelR = reinterpret_cast<ZeqsFFTSpec_R_32f*>(uintptr_t(64));
    c = sentinelC;
    r = sentinelR;
    for (int order : {-1, 31}) {
        EXPECT_EQ(zeqStsFftOrder, zeqsFFTInitAlloc_C_32fc(&c, order, 0, 0));
        EXPECT_EQ(zeqStsFftOrder, zeqsFFTInitAlloc_R_32f(&r, order, zeqFftScaleNone, 0));
    }
    for (int flag : {0, 3, 16, -1}) {
        EXPECT_EQ(zeqStsFftFlag, zeqsFFTInitAlloc_C_32fc(&c, 5, flag, 0));
        EXPECT_EQ(zeqStsFftFlag, zeqsFFTInitAlloc_R_32f(&r, 0, flag, 0));
    }
    EXPECT_EQ(sentinelC, c);
    EXPECT_EQ(sentinelR, r);

    ASSERT_EQ(zeqStsOk, zeqsFFTInitAlloc_C_32fc(&c, 5, zeqFftScaleNone, 0));
    ASSERT_EQ(zeqStsOk, zeqsFFTInitAlloc_R_32f(&r, 5, zeqFftScaleNone, 0));
    auto* rAsC = reinterpret_cast<const ZeqsFFTSpec_C_32fc*>(r);
    auto* cAsR = reinterpret_cast<const ZeqsFFTSpec_R_32f*>(c);
    std::vector<float> data(64, 1.0f);
    const std::vector<float> before = data;
    auto* z = reinterpret_cast<Zeq32fc*>(data.data());
    float* f = data.data();
    int size = -5;

    EXPECT_EQ(zeqStsNullPtr, zeqsFFTFwd_CToC_32fc(nullptr, nullptr, nullptr, nullptr));
    EXPECT_EQ(zeqStsNullPtr, zeqsFFTInv_PackToR_32f(nullptr, nullptr, nullptr, nullptr));
    EXPECT_EQ(zeqStsContextMatch, zeqsFFTFwd_CToC_32fc(nullptr, nullptr, rAsC, nullptr));
    EXPECT_EQ(zeqStsContextMatch, zeqsFFTInv_CToC_32fc(z, z, rAsC, nullptr));
    EXPECT_EQ(zeqStsContextMatch, zeqsFFTFwd_RToPack_32f(f, f, cAsR, nullptr));
    EXPECT_EQ(zeqStsContextMatch, zeqsFFTInv_PackToR_32f(nullptr, f, cAsR, nullptr));
    EXPECT_EQ(zeqStsNullPtr, zeqsFFTFwd_CToC_32fc(z, nullptr, c, nullptr));
    EXPECT_EQ(zeqStsNullPtr, zeqsFFTInv_CToC_32fc(nullptr, z, c, nullptr));
    EXPECT_EQ(zeqStsNullPtr, zeqsFFTFwd_RToPack_32f(nullptr, f, r, nullptr));
    EXPECT_EQ(zeqStsNullPtr, zeqsFFTInv_PackToR_32f(f, nullptr, r, nullptr));
    EXPECT_EQ(before, data);

    EXPECT_EQ(zeqStsNullPtr, zeqsFFTGetBufSize_C_32fc(nullptr, &size));
    EXPECT_EQ(zeqStsNullPtr, zeqsFFTGetBufSize_R_32f(r, nullptr));
    EXPECT_EQ(zeqStsContextMatch, zeqsFFTGetBufSize_C_32fc(rAsC, &size));
    EXPECT_EQ(zeqStsContextMatch, zeqsFFTGetBufSize_R_32f(cAsR, &size));
    EXPECT_EQ(-5, size);
    EXPECT_EQ(zeqStsNullPtr, zeqsFFTFree_C_32fc(nullptr));
    EXPECT_EQ(zeqStsNullPtr, zeqsFFTFree_R_32f(nullptr));
    EXPECT_EQ(zeqStsContextMatch, zeqsFFTFree_C_32fc(const_cast<ZeqsFFTSpec_C_32fc*>(rAsC)));
    EXPECT_EQ(zeqStsContextMatch, zeqsFFTFree_R_32f(const_cast<ZeqsFFTSpec_R_32f*>(cAsR)));
    EXPECT_EQ(zeqStsOk, zeqsFFTFree_C_32fc(c));
    EXPECT_EQ(zeqStsOk, zeqsFFTFree_R_32f(r));
}

}  // namespace
