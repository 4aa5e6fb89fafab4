// The dispatcher: file types from names.

#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include <tl_gis/gis/gis_map.h>

namespace {

TEST(GisFileType, ByTheTextAfterTheLastDot) {
    const std::vector<std::pair<TLGIS_FILE_TYPE, std::vector<const char*>>> cases = {
        {GIS_FILE_JOB, {"C:\\DATA\\FIELD.JOB", "x.Job", "field.bak.job"}},
        {GIS_FILE_PMH, {"Rates.PMH"}},
        {GIS_FILE_DXF, {"drawing.dxf"}},
        {GIS_FILE_MIDMIF, {"plan.mif"}},
        {GIS_FILE_SHP, {"/srv/data.v2/f.shp"}},
        {GIS_FILE_NONE,
         {"C:\\data.old\\field", "/srv/maps.dxf/field", "plan.mid", "plan", "name.", "field.jobx",
          "field.jo"}},
    };
    for (const auto& [type, paths] : cases)
        for (const char* path : paths) EXPECT_EQ(TGisMap::GetGisFileType(path), type) << "'" << path << "'";
    EXPECT_EQ(TGisMap::GetGisFileType(nullptr), GIS_FILE_NONE);
}

}  // namespace
