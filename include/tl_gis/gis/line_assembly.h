#pragma once
// The path every reader takes to turn a vertex list into a registered host line.

#include <tl_gis/export.h>
#include <cstdint>

#include <tl_gis/hostmap/map_layer.h>

// Builds a line feature of the kind's class (any unknown kind gives a boundary line), copies
// the vertices (appending the first once more when close is set) and registers it with the
// layer as element, centroid, polygon record with its area, and bound type. Returns the
// feature, owned by the layer, or null for the marker kind or when memory fails.
TL_GIS_API TFeatureLine* AddImportedLine(TMapLayer* layer, int kind, int boundType, int count,
                                         const tagLOC* points, const char* id, bool close,
                                         std::uint32_t color, bool rgbFlag1, bool rgbFlag2, bool hasColor);

// Creates an empty line feature of the class for a kind code (boundary for unknown kinds);
// null for the marker kind.
TL_GIS_API TFeatureLine* CreateLineForKind(int kind);
