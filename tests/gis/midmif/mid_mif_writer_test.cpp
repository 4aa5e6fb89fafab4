// Writing MID/MIF pairs: golden files, paths and failures, recorded spray rows by setting, the
// padded row fields, and complete rows that GDAL reads.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include "features/feature_spray.h"
#include "gis/gis_map.h"
#include "gis/line_assembly.h"
#include "gis/midmif/gis_file_midmif.h"
#include "gis/numbers.h"
#include "test_support.h"

namespace {
// Restores the writer's class settings around each test.
class MidMifWriter : public testing::Test {
protected:
    void SetUp() override { Reset(); }
    void TearDown() override { Reset(); }
    static void Reset() {
        TGisFileMidMif::s_eMidDelimiter = MID_DELIMITER_COMMA;
        TGisFileMidMif::s_iMidSprayChans = 0;
        TGisFileMidMif::s_bMidCompleteRows = false;
        TGisFileMidMif::s_iDefaultMetric = 0;
        TGisFileMidMif::s_iDefaultSingleBlockMode = 0;
    }
};

void AddMarker(TMapLayer& layer, const std::string& name, double lat, double lon) {
    auto* marker = new TFeatureMarker;
    marker->m_strName = name;
    marker->m_Loc = TLoc(lat, lon);
    layer.AddElement(marker);
}

void AddPolygon(TMapLayer& layer, std::uint32_t kind, const char* id, int boundType,
                const std::vector<tagLOC>& points) {
    AddImportedLine(&layer, static_cast<int>(kind), boundType, static_cast<int>(points.size()), points.data(),
                    id, false, COLOR_NONE, false, false, false);
}

// One recorded sample: the swath ends (the sample lies halfway between them), time, and the
// values its .mid row shows.
struct TSample {
    tagLOC a, b;
    TSprayTime time;
    double speed = 0;
    int heading = 0, height = 0;  // height in units of 0.2 m
    float rate0 = 0, rate1 = 0;   // litres per hectare
    std::uint8_t spraying = 1;
};

TFeatureSpray* AddSpray(TMapLayer& layer, const std::vector<TSample>& samples, double channel0 = 0) {
    auto* spray = new TFeatureSpray(static_cast<int>(samples.size()));
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const TSample& s = samples[i];
        tagSPRAYREC& r = spray->m_pRecs[i];
        r.locSwathA = s.a, r.locSwathB = s.b;
        r.locPos = TLoc((s.a.dLat + s.b.dLat) / 2, (s.a.dLon + s.b.dLon) / 2);
        PackSprayTime(s.time, r);
        r.dSpeed = s.speed, r.sHeading = static_cast<std::int16_t>(s.heading);
        r.sHeight = static_cast<std::int16_t>(s.height);
        r.afActualRate[0] = s.rate0, r.afActualRate[1] = s.rate1, r.bySpray = s.spraying;
    }
    spray->m_adChannel[0] = channel0;
    layer.AddElement(spray);
    return spray;
}

// Three spraying samples on 15 March 2020 flying north along longitude -93 with a 0.001 degree
// swath to the west: 50, 40 and 60 m/s, headings 7, 8, 9, heights 100, 50 and 0 m, channel-0
// rates 5, 6 and 7 and channel-1 rates 10, 30 and 20 litres per hectare.
TFeatureSpray* AddThreeSampleSpray(TMapLayer& layer, double channel0 = 0) {
    return AddSpray(layer,
                    {{{45.0, -93.0}, {45.0, -93.001}, {2020, 3, 15, 14, 3, 10, 50}, 50, 7, 500, 5, 10},
                     {{45.001, -93.0}, {45.001, -93.001}, {2020, 3, 15, 14, 3, 11, 0}, 40, 8, 250, 6, 30},
                     {{45.002, -93.0}, {45.002, -93.001}, {2020, 3, 15, 14, 3, 11, 50}, 60, 9, 0, 7, 20}},
                    channel0);
}

// The lines of a text without their line ends.
std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) lines.push_back(line.substr(0, line.find('\r')));
    return lines;
}

