#include <tl_gis/features/feature_pattern.h>

#include <cmath>
#include <new>

namespace {
const char* const kKindKeywords[] = {"BACK_TO_BACK",       "RACETRACK",         "QUICK",
                                     "REVERSE_RACETRACK",  "SQUEEZE",           "EXPAND",
                                     "MULTI_BACK_TO_BACK", "BACK_TO_BACK_SKIP", "QUICKTRACK_X"};
}  // namespace

const char* GetPatternKindKeyword(int kind) {
    if (kind < 0 || kind >= static_cast<int>(std::size(kKindKeywords))) return nullptr;
    return kKindKeywords[kind];
}

bool IsPatternPointValid(const tagLOC& loc) {
    const bool awayFromOrigin = std::fabs(loc.dLat) > 0.000001 || std::fabs(loc.dLon) > 0.000001;
    return awayFromOrigin && std::fabs(loc.dLat) < 90.0 && std::fabs(loc.dLon) < 360.0;
}

TFeaturePattern::TFeaturePattern() {
    m_dwType = ELEMENT_PATTERN;
    m_dwFlags |= ELEMENT_FLAG_PATTERN_A | ELEMENT_FLAG_PATTERN_B;
}

TFeaturePattern::TFeaturePattern(const TFeaturePattern& other) : TMapElement(other) {
    *this = other;
}

TFeaturePattern& TFeaturePattern::operator=(const TFeaturePattern& other) {
    if (this == &other) return *this;
    TMapElement::operator=(other);
    m_iKind = other.m_iKind;
    m_iDirection = other.m_iDirection;
    m_dSwathWidth = other.m_dSwathWidth;
    m_dFieldWidth = other.m_dFieldWidth;
    m_dOffset = other.m_dOffset;
    for (int i = 0; i < PATTERN_POINT_COUNT; ++i) m_aPoint[i] = other.m_aPoint[i];
    m_iAbLines = other.m_iAbLines;
    return *this;
}

TMapElement* TFeaturePattern::Clone() const {
    TFeaturePattern* copy = new (std::nothrow) TFeaturePattern;
    if (copy != nullptr) *copy = *this;
    return copy;
}

bool TFeaturePattern::IsIn(const tagLOCRECT& rect) const {
    return IsSegmentInRect(m_aPoint[0].m_Loc, m_aPoint[1].m_Loc, rect);
}

bool TFeaturePattern::IsPointParticipating(int index) const {
    if (index < 0 || index >= PATTERN_POINT_COUNT) return false;
    if (index == 2) {
        switch (m_iKind) {
            case RACETRACK:
            case QUICK:
            case REVERSE_RACETRACK:
            case SQUEEZE:
            case QUICKTRACK_X:
                return true;
            case MULTI_BACK_TO_BACK:
                return m_iAbLines >= 2;
            default:
                return false;
        }
    }
    // A, B belong to AB line 1, D to line 2, E and F to line 3 and so on.
    const int line = index / 2 + 1;
    return m_iAbLines >= line;
}

void TFeaturePattern::CalculateGeoExtents() {
    TLocRect extents;
    extents.InitExtents();
    if (IncludeInExtents()) {
        for (int i = 0; i < PATTERN_POINT_COUNT; ++i)
            if (IsPointParticipating(i) && IsPatternPointValid(m_aPoint[i].m_Loc))
                extents.ExpandExtents(m_aPoint[i].m_Loc);
    }
    m_rcExtents = extents;
}

int TFeaturePattern::GetSwathLineCount() const {
    int count = 10;
    if (m_dSwathWidth > 1.0) {
        const double ratio = std::floor(m_dFieldWidth / m_dSwathWidth + 0.5);
        if (ratio >= 2.0 && ratio <= 49.0) count = static_cast<int>(ratio);
    }
    return count;
}

void TFeaturePattern::GetSwathLineRange(int& first, int& end) const {
    const int count = GetSwathLineCount();
    first = 0;
    end = count;
    if (m_iKind == REVERSE_RACETRACK || m_iKind == EXPAND) {
        const int half = (count + 1) / 2;
        first = -half;
        end = half;
    }
}
