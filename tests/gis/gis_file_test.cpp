// The format base: progress reporting while a reader walks a file, and the vertex array that
// readers build lines in.

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "gis/gis_file.h"
#include "platform/text_file.h"
#include "test_support.h"

namespace {

// A reader of plain lines that follows the readers' skeleton: base set-up first, open, then
// one progress report per line.
class TLineReader : public TGisFile {
public:
    using TGisFile::AddVertex;
    using TGisFile::AllocateLocArray;
    using TGisFile::ReleaseLocArray;
    using TGisFile::UpdateProgressControl;

    int LoadFile(const char* path, TMapLayer* layer, GisProgressCallback progress) override {
        const int base = TGisFile::LoadFile(path, layer, progress);
        TTextFile file;
        if (!file.Open(path, TTextFile::modeRead)) return GISFILE_ERR_OPEN;
        m_pLayer = layer;
        std::string_view line;
        while (file.ReadLineView(line)) UpdateProgressControl(file);
        return base;
    }
};

std::vector<int> g_reported;
void RecordProgress(int value) {
    g_reported.push_back(value);
}

// size bytes in lines of lineLen bytes (the last one may be shorter and has no line end).
std::string LinesOf(std::size_t size, std::size_t lineLen) {
    std::string s;
    while (s.size() < size)
        s += s.size() + lineLen <= size ? std::string(lineLen - 1, 'a') + "\n"
                                        : std::string(size - s.size(), 'b');
    return s;
}

// What the reader must report: the position after each line divided by the step, each time it changes.
std::vector<int> ExpectedReports(std::size_t size, std::size_t lineLen, int step) {
    std::vector<int> out;
    int last = 0;
    for (std::size_t pos = lineLen; pos < size + lineLen; pos += lineLen) {
        const int value = static_cast<int>(std::min(pos, size) / static_cast<std::size_t>(step));
        if (value != last) out.push_back(value);
        last = value;
    }
    return out;
}

TEST(Progress, StepAndReportsWhileReading) {
    struct TCase {
        const char* name;
        std::size_t size;
        std::size_t lineLen;
        bool callback;
        int step;
    };
    const std::vector<TCase> cases = {
        {"50 bytes: never reported", 50, 10, true, 100000},
        {"100 bytes: step 1", 100, 10, true, 1},
        {"150 bytes without a callback", 150, 10, false, 1},
        {"1000 bytes in 5-byte lines: once per change", 1000, 5, true, 10},
        {"12345 bytes in 7-byte lines", 12345, 7, true, 123},
        {"empty file", 0, 10, true, 100000},
    };
    TTempDir dir;
    for (const TCase& c : cases) {
        const std::string path = dir.File("lines.txt");
        WriteFileBytes(path, LinesOf(c.size, c.lineLen));
        g_reported.clear();
        TLineReader reader;
        TMapLayer layer;
        EXPECT_EQ(reader.LoadFile(path.c_str(), &layer, c.callback ? RecordProgress : nullptr), GISFILE_OK)
            << c.name;
        EXPECT_EQ(reader.m_iProgressStep, c.step) << c.name;
        const std::vector<int> expected = ExpectedReports(c.size, c.lineLen, c.step);
        EXPECT_EQ(g_reported, c.callback ? expected : std::vector<int>{}) << c.name;
        // The last value is kept whether or not anyone was told.
        EXPECT_EQ(reader.m_iLastProgress, expected.empty() ? 0 : expected.back()) << c.name;
    }
    EXPECT_EQ(g_reported.size(), 0u) << "the last case has nothing to report";
}

// A file without a size keeps the default step; the step otherwise comes from the low 32
// bits of the size, so a file just over 4 GiB counts as small.
TEST(Progress, StepWithoutStatusOrFromTheLow32Bits) {
    TTempDir dir;
    for (const std::string& path : {dir.File("missing.txt"), dir.Path()}) {
        TLineReader reader;
        TMapLayer layer;
        EXPECT_EQ(reader.TGisFile::LoadFile(path.c_str(), &layer, RecordProgress), GISFILE_ERR_UNAVAILABLE)
            << path;
        EXPECT_EQ(reader.m_iProgressStep, 100000) << path;
        EXPECT_EQ(reader.LoadFile(path.c_str(), &layer, RecordProgress), GISFILE_ERR_OPEN) << path;
    }
    const std::uintmax_t k4G = std::uintmax_t{1} << 32;
    for (const auto& [size, step] :
         {std::pair<std::uintmax_t, int>{k4G + 50, 100000}, {k4G + 1000, 10}, {k4G - 1, 42949672}}) {
        const std::string path = dir.File("sparse.bin");
        WriteFileBytes(path, "");
        std::error_code ec;
        std::filesystem::resize_file(path, size, ec);
        if (ec) GTEST_SKIP() << "cannot make a sparse file of " << size << " bytes: " << ec.message();
        TLineReader reader;
        TMapLayer layer;
        EXPECT_EQ(reader.TGisFile::LoadFile(path.c_str(), &layer, nullptr), GISFILE_OK) << size;
        EXPECT_EQ(reader.m_iProgressStep, step) << size;
    }
}

TEST(Progress, PositionsReportedDirectly) {
    TLineReader reader;
    TMapLayer layer;
    g_reported.clear();
    TTempDir dir;
    WriteFileBytes(dir.File("x"), std::string(1000, 'x'));
    ASSERT_EQ(reader.TGisFile::LoadFile(dir.File("x").c_str(), &layer, RecordProgress), GISFILE_OK);
    for (const std::int64_t pos : {0, 9, 10, 19, 25, 25, 1000, 1009, 5, 0}) reader.UpdateProgressControl(pos);
    EXPECT_EQ(g_reported, (std::vector<int>{1, 2, 100, 0}));
    // A fresh object has no step yet and reports nothing.
    TLineReader fresh;
    fresh.m_pfnProgress = RecordProgress;
    fresh.UpdateProgressControl(std::int64_t{500});
    EXPECT_EQ(g_reported.size(), 4u);
}

// Adding without an array, a null vertex, or a count that a reader set outside the array
// never writes anywhere.
TEST(VertexArray, RefusedAdds) {
    TLineReader reader;
    const tagLOC loc{1, 2};
    EXPECT_FALSE(reader.AddVertex(1.0, 2.0));
    EXPECT_FALSE(reader.AddVertex(&loc));
    EXPECT_EQ(reader.m_iNumLocs, 0);
    ASSERT_TRUE(reader.AllocateLocArray(10));
    EXPECT_FALSE(reader.AddVertex(nullptr));
    for (const int count : {1000, -1}) {
        reader.m_iNumLocs = count;
        EXPECT_FALSE(reader.AddVertex(1.0, 1.0)) << count;
        EXPECT_EQ(reader.m_iNumLocs, count);
    }
}

TEST(VertexArray, AllocateKeepsTheCountAndFailureIsShown) {
    TScriptedMessages messages;
    TLineReader reader;
    reader.m_iNumLocs = 7;  // a reader that fills by index sets its own count
    ASSERT_TRUE(reader.AllocateLocArray(5));
    EXPECT_EQ(reader.m_iNumLocs, 7);
    for (int i = 0; i <= 5; ++i) reader.m_pLocs[i] = {static_cast<double>(i), 0.0};  // room to close
    EXPECT_FALSE(reader.AllocateLocArray(-1));
    EXPECT_EQ(reader.m_pLocs, nullptr) << "the old array is released first";
    ASSERT_EQ(messages.Shown().size(), 1u);
    EXPECT_EQ(messages.Shown()[0].strText, "ERROR: could not allocate memory for imported polygon!");
    EXPECT_TRUE(reader.ReleaseLocArray()) << "twice is harmless";
}

TEST(VertexArray, GrowsBy300AndKeepsWhatItHeld) {
    struct TCase {
        int initial, added, capacity;
    };
    const std::vector<TCase> cases = {{2, 2, 2},   {2, 3, 302},    {2, 302, 302}, {2, 303, 602},
                                      {0, 1, 300}, {0, 901, 1200}, {10, 11, 310}};
    for (const TCase& c : cases) {
        TLineReader reader;
        ASSERT_TRUE(reader.AllocateLocArray(c.initial));
        for (int i = 0; i < c.added; ++i) {
            const tagLOC loc{i * 0.5, -i * 0.25};
            ASSERT_TRUE(i % 2 ? reader.AddVertex(&loc) : reader.AddVertex(loc.dLat, loc.dLon))
                << c.initial << "+" << c.added << " at " << i;
        }
        EXPECT_EQ(reader.m_iNumLocs, c.added) << c.initial << "+" << c.added;
        EXPECT_EQ(reader.m_iLocArraySize, c.capacity) << c.initial << "+" << c.added;
        for (int i = 0; i < c.added; ++i)
            ASSERT_EQ(reader.m_pLocs[i].dLon, -i * 0.25) << c.initial << "+" << c.added << " at " << i;
        reader.m_pLocs[reader.m_iNumLocs] = reader.m_pLocs[0];  // the closing vertex always fits
    }
}

TEST(VertexArray, CopiesOwnTheirArray) {
    TLineReader a;
    ASSERT_TRUE(a.AllocateLocArray(2));
    ASSERT_TRUE(a.AddVertex(1, 1));
    ASSERT_TRUE(a.AddVertex(2, 2));
    TLineReader b(a), c;
    c = a;
    a.m_pLocs[0] = {9, 9};
    a.ReleaseLocArray();
    for (const TLineReader* copy : {&b, &c}) {
        ASSERT_NE(copy->m_pLocs, nullptr);
        EXPECT_EQ(copy->m_iNumLocs, 2);
        EXPECT_EQ(copy->m_pLocs[0].dLat, 1.0);
    }
    const TLineReader& same = c;
    c = same;
    EXPECT_EQ(c.m_pLocs[1].dLon, 2.0) << "self-assignment";
}

}  // namespace
