// Centroids, ring orientation, coordinate classes and areas of imported rings.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "gis/coordinates.h"
#include "gis/geometry.h"

namespace {

using TRing = std::vector<tagLOC>;

TRing Reversed(TRing ring) {
    std::reverse(ring.begin(), ring.end());
    return ring;
}

TRing Closed(TRing ring) {
    ring.push_back(ring.front());
    return ring;
}

// Rings given without their closing vertex, latitude then longitude.
const TRing kUnitSquare = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};
// A field near Utrecht and one in the Riverina, surveyed clockwise.
const TRing kFieldNorth = {
    {52.10412, 5.38770}, {52.10398, 5.39702}, {52.09871, 5.39815}, {52.09655, 5.39264}, {52.09802, 5.38601}};
const TRing kFieldSouth = {{-34.51720, 146.30115},
                           {-34.51694, 146.31240},
                           {-34.52480, 146.31302},
                           {-34.52911, 146.30588},
                           {-34.52503, 146.29977}};

TEST(Centroid, FanOfTriangles) {
    struct TCase {
        const char* name;
        TRing ring;
        double lat, lon;
    };
    const std::vector<TCase> cases = {
        {"unit square, closed", Closed(kUnitSquare), 0.5, 0.5},
        {"unit square, open", kUnitSquare, 0.5, 0.5},
        {"rectangle away from the origin", {{10, 20}, {12, 20}, {12, 25}, {10, 25}, {10, 20}}, 11.0, 22.5},
        {"triangle", {{0, 0}, {3, 0}, {0, 3}}, 1.0, 1.0},
        // A 2 x 1 block (centre 1, 0.5 in east, north) with a unit square on it (0.5, 1.5):
        // weighted by areas 2 and 1 the centre is (5/6, 5/6).
        {"L shape", {{0, 0}, {0, 2}, {1, 2}, {1, 1}, {2, 1}, {2, 0}, {0, 0}}, 5.0 / 6.0, 5.0 / 6.0},
        {"two vertices", {{4, 5}, {6, 7}}, 0.0, 0.0},
        {"all on one line: every triangle skipped", {{1, 1}, {2, 2}, {3, 3}, {4, 4}}, 0.0, 0.0},
        // The two fan triangles cancel: the weighted sum comes back undivided.
        {"bow tie", {{0, 0}, {1, 1}, {1, 0}, {0, 1}}, 1.0 / 6.0, 0.0},
    };
    for (const TCase& c : cases) {
        const tagLOC centroid = ComputeCentroid(c.ring.data(), static_cast<int>(c.ring.size()));
        EXPECT_NEAR(centroid.dLat, c.lat, 1e-12) << c.name;
        EXPECT_NEAR(centroid.dLon, c.lon, 1e-12) << c.name;
    }
    EXPECT_EQ(ComputeCentroid(nullptr, 5).dLat, 0.0);
}

// Orientation by the shoelace sum in the plane of east (x) and north (y): negative is clockwise.
bool ShoelaceClockwise(const TRing& ring) {
    double sum = 0.0;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const tagLOC& a = ring[i];
        const tagLOC& b = ring[(i + 1) % ring.size()];
        sum += a.dLon * b.dLat - b.dLon * a.dLat;
    }
    return sum < 0.0;
}

TRing Rotated(const TRing& ring, std::size_t by) {
    TRing out(ring.begin() + static_cast<std::ptrdiff_t>(by), ring.end());
    out.insert(out.end(), ring.begin(), ring.begin() + static_cast<std::ptrdiff_t>(by));
    return out;
}

// Every ring in both directions, starting at every vertex, with and without its closing
// vertex: the answer matches the shoelace sum.
TEST(RingOrientation, AgreesWithTheShoelaceFromEveryStart) {
    struct TCase {
        const char* name;
        TRing ring;  // without closing vertex
    };
    const std::vector<TCase> cases = {
        {"unit square", kUnitSquare},
        {"triangle", {{0, 0}, {1, 2}, {2, 0.5}}},
        {"L shape", {{0, 0}, {0, 2}, {1, 2}, {1, 1}, {2, 1}, {2, 0}}},
        {"spike to the east", {{0, 0}, {1, 0}, {0.6, 5}, {0.5, 1}, {0.4, 5}}},
        {"field in the north", kFieldNorth},
        {"field in the south", kFieldSouth},
    };
    for (const TCase& c : cases)
        for (const bool reverse : {false, true}) {
            const TRing base = reverse ? Reversed(c.ring) : c.ring;
            for (std::size_t start = 0; start < base.size(); ++start)
                for (const bool close : {true, false}) {
                    const TRing ring = close ? Closed(Rotated(base, start)) : Rotated(base, start);
                    EXPECT_EQ(IsRingClockwise(ring.data(), static_cast<int>(ring.size())),
                              ShoelaceClockwise(ring))
                        << c.name << (reverse ? " reversed" : "") << ", from vertex " << start
                        << (close ? ", closed" : ", open");
                }
        }
}

