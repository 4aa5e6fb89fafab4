// Which shapes the export writes: swath polygons cut at turns and stops, points, spot points and
// polylines of recorded spray, the non-spray path, and boundary rings and lines.

#include <gtest/gtest.h>

#include <limits>

#include "gis/geometry.h"
#include "shp_test_support.h"

using namespace shp_test;

namespace {
// A straight run on firstDeg that turns to turnDeg at sample `at`.
std::vector<TSamplePlan> Turning(int n, int at, double turnDeg, double firstDeg = 0.0) {
    std::vector<TSamplePlan> plans = Straight(at, firstDeg);
    for (TLoc from(plans.back().dLat, plans.back().dLon); std::ssize(plans) < n;) {
        from = from.Offset(turnDeg, 20.0);
        plans.push_back({from.dLat, from.dLon, turnDeg});
    }
    return plans;
}
}  // namespace

// Polygons must come out closed and clockwise.
TEST(ShpWriteShapes, ShapesOfEachForm) {
    std::vector<TSamplePlan> narrow = Straight(4, 0.0);
    for (TSamplePlan& s : narrow) s.dWidth = 0.05;
    const std::vector<TSamplePlan> sameLat = {{45.5, -93.25}, {45.6, -93.24}, {45.6, -93.23}, {45.7, -93.22}};
    // A run that ends where the next one starts, the next one flown without spraying.
    const std::vector<TSamplePlan> sprayed = Straight(3, 30);
    std::vector<TSamplePlan> after = Straight(2, 30, 20, {0, 0});
    for (TSamplePlan& s : after)
        s = {s.dLat + sprayed[2].dLat - 45.5, s.dLon + sprayed[2].dLon + 93.25, 30, 20, 0};
    std::vector<TSamplePlan> nan = Straight(6, 30.0), nanOff = Straight(6, 30.0, 20.0, {0, 0, 0, 0, 0, 0});
    nan[2].dLat = nan[3].dLon = nanOff[2].dLat = nanOff[3].dLon = std::numeric_limits<double>::quiet_NaN();
    const int kPts = ESRI_SPRAY_POINTS, kPL = ESRI_SPRAY_POLYLINES;
    const struct {
        const char* pszName;
        TWriteOptions Options;
        std::vector<std::vector<TSamplePlan>> Elements;
        bool bNonSpray;  // the triple looked at
        std::vector<int> PointCounts;
    } cases[] = {
        {"swath of three samples", {}, {Straight(3, 30.0)}, false, {7}},
        {"turn of 90 at sample 5", {}, {Turning(10, 5, 90.0)}, false, {11, 13}},
        {"turn of 40 goes on", {}, {Turning(10, 5, 40.0)}, false, {21}},
        {"350 to 10 degrees", {}, {Turning(3, 2, 10.0, 350.0)}, false, {7}},
        {"single block", {.bSingleBlock = true}, {Straight(4, 0.0)}, false, {5, 5, 5}},
        {"sample 0 off", {}, {Straight(5, 0.0, 20.0, {0})}, false, {}},
        {"sample 3 of 6 off", {}, {Straight(6, 0.0, 20.0, {1, 1, 1, 0})}, false, {}},
        {"sample 3 of 6 off, single block",
         {.bSingleBlock = true},
         {Straight(6, 0, 20, {1, 1, 1, 0})},
         false,
         {5, 5, 5}},
        {"swath ends 5 cm apart", {}, {narrow}, false, {}},
        {"swath of one sample", {}, {Straight(1, 0.0)}, false, {}},
        {"points skip a repeated latitude", {kPts}, {sameLat}, false, {1, 1, 1}},
        {"points: last sample after spraying", {kPts}, {Straight(4, 30, 20, {0, 1, 1, 0})}, false, {1, 1, 1}},
        {"points: last sample after a stop", {kPts}, {Straight(4, 30, 20, {1, 1, 0, 0})}, false, {1, 1}},
        {"spots: one per element",
         {ESRI_SPRAY_SPOTS},
         {Straight(4, 30, 20, {0, 1}), Straight(3, 120)},
         false,
         {1, 1}},
        {"polyline of every sample", {kPL}, {Straight(5, 0, 20, {1, 0, 0, 1})}, false, {5}},
        {"polyline: one sample", {kPL}, {Straight(1, 0)}, false, {}},
        {"polyline: first sample off", {kPL}, {Straight(3, 0, 20, {0})}, false, {}},
        {"format 7 writes polygons", {7}, {Straight(3, 0)}, false, {7}},
        {"non-spray polyline of all five", {kPts}, {Straight(5, 30, 20, {0, 1, 1, 0, 1})}, true, {5}},
        {"non-spray points: off and last",
         {kPts, 1},
         {Straight(5, 30, 20, {0, 1, 0, 0, 1})},
         true,
         {1, 1, 1, 1}},
        {"non-spray points: the spray pass's last not repeated", {kPts, 1}, {sprayed, after}, true, {1}},
        {"non-spray path of a run that starts spraying", {kPts}, {Straight(3, 30, 20, {1, 0, 0})}, true, {}},
        {"non-spray format 2", {kPts, 2}, {Straight(3, 30, 20, {0, 0, 0})}, true, {}},
        {"no elements", {}, {}, false, {}},
        {"no samples", {kPL}, {{}}, false, {}},
        {"NaN positions: swath", {}, {nan}, false, {}},
        {"NaN positions: polyline", {kPL}, {nan}, false, {}},
        {"NaN positions: points", {kPts}, {nan}, false, {1, 1, 1, 1}},
        {"NaN positions: spots", {ESRI_SPRAY_SPOTS}, {nan}, false, {1}},
        {"NaN positions: non-spray points", {kPts, 1}, {nanOff}, true, {1, 1, 1, 1}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.pszName);
        TMapLayer layer;
        for (const auto& e : c.Elements) AddSpray(layer, e);
        const TExport out = Export(layer, c.Options);
        EXPECT_EQ(out.iResult, GISFILE_OK);
        std::vector<int> counts;
        for (const TShape& s : c.bNonSpray ? out.NonSpray.Shapes : out.Spray.Shapes) {
            counts.push_back(static_cast<int>(s.Points.size()));
            const tagLOC &first = s.Points.front(), &last = s.Points.back();
            EXPECT_TRUE(s.iType != SHPT_POLYGON || (first.dLat == last.dLat && first.dLon == last.dLon &&
                                                    IsRingClockwise(s.Points.data(), counts.back())));
        }
        EXPECT_EQ(counts, c.PointCounts);
    }
}