void FillPolygons(TMapLayer& layer) {
    AddPolygon(layer, ELEMENT_LINE_BOUNDARY, "pond", BOUNDARY_EXC,
               {{45.0, -93.0}, {45.0, -92.9}, {45.1, -92.9}, {45.1, -93.0}});
    AddPolygon(layer, ELEMENT_LINE_AREA, "field 7", BOUNDARY_INC,
               {{46.0, -94.0}, {46.0, -93.7}, {46.3, -94.0}});
    // Lines without points, and kinds the writer does not know, are left out of both files.
    AddPolygon(layer, ELEMENT_LINE_BOUNDARY, "nothing", BOUNDARY_INC, {});
    AddPolygon(layer, ELEMENT_LINE_ROAD, "road", BOUNDARY_OPEN, {{1, 2}, {3, 4}});
    auto* point = new TFeaturePoint;
    point->m_Loc = TLoc(1, 2);
    layer.AddElement(point);
}

// A run with an impossible month and hour, a run whose first channel value suppresses the
// block row, and runs that write nothing: not spraying at the first sample, a single sample.
void FillSprayEdges(TMapLayer& layer) {
    const TSprayTime bad{2020, 13, 15, 25};
    AddSpray(layer, {{{46.0, -94.0}, {46.0, -94.002}, bad}, {{46.001, -94.0}, {46.001, -94.002}, bad}});
    const TSample first{{47.0, -95.0}, {47.0, -95.002}, {2020, 3, 15, 14, 3, 10, 50}};
    const TSample second{{47.002, -95.0}, {47.002, -95.002}, {2020, 3, 15, 14, 3, 11, 0}, 50, 7, 500, 8, 40};
    AddSpray(layer, {first, second}, 1.0)->m_dwType = ELEMENT_SPRAY_ALT;
    TSample idle = second;
    idle.spraying = 0;
    AddSpray(layer, {idle, second});
    AddSpray(layer, {second});
}

TEST_F(MidMifWriter, GoldenPairsMatchByteForByte) {
    const struct {
        const char* name;
        MIDDELIMITER delimiter;
        std::function<void(TMapLayer&)> fill;
        int singleBlockMode = 0;
    } cases[] = {{"marker_tab", MID_DELIMITER_TAB, [](TMapLayer& l) { AddMarker(l, "B", 45.5, -93.25); }},
                 {"polygons", MID_DELIMITER_COMMA, FillPolygons},
                 // Channel 1 peaks at 30 L/ha: 3.2072 US gallons per acre in the block rows.
                 {"spray_one_block", MID_DELIMITER_COMMA, [](TMapLayer& l) { AddThreeSampleSpray(l); }},
                 {"spray_pair_blocks", MID_DELIMITER_COMMA, [](TMapLayer& l) { AddThreeSampleSpray(l); }, 1},
                 {"spray_edges", MID_DELIMITER_COMMA, FillSprayEdges}};
    for (const auto& c : cases) {
        TGisFileMidMif::s_eMidDelimiter = c.delimiter;
        TGisFileMidMif::s_iDefaultSingleBlockMode = c.singleBlockMode;
        TGisFileMidMif::s_iMidSprayChans = 2;
        TMapLayer layer;
        c.fill(layer);
        TTempDir dir;
        ASSERT_EQ(TGisMap().WriteFile(dir.File("out.mif").c_str(), &layer), 0) << c.name;
        for (const char* ext : {".mif", ".mid"}) {
            const std::string golden =
                ReadFileBytes(std::string(TL_GIS_SOURCE_DIR) + "/tests/data/midmif/" + c.name + ext);
            EXPECT_FALSE(golden.empty()) << c.name << ext;
            EXPECT_EQ(ReadFileBytes(dir.File(std::string("out") + ext)), golden) << c.name << ext;
        }
    }
}

