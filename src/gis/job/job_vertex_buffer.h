#pragma once
// The vertex buffer of one boundary or polyline body: room for 500 vertices at first, 600
// more each time it is full. The storage itself grows by half again at least, so a body of
// millions of vertices is not copied over and over.

#include <cstddef>
#include <memory>

#include <tl_gis/hostmap/loc.h>

class TJobVertexBuffer {
public:
    static constexpr int kInitialCapacity = 500;
    static constexpr int kGrowth = 600;

    // False when the first buffer cannot be had.
    bool Allocate();
    // False when the buffer is full and cannot grow; nothing is stored then.
    bool Append(double lat, double lon);

    int Count() const { return m_iCount; }
    int Capacity() const { return m_iCapacity; }
    int Growths() const { return m_iGrowths; }
    const tagLOC* Data() const { return m_pData.get(); }

    // Tests make growth fail past this many vertices, to reach the memory-exhausted path.
    static void SetCapacityLimitForTesting(int limit) { s_iCapacityLimit = limit; }

private:
    std::unique_ptr<tagLOC[]> m_pData;
    std::size_t m_iStored = 0;  // vertices the storage holds room for
    int m_iCount = 0;
    int m_iCapacity = 0;
    int m_iGrowths = 0;
    static int s_iCapacityLimit;
};
