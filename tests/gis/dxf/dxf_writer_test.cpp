// The writer: byte-exact drawings, group formatting, and files that other programs accept and
// this reader reads back.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <limits>
#include <locale>
#include <string>
#include <vector>

#include "dxf_test_support.h"
#include "features/feature_spray.h"
#include "gis/dxf/dxf_group_writer.h"
#include "gis/dxf/dxf_line_reader.h"
#include "gis/dxf/gis_file_dxf.h"
#include "gis/gis_map.h"
#include "gis/line_assembly.h"
#include "platform/system_services.h"
#include "test_support.h"

namespace {

// 5 March 2025 14:07:09 UTC, the time stamp of every golden drawing.
constexpr std::time_t kGoldenTime = 1741183629;

// Golden drawings carry a local time stamp: pin the clock and the zone.
class DxfWriter : public ::testing::Test {
protected:
    void SetUp() override {
        setenv("TZ", "UTC", 1);
        tzset();
        SetClockForTesting([] { return kGoldenTime; });
    }
    void TearDown() override { SetClockForTesting({}); }
};

// A line of the kind holding the points exactly as given (no closing vertex added).
TFeatureLine* AddLine(TMapLayer& layer, std::uint32_t kind, int boundType,
                      const std::vector<tagLOC>& points) {
    TFeatureLine* line = CreateLineForKind(static_cast<int>(kind));
    auto* copy = new tagLOC[points.size() + 1];
    std::copy(points.begin(), points.end(), copy);
    line->AdoptPoints(copy, static_cast<int>(points.size()), static_cast<int>(points.size()) + 1);
    line->SetLowBits(boundType);
    line->CalculateGeoExtents();
    layer.AddElement(line);
    return line;
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
void AddSprayRun(TMapLayer& layer, int samples, bool spraying) {
    auto* spray = new TFeatureSpray(samples);
    for (int i = 0; i < samples; ++i) {
        tagSPRAYREC& rec = spray->m_pRecs[i];
        const double lat = 45.0 + 0.001 * i;
        rec.locPos = {lat, -93.0};
        rec.locSwathA = {lat, -93.001};
        rec.locSwathB = {lat, -92.999};
        rec.bySpray = spraying ? 1 : 0;
    }
    spray->CalculateGeoExtents();
    layer.AddElement(spray);
}

std::string Golden(const std::string& name) {
    return ReadFileBytes(std::string(TL_GIS_SOURCE_DIR) + "/tests/data/dxf/" + name);
}

std::string WriteLayer(TMapLayer& layer, TGisFileDxf& writer, int* result = nullptr) {
    TTempDir dir;
    const std::string path = dir.File("out.dxf");
    const int r = writer.WriteFile(path.c_str(), &layer);
    if (result) *result = r;
    return ReadFileBytes(path);
}

// The drawing of a layer made by build, written by a new writer in the given modes.
std::string WriteBuiltLayer(const std::function<void(TMapLayer&)>& build, int singleBlock, int sprayOnly,
                            int* result) {
    TMapLayer layer;
    build(layer);
    TGisFileDxf writer;
    writer.SetSingleBlockMode(singleBlock);
    writer.SetSprayOnlyMode(sprayOnly);
    return WriteLayer(layer, writer, result);
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
    } cases[] = {
        {[](TMapLayer& layer) {
            AddLine(layer, ELEMENT_LINE_BOUNDARY, BOUNDARY_EXC,
                    {{45.123456789, -93.5}, {45.2, -93.5}, {45.2, -93.4}, {45.123456789, -93.4}});
        }},
        {[](TMapLayer& layer) {
            AddMarker(layer, 45.5, 10.8, "Gate");
            AddMarker(layer, 45.6, 10.9, "Well");
        }},
        {[](TMapLayer& layer) { AddSprayRun(layer, 3, true); }, 0, 1},
        {[](TMapLayer& layer) { AddSprayRun(layer, 3, true); }, 1, 1},
        {[](TMapLayer& layer) { AddSprayRun(layer, 3, false); }, 0, 1},
        {[](TMapLayer& layer) { AddSprayRun(layer, 3, false); }, 0, 0},
        {[](TMapLayer& layer) { AddSprayRun(layer, 1, true); }, 0, 0},
    };
    const std::locale previous = std::locale::global(std::locale(std::locale::classic(), new TOtherDates));
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        int result = -1;
        EXPECT_EQ(WriteBuiltLayer(cases[i].build, cases[i].singleBlock, cases[i].sprayOnly, &result),
                  Golden(kGoldens[i]))
            << kGoldens[i];
        EXPECT_EQ(result, 0) << kGoldens[i];
    }
    std::locale::global(previous);
}

