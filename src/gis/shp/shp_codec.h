#pragma once
// The main-file layout of a shapefile: the 100-byte file header, the 8-byte record headers and
// the contents of point, polyline and polygon records. Knows nothing of maps; every count read
// from a record is checked against the record's length before it is used.

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
};

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

struct TShpRecordHeader {
    std::int32_t iNumber = 0;
    std::int32_t iContentWords = 0;  // content length in 16-bit words; negative in damaged files
};
TShpRecordHeader DecodeShpRecordHeader(const unsigned char* bytes, TShpByteOrder order);
// Writes a record header (or an index entry: offset and length) as the standard has it, big-endian.
void EncodeShpWordPair(unsigned char* out, std::int32_t first, std::int32_t second);

// A decoded point record (latitude = Y, longitude = X).
bool DecodeShpPoint(const unsigned char* content, std::size_t length, tagLOC& point, std::string& problem);

// A polyline or polygon record, decoded in place: parts and points stay in the record's bytes.
class TShpPolyRecord {
public:
    // Checks the counts and part starts against the record's length; false with a description
    // of the damage (the record then must not be used).
    bool Decode(const unsigned char* content, std::size_t length, std::string& problem);

    int GetPartCount() const { return m_iNumParts; }
    int GetPointCount() const { return m_iNumPoints; }
    // First point of a part, and the end of its points (the next part's start, or the point
    // count for the last part). Decode has made sure start <= end <= point count.
    int GetPartStart(int part) const;
    int GetPartEnd(int part) const;
    // Copies count points from start on as locations (latitude = Y, longitude = X).
    void CopyPoints(int start, int count, tagLOC* out) const;

private:
    int m_iNumParts = 0;
    int m_iNumPoints = 0;
    const unsigned char* m_pParts = nullptr;
    const unsigned char* m_pPoints = nullptr;
};
