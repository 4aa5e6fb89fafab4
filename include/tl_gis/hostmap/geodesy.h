#pragma once
// Distances on the WGS84 ellipsoid.

#include <tl_gis/export.h>
// Distance in metres between two positions given in degrees, from the meridian and normal
// radii of curvature at their mean latitude. Accurate for the short distances of a field.
TL_GIS_API double GeoDistance(double lat1, double lon1, double lat2, double lon2);
