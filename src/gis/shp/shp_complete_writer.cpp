// The complete profile's boundary export. Rings become polygons with their holes: each inclusion
// ring with the exclusion rings inside it is one record (outer ring clockwise, holes
// counter-clockwise) with one table row. Open lines go to the target's _Lines triple, markers and
// points to its _Points triple. Every table carries ID, BOUND, VALUE and NAME, as wide as the
// widest value.

#include <tl_gis/features/buffer.h>
#include <tl_gis/gis/shp/gis_file_shp.h>
#include "gis/internal_results.h"
#include "gis/shp/shp_file_io.h"

namespace {
// The kind codes of lines of every class share their top twelve bits.
constexpr std::uint32_t kLineFamilyMask = 0xFFF00000u;

bool HasPoints(const TFeatureLine& line) {
    return line.m_pPoints != nullptr && line.m_iNumPoints > 0;
}

TCompleteRow RowOf(const TMapElement& element, int bound, std::string_view name = {}) {
    return {element.m_strId, bound, element.m_dValue, name};
}

// A marker's or point's row: the marker's name is its NAME.
TCompleteRow PointRowOf(const TShpCompletePoint& point) {
    return RowOf(*point.pElement, 0,
                 point.pName != nullptr ? std::string_view(*point.pName) : std::string_view());
}

// The vertices a ring is written with: its own, and its first once more when it does not end there.
int RingPointCount(const TFeatureLine& ring) {
    const bool closed = IsSamePlace(ring.m_pPoints[0], ring.m_pPoints[ring.m_iNumPoints - 1]);
    return ring.m_iNumPoints + (closed ? 0 : 1);
}
}  // namespace

void TGisFileShp::PrepareCompletePolygons() {
    // One pass sorts the layer: rings, open lines, and markers and points; the kind code spares
    // the type test of every element that is none of them.
    std::vector<const TFeatureLine*> rings;
    m_pIo->m_OpenLines.clear();
    m_pIo->m_Points.clear();
    const std::size_t count = m_pLayer != nullptr ? m_pLayer->m_Elements.size() : 0;
    rings.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        const TMapElement* element = m_pLayer->m_Elements[i];
        const std::uint32_t kind = element->m_dwType & ELEMENT_KIND_MASK;
        if ((kind & kLineFamilyMask) == ELEMENT_LINE) {
            const auto* line = dynamic_cast<const TFeatureLine*>(element);
            if (line == nullptr || !HasPoints(*line)) continue;
            (line->m_iBoundType == BOUNDARY_OPEN ? m_pIo->m_OpenLines : rings).push_back(line);
        } else if (kind == ELEMENT_MARKER) {
            if (const auto* marker = dynamic_cast<const TFeatureMarker*>(element))
                m_pIo->m_Points.push_back({marker, marker->m_Loc, &marker->m_strName});
        } else if (kind == ELEMENT_POINT) {
            if (const auto* point = dynamic_cast<const TFeaturePoint*>(element))
                m_pIo->m_Points.push_back({point, point->m_Loc, nullptr});
        }
    }
    m_pIo->m_Groups = GroupRingsIntoPolygons(rings);
    m_pIo->m_CompleteTable.Clear();
    for (const TPolygonGroup& group : m_pIo->m_Groups)
        m_pIo->m_CompleteTable.Fit(RowOf(*group.pOuter, group.pOuter->m_iBoundType));
}

int TGisFileShp::WriteCompletePolygons() {
    int result = 0;
    for (std::size_t g = 0; g < m_pIo->m_Groups.size(); ++g) result = DoPolygonGroupRec(g);
    return result;
}

int TGisFileShp::DoPolygonGroupRec(std::size_t group) {
    const TPolygonGroup& polygon = m_pIo->m_Groups[group];
    std::size_t points = static_cast<std::size_t>(RingPointCount(*polygon.pOuter));
    for (const TFeatureLine* hole : polygon.Holes) points += static_cast<std::size_t>(RingPointCount(*hole));
    const std::size_t parts = 1 + polygon.Holes.size();
    unsigned char* block = ShpRecordBlock(m_RecordBuffer, ShpPolyRecordBytes(points, parts));
    if (block == nullptr) return RESULT_WRITE_FAILED;
    TShpPolyEncoder encoder;
    encoder.Begin(block, m_iShapeRecords + 1, SHPT_POLYGON, static_cast<int>(points),
                  static_cast<int>(parts));
    // Outer rings run clockwise and holes the other way; an exclusion ring that lies in no
    // inclusion ring keeps the exclusion's counter-clockwise turn.
    const auto addRing = [&encoder](const TFeatureLine& ring, bool clockwise) {
        for (int i = 0; i < ring.m_iNumPoints; ++i) encoder.Add(ring.m_pPoints[i]);
        if (RingPointCount(ring) > ring.m_iNumPoints) encoder.Add(ring.m_pPoints[0]);
        if (encoder.IsClockwise() != clockwise) encoder.ReversePoints();
    };
    addRing(*polygon.pOuter, polygon.pOuter->m_iBoundType != BOUNDARY_EXC);
    for (const TFeatureLine* hole : polygon.Holes) {
        encoder.StartPart();
        addRing(*hole, false);
    }
    const int length = encoder.Finish();
    if (length == 0) return 0;
    ++m_iShapeRecords;
    const int result = WriteShpRecord(block, length);
    if (result == 0) WriteCompleteRow(RowOf(*polygon.pOuter, polygon.pOuter->m_iBoundType));
    return result;
}

