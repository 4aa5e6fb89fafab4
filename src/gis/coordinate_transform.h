#pragma once
// What the readers do with the host's coordinate transform (SetCoordinateTransform): one call
// where a pair is read, before the degree tests.

#include <cmath>

#include <tl_gis/gis/coordinates.h>

struct TCoordinateTransformHook {
    TCoordinateTransform pfnTransform = nullptr;
    void* pUserData = nullptr;
};
extern TCoordinateTransformHook g_CoordinateTransformHook;

// Maps the pair through the installed transform, in place. lat holds the value the file gives
// as latitude (north, y) and lon the one it gives as longitude (east, x). True when no
// transform is installed or it mapped the pair; false when it could not, and the pair is then
// not a number, so that every degree test refuses it as outside the degree range.
bool MapPairThroughTransform(double& lat, double& lon);
inline bool MapCoordinatePair(double& lat, double& lon) {
    return g_CoordinateTransformHook.pfnTransform == nullptr || MapPairThroughTransform(lat, lon);
}

// True for a pair MapCoordinatePair could not map: the readers count it under its own cause.
inline bool IsUnmappedPair(double lat, double lon) {
    return g_CoordinateTransformHook.pfnTransform != nullptr && (std::isnan(lat) || std::isnan(lon));
}
