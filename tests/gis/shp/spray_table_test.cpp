// The metric swath row that the exchange formats take from the shapefile writer's spray table:
// the row of a polygon, and a stretch that counted no step. Where runs are cut and how a swath
// ring runs are shown through the writer (ShpWriteShapes, ShpWriteBytes), which uses the same
// stretches.

#include <gtest/gtest.h>

#include <tl_gis/gis/shp/spray_table.h>
#include <tl_gis/platform/numbers.h>
#include "shp_test_support.h"

using namespace shp_test;

namespace {
TEST(SprayTableRow, SwathRowInMetricCells) {
    TMapLayer layer;
    TFeatureSpray* spray = AddSpray(layer, Straight(3, 0.0));
    TSprayTableRow row;
    SetSwathRowValues(*spray, 0, 2, TSwathStretches::RingBox(*spray, 0, 2), {"Acme", "flight", "01/06/2024"},
                      row);
    const std::vector<TSprayTableCell> cells = GetMetricSprayTableCells(row, 12);
    ASSERT_EQ(cells.size(), 22u);
    std::string texts, numbers;
    for (const TSprayTableCell& c : cells) {
        if (!c.bNumber) texts += std::string(c.pszColumn) + "=" + c.strText + " ";
        if (c.bNumber) numbers += std::string(c.pszColumn) + "=" + FormatFixed(c.dNumber, 3) + " ";
    }
    // The last sample's time without its blank, the position the ring's centre, the track of 250
    // hundredths in whole metres, the area 20 m by 40 m in hectares.
    EXPECT_EQ(
        texts,
        "SEGMENTID=12 CUSTOMER=Acme FILE_NAME=flight FILE_DATE=01/06/2024 AIRCRAFT=N512AG PILOT=J.Smith "
        "FIELD_NAME=North 40 OFFSET=Right LINE_NUM=7 EVENT_TIME=14:03:02.50 POS_LAT=45.5001799507 "
        "POS_LON=-93.2500000000 SPRAY_STAT=T BOOM_STAT=T ");
    EXPECT_EQ(numbers,
              "SPEED_MPH=111.847 TRK_M=2.000 SWIDTH_M=20.000 HGT_M=10.000 AGL_M=3.000 AREA_M=0.080 "
              "TSRATE_LTRS=48.000 ASRATE_LTRS=50.000 ");
    const TSprayTableCell& area = cells[17];
    EXPECT_TRUE(area.bNumber && area.bKnown && area.iDecimals == 6) << area.pszColumn;

    // A stretch whose statistics counted no step has no area, rates or flags.
    row.Steps = SummarizeSpraySteps(nullptr, nullptr, nullptr, 0);
    row.bHasRates = false;
    const std::vector<TSprayTableCell> unknown = GetMetricSprayTableCells(row, 1);
    EXPECT_FALSE(unknown[17].bKnown || unknown[18].bKnown || unknown[19].bKnown);
    EXPECT_EQ(unknown[20].strText, "");
}
}  // namespace
