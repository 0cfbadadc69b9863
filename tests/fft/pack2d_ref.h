// Double-precision references for two-dimensional packed spectra: the DFT of
// a whole complex array, and conversion between a full spectrum and the
// packed layout (rows like one-dimensional Packs of length W; columns 0 and
// W-1 like one-dimensional Packs of length H).
#ifndef PACK2D_REF_H
#define PACK2D_REF_H

#include "zqtest.h"

#include <cmath>
#include <complex>
#include <cstdint>
#include <vector>

namespace pack2d {

// The pixels of an image moved to rows that start `misalign` bytes past an
// aligned address and lie `extra` bytes more than a row apart (odd addresses
// and steps are legal); `back` copies them into an image of the same size.
struct OddRows {
    std::vector<char> bytes;
    int step, misalign, rowBytes, h;
    OddRows(const zqt::Image<float>& img, int misalign_, int extra)
        : step(4 * img.width() + extra), misalign(misalign_), rowBytes(4 * img.width()), h(img.height()) {
        bytes.assign(size_t(step) * size_t(h) + 16, 0);
        for (int y = 0; y < h; ++y) std::memcpy(at(y), img.row(y), size_t(rowBytes));
    }
    char* at(int y) { return bytes.data() + misalign + ptrdiff_t(step) * y; }
    float* ptr() { return reinterpret_cast<float*>(at(0)); }
    void back(zqt::Image<float>& img) {
        for (int y = 0; y < h; ++y) std::memcpy(img.row(y), at(y), size_t(rowBytes));
    }
};

using Cd = std::complex<double>;

struct Spectrum {
    int w, h;
    std::vector<Cd> v;
    Spectrum(int w_, int h_) : w(w_), h(h_), v(size_t(w_) * size_t(h_)) {}
    Cd& at(int u, int y) { return v[size_t(y) * size_t(w) + size_t(u)]; }
    Cd at(int u, int y) const { return v[size_t(y) * size_t(w) + size_t(u)]; }
};

// Unscaled DFT along every row, then every column: sign -1 forward, +1 inverse.
inline void dft2(Spectrum& s, int sign) {
    auto dft1 = [sign](Cd* p, ptrdiff_t stride, int n) {
        std::vector<Cd> in(static_cast<size_t>(n)), tw(static_cast<size_t>(n));
        for (int k = 0; k < n; ++k) {
            in[size_t(k)] = p[k * stride];
            tw[size_t(k)] = std::polar(1.0, sign * 2.0 * M_PI * k / n);
        }
        for (int k = 0; k < n; ++k) {
            Cd acc = 0;
            for (int j = 0; j < n; ++j) acc += in[size_t(j)] * tw[size_t(int64_t(j) * k % n)];
            p[k * stride] = acc;
        }
    };
    for (int y = 0; y < s.h; ++y) dft1(&s.at(0, y), 1, s.w);
    for (int u = 0; u < s.w; ++u) dft1(&s.at(u, 0), s.w, s.h);
}

inline Spectrum spectrumOf(const zqt::Image<float>& img) {
    Spectrum s(img.width(), img.height());
    for (int y = 0; y < s.h; ++y)
        for (int x = 0; x < s.w; ++x) s.at(x, y) = img.at(x, y);
    dft2(s, -1);
    return s;
}

// Which spectrum value position (x, y) of the packed layout holds.
struct Slot {
    int u, v;
    bool imag;
};

inline Slot slotOf(int x, int y, int w, int h) {
    if (x == 0 || x == w - 1) {  // a real column: a one-dimensional Pack down the column
        const int u = x == 0 ? 0 : w / 2;
        if (y == 0) return {u, 0, false};
        if (y == h - 1 && h % 2 == 0) return {u, h / 2, false};
        return {u, (y + 1) / 2, y % 2 == 0};
    }
    return {(x + 1) / 2, y, x % 2 == 0};
}

// The packed layout of a spectrum (row-major, w * h values).
inline std::vector<double> pack(const Spectrum& s) {
    std::vector<double> p(s.v.size());
    for (int y = 0; y < s.h; ++y)
        for (int x = 0; x < s.w; ++x) {
            const Slot sl = slotOf(x, y, s.w, s.h);
            const Cd c = s.at(sl.u, sl.v);
            p[size_t(y) * size_t(s.w) + size_t(x)] = sl.imag ? c.imag() : c.real();
        }
    return p;
}

// The full spectrum of a real image whose packed spectrum is given, through
// F(W-u, H-v) = conj F(u, v).
inline Spectrum unpack(const zqt::Image<float>& packed) {
    const int w = packed.width(), h = packed.height();
    Spectrum s(w, h);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            const Slot sl = slotOf(x, y, w, h);
            Cd& c = s.at(sl.u, sl.v);
            if (sl.imag) c.imag(packed.at(x, y));
            else c.real(packed.at(x, y));
        }
    for (int v = 0; v < h; ++v)
        for (int u = 0; u < w; ++u) {
            const int mu = (w - u) % w, mv = (h - v) % h;
            const bool stored = (u == 0 || 2 * u == w) ? (v == 0 || 2 * v <= h) : 2 * u < w;
            if (stored) s.at(mu, mv) = std::conj(s.at(u, v));
        }
    return s;
}

// Largest |got - want| over the region, and the largest |want|.
struct Error {
    double maxErr = 0, maxWant = 0;
};

inline Error compare(const zqt::Image<float>& got, const std::vector<double>& want, double scale = 1.0) {
    Error e;
    for (int y = 0; y < got.height(); ++y)
        for (int x = 0; x < got.width(); ++x) {
            const double w = want[size_t(y) * size_t(got.width()) + size_t(x)] * scale;
            e.maxErr = std::max(e.maxErr, std::fabs(double(got.at(x, y)) - w));
            e.maxWant = std::max(e.maxWant, std::fabs(w));
        }
    return e;
}

}  // namespace pack2d

#endif
