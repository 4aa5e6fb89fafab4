#pragma once
// Counts the allocations made through operator new while a TAllocationCount is alive, so that a
// test can show that something repeated a hundred thousand times costs no allocation each.
// Replaces the global operator new and delete: include it in one file of a test program only.

#include <cstddef>
#include <cstdlib>
#include <new>

inline long long g_lAllocations = 0;
inline bool g_bCountAllocations = false;

class TAllocationCount {
public:
    TAllocationCount() {
        g_lAllocations = 0;
        g_bCountAllocations = true;
    }
    ~TAllocationCount() { g_bCountAllocations = false; }
    TAllocationCount(const TAllocationCount&) = delete;
    TAllocationCount& operator=(const TAllocationCount&) = delete;
    long long Count() const { return g_lAllocations; }
};

// Not inlined: a compiler that sees free() meet operator new takes them for a mismatched pair.
[[gnu::noinline]] void* operator new(std::size_t size) {
    if (g_bCountAllocations) ++g_lAllocations;
    if (void* p = std::malloc(size == 0 ? 1 : size)) return p;
    throw std::bad_alloc();
}
[[gnu::noinline]] void* operator new[](std::size_t size) {
    return ::operator new(size);
}
[[gnu::noinline]] void operator delete(void* p) noexcept {
    std::free(p);
}
[[gnu::noinline]] void operator delete[](void* p) noexcept {
    std::free(p);
}
[[gnu::noinline]] void operator delete(void* p, std::size_t) noexcept {
    std::free(p);
}
[[gnu::noinline]] void operator delete[](void* p, std::size_t) noexcept {
    std::free(p);
}
