// Where the export's files go and what FILE_NAME shows: the target and the recorded data path are
// cut at their last '.', suffixed, and given each extension by ChangeExtension, so a '.' in a
// name or folder shortens or moves the files.

#include <gtest/gtest.h>

#include <filesystem>

#include "shp_test_support.h"

using namespace shp_test;

TEST(ShpOutputNames, TriplesNamedFromTargetAndSource) {
    // Target, source (both in the folder), spray format, then the main files expected there.
    const std::tuple<const char*, const char*, int, const char*, const char*> cases[] = {
        {"field.shp", "flight.csv", ESRI_SPRAY_POLYGONS, "field_Spray_Polys.shp", "flight_NonSpray_PL.shp"},
        {"two.dots.shp", "flight.csv", ESRI_SPRAY_POLYGONS, "two.shp", "flight_NonSpray_PL.shp"},
        {"d.x/field", "flight.csv", ESRI_SPRAY_POLYGONS, "d_Spray_Polys.shp", "flight_NonSpray_PL.shp"},
        {"d.x/field.shp", "flight.csv", ESRI_SPRAY_POINTS, "d.shp", "flight_NonSpray_PL.shp"},
        {"field.shp", "run.v2/flight.csv", ESRI_SPRAY_POLYLINES, "field_Spray_PL.shp", "run.shp"},
        {"field.shp", "flight.log.csv", ESRI_SPRAY_SPOTS, "field_Spray_Spot.shp", "flight.shp"},
        {"two.dots.shp", "flight.csv", 7, "two.shp", "flight_NonSpray_PL.shp"},
    };
    for (const auto& [target, source, format, spray, nonSpray] : cases) {
        SCOPED_TRACE(std::string(target) + " from " + source);
        TTempDir dir;
        for (const char* folder : {"d.x", "run.v2"}) std::filesystem::create_directory(dir.File(folder));
        WriteFileBytes(dir.File(source), "recorded\n");
        TMapLayer layer;
        AddSpray(layer, Straight(3, 30.0));
        AddSpray(layer, Straight(3, 120.0, 20.0, {0, 0, 0}));
        const TExport out = Export(layer, {.iSpray = format, .strSource = source}, dir, target);
        EXPECT_EQ(out.iResult, GISFILE_OK);
        for (const char* ext : {"shp", "shx", "dbf"}) {
            EXPECT_TRUE(std::filesystem::exists(dir.File(ShpTriplePath(spray, ext)))) << spray << " " << ext;
            EXPECT_TRUE(std::filesystem::exists(dir.File(ShpTriplePath(nonSpray, ext))))
                << nonSpray << " " << ext;
        }
        EXPECT_FALSE(out.Spray.Shapes.empty());
        EXPECT_EQ(out.NonSpray.Shapes.size(), 1u);
    }
}

TEST(ShpOutputNames, FileNameAttribute) {
    const std::pair<const char*, const char*> cases[] = {
        {"C:\\data\\run.v2\\flight.log", "run"},
        {"C:\\data\\flight.log", "flight"},
        {"/home/pilot/flight.csv", "flight"},
        {"/home/pilot/run.v2/flight.csv", "run"},
        {"C:flight.log", "flight"},
        {"C:\\data:x\\flight", "flight"},
        {"a.b\\c.csv", "N/A"},
        {"flight.csv", "N/A"},
        {"", "N/A"},
        {"./flight.csv", "N/A"},
        {"data/", ""},
    };
    for (const auto& [path, name] : cases) EXPECT_EQ(TGisFileShp::FileutilGetName(path), name) << path;
}
