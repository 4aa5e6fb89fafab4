// tlgis --projected reproject: GDAL's projected files load where GDAL puts them in WGS 84; a CRS that
// cannot be used is one line, exit 1 and nothing written; without reproject the question is asked.

#include <gtest/gtest.h>

#include <cctype>
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

// Every number after each key up to the next end: the "vertices" arrays ("]]") or the
// "area_m2" values (",") of info --json --points.
std::vector<double> NumbersAfter(const std::string& json, const std::string& key, const std::string& end) {
    std::vector<double> numbers;
    for (std::size_t at = json.find(key); at != std::string::npos; at = json.find(key, at + 1))
        for (std::size_t i = at + key.size(), stop = json.find(end, i); i < stop; ++i)
            if (std::isdigit(static_cast<unsigned char>(json[i])) || json[i] == '-') {
                char* next = nullptr;
                numbers.push_back(std::strtod(json.c_str() + i, &next));
                i = static_cast<std::size_t>(next - json.c_str()) - 1;
            }
    return numbers;
}

// A field with a hole and a second field, as GeoJSON in WGS 84, around (lon, lat).
std::string FieldsAround(double lon, double lat) {
    const auto ring = [&](double half, double dx) {
        std::string text;
        for (const auto& [x, y] : {std::pair{-1, -1}, {1, -1}, {1, 1}, {-1, 1}, {-1, -1}})
            text += (text.empty() ? "[[" : ",[") + std::to_string(lon + dx + x * half) + "," +
                    std::to_string(lat + y * half * 0.7) + "]";
        return text + "]";
    };
    const auto feature = [](int id, const std::string& rings) {
        return R"({"type":"Feature","properties":{"id":)" + std::to_string(id) +
               R"(},"geometry":{"type":"Polygon","coordinates":[)" + rings + "]}}";
    };
    return R"({"type":"FeatureCollection","features":[)" + feature(1, ring(0.01, 0) + "," + ring(0.002, 0)) +
           "," + feature(2, ring(0.004, 0.03)) + "]}";
}

struct TGdalCase {
    const char* name;
    double lon, lat;      // where the fields lie
    const char* epsg;     // the projected CRS GDAL writes them in
    const char* ext;      // of the format GDAL writes
    const char* options;  // the reprojection options given to tlgis
    std::string crs;      // what info --json says of the CRS used
    // GDAL 3.6 takes the false easting and northing of a MIF in survey feet for metres (its issue
    // 7715): then GDAL's WGS 84 of the source field is the reference.
    bool bReferenceFromSource = false;
};

