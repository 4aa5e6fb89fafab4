// Centroids, ring orientation, coordinate classes and areas of imported rings.

#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>
#include <limits>
#include <utility>
#include <vector>

#include <tl_gis/gis/coordinates.h>
#include <tl_gis/gis/geometry.h>

namespace {

using TRing = std::vector<tagLOC>;

// Latitude, longitude, latitude, ...; closed repeats the first vertex at the end.
TRing Ring(std::initializer_list<double> values, bool closed = false) {
    TRing ring;
    for (auto it = values.begin(); it != values.end(); it += 2) ring.push_back({it[0], it[1]});
    if (closed) ring.push_back(ring.front());
    return ring;
}

const TRing kUnitSquare = Ring({0, 0, 1, 0, 1, 1, 0, 1});
const TRing kLShape = Ring({0, 0, 0, 2, 1, 2, 1, 1, 2, 1, 2, 0});
// A field near Utrecht, surveyed clockwise.
const std::initializer_list<double> kField = {52.10412, 5.38770,  52.10398, 5.39702,  52.09871,
                                              5.39815,  52.09655, 5.39264,  52.09802, 5.38601};

TEST(Centroid, FanOfTriangles) {
    const struct {
        const char* name;
        TRing ring;
        double lat, lon;
    } cases[] = {
        {"unit square, closed", Ring({0, 0, 1, 0, 1, 1, 0, 1}, true), 0.5, 0.5},
        {"unit square, open", kUnitSquare, 0.5, 0.5},
        // Blocks of area 2 and 1 centred at (1, 0.5) and (0.5, 1.5) in east, north.
        {"L shape", kLShape, 5.0 / 6.0, 5.0 / 6.0},
        // The two fan triangles cancel: the weighted sum comes back undivided.
        {"bow tie", Ring({0, 0, 1, 1, 1, 0, 0, 1}), 1.0 / 6.0, 0.0},
    };
    for (const auto& c : cases) {
        const tagLOC centroid = ComputeCentroid(c.ring.data(), static_cast<int>(c.ring.size()));
        EXPECT_NEAR(centroid.dLat, c.lat, 1e-12) << c.name;
        EXPECT_NEAR(centroid.dLon, c.lon, 1e-12) << c.name;
    }
}

// Each ring both ways round, from every start, open and closed, against the shoelace sum in the
// plane of east (x) and north (y): negative is clockwise.
TEST(RingOrientation, AgreesWithTheShoelaceFromEveryStart) {
    for (TRing ring : {kUnitSquare, kLShape, Ring({0, 0, 1, 0, 0.6, 5, 0.5, 1, 0.4, 5}), Ring(kField)})
        for (int pass = 0; pass < 2 * static_cast<int>(ring.size()); ++pass) {
            if (pass == static_cast<int>(ring.size())) std::reverse(ring.begin(), ring.end());
            std::rotate(ring.begin(), ring.begin() + 1, ring.end());
            double sum = 0.0;
            for (std::size_t i = 0; i < ring.size(); ++i) {
                const tagLOC &a = ring[i], &b = ring[(i + 1) % ring.size()];
                sum += a.dLon * b.dLat - b.dLon * a.dLat;
            }
            TRing closed = ring;
            closed.push_back(ring.front());
            for (const TRing& r : {ring, closed})
                EXPECT_EQ(IsRingClockwise(r.data(), static_cast<int>(r.size())), sum < 0.0)
                    << r.size() << " vertices from " << r[0].dLat << ", " << r[0].dLon;
        }
    // With both neighbours of the eastmost vertex to the north only their latitudes are compared,
    // not the slopes: next farther north means counter-clockwise.
    const TRing nextFarther = Ring({0, 10, 2, 0, 1, 9}, true),
                previousFarther = Ring({0, 10, 1, 9, 2, 0}, true);
    EXPECT_FALSE(IsRingClockwise(nextFarther.data(), 4));
    EXPECT_TRUE(IsRingClockwise(previousFarther.data(), 4));
}

TEST(CoordinateClass, DegreesProjectedOrOutOfRange) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    const std::vector<std::pair<int, std::vector<double>>> cases = {
        {COORD_GEOGRAPHIC, {45, 120, -90, -180}},
        {COORD_PROJECTED, {5413000.25, 634512.5, 95.0, 2100000.0, -100000.001, 0, inf, 0, nan, inf}},
        {COORD_OUT_OF_RANGE, {95, 10, 90.0001, 0, 0, 180.0001, 100000, 0, nan, 0}},
    };
    for (const auto& [expected, pairs] : cases)
        for (std::size_t i = 0; i < pairs.size(); i += 2)
            EXPECT_EQ(ClassifyCoordinate(pairs[i], pairs[i + 1]), expected)
                << "(" << pairs[i] << ", " << pairs[i + 1] << ")";
}

// Expected areas: vertices projected with `cs2cs +proj=longlat +datum=WGS84 +to +proj=utm +zone=Z
// +datum=WGS84`, shoelace area less 0.18 percent; the 1 km grid squares were made the other way round.
TEST(PolygonArea, SquareMetresInTheZoneOfTheSecondVertex) {
    const struct {
        const char* name;
        TRing ring;
        double area, tolerance;
    } cases[] = {
        {"1 km grid square, north",
         Ring({45.153477183356, 3.0, 45.153476474809, 3.012721901637, 45.162478151629, 3.012723904859,
               45.162478860397, 3.0}),
         998200.0, 1.0},
        {"field", Ring(kField, true), 548924.9159, 1.0},
        // Zone 32 of the second vertex; in zone 31 of the first it would be 8717972023 m².
        {"across two zones", Ring({45.0, 5.5, 45.0, 7.5, 45.5, 7.5, 45.5, 5.5}), 8710057401.78, 2000.0},
    };
    for (const auto& c : cases)
        EXPECT_NEAR(ComputePolygonArea(c.ring.data(), static_cast<int>(c.ring.size())), c.area, c.tolerance)
            << c.name;
}

}  // namespace
