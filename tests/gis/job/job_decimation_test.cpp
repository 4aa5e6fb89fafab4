#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "gis/job/job_decimation.h"

namespace {
TEST(JobDecimation, DistanceToLine) {
    const double k = 0.017453292519943334;
    // Perpendicular distance in the plane of (cos(lat) * lon, lat), worked out independently.
    auto plane = [k](tagLOC a, tagLOC b, tagLOC p) {
        const double xa = std::cos(a.dLat * k) * a.dLon, xb = std::cos(b.dLat * k) * b.dLon;
        const double x = std::cos(p.dLat * k) * p.dLon;
        return std::fabs((xb - xa) * (a.dLat - p.dLat) - (xa - x) * (b.dLat - a.dLat)) /
               std::hypot(xb - xa, b.dLat - a.dLat);
    };
    struct TCase {
        const char* name;
        tagLOC p1, p2, p;
        double expected;
    };
    const TCase cases[] = {
        // Equal scaled longitudes at both ends: the distance across.
        {"same scaled longitude", {45, 10}, {-45, 10}, {0, 10}, 10.0 - std::cos(45 * k) * 10.0},
        // Same latitude at both ends: the latitude difference, whatever the longitudes.
        {"same latitude", {45, 10}, {45, 11}, {45.25, 30}, 0.25},
        {"slanted", {10, 20}, {12, 25}, {11, 21}, plane({10, 20}, {12, 25}, {11, 21})},
        {"slanted, point beyond the end",
         {-30, 100},
         {-31, 102},
         {-35, 110},
         plane({-30, 100}, {-31, 102}, {-35, 110})},
        {"on the line", {10, 20}, {12, 25}, {10, 20}, 0.0},
    };
    for (const TCase& c : cases) EXPECT_NEAR(DistanceToLine(c.p1, c.p2, c.p), c.expected, 1e-9) << c.name;
}

// The decimation written as the plain recursion it replaces.
void MarkRecursively(const tagLOC* points, std::vector<std::uint8_t>& marks, int first, int last,
                     double tolerance) {
    if (last - first < 2) return;
    int farthest = first + 1;
    double best = -1;
    for (int i = first + 1; i < last; ++i) {
        const double d = DistanceToLine(points[first], points[last], points[i]);
        if (d > best) {
            best = d;
            farthest = i;
        }
    }
    if (best >= tolerance) {
        MarkRecursively(points, marks, first, farthest, tolerance);
        MarkRecursively(points, marks, farthest, last, tolerance);
    } else {
        for (int i = first + 1; i < last; ++i) marks[static_cast<std::size_t>(i)] = 1;
    }
}

std::vector<tagLOC> RandomWalk(int n, unsigned seed, double stepDeg) {
    std::mt19937 random(seed);
    std::normal_distribution<double> step(0.0, stepDeg);
    std::vector<tagLOC> points(static_cast<std::size_t>(n));
    tagLOC at{45.0, -93.0};
    for (tagLOC& p : points) {
        at.dLat += step(random);
        at.dLon += step(random) + stepDeg * 0.5;
        p = at;
    }
    return points;
}

TEST(JobDecimation, SameMarksAsTheRecursion) {
    struct TCase {
        int n;
        unsigned seed;
        double toleranceM;
    };
    const TCase cases[] = {{3, 1, 1}, {10, 2, 0.5}, {200, 3, 1}, {2000, 4, 2}, {2000, 5, 20}, {5000, 6, 0.2}};
    for (const TCase& c : cases) {
        const std::vector<tagLOC> points = RandomWalk(c.n, c.seed, 1e-5);
        const double tolerance = c.toleranceM * JOB_DEGREES_PER_METRE;
        std::vector<std::uint8_t> expected(points.size(), 0), marks(points.size(), 0);
        MarkRecursively(points.data(), expected, 0, c.n - 1, tolerance);
        MarkDouglasPeucker(points.data(), marks.data(), 0, c.n - 1, tolerance);
        EXPECT_EQ(marks, expected) << c.n << " vertices, seed " << c.seed;
    }
}

TEST(JobDecimation, DecimateLocArray) {
    struct TCase {
        const char* name;
        std::vector<tagLOC> points;
        double tolerance;
        std::vector<tagLOC> kept;
    };
    const TCase cases[] = {
        {"tolerance below 1e-6 removes nothing",
         {{45, 10}, {45.0000001, 10.5}, {45, 11}},
         0.9e-6,
         {{45, 10}, {45.0000001, 10.5}, {45, 11}}},
        {"two vertices", {{45, 10}, {45, 11}}, 1.0, {{45, 10}, {45, 11}}},
        {"straight line keeps its ends",
         {{45, 10}, {45, 10.5}, {45, 11}, {45, 11.5}},
         1e-6,
         {{45, 10}, {45, 11.5}}},
        {"a corner stays", {{45, 10}, {46, 10.5}, {45, 11}}, 0.5, {{45, 10}, {46, 10.5}, {45, 11}}},
        {"distance equal to the tolerance stays",
         {{45, 10}, {45.25, 10.5}, {45, 11}},
         0.25,
         {{45, 10}, {45.25, 10.5}, {45, 11}}},
        {"a tie goes to the lower index",
         {{45, 10}, {45.5, 10.2}, {45.5, 10.8}, {45, 11}},
         0.4,
         {{45, 10}, {45.5, 10.2}, {45, 11}}},
        {"small bumps go",
         {{45, 10}, {45.1, 10.5}, {45, 11}, {46, 11.5}, {45, 12}},
         0.5,
         {{45, 10}, {45, 11}, {46, 11.5}, {45, 12}}},
    };
    for (const TCase& c : cases) {
        std::vector<tagLOC> points = c.points;
        const int kept = DecimateLocArray(points.data(), static_cast<int>(points.size()), c.tolerance);
        ASSERT_EQ(kept, static_cast<int>(c.kept.size())) << c.name;
        for (int i = 0; i < kept; ++i) {
            EXPECT_EQ(points[i].dLat, c.kept[i].dLat) << c.name << " vertex " << i;
            EXPECT_EQ(points[i].dLon, c.kept[i].dLon) << c.name << " vertex " << i;
        }
    }
}

TEST(JobDecimation, MillionVerticesWithoutDeepStack) {
    // A million vertices of a wandering line, and a tolerance small enough that nearly every
    // split is followed: the work list, not the call stack, holds the splits.
    const int n = 1000000;
    std::vector<tagLOC> points = RandomWalk(n, 7, 1e-5);
    const int kept = DecimateLocArray(points.data(), n, 1e-6);
    EXPECT_GT(kept, 2);
    EXPECT_LT(kept, n);
    EXPECT_EQ(points[0].dLat, RandomWalk(1, 7, 1e-5)[0].dLat);
}

}  // namespace
