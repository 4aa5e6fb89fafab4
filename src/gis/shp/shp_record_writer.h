#pragma once
// Writing a shapefile triple: the record encoder that fills one main-file record in a scratch
// block, and the three output files with the record writer (record plus index entry) and the
// header writer that every export pass uses. Knows nothing of maps or attributes.

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <tl_gis/hostmap/loc.h>
#include "gis/shp/shp_codec.h"
#include "platform/byte_file.h"

constexpr std::size_t SHP_POINT_RECORD_BYTES = 28;
constexpr std::size_t SHP_INDEX_ENTRY_BYTES = 8;

// Whether both coordinates are numbers; only such positions go into a shape.
inline bool IsFinitePosition(const tagLOC& loc) {
    return std::isfinite(loc.dLat) && std::isfinite(loc.dLon);
}

// Bytes of a polyline or polygon record of n points in one part (or in parts), record header
// included.
constexpr std::size_t ShpPolyRecordBytes(std::size_t points, std::size_t parts = 1) {
    return SHP_RECORD_HEADER_BYTES + 44 + 4 * parts + 16 * points;
}

// Whether two positions are the same, coordinate for coordinate.
inline bool IsSamePlace(const tagLOC& a, const tagLOC& b) {
    return a.dLat == b.dLat && a.dLon == b.dLon;
}

// Fills a point record (header and content, SHP_POINT_RECORD_BYTES) for X = longitude, Y = latitude.
void EncodeShpPointRecord(unsigned char* block, std::int32_t recordNumber, const tagLOC& loc);

// Fills a polyline or polygon record point by point, part by part, keeping its box; no
// allocation.
class TShpPolyEncoder {
public:
    // block must hold ShpPolyRecordBytes(pointCount, partCount) bytes. The first part starts
    // with the first point.
    void Begin(unsigned char* block, std::int32_t recordNumber, std::int32_t shapeType, int pointCount,
               int partCount = 1);
    // Starts the next part with the next point added.
    void StartPart();
    void Add(const tagLOC& loc);
    // Writes the box; returns the record's length in bytes, or 0 when fewer points or parts were
    // added than announced or a coordinate is not a finite number (the record must not be written).
    int Finish();
    const TLocRect& GetBox() const { return m_Box; }
    // Orientation of the points of the current part taken as a ring (X east, Y north), by the
    // sign of its area; false for a ring of no area.
    bool IsClockwise() const { return m_dTwiceArea < 0.0; }
    // Reverses the order of the points of the current part, so a ring turns the other way.
    void ReversePoints();

private:
    unsigned char* m_pBlock = nullptr;
    unsigned char* m_pPartPoints = nullptr;  // the current part's first point
    unsigned char* m_pNext = nullptr;
    int m_iPoints = 0;
    int m_iAdded = 0;
    int m_iParts = 0;
    int m_iPart = 0;
    int m_iPartAdded = 0;
    bool m_bFinite = true;
    TLocRect m_Box;
    tagLOC m_First;
    tagLOC m_Previous;
    double m_dTwiceArea = 0.0;  // shoelace sum, relative to the first point for precision
};

// The file of a triple: the stem with its extension set by ChangeExtension, which cuts the stem
// at its last '.' first, so a stem with a '.' in it loses what follows.
std::string ShpTriplePath(const std::string& stem, const char* extension);
// The stem of a triple written beside the target's, named as the others are: the target cut at
// its last '.', then the suffix.
std::string ShpCompanionStem(const std::string& target, const char* suffix);

// What the complete profile writes beside every shapefile: the coordinate system as GDAL words
// EPSG:4326 (WGS 84 latitude and longitude) and the character set of the table's texts.
constexpr const char* SHP_PRJ_WGS84 =
    "GEOGCS[\"GCS_WGS_1984\",DATUM[\"D_WGS_1984\",SPHEROID[\"WGS_1984\",6378137.0,298.257223563]],"
    "PRIMEM[\"Greenwich\",0.0],UNIT[\"Degree\",0.0174532925199433]]";
constexpr const char* SHP_CPG_UTF8 = "UTF-8";

// The main, index and table files of one export pass.
class TShpOutputFiles {
public:
    // Creates (or truncates) the shp, shx and dbf files of the stem. On a failure the standard
    // file-error report is shown and false returned; files already created stay.
    bool Create(const std::string& stem);
    // Writes the .prj and .cpg files of the stem last created; false as Create.
    bool WriteSidecars();
    // Closes all three; false when a write failed.
    bool Close();

    // Appends a record to the main file and its entry to the index file. -1 for a length
    // below 1, 0 without writing for a null record, otherwise 0.
    int WriteRecord(const unsigned char* record, int length);
    // Writes the 100-byte main and index headers at the start of both files: zero bytes as a
    // placeholder, or the final header for recordCount records with the main file's length.
    // header must hold SHP_HEADER_BYTES bytes. The files are left at their starts + 100.
    void WriteHeaders(bool final, std::int32_t shapeType, const tagLOCRECT& box, std::int32_t recordCount,
                      unsigned char* header);

    TByteFile m_Main;
    TByteFile m_Index;
    TByteFile m_Table;
    std::string m_strMainPath;
    std::string m_strIndexPath;
    std::string m_strTablePath;
    std::string m_strStem;
    std::vector<std::string> m_Written;  // every file created, in order, until cleared
};
