// The layers of the complete profile: what the writer names them and what the reader makes of
// them. A line's layer carries its kind and bound type, a marker's its symbol.

#include <cctype>
#include <iterator>

#include <tl_gis/hostmap/element_kinds.h>
#include <tl_gis/platform/numbers.h>
#include "gis/attribute_columns.h"
#include "gis/dxf/dxf_tables.h"

namespace {

constexpr const char* kMarkerPrefix = "MARKER_";

// Kinds the system's rows have no layer for, and the complete profile's points, markers and
// spray. BOUNDARY and ROAD are the system's own rows.
const TDxfLayerClass kCompleteLayerClasses[] = {
    {"AREA", ELEMENT_LINE_AREA, 0, 1, 0x000000},
    {"WATER", ELEMENT_LINE_WATER, 0, 1, 0x000000},
    {"MISC", ELEMENT_LINE_MISC, 0, 1, 0x000000},
    {"GENERIC", ELEMENT_LINE_GENERIC, 0, 1, 0x000000},
    {"POINTS", ELEMENT_POINT, 0, 1, 0x000000},
    {"MARKER", ELEMENT_MARKER, DXF_TEXT_MARKER_SYMBOL, 1, 0x000000},
    {"SPRAY_SWATH", ELEMENT_LINE_AREA, 0, 1, 0x000000},
    {"SPRAY_TRACK", ELEMENT_LINE_GENERIC, 0, 1, 0x000000},
};

std::string UpperCase(const char* text) {
    std::string out(text);
    for (char& c : out) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return out;
}

}  // namespace

const TDxfLayerClass* FindDxfCompleteLayerClass(std::string_view layer) {
    for (const TDxfLayerClass& row : kCompleteLayerClasses)
        if (layer.starts_with(row.szPrefix)) return &row;
    return nullptr;
}

std::string DxfLineLayerName(std::uint32_t kind, int boundType) {
    std::string name = UpperCase(GetElementKindName(kind));
    const char* bound = BoundTypeName(boundType);
    if (*bound != '\0') name += std::string("_") + bound;
    return name;
}

std::string DxfMarkerLayerName(int symbol) {
    std::string name = kMarkerPrefix;
    AppendInt(name, symbol);
    return name;
}

std::vector<std::string> DxfCompleteLayerNames(const TMapLayer& layer) {
    std::vector<std::string> names = {"0"};
    const auto use = [&names](std::string name) {
        for (const std::string& known : names)
            if (known == name) return;
        names.push_back(std::move(name));
    };
    for (const TMapElement* element : layer.m_Elements) {
        const std::uint32_t kind = element->GetKind();
        if (kind == ELEMENT_MARKER) {
            use(DxfMarkerLayerName(element->GetLowBits()));
        } else if (kind == ELEMENT_POINT) {
            use(DXF_LAYER_POINTS);
        } else if (kind == ELEMENT_SPRAY || kind == ELEMENT_SPRAY_ALT) {
            use(DXF_LAYER_SPRAY_SWATHS);
            use(DXF_LAYER_SPRAY_TRACK);
        } else if (dynamic_cast<const TFeatureLine*>(element) != nullptr) {
            use(DxfLineLayerName(kind, element->GetLowBits()));
        }
    }
    return names;
}

int DxfLayerBoundType(std::string_view layer) {
    const std::size_t underscore = layer.rfind('_');
    return underscore == std::string_view::npos ? 0 : BoundTypeFromName(layer.substr(underscore + 1));
}

int DxfLayerMarkerSymbol(std::string_view layer, const TDxfLayerClass& row) {
    if (!layer.starts_with(kMarkerPrefix)) return row.iStyle;
    bool ok = false;
    const int symbol = ParseInt(layer.substr(std::char_traits<char>::length(kMarkerPrefix)), &ok);
    return ok && symbol >= 0 && static_cast<std::uint32_t>(symbol) <= ELEMENT_LOW_MASK ? symbol : row.iStyle;
}
