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
                            int pointCount, int partCount) {
    m_pBlock = block;
    m_iPoints = pointCount;
    m_iAdded = 0;
    m_iParts = partCount;
    m_iPart = 0;
    m_iPartAdded = 0;
    m_bFinite = true;
    m_dTwiceArea = 0.0;
    m_Box.InitExtents();
    const auto contentWords = static_cast<std::int32_t>(22 + 2 * static_cast<std::int64_t>(partCount) +
                                                        8 * static_cast<std::int64_t>(pointCount));
    EncodeShpWordPair(block, recordNumber, contentWords);
    writeLEInt32(block + 8, shapeType);
    writeLEInt32(block + 44, partCount);
    writeLEInt32(block + 48, pointCount);
    writeLEInt32(block + 52, 0);
    m_pNext = m_pPartPoints = block + 52 + 4 * static_cast<std::size_t>(partCount);
}

void TShpPolyEncoder::StartPart() {
    if (m_iPart + 1 >= m_iParts) return;
    writeLEInt32(m_pBlock + 52 + 4 * static_cast<std::size_t>(++m_iPart), m_iAdded);
    m_pPartPoints = m_pNext;
    m_iPartAdded = 0;
    m_dTwiceArea = 0.0;
}

void TShpPolyEncoder::Add(const tagLOC& loc) {
    if (m_iAdded >= m_iPoints) return;
    writeLEDouble(m_pNext, loc.dLon);
    writeLEDouble(m_pNext + 8, loc.dLat);
    m_pNext += 16;
    ++m_iAdded;
    ++m_iPartAdded;
    if (!std::isfinite(loc.dLat) || !std::isfinite(loc.dLon)) {
        m_bFinite = false;
        return;
    }
    m_Box.ExpandExtents(loc);
    if (m_iPartAdded == 1) {
        m_First = loc;
    } else {
        const double x0 = m_Previous.dLon - m_First.dLon, y0 = m_Previous.dLat - m_First.dLat;
        const double x1 = loc.dLon - m_First.dLon, y1 = loc.dLat - m_First.dLat;
        m_dTwiceArea += x0 * y1 - x1 * y0;
    }
    m_Previous = loc;
}

void TShpPolyEncoder::ReversePoints() {
    unsigned char* low = m_pPartPoints;
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
    if (m_iAdded != m_iPoints || m_iPart + 1 != m_iParts || !m_bFinite || m_iPoints == 0) return 0;
    writeLEDouble(m_pBlock + 12, m_Box.dWest);
    writeLEDouble(m_pBlock + 20, m_Box.dSouth);
    writeLEDouble(m_pBlock + 28, m_Box.dEast);
    writeLEDouble(m_pBlock + 36, m_Box.dNorth);
    return static_cast<int>(
        ShpPolyRecordBytes(static_cast<std::size_t>(m_iPoints), static_cast<std::size_t>(m_iParts)));
}

namespace {
bool CreateOne(TByteFile& file, std::string& path, const std::string& stem, const char* extension,
               std::vector<std::string>& written) {
    path = ShpTriplePath(stem, extension);
    if (file.Open(path.c_str(), TByteFile::modeCreate)) {
        written.push_back(path);
        return true;
    }
    ReportFileError(path, file.GetOpenError(), true);
    return false;
}

bool WriteWholeFile(const std::string& stem, const char* extension, std::string_view text,
                    std::vector<std::string>& written) {
    TByteFile file;
    std::string path;
    if (!CreateOne(file, path, stem, extension, written)) return false;
    file.Write(text.data(), text.size());
    return file.Close();
}
}  // namespace

std::string ShpTriplePath(const std::string& stem, const char* extension) {
    std::string path = stem;
    return ChangeExtension(path, extension);
}

bool TShpOutputFiles::Create(const std::string& stem) {
    m_strStem = stem;
    return CreateOne(m_Main, m_strMainPath, stem, "shp", m_Written) &&
           CreateOne(m_Index, m_strIndexPath, stem, "shx", m_Written) &&
           CreateOne(m_Table, m_strTablePath, stem, "dbf", m_Written);
}

bool TShpOutputFiles::WriteSidecars() {
    return WriteWholeFile(m_strStem, "prj", SHP_PRJ_WGS84, m_Written) &&
           WriteWholeFile(m_strStem, "cpg", SHP_CPG_UTF8, m_Written);
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
