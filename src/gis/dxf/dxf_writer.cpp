// The drawing writer: release AC1009, every entity on layer "1", x = longitude and
// y = latitude in degrees with six decimals. The complete profile writes every line, marker
// and point, each on a layer named after what it holds.

#include <memory>
#include <new>
#include <string>
#include <vector>

#include <tl_gis/features/feature_spray.h>
#include <tl_gis/gis/dxf/gis_file_dxf.h>
#include <tl_gis/platform/numbers.h>
#include <tl_gis/platform/text_file.h>
#include "gis/dxf/dxf_group_writer.h"
#include "gis/dxf/dxf_tables.h"
#include "gis/dxf/dxf_text.h"
#include "gis/internal_results.h"
#include "platform/no_throw.h"
#include "platform/system_services.h"

namespace {

constexpr int kColorExclusion = 1;
constexpr int kColorBoundary = 3;
constexpr int kColorTrack = 6;
constexpr int kColorSwath = 1;
constexpr int kColorNonSprayTrack = 2;
constexpr int kColorPoint = 7;
// Height of the texts that name markers: some 10 m, in the drawing's degrees.
constexpr double kTextHeight = 0.0001;

// "05 March 2025 14:07:09": the local time with the month named in English whatever the
// host's locale, so that drawings do not depend on where they were made. A time that is not a
// real calendar time (the clock could not be converted) gives an empty text.
std::string FormatTimeStamp(const TLocalTime& t) {
    static constexpr const char* kMonths[] = {"January",   "February", "March",    "April",
                                              "May",       "June",     "July",     "August",
                                              "September", "October",  "November", "December"};
    if (t.iMonth < 1 || t.iMonth > 12 || t.iDay < 1 || t.iDay > 31 || t.iYear < 0 || t.iYear > 9999 ||
        t.iHour < 0 || t.iHour > 23 || t.iMinute < 0 || t.iMinute > 59 || t.iSecond < 0 || t.iSecond > 60)
        return std::string();
    std::string text;
    const auto twoDigits = [&text](int v) {
        text += static_cast<char>('0' + v / 10);
        text += static_cast<char>('0' + v % 10);
    };
    twoDigits(t.iDay);
    text += ' ';
    text += kMonths[t.iMonth - 1];
    text += ' ';
    AppendInt(text, t.iYear);
    text += ' ';
    twoDigits(t.iHour);
    text += ':';
    twoDigits(t.iMinute);
    text += ':';
    twoDigits(t.iSecond);
    return text;
}

// The complete profile names the code page of its texts.
void WriteHeaderSection(TDxfGroupWriter& out, const TLocRect& extents, bool complete) {
    out.WriteGroup(999, "Created by TOLVIX mapping software " + FormatTimeStamp(GetLocalTimeNow()));
    out.WriteGroup(0, "SECTION");
    out.WriteGroup(2, "HEADER");
    out.WriteGroup(9, "$ACADVER");
    out.WriteGroup(1, "AC1009");
    if (complete) {
        out.WriteGroup(9, "$DWGCODEPAGE");
        out.WriteGroup(3, "ANSI_1252");
    }
    out.WriteGroup(9, "$INSBASE");
    out.WriteGroup(10, "0.0");
    out.WriteGroup(20, "0.0");
    out.WriteGroup(30, "0.0");
    // A layer with nothing in it has no extents; zeros stand in for them.
    const TLocRect box = extents.IsEmpty() ? TLocRect(0.0, 0.0, 0.0, 0.0) : extents;
    const struct {
        const char* name;
        double x, y;
    } corners[] = {{"$EXTMIN", box.dWest, box.dSouth},
                   {"$EXTMAX", box.dEast, box.dNorth},
                   {"$LIMMIN", box.dWest, box.dSouth},
                   {"$LIMMAX", box.dEast, box.dNorth}};
    for (const auto& corner : corners) {
        out.WriteGroup(9, corner.name);
        out.WriteGroup(10, corner.x);
        out.WriteGroup(20, corner.y);
    }
    out.WriteGroup(0, "ENDSEC");
}

void WriteTablesSection(TDxfGroupWriter& out, const std::vector<std::string>& layers) {
    out.WriteGroup(0, "SECTION");
    out.WriteGroup(2, "TABLES");
    out.WriteGroup(0, "TABLE");
    out.WriteGroup(2, "LTYPE");
    out.WriteGroup(70, "1");
    out.WriteGroup(0, "LTYPE");
    out.WriteGroup(2, "CONTINUOUS");
    out.WriteGroup(70, "64");
    out.WriteGroup(3, "Solid line");
    out.WriteGroup(72, "65");
    out.WriteGroup(73, "0");
    out.WriteGroup(40, "0.00000");
    out.WriteGroup(0, "ENDTAB");
    out.WriteGroup(0, "TABLE");
    out.WriteGroup(2, "LAYER");
    out.WriteIntGroup(70, static_cast<int>(layers.size()));
    for (const std::string& name : layers) {
        out.WriteGroup(0, "LAYER");
        out.WriteGroup(2, name);
        out.WriteGroup(70, "0");
        out.WriteGroup(62, "7");
        out.WriteGroup(6, "CONTINUOUS");
    }
    out.WriteGroup(0, "ENDTAB");
    out.WriteGroup(0, "TABLE");
    out.WriteGroup(2, "STYLE");
    out.WriteGroup(70, "0");
    out.WriteGroup(0, "ENDTAB");
    out.WriteGroup(0, "ENDSEC");
    out.WriteGroup(0, "SECTION");
    out.WriteGroup(2, "BLOCKS");
    out.WriteGroup(0, "ENDSEC");
}

}  // namespace

