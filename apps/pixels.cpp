// Grey conversion and the scaling of float results for viewing. Whatever the
// library offers (conversion, min/max, arithmetic on float images) is done by
// the library.
#include "tool.h"

#include <cmath>

namespace tool {

namespace {

// BT.601 luma in 16-bit fixed point: the weights sum to 65536.
constexpr uint32_t kWr = 19595, kWg = 38470, kWb = 7471;

template <class S>
uint32_t lumaOf(const S* px, int channels) {
    if (channels < 3) return px[0];
    return uint32_t((uint64_t(kWr) * px[0] + uint64_t(kWg) * px[1] + uint64_t(kWb) * px[2] + 32768) >> 16);
}

}  // namespace

zeqcv::Image<Zeq8u> grey8(const Picture& p) {
    auto out = newImage<Zeq8u>(p.width, p.height);
    for (int y = 0; y < p.height; ++y) {
        Zeq8u* dst = out.row(y);
        if (p.depth == 8) {
            const uint8_t* src = p.row8(y);
            for (int x = 0; x < p.width; ++x) dst[x] = Zeq8u(lumaOf(src + size_t(x) * p.channels, p.channels));
        } else {
            const uint16_t* src = p.row16(y);
            for (int x = 0; x < p.width; ++x)
                dst[x] = Zeq8u((lumaOf(src + size_t(x) * p.channels, p.channels) * 255 + 32767) / 65535);
        }
    }
    return out;
}

zeqcv::Image<Zeq32f> greyFloat(const Picture& p) {
    auto out = newImage<Zeq32f>(p.width, p.height);
    if (p.depth == 8) {
        const auto g = grey8(p);
        ZEQCV_CHECKED(zeqiConvert_8u32f_C1R, g, out, zeqcv::roi);
        return out;
    }
    for (int y = 0; y < p.height; ++y) {
        const uint16_t* src = p.row16(y);
        for (int x = 0; x < p.width; ++x) out.row(y)[x] = Zeq32f(lumaOf(src + size_t(x) * p.channels, p.channels));
    }
    return out;
}

zeqcv::Image<Zeq8u> rgb8(const Picture& p) {
    const Picture rgb = fitRgb(p, p.width, p.height);
    auto out = newImage<Zeq8u>(p.width, p.height, 3);
    for (int y = 0; y < p.height; ++y) std::copy(rgb.row8(y), rgb.row8(y) + rgb.rowBytes(), out.row(y));
    return out;
}

Picture pictureOf(zeqcv::ImageView<const Zeq8u> image, int channels) {
    Picture p;
    p.width = image.width();
    p.height = image.height();
    p.channels = channels;
    p.bytes.resize(p.rowBytes() * size_t(p.height));
    for (int y = 0; y < p.height; ++y)
        std::copy(image.row(y), image.row(y) + p.rowBytes(), p.row8(y));
    return p;
}

void rangeOf(zeqcv::ImageView<const Zeq32f> image, float& lo, float& hi) {
    ZeqiPoint at0, at1;
    ZEQCV_CHECKED(zeqiMinMaxIndx_32f_C1R, image, zeqcv::roi, &lo, &hi, &at0, &at1);
}

zeqcv::Image<Zeq8u> scaleTo8u(zeqcv::ImageView<const Zeq32f> image, float lo, float hi) {
    // (v - lo) * 255 / (hi - lo) on a float copy, then rounded to bytes.
    auto work = newImage<Zeq32f>(image.width(), image.height());
    ZEQCV_CHECKED(zeqiCopy_32f_C1R, image, work, zeqcv::roi);
    ZEQCV_CHECKED(zeqiSubC_32f_C1IR, lo, work, zeqcv::roi);
    ZEQCV_CHECKED(zeqiMulC_32f_C1IR, hi > lo ? 255.0f / (hi - lo) : 0.0f, work, zeqcv::roi);
    auto out = newImage<Zeq8u>(image.width(), image.height());
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) {
            const float v = work.row(y)[x];
            out.row(y)[x] = Zeq8u(v <= 0.0f || std::isnan(v) ? 0 : v >= 255.0f ? 255 : int(v + 0.5f));
        }
    return out;
}

zeqcv::Image<Zeq32f> toFloat(zeqcv::ImageView<const Zeq16s> image) {
    auto out = newImage<Zeq32f>(image.width(), image.height());
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) out.row(y)[x] = Zeq32f(image.row(y)[x]);
    return out;
}

}  // namespace tool
