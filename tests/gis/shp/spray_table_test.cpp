// The public service of swath polygons and spray table rows that the shapefile writer and the
// exchange formats share: where runs are cut, how a ring runs, and the metric row a polygon gets.

#include <gtest/gtest.h>

#include <tl_gis/gis/shp/spray_table.h>
#include "shp_test_support.h"

using namespace shp_test;

namespace {
// n samples flown north, then turning by turn degrees at sample turnAt (none when 0).
std::vector<TSamplePlan> WithTurn(int n, int turnAt, double turn) {
    std::vector<TSamplePlan> plan = Straight(turnAt > 0 ? turnAt + 1 : n, 0.0);
    for (TLoc at(plan.back().dLat, plan.back().dLon); std::ssize(plan) < n;) {
        at = at.Offset(turn, 20.0);
        plan.push_back({at.dLat, at.dLon, turn, 20.0, 1});
    }
    return plan;
}

struct TStretchCase {
    const char* pszName;
    std::vector<TSamplePlan> Plan;
    bool bSingleBlock;
    std::vector<std::pair<int, int>> Expected;
};

TEST(SwathStretches, CutRunsWhereTheSystemDoes) {
    std::vector<TSamplePlan> narrow = Straight(3, 0.0);
    narrow[1].dWidth = 0.05;
    const TStretchCase cases[] = {
        {"straight", Straight(3, 0.0), false, {{0, 2}}},
        {"turn of 60 degrees at sample 5", WithTurn(10, 4, 60.0), false, {{0, 4}, {4, 9}}},
        {"a turn of 20 degrees goes on", WithTurn(6, 2, 20.0), false, {{0, 5}}},
        {"single block", Straight(4, 0.0), true, {{0, 1}, {1, 2}, {2, 3}}},
        {"sample 3 of 6 not spraying", Straight(6, 0.0, 20.0, {1, 1, 1, 0}), false, {}},
        {"sample 3 of 6 not spraying, single block",
         Straight(6, 0.0, 20.0, {1, 1, 1, 0}),
         true,
         {{0, 1}, {1, 2}, {2, 3}}},
        {"first sample not spraying", Straight(4, 0.0, 20.0, {0}), false, {}},
        {"narrower than 0.1 m at sample 1", narrow, false, {}},
        {"one sample", Straight(1, 0.0), false, {}},
    };
    for (const TStretchCase& c : cases) {
        TMapLayer layer;
        TFeatureSpray* spray = AddSpray(layer, c.Plan);
        TSwathStretches stretches(*spray, c.bSingleBlock);
        std::vector<std::pair<int, int>> found;
        int first = 0, last = 0;
        while (stretches.Next(first, last)) found.emplace_back(first, last);
        EXPECT_EQ(found, c.Expected) << c.pszName;
    }
}

TEST(SwathStretches, RingRunsOutAlongTheAEndsAndBackAlongTheBEnds) {
    TMapLayer layer;
    TFeatureSpray* spray = AddSpray(layer, Straight(3, 0.0));
    ASSERT_EQ(TSwathStretches::RingPointCount(0, 2), 7);
    const tagSPRAYREC* r = spray->m_pRecs;
    const tagLOC expected[] = {r[0].locSwathA, r[1].locSwathA, r[2].locSwathA, r[2].locSwathB,
                               r[1].locSwathB, r[0].locSwathB, r[0].locSwathA};
    for (int i = 0; i < 7; ++i) {
        const tagLOC& p = TSwathStretches::RingPoint(*spray, 0, 2, i);
        EXPECT_TRUE(p.dLat == expected[i].dLat && p.dLon == expected[i].dLon) << "point " << i;
    }
}

TEST(SprayTableRow, SwathRowInMetricCells) {
    TMapLayer layer;
    TFeatureSpray* spray = AddSpray(layer, Straight(3, 0.0));
    TSprayTableRow row;
    SetSwathRowValues(*spray, 0, 2, TSwathStretches::RingBox(*spray, 0, 2), {"Acme", "flight", "01/06/2024"},
                      row);
    const std::vector<TSprayTableCell> cells = GetMetricSprayTableCells(row, 12);
    ASSERT_EQ(cells.size(), 22u);
    const auto cell = [&](const char* name) -> const TSprayTableCell& {
        for (const TSprayTableCell& c : cells)
            if (std::string(c.pszColumn) == name) return c;
        static const TSprayTableCell none{"?", false, false, 0.0, 0, ""};
        ADD_FAILURE() << "no column " << name;
        return none;
    };
    EXPECT_EQ(cell("SEGMENTID").strText, "12");
    EXPECT_EQ(cell("CUSTOMER").strText, "Acme");
    EXPECT_EQ(cell("AIRCRAFT").strText, "N512AG");
    EXPECT_EQ(cell("OFFSET").strText, "Right");
    EXPECT_EQ(cell("EVENT_TIME").strText, "14:03:02.50");  // the last sample's, without the blank
    EXPECT_NEAR(cell("SPEED_MPH").dNumber, 111.847, 1e-3);
    EXPECT_EQ(cell("TRK_M").dNumber, 2.0);  // 250 hundredths, in whole metres
    EXPECT_EQ(cell("HGT_M").dNumber, 10.0);
    EXPECT_NEAR(cell("AREA_M").dNumber, 20.0 * 40.0 / 10000.0, 1e-6);
    EXPECT_EQ(cell("TSRATE_LTRS").dNumber, 48.0);
    EXPECT_EQ(cell("ASRATE_LTRS").dNumber, 50.0);
    EXPECT_EQ(cell("SPRAY_STAT").strText, "T");
    EXPECT_EQ(cell("AREA_M").iDecimals, 6);
    EXPECT_TRUE(cell("AREA_M").bNumber && cell("AREA_M").bKnown && !cell("PILOT").bNumber);

    // A stretch whose statistics counted no step has no area, rates or flags.
    row.Steps = SummarizeSpraySteps(nullptr, nullptr, nullptr, 0);
    row.bHasRates = false;
    const std::vector<TSprayTableCell> unknown = GetMetricSprayTableCells(row, 1);
    EXPECT_FALSE(unknown[17].bKnown || unknown[18].bKnown || unknown[19].bKnown);
    EXPECT_EQ(unknown[20].strText, "");
}
}  // namespace
