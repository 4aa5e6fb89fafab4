#pragma once
// A reusable scratch block for the bytes of one record at a time.

#include <tl_gis/export.h>
#include <cstddef>

class TL_GIS_API TBuffer {
public:
    // Obtains a block of size bytes at once when size is above 0.
    explicit TBuffer(unsigned size = 0);
    virtual ~TBuffer();
    TBuffer(const TBuffer&) = delete;
    TBuffer& operator=(const TBuffer&) = delete;

    // A block of at least size bytes. The current block, contents kept, when it is big enough;
    // otherwise a new block of exactly size bytes with undefined contents. Null when memory
    // fails (the size is then 0), and for 0 bytes while no block was ever obtained.
    unsigned char* GetBuffer(unsigned size);
    // Fills the whole block with zero bytes.
    void Zero();

    unsigned char* m_pData = nullptr;
    unsigned m_nSize = 0;
};