void TGisFileShp::WriteCompleteRow(const TCompleteRow& row) {
    const std::string& bytes = m_pIo->m_CompleteTable.Format(m_pIo->m_DbfRecord, row);
    m_pIo->m_Out.m_Table.Write(bytes.data(), bytes.size());
}

int TGisFileShp::WriteCompanionTriples(const std::string& target) {
    const int result = WriteCompanionTriple(ShpCompanionStem(target, "_Lines"), false);
    if (result != GISFILE_OK) return result;
    return WriteCompanionTriple(ShpCompanionStem(target, "_Points"), true);
}

int TGisFileShp::WriteCompanionTriple(const std::string& stem, bool points) {
    const std::size_t count = points ? m_pIo->m_Points.size() : m_pIo->m_OpenLines.size();
    // A layer without such elements gets no triple of them.
    if (count == 0) return GISFILE_OK;
    TDbfCompleteTable& table = m_pIo->m_CompleteTable;
    table.Clear();
    if (points) {
        for (const TShpCompletePoint& point : m_pIo->m_Points) table.Fit(PointRowOf(point));
    } else {
        for (const TFeatureLine* line : m_pIo->m_OpenLines) table.Fit(RowOf(*line, BOUNDARY_OPEN));
    }
    TShpOutputFiles& out = m_pIo->m_Out;
    if (!out.Create(stem)) {
        out.Close();
        return GISFILE_ERR_OPEN;
    }
    unsigned char* header = m_HeaderBuffer.GetBuffer(SHP_HEADER_BYTES + 1);
    if (header == nullptr) {
        out.Close();
        return GISFILE_ERR_DATA;
    }
    const std::int32_t shapeType = points ? SHPT_POINT : SHPT_POLYLINE;
    m_iShapeRecords = 0;
    out.WriteHeaders(false, shapeType, TLocRect(), 0, header);
    WriteCompleteDbfFileHdr(0);
    TLocRect box;
    box.InitExtents();
    TShpPolyEncoder encoder;
    for (std::size_t i = 0; i < count; ++i) {
        unsigned char* block = nullptr;
        int length = 0;
        if (points) {
            const tagLOC& loc = m_pIo->m_Points[i].Loc;
            block = IsFinitePosition(loc) ? ShpRecordBlock(m_RecordBuffer, SHP_POINT_RECORD_BYTES) : nullptr;
            if (block == nullptr) continue;
            EncodeShpPointRecord(block, m_iShapeRecords + 1, loc);
            length = static_cast<int>(SHP_POINT_RECORD_BYTES);
            box.ExpandExtents(loc);
        } else {
            // Written as held: every vertex, a repeated one and a closing one included.
            const TFeatureLine& line = *m_pIo->m_OpenLines[i];
            block = ShpRecordBlock(m_RecordBuffer,
                                   ShpPolyRecordBytes(static_cast<std::size_t>(line.m_iNumPoints)));
            if (block == nullptr) continue;
            encoder.Begin(block, m_iShapeRecords + 1, SHPT_POLYLINE, line.m_iNumPoints);
            for (int k = 0; k < line.m_iNumPoints; ++k) encoder.Add(line.m_pPoints[k]);
            length = encoder.Finish();
            if (length == 0) continue;
            box.ExpandExtents(encoder.GetBox());
        }
        ++m_iShapeRecords;
        if (WriteShpRecord(block, length) != 0) continue;
        WriteCompleteRow(points ? PointRowOf(m_pIo->m_Points[i])
                                : RowOf(*m_pIo->m_OpenLines[i], BOUNDARY_OPEN));
    }
    WriteDbfEnd();
    if (box.IsEmpty()) box.Clear();
    out.WriteHeaders(true, shapeType, box, m_iShapeRecords, header);
    WriteCompleteDbfFileHdr(static_cast<std::uint32_t>(m_iShapeRecords));
    out.Close();
    return out.WriteSidecars() ? GISFILE_OK : GISFILE_ERR_OPEN;
}
