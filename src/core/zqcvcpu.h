// Instruction sets beyond the SSE2 baseline that kernels may dispatch to.
// Detected once per process; every wider kernel must give the baseline's bits.
#ifndef ZQCV_CPU_H
#define ZQCV_CPU_H

namespace zq {

struct CpuFeatures {
    bool avx2;    // 256-bit integer and float operations
    bool avx512;  // F, BW, DQ and VL together: the set every 512-bit kernel here may assume
};

inline const CpuFeatures& cpu() {
    static const CpuFeatures features = [] {
        __builtin_cpu_init();
        CpuFeatures f;
        f.avx2 = __builtin_cpu_supports("avx2");
        f.avx512 = __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
                   __builtin_cpu_supports("avx512dq") && __builtin_cpu_supports("avx512vl");
        return f;
    }();
    return features;
}

}  // namespace zq

#endif