// The host may name the pair by any path (the dispatcher would only take .mif names); a
// delimiter other than comma and tab writes a space.
TEST_F(MidMifWriter, PathsDelimitersAndFailures) {
    TTempDir dir;
    std::filesystem::create_directories(dir.File("C:/data"));
    std::filesystem::create_directories(dir.File("taken.mid"));
    TMapLayer layer;
    AddMarker(layer, "A", 1, 2);
    const struct {
        const char* folder;
        int delimiter;
        const char* header;
        const char* row;
    } cases[] = {{"C:\\data\\", 0, "DELIMITER \",\"\r\n", ",,,,,,,A\r\n"},
                 {"C:/data/", 7, "DELIMITER \" \"\r\n", "       A\r\n"}};
    for (const auto& c : cases) {
        TGisFileMidMif::s_eMidDelimiter = static_cast<MIDDELIMITER>(c.delimiter);
        ASSERT_EQ(TGisFileMidMif().WriteFile(dir.File(c.folder + std::string("field.txt")).c_str(), &layer),
                  0);
        const std::string mif = ReadFileBytes(dir.File(c.folder + std::string("field.txt")));
        EXPECT_TRUE(mif.starts_with("Version 300") && mif.find(c.header) != std::string::npos)
            << c.folder << mif;
        EXPECT_EQ(ReadFileBytes(dir.File(c.folder + std::string("field.mid"))), c.row) << c.folder;
    }
    EXPECT_EQ(TGisMap().WriteFile(dir.File("no/such/folder/x.mif").c_str(), &layer), GISFILE_ERR_OPEN);
    // The .mif is created before the .mid fails.
    EXPECT_EQ(TGisMap().WriteFile(dir.File("taken.mif").c_str(), &layer), GISFILE_ERR_OPEN);
    EXPECT_TRUE(std::filesystem::exists(dir.File("taken.mif")));
}

// Rate units, channels and block modes, as "regions R points P: rate|rate|..." with the
// flow-rate field (the seventh) of each .mid row.
TEST_F(MidMifWriter, SprayRowsCarryTheExpectedRates) {
    const struct {
        const char* name;
        std::function<void(TFeatureSpray&, TGisFileMidMif&)> change;
        const char* expected;
    } cases[] = {// Peaks are taken per block: the first pair peaks at 10, the second at 20.
                 {"metric as recorded, peaks per pair of samples",
                  [](TFeatureSpray& s, TGisFileMidMif& w) {
                      w.m_bMetric = 1, w.SetSingleBlockMode(1), s.m_pRecs[1].afActualRate[1] = 0;
                  },
                  "regions 2 points 0: 10.0000|20.0000|6.0000|7.0000"},
                 {"mass in pounds, channels beyond ten stop at ten",
                  [](TFeatureSpray& s, TGisFileMidMif&) {
                      s.m_iRateUnits = 6, TGisFileMidMif::s_iMidSprayChans = 40,
                      s.m_pRecs[2].afActualRate[9] = 10;
                  },
                  "regions 1 points 0: 8.9218|5.3531|6.2453"}};
    for (const auto& c : cases) {
        TGisFileMidMif::s_iMidSprayChans = 2;
        TMapLayer layer;
        TFeatureSpray* spray = AddThreeSampleSpray(layer);
        TTempDir dir;
        {
            TGisFileMidMif writer;
            c.change(*spray, writer);
            ASSERT_EQ(writer.WriteFile(dir.File("s.mif").c_str(), &layer), 0) << c.name;
        }
        int regions = 0, points = 0;
        for (const std::string& line : Lines(ReadFileBytes(dir.File("s.mif"))))
            regions += line.starts_with("REGION"), points += line.starts_with("POINT");
        std::string rates;
        for (const std::string& row : Lines(ReadFileBytes(dir.File("s.mid")))) {
            std::istringstream fields(row);
            std::string rate;
            for (int i = 0; i < 7; ++i) std::getline(fields, rate, ',');
            rates += (rates.empty() ? "" : "|") + rate.substr(rate.find_first_not_of(' '));
        }
        EXPECT_EQ("regions " + std::to_string(regions) + " points " + std::to_string(points) + ": " + rates,
                  c.expected)
            << c.name;
    }
}

