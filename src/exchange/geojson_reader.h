#pragma once
// GeoJSON (RFC 7946) text into features: a FeatureCollection, a single Feature or a bare
// geometry; Point, MultiPoint, LineString, MultiLineString, Polygon, MultiPolygon and
// GeometryCollection. The collection's features are parsed one at a time, so a large file costs
// no more memory than its largest feature.

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include <tl_gis/gis/load_report.h>
#include "layer_import.h"

struct TGeoJsonRead {
    int iResult = 0;      // a result code: 0, 6002 (no GeoJSON), 6003 (damaged), 6080 (stopped)
    std::string strName;  // the collection's name, when it has one
};

// Reads text into the import, recording in report (may be null) what it passed over and where
// it stopped. progress receives the byte offset reached after each feature.
TGeoJsonRead ReadGeoJson(std::string_view text, TLayerImport& import, TLoadReport* report,
                         const std::function<void(std::int64_t)>& progress);
