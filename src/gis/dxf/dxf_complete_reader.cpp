// The complete profile's reading of a drawing, beside the system's rules: bulges drawn as arcs,
// the closed flag of a polyline's header, CIRCLE and ARC as lines, POINT as points, and TEXT
// and MTEXT as markers named by their text. A TEXT at the position of the POINT just before it
// names that point, which then becomes a marker.

#include <new>
#include <string>

#include <tl_gis/gis/dxf/gis_file_dxf.h>
#include <tl_gis/gis/gis_file.h>
#include <tl_gis/gis/line_assembly.h>
#include "gis/dxf/dxf_curves.h"
#include "gis/dxf/dxf_line_reader.h"
#include "gis/dxf/dxf_parse_state.h"
#include "gis/dxf/dxf_text.h"
#include "gis/internal_results.h"
#include "gis/load_recording.h"

namespace {

// Curve vertices one load may add: a generous allowance for any real drawing, and one more per
// byte of the file, so that a few bytes of bulge cannot claim gigabytes.
constexpr long long kCurveVertexAllowance = 1'000'000;

// Polyline header flags: closed, and the two kinds of mesh, whose vertices make no line.
constexpr int kPolylineClosed = 1;
constexpr int kPolylineMeshes = 16 | 64;
// Vertex flag of a spline's frame control point, which lies off the curve.
constexpr int kVertexSplineFrame = 16;
// Horizontal alignments of a TEXT that run it between its two points.
constexpr int kAlignBetween = 3;
constexpr int kFitBetween = 5;

bool SamePosition(const tagLOC& a, const tagLOC& b) {
    return a.dLat == b.dLat && a.dLon == b.dLon;
}

}  // namespace

void TGisFileDxf::StartCompleteProfile(std::int64_t fileSize) {
    TDxfParseState& s = s_DxfState;
    s.bComplete = TGisFile::s_bCompleteProfile;
    s.strAcadVersion.clear();
    s.strCodePage.clear();
    s.bPointPending = false;
    s.bLwVertexPending = false;
    s.bMesh = false;
    s.dPendingBulge = 0.0;
    s.lCurveBudget = kCurveVertexAllowance + (fileSize > 0 ? fileSize : 0);
    StartCompleteEntity();
}

void TGisFileDxf::StartCompleteEntity() {
    TDxfParseState& s = s_DxfState;
    s.iEntityFlags = 0;
    s.d40 = s.d50 = s.d51 = 0.0;
    s.iAlign72 = s.iAlign73 = 0;
    s.strMText.clear();
    s.strHeaderVar.clear();
    s.dBulge = 0.0;
}

void TGisFileDxf::TakeCompleteGroup3(std::string_view value) {
    TDxfParseState& s = s_DxfState;
    if (s.strHeaderVar == "$DWGCODEPAGE") {
        s.strCodePage.assign(value);
    } else if (s.strEntity == "MTEXT" && s.strMText.size() < TDxfLineReader::kMaxLine) {
        // The parts of a long MTEXT before its last (group 1), kept to the length of one line.
        s.strMText.append(value.substr(0, TDxfLineReader::kMaxLine - s.strMText.size()));
    }
}

bool TGisFileDxf::ProcessCompleteEntity(int& result) {
    TDxfParseState& s = s_DxfState;
    const std::string& type = s.strEntity;
    result = GISFILE_OK;
    // Most entities of a large drawing are vertices: the first letter sorts them out quickly.
    const char first = type.empty() ? '\0' : type[0];
    if ((first == 'T' && type == "TEXT") || (first == 'M' && type == "MTEXT")) {
        result = ProcessCompleteText(first == 'M');
        return true;
    }
    FlushPendingPoint();
    switch (first) {
        case 'V':
            if (!type.starts_with("VERTEX")) return false;
            result = ProcessCompleteVertex();
            return true;
        case 'P':
            if (type == "POINT") {
                result = ProcessCompletePoint();
                return true;
            }
            if (type.starts_with("POLYLINE")) {
                // The system's rules open the polyline; the header's own flags are kept for its end.
                s.bHeaderClosed = (s.iEntityFlags & kPolylineClosed) != 0;
                s.bMesh = (s.iEntityFlags & kPolylineMeshes) != 0;
                s.dPendingBulge = 0.0;
            }
            return false;
        case 'C':
        case 'A':
            if (type != "CIRCLE" && type != "ARC") return false;
            result = ProcessCompleteCurve(first == 'C');
            return true;
        case 'L':
            if (!type.starts_with("LWPOLYLINE") || !s.bInLwPolyline) return false;
            // A lightweight polyline ends with its entity, not at its vertex count.
            if (s.bLwVertexPending) result = FlushLightweightVertex();
            if (result == GISFILE_ERR_CANCELLED) return true;
            s.bHeaderClosed = (s.iEntityFlags & kPolylineClosed) != 0;
            s.bMesh = false;
            result = ProcessSeqEnd();
            return true;
        default:
            return false;
    }
}

