#pragma once
// The elements of a layer in one line, to state what the complete profile must keep.

#include <cstdio>
#include <string>

#include <tl_gis/gis/gis_file.h>
#include <tl_gis/hostmap/map_layer.h>
#include <tl_gis/platform/numbers.h>
#include "complete_profile.h"

namespace shp_test {

inline std::string Vertex6(double x, double y) {
    char buf[64];
    std::snprintf(buf, sizeof buf, " %.6f,%.6f", x, y);
    return buf;
}

// "kind:id", then "/bound#vertices" for lines, " 'name'" for markers, " =value" when not 0, and
// with vertices set every vertex (longitude, latitude) to six decimals; ", " between elements.
inline std::string DescribeElements(const TMapLayer& layer, bool vertices = false) {
    std::string out;
    for (const TMapElement* e : layer.m_Elements) {
        out += (out.empty() ? "" : ", ") + std::string(GetElementKindName(e->m_dwType)) + ":" + e->m_strId;
        const auto* line = dynamic_cast<const TFeatureLine*>(e);
        if (line != nullptr)
            out += "/" + std::to_string(line->m_iBoundType) + "#" + std::to_string(line->m_iNumPoints);
        if (const auto* marker = dynamic_cast<const TFeatureMarker*>(e))
            out += " '" + marker->m_strName + "'";
        if (e->m_dValue != 0.0) out += " =" + FormatRoundTrip(e->m_dValue);
        if (!vertices) continue;
        for (int i = 0; line != nullptr && i < line->m_iNumPoints; ++i)
            out += Vertex6(line->m_pPoints[i].dLon, line->m_pPoints[i].dLat);
        if (const auto* marker = dynamic_cast<const TFeatureMarker*>(e))
            out += Vertex6(marker->m_Loc.dLon, marker->m_Loc.dLat);
        if (const auto* point = dynamic_cast<const TFeaturePoint*>(e))
            out += Vertex6(point->m_Loc.dLon, point->m_Loc.dLat);
    }
    return out;
}

}  // namespace shp_test
