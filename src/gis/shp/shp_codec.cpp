#include "gis/shp/shp_codec.h"

#include <algorithm>

#include <tl_gis/platform/numbers.h>
#include "gis/byte_order.h"

namespace {
constexpr std::size_t kPolyFixedBytes = 44;  // shape type, box, part count, point count
constexpr std::size_t kPointBytes = 16;
// M values at or below this stand for "no data".
constexpr double kNoMeasure = -1e38;

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

TShpByteOrder DetectShpLengthOrder(const unsigned char* recordHeader, std::int64_t bytesAfter) {
    const auto fits = [bytesAfter](std::int32_t words) {
        return words >= 2 && 2 * static_cast<std::int64_t>(words) <= bytesAfter;
    };
    return !fits(readBEInt32(recordHeader + 4)) && fits(readLEInt32(recordHeader + 4)) ? SHP_ORDER_LITTLE
                                                                                       : SHP_ORDER_BIG;
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

bool GetShpShapeKind(std::int32_t shapeType, TShpShapeKind& kind) {
    switch (shapeType) {
        case SHPT_POINT:
        case SHPT_POLYLINE:
        case SHPT_POLYGON:
        case SHPT_MULTIPOINT:
            kind = {shapeType, false, false};
            return true;
        case SHPT_POINTZ:
        case SHPT_POLYLINEZ:
        case SHPT_POLYGONZ:
        case SHPT_MULTIPOINTZ:
            kind = {shapeType - 10, true, true};
            return true;
        case SHPT_POINTM:
        case SHPT_POLYLINEM:
        case SHPT_POLYGONM:
        case SHPT_MULTIPOINTM:
            kind = {shapeType - 20, false, true};
            return true;
        case SHPT_MULTIPATCH:
            kind = {SHPT_MULTIPATCH, true, true};
            return true;
        default:
            return false;
    }
}

TShpMeasures CountShpPointMeasures(std::size_t length, const TShpShapeKind& kind,
                                   const unsigned char* content) {
    // X and Y take content bytes 4..19; Z and M follow as single values.
    TShpMeasures measures;
    std::size_t at = 20;
    if (kind.bZ) {
        if (length < at + 8) return measures;
        measures.lZ = 1;
        at += 8;
    }
    if (kind.bM && length >= at + 8 && readLEDouble(content + at) > kNoMeasure) measures.lM = 1;
    return measures;
}

bool TShpPolyRecord::Decode(const unsigned char* content, std::size_t length, std::string& problem) {
    return DecodeLayout(content, length, true, false, problem);
}

bool TShpPolyRecord::Decode(const unsigned char* content, std::size_t length, const TShpShapeKind& kind,
                            std::string& problem) {
    m_Measures = {};
    const bool parts = kind.iLayout != SHPT_MULTIPOINT;
    if (!DecodeLayout(content, length, parts, kind.iLayout == SHPT_MULTIPATCH, problem)) return false;
    // Each measure is a range (two doubles) and one value per point; Z comes before M.
    const std::size_t points = static_cast<std::size_t>(m_iNumPoints);
    const std::size_t block = 16 + 8 * points;
    std::size_t at = static_cast<std::size_t>(m_pPoints - content) + kPointBytes * points;
    if (kind.bZ) {
        if (length - at < block) return true;
        m_Measures.lZ = m_iNumPoints;
        at += block;
    }
    if (kind.bM && length - at >= block) {
        for (std::size_t i = 0; i < points; ++i)
            if (readLEDouble(content + at + 16 + 8 * i) > kNoMeasure) ++m_Measures.lM;
    }
    return true;
}

bool TShpPolyRecord::DecodeLayout(const unsigned char* content, std::size_t length, bool hasParts,
                                  bool hasPartTypes, std::string& problem) {
    m_iNumParts = m_iNumPoints = 0;
    // A multipoint has its point count where the others have their part count.
    const std::size_t fixed = hasParts ? kPolyFixedBytes : kPolyFixedBytes - 4;
    if (length < fixed) {
        problem = Describe({"the record has ", Int(static_cast<long long>(length)),
                            " bytes, too few for its ", hasParts ? "part and point counts" : "point count"});
        return false;
    }
    const std::int32_t parts = hasParts ? readLEInt32(content + 36) : 0;
    const std::int32_t points = readLEInt32(content + fixed - 4);
    if (parts < 0 || points < 0) {
        problem = Describe({"negative count: ", Int(parts), " parts, ", Int(points), " points"});
        return false;
    }
    // 64-bit sums: counts near 2^31 must not wrap around into a small, plausible size.
    const std::uint64_t partBytes = (hasPartTypes ? 8ull : 4ull) * static_cast<std::uint64_t>(parts);
    const std::uint64_t needed = fixed + partBytes + kPointBytes * static_cast<std::uint64_t>(points);
    if (needed > length) {
        problem = Describe({Int(parts), " parts and ", Int(points), " points need ",
                            Int(static_cast<long long>(needed)), " bytes, the record has ",
                            Int(static_cast<long long>(length))});
        return false;
    }
    const unsigned char* starts = content + fixed;
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
    m_pPartTypes = hasPartTypes ? starts + 4 * static_cast<std::size_t>(parts) : nullptr;
    m_pPoints = starts + static_cast<std::size_t>(partBytes);
    return true;
}

int TShpPolyRecord::GetPartStart(int part) const {
    return readLEInt32(m_pParts + 4 * static_cast<std::size_t>(part));
}

int TShpPolyRecord::GetPartEnd(int part) const {
    return part + 1 < m_iNumParts ? GetPartStart(part + 1) : m_iNumPoints;
}

int TShpPolyRecord::GetPartType(int part) const {
    return m_pPartTypes != nullptr ? readLEInt32(m_pPartTypes + 4 * static_cast<std::size_t>(part)) : -1;
}

void TShpPolyRecord::CopyPoints(int start, int count, tagLOC* out) const {
    const unsigned char* p = m_pPoints + kPointBytes * static_cast<std::size_t>(start);
    for (int i = 0; i < count; ++i, p += kPointBytes) {
        out[i].dLon = readLEDouble(p);
        out[i].dLat = readLEDouble(p + 8);
    }
}
