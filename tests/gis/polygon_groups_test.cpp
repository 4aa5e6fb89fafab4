// Rings grouped into polygons with holes, and the columns the complete profile reads and writes.

#include <gtest/gtest.h>

#include <algorithm>

#include <tl_gis/gis/gis_file.h>
#include "complete_profile.h"
#include "gis/attribute_columns.h"
#include "gis/polygon_groups.h"

namespace {

// A square ring of the bound type around (lat, lon) with half-size h.
TFeatureLineBoundary Square(double lat, double lon, double h, int bound) {
    TFeatureLineBoundary line;
    auto* p = new tagLOC[5]{
        {lat - h, lon - h}, {lat + h, lon - h}, {lat + h, lon + h}, {lat - h, lon + h}, {lat - h, lon - h}};
    line.AdoptPoints(p, 5, 5);
    line.m_iBoundType = bound;
    return line;
}

TEST(PolygonGroups, HolesJoinTheSmallestRingAroundThem) {
    const TFeatureLineBoundary field = Square(45.5, -93.25, 0.1, BOUNDARY_INC);
    const TFeatureLineBoundary island = Square(45.5, -93.25, 0.05, BOUNDARY_INC);  // inside the field
    const TFeatureLineBoundary pond = Square(45.5, -93.25, 0.01, BOUNDARY_EXC);    // inside both
    const TFeatureLineBoundary well = Square(45.58, -93.18, 0.01, BOUNDARY_EXC);   // in the field only
    const TFeatureLineBoundary away = Square(46.0, -93.0, 0.01, BOUNDARY_EXC);     // in none
    const std::vector<TPolygonGroup> groups = GroupRingsIntoPolygons({&pond, &field, &well, &island, &away});
    ASSERT_EQ(groups.size(), 3u);
    EXPECT_EQ(groups[0].pOuter, &field);
    EXPECT_EQ(groups[0].Holes, std::vector<const TFeatureLine*>{&well});
    EXPECT_EQ(groups[1].pOuter, &island);
    EXPECT_EQ(groups[1].Holes, std::vector<const TFeatureLine*>{&pond});
    EXPECT_EQ(groups[2].pOuter, &away);
    EXPECT_TRUE(groups[2].Holes.empty());
}

// Thousands of polygons, each with a hole or not, among exclusion rings that lie in none of them
// and a field around them all: every hole finds its own polygon, as the smallest around it.
TEST(PolygonGroups, ManyRingsFindTheirOwnPolygons) {
    std::vector<TFeatureLineBoundary> outers, holes, alone;
    for (int i = 0; i < 3000; ++i) {
        const double lat = 40.0 + (i % 60) * 0.01, lon = -100.0 + (i / 60) * 0.01;
        outers.push_back(Square(lat, lon, 0.004, BOUNDARY_INC));
        holes.push_back(Square(lat + 0.001, lon - 0.001, i % 3 ? 0.001 : 0.005, BOUNDARY_EXC));
        alone.push_back(Square(lat + 0.005, lon + 0.005, 0.0004, BOUNDARY_EXC));
    }
    const TFeatureLineBoundary field = Square(40.3, -99.75, 1.0, BOUNDARY_INC);
    std::vector<const TFeatureLine*> rings = {&field};
    for (std::size_t i = 0; i < outers.size(); ++i)
        rings.insert(rings.end(), {&holes[i], &outers[i], &alone[i]});
    const std::vector<TPolygonGroup> groups = GroupRingsIntoPolygons(rings);
    ASSERT_EQ(groups.size(), 1 + outers.size());
    std::vector<const TFeatureLine*> inField;
    for (std::size_t i = 0; i < outers.size(); ++i) {
        // A hole too large for its polygon, and every ring between the polygons, lie in the field.
        EXPECT_EQ(groups[1 + i].pOuter, &outers[i]);
        EXPECT_EQ(groups[1 + i].Holes,
                  i % 3 ? std::vector<const TFeatureLine*>{&holes[i]} : std::vector<const TFeatureLine*>{})
            << i;
        if (i % 3 == 0) inField.push_back(&holes[i]);
        inField.push_back(&alone[i]);
    }
    std::sort(inField.begin(), inField.end());
    std::vector<const TFeatureLine*> fieldHoles = groups[0].Holes;
    std::sort(fieldHoles.begin(), fieldHoles.end());
    EXPECT_EQ(fieldHoles, inField);
}

TEST(AttributeColumns, ChosenColumnsAndBoundNames) {
    const TChosenColumns columns = [] {
        const TCompleteProfile chosen(true, "fid", "RATE", "label");
        return FindChosenColumns({"FID", "Rate", "other"});
    }();
    EXPECT_EQ(columns.iId, 0);
    EXPECT_EQ(columns.iValue, 1);
    EXPECT_EQ(columns.iName, -1);
    EXPECT_EQ(columns.Missing, std::vector<std::string>{"label"});
    const TChosenValues good = ReadChosenValues(columns, {" 12 ", "45.5", "x"});
    EXPECT_TRUE(good.bHasId && good.strId == "12" && good.bHasValue && good.dValue == 45.5 && !good.bHasName);
    EXPECT_FALSE(ReadChosenValues(columns, {"1", "none"}).bHasValue);
    EXPECT_FALSE(ReadChosenValues(columns, {}).bHasId);
    for (int bound : {BOUNDARY_INC, BOUNDARY_EXC, BOUNDARY_OPEN})
        EXPECT_EQ(BoundTypeFromName(BoundTypeName(bound)), bound);
    EXPECT_EQ(BoundTypeFromName(" exc "), BOUNDARY_EXC);
    EXPECT_EQ(BoundTypeFromName("HOLE"), 0);
}

}  // namespace
