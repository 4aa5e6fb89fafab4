// Which shapes the export writes: swath polygons cut at turns and stops, points, spot points
// and polylines of recorded spray, boundary rings and lines, and the non-spray path.

#include <gtest/gtest.h>

#include "gis/geometry.h"
#include "gis/shp/swath_runs.h"
#include "shp_write_support.h"
#include "test_support.h"

using namespace shp_write_test;

namespace {
// Runs the export of one layer and returns the shapes of the spray (or boundary) triple.
struct TExport {
    int iResult = 0;
    std::vector<TShape> Shapes;
    TTable Table;
    std::vector<TShape> NonSpray;
    TTable NonSprayTable;
};

TExport Export(TMapLayer& layer, int format, int writeMode = 1, bool singleBlock = false, int nonSpray = 0) {
    TTempDir dir;
    TScriptedMessages quiet;
    TShpSettingsGuard settings;
    SetShpFormats(format, nonSpray);
    TGisFileShp writer;
    writer.m_iWriteMode = writeMode;
    writer.SetSingleBlockMode(singleBlock ? 1 : 0);
    writer.SetSourceFile(dir.File("flight.csv"));
    TExport out;
    const std::string target = dir.File("f.shp");
    out.iResult = writer.WriteFile(target.c_str(), &layer);
    const TTriple t = ReadTriple(TGisFileShp::GetSprayOutputStem(target));
    out.Shapes = ReadShapes(t.strShp);
    out.Table = ReadTable(t.strDbf);
    const TTriple n = ReadTriple(TGisFileShp::GetNonSprayOutputStem(dir.File("flight.csv")));
    if (!n.strShp.empty()) {
        out.NonSpray = ReadShapes(n.strShp);
        out.NonSprayTable = ReadTable(n.strDbf);
    }
    return out;
}

std::vector<int> PointCounts(const std::vector<TShape>& shapes) {
    std::vector<int> counts;
    for (const TShape& s : shapes) counts.push_back(static_cast<int>(s.Points.size()));
    return counts;
}

// A straight run that turns by turnDeg at sample `at`.
std::vector<TSamplePlan> Turning(int n, int at, double turnDeg) {
    std::vector<TSamplePlan> plans = Straight(at, 0.0);
    TLoc from(plans.back().dLat, plans.back().dLon);
    for (int i = at; i < n; ++i) {
        from = from.Offset(turnDeg, 20.0);
        plans.push_back({from.dLat, from.dLon, turnDeg, 20.0, 1});
    }
    return plans;
}
}  // namespace

TEST(ShpWriteShapes, SwathPolygonsFollowRunsOfStraightFlight) {
    struct TCase {
        const char* pszName;
        std::vector<TSamplePlan> Samples;
        bool bSingleBlock;
        std::vector<int> PointCounts;
    };
    std::vector<TSamplePlan> narrow = Straight(4, 0.0);
    for (TSamplePlan& s : narrow) s.dWidth = 0.05;
    std::vector<TSamplePlan> wrap = Straight(2, 350.0);
    const TLoc third = TLoc(wrap[1].dLat, wrap[1].dLon).Offset(10.0, 20.0);
    wrap.push_back({third.dLat, third.dLon, 10.0, 20.0, 1});
    const TCase cases[] = {
        {"three samples", Straight(3, 30.0), false, {7}},
        {"turn of 90 at sample 5", Turning(10, 5, 90.0), false, {11, 13}},
        {"turn of 40 goes on", Turning(10, 5, 40.0), false, {21}},
        {"350 to 10 degrees", wrap, false, {7}},
        {"single block", Straight(4, 0.0), true, {5, 5, 5}},
        {"sample 0 off", Straight(5, 0.0, 20.0, {0}), false, {}},
        {"sample 3 of 6 off", Straight(6, 0.0, 20.0, {1, 1, 1, 0}), false, {}},
        {"sample 3 of 6 off, single block", Straight(6, 0.0, 20.0, {1, 1, 1, 0}), true, {5, 5, 5}},
        {"swath ends 5 cm apart", narrow, false, {}},
        {"one sample", Straight(1, 0.0), false, {}},
    };
    for (const TCase& c : cases) {
        TMapLayer layer;
        AddSpray(layer, MakeSpray(c.Samples));
        const TExport out = Export(layer, ESRI_SPRAY_POLYGONS, 1, c.bSingleBlock);
        EXPECT_EQ(out.iResult, GISFILE_OK) << c.pszName;
        EXPECT_EQ(PointCounts(out.Shapes), c.PointCounts) << c.pszName;
        EXPECT_EQ(out.Table.Rows.size(), out.Shapes.size()) << c.pszName;
        for (const TShape& s : out.Shapes) {
            EXPECT_EQ(s.iType, SHPT_POLYGON) << c.pszName;
            ASSERT_FALSE(s.Points.empty()) << c.pszName;
            EXPECT_TRUE(s.Points.front().dLat == s.Points.back().dLat &&
                        s.Points.front().dLon == s.Points.back().dLon)
                << c.pszName << ": ring not closed";
            EXPECT_TRUE(IsRingClockwise(s.Points.data(), static_cast<int>(s.Points.size())))
                << c.pszName << ": outer ring not clockwise";
        }
    }
}

