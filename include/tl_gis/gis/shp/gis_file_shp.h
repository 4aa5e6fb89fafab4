#pragma once
// ESRI shapefiles. Loading reads the main file (.shp) only: point records become point
// elements, every part of a polyline an open line, every ring of a polygon an inclusion or
// exclusion ring by its orientation. No attributes are read.
//
// Writing exports either the layer's recorded spray (swath polygons, polylines, points or spot
// points, each with a row of attributes) followed by a second triple with the flight path flown
// without spraying, or the layer's boundary lines.

#include <tl_gis/export.h>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include <tl_gis/features/buffer.h>
#include <tl_gis/gis/gis_file.h>
#include <tl_gis/gis/shp/spray_table.h>

struct TShpFileIo;
struct TShpRecord;
struct TShpMeasures;
struct TChosenValues;
struct TCompleteRow;
class TShpPolyRecord;
class TShpPolyEncoder;
enum TDbfTable : int;
class TFeatureSpray;
class TFeatureLine;
struct tagSPRAYREC;

// Forms of the recorded-spray export. A host may store any value: out-of-range ones export
// polygons (spray) or nothing (non-spray), so the type holds every int.
enum ESRISPRAYFORMAT : int {
    ESRI_SPRAY_POLYGONS = 0,
    ESRI_SPRAY_POLYLINES = 1,
    ESRI_SPRAY_POINTS = 2,
    ESRI_SPRAY_SPOTS = 3,
};
// Forms of the export of the flight path flown without spraying.
enum ESRINONSPRAYFORMAT : int {
    ESRI_NONSPRAY_POLYLINES = 0,
    ESRI_NONSPRAY_POINTS = 1,
};

class TL_GIS_API TGisFileShp : public TGisFile {
public:
    TGisFileShp();
    ~TGisFileShp() override;
    TGisFileShp(const TGisFileShp&) = delete;
    TGisFileShp& operator=(const TGisFileShp&) = delete;

    // Adds the shapes of the main file to the layer. 0; 6002 when the file cannot be opened or
    // is no shapefile; 6003 for a damaged record or missing memory (after a message naming the
    // record); 6080 when the user stops at the projected-coordinate question; 1 or 2 when the
    // last point of a line is not geographic (loading stops after that record).
    int LoadFile(const char* path, TMapLayer* layer, GisProgressCallback progress) override;

    // Exports the layer (see m_iWriteMode) to the triple named from path and, after a spray
    // export of a layer with recorded spray, the non-spray triple named from the source file.
    // 0; 6002 when a file cannot be created (after the file-error report); 6003 when no scratch
    // block can be had for a header; -1 from the non-spray pass when it has no layer.
    int WriteFile(const char* path, TMapLayer* layer) override;

    // True for names whose extension is SHP in any case.
    static bool IsValidFile(const char* path);

    // The output names before their extensions are set: the spray (or boundary) triple's for a
    // target path and the non-spray triple's for a source data path, by the current format
    // settings. Each is the path cut at its last '.' (in a folder name too) and the suffix.
    static std::string GetSprayOutputStem(const std::string& target);
    static std::string GetNonSprayOutputStem(const std::string& sourcePath);
    // The file of a triple with the extension ("shp", "shx" or "dbf") set by ChangeExtension,
    // which cuts the stem at its last '.' again: target two.dots.shp gives two.shp.
    static std::string GetSprayOutputFile(const std::string& target, const char* extension);
    static std::string GetNonSprayOutputFile(const std::string& sourcePath, const char* extension);
    // The name a FILE_NAME attribute shows for a path: the path cut at its first '.', then what
    // follows its last '\' or '/', or else its last ':'; "N/A" when it has none of them.
    static std::string FileutilGetName(const std::string& path);

