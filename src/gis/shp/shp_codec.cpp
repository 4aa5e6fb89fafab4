#include "gis/shp/shp_codec.h"

#include <algorithm>

#include <tl_gis/platform/numbers.h>
#include "gis/byte_order.h"

namespace {
constexpr std::size_t kPolyFixedBytes = 44;  // shape type, box, part count, point count
constexpr std::size_t kPointBytes = 16;

std::string Describe(std::initializer_list<std::string_view> pieces) {
    std::string text;
    for (std::string_view p : pieces) text += p;
    return text;
}

std::string Int(long long v) {
    std::string s;
    AppendInt(s, v);
    return s;
}
}  // namespace

TShpHeader DecodeShpHeader(const unsigned char* bytes) {
    TShpHeader h;
    h.iFileCode = readBEInt32(bytes);
    h.iFileLengthWords = readBEInt32(bytes + 24);
    h.iVersion = readLEInt32(bytes + 28);
    h.iShapeType = readLEInt32(bytes + 32);
    h.rcExtents.dWest = readLEDouble(bytes + 36);
    h.rcExtents.dSouth = readLEDouble(bytes + 44);
    h.rcExtents.dEast = readLEDouble(bytes + 52);
    h.rcExtents.dNorth = readLEDouble(bytes + 60);
    return h;
}

void EncodeShpHeader(unsigned char* out, std::int32_t fileLengthWords, std::int32_t shapeType,
                     const tagLOCRECT& box) {
    std::fill(out, out + SHP_HEADER_BYTES, static_cast<unsigned char>(0));
    writeBEInt32(out, SHP_FILE_CODE);
    writeBEInt32(out + 24, fileLengthWords);
    writeLEInt32(out + 28, 1000);
    writeLEInt32(out + 32, shapeType);
    writeLEDouble(out + 36, box.dWest);
    writeLEDouble(out + 44, box.dSouth);
    writeLEDouble(out + 52, box.dEast);
    writeLEDouble(out + 60, box.dNorth);
}

void EncodeShpWordPair(unsigned char* out, std::int32_t first, std::int32_t second) {
    writeBEInt32(out, first);
    writeBEInt32(out + 4, second);
}

TShpByteOrder DetectShpRecordOrder(const unsigned char* recordHeader) {
    return readLE32(recordHeader) <= 0xFFFFFFu ? SHP_ORDER_LITTLE : SHP_ORDER_BIG;
}

TShpRecordHeader DecodeShpRecordHeader(const unsigned char* bytes, TShpByteOrder order) {
    TShpRecordHeader h;
    if (order == SHP_ORDER_LITTLE) {
        h.iNumber = readLEInt32(bytes);
        h.iContentWords = readLEInt32(bytes + 4);
    } else {
        h.iNumber = readBEInt32(bytes);
        h.iContentWords = readBEInt32(bytes + 4);
    }
    return h;
}

bool DecodeShpPoint(const unsigned char* content, std::size_t length, tagLOC& point, std::string& problem) {
    if (length < 20) {
        problem =
            Describe({"a point record needs 20 bytes, this one has ", Int(static_cast<long long>(length))});
        return false;
    }
    point.dLon = readLEDouble(content + 4);
    point.dLat = readLEDouble(content + 12);
    return true;
}

bool TShpPolyRecord::Decode(const unsigned char* content, std::size_t length, std::string& problem) {
    m_iNumParts = m_iNumPoints = 0;
    if (length < kPolyFixedBytes) {
        problem = Describe({"the record has ", Int(static_cast<long long>(length)),
                            " bytes, too few for its part and point counts"});
        return false;
    }
    const std::int32_t parts = readLEInt32(content + 36);
    const std::int32_t points = readLEInt32(content + 40);
    if (parts < 0 || points < 0) {
        problem = Describe({"negative count: ", Int(parts), " parts, ", Int(points), " points"});
        return false;
    }
    // 64-bit sums: counts near 2^31 must not wrap around into a small, plausible size.
    const std::uint64_t needed = kPolyFixedBytes + 4ull * static_cast<std::uint64_t>(parts) +
                                 kPointBytes * static_cast<std::uint64_t>(points);
    if (needed > length) {
        problem = Describe({Int(parts), " parts and ", Int(points), " points need ",
                            Int(static_cast<long long>(needed)), " bytes, the record has ",
                            Int(static_cast<long long>(length))});
        return false;
    }
    const unsigned char* starts = content + kPolyFixedBytes;
    std::int32_t previous = 0;
    for (std::int32_t p = 0; p < parts; ++p) {
        const std::int32_t start = readLEInt32(starts + 4 * static_cast<std::size_t>(p));
        const char* why = start < 0          ? "a negative point index"
                          : start > points   ? "past the record's last point"
                          : start < previous ? "before the start of the part ahead of it"
                                             : nullptr;
        if (why != nullptr) {
            problem = Describe(
                {"part ", Int(p + 1), " starts at point ", Int(start), " of ", Int(points), ": ", why});
            return false;
        }
        previous = start;
    }
    m_iNumParts = parts;
    m_iNumPoints = points;
    m_pParts = starts;
    m_pPoints = starts + 4 * static_cast<std::size_t>(parts);
    return true;
}

int TShpPolyRecord::GetPartStart(int part) const {
    return readLEInt32(m_pParts + 4 * static_cast<std::size_t>(part));
}

int TShpPolyRecord::GetPartEnd(int part) const {
    return part + 1 < m_iNumParts ? GetPartStart(part + 1) : m_iNumPoints;
}

void TShpPolyRecord::CopyPoints(int start, int count, tagLOC* out) const {
    const unsigned char* p = m_pPoints + kPointBytes * static_cast<std::size_t>(start);
    for (int i = 0; i < count; ++i, p += kPointBytes) {
        out[i].dLon = readLEDouble(p);
        out[i].dLat = readLEDouble(p + 8);
    }
}
