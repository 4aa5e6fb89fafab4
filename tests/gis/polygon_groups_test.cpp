// Rings grouped into polygons with holes, and the columns the complete profile reads and writes.

#include <gtest/gtest.h>

#include <tl_gis/gis/gis_file.h>
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

TEST(AttributeColumns, ChosenColumnsAndBoundNames) {
    TGisFile::s_strIdField = "fid";
    TGisFile::s_strValueField = "RATE";
    TGisFile::s_strNameField = "label";
    const TChosenColumns columns = FindChosenColumns({"FID", "Rate", "other"});
    TGisFile::s_strIdField = TGisFile::s_strValueField = TGisFile::s_strNameField = "";
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
