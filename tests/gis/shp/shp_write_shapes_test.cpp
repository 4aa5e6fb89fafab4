// Which shapes the export writes: swath polygons cut at turns and stops, points, spot points and
// polylines of recorded spray, the non-spray path, and boundary rings and lines; a record too big
// for a scratch block, and texts that do not fit or are missing.

#include <gtest/gtest.h>

#include <limits>

#include <tl_gis/gis/geometry.h>
#include "layer_builders.h"
#include "shp_test_support.h"

using namespace shp_test;

// A straight run on firstDeg that turns to turnDeg at sample `at`.
static std::vector<TSamplePlan> Turning(int n, int at, double turnDeg, double firstDeg = 0.0) {
    std::vector<TSamplePlan> plans = Straight(at, firstDeg);
    for (TLoc from(plans.back().dLat, plans.back().dLon); std::ssize(plans) < n;) {
        from = from.Offset(turnDeg, 20.0);
        plans.push_back({from.dLat, from.dLon, turnDeg});
    }
    return plans;
}

// Polygons must come out closed.
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
    // Name, options, elements, point counts of the shapes (of the non-spray triple for names
    // starting "non-spray").
    using TCase =
        std::tuple<const char*, TWriteOptions, std::vector<std::vector<TSamplePlan>>, std::vector<int>>;
    const TCase cases[] = {
        {"turn of 90 at sample 5", {}, {Turning(10, 5, 90.0)}, {11, 13}},
        {"turn of 60 at sample 5", {}, {Turning(10, 5, 60.0)}, {11, 13}},
        {"turn of 40 goes on", {}, {Turning(10, 5, 40.0)}, {21}},
        {"350 to 10 degrees", {}, {Turning(3, 2, 10.0, 350.0)}, {7}},
        {"single block", {.bSingleBlock = true}, {Straight(4, 0.0)}, {5, 5, 5}},
        {"single block, sample 3 of 6 off",
         {.bSingleBlock = true},
         {Straight(6, 0, 20, {1, 1, 1, 0})},
         {5, 5, 5}},
        {"one sample", {}, {Straight(1, 0.0)}, {}},
        {"sample 0 off", {}, {Straight(5, 0.0, 20.0, {0})}, {}},
        {"sample 3 of 6 off", {}, {Straight(6, 0.0, 20.0, {1, 1, 1, 0})}, {}},
        {"swath ends 5 cm apart", {}, {narrow}, {}},
        {"points skip a repeated latitude", {kPts}, {sameLat}, {1, 1, 1}},
        {"points: last sample after spraying", {kPts}, {Straight(4, 30, 20, {0, 1, 1, 0})}, {1, 1, 1}},
        {"spots", {ESRI_SPRAY_SPOTS}, {Straight(4, 30, 20, {0, 1}), Straight(3, 120)}, {1, 1}},
        {"polyline of every sample", {kPL}, {Straight(5, 0, 20, {1, 0, 0, 1})}, {5}},
        {"polyline: one sample", {kPL}, {Straight(1, 0)}, {}},
        {"polyline: first sample off", {kPL}, {Straight(3, 0, 20, {0})}, {}},
        {"format 7 writes polygons", {7}, {Straight(3, 0)}, {7}},
        {"non-spray polyline of all five", {kPts}, {Straight(5, 30, 20, {0, 1, 1, 0, 1})}, {5}},
        {"non-spray points: off and last", {kPts, 1}, {Straight(5, 30, 20, {0, 1, 0, 0, 1})}, {1, 1, 1, 1}},
        {"non-spray points: the spray pass's last not repeated", {kPts, 1}, {sprayed, after}, {1}},
        {"non-spray path of a run starting to spray", {kPts}, {Straight(3, 30, 20, {1, 0, 0})}, {}},
        {"no elements", {}, {}, {}},
        {"no samples", {kPL}, {{}}, {}},
        {"NaN positions: swath", {}, {nan}, {}},
        {"NaN positions: polyline", {kPL}, {nan}, {4}},
        {"NaN positions: points", {kPts}, {nan}, {1, 1, 1, 1}},
        {"non-spray points with NaN positions", {kPts, 1}, {nanOff}, {1, 1, 1, 1}},
    };
    for (const auto& [name, options, elements, pointCounts] : cases) {
        SCOPED_TRACE(name);
        TMapLayer layer;
        for (const auto& e : elements) AddSpray(layer, e);
        const TExport out = Export(layer, options);
        EXPECT_EQ(out.iResult, GISFILE_OK);
        std::vector<int> counts;
        for (const TShape& s :
             std::string(name).starts_with("non-spray") ? out.NonSpray.Shapes : out.Spray.Shapes) {
            counts.push_back(static_cast<int>(s.Points.size()));
            const tagLOC &first = s.Points.front(), &last = s.Points.back();
            EXPECT_TRUE(s.iType != SHPT_POLYGON || (first.dLat == last.dLat && first.dLon == last.dLon));
        }
        EXPECT_EQ(counts, pointCounts);
    }
}

