#include "gis/job/job_vertex_buffer.h"

#include <algorithm>
#include <climits>
#include <new>

int TJobVertexBuffer::s_iCapacityLimit = INT_MAX - TJobVertexBuffer::kGrowth;

bool TJobVertexBuffer::Allocate() {
    // One more than the capacity, as the line builders expect room for a closing vertex.
    m_pData.reset(new (std::nothrow) tagLOC[kInitialCapacity + 1]);
    if (!m_pData) return false;
    m_iStored = kInitialCapacity + 1;
    m_iCount = 0;
    m_iCapacity = kInitialCapacity;
    m_iGrowths = 0;
    return true;
}

bool TJobVertexBuffer::Append(double lat, double lon) {
    if (!m_pData) return false;
    if (m_iCount >= m_iCapacity) {
        if (m_iCapacity > s_iCapacityLimit - kGrowth) return false;
        const int capacity = m_iCapacity + kGrowth;
        const std::size_t needed = static_cast<std::size_t>(capacity) + 1;
        if (needed > m_iStored) {
            const std::size_t stored = std::max(needed, m_iStored + m_iStored / 2);
            std::unique_ptr<tagLOC[]> grown(new (std::nothrow) tagLOC[stored]);
            if (!grown) return false;
            std::copy(m_pData.get(), m_pData.get() + m_iCount, grown.get());
            m_pData = std::move(grown);
            m_iStored = stored;
        }
        m_iCapacity = capacity;
        ++m_iGrowths;
    }
    m_pData[static_cast<std::size_t>(m_iCount++)] = {lat, lon};
    return true;
}
