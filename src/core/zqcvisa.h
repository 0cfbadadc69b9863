// Instruction-set tiers and the one way kernels are chosen among them.
//
// The SSE2 baseline runs everywhere; AVX2 (with FMA) and AVX-512 (F, BW, DQ,
// VL, FMA) kernels run where the processor has them, and give the baseline's
// bits wherever the arithmetic is fixed. `zq::isa()` is the tier in use: the widest the
// processor has, capped by the environment variable ZEQCV_ISA (sse2, avx2 or
// avx512; it never raises the tier, and any other value is ignored). It is
// read once per process.
//
// How to add a kernel for the wider tiers:
//  1. Write it once, as a template over the tier, in a file named
//     `zqcv<name>.isa.cpp`. The build compiles that file three times, once
//     per tier with the tier's instruction-set flags, with ZQ_ISA naming the
//     tier being compiled. Use the register traits `zq::Regs<I>` of
//     core/zqcvregs.h (or intrinsics under `if constexpr` on I).
//  2. Declare the kernel in a header as `template <zq::Isa I, ...> void k(...)`
//     and end the .isa.cpp with explicit instantiations for `ZQ_ISA`.
//     Helpers private to the file go in an anonymous namespace; shared inline
//     code included by .isa.cpp files goes between ZQ_TIER_BEGIN and
//     ZQ_TIER_END, so that no two tiers' copies are ever merged by the linker.
//  3. Call it once per region from the exported function:
//         zq::dispatch([&](auto tier) { k<tier.value>(...); });
#ifndef ZQCV_ISA_H
#define ZQCV_ISA_H

#include <type_traits>

namespace zq {

enum class Isa : int { Sse2 = 0, Avx2 = 1, Avx512 = 2 };

// The tier in use by this process.
Isa isa();

// Lower-case name of a tier ("sse2", "avx2", "avx512").
const char* isaName(Isa i);

// Bytes in one register of a tier.
constexpr int isaBytes(Isa i) { return 16 << int(i); }

// Whether `rep movsb` moves whole cache lines at a time (enhanced string
// moves): not a tier, as every x86 processor runs it, only a speed trait.
bool fastStringMoves();

template <Isa I>
using IsaTag = std::integral_constant<Isa, I>;

// Calls f with the tier in use as a compile-time constant (an IsaTag), so f
// instantiates the kernel of every tier and runs the one selected.
template <class F>
inline decltype(auto) dispatch(F&& f) {
    switch (isa()) {
    case Isa::Avx512: return f(IsaTag<Isa::Avx512>{});
    case Isa::Avx2: return f(IsaTag<Isa::Avx2>{});
    default: return f(IsaTag<Isa::Sse2>{});
    }
}

}  // namespace zq

// The tier this translation unit is compiled for: set by the build for each
// copy of a .isa.cpp file, the baseline everywhere else.
#ifndef ZQ_TIER
#define ZQ_TIER 0
#endif
#if ZQ_TIER == 2
#define ZQ_ISA ::zq::Isa::Avx512
#define ZQ_TIER_BEGIN inline namespace tier_avx512 {
#elif ZQ_TIER == 1
#define ZQ_ISA ::zq::Isa::Avx2
#define ZQ_TIER_BEGIN inline namespace tier_avx2 {
#else
#define ZQ_ISA ::zq::Isa::Sse2
#define ZQ_TIER_BEGIN inline namespace tier_sse2 {
#endif
#define ZQ_TIER_END }

#endif
