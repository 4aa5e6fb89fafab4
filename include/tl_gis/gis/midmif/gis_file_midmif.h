#pragma once
// MapInfo interchange pairs: reads the graphics of a .mif file into a layer, and writes a
// layer's markers, polygons and recorded spray as a .mif file with its .mid attribute rows.

#include <tl_gis/export.h>
#include <string>
#include <string_view>

#include <tl_gis/features/spray_record.h>
#include <tl_gis/gis/gis_file.h>
#include <tl_gis/platform/text_file.h>

// Field separator of the .mid rows; any value other than comma and tab gives a space (the
// type holds any int a host may store).
enum MIDDELIMITER : int {
    MID_DELIMITER_COMMA = 0,
    MID_DELIMITER_TAB = 1,
    MID_DELIMITER_SPACE = 2,
};

class TL_GIS_API TGisFileMidMif : public TGisFile {
public:
    TGisFileMidMif();
    ~TGisFileMidMif() override;
    TGisFileMidMif(const TGisFileMidMif&) = delete;
    TGisFileMidMif& operator=(const TGisFileMidMif&) = delete;

    // True when the text after the last '.' is "MIF" in any case.
    static bool IsValidFile(const char* path);

    // Reads the .mif file: polylines and the first ring of each region become inclusion
    // boundaries named by their number since the last DATA line, points become layer
    // centroids. Returns 0, 6001 when the file has no status, or 6002 when it cannot be opened;
    // a line that stops the reading does not change the result. In the complete profile
    // (TGisFile::s_bCompleteProfile) every object the map model can carry is read, each with
    // the chosen columns of its .mid row.
    int LoadFile(const char* path, TMapLayer* layer, GisProgressCallback progress) override;
    // Handles one line of a .mif file; 0 lets the reading go on, anything else ends it.
    int ProcessMifLine(const char* line, TMapLayer* layer);
    int ProcessMifLine(std::string_view line, TMapLayer* layer);
    // Hands the object collected so far, if any, to the layer.
    void SaveCurrentPolyline();

    // Writes path (.mif) and the .mid file beside it; both stay open until the object is
    // destroyed. Returns the result of the last element written (0, or 1 when a swath outline
    // could not be allocated), or 6002 when a file cannot be created or written.
    int WriteFile(const char* path, TMapLayer* layer) override;
    int WriteFileMarker(TMapElement* element);
    int WriteFilePolygon(TMapElement* element);
    // A run of at least two samples that sprays at its first sample: one swath region per
    // block (the whole run, or each pair of samples in single-block mode) with the row of the
    // block's first sample, then a row for every later sample once any sample recorded a
    // first-channel rate. 1 when the outline array cannot be had, otherwise 0.
    int WriteFileSpray(TMapElement* element);
    // One REGION object of count points (nothing without points); with close set the first
    // point is repeated at the end.
    int WritePolyline(const tagLOC* points, int count, unsigned long color, bool close);
    // Writes text and a line end to the .mid file.
    int WriteMidRecord(const char* text);
    // One PLINE object without its .mid row; consecutive points that share a latitude or a
    // longitude with their successor are dropped, the last point is always kept.
    void WritePoly(int* unused, const tagLOC* points, int reserved, int count);

    int GetSingleBlockMode() const { return m_iSingleBlockMode; }
    void SetSingleBlockMode(int mode) { m_iSingleBlockMode = mode; }
    int GetSprayOnlyMode() const { return m_iSprayOnlyMode; }
    void SetSprayOnlyMode(int mode) { m_iSprayOnlyMode = mode; }

    // Export settings, set by the host before a write.
    static MIDDELIMITER s_eMidDelimiter;
    // Number of spray channels (0 to 10) whose peak rates the swath rows look at; the row takes
    // the peak of the last of them.
    static int s_iMidSprayChans;
    // Off: rows exactly as the system has always written them (a polygon row holds its id
    // alone, a swath block without a row leaves the .mid short, sample rows have no object).
    // On: every row has one field per declared column, a field holding the separator is
    // quoted, every swath block has a row and every sample row a point at the sample's
    // position, so that other GIS programs read the pair object by object. The complete
    // profile (TGisFile::s_bCompleteProfile) writes such rows whatever this says.
    static bool s_bMidCompleteRows;
    // Settings a newly constructed object starts with, for hosts that write through the
    // dispatcher and cannot reach the object itself.
    static int s_iDefaultMetric;
    static int s_iDefaultSingleBlockMode;

    // 0: flow rates in US units; any other value: as recorded (metric).
    int m_bMetric = 0;

private:
    // The load and the write themselves; LoadFile and WriteFile turn what they throw into 6003.
    int ReadMif(const char* path, TMapLayer* layer, GisProgressCallback progress);
    int WriteMidMif(const char* path, TMapLayer* layer);
    // The object in progress of a .mif being read.
    int m_iSingleBlockMode = 0;
    int m_iSprayOnlyMode = 1;
    TTextFile m_MidFile;
    TTextFile m_MifFile;
    int m_iObjectNumber = 0;
    int m_iExpectedVertices = 0;
    int m_iVerticesHeld = 0;

    int ProcessPlainLine(std::string_view line);
    int StorePointLine(std::string_view line);
    void ProcessPointKeyword(std::string_view line, TMapLayer* layer);
    // Load report entries: an object of the DATA section that is not read, the rings of a region
    // after its first, and the line that ends the reading, told from the line's result (a count
    // or memory failure, a point out of range, or the answer about a projected point y, x),
    // which is returned.
    void NoteUnreadObject(std::string_view line);
    void NoteRegionRings(std::string_view line);
    int NoteStop(int result, double y = 0.0, double x = 0.0);
    long long m_lLine = 0;          // line of the .mif being handled, for the report
    bool m_bInData = false;         // the DATA line has been read
    bool m_bMultiplePline = false;  // the open PLINE is a PLINE MULTIPLE

    void WriteMif(std::string_view text) { m_MifFile.WriteString(text); }
    // A POINT object with its SYMBOL line.
    void WriteMifPoint(const tagLOC& loc, unsigned long color, int size);
    // One .mid row of a spray sample with the given flow rate (already converted).
    void WriteSprayRow(const tagSPRAYREC& sample, std::string_view date, double flowRate);
    // The separator of .mid fields chosen by s_eMidDelimiter.
    static char Delimiter();
    // Ends a .mid row of fieldsWritten fields, adding empty ones when complete rows are on.
    void FinishMidRow(std::string& row, int fieldsWritten) const;
    // A text field, quoted when complete rows are on and it holds a separator or a quote.
    void AppendMidText(std::string& row, std::string_view text) const;

    std::string m_strLine;  // scratch text reused for every object written
};