// Rings are written clockwise (inclusions) or counter-clockwise (exclusions) and closed; open
// lines lose repeated points and a closing one. The corners a, b, c, d run north, east, south.
TEST(ShpWriteShapes, BoundaryRingsAndLines) {
    const tagLOC corners[] = {{45.5, -93.3}, {45.6, -93.3}, {45.6, -93.2}, {45.5, -93.2}};
    const std::tuple<const char*, int, const char*, int> cases[] = {
        {"adcb", BOUNDARY_INC, "abcda", SHPT_POLYGON}, {"abcda", BOUNDARY_INC, "abcda", SHPT_POLYGON},
        {"abcd", BOUNDARY_EXC, "adcba", SHPT_POLYGON}, {"abbc", BOUNDARY_OPEN, "abc", SHPT_POLYLINE},
        {"abca", BOUNDARY_OPEN, "abc", SHPT_POLYLINE},
    };
    for (const auto& [stored, bound, written, type] : cases) {
        SCOPED_TRACE(std::string(stored) + " of bound type " + std::to_string(bound));
        std::vector<tagLOC> points;
        for (const char* c = stored; *c != '\0'; ++c) points.push_back(corners[*c - 'a']);
        TMapLayer layer;
        layer_test::AddLine(layer, ELEMENT_LINE_BOUNDARY, bound, points, "");
        AddSpray(layer, Straight(3, 0));  // not exported in boundary mode
        const TExport out = Export(layer, {.iWriteMode = 0});
        ASSERT_EQ(out.Spray.Shapes.size(), 1u);
        std::string got;
        for (const tagLOC& p : out.Spray.Shapes[0].Points)
            for (int k = 0; k < 4; ++k)
                got +=
                    p.dLat == corners[k].dLat && p.dLon == corners[k].dLon ? std::string(1, "abcd"[k]) : "";
        EXPECT_EQ(got, written);
        EXPECT_EQ(out.Spray.Shapes[0].iType, type);
        EXPECT_EQ(static_cast<TFeatureLine*>(layer.m_Elements[0])->m_iNumPoints, std::ssize(points))
            << "changed";
        EXPECT_EQ(out.Spray.nHeaderLength, 33u);
    }
}

// An element that claims more samples than any record can hold: the builder gives up before it
// reads them, and only that element is left out.
TEST(ShpWriteShapes, RecordTooBigForAScratchBlockSkipsItsElementOnly) {
    TMapLayer layer;
    AddSpray(layer, Straight(2, 0))->m_iNumRecs = 200000000;
    AddSpray(layer, Straight(3, 0));
    const TExport out = Export(layer, {ESRI_SPRAY_POLYLINES});
    EXPECT_EQ(out.iResult, GISFILE_OK);
    ASSERT_EQ(out.Spray.Shapes.size(), 1u);
    EXPECT_EQ(out.Spray.Shapes[0].Points.size(), 3u);
}

// Texts far longer than their fields are cut to them; no source file, a time out of range.
TEST(ShpWriteShapes, TextsThatDoNotFitOrAreMissing) {
    TMapLayer layer;
    tagSPRAYREC* r = AddSpray(layer, Straight(2, 30))->m_pRecs;
    r[0].dwTimeStamp |= 0x00F80000u | 0x7Fu;  // hour 31, 127 hundredths
    r[0].strFieldName.assign(20000, 'F');
    r[0].strOffset.assign(20000, 'O');
    SetSprayText(r[0].szPilot, sizeof r[0].szPilot, std::string(20000, 'P'));
    TWriteOptions options{.iSpray = ESRI_SPRAY_POINTS, .strSource = ""};
    options.strCompany.assign(20000, 'C');
    const TExport out = Export(layer, options);
    ASSERT_EQ(out.Spray.Rows.size(), 2u);
    const std::vector<std::string>& row = out.Spray.Rows[0];
    EXPECT_EQ(
        row[1] + "|" + row[2] + "|" + row[3] + "|" + row[5] + "|" + row[6] + "|" + row[7] + "|" + row[9],
        std::string(28, 'C') + "|                     N/A|    Date N/A| " + std::string(11, 'P') + "|" +
            std::string(20, 'F') + "|OOOOO|      Time N/A");
}
