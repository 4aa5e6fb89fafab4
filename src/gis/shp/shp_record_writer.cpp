#include "gis/shp/shp_record_writer.h"

#include <algorithm>
#include <cmath>

#include <tl_gis/gis/gis_file.h>
#include <tl_gis/platform/message_box.h>
#include "gis/byte_order.h"
#include "gis/internal_results.h"

void EncodeShpPointRecord(unsigned char* block, std::int32_t recordNumber, const tagLOC& loc) {
    EncodeShpWordPair(block, recordNumber, 10);
    writeLEInt32(block + 8, SHPT_POINT);
    writeLEDouble(block + 12, loc.dLon);
    writeLEDouble(block + 20, loc.dLat);
}

void TShpPolyEncoder::Begin(unsigned char* block, std::int32_t recordNumber, std::int32_t shapeType,
                            int pointCount) {
    m_pBlock = block;
    m_iPoints = pointCount;
    m_iAdded = 0;
    m_bFinite = true;
    m_dTwiceArea = 0.0;
    m_Box.InitExtents();
    const auto contentWords = static_cast<std::int32_t>(24 + 8 * static_cast<std::int64_t>(pointCount));
    EncodeShpWordPair(block, recordNumber, contentWords);
    writeLEInt32(block + 8, shapeType);
    writeLEInt32(block + 44, 1);
    writeLEInt32(block + 48, pointCount);
    writeLEInt32(block + 52, 0);
    m_pNext = block + 56;
}

void TShpPolyEncoder::Add(const tagLOC& loc) {
    if (m_iAdded >= m_iPoints) return;
    writeLEDouble(m_pNext, loc.dLon);
    writeLEDouble(m_pNext + 8, loc.dLat);
    m_pNext += 16;
    ++m_iAdded;
    if (!std::isfinite(loc.dLat) || !std::isfinite(loc.dLon)) {
        m_bFinite = false;
        return;
    }
    m_Box.ExpandExtents(loc);
    if (m_iAdded == 1) {
        m_First = loc;
    } else {
        const double x0 = m_Previous.dLon - m_First.dLon, y0 = m_Previous.dLat - m_First.dLat;
        const double x1 = loc.dLon - m_First.dLon, y1 = loc.dLat - m_First.dLat;
        m_dTwiceArea += x0 * y1 - x1 * y0;
    }
    m_Previous = loc;
}

void TShpPolyEncoder::ReversePoints() {
    unsigned char* low = m_pBlock + 56;
    unsigned char* high = m_pNext - 16;
    unsigned char swap[16];
    for (; low < high; low += 16, high -= 16) {
        std::copy(low, low + 16, swap);
        std::copy(high, high + 16, low);
        std::copy(swap, swap + 16, high);
    }
    m_dTwiceArea = -m_dTwiceArea;
}

int TShpPolyEncoder::Finish() {
    if (m_iAdded != m_iPoints || !m_bFinite || m_iPoints == 0) return 0;
    writeLEDouble(m_pBlock + 12, m_Box.dWest);
    writeLEDouble(m_pBlock + 20, m_Box.dSouth);
    writeLEDouble(m_pBlock + 28, m_Box.dEast);
    writeLEDouble(m_pBlock + 36, m_Box.dNorth);
    return static_cast<int>(ShpPolyRecordBytes(static_cast<std::size_t>(m_iPoints)));
}

namespace {
bool CreateOne(TByteFile& file, std::string& path, const std::string& stem, const char* extension) {
    path = ShpTriplePath(stem, extension);
    if (file.Open(path.c_str(), TByteFile::modeCreate)) return true;
    ReportFileError(path, file.GetOpenError(), true);
    return false;
}
}  // namespace

std::string ShpTriplePath(const std::string& stem, const char* extension) {
    std::string path = stem;
    return ChangeExtension(path, extension);
}

bool TShpOutputFiles::Create(const std::string& stem) {
    return CreateOne(m_Main, m_strMainPath, stem, "shp") && CreateOne(m_Index, m_strIndexPath, stem, "shx") &&
           CreateOne(m_Table, m_strTablePath, stem, "dbf");
}

bool TShpOutputFiles::Close() {
    const bool table = m_Table.Close();
    const bool index = m_Index.Close();
    const bool main = m_Main.Close();
    return table && index && main;
}

int TShpOutputFiles::WriteRecord(const unsigned char* record, int length) {
    if (length < 1) return RESULT_WRITE_REFUSED;
    if (record == nullptr) return 0;
    unsigned char entry[SHP_INDEX_ENTRY_BYTES];
    EncodeShpWordPair(entry, static_cast<std::int32_t>(m_Main.GetPosition() / 2), (length - 8) / 2);
    m_Main.Write(record, static_cast<std::size_t>(length));
    m_Index.Write(entry, sizeof entry);
    return 0;
}

void TShpOutputFiles::WriteHeaders(bool final, std::int32_t shapeType, const tagLOCRECT& box,
                                   std::int32_t recordCount, unsigned char* header) {
    std::fill(header, header + SHP_HEADER_BYTES, static_cast<unsigned char>(0));
    if (final) {
        const auto mainWords = static_cast<std::int32_t>(m_Main.GetLength() / 2);
        EncodeShpHeader(header, mainWords, shapeType, box);
    }
    m_Main.Seek(0);
    m_Index.Seek(0);
    m_Main.Write(header, SHP_HEADER_BYTES);
    if (final) writeBEInt32(header + 24, 50 + 4 * recordCount);
    m_Index.Write(header, SHP_HEADER_BYTES);
}
