#pragma once
// ESRI shapefiles. Loading reads the main file (.shp) only: point records become point
// elements, every part of a polyline an open line, every ring of a polygon an inclusion or
// exclusion ring by its orientation. No attributes are read.

#include <cstddef>
#include <memory>
#include <string>

#include "gis/gis_file.h"
#include "gis/shp/shp_codec.h"
#include "platform/byte_file.h"

class TShpRecordReader;
class TShpPolyRecord;

// Forms of the recorded-spray export.
enum ESRISPRAYFORMAT {
    ESRI_SPRAY_POLYGONS = 0,
    ESRI_SPRAY_POLYLINES = 1,
    ESRI_SPRAY_POINTS = 2,
    ESRI_SPRAY_SPOTS = 3,
};
// Forms of the export of the flight path flown without spraying.
enum ESRINONSPRAYFORMAT {
    ESRI_NONSPRAY_POLYLINES = 0,
    ESRI_NONSPRAY_POINTS = 1,
};

class TGisFileShp : public TGisFile {
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

    // True for names whose extension is SHP in any case.
    static bool IsValidFile(const char* path);

    // Export settings.
    void SetCompanyName(const std::string& name) { m_strCompanyName = name; }
    void SetSingleBlockMode(int mode) { m_iSingleBlockMode = mode; }
    int GetSingleBlockMode() const { return m_iSingleBlockMode; }
    void SetSprayOnlyMode(int mode) { m_iSprayOnlyMode = mode; }
    int GetSprayOnlyMode() const { return m_iSprayOnlyMode; }

    static ESRISPRAYFORMAT s_eESRISprayFormat;
    static ESRINONSPRAYFORMAT s_eESRINonSprayFormat;

    int m_iWriteMode = 1;  // 0 boundaries, 1 spray data, 2 non-spray data
    std::string m_strCompanyName;
    std::string m_strSourceFile;  // the recorded data file the spray came from, when known
    int m_bMetric = 0;            // attribute units: 0 US, otherwise metric

private:
    int LoadHeader();
    int LoadData();
    int LoadRecord();
    int OnPointRecord(const unsigned char* content, std::size_t length, int recordNumber);
    int OnPolylineRecord(const unsigned char* content, std::size_t length, int recordNumber);
    int OnPolygonRecord(const unsigned char* content, std::size_t length, int recordNumber);
    int OnPolyRecord(const unsigned char* content, std::size_t length, int recordNumber, bool polygon);
    // Adds every part of a decoded polyline or polygon record; returns as the handlers do.
    int AddParts(const TShpPolyRecord& record, int recordNumber, bool polygon);
    // Tells the user that a record cannot be read and gives the result that ends the load.
    int ReportDamage(const std::string& problem, int result);
    int ReportDamagedRecord(int recordNumber, const std::string& problem);

    int m_iSingleBlockMode = 0;
    int m_iSprayOnlyMode = 1;

    // Reading state.
    TByteFile m_ShapeFile;
    std::unique_ptr<TShpRecordReader> m_pReader;
    std::string m_strPath;
    TShpHeader m_Header;
    std::string m_strLineSource;  // what the projected-coordinate question calls a polyline's file
};
