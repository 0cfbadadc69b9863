// The one detection of the processor's tiers, and the ZEQCV_ISA cap.
#include "core/zqcvisa.h"

#include <cpuid.h>
#include <cstdlib>
#include <cstring>
#include <initializer_list>

namespace zq {
namespace {

Isa widestSupported() {
    __builtin_cpu_init();
    // Every 512-bit kernel may assume F, BW, DQ and VL together, and the
    // tiers from AVX2 up FMA (every processor with AVX2 has it).
    const bool fma = __builtin_cpu_supports("fma");
    if (fma && __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
        __builtin_cpu_supports("avx512dq") && __builtin_cpu_supports("avx512vl"))
        return Isa::Avx512;
    if (fma && __builtin_cpu_supports("avx2")) return Isa::Avx2;
    return Isa::Sse2;
}

// The cap a user asked for, or the widest tier when the value is absent or unknown.
Isa requestedCap() {
    const char* v = std::getenv("ZEQCV_ISA");
    if (v == nullptr) return Isa::Avx512;
    for (Isa i : {Isa::Sse2, Isa::Avx2, Isa::Avx512})
        if (std::strcmp(v, isaName(i)) == 0) return i;
    return Isa::Avx512;
}

}  // namespace

const char* isaName(Isa i) {
    switch (i) {
    case Isa::Avx512: return "avx512";
    case Isa::Avx2: return "avx2";
    default: return "sse2";
    }
}

bool fastStringMoves() {
    static const bool have = [] {
        unsigned a, b, c, d;
        return __get_cpuid_count(7, 0, &a, &b, &c, &d) && (b & (1u << 9));
    }();
    return have;
}

Isa isa() {
    static const Isa tier = [] {
        const Isa have = widestSupported(), cap = requestedCap();
        return int(cap) < int(have) ? cap : have;
    }();
    return tier;
}

}  // namespace zq
