#include <tl_gis/hostmap/loc.h>

#include <algorithm>
#include <cmath>

#include <tl_gis/hostmap/geodesy.h>
#include "platform/units.h"

namespace {
constexpr double kSemiMajorOneMinusE2 = WGS84_SEMI_MAJOR_AXIS_M * (1.0 - WGS84_ECCENTRICITY_SQUARED);

// Metres per radian of latitude (meridian radius) and of longitude at a latitude in radians.
void Radii(double latRad, double& north, double& east) {
    const double s = std::sin(latRad);
    const double w = 1.0 - WGS84_ECCENTRICITY_SQUARED * s * s;
    const double r = std::sqrt(w);
    north = kSemiMajorOneMinusE2 / w / r;
    east = std::cos(latRad) * (WGS84_SEMI_MAJOR_AXIS_M / r);
}
}  // namespace

double GeoDistance(double lat1, double lon1, double lat2, double lon2) {
    const double m = (lat1 + lat2) * DEGREES_TO_RADIANS * 0.5;
    const double w = 1.0 - WGS84_ECCENTRICITY_SQUARED * std::sin(m) * std::sin(m);
    const double r = std::sqrt(w);
    const double north = kSemiMajorOneMinusE2 / w / r * (lat2 - lat1) * DEGREES_TO_RADIANS;
    const double east = std::cos(m) * (lon2 - lon1) * DEGREES_TO_RADIANS * (WGS84_SEMI_MAJOR_AXIS_M / r);
    return std::sqrt(east * east + north * north);
}

TLoc TLoc::Offset(double bearingDeg, double distanceM) const {
    const double b = bearingDeg * DEGREES_TO_RADIANS;
    const double dNorth = distanceM * std::cos(b);
    const double dEast = distanceM * std::sin(b);
    // The radii are taken at the mean latitude of both ends; a few fixed-point steps settle it.
    double lat2 = dLat;
    double northR = 0.0, eastR = 0.0;
    for (int i = 0; i < 8; ++i) {
        Radii((dLat + lat2) * 0.5 * DEGREES_TO_RADIANS, northR, eastR);
        const double next = dLat + dNorth / northR / DEGREES_TO_RADIANS;
        if (next == lat2) break;
        lat2 = next;
    }
    Radii((dLat + lat2) * 0.5 * DEGREES_TO_RADIANS, northR, eastR);
    const double lon2 = eastR != 0.0 ? dLon + dEast / eastR / DEGREES_TO_RADIANS : dLon;
    return TLoc(lat2, lon2);
}

void TLocRect::InitExtents() {
    constexpr double big = std::numeric_limits<double>::max();
    dWest = big;
    dEast = -big;
    dSouth = big;
    dNorth = -big;
}

void TLocRect::ExpandExtents(const tagLOC& loc) {
    dWest = std::min(dWest, loc.dLon);
    dEast = std::max(dEast, loc.dLon);
    dSouth = std::min(dSouth, loc.dLat);
    dNorth = std::max(dNorth, loc.dLat);
}

void TLocRect::ExpandExtents(const tagLOCRECT& rect) {
    const TLocRect other(rect);
    if (other.IsEmpty()) return;
    dWest = std::min(dWest, rect.dWest);
    dEast = std::max(dEast, rect.dEast);
    dSouth = std::min(dSouth, rect.dSouth);
    dNorth = std::max(dNorth, rect.dNorth);
}

bool TLocRect::Contains(const tagLOC& loc) const {
    return loc.dLon >= dWest && loc.dLon <= dEast && loc.dLat >= dSouth && loc.dLat <= dNorth;
}

bool TLocRect::Intersects(const tagLOCRECT& rect) const {
    if (IsEmpty() || TLocRect(rect).IsEmpty()) return false;
    return rect.dWest <= dEast && rect.dEast >= dWest && rect.dSouth <= dNorth && rect.dNorth >= dSouth;
}
