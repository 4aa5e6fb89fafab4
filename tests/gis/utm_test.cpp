// CUtm against the standard WGS84 UTM grid.

#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "gis/utm.h"

namespace {

// Expected grid values from PROJ's cs2cs (Debian proj-bin 9.1.1), for example
//   echo "6 45" | cs2cs +proj=longlat +datum=WGS84 +to +proj=utm +zone=31 +datum=WGS84 -f %.4f
//   echo "151.2 -33.8" | cs2cs +proj=longlat +datum=WGS84 +to +proj=utm +zone=56 +south +datum=WGS84 -f %.4f
// All points lie within 3 degrees of their zone's central meridian (zone * 6 - 183).
TEST(Utm, MatchesTheGridToTheCentimetre) {
    struct TCase {
        int zone;
        bool south;
        double lat, lon;
        double easting, northing;
    };
    const std::vector<TCase> cases = {
        {31, false, 45, 6, 736446.0261, 4987329.5047},
        {31, false, 45, 0, 263553.9739, 4987329.5047},
        {31, false, 45, 3, 500000.0000, 4982950.4002},
        {31, false, 0, 3, 500000.0000, 0.0000},
        {31, false, 0.5, 5.5, 778265.7783, 55318.0400},
        {31, false, 10, 1, 280766.8612, 1106077.1297},
        {31, false, 30, 5.9, 779758.4451, 3322327.2251},
        {31, false, 52.5, 0.1, 303160.8098, 5820605.5421},
        {31, false, 60, 4.5, 583661.7469, 6652359.6819},
        {31, false, 70, 5.9, 610660.4649, 7768505.4523},
        {31, false, 80, 0.2, 445740.2623, 8882891.7650},
        {14, false, 40, -97, 670725.4943, 4429672.9731},
        {14, false, 49.75, -101.5, 319914.3317, 5513834.6726},
        {56, true, -0.5, 151, 277412.9863, 9944701.0509},
        {56, true, -10, 153, 500000.0000, 8894587.5087},
        {56, true, -33.8, 151.2, 333374.8157, 6258562.9611},
        {56, true, -45, 155.9, 728564.4859, 5012957.6934},
        {56, true, -60, 150.1, 338279.2491, 3345043.2801},
        {56, true, -70, 154.5, 557251.8900, 2233422.5853},
        {19, true, -23.5, -70.2, 377473.6339, 7400616.9416},
        // On the central meridian the easting is exact; the south flag alone adds the false northing.
        {31, true, 0, 3, 500000.0000, 10000000.0000},
        {1, false, 45, -177, 500000.0000, 4982950.4002},
    };
    CUtm utm;
    for (const TCase& c : cases) {
        utm.m_dCentralMeridian = c.zone * 6.0 - 183.0;
        utm.m_bSouth = c.south;
        utm.LatLonToUtm(tagLOC{c.lat, c.lon});
        EXPECT_NEAR(utm.m_dEasting, c.easting, 0.01) << "zone " << c.zone << " at " << c.lat << ", " << c.lon;
        EXPECT_NEAR(utm.m_dNorthing, c.northing, 0.01)
            << "zone " << c.zone << " at " << c.lat << ", " << c.lon;
    }
}

// The hemisphere is decided at every call: the same object projects north after south.
TEST(Utm, HemisphereAtEveryCall) {
    CUtm utm;
    utm.m_dCentralMeridian = 3.0;
    for (const auto& [south, northing] : {std::pair{1, 14987329.5047}, {0, 4987329.5047}}) {
        utm.m_bSouth = south;
        utm.LatLonToUtm(tagLOC{45.0, 6.0});
        EXPECT_NEAR(utm.m_dNorthing, northing, 0.01) << south;
    }
}

// Points mirrored across the central meridian mirror their eastings and share their northing.
TEST(Utm, SymmetricAboutTheCentralMeridian) {
    CUtm utm;
    utm.m_dCentralMeridian = 9.0;
    utm.m_bSouth = 0;
    for (const double lat : {1.0, 33.3, 66.6})
        for (const double offset : {0.25, 1.5, 2.99}) {
            utm.LatLonToUtm(tagLOC{lat, 9.0 + offset});
            const double east = utm.m_dEasting, north = utm.m_dNorthing;
            utm.LatLonToUtm(tagLOC{lat, 9.0 - offset});
            EXPECT_NEAR(east - 500000.0, 500000.0 - utm.m_dEasting, 1e-6) << lat << " " << offset;
            EXPECT_NEAR(north, utm.m_dNorthing, 1e-6) << lat << " " << offset;
        }
}

}  // namespace
