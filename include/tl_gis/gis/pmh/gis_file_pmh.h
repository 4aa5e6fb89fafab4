#pragma once
// Application-rate maps: a fixed header of 31 lines, then polygons that each carry one rate.

#include <tl_gis/export.h>
#include <string>
#include <string_view>

#include <tl_gis/gis/gis_file.h>
#include <tl_gis/platform/text_file.h>

// The writer's result when the file was created but could not be written to the end.
constexpr int PMHFILE_ERR_WRITE = 1;

class TL_GIS_API TGisFilePmh : public TGisFile {
public:
    TGisFilePmh() = default;
    ~TGisFilePmh() override = default;
    TGisFilePmh(const TGisFilePmh&) = delete;
    TGisFilePmh& operator=(const TGisFilePmh&) = delete;

    // Writes the header values and the line features of the layer to the path with its
    // extension made "pmh": 0, 6002 when the file cannot be created, 1 when writing fails.
    int WriteFile(const char* path, TMapLayer* layer) override;
    // Reads the header into the layer's PMH members and adds one boundary per polygon block;
    // 6002 when the file cannot be opened or ends inside the header.
    int LoadFile(const char* path, TMapLayer* layer, GisProgressCallback progress) override;

    // True when the text after the path's last '.' is "PMH", ignoring case.
    static bool IsValidFile(const char* path);

private:
    // The load and the write themselves; LoadFile and WriteFile turn what they throw into 6003.
    int ReadRateMap(const char* path, TMapLayer* layer, GisProgressCallback progress);
    int WriteRateMap(const char* path, TMapLayer* layer);
    // Reads lines 1 to 31 into the layer, storing each as it comes; false when the file ends first.
    bool ReadHeader(TTextFile& file, TMapLayer* layer);
    // The next line without its end and trailing white space; false at the end of the file.
    bool ReadLine(TTextFile& file, std::string& text);
    // Update the layer's rate statistics and write the header; then every line feature.
    bool writePMHeader(TMapLayer* layer);
    bool writePMHPolygons(TMapLayer* layer);
    // Writes the text and a line end.
    void writeALine(std::string_view text);

    TTextFile m_File;       // the file being written; closed with the object
    long long m_lLine = 0;  // lines read by ReadLine, for the load report
};

// The line 31 text of a units code, or null for a code that has none (the file then has no
// units line).
TL_GIS_API const char* GetPmhUnitsText(int units);

// The line feature an element is written as, or null for elements a rate map cannot hold
// (markers, points, spray runs, patterns).
TL_GIS_API const TFeatureLine* AsPmhPolygon(const TMapElement* element);
