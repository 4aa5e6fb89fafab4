#include <gtest/gtest.h>

#include <filesystem>

#include "gis/job/job_decimation.h"
#include "job_test_support.h"

namespace {
int CountRecords(const std::string& bytes, const char* keyword) {
    int n = 0;
    for (std::size_t at = bytes.find(keyword); at != std::string::npos; at = bytes.find(keyword, at + 1))
        if (at == 0 || bytes[at - 1] == '\n') ++n;
    return n;
}

// Vertex lines of the whole file (lines that start with a tab and a digit or minus sign).
int CountVertexLines(const std::string& bytes) {
    int n = 0;
    for (std::size_t i = 0; i + 1 < bytes.size(); ++i)
        if (bytes[i] == '\t' && (i == 0 || bytes[i - 1] == '\n') &&
            (std::isdigit(bytes[i + 1]) || bytes[i + 1] == '-'))
            ++n;
    return n;
}

struct TWriteOutcome {
    int result = -1;
    std::string bytes;
    std::vector<TMessageBoxRequest> shown;
    bool reduced = false;
    int polygons = 0;
    int vertices = 0;
    std::vector<bool> warnings;
};

TWriteOutcome WriteWithOption(int option, double toleranceM, TMapLayer& layer) {
    TJobSettings settings(GISFILE_JOB_V1, option, toleranceM);
    TScriptedMessages messages;
    TTempDir dir;
    TGisFileJob job;
    TWriteOutcome out;
    out.result = job.WriteFile(dir.File("5.job").c_str(), &layer);
    out.bytes = ReadFileBytes(dir.File("5.job"));
    out.shown = messages.Shown();
    out.reduced = job.m_bJobReduced;
    out.polygons = job.m_iJobPolygons;
    out.vertices = job.m_iJobVertices;
    out.warnings.assign(std::begin(job.m_abJobWarnings), std::end(job.m_abJobWarnings));
    return out;
}

// Lines of the given vertex counts, each a ring around its own centre.
void AddRings(TMapLayer& layer, const std::vector<int>& counts) {
    for (std::size_t i = 0; i < counts.size(); ++i)
        AddLine(layer, ELEMENT_LINE_BOUNDARY, BOUNDARY_INC,
                CircleRing(45.0 + 0.001 * static_cast<double>(i % 100),
                           -93.0 + 0.001 * static_cast<double>(i / 100), 30.0, counts[i]));
}

std::vector<int> Repeat(int count, int times, std::vector<int> tail = {}) {
    std::vector<int> v(static_cast<std::size_t>(times), count);
    v.insert(v.end(), tail.begin(), tail.end());
    return v;
}

struct TNotice {
    std::string text;
    unsigned flags;
};

struct TReductionCase {
    const char* name;
    int option;
    double toleranceM;
    std::vector<int> lines;  // vertex counts of the rings
    int records;             // ".POL" records written
    std::vector<TNotice> notices;
    int polygons;  // m_iJobPolygons afterwards
    int vertices;  // m_iJobVertices afterwards, -1: not checked
};

const std::string kSummaryA = "W5188\nW5185\"W5186\" W5187";
const std::string kSummaryB = "W5090\nW5185\"W5186\" W5187";
const unsigned kWarn = MB_OK | MB_ICONEXCLAMATION;
const unsigned kInfo = MB_OK | MB_ICONINFORMATION;

TEST(JobReduction, OptionsAndNotices) {
    TTestLanguage language;
    const TReductionCase cases[] = {
        {"option 0: the 501st line dropped",
         0,
         0,
         Repeat(4, 501),
         500,
         {{kSummaryA, MB_OK}, {"W5173 lines 500 vertices 2000", kInfo}},
         500,
         2000},
        {"option 0: exactly the total", 0, 0, Repeat(900, 109, {801}), 110, {}, 110, 98901},
        {"option 0: one over on the last line", 0, 0, Repeat(900, 109, {802}), 109, {}, 109, 98100},
        {"option 0: lines after the total",
         0,
         0,
         Repeat(900, 109, {802, 4}),
         109,
         {{kSummaryA, MB_OK}, {"W5173 lines 109 vertices 98100", kInfo}},
         109,
         98100},
        {"option 1: the 501st line dropped",
         1,
         0,
         Repeat(4, 501),
         500,
         {{kSummaryB, MB_OK}, {"W5173 lines 500 vertices 2000", kInfo}},
         500,
         2000},
        {"option 1: no total", 1, 0, Repeat(900, 110), 110, {}, 110, 99000},
        {"option 2: tolerance 0 keeps 1200 vertices",
         2,
         0,
         {1200},
         1,
         {{"W17002\nW3087", kWarn}, {"W17002\nW3090", kWarn}},
         -1,
         1200},
        {"option 2: lines and total",
         2,
         0,
         Repeat(200, 501),
         501,
         {{"W17002\nW3085", kWarn},
          {"W17002\nW3086", kWarn},
          {"W17002\nW3088", kWarn},
          {"W17002\nW3089", kWarn}},
         -1,
         100200},
        {"option 3: nothing reduced", 3, 0, Repeat(4, 500, {1500}), 501, {}, -1, 0},
    };
    for (const TReductionCase& c : cases) {
        TMapLayer layer;
        AddRings(layer, c.lines);
        const TWriteOutcome out = WriteWithOption(c.option, c.toleranceM, layer);
        ASSERT_EQ(out.result, GISFILE_OK) << c.name;
        EXPECT_EQ(CountRecords(out.bytes, ".POL"), c.records) << c.name;
        ASSERT_EQ(out.shown.size(), c.notices.size()) << c.name;
        for (std::size_t i = 0; i < c.notices.size(); ++i) {
            EXPECT_EQ(out.shown[i].strText, c.notices[i].text) << c.name << " notice " << i;
            EXPECT_EQ(out.shown[i].strCaption, "W5054") << c.name << " notice " << i;
            EXPECT_EQ(out.shown[i].uFlags, c.notices[i].flags) << c.name << " notice " << i;
        }
        EXPECT_EQ(out.polygons, c.polygons) << c.name;
        if (c.vertices >= 0) {
            EXPECT_EQ(out.vertices, c.vertices) << c.name;
        }
    }
}

// The passes of options 0 and 1 done one after another, as the format's limits describe them.
int ReduceOnePassAtATime(std::vector<tagLOC>& points) {
    const std::vector<tagLOC> original = points;
    for (long long pass = 1; pass < 100000; ++pass) {
        points = original;
        const int kept =
            DecimateLocArray(points.data(), static_cast<int>(points.size()), JobReductionTolerance(pass));
        if (kept < 999) {
            points.resize(static_cast<std::size_t>(kept));
            return kept;
        }
    }
    return -1;
}

TEST(JobReduction, LongLineDecimatedLikeThePassesOneByOne) {
    TTestLanguage language;
    struct TCase {
        int vertices;
        double amplitudeM;
        unsigned seed;
    };
    const TCase cases[] = {{1500, 5, 1}, {999, 2, 2}, {3000, 20, 3}, {1998, 0.5, 4}, {5000, 40, 5}};
    for (const TCase& c : cases) {
        const std::string label = std::to_string(c.vertices) + " vertices, seed " + std::to_string(c.seed);
        std::vector<tagLOC> line = WavyLine(45.2, -93.1, c.vertices, c.amplitudeM, c.seed);
        std::vector<tagLOC> expected = line;
        const int expectedCount = ReduceOnePassAtATime(expected);
        ASSERT_GT(expectedCount, 0) << label;

        std::vector<tagLOC> reduced = line;
        EXPECT_EQ(ReduceBelowVertexLimit(reduced.data(), c.vertices, 999), expectedCount) << label;
        for (int i = 0; i < expectedCount; ++i) {
            ASSERT_EQ(reduced[i].dLat, expected[i].dLat) << label << " vertex " << i;
            ASSERT_EQ(reduced[i].dLon, expected[i].dLon) << label << " vertex " << i;
        }

        // Written with option 0: at most 998 vertices and both notices.
        TMapLayer layer;
        AddLine(layer, ELEMENT_LINE_BOUNDARY, BOUNDARY_OPEN, line);
        const TWriteOutcome out = WriteWithOption(0, 0, layer);
        EXPECT_LE(CountVertexLines(out.bytes), 998) << label;
        EXPECT_EQ(out.vertices, expectedCount) << label;
        ASSERT_EQ(out.shown.size(), 2u) << label;
        EXPECT_EQ(out.shown[0].strText, kSummaryA) << label;
        EXPECT_EQ(out.shown[1].strText, "W5173 lines 1 vertices " + std::to_string(expectedCount)) << label;
    }
}

TEST(JobReduction, LinesNoToleranceCanFitAreLeftOut) {
    // Vertices so far apart that no tolerance of tenths of a metre can be counted up to: the
    // writer leaves the line out instead of trying tolerances without end.
    TTestLanguage language;
    std::vector<tagLOC> line = WavyLine(45.2, -93.1, 1200, 5);
    for (std::size_t i = 1; i + 1 < line.size(); ++i) line[i].dLon = i % 2 == 1 ? 1e300 : -1e300;
    line.back() = line.front();
    TMapLayer layer;
    AddLine(layer, ELEMENT_LINE_BOUNDARY, BOUNDARY_OPEN, line);
    AddLine(layer, ELEMENT_LINE_BOUNDARY, BOUNDARY_OPEN, WavyLine(45.3, -93.1, 10, 5));
    const TWriteOutcome out = WriteWithOption(0, 0, layer);
    EXPECT_EQ(out.result, GISFILE_OK);
    EXPECT_EQ(CountRecords(out.bytes, ".POL"), 1);
    EXPECT_TRUE(out.reduced);
    EXPECT_TRUE(out.warnings[1]);
    EXPECT_EQ(out.vertices, 10);
}

}  // namespace
