#include <gtest/gtest.h>

#include <cstdlib>
#include <tuple>

#include "gis/job/job_decimation.h"
#include "job_test_support.h"

namespace {
std::vector<int> Repeat(int count, int times, std::vector<int> tail = {}) {
    std::vector<int> v(static_cast<std::size_t>(times), count);
    v.insert(v.end(), tail.begin(), tail.end());
    return v;
}

const std::string kSummaryA = "W5188\nW5185\"W5186\" W5187(0)|",
                  kSummaryB = "W5090\nW5185\"W5186\" W5187(0)|", kWarning = "W17002\nW30";

TEST(JobReduction, OptionsAndNotices) {
    TTestLanguage language;
    // A long line goes through tolerances of 1, 2, 3 ... tenths of a metre until fewer than 999
    // vertices are left.
    auto passByPass = [](int n) {
        int kept = n;
        for (long long pass = 1; kept >= 999; ++pass) {
            std::vector<tagLOC> line = RandomWalk(n, 0);
            kept = DecimateLocArray(line.data(), n, JobReductionTolerance(pass));
        }
        return kSummaryA + "W5173 lines 1 vertices " + std::to_string(kept) + "(64)|1 " +
               std::to_string(kept);
    };
    // name, option, vertex counts of the lines, ".POL" records written, notices and counts
    const std::tuple<const char*, int, std::vector<int>, int, std::string> cases[] = {
        {"option 0: the 501st line dropped", 0, Repeat(4, 501), 500,
         kSummaryA + "W5173 lines 500 vertices 2000(64)|500 2000"},
        {"option 0: exactly the total", 0, Repeat(900, 109, {801}), 110, "110 98901"},
        {"option 0: lines after the total", 0, Repeat(900, 109, {802, 4}), 109,
         kSummaryA + "W5173 lines 109 vertices 98100(64)|109 98100"},
        {"option 1: the 501st line dropped", 1, Repeat(4, 501), 500,
         kSummaryB + "W5173 lines 500 vertices 2000(64)|500 2000"},
        {"option 1: no total", 1, Repeat(900, 110), 110, "110 99000"},
        {"option 0: 1500 vertices decimated", 0, {1500}, 1, passByPass(1500)},
        {"option 0: 999 vertices decimated", 0, {999}, 1, passByPass(999)},
        {"option 2: tolerance 0, 1200 vertices", 2, Repeat(1200, 1), 1,
         kWarning + "87(48)|" + kWarning + "90(48)|-1 1200"},
        {"option 2: lines and total", 2, Repeat(200, 501), 501,
         kWarning + "85(48)|" + kWarning + "86(48)|" + kWarning + "88(48)|" + kWarning + "89(48)|-1 100200"},
        {"option 3: nothing reduced", 3, Repeat(4, 500, {1500}), 501, "-1 0"},
        // Vertices so far apart that no count of tolerance steps reaches them (-1200 below).
        {"option 0: a line no tolerance fits is left out", 0, Repeat(10, 1, {-1200}), 1,
         kSummaryA + "W5173 lines 1 vertices 10(64)|1 10"},
    };
    for (const auto& [name, option, lines, records, expected] : cases) {
        TJobSettings settings(GISFILE_JOB_V1, option);
        TScriptedMessages messages;
        TMapLayer layer;
        for (std::size_t i = 0; i < lines.size(); ++i) {
            std::vector<tagLOC> line = RandomWalk(std::abs(lines[i]), static_cast<unsigned>(i));
            for (std::size_t k = 1; lines[i] < 0 && k + 1 < line.size(); ++k)
                line[k].dLon = k % 2 ? 1e300 : -1e300;
            AddLine(layer, ELEMENT_LINE_BOUNDARY, BOUNDARY_INC, line);
        }
        TGisFileJob job;
        std::string bytes, notices;
        EXPECT_EQ(WriteJob("5.job", layer, bytes, &job), GISFILE_OK) << name;
        for (const TMessageBoxRequest& m : messages.Shown()) {
            notices += m.strText + "(" + std::to_string(m.uFlags) + ")|";
            EXPECT_EQ(m.strCaption, "W5054") << name;
        }
        EXPECT_EQ(notices + std::to_string(job.m_iJobPolygons) + " " + std::to_string(job.m_iJobVertices),
                  expected)
            << name;
        int written = 0;
        for (auto at = bytes.find("\n.POL "); at != std::string::npos; at = bytes.find("\n.POL ", at + 1))
            ++written;
        EXPECT_EQ(written, records) << name;
    }
}

TEST(JobDecimation, DistanceAndDecimation) {
    // name, the line's ends, the point, the distance in the plane of (cos(lat) * lon, lat)
    const std::tuple<const char*, tagLOC, tagLOC, tagLOC, double> distances[] = {
        {"same scaled longitude at both ends", {45, 10}, {-45, 10}, {0, 10}, 2.928932188134538},
        {"same latitude at both ends", {45, 10}, {45, 11}, {45.25, 30}, 0.25},
        {"slanted", {10, 20}, {12, 25}, {11, 21}, 0.566092058286122},
    };
    for (const auto& [name, p1, p2, p, expected] : distances)
        EXPECT_NEAR(DistanceToLine(p1, p2, p), expected, 1e-9) << name;
    const tagLOC a{45, 10}, z{45, 11};
    // name, vertices, tolerance in degrees, vertices kept
    const std::tuple<const char*, std::vector<tagLOC>, double, std::vector<tagLOC>> decimations[] = {
        {"tolerance below 1e-6", {a, {45.0000001, 10.5}, z}, 0.9e-6, {a, {45.0000001, 10.5}, z}},
        {"distance equal to the tolerance stays", {a, {45.25, 10.5}, z}, 0.25, {a, {45.25, 10.5}, z}},
        {"a tie goes to the lower index", {a, {45.5, 10.2}, {45.5, 10.8}, z}, 0.4, {a, {45.5, 10.2}, z}},
    };
    for (const auto& [name, given, tolerance, kept] : decimations) {
        std::vector<tagLOC> points = given;
        points.resize(static_cast<std::size_t>(
            DecimateLocArray(points.data(), static_cast<int>(points.size()), tolerance)));
        ASSERT_EQ(points.size(), kept.size()) << name;
        for (std::size_t i = 0; i < points.size(); ++i)
            EXPECT_TRUE(points[i].dLat == kept[i].dLat && points[i].dLon == kept[i].dLon) << name << " " << i;
    }
}
}  // namespace
