#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <sstream>

#include "job_test_support.h"

namespace {
const tagLOC kA{45.5, -93.2}, kB{45.51, -93.2}, kC{45.5, -93.19}, kD{45.51, -93.19};

// The layer of the version 1 golden file: two markers, three patterns, boundary, area,
// generic and skipped lines.
void BuildGoldenLayer(TMapLayer& layer) {
    layer.m_strLLB = "FARM";
    AddMarker(layer, "", "Gate", 3, {45.5, -93.25});
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

void BuildMarkerLayer(TMapLayer& layer) {
    layer.m_strLLB = "FARM";
    AddMarker(layer, "", "Gate", 3, {45.5, -93.25});
}

struct TGoldenCase {
    const char* golden;
    const char* fileName;
    int format;
    std::function<void(TMapLayer&)> build;
};

TEST(JobWriter, MatchesHandWrittenFiles) {
    const TGoldenCase cases[] = {
        {"v1_layer.job", "012.JOB", GISFILE_JOB_V1, BuildGoldenLayer},
        {"v2_marker.job", "12.job", GISFILE_JOB_V2, BuildMarkerLayer},
        {"v3_marker.job", "North field 2024 ab.job", GISFILE_JOB_V3, BuildMarkerLayer},
    };
    for (const TGoldenCase& c : cases) {
        TJobSettings settings(c.format, REDUCE_NONE);
        TScriptedMessages messages;
        TMapLayer layer;
        c.build(layer);
        std::string bytes;
        ASSERT_EQ(WriteJob(c.fileName, layer, bytes), GISFILE_OK) << c.golden;
        EXPECT_EQ(bytes, ReadFileBytes(std::string(TL_GIS_SOURCE_DIR) + "/tests/data/job/" + c.golden))
            << c.golden;
        EXPECT_TRUE(messages.Shown().empty()) << c.golden;
    }
}

struct TNameCase {
    int format;
    const char* fileName;
    int result;
    const char* firstLines;  // the header written, or the message shown
};

TEST(JobWriter, FileNameRules) {
    TTestLanguage language;
    const TNameCase cases[] = {
        {0, "012.JOB", GISFILE_OK, ".JOB 12 012\r\n.VERSION 1\r\n\r\n"},
        {0, "999.job", GISFILE_OK, ".JOB 999 999\r\n.VERSION 1\r\n\r\n"},
        {0, "12.A.JOB", GISFILE_OK, ".JOB 12 12\r\n"},
        {0, "0.JOB", JOBFILE_ERR_NAME, "0.JOB\nW3082\nW3083"},
        {0, "1000.JOB", JOBFILE_ERR_NAME, "1000.JOB\nW3082\nW3083"},
        {0, "12A.JOB", JOBFILE_ERR_NAME, "12A.JOB\nW3082\nW3083"},
        {0, " 12.JOB", JOBFILE_ERR_NAME, " 12.JOB\nW3082\nW3083"},
        {1, "12.job", GISFILE_OK, ".JOB 12 FARM\r\n.VERSION 2\r\n\r\n"},
        {1, "12A.JOB", JOBFILE_ERR_NAME, "12A.JOB\nW3082\nW3083"},
        {2, "ABCDEFGHIJKLMNOPQRST.job", GISFILE_OK,
         ".JOB 9999 9999\r\n.VERSION 3\r\n.JNM ABCDEFGHIJKLMNOPQRST\r\n.LLB FARM\r\n\r\n"},
        {2, "ABCDEFGHIJKLMNOPQRSTU.job", JOBFILE_ERR_NAME, "ABCDEFGHIJKLMNOPQRSTU.job\nW3082\nW3096"},
        {2, "12A.JOB", GISFILE_OK, ".JOB 9999 9999\r\n.VERSION 3\r\n.JNM 12A\r\n"},
        {2, " a b .JOB", GISFILE_OK, ".JOB 9999 9999\r\n.VERSION 3\r\n.JNM a b\r\n"},
        {7, "anything.job", GISFILE_OK, ".JOB 0 anything\r\n.VERSION 1\r\n\r\n"},
    };
    for (const TNameCase& c : cases) {
        const std::string label = std::to_string(c.format) + " " + c.fileName;
        TJobSettings settings(c.format, REDUCE_BY_TOLERANCE);
        TScriptedMessages messages;
        TMapLayer layer;
        layer.m_strLLB = "FARM";
        std::string bytes;
        bool created = false;
        EXPECT_EQ(WriteJob(c.fileName, layer, bytes, &created), c.result) << label;
        if (c.result == GISFILE_OK) {
            EXPECT_EQ(bytes.substr(0, std::strlen(c.firstLines)), c.firstLines) << label;
            EXPECT_TRUE(messages.Shown().empty()) << label;
        } else {
            EXPECT_FALSE(created) << label << ": no file on a name error";
            ASSERT_EQ(messages.Shown().size(), 1u) << label;
            EXPECT_EQ(messages.Shown()[0].strText, c.firstLines) << label;
            EXPECT_EQ(messages.Shown()[0].strCaption, "W5054") << label;
            EXPECT_EQ(messages.Shown()[0].uFlags, MB_OK | MB_ICONEXCLAMATION) << label;
        }
    }
}

TEST(JobWriter, UncreatableFileGivesOne) {
    TJobSettings settings(GISFILE_JOB_V1, REDUCE_NONE);
    TMapLayer layer;
    TGisFileJob job;
    EXPECT_EQ(job.WriteFile("/nonexistent-folder/12.job", &layer), JOBFILE_ERR_CREATE);
}

// The coordinate lines of the first ".POL" record of a file.
std::vector<tagLOC> FirstRecordVertices(const std::string& bytes) {
    std::vector<tagLOC> out;
    std::istringstream in(bytes);
    std::string line;
    bool inRecord = false;
    while (std::getline(in, line)) {
        if (line.rfind(".POL", 0) == 0) {
            if (inRecord) break;
            inRecord = true;
            continue;
        }
        double lat = 0, lon = 0;
        if (inRecord && std::sscanf(line.c_str(), "\t%lf %lf", &lat, &lon) == 2) out.push_back({lat, lon});
    }
    return out;
}

struct TRingCase {
    const char* name;
    int boundType;
    std::vector<tagLOC> given;
    std::vector<tagLOC> written;
};

TEST(JobWriter, RingOrientationAndRepeatedVertices) {
    const tagLOC p{45.5, -93.3}, q{45.6, -93.3}, r{45.6, -93.2}, s{45.5, -93.2};
    // p q r s runs north, east, south: clockwise with north up; p s r q counter-clockwise. The
    // rings start at their west side, where the orientation test looks at the true neighbours.
    const TRingCase cases[] = {
        {"inclusion clockwise kept", BOUNDARY_INC, {p, q, r, s}, {p, q, r, s}},
        {"inclusion counter-clockwise reversed", BOUNDARY_INC, {p, s, r, q}, {q, r, s, p}},
        {"inclusion closed: no repeat", BOUNDARY_INC, {p, s, r, q, p}, {q, r, s, p}},
        {"exclusion clockwise reversed", BOUNDARY_EXC, {p, q, r, s}, {s, r, q, p}},
        {"exclusion counter-clockwise kept", BOUNDARY_EXC, {p, s, r, q}, {p, s, r, q}},
        {"exclusion closed clockwise", BOUNDARY_EXC, {p, q, r, s, p}, {s, r, q, p}},
        {"other bound type counter-clockwise", 0, {p, q, r, s}, {s, r, q, p}},
        {"open P P Q R P", BOUNDARY_OPEN, {p, p, q, r, p}, {p, q, r}},
        {"open repeats inside", BOUNDARY_OPEN, {p, q, q, r, r}, {p, q, r}},
        {"open line kept in order", BOUNDARY_OPEN, {s, r, q, p}, {s, r, q, p}},
    };
    for (const TRingCase& c : cases) {
        TJobSettings settings(GISFILE_JOB_V1, REDUCE_NONE);
        TMapLayer layer;
        AddLine(layer, ELEMENT_LINE_BOUNDARY, c.boundType, c.given, "r");
        std::string bytes;
        ASSERT_EQ(WriteJob("1.job", layer, bytes), GISFILE_OK) << c.name;
        const std::vector<tagLOC> written = FirstRecordVertices(bytes);
        ASSERT_EQ(written.size(), c.written.size()) << c.name;
        for (std::size_t i = 0; i < written.size(); ++i) {
            EXPECT_EQ(written[i].dLat, c.written[i].dLat) << c.name << " vertex " << i;
            EXPECT_EQ(written[i].dLon, c.written[i].dLon) << c.name << " vertex " << i;
        }
    }
}

struct TPointCase {
    const char* name;
    int kind;
    std::string valid;    // letters of the valid points
    std::string written;  // letters written
    int abLines;
};

TEST(JobWriter, PatternPointPairs) {
    const TPointCase cases[] = {
        {"EXPAND loses C", EXPAND, "ABCD", "ABD", 2},
        {"RACETRACK keeps C", RACETRACK, "ABCD", "ABCD", 2},
        {"A E F without B", QUICK, "AEF", "EF", 1},
        {"A B E F without C and D", BACK_TO_BACK, "ABEF", "ABEF", 2},
        {"BACK_TO_BACK_SKIP loses C", BACK_TO_BACK_SKIP, "ABC", "AB", 1},
        {"C alone is no line", RACETRACK, "C", "C", 0},
        {"D alone is a line", SQUEEZE, "D", "D", 1},
        {"pair with one half", MULTI_BACK_TO_BACK, "ABQ", "AB", 1},
        {"all eighteen", MULTI_BACK_TO_BACK, "ABCDEFGHIJKLMNOPQR", "ABCDEFGHIJKLMNOPQR", 9},
    };
    for (const TPointCase& c : cases) {
        TJobSettings settings(GISFILE_JOB_V1, REDUCE_NONE);
        TMapLayer layer;
        TFeaturePattern* pattern = AddPattern(layer, "3", c.kind, {});
        for (char letter : c.valid)
            pattern->m_aPoint[letter - 'A'].m_Loc = {45.0 + (letter - 'A') * 0.01, -93.5};
        std::string bytes;
        ASSERT_EQ(WriteJob("1.job", layer, bytes), GISFILE_OK) << c.name;
        std::string letters;
        std::istringstream in(bytes);
        std::string line;
        int abLines = -1;
        while (std::getline(in, line)) {
            if (line.size() > 2 && line[0] == '\t' && line[2] == ' ' && line[1] >= 'A' && line[1] <= 'R')
                letters += line[1];
            if (line.rfind("\tABLINES  ", 0) == 0) abLines = std::atoi(line.c_str() + 10);
        }
        EXPECT_EQ(letters, c.written) << c.name;
        EXPECT_EQ(abLines, c.abLines) << c.name;
        const bool keepsC = c.kind != EXPAND && c.kind != BACK_TO_BACK && c.kind != BACK_TO_BACK_SKIP;
        if (!keepsC) {
            EXPECT_EQ(pattern->m_aPoint[2].m_Loc.dLat, 0.0) << c.name << ": C cleared in the element";
        }
    }
}

TEST(JobWriter, PatternLinesAndMarkerIds) {
    struct TCase {
        const char* name;
        std::function<void(TMapLayer&)> build;
        const char* expected;  // a run of lines that must appear
    };
    const TCase cases[] = {
        {"kind out of range", [](TMapLayer& l) { AddPattern(l, "1", 42, {}); },
         ".PAT 1 1\r\n\tBACK_TO_BACK\r\n"},
        {"widths in feet",
         [](TMapLayer& l) {
             TFeaturePattern* p = AddPattern(l, "1", SQUEEZE, {});
             p->m_dSwathWidth = 10.0;
             p->m_dFieldWidth = 0.3048;
             p->m_dOffset = -1.0;
         },
         "\tSQUEEZE\r\n\tLEFT\r\n\tSWIDTH 32.8084\r\n\tFIELD_WIDTH 1.0000\r\n\tOFFSET -3.2808\r\n\tABLINES  "
         "0\r\n"},
        {"id from the start of the text",
         [](TMapLayer& l) {
             AddMarker(l, " 15x", "M", 9, {45, -93});
         },
         ".MAR 15 M\r\n\tTYPE 9\r\n"},
        {"marker counter",
         [](TMapLayer& l) {
             AddMarker(l, "4", "M", 9, {45, -93});
             AddMarker(l, "", "N", 31, {45, -93});
         },
         ".MAR 2 N\r\n\tTYPE 31\r\n"},
        {"symbol 10 written as 0",
         [](TMapLayer& l) {
             AddMarker(l, "", "M", 10, {45, -93});
         },
         "\tTYPE 0\r\n"},
    };
    for (const TCase& c : cases) {
        TJobSettings settings(GISFILE_JOB_V1, REDUCE_NONE);
        TMapLayer layer;
        c.build(layer);
        std::string bytes;
        ASSERT_EQ(WriteJob("1.job", layer, bytes), GISFILE_OK) << c.name;
        EXPECT_NE(bytes.find(c.expected), std::string::npos) << c.name << "\n" << bytes;
    }
}
}  // namespace
