#pragma once
// Building recorded spray for the writer tests and reading back what the writer produced:
// main-file records decoded with the reader's codec, and dBASE tables split into fields.

#include <memory>
#include <string>
#include <vector>

#include "features/feature_spray.h"
#include "gis/shp/gis_file_shp.h"
#include "hostmap/map_layer.h"

namespace shp_write_test {

struct TSamplePlan {
    double dLat = 0.0;
    double dLon = 0.0;
    double dHeading = 0.0;  // degrees
    double dWidth = 20.0;   // metres
    int iSpray = 1;
};

// A spray element with one sample per plan: swath ends from position, heading and width,
// one second apart, line 7, field "North 40", offset "R", aircraft and pilot set.
std::unique_ptr<TFeatureSpray> MakeSpray(const std::vector<TSamplePlan>& samples);
// n samples flown on a steady heading, stepM apart, starting at (45.5, -93.25); spray gives
// each sample's flag (missing entries spray).
std::vector<TSamplePlan> Straight(int n, double heading, double stepM = 20.0, std::vector<int> spray = {});
// Adds a spray element to the layer with its extents.
TFeatureSpray* AddSpray(TMapLayer& layer, std::unique_ptr<TFeatureSpray> spray);

struct TShape {
    int iType = 0;
    int iNumber = 0;
    std::vector<tagLOC> Points;
};
// Every record of a main file; ADD_FAILURE on bytes that do not decode.
std::vector<TShape> ReadShapes(const std::string& shpBytes);

struct TTable {
    int iRecordCount = 0;
    int iHeaderLength = 0;
    int iRecordLength = 0;
    std::vector<std::string> Names;
    std::vector<std::vector<std::string>> Rows;  // raw field texts, blanks kept
    bool bEndsWith1A = false;
};
TTable ReadTable(const std::string& dbfBytes);

// The three files of a stem.
struct TTriple {
    std::string strShp;
    std::string strShx;
    std::string strDbf;
};
TTriple ReadTriple(const std::string& stem);

// Sets the writer's static shape forms.
void SetShpFormats(int sprayFormat, int nonSprayFormat);

// Resets the writer's static shape forms to their defaults for the life of the guard.
struct TShpSettingsGuard {
    TShpSettingsGuard() { SetShpFormats(ESRI_SPRAY_POLYGONS, ESRI_NONSPRAY_POLYLINES); }
    ~TShpSettingsGuard() { SetShpFormats(ESRI_SPRAY_POLYGONS, ESRI_NONSPRAY_POLYLINES); }
    TShpSettingsGuard(const TShpSettingsGuard&) = delete;
    TShpSettingsGuard& operator=(const TShpSettingsGuard&) = delete;
};

// A boundary line of the given bound type through the points.
TFeatureLine* AddBoundary(TMapLayer& layer, const std::vector<tagLOC>& points, int boundType);

}  // namespace shp_write_test
