#pragma once
// Drawing a layer as an SVG picture: areas, then lines, then point symbols, with a scale bar
// and a north arrow.

#include <string>

#include <tl_gis/hostmap/map_layer.h>

// Draws the layer (its extents must be up to date) into an SVG file widthPx pixels wide.
bool RenderLayerSvg(const TMapLayer& layer, const std::string& out, const std::string& title, int widthPx);
