#include <tl_gis/gis/utm.h>

#include <cmath>
#include "platform/units.h"

CUtm::CUtm()
    : m_dA(WGS84_SEMI_MAJOR_AXIS_M),
      m_dE2(0.0),
      m_dK0(0.9996),
      m_dFalseEasting(500000.0),
      m_dA0(0.99832429843),
      m_dA2(0.002514607112),
      m_dA4(2.6391109491e-06),
      m_dA6(3.4466482108e-09),
      m_dA8(4.8266084519e-12) {
    const double b = m_dA * (1.0 - 1.0 / WGS84_INVERSE_FLATTENING);
    m_dE2 = 1.0 - (b * b) / (m_dA * m_dA);
}

void CUtm::LatLonToUtm(tagLOC loc) {
    const double falseNorthing = m_bSouth ? 10000000.0 : 0.0;
    const double phi = loc.dLat * DEGREES_TO_RADIANS;
    const double w = (loc.dLon - m_dCentralMeridian) * DEGREES_TO_RADIANS;

    const double s = std::sin(phi);
    const double c = std::cos(phi);
    // The multiple angles of the meridian arc from one sine and cosine: area measurement
    // projects every vertex, and four more sines would double its cost.
    const double sin2 = 2.0 * s * c, cos2 = 1.0 - 2.0 * s * s;
    const double sin4 = 2.0 * sin2 * cos2, cos4 = 1.0 - 2.0 * sin2 * sin2;
    const double sin6 = sin4 * cos2 + cos4 * sin2, sin8 = 2.0 * sin4 * cos4;
    const double m = m_dA * (m_dA0 * phi - m_dA2 * sin2 + m_dA4 * sin4 - m_dA6 * sin6 + m_dA8 * sin8);
    const double t = s / c;
    const double den = 1.0 - m_dE2 * s * s;
    const double root = std::sqrt(den);
    const double nu = m_dA / root;
    const double rho = m_dA * (1.0 - m_dE2) / (den * root);
    const double psi = nu / rho;

    // Powers reused by the terms.
    const double c2 = c * c, c3 = c2 * c, c5 = c3 * c2, c7 = c5 * c2;
    const double w2 = w * w, w3 = w2 * w, w4 = w2 * w2, w5 = w4 * w, w6 = w4 * w2, w7 = w6 * w, w8 = w4 * w4;
    const double t2 = t * t, t4 = t2 * t2, t6 = t4 * t2;
    const double psi2 = psi * psi, psi3 = psi2 * psi, psi4 = psi2 * psi2;

    const double north = m + (w2 / 2) * nu * s * c + (w4 / 24) * nu * s * c3 * (4 * psi2 + psi - t2) +
                         (w6 / 720) * nu * s * c5 *
                             (8 * psi4 * (11 - 24 * t2) - 28 * psi3 * (1 - 6 * t2) + psi2 * (1 - 32 * t2) -
                              2 * psi * t2 + t4) +
                         (w8 / 40320) * nu * s * c7 * (1385 - 3111 * t2 + 543 * t4 - t6);
    const double east =
        w * nu * c + (w3 / 6) * nu * c3 * (psi - t2) +
        (w5 / 120) * nu * c5 * (4 * psi3 * (1 - 6 * t2) + psi2 * (1 + 8 * t2) - 2 * psi * t2 + t4) +
        (w7 / 5040) * nu * c7 * (61 - 479 * t2 + 179 * t4 - t6);

    m_dNorthing = m_dK0 * north + falseNorthing;
    m_dEasting = m_dK0 * east + m_dFalseEasting;
}
