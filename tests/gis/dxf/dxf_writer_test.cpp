// The writer and `tlgis convert`: byte-exact drawings, polylines by mode, and files that ezdxf
// and GDAL accept and this reader reads back.

#include <gtest/gtest.h>

#include <ctime>
#include <functional>
#include <iomanip>
#include <limits>
#include <locale>
#include <sstream>
#include <string>
#include <vector>

#include "features/feature_spray.h"
#include "gis/dxf/gis_file_dxf.h"
#include "gis/gis_map.h"
#include "gis/line_assembly.h"
#include "platform/system_services.h"
#include "test_support.h"

namespace {

// Golden drawings carry a local time stamp: pin the clock (5 March 2025 14:07:09 UTC) and the zone.
class DxfWriter : public ::testing::Test {
protected:
    void SetUp() override {
        setenv("TZ", "UTC", 1);
        tzset();
        SetClockForTesting([] { return std::time_t{1741183629}; });
    }
    void TearDown() override { SetClockForTesting({}); }
};

void AddLine(TMapLayer& layer, std::uint32_t kind, int boundType, const std::vector<tagLOC>& points) {
    AddImportedLine(&layer, static_cast<int>(kind), boundType, static_cast<int>(points.size()), points.data(),
                    "", false, COLOR_NONE, false, false, false);
}

void AddMarker(TMapLayer& layer, double lat, double lon, const char* name) {
    auto* marker = new TFeatureMarker;
    marker->SetLowBits(56);
    marker->m_Loc = TLoc(lat, lon);
    marker->m_strName = name;
    marker->CalculateGeoExtents();
    layer.AddElement(marker);
}

// A run of samples heading north along longitude -93 from latitude 45, one every 0.001 degrees,
// with the swath reaching 0.001 degrees to either side (A west, B east).
TFeatureSpray* AddSprayRun(TMapLayer& layer, int samples, bool spraying) {
    auto* spray = new TFeatureSpray(samples);
    for (int i = 0; i < samples; ++i) {
        const double lat = 45.0 + 0.001 * i;
        spray->m_pRecs[i].locPos = {lat, -93.0};
        spray->m_pRecs[i].locSwathA = {lat, -93.001};
        spray->m_pRecs[i].locSwathB = {lat, -92.999};
        spray->m_pRecs[i].bySpray = spraying ? 1 : 0;
    }
    spray->CalculateGeoExtents();
    layer.AddElement(spray);
    return spray;
}

// The drawing of a layer made by build, written in the given modes.
std::string Write(const std::function<void(TMapLayer&)>& build, int singleBlock = 0, int sprayOnly = 1,
                  int* result = nullptr) {
    TMapLayer layer;
    build(layer);
    TGisFileDxf writer;
    writer.SetSingleBlockMode(singleBlock);
    writer.SetSprayOnlyMode(sprayOnly);
    TTempDir dir;
    const int r = writer.WriteFile(dir.File("out.dxf").c_str(), &layer);
    if (result) *result = r;
    return ReadFileBytes(dir.File("out.dxf"));
}

// The colour and vertex count of every POLYLINE of a drawing, in file order: "1:4 6:0".
std::string DescribePolylines(const std::string& text) {
    std::istringstream in(text);
    std::string out, code, value, color;
    int vertices = -1;  // -1 outside a polyline
    while (std::getline(in, code) && std::getline(in, value)) {
        value.erase(value.find_last_not_of('\r') + 1);
        if (std::stoi(code) == 62 && color.empty()) color = value;
        if (std::stoi(code) != 0) continue;
        if (value == "POLYLINE") vertices = 0, color.clear();
        if (value == "VERTEX") ++vertices;
        if (value == "SEQEND" && vertices >= 0)
            out += (out.empty() ? "" : " ") + color + ":" + std::to_string(vertices), vertices = -1;
    }
    return out;
}

std::string GoldenPath(const std::string& name) {
    return std::string(TL_GIS_SOURCE_DIR) + "/tests/data/dxf/" + name;
}

const char* const kGoldens[] = {"boundary_exclusion.dxf",  "markers_only.dxf",        "spray_one_block.dxf",
                                "spray_single_blocks.dxf", "nonspray_spray_only.dxf", "nonspray_track.dxf",
                                "one_sample.dxf"};

// A host locale whose dates come out in words of its own.
class TOtherDates : public std::time_put<char> {
protected:
    iter_type do_put(iter_type out, std::ios_base&, char_type, const std::tm*, char, char) const override {
        for (const char c : std::string_view("Mars")) *out++ = c;
        return out;
    }
};

// Written under a host locale with month names of its own, which must not reach the file.
TEST_F(DxfWriter, GoldenDrawings) {
    const struct {
        std::function<void(TMapLayer&)> build;
        int singleBlock = 0;
        int sprayOnly = 1;
    } cases[] = {{[](TMapLayer& l) {
                     AddLine(l, ELEMENT_LINE_BOUNDARY, BOUNDARY_EXC,
                             {{45.123456789, -93.5}, {45.2, -93.5}, {45.2, -93.4}, {45.123456789, -93.4}});
                 }},
                 {[](TMapLayer& l) { AddMarker(l, 45.5, 10.8, "Gate"), AddMarker(l, 45.6, 10.9, "Well"); }},
                 {[](TMapLayer& l) { AddSprayRun(l, 3, true); }, 0, 1},
                 {[](TMapLayer& l) { AddSprayRun(l, 3, true); }, 1, 1},
                 {[](TMapLayer& l) { AddSprayRun(l, 3, false); }, 0, 1},
                 {[](TMapLayer& l) { AddSprayRun(l, 3, false); }, 0, 0},
                 {[](TMapLayer& l) { AddSprayRun(l, 1, true); }, 0, 0}};
    const std::locale previous = std::locale::global(std::locale(std::locale::classic(), new TOtherDates));
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        int result = -1;
        EXPECT_EQ(Write(cases[i].build, cases[i].singleBlock, cases[i].sprayOnly, &result),
                  ReadFileBytes(GoldenPath(kGoldens[i])))
            << kGoldens[i];
        EXPECT_EQ(result, 0) << kGoldens[i];
    }
    std::locale::global(previous);
}

