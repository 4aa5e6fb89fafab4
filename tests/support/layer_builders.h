#pragma once
// Elements added to a layer in memory, as the readers add them: rings, lines, markers and points.

#include <cstdint>
#include <utility>
#include <vector>

#include <tl_gis/gis/line_assembly.h>
#include <tl_gis/hostmap/map_layer.h>

namespace layer_test {

// A closed square ring around (lat, lon) with half-size h, clockwise unless asked otherwise.
inline std::vector<tagLOC> Square(double lat, double lon, double h, bool clockwise = true) {
    std::vector<tagLOC> ring = {
        {lat - h, lon - h}, {lat + h, lon - h}, {lat + h, lon + h}, {lat - h, lon + h}, {lat - h, lon - h}};
    if (!clockwise) std::swap(ring[1], ring[3]);
    return ring;
}

// A line of the kind and bound type with the layer's value for new lines set to value.
inline void AddLine(TMapLayer& layer, std::uint32_t kind, int bound, const std::vector<tagLOC>& points,
                    const char* id, double value = 0.0, std::uint32_t color = COLOR_NONE) {
    layer.m_dValue = value;
    AddImportedLine(&layer, static_cast<int>(kind), bound, static_cast<int>(points.size()), points.data(), id,
                    false, color, false, false, color != COLOR_NONE);
    layer.m_dValue = 0.0;
}

inline TFeatureMarker* AddMarker(TMapLayer& layer, const char* id, const char* name, int symbol, tagLOC loc) {
    auto* marker = new TFeatureMarker;
    marker->m_strId = id;
    marker->m_strName = name;
    marker->SetLowBits(symbol);
    marker->m_Loc = loc;
    marker->CalculateGeoExtents();
    layer.AddElement(marker);
    return marker;
}

inline TFeaturePoint* AddPoint(TMapLayer& layer, const char* id, tagLOC loc, double value = 0.0) {
    auto* point = new TFeaturePoint;
    point->m_strId = id;
    point->m_dValue = value;
    point->m_Loc = loc;
    point->CalculateGeoExtents();
    layer.AddElement(point);
    return point;
}

}  // namespace layer_test
