// CUtm against the standard WGS84 UTM grid.

#include <gtest/gtest.h>

#include <tl_gis/gis/utm.h>

namespace {

// Expected grid values from PROJ's cs2cs (Debian proj-bin 9.1.1), for example
//   echo "151.2 -33.8" | cs2cs +proj=longlat +datum=WGS84 +to +proj=utm +zone=56 +south +datum=WGS84 -f %.4f
// All points lie within 3 degrees of their zone's central meridian (zone * 6 - 183). One object
// projects them all, so a hemisphere kept from the previous point would show.
TEST(Utm, MatchesTheGridToTheCentimetre) {
    const struct {
        int zone;
        bool south;
        double lat, lon, easting, northing;
    } cases[] = {
        {31, false, 45, 6, 736446.0261, 4987329.5047},
        {31, false, 45, 0, 263553.9739, 4987329.5047},
        {31, false, 0, 3, 500000.0000, 0.0000},
        {31, true, 0, 3, 500000.0000, 10000000.0000},
        {31, false, 70, 5.9, 610660.4649, 7768505.4523},
        {56, true, -33.8, 151.2, 333374.8157, 6258562.9611},
        {56, true, -70, 154.5, 557251.8900, 2233422.5853},
        {1, false, 45, -177, 500000.0000, 4982950.4002},
    };
    CUtm utm;
    for (const auto& c : cases) {
        utm.m_dCentralMeridian = c.zone * 6.0 - 183.0;
        utm.m_bSouth = c.south;
        utm.LatLonToUtm(tagLOC{c.lat, c.lon});
        EXPECT_NEAR(utm.m_dEasting, c.easting, 0.01) << c.zone << ": " << c.lat << ", " << c.lon;
        EXPECT_NEAR(utm.m_dNorthing, c.northing, 0.01) << c.zone << ": " << c.lat << ", " << c.lon;
    }
}

}  // namespace