// Polygons by kind and bound type (other lines and markers are not written); spray by the first
// sample's flag and the mode, with the track outline gathering every sample of every run. An
// unusable clock leaves the time stamp empty, and a coordinate too wide for a value line is
// cut, never spilled.
TEST_F(DxfWriter, PolylinesByMode) {
    SetClockForTesting([] { return std::numeric_limits<std::time_t>::max(); });
    const auto polygons = [](TMapLayer& l) {
        const std::vector<tagLOC> ring = {{45.1, 10.1}, {45.2, 10.1}, {45.2, 10.2}, {45.1, 10.1}};
        AddLine(l, ELEMENT_LINE_BOUNDARY, BOUNDARY_INC, ring);
        AddLine(l, ELEMENT_LINE_AREA, BOUNDARY_OPEN, ring);
        AddLine(l, ELEMENT_LINE_AREA, 0, {{45.1, 1e300}, {45.2, 10.1}});
        AddLine(l, ELEMENT_LINE_AREA, BOUNDARY_EXC, ring);
        for (const std::uint32_t kind : {ELEMENT_LINE_ROAD, ELEMENT_LINE_WATER, ELEMENT_LINE_GENERIC})
            AddLine(l, kind, BOUNDARY_EXC, ring);
        AddMarker(l, 45.5, 10.8, "Gate");
    };
    const auto runs = [](TMapLayer& l) {
        AddSprayRun(l, 4, true)->m_pRecs[0].bySpray = 0;
        AddSprayRun(l, 3, true)->m_dwType = ELEMENT_SPRAY_ALT | 5;
        AddSprayRun(l, 3, false);
    };
    const std::string text = Write(polygons);
    EXPECT_EQ(text.rfind("999\r\nCreated by TOLVIX mapping software \r\n", 0), 0u) << text.substr(0, 80);
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) EXPECT_LE(line.size(), 83u) << line;
    EXPECT_EQ(DescribePolylines(text), "3:4 3:4 3:2 1:4 6:0");
    EXPECT_EQ(DescribePolylines(Write(runs, 0, 0)), "2:4 1:6 2:3 6:10");
    EXPECT_EQ(DescribePolylines(Write(runs, 1, 1)), "1:4 1:4 6:10");
    EXPECT_EQ(DescribePolylines(Write(runs, 1, 0)), "2:2 2:2 2:2 1:4 1:4 2:2 2:2 6:10");
    TMapLayer layer;
    EXPECT_EQ(TGisFileDxf().WriteFile("/nonexistent-folder/out.dxf", &layer), 1);
}

