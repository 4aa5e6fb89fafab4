#include <gtest/gtest.h>

#include <cstdio>
#include <random>

#include "job_test_support.h"

namespace {
std::string RandomBytes(std::size_t n, unsigned seed) {
    std::mt19937 random(seed);
    std::string s(n, '\0');
    for (char& c : s) c = static_cast<char>(random() & 0xFF);
    return s;
}

struct TBadCase {
    const char* name;
    std::string text;
    int result;
    int elements;  // -1: not checked
};

TEST(JobBadInput, ResultCodesWithoutCrashing) {
    TTestLanguage language;
    std::string longLine = ".JOB 1 A\n.POL 1 x\n\t";
    for (int i = 0; i < 40000; ++i) longLine += "45.5 -93.5 ";  // about 1 MB without a line end
    longLine += "\n.MAR 2 M\n";
    const TBadCase cases[] = {
        {"truncated in a number", ".JOB 1 A\n.POL 1 x\n\t45.5 -93.3\n\t45.6 -9", GISFILE_OK, 1},
        {"truncated record line", ".JOB 1 A\n.PA", GISFILE_OK, 1},
        {"garbage only", RandomBytes(5000, 1), GISFILE_ERR_OPEN, 0},
        {"garbage after the header", ".JOB 1 A\n" + RandomBytes(200000, 2), GISFILE_OK, -1},
        {"garbage in record bodies",
         ".JOB 1 A\n.POL 1\n" + RandomBytes(50000, 3) + "\n.PAT 2\n" + RandomBytes(50000, 4), GISFILE_OK, -1},
        {"NUL bytes", std::string(".JOB 1 A\n.MAR 1 M\n\t45.5\0 -93\n\0\0\0\n.POL 2\n\t45\0.5 -93.5\n", 47),
         GISFILE_OK, 2},
        {"NUL before .JOB", std::string("\0.JOB 1 A\n", 10), GISFILE_ERR_OPEN, 0},
        {"a line of 1 MB", longLine, GISFILE_OK, 2},
        {"only line ends", "\r\n\r\n\r\r\n", GISFILE_ERR_OPEN, 0},
        {"huge numbers",
         ".JOB 1 A\n.PAT 1\n\tSWIDTH 1e999\n\tABLINES 99999999999\n\tA 1e308 -1e308\n.MAR 1 M\n\tTYPE 1e99\n",
         GISFILE_OK, 2},
    };
    for (const TBadCase& c : cases) {
        TScriptedMessages messages({IDNO, IDNO, IDNO, IDNO, IDNO, IDNO, IDNO, IDNO});
        TMapLayer layer;
        EXPECT_EQ(LoadJobText(c.text, layer), c.result) << c.name;
        if (c.elements >= 0) {
            EXPECT_EQ(layer.GetElementCount(), c.elements) << c.name;
        }
    }
}

TEST(JobBadInput, MissingFile) {
    TMapLayer layer;
    TGisFileJob job;
    EXPECT_EQ(job.LoadFile("/nonexistent-folder/1.job", &layer, nullptr), GISFILE_ERR_OPEN);
    EXPECT_EQ(layer.GetElementCount(), 0);
}

TEST(JobBadInput, TenMillionVerticesInOneBody) {
    // Memory follows the vertices actually read: the body is read whole into one line.
    constexpr int kVertices = 10000000;
    TTempDir dir;
    const std::string path = dir.File("big.job");
    {
        std::FILE* f = std::fopen(path.c_str(), "wb");
        ASSERT_NE(f, nullptr);
        std::fputs(".JOB 1 A\n.GPL 1 big\n", f);
        std::string chunk;
        for (int i = 0; i < 100000; ++i) chunk += "45 9\n";
        for (int i = 0; i < kVertices / 100000; ++i) std::fwrite(chunk.data(), 1, chunk.size(), f);
        std::fputs(".MAR 2 after\n", f);
        std::fclose(f);
    }
    TMapLayer layer;
    TGisFileJob job;
    ASSERT_EQ(job.LoadFile(path.c_str(), &layer, nullptr), GISFILE_OK);
    ASSERT_EQ(layer.GetElementCount(), 2);
    const auto* line = dynamic_cast<const TFeatureLine*>(layer.m_Elements[0]);
    ASSERT_NE(line, nullptr);
    EXPECT_EQ(line->m_iNumPoints, kVertices);
    EXPECT_EQ(layer.m_Elements[1]->m_strId, "2");
}
}  // namespace
