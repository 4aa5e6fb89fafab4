// Files of the export open in independent readers: GDAL's ogrinfo reads every shape and row
// without a complaint, and pyshp finds the shapes, vertices, field names and first row that
// were written. Also the tool's shapefile options end to end.

#include <gtest/gtest.h>

#include <sstream>

#include "gis/numbers.h"
#include "shp_write_support.h"
#include "test_support.h"

using namespace shp_write_test;

namespace {
struct TInteropCase {
    const char* pszName;
    int iSprayFormat;
    int iNonSprayFormat;
    bool bMetric;
    bool bSingleBlock;
    bool bBoundaries;
};

const TInteropCase kCases[] = {
    {"polygons_us", ESRI_SPRAY_POLYGONS, ESRI_NONSPRAY_POLYLINES, false, false, false},
    {"polygons_metric_single", ESRI_SPRAY_POLYGONS, ESRI_NONSPRAY_POINTS, true, true, false},
    {"polylines", ESRI_SPRAY_POLYLINES, ESRI_NONSPRAY_POINTS, false, false, false},
    {"points_metric", ESRI_SPRAY_POINTS, ESRI_NONSPRAY_POLYLINES, true, false, false},
    {"spots", ESRI_SPRAY_SPOTS, ESRI_NONSPRAY_POLYLINES, false, false, false},
    {"boundaries", ESRI_SPRAY_POLYGONS, ESRI_NONSPRAY_POLYLINES, false, false, true},
};

// Three runs with turns and a stop, two boundary rings and an open line.
void FillLayer(TMapLayer& layer) {
    AddBoundary(layer, {{45.49, -93.26}, {45.51, -93.26}, {45.51, -93.24}, {45.49, -93.24}}, BOUNDARY_INC);
    AddBoundary(layer, {{45.495, -93.255}, {45.5, -93.25}, {45.5, -93.255}}, BOUNDARY_EXC);
    std::vector<TSamplePlan> turning = Straight(8, 20.0);
    TLoc at(turning.back().dLat, turning.back().dLon);
    for (int i = 0; i < 6; ++i) {
        at = at.Offset(110.0, 20.0);
        turning.push_back({at.dLat, at.dLon, 110.0, 18.0, 1});
    }
    AddSpray(layer, MakeSpray(turning));
    AddSpray(layer, MakeSpray(Straight(6, 200.0, 25.0, {0, 0, 1, 1, 1, 0})));
    auto third = MakeSpray(Straight(5, 300.0, 15.0, {1, 1, 1, 1, 0}));
    third->m_pRecs[2].strOffset = "L";
    AddSpray(layer, std::move(third));
    for (TMapElement* e : layer.m_Elements)
        if (auto* spray = dynamic_cast<TFeatureSpray*>(e)) spray->ComputeAllSprayStats();
}

std::string Trim(const std::string& s) {
    const auto first = s.find_first_not_of(' ');
    return first == std::string::npos ? std::string() : s.substr(first, s.find_last_not_of(' ') - first + 1);
}

// The first row as the peers show it: texts trimmed, numbers with six decimals, blanks "None".
std::vector<std::string> ExpectedFirstRow(const TTable& table, const std::string& dbfBytes) {
    std::vector<std::string> values;
    if (table.Rows.empty()) return values;
    for (std::size_t i = 0; i < table.Names.size(); ++i) {
        const bool numeric = dbfBytes[32 + 32 * i + 11] == 'N';
        const std::string text = Trim(table.Rows[0][i]);
        if (!numeric)
            values.push_back(text);
        else
            values.push_back(text.empty() ? "None" : FormatFixed(ParseDouble(text), 6));
    }
    return values;
}

std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

class ShpWriteInterop : public ::testing::TestWithParam<TInteropCase> {
protected:
    // Writes the case's layer and returns the stems of the triples written.
    std::vector<std::string> Write() {
        const TInteropCase& c = GetParam();
        TGisFileShp::s_eESRISprayFormat = static_cast<ESRISPRAYFORMAT>(c.iSprayFormat);
        TGisFileShp::s_eESRINonSprayFormat = static_cast<ESRINONSPRAYFORMAT>(c.iNonSprayFormat);
        TMapLayer layer;
        FillLayer(layer);
        TScriptedMessages quiet;
        TGisFileShp writer;
        writer.m_iWriteMode = c.bBoundaries ? 0 : 1;
        writer.SetMetric(c.bMetric ? 1 : 0);
        writer.SetSingleBlockMode(c.bSingleBlock ? 1 : 0);
        writer.SetCompanyName("Acme Aerial");
        const std::string source = m_Dir.File("flight.csv");
        WriteFileBytes(source, "recorded\n");
        writer.SetSourceFile(source);
        const std::string target = m_Dir.File(std::string(c.pszName) + ".shp");
        EXPECT_EQ(writer.WriteFile(target.c_str(), &layer), GISFILE_OK);
        std::vector<std::string> stems = {TGisFileShp::GetSprayOutputStem(target)};
        if (!c.bBoundaries) stems.push_back(TGisFileShp::GetNonSprayOutputStem(source));
        return stems;
    }

