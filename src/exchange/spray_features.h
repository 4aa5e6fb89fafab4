#pragma once
// Recorded spray as features: the swath polygons of each run, cut as the shapefile export cuts
// them, with the 22 columns of the metric spray table; and where a run starts without spraying,
// its flight path as a line with the non-spray table's columns, as the non-spray shapefile
// holds it. Written for display: the samples cannot be rebuilt from them.

#include <vector>

#include <tl_gis/features/feature_spray.h>
#include "exchange_feature.h"
#include "layer_export.h"

// The kind property values of these features, which readers pass over.
constexpr const char* KIND_SPRAY_SWATH = "spray_swath";
constexpr const char* KIND_NONSPRAY_PATH = "nonspray_path";

class TSprayExport {
public:
    explicit TSprayExport(const TExportSettings& settings) : m_Settings(settings) {}
    // Appends the run's swath polygons and non-spray path; numbers the rows of each table on
    // from the last run's.
    void Append(TFeatureSpray& spray, std::vector<TExchangeFeature>& out);
    // Gives every swath its rate class, by its applied rate among the applied rates of all.
    void ClassifyRates(std::vector<TExchangeFeature>& features) const;

private:
    const TExportSettings& m_Settings;
    long long m_lSegment = 0;
    long long m_lSample = 0;
};
