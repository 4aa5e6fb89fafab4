// Boundary records: each boundary or area line of the layer as a closed ring, turned so that
// inclusion rings run clockwise and exclusion rings counter-clockwise, or as an open line
// without repeated vertices. Boundaries have no table rows.

#include <algorithm>
#include <vector>

#include <tl_gis/gis/geometry.h>
#include <tl_gis/gis/shp/gis_file_shp.h>
#include "gis/internal_results.h"
#include "gis/shp/shp_file_io.h"

int TGisFileShp::DoBoundaryRec(const TFeatureLine& line) {
    if (line.m_pPoints == nullptr || line.m_iNumPoints <= 0) return 0;
    // A copy: the element itself is not changed by its export.
    std::vector<tagLOC>& points = m_RingScratch;
    points.assign(line.m_pPoints, line.m_pPoints + line.m_iNumPoints);
    const int bound = line.m_iBoundType;
    int shapeType = SHPT_POLYGON;
    if (bound != BOUNDARY_OPEN) {
        if (!IsSamePlace(points.front(), points.back())) points.push_back(points.front());
        const bool clockwise = IsRingClockwise(points.data(), static_cast<int>(points.size()));
        // Inclusion rings go out clockwise, exclusion rings and rings of other types the other way.
        const bool reverse = clockwise ? bound != BOUNDARY_INC : bound == BOUNDARY_INC;
        if (reverse) std::reverse(points.begin(), points.end());
    } else {
        shapeType = SHPT_POLYLINE;
        points.erase(std::unique(points.begin(), points.end(), IsSamePlace), points.end());
        if (points.size() > 1 && IsSamePlace(points.front(), points.back())) points.pop_back();
    }
    TBuffer& buffer = m_RecordBuffer;  // reused from record to record
    unsigned char* block = ShpRecordBlock(buffer, ShpPolyRecordBytes(points.size()));
    if (block == nullptr) return RESULT_WRITE_FAILED;
    TShpPolyEncoder encoder;
    encoder.Begin(block, m_iShapeRecords + 1, shapeType, static_cast<int>(points.size()));
    for (const tagLOC& p : points) encoder.Add(p);
    const int length = encoder.Finish();
    if (length == 0) return 0;
    ++m_iShapeRecords;
    return WriteShpRecord(block, length);
}
