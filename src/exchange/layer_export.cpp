#include "layer_export.h"

#include <cmath>

#include <tl_gis/features/feature_pattern.h>
#include <tl_gis/features/feature_spray.h>
#include <tl_gis/gis/chosen_columns.h>
#include <tl_gis/platform/numbers.h>
#include "pattern_features.h"
#include "spray_features.h"

namespace {
// The line's vertices that are numbers; a ring is closed when its last vertex is not its first.
std::vector<tagLOC> LinePositions(const TFeatureLine& line, bool ring) {
    std::vector<tagLOC> positions;
    positions.reserve(static_cast<std::size_t>(line.m_iNumPoints > 0 ? line.m_iNumPoints + 1 : 0));
    for (int i = 0; i < line.m_iNumPoints; ++i)
        if (IsFinitePosition(line.m_pPoints[i])) positions.push_back(line.m_pPoints[i]);
    if (ring && positions.size() >= 3) {
        const tagLOC& first = positions.front();
        const tagLOC& last = positions.back();
        if (first.dLat != last.dLat || first.dLon != last.dLon) positions.push_back(first);
    }
    return positions;
}

TExchangeFeature LineFeature(const TFeatureLine& line) {
    TExchangeFeature feature;
    const int bound = line.m_iBoundType;
    const bool ring = bound == BOUNDARY_INC || bound == BOUNDARY_EXC;
    std::vector<tagLOC> positions = LinePositions(line, ring);
    // A ring too short to be a polygon still goes out, as a line that keeps its bound.
    const bool polygon = ring && positions.size() >= 4;
    if (positions.size() >= 2)
        feature.Geometries.push_back({polygon ? GEOMETRY_POLYGON : GEOMETRY_LINE, {std::move(positions)}});
    feature.eStyle = bound == BOUNDARY_INC   ? STYLE_INCLUSION
                     : bound == BOUNDARY_EXC ? STYLE_EXCLUSION
                                             : STYLE_OPEN_LINE;
    TProperties& p = feature.Properties;
    p.emplace_back("id", TPropertyValue::Text(line.m_strId));
    p.emplace_back("kind", TPropertyValue::Text(GetElementKindName(line.GetKind())));
    if (*BoundTypeName(bound) != '\0') p.emplace_back("bound", TPropertyValue::Text(BoundTypeName(bound)));
    p.emplace_back("value", TPropertyValue::Number(line.m_dValue));
    std::uint32_t color = 0;
    if (line.GetColor(color)) p.emplace_back("color", TPropertyValue::Text(ColorText(color)));
    feature.strTitle = line.m_strId;
    feature.strDescription = std::string(bound == BOUNDARY_INC   ? "Inclusion "
                                         : bound == BOUNDARY_EXC ? "Exclusion "
                                                                 : "Open ") +
                             GetElementKindName(line.GetKind()) + " line";
    if (line.m_dValue != 0.0) feature.strDescription += ", value " + FormatRoundTrip(line.m_dValue);
    return feature;
}

TExchangeFeature LocationFeature(const TMapElement& element, const tagLOC& loc) {
    TExchangeFeature feature;
    if (IsFinitePosition(loc)) feature.Geometries.push_back({GEOMETRY_POINT, {{loc}}});
    feature.Properties.emplace_back("id", TPropertyValue::Text(element.m_strId));
    feature.Properties.emplace_back("kind", TPropertyValue::Text(GetElementKindName(element.GetKind())));
    return feature;
}
}  // namespace

std::string ColorText(std::uint32_t color) {
    static const char kHex[] = "0123456789ABCDEF";
    std::string text = "#";
    for (int shift : {0, 8, 16}) {
        const unsigned byte = (color >> shift) & 0xFFu;
        text += kHex[byte >> 4];
        text += kHex[byte & 15];
    }
    return text;
}

bool ColorFromText(std::string_view text, std::uint32_t& color) {
    if (text.size() != 7 || text[0] != '#') return false;
    std::uint32_t rgb = 0;
    for (char c : text.substr(1)) {
        const int digit = c >= '0' && c <= '9'   ? c - '0'
                          : c >= 'a' && c <= 'f' ? c - 'a' + 10
                          : c >= 'A' && c <= 'F' ? c - 'A' + 10
                                                 : -1;
        if (digit < 0) return false;
        rgb = rgb << 4 | static_cast<std::uint32_t>(digit);
    }
    color = (rgb >> 16 & 0xFFu) | (rgb & 0xFF00u) | (rgb & 0xFFu) << 16;
    return true;
}

std::vector<TExchangeFeature> ExportLayerFeatures(TMapLayer& layer, const TExportSettings& settings) {
    std::vector<TExchangeFeature> features;
    TSprayExport spray(settings);
    for (TMapElement* element : layer.m_Elements) {
        if (const auto* line = dynamic_cast<const TFeatureLine*>(element)) {
            features.push_back(LineFeature(*line));
        } else if (const auto* marker = dynamic_cast<const TFeatureMarker*>(element)) {
            TExchangeFeature feature = LocationFeature(*marker, marker->m_Loc);
            feature.Properties.emplace_back("name", TPropertyValue::Text(marker->m_strName));
            feature.Properties.emplace_back("symbol", TPropertyValue::Number(marker->GetLowBits()));
            feature.strTitle = marker->m_strName;
            feature.strDescription = "Marker, symbol " + std::to_string(marker->GetLowBits());
            feature.eStyle = STYLE_MARKER;
            features.push_back(std::move(feature));
        } else if (const auto* point = dynamic_cast<const TFeaturePoint*>(element)) {
            TExchangeFeature feature = LocationFeature(*point, point->m_Loc);
            feature.eStyle = STYLE_POINT;
            features.push_back(std::move(feature));
        } else if (const auto* pattern = dynamic_cast<const TFeaturePattern*>(element)) {
            AppendPatternFeatures(*pattern, settings.bSwathLines, features);
        } else if (auto* run = dynamic_cast<TFeatureSpray*>(element)) {
            spray.Append(*run, features);
        }
    }
    spray.ClassifyRates(features);
    return features;
}
