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
    const double latitudes[] = {-70.0, -52.3, -10.0, 0.0, 0.001, 23.4, 45.0, 61.7, 70.0};
    const double bearings[] = {0.0, 30.0, 45.0, 90.0, 135.0, 180.0, 212.5, 270.0, 315.0, 359.9};
    const double distances[] = {0.001, 0.5, 12.0, 250.0, 1000.0, 3333.3, 5000.0};
    for (const double lat : latitudes)
        for (const double bearing : bearings)
            for (const double d : distances) {
                const TLoc from(lat, lat * 2.0 - 20.0);
                const TLoc to = from.Offset(bearing, d);
                const double back = GeoDistance(from.dLat, from.dLon, to.dLat, to.dLon);
                EXPECT_NEAR(back, d, 0.001) << "lat " << lat << " bearing " << bearing << " d " << d;
            }
}

TEST(LocOffset, BearingsPointTheRightWay) {
    struct TCase {
        double bearing;
        int north;  // sign of the latitude change
        int east;   // sign of the longitude change
    };
    const std::vector<TCase> cases = {{0, 1, 0},    {45, 1, 1},    {90, 0, 1},   {135, -1, 1},
                                      {180, -1, 0}, {225, -1, -1}, {270, 0, -1}, {315, 1, -1}};
    auto sign = [](double v) { return std::fabs(v) < 1e-9 ? 0 : (v > 0 ? 1 : -1); };
    for (const double lat : {-45.0, 45.0})
        for (const TCase& c : cases) {
            const TLoc from(lat, 10.0);
            const TLoc to = from.Offset(c.bearing, 1000.0);
            EXPECT_EQ(sign(to.dLat - from.dLat), c.north) << "lat " << lat << " bearing " << c.bearing;
            EXPECT_EQ(sign(to.dLon - from.dLon), c.east) << "lat " << lat << " bearing " << c.bearing;
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

TEST(LocRect, ExtentsRules) {
    TLocRect r;
    r.InitExtents();
    EXPECT_TRUE(r.IsEmpty()) << "initialised";
    EXPECT_FALSE(r.Contains({0, 0})) << "initialised";
    EXPECT_FALSE(r.Intersects(TLocRect(-180, 90, 180, -90))) << "initialised";

    r.ExpandExtents(tagLOC{-33.5, 151.25});
    EXPECT_FALSE(r.IsEmpty()) << "one point";
    EXPECT_EQ(r.dWest, 151.25);
    EXPECT_EQ(r.dEast, 151.25);
    EXPECT_EQ(r.dNorth, -33.5);
    EXPECT_EQ(r.dSouth, -33.5);
    EXPECT_TRUE(r.Contains({-33.5, 151.25})) << "one point";

    r.ExpandExtents(tagLOC{-34.0, 151.0});
    r.ExpandExtents(tagLOC{-33.0, 151.5});
    r.ExpandExtents(tagLOC{std::nan(""), std::nan("")});
    EXPECT_EQ(r.dWest, 151.0);
    EXPECT_EQ(r.dEast, 151.5);
    EXPECT_EQ(r.dNorth, -33.0);
    EXPECT_EQ(r.dSouth, -34.0);

    TLocRect empty;
    empty.InitExtents();
    TLocRect copy = r;
    copy.ExpandExtents(empty);
    EXPECT_EQ(copy.dWest, r.dWest) << "an empty rectangle adds nothing";
    EXPECT_EQ(copy.dNorth, r.dNorth) << "an empty rectangle adds nothing";
    empty.ExpandExtents(static_cast<const tagLOCRECT&>(empty));
    EXPECT_TRUE(empty.IsEmpty());
    empty.ExpandExtents(static_cast<const tagLOCRECT&>(r));
    EXPECT_EQ(empty.dWest, 151.0) << "an empty rectangle takes the other";
    EXPECT_EQ(empty.dSouth, -34.0) << "an empty rectangle takes the other";

    TLocRect far(10, 5, 11, 4);
    r.ExpandExtents(static_cast<const tagLOCRECT&>(far));
    EXPECT_EQ(r.dWest, 10.0);
    EXPECT_EQ(r.dEast, 151.5);
    EXPECT_EQ(r.dNorth, 5.0);
    EXPECT_EQ(r.dSouth, -34.0);

    r.Clear();
    EXPECT_EQ(r.dWest, 0.0);
    EXPECT_EQ(r.dNorth, 0.0);
    EXPECT_EQ(r.dEast, 0.0);
    EXPECT_EQ(r.dSouth, 0.0);
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
