// The tool's shapefile options end to end, folders that cannot take the files, and the files
// written read by independent readers: GDAL's ogrinfo reads every shape and row without a
// complaint, and pyshp finds the shapes, vertices, field names and first row that were written.

#include <gtest/gtest.h>

#ifndef _WIN32
#include <unistd.h>
#endif
#include <cstdio>
#include <filesystem>
#include <sstream>

#include <tl_gis/platform/numbers.h>
#include "shp_test_support.h"

using namespace shp_test;

// Name, arguments after "convert bounds.shp", exit code, a text the tool must print, the triples
// written (spray or boundaries, then non-spray), the name of field 15 of a spray table.
using TToolCase = std::tuple<const char*, std::string, int, const char*, const char*, const char*>;
static const std::string kSpray = "field12.shp --spray data/flight.csv --company Acme ";
static const TToolCase kCases[] = {
    {"polygons", kSpray, 0, "", "field12_Spray_Polys data/flight_NonSpray_PL", "SWIDTH_FT"},
    {"polygons_metric_single", kSpray + "--metric --single-block --nonspray-format points", 0, "",
     "field12_Spray_Polys data/flight_NonSpray_Pts", "SWIDTH_M"},
    {"polylines", kSpray + "--spray-format polylines --nonspray-format points", 0, "",
     "field12_Spray_PL data/flight_NonSpray_Pts", "SWIDTH_FT"},
    {"points_metric", kSpray + "--spray-format points --metric", 0, "",
     "field12_Spray_Pts data/flight_NonSpray_PL", "SWIDTH_M"},
    {"spots", kSpray + "--spray-format spots", 0, "", "field12_Spray_Spot data/flight_NonSpray_PL",
     "SWIDTH_FT"},
    {"boundaries", kSpray + "--boundaries", 0, "", "field12_Spray_Polys data/flight_NonSpray_PL", nullptr},
    {"no_spray_implies_boundaries", "field12.shp --single-block", 0, "no recorded spray",
     "field12_Spray_Polys", nullptr},
    {"bad_form", kSpray + "--spray-format circles", 2,
     "--spray-format takes polygons, polylines, points, spots", "", nullptr},
    // A pass that cannot create its files reports it and fails; a triple written before it stays.
    {"target_folder_missing", "missing/f.shp --spray data/flight.csv", 1,
     "Cannot create missing/f_Spray_Polys.shp", "", nullptr},
    {"read_only_folder", "locked/f.shp --spray data/flight.csv", 1, "Cannot create locked/f_Spray_Polys.shp",
     "", nullptr},
    {"source_folder_missing", "f.shp --spray data/flight.csv --source missing/x.csv", 1,
     "x_NonSpray_PL.shp: No such", "f_Spray_Polys", nullptr},
};

static std::string Trim(const std::string& s) {
    const auto first = s.find_first_not_of(' ');
    return first == std::string::npos ? "" : s.substr(first, s.find_last_not_of(' ') - first + 1);
}

// Shape and vertex counts, field names, and for a table with fields the record count and the
// first row (texts trimmed, numbers with six decimals), as pyshp prints them.
static const char* const kPyshpView = R"( -c 'import sys, shapefile
r = shapefile.Reader(sys.argv[1])
names = [f[0] for f in r.fields[1:]]
print("%d %d %s" % (len(r.shapes()), sum(len(s.points) for s in r.shapes()), "|".join(names)))
if names:
    print(r.numRecords, "|".join("None" if v is None else ("%.6f" % v if isinstance(v, float) else str(v)) for v in r.record(0)))' )";

static std::string PyshpView(const TTriple& t) {
    std::size_t vertices = 0;
    for (const TShape& s : t.Shapes) vertices += s.Points.size();
    std::string names, first;
    for (std::size_t i = 0; i < t.Names.size(); ++i) {
        const std::string text = Trim(t.Rows.at(0)[i]), sep = i == 0 ? "" : "|";
        names += sep + t.Names[i];
        first += sep + (t.strTypes[i] != 'N' ? text
                        : text.empty()       ? "None"
                                             : FormatFixed(ParseDouble(text), 6));
    }
    const std::string shapes = std::to_string(t.Shapes.size());
    return shapes + " " + std::to_string(vertices) + " " + names + "\n" +
           (names.empty() ? "" : shapes + " " + first + "\n");
}

class ShpToolExport : public ::testing::TestWithParam<TToolCase> {};

