#pragma once
// Base of the five format classes: progress reporting, the vertex array that readers build
// lines in, and the library-wide export settings.

#include <tl_gis/export.h>
#include <cstdint>
#include <string>

#include <tl_gis/hostmap/map_layer.h>
#include <tl_gis/platform/result_codes.h>

class TFileBase;
class TLoadReport;

// Receives a rough percentage of the file read; may be null.
typedef void (*GisProgressCallback)(int);

// How the JOB writer fits lines into its limits (500 lines, fewer than 999 vertices per line,
// 98,901 vertices in all).
enum REDUCTION_OPTIONS {
    REDUCE_ALL_LIMITS = 0,    // decimate long lines, drop lines past 500, stop at the total
    REDUCE_LINE_LIMITS = 1,   // as 0 without the total limit
    REDUCE_BY_TOLERANCE = 2,  // decimate by the user's tolerance and warn about the limits
    REDUCE_NONE = 3,          // write everything
};

// The slots of TGisFile::m_abJobWarnings, set by the JOB writer and reported when it ends. The
// tolerance option sets each of its three warnings in two slots, and reports them in the order
// total, lines, vertices, then the three again.
enum JOB_WARNING_SLOT : int {
    JOB_WARN_LINE_DROPPED = 0,         // options 0 and 1: a line beyond the 500th was dropped
    JOB_WARN_LINE_REDUCED = 1,         // options 0 and 1: a line decimated, or passed over at the total
    JOB_WARN_TOO_MANY_LINES = 2,       // option 2: a line's number exceeds 500 (also slot 4)
    JOB_WARN_TOO_MANY_VERTICES = 3,    // option 2: a line keeps more than 999 vertices (also slot 5)
    JOB_WARN_TOO_MANY_LINES_2 = 4,     // set with slot 2
    JOB_WARN_TOO_MANY_VERTICES_2 = 5,  // set with slot 3
    JOB_WARN_TOTAL_EXCEEDED = 6,       // option 2: the vertex total exceeds 98,901 (also slot 7)
    JOB_WARN_TOTAL_EXCEEDED_2 = 7,     // set with slot 6
    JOB_WARNING_SLOTS = 8,
};

// JOB header version written: 0, 1, 2 give versions 1, 2, 3.
enum GISFILE_FORMAT { GISFILE_JOB_V1 = 0, GISFILE_JOB_V2 = 1, GISFILE_JOB_V3 = 2 };

class TL_GIS_API TGisFile {
public:
    TGisFile() = default;
    virtual ~TGisFile();
    // Copies duplicate the vertex array, so no array is ever released twice.
    TGisFile(const TGisFile& other);
    TGisFile& operator=(const TGisFile& other);

    // Writes the layer to the path. The base writes nothing and returns 0.
    virtual int WriteFile(const char* path, TMapLayer* layer);
    // Progress set-up that every reader runs first: 0, or 6001 when the file has no status.
    virtual int LoadFile(const char* path, TMapLayer* layer, GisProgressCallback progress);

    static bool IsValidFile(const char* path);

    // The report the next load records into: what it added, passed over and where it stopped
    // (see load_report.h). Null, the default, records nothing. The report stays the caller's.
    void SetLoadReport(TLoadReport* report) { m_pLoadReport = report; }
    TLoadReport* GetLoadReport() const { return m_pLoadReport; }

    // Export settings, set by the host before a write.
    static double s_dDecimationLimitM;  // JOB decimation tolerance of option 2, metres
    static int s_iCompatible;           // REDUCTION_OPTIONS
    static int s_iGisFileFormat;        // GISFILE_FORMAT

    // Beyond the system's own behaviour, off by default: the complete profile, in which the
    // readers take everything a file holds that the map model can carry and the writers write
    // every element a format can hold, so that GDAL and QGIS open the files completely.
    static bool s_bCompleteProfile;
    // Attribute columns (or properties) that complete-profile readers take as each element's
    // id, as a polygon's value (a number) and as a point's or marker's name; empty for none.
    static std::string s_strIdField;
    static std::string s_strValueField;
    static std::string s_strNameField;

protected:
    // Reports the reading position of the file to the progress callback when it has changed.
    void UpdateProgressControl(const TFileBase& file);
    void UpdateProgressControl(std::int64_t position);

    // Releases the array and allocates room for exactly count vertices; m_iNumLocs is kept.
    // Shows a message and returns false when the memory cannot be had.
    bool AllocateLocArray(int count);
    // Appends a vertex, growing the array by 300 when full; false without an array or memory.
    bool AddVertex(double lat, double lon);
    bool AddVertex(const tagLOC* loc);
    bool ReleaseLocArray();

public:
    TMapLayer* m_pLayer = nullptr;
    tagLOC* m_pLocs = nullptr;
    int m_iLocArraySize = 0;
    int m_iNumLocs = 0;
    int m_iFeatureType = 0;
    int m_iBoundType = 0;
    bool m_bJobReduced = false;
    int m_iJobPolygons = -1;
    int m_iJobVertices = 0;
    bool m_abJobWarnings[JOB_WARNING_SLOTS] = {};
    GisProgressCallback m_pfnProgress = nullptr;
    int m_iProgressStep = 0;
    int m_iLastProgress = 0;

protected:
    TLoadReport* m_pLoadReport = nullptr;
};

// Tells whether the text after the last '.' of the path equals ext, ignoring case.
TL_GIS_API bool HasFileExtension(const char* path, const char* ext);

// Replaces the path's extension (from its last '.') with ext; a '.' is added when ext has
// none. The text is changed in place and returned.
TL_GIS_API std::string& ChangeExtension(std::string& path, const char* ext);
