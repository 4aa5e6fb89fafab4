// Reading .mif files: the line grammar, hostile input, and files written by GDAL.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "gis/gis_map.h"
#include "gis/midmif/gis_file_midmif.h"
#include "test_support.h"

namespace {
struct TLineSeen {
    std::string strId;
    std::vector<tagLOC> points;
};

struct TLoaded {
    int iResult = -1;
    std::vector<TLineSeen> lines;
    std::vector<tagLOC> centroids;  // every centroid the layer received, lines' included
    int iQuestions = 0;
};

TLoaded Summarise(int result, const TMapLayer& layer, const TScriptedMessages& messages) {
    TLoaded out;
    out.iResult = result;
    for (const TMapElement* e : layer.m_Elements) {
        const auto* line = dynamic_cast<const TFeatureLine*>(e);
        if (line == nullptr) continue;
        EXPECT_EQ(line->m_dwType, ELEMENT_LINE_BOUNDARY | BOUNDARY_INC);
        out.lines.push_back(
            {line->m_strId, std::vector<tagLOC>(line->m_pPoints, line->m_pPoints + line->m_iNumPoints)});
    }
    out.centroids = layer.m_Centroids;
    for (const TMessageBoxRequest& m : messages.Shown()) out.iQuestions += m.IsQuestion() ? 1 : 0;
    return out;
}

TLoaded LoadMifText(const std::string& text, std::vector<int> answers = {}) {
    TTempDir dir;
    const std::string path = dir.File("test.mif");
    WriteFileBytes(path, text);
    TScriptedMessages messages(std::move(answers));
    TMapLayer layer;
    TGisMap map;
    const int result = map.LoadFile(path.c_str(), &layer, nullptr);
    return Summarise(result, layer, messages);
}

std::string Describe(const TLoaded& r) {
    std::string s = "result " + std::to_string(r.iResult) + ", lines:";
    for (const TLineSeen& l : r.lines) {
        s += " [" + l.strId + ":";
        for (const tagLOC& p : l.points)
            s += " (" + std::to_string(p.dLat) + "," + std::to_string(p.dLon) + ")";
        s += "]";
    }
    s += ", centroids " + std::to_string(r.centroids.size()) + ", questions " + std::to_string(r.iQuestions);
    return s;
}

template <std::size_t N>
std::string Bytes(const char (&text)[N]) {
    return std::string(text, N - 1);
}

struct TExpectedLine {
    const char* pszId;
    std::vector<tagLOC> points;
};

struct TGrammarCase {
    const char* pszName;
    std::string strText;
    std::vector<TExpectedLine> lines;
    std::vector<tagLOC> points;  // centroids from POINT lines, after those of the lines
    int iQuestions = 0;
};

const std::string kHeader =
    "Version 300\r\nCharset \"WindowsLatin1\"\r\nDelimiter \",\"\r\nCoordSys Earth Projection 1, 0\r\n"
    "Columns 1\r\n  Name Char(10)\r\nData\r\n\r\n";

const std::vector<TGrammarCase> kGrammarCases = {
    {"pline_then_smooth_then_second_pline",
     kHeader + "PLINE 3\r\n10 45\r\n11 46\r\n12 47\r\n  SMOOTH\r\nPLINE 2\r\n1 2\r\n3 4\r\n",
     {{"1", {{45, 10}, {46, 11}, {47, 12}}}, {"2", {{2, 1}, {4, 3}}}},
     {}},
    // Objects are numbered when they are saved, which is at the next object's keyword.
    {"data_line_restarts_numbering",
     kHeader + "PLINE 2\n1 2\n3 4\nPLINE 2\nDATA\n5 6\n7 8\n",
     {{"1", {{2, 1}, {4, 3}}}, {"1", {{6, 5}, {8, 7}}}},
     {}},
    {"data_line_inside_open_object",
     kHeader + "PLINE 2\n1 2\nDATA\n3 4\nPLINE 2\n5 6\n7 8\n",
     {{"1", {{2, 1}, {4, 3}}}, {"2", {{6, 5}, {8, 7}}}},
     {}},
    {"region_keeps_first_ring_only",
     kHeader + "REGION 2\n  4\n0 0\n1 0\n1 1\n0 1\n  3\n5 5\n6 5\n6 6\nPEN (1,2,0)\n",
     {{"1", {{0, 0}, {0, 1}, {1, 1}, {1, 0}}}},
     {}},
    {"point_single_space", kHeader + "POINT 10.5 45.2\n", {}, {{45.2, 10.5}}},
    {"point_two_spaces_loses_x", kHeader + "POINT  10.5 45.2\n", {}, {{45.2, 0}}},
    {"point_ends_open_object",
     kHeader + "PLINE 2\n1 2\n3 4\nPoint 7 8\n",
     {{"1", {{2, 1}, {4, 3}}}},
     {{8, 7}}},
    {"keywords_any_case_after_blanks",
     kHeader + "  pline 2\n\t1 2\n3 4\n   rEgIoN 1\n 3\n1 1\n2 2\n3 1\n",
     {{"1", {{2, 1}, {4, 3}}}, {"2", {{1, 1}, {2, 2}, {1, 3}}}},
     {}},
    {"numbers_without_blank_between",
     kHeader + "PLINE 2\n1.5-2.5\n+3e1 .5\n",
     {{"1", {{-2.5, 1.5}, {0.5, 30}}}},
     {}},
    {"short_list_followed_by_smooth",
     kHeader + "PLINE 3\n1 2\nSMOOTH\nPLINE 2\n5 6\n7 8\n",
     {{"1", {{2, 1}}}, {"2", {{6, 5}, {8, 7}}}},
     {}},
    {"missing_points_at_end_of_file", kHeader + "PLINE 5\n1 2\n3 4", {{"1", {{2, 1}, {4, 3}}}}, {}},
    {"count_zero_ends_reading", kHeader + "PLINE 0\n1 2\nPLINE 2\n1 2\n3 4\n", {}, {}},
    {"count_above_limit_ends_reading", kHeader + "PLINE 30001\n1 2\nPLINE 2\n1 2\n3 4\n", {}, {}},
    {"count_at_limit_is_accepted", kHeader + "PLINE 30000\n1 2\n", {{"1", {{2, 1}}}}, {}},
    {"count_of_two_to_the_31", kHeader + "REGION 1\n2147483648\n1 2\nPOINT 1 1\n", {}, {}},
    {"negative_count", kHeader + "PLINE -5\n1 2\nPOINT 1 1\n", {}, {}},
    {"pline_multiple_has_no_count", kHeader + "PLINE MULTIPLE 2\n  2\n1 2\n3 4\nPOINT 1 1\n", {}, {}},
    {"out_of_range_point_ends_reading",
     kHeader + "PLINE 3\n1 2\n500 2\n3 4\nPOINT 1 1\n",
     {{"1", {{2, 1}}}},
     {}},
    {"projected_point_asks_and_ends",
     kHeader + "PLINE 3\n1 2\n500000 5000000\n3 4\nPOINT 1 1\n",
     {{"1", {{2, 1}}}},
     {},
     1},
    {"column_named_like_a_keyword", "Columns 1\n  Points Integer\nData\nPOINT 3 4\n", {}, {{0, 0}, {4, 3}}},
    {"nul_byte_ends_line_text", kHeader + Bytes("PLINE 2\n1 2\n3 4\0 9 9\n"), {{"1", {{2, 1}, {4, 3}}}}, {}},
};

class MifGrammar : public testing::TestWithParam<TGrammarCase> {};

TEST_P(MifGrammar, AddsTheExpectedObjects) {
    const TGrammarCase& c = GetParam();
    const TLoaded r = LoadMifText(c.strText);
    const std::string seen = Describe(r);
    EXPECT_EQ(r.iResult, 0) << seen;
    ASSERT_EQ(r.lines.size(), c.lines.size()) << seen;
    for (std::size_t i = 0; i < c.lines.size(); ++i) {
        EXPECT_EQ(r.lines[i].strId, c.lines[i].pszId) << seen;
        ASSERT_EQ(r.lines[i].points.size(), c.lines[i].points.size()) << seen;
        for (std::size_t k = 0; k < c.lines[i].points.size(); ++k) {
            EXPECT_DOUBLE_EQ(r.lines[i].points[k].dLat, c.lines[i].points[k].dLat) << seen;
            EXPECT_DOUBLE_EQ(r.lines[i].points[k].dLon, c.lines[i].points[k].dLon) << seen;
        }
    }
    // Lines register their centroids too; the POINT lines' ones must be among them.
    ASSERT_EQ(r.centroids.size(), c.lines.size() + c.points.size()) << seen;
    for (const tagLOC& want : c.points) {
        bool found = false;
        for (const tagLOC& got : r.centroids)
            found = found || (got.dLat == want.dLat && got.dLon == want.dLon);
        EXPECT_TRUE(found) << "point (" << want.dLat << ", " << want.dLon << ") missing; " << seen;
    }
    EXPECT_EQ(r.iQuestions, c.iQuestions) << seen;
}

INSTANTIATE_TEST_SUITE_P(Lines, MifGrammar, testing::ValuesIn(kGrammarCases),
                         [](const testing::TestParamInfo<TGrammarCase>& info) { return info.param.pszName; });

// Input that must end in a result code, never a crash or a runaway allocation.
TEST(MifHostileInput, EndsWithAResult) {
    const std::string longText(10000, 'x');
    const std::string hugeLine(200000, 'x');
    const struct {
        const char* pszName;
        std::string strText;
        std::size_t iLines;
    } cases[] = {
        {"ten_thousand_character_lines",
         kHeader + longText + "\nPLINE 2\n1 2 " + longText + "\n3 4\n" + longText + "\n", 1},
        // Only the start of a line is read: a keyword past the first piece is not seen.
        {"line_longer_than_a_read_piece", kHeader + hugeLine + "PLINE 5\nPLINE 2\n1 2\n3 4\n", 1},
        {"region_without_anything_after", kHeader + "REGION 1", 0},
        {"binary_noise", Bytes("\x80\xff\x01PLINE 2\n\x90\x91 1 2\n3 4\n\0\0\0"), 1},
        {"empty_file", "", 0},
    };
    for (const auto& c : cases) {
        const TLoaded r = LoadMifText(c.strText);
        EXPECT_EQ(r.iResult, 0) << c.pszName;
        EXPECT_EQ(r.lines.size(), c.iLines) << c.pszName << ": " << Describe(r);
    }
}

TEST(MifFiles, NamesAndMissingFiles) {
    EXPECT_TRUE(TGisFileMidMif::IsValidFile("track.MIF"));
    EXPECT_TRUE(TGisFileMidMif::IsValidFile("C:\\data\\track.mif"));
    EXPECT_FALSE(TGisFileMidMif::IsValidFile("track.mid"));
    EXPECT_FALSE(TGisFileMidMif::IsValidFile("track"));
    EXPECT_FALSE(TGisFileMidMif::IsValidFile("track.mif.bak"));

    TTempDir dir;
    WriteFileBytes(dir.File("only.mid"), "\"a\",1\n");
    TScriptedMessages messages;
    TMapLayer layer;
    TGisMap map;
    // A .mid file is never read; its .mif is what cannot be opened.
    EXPECT_EQ(map.LoadFile(dir.File("only.mid").c_str(), &layer, nullptr), GISFILE_ERR_UNAVAILABLE);
    EXPECT_EQ(map.LoadFile(dir.File("only.mif").c_str(), &layer, nullptr), GISFILE_ERR_OPEN);
    EXPECT_EQ(layer.GetElementCount(), 0);
}

TEST(MifFiles, ProjectedAnswerDoesNotChangeTheResult) {
    for (const int answer : {IDYES, IDNO}) {
        const TLoaded r =
            LoadMifText(kHeader + "PLINE 2\n500000 5000000\n1 2\nPLINE 2\n1 2\n3 4\n", {answer});
        EXPECT_EQ(r.iResult, 0) << "answer " << answer;
        EXPECT_EQ(r.iQuestions, 1) << "answer " << answer;
        // The object in progress is kept with the points read before the question: none.
        ASSERT_EQ(r.lines.size(), 1u) << Describe(r);
        EXPECT_TRUE(r.lines[0].points.empty()) << Describe(r);
    }
}

TEST(MifFiles, ProgressReachesTheEnd) {
    std::string text = kHeader;
    for (int i = 0; i < 2000; ++i) text += "PLINE 2\n1.000000 2.000000\n3.000000 4.000000\n";
    TTempDir dir;
    WriteFileBytes(dir.File("p.mif"), text);
    static int s_iLast = -1;
    s_iLast = -1;
    TMapLayer layer;
    TGisFileMidMif reader;
    EXPECT_EQ(reader.LoadFile(dir.File("p.mif").c_str(), &layer, [](int v) { s_iLast = v; }), 0);
    EXPECT_EQ(layer.GetElementCount(), 2000);
    EXPECT_GE(s_iLast, 99);
}

// Files that GDAL writes from a GeoJSON made here.
class MifFromGdal : public testing::Test {
protected:
    void SetUp() override {
        if (!HaveProgram("ogr2ogr"))
            GTEST_SKIP() << "ogr2ogr (GDAL) is not installed; run scripts/install-test-tools.sh";
    }
    // Converts the GeoJSON to a .mif with GDAL's MapInfo driver; extra are ogr2ogr options.
    std::string WriteWithGdal(const std::string& geojson, const std::string& extra = "") {
        WriteFileBytes(m_dir.File("in.geojson"), geojson);
        const std::string out = m_dir.File("gdal.mif");
        const TCommandResult r = RunCommand("ogr2ogr -f \"MapInfo File\" -dsco FORMAT=MIF " + extra + " " +
                                            ShellQuote(out) + " " + ShellQuote(m_dir.File("in.geojson")));
        EXPECT_EQ(r.iExit, 0) << r.strErr;
        return out;
    }
    TTempDir m_dir;
};

const char* const kMixedGeoJson = R"({"type":"FeatureCollection","features":[
{"type":"Feature","properties":{"name":"field","kind":1},"geometry":{"type":"Polygon","coordinates":[
 [[-93.0,45.0],[-92.9,45.0],[-92.9,45.1],[-93.0,45.1],[-93.0,45.0]],
 [[-92.98,45.02],[-92.95,45.02],[-92.95,45.05],[-92.98,45.02]]]}},
{"type":"Feature","properties":{"name":"road","kind":2},"geometry":{"type":"LineString","coordinates":[
 [-93.1,45.2],[-93.05,45.25],[-93.0,45.22]]}},
{"type":"Feature","properties":{"name":"pump","kind":3},"geometry":{"type":"Point","coordinates":[-93.2,45.3]}},
{"type":"Feature","properties":{"name":"shed","kind":4},"geometry":{"type":"Polygon","coordinates":[
 [[-93.3,45.4],[-93.29,45.4],[-93.29,45.41],[-93.3,45.4]]]}}
]})";

