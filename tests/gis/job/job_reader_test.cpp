#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstring>
#include <functional>

#include "gis/coordinates.h"
#include "gis/job/job_vertex_buffer.h"
#include "job_test_support.h"
#include "platform/text_file.h"

namespace {
template <class T>
std::vector<T*> ElementsOf(const TMapLayer& layer) {
    std::vector<T*> out;
    for (TMapElement* e : layer.m_Elements)
        if (auto* t = dynamic_cast<T*>(e)) out.push_back(t);
    return out;
}

struct THeaderCase {
    const char* name;
    std::string text;
    int result;
    const char* jobName;
    const char* llb;
    int version;
};

TEST(JobReader, HeaderLines) {
    const THeaderCase cases[] = {
        {"plain", ".JOB 12 FARM\n", GISFILE_OK, "12", "FARM", 0},
        {"byte-order mark", "\xEF\xBB\xBF.JOB 12 FARM\r\n", GISFILE_OK, "12", "FARM", 0},
        {"blanks before", "   \t.JOB 1 X\n", GISFILE_OK, "1", "X", 0},
        {"lower case, longer keyword", ".jobfile 5 y\n", GISFILE_OK, "5", "y", 0},
        {"blank first line", "\n.JOB 1 X\n", GISFILE_ERR_OPEN, "", "", 0},
        {".JNM first", ".JNM abc\n.JOB 1 X\n", GISFILE_ERR_OPEN, "", "", 0},
        {"three characters only", ".JO 1 X\n", GISFILE_ERR_OPEN, "", "", 0},
        {"empty file", "", GISFILE_OK, "", "", 0},
        {"version 1", ".JOB 12 012\n.VERSION 1\n\n", GISFILE_OK, "12", "012", 1},
        {"version 2", ".JOB 12 FARM\r\n.VERSION 2\r\n\r\n", GISFILE_OK, "12", "FARM", 2},
        {"version 3", ".JOB 9999 9999\n.VERSION 3\n.JNM North\n.LLB FARM\n\n", GISFILE_OK, "North", "FARM",
         3},
        {"keywords on three characters", ".JOB 1 A\n.ve 7\n.jnmX Low\n.llbb L2\n", GISFILE_OK, "Low", "L2",
         7},
        {".V and another letter", ".JOB 1 A\n.VX 7\n", GISFILE_OK, "1", "A", 0},
        {"second .JOB ignored", ".JOB 1 A\n.JOB 2 B\n", GISFILE_OK, "1", "A", 0},
        {"byte above 127 ends a token", ".JOB 1 A\n.JNM ABC\xC9XYZ\n", GISFILE_OK, "ABC", "A", 0},
        {"NUL ends the line", std::string(".JOB 1 A\n.JNM AB\0CD\n", 20), GISFILE_OK, "AB", "A", 0},
        {"DEL belongs to a token",
         ".JOB 1 A\n.JNM AB\x7F"
         "C\n",
         GISFILE_OK,
         "AB\x7F"
         "C",
         "A", 0},
        {"token cut after 39", ".JOB 1 A\n.JNM " + std::string(39, 'n') + "TAIL\n", GISFILE_OK,
         "nnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnnn", "A", 0},
    };
    for (const THeaderCase& c : cases) {
        TMapLayer layer;
        TGisFileJob job;
        EXPECT_EQ(LoadJobText(c.text, layer, &job), c.result) << c.name;
        EXPECT_EQ(job.m_strJobName, c.jobName) << c.name;
        EXPECT_EQ(job.m_strLLB, c.llb) << c.name;
        EXPECT_EQ(job.m_iVersion, c.version) << c.name;
        if (c.result == GISFILE_OK) {
            EXPECT_EQ(layer.m_strLLB, c.llb) << c.name;
        }
    }
}

TEST(JobReader, LongLinesComeInPiecesOf99) {
    struct TCase {
        const char* name;
        std::size_t padTo;  // length of the first physical line's part before ".JNM TAIL"
        const char* jobName;
    };
    // A piece ends after 99 characters; what follows is read as a line of its own.
    const TCase cases[] = {
        {"tail starts a piece", 99, "TAIL"},
        {"tail one character early", 98, "1"},
        {"short line", 20, "1"},
    };
    for (const TCase& c : cases) {
        std::string first = ".LLB ";
        first += std::string(c.padTo - first.size(), 'x');
        TMapLayer layer;
        TGisFileJob job;
        ASSERT_EQ(LoadJobText(".JOB 1 A\n" + first + ".JNM TAIL\n", layer, &job), GISFILE_OK) << c.name;
        EXPECT_EQ(job.m_strJobName, c.jobName) << c.name;
    }
}

struct TMarkerCase {
    const char* name;
    const char* body;
    int symbol;
    double lat;
    double lon;
};

TEST(JobReader, MarkerBodies) {
    const TMarkerCase cases[] = {
        {"symbol 12 is not usable", "\tTYPE 12\n", 132, 0, 0},
        {"symbol 45", "\tTYPE 45\n", 45, 0, 0},
        {"lower case, symbol 3", "\ttype 3\n", 3, 0, 0},
        {"three characters", "\tTYP 31\n", 31, 0, 0},
        {"symbol 10", "\tTYPE 10\n", 132, 0, 0},
        {"not a number", "\tTYPE x\n", 132, 0, 0},
        {"no number", "\tTYPE\n", 132, 0, 0},
        {"negative", "\tTYPE -1\n", 132, 0, 0},
        {"position", "\t45.5 -93.25\n", 0, 45.5, -93.25},
        {"near the origin refused", "\t0.5 0.5\n", 0, 0, 0},
        {"one degree each refused", "\t1 -1\n", 0, 0, 0},
        {"latitude above one", "\t1.5 0.5\n", 0, 1.5, 0.5},
        {"longitude 200 refused", "\t45.5 200\n", 0, 0, 0},
        {"latitude 91 refused", "\t91 10\n", 0, 0, 0},
        {"later position wins", "\t45.5 -93.25\n\t46 -94\n", 0, 46, -94},
        {"refused keeps the earlier", "\t45.5 -93.25\n\t45 500\n", 0, 45.5, -93.25},
    };
    for (const TMarkerCase& c : cases) {
        TMapLayer layer;
        ASSERT_EQ(LoadJobText(std::string(".JOB 1 A\n.MAR 3 Gate\n") + c.body + ".MAR 4 Next\n", layer),
                  GISFILE_OK);
        const auto markers = ElementsOf<TFeatureMarker>(layer);
        ASSERT_EQ(markers.size(), 2u) << c.name;
        EXPECT_EQ(markers[0]->m_strId, "3") << c.name;
        EXPECT_EQ(markers[0]->m_strName, "Gate") << c.name;
        EXPECT_EQ(markers[0]->GetKind(), ELEMENT_MARKER) << c.name;
        EXPECT_EQ(markers[0]->GetLowBits(), c.symbol) << c.name;
        EXPECT_DOUBLE_EQ(markers[0]->m_Loc.dLat, c.lat) << c.name;
        EXPECT_DOUBLE_EQ(markers[0]->m_Loc.dLon, c.lon) << c.name;
        EXPECT_EQ(markers[1]->m_strName, "Next") << c.name;
    }
}

TEST(JobReader, PatternKinds) {
    struct TCase {
        const char* name;
        const char* body;
        int kind;
    };
    const TCase cases[] = {
        {"BACK_TO_BACK whole token", "\tRACETRACK\n\tback_to_back\n", BACK_TO_BACK},
        {"RACETRACK on three characters", "\tRAC\n", RACETRACK},
        {"QUICK whole token", "\tquick\n", QUICK},
        {"QUICKX is nothing", "\tRACETRACK\n\tQUICKX\n", RACETRACK},
        {"QUICKTRACK_X not QUICK", "\tQUICKTRACK_X\n", QUICKTRACK_X},
        {"QUICKTRA on eight", "\tquicktra\n", QUICKTRACK_X},
        {"REVERSE_RACETRACK", "\tREV\n", REVERSE_RACETRACK},
        {"SQUEEZE", "\tSQUEEZE\n", SQUEEZE},
        {"EXPAND", "\tExpand\n", EXPAND},
        {"MULTI_BACK_TO_BACK", "\tMULTI_BACK_TO_BACK\n", MULTI_BACK_TO_BACK},
        {"BACK_TO_BACK_SKIP not BACK_TO_BACK", "\tBACK_TO_BACK_SKIP\n", BACK_TO_BACK_SKIP},
        {"sixteen characters", "\tBACK_TO_BACK_SKI\n", BACK_TO_BACK_SKIP},
        {"fifteen characters are nothing", "\tRACETRACK\n\tBACK_TO_BACK_SK\n", RACETRACK},
    };
    for (const TCase& c : cases) {
        TMapLayer layer;
        ASSERT_EQ(LoadJobText(std::string(".JOB 1 FARM\n.PAT 7 Name\n") + c.body, layer), GISFILE_OK);
        const auto patterns = ElementsOf<TFeaturePattern>(layer);
        ASSERT_EQ(patterns.size(), 1u) << c.name;
        EXPECT_EQ(patterns[0]->m_iKind, c.kind) << c.name;
    }
}

struct TPatternCase {
    const char* name;
    const char* body;
    std::function<bool(const TFeaturePattern&)> check;
};

TEST(JobReader, PatternBodies) {
    const TPatternCase cases[] = {
        {"defaults", "",
         [](const TFeaturePattern& p) {
             return p.m_iKind == BACK_TO_BACK && p.m_iDirection == LEFT && p.m_dSwathWidth == 18.288 &&
                    p.m_iAbLines == 1;
         }},
        {"RIGHT then left", "\tRIGHT\n\tleft\n",
         [](const TFeaturePattern& p) { return p.m_iDirection == LEFT; }},
        {"RIG", "\tRIG\n", [](const TFeaturePattern& p) { return p.m_iDirection == RIGHT; }},
        {"widths in feet", "\tSWIDTH 60\n\tFIELD_WIDTH 600\n\tOFFSET -10\n",
         [](const TFeaturePattern& p) {
             return std::fabs(p.m_dSwathWidth - 18.288) < 1e-9 &&
                    std::fabs(p.m_dFieldWidth - 182.88) < 1e-9 && std::fabs(p.m_dOffset + 3.048) < 1e-9;
         }},
        {"ABLINES", "\tABLINES  4\n", [](const TFeaturePattern& p) { return p.m_iAbLines == 4; }},
        {"lower-case letter sets the point", "\tb 45.5 -93.2\n",
         [](const TFeaturePattern& p) {
             return p.m_aPoint[1].m_Loc.dLat == 45.5 && p.m_aPoint[1].m_Loc.dLon == -93.2 &&
                    p.m_aPoint[1].GetLowBits() == 58 && p.m_aPoint[1].m_strName == "FARM-7b";
         }},
        {"point names and symbols", "\tB 45.5 -93.2\n\tC 45.6 -93.2\n\tD 45.7 -93.2\n\tR 45.8 -93.2\n",
         [](const TFeaturePattern& p) {
             return p.m_aPoint[1].m_strName == "FARM-7B" && p.m_aPoint[2].GetLowBits() == 59 &&
                    p.m_aPoint[3].GetLowBits() == 31 && p.m_aPoint[17].GetLowBits() == 45 &&
                    p.m_aPoint[17].m_strName == "FARM-7R";
         }},
        {"no range test on points", "\tA 45 200\n",
         [](const TFeaturePattern& p) {
             return p.m_aPoint[0].m_Loc.dLon == 200 && IsPatternPointValid(p.m_aPoint[0].m_Loc);
         }},
        {"S is not a point", "\tS 45 -93\n",
         [](const TFeaturePattern& p) {
             for (const TFeatureMarker& m : p.m_aPoint)
                 if (m.m_Loc.dLat != 0.0) return false;
             return true;
         }},
    };
    for (const TPatternCase& c : cases) {
        TMapLayer layer;
        ASSERT_EQ(LoadJobText(std::string(".JOB 1 FARM\n.PAT 7 Name\n") + c.body + ".MAR 1 M\n", layer),
                  GISFILE_OK);
        const auto patterns = ElementsOf<TFeaturePattern>(layer);
        ASSERT_EQ(patterns.size(), 1u) << c.name;
        EXPECT_EQ(patterns[0]->m_strId, "7") << c.name;
        EXPECT_EQ(patterns[0]->m_dwType, ELEMENT_PATTERN) << c.name;
        EXPECT_TRUE(c.check(*patterns[0])) << c.name;
        EXPECT_EQ(ElementsOf<TFeatureMarker>(layer).size(), 1u) << c.name << ": the marker after the pattern";
    }
}

struct TBoundaryCase {
    const char* name;
    const char* record;  // ".POL" or ".GPL"
    const char* body;
    int boundType;
    int points;
    double value;
    std::uint32_t color;
    bool hasColor, flag1, flag2;
};

TEST(JobReader, BoundaryAndPolylineBodies) {
    const char* ring = "\t45.5 -93.3\n\t45.6 -93.3\n\t45.6 -93.2\n";
    const std::string closedRing = std::string(ring) + "\t45.5 -93.3\n";
    const TBoundaryCase cases[] = {
        {"inclusion by default, closed by the reader", ".POL", ring, BOUNDARY_INC, 4, 0, COLOR_NONE, false,
         false, false},
        {"last repeats first: not closed again", ".POL", closedRing.c_str(), BOUNDARY_INC, 4, 0, COLOR_NONE,
         false, false, false},
        {"EXC with value", ".POL", "\tEXC 2.5\n\t45.5 -93.3\n\t45.6 -93.3\n", BOUNDARY_EXC, 3, 2.5,
         COLOR_NONE, false, false, false},
        {"inc lower case", ".POL", "\tEXC\n\tinc 7\n\t45.5 -93.3\n", BOUNDARY_INC, 1, 7, COLOR_NONE, false,
         false, false},
        {"OPEN never closed", ".POL", "\tOPEN\n\t45.5 -93.3\n\t45.6 -93.3\n", BOUNDARY_OPEN, 2, 0, COLOR_NONE,
         false, false, false},
        {"RGB red with both flags", ".POL", "\tRGB: 255,000,000, 1, 0\n\t45.5 -93.3\n", BOUNDARY_INC, 1, 0,
         0x0000FF, true, true, true},
        {"RGB 256 is no colour", ".POL", "\tRGB: 256,0,0, 0, 1\n\t45.5 -93.3\n", BOUNDARY_INC, 1, 0,
         COLOR_NONE, true, false, false},
        {"RGB negative is no colour", ".POL", "\tRGB: 1,2,-3, 1, 1\n\t45.5 -93.3\n", BOUNDARY_INC, 1, 0,
         COLOR_NONE, true, true, false},
        {"RGB two numbers", ".POL", "\trgb: 1,2\n\t45.5 -93.3\n", BOUNDARY_INC, 1, 0, COLOR_NONE, true, false,
         false},
        {"RGB empty pieces skipped", ".POL", "\tRGB: ,10,,20,30, 1\n\t45.5 -93.3\n", BOUNDARY_INC, 1, 0,
         10 + 256 * 20 + 65536 * 30, true, true, false},
        {"no coordinates", ".POL", "", BOUNDARY_INC, 0, 0, COLOR_NONE, false, false, false},
        {"refused pairs dropped", ".POL", "\t45.5 200\n\t0.5 0.5\n\t45.5 -93.3\n\tx y\n", BOUNDARY_INC, 1, 0,
         COLOR_NONE, false, false, false},
        {"polyline skips INC and takes no colour", ".GPL",
         "\tINC 4\n\tRGB: 1,2,3, 1, 0\n\t45.5 -93.3\n\t45.6 -93.3\n", BOUNDARY_OPEN, 2, 0, COLOR_NONE, false,
         false, false},
    };
    for (const TBoundaryCase& c : cases) {
        TMapLayer layer;
        ASSERT_EQ(
            LoadJobText(std::string(".JOB 1 A\n") + c.record + " 5 Name\n" + c.body + ".MAR 1 M\n", layer),
            GISFILE_OK)
            << c.name;
        const auto lines = ElementsOf<TFeatureLine>(layer);
        ASSERT_EQ(lines.size(), 1u) << c.name;
        const TFeatureLine& line = *lines[0];
        EXPECT_EQ(line.GetKind(),
                  std::string(c.record) == ".POL" ? ELEMENT_LINE_BOUNDARY : ELEMENT_LINE_GENERIC)
            << c.name;
        EXPECT_EQ(line.m_strId, "5") << c.name;
        EXPECT_EQ(line.m_iBoundType, c.boundType) << c.name;
        EXPECT_EQ(line.m_iNumPoints, c.points) << c.name;
        EXPECT_DOUBLE_EQ(line.m_dValue, c.value) << c.name;
        std::uint32_t color = 0;
        line.GetColor(color);
        EXPECT_EQ(color, c.color) << c.name;
        EXPECT_EQ(line.m_bHasColor, c.hasColor) << c.name;
        EXPECT_EQ(line.m_bRgbFlag1, c.flag1) << c.name;
        EXPECT_EQ(line.m_bRgbFlag2, c.flag2) << c.name;
        EXPECT_EQ(ElementsOf<TFeatureMarker>(layer).size(), 1u) << c.name;
    }
}

TEST(JobReader, ProjectedCoordinatesAskTheUser) {
    struct TCase {
        const char* name;
        std::vector<int> answers;
        int result;
        int questions;
        int linePoints;    // -1: no line added
        const char* next;  // first token of the line read after ReadPolygon returned
    };
    const std::string body = "\t45.5 -93.3\n\t5000000 500000\n\t45.6 -93.3\n\t45.5 200\n.POL 2 x\n";
    const TCase cases[] = {
        {"No drops the pair and reading goes on", {IDNO}, COORD_OUT_OF_RANGE, 1, 3, ".POL"},
        {"Yes abandons the boundary", {IDYES}, GISFILE_ERR_CANCELLED, 1, -1, "45.6"},
    };
    TTestLanguage language;
    for (const TCase& c : cases) {
        TScriptedMessages messages(c.answers);
        TMapLayer layer;
        TTextFile file;
        file.OpenMemory(body);
        EXPECT_EQ(TGisFileJob::ReadPolygon(file, &layer, "1", ""), c.result) << c.name;
        EXPECT_EQ(messages.Shown().size(), static_cast<std::size_t>(c.questions)) << c.name;
        EXPECT_TRUE(messages.Shown()[0].IsQuestion()) << c.name;
        EXPECT_EQ(layer.GetElementCount(), c.linePoints < 0 ? 0 : 1) << c.name;
        if (c.linePoints >= 0) {
            EXPECT_EQ(static_cast<TFeatureLine*>(layer.m_Elements[0])->m_iNumPoints, c.linePoints) << c.name;
        }
        char line[100];
        ASSERT_TRUE(file.ReadLine(line, sizeof line)) << c.name;
        EXPECT_EQ(std::string(line).substr(std::string(line).find_first_not_of('\t'), std::strlen(c.next)),
                  c.next)
            << c.name;
    }
    // Through LoadFile, Yes abandons only the current boundary.
    TScriptedMessages messages({IDYES});
    TMapLayer layer;
    EXPECT_EQ(LoadJobText(".JOB 1 A\n.POL 1 a\n" + body + "\t45.5 -93.3\n\t45.6 -93.3\n", layer), GISFILE_OK);
    ASSERT_EQ(layer.GetElementCount(), 1);
    EXPECT_EQ(layer.m_Elements[0]->m_strId, "2");
}

TEST(JobReader, VertexBufferGrowsBy600) {
    struct TCase {
        int appended, capacity, growths;
    };
    const TCase cases[] = {{0, 500, 0}, {500, 500, 0}, {501, 1100, 1}, {1100, 1100, 1}, {1101, 1700, 2}};
    for (const TCase& c : cases) {
        TJobVertexBuffer buffer;
        ASSERT_TRUE(buffer.Allocate());
        for (int i = 0; i < c.appended; ++i) ASSERT_TRUE(buffer.Append(45.0 + i * 1e-6, -93.0));
        EXPECT_EQ(buffer.Capacity(), c.capacity) << c.appended;
        EXPECT_EQ(buffer.Growths(), c.growths) << c.appended;
        EXPECT_EQ(buffer.Count(), c.appended);
        if (c.appended > 0) {
            EXPECT_EQ(buffer.Data()[c.appended - 1].dLat, 45.0 + (c.appended - 1) * 1e-6);
        }
    }
}

TEST(JobReader, VertexMemoryRunningOutKeepsWhatWasRead) {
    TTestLanguage language;
    struct TCase {
        const char* record;
        const char* message;
    };
    const TCase cases[] = {{".POL", "W17001 9\nW3081"}, {".GPL", "W3080 9\nW3081"}};
    for (const TCase& c : cases) {
        std::string text = std::string(".JOB 1 A\n") + c.record + " 9 x\n";
        for (int i = 0; i < 1200; ++i) text += "\t45." + std::to_string(1000 + i) + " -93.5\n";
        text += ".MAR 1 M\n";
        TJobVertexBuffer::SetCapacityLimitForTesting(1100);
        TScriptedMessages messages;
        TMapLayer layer;
        const int result = LoadJobText(text, layer);
        TJobVertexBuffer::SetCapacityLimitForTesting(INT_MAX - TJobVertexBuffer::kGrowth);
        EXPECT_EQ(result, GISFILE_OK) << c.record;
        ASSERT_EQ(messages.Shown().size(), 1u) << c.record;
        EXPECT_EQ(messages.Shown()[0].strText, c.message) << c.record;
        EXPECT_EQ(messages.Shown()[0].uFlags & 0xF0u, static_cast<unsigned>(MB_ICONEXCLAMATION)) << c.record;
        const auto lines = ElementsOf<TFeatureLine>(layer);
        ASSERT_EQ(lines.size(), 1u) << c.record;
        EXPECT_GE(lines[0]->m_iNumPoints, 1100) << c.record;
        EXPECT_LE(lines[0]->m_iNumPoints, 1101) << c.record;
        EXPECT_EQ(ElementsOf<TFeatureMarker>(layer).size(), 1u) << c.record << ": reading went on";
    }
}

}  // namespace
