#include "gis/shp/swath_runs.h"

#include <cmath>
#include "platform/units.h"

namespace {
constexpr double kMetresPerDegree = 111119.77;
constexpr double kMinSwathWidthM = 0.1;
constexpr double kMaxTurnDeg = 45.0;
constexpr double kCrossTolerance = 1e-9;

bool NearZeroOrOne(double v) {
    return std::fabs(v) < kCrossTolerance || std::fabs(v - 1.0) < kCrossTolerance;
}

double SquaredMove(const tagLOC& a, const tagLOC& b) {
    const double dLat = a.dLat - b.dLat;
    const double dLon = a.dLon - b.dLon;
    return dLat * dLat + dLon * dLon;
}
}  // namespace

double HeadingBetween(double lat0, double lon0, double lat1, double lon1) {
    const double heading =
        std::atan2(std::cos(lat0 * DEGREES_TO_RADIANS) * (lon1 - lon0), lat1 - lat0) * RADIANS_TO_DEGREES;
    return heading < 0.0 ? heading + 360.0 : heading;
}

bool SegmentsCross(const tagLOC& p0, const tagLOC& p1, const tagLOC& q0, const tagLOC& q1) {
    double d = (p1.dLat - p0.dLat) * (q1.dLon - q0.dLon) - (p1.dLon - p0.dLon) * (q1.dLat - q0.dLat);
    if (d == 0.0) d = kCrossTolerance;
    const double t =
        ((q1.dLon - q0.dLon) * (q0.dLat - p0.dLat) - (q1.dLat - q0.dLat) * (q0.dLon - p0.dLon)) / d;
    const double u =
        ((p1.dLon - p0.dLon) * (q0.dLat - p0.dLat) - (p1.dLat - p0.dLat) * (q0.dLon - p0.dLon)) / d;
    if ((t < 0.0 || t > 1.0) && !NearZeroOrOne(t)) return false;
    return NearZeroOrOne(u) || (u >= 0.0 && u <= 1.0);
}

double FlatDistance(double lat0, double lon0, double lat1, double lon1) {
    const double dLat = lat1 - lat0;
    const double dLon = lon1 - lon0;
    return std::sqrt(dLat * dLat + dLon * dLon) * kMetresPerDegree;
}

bool HasSwathWidth(const TFeatureSpray& spray) {
    if (spray.m_pRecs == nullptr || spray.m_iNumRecs < 2) return false;
    const tagSPRAYREC& s1 = spray.m_pRecs[1];
    // Written as a negated comparison so that NaN ends count as too narrow.
    return !(FlatDistance(s1.locSwathA.dLat, s1.locSwathA.dLon, s1.locSwathB.dLat, s1.locSwathB.dLon) <
             kMinSwathWidthM);
}

TSwathRunEnd FindSwathRun(TFeatureSpray& spray, int start, bool singleBlock, int& end) {
    tagSPRAYREC* recs = spray.m_pRecs;
    const int count = spray.m_iNumRecs;
    const tagSPRAYREC& first = recs[start];
    double reference = 0.0;
    int j = start + 1;
    while (j < count) {
        const tagSPRAYREC& before = recs[j - 1];
        tagSPRAYREC& cur = recs[j];
        const double heading =
            HeadingBetween(before.locPos.dLat, before.locPos.dLon, cur.locPos.dLat, cur.locPos.dLon);
        if (j == start + 1) {
            reference = heading;
        } else {
            double turn = heading - reference;
            if (turn > 180.0) turn -= 360.0;
            if (turn < -180.0) turn += 360.0;
            if (std::fabs(turn) > kMaxTurnDeg) break;
        }
        if (SegmentsCross(first.locSwathA, first.locSwathB, cur.locSwathA, cur.locSwathB)) {
            // The end that moved more is the outer one of the turn; the inner end is held back.
            if (SquaredMove(cur.locSwathB, first.locSwathB) > SquaredMove(cur.locSwathA, first.locSwathA))
                cur.locSwathA = first.locSwathA;
            else
                cur.locSwathB = first.locSwathB;
        }
        if (before.bySpray == 0) return SWATH_RUN_STOP;
        ++j;
        if (singleBlock) break;
    }
    end = j - 1;
    return SWATH_RUN_DONE;
}
