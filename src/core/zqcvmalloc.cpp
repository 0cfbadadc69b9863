// 32-byte-aligned blocks. The address malloc returned is kept in the pointer-
// sized word just below the aligned address, so zeqsFree needs nothing else.
#include "core/zqcvcore.h"

#include <cstdlib>
#include <cstring>

namespace {

constexpr uint64_t kSlack = 32 + sizeof(void*);  // 36 on i386, 40 on x86-64

void* ownAlignedAlloc(uint64_t bytes) {
    const uint64_t total = bytes + kSlack;
    if (total > uint64_t(SIZE_MAX)) return nullptr;  // would wrap around in size_t
    void* raw = std::malloc(size_t(total));
    if (!raw) return nullptr;
    const uintptr_t aligned = (reinterpret_cast<uintptr_t>(raw) + kSlack - 1) & ~uintptr_t(31);
    std::memcpy(reinterpret_cast<void*>(aligned - sizeof(void*)), &raw, sizeof(void*));
    return reinterpret_cast<void*>(aligned);
}

}  // namespace

Zeq8u* zeqsMalloc_8u(int len) {
    if (len < 1) return nullptr;
    return static_cast<Zeq8u*>(ownAlignedAlloc(uint64_t(len)));
}

Zeq32f* zeqsMalloc_32f(int len) {
    if (len < 1) return nullptr;
    return static_cast<Zeq32f*>(ownAlignedAlloc(uint64_t(len) * 4));
}

void zeqsFree(void* ptr) {
    if (!ptr) return;
    void* raw;
    std::memcpy(&raw, static_cast<char*>(ptr) - sizeof(void*), sizeof(void*));
    std::free(raw);
}
