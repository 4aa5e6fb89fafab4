#pragma once
// Locations and rectangles in degrees.

#include <tl_gis/export.h>
#include <limits>

struct tagLOC {
    double dLat = 0.0;  // latitude, degrees north
    double dLon = 0.0;  // longitude, degrees east
};

struct tagLOCRECT {
    double dWest = 0.0;
    double dNorth = 0.0;
    double dEast = 0.0;
    double dSouth = 0.0;
};

class TL_GIS_API TLoc : public tagLOC {
public:
    TLoc() = default;
    TLoc(double lat, double lon) : tagLOC{lat, lon} {}
    TLoc(const tagLOC& loc) : tagLOC(loc) {}  // NOLINT: a plain location converts freely

    // The location reached by moving distance metres on the given bearing (degrees clockwise
    // from north) on the WGS84 ellipsoid. It is the exact inverse of GeoDistance's local
    // model, so GeoDistance(from, Offset(b, d)) gives d back.
    TLoc Offset(double bearingDeg, double distanceM) const;
};

class TL_GIS_API TLocRect : public tagLOCRECT {
public:
    TLocRect() = default;
    TLocRect(const tagLOCRECT& r) : tagLOCRECT(r) {}  // NOLINT
    TLocRect(double west, double north, double east, double south) : tagLOCRECT{west, north, east, south} {}

    // All four edges 0.
    void Clear() { *static_cast<tagLOCRECT*>(this) = tagLOCRECT{}; }
    // Empty extents: the first ExpandExtents makes the rectangle that point.
    void InitExtents();
    void ExpandExtents(const tagLOC& loc);
    void ExpandExtents(const tagLOCRECT& rect);
    // True after InitExtents while nothing has been added.
    bool IsEmpty() const { return dWest > dEast || dSouth > dNorth; }
    bool Contains(const tagLOC& loc) const;
    bool Intersects(const tagLOCRECT& rect) const;
};
