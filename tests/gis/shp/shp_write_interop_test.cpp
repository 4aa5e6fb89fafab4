// Files of the export open in independent readers: GDAL's ogrinfo reads every shape and row
// without a complaint, and pyshp finds the shapes, vertices, field names and first row that
// were written. Also the tool's shapefile options end to end.

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>

#include "gis/numbers.h"
#include "shp_test_support.h"

using namespace shp_test;

namespace {
struct TInteropCase {
    const char* pszName;
    TWriteOptions Options;
    const char* pszSprayStem;     // in the target's folder
    const char* pszNonSprayStem;  // next to the source data file
};

const TInteropCase kCases[] = {
    {"polygons_us", {}, "field12_Spray_Polys", "data/flight_NonSpray_PL"},
    {"polygons_metric_single",
     {.iNonSpray = ESRI_NONSPRAY_POINTS, .bSingleBlock = true, .bMetric = true},
     "field12_Spray_Polys",
     "data/flight_NonSpray_Pts"},
    {"polylines",
     {ESRI_SPRAY_POLYLINES, ESRI_NONSPRAY_POINTS},
     "field12_Spray_PL",
     "data/flight_NonSpray_Pts"},
    {"points_metric",
     {.iSpray = ESRI_SPRAY_POINTS, .bMetric = true},
     "field12_Spray_Pts",
     "data/flight_NonSpray_PL"},
    {"spots", {ESRI_SPRAY_SPOTS}, "field12_Spray_Spot", "data/flight_NonSpray_PL"},
    {"boundaries", {.iWriteMode = 0}, "field12_Spray_Polys", "data/flight_NonSpray_PL"},
};

std::string Trim(const std::string& s) {
    const auto first = s.find_first_not_of(' ');
    return first == std::string::npos ? std::string() : s.substr(first, s.find_last_not_of(' ') - first + 1);
}

// What pyshp prints for a triple: shape and vertex counts, field names, and unless the table has
// no fields the record count and the first row (texts trimmed, numbers with six decimals).
std::string PyshpView(const TTriple& t) {
    std::size_t vertices = 0;
    for (const TShape& s : t.Shapes) vertices += s.Points.size();
    std::string names, first;
    for (std::size_t i = 0; i < t.Table.Names.size(); ++i) {
        const std::string text = Trim(t.Table.Rows.at(0)[i]);
        const bool number = t.Table.strTypes[i] == 'N';
        first += (i == 0 ? "" : "|") +
                 (number ? (text.empty() ? "None" : FormatFixed(ParseDouble(text), 6)) : text);
        names += (i == 0 ? "" : "|") + t.Table.Names[i];
    }
    const std::string shapes = std::to_string(t.Shapes.size()) + "\n";
    return shapes + std::to_string(vertices) + "\n" + names + "\n" +
           (names.empty() ? "" : shapes + first + "\n");
}

class ShpWriteInterop : public ::testing::TestWithParam<TInteropCase> {};
}  // namespace

