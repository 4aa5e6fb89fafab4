#pragma once
// What `tlgis info` prints about a loaded layer: a human summary or one JSON object.

#include <string>

#include <tl_gis/hostmap/map_layer.h>
#include "layer_loading.h"

struct TReportOptions {
    bool bPoints = false;  // include every vertex
};

// The element's kind keyword: boundary, area, road, water, misc, generic, line, marker, point,
// spray, pattern, or "unknown".
const char* ElementKindName(const TMapElement& element);

// Both end with the load report: "report" in JSON (added by kind, skipped causes, the stop or
// null), a "Skipped" block and a "Stopped" line in the summary.
std::string LayerToJson(const std::string& file, const TLoadOutcome& outcome, const TMapLayer& layer,
                        const TReportOptions& options);
std::string LayerSummary(const std::string& file, const TLoadOutcome& outcome, const TMapLayer& layer);
