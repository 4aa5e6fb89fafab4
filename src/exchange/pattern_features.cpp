#include "pattern_features.h"

#include <cmath>

#include <tl_gis/platform/numbers.h>

namespace {
constexpr const char* kLetters = "ABCDEFGHIJKLMNOPQR";

std::string PointProperty(const char* what, int index) {
    return std::string(what) + "_" + kLetters[index];
}

TExchangeFeature PatternFeature(const TFeaturePattern& pattern, const char* kind) {
    TExchangeFeature feature;
    TProperties& p = feature.Properties;
    const char* keyword = GetPatternKindKeyword(pattern.m_iKind);
    p.emplace_back("id", TPropertyValue::Text(pattern.m_strId));
    p.emplace_back("kind", TPropertyValue::Text(kind));
    p.emplace_back("pattern_kind", TPropertyValue::Text(keyword != nullptr ? keyword : ""));
    p.emplace_back("direction", TPropertyValue::Text(pattern.m_iDirection == RIGHT ? "RIGHT" : "LEFT"));
    p.emplace_back("swath_width_m", TPropertyValue::Number(pattern.m_dSwathWidth));
    p.emplace_back("field_width_m", TPropertyValue::Number(pattern.m_dFieldWidth));
    p.emplace_back("offset_m", TPropertyValue::Number(pattern.m_dOffset));
    p.emplace_back("ab_lines", TPropertyValue::Number(pattern.m_iAbLines));
    feature.strTitle = pattern.m_strId;
    feature.strDescription = std::string(keyword != nullptr ? keyword : "") + " pattern, swath " +
                             FormatRoundTrip(pattern.m_dSwathWidth) + " m, " +
                             (pattern.m_iDirection == RIGHT ? "right" : "left");
    feature.eStyle = STYLE_AB_LINE;
    return feature;
}

// The feature of the points of the given indexes: a line for two, a point for one.
TExchangeFeature PointsFeature(const TFeaturePattern& pattern, std::initializer_list<int> indexes) {
    TExchangeFeature feature = PatternFeature(pattern, KIND_PATTERN);
    TExchangeGeometry geometry{indexes.size() == 2 ? GEOMETRY_LINE : GEOMETRY_POINT, {{}}};
    std::string letters;
    for (int i : indexes) {
        geometry.Parts[0].push_back(pattern.m_aPoint[i].m_Loc);
        letters += kLetters[i];
    }
    feature.Geometries.push_back(std::move(geometry));
    feature.Properties.emplace_back("points", TPropertyValue::Text(letters));
    for (int i : indexes) {
        feature.Properties.emplace_back(PointProperty("name", i),
                                        TPropertyValue::Text(pattern.m_aPoint[i].m_strName));
        feature.Properties.emplace_back(PointProperty("symbol", i),
                                        TPropertyValue::Number(pattern.m_aPoint[i].GetLowBits()));
    }
    return feature;
}

// Degrees clockwise from north of the way from a to b, latitude and longitude taken as a plane
// with the longitude shrunk by the cosine of a's latitude.
double Bearing(const tagLOC& a, const tagLOC& b) {
    constexpr double kDegrees = 57.295779513082195;
    return std::atan2(std::cos(a.dLat / kDegrees) * (b.dLon - a.dLon), b.dLat - a.dLat) * kDegrees;
}

tagLOC Beside(const tagLOC& at, double bearing, double metres) {
    return metres >= 0.0 ? TLoc(at).Offset(bearing, metres) : TLoc(at).Offset(bearing + 180.0, -metres);
}

// The swath lines that the map view draws beside the AB line from a to b: one for each index of
// the pattern's range, shifted by the offset; line 0 of a pattern without offset is the AB line.
void AppendSwathLines(const TFeaturePattern& pattern, int abLine, const tagLOC& a, const tagLOC& b,
                      std::vector<TExchangeFeature>& out) {
    const double side = Bearing(a, b) + (pattern.m_iDirection == RIGHT ? 90.0 : -90.0);
    int first = 0;
    int end = 0;
    pattern.GetSwathLineRange(first, end);
    for (int i = first; i < end; ++i) {
        if (i == 0 && pattern.m_dOffset == 0.0) continue;
        const double metres = pattern.m_dOffset + i * pattern.m_dSwathWidth;
        TExchangeFeature feature = PatternFeature(pattern, KIND_SWATH_LINE);
        feature.Properties.emplace_back("ab_line", TPropertyValue::Number(abLine));
        feature.Properties.emplace_back("swath_index", TPropertyValue::Number(i));
        feature.Geometries.push_back({GEOMETRY_LINE, {{Beside(a, side, metres), Beside(b, side, metres)}}});
        feature.eStyle = STYLE_SWATH_LINE;
        feature.strTitle.clear();
        feature.strDescription = "Swath line " + std::to_string(i) + " of AB line " + std::to_string(abLine);
        out.push_back(std::move(feature));
    }
}

int KindFromKeyword(const std::string& keyword) {
    for (int kind = BACK_TO_BACK; kind <= QUICKTRACK_X; ++kind)
        if (EqualsNoCase(keyword, GetPatternKindKeyword(kind))) return kind;
    return BACK_TO_BACK;
}

double NumberOr(const TProperties& p, const char* name, double fallback) {
    double number = 0.0;
    const TPropertyValue* v = FindProperty(p, name);
    return v != nullptr && v->AsNumber(number) ? number : fallback;
}

// The letters a feature's positions stand for: its points property, else A and B, or the
// letters of its ab_line.
std::string LettersOf(const TExchangeFeature& feature) {
    if (const TPropertyValue* v = FindProperty(feature.Properties, "points")) return v->AsText();
    const int line = static_cast<int>(NumberOr(feature.Properties, "ab_line", 1.0));
    if (line < 1 || line > PATTERN_MAX_AB_LINES) return "AB";
    return std::string(1, kLetters[2 * line - 2]) + kLetters[2 * line - 1];
}

int LetterIndex(char letter) {
    if (letter >= 'a' && letter <= 'r') return letter - 'a';
    if (letter >= 'A' && letter <= 'R') return letter - 'A';
    return -1;
}

void SetSettings(TFeaturePattern& pattern, const TProperties& p, const std::string& id) {
    pattern.m_strId = id;
    if (const TPropertyValue* v = FindProperty(p, "pattern_kind"))
        pattern.m_iKind = KindFromKeyword(v->AsText());
    if (const TPropertyValue* v = FindProperty(p, "direction"))
        pattern.m_iDirection = EqualsNoCase(v->AsText(), "RIGHT") ? RIGHT : LEFT;
    pattern.m_dSwathWidth = NumberOr(p, "swath_width_m", pattern.m_dSwathWidth);
    pattern.m_dFieldWidth = NumberOr(p, "field_width_m", pattern.m_dFieldWidth);
    pattern.m_dOffset = NumberOr(p, "offset_m", pattern.m_dOffset);
    const double abLines = NumberOr(p, "ab_lines", pattern.m_iAbLines);
    if (abLines >= -1e9 && abLines <= 1e9) pattern.m_iAbLines = static_cast<int>(abLines);
}
}  // namespace