// The traced export: two boundary lines and three spray runs with turns and a stop.
TEST_P(ShpWriteInterop, PeersReadEveryFile) {
    const bool gdal = HaveProgram("ogrinfo");
    const bool pyshp = RunCommand(std::string(TL_GIS_PYTHON) + " -c 'import shapefile'").iExit == 0;
    if (!gdal && !pyshp)
        GTEST_SKIP() << "neither ogrinfo (GDAL) nor pyshp for " TL_GIS_PYTHON
                        " is installed "
                        "(scripts/install-test-tools.sh installs them)";
    if (!gdal || !pyshp)
        std::printf("%s is missing: only the other peer reads the files\n", gdal ? "pyshp" : "ogrinfo");
    TTempDir dir;
    std::filesystem::create_directory(dir.File("data"));
    TMapLayer layer;
    AddBoundary(layer, {{45.49, -93.26}, {45.51, -93.26}, {45.51, -93.24}, {45.49, -93.24}}, BOUNDARY_INC);
    AddBoundary(layer, {{45.495, -93.255}, {45.5, -93.25}, {45.5, -93.255}}, BOUNDARY_EXC);
    std::vector<TSamplePlan> turning = Straight(8, 20.0);
    for (TLoc at(turning.back().dLat, turning.back().dLon); turning.size() < 14;) {
        at = at.Offset(110.0, 20.0);
        turning.push_back({at.dLat, at.dLon, 110.0, 18.0, 1});
    }
    AddSpray(layer, turning)->ComputeAllSprayStats();
    AddSpray(layer, Straight(6, 200.0, 25.0, {0, 0, 1, 1, 1, 0}))->ComputeAllSprayStats();
    TFeatureSpray* third = AddSpray(layer, Straight(5, 300.0, 15.0, {1, 1, 1, 1, 0}));
    third->m_pRecs[2].strOffset = "L";
    third->ComputeAllSprayStats();
    TWriteOptions options = GetParam().Options;
    options.strSource = "data/flight.csv";
    WriteFileBytes(dir.File(options.strSource), "recorded\n");
    const TExport out = Export(layer, options, dir, "field12.shp");
    ASSERT_EQ(out.iResult, GISFILE_OK);
    EXPECT_EQ(out.Spray.strStem, dir.File(GetParam().pszSprayStem));
    EXPECT_EQ(out.NonSpray.strStem, GetParam().pszNonSprayStem ? dir.File(GetParam().pszNonSprayStem) : "");

    for (const TTriple* t : {&out.Spray, &out.NonSpray}) {
        if (t->strStem.empty()) continue;
        SCOPED_TRACE(t->strStem);
        ASSERT_FALSE(t->Shapes.empty()) << "the case should write shapes";
        std::string path = t->strStem + ".shp";
        if (t->Table.Names.empty()) {
            // A table without fields holds the shape count but no rows, which GDAL takes for a
            // damaged table; the shapes are read without it.
            path = dir.File("geometry_only.shp");
            std::filesystem::copy_file(t->strStem + ".shp", path);
            std::filesystem::copy_file(t->strStem + ".shx", dir.File("geometry_only.shx"));
        }
        if (gdal) {
            const TCommandResult r = RunCommand("ogrinfo -al " + ShellQuote(path) + " 2>&1");
            EXPECT_EQ(r.iExit, 0) << r.strOut;
            EXPECT_EQ(r.strOut.find("ERROR"), std::string::npos) << r.strOut;
            EXPECT_EQ(r.strOut.find("Warning"), std::string::npos) << r.strOut;
            std::size_t features = 0;
            for (auto at = r.strOut.find("\nOGRFeature("); at != std::string::npos;
                 at = r.strOut.find("\nOGRFeature(", at + 1))
                ++features;
            EXPECT_EQ(features, t->Shapes.size());
            for (const std::string& name : t->Table.Names)
                EXPECT_NE(r.strOut.find("  " + name + " ("), std::string::npos) << "field " << name;
        }
        if (pyshp) {
            const TCommandResult r = RunCommand(
                std::string(TL_GIS_PYTHON) +
                " -c 'import sys, shapefile\nr = shapefile.Reader(sys.argv[1])\nshapes = r.shapes()\n"
                "names = [f[0] for f in r.fields[1:]]\nprint(len(shapes))\nprint(sum(len(s.points) for s in "
                "shapes))\n"
                "print(\"|\".join(names))\nif names:\n    print(r.numRecords)\n"
                "    print(\"|\".join(\"None\" if v is None else (\"%.6f\" % v if isinstance(v, float) else "
                "str(v)) "
                "for v in r.record(0)))' " +
                ShellQuote(t->strStem));
            EXPECT_EQ(r.iExit, 0) << r.strErr;
            EXPECT_EQ(r.strOut, PyshpView(*t));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Forms, ShpWriteInterop, ::testing::ValuesIn(kCases),
                         [](const auto& info) { return std::string(info.param.pszName); });

TEST(ShpTool, ConvertWithShapefileOptions) {
    TTempDir dir;
    const std::string csv = ShellQuote(dir.File("flight.csv"));
    WriteFileBytes(dir.File("flight.csv"),
                   "run,time,lat,lon,heading,speed,spray,swath,aircraft\n"
                   "A,2024-06-01T14:03:10.00,45.5,-93.25,0,50,1,20,N512AG\n"
                   "A,2024-06-01T14:03:11.00,45.500899753,-93.25,0,50,1,20,N512AG\n"
                   "A,2024-06-01T14:03:12.00,45.501799507,-93.25,0,50,1,20,N512AG\n"
                   "B,2024-06-01T14:04:10.00,45.6,-93.2,45,50,0,20,N512AG\n"
                   "B,2024-06-01T14:04:11.00,45.6006,-93.1991,45,50,0,20,N512AG\n");
    const struct {
        const char* pszName;
        std::string strArgs;
        int iExit;
        std::vector<std::string> Written;  // stems of the triples
        const char* pszNote;
    } cases[] = {
        {"default polygons",
         "a.shp --spray " + csv + " --company Acme --metric",
         0,
         {"a_Spray_Polys", "flight_NonSpray_PL"},
         ""},
        {"points and non-spray points",
         "b.shp --spray " + csv + " --spray-format points --nonspray-format points",
         0,
         {"b_Spray_Pts", "flight_NonSpray_Pts"},
         ""},
        {"boundaries asked for",
         "c.shp --spray " + csv + " --boundaries --spray-format spots",
         0,
         {"c_Spray_Spot", "flight_NonSpray_PL"},
         ""},
        {"no spray implies boundaries", "d.shp --single-block", 0, {"d_Spray_Polys"}, "no recorded spray"},
        {"bad form",
         "e.shp --spray-format circles",
         2,
         {},
         "--spray-format takes polygons, polylines, points, spots"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.pszName);
        const TCommandResult r =
            RunCommand("cd " + ShellQuote(dir.Path()) + " && " + TLGIS_EXE + " convert - " + c.strArgs);
        EXPECT_EQ(r.iExit, c.iExit) << r.strErr;
        EXPECT_NE(r.strErr.find(c.pszNote), std::string::npos) << r.strErr;
        for (const std::string& stem : c.Written)
            for (const char* ext : {".shp", ".shx", ".dbf"}) {
                EXPECT_NE(r.strErr.find(stem + ext), std::string::npos) << r.strErr;
                EXPECT_FALSE(ReadFileBytes(dir.File(stem + ext)).empty()) << stem << ext;
            }
    }
    const TTable table = ReadTriple(dir.File("a_Spray_Polys")).Table;
    ASSERT_EQ(table.Rows.size(), 1u);
    EXPECT_EQ(Trim(table.Rows[0][1]) + "|" + Trim(table.Rows[0][2]) + "|" + table.Names[14],
              "Acme|flight|SWIDTH_M");
}