TEST_F(DxfWriter, PeersAcceptWhatIsWrittenAndTheReaderReadsItBack) {
    // Squares with their closing vertex, some of them exclusions.
    TMapLayer layer;
    for (int i = 0; i < 40; ++i) {
        const double a = 44.0 + (i % 10) * 0.01, o = -95.0 + (i / 10) * 0.01;
        AddLine(layer, i % 3 ? ELEMENT_LINE_BOUNDARY : ELEMENT_LINE_AREA, i % 4 ? BOUNDARY_INC : BOUNDARY_EXC,
                {{a, o}, {a + 0.005, o}, {a + 0.005, o + 0.005}, {a, o + 0.005}, {a, o}});
    }
    TTempDir dir;
    const std::string path = dir.File("field.dxf");
    TGisMap map;
    ASSERT_EQ(map.WriteFile(path.c_str(), &layer), 0);
    TMapLayer back;
    ASSERT_EQ(map.LoadFile(path.c_str(), &back, nullptr), 0);
    // Six decimals are written; the rings come back open, with their closing vertex.
    const auto points = [](const TMapLayer& l) {
        std::ostringstream out;
        out << std::fixed << std::setprecision(6);
        for (const TMapElement* e : l.m_Elements) {
            const auto* line = static_cast<const TFeatureLine*>(e);
            for (int k = 0; k < line->m_iNumPoints; ++k)
                out << line->m_pPoints[k].dLat << ',' << line->m_pPoints[k].dLon << ' ';
            out << ";\n";
        }
        return out.str();
    };
    EXPECT_EQ(points(back), points(layer));

    std::string files = ShellQuote(path);
    for (const char* name : kGoldens) files += " " + ShellQuote(GoldenPath(name));
    const bool ezdxf = RunCommand(std::string(TL_GIS_PYTHON) + " -c 'import ezdxf'").iExit == 0;
    const bool gdal = HaveProgram("ogrinfo");
    const TCommandResult audit = RunCommand(
        std::string(TL_GIS_PYTHON) + " -c " +
        ShellQuote(
            "import sys, ezdxf\nbad = 0\nfor path in sys.argv[1:]:\n    auditor = "
            "ezdxf.readfile(path).audit()\n"
            "    for e in auditor.errors: print(path, e.code, e.message)\n    bad += auditor.has_errors\n"
            "sys.exit(1 if bad else 0)\n") +
        " " + files);
    EXPECT_TRUE(!ezdxf || audit.iExit == 0) << audit.strOut << audit.strErr;
    // ogrinfo reports broken entities on stderr and still exits with 0.
    const TCommandResult info =
        RunCommand("for f in " + files + "; do ogrinfo -al \"$f\" || echo ERROR; done");
    EXPECT_TRUE(!gdal || (info.strErr + info.strOut).find("ERROR") == std::string::npos)
        << info.strOut << info.strErr;
    if (!ezdxf || !gdal)
        GTEST_SKIP() << "not checked by " << (ezdxf ? "" : "ezdxf ") << (gdal ? "" : "ogrinfo");
}

// Flight spray through the tool: runs of 8 samples (not spraying), six of 14 (spraying) and 6 (not
// spraying), written in pairs with the track drawn.
TEST(DxfTool, InfoAndConvert) {
    TTempDir dir;
    const std::string out = ShellQuote(dir.File("out.dxf")), golden = ShellQuote(GoldenPath(kGoldens[0]));
    const std::string flight = ShellQuote(std::string(TL_GIS_SOURCE_DIR) + "/examples/flight.csv");
    const auto run = [](const std::string& args) { return RunCommand(std::string(TLGIS_EXE) + " " + args); };
    EXPECT_NE(run("info " + golden).strOut.find("Elements: 1 (boundary 1)"), std::string::npos);
    const TCommandResult bad = run("convert " + golden + " " + out + " --spray-only 2");
    EXPECT_EQ(bad.iExit, 2);
    EXPECT_NE(bad.strErr.find("--spray-only takes 0 or 1"), std::string::npos) << bad.strErr;
    const TCommandResult r =
        run("convert --quiet - " + out + " --spray " + flight + " --single-block --spray-only 0");
    ASSERT_EQ(r.iExit, 0) << r.strErr;
    std::string expected;
    for (const auto& [polyline, times] : {std::pair{"2:2 ", 7}, {"1:4 ", 78}, {"2:2 ", 5}})
        for (int i = 0; i < times; ++i) expected += polyline;
    EXPECT_EQ(DescribePolylines(ReadFileBytes(dir.File("out.dxf"))), expected + "6:98");
}

}  // namespace
