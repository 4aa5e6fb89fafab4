#pragma once
// The path readers take to add a point they found to a layer: a marker when the host chose a
// name column and the point has a name there, otherwise a bare point.

#include <string_view>

#include <tl_gis/hostmap/map_layer.h>

// Adds a marker named name (symbol 0) when name is not empty, otherwise a point, at loc with the
// id and value given; the layer owns it. Returns the element, or null when memory fails (nothing
// is added then).
TMapElement* AddImportedPoint(TMapLayer* layer, const tagLOC& loc, std::string_view id, std::string_view name,
                              double value);
