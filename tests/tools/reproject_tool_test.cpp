// tlgis --projected reproject: projected files that GDAL writes from one field in WGS 84 load
// where GDAL puts them back in WGS 84, vertex for vertex; a CRS that cannot be used, or none
// for projected coordinates, is one line and exit status 1 with nothing written; without
// reproject the same files ask the projected-coordinate question as before.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "../gis/shp/shp_test_files.h"
#include "test_support.h"
#include "tool_run.h"

namespace {

using namespace shp_test;

// Why the tests of this file cannot run here, or empty when they can.
std::string MissingForReprojection() {
    if (!HaveProgram("ogr2ogr")) return "ogr2ogr (GDAL) is missing; run scripts/install-test-tools.sh";
    TTempDir dir;
    const TCommandResult r = RunCommand(InFolder(dir.Path(), "info - --projected reproject"));
    if (r.iExit != 0) return "tlgis cannot reproject here: " + r.strErr;
    return "";
}

// Every number of every "vertices" array, then every "area_m2", of info --json --points.
struct TJsonShapes {
    std::vector<double> vertices;
    std::vector<double> areas;
};

std::vector<double> NumbersUntil(const std::string& json, std::size_t at, const std::string& end) {
    std::vector<double> numbers;
    const std::size_t stop = json.find(end, at);
    while (at < stop) {
        const char c = json[at];
        if ((c >= '0' && c <= '9') || c == '-') {
            char* next = nullptr;
            numbers.push_back(std::strtod(json.c_str() + at, &next));
            at = static_cast<std::size_t>(next - json.c_str());
        } else {
            ++at;
        }
    }
    return numbers;
}

TJsonShapes ShapesOf(const std::string& json) {
    TJsonShapes shapes;
    for (std::size_t at = json.find("\"vertices\":"); at != std::string::npos;
         at = json.find("\"vertices\":", at + 1)) {
        const std::vector<double> v = NumbersUntil(json, at, "]]");
        shapes.vertices.insert(shapes.vertices.end(), v.begin(), v.end());
    }
    for (std::size_t at = json.find("\"area_m2\":"); at != std::string::npos;
         at = json.find("\"area_m2\":", at + 1))
        shapes.areas.push_back(NumbersUntil(json, at, ",")[0]);
    return shapes;
}

// A field with a hole and a second field, as GeoJSON in WGS 84, around (lon, lat).
std::string FieldsAround(double lon, double lat) {
    auto ring = [&](double half, double dx) {
        std::string text = "[";
        const double corners[5][2] = {{-1, -1}, {1, -1}, {1, 1}, {-1, 1}, {-1, -1}};
        for (int i = 0; i < 5; ++i)
            text += (i ? "," : "") + std::string("[") + std::to_string(lon + dx + corners[i][0] * half) +
                    "," + std::to_string(lat + corners[i][1] * half * 0.7) + "]";
        return text + "]";
    };
    return "{\"type\":\"FeatureCollection\",\"features\":["
           "{\"type\":\"Feature\",\"properties\":{\"id\":1},\"geometry\":{\"type\":\"Polygon\","
           "\"coordinates\":[" +
           ring(0.01, 0) + "," + ring(0.002, 0) +
           "]}},"
           "{\"type\":\"Feature\",\"properties\":{\"id\":2},\"geometry\":{\"type\":\"Polygon\","
           "\"coordinates\":[" +
           ring(0.004, 0.03) + "]}}]}";
}

struct TGdalCase {
    const char* name;
    double lon, lat;     // where the fields lie
    const char* epsg;    // the projected CRS GDAL writes them in
    const char* format;  // GDAL's format name
    const char* ext;
    const char* options;  // the reprojection options given to tlgis
    std::string crs;      // what info --json says of the CRS used
    // GDAL's WGS 84 of the source field stands for its WGS 84 of the projected file where GDAL
    // reads the file wrongly: GDAL 3.6 takes the false easting and northing of a MIF in survey
    // feet for metres (its issue 7715).
    bool bReferenceFromSource = false;
};

TEST(TlgisReproject, ProjectedFilesLoadWhereGdalPutsThemInWgs84) {
    SKIP_WITHOUT_LINUX_PEERS();
    const std::string missing = MissingForReprojection();
    if (!missing.empty()) GTEST_SKIP() << missing;
    const std::vector<TGdalCase> cases = {
        {"UTM north shapefile", -93.25, 45.5, "32615", "ESRI Shapefile", "shp", "--projected reproject",
         "\"crs\":{\"name\":\"WGS 84 / UTM zone 15N\",\"epsg\":32615,\"from\":\"utm.prj\"}"},
        {"UTM south shapefile", -47.9, -15.8, "32723", "ESRI Shapefile", "shp", "--projected reproject",
         "\"epsg\":32723"},
        {"State Plane shapefile in US feet", -97.0, 32.8, "2276", "ESRI Shapefile", "shp",
         "--projected reproject", "\"crs\":{\"name\":\"NAD83 / Texas North Central (ftUS)\",\"epsg\":2276"},
        {"MIF with a UTM CoordSys", -93.25, 45.5, "32615", "MapInfo File", "mif", "--projected reproject",
         "\"crs\":{\"name\":\"WGS 84 / UTM zone 15N\",\"epsg\":32615,\"from\":\"utm.mif\"}"},
        {"MIF with a State Plane CoordSys in US feet", -97.0, 32.8, "2276", "MapInfo File", "mif",
         "--projected reproject", "\"epsg\":2276", true},
        {"DXF in UTM south with --crs", -47.9, -15.8, "32723", "DXF", "dxf", "--crs EPSG:32723",
         "\"crs\":{\"name\":\"WGS 84 / UTM zone 23S\",\"epsg\":32723,\"from\":\"--crs\"}"},
    };
    for (const TGdalCase& c : cases) {
        TTempDir dir;
        WriteFileBytes(dir.File("fields.geojson"), FieldsAround(c.lon, c.lat));
        const std::string ext = c.ext;
        const std::string projected = "utm." + ext, degrees = "wgs84." + ext;
        // GDAL writes polygons to DXF as hatches, which are not read; and DXF holds no CRS.
        std::string gdal = std::string("ogr2ogr -f \"") + c.format + "\"" +
                           (ext == "mif" ? " -dsco FORMAT=MIF" : "") +
                           (ext == "dxf" ? " -nlt MULTILINESTRING" : "");
        const std::string reference = c.bReferenceFromSource ? "fields.geojson"
                                      : ext == "dxf" ? "-s_srs EPSG:" + std::string(c.epsg) + " " + projected
                                                     : projected;
        for (const std::string& args :
             {" -t_srs EPSG:" + std::string(c.epsg) + " " + projected + " fields.geojson",
              " -t_srs EPSG:4326 " + degrees + " " + reference}) {
            const TCommandResult r = RunCommand(InFolderCommand(dir.Path(), gdal + args));
            ASSERT_EQ(r.iExit, 0) << c.name << ": " << gdal + args << "\n" << r.strErr;
        }

        const TCommandResult mine =
            RunCommand(InFolder(dir.Path(), "info --json --points " + projected + " " + c.options));
        const TCommandResult gdals = RunCommand(InFolder(dir.Path(), "info --json --points " + degrees));
        ASSERT_EQ(mine.iExit, 0) << c.name << "\n" << mine.strErr;
        ASSERT_EQ(gdals.iExit, 0) << c.name << "\n" << gdals.strErr;
        EXPECT_NE(mine.strOut.find(c.crs), std::string::npos) << c.name << "\n" << mine.strOut.substr(0, 300);
        const TJsonShapes a = ShapesOf(mine.strOut), b = ShapesOf(gdals.strOut);
        ASSERT_EQ(a.vertices.size(), b.vertices.size()) << c.name;
        ASSERT_EQ(a.areas.size(), b.areas.size()) << c.name;
        EXPECT_GE(a.areas.size(), 2u) << c.name;
        for (std::size_t i = 0; i < a.vertices.size(); ++i)
            ASSERT_NEAR(a.vertices[i], b.vertices[i], 1e-7) << c.name << ", coordinate " << i;
        for (std::size_t i = 0; i < a.areas.size(); ++i)
            EXPECT_NEAR(a.areas[i], b.areas[i], b.areas[i] * 1e-4) << c.name << ", area " << i;
    }
}

// A polygon in UTM zone 15N metres.
std::string UtmShapefile() {
    return TShpBytes()
        .Record(1, PolyContent(5, {0},
                               {{640000, 5040000}, {640000, 5041000}, {641000, 5041000}, {640000, 5040000}}))
        .Bytes();
}

TEST(TlgisReproject, CrsThatCannotBeUsedIsOneLineAndNothingIsWritten) {
    SKIP_WITHOUT_LINUX_PEERS();
    const std::string missing = MissingForReprojection();
    if (!missing.empty()) GTEST_SKIP() << missing;
    TTempDir dir;
    const std::string unknownDatum =
        "PROJCS[\"x\",GEOGCS[\"g\",DATUM[\"D_Nowhere\",SPHEROID[\"s\",6378000,290]],PRIMEM[\"Greenwich\",0],"
        "UNIT[\"Degree\",0.0174532925199433]],PROJECTION[\"Transverse_Mercator\"],PARAMETER[\"False_"
        "Easting\","
        "500000],PARAMETER[\"False_Northing\",0],PARAMETER[\"Central_Meridian\",-93],PARAMETER[\"Scale_"
        "Factor\","
        "0.9996],PARAMETER[\"Latitude_Of_Origin\",0],UNIT[\"Meter\",1]]";
    for (const auto& [name, prj] : {std::pair<std::string, std::string>{"datum", unknownDatum},
                                    {"garbage", "this is no CRS"},
                                    {"empty", ""}}) {
        WriteFileBytes(dir.File(name + ".shp"), UtmShapefile());
        WriteFileBytes(dir.File(name + ".prj"), prj);
    }
    WriteFileBytes(
        dir.File("few.mif"),
        "Version 300\nCoordSys Earth Projection 8, 104, \"m\", -93\nData\nPline 2\n640000 5040000\n"
        "641000 5041000\n");
    // A vertex far off any projection's domain, which PROJ cannot bring back to the earth.
    WriteFileBytes(dir.File("off.shp"), TShpBytes()
                                            .Record(1, PolyContent(5, {0},
                                                                   {{640000, 5040000},
                                                                    {640000, 5041000},
                                                                    {1e30, 1e30},
                                                                    {641000, 5041000},
                                                                    {640000, 5040000}}))
                                            .Bytes());
    WriteFileBytes(dir.File("off.prj"), "EPSG:32615");
    WriteFileBytes(dir.File("utm.dxf"),
                   "  0\nSECTION\n  2\nENTITIES\n  0\nLINE\n  8\n0\n 10\n640000\n 20\n"
                   "5040000\n 11\n641000\n 21\n5041000\n  0\nENDSEC\n  0\nEOF\n");
    const std::vector<TToolCase> cases = {
        {"a .prj naming an unknown datum", "convert datum.shp out1.job --projected reproject", 1, "",
         "tlgis: datum.prj: PROJ does not know its datum 'D_Nowhere', so it knows no exact way to WGS 84\n"},
        {"a garbage .prj", "convert garbage.shp out2.job --projected reproject", 1, "",
         "tlgis: garbage.prj: PROJ cannot read it as a coordinate reference system (unrecognized format / "
         "unknown name)\n"},
        {"an empty .prj", "info empty.shp --projected reproject", 1, "",
         "tlgis: empty.prj is empty, so it names no CRS\n"},
        {"a CoordSys with too few parameters", "convert few.mif out3.job --projected reproject", 1, "",
         "tlgis: few.mif: its clause 'CoordSys Earth Projection 8, 104, \"m\", -93' is not understood: "
         "Transverse Mercator (projection 8) takes 5 parameters after its units, 1 given\n"},
        {"projected coordinates and no CRS", "convert utm.dxf out4.job --projected reproject", 1, "",
         "tlgis: reading utm.dxf stopped: its coordinates look projected, but the file names no CRS: give "
         "--crs\n"},
        {"--crs PROJ cannot read", "convert utm.dxf out5.job --crs nowhere", 1, "",
         "tlgis: --crs nowhere: PROJ cannot read it as a coordinate reference system (unrecognized format / "
         "unknown name)\n"},
        {"--crs that is no CRS", "convert utm.dxf out6.job --crs EPSG:4978", 1, "",
         "tlgis: --crs EPSG:4978: it is no geographic or projected coordinate reference system\n"},
        {"a pair PROJ cannot map", "convert off.shp out7.job --projected reproject", 1, "",
         "tlgis: off.shp: 1 coordinate pair the coordinate transform could not map refused as outside the "
         "degree range; first: record 1\ntlgis: reading off.shp: 1 coordinate pair could not be mapped from "
         "WGS 84 / UTM zone 15N to WGS 84 (first: record 1); is the CRS right?\n"},
    };
    for (const TToolCase& c : cases) {
        const TCommandResult r = RunCommand(InFolder(dir.Path(), c.args));
        EXPECT_EQ(r.iExit, c.exit) << c.name;
        EXPECT_EQ(r.strOut, "") << c.name;
        EXPECT_EQ(r.strErr, c.inErr) << c.name;
    }
    for (const char* out :
         {"out1.job", "out2.job", "out3.job", "out4.job", "out5.job", "out6.job", "out7.job"})
        EXPECT_FALSE(std::filesystem::exists(dir.File(out))) << out;
}

TEST(TlgisReproject, OptionsAndTheDefault) {
    SKIP_WITHOUT_LINUX_PEERS();
    const std::string missing = MissingForReprojection();
    if (!missing.empty()) GTEST_SKIP() << missing;
    TTempDir dir;
    WriteFileBytes(dir.File("utm.shp"), UtmShapefile());
    WriteFileBytes(dir.File("utm.prj"), "EPSG:32615");
    WriteFileBytes(dir.File("field.mif"),
                   "Version 300\nCoordSys Earth Projection 1, 104\nData\nPline 2\n"
                   "-93.25 45.5\n-93.24 45.51\n");
    const std::vector<TToolCase> cases = {
        {"without reproject the question is asked as before", "info utm.shp", 1,
         "Stopped:  at record 1: the projected-coordinate question",
         "answered Yes (--projected stop), and so for the rest of this file\n"},
        {"a .prj beside the shapefile", "info utm.shp --projected reproject", 0,
         "CRS:      WGS 84 / UTM zone 15N (EPSG:32615), from utm.prj\n", ""},
        {"--crs overrides the .prj", "info utm.shp --crs EPSG:32616", 0,
         "CRS:      WGS 84 / UTM zone 16N (EPSG:32616), from --crs\n", ""},
        {"the complete profile reprojects", "info utm.shp --complete", 0, "from utm.prj\n", ""},
        {"a file in WGS 84 degrees", "info --json field.mif --projected reproject", 0,
         "\"crs\":{\"name\":\"WGS 84\",\"epsg\":4326,\"from\":\"field.mif\"}", ""},
        {"--crs does not go with another answer", "info utm.shp --crs EPSG:32615 --projected continue", 2, "",
         "tlgis: --crs reprojects, so it does not go with --projected continue\n"},
        {"help says that outputs hold degrees", "help", 0, "every format written holds", ""},
    };
    for (const TToolCase& c : cases) RunToolCase(dir.Path(), c);
}

}  // namespace
