// The dispatcher: file types from names, extension changes, and names no format takes.

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "gis/gis_map.h"
#include "test_support.h"

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

TEST(ChangeExtension, CutsAtTheLastDotOfThePath) {
    const char* const cases[][3] = {{"field.shp", "dbf", "field.dbf"},
                                    {"field", "shp", "field.shp"},
                                    {"name.", "mid", "name.mid"},
                                    {"C:\\data.old\\field", "shp", "C:\\data.shp"}};
    for (const auto& c : cases) {
        std::string path = c[0];
        EXPECT_EQ(ChangeExtension(path, c[1]), c[2]) << c[0];
    }
}

// A name no format takes: 6001 both ways, the layer untouched and nothing written.
TEST(GisMap, UnknownExtensionIsUnavailable) {
    TScriptedMessages quiet;
    TTempDir dir;
    for (const std::string name : {"notes.txt", "plan.mid"}) {
        WriteFileBytes(dir.File(name), ".JOB\r\n");
        TMapLayer layer;
        TGisMap map;
        EXPECT_EQ(map.LoadFile(dir.File(name).c_str(), &layer, nullptr), GISFILE_ERR_UNAVAILABLE) << name;
        EXPECT_EQ(layer.GetElementCount(), 0) << name;
        EXPECT_EQ(map.WriteFile(dir.File("out_" + name).c_str(), &layer), GISFILE_ERR_UNAVAILABLE) << name;
        EXPECT_FALSE(std::filesystem::exists(dir.File("out_" + name))) << name;
    }
}

}  // namespace
