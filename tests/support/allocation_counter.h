#pragma once
// Counts the allocations made through operator new while a TAllocationCount is alive, so that a
// test can show that something repeated a hundred thousand times costs no allocation each.
// Replaces the global operator new and delete: include it in one file of a test program only.

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdlib>
#include <new>
#include <string>

#include <tl_gis/gis/gis_map.h>

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

// AddressSanitizer brings an operator new of its own, which the library binds to; the count is
// left to builds without it.
#if defined(__SANITIZE_ADDRESS__)
constexpr bool kCountsAllocations = false;
#else
constexpr bool kCountsAllocations = true;

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
#endif

// Loads the file that write(n) puts at path, for n = 1 and n = many, and expects the same number
// of allocations, each report counting n of cause. A first load of n = 1 sets up what every load
// shares.
template <class TWrite>
void ExpectNoAllocationPerOccurrence(const std::string& path, TLoadCause cause, int many, TWrite write) {
    long long allocations[3] = {};
    int i = 0;
    for (int n : {1, 1, many}) {
        write(n);
        TMapLayer layer;
        TLoadReport report;
        TAllocationCount count;
        EXPECT_EQ(TGisMap().LoadFile(path.c_str(), &layer, nullptr, report), 0);
        allocations[i++] = count.Count();
        EXPECT_EQ(report.GetCount(cause), n);
    }
    if (!kCountsAllocations) GTEST_SKIP() << "allocations are not counted under AddressSanitizer";
    EXPECT_GT(allocations[1], 0) << "the count works";
    EXPECT_EQ(allocations[2], allocations[1]);
}
