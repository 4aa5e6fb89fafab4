// The format base: progress reporting while a reader walks a file, and the vertex array that
// readers build lines in.

#include <gtest/gtest.h>

#include <string>
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

    int LoadFile(const char* path, TMapLayer* layer, GisProgressCallback progress) override {
        const int base = TGisFile::LoadFile(path, layer, progress);
        TTextFile file;
        if (!file.Open(path, TTextFile::modeRead)) return GISFILE_ERR_OPEN;
        std::string_view line;
        while (file.ReadLineView(line)) UpdateProgressControl(file);
        return base;
    }
};

std::vector<int> g_reported;
void RecordProgress(int value) {
    g_reported.push_back(value);
}

// Files of 10-byte lines (5-byte lines in the last case, so the value changes every other line).
TEST(Progress, StepAndReportsWhileReading) {
    const struct {
        const char* name;
        std::size_t size, lineLen;
        bool callback;
        int step, firstReport, lastReport, reportEvery;
    } cases[] = {
        {"50 bytes: never reported", 50, 10, true, 100000, 0, 0, 1},
        {"150 bytes: the position itself", 150, 10, true, 1, 10, 150, 10},
        {"150 bytes without a callback", 150, 10, false, 1, 10, 150, 10},
        {"1000 bytes: once per change", 1000, 5, true, 10, 1, 100, 1},
    };
    TTempDir dir;
    for (const auto& c : cases) {
        std::string bytes;
        while (bytes.size() < c.size) bytes += std::string(c.lineLen - 1, 'a') + "\n";
        WriteFileBytes(dir.File("lines.txt"), bytes);
        g_reported.clear();
        TLineReader reader;
        TMapLayer layer;
        EXPECT_EQ(
            reader.LoadFile(dir.File("lines.txt").c_str(), &layer, c.callback ? RecordProgress : nullptr),
            GISFILE_OK)
            << c.name;
        EXPECT_EQ(reader.m_iProgressStep, c.step) << c.name;
        std::vector<int> expected;
        for (int v = c.firstReport; c.callback && v > 0 && v <= c.lastReport; v += c.reportEvery)
            expected.push_back(v);
        EXPECT_EQ(g_reported, expected) << c.name;
        EXPECT_EQ(reader.m_iLastProgress, c.lastReport) << c.name << ": kept even when nobody is told";
    }
}

TEST(VertexArray, RefusedAddsWriteNothing) {
    TScriptedMessages messages;
    TLineReader reader;
    EXPECT_FALSE(reader.AddVertex(1.0, 2.0)) << "no array yet";
    ASSERT_TRUE(reader.AllocateLocArray(10));
    for (const int count : {1000, -1}) {
        reader.m_iNumLocs = count;
        EXPECT_FALSE(reader.AddVertex(1.0, 1.0)) << count;
    }
    EXPECT_FALSE(reader.AllocateLocArray(-1));
    EXPECT_EQ(reader.m_pLocs, nullptr) << "the old array is released first";
    ASSERT_EQ(messages.Shown().size(), 1u);
    EXPECT_EQ(messages.Shown()[0].strText, "ERROR: could not allocate memory for imported polygon!");
}

TEST(VertexArray, GrowsBy300KeepingWhatItHeld) {
    const struct {
        int initial, added, capacity;
    } cases[] = {{2, 2, 2}, {2, 3, 302}, {2, 303, 602}, {0, 1, 300}};
    for (const auto& c : cases) {
        TLineReader reader;
        ASSERT_TRUE(reader.AllocateLocArray(c.initial));
        for (int i = 0; i < c.added; ++i) ASSERT_TRUE(reader.AddVertex(i * 0.5, -i * 0.25));
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
    TLineReader b(a), c;
    c = a;
    a.m_pLocs[0] = {9, 9};
    a.ReleaseLocArray();
    for (const TLineReader* copy : {&b, &c}) {
        ASSERT_NE(copy->m_pLocs, nullptr);
        EXPECT_EQ(copy->m_pLocs[0].dLat, 1.0);
    }
}

}  // namespace