    // Export settings.
    void SetCompanyName(const std::string& name) { m_strCompanyName = name; }
    void SetSingleBlockMode(int mode) { m_iSingleBlockMode = mode; }
    int GetSingleBlockMode() const { return m_iSingleBlockMode; }
    void SetSprayOnlyMode(int mode) { m_iSprayOnlyMode = mode; }
    int GetSprayOnlyMode() const { return m_iSprayOnlyMode; }
    // The recorded data file the spray came from: names and dates the non-spray triple and fills
    // FILE_NAME and FILE_DATE. Empty when unknown.
    void SetSourceFile(const std::string& path) { m_strSourceFile = path; }
    // 0 US units in the attribute tables, anything else metric.
    void SetMetric(int metric) { m_bMetric = metric; }
    // Every file the last WriteFile created, in the order written (the complete profile adds
    // the lines and points triples and a .prj and .cpg beside each triple).
    const std::vector<std::string>& GetWrittenFiles() const;

    static ESRISPRAYFORMAT s_eESRISprayFormat;
    static ESRINONSPRAYFORMAT s_eESRINonSprayFormat;

    int m_iWriteMode = 1;  // 0 boundaries, 1 spray data, 2 non-spray data
    std::string m_strCompanyName;
    std::string m_strSourceFile;  // the recorded data file the spray came from, when known
    int m_bMetric = 0;            // attribute units: 0 US, otherwise metric

private:
    // The load and the write themselves; LoadFile and WriteFile turn what they throw into 6003.
    int ReadShapes(const char* path, TMapLayer* layer, GisProgressCallback progress);
    int WriteShapes(const char* path, TMapLayer* layer);
    int LoadHeader();
    int LoadData();
    int LoadRecord();
    int OnPointRecord(const unsigned char* content, std::size_t length, int recordNumber);
    int OnPolylineRecord(const unsigned char* content, std::size_t length, int recordNumber);
    int OnPolygonRecord(const unsigned char* content, std::size_t length, int recordNumber);
    int OnPolyRecord(const unsigned char* content, std::size_t length, int recordNumber, bool polygon);
    // Adds every part of a decoded polyline, polygon or multipatch record, named by the chosen
    // columns' values when there are some; returns as the handlers do.
    int AddParts(const TShpPolyRecord& record, int recordNumber, bool polygon,
                 const TChosenValues* chosen = nullptr);
    // Adds a point element, or a marker when the chosen columns name it.
    void AddPointElement(const tagLOC& loc, std::string id, const TChosenValues* chosen, int recordNumber);
    // The complete profile's record: every shape type, Z and M values counted as dropped, the
    // chosen columns of the record's table row; a damaged record or one whose last point is not
    // latitude and longitude is skipped and noted, and loading goes on.
    int LoadCompleteRecord(const TShpRecord& record);
    int SkipDamagedRecord(int recordNumber, const std::string& problem);
    // Adds each triangle of a multipatch's strip or fan (its points in the vertex array) as an
    // inclusion ring, named after the part and numbered when numbered is set.
    void AddTriangles(int count, bool fan, const std::string& name, bool numbered);
    void NoteMeasures(const TShpMeasures& measures, int recordNumber);
    void NoteSkippedType(const TShpRecord& record);
    // Tells the user that a record cannot be read and gives the result that ends the load.
    int ReportDamage(const std::string& problem, int result);
    int ReportDamagedRecord(int recordNumber, const std::string& problem);
    // Load report entries: where reading stopped and why; bytes after the last record that are
    // not zero padding; a point kept though not geographic; a stop after a record whose last
    // point is not geographic, with the records it leaves unread counted.
    void NoteStop(int recordNumber, bool after, const std::string& reason);
    void NoteEndOfData();
    void NoteKept(int coordClass, const tagLOC& loc, int recordNumber);
    void NoteStopAfterRecord(int recordNumber, const tagLOC& last, int coordClass);

