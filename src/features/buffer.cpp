#include <tl_gis/features/buffer.h>

#include <cstring>
#include <new>

TBuffer::TBuffer(unsigned size) {
    if (size > 0) GetBuffer(size);
}

TBuffer::~TBuffer() {
    delete[] m_pData;
}

unsigned char* TBuffer::GetBuffer(unsigned size) {
    if (m_nSize >= size) return m_pData;
    // Blocks never shrink: a buffer serving records of varying size settles at the largest.
    delete[] m_pData;
    m_pData = new (std::nothrow) unsigned char[size];
    m_nSize = m_pData != nullptr ? size : 0;
    return m_pData;
}

void TBuffer::Zero() {
    if (m_pData != nullptr && m_nSize > 0) std::memset(m_pData, 0, m_nSize);
}