TEST(ShpWriteShapes, SwathRowCarriesBoxCentreAndLastSample) {
    TMapLayer layer;
    TFeatureSpray* spray = AddSpray(layer, MakeSpray(Straight(3, 0.0)));
    spray->m_pRecs[2].sLine = 9;
    spray->m_pRecs[2].strOffset = "L";
    const TExport out = Export(layer, ESRI_SPRAY_POLYGONS);
    ASSERT_EQ(out.Shapes.size(), 1u);
    ASSERT_EQ(out.Table.Rows.size(), 1u);
    TLocRect box;
    box.InitExtents();
    for (const tagLOC& p : out.Shapes[0].Points) box.ExpandExtents(p);
    const std::vector<std::string>& row = out.Table.Rows[0];
    EXPECT_EQ(row[7], " Left");
    EXPECT_EQ(row[8], "    9");
    EXPECT_EQ(row[9], "   14:03:02.50");
    EXPECT_NEAR(std::stod(row[10]), (box.dSouth + box.dNorth) / 2, 1e-10);
    EXPECT_NEAR(std::stod(row[11]), (box.dWest + box.dEast) / 2, 1e-10);
    // Two steps of 20 m by 20 m: 0.08 ha.
    EXPECT_NEAR(std::stod(row[17]), 0.08 * 2.471053828349333, 2e-5);
}

TEST(ShpWriteShapes, CrossingSwathLinesArePulledTogether) {
    // A tight turn to the right: the third sample's swath line crosses the first's, and its
    // right-hand (inner) end is held at the first sample's.
    std::vector<TSamplePlan> plans = {
        {45.5, -93.25, 0.0, 60.0, 1}, {45.50005, -93.25, 20.0, 60.0, 1}, {45.5001, -93.24995, 40.0, 60.0, 1}};
    TMapLayer layer;
    TFeatureSpray* spray = AddSpray(layer, MakeSpray(plans));
    const tagLOC firstA = spray->m_pRecs[0].locSwathA;
    ASSERT_TRUE(SegmentsCross(spray->m_pRecs[0].locSwathA, spray->m_pRecs[0].locSwathB,
                              spray->m_pRecs[2].locSwathA, spray->m_pRecs[2].locSwathB));
    const TExport out = Export(layer, ESRI_SPRAY_POLYGONS);
    ASSERT_EQ(PointCounts(out.Shapes), std::vector<int>{7});
    EXPECT_EQ(spray->m_pRecs[2].locSwathA.dLat, firstA.dLat);
    EXPECT_EQ(spray->m_pRecs[2].locSwathA.dLon, firstA.dLon);
}

TEST(ShpWriteShapes, PointsSpotsAndPolylines) {
    // Positions given directly: sample 2 shares sample 1's latitude.
    std::vector<TSamplePlan> sameLat = {{45.5, -93.25, 0, 20, 1},
                                        {45.6, -93.24, 0, 20, 1},
                                        {45.6, -93.23, 0, 20, 1},
                                        {45.7, -93.22, 0, 20, 1}};
    struct TCase {
        const char* pszName;
        int iFormat;
        std::vector<std::vector<TSamplePlan>> Elements;
        std::vector<int> PointCounts;
        int iShapeType;
    };
    const TCase cases[] = {
        {"points skip a repeated latitude", ESRI_SPRAY_POINTS, {sameLat}, {1, 1, 1}, SHPT_POINT},
        {"points: last sample after spraying",
         ESRI_SPRAY_POINTS,
         {Straight(4, 30, 20, {0, 1, 1, 0})},
         {1, 1, 1},
         SHPT_POINT},
        {"points: last sample after a stop",
         ESRI_SPRAY_POINTS,
         {Straight(4, 30, 20, {1, 1, 0, 0})},
         {1, 1},
         SHPT_POINT},
        {"spots: one per element",
         ESRI_SPRAY_SPOTS,
         {Straight(4, 30, 20, {0, 1, 1}), Straight(3, 120)},
         {1, 1},
         SHPT_POINT},
        {"polyline of every sample",
         ESRI_SPRAY_POLYLINES,
         {Straight(5, 0, 20, {1, 0, 0, 1})},
         {5},
         SHPT_POLYLINE},
        {"polyline: one sample", ESRI_SPRAY_POLYLINES, {Straight(1, 0)}, {}, SHPT_POLYLINE},
        {"polyline: first sample off", ESRI_SPRAY_POLYLINES, {Straight(3, 0, 20, {0})}, {}, SHPT_POLYLINE},
        {"format 7 writes polygons", 7, {Straight(3, 0)}, {7}, SHPT_POLYGON},
    };
    for (const TCase& c : cases) {
        TMapLayer layer;
        for (const auto& e : c.Elements) AddSpray(layer, MakeSpray(e));
        const TExport out = Export(layer, c.iFormat);
        EXPECT_EQ(PointCounts(out.Shapes), c.PointCounts) << c.pszName;
        EXPECT_EQ(out.Table.Rows.size(), out.Shapes.size()) << c.pszName;
        EXPECT_EQ(out.Table.iRecordCount, static_cast<int>(out.Shapes.size())) << c.pszName;
        for (std::size_t i = 0; i < out.Shapes.size(); ++i) {
            EXPECT_EQ(out.Shapes[i].iType, c.iShapeType) << c.pszName;
            EXPECT_EQ(out.Shapes[i].iNumber, static_cast<int>(i + 1)) << c.pszName;
        }
    }
}

