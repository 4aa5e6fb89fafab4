// The dispatcher: file types from names, extension changes, and names no format takes.

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "gis/gis_map.h"
#include "test_support.h"

namespace {

TEST(GisFileType, ByTheTextAfterTheLastDot) {
    struct TCase {
        const char* path;
        TLGIS_FILE_TYPE type;
    };
    const std::vector<TCase> cases = {
        {"C:\\data\\field.job", GIS_FILE_JOB},
        {"x.Job", GIS_FILE_JOB},
        {".job", GIS_FILE_JOB},
        {"field.bak.job", GIS_FILE_JOB},
        {"C:\\data.old\\field", GIS_FILE_NONE},  // "old\field" is not an extension
        {"/home/pilot/data.v2/field.shp", GIS_FILE_SHP},
        {"C:\\maps.dxf\\field", GIS_FILE_NONE},
        {"plan.mid", GIS_FILE_NONE},
        {"plan.mif", GIS_FILE_MIDMIF},
        {"plan", GIS_FILE_NONE},
        {"name.", GIS_FILE_NONE},
        {"", GIS_FILE_NONE},
        {"rates.pmh", GIS_FILE_PMH},
        {"C:\\x\\Rates.PMH", GIS_FILE_PMH},
        {"drawing.dxf", GIS_FILE_DXF},
        {"fields.shp", GIS_FILE_SHP},
        {"fields.shx", GIS_FILE_NONE},
        {"field.jobx", GIS_FILE_NONE},
        {"field. job", GIS_FILE_NONE},
        {"field.job.bak", GIS_FILE_NONE},
    };
    for (const TCase& c : cases) EXPECT_EQ(TGisMap::GetGisFileType(c.path), c.type) << "'" << c.path << "'";
    EXPECT_EQ(TGisMap::GetGisFileType(nullptr), GIS_FILE_NONE);
}

TEST(ChangeExtension, CutsAtTheLastDotOfThePath) {
    struct TCase {
        std::string path;
        const char* ext;
        std::string expected;
    };
    const std::vector<TCase> cases = {
        {"field.shp", "dbf", "field.dbf"},
        {"field", "shp", "field.shp"},
        {"name.", "mid", "name.mid"},
        {"a.b.c", "d", "a.b.d"},
        // The last '.' of the whole path decides, even in a folder name.
        {"C:\\data.old\\field", "shp", "C:\\data.shp"},
        {"x.shp", "", "x."},
        {"", "job", ".job"},
    };
    for (const TCase& c : cases) {
        std::string path = c.path;
        std::string& result = ChangeExtension(path, c.ext);
        EXPECT_EQ(path, c.expected) << c.path << " + " << c.ext;
        EXPECT_EQ(&result, &path) << "changed in place";
    }
}

// A name that no format takes: 6001 for loading and for writing, and the layer is untouched.
TEST(GisMap, UnknownExtensionIsUnavailable) {
    TScriptedMessages quiet;  // the library's start-up may find no language file here
    TTempDir dir;
    for (const std::string name : {"notes.txt", "plan.mid", "field"}) {
        const std::string path = dir.File(name);
        WriteFileBytes(path, ".JOB\r\n");
        TMapLayer layer;
        auto* marker = new TFeatureMarker;
        layer.AddElement(marker);
        layer.m_dValue = 3.5;
        TGisMap map;
        EXPECT_EQ(map.LoadFile(path.c_str(), &layer, nullptr), GISFILE_ERR_UNAVAILABLE) << name;
        EXPECT_EQ(map.WriteFile(dir.File("out_" + name).c_str(), &layer), GISFILE_ERR_UNAVAILABLE) << name;
        map.m_bWriteBoundaries = true;
        EXPECT_EQ(map.WriteFile(dir.File("out_" + name).c_str(), &layer), GISFILE_ERR_UNAVAILABLE) << name;
        ASSERT_EQ(layer.GetElementCount(), 1) << name;
        EXPECT_EQ(layer.m_Elements[0], marker) << name;
        EXPECT_EQ(layer.m_dValue, 3.5) << name;
        EXPECT_EQ(ReadFileBytes(path), ".JOB\r\n") << name;
        EXPECT_FALSE(std::filesystem::exists(dir.File("out_" + name))) << name;
    }
}

}  // namespace
