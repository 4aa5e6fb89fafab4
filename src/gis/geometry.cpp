#include <tl_gis/gis/geometry.h>

#include <cmath>
#include <memory>

#include <tl_gis/gis/utm.h>

tagLOC ComputeCentroid(const tagLOC* points, int count) {
    if (points == nullptr || count < 3) return {0.0, 0.0};
    const tagLOC& p0 = points[0];
    double total = 0.0, sumLat = 0.0, sumLon = 0.0;
    for (int i = 1; i <= count - 2; ++i) {
        const tagLOC& a = points[i];
        const tagLOC& b = points[i + 1];
        const double area =
            ((b.dLat - p0.dLat) * (a.dLon - p0.dLon) - (a.dLat - p0.dLat) * (b.dLon - p0.dLon)) / 2.0;
        if (area == 0.0) continue;
        total += area;
        sumLat += area * (p0.dLat + a.dLat + b.dLat) / 3.0;
        sumLon += area * (p0.dLon + a.dLon + b.dLon) / 3.0;
    }
    if (total == 0.0) return {sumLat, sumLon};
    return {sumLat / total, sumLon / total};
}

double ComputePolygonArea(const tagLOC* points, int count) {
    if (points == nullptr || count < 3) return 0.0;
    CUtm utm;
    // Zone of the second vertex; a longitude that is no number or far out of range must not
    // reach the integer conversion (the area is meaningless then anyway).
    const double zoneValue = (points[1].dLon + 180.0) / 6.0 + 1.0;
    const int zone =
        std::isfinite(zoneValue) && std::fabs(zoneValue) < 1.0e6 ? static_cast<int>(zoneValue) : 31;
    utm.m_dCentralMeridian = zone * 6.0 - 183.0;
    utm.m_bSouth = points[1].dLat < 0.0;
    utm.LatLonToUtm(points[0]);
    const double e0 = utm.m_dEasting, n0 = utm.m_dNorthing;
    utm.LatLonToUtm(points[1]);
    double ePrev = utm.m_dEasting, nPrev = utm.m_dNorthing;
    double sum = 0.0;
    for (int i = 2; i < count; ++i) {
        utm.LatLonToUtm(points[i]);
        const double e = utm.m_dEasting, n = utm.m_dNorthing;
        sum += (ePrev - e0) * (n - n0) - (e - e0) * (nPrev - n0);
        ePrev = e;
        nPrev = n;
    }
    const double area = std::fabs(sum) / 2.0;
    return area - area * 0.18 / 100.0;
}

double GetFeatureArea(const TFeatureLine* line) {
    return line != nullptr ? ComputePolygonArea(line->m_pPoints, line->m_iNumPoints) : 0.0;
}

bool IsRingClockwise(const tagLOC* points, int count) {
    if (points == nullptr || count < 3) return false;
    TLocRect extents;
    extents.InitExtents();
    for (int i = 0; i < count; ++i) extents.ExpandExtents(points[i]);
    int i = 0;
    while (i < count && points[i].dLon != extents.dEast) ++i;
    if (i == count) return false;  // only with NaN longitudes
    // The closing vertex stands for the first; an unclosed ring wraps around.
    const bool closed = points[count - 1].dLat == points[0].dLat && points[count - 1].dLon == points[0].dLon;
    int cur = i, prev = i - 1, next = i + 1 < count ? i + 1 : 0;
    if (i == 0) {
        cur = closed ? count - 1 : 0;
        prev = closed ? count - 2 : count - 1;
    }
    const double dN = points[next].dLat - points[cur].dLat;
    const double dP = points[prev].dLat - points[cur].dLat;
    if (dN > -1e-10 && dP < 1e-10) return false;
    if (dP > -1e-10 && dN < 1e-10) return true;
    return !(dN > dP);
}
