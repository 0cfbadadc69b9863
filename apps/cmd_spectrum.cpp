// `zeqcv spectrum`: log(1 + |F(u, v)|) of the 2-D FFT of the grey image, with
// the zero frequency in the centre. The transform needs power-of-two sides:
// the image is padded with its mean value up to the next powers of two.
#include "commands.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <vector>

namespace tool {

namespace {

int orderFor(int n) {
    int order = 0;
    while ((1 << order) < n) ++order;
    return order;
}

struct Complex {
    double re, im;
};

// F(u, v) read from the 2-D Pack layout of a W x H real spectrum; the other
// half of the plane follows from F(u, v) = conj F(W - u, H - v).
Complex packed(zeqcv::ImageView<const Zeq32f> pack, int u, int v) {
    const int w = pack.width(), h = pack.height();
    bool conj = false;
    if (u > w / 2 || ((u == 0 || u == w / 2) && v > h / 2)) {
        u = (w - u) % w;
        v = (h - v) % h;
        conj = true;
    }
    Complex c{0, 0};
    if (u == 0 || 2 * u == w) {
        // A real column: 0 for u = 0, W-1 for u = W/2; a 1-D Pack down it.
        const int col = u == 0 ? 0 : w - 1;
        if (v == 0) c = {pack.at(col, 0), 0};
        else if (2 * v == h) c = {pack.at(col, h - 1), 0};
        else c = {pack.at(col, 2 * v - 1), pack.at(col, 2 * v)};
    } else {
        c = {pack.at(2 * u - 1, v), pack.at(2 * u, v)};
    }
    if (conj) c.im = -c.im;
    return c;
}

// The 2-D Pack spectrum of the grey image padded with its mean to powers of two.
zeqcv::Image<Zeq32f> transform(const zeqcv::Image<Zeq32f>& grey) {
    const int ox = orderFor(grey.width()), oy = orderFor(grey.height());
    auto padded = newImage<Zeq32f>(1 << ox, 1 << oy), pack = newImage<Zeq32f>(1 << ox, 1 << oy);
    Zeq64f mean = 0;
    ZEQCV_CHECKED(zeqiMean_32f_C1R, grey, zeqcv::roi, &mean, zeqAlgHintAccurate);
    ZEQCV_CHECKED(zeqiSet_32f_C1R, Zeq32f(mean), padded, zeqcv::roi);
    ZEQCV_CHECKED(zeqiCopy_32f_C1R, grey, padded, zeqcv::roi);
    zeqcv::FFT2DSpecR spec;
    zeqcv::check(spec.init(zeqiFFTInitAlloc_R_32f, ox, oy, zeqFftScaleNone, zeqAlgHintNone), "zeqiFFTInitAlloc_R_32f");
    zeqcv::Buffer<Zeq8u> buffer;
    zeqcv::check(buffer.sized(zeqiFFTGetBufSize_R_32f, spec.get()), "zeqiFFTGetBufSize_R_32f");
    ZEQCV_CHECKED(zeqiFFTFwd_RToPack_32f_C1R, padded, pack, spec.get(), buffer.data());
    return pack;
}

// log(1 + |F|), the zero frequency moved to the centre.
zeqcv::Image<Zeq32f> logMagnitude(const zeqcv::Image<Zeq32f>& pack) {
    const int w = pack.width(), h = pack.height();
    auto out = newImage<Zeq32f>(w, h);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            const Complex c = packed(pack.view(), (x + w / 2) % w, (y + h / 2) % h);
            out.row(y)[x] = Zeq32f(std::log1p(std::sqrt(c.re * c.re + c.im * c.im)));
        }
    return out;
}

// Mean power spectrum of the rows (1-D real FFT, rows padded with zeros to
// 2^n after their mean is removed), drawn as log power against frequency.
Picture rowSpectrumPlot(const zeqcv::Image<Zeq32f>& grey, Demo& demo) {
    const int order = orderFor(grey.width()), n = 1 << order;
    std::vector<double> power(size_t(n / 2 + 1), 0.0);
    demo.time("1-D FFT of every row", "zeqsFFTInitAlloc_R_32f zeqsFFTFwd_RToPack_32f", [&] {
        zeqcv::FFTSpecR spec;
        zeqcv::check(spec.init(zeqsFFTInitAlloc_R_32f, order, zeqFftScaleFwdByN, zeqAlgHintNone), "zeqsFFTInitAlloc_R_32f");
        zeqcv::Buffer<Zeq8u> work;
        zeqcv::check(work.sized(zeqsFFTGetBufSize_R_32f, spec.get()), "zeqsFFTGetBufSize_R_32f");
        zeqcv::Buffer<Zeq32f> row(n), pack(n);
        if (!row || !pack) fail("out of memory for the row spectra");
        std::fill(power.begin(), power.end(), 0.0);
        for (int y = 0; y < grey.height(); ++y) {
            double mean = 0;
            for (int x = 0; x < grey.width(); ++x) mean += grey.row(y)[x];
            mean /= grey.width();
            for (int x = 0; x < n; ++x) row.data()[x] = x < grey.width() ? Zeq32f(grey.row(y)[x] - mean) : 0.0f;
            zeqcv::check(zeqsFFTFwd_RToPack_32f(row.data(), pack.data(), spec.get(), work.data()), "zeqsFFTFwd_RToPack_32f");
            const Zeq32f* p = pack.data();
            power[0] += double(p[0]) * p[0];
            for (int k = 1; k < n / 2; ++k) power[size_t(k)] += double(p[2 * k - 1]) * p[2 * k - 1] + double(p[2 * k]) * p[2 * k];
            if (n > 1) power[size_t(n / 2)] += double(p[n - 1]) * p[n - 1];
        }
    });
    Picture plot = canvas(320, 240, {24, 24, 32});
    double lo = 1e300, hi = -1e300;
    for (double& v : power) {
        v = std::log10(v / grey.height() + 1e-6);
        lo = std::min(lo, v), hi = std::max(hi, v);
    }
    for (int x = 0; x < 300; ++x) {
        const double v = power[size_t(std::lround(double(x) * (power.size() - 1) / 299))];
        const int top = 220 - int((v - lo) / (hi > lo ? hi - lo : 1) * 200);
        for (int y = top; y <= 220; ++y) {
            uint8_t* px = plot.row8(y) + size_t(10 + x) * 3;
            px[0] = 90, px[1] = uint8_t(y == top ? 255 : 160), px[2] = 220;
        }
    }
    drawText(plot, 12, 226, "0", {200, 200, 200}, 1);
    drawText(plot, 280, 226, "N/2", {200, 200, 200}, 1);
    return plot;
}

}  // namespace