TEST(ShpWriteShapes, BoundaryRingsAndLines) {
    const tagLOC a{45.5, -93.3}, b{45.6, -93.3}, c{45.6, -93.2}, d{45.5, -93.2};
    struct TCase {
        const char* pszName;
        std::vector<tagLOC> Points;
        int iBound;
        std::vector<tagLOC> Written;
        int iType;
    };
    // a -> b -> c -> d runs north, east, south: clockwise.
    const TCase cases[] = {
        {"inclusion stored counter-clockwise", {a, d, c, b}, BOUNDARY_INC, {a, b, c, d, a}, SHPT_POLYGON},
        {"inclusion stored clockwise, closed", {a, b, c, d, a}, BOUNDARY_INC, {a, b, c, d, a}, SHPT_POLYGON},
        {"exclusion stored clockwise", {a, b, c, d}, BOUNDARY_EXC, {a, d, c, b, a}, SHPT_POLYGON},
        {"open A B B C", {a, b, b, c}, BOUNDARY_OPEN, {a, b, c}, SHPT_POLYLINE},
        {"open A B C A", {a, b, c, a}, BOUNDARY_OPEN, {a, b, c}, SHPT_POLYLINE},
    };
    for (const TCase& t : cases) {
        TMapLayer layer;
        TFeatureLine* line = AddBoundary(layer, t.Points, t.iBound);
        AddSpray(layer, MakeSpray(Straight(3, 0)));  // skipped in boundary mode
        const TExport out = Export(layer, ESRI_SPRAY_POLYGONS, 0);
        ASSERT_EQ(out.Shapes.size(), 1u) << t.pszName;
        EXPECT_EQ(out.Shapes[0].iType, t.iType) << t.pszName;
        ASSERT_EQ(out.Shapes[0].Points.size(), t.Written.size()) << t.pszName;
        for (std::size_t i = 0; i < t.Written.size(); ++i) {
            EXPECT_EQ(out.Shapes[0].Points[i].dLat, t.Written[i].dLat) << t.pszName << " point " << i;
            EXPECT_EQ(out.Shapes[0].Points[i].dLon, t.Written[i].dLon) << t.pszName << " point " << i;
        }
        EXPECT_EQ(line->m_iNumPoints, static_cast<int>(t.Points.size())) << t.pszName << ": element changed";
        EXPECT_EQ(out.Table.iRecordCount, 1) << t.pszName;
        EXPECT_TRUE(out.NonSpray.empty()) << t.pszName << ": boundary mode has its own triple only";
    }
}

TEST(ShpWriteShapes, NonSprayPath) {
    // A run that ends where the next one starts, the next one flown without spraying.
    const std::vector<TSamplePlan> sprayed = Straight(3, 30, 20, {1, 1, 1});
    std::vector<TSamplePlan> after = Straight(2, 30, 20, {0, 0});
    for (TSamplePlan& s : after) {
        s.dLat += sprayed.back().dLat - sprayed.front().dLat;
        s.dLon += sprayed.back().dLon - sprayed.front().dLon;
    }
    struct TCase {
        const char* pszName;
        int iFormat;
        std::vector<std::vector<TSamplePlan>> Elements;
        std::vector<int> PointCounts;
    };
    const TCase cases[] = {
        {"polyline of all five", ESRI_NONSPRAY_POLYLINES, {Straight(5, 30, 20, {0, 1, 1, 0, 1})}, {5}},
        {"points: off samples and the last",
         ESRI_NONSPRAY_POINTS,
         {Straight(5, 30, 20, {0, 1, 0, 0, 1})},
         {1, 1, 1, 1}},
        {"points: the spray pass's last point is not repeated", ESRI_NONSPRAY_POINTS, {sprayed, after}, {1}},
        {"starts spraying: nothing", ESRI_NONSPRAY_POLYLINES, {Straight(3, 30, 20, {1, 0, 0})}, {}},
        {"format 2: no records", 2, {Straight(3, 30, 20, {0, 0, 0})}, {}},
    };
    for (const TCase& c : cases) {
        TMapLayer layer;
        for (const auto& e : c.Elements) AddSpray(layer, MakeSpray(e));
        const TExport out = Export(layer, ESRI_SPRAY_POINTS, 1, false, c.iFormat);
        EXPECT_EQ(PointCounts(out.NonSpray), c.PointCounts) << c.pszName;
        EXPECT_EQ(out.NonSprayTable.iRecordCount, static_cast<int>(c.PointCounts.size())) << c.pszName;
        EXPECT_EQ(out.NonSprayTable.Rows.size(), c.PointCounts.size()) << c.pszName;
    }
}
