#pragma once
// The system's own text job files: markers, spray patterns, boundary and generic lines.

#include <tl_gis/export.h>
#include <string>
#include <string_view>

#include <tl_gis/gis/gis_file.h>

class TTextFile;
class TFeatureLine;
class TLoadReport;

class TL_GIS_API TGisFileJob : public TGisFile {
public:
    TGisFileJob() = default;
    ~TGisFileJob() override = default;
    TGisFileJob(const TGisFileJob&) = default;
    TGisFileJob& operator=(const TGisFileJob&) = default;

    // Writes the layer as a JOB file: 0, 1 when the file cannot be created, 6003 when memory
    // for a vertex copy fails, -6001 when the file name is not a usable job name.
    int WriteFile(const char* path, TMapLayer* layer) override;
    // Reads the whole file into the layer; 6002 when it cannot be opened or does not start
    // with ".JOB".
    int LoadFile(const char* path, TMapLayer* layer, GisProgressCallback progress) override;

    // True when the text after the path's last '.' is "JOB", ignoring case.
    static bool IsValidFile(const char* path);

    // Read one boundary (".POL") or polyline (".GPL") body from the line after its record line
    // and add it to the layer as a line with the given id; the name is not used. Return 2001
    // when no vertex buffer can be had, 6080 when the user stopped at the projected-coordinate
    // question, else the class of the last refused coordinate line (0 when none).
    static int ReadPolygon(TTextFile& file, TMapLayer* layer, const char* id, const char* name);
    static int ReadPolyline(TTextFile& file, TMapLayer* layer, const char* id, const char* name);
    // As above, recording refused coordinates and a line given up into report (may be null).
    // line, when given, is the number of the file's line read last; it comes back as the number
    // of the body's last line. Without it the count of the JOB reader's own lines goes on.
    static int ReadPolygon(TTextFile& file, TMapLayer* layer, const char* id, const char* name,
                           TLoadReport* report, long long* line = nullptr);
    static int ReadPolyline(TTextFile& file, TMapLayer* layer, const char* id, const char* name,
                            TLoadReport* report, long long* line = nullptr);

    std::string m_strLLB;
    std::string m_strJobName;
    int m_iVersion = 0;

protected:
    friend class TJobLineFitter;

    // The load and the write themselves; LoadFile and WriteFile turn what they throw into 6003.
    int ReadJob(const char* path, TMapLayer* layer, GisProgressCallback progress);
    int WriteJob(const char* path, TMapLayer* layer);

    // Reads one line (99 characters at most) and splits it into the four shared tokens.
    // 1 at end of file, 0 otherwise.
    static int ReadJobLine(TTextFile& file);
    // Read the body of the record whose line was read last.
    void ReadMarker(TTextFile& file, TMapLayer* layer);
    void ReadPattern(TTextFile& file, TMapLayer* layer);
    // Counts a line the reader ignores in the load report: a record of an unknown keyword (whose
    // lines follow it), or a line outside any record.
    void NoteIgnoredLine(std::string_view key, bool& inUnknownRecord);

    // Write one ".POL" record from vertices (taken over and released): a closed or open
    // boundary, or an open generic line.
    void WriteOnePolygon(int number, int count, const TFeatureLine* line, tagLOC* vertices, TTextFile& file);
    void WriteOnePolyline(int number, int count, const TFeatureLine* line, tagLOC* vertices, TTextFile& file);
};