int runSpectrum(int argc, char** argv) {
    const Args args = parseArgs(argc, argv,
                                "[options] IMAGE|FOLDER...\n"
                                "Writes NAME-spectrum: log(1 + |F|) of the grey image's 2-D FFT, zero frequency in the\n"
                                "centre; sides are padded with the image's mean to powers of two.",
                                {}, true, true);
    return runBatch(args, [&](const std::string& path) {
        const auto grey = greyFloat(readPicture(path));
        zeqcv::Image<Zeq32f> pack;
        const double ms = timeMs([&] { pack = transform(grey); });
        const auto s = logMagnitude(pack);
        std::printf("%s\n", saveFloat(joinPath(args.outDir, stem(path) + "-spectrum"), s.view(), args.raw).c_str());
        return ms;
    });
}

void demoSpectrum(Demo& demo) {
    auto grey = newImage<Zeq32f>(demo.grey.width(), demo.grey.height());
    ZEQCV_CHECKED(zeqiConvert_8u32f_C1R, demo.grey, grey, zeqcv::roi);
    zeqcv::Image<Zeq32f> pack;
    demo.time("2-D FFT (padded to 2^n)", "zeqiFFTInitAlloc_R_32f zeqiFFTFwd_RToPack_32f_C1R",
              [&] { pack = transform(grey); });
    const auto s = logMagnitude(pack);
    demo.save("spectrum", s.view());
    float lo, hi;
    rangeOf(s.view(), lo, hi);
    demo.tile("FFT log magnitude", scaleTo8u(s.view(), lo, hi).view());
    const Picture rows = rowSpectrumPlot(grey, demo);
    demo.save("row-spectrum", rows);
    demo.tile("row spectra (1-D FFT)", rows);
}

}  // namespace tool