    TTempDir m_Dir;
    TShpSettingsGuard m_Settings;
};
}  // namespace

TEST_P(ShpWriteInterop, OgrinfoReadsEveryShapeAndRow) {
    if (!HaveProgram("ogrinfo"))
        GTEST_SKIP() << "ogrinfo (GDAL) is missing (scripts/install-test-tools.sh installs it)";
    for (const std::string& stem : Write()) {
        const TTriple t = ReadTriple(stem);
        const std::vector<TShape> shapes = ReadShapes(t.strShp);
        ASSERT_FALSE(shapes.empty()) << stem << ": the case should write shapes";
        std::string path = stem + ".shp";
        if (GetParam().bBoundaries) {
            // The boundary table holds the shape count but no rows, which GDAL takes for a
            // damaged table and stops at; the shapes are read without it.
            path = m_Dir.File("geometry_only.shp");
            WriteFileBytes(path, t.strShp);
            WriteFileBytes(m_Dir.File("geometry_only.shx"), t.strShx);
        }
        const TCommandResult r = RunCommand("ogrinfo -al " + ShellQuote(path));
        EXPECT_EQ(r.iExit, 0) << stem << r.strErr;
        std::size_t features = 0;
        for (const std::string& line : Lines(r.strOut + r.strErr)) {
            if (line.rfind("OGRFeature(", 0) == 0) ++features;
            EXPECT_EQ(line.find("ERROR"), std::string::npos) << stem << ": " << line;
            EXPECT_EQ(line.find("Warning"), std::string::npos) << stem << ": " << line;
        }
        EXPECT_EQ(features, shapes.size()) << stem;
        const TTable table = ReadTable(t.strDbf);
        for (const std::string& name : table.Names)
            EXPECT_NE(r.strOut.find("  " + name + " ("), std::string::npos) << stem << ": field " << name;
    }
}

TEST_P(ShpWriteInterop, PyshpFindsShapesFieldsAndFirstRow) {
    if (RunCommand(std::string(TL_GIS_PYTHON) + " -c 'import shapefile'").iExit != 0)
        GTEST_SKIP() << "pyshp is missing for " TL_GIS_PYTHON " (scripts/install-test-tools.sh installs it)";
    for (const std::string& stem : Write()) {
        const TTriple t = ReadTriple(stem);
        const std::vector<TShape> shapes = ReadShapes(t.strShp);
        const TTable table = ReadTable(t.strDbf);
        std::size_t vertices = 0;
        for (const TShape& s : shapes) vertices += s.Points.size();
        const bool rows = !GetParam().bBoundaries;
        const std::string script = m_Dir.File("read.py");
        WriteFileBytes(script,
                       "import sys, shapefile\n"
                       "r = shapefile.Reader(sys.argv[1])\n"
                       "shapes = r.shapes()\n"
                       "print(len(shapes))\n"
                       "print(sum(len(s.points) for s in shapes))\n"
                       "print('|'.join(f[0] for f in r.fields[1:]))\n"
                       "if sys.argv[2] == '1':\n"
                       "    print(r.numRecords)\n"
                       "    rec = r.record(0)\n"
                       "    print('|'.join('None' if v is None else ('%.6f' % v if isinstance(v, float) else "
                       "str(v)) for v in rec))\n");
        const TCommandResult r = RunCommand(std::string(TL_GIS_PYTHON) + " " + ShellQuote(script) + " " +
                                            ShellQuote(stem) + (rows ? " 1" : " 0"));
        ASSERT_EQ(r.iExit, 0) << stem << ": " << r.strErr;
        const std::vector<std::string> lines = Lines(r.strOut);
        ASSERT_GE(lines.size(), 3u) << r.strOut;
        EXPECT_EQ(lines[0], std::to_string(shapes.size())) << stem;
        EXPECT_EQ(lines[1], std::to_string(vertices)) << stem;
        std::string names;
        for (const std::string& n : table.Names) names += (names.empty() ? "" : "|") + n;
        EXPECT_EQ(lines[2], names) << stem;
        if (!rows) continue;
        ASSERT_EQ(lines.size(), 5u) << r.strOut;
        EXPECT_EQ(lines[3], std::to_string(shapes.size())) << stem;
        std::string first;
        for (const std::string& v : ExpectedFirstRow(table, t.strDbf))
            first += (first.empty() ? "" : "|") + v;
        EXPECT_EQ(lines[4], first) << stem;
    }
}

