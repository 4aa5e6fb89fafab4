#pragma once
// KML 2.2 text into features: Placemarks with Point, LineString, LinearRing, Polygon
// (outerBoundaryIs, innerBoundaryIs) and MultiGeometry, inside nested Documents and Folders;
// each placemark's name and description, and its ExtendedData, both <Data> and the
// <SchemaData><SimpleData> that GDAL writes, as properties. Heights and altitudeMode are
// dropped and counted; tracks, models, overlays and network links are counted and not read.

#include <cstdint>
#include <functional>
#include <string>

#include <tl_gis/gis/load_report.h>
#include "layer_import.h"

struct TKmlRead {
    int iResult = 0;      // 0, 6002 (no KML), 6003 (damaged), 6080 (stopped)
    std::string strName;  // the first name of a Document or Folder
};

// Reads text (parsed in place, so changed) into the import, recording in report (may be null).
// progress receives the byte offset of each placemark read.
TKmlRead ReadKml(std::string& text, TLayerImport& import, TLoadReport* report,
                 const std::function<void(std::int64_t)>& progress);