// Rounding, signs and widths of the row fields, "%*.*f", "%0*lld" and "%*lld", as printf gives them.
TEST(MidFields, PaddingMatchesPrintf) {
    for (const double v :
         {0.0, -0.0, 0.05, 0.25, -1.25, 2.5, 111.84681, 99999.95, -123456.789, 1e-7, 3.20719906}) {
        for (const auto& [width, decimals] : {std::pair{5, 1}, std::pair{10, 4}, std::pair{3, 0}}) {
            char expected[64];
            std::snprintf(expected, sizeof expected, "%*.*f", width, decimals, v);
            std::string got;
            AppendFixedWidth(got, v, width, decimals);
            EXPECT_EQ(got, expected) << v << " width " << width << " decimals " << decimals;
        }
    }
    for (const long long v : {0LL, 7LL, -7LL, 328LL, -13LL, 12345LL, -12345LL, 2147483647LL}) {
        for (const int width : {2, 3, 5}) {
            char zero[32], space[32];
            std::snprintf(zero, sizeof zero, "%0*lld", width, v);
            std::snprintf(space, sizeof space, "%*lld", width, v);
            std::string z, s;
            AppendIntWidth(z, v, width, true);
            AppendIntWidth(s, v, width, false);
            EXPECT_EQ(z + "|" + s, std::string(zero) + "|" + space) << v << " width " << width;
        }
    }
}

// Complete rows: every object has a row with one field per column, so GDAL reads them all,
// under every delimiter, in both block modes.
TEST_F(MidMifWriter, GdalReadsEveryObjectOfCompleteRows) {
    if (!HaveProgram("ogrinfo"))
        GTEST_SKIP() << "ogrinfo (GDAL) is not installed; run scripts/install-test-tools.sh";
    for (const MIDDELIMITER delimiter : {MID_DELIMITER_COMMA, MID_DELIMITER_TAB, MID_DELIMITER_SPACE}) {
        for (const int mode : {0, 1}) {
            TGisFileMidMif::s_eMidDelimiter = delimiter;
            TGisFileMidMif::s_iDefaultSingleBlockMode = mode;
            TGisFileMidMif::s_iMidSprayChans = 2;
            TGisFileMidMif::s_bMidCompleteRows = true;
            TMapLayer layer;
            FillPolygons(layer);
            AddMarker(layer, "B", 45.5, -93.25);
            AddPolygon(layer, ELEMENT_LINE_BOUNDARY, "a,b \"c\"", BOUNDARY_INC,
                       {{45.0, -93.0}, {45.0, -92.9}, {45.1, -92.9}});
            AddThreeSampleSpray(layer);
            AddThreeSampleSpray(layer, 1.0);
            TTempDir dir;
            ASSERT_EQ(TGisMap().WriteFile(dir.File("c.mif").c_str(), &layer), 0);
            const TCommandResult r = RunCommand("ogrinfo -ro -al " + ShellQuote(dir.File("c.mif")));
            const std::string what = "delimiter " + std::to_string(delimiter) + " mode " +
                                     std::to_string(mode) + "\n" + r.strOut + r.strErr;
            EXPECT_TRUE(r.iExit == 0 && r.strErr.find("ERROR") == std::string::npos) << what;
            int objects = 0, features = 0;
            for (const std::string& line : Lines(ReadFileBytes(dir.File("c.mif"))))
                objects += line.starts_with("REGION") || line.starts_with("POINT");
            for (const std::string& line : Lines(r.strOut)) features += line.starts_with("OGRFeature(");
            // Three polygons and a marker, then 1 or 2 regions per run and 2 sample points each.
            EXPECT_EQ(objects, mode == 0 ? 10 : 12) << what;
            EXPECT_EQ(features, objects) << what;
            for (const char* field :
                 {"Date (String) = pond", "ABC_Points (String) = B", "Date (String) = a,b \"c\"",
                  "FlowRate (Real) = 3.2072", "SprayStatus (String) =  ON", "Altitude (Integer) = 328"})
                EXPECT_NE(r.strOut.find(field), std::string::npos) << field << " in " << what;
        }
    }
}
}  // namespace
