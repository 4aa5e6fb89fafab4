// The host's coordinate transform: every reader hands each pair it reads through it before its
// degree tests, so projected files load without the projected-coordinate question; a pair the
// transform cannot map is refused as one outside the degree range and counted under its own
// cause. Without a transform the readers are as before (their own tests guard that).

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include <tl_gis/gis/coordinates.h>
#include <tl_gis/gis/gis_map.h>
#include "complete_profile.h"
#include "load_report_check.h"
#include "shp/shp_test_files.h"
#include "test_support.h"

namespace {

using namespace shp_test;

// A grid in metres around 45 N, 93 W: northing 5,000,000 is latitude 45, easting 500,000
// longitude -93. Negative eastings lie off the grid and are not mapped.
bool GridToDegrees(void* userData, double x, double y, double* lat, double* lon) {
    ++*static_cast<int*>(userData);
    if (x < 0) return false;
    *lat = y / 1e5 - 5.0;
    *lon = x / 1e4 - 143.0;
    return true;
}

struct TTransformCase {
    const char* name;
    const char* ext;
    std::string bytes;
    std::string report;  // the skipped causes and the stop, as DescribeReport gives them
    std::string added;   // "boundary 1, marker 1"
    int result;
    tagLOC first;  // the first vertex of the first line (or the layer's first centroid)
    int calls;     // pairs handed to the transform
};

std::string Unmapped(long long count, const std::string& first) {
    return DescribeSkip(LOAD_COORD_UNMAPPED, count, first);
}

std::string Dxf(const std::vector<std::string>& pairs) {
    std::string text = "  0\nSECTION\n  2\nENTITIES\n";
    for (std::size_t i = 0; i + 1 < pairs.size(); i += 2) text += pairs[i] + "\n" + pairs[i + 1] + "\n";
    return text + "  0\nENDSEC\n  0\nEOF\n";
}

const tagLOC* FirstPoint(const TMapLayer& layer) {
    for (const TMapElement* e : layer.m_Elements)
        if (const auto* line = dynamic_cast<const TFeatureLine*>(e);
            line != nullptr && line->m_iNumPoints > 0)
            return &line->m_pPoints[0];
    return layer.m_Centroids.empty() ? nullptr : &layer.m_Centroids[0];
}

TEST(CoordinateTransform, EveryReaderMapsEachPairBeforeItsDegreeTests) {
    const std::vector<TXY> square = {
        {500000, 5000000}, {500000, 5001000}, {501000, 5001000}, {500000, 5000000}};
    // clang-format off
    const std::vector<TTransformCase> cases = {
        {"JOB boundary, marker and pattern", "job",
         JoinLines({".JOB 1 FARM", ".POL 1 B", "\t5000000 500000", "\t5001000 500000", "\t5001000 501000",
                    "\t5000500 -1", ".MAR 2 Gate", "\t5000500 500500", ".PAT 3 P", "\tA 5000000 500000",
                    "\tB 5000000 -5"}),
         Unmapped(2, "line 6"), "boundary 1, marker 1, pattern 1", 0, {45, -93}, 7},
        {"DXF polyline with an unmapped vertex, line with an unmapped end", "dxf",
         Dxf({"  0", "LWPOLYLINE", "  8", "F30", " 90", "3", " 10", "500000", " 20", "5000000", " 10", "501000",
              " 20", "5000000", " 10", "-1", " 20", "5001000", "  0", "LINE", "  8", "F30", " 10", "500000",
              " 20", "5000000", " 11", "-5", " 21", "5000000"}),
         Unmapped(2, "line 22"), "boundary 1", 0, {45, -93}, 5},
        {"MIF point and polyline whose third point is not mapped", "mif",
         JoinLines({"Version 300", "Data", "Point 500500 5000500", "Pline 3", "500000 5000000", "501000 5000000",
                    "-1 5001000"}),
         DescribeWanted({{LOAD_COORD_UNMAPPED, 1, "line 7"}, {LOAD_MIF_POINT, 1, "line 3"}},
                        "at line 7: a point the coordinate transform could not map; it was the last line"),
         "boundary 1", 0, {45, -93}, 4},
        {"SHP polygon, unmapped point, polyline ending off the grid", "shp",
         TShpBytes().Record(1, PolyContent(5, {0}, square)).Record(2, PointContent(-1, 5000000))
                    .Record(3, PolyContent(3, {0}, {{500000, 5000000}, {-1, 5000000}}))
                    .Record(4, PointContent(500000, 5000000)).Bytes(),
         DescribeWanted({{LOAD_COORD_UNMAPPED, 2, "record 2"}},
                        "after record 3: the coordinate transform could not map its last point; records 4.. "
                        "were not read, 1 record"),
         "boundary 2, point 1", 2, {45, -93}, 7},
    };
    // clang-format on
    // Each load's transform is put back to the one installed before it.
    int outerCalls = 0;
    TScopedCoordinateTransform outer(GridToDegrees, &outerCalls);
    for (const TTransformCase& c : cases) {
        TTempDir dir;
        const std::string path = dir.File(std::string("in.") + c.ext);
        WriteFileBytes(path, c.bytes);
        int calls = 0;
        TScriptedMessages messages;
        TMapLayer layer;
        TLoadReport report;
        int result = 0;
        {
            TScopedCoordinateTransform transform(GridToDegrees, &calls);
            result = TGisMap().LoadFile(path.c_str(), &layer, nullptr, report);
        }
        void* data = nullptr;
        EXPECT_EQ(GetCoordinateTransform(&data), GridToDegrees) << c.name;
        EXPECT_TRUE(data == &outerCalls && outerCalls == 0) << c.name;
        EXPECT_EQ(result, c.result) << c.name;
        EXPECT_EQ(DescribeReport(report), c.report) << c.name;
        EXPECT_EQ(DescribeAdded(report), c.added) << c.name;
        EXPECT_EQ(calls, c.calls) << c.name;
        // Projected numbers never reach the degree tests, so nothing is asked.
        for (const TMessageBoxRequest& shown : messages.Shown())
            EXPECT_FALSE(shown.IsQuestion()) << c.name << ": " << shown.strText;
        const tagLOC* first = FirstPoint(layer);
        ASSERT_NE(first, nullptr) << c.name;
        EXPECT_EQ(first->dLat, c.first.dLat) << c.name;
        EXPECT_EQ(first->dLon, c.first.dLon) << c.name;
    }
}

// A bulge is an arc of the drawing's plane: its vertices are drawn in metres and each is mapped
// once, so a half circle of 1,000 m radius stays on that circle after the transform.
TEST(CoordinateTransform, CompleteDxfDrawsBulgesBeforeMapping) {
    TTempDir dir;
    const std::string path = dir.File("arc.dxf");
    WriteFileBytes(path, Dxf({"  0", "LWPOLYLINE", "  8", "F30", " 90", "2", " 10", "500000", " 20",
                              "5000000", " 42", "1", " 10", "502000", " 20", "5000000"}));
    TCompleteProfile complete;
    int calls = 0;
    TMapLayer layer;
    {
        TScopedCoordinateTransform transform(GridToDegrees, &calls);
        ASSERT_EQ(TGisMap().LoadFile(path.c_str(), &layer, nullptr), 0);
    }
    EXPECT_EQ(GetCoordinateTransform(), nullptr);  // none was installed before
    ASSERT_EQ(layer.m_Elements.size(), 1u);
    const auto* line = dynamic_cast<const TFeatureLine*>(layer.m_Elements[0]);
    ASSERT_NE(line, nullptr);
    ASSERT_GT(line->m_iNumPoints, 10);
    EXPECT_EQ(calls, line->m_iNumPoints);
    for (int i = 0; i < line->m_iNumPoints; ++i) {
        const double x = (line->m_pPoints[i].dLon + 143.0) * 1e4, y = (line->m_pPoints[i].dLat + 5.0) * 1e5;
        EXPECT_NEAR(std::hypot(x - 501000.0, y - 5000000.0), 1000.0, 0.01) << "vertex " << i;
    }
}

}  // namespace
