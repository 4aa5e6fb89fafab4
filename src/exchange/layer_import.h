#pragma once
// Features into the layer, for the readers of both formats. Polygons give an inclusion boundary
// for the outer ring (or the bound its properties name) and an exclusion boundary for every hole;
// lines give open lines; points give markers when they have a name (or are of kind marker) and
// points otherwise. The id, value and name come from the id, value and name properties, or from
// the properties the host chose (TGisFile::s_strIdField, ...). Features of patterns are gathered
// into patterns; what the map model cannot carry is counted in the load report.

#include <string>

#include <tl_gis/gis/load_report.h>
#include <tl_gis/hostmap/map_layer.h>
#include "exchange_feature.h"
#include "pattern_features.h"

class TLayerImport {
public:
    // prompt names the file in the projected-coordinate question.
    TLayerImport(TMapLayer& layer, TLoadReport* report, std::string prompt);
    ~TLayerImport();
    TLayerImport(const TLayerImport&) = delete;
    TLayerImport& operator=(const TLayerImport&) = delete;

    // Adds the elements of the feature numbered place. False once the user has stopped the
    // import at the projected-coordinate question.
    bool Add(const TExchangeFeature& feature, long long place);
    // Adds the pattern still being gathered.
    void Finish();
    bool IsCancelled() const { return m_bCancelled; }
    // Counts a cause at a place, keeping a note for its first occurrence.
    void Skip(TLoadCause cause, long long place, const std::string& note = {});

private:
    struct TChosen;
    TChosen ChooseValues(const TExchangeFeature& feature) const;
    // Whether every position is latitude and longitude; counts (and asks about) the first that
    // is not. The feature is then left out.
    bool AreGeographic(const std::vector<tagLOC>& positions, long long place);
    void AddPoint(const tagLOC& loc, const TChosen& chosen);
    void AddLine(const std::vector<tagLOC>& positions, int kind, int bound, bool ring, const TChosen& chosen);
    void AddPattern(std::unique_ptr<TFeaturePattern> pattern);
    // Hands an element to the layer and counts it when the layer took it.
    void AddElement(TMapElement* element);
    // Counts an element that a call has added already.
    void CountAdded(const TMapElement* element);

    TMapLayer& m_Layer;
    TLoadReport* m_pReport;
    std::string m_strPrompt;
    TPatternGatherer m_Patterns;
    double m_dLayerValue;  // the layer's value before the load, given back at the end
    bool m_bCancelled = false;
};