    // Export passes.
    int WriteSprayHeader(bool final);
    int WriteSprayData();
    int DoBoundaryRec(const TFeatureLine& line);
    int DoSprayRec_Type1(const TFeatureSpray& spray);
    int DoSprayRec_Spot_Type1(const TFeatureSpray& spray);
    int DoSprayPoints(const TFeatureSpray& spray, bool firstOnly);
    int DoSprayRec_Type3(const TFeatureSpray& spray);
    // Encodes the samples' positions that are numbers as one polyline record numbered after the
    // last; its length, or 0 when fewer than two positions are numbers or no block is to be had.
    int EncodeSprayPath(const TFeatureSpray& spray, TShpPolyEncoder& encoder, unsigned char*& block);
    int DoSprayRec_Type5(TFeatureSpray& spray);
    int WriteShpRecord(const unsigned char* record, int length);
    // The complete profile's boundary export: rings grouped into polygons with their holes (one
    // record and row per polygon), then open lines to the target's _Lines triple and markers and
    // points to its _Points triple, every table with the columns ID, BOUND, VALUE and NAME.
    void PrepareCompletePolygons();
    int WriteCompletePolygons();
    int DoPolygonGroupRec(std::size_t group);
    int WriteCompanionTriples(const std::string& target);
    int WriteCompanionTriple(const std::string& stem, bool points);
    void WriteCompleteRow(const TCompleteRow& row);
    // Reads the source file's date and cuts m_strSourceFile to its name.
    void ReadSourceFacts();

    int CreateNonSprayData(const std::string& sourcePath, TMapLayer* layer);
    int WriteNonSprayHeader(bool final);
    int DoNonSprayRec_Type1();
    int DoNonSprayRec_Type3();
    int WriteNonSprayRec_Type1();
    int WriteNonSprayRec_Type3();
    bool HasNonSprayData() const;
    void SetNonSprayAttributes(const tagSPRAYREC& sample, double height);
    int WriteESRINonSprayRecord(const unsigned char* record, int length, const TLocRect& box);

    // Tables.
    void WriteSprayDbfFileHdr(bool final);
    void WriteNonSprayDbfFileHdr(bool final);
    void WriteDbfFileHdr(TDbfTable table, std::uint32_t recordCount);
    void WriteCompleteDbfFileHdr(std::uint32_t recordCount);
    int WriteSprayDbfRecord();
    int WriteNonSprayDbfRecord();
    void WriteDbfEnd();

    int m_iSingleBlockMode = 0;
    int m_iSprayOnlyMode = 1;

    // The files, the record reader and the table row being built.
    std::unique_ptr<TShpFileIo> m_pIo;

    // Writing state.
    TSpraySource m_SpraySource;  // the customer, source name and date the rows show
    std::string m_strSourcePath;
    int m_iShapeRecords = 0;     // records of the triple being written, numbered from 1
    int m_iNonSprayRecords = 0;  // table records of the non-spray triple
    int m_iShapeType = 5;        // of the triple being written: a polygon file until the format says
    tagLOC m_LastPoint;          // last point record written, shared by both passes
    bool m_bHasSpray = false;
    TLocRect m_NonSprayBox;  // running box of the non-spray shapes, zero until the first
    bool m_bNonSprayBoxSet = false;
    TMap m_Map;  // holds the exported layer during the non-spray pass, borrowed
    TBuffer m_HeaderBuffer;
    TBuffer m_RecordBuffer;             // the record being encoded, grown to the largest
    std::vector<tagLOC> m_RingScratch;  // a boundary's ring, closed and turned for export
    std::string m_strDbfHeader;

    // Attribute values of the record being written.
    TSprayTableRow m_SprayRow;
    std::string m_strSampleLine;
    std::string m_strSampleTime;
    std::string m_strSampleLat;
    std::string m_strSampleLon;
    double m_dSampleSpeed = 0.0;
    double m_dSampleHeight = 0.0;
    double m_dSampleAgl = 0.0;
    int m_iRecordLength = 0;
    long long m_lDbfSerial = 0;  // serial number of the last table record written

    // Reading state.
    std::string m_strPath;
    std::string m_strLineSource;  // what the projected-coordinate question calls a polyline's file
};