int TGisFileDxf::ProcessCompleteVertex() {
    TDxfParseState& s = s_DxfState;
    if (!s.bImport || s.bMesh || (s.iEntityFlags & kVertexSplineFrame) != 0) return GISFILE_OK;
    double lat = 0.0, lon = 0.0;
    // As in the system's rules, a vertex that is no geographic position is dropped without a
    // question; the arc to it goes with it.
    if (!ConvertToLL(s.dX0, s.dY0, &lat, &lon)) {
        NoteRefused(lat, lon, false, m_lEntityLine);
        s.dPendingBulge = 0.0;
        return GISFILE_OK;
    }
    return AddPolylineVertex(s.dX0, s.dY0, lat, lon, s.dBulge) ? GISFILE_OK : GISFILE_ERR_DATA;
}

int TGisFileDxf::FlushLightweightVertex() {
    TDxfParseState& s = s_DxfState;
    s.bLwVertexPending = false;
    const double bulge = s.dBulge;
    s.dBulge = 0.0;
    double lat = 0.0, lon = 0.0;
    if (ConvertToLL(s.dX0, s.dY0, &lat, &lon)) {
        AddPolylineVertex(s.dX0, s.dY0, lat, lon, bulge);
        return GISFILE_OK;
    }
    const int result = AskAboutCoordinate(lat, lon);
    if (result == GISFILE_ERR_CANCELLED) return result;
    NoteRefused(lat, lon, false, CurrentLine());
    s.dPendingBulge = 0.0;
    return result;
}

bool TGisFileDxf::AddPolylineVertex(double x, double y, double lat, double lon, double bulge) {
    TDxfParseState& s = s_DxfState;
    if (m_iNumLocs > 0 && s.dPendingBulge != 0.0) {
        TDxfArc arc;
        if (DxfBulgeArc(s.PendingFrom.dLon, s.PendingFrom.dLat, x, y, s.dPendingBulge, arc) &&
            TakeCurveVertices(arc.iSegments - 1)) {
            for (int i = 1; i < arc.iSegments; ++i) {
                const tagLOC v = arc.Vertex(i);
                double vLat = 0.0, vLon = 0.0;
                if (!ConvertToLL(v.dLon, v.dLat, &vLat, &vLon))
                    NoteRefused(vLat, vLon, false, m_lEntityLine);
                else if (!AddVertex(vLat, vLon))
                    return false;
            }
        }
    }
    s.dPendingBulge = bulge;
    if (!AddVertex(lat, lon)) return false;
    s.PendingFrom = tagLOC{y, x};
    if (m_iNumLocs == 1) s.FirstDrawn = s.PendingFrom;
    return true;
}

bool TGisFileDxf::FinishCompletePolyline(int& boundType) {
    TDxfParseState& s = s_DxfState;
    if (s.bMesh && m_pLoadReport != nullptr) m_pLoadReport->Skip(LOAD_DXF_POLYLINE_MESH, m_lOpenLine);
    s.bMesh = false;
    const bool closed = s.bHeaderClosed && m_iNumLocs >= 2;
    // The last vertex's bulge draws the closing segment of a closed polyline.
    if (closed && s.dPendingBulge != 0.0) {
        const tagLOC first = m_pLocs[0];
        if (AddPolylineVertex(s.FirstDrawn.dLon, s.FirstDrawn.dLat, first.dLat, first.dLon, 0.0))
            --m_iNumLocs;  // closed below
    }
    s.dPendingBulge = 0.0;
    boundType = s.iLayerBound != 0 ? s.iLayerBound : closed ? BOUNDARY_INC : BOUNDARY_OPEN;
    // A closed line ends on its first vertex, which a drawing may or may not repeat.
    return closed && !SamePosition(m_pLocs[0], m_pLocs[m_iNumLocs - 1]);
}

bool TGisFileDxf::TakeEntityPosition(double x, double y, tagLOC& at, int& result) {
    result = GISFILE_OK;
    if (!s_DxfState.bImport) {
        NoteNotTaken(m_lEntityLine);
        return false;
    }
    if (ConvertToLL(x, y, &at.dLat, &at.dLon)) return true;
    result = AskAboutCoordinate(at.dLat, at.dLon);
    if (result != GISFILE_ERR_CANCELLED) NoteRefused(at.dLat, at.dLon, true, m_lEntityLine);
    return false;
}

int TGisFileDxf::ProcessCompletePoint() {
    TDxfParseState& s = s_DxfState;
    int result = GISFILE_OK;
    if (!TakeEntityPosition(s.dX0, s.dY0, s.PendingPoint, result)) return result;
    s.bPointPending = true;
    s.iPendingSymbol = s.iLayerSymbol;
    return GISFILE_OK;
}

