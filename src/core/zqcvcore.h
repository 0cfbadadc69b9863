// Internal frame shared by every exported function: argument checks that
// return a status, and row addressing. Exported functions read as their check
// list:
//
//     ZQ_CHECK(zq::nonNull(pSrc, pDst));
//     ZQ_CHECK(zq::roiSize(roi));
//     ZQ_CHECK(zq::stepsAtLeast(zq::rowBytes<Zeq8u>(roi.width), srcStep, dstStep));
//     return ownKernel(...);
//
// The first failing check returns its status; nothing has been written yet.
#ifndef ZQCV_CORE_H
#define ZQCV_CORE_H

#include "zeqcv.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

#define ZQ_CHECK(check)                                    \
    do {                                                   \
        if (const ZeqStatus zqCheckStatus_ = (check))      \
            return zqCheckStatus_;                         \
    } while (0)

namespace zq {

// ---- checks, each returning zeqStsOk or the status of its failure ----

template <class... P>
inline ZeqStatus nonNull(const P*... ptrs) {
    return ((ptrs == nullptr) || ...) ? zeqStsNullPtr : zeqStsOk;
}

inline ZeqStatus roiSize(ZeqiSize roi) {
    return (roi.width < 1 || roi.height < 1) ? zeqStsSize : zeqStsOk;
}

inline ZeqStatus length(int len) { return len < 1 ? zeqStsSize : zeqStsOk; }

// Bytes in one row of `width` pixels of `channels` elements of T. 64-bit, so a
// huge width cannot wrap into an acceptable step.
template <class T>
constexpr int64_t rowBytes(int width, int channels = 1) {
    return int64_t(width) * channels * int64_t(sizeof(T));
}

// Every step at least `minBytes` (the row it must hold).
template <class... S>
inline ZeqStatus stepsAtLeast(int64_t minBytes, S... steps) {
    return ((int64_t(steps) < minBytes) || ...) ? zeqStsStep : zeqStsOk;
}

// Every step positive (primitives that accept padded work arrays of any step).
template <class... S>
inline ZeqStatus stepsPositive(S... steps) {
    return ((steps < 1) || ...) ? zeqStsStep : zeqStsOk;
}

// Step alignment, tested only for oddness (most 16-bit and float images).
template <class... S>
inline ZeqStatus stepsEven(S... steps) {
    return ((steps & 1) || ...) ? zeqStsStepAlign : zeqStsOk;
}

// Step alignment, tested as a whole number of 4-byte elements (32f single-channel).
template <class... S>
inline ZeqStatus stepsMultipleOf4(S... steps) {
    return ((steps & 3) || ...) ? zeqStsStepAlign : zeqStsOk;
}

inline ZeqStatus channelOfInterest(int coi) {
    return (coi < 1 || coi > 3) ? zeqStsCoi : zeqStsOk;
}

// ---- row addressing ----

// Row y of an image whose rows are `step` bytes apart.
template <class T>
inline T* row(T* base, ptrdiff_t step, int y) {
    using Byte = typename std::conditional<std::is_const<T>::value, const char, char>::type;
    return reinterpret_cast<T*>(reinterpret_cast<Byte*>(base) + step * y);
}

// One element at a caller-computed address. Odd steps are legal, so a row of
// 16- or 32-bit elements may start at any byte: every scalar access there
// goes through these (they compile to plain moves).
template <class T>
inline T loadu(const T* p) {
    T v;
    std::memcpy(&v, p, sizeof(T));
    return v;
}
template <class T>
inline void storeu(T* p, T v) {
    std::memcpy(p, &v, sizeof(T));
}

// Whether a region of `width` elements of T per row can be run as one long
// row: every step equals the row length in bytes.
template <class T, class... S>
inline bool contiguousRows(int width, S... steps) {
    return ((ptrdiff_t(steps) == ptrdiff_t(width) * ptrdiff_t(sizeof(T))) && ...);
}

// The step that families advancing by whole elements actually use: a 16u row
// advances by step/2 elements, a float row by step/4, remainders dropped.
template <class T>
constexpr ptrdiff_t wholeElementStep(int step) {
    return ptrdiff_t(step / int(sizeof(T))) * ptrdiff_t(sizeof(T));
}

}  // namespace zq

#endif