// At the eastmost vertex with both neighbours to the north only their latitudes are compared
// (not the slopes): next farther north means counter-clockwise.
TEST(RingOrientation, FixedCases) {
    struct TCase {
        const char* name;
        TRing ring;
        bool clockwise;
    };
    const std::vector<TCase> cases = {
        {"both neighbours north, next farther", {{0, 10}, {2, 0}, {1, 9}, {0, 10}}, false},
        {"both neighbours north, previous farther", {{0, 10}, {1, 9}, {2, 0}, {0, 10}}, true},
        {"two vertices", {{0, 0}, {1, 1}}, false},
    };
    for (const TCase& c : cases)
        EXPECT_EQ(IsRingClockwise(c.ring.data(), static_cast<int>(c.ring.size())), c.clockwise) << c.name;
    EXPECT_FALSE(IsRingClockwise(nullptr, 4));
}

TEST(CoordinateClass, DegreesProjectedOrOutOfRange) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    struct TCase {
        const char* name;
        double first, second;
        int expected;
    };
    const std::vector<TCase> cases = {
        {"(45, 120)", 45, 120, COORD_GEOGRAPHIC},
        {"(90, 180)", 90, 180, COORD_GEOGRAPHIC},
        {"(-0, -0)", -0.0, -0.0, COORD_GEOGRAPHIC},
        {"UTM northing and easting", 5413000.25, 634512.5, COORD_PROJECTED},
        {"state-plane feet, one large value", 95.0, 2100000.0, COORD_PROJECTED},
        {"(95, 10)", 95, 10, COORD_OUT_OF_RANGE},
        {"(90.0001, 0)", 90.0001, 0, COORD_OUT_OF_RANGE},
        {"(0, 180.0001)", 0, 180.0001, COORD_OUT_OF_RANGE},
        {"exactly 100000 is not above it", 100000, 0, COORD_OUT_OF_RANGE},
        {"just above 100000", -100000.001, 0, COORD_PROJECTED},
        {"NaN latitude", nan, 0, COORD_OUT_OF_RANGE},
        {"both NaN", nan, nan, COORD_OUT_OF_RANGE},
        {"infinite latitude", inf, 0, COORD_PROJECTED},
        {"NaN and infinity", nan, inf, COORD_PROJECTED},
    };
    for (const TCase& c : cases) EXPECT_EQ(ClassifyCoordinate(c.first, c.second), c.expected) << c.name;
}

// Expected areas: the vertices projected with PROJ's cs2cs into the zone of the second vertex,
// e.g. `cs2cs +proj=longlat +datum=WGS84 +to +proj=utm +zone=31 +datum=WGS84 -f %.6f`, the
// shoelace area of the grid coordinates taken in a short script, then reduced by 0.18 percent.
// The two 1 km squares were made the other way round: grid corners taken back to degrees with
// `cs2cs +proj=utm +zone=31 +datum=WGS84 +to +proj=longlat +datum=WGS84 -f %.12f`.
TEST(PolygonArea, SquareMetresInTheZoneOfTheSecondVertex) {
    struct TCase {
        const char* name;
        TRing ring;
        double area;
        double tolerance;
    };
    const TRing kmNorth = {{45.153477183356, 3.000000000000},
                           {45.153476474809, 3.012721901637},
                           {45.162478151629, 3.012723904859},
                           {45.162478860397, 3.000000000000}};
    const TRing kmSouth = {{-45.153477183356, 153.000000000000},
                           {-45.144475492066, 153.000000000000},
                           {-45.144474783741, 152.987280100641},
                           {-45.153476474809, 152.987278098363}};
    // First vertex in zone 31, the second in zone 32: zone 32 (central meridian 9) is used.
    // In zone 31 the area would be 8717972023 m².
    const TRing acrossZones = {{45.0, 5.5}, {45.0, 7.5}, {45.5, 7.5}, {45.5, 5.5}};
    const std::vector<TCase> cases = {
        {"1 km grid square, north", kmNorth, 998200.0, 1.0},
        {"1 km grid square, north, reversed", Reversed(kmNorth), 998200.0, 1.0},
        {"1 km grid square, south", kmSouth, 998200.0, 1.0},
        {"field in the north", Closed(kFieldNorth), 548924.9159, 1.0},
        {"field in the south", Closed(kFieldSouth), 1257180.6424, 1.0},
        {"across two zones", acrossZones, 8710057401.78, 2000.0},
        {"two vertices", {{45, 3}, {46, 4}}, 0.0, 0.0},
        {"a line there and back", {{45, 3}, {45.01, 3.01}, {45, 3}}, 0.0, 1e-6},
    };
    for (const TCase& c : cases)
        EXPECT_NEAR(ComputePolygonArea(c.ring.data(), static_cast<int>(c.ring.size())), c.area, c.tolerance)
            << c.name;
    EXPECT_EQ(ComputePolygonArea(nullptr, 4), 0.0);

    EXPECT_EQ(GetFeatureArea(nullptr), 0.0);
}

// Rings with vertices that are not numbers give some area but never undefined behaviour.
TEST(PolygonArea, WildVerticesStayDefined) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    for (const double lon : {nan, inf, -1e300, 1e10}) {
        const TRing ring = {{45, 3}, {45, lon}, {46, 4}};
        EXPECT_FALSE(ComputePolygonArea(ring.data(), 3) < 0.0) << lon;
    }
}

}  // namespace
