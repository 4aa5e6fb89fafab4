#pragma once
// The coordinate system a MIF header names in its CoordSys clause, as a PROJ string.

#include <string>
#include <string_view>

// Maps a clause such as `CoordSys Earth Projection 8, 104, "m", -93, 0, 0.9996, 500000, 0`
// (a Bounds clause after it is ignored) to a PROJ string. The common forms are mapped:
// longitude/latitude (1), Lambert Conformal Conic (3, the State Plane zones that use it),
// Transverse Mercator (8, UTM and the other State Plane zones) and Albers (9); on WGS 84 (104),
// NAD 83 (74), NAD 27 (62), ETRS89 (115), GDA94 (116) and NZGD2000 (117); in m, km, cm, mm, ft,
// survey ft, yd, mi, in and nmi. Longitude/latitude on no datum ("Projection 1, 0", as the
// library writes) gives an empty string: the degrees are taken as they are. False when the
// clause is none of these or lacks parameters, with what was not understood in error.
bool MifCoordSysToProj(std::string_view clause, std::string& proj, std::string& error);
