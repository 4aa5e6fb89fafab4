// The drawing writer: release AC1009, every entity on layer "1", x = longitude and
// y = latitude in degrees with six decimals.

#include <ctime>
#include <iomanip>
#include <locale>
#include <sstream>
#include <string>

#include "gis/dxf/dxf_group_writer.h"
#include "gis/dxf/gis_file_dxf.h"
#include "platform/system_services.h"
#include "platform/text_file.h"

namespace {

constexpr int kColorExclusion = 1;
constexpr int kColorBoundary = 3;
constexpr int kColorTrack = 6;

// "05 March 2025 14:07:09": the local time with the month named in English whatever the
// host's locale, so that drawings do not depend on where they were made.
std::string FormatTimeStamp() {
    const std::tm tm = GetLocalTimeNow().ToTm();
    std::ostringstream text;
    text.imbue(std::locale::classic());
    text << std::put_time(&tm, "%d %B %Y %H:%M:%S");
    return text ? text.str() : std::string();
}

void WriteHeaderSection(TDxfGroupWriter& out, const TLocRect& extents) {
    out.WriteGroup(999, "Created by TOLVIX mapping software " + FormatTimeStamp());
    out.WriteGroup(0, "SECTION");
    out.WriteGroup(2, "HEADER");
    out.WriteGroup(9, "$ACADVER");
    out.WriteGroup(1, "AC1009");
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

void WriteTablesSection(TDxfGroupWriter& out) {
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
    out.WriteGroup(70, "2");
    for (const char* name : {"1", "2"}) {
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
    if (layer == nullptr) return 1;
    TTextFile file;
    if (!file.Open(path, TTextFile::modeCreate)) return 1;
    int result = 0;
    {
        TDxfGroupWriter out(file);
        WriteHeaderSection(out, layer->m_rcExtents);
        WriteTablesSection(out);
        out.WriteGroup(0, "SECTION");
        out.WriteGroup(2, "ENTITIES");
        for (const TMapElement* element : layer->m_Elements) {
            switch (element->GetKind()) {
                case ELEMENT_LINE_BOUNDARY:
                case ELEMENT_LINE_AREA:
                    result = WriteFilePolygon(out, *element);
                    break;
                case ELEMENT_MARKER:
                    result = WriteFileMarker(out, *element);
                    break;
                default:
                    break;
            }
        }
        // The track of all recorded spray, drawn even when there was none.
        WritePoly(out, m_SprayOutline.data(), static_cast<int>(m_SprayOutline.size()), kColorTrack, false);
        out.WriteGroup(0, "ENDSEC");
        out.WriteGroup(0, "EOF");
        if (!out.Flush()) result = 1;
    }
    if (!file.Close()) result = 1;
    return result;
}

int TGisFileDxf::WriteFilePolygon(TDxfGroupWriter& out, const TMapElement& element) {
    const auto& line = static_cast<const TFeatureLine&>(element);
    const int color = element.GetLowBits() == BOUNDARY_EXC ? kColorExclusion : kColorBoundary;
    return WritePolyline(out, line.m_pPoints, line.m_iNumPoints, color, true);
}

// Markers have no place in the drawing.
int TGisFileDxf::WriteFileMarker(TDxfGroupWriter&, const TMapElement&) {
    return 0;
}

int TGisFileDxf::WritePoly(TDxfGroupWriter& out, const tagLOC* points, int count, int color, bool closed) {
    out.WriteGroup(0, "POLYLINE");
    out.WriteGroup(8, "1");
    out.WriteIntGroup(62, color);
    out.WriteGroup(6, "CONTINUOUS");
    out.WriteGroup(66, "1");
    out.WriteGroup(70, closed ? "1" : "0");
    for (int i = 0; i < count; ++i) {
        out.WriteGroup(0, "VERTEX");
        out.WriteGroup(8, "1");
        out.WriteIntGroup(62, color);
        out.WriteGroup(6, "CONTINUOUS");
        out.WriteGroup(10, points[i].dLon);
        out.WriteGroup(20, points[i].dLat);
    }
    out.WriteGroup(0, "SEQEND");
    return 0;
}

int TGisFileDxf::WritePolyline(TDxfGroupWriter& out, const tagLOC* points, int count, int color,
                               bool closed) {
    return WritePoly(out, points, count, color, closed);
}
