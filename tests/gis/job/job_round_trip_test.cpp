#include <gtest/gtest.h>

#include "job_test_support.h"

namespace {
void BuildLayer(TMapLayer& layer) {
    layer.m_strLLB = "FARM";
    AddMarker(layer, "5", "Gate", 3, {45.123456, -93.654321});
    AddMarker(layer, "6", "Tank", 45, {-33.5, 151.25});
    TFeaturePattern* p = AddPattern(layer, "7", RACETRACK,
                                    {{'A', {45.5, -93.2}},
                                     {'B', {45.51, -93.2}},
                                     {'C', {45.5, -93.19}},
                                     {'D', {45.51, -93.19}},
                                     {'E', {45.52, -93.2}},
                                     {'F', {45.53, -93.21}}});
    p->m_iDirection = RIGHT;
    p->m_dSwathWidth = 21.3;
    p->m_dFieldWidth = 401.77;
    p->m_dOffset = -2.5;
    p->m_iAbLines = 3;
    AddPattern(layer, "8", EXPAND, {{'A', {45.6, -93.2}}, {'B', {45.61, -93.25}}});
    AddLine(layer, ELEMENT_LINE_BOUNDARY, BOUNDARY_INC, CircleRing(45.3, -93.4, 200, 40), "1");
    TFeatureLine* exc =
        AddLine(layer, ELEMENT_LINE_BOUNDARY, BOUNDARY_EXC, CircleRing(45.3, -93.4, 50, 12), "2");
    exc->SetColor(0x10FF20);
    exc->m_bRgbFlag1 = true;
    exc->m_dValue = 4.5;
    AddLine(layer, ELEMENT_LINE_BOUNDARY, BOUNDARY_OPEN, WavyLine(45.4, -93.5, 30, 3), "3");
}

// What is written, read back and written again gives the same bytes: every field the writer
// puts out is read into the field it came from.
TEST(JobRoundTrip, EveryVersionWritesBackTheSameBytes) {
    struct TCase {
        int format;
        const char* fileName;
        const char* jobName;
        const char* llb;
    };
    const TCase cases[] = {{GISFILE_JOB_V1, "44.job", "44", "44"},
                           {GISFILE_JOB_V2, "44.job", "44", "FARM"},
                           {GISFILE_JOB_V3, "North44.job", "North44", "FARM"}};
    for (const TCase& c : cases) {
        TJobSettings settings(c.format, REDUCE_NONE);
        TMapLayer original;
        BuildLayer(original);
        std::string first, second;
        ASSERT_EQ(WriteJob(c.fileName, original, first), GISFILE_OK) << c.fileName;
        TMapLayer back;
        TGisFileJob reader;
        ASSERT_EQ(LoadJobText(first, back, &reader), GISFILE_OK) << c.format;
        EXPECT_EQ(reader.m_iVersion, c.format - GISFILE_JOB_V1 + 1) << c.format;
        EXPECT_EQ(reader.m_strJobName, c.jobName) << c.format;
        EXPECT_EQ(back.m_strLLB, c.llb) << c.format;
        EXPECT_EQ(back.GetElementCount(), original.GetElementCount()) << c.format;
        ASSERT_EQ(WriteJob(c.fileName, back, second), GISFILE_OK) << c.format;
        EXPECT_EQ(second, first) << c.format;
    }
}
}  // namespace
