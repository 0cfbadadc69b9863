// zeqcv.hpp under -std=c++17 -Wall -Wextra -pedantic -Werror, used the way
// its comment shows.
#include "zeqcv.hpp"

#include <cstdio>

int main() {
    zeqcv::Image<Zeq8u> a(37, 5), b(37, 5), d(37, 5);
    if (!a || !b || !d) return 1;
    for (int y = 0; y < 5; ++y)
        for (int x = 0; x < 37; ++x) {
            a.row(y)[x] = Zeq8u(3 * x + y);
            b.row(y)[x] = Zeq8u(100);
        }
    ZEQCV_CHECKED(zeqiAbsDiff_8u_C1R, a, b, d, zeqcv::roi);
    zeqcv::FFT2DSpecR spec;
    zeqcv::check(spec.init(zeqiFFTInitAlloc_R_32f, 3, 2, zeqFftScaleInvByN, zeqAlgHintNone));
    zeqcv::Buffer<Zeq8u> work;
    zeqcv::check(work.sized(zeqiFFTGetBufSize_R_32f, spec.get()));
    try {
        ZEQCV_CHECKED(zeqiAbsDiff_8u_C1R, a.data(), 3, b, d, zeqcv::roi);
        return 1;
    } catch (const zeqcv::Error& e) {
        std::printf("%s\n", e.what());
        return e.status() == zeqStsStep && d.row(4)[36] == 3 * 36 + 4 - 100 ? 0 : 1;
    }
}
