#pragma once
// ASCII drawings: the reader takes polylines, lines and attributed inserts whose coordinates
// are already longitude and latitude; the writer puts out release AC1009 polygons, spray
// swaths and the recorded track.

#include <tl_gis/export.h>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <tl_gis/gis/gis_file.h>

class TDxfGroupWriter;
class TDxfLineReader;

class TL_GIS_API TGisFileDxf : public TGisFile {
public:
    TGisFileDxf();
    ~TGisFileDxf() override;
    TGisFileDxf(const TGisFileDxf& other);
    TGisFileDxf& operator=(const TGisFileDxf& other);

    int WriteFile(const char* path, TMapLayer* layer) override;
    int LoadFile(const char* path, TMapLayer* layer, GisProgressCallback progress) override;

    // True when the text after the last '.' is "DXF" in any case.
    static bool IsValidFile(const char* path);

    // Spray writing: non-zero gives one swath polygon per pair of samples instead of one per
    // element.
    int GetSingleBlockMode() const { return m_iSingleBlockMode; }
    void SetSingleBlockMode(int mode) { m_iSingleBlockMode = mode; }
    // Spray writing: non-zero leaves out elements recorded while not spraying; 0 writes their
    // track as an open polyline.
    int GetSprayOnlyMode() const { return m_iSprayOnlyMode; }
    void SetSprayOnlyMode(int mode) { m_iSprayOnlyMode = mode; }

    // Modes a newly constructed object starts with, for hosts that write through the dispatcher
    // and cannot reach the object itself.
    static int s_iDefaultSingleBlockMode;  // 0
    static int s_iDefaultSprayOnlyMode;    // 1

private:
    // The load and the write themselves; LoadFile and WriteFile turn what they throw into 6003.
    int ReadDrawing(const char* path, TMapLayer* layer, GisProgressCallback progress);
    int WriteDrawing(const char* path, TMapLayer* layer);
    // Reading: one step per line; each returns a result code.
    int ProcessDxfLine(std::string_view line);
    int ProcessDxfGroup(int code, std::string_view value);
    int ProcessNewEntity();
    int ProcessDxfEntity();
    int ProcessSeqEnd();
    int ProcessInsert();
    int ProcessLightweightVertex();
    int AnalyzeLayer(std::string_view layer);
    int AskAboutCoordinate(double lat, double lon);
    bool PrepareVertexArray();
    void ClearFields();
    // lat := y, lon := x; true when that is a usable geographic position.
    bool ConvertToLL(double x, double y, double* lat, double* lon) const;
    static void AddImportedMarker(TMapLayer* layer, int symbol, const TLoc& at, const char* text);
    // The complete profile's reading: polylines with their bulges and header flags, CIRCLE and
    // ARC as lines, POINT as points and TEXT and MTEXT as named markers.
    void StartCompleteProfile(std::int64_t fileSize);
    void StartCompleteEntity();
    // Handles the entity that has ended, or does its part before the system's rules and returns
    // false; result is the entity's result code.
    bool ProcessCompleteEntity(int& result);
    void TakeCompleteGroup3(std::string_view value);
    int ProcessCompleteVertex();
    int FlushLightweightVertex();
    // Appends a polyline vertex after the arc that the previous vertex's bulge draws to it.
    bool AddPolylineVertex(double x, double y, double lat, double lon, double bulge);
    // Draws the closing arc of a closed polyline; gives its bound type and whether it is closed.
    bool FinishCompletePolyline(int& boundType);
    int ProcessCompletePoint();
    int ProcessCompleteText(bool mtext);
    int ProcessCompleteCurve(bool circle);
    void FlushPendingPoint();
    // Counts count curve vertices against the load's limit; false, and a report entry, past it.
    bool TakeCurveVertices(int count);
    // The position of a POINT, TEXT, CIRCLE or ARC as latitude and longitude; false, with the
    // result code of the question and a report entry, when its layer is not taken or the position
    // is no geographic one.
    bool TakeEntityPosition(double x, double y, tagLOC& at, int& result);
    // Load report entries: a refused coordinate pair (the vertex, or the whole entity, dropped),
    // an entity whose layer or paper space leaves it out, an entity kind that is not read, and an
    // INSERT that ends without attributes.
    void NoteRefused(double lat, double lon, bool wholeEntity, long long line);
    void NoteNotTaken(long long line);
    void NoteIgnoredEntity(const std::string& type);
    void NoteTaglessInsert();
    // The number of the line being handled (0 outside a load).
    long long CurrentLine() const;

    // Writing: one element each; each returns a result code.
    int WriteFilePolygon(TDxfGroupWriter& out, const TMapElement& element);
    int WriteFileMarker(TDxfGroupWriter& out, const TMapElement& element);
    int WriteFileSpray(TDxfGroupWriter& out, const TMapElement& element);
    // One POLYLINE entity with its vertices (x = longitude, y = latitude), on layer "1" unless the
    // complete profile names another.
    int WritePoly(TDxfGroupWriter& out, const tagLOC* points, int count, int color, bool closed,
                  std::string_view layer = "1");
    int WritePolyline(TDxfGroupWriter& out, const tagLOC* points, int count, int color, bool closed,
                      std::string_view layer = "1");
    // The complete profile's writing: every line on the layer of its kind and bound type, open
    // lines open; markers and points as POINT, a marker's name as a TEXT at its position.
    int WriteCompleteLine(TDxfGroupWriter& out, const TMapElement& element);
    int WriteCompletePoint(TDxfGroupWriter& out, const TMapElement& element);

    int m_iSingleBlockMode;
    int m_iSprayOnlyMode;
    int m_iLineState = 0;  // 0: the next line is a group code; 1: it is that group's value
    int m_iGroupCode = 0;
    // For the load report: the lines of the load, the type line of the entity being read and of
    // the compound entity that is open, and whether an INSERT waits for attributes.
    const TDxfLineReader* m_pLines = nullptr;
    long long m_lEntityLine = 0;
    long long m_lOpenLine = 0;
    bool m_bInsertPending = false;
    // Positions of every recorded spray sample written so far, drawn as one track at the end.
    std::vector<tagLOC> m_SprayOutline;
};