// Which polylines come out in both modes, and the track outline that gathers every sample of
// every run.
TEST_F(DxfWriter, PolylinesByMode) {
    const auto firstSampleOff = [](TMapLayer& layer) {
        AddSprayRun(layer, 4, true);
        static_cast<TFeatureSpray*>(layer.m_Elements.back())->m_pRecs[0].bySpray = 0;
    };
    const auto otherKind = [](TMapLayer& layer) {
        AddSprayRun(layer, 3, true);
        layer.m_Elements.back()->m_dwType = ELEMENT_SPRAY_ALT | 5;
    };
    const struct {
        const char* name;
        std::function<void(TMapLayer&)> build;
        int singleBlock;
        int sprayOnly;
        const char* polylines;
    } cases[] = {
        {"four spraying samples, one block", [](TMapLayer& l) { AddSprayRun(l, 4, true); }, 0, 1, "1:8 6:4"},
        {"four spraying samples, pairs", [](TMapLayer& l) { AddSprayRun(l, 4, true); }, 1, 1,
         "1:4 1:4 1:4 6:4"},
        {"not spraying, pairs, track drawn", [](TMapLayer& l) { AddSprayRun(l, 4, false); }, 1, 0,
         "2:2 2:2 2:2 6:4"},
        {"the first sample decides: track", firstSampleOff, 0, 0, "2:4 6:4"},
        {"the first sample decides: nothing", firstSampleOff, 0, 1, "6:4"},
        {"the second spray kind with low bits", otherKind, 0, 1, "1:6 6:3"},
        {"no samples", [](TMapLayer& l) { AddSprayRun(l, 0, true); }, 0, 1, "6:0"},
        {"runs and polygons in layer order",
         [](TMapLayer& l) {
             AddSprayRun(l, 3, true);
             AddLine(l, ELEMENT_LINE_BOUNDARY, BOUNDARY_INC, {{45.1, -93.1}, {45.2, -93.1}, {45.2, -93.2}});
             AddSprayRun(l, 1, true);
             AddSprayRun(l, 2, false);
         },
         0, 0, "1:6 3:3 2:2 6:6"},
        // Polygons by kind and bound type; lines of other classes and markers are not written.
        {"polygons",
         [](TMapLayer& l) {
             const std::vector<tagLOC> ring = {{45.1, 10.1}, {45.2, 10.1}, {45.2, 10.2}, {45.1, 10.1}};
             AddLine(l, ELEMENT_LINE_BOUNDARY, BOUNDARY_INC, ring);
             AddLine(l, ELEMENT_LINE_BOUNDARY, BOUNDARY_EXC, ring);
             AddLine(l, ELEMENT_LINE_AREA, BOUNDARY_OPEN, ring);
             AddLine(l, ELEMENT_LINE_AREA, 0, {ring[0], ring[1]});
             AddLine(l, ELEMENT_LINE_AREA, BOUNDARY_EXC, ring);
             for (const std::uint32_t kind : {ELEMENT_LINE_ROAD, ELEMENT_LINE_WATER, ELEMENT_LINE_GENERIC})
                 AddLine(l, kind, BOUNDARY_EXC, ring);
             AddMarker(l, 45.5, 10.8, "Gate");
         },
         0, 1, "3:4 1:4 3:4 3:2 1:4 6:0"},
    };
    for (const auto& c : cases) {
        int result = -1;
        EXPECT_EQ(DescribePolylines(WriteBuiltLayer(c.build, c.singleBlock, c.sprayOnly, &result)),
                  c.polylines)
            << c.name;
        EXPECT_EQ(result, 0) << c.name;
    }
}

// The outline belongs to the writer object: a second file from the same object draws the
// samples of both.
TEST_F(DxfWriter, OutlineGrowsAcrossFilesOfOneWriter) {
    TMapLayer layer;
    AddSprayRun(layer, 3, true);
    TGisFileDxf writer;
    EXPECT_EQ(DescribePolylines(WriteLayer(layer, writer)), "1:6 6:3");
    EXPECT_EQ(DescribePolylines(WriteLayer(layer, writer)), "1:6 6:6");
}

TEST_F(DxfWriter, UnusableClockLeavesTheTimeStampEmpty) {
    SetClockForTesting([] { return std::numeric_limits<std::time_t>::max(); });
    TMapLayer layer;
    TGisFileDxf writer;
    const auto groups = ReadGroups(WriteLayer(layer, writer));
    ASSERT_FALSE(groups.empty());
    EXPECT_EQ(groups[0], std::make_pair(999, std::string("Created by TOLVIX mapping software ")));
}

// What a group writer puts into a file.
std::string WrittenGroups(const std::function<void(TDxfGroupWriter&)>& write) {
    TTempDir dir;
    const std::string path = dir.File("groups.dxf");
    {
        TTextFile file;
        if (!file.Open(path.c_str(), TTextFile::modeCreate)) return "<cannot create>";
        TDxfGroupWriter out(file);
        write(out);
        if (!out.Flush()) return "<write failed>";
    }
    return ReadFileBytes(path);
}

