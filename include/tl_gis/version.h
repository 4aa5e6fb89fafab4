#pragma once
// The version of the library these headers belong to. The build reads it from here too.

#define TL_GIS_VERSION_MAJOR 1
#define TL_GIS_VERSION_MINOR 0
#define TL_GIS_VERSION_PATCH 0
#define TL_GIS_VERSION_STRING "1.0.0"
// One number that grows with every release: major * 10000 + minor * 100 + patch.
#define TL_GIS_VERSION (TL_GIS_VERSION_MAJOR * 10000 + TL_GIS_VERSION_MINOR * 100 + TL_GIS_VERSION_PATCH)