TEST(TlgisReproject, ProjectedFilesLoadWhereGdalPutsThemInWgs84) {
    SKIP_WITHOUT_LINUX_PEERS();
    const std::string missing = MissingForReprojection();
    if (!missing.empty()) GTEST_SKIP() << missing;
    const char* reproject = "--projected reproject";
    // clang-format off
    const std::vector<TGdalCase> cases = {
        {"UTM north shapefile", -93.25, 45.5, "32615", "shp", reproject,
         R"("crs":{"name":"WGS 84 / UTM zone 15N","epsg":32615,"from":"utm.prj"})"},
        {"UTM south shapefile", -47.9, -15.8, "32723", "shp", reproject, R"("epsg":32723)"},
        {"State Plane shapefile in US feet", -97.0, 32.8, "2276", "shp", reproject,
         R"x("crs":{"name":"NAD83 / Texas North Central (ftUS)","epsg":2276)x"},
        {"MIF with a UTM CoordSys", -93.25, 45.5, "32615", "mif", reproject,
         R"("crs":{"name":"WGS 84 / UTM zone 15N","epsg":32615,"from":"utm.mif"})"},
        {"MIF with a State Plane CoordSys in US feet", -97.0, 32.8, "2276", "mif", reproject, R"("epsg":2276)", true},
        {"DXF in UTM south with --crs", -47.9, -15.8, "32723", "dxf", "--crs EPSG:32723",
         R"("crs":{"name":"WGS 84 / UTM zone 23S","epsg":32723,"from":"--crs"})"},
    };
    // clang-format on
    for (const TGdalCase& c : cases) {
        TTempDir dir;
        WriteFileBytes(dir.File("fields.geojson"), FieldsAround(c.lon, c.lat));
        const std::string ext = c.ext;
        const std::string projected = "utm." + ext, degrees = "wgs84." + ext;
        // GDAL writes polygons to DXF as hatches, which are not read; and DXF holds no CRS.
        const char* format = ext == "shp" ? "ESRI Shapefile" : ext == "mif" ? "MapInfo File" : "DXF";
        std::string gdal = std::string("ogr2ogr -f \"") + format + "\"" +
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
        const std::vector<double> a = NumbersAfter(mine.strOut, "\"vertices\":", "]]"),
                                  b = NumbersAfter(gdals.strOut, "\"vertices\":", "]]"),
                                  areasA = NumbersAfter(mine.strOut, "\"area_m2\":", ","),
                                  areasB = NumbersAfter(gdals.strOut, "\"area_m2\":", ",");
        ASSERT_EQ(a.size(), b.size()) << c.name;
        ASSERT_EQ(areasA.size(), areasB.size()) << c.name;
        EXPECT_GE(areasA.size(), 2u) << c.name;
        for (std::size_t i = 0; i < a.size(); ++i)
            ASSERT_NEAR(a[i], b[i], 1e-7) << c.name << ", coordinate " << i;
        for (std::size_t i = 0; i < areasA.size(); ++i)
            EXPECT_NEAR(areasA[i], areasB[i], areasB[i] * 1e-4) << c.name << ", area " << i;
    }
}

// A polygon in UTM zone 15N metres, with an extra vertex when asked.
std::string UtmShapefile(std::vector<TXY> extra = {}) {
    std::vector<TXY> ring = {{640000, 5040000}, {640000, 5041000}};
    ring.insert(ring.end(), extra.begin(), extra.end());
    ring.insert(ring.end(), {{641000, 5041000}, {640000, 5040000}});
    return TShpBytes().Record(1, PolyContent(5, {0}, ring)).Bytes();
}

TEST(TlgisReproject, CrsThatCannotBeUsedIsOneLineAndNothingIsWritten) {
    SKIP_WITHOUT_LINUX_PEERS();
    const std::string missing = MissingForReprojection();
    if (!missing.empty()) GTEST_SKIP() << missing;
    TTempDir dir;
    const std::string unknownDatum =
        R"(PROJCS["x",GEOGCS["g",DATUM["D_Nowhere",SPHEROID["s",6378000,290]],PRIMEM["Greenwich",0],)"
        R"(UNIT["Degree",0.0174532925199433]],PROJECTION["Transverse_Mercator"],PARAMETER["False_Easting",500000],)"
        R"(PARAMETER["False_Northing",0],PARAMETER["Central_Meridian",-93],PARAMETER["Scale_Factor",0.9996],)"
        R"(PARAMETER["Latitude_Of_Origin",0],UNIT["Meter",1]])";
    // The last: a vertex far off any projection's domain, which PROJ cannot bring back to the earth.
    for (const auto& [name, prj] : {std::pair<std::string, std::string>{"datum", unknownDatum},
                                    {"garbage", "this is no CRS"},
                                    {"empty", ""},
                                    {"off", "EPSG:32615"}}) {
        WriteFileBytes(dir.File(name + ".shp"),
                       name == "off" ? UtmShapefile({{1e30, 1e30}}) : UtmShapefile());
        WriteFileBytes(dir.File(name + ".prj"), prj);
    }
    WriteFileBytes(dir.File("few.mif"),
                   "Version 300\nCoordSys Earth Projection 8, 104, \"m\", -93\nData\nPline 2\n"
                   "640000 5040000\n641000 5041000\n");
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