TEST(ShpWriteShapes, BoundaryRingsAndLines) {
    const tagLOC a{45.5, -93.3}, b{45.6, -93.3}, c{45.6, -93.2}, d{45.5, -93.2};
    // a -> b -> c -> d runs north, east, south: clockwise.
    const struct {
        const char* pszName;
        std::vector<tagLOC> Points;
        int iBound;
        std::vector<tagLOC> Written;
        int iType;
    } cases[] = {
        {"inclusion stored counter-clockwise", {a, d, c, b}, BOUNDARY_INC, {a, b, c, d, a}, SHPT_POLYGON},
        {"inclusion stored clockwise, closed", {a, b, c, d, a}, BOUNDARY_INC, {a, b, c, d, a}, SHPT_POLYGON},
        {"exclusion stored clockwise", {a, b, c, d}, BOUNDARY_EXC, {a, d, c, b, a}, SHPT_POLYGON},
        {"open A B B C", {a, b, b, c}, BOUNDARY_OPEN, {a, b, c}, SHPT_POLYLINE},
        {"open A B C A", {a, b, c, a}, BOUNDARY_OPEN, {a, b, c}, SHPT_POLYLINE},
    };
    for (const auto& t : cases) {
        SCOPED_TRACE(t.pszName);
        TMapLayer layer;
        auto* line = new TFeatureLineBoundary;
        line->AdoptPoints(new tagLOC[t.Points.size()], std::ssize(t.Points), std::ssize(t.Points));
        std::copy(t.Points.begin(), t.Points.end(), line->m_pPoints);
        line->m_iBoundType = t.iBound;
        line->CalculateGeoExtents();
        layer.AddElement(line, ADD_ELEMENT_OWNED);
        AddSpray(layer, Straight(3, 0));  // not exported in boundary mode
        const TExport out = Export(layer, {.iWriteMode = 0});
        ASSERT_EQ(out.Spray.Shapes.size(), 1u);
        const TShape& shape = out.Spray.Shapes[0];
        EXPECT_EQ(shape.iType, t.iType);
        ASSERT_EQ(shape.Points.size(), t.Written.size());
        for (std::size_t i = 0; i < t.Written.size(); ++i)
            EXPECT_TRUE(shape.Points[i].dLat == t.Written[i].dLat &&
                        shape.Points[i].dLon == t.Written[i].dLon)
                << i;
        EXPECT_EQ(line->m_iNumPoints, std::ssize(t.Points)) << "the element changed";
        EXPECT_EQ(out.Spray.nHeaderLength, 33u);
    }
}
