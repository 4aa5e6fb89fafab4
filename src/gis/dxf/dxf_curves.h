#pragma once
// Curves of a drawing (polyline bulges, CIRCLE, ARC) as vertices. A drawing of geographic data
// holds degrees: the curve is the circle of the drawing's own x, y plane, and its vertices lie
// every 2 degrees of arc or closer, close enough that no chord strays more than 0.1 m from the
// curve anywhere on the earth.

#include <cstdint>

#include <tl_gis/hostmap/loc.h>

// Longest chord error allowed, metres.
constexpr double DXF_CURVE_TOLERANCE_M = 0.1;
// Widest step between curve vertices, degrees of arc.
constexpr double DXF_CURVE_STEP_DEGREES = 2.0;
// Most segments one curve is cut into: half-degree steps around a whole circle, which keep the
// tolerance for radii up to 10 km, beyond the scale of any field.
constexpr int DXF_CURVE_MAX_SEGMENTS = 720;

// The segments an arc of the radius (drawing units, degrees) and sweep (radians, either sign)
// is cut into: at least 1, at most DXF_CURVE_MAX_SEGMENTS; 1 for a radius or sweep that is no
// finite number.
int DxfArcSegments(double radius, double sweep);

// A circular arc of the drawing plane: centre (x, y), radius, start angle and signed sweep in
// radians (positive counter-clockwise), cut into segments.
struct TDxfArc {
    double dCenterX = 0.0, dCenterY = 0.0;
    double dRadius = 0.0;
    double dStart = 0.0;
    double dSweep = 0.0;
    int iSegments = 1;

    // Vertex i of 0..iSegments, as latitude (y) and longitude (x).
    tagLOC Vertex(int i) const;
};

// The arc of a polyline segment from (x0, y0) to (x1, y1) with the bulge of its first vertex
// (the tangent of a quarter of the included angle; positive counter-clockwise). False when the
// segment is straight: a bulge of 0, no number, or coincident ends.
bool DxfBulgeArc(double x0, double y0, double x1, double y1, double bulge, TDxfArc& arc);

// A CIRCLE (sweep 2 pi) or an ARC from the start to the end angle (degrees, counter-clockwise;
// equal angles give the whole circle). False for a radius that is not a positive finite number
// or angles that are no finite numbers.
bool DxfCircleArc(double x, double y, double radius, double startDegrees, double endDegrees, bool whole,
                  TDxfArc& arc);
