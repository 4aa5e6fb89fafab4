#include "spray_features.h"

#include <algorithm>
#include <cmath>

#include <tl_gis/gis/shp/spray_table.h>
#include <tl_gis/platform/numbers.h>

namespace {
// The applied-rate column of the metric table.
constexpr const char* kAppliedRate = "ASRATE_LTRS";

void AddCells(TProperties& properties, const std::vector<TSprayTableCell>& cells) {
    for (const TSprayTableCell& cell : cells) {
        if (!cell.bNumber)
            properties.emplace_back(cell.pszColumn, TPropertyValue::Text(cell.strText));
        else if (cell.bKnown && std::isfinite(cell.dNumber))
            properties.emplace_back(cell.pszColumn, TPropertyValue::Number(cell.dNumber, cell.iDecimals));
        else
            properties.emplace_back(cell.pszColumn, TPropertyValue{});
    }
}

TExchangeFeature SprayFeature(const char* kind, const TFeatureSpray& spray, TFeatureStyle style) {
    TExchangeFeature feature;
    feature.eStyle = style;
    feature.Properties.emplace_back("kind", TPropertyValue::Text(kind));
    feature.Properties.emplace_back("spray_id", TPropertyValue::Text(spray.m_strId));
    return feature;
}
}  // namespace

void TSprayExport::Append(TFeatureSpray& spray, std::vector<TExchangeFeature>& out) {
    if (spray.m_pRecs == nullptr || spray.m_iNumRecs <= 0) return;
    TSwathStretches stretches(spray, m_Settings.bSingleBlock);
    TSprayTableRow row;
    int first = 0;
    int last = 0;
    while (stretches.Next(first, last)) {
        std::vector<tagLOC> ring;
        for (int i = 0; i < TSwathStretches::RingPointCount(first, last); ++i)
            ring.push_back(TSwathStretches::RingPoint(spray, first, last, i));
        // As in the shapefile export, a stretch with an end that is no number is not written.
        if (!std::all_of(ring.begin(), ring.end(), IsFinitePosition)) continue;
        SetSwathRowValues(spray, first, last, TSwathStretches::RingBox(spray, first, last), m_Settings.Source,
                          row);
        TExchangeFeature feature = SprayFeature(KIND_SPRAY_SWATH, spray, STYLE_SPRAY);
        feature.Geometries.push_back({GEOMETRY_POLYGON, {std::move(ring)}});
        AddCells(feature.Properties, GetMetricSprayTableCells(row, ++m_lSegment));
        feature.strTitle = "Swath " + std::to_string(m_lSegment);
        if (row.bHasRates && row.Steps.bKnown)
            feature.strDescription = "Applied " + FormatFixed(row.dActualRate, 1) + " L/ha (target " +
                                     FormatFixed(row.dTargetRate, 1) + " L/ha) over " +
                                     FormatFixed(row.Steps.dArea, 3) + " ha";
        out.push_back(std::move(feature));
    }
    // The system's non-spray path: every position of a run whose first sample is not spraying.
    if (spray.m_iNumRecs < 2 || spray.m_pRecs[0].bySpray != 0) return;
    std::vector<tagLOC> path;
    for (int i = 0; i < spray.m_iNumRecs; ++i)
        if (IsFinitePosition(spray.m_pRecs[i].locPos)) path.push_back(spray.m_pRecs[i].locPos);
    if (path.size() < 2) return;
    TExchangeFeature feature = SprayFeature(KIND_NONSPRAY_PATH, spray, STYLE_NONSPRAY);
    feature.Geometries.push_back({GEOMETRY_LINE, {std::move(path)}});
    AddCells(feature.Properties, GetMetricNonSprayTableCells(spray.m_pRecs[0], ++m_lSample));
    feature.strTitle = "Not spraying " + std::to_string(m_lSample);
    feature.strDescription = "Flown without spraying";
    out.push_back(std::move(feature));
}

void TSprayExport::ClassifyRates(std::vector<TExchangeFeature>& features) const {
    double low = HUGE_VAL;
    double high = -HUGE_VAL;
    for (const TExchangeFeature& f : features) {
        double rate = 0.0;
        if (const TPropertyValue* v = FindProperty(f.Properties, kAppliedRate);
            v != nullptr && v->AsNumber(rate)) {
            low = std::min(low, rate);
            high = std::max(high, rate);
        }
    }
    for (TExchangeFeature& f : features) {
        double rate = 0.0;
        const TPropertyValue* v = FindProperty(f.Properties, kAppliedRate);
        if (f.eStyle != STYLE_SPRAY || v == nullptr || !v->AsNumber(rate) || !(high > low)) continue;
        const int rateClass = static_cast<int>((rate - low) / (high - low) * SPRAY_RATE_CLASSES);
        f.iRateClass = std::clamp(rateClass, 0, SPRAY_RATE_CLASSES - 1);
    }
}
