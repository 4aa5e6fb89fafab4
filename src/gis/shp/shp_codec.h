#pragma once
// The main-file layout of a shapefile: the 100-byte file header, the 8-byte record headers and
// the contents of point, polyline, polygon, multipoint and multipatch records with their Z and M
// values. Knows nothing of maps; every count read from a record is checked against the record's
// length before it is used.

#include <cstddef>
#include <cstdint>
#include <string>

#include <tl_gis/hostmap/loc.h>
#include "gis/internal_results.h"

constexpr std::int32_t SHP_FILE_CODE = 9994;
constexpr std::size_t SHP_HEADER_BYTES = 100;
constexpr std::size_t SHP_RECORD_HEADER_BYTES = 8;
// Reader-internal: no further record follows.

// Shape types of a record's first word.
enum : std::int32_t {
    SHPT_NULL = 0,
    SHPT_POINT = 1,
    SHPT_POLYLINE = 3,
    SHPT_POLYGON = 5,
    SHPT_MULTIPOINT = 8,
    SHPT_POINTZ = 11,
    SHPT_POLYLINEZ = 13,
    SHPT_POLYGONZ = 15,
    SHPT_MULTIPOINTZ = 18,
    SHPT_POINTM = 21,
    SHPT_POLYLINEM = 23,
    SHPT_POLYGONM = 25,
    SHPT_MULTIPOINTM = 28,
    SHPT_MULTIPATCH = 31,
};

// The parts of a multipatch record: surfaces of triangles, and rings.
enum : std::int32_t {
    SHP_PART_TRIANGLE_STRIP = 0,
    SHP_PART_TRIANGLE_FAN = 1,
    SHP_PART_OUTER_RING = 2,
    SHP_PART_INNER_RING = 3,
    SHP_PART_FIRST_RING = 4,
    SHP_PART_RING = 5,
};

// What a shape type holds: the layout of its 2-D points (that of SHPT_POINT, SHPT_POLYLINE,
// SHPT_POLYGON, SHPT_MULTIPOINT or SHPT_MULTIPATCH) and the measures that follow them.
struct TShpShapeKind {
    std::int32_t iLayout = SHPT_NULL;
    bool bZ = false;
    bool bM = false;
};
// The kind of a shape type; false for Null shapes and unknown types.
bool GetShpShapeKind(std::int32_t shapeType, TShpShapeKind& kind);

// Z values and M values that a record holds besides its 2-D points. M values below -10^38 are
// the format's "no data" and not counted; a record may end before its optional M values.
struct TShpMeasures {
    long long lZ = 0;
    long long lM = 0;
};
TShpMeasures CountShpPointMeasures(std::size_t length, const TShpShapeKind& kind,
                                   const unsigned char* content);

// How a file stores its record headers: the standard is big-endian, but some writers use
// little-endian; the first record decides for the whole file.
enum TShpByteOrder { SHP_ORDER_UNKNOWN = 0, SHP_ORDER_BIG = 1, SHP_ORDER_LITTLE = 2 };

struct TShpHeader {
    std::int32_t iFileCode = 0;
    std::int32_t iFileLengthWords = 0;  // 16-bit words
    std::int32_t iVersion = 0;
    std::int32_t iShapeType = 0;
    TLocRect rcExtents;  // west = Xmin, north = Ymax, east = Xmax, south = Ymin
};

// Decodes the first SHP_HEADER_BYTES bytes of a main file.
TShpHeader DecodeShpHeader(const unsigned char* bytes);

// Fills SHP_HEADER_BYTES bytes of a main or index file header: the file code, the length in
// 16-bit words, version 1000, the shape type and the box (Xmin = west, Ymin = south, Xmax =
// east, Ymax = north); everything else zero.
void EncodeShpHeader(unsigned char* out, std::int32_t fileLengthWords, std::int32_t shapeType,
                     const tagLOCRECT& box);

// The byte order of a file's record headers, from its first one: little-endian when its record
// number read as little-endian is at most 0xFFFFFF (no file has that many records).
TShpByteOrder DetectShpRecordOrder(const unsigned char* recordHeader);
// The same for a first record numbered 0, which tells nothing: by its content length, taken
// big-endian (the standard) unless only the little-endian reading fits the bytes that follow.
TShpByteOrder DetectShpLengthOrder(const unsigned char* recordHeader, std::int64_t bytesAfter);

struct TShpRecordHeader {
    std::int32_t iNumber = 0;
    std::int32_t iContentWords = 0;  // content length in 16-bit words; negative in damaged files
};
TShpRecordHeader DecodeShpRecordHeader(const unsigned char* bytes, TShpByteOrder order);
// Writes a record header (or an index entry: offset and length) as the standard has it, big-endian.
void EncodeShpWordPair(unsigned char* out, std::int32_t first, std::int32_t second);

// A decoded point record (latitude = Y, longitude = X).
bool DecodeShpPoint(const unsigned char* content, std::size_t length, tagLOC& point, std::string& problem);

// A polyline or polygon record (or, with its kind, a multipoint or multipatch record with or
// without measures), decoded in place: parts and points stay in the record's bytes.
class TShpPolyRecord {
public:
    // Checks the counts and part starts against the record's length; false with a description
    // of the damage (the record then must not be used).
    bool Decode(const unsigned char* content, std::size_t length, std::string& problem);
    // The same for a record of any layout; a multipoint has no parts. Counts the Z and M values
    // after the points.
    bool Decode(const unsigned char* content, std::size_t length, const TShpShapeKind& kind,
                std::string& problem);

    int GetPartCount() const { return m_iNumParts; }
    int GetPointCount() const { return m_iNumPoints; }
    // First point of a part, and the end of its points (the next part's start, or the point
    // count for the last part). Decode has made sure start <= end <= point count.
    int GetPartStart(int part) const;
    int GetPartEnd(int part) const;
    // A multipatch part's type (SHP_PART_...); -1 for the parts of other records.
    int GetPartType(int part) const;
    // Copies count points from start on as locations (latitude = Y, longitude = X).
    void CopyPoints(int start, int count, tagLOC* out) const;
    const TShpMeasures& GetMeasures() const { return m_Measures; }

private:
    bool DecodeLayout(const unsigned char* content, std::size_t length, bool hasParts, bool hasPartTypes,
                      std::string& problem);

    int m_iNumParts = 0;
    int m_iNumPoints = 0;
    const unsigned char* m_pParts = nullptr;
    const unsigned char* m_pPartTypes = nullptr;
    const unsigned char* m_pPoints = nullptr;
    TShpMeasures m_Measures;
};
