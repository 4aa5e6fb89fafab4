#pragma once
// The layer as features, for the writers of both formats. Every element kind the map model has
// becomes features whose properties carry what the layer knows (kind, id, bound, value, colour,
// name, symbol; a pattern's settings and points; the spray table's columns), so that reading the
// file back gives the same elements.

#include <vector>

#include <tl_gis/gis/shp/spray_table.h>
#include <tl_gis/hostmap/map_layer.h>
#include "exchange_feature.h"

struct TExportSettings {
    TSpraySource Source;        // the CUSTOMER, FILE_NAME and FILE_DATE of spray rows
    bool bSingleBlock = false;  // one swath polygon per step of a spray run
    bool bSwathLines = false;   // the swath lines beside each AB line, drawn for the eye
};

// The features of the layer's elements, in layer order. Lines with bound 16 or 17 become
// polygons (each exclusion ring a feature of its own, so that its id, bound and colour stay its
// own), other lines lines, markers and points points. Recorded spray is cut into swath polygons
// as the shapefile export cuts it, which changes samples and statistics as that does.
std::vector<TExchangeFeature> ExportLayerFeatures(TMapLayer& layer, const TExportSettings& settings);

// "#RRGGBB" of a colour 0x00BBGGRR, and back; false for a text that is no such colour.
std::string ColorText(std::uint32_t color);
bool ColorFromText(std::string_view text, std::uint32_t& color);
