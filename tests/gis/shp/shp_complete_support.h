#pragma once
// The complete profile in the shapefile tests: switched on with chosen columns for one scope, and
// the elements of a layer in one line that states what the profile must keep.

#include <cstdio>
#include <string>

#include <tl_gis/gis/gis_file.h>
#include <tl_gis/hostmap/map_layer.h>
#include <tl_gis/platform/numbers.h>

namespace shp_test {

// The complete profile with the chosen id, value and name columns, and the defaults back after.
struct TCompleteProfile {
    TCompleteProfile(const std::string& id = "", const std::string& value = "",
                     const std::string& name = "") {
        TGisFile::s_bCompleteProfile = true;
        TGisFile::s_strIdField = id;
        TGisFile::s_strValueField = value;
        TGisFile::s_strNameField = name;
    }
    ~TCompleteProfile() {
        TGisFile::s_bCompleteProfile = false;
        TGisFile::s_strIdField = TGisFile::s_strValueField = TGisFile::s_strNameField = "";
    }
    TCompleteProfile(const TCompleteProfile&) = delete;
    TCompleteProfile& operator=(const TCompleteProfile&) = delete;
};

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
