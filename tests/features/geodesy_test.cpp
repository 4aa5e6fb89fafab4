// Distances and step areas against the geodesic distances of PROJ's geod, computed once and
// embedded here:
//   echo "45.5 -93.25 45 1000" | geod +ellps=WGS84 -f %.12f
// gives the end point of a 1000 m geodesic on azimuth 45; GeoDistance of the two ends must
// give back 1000 m. GeoDistance works on the radii of curvature at the mean latitude, which
// agrees with the geodesic to better than 2e-7 relative up to 10 km (the cases below); it is
// not meant for longer distances, so none are compared.

#include <gtest/gtest.h>

#include <cmath>

#include "features/feature_spray.h"
#include "hostmap/geodesy.h"

namespace {
struct TGeodCase {
    double dLat1, dLon1, dLat2, dLon2, dMetres;
};

const TGeodCase kGeodCases[] = {
    {45.5, -93.25, 45.500089975352, -93.250000000000, 10},
    {45.5, -93.25, 45.500063622146, -93.249909528519, 10},
    {45.5, -93.25, 45.499999999928, -93.249872054149, 10},
    {45.5, -93.25, 45.499934196159, -93.249912741241, 10},
    {45.5, -93.25, 45.500899753452, -93.250000000000, 100},
    {45.5, -93.25, 45.500636218199, -93.249095276020, 100},
    {45.5, -93.25, 45.499999992835, -93.248720541487, 100},
    {45.5, -93.25, 45.499341958560, -93.249127421556, 100},
    {45.5, -93.25, 45.508997528111, -93.250000000000, 1000},
    {45.5, -93.25, 45.506361856293, -93.240951843051, 1000},
    {45.5, -93.25, 45.499999283462, -93.237205414974, 1000},
    {45.5, -93.25, 45.493419282272, -93.241275130240, 1000},
    {45.5, -93.25, 45.589974640574, -93.250000000000, 10000},
    {45.5, -93.25, 45.563585945944, -93.159426614872, 10000},
    {45.5, -93.25, 45.499928346266, -93.122054256848, 10000},
    {45.5, -93.25, 45.434162535538, -93.162842661162, 10000},
    {-33.9, 151.2, -33.921179018306, 151.190753216400, 2500},
    {60.1, 10.7, 60.122415893946, 10.622111210764, 5000},
};

TEST(GeoDistance, AgreesWithTheGeodesicUpTo10KmAndGivesStepAreas) {
    const double widths[][2] = {{20.0, 20.0}, {10.0, 30.0}, {0.0, 18.288}};
    for (const TGeodCase& c : kGeodCases) {
        const double d = GeoDistance(c.dLat1, c.dLon1, c.dLat2, c.dLon2);
        EXPECT_NEAR(d / c.dMetres, 1.0, 1e-6) << c.dLat2 << "," << c.dLon2;
        // Symmetric: the mean latitude is the same both ways.
        EXPECT_DOUBLE_EQ(d, GeoDistance(c.dLat2, c.dLon2, c.dLat1, c.dLon1)) << c.dLat2 << "," << c.dLon2;
        for (const auto& w : widths) {
            tagSPRAYREC a, b;
            a.locPos = {c.dLat1, c.dLon1};
            b.locPos = {c.dLat2, c.dLon2};
            a.dSwathWidth = w[0];
            b.dSwathWidth = w[1];
            double distance = 0.0;
            const double area = TFeatureSpray::StepArea(a, b, &distance);
            const double expected = (w[0] + w[1]) / 2.0 * c.dMetres / 10000.0;
            EXPECT_NEAR(area / expected, 1.0, 1e-6) << c.dMetres << " m, widths " << w[0] << "/" << w[1];
            EXPECT_NEAR(distance / c.dMetres, 1.0, 1e-6);
        }
    }
}

TEST(SwathEnds, EndsLieAcrossTheTrackAtHalfTheWidth) {
    const double headings[] = {0.0, 45.0, 90.0, 200.0, 359.0};
    const tagLOC pos{45.5, -93.25};
    for (double h : headings) {
        tagLOC a, b;
        TFeatureSpray::SwathEnds(pos, h, 18.288, a, b);
        EXPECT_NEAR(GeoDistance(pos.dLat, pos.dLon, a.dLat, a.dLon), 9.144, 1e-6) << "heading " << h;
        EXPECT_NEAR(GeoDistance(pos.dLat, pos.dLon, b.dLat, b.dLon), 9.144, 1e-6) << "heading " << h;
        EXPECT_NEAR(GeoDistance(a.dLat, a.dLon, b.dLat, b.dLon), 18.288, 1e-6) << "heading " << h;
        // End A is to the right of the heading: its bearing, in metres east and north, is h + 90.
        const double east =
            std::copysign(GeoDistance(pos.dLat, pos.dLon, pos.dLat, a.dLon), a.dLon - pos.dLon);
        const double north =
            std::copysign(GeoDistance(pos.dLat, pos.dLon, a.dLat, pos.dLon), a.dLat - pos.dLat);
        const double bearing = std::atan2(east, north) * 180.0 / M_PI;
        EXPECT_NEAR(std::remainder(bearing - (h + 90.0), 360.0), 0.0, 0.001) << "heading " << h;
    }
    tagLOC a, b;
    TFeatureSpray::SwathEnds(pos, 30.0, 0.0009, a, b);
    EXPECT_TRUE(a.dLat == pos.dLat && a.dLon == pos.dLon && b.dLat == pos.dLat && b.dLon == pos.dLon)
        << "widths below 1 mm have both ends at the position";
}
}  // namespace
