// Which elements become rate polygons, and the rate statistics of header line 20.

#include <algorithm>
#include <cmath>

#include "gis/pmh/pmh_header.h"

const TFeatureLine* AsPmhPolygon(const TMapElement* element) {
    return dynamic_cast<const TFeatureLine*>(element);
}

void ComputePmhRateStatistics(TMapLayer& layer) {
    bool any = false;
    double min = 0.0, max = 0.0;
    for (const TMapElement* element : layer.m_Elements) {
        const TFeatureLine* polygon = AsPmhPolygon(element);
        if (polygon == nullptr) continue;
        const double rate = polygon->m_dValue;
        min = any ? std::min(min, rate) : rate;
        max = any ? std::max(max, rate) : rate;
        any = true;
    }
    // A map of one rate shows it against 0, so the rate scale has a span.
    if (std::fabs(min - max) < 0.0001) min = 0.0;
    layer.m_dRateMin = min;
    layer.m_dRateMax = max;
    layer.m_dRateMid = min + (max - min) * 0.5;
}
