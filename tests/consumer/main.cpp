// An installed zeqcv used from C++: both headers, an owner, a view and an error.
#include <zeqcv.h>
#include <zeqcv.hpp>

#include <cstdio>

int main() {
    zeqcv::Image<Zeq32f> image(16, 8), spectrum(16, 8);
    if (!image || !spectrum) return 1;
    for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 16; ++x) image.row(y)[x] = 1.0f;
    zeqcv::FFT2DSpecR spec;
    zeqcv::Buffer<Zeq8u> work;
    try {
        zeqcv::check(spec.init(zeqiFFTInitAlloc_R_32f, 4, 3, zeqFftScaleNone, zeqAlgHintNone), "init");
        zeqcv::check(work.sized(zeqiFFTGetBufSize_R_32f, spec.get()), "buffer");
        ZEQCV_CHECKED(zeqiFFTFwd_RToPack_32f_C1R, image, spectrum, spec.get(), work.data());
        ZEQCV_CHECKED(zeqiFFTFwd_RToPack_32f_C1R, image, spectrum, nullptr, work.data());
        return 1;
    } catch (const zeqcv::Error& e) {
        // The DC term of 128 ones is 128; then the null specification is refused.
        std::printf("%s (C++): DC %g, then \"%s\"\n", zeqcvGetLibVersion()->version, spectrum.row(0)[0], e.what());
        return spectrum.row(0)[0] == 128.0f && e.status() == zeqStsNullPtr ? 0 : 1;
    }
}
