#include "geojson_writer.h"

#include <tl_gis/hostmap/loc.h>
#include <tl_gis/platform/text_encoding.h>
#include <nlohmann/json.hpp>

namespace {
// A JSON string; bytes that are no UTF-8 are taken as Windows Latin 1, as the system writes.
void AppendString(std::string& out, const std::string& text) {
    out += nlohmann::json(ToUtf8(text, ENCODING_UTF8))
               .dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

void AppendPosition(std::string& out, const tagLOC& loc) {
    out += '[';
    AppendDegrees(out, loc.dLon);
    out += ',';
    AppendDegrees(out, loc.dLat);
    out += ']';
}

void AppendPositions(std::string& out, const std::vector<tagLOC>& positions) {
    out += '[';
    for (std::size_t i = 0; i < positions.size(); ++i) {
        if (i > 0) out += ',';
        AppendPosition(out, positions[i]);
    }
    out += ']';
}

void AppendParts(std::string& out, const std::vector<std::vector<tagLOC>>& parts) {
    out += '[';
    for (std::size_t i = 0; i < parts.size(); ++i) {
        if (i > 0) out += ',';
        AppendPositions(out, parts[i]);
    }
    out += ']';
}

void AppendGeometry(std::string& out, const TExchangeGeometry& g) {
    const bool single = g.Parts.size() == 1;
    switch (g.eKind) {
        case GEOMETRY_POINT:
            out += single ? "{\"type\":\"Point\",\"coordinates\":"
                          : "{\"type\":\"MultiPoint\",\"coordinates\":[";
            for (std::size_t i = 0; i < g.Parts.size(); ++i) {
                if (i > 0) out += ',';
                AppendPosition(out, g.Parts[i].front());
            }
            out += single ? "}" : "]}";
            return;
        case GEOMETRY_LINE:
            out += single ? "{\"type\":\"LineString\",\"coordinates\":"
                          : "{\"type\":\"MultiLineString\",\"coordinates\":";
            if (single)
                AppendPositions(out, g.Parts[0]);
            else
                AppendParts(out, g.Parts);
            out += '}';
            return;
        case GEOMETRY_POLYGON:
            out += "{\"type\":\"Polygon\",\"coordinates\":";
            AppendParts(out, g.Parts);
            out += '}';
            return;
    }
}

void AppendProperties(std::string& out, const TProperties& properties) {
    out += '{';
    for (std::size_t i = 0; i < properties.size(); ++i) {
        const auto& [key, value] = properties[i];
        if (i > 0) out += ',';
        AppendString(out, key);
        out += ':';
        switch (value.eType) {
            case TPropertyValue::PROPERTY_TEXT:
                AppendString(out, value.strText);
                break;
            case TPropertyValue::PROPERTY_NUMBER:
                AppendPropertyNumber(out, value);
                break;
            case TPropertyValue::PROPERTY_BOOLEAN:
                out += value.dNumber != 0.0 ? "true" : "false";
                break;
            default:
                out += "null";
        }
    }
    out += '}';
}

void AppendFeature(std::string& out, const TExchangeFeature& feature) {
    out += "{\"type\":\"Feature\",\"properties\":";
    AppendProperties(out, feature.Properties);
    out += ",\"geometry\":";
    if (feature.Geometries.empty()) {
        out += "null";
    } else if (feature.Geometries.size() == 1) {
        AppendGeometry(out, feature.Geometries[0]);
    } else {
        out += "{\"type\":\"GeometryCollection\",\"geometries\":[";
        for (std::size_t i = 0; i < feature.Geometries.size(); ++i) {
            if (i > 0) out += ',';
            AppendGeometry(out, feature.Geometries[i]);
        }
        out += "]}";
    }
    out += '}';
}
}  // namespace

std::string WriteGeoJsonText(const std::vector<TExchangeFeature>& features, const std::string& name) {
    TLocRect box;
    box.InitExtents();
    for (const TExchangeFeature& f : features)
        for (const TExchangeGeometry& g : f.Geometries)
            for (const std::vector<tagLOC>& part : g.Parts)
                for (const tagLOC& loc : part) box.ExpandExtents(loc);
    std::string out = "{\"type\":\"FeatureCollection\",";
    if (!name.empty()) {
        out += "\"name\":";
        AppendString(out, name);
        out += ',';
    }
    if (!box.IsEmpty()) {
        out += "\"bbox\":[";
        for (double edge : {box.dWest, box.dSouth, box.dEast, box.dNorth}) {
            AppendDegrees(out, edge);
            out += ',';
        }
        out.back() = ']';
        out += ',';
    }
    out += "\n\"features\":[\n";
    for (std::size_t i = 0; i < features.size(); ++i) {
        AppendFeature(out, features[i]);
        out += i + 1 < features.size() ? ",\n" : "\n";
    }
    out += "]}\n";
    return out;
}
