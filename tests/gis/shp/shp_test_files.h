#pragma once
// Hand-assembled shapefile main files for the reader tests. The bytes are put together here
// with shifts, independently of the library's own byte-order helpers, so that a fault there
// cannot hide behind the same fault in the test.

#include <cstdint>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

namespace shp_test {

inline void PutBE32(std::string& out, std::uint32_t v) {
    for (int shift = 24; shift >= 0; shift -= 8) out += static_cast<char>((v >> shift) & 0xFF);
}
inline void PutLE32(std::string& out, std::uint32_t v) {
    for (int shift = 0; shift <= 24; shift += 8) out += static_cast<char>((v >> shift) & 0xFF);
}
inline void PutLEDouble(std::string& out, double d) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &d, sizeof bits);
    for (int shift = 0; shift <= 56; shift += 8) out += static_cast<char>((bits >> shift) & 0xFF);
}

using TXY = std::pair<double, double>;  // x = longitude, y = latitude

// Record contents.
inline std::string PointContent(double x, double y, std::uint32_t type = 1) {
    std::string c;
    PutLE32(c, type);
    PutLEDouble(c, x);
    PutLEDouble(c, y);
    return c;
}

// A polyline or polygon; the counts written can be overridden to damage the record.
inline std::string PolyContent(std::uint32_t type, const std::vector<std::int32_t>& parts,
                               const std::vector<TXY>& points, std::int64_t numParts = -1,
                               std::int64_t numPoints = -1) {
    std::string c;
    PutLE32(c, type);
    for (int i = 0; i < 4; ++i) PutLEDouble(c, 0.0);  // box, not read
    PutLE32(c,
            static_cast<std::uint32_t>(numParts >= 0 ? numParts : static_cast<std::int64_t>(parts.size())));
    PutLE32(
        c, static_cast<std::uint32_t>(numPoints >= 0 ? numPoints : static_cast<std::int64_t>(points.size())));
    for (std::int32_t p : parts) PutLE32(c, static_cast<std::uint32_t>(p));
    for (const TXY& xy : points) {
        PutLEDouble(c, xy.first);
        PutLEDouble(c, xy.second);
    }
    return c;
}

inline std::string MultiPointContent(const std::vector<TXY>& points) {
    std::string c;
    PutLE32(c, 8);
    for (int i = 0; i < 4; ++i) PutLEDouble(c, 0.0);
    PutLE32(c, static_cast<std::uint32_t>(points.size()));
    for (const TXY& xy : points) {
        PutLEDouble(c, xy.first);
        PutLEDouble(c, xy.second);
    }
    return c;
}

class TShpBytes {
public:
    explicit TShpBytes(bool littleEndianRecords = false) : m_bLittle(littleEndianRecords) {}

    // Appends a record; lengthWords overrides the content length written in its header.
    TShpBytes& Record(std::int32_t number, const std::string& content, std::int64_t lengthWords = -1) {
        const auto words = static_cast<std::uint32_t>(
            lengthWords >= 0 ? lengthWords : static_cast<std::int64_t>(content.size() / 2));
        if (m_bLittle) {
            PutLE32(m_strRecords, static_cast<std::uint32_t>(number));
            PutLE32(m_strRecords, words);
        } else {
            PutBE32(m_strRecords, static_cast<std::uint32_t>(number));
            PutBE32(m_strRecords, words);
        }
        m_strRecords += content;
        return *this;
    }
    TShpBytes& Raw(const std::string& bytes) {
        m_strRecords += bytes;
        return *this;
    }

    std::string Bytes(std::uint32_t fileCode = 9994, std::uint32_t shapeType = 5) const {
        std::string h;
        PutBE32(h, fileCode);
        h.append(20, '\0');
        PutBE32(h, static_cast<std::uint32_t>((100 + m_strRecords.size()) / 2));
        PutLE32(h, 1000);
        PutLE32(h, shapeType);
        PutLEDouble(h, -93.3);
        PutLEDouble(h, 45.4);
        PutLEDouble(h, -93.2);
        PutLEDouble(h, 45.6);
        h.append(32, '\0');
        return h + m_strRecords;
    }

private:
    bool m_bLittle;
    std::string m_strRecords;
};

// Rings around (45.5, -93.25): clockwise with north up means west -> north -> east.
inline std::vector<TXY> SquareRing(double half, bool clockwise, double cx = -93.25, double cy = 45.5) {
    std::vector<TXY> ring = {{cx - half, cy - half},
                             {cx - half, cy + half},
                             {cx + half, cy + half},
                             {cx + half, cy - half},
                             {cx - half, cy - half}};
    if (!clockwise) {
        std::vector<TXY> reversed(ring.rbegin(), ring.rend());
        return reversed;
    }
    return ring;
}

}  // namespace shp_test
