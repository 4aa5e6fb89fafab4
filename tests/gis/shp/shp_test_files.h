#pragma once
// Shapefile main files assembled by hand, for the reader tests and the fuzz seeds. The bytes are
// put together with shifts, apart from the library's byte-order code, so that a fault there
// cannot hide behind the same fault here.

#include <algorithm>
#include <bit>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include <tl_gis/hostmap/loc.h>

namespace shp_test {

inline void PutBE32(std::string& out, std::uint32_t v) {
    for (int shift = 24; shift >= 0; shift -= 8) out += static_cast<char>(v >> shift);
}
inline void PutLE32(std::string& out, std::uint32_t v) {
    for (int shift = 0; shift <= 24; shift += 8) out += static_cast<char>(v >> shift);
}
inline void PutLEDouble(std::string& out, double d) {
    for (int shift = 0; shift <= 56; shift += 8)
        out += static_cast<char>(std::bit_cast<std::uint64_t>(d) >> shift);
}

using TXY = std::pair<double, double>;  // x = longitude, y = latitude

inline std::string MainHeader(std::uint32_t words, std::uint32_t type, const tagLOCRECT& box,
                              std::uint32_t code = 9994) {
    std::string h;
    PutBE32(h, code);
    h.append(20, '\0');
    PutBE32(h, words);
    PutLE32(h, 1000);
    PutLE32(h, type);
    for (double v : {box.dWest, box.dSouth, box.dEast, box.dNorth}) PutLEDouble(h, v);
    return h.append(32, '\0');
}

inline std::string PointContent(double x, double y, std::uint32_t type = 1) {
    std::string c;
    PutLE32(c, type);
    PutLEDouble(c, x);
    PutLEDouble(c, y);
    return c;
}

// A polyline or polygon (or, without parts, a multipoint of type 8); the counts written can be
// overridden to damage the record.
inline std::string PolyContent(std::uint32_t type, const std::vector<std::int32_t>& parts,
                               const std::vector<TXY>& points, std::int64_t numParts = -1,
                               std::int64_t numPoints = -1) {
    std::string c;
    PutLE32(c, type);
    c.append(32, '\0');  // box, not read
    if (type != 8) PutLE32(c, static_cast<std::uint32_t>(numParts >= 0 ? numParts : std::ssize(parts)));
    PutLE32(c, static_cast<std::uint32_t>(numPoints >= 0 ? numPoints : std::ssize(points)));
    for (std::int32_t p : parts) PutLE32(c, static_cast<std::uint32_t>(p));
    for (const auto& [x, y] : points) PutLEDouble(c, x), PutLEDouble(c, y);
    return c;
}
inline std::string MultiPointContent(const std::vector<TXY>& points) {
    return PolyContent(8, {}, points);
}

class TShpBytes {
public:
    explicit TShpBytes(bool littleEndianRecords = false) : m_bLittle(littleEndianRecords) {}

    // Appends a record; lengthWords overrides the content length written in its header.
    TShpBytes& Record(std::int32_t number, const std::string& content, std::int64_t lengthWords = -1) {
        const auto put = m_bLittle ? PutLE32 : PutBE32;
        put(m_strRecords, static_cast<std::uint32_t>(number));
        put(m_strRecords,
            static_cast<std::uint32_t>(lengthWords >= 0 ? lengthWords : std::ssize(content) / 2));
        m_strRecords += content;
        return *this;
    }
    TShpBytes& Raw(const std::string& bytes) {
        m_strRecords += bytes;
        return *this;
    }
    std::string Bytes(std::uint32_t fileCode = 9994, std::uint32_t shapeType = 5) const {
        const auto words = static_cast<std::uint32_t>(50 + m_strRecords.size() / 2);
        return MainHeader(words, shapeType, {-93.3, 45.6, -93.2, 45.4}, fileCode) + m_strRecords;
    }

private:
    bool m_bLittle;
    std::string m_strRecords;
};

struct TDbfFieldSpec {
    const char* pszName;
    char cType;
    int iWidth;
};

// A dBASE III table: texts left-aligned and numbers right-aligned in their fields. The row count,
// header length and row length written can be overridden to damage it.
inline std::string DbfBytes(const std::vector<TDbfFieldSpec>& fields,
                            const std::vector<std::vector<std::string>>& rows, std::int64_t declaredRows = -1,
                            std::int64_t headerLength = -1, std::int64_t rowLength = -1) {
    int sum = 1;
    for (const TDbfFieldSpec& f : fields) sum += f.iWidth;
    std::string dbf = "\x03\x7C\x06\x01";  // 2024-06-01
    PutLE32(dbf, static_cast<std::uint32_t>(declaredRows >= 0 ? declaredRows : std::ssize(rows)));
    const auto put16 = [&dbf](std::int64_t v) {
        dbf += static_cast<char>(v & 0xFF);
        dbf += static_cast<char>((v >> 8) & 0xFF);
    };
    put16(headerLength >= 0 ? headerLength : 33 + 32 * std::ssize(fields));
    put16(rowLength >= 0 ? rowLength : sum);
    dbf.append(20, '\0');
    for (const TDbfFieldSpec& f : fields) {
        std::string d(f.pszName);
        d.resize(11, '\0');
        d += f.cType;
        d.append(4, '\0');
        d += static_cast<char>(f.iWidth);
        d.append(15, '\0');
        dbf += d;
    }
    dbf += '\x0D';
    for (const auto& row : rows) {
        dbf += ' ';
        for (std::size_t i = 0; i < fields.size(); ++i) {
            std::string v = i < row.size() ? row[i] : "";
            v.resize(std::min<std::size_t>(v.size(), static_cast<std::size_t>(fields[i].iWidth)));
            const std::string pad(static_cast<std::size_t>(fields[i].iWidth) - v.size(), ' ');
            dbf += fields[i].cType == 'N' ? pad + v : v + pad;
        }
    }
    return dbf + '\x1A';
}

// A square around (45.5, cx); clockwise with north up runs west, north, east.
inline std::vector<TXY> SquareRing(double half, bool clockwise, double cx = -93.25, double cy = 45.5) {
    std::vector<TXY> ring = {
        {cx - half, cy - half}, {cx - half, cy + half}, {cx + half, cy + half}, {cx + half, cy - half}};
    ring.push_back(ring[0]);
    if (!clockwise) std::reverse(ring.begin(), ring.end());
    return ring;
}

}  // namespace shp_test
