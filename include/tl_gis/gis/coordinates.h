#pragma once
// The test readers apply to each coordinate pair, the question that lets the user stop an
// import of projected data, and the transform a host may install to bring projected files in.

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

// Beyond the system's own behaviour, off by default: a transform that maps a coordinate pair as
// a file holds it (x east, y north, in the file's own units) to latitude and longitude in
// degrees, or returns false when it cannot. userData is the pointer given with it.
typedef bool (*TCoordinateTransform)(void* userData, double x, double y, double* lat, double* lon);

// Installs the transform (null, the default, removes it). While one is installed, the readers
// hand every coordinate pair through it before their degree tests; a pair it cannot map (false,
// or a result that is not a number) is refused as a pair outside the degree range and counted
// in the load report under a cause of its own. Process-wide, like the library's other settings.
TL_GIS_API void SetCoordinateTransform(TCoordinateTransform transform, void* userData);
// The installed transform (null for none) and, when userData is not null, its pointer.
TL_GIS_API TCoordinateTransform GetCoordinateTransform(void** userData = nullptr);

// Installs a transform for the life of the object and puts back the one before.
class TScopedCoordinateTransform {
public:
    TScopedCoordinateTransform(TCoordinateTransform transform, void* userData)
        : m_pfnPrevious(GetCoordinateTransform(&m_pPreviousData)) {
        SetCoordinateTransform(transform, userData);
    }
    ~TScopedCoordinateTransform() { SetCoordinateTransform(m_pfnPrevious, m_pPreviousData); }
    TScopedCoordinateTransform(const TScopedCoordinateTransform&) = delete;
    TScopedCoordinateTransform& operator=(const TScopedCoordinateTransform&) = delete;

private:
    void* m_pPreviousData = nullptr;
    TCoordinateTransform m_pfnPrevious;
};
