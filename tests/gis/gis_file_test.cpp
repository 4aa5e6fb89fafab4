// The format base: progress reporting while a reader walks a file.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <tl_gis/gis/gis_file.h>
#include <tl_gis/platform/text_file.h>
#include "test_support.h"

namespace {

// A reader of plain lines: base set-up first, open, then one progress report per line.
class TLineReader : public TGisFile {
public:
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

// Files of 10-byte lines (5-byte lines in the last case, so the value changes every other line).
TEST(Progress, StepAndReportsWhileReading) {
    const struct {
        const char* name;
        std::size_t size, lineLen;
        bool callback;
        int step, lastReport, reportEvery;
    } cases[] = {{"50 bytes: never reported", 50, 10, true, 100000, 0, 1},
                 {"150 bytes: the position itself", 150, 10, true, 1, 150, 10},
                 {"150 bytes without a callback", 150, 10, false, 1, 150, 10},
                 {"1000 bytes: once per change", 1000, 5, true, 10, 100, 1}};
    TTempDir dir;
    for (const auto& c : cases) {
        std::string bytes;
        while (bytes.size() < c.size) bytes += std::string(c.lineLen - 1, 'a') + "\n";
        WriteFileBytes(dir.File("lines.txt"), bytes);
        g_reported.clear();
        TLineReader reader;
        TMapLayer layer;
        const GisProgressCallback callback =
            c.callback ? +[](int value) { g_reported.push_back(value); } : nullptr;
        EXPECT_EQ(reader.LoadFile(dir.File("lines.txt").c_str(), &layer, callback), GISFILE_OK) << c.name;
        EXPECT_EQ(reader.m_iProgressStep, c.step) << c.name;
        std::vector<int> expected;
        for (int v = c.reportEvery; c.callback && v <= c.lastReport; v += c.reportEvery)
            expected.push_back(v);
        EXPECT_EQ(g_reported, expected) << c.name;
        EXPECT_EQ(reader.m_iLastProgress, c.lastReport) << c.name << ": kept even when nobody is told";
    }
}

}  // namespace
