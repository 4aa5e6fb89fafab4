#pragma once
// The two lookup tables of the drawing reader: what a layer name makes of a polyline, and what
// an attribute tag makes of an attributed insert. Both match by case-sensitive prefix, first
// row wins.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <tl_gis/hostmap/map_layer.h>

struct TDxfLayerClass {
    char szPrefix[20];      // the beginning of the layer names the row takes
    std::uint32_t dwKind;   // element kind of the lines on such layers (the marker kind drops them)
    int iStyle;             // drawing style; not applied to imported lines
    std::uint8_t byImport;  // 0: entities on such layers are not imported
    std::uint32_t dwColor;  // 0x00BBGGRR; not applied to imported lines
};

struct TDxfTagClass {
    char szPrefix[20];     // the beginning of the attribute tags the row takes
    std::uint32_t dwKind;  // always the marker kind
    int iSymbol;           // marker symbol
};

extern const TDxfLayerClass s_aLayerClasses[];
extern const int s_iLayerClassCount;
extern const TDxfTagClass s_aTagClasses[];
extern const int s_iTagClassCount;

// The first row whose prefix begins the name, or null.
const TDxfLayerClass* FindDxfLayerClass(std::string_view layer);
const TDxfTagClass* FindDxfTagClass(std::string_view tag);

// Layers of the complete profile. The writer puts every element on a layer named after what it
// holds; the reader takes these rows before the system's own, so that the same kinds come back.
constexpr const char* DXF_LAYER_POINTS = "POINTS";
constexpr const char* DXF_LAYER_SPRAY_SWATHS = "SPRAY_SWATHS";
constexpr const char* DXF_LAYER_SPRAY_TRACK = "SPRAY_TRACK";
// The symbol of a marker made from a TEXT on a layer that names none: that of place names, as
// the layer NAME and the attribute tag TGR_NAME give it.
constexpr int DXF_TEXT_MARKER_SYMBOL = 56;

// The first complete-profile row whose prefix begins the name, or null.
const TDxfLayerClass* FindDxfCompleteLayerClass(std::string_view layer);
// A line's layer: its kind's name and bound type, "BOUNDARY_INC", "ROAD_OPEN"; the kind alone
// for a bound type other than 16, 17 and 18.
std::string DxfLineLayerName(std::uint32_t kind, int boundType);
// A marker's layer: "MARKER_" and its symbol.
std::string DxfMarkerLayerName(int symbol);
// The layers the complete profile writes a map layer's elements on, each once, in the order of
// first use after the layer "0" that every drawing has.
std::vector<std::string> DxfCompleteLayerNames(const TMapLayer& layer);

// The bound type a layer's name ends with ("_INC", "_EXC", "_OPEN", any case); 0 for none.
int DxfLayerBoundType(std::string_view layer);
// The symbol of markers on a layer of the row (a marker row): the number after "MARKER_", or
// the row's style.
int DxfLayerMarkerSymbol(std::string_view layer, const TDxfLayerClass& row);