int TGisFileDxf::WriteFile(const char* path, TMapLayer* layer) {
    return RunWithoutThrowing([&] { return WriteDrawing(path, layer); });
}

int TGisFileDxf::WriteDrawing(const char* path, TMapLayer* layer) {
    if (layer == nullptr) return RESULT_WRITE_FAILED;
    TTextFile file;
    if (!file.Open(path, TTextFile::modeCreate)) return RESULT_WRITE_FAILED;
    int result = 0;
    const bool complete = s_bCompleteProfile;
    {
        TDxfGroupWriter out(file);
        WriteHeaderSection(out, layer->m_rcExtents, complete);
        WriteTablesSection(out,
                           complete ? DxfCompleteLayerNames(*layer) : std::vector<std::string>{"1", "2"});
        out.WriteGroup(0, "SECTION");
        out.WriteGroup(2, "ENTITIES");
        for (const TMapElement* element : layer->m_Elements) {
            switch (element->GetKind()) {
                case ELEMENT_LINE_BOUNDARY:
                case ELEMENT_LINE_AREA:
                    result = complete ? WriteCompleteLine(out, *element) : WriteFilePolygon(out, *element);
                    break;
                case ELEMENT_LINE:
                case ELEMENT_LINE_ROAD:
                case ELEMENT_LINE_WATER:
                case ELEMENT_LINE_MISC:
                case ELEMENT_LINE_GENERIC:
                    if (complete) result = WriteCompleteLine(out, *element);
                    break;
                case ELEMENT_MARKER:
                    result = WriteFileMarker(out, *element);
                    break;
                case ELEMENT_POINT:
                    if (complete) result = WriteCompletePoint(out, *element);
                    break;
                case ELEMENT_SPRAY:
                case ELEMENT_SPRAY_ALT:
                    result = WriteFileSpray(out, *element);
                    break;
                default:
                    break;
            }
        }
        // The track of all recorded spray, drawn even when there was none; the complete profile
        // leaves out an empty one, which GDAL would not read as a feature.
        if (!complete)
            WritePoly(out, m_SprayOutline.data(), static_cast<int>(m_SprayOutline.size()), kColorTrack,
                      false);
        else if (!m_SprayOutline.empty())
            WritePoly(out, m_SprayOutline.data(), static_cast<int>(m_SprayOutline.size()), kColorTrack, false,
                      DXF_LAYER_SPRAY_TRACK);
        out.WriteGroup(0, "ENDSEC");
        out.WriteGroup(0, "EOF");
        if (!out.Flush()) result = RESULT_WRITE_FAILED;
    }
    if (!file.Close()) result = RESULT_WRITE_FAILED;
    return result;
}

int TGisFileDxf::WriteFilePolygon(TDxfGroupWriter& out, const TMapElement& element) {
    const auto& line = static_cast<const TFeatureLine&>(element);
    const int color = element.GetLowBits() == BOUNDARY_EXC ? kColorExclusion : kColorBoundary;
    return WritePolyline(out, line.m_pPoints, line.m_iNumPoints, color, true);
}

// Markers have no place in the system's drawings; the complete profile writes them as points.
int TGisFileDxf::WriteFileMarker(TDxfGroupWriter& out, const TMapElement& element) {
    return s_bCompleteProfile ? WriteCompletePoint(out, element) : 0;
}

