#pragma once
// The exchange formats as the tool and a host use them: GeoJSON (.geojson, .json) and KML
// (.kml) or KMZ (.kmz), told by the file name's extension as the library's dispatcher tells its
// five. Each format is a TGisFile of its own with the library's results and load report;
// loading always behaves as the complete profile does (these formats carry holes, points, ids,
// values and names), taking the id, value and name from the properties the host chose
// (TGisFile::s_strIdField, ...) or from the id, value and name properties. Nothing is thrown.

#include <memory>
#include <string>
#include <string_view>

#include <tl_gis/gis/gis_file.h>
#include <tl_gis/gis/load_report.h>
#include "layer_export.h"

// Numbers of the exchange file types, after the library's five (1 JOB .. 5 SHP).
enum TExchangeFileType {
    EXCHANGE_FILE_NONE = 0,
    EXCHANGE_FILE_GEOJSON = 6,
    EXCHANGE_FILE_KML = 7,
    EXCHANGE_FILE_KMZ = 8,
};

TExchangeFileType GetExchangeFileType(const char* path);
// "GeoJSON", "KML", "KMZ"; null for any other number.
const char* GetExchangeTypeName(int type);

// Both formats: the file read into memory (at most 256 MiB), the text read into the layer.
class TGisFileExchange : public TGisFile {
public:
    // Adds the file's features to the layer. 0; 6002 when the file cannot be opened or is not of
    // the format; 6003 when it is damaged, too large or nests too deep (the report says where
    // reading stopped and why); 6080 when the user stops at the projected-coordinate question.
    int LoadFile(const char* path, TMapLayer* layer, GisProgressCallback progress) override;
    // Writes the layer: 0, or 6002 when the file cannot be created (after the file-error report).
    int WriteFile(const char* path, TMapLayer* layer) override;
    // Reads the bytes of a file of this format (tests and fuzzers).
    int LoadBytes(std::string bytes, TMapLayer* layer);

    // What the writer takes beyond the layer: the source of spray rows, single-block swaths.
    TExportSettings m_Export;

protected:
    virtual int ReadText(std::string& bytes, TMapLayer& layer) = 0;
    virtual std::string WriteText(TMapLayer& layer) = 0;
    // The prompt's description of this format's files.
    virtual const char* FormatPart() const = 0;
    // Reports the position reached in the file to the progress callback.
    void ShowProgress(std::int64_t position) { UpdateProgressControl(position); }

private:
    int Load(const char* path, TMapLayer* layer, GisProgressCallback progress);
    int Write(const char* path, TMapLayer* layer);
};

class TGisFileGeoJson : public TGisFileExchange {
public:
    static bool IsValidFile(const char* path);

protected:
    int ReadText(std::string& bytes, TMapLayer& layer) override;
    std::string WriteText(TMapLayer& layer) override;
    const char* FormatPart() const override { return " GeoJSON "; }
};

class TGisFileKml : public TGisFileExchange {
public:
    explicit TGisFileKml(bool kmz = false) : m_bKmz(kmz) {}
    static bool IsValidFile(const char* path);  // .kml or .kmz

protected:
    int ReadText(std::string& bytes, TMapLayer& layer) override;
    std::string WriteText(TMapLayer& layer) override;
    const char* FormatPart() const override { return m_bKmz ? " KMZ " : " KML "; }

private:
    bool m_bKmz;
};

// The format object of a type; null for EXCHANGE_FILE_NONE.
std::unique_ptr<TGisFileExchange> CreateExchangeFile(TExchangeFileType type);

// Loads or writes a file of an exchange type, as TGisMap does for the library's five: 6001 for a
// name of no exchange type.
int LoadExchangeFile(const char* path, TMapLayer* layer, GisProgressCallback progress, TLoadReport& report);
int WriteExchangeFile(const char* path, TMapLayer* layer, const TExportSettings& settings);
