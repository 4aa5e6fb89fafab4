#pragma once
// The test readers apply to each coordinate pair, and the question that lets the user stop an
// import of projected data.

#include <tl_gis/export.h>
#include <string>

enum TCoordinateClass {
    COORD_GEOGRAPHIC = 0,    // usable as latitude and longitude in degrees
    COORD_PROJECTED = 1,     // a value above 100000 in magnitude: metres or feet of a projection
    COORD_OUT_OF_RANGE = 2,  // neither
};

// first is the value read as latitude, second the one read as longitude.
TL_GIS_API int ClassifyCoordinate(double first, double second);

// Asks whether to stop importing a file whose coordinates look projected; source describes the
// file. Returns the button pressed: 6 (Yes: stop) or 7 (No: go on).
TL_GIS_API int PromptProjectedCoordinate(const char* source, double first, double second);

// The source description "<text 1010> <format> <text 1011>" the readers hand to the prompt,
// e.g. " DXF " as the format part.
TL_GIS_API std::string DescribeSourceForPrompt(const char* formatPart);
