// Locations: offsets on the WGS84 ellipsoid, and the rules of extents.

#include <gtest/gtest.h>

#include <cmath>

#include "hostmap/geodesy.h"
#include "hostmap/loc.h"

namespace {

// Moving d metres and measuring back gives d, for latitudes of both hemispheres up to 70
// degrees, all bearings and field-sized distances.
TEST(LocOffset, DistanceBackWithinAMillimetre) {
    for (const double lat : {-70.0, -10.0, 0.0, 23.4, 70.0})
        for (const double bearing : {0.0, 45.0, 90.0, 212.5, 359.9})
            for (const double d : {0.001, 12.0, 1000.0, 5000.0}) {
                const TLoc from(lat, lat * 2.0 - 20.0), to = from.Offset(bearing, d);
                EXPECT_NEAR(GeoDistance(from.dLat, from.dLon, to.dLat, to.dLon), d, 0.001)
                    << "lat " << lat << " bearing " << bearing << " d " << d;
            }
}

TEST(LocRect, ExtentsAndIntersections) {
    TLocRect r, empty;
    r.InitExtents();
    empty.InitExtents();
    EXPECT_FALSE(r.Intersects(TLocRect(-180, 90, 180, -90))) << "an empty rectangle meets nothing";
    for (const tagLOC loc : {tagLOC{-34.0, 151.0}, {-33.0, 151.5}, {std::nan(""), std::nan("")}})
        r.ExpandExtents(loc);
    r.ExpandExtents(static_cast<const tagLOCRECT&>(empty));
    EXPECT_TRUE(r.dWest == 151.0 && r.dNorth == -33.0 && r.dEast == 151.5 && r.dSouth == -34.0)
        << "two points, a NaN and an empty rectangle";
    empty.ExpandExtents(static_cast<const tagLOCRECT&>(r));
    EXPECT_TRUE(empty.dWest == 151.0 && empty.dSouth == -34.0) << "an empty rectangle takes the other";

    const TLocRect field(10, 5, 11, 4);  // west, north, east, south
    for (const auto& [other, hit] : {std::pair{TLocRect(11, 5, 12, 4), true},
                                     {TLocRect(11.01, 5, 12, 4), false},
                                     {TLocRect(10, 3.9, 11, 3), false},
                                     {TLocRect(9, 6, 10, 5), true}})
        EXPECT_TRUE(field.Intersects(other) == hit && other.Intersects(field) == hit)
            << other.dWest << " " << other.dNorth;
}

}  // namespace
