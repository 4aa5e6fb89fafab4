#pragma once
// The dispatcher the host calls: picks the format from the file name, runs one load or one
// write through a fresh format object and returns its result code.

#include <tl_gis/export.h>
#include <tl_gis/gis/gis_file.h>
#include <tl_gis/gis/load_report.h>

enum TLGIS_FILE_TYPE {
    GIS_FILE_NONE = 0,
    GIS_FILE_JOB = 1,
    GIS_FILE_PMH = 2,
    GIS_FILE_DXF = 3,
    GIS_FILE_MIDMIF = 4,
    GIS_FILE_SHP = 5,
};

class TL_GIS_API TGisMap {
public:
    TGisMap() = default;
    virtual ~TGisMap() = default;
    TGisMap(const TGisMap&) = default;
    TGisMap& operator=(const TGisMap&) = default;

    // The type of a file name from its extension alone; the file need not exist.
    static TLGIS_FILE_TYPE GetGisFileType(const char* path);
    // Reads the file into the layer, adding to what it holds.
    int LoadFile(const char* path, TMapLayer* layer, GisProgressCallback progress);
    // As above, and fills report with what the load added, passed over and where it stopped;
    // the result is the same. A name no format takes leaves the report empty.
    int LoadFile(const char* path, TMapLayer* layer, GisProgressCallback progress, TLoadReport& report);
    // Writes the layer's elements in the format the name selects.
    int WriteFile(const char* path, TMapLayer* layer);

    // Whether this build reads / writes files of the type.
    static bool CanLoad(TLGIS_FILE_TYPE type);
    static bool CanWrite(TLGIS_FILE_TYPE type);
    // Short name of the type ("JOB", "PMH", "DXF", "MID/MIF", "SHP"; "none").
    static const char* GetTypeName(TLGIS_FILE_TYPE type);

    bool m_bWriteBoundaries = false;  // a shapefile export writes boundary polygons instead of spray
    bool m_bReserved = false;

private:
    // The load and the write themselves; LoadFile and WriteFile turn what they throw into 6003.
    static int LoadWithFormat(const char* path, TMapLayer* layer, GisProgressCallback progress,
                              TLoadReport* report);
    int WriteWithFormat(const char* path, TMapLayer* layer);
};
