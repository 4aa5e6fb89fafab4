#pragma once
// Plane and projected geometry of imported rings and lines.

#include <tl_gis/export.h>
#include <tl_gis/hostmap/features.h>

// Area centroid of a ring by a fan of triangles from the first vertex, latitude and longitude
// taken as plane coordinates; (0, 0) for fewer than 3 vertices.
TL_GIS_API tagLOC ComputeCentroid(const tagLOC* points, int count);
// Area of a ring in square metres, measured in the UTM zone of its second vertex and reduced
// by 0.18 percent; 0 for fewer than 3 vertices.
TL_GIS_API double ComputePolygonArea(const tagLOC* points, int count);
TL_GIS_API double GetFeatureArea(const TFeatureLine* line);
// True for a ring that runs clockwise with north up; count includes a closing vertex equal to
// the first when there is one. False for fewer than 3 vertices.
TL_GIS_API bool IsRingClockwise(const tagLOC* points, int count);
