#include "gis/dxf/dxf_curves.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "platform/units.h"

namespace {

// The most metres a degree of latitude or longitude spans anywhere: a degree of latitude at
// the poles. A step of d degrees in any direction of the drawing is at most d times this long.
const double kMaxMetresPerDegree =
    WGS84_SEMI_MAJOR_AXIS_M / std::sqrt(1.0 - WGS84_ECCENTRICITY_SQUARED) * DEGREES_TO_RADIANS;

constexpr double kTwoPi = 2.0 * std::numbers::pi;

}  // namespace

int DxfArcSegments(double radius, double sweep) {
    const double r = std::fabs(radius), a = std::fabs(sweep);
    if (!std::isfinite(r) || !std::isfinite(a) || r == 0.0 || a == 0.0) return 1;
    double segments = std::ceil(a / (DXF_CURVE_STEP_DEGREES * DEGREES_TO_RADIANS));
    // A chord across the angle s of arc strays r (1 - cos(s / 2)) = 2 r sin^2(s / 4) from it; in
    // metres that must stay within the tolerance.
    const double q = DXF_CURVE_TOLERANCE_M / (2.0 * r * kMaxMetresPerDegree);
    if (q < 1.0) segments = std::max(segments, std::ceil(a / (4.0 * std::asin(std::sqrt(q)))));
    if (!(segments < DXF_CURVE_MAX_SEGMENTS)) return DXF_CURVE_MAX_SEGMENTS;
    return std::max(1, static_cast<int>(segments));
}

tagLOC TDxfArc::Vertex(int i) const {
    const double angle = dStart + dSweep * i / iSegments;
    return tagLOC{dCenterY + dRadius * std::sin(angle), dCenterX + dRadius * std::cos(angle)};
}

bool DxfBulgeArc(double x0, double y0, double x1, double y1, double bulge, TDxfArc& arc) {
    const double dx = x1 - x0, dy = y1 - y0;
    const double chord = std::hypot(dx, dy);
    if (!std::isfinite(bulge) || bulge == 0.0 || !std::isfinite(chord) || chord == 0.0) return false;
    // The included angle is 4 atan(bulge); the centre lies off the chord's midpoint, to its left
    // for a counter-clockwise arc under a half circle, at chord (1 - bulge^2) / (4 bulge).
    arc.dSweep = 4.0 * std::atan(bulge);
    arc.dRadius = std::fabs(chord * (1.0 + bulge * bulge) / (4.0 * bulge));
    arc.iSegments = DxfArcSegments(arc.dRadius, arc.dSweep);
    if (arc.iSegments < 2 || !std::isfinite(arc.dRadius)) return false;
    const double offset = (1.0 - bulge * bulge) / (4.0 * bulge);
    arc.dCenterX = (x0 + x1) / 2.0 - dy * offset;
    arc.dCenterY = (y0 + y1) / 2.0 + dx * offset;
    arc.dStart = std::atan2(y0 - arc.dCenterY, x0 - arc.dCenterX);
    return std::isfinite(arc.dCenterX) && std::isfinite(arc.dCenterY);
}

bool DxfCircleArc(double x, double y, double radius, double startDegrees, double endDegrees, bool whole,
                  TDxfArc& arc) {
    if (!std::isfinite(radius) || !(radius > 0.0) || !std::isfinite(x) || !std::isfinite(y)) return false;
    if (!whole && (!std::isfinite(startDegrees) || !std::isfinite(endDegrees))) return false;
    arc.dCenterX = x;
    arc.dCenterY = y;
    arc.dRadius = radius;
    arc.dStart = whole ? 0.0 : std::fmod(startDegrees, 360.0) * DEGREES_TO_RADIANS;
    double sweep = whole ? 360.0 : std::fmod(endDegrees - startDegrees, 360.0);
    if (sweep <= 0.0) sweep += 360.0;
    arc.dSweep = sweep * DEGREES_TO_RADIANS;
    if (whole) arc.dSweep = kTwoPi;
    arc.iSegments = DxfArcSegments(radius, arc.dSweep);
    return true;
}
