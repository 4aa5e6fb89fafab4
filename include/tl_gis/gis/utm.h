#pragma once
// Transverse Mercator projection of WGS84 latitude and longitude with the UTM parameters
// (Redfearn's series), used to measure polygon areas in metres.

#include <tl_gis/export.h>
#include <tl_gis/hostmap/loc.h>

class TL_GIS_API CUtm {
public:
    CUtm();
    virtual ~CUtm() = default;

    // Projects the location and stores m_dNorthing and m_dEasting.
    virtual void LatLonToUtm(tagLOC loc);

    double m_dCentralMeridian = 0.0;  // degrees; set by the caller
    int m_bSouth = 0;                 // southern hemisphere: false northing 10,000,000 m
    double m_dNorthing = 0.0;
    double m_dEasting = 0.0;

private:
    double m_dA;
    double m_dE2;
    double m_dK0;
    double m_dFalseEasting;
    double m_dA0, m_dA2, m_dA4, m_dA6, m_dA8;
};
