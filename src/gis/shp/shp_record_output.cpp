// What the record builders of the spray and boundary triple share: the scratch block a record
// is encoded in, and the writer that appends it with its index entry.

#include <tl_gis/features/buffer.h>
#include <tl_gis/gis/shp/gis_file_shp.h>
#include "gis/shp/shp_file_io.h"

unsigned char* ShpRecordBlock(TBuffer& buffer, std::size_t bytes) {
    // Scratch room beyond a record's own size, so that slightly longer records reuse the block.
    constexpr std::size_t kSpareBytes = 50;
    if (bytes > 0x7FFFFFFFu - kSpareBytes) return nullptr;
    return buffer.GetBuffer(static_cast<unsigned>(bytes + kSpareBytes));
}

int TGisFileShp::WriteShpRecord(const unsigned char* record, int length) {
    return m_pIo->m_Out.WriteRecord(record, length);
}
