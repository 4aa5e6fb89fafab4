// Reading .mif files: the line grammar, hostile input, and files written by GDAL.

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

#include "gis/gis_map.h"
#include "test_support.h"

namespace {
// What a load left, as "id:lat lon,lat lon; ... @lat lon ?questions": the lines with their
// points, the centroids that POINT lines added, the questions asked, and a result other than 0.
std::string LoadMif(const std::string& path, int answer = IDNO) {
    TScriptedMessages messages({answer});
    TMapLayer layer;
    const int result = TGisMap().LoadFile(path.c_str(), &layer, nullptr);
    std::ostringstream out;
    std::vector<tagLOC> centroids = layer.m_Centroids;
    for (const TMapElement* e : layer.m_Elements) {
        const auto* line = dynamic_cast<const TFeatureLine*>(e);
        if (line->m_dwType != (ELEMENT_LINE_BOUNDARY | BOUNDARY_INC))
            out << "(type " << line->m_dwType << ")";
        out << line->m_strId << ":";
        for (int i = 0; i < line->m_iNumPoints; ++i)
            out << (i ? "," : "") << line->m_pPoints[i].dLat << " " << line->m_pPoints[i].dLon;
        out << "; ";
        // Each line registers its own centroid; what is left came from POINT lines.
        centroids.erase(std::find_if(centroids.begin(), centroids.end(), [&](const tagLOC& c) {
            return c.dLat == line->m_locCentroid.dLat && c.dLon == line->m_locCentroid.dLon;
        }));
    }
    for (const tagLOC& c : centroids) out << "@" << c.dLat << " " << c.dLon << " ";
    const auto questions = std::count_if(messages.Shown().begin(), messages.Shown().end(),
                                         [](const TMessageBoxRequest& m) { return m.IsQuestion(); });
    if (questions > 0) out << "?" << questions << " ";
    if (result != 0) out << "result " << result << " ";
    std::string s = out.str();
    return s.substr(0, s.find_last_not_of(' ') + 1);
}

const std::string kHeader =
    "Version 300\r\nCharset \"WindowsLatin1\"\r\nDelimiter \",\"\r\nCoordSys Earth Projection 1, 0\r\n"
    "Columns 1\r\n  Name Char(10)\r\nData\r\n\r\n";

TEST(MifRead, LinesLeaveTheExpectedLayer) {
    const std::string longLine(10000, 'x');
    const struct {
        const char* name;
        std::string text;
        const char* expected;
        int answer = IDNO;
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
        {"projected, Yes", kHeader + "PLINE 3\n1 2\n500000 5000000\n3 4\nPOINT 1 1\n", "1:2 1; ?1", IDYES},
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

// Files that GDAL writes from a GeoJSON made here: a polygon with a hole, a line and a point;
// once in degrees and once projected to UTM.
TEST(MifRead, FilesWrittenByGdal) {
    if (!HaveProgram("ogr2ogr"))
        GTEST_SKIP() << "ogr2ogr (GDAL) is not installed; run scripts/install-test-tools.sh";
    TTempDir dir;
    WriteFileBytes(dir.File("in.geojson"), R"({"type":"FeatureCollection","features":[
{"type":"Feature","properties":{"name":"field"},"geometry":{"type":"Polygon","coordinates":[
 [[-93.0,45.0],[-92.9,45.0],[-92.9,45.1],[-93.0,45.1],[-93.0,45.0]],
 [[-92.98,45.02],[-92.95,45.02],[-92.95,45.05],[-92.98,45.02]]]}},
{"type":"Feature","properties":{"name":"road"},"geometry":{"type":"LineString","coordinates":[
 [-93.1,45.2],[-93.05,45.25],[-93.0,45.22]]}},
{"type":"Feature","properties":{"name":"pump"},"geometry":{"type":"Point","coordinates":[-93.2,45.3]}}]})");
    const struct {
        const char* options;
        const char* expected;
    } cases[] = {
        {"",
         "1:45 -93,45 -92.9,45.1 -92.9,45.1 -93,45 -93; 2:45.2 -93.1,45.25 -93.05,45.22 -93; @45.3 -93.2"},
        {"-s_srs EPSG:4326 -t_srs EPSG:32615", "1:; ?1"}};
    for (const auto& c : cases) {
        const std::string out = dir.File(std::string("gdal") + (*c.options ? "_utm" : "") + ".mif");
        const TCommandResult r =
            RunCommand(std::string("ogr2ogr -f \"MapInfo File\" -dsco FORMAT=MIF ") + c.options + " " +
                       ShellQuote(out) + " " + ShellQuote(dir.File("in.geojson")));
        ASSERT_EQ(r.iExit, 0) << r.strErr;
        EXPECT_EQ(LoadMif(out), c.expected) << c.options;
    }
}
}  // namespace
