#pragma once
// --projected reproject: each file's coordinates are brought to WGS 84 latitude and longitude
// through PROJ while the library reads them, from the CRS the file names (a shapefile's .prj,
// a MIF header's CoordSys) or the one --crs gives.

#include <memory>
#include <string>

#include <tl_gis/gis/load_report.h>
#include "options.h"

// The CRS a load under reproject used, as info shows it.
struct TCrsUse {
    bool bReproject = false;  // the load ran under --projected reproject
    std::string strName;      // empty when the file named none and --crs gave none
    int iEpsg = 0;            // 0 when PROJ knows no EPSG code for it
    std::string strFrom;      // "field.prj", "field.mif" or "--crs"
};

class TScopedCoordinateTransform;

// The reprojection of one load: set up before it, judged after it.
class TFileReprojection {
public:
    TFileReprojection();
    ~TFileReprojection();
    TFileReprojection(const TFileReprojection&) = delete;
    TFileReprojection& operator=(const TFileReprojection&) = delete;

    // Finds the CRS of the file and installs the transform from it in the library until this
    // object goes. False with one line in error, naming the file and what was not understood,
    // when the CRS cannot be read or PROJ cannot be used.
    bool Prepare(const std::string& path, int type, const TToolOptions& options, std::string& error);
    // After the load: false with one line in error when the coordinates looked projected and
    // nothing named their CRS, or when pairs could not be mapped.
    bool Judge(const std::string& path, const TLoadReport& report, std::string& error) const;
    const TCrsUse& GetUse() const { return m_Use; }

private:
    TCrsUse m_Use;
    std::unique_ptr<TScopedCoordinateTransform> m_pHook;
};