TEST_F(MifFromGdal, PolygonsLinesAndPoints) {
    const std::string path = WriteWithGdal(kMixedGeoJson);
    TScriptedMessages messages;
    TMapLayer layer;
    TGisMap map;
    const TLoaded r = Summarise(map.LoadFile(path.c_str(), &layer, nullptr), layer, messages);
    EXPECT_EQ(r.iResult, 0);
    EXPECT_EQ(r.iQuestions, 0);
    const std::vector<TExpectedLine> want = {
        {"1", {{45.0, -93.0}, {45.0, -92.9}, {45.1, -92.9}, {45.1, -93.0}, {45.0, -93.0}}},
        {"2", {{45.2, -93.1}, {45.25, -93.05}, {45.22, -93.0}}},
        {"3", {{45.4, -93.3}, {45.4, -93.29}, {45.41, -93.29}, {45.4, -93.3}}},
    };
    ASSERT_EQ(r.lines.size(), want.size()) << Describe(r);
    for (std::size_t i = 0; i < want.size(); ++i) {
        EXPECT_EQ(r.lines[i].strId, want[i].pszId);
        ASSERT_EQ(r.lines[i].points.size(), want[i].points.size()) << "object " << i << ": " << Describe(r);
        for (std::size_t k = 0; k < want[i].points.size(); ++k) {
            EXPECT_NEAR(r.lines[i].points[k].dLat, want[i].points[k].dLat, 1e-9) << "object " << i;
            EXPECT_NEAR(r.lines[i].points[k].dLon, want[i].points[k].dLon, 1e-9) << "object " << i;
        }
    }
    // Three line centroids and the point, which comes between the second and third line.
    ASSERT_EQ(r.centroids.size(), 4u);
    EXPECT_NEAR(r.centroids[2].dLat, 45.3, 1e-9);
    EXPECT_NEAR(r.centroids[2].dLon, -93.2, 1e-9);
}

