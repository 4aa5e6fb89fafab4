#pragma once
// Transforms from a file's coordinate reference system to WGS 84 latitude and longitude, made
// by PROJ. PROJ's shared library is loaded the first time a transform is asked for, so that a
// run that does not reproject never pays for it; one PROJ context serves the whole run, and
// each definition's transform is made once.

#include <string>

// What PROJ tells of a CRS: its name, and its EPSG code when PROJ knows one (0 otherwise).
struct TCrsName {
    std::string strName;
    int iEpsg = 0;
};

class TCrsTransform {
public:
    virtual ~TCrsTransform() = default;
    // Maps (x east, y north), in the CRS's own units, to latitude and longitude in degrees;
    // false when PROJ cannot.
    virtual bool Map(double x, double y, double& lat, double& lon) = 0;
    const TCrsName& GetName() const { return m_Name; }
    // True when the CRS is WGS 84 longitude and latitude itself: nothing to map.
    bool IsWgs84() const { return m_bWgs84; }

protected:
    TCrsName m_Name;
    bool m_bWgs84 = false;
};

// True when this tlgis was built with PROJ (whose library may still be missing at run time).
bool BuiltWithProj();

// The transform from the CRS that definition names (anything PROJ takes: "EPSG:32615", WKT of
// either dialect, a PROJ string) to WGS 84. Null with the reason in error, one line, when PROJ
// cannot be loaded, cannot read the definition, finds no geographic or projected CRS in it, or
// knows no way from its datum to WGS 84 but a ballpark one. The transform lasts for the run.
TCrsTransform* GetCrsTransform(const std::string& definition, std::string& error);

// The function the library's coordinate-transform hook takes, with a TCrsTransform as its data.
bool MapThroughCrsTransform(void* transform, double x, double y, double* lat, double* lon);
