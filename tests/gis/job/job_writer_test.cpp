#include <gtest/gtest.h>

#include <cstring>
#include <tuple>

#include <tl_gis/platform/numbers.h>
#include "job_test_support.h"

namespace {
const tagLOC kA{45.5, -93.2}, kB{45.51, -93.2}, kC{45.5, -93.19}, kD{45.51, -93.19};

// The layer of the version 1 golden file: two markers, three patterns, boundary, area, generic
// and skipped lines; the other versions' files hold its first marker only.
void BuildGoldenLayer(TMapLayer& layer, bool full) {
    layer.m_strLLB = "FARM";
    AddMarker(layer, "", "Gate", 3, {45.5, -93.25});
    if (!full) return;
    AddMarker(layer, "ABC", "Silo", 132, {45.123456789, -93.0000004});
    TFeaturePattern* expand = AddPattern(layer, "7", EXPAND, {{'A', kA}, {'B', kB}, {'C', kC}, {'D', kD}});
    expand->m_iDirection = RIGHT;
    expand->m_dFieldWidth = 182.88;
    expand->m_dOffset = 3.048;
    AddPattern(layer, "", RACETRACK, {{'A', kA}, {'B', kB}, {'C', kC}, {'D', kD}});
    AddPattern(layer, "9", QUICK, {{'A', kA}, {'E', {45.52, -93.2}}, {'F', {45.53, -93.2}}});
    // Inclusion ring given counter-clockwise: written reversed.
    AddLine(layer, ELEMENT_LINE_BOUNDARY, BOUNDARY_INC,
            {{45.5, -93.3}, {45.5, -93.2}, {45.6, -93.2}, {45.6, -93.3}}, "N1");
    // Exclusion ring given clockwise and closed: written reversed without the repeat.
    TFeatureLine* exc = AddLine(layer, ELEMENT_LINE_BOUNDARY, BOUNDARY_EXC,
                                {{45.52, -93.28}, {45.58, -93.28}, {45.58, -93.22}, {45.52, -93.28}}, "X2");
    exc->SetColor(0x0000FF);
    exc->m_bRgbFlag1 = true;
    // Open line P, P, Q, R, P: written P, Q, R, with the colour line of a line without colour.
    const tagLOC p{45.5, -93.3}, q{45.55, -93.3}, r{45.55, -93.25};
    AddLine(layer, ELEMENT_LINE_BOUNDARY, BOUNDARY_OPEN, {p, p, q, r, p})->m_bRgbFlag2 = true;
    AddLine(layer, ELEMENT_LINE_GENERIC, BOUNDARY_OPEN, {p, p, q}, "G");
    AddLine(layer, ELEMENT_LINE_ROAD, BOUNDARY_OPEN, {p, q}, "road");
    AddLine(layer, ELEMENT_LINE_BOUNDARY, BOUNDARY_INC, {p}, "one vertex");
    AddLine(layer, ELEMENT_LINE_AREA, 0, {{45.40, -93.40}, {45.45, -93.40}, {45.45, -93.35}}, "A");
}

TEST(JobWriter, HandWrittenFilesAndNameRules) {
    TTestLanguage language;
    // format, file name, result; what was written ('@' and a hand-written file) or its start, or the
    // message shown and its caption
    const std::tuple<int, const char*, int, std::string> cases[] = {
        {0, "012.JOB", GISFILE_OK, "@v1_layer.job"},
        {1, "12.job", GISFILE_OK, "@v2_marker.job"},
        {2, "North field 2024 ab.job", GISFILE_OK, "@v3_marker.job"},
        {0, "999.job", GISFILE_OK, ".JOB 999 999\r\n.VERSION 1\r\n\r\n"},
        {0, "12.A.JOB", GISFILE_OK, ".JOB 12 12\r\n"},
        {0, "0.JOB", JOBFILE_ERR_NAME, "0.JOB\nW3082\nW3083|W5054"},
        {0, "1000.JOB", JOBFILE_ERR_NAME, "1000.JOB\nW3082\nW3083|W5054"},
        {1, "12A.JOB", JOBFILE_ERR_NAME, "12A.JOB\nW3082\nW3083|W5054"},
        {2, "ABCDEFGHIJKLMNOPQRST.job", GISFILE_OK,
         ".JOB 9999 9999\r\n.VERSION 3\r\n.JNM ABCDEFGHIJKLMNOPQRST\r\n"},
        {2, "ABCDEFGHIJKLMNOPQRSTU.job", JOBFILE_ERR_NAME, "ABCDEFGHIJKLMNOPQRSTU.job\nW3082\nW3096|W5054"},
        {2, "12A.JOB", GISFILE_OK, ".JOB 9999 9999\r\n.VERSION 3\r\n.JNM 12A\r\n"},
        {2, " a b .JOB", GISFILE_OK, ".JOB 9999 9999\r\n.VERSION 3\r\n.JNM a b\r\n"},
        {0, "no/such/folder/12.job", JOBFILE_ERR_CREATE, ""},
    };
    for (const auto& [format, fileName, result, expected] : cases) {
        TJobSettings settings(format, REDUCE_NONE);
        TScriptedMessages messages;
        TMapLayer layer;
        BuildGoldenLayer(layer, expected == "@v1_layer.job");
        std::string bytes, seen;
        EXPECT_EQ(WriteJob(fileName, layer, bytes), result) << fileName;
        for (const TMessageBoxRequest& shown : messages.Shown()) {
            seen += shown.strText + "|" + shown.strCaption;
            EXPECT_EQ(shown.uFlags, MSGBOX_OK | MSGBOX_ICONEXCLAMATION) << fileName;
        }
        seen += bytes;
        if (expected[0] == '@') {
            EXPECT_EQ(seen,
                      ReadFileBytes(std::string(TL_GIS_SOURCE_DIR) + "/tests/data/job/" + expected.substr(1)))
                << expected;
        } else {
            EXPECT_EQ(seen.substr(0, expected.size()), expected) << fileName;
        }
        EXPECT_EQ(bytes.empty(), result != GISFILE_OK) << fileName << ": a file only when the name is right";
    }
}

TEST(JobWriter, PatternAndMarkerRecords) {
    TJobSettings settings(GISFILE_JOB_V1, REDUCE_NONE);
    TMapLayer layer;
    AddPattern(layer, "1", 42, {});
    AddPattern(layer, "2", RACETRACK, {{'C', {45.02, -93.5}}, {'Q', {45.16, -93.5}}, {'R', {45.17, -93.5}}});
    AddMarker(layer, "4", "M", 9, {45, -93});
    AddMarker(layer, "", "N", 31, {45, -93});
    std::string bytes;
    ASSERT_EQ(WriteJob("1.job", layer, bytes), GISFILE_OK);
    const std::string expected[] = {
        // a kind out of range
        ".PAT 1 1\r\n\tBACK_TO_BACK\r\n",
        // C alone is no line, Q and R the last pair
        "\tABLINES  1\r\n\tC 45.020000 -93.500000\r\n\tQ 45.160000 -93.500000\r\n\tR 45.170000 "
        "-93.500000\r\n.MAR 4",
        // a marker without id is numbered among all markers
        ".MAR 2 N\r\n\tTYPE 31\r\n",
    };
    for (const std::string& e : expected)
        EXPECT_NE(bytes.find(e), std::string::npos) << e << "\nin\n" << bytes;
}

// Read and written again, a file comes back the same: every field the writer puts out is read
// into the field it came from. The first pass renumbers the records of the hand-written file.
TEST(JobRoundTrip, EveryVersionWritesBackTheSameBytes) {
    // format, file name, job name|LLB|version read back
    const std::tuple<int, const char*, const char*> cases[] = {
        {GISFILE_JOB_V1, "44.job", "44|44|1"},
        {GISFILE_JOB_V2, "44.job", "44|012|2"},
        {GISFILE_JOB_V3, "North44.job", "North44|012|3"}};
    for (const auto& [format, fileName, header] : cases) {
        TJobSettings settings(format, REDUCE_NONE);
        std::string text = ReadFileBytes(std::string(TL_GIS_SOURCE_DIR) + "/tests/data/job/v1_layer.job"),
                    last;
        for (int pass = 0; pass < 3; ++pass) {
            TMapLayer layer;
            TGisFileJob reader;
            ASSERT_EQ(LoadJobText(text, layer, &reader), GISFILE_OK) << fileName;
            EXPECT_EQ(layer.GetElementCount(), 10) << fileName;
            if (pass == 2) {
                EXPECT_EQ(
                    reader.m_strJobName + "|" + layer.m_strLLB + "|" + std::to_string(reader.m_iVersion),
                    header);
            }
            last = text;
            ASSERT_EQ(WriteJob(fileName, layer, text), GISFILE_OK) << fileName;
        }
        EXPECT_EQ(text, last) << fileName;
    }
}
}  // namespace