// A POINT that no TEXT named: a marker on a marker layer, a point elsewhere.
void TGisFileDxf::FlushPendingPoint() {
    TDxfParseState& s = s_DxfState;
    if (!s.bPointPending) return;
    s.bPointPending = false;
    if (s.iPendingSymbol >= 0) {
        const std::size_t before = m_pLayer->m_Elements.size();
        AddImportedMarker(m_pLayer, s.iPendingSymbol, s.PendingPoint, "");
        if (m_pLayer->m_Elements.size() > before) NoteAdded(m_pLoadReport, m_pLayer->m_Elements.back());
        return;
    }
    auto* point = new (std::nothrow) TFeaturePoint;
    if (point == nullptr) return;
    point->m_Loc = s.PendingPoint;
    point->CalculateGeoExtents();
    const std::size_t before = m_pLayer->m_Elements.size();
    m_pLayer->AddElement(point, ADD_ELEMENT_OWNED);
    if (m_pLayer->m_Elements.size() > before) NoteAdded(m_pLoadReport, m_pLayer->m_Elements.back());
}

int TGisFileDxf::ProcessCompleteText(bool mtext) {
    TDxfParseState& s = s_DxfState;
    // A TEXT aligned other than left on its baseline (or between its two points, 3 and 5) stands
    // at its second alignment point.
    const bool aligned =
        !mtext &&
        ((s.iAlign72 != 0 && s.iAlign72 != kAlignBetween && s.iAlign72 != kFitBetween) || s.iAlign73 != 0);
    tagLOC at;
    int result = GISFILE_OK;
    if (!TakeEntityPosition(aligned ? s.dX1 : s.dX0, aligned ? s.dY1 : s.dY0, at, result)) {
        FlushPendingPoint();
        return result;
    }
    const TTextEncoding encoding = DxfTextEncoding(s.strAcadVersion, s.strCodePage);
    const std::string name = DxfTextToName(mtext ? s.strMText + s.strText : s.strText, encoding, mtext);
    int symbol = s.iLayerSymbol >= 0 ? s.iLayerSymbol : DXF_TEXT_MARKER_SYMBOL;
    if (s.bPointPending && SamePosition(s.PendingPoint, at)) {
        s.bPointPending = false;
        if (s.iPendingSymbol >= 0) symbol = s.iPendingSymbol;
    } else {
        FlushPendingPoint();
    }
    const std::size_t before = m_pLayer->m_Elements.size();
    AddImportedMarker(m_pLayer, symbol, at, name.c_str());
    if (m_pLayer->m_Elements.size() > before) NoteAdded(m_pLoadReport, m_pLayer->m_Elements.back());
    return GISFILE_OK;
}

int TGisFileDxf::ProcessCompleteCurve(bool circle) {
    TDxfParseState& s = s_DxfState;
    tagLOC centre;
    int result = GISFILE_OK;
    if (!TakeEntityPosition(s.dX0, s.dY0, centre, result)) return result;
    TDxfArc arc;
    if (!DxfCircleArc(s.dX0, s.dY0, s.d40, s.d50, s.d51, circle, arc)) {
        if (m_pLoadReport != nullptr) m_pLoadReport->Skip(LOAD_DXF_BAD_CURVE, m_lEntityLine);
        return GISFILE_OK;
    }
    // A circle is a ring closed on its first vertex; an arc runs from its start to its end.
    const int count = circle ? arc.iSegments : arc.iSegments + 1;
    if (!TakeCurveVertices(count)) return GISFILE_OK;
    s.CurvePoints.clear();
    s.CurvePoints.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        const tagLOC v = arc.Vertex(i);
        double vLat = 0.0, vLon = 0.0;
        if (ConvertToLL(v.dLon, v.dLat, &vLat, &vLon))
            s.CurvePoints.push_back(tagLOC{vLat, vLon});
        else
            NoteRefused(vLat, vLon, false, m_lEntityLine);
    }
    if (s.CurvePoints.empty()) return GISFILE_OK;
    const int boundType = s.iLayerBound != 0 ? s.iLayerBound : circle ? BOUNDARY_INC : BOUNDARY_OPEN;
    const TFeatureLine* line =
        AddImportedLine(m_pLayer, m_iFeatureType, boundType, static_cast<int>(s.CurvePoints.size()),
                        s.CurvePoints.data(), "", circle, COLOR_NONE, false, false, false);
    NoteAdded(m_pLoadReport, line);
    if (line == nullptr && m_iFeatureType == static_cast<int>(ELEMENT_MARKER) && m_pLoadReport != nullptr)
        m_pLoadReport->Skip(LOAD_DXF_MARKER_LAYER_LINE, m_lEntityLine);
    return GISFILE_OK;
}

bool TGisFileDxf::TakeCurveVertices(int count) {
    TDxfParseState& s = s_DxfState;
    if (count <= s.lCurveBudget) {
        s.lCurveBudget -= count;
        return true;
    }
    if (m_pLoadReport != nullptr) m_pLoadReport->Skip(LOAD_DXF_CURVE_LIMIT, m_lEntityLine);
    return false;
}
