#pragma once
// The two lookup tables of the drawing reader: what a layer name makes of a polyline, and what
// an attribute tag makes of an attributed insert. Both match by case-sensitive prefix, first
// row wins.

#include <cstdint>
#include <string_view>

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
