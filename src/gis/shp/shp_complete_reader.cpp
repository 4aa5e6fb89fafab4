// The complete profile's reading of a record: every shape type with its Z and M variants, a
// multipoint as one point per point, a multipatch's rings and triangles, and the chosen columns of
// the record's table row. What the map cannot carry is counted in the load report, and a record that cannot
// be used is skipped alone, so that loading goes on.

#include <tl_gis/gis/coordinates.h>
#include <tl_gis/gis/line_assembly.h>
#include <tl_gis/gis/load_report.h>
#include <tl_gis/gis/shp/gis_file_shp.h>
#include <tl_gis/platform/numbers.h>
#include "gis/coordinate_transform.h"
#include "gis/load_recording.h"
#include "gis/shp/shp_file_io.h"

int TGisFileShp::LoadCompleteRecord(const TShpRecord& record) {
    // Rows go with records by position, so every record takes its row, read or not.
    const TChosenValues* chosen = m_pIo->m_pAttributes ? m_pIo->m_pAttributes->Next(record.iNumber) : nullptr;
    TShpShapeKind kind;
    if (!GetShpShapeKind(record.iShapeType, kind)) {
        NoteSkippedType(record);
        return GISFILE_OK;
    }
    m_pLayer->m_iShapeType = record.iShapeType;
    std::string problem;
    // Points are named "Point 7", a multipoint's "Point 7.1", "Point 7.2", ...
    const auto pointId = [&record] {
        std::string id = "Point ";
        AppendInt(id, record.iNumber);
        return id;
    };
    if (kind.iLayout == SHPT_POINT) {
        tagLOC loc;
        if (!DecodeShpPoint(record.pContent, record.nLength, loc, problem))
            return SkipDamagedRecord(record.iNumber, problem);
        NoteMeasures(CountShpPointMeasures(record.nLength, kind, record.pContent), record.iNumber);
        AddPointElement(loc, pointId(), chosen, record.iNumber);
        return GISFILE_OK;
    }
    TShpPolyRecord poly;
    if (!poly.Decode(record.pContent, record.nLength, kind, problem))
        return SkipDamagedRecord(record.iNumber, problem);
    NoteMeasures(poly.GetMeasures(), record.iNumber);
    const int points = poly.GetPointCount();
    if (kind.iLayout == SHPT_MULTIPOINT) {
        std::string id = pointId() + '.';
        const std::size_t stem = id.size();
        for (int i = 0; i < points; ++i) {
            tagLOC loc;
            poly.CopyPoints(i, 1, &loc);
            id.resize(stem);
            AppendInt(id, i + 1);
            AddPointElement(loc, id, chosen, record.iNumber);
        }
        return GISFILE_OK;
    }
    // A line or ring that ends outside the degree range would stop the system's load; here the
    // record alone is left out.
    if (poly.GetPartCount() > 0 && points > poly.GetPartStart(0)) {
        tagLOC last;
        poly.CopyPoints(points - 1, 1, &last);
        MapCoordinatePair(last.dLat, last.dLon);
        if (IsUnmappedPair(last.dLat, last.dLon)) {
            if (m_pLoadReport != nullptr) m_pLoadReport->Skip(LOAD_COORD_UNMAPPED, record.iNumber);
            return GISFILE_OK;
        }
        const int lastClass = ClassifyCoordinate(last.dLat, last.dLon);
        if (lastClass != COORD_GEOGRAPHIC) {
            if (m_pLoadReport != nullptr && m_pLoadReport->Skip(LOAD_SHP_LAST_POINT_OUTSIDE, record.iNumber))
                m_pLoadReport->SetFirstNote(
                    LOAD_SHP_LAST_POINT_OUTSIDE,
                    TLoadReport::PointText(last.dLat, last.dLon) +
                        (lastClass == COORD_PROJECTED ? " looks projected" : " is outside the degree range"));
            return GISFILE_OK;
        }
    }
    return AddParts(poly, record.iNumber, kind.iLayout != SHPT_POLYLINE, chosen);
}

void TGisFileShp::AddTriangles(int count, bool fan, const std::string& name, bool numbered) {
    std::string id = name;
    for (int i = 0; i + 2 < count; ++i) {
        // A strip's triangles are each three points in a row; a fan's share its first point.
        const tagLOC ring[4] = {m_pLocs[fan ? 0 : i], m_pLocs[i + 1], m_pLocs[i + 2], m_pLocs[fan ? 0 : i]};
        if (numbered) {
            id = name + '.';
            AppendInt(id, i + 1);
        }
        NoteAdded(m_pLoadReport,
                  AddImportedLine(m_pLayer, static_cast<int>(ELEMENT_LINE_BOUNDARY), BOUNDARY_INC, 4, ring,
                                  id.c_str(), false, COLOR_NONE, false, false, false));
    }
}

int TGisFileShp::SkipDamagedRecord(int recordNumber, const std::string& problem) {
    if (m_pLoadReport != nullptr && m_pLoadReport->Skip(LOAD_SHP_DAMAGED_RECORD, recordNumber))
        m_pLoadReport->SetFirstNote(LOAD_SHP_DAMAGED_RECORD, problem);
    return GISFILE_OK;
}

void TGisFileShp::NoteMeasures(const TShpMeasures& measures, int recordNumber) {
    if (m_pLoadReport == nullptr) return;
    if (measures.lZ > 0) m_pLoadReport->Skip(LOAD_SHP_Z_VALUES, recordNumber, measures.lZ);
    if (measures.lM > 0) m_pLoadReport->Skip(LOAD_SHP_M_VALUES, recordNumber, measures.lM);
}
