// Locations: offsets and distances on the WGS84 ellipsoid, and the rules of extents.

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "hostmap/geodesy.h"
#include "hostmap/loc.h"

namespace {

// Moving d metres and measuring back gives d, over latitudes of both hemispheres, all
// bearings and field-sized distances.
TEST(LocOffset, DistanceBackWithinAMillimetre) {
    const double latitudes[] = {-70.0, -10.0, 0.0, 23.4, 61.7};
    const double bearings[] = {0.0, 45.0, 90.0, 212.5, 359.9};
    const double distances[] = {0.001, 12.0, 1000.0, 5000.0};
    for (const double lat : latitudes)
        for (const double bearing : bearings)
            for (const double d : distances) {
                const TLoc from(lat, lat * 2.0 - 20.0);
                const TLoc to = from.Offset(bearing, d);
                const double back = GeoDistance(from.dLat, from.dLon, to.dLat, to.dLon);
                EXPECT_NEAR(back, d, 0.001) << "lat " << lat << " bearing " << bearing << " d " << d;
            }
}

// GeoDistance against geodesic distances from PROJ's geod on WGS84, e.g.
//   echo "45 6 45.03 6.04" | geod +ellps=WGS84 -I -f %.6f   (distance in the third column)
// With the round trip above this also pins Offset to true distances.
TEST(GeoDistance, AgreesWithGeodesics) {
    struct TInverse {
        double lat1, lon1, lat2, lon2, distance;
    };
    const std::vector<TInverse> inverse = {
        {45, 6, 45.03, 6.04, 4588.794},           {0, 0, 0, 0.045, 5009.377},
        {-33.8, 151.2, -33.78, 151.23, 3555.331}, {70, 20, 70.02, 20.1, 4421.152},
        {52, 5, 52.001, 5.001, 130.755},          {-60, -70, -60.04, -70, 4456.505},
    };
    for (const TInverse& c : inverse)
        EXPECT_NEAR(GeoDistance(c.lat1, c.lon1, c.lat2, c.lon2), c.distance, 0.002)
            << c.lat1 << " " << c.lon1 << " to " << c.lat2 << " " << c.lon2;
}

void ExpectRect(const tagLOCRECT& r, double west, double north, double east, double south, const char* what) {
    EXPECT_EQ(r.dWest, west) << what;
    EXPECT_EQ(r.dNorth, north) << what;
    EXPECT_EQ(r.dEast, east) << what;
    EXPECT_EQ(r.dSouth, south) << what;
}

TEST(LocRect, ExtentsRules) {
    TLocRect r;
    r.InitExtents();
    EXPECT_TRUE(r.IsEmpty()) << "initialised";
    EXPECT_FALSE(r.Contains({0, 0})) << "initialised";
    EXPECT_FALSE(r.Intersects(TLocRect(-180, 90, 180, -90))) << "initialised";

    r.ExpandExtents(tagLOC{-33.5, 151.25});
    EXPECT_TRUE(r.Contains({-33.5, 151.25})) << "one point";
    r.ExpandExtents(tagLOC{-34.0, 151.0});
    r.ExpandExtents(tagLOC{-33.0, 151.5});
    r.ExpandExtents(tagLOC{std::nan(""), std::nan("")});
    ExpectRect(r, 151.0, -33.0, 151.5, -34.0, "three points and a NaN");

    TLocRect empty;
    empty.InitExtents();
    TLocRect copy = r;
    copy.ExpandExtents(empty);
    ExpectRect(copy, 151.0, -33.0, 151.5, -34.0, "an empty rectangle adds nothing");
    empty.ExpandExtents(static_cast<const tagLOCRECT&>(r));
    ExpectRect(empty, 151.0, -33.0, 151.5, -34.0, "an empty rectangle takes the other");
    r.ExpandExtents(static_cast<const tagLOCRECT&>(TLocRect(10, 5, 11, 4)));
    ExpectRect(r, 10.0, 5.0, 151.5, -34.0, "two rectangles");
    r.Clear();
    EXPECT_FALSE(r.IsEmpty()) << "cleared: the point (0, 0)";
}

TEST(LocRect, Intersections) {
    const TLocRect field(10, 5, 11, 4);  // west, north, east, south
    struct TCase {
        const char* name;
        TLocRect other;
        bool hit;
    };
    const std::vector<TCase> cases = {
        {"inside", {10.2, 4.8, 10.4, 4.2}, true},    {"around", {9, 6, 12, 3}, true},
        {"east edge touches", {11, 5, 12, 4}, true}, {"east of it", {11.01, 5, 12, 4}, false},
        {"south of it", {10, 3.9, 11, 3}, false},    {"north-west corner", {9, 6, 10, 5}, true},
    };
    for (const TCase& c : cases) {
        EXPECT_EQ(field.Intersects(c.other), c.hit) << c.name;
        EXPECT_EQ(c.other.Intersects(field), c.hit) << c.name;
    }
}

}  // namespace
