#include <tl_gis/hostmap/loc.h>

#include <algorithm>
#include <cmath>

#include <tl_gis/hostmap/geodesy.h>

namespace {
constexpr double kDegToRad = 0.017453292519943334;
constexpr double kE2 = 0.006694379990126406;
constexpr double kA = 6378137.0;
constexpr double kAOneMinusE2 = 6335439.3272929145;

// Metres per radian of latitude (meridian radius) and of longitude at a latitude in radians.
void Radii(double latRad, double& north, double& east) {
    const double s = std::sin(latRad);
    const double w = 1.0 - kE2 * s * s;
    const double r = std::sqrt(w);
    north = kAOneMinusE2 / w / r;
    east = std::cos(latRad) * (kA / r);
}
}  // namespace

double GeoDistance(double lat1, double lon1, double lat2, double lon2) {
    const double m = (lat1 + lat2) * kDegToRad * 0.5;
    const double w = 1.0 - kE2 * std::sin(m) * std::sin(m);
    const double r = std::sqrt(w);
    const double north = kAOneMinusE2 / w / r * (lat2 - lat1) * kDegToRad;
    const double east = std::cos(m) * (lon2 - lon1) * kDegToRad * (kA / r);
    return std::sqrt(east * east + north * north);
}

TLoc TLoc::Offset(double bearingDeg, double distanceM) const {
    const double b = bearingDeg * kDegToRad;
    const double dNorth = distanceM * std::cos(b);
    const double dEast = distanceM * std::sin(b);
    // The radii are taken at the mean latitude of both ends; a few fixed-point steps settle it.
    double lat2 = dLat;
    double northR = 0.0, eastR = 0.0;
    for (int i = 0; i < 8; ++i) {
        Radii((dLat + lat2) * 0.5 * kDegToRad, northR, eastR);
        const double next = dLat + dNorth / northR / kDegToRad;
        if (next == lat2) break;
        lat2 = next;
    }
    Radii((dLat + lat2) * 0.5 * kDegToRad, northR, eastR);
    const double lon2 = eastR != 0.0 ? dLon + dEast / eastR / kDegToRad : dLon;
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