TEST_F(MifFromGdal, ProjectedFileAsksOnce) {
    const std::string path = WriteWithGdal(kMixedGeoJson, "-s_srs EPSG:4326 -t_srs EPSG:32615");
    TScriptedMessages messages({IDNO});
    TMapLayer layer;
    TGisMap map;
    const TLoaded r = Summarise(map.LoadFile(path.c_str(), &layer, nullptr), layer, messages);
    EXPECT_EQ(r.iResult, 0);
    EXPECT_EQ(r.iQuestions, 1);
    ASSERT_EQ(r.lines.size(), 1u) << Describe(r);
    EXPECT_TRUE(r.lines[0].points.empty());
}

TEST_F(MifFromGdal, MultiLineStopsAtItsParts) {
    const std::string path = WriteWithGdal(R"({"type":"FeatureCollection","features":[
{"type":"Feature","properties":{"name":"a"},"geometry":{"type":"LineString","coordinates":[[1,2],[3,4],[5,6]]}},
{"type":"Feature","properties":{"name":"b"},"geometry":{"type":"MultiLineString","coordinates":[
 [[1,2],[3,4],[5,6]],[[7,8],[9,10],[11,12]]]}},
{"type":"Feature","properties":{"name":"c"},"geometry":{"type":"LineString","coordinates":[[1,2],[3,4],[5,6]]}}]})");
    TScriptedMessages messages;
    TMapLayer layer;
    TGisMap map;
    const TLoaded r = Summarise(map.LoadFile(path.c_str(), &layer, nullptr), layer, messages);
    EXPECT_EQ(r.iResult, 0);
    // A multi-part polyline announces no count on its own line, so the reading ends there.
    ASSERT_EQ(r.lines.size(), 1u) << Describe(r);
    EXPECT_EQ(r.lines[0].points.size(), 3u);
}
}  // namespace
