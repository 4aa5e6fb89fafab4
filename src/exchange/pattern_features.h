#pragma once
// Spray patterns as features, both ways. A pattern goes out as its AB lines (a line of two
// positions for each pair of valid points A-B, C-D, ... Q-R), each other valid point as a point,
// or one feature without geometry when it has no valid point; every feature carries the
// pattern's id and settings (pattern_kind, direction, swath_width_m, field_width_m, offset_m,
// ab_lines), the letters of its points and each point's name and symbol. Reading gathers the
// features of one pattern again: consecutive, of the same id, each adding letters not yet set.

#include <memory>
#include <string>
#include <vector>

#include <tl_gis/features/feature_pattern.h>
#include "exchange_feature.h"

constexpr const char* KIND_PATTERN = "pattern";
// The swath lines beside each AB line, written for the eye and passed over on reading.
constexpr const char* KIND_SWATH_LINE = "swath_line";

void AppendPatternFeatures(const TFeaturePattern& pattern, bool swathLines,
                           std::vector<TExchangeFeature>& out);

class TPatternGatherer {
public:
    // Whether a feature is a pattern's: of kind pattern, or with a pattern_kind property.
    static bool IsPatternFeature(const TProperties& properties);
    // Adds a pattern feature, by its id. A feature that starts another pattern hands back the
    // one gathered so far.
    std::unique_ptr<TFeaturePattern> Add(const TExchangeFeature& feature, const std::string& id);
    // The pattern gathered so far, if any.
    std::unique_ptr<TFeaturePattern> Finish();

private:
    std::unique_ptr<TFeaturePattern> m_pPattern;
    bool m_abSet[PATTERN_POINT_COUNT] = {};
};