TEST(DxfGroupWriter, CodesAndValues) {
    // Values are cut to 82 characters, numbers written as "%.6f".
    const std::string cut = std::string(82, 'v') + "\r\n";
    const struct {
        int code;
        std::string value;
        std::string expected;
    } cases[] = {
        {0, "SECTION", "  0\r\nSECTION\r\n"},
        {999, "note", "999\r\nnote\r\n"},
        {1071, "7", "1071\r\n7\r\n"},
        {-5, "", " -5\r\n\r\n"},
        {1, std::string(100, 'v'), "  1\r\n" + cut},
    };
    for (const auto& c : cases)
        EXPECT_EQ(WrittenGroups([&](TDxfGroupWriter& out) { out.WriteGroup(c.code, c.value); }), c.expected)
            << c.code;
    const std::pair<double, const char*> numbers[] = {{-93.5, "-93.500000"},
                                                      {45.123456789, "45.123457"},
                                                      {0.0000004, "0.000000"},
                                                      {-0.0000004, "-0.000000"}};
    for (const auto& [value, expected] : numbers)
        EXPECT_EQ(WrittenGroups([&](TDxfGroupWriter& out) { out.WriteGroup(10, value); }),
                  std::string(" 10\r\n") + expected + "\r\n")
            << value;
    // A value wider than the line buffer is cut, never spilled.
    EXPECT_EQ(WrittenGroups([&](TDxfGroupWriter& out) { out.WriteGroup(10, 1e300); }).size(), 5u + 82u + 2u);
}

TEST_F(DxfWriter, FailuresGiveOne) {
    TMapLayer layer;
    TGisFileDxf writer;
    EXPECT_EQ(writer.WriteFile("/nonexistent-folder/out.dxf", &layer), 1);
    TTempDir dir;
    EXPECT_EQ(writer.WriteFile(dir.File("x.dxf").c_str(), nullptr), 1);
    // A layer without elements has no extents: zeros stand in for them.
    const auto groups = ReadGroups(WriteLayer(layer, writer));
    ASSERT_GT(groups.size(), 20u);
    EXPECT_EQ(groups[9].second, "$EXTMIN");
    EXPECT_EQ(groups[10].second, "0.000000");
    EXPECT_EQ(groups[11].second, "0.000000");
}

// Rings of a field map: n squares with their closing vertex, some of them exclusions.
void AddFieldRings(TMapLayer& layer, int n) {
    for (int i = 0; i < n; ++i) {
        const double lat = 44.0 + (i % 100) * 0.01, lon = -95.0 + (i / 100) * 0.01;
        const std::vector<tagLOC> ring = {
            {lat, lon}, {lat + 0.005, lon}, {lat + 0.005, lon + 0.005}, {lat, lon + 0.005}, {lat, lon}};
        AddImportedLine(&layer, static_cast<int>(i % 3 ? ELEMENT_LINE_BOUNDARY : ELEMENT_LINE_AREA),
                        i % 4 ? BOUNDARY_INC : BOUNDARY_EXC, 4, ring.data(), "", true, COLOR_NONE, false,
                        false, false);
    }
}

TEST_F(DxfWriter, ReadBackGivesTheSameBoundaries) {
    TMapLayer layer;
    AddFieldRings(layer, 250);
    AddMarker(layer, 45.5, 10.8, "Gate");
    TTempDir dir;
    const std::string path = dir.File("field.dxf");
    TGisMap map;
    ASSERT_EQ(map.WriteFile(path.c_str(), &layer), 0);
    TMapLayer back;
    ASSERT_EQ(map.LoadFile(path.c_str(), &back, nullptr), 0);
    ASSERT_EQ(back.GetElementCount(), 250);
    for (int i = 0; i < 250; ++i) {
        const auto* a = static_cast<const TFeatureLine*>(layer.m_Elements[i]);
        const auto* b = static_cast<const TFeatureLine*>(back.m_Elements[i]);
        ASSERT_EQ(b->m_iNumPoints, a->m_iNumPoints) << "ring " << i;
        for (int k = 0; k < a->m_iNumPoints; ++k)
            EXPECT_TRUE(std::abs(b->m_pPoints[k].dLat - a->m_pPoints[k].dLat) < 5e-7 &&
                        std::abs(b->m_pPoints[k].dLon - a->m_pPoints[k].dLon) < 5e-7)
                << "ring " << i << " vertex " << k;
    }
}

TEST_F(DxfWriter, PeersAcceptEveryGolden) {
    const TDxfPeers peers = FindDxfPeers();
    if (!peers.bEzdxf && !peers.bGdal) GTEST_SKIP() << peers.Missing();
    TTempDir dir;
    std::vector<std::string> files;
    for (const char* name : kGoldens)
        files.push_back(std::string(TL_GIS_SOURCE_DIR) + "/tests/data/dxf/" + name);
    TMapLayer layer;
    AddFieldRings(layer, 40);
    files.push_back(dir.File("field.dxf"));
    TGisMap map;
    ASSERT_EQ(map.WriteFile(files.back().c_str(), &layer), 0);
    for (const std::string& f : files) EXPECT_EQ(DxfPeerComplaints(f, peers), "") << f;
    if (!peers.Missing().empty()) GTEST_SKIP() << peers.Missing();
}

}  // namespace
