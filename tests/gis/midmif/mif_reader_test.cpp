// Reading .mif files: the line grammar, hostile input, and files written by GDAL.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "gis/gis_map.h"
#include "gis/midmif/gis_file_midmif.h"
#include "test_support.h"

namespace {
// What a load left in the layer, as "id:lat lon,lat lon; ... @lat lon ?questions": the lines
// with their points, then the centroids that POINT lines added, then the questions asked.
std::string Summarise(const TMapLayer& layer, const TScriptedMessages& messages) {
    std::ostringstream out;
    std::vector<tagLOC> centroids = layer.m_Centroids;
    for (const TMapElement* e : layer.m_Elements) {
        const auto* line = dynamic_cast<const TFeatureLine*>(e);
        if (line == nullptr) continue;
        if (line->m_dwType != (ELEMENT_LINE_BOUNDARY | BOUNDARY_INC))
            out << "(type " << line->m_dwType << ")";
        out << line->m_strId << ":";
        for (int i = 0; i < line->m_iNumPoints; ++i)
            out << (i ? "," : "") << line->m_pPoints[i].dLat << " " << line->m_pPoints[i].dLon;
        out << "; ";
        // Each line registers its own centroid; what is left came from POINT lines.
        const auto own = std::find_if(centroids.begin(), centroids.end(), [&](const tagLOC& c) {
            return c.dLat == line->m_locCentroid.dLat && c.dLon == line->m_locCentroid.dLon;
        });
        if (own != centroids.end()) centroids.erase(own);
    }
    for (const tagLOC& c : centroids) out << "@" << c.dLat << " " << c.dLon << " ";
    int questions = 0;
    for (const TMessageBoxRequest& m : messages.Shown()) questions += m.IsQuestion() ? 1 : 0;
    if (questions > 0) out << "?" << questions;
    std::string s = out.str();
    while (!s.empty() && s.back() == ' ') s.pop_back();
    return s;
}

struct TLoadOutcome {
    int iResult;
    std::string strSummary;
};

TLoadOutcome LoadMif(const std::string& path, std::vector<int> answers = {}) {
    TScriptedMessages messages(std::move(answers));
    TMapLayer layer;
    TGisMap map;
    const int result = map.LoadFile(path.c_str(), &layer, nullptr);
    return {result, Summarise(layer, messages)};
}

template <std::size_t N>
std::string Bytes(const char (&text)[N]) {
    return std::string(text, N - 1);
}

const std::string kHeader =
    "Version 300\r\nCharset \"WindowsLatin1\"\r\nDelimiter \",\"\r\nCoordSys Earth Projection 1, 0\r\n"
    "Columns 1\r\n  Name Char(10)\r\nData\r\n\r\n";
const std::string kLong(10000, 'x');

struct TReadCase {
    const char* pszName;
    std::string strText;
    const char* pszExpected;
    std::vector<int> answers = {};
};

const TReadCase kReadCases[] = {
    {"pline_smooth_second_pline",
     kHeader + "PLINE 3\r\n10 45\r\n11 46\r\n12 47\r\n  SMOOTH\r\nPLINE 2\r\n1 2\r\n3 4\r\n",
     "1:45 10,46 11,47 12; 2:2 1,4 3;"},
    // Objects are numbered when they are saved, which is at the next object's keyword.
    {"data_restarts_numbering", kHeader + "PLINE 2\n1 2\n3 4\nPLINE 2\nDATA\n5 6\n7 8\n",
     "1:2 1,4 3; 1:6 5,8 7;"},
    {"data_inside_open_object", kHeader + "PLINE 2\n1 2\nDATA\n3 4\nPLINE 2\n5 6\n7 8\n",
     "1:2 1,4 3; 2:6 5,8 7;"},
    {"region_first_ring_only",
     kHeader + "REGION 2\n  4\n0 0\n1 0\n1 1\n0 1\n  3\n5 5\n6 5\n6 6\nPEN (1,2,0)\n", "1:0 0,0 1,1 1,1 0;"},
    {"point_single_space", kHeader + "POINT 10.5 45.2\n", "@45.2 10.5"},
    {"point_two_spaces_loses_x", kHeader + "POINT  10.5 45.2\n", "@45.2 0"},
    {"point_ends_open_object", kHeader + "PLINE 2\n1 2\n3 4\nPoint 7 8\n", "1:2 1,4 3; @8 7"},
    {"any_case_after_blanks", kHeader + "  pline 2\n\t1 2\n3 4\n   rEgIoN 1\n 3\n1 1\n2 2\n3 1\n",
     "1:2 1,4 3; 2:1 1,2 2,1 3;"},
    {"numbers_without_blank", kHeader + "PLINE 2\n1.5-2.5\n+3e1 .5\n", "1:-2.5 1.5,0.5 30;"},
    {"short_list_then_smooth", kHeader + "PLINE 3\n1 2\nSMOOTH\nPLINE 2\n5 6\n7 8\n", "1:2 1; 2:6 5,8 7;"},
    {"column_named_points", "Columns 1\n  Points Integer\nData\nPOINT 3 4\n", "@0 0 @4 3"},
    {"nul_byte_ends_text", kHeader + Bytes("PLINE 2\n1 2\n3 4\0 9 9\n"), "1:2 1,4 3;"},
    // Counts outside 1..30000 end the reading before anything is allocated.
    {"count_zero", kHeader + "PLINE 0\n1 2\nPLINE 2\n1 2\n3 4\n", ""},
    {"count_30001", kHeader + "PLINE 30001\n1 2\nPLINE 2\n1 2\n3 4\n", ""},
    {"count_30000", kHeader + "PLINE 30000\n1 2\n", "1:2 1;"},
    {"count_2_pow_31", kHeader + "REGION 1\n2147483648\n1 2\nPOINT 1 1\n", ""},
    {"count_negative", kHeader + "PLINE -5\n1 2\nPOINT 1 1\n", ""},
    {"pline_multiple", kHeader + "PLINE MULTIPLE 2\n  2\n1 2\n3 4\nPOINT 1 1\n", ""},
    // A bad point ends the reading; the object keeps the points before it.
    {"out_of_range_point", kHeader + "PLINE 3\n1 2\n500 2\n3 4\nPOINT 1 1\n", "1:2 1;"},
    {"projected_yes", kHeader + "PLINE 3\n1 2\n500000 5000000\n3 4\nPOINT 1 1\n", "1:2 1; ?1", {IDYES}},
    {"projected_no", kHeader + "PLINE 2\n500000 5000000\n1 2\nPLINE 2\n1 2\n3 4\n", "1:; ?1", {IDNO}},
    // Hostile input.
    {"points_missing_at_eof", kHeader + "PLINE 5\n1 2\n3 4", "1:2 1,4 3;"},
    {"region_alone_at_eof", kHeader + "REGION 1", ""},
    {"long_lines", kHeader + kLong + "\nPLINE 2\n1 2 " + kLong + "\n3 4\n" + kLong + "\n", "1:2 1,4 3;"},
    // Only the start of a line longer than a read piece is looked at.
    {"line_over_a_piece", kHeader + std::string(200000, 'x') + "PLINE 5\nPLINE 2\n1 2\n3 4\n", "1:2 1,4 3;"},
    {"binary_noise", Bytes("\x80\xff\x01PLINE 2\n\x90\x91 1 2\n3 4\n\0\0\0"), "1:2 1,4 3;"},
    {"empty_file", "", ""},
};

TEST(MifRead, LinesLeaveTheExpectedLayer) {
    for (const TReadCase& c : kReadCases) {
        TTempDir dir;
        WriteFileBytes(dir.File("test.mif"), c.strText);
        const TLoadOutcome r = LoadMif(dir.File("test.mif"), c.answers);
        EXPECT_EQ(r.iResult, 0) << c.pszName;
        EXPECT_EQ(r.strSummary, c.pszExpected) << c.pszName;
    }
}

TEST(MifFiles, NamesAndMissingFiles) {
    for (const char* name : {"track.MIF", "C:\\data\\track.mif"})
        EXPECT_TRUE(TGisFileMidMif::IsValidFile(name)) << name;
    for (const char* name : {"track.mid", "track", "track.mif.bak"})
        EXPECT_FALSE(TGisFileMidMif::IsValidFile(name)) << name;
    TTempDir dir;
    WriteFileBytes(dir.File("only.mid"), "\"a\",1\n");
    // A .mid is never read; its missing .mif cannot be opened.
    EXPECT_EQ(LoadMif(dir.File("only.mid")).iResult, GISFILE_ERR_UNAVAILABLE);
    EXPECT_EQ(LoadMif(dir.File("only.mif")).iResult, GISFILE_ERR_OPEN);
}

TEST(MifFiles, ProgressReachesTheEnd) {
    std::string text = kHeader;
    for (int i = 0; i < 2000; ++i) text += "PLINE 2\n1.000000 2.000000\n3.000000 4.000000\n";
    TTempDir dir;
    WriteFileBytes(dir.File("p.mif"), text);
    static int s_iLast = -1;
    TMapLayer layer;
    TGisFileMidMif reader;
    EXPECT_EQ(reader.LoadFile(dir.File("p.mif").c_str(), &layer, [](int v) { s_iLast = v; }), 0);
    EXPECT_EQ(layer.GetElementCount(), 2000);
    EXPECT_GE(s_iLast, 99);
}

// Files that GDAL writes from a GeoJSON made here: a polygon with a hole, a line, a point and
// a triangle; once in degrees and once projected to UTM.
TEST(MifFromGdal, PolygonsLinesAndPoints) {
    if (!HaveProgram("ogr2ogr"))
        GTEST_SKIP() << "ogr2ogr (GDAL) is not installed; run scripts/install-test-tools.sh";
    TTempDir dir;
    WriteFileBytes(dir.File("in.geojson"), R"({"type":"FeatureCollection","features":[
{"type":"Feature","properties":{"name":"field"},"geometry":{"type":"Polygon","coordinates":[
 [[-93.0,45.0],[-92.9,45.0],[-92.9,45.1],[-93.0,45.1],[-93.0,45.0]],
 [[-92.98,45.02],[-92.95,45.02],[-92.95,45.05],[-92.98,45.02]]]}},
{"type":"Feature","properties":{"name":"road"},"geometry":{"type":"LineString","coordinates":[
 [-93.1,45.2],[-93.05,45.25],[-93.0,45.22]]}},
{"type":"Feature","properties":{"name":"pump"},"geometry":{"type":"Point","coordinates":[-93.2,45.3]}},
{"type":"Feature","properties":{"name":"shed"},"geometry":{"type":"Polygon","coordinates":[
 [[-93.3,45.4],[-93.29,45.4],[-93.29,45.41],[-93.3,45.4]]]}}]})");
    const struct {
        const char* pszOptions;
        const char* pszExpected;
    } cases[] = {
        {"",
         "1:45 -93,45 -92.9,45.1 -92.9,45.1 -93,45 -93; 2:45.2 -93.1,45.25 -93.05,45.22 -93; "
         "3:45.4 -93.3,45.4 -93.29,45.41 -93.29,45.4 -93.3; @45.3 -93.2"},
        {"-s_srs EPSG:4326 -t_srs EPSG:32615", "1:; ?1"},
    };
    for (const auto& c : cases) {
        const std::string out = dir.File("gdal.mif");
        std::filesystem::remove(out);
        std::filesystem::remove(dir.File("gdal.mid"));
        const TCommandResult r =
            RunCommand(std::string("ogr2ogr -f \"MapInfo File\" -dsco FORMAT=MIF ") + c.pszOptions + " " +
                       ShellQuote(out) + " " + ShellQuote(dir.File("in.geojson")));
        ASSERT_EQ(r.iExit, 0) << r.strErr;
        const TLoadOutcome loaded = LoadMif(out, {IDNO});
        EXPECT_EQ(loaded.iResult, 0) << c.pszOptions;
        EXPECT_EQ(loaded.strSummary, c.pszExpected) << c.pszOptions;
    }
}
}  // namespace