INSTANTIATE_TEST_SUITE_P(Forms, ShpWriteInterop, ::testing::ValuesIn(kCases),
                         [](const auto& info) { return std::string(info.param.pszName); });

TEST(ShpTool, ConvertWithShapefileOptions) {
    TTempDir dir;
    const std::string csv = dir.File("flight.csv");
    WriteFileBytes(csv,
                   "run,time,lat,lon,heading,speed,spray,swath,aircraft\n"
                   "A,2024-06-01T14:03:10.00,45.5,-93.25,0,50,1,20,N512AG\n"
                   "A,2024-06-01T14:03:11.00,45.500899753,-93.25,0,50,1,20,N512AG\n"
                   "A,2024-06-01T14:03:12.00,45.501799507,-93.25,0,50,1,20,N512AG\n"
                   "B,2024-06-01T14:04:10.00,45.6,-93.2,45,50,0,20,N512AG\n"
                   "B,2024-06-01T14:04:11.00,45.6006,-93.1991,45,50,0,20,N512AG\n");
    const std::string tool = std::string(TLGIS_EXE) + " convert - ";
    struct TCase {
        const char* pszName;
        std::string strArgs;
        int iExit;
        std::vector<std::string> Written;  // stems of the triples, relative to the folder
        const char* pszNote;
    };
    const TCase cases[] = {
        {"default polygons",
         "a.shp --spray " + ShellQuote(csv) + " --company Acme --metric",
         0,
         {"a_Spray_Polys", "flight_NonSpray_PL"},
         nullptr},
        {"points and non-spray points",
         "b.shp --spray " + ShellQuote(csv) + " --spray-format points --nonspray-format points",
         0,
         {"b_Spray_Pts", "flight_NonSpray_Pts"},
         nullptr},
        {"boundaries asked for",
         "c.shp --spray " + ShellQuote(csv) + " --boundaries --spray-format spots",
         0,
         {"c_Spray_Spot", "flight_NonSpray_PL"},
         nullptr},
        {"no spray implies boundaries", "d.shp --single-block", 0, {"d_Spray_Polys"}, "no recorded spray"},
        {"bad form",
         "e.shp --spray-format circles",
         2,
         {},
         "--spray-format takes polygons, polylines, points, spots"},
    };
    for (const TCase& c : cases) {
        const TCommandResult r = RunCommand("cd " + ShellQuote(dir.Path()) + " && " + tool + c.strArgs);
        EXPECT_EQ(r.iExit, c.iExit) << c.pszName << ": " << r.strErr;
        for (const std::string& stem : c.Written) {
            for (const char* ext : {".shp", ".shx", ".dbf"}) {
                EXPECT_NE(r.strErr.find(stem + ext), std::string::npos) << c.pszName << ": " << r.strErr;
                EXPECT_FALSE(ReadFileBytes(dir.File(stem + ext)).empty()) << c.pszName << ": " << stem << ext;
            }
        }
        if (c.pszNote != nullptr) {
            EXPECT_NE(r.strErr.find(c.pszNote), std::string::npos) << c.pszName << ": " << r.strErr;
        }
    }
    const TTable table = ReadTable(ReadFileBytes(dir.File("a_Spray_Polys.dbf")));
    ASSERT_EQ(table.Rows.size(), 1u);
    EXPECT_EQ(Trim(table.Rows[0][1]), "Acme");
    EXPECT_EQ(Trim(table.Rows[0][2]), "flight");
    EXPECT_EQ(table.Names[14], "SWIDTH_M");
}