void AppendPatternFeatures(const TFeaturePattern& pattern, bool swathLines,
                           std::vector<TExchangeFeature>& out) {
    bool written[PATTERN_POINT_COUNT] = {};
    const auto valid = [&](int i) { return IsPatternPointValid(pattern.m_aPoint[i].m_Loc); };
    const std::size_t before = out.size();
    for (int first = 0; first < PATTERN_POINT_COUNT; first += 2) {
        if (!valid(first) || !valid(first + 1)) continue;
        written[first] = written[first + 1] = true;
        out.push_back(PointsFeature(pattern, {first, first + 1}));
        if (swathLines)
            AppendSwathLines(pattern, first / 2 + 1, pattern.m_aPoint[first].m_Loc,
                             pattern.m_aPoint[first + 1].m_Loc, out);
    }
    for (int i = 0; i < PATTERN_POINT_COUNT; ++i)
        if (!written[i] && valid(i)) out.push_back(PointsFeature(pattern, {i}));
    if (out.size() == before) out.push_back(PatternFeature(pattern, KIND_PATTERN));
}

bool TPatternGatherer::IsPatternFeature(const TProperties& properties) {
    const TPropertyValue* kind = FindProperty(properties, "kind");
    if (kind != nullptr && EqualsNoCase(kind->AsText(), KIND_PATTERN)) return true;
    return (kind == nullptr || kind->AsText().empty()) && FindProperty(properties, "pattern_kind") != nullptr;
}

std::unique_ptr<TFeaturePattern> TPatternGatherer::Add(const TExchangeFeature& feature,
                                                       const std::string& id) {
    const std::string letters = LettersOf(feature);
    bool another = m_pPattern == nullptr || m_pPattern->m_strId != id;
    for (char letter : letters) {
        const int index = LetterIndex(letter);
        if (index >= 0 && m_abSet[index]) another = true;
    }
    std::unique_ptr<TFeaturePattern> finished;
    if (another) {
        finished = Finish();
        m_pPattern = std::make_unique<TFeaturePattern>();
        SetSettings(*m_pPattern, feature.Properties, id);
    }
    // The positions of the first geometry stand for the letters in order.
    const std::vector<tagLOC>* positions = feature.Geometries.empty() || feature.Geometries[0].Parts.empty()
                                               ? nullptr
                                               : &feature.Geometries[0].Parts[0];
    for (std::size_t i = 0; positions != nullptr && i < letters.size() && i < positions->size(); ++i) {
        const int index = LetterIndex(letters[i]);
        if (index < 0) continue;
        TFeatureMarker& point = m_pPattern->m_aPoint[index];
        point.m_Loc = (*positions)[i];
        if (const TPropertyValue* v = FindProperty(feature.Properties, PointProperty("name", index)))
            point.m_strName = v->AsText();
        const double symbol = NumberOr(feature.Properties, PointProperty("symbol", index).c_str(), 0.0);
        if (symbol >= 0.0 && symbol <= 4095.0) point.SetLowBits(static_cast<int>(symbol));
        point.CalculateGeoExtents();
        m_abSet[index] = true;
    }
    return finished;
}

std::unique_ptr<TFeaturePattern> TPatternGatherer::Finish() {
    for (bool& set : m_abSet) set = false;
    if (m_pPattern != nullptr) m_pPattern->CalculateGeoExtents();
    return std::move(m_pPattern);
}
