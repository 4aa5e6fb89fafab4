// Distances and step areas against geodesics from PROJ's geod on WGS84, computed once:
//   echo "45.5 -93.25 45 1000" | geod +ellps=WGS84 -f %.12f
// gives the end of a 1000 m geodesic on azimuth 45, and GeoDistance of the two ends must give
// back 1000 m. The mean-latitude formula is meant for 10 m to 10 km, so nothing longer is compared.

#include <gtest/gtest.h>

#include "features/feature_spray.h"
#include "hostmap/geodesy.h"

namespace {

TEST(GeoDistance, AgreesWithTheGeodesicAndGivesStepAreas) {
    struct TCase {
        double lat2, lon2, metres;  // from 45.5, -93.25 unless lat1/lon1 are given
        double lat1 = 45.5, lon1 = -93.25;
    };
    const TCase cases[] = {
        {45.500089975352, -93.250000000000, 10},
        {45.499934196159, -93.249912741241, 10},
        {45.500636218199, -93.249095276020, 100},
        {45.499999992835, -93.248720541487, 100},
        {45.508997528111, -93.250000000000, 1000},
        {45.506361856293, -93.240951843051, 1000},
        {45.499999283462, -93.237205414974, 1000},
        {45.493419282272, -93.241275130240, 1000},
        {45.589974640574, -93.250000000000, 10000},
        {45.563585945944, -93.159426614872, 10000},
        {45.499928346266, -93.122054256848, 10000},
        {45.434162535538, -93.162842661162, 10000},
        {-33.921179018306, 151.190753216400, 2500, -33.9, 151.2},
        {60.122415893946, 10.622111210764, 5000, 60.1, 10.7},
    };
    for (const TCase& c : cases) {
        const double d = GeoDistance(c.lat1, c.lon1, c.lat2, c.lon2);
        EXPECT_NEAR(d / c.metres, 1.0, 1e-6) << c.lat2 << "," << c.lon2;
        EXPECT_DOUBLE_EQ(d, GeoDistance(c.lat2, c.lon2, c.lat1, c.lon1)) << c.lat2 << "," << c.lon2;
        tagSPRAYREC a, b;
        a.locPos = {c.lat1, c.lon1};
        b.locPos = {c.lat2, c.lon2};
        a.dSwathWidth = 10.0;
        b.dSwathWidth = 30.0;
        double distance = 0.0;
        EXPECT_NEAR(TFeatureSpray::StepArea(a, b, &distance) / (20.0 * c.metres / 10000.0), 1.0, 1e-6)
            << c.lat2 << "," << c.lon2;
        EXPECT_EQ(distance, d) << c.lat2 << "," << c.lon2;
    }
}

}  // namespace