// The samples join the track outline; the swaths (or, while not spraying, the track) are drawn
// per block of samples: the whole run, or each pair of neighbours in single-block mode. The
// first sample's spray flag decides for the whole run.
int TGisFileDxf::WriteFileSpray(TDxfGroupWriter& out, const TMapElement& element) {
    const auto* spray = dynamic_cast<const TFeatureSpray*>(&element);
    if (spray == nullptr || spray->m_pRecs == nullptr || spray->m_iNumRecs <= 0) return 0;
    const std::size_t n = static_cast<std::size_t>(spray->m_iNumRecs);
    const tagSPRAYREC* recs = spray->m_pRecs;
    m_SprayOutline.reserve(m_SprayOutline.size() + n);
    for (std::size_t i = 0; i < n; ++i) m_SprayOutline.push_back(recs[i].locPos);
    if (n < 2) return 0;

    const bool spraying = recs[0].bySpray != 0;
    if (!spraying && m_iSprayOnlyMode != 0) return 0;
    // One point array serves every block: the largest block needs 2m + 2 entries when spraying.
    const std::size_t blockSamples = m_iSingleBlockMode != 0 ? 2 : n;
    const std::size_t capacity = spraying ? 2 * blockSamples + 2 : blockSamples + 1;
    const std::unique_ptr<tagLOC[]> points(new (std::nothrow) tagLOC[capacity]);
    if (!points) return RESULT_WRITE_FAILED;

    const char* const swathLayer = s_bCompleteProfile ? DXF_LAYER_SPRAY_SWATHS : "1";
    const char* const trackLayer = s_bCompleteProfile ? DXF_LAYER_SPRAY_TRACK : "1";
    int result = 0;
    for (std::size_t s = 0; s + 1 < n; s += blockSamples - 1) {
        const std::size_t e = s + blockSamples - 1;
        int count = 0;
        if (spraying) {
            for (std::size_t i = s; i <= e; ++i) points[count++] = recs[i].locSwathA;
            for (std::size_t i = e + 1; i-- > s;) points[count++] = recs[i].locSwathB;
            result = WritePolyline(out, points.get(), count, kColorSwath, true, swathLayer);
        } else {
            for (std::size_t i = s; i <= e; ++i) points[count++] = recs[i].locPos;
            result = WritePolyline(out, points.get(), count, kColorNonSprayTrack, false, trackLayer);
        }
    }
    return result;
}

int TGisFileDxf::WritePoly(TDxfGroupWriter& out, const tagLOC* points, int count, int color, bool closed,
                           std::string_view layer) {
    out.WriteGroup(0, "POLYLINE");
    out.WriteGroup(8, layer);
    out.WriteIntGroup(62, color);
    out.WriteGroup(6, "CONTINUOUS");
    out.WriteGroup(66, "1");
    out.WriteGroup(70, closed ? "1" : "0");
    for (int i = 0; i < count; ++i) {
        out.WriteGroup(0, "VERTEX");
        out.WriteGroup(8, layer);
        out.WriteIntGroup(62, color);
        out.WriteGroup(6, "CONTINUOUS");
        out.WriteGroup(10, points[i].dLon);
        out.WriteGroup(20, points[i].dLat);
    }
    out.WriteGroup(0, "SEQEND");
    return 0;
}

int TGisFileDxf::WritePolyline(TDxfGroupWriter& out, const tagLOC* points, int count, int color, bool closed,
                               std::string_view layer) {
    return WritePoly(out, points, count, color, closed, layer);
}

// A ring whose last vertex repeats its first is written closed without that vertex, as drawing
// programs expect; any other line, and every open one (bound 18), open with all its vertices. A
// line without vertices has nothing to draw.
int TGisFileDxf::WriteCompleteLine(TDxfGroupWriter& out, const TMapElement& element) {
    const auto* line = dynamic_cast<const TFeatureLine*>(&element);
    if (line == nullptr || line->m_pPoints == nullptr || line->m_iNumPoints <= 0) return 0;
    const int boundType = element.GetLowBits();
    int count = line->m_iNumPoints;
    const tagLOC* points = line->m_pPoints;
    const bool closed = boundType != BOUNDARY_OPEN && count >= 3 &&
                        points[0].dLat == points[count - 1].dLat && points[0].dLon == points[count - 1].dLon;
    if (closed) --count;
    const int color = boundType == BOUNDARY_EXC ? kColorExclusion : kColorBoundary;
    return WritePolyline(out, points, count, color, closed, DxfLineLayerName(element.GetKind(), boundType));
}

// A point, or a marker with its name as a TEXT at the same position, which the reader takes
// back as one marker.
int TGisFileDxf::WriteCompletePoint(TDxfGroupWriter& out, const TMapElement& element) {
    const TLoc* at = nullptr;
    const std::string* name = nullptr;
    if (const auto* marker = dynamic_cast<const TFeatureMarker*>(&element)) {
        at = &marker->m_Loc;
        name = &marker->m_strName;
    } else if (const auto* point = dynamic_cast<const TFeaturePoint*>(&element)) {
        at = &point->m_Loc;
    } else {
        return 0;
    }
    const std::string layer = name != nullptr ? DxfMarkerLayerName(element.GetLowBits()) : DXF_LAYER_POINTS;
    out.WriteGroup(0, "POINT");
    out.WriteGroup(8, layer);
    out.WriteIntGroup(62, kColorPoint);
    out.WriteGroup(10, at->dLon);
    out.WriteGroup(20, at->dLat);
    if (name == nullptr || name->empty()) return 0;
    out.WriteGroup(0, "TEXT");
    out.WriteGroup(8, layer);
    out.WriteIntGroup(62, kColorPoint);
    out.WriteGroup(10, at->dLon);
    out.WriteGroup(20, at->dLat);
    out.WriteGroup(40, kTextHeight);
    out.WriteTextGroup(1, DxfNameToText(*name, TDxfGroupWriter::kMaxText));
    return 0;
}