// The traced export: a layer of two boundary lines (one shapefile polygon with a hole) and three
// spray runs, written to field12.shp; the non-spray triple goes next to the recorded data.
TEST_P(ShpToolExport, WritesFilesThatPeersRead) {
    const auto& [name, args, exitCode, note, stems, swathField] = GetParam();
#ifdef _WIN32
    if (std::string(name) == "read_only_folder")
        GTEST_SKIP() << "a read-only Windows folder still takes new files";
#else
    if (std::string(name) == "read_only_folder" && geteuid() == 0)
        GTEST_SKIP() << "running as root: a read-only folder does not stop root from writing";
#endif
    TTempDir dir;
    std::filesystem::create_directory(dir.File("data"));
    ASSERT_TRUE(std::filesystem::create_directory(dir.File("locked")));
    using std::filesystem::perms;
    std::filesystem::permissions(dir.File("locked"),
                                 perms::owner_write | perms::group_write | perms::others_write,
                                 std::filesystem::perm_options::remove);
    WriteFileBytes(
        dir.File("data/flight.csv"),
        "run,time,lat,lon,heading,speed,spray,swath\n"
        "A,2024-06-01T14:03:10,45.5,-93.25,0,50,1,20\nA,2024-06-01T14:03:11,45.50018,-93.25,0,50,1,20\n"
        "A,2024-06-01T14:03:12,45.50036,-93.25,0,50,1,20\nA,2024-06-01T14:03:13,45.50054,-93.25,0,50,1,20\n"
        "B,2024-06-01T14:04:10,45.502,-93.25,90,50,0,20\nB,2024-06-01T14:04:11,45.502,-93.24974,90,50,0,20\n"
        "B,2024-06-01T14:04:12,45.502,-93.24948,90,50,1,20\nB,2024-06-01T14:04:13,45.502,-93.24922,90,50,1,"
        "20\n"
        "C,2024-06-01T14:05:10,45.51,-93.24,180,50,1,18\nC,2024-06-01T14:05:11,45.50982,-93.24,180,50,1,18\n"
        "C,2024-06-01T14:05:12,45.50964,-93.24,180,50,0,18\n");
    const std::vector<TXY> rings = {{-93.26, 45.49}, {-93.26, 45.51},   {-93.24, 45.51},  {-93.24, 45.49},
                                    {-93.26, 45.49}, {-93.255, 45.495}, {-93.25, 45.495}, {-93.25, 45.5},
                                    {-93.255, 45.5}, {-93.255, 45.495}};
    WriteFileBytes(dir.File("bounds.shp"), TShpBytes().Record(1, PolyContent(5, {0, 5}, rings)).Bytes());
    const TCommandResult r =
        RunCommand(InFolderCommand(dir.Path(), ShellQuote(TLGIS_EXE) + " convert bounds.shp " + args));
    EXPECT_EQ(r.iExit, exitCode) << r.strErr;
    EXPECT_NE(r.strErr.find(note), std::string::npos) << r.strErr;

    const bool gdal = HavePeer("gdal"), pyshp = HavePeer("pyshp");
    if (!gdal || !pyshp)
        std::printf("%s is missing: not every peer reads the files\n", gdal ? "pyshp" : "ogrinfo");
    std::istringstream written(stems);
    for (std::string stem; written >> stem;) {
        SCOPED_TRACE(stem);
        // The tool shows the paths with the system's own folder separator.
        const std::string shown = std::filesystem::path(stem).make_preferred().string();
        for (const char* ext : {".shp", ".shx", ".dbf"})
            EXPECT_TRUE(exitCode != 0 || r.strErr.find(shown + ext) != std::string::npos)
                << "the paths written are shown";
        const TTriple t = ReadTriple(dir.File(stem));
        ASSERT_FALSE(t.Shapes.empty()) << "the case should write shapes";
        if (stem.find("_Spray_") != std::string::npos && swathField != nullptr) {
            EXPECT_EQ(Trim(t.Rows.at(0)[1]) + "|" + Trim(t.Rows[0][2]) + "|" + t.Names[14],
                      "Acme|flight|" + std::string(swathField));
        }
        std::string path = t.strStem + ".shp";
        if (t.Names.empty()) {
            // A table without fields holds the shape count but no rows, which GDAL takes for a
            // damaged table; the shapes are read without it.
            path = dir.File("geometry_only.shp");
            std::filesystem::copy_file(t.strStem + ".shp", path);
            std::filesystem::copy_file(t.strStem + ".shx", dir.File("geometry_only.shx"));
        }
        if (gdal) ExpectGdalReads(path, t.Shapes.size());
        if (pyshp) {
            const TCommandResult view =
                RunCommand(TL_GIS_PYTHON + std::string(kPyshpView) + ShellQuote(t.strStem));
            EXPECT_EQ(view.strOut, PyshpView(t)) << view.strErr;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Options, ShpToolExport, ::testing::ValuesIn(kCases),
                         [](const auto& info) { return std::string(std::get<0>(info.param)); });
