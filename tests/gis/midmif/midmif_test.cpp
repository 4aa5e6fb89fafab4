// MapInfo pairs: reading .mif line grammar, hostile input and files written by GDAL; writing
// golden pairs, paths and failures, rate units and channels, and complete rows that GDAL reads.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include <tl_gis/features/feature_spray.h>
#include <tl_gis/gis/gis_map.h>
#include <tl_gis/gis/line_assembly.h>
#include <tl_gis/gis/midmif/gis_file_midmif.h>
#include "layer_builders.h"
#include "load_report_check.h"
#include "test_support.h"

namespace {
using namespace layer_test;
// What a load left, as "id:lat lon,lat lon; ... @lat lon ?questions": the lines with their points
// ('!' after the id of a line that is no inclusion boundary), the centroids that POINT lines
// added, the questions asked, and a result other than 0. A report, when given, is filled.
std::string LoadMif(const std::string& path, int answer = ANSWER_NO, TLoadReport* report = nullptr) {
    TScriptedMessages messages({answer});
    TMapLayer layer;
    const int result = report != nullptr ? TGisMap().LoadFile(path.c_str(), &layer, nullptr, *report)
                                         : TGisMap().LoadFile(path.c_str(), &layer, nullptr);
    std::ostringstream out;
    std::vector<tagLOC> centroids = layer.m_Centroids;
    for (const TMapElement* e : layer.m_Elements) {
        const auto* line = dynamic_cast<const TFeatureLine*>(e);
        out << line->m_strId << (line->m_dwType == (ELEMENT_LINE_BOUNDARY | BOUNDARY_INC) ? ":" : "!:");
        for (int i = 0; i < line->m_iNumPoints; ++i)
            out << (i ? "," : "") << line->m_pPoints[i].dLat << " " << line->m_pPoints[i].dLon;
        out << "; ";
        // Each line registers its own centroid; what is left came from POINT lines.
        centroids.erase(std::find_if(centroids.begin(), centroids.end(), [&](const tagLOC& c) {
            return c.dLat == line->m_locCentroid.dLat && c.dLon == line->m_locCentroid.dLon;
        }));
    }
    for (const tagLOC& c : centroids) out << "@" << c.dLat << " " << c.dLon << " ";
    if (const auto questions = std::count_if(messages.Shown().begin(), messages.Shown().end(),
                                             [](const TMessageBoxRequest& m) { return m.IsQuestion(); }))
        out << "?" << questions << " ";
    if (result != 0) out << "result " << result << " ";
    std::string s = out.str();
    return s.substr(0, s.find_last_not_of(' ') + 1);
}

const std::string kHeader =
    "Version 300\r\nCharset \"WindowsLatin1\"\r\nDelimiter \",\"\r\nCoordSys Earth Projection 1, "
    "0\r\nColumns 1\r\n  Name Char(10)\r\nData\r\n\r\n";

TEST(MifRead, LinesLeaveTheExpectedLayer) {
    const std::string longLine(10000, 'x');
    const struct {
        const char* name;
        std::string text;
        const char* expected;
        int answer = ANSWER_NO;
    } cases[] = {
        {"two polylines",
         kHeader + "PLINE 3\r\n10 45\r\n11 46\r\n12 47\r\n  SMOOTH\r\nPLINE 2\r\n1 2\r\n3 4\r\n",
         "1:45 10,46 11,47 12; 2:2 1,4 3;"},
        // Objects are numbered when they are saved, which is at the next object's keyword.
        {"DATA restarts the numbering", kHeader + "PLINE 2\n1 2\n3 4\nPLINE 2\nDATA\n5 6\n7 8\n",
         "1:2 1,4 3; 1:6 5,8 7;"},
        {"first ring of a region",
         kHeader + "REGION 2\n  4\n0 0\n1 0\n1 1\n0 1\n  3\n5 5\n6 5\n6 6\nPEN (1,2,0)\n",
         "1:0 0,0 1,1 1,1 0;"},
        {"POINT with one space", kHeader + "POINT 10.5 45.2\n", "@45.2 10.5"},
        {"POINT with two spaces loses x", kHeader + "POINT  10.5 45.2\n", "@45.2 0"},
        {"POINT ends an open object", kHeader + "PLINE 2\n1 2\n3 4\nPoint 7 8\n", "1:2 1,4 3; @8 7"},
        {"any case after blanks", kHeader + "  pline 2\n\t1 2\n3 4\n   rEgIoN 1\n 3\n1 1\n2 2\n3 1\n",
         "1:2 1,4 3; 2:1 1,2 2,1 3;"},
        // Counts outside 1..30000 end the reading before anything is allocated.
        {"count 0", kHeader + "PLINE 0\n1 2\nPLINE 2\n1 2\n3 4\n", ""},
        {"count 30001", kHeader + "PLINE 30001\n1 2\nPLINE 2\n1 2\n3 4\n", ""},
        {"count 30000", kHeader + "PLINE 30000\n1 2\n", "1:2 1;"},
        {"count 2^31", kHeader + "REGION 1\n2147483648\n1 2\nPOINT 1 1\n", ""},
        {"negative count", kHeader + "PLINE -5\n1 2\nPOINT 1 1\n", ""},
        // A bad point ends the reading; the object keeps the points before it.
        {"point out of range", kHeader + "PLINE 3\n1 2\n500 2\n3 4\nPOINT 1 1\n", "1:2 1;"},
        {"projected, Yes", kHeader + "PLINE 3\n1 2\n500000 5000000\n3 4\nPOINT 1 1\n", "1:2 1; ?1",
         ANSWER_YES},
        {"projected, No", kHeader + "PLINE 2\n500000 5000000\n1 2\nPLINE 2\n1 2\n3 4\n", "1:; ?1"},
        {"points missing at the end", kHeader + "PLINE 5\n1 2\n3 4", "1:2 1,4 3;"},
        {"10,000 characters", kHeader + longLine + "\nPLINE 2\n1 2 " + longLine + "\n3 4\n", "1:2 1,4 3;"},
        // Only the start of a line longer than a read piece is looked at.
        {"a line over a read piece", kHeader + std::string(200000, 'x') + "PLINE 5\nPLINE 2\n1 2\n3 4\n",
         "1:2 1,4 3;"}};
    for (const auto& c : cases) {
        TTempDir dir;
        WriteFileBytes(dir.File("test.mif"), c.text);
        EXPECT_EQ(LoadMif(dir.File("test.mif"), c.answer), c.expected) << c.name;
    }
    // A .mid is never read; its missing .mif cannot be opened.
    TTempDir dir;
    WriteFileBytes(dir.File("only.mid"), "\"a\",1\n");
    EXPECT_EQ(LoadMif(dir.File("only.mid")), "result " + std::to_string(GISFILE_ERR_UNAVAILABLE));
    EXPECT_EQ(LoadMif(dir.File("only.mif")), "result " + std::to_string(GISFILE_ERR_OPEN));
}

// GDAL's MIF of a GeoJSON made here, in degrees and in UTM: a polygon with two holes (first ring
// read), a line, two points (centroids) and two two-point lines (Line objects, left out), with the
// report counting what GDAL wrote.
TEST(MifRead, FilesWrittenByGdal) {
    SKIP_WITHOUT_LINUX_PEERS();
    if (!HaveProgram("ogr2ogr"))
        GTEST_SKIP() << "ogr2ogr (GDAL) is not installed; run scripts/install-test-tools.sh";
    TTempDir dir;
    std::string features;
    for (const char* geometry :
         {R"("Polygon","coordinates":[[[-93.0,45.0],[-92.9,45.0],[-92.9,45.1],[-93.0,45.1],[-93.0,45.0]],)"
          R"([[-92.98,45.02],[-92.95,45.02],[-92.95,45.05],[-92.98,45.02]],)"
          R"([[-92.92,45.06],[-92.91,45.06],[-92.91,45.07],[-92.92,45.06]]])",
          R"("LineString","coordinates":[[-93.1,45.2],[-93.05,45.25],[-93.0,45.22]])",
          R"("Point","coordinates":[-93.2,45.3])", R"("Point","coordinates":[-93.2,45.4])",
          R"("LineString","coordinates":[[-93.1,45.2],[-93.0,45.3]])",
          R"("LineString","coordinates":[[-93.1,45.3],[-93.0,45.3]])"})
        features += std::string(features.empty() ? "" : ",") +
                    R"({"type":"Feature","properties":{"n":1},"geometry":{"type":)" + geometry + "}}";
    WriteFileBytes(dir.File("in.geojson"), R"({"type":"FeatureCollection","features":[)" + features + "]}");
    for (const char* options : {"", "-s_srs EPSG:4326 -t_srs EPSG:32615"}) {
        const std::string out = dir.File(std::string("gdal") + (*options ? "_utm" : "") + ".mif");
        const TCommandResult r =
            RunCommand(std::string("ogr2ogr -f \"MapInfo File\" -dsco FORMAT=MIF ") + options + " " +
                       ShellQuote(out) + " " + ShellQuote(dir.File("in.geojson")));
        ASSERT_EQ(r.iExit, 0) << r.strErr;
        TLoadReport report;
        EXPECT_EQ(LoadMif(out, ANSWER_NO, &report),
                  *options
                      ? "1:; ?1"
                      : "1:45 -93,45 -92.9,45.1 -92.9,45.1 -93,45 -93; 2:45.2 -93.1,45.25 -93.05,45.22 -93; "
                        "@45.3 -93.2 @45.4 -93.2")
            << options;
        if (*options) continue;
        EXPECT_EQ(report.GetCount(LOAD_MIF_LINE), 2);
        EXPECT_EQ(report.GetCount(LOAD_MIF_POINT), 2);
        EXPECT_EQ(report.GetCount(LOAD_MIF_REGION_RING), 2);
        EXPECT_EQ(report.GetSkipped().size(), 3u) << DescribeReport(report);
        EXPECT_EQ(DescribeAdded(report), "boundary 2");
        EXPECT_FALSE(report.HasStopped());
    }
}

// Columns named like objects (Text, Line) come before DATA and are no objects.
TEST(MifRead, LoadReportCountsWhatIsLeftOut) {
    const std::vector<std::string> head = {"Version 300", "Columns 2", "  Text Char(10)", "  Line Integer",
                                           "Data"};
    const auto with = [&](const std::string& body) {
        std::vector<std::string> lines = head;
        std::istringstream in(body);
        for (std::string line; std::getline(in, line, '|');) lines.push_back(line);
        return lines;
    };
    const auto objects = with(
        "Line 10 45 10.1 45.1|  Pen (1,2,0)|Arc 10 45 10.1 45.1|  0 360|Text \"hello\"|  10 45 10.1 "
        "45.1|Multipoint 2|10 45|10.1 45.1|Rect 10 45 10.1 45.1|Roundrect 10 45 10.1 45.1 0.01|Ellipse 10 45 "
        "10.1 45.1|none|Point 10.5 45.2|Region 3|  4|10 45|10.1 45|10.1 45.1|10 45|  3|10.02 45.02|10.05 "
        "45.02|10.05 45.05|  3|10.06 45.06|10.07 45.06|10.07 45.07|Pline 2|10 46|10.1 46.1|LINE 11 45 11.1 "
        "45.1");
    const auto multiple = with("Pline Multiple 2|  2|10 45|10.1 45.1");
    const auto outOfRange = with("Pline 3|10 45|200 95|10 46");
    const auto projected = with("Pline 2|10 45|500000 5000000");
    const auto tooMany = with("Pline 30001|10 45");
    const auto texts = with("Text \"a\"|  10 45 10.1 45.1|Text \"b\"|  10 45 10.1 45.1");
    const TReportCase cases[] = {
        {"objects it does not read",
         JoinLines(objects),
         {{LOAD_MIF_LINE, 2, LineAt(objects, "Line 10 45 10.1 45.1")},
          {LOAD_MIF_ARC, 1, LineAt(objects, "Arc 10 45 10.1 45.1")},
          {LOAD_MIF_TEXT, 1, LineAt(objects, "Text \"hello\"")},
          {LOAD_MIF_MULTIPOINT, 1, LineAt(objects, "Multipoint 2")},
          {LOAD_MIF_RECT, 1, LineAt(objects, "Rect 10 45 10.1 45.1")},
          {LOAD_MIF_ROUNDRECT, 1, LineAt(objects, "Roundrect 10 45 10.1 45.1 0.01")},
          {LOAD_MIF_ELLIPSE, 1, LineAt(objects, "Ellipse 10 45 10.1 45.1")},
          {LOAD_MIF_NONE, 1, LineAt(objects, "none")},
          {LOAD_MIF_REGION_RING, 2, LineAt(objects, "Region 3")},
          {LOAD_MIF_POINT, 1, LineAt(objects, "Point 10.5 45.2")}},
         "",
         "boundary 2"},
        {"PLINE MULTIPLE stops the reading",
         JoinLines(multiple),
         {},
         "at " + LineAt(multiple, "  2") +
             ": a point count of 0, outside 1 to 30000 (a PLINE MULTIPLE object, which is not read); lines "
             "8.. were not read",
         ""},
        {"a point out of the degree range stops the reading",
         JoinLines(outOfRange),
         {},
         "at " + LineAt(outOfRange, "200 95") +
             ": a point (95, 200) is outside the degree range; lines 9.. were not read",
         "boundary 1"},
        {"a projected point stops the reading, answered No",
         JoinLines(projected),
         {},
         "at " + LineAt(projected, "500000 5000000") +
             ": a point (5000000, 500000) looks projected (answered No; either answer ends the reading); it "
             "was the last line",
         "boundary 1"},
        {"a point count over 30000",
         JoinLines(tooMany),
         {},
         "at " + LineAt(tooMany, "10 45") +
             ": a point count of 30001, outside 1 to 30000; it was the last line",
         ""},
        {"only Text objects", JoinLines(texts), {{LOAD_MIF_TEXT, 2, LineAt(texts, "Text \"a\"")}}, "", ""},
    };
    for (const TReportCase& c : cases) {
        TTempDir dir;
        WriteFileBytes(dir.File("t.mif"), c.text);
        TLoadReport report;
        EXPECT_EQ(LoadMif(dir.File("t.mif"), ANSWER_NO, &report), LoadMif(dir.File("t.mif"))) << c.name;
        ExpectReport(c, GISFILE_OK, report);
        EXPECT_EQ(report.IsIncomplete(), !c.stop.empty() || c.added.empty()) << c.name;
    }
}

// Restores the writer's class settings after each test.
class MidMifWriter : public testing::Test {
protected:
    void TearDown() override {
        TGisFileMidMif::s_eMidDelimiter = MID_DELIMITER_COMMA;
        TGisFileMidMif::s_iMidSprayChans = 0;
        TGisFileMidMif::s_bMidCompleteRows = false;
        TGisFileMidMif::s_iDefaultMetric = 0;
        TGisFileMidMif::s_iDefaultSingleBlockMode = 0;
    }
};

// A recorded sample: the swath ends (the sample lies halfway between them), time, and the values
// its .mid row shows (height in units of 0.2 m, rates of channels 0 and 1 in litres per hectare).
tagSPRAYREC Sample(tagLOC a, tagLOC b, const TSprayTime& time, double speed = 0, int heading = 0,
                   int height = 0, float rate0 = 0, float rate1 = 0) {
    tagSPRAYREC r;
    r.locSwathA = a, r.locSwathB = b, r.locPos = TLoc((a.dLat + b.dLat) / 2, (a.dLon + b.dLon) / 2);
    PackSprayTime(time, r);
    r.dSpeed = speed, r.sHeading = static_cast<std::int16_t>(heading),
    r.sHeight = static_cast<std::int16_t>(height);
    r.afActualRate[0] = rate0, r.afActualRate[1] = rate1, r.bySpray = 1;
    return r;
}

TFeatureSpray* AddSpray(TMapLayer& layer, const std::vector<tagSPRAYREC>& samples, double channel0 = 0) {
    auto* spray = new TFeatureSpray(static_cast<int>(samples.size()));
    std::copy(samples.begin(), samples.end(), spray->m_pRecs);
    spray->m_adChannel[0] = channel0;
    layer.AddElement(spray);
    return spray;
}

// Three spraying samples on 15 March 2020 flying north along longitude -93 with a 0.001 degree
// swath to the west: 50, 40 and 60 m/s, headings 7, 8, 9, heights 100, 50 and 0 m, channel-0
// rates 5, 6 and 7 and channel-1 rates 10, 30 and 20 litres per hectare.
TFeatureSpray* AddThreeSampleSpray(TMapLayer& layer, double channel0 = 0) {
    return AddSpray(
        layer,
        {Sample({45.0, -93.0}, {45.0, -93.001}, {2020, 3, 15, 14, 3, 10, 50}, 50, 7, 500, 5, 10),
         Sample({45.001, -93.0}, {45.001, -93.001}, {2020, 3, 15, 14, 3, 11, 0}, 40, 8, 250, 6, 30),
         Sample({45.002, -93.0}, {45.002, -93.001}, {2020, 3, 15, 14, 3, 11, 50}, 60, 9, 0, 7, 20)},
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
    AddLine(layer, ELEMENT_LINE_BOUNDARY, BOUNDARY_EXC,
            {{45.0, -93.0}, {45.0, -92.9}, {45.1, -92.9}, {45.1, -93.0}}, "pond");
    AddLine(layer, ELEMENT_LINE_AREA, BOUNDARY_INC, {{46.0, -94.0}, {46.0, -93.7}, {46.3, -94.0}}, "field 7");
    // Lines without points, and kinds the writer does not know, are left out of both files.
    AddLine(layer, ELEMENT_LINE_BOUNDARY, BOUNDARY_INC, {}, "nothing");
    AddLine(layer, ELEMENT_LINE_ROAD, BOUNDARY_OPEN, {{1, 2}, {3, 4}}, "road");
    auto* point = new TFeaturePoint;
    point->m_Loc = TLoc(1, 2);
    layer.AddElement(point);
}

// A run with an impossible month and hour, a run whose first channel value suppresses the
// block row, and runs that write nothing: not spraying at the first sample, a single sample.
void FillSprayEdges(TMapLayer& layer) {
    const TSprayTime bad{2020, 13, 15, 25};
    AddSpray(layer,
             {Sample({46.0, -94.0}, {46.0, -94.002}, bad), Sample({46.001, -94.0}, {46.001, -94.002}, bad)});
    const tagSPRAYREC first = Sample({47.0, -95.0}, {47.0, -95.002}, {2020, 3, 15, 14, 3, 10, 50});
    const tagSPRAYREC second =
        Sample({47.002, -95.0}, {47.002, -95.002}, {2020, 3, 15, 14, 3, 11, 0}, 50, 7, 500, 8, 40);
    AddSpray(layer, {first, second}, 1.0)->m_dwType = ELEMENT_SPRAY_ALT;
    tagSPRAYREC idle = second;
    idle.bySpray = 0;
    AddSpray(layer, {idle, second});
    AddSpray(layer, {second});
}

TEST_F(MidMifWriter, GoldenPairsMatchByteForByte) {
    const struct {
        const char* name;
        MIDDELIMITER delimiter;
        std::function<void(TMapLayer&)> fill;
        int singleBlockMode = 0;
    } cases[] = {{"marker_tab", MID_DELIMITER_TAB,
                  [](TMapLayer& l) {
                      AddMarker(l, "", "B", 0, {45.5, -93.25});
                  }},
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

// The host may name the pair by any path; the dispatcher would only take .mif names.
TEST_F(MidMifWriter, PathsAndFailures) {
    TTempDir dir;
    std::filesystem::create_directories(dir.File("C:/data"));
    std::filesystem::create_directories(dir.File("taken.mid"));
    TMapLayer layer;
    AddMarker(layer, "", "A", 0, {1, 2});
    for (const std::string folder : {"C:\\data\\", "C:/data/"}) {
        ASSERT_EQ(TGisFileMidMif().WriteFile(dir.File(folder + "field.txt").c_str(), &layer), 0) << folder;
        EXPECT_TRUE(ReadFileBytes(dir.File(folder + "field.txt")).starts_with("Version 300")) << folder;
        EXPECT_EQ(ReadFileBytes(dir.File(folder + "field.mid")), ",,,,,,,A\r\n") << folder;
    }
    EXPECT_EQ(TGisMap().WriteFile(dir.File("no/such/folder/x.mif").c_str(), &layer), GISFILE_ERR_OPEN);
    // The .mif is created before the .mid fails.
    EXPECT_EQ(TGisMap().WriteFile(dir.File("taken.mif").c_str(), &layer), GISFILE_ERR_OPEN);
    EXPECT_TRUE(std::filesystem::exists(dir.File("taken.mif")));
}

// Mass rates in pounds per acre, and a channel setting above ten taken as ten: the block row
// carries the channel-9 peak of 10 kg/ha, the sample rows their channel-0 rates of 6 and 7.
TEST_F(MidMifWriter, MassRatesAndTheChannelLimit) {
    TGisFileMidMif::s_iMidSprayChans = 40;
    TMapLayer layer;
    TFeatureSpray* spray = AddThreeSampleSpray(layer);
    spray->m_iRateUnits = 6;
    spray->m_pRecs[2].afActualRate[9] = 10;
    TTempDir dir;
    ASSERT_EQ(TGisMap().WriteFile(dir.File("s.mif").c_str(), &layer), 0);
    std::string rates;
    for (const std::string& row : Lines(ReadFileBytes(dir.File("s.mid"))))
        rates += row.substr(row.rfind(',', row.size() - 3) + 1, 10) + "|";
    EXPECT_EQ(rates, "    8.9218|    5.3531|    6.2453|");
}

// Complete rows: every object has a row with one field per column, so GDAL reads them all,
// under every delimiter, in both block modes.
TEST_F(MidMifWriter, GdalReadsEveryObjectOfCompleteRows) {
    SKIP_WITHOUT_LINUX_PEERS();
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
            AddMarker(layer, "", "B", 0, {45.5, -93.25});
            AddLine(layer, ELEMENT_LINE_BOUNDARY, BOUNDARY_INC, {{45.0, -93.0}, {45.0, -92.9}, {45.1, -92.9}},
                    "a,b \"c\"");
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
