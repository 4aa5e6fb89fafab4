#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <tuple>

#include <tl_gis/platform/numbers.h>
#include "gis/job/job_vertex_buffer.h"
#include "job_test_support.h"
#include "load_report_check.h"

namespace {
// The fields the reader fills in, one element after the other.
std::string Describe(const TMapLayer& layer) {
    std::string out;
    auto loc = [](const tagLOC& l) { return " " + FormatRoundTrip(l.dLat) + " " + FormatRoundTrip(l.dLon); };
    for (const TMapElement* e : layer.m_Elements) {
        out += (out.empty() ? "" : "|") + e->m_strId;
        if (const auto* m = dynamic_cast<const TFeatureMarker*>(e)) {
            out += " MAR " + m->m_strName + " " + std::to_string(m->GetLowBits()) + loc(m->m_Loc);
        } else if (const auto* p = dynamic_cast<const TFeaturePattern*>(e)) {
            out += std::string(" PAT ") + GetPatternKindKeyword(p->m_iKind) +
                   (p->m_iDirection == LEFT ? " LEFT " : " RIGHT ") + FormatFixed(p->m_dSwathWidth, 3) + " " +
                   FormatFixed(p->m_dFieldWidth, 3) + " " + FormatFixed(p->m_dOffset, 3) + " " +
                   std::to_string(p->m_iAbLines);
            for (const TFeatureMarker& point : p->m_aPoint)
                if (point.m_Loc.dLat != 0.0 || point.m_Loc.dLon != 0.0)
                    out +=
                        " " + point.m_strName + " " + std::to_string(point.GetLowBits()) + loc(point.m_Loc);
        } else if (const auto* l = dynamic_cast<const TFeatureLine*>(e)) {
            const char* bounds[] = {"INC", "EXC", "OPEN"};
            out += std::string(e->GetKind() == ELEMENT_LINE_BOUNDARY ? " POL " : " GPL ") +
                   bounds[l->m_iBoundType - BOUNDARY_INC] + " n=" + std::to_string(l->m_iNumPoints) +
                   " v=" + FormatRoundTrip(l->m_dValue);
            std::uint32_t color = 0;
            if (l->m_bHasColor)
                out += " rgb=" + (l->GetColor(color) ? std::to_string(color) : std::string("none")) +
                       (l->m_bRgbFlag1 ? " 1" : " 0") + (l->m_bRgbFlag2 ? " 1" : " 0");
        }
    }
    return out;
}

TEST(JobReader, HeaderLines) {
    // name, text, result, job name|LLB|version
    const std::string x39(39, 'x');
    const std::tuple<const char*, std::string, int, std::string> cases[] = {
        {"BOM, lower case, longer keyword", "\xEF\xBB\xBF.jobfile 12 FARM\r\n", GISFILE_OK, "12|FARM|0"},
        {"blank first line", "\n.JOB 1 X\n", GISFILE_ERR_OPEN, "||0"},
        {"three characters only", ".JO 1 X\n", GISFILE_ERR_OPEN, "||0"},
        {"keywords on three characters", ".JOB 1 A\n.ve 7\n.VX 8\n.jnmX Low\n.llbb L2\n", GISFILE_OK,
         "Low|L2|7"},
        {"DEL belongs to a token, a byte above 127 ends it", ".JOB 1 A\n.JNM AB\177C\xC9XYZ\n", GISFILE_OK,
         "AB\177C|A|0"},
        {"a piece ends after 99 characters, a token after 39",
         ".JOB 1 A\n.LLB " + std::string(94, 'x') + ".JNM TAIL\n", GISFILE_OK, "TAIL|" + x39 + "|0"},
        {"the piece ends inside .JNM", ".JOB 1 A\n.LLB " + std::string(93, 'x') + ".JNM TAIL\n", GISFILE_OK,
         "1|" + x39 + "|0"},
    };
    for (const auto& [name, text, result, expected] : cases) {
        TMapLayer layer;
        TGisFileJob job;
        EXPECT_EQ(LoadJobText(text, layer, &job), result) << name;
        EXPECT_EQ(job.m_strJobName + "|" + job.m_strLLB + "|" + std::to_string(job.m_iVersion), expected)
            << name;
    }
}

TEST(JobReader, RecordBodies) {
    struct TCase {
        const char* name;
        std::string records;
        const char* expected;  // the start of the first element's description
        int answer = 0;        // to the question about a projected pair, 0: not asked
    };
    TTestLanguage language;
    const std::string ring = "\t45.5 -93.3\n\t45.6 -93.3\n\t45.6 -93.2\n";
    const std::string projected = "\t45.5 -93.3\n\t5000000 500000\n\t45.6 -93.3\n";
    std::string longLine = "\t", tenMillion;
    for (int i = 0; i < 100000; ++i) longLine += "45.5 -93.5 ";  // 1 MB without a line end
    for (int i = 0; i < 10000000; ++i) tenMillion += "45 9\n";
    const TCase cases[] = {
        {"symbol 12 is not usable", ".MAR 3 Gate\n\tTYPE 12\n", "3 MAR Gate 132 0 0"},
        {"symbol 31, lower case on three characters", ".MAR 3 G\n\ttyp 31\n", "3 MAR G 31"},
        {"symbols 10 and not a number", ".MAR 3 G\n\tTYPE 10\n.MAR 4 G\n\tTYPE x\n",
         "3 MAR G 132 0 0|4 MAR G 132 0 0|"},
        {"one degree each refused", ".MAR 3 G\n\t1 -1\n", "3 MAR G 0 0 0"},
        {"latitude above one", ".MAR 3 G\n\t1.5 0.5\n", "3 MAR G 0 1.5 0.5"},
        {"last accepted position", ".MAR 3 G\n\t2 2\n\t45.5 -93.25\n\t91 10\n\t45 200\n",
         "3 MAR G 0 45.5 -93.25"},
        {"pattern widths in feet",
         ".PAT 7 N\n\trig\n\tSWIDTH 60\n\tFIELD_WIDTH 600\n\tOFFSET -10\n\tABLINES  4\n",
         "7 PAT BACK_TO_BACK RIGHT 18.288 182.880 -3.048 4"},
        {"pattern defaults and points, no range test, no S",
         ".PAT 7 N\n\tb 45.5 -93.2\n\tD 45.7 -93\n\tR 45.8 -93\n\tA 45 200\n\tS 46 -93\n",
         "7 PAT BACK_TO_BACK LEFT 18.288 0.000 0.000 1 FARM-7A 57 45 200 FARM-7b 58 45.5 -93.2 "
         "FARM-7D 31 45.7 -93 FARM-7R 45 45.8 -93|"},
        {"kind on three characters", ".PAT 7 N\n\trac\n", "7 PAT RACETRACK"},
        {"BACK_TO_BACK as a whole token", ".PAT 7 N\n\trac\n\tback_to_back\n", "7 PAT BACK_TO_BACK"},
        {"QUICK as a whole token", ".PAT 7 N\n\tquick\n\tQUICKX\n", "7 PAT QUICK "},
        {"QUICKTRACK_X on eight characters", ".PAT 7 N\n\tquicktra\n", "7 PAT QUICKTRACK_X"},
        {"sixteen characters", ".PAT 7 N\n\tBACK_TO_BACK_SKI\n\tBACK_TO_BACK_SK\n",
         "7 PAT BACK_TO_BACK_SKIP"},
        {"inclusion closed by the reader", ".POL 5 N\n" + ring, "5 POL INC n=4 v=0"},
        {"last repeats first: not closed again", ".POL 5 N\n" + ring + "\t45.5 -93.3\n", "5 POL INC n=4"},
        {"EXC with value", ".POL 5 N\n\tEXC 2.5\n" + ring, "5 POL EXC n=4 v=2.5"},
        {"OPEN never closed", ".POL 5 N\n\topen\n" + ring, "5 POL OPEN n=3"},
        {"RGB red with both flags, no coordinates", ".POL 5 N\n\tRGB: 255,000,000, 1, 0\n",
         "5 POL INC n=0 v=0 rgb=255 1 1"},
        {"RGB 256 is no colour", ".POL 5 N\n\tRGB: 256,0,0, 0, 1\n", "5 POL INC n=0 v=0 rgb=none 0 0"},
        {"RGB negative is no colour", ".POL 5 N\n\tRGB: 1,2,-3, 1, 1\n", "5 POL INC n=0 v=0 rgb=none 1 0"},
        {"RGB empty pieces skipped", ".POL 5 N\n\tRGB: ,10,,20,30, 1\n", "5 POL INC n=0 v=0 rgb=1971210 1 0"},
        {"RGB two numbers", ".POL 5 N\n\trgb: ,10,,20\n", "5 POL INC n=0 v=0 rgb=none 0 0"},
        {"refused pairs dropped", ".POL 5 N\n\t45.5 200\n\t0.5 0.5\n\tx y\n\t45.5 -93.3\n", "5 POL INC n=1"},
        {"polyline: no INC, no RGB", ".GPL 5 N\n\tINC 4\n\tRGB: 1,2,3, 1, 0\n" + ring, "5 GPL OPEN n=3 v=0"},
        {"projected pair, No drops it", ".POL 5 N\n" + projected, "5 POL INC n=3 v=0", ANSWER_NO},
        {"projected pair, Yes abandons the boundary", ".POL 5 N\n" + projected + ".POL 6 N\n" + ring,
         "6 POL INC n=4 v=0", ANSWER_YES},
        {"NUL bytes", std::string(".MAR 1 M\n\t45.5\0 -93\n\0\0\0\n.POL 2\n\t45\0.5 -93.5\n", 44),
         "1 MAR M 0 45.5 0|2 POL INC n=1 v=0|"},
        {"a line of 1 MB", ".POL 5 N\n" + longLine + "\n", "5 POL INC n=11112 "},
        {"huge numbers", ".PAT 1\n\tSWIDTH 1e999\n\tABLINES 99999999999\n\tA 1e308 -1e308\n",
         "1 PAT BACK_TO_BACK LEFT inf"},
        {"ten million vertices in one body", ".GPL 5 big\n" + tenMillion, "5 GPL OPEN n=10000000 "},
    };
    for (const TCase& c : cases) {
        TScriptedMessages messages({c.answer});
        TMapLayer layer;
        ASSERT_EQ(LoadJobText(".JOB 1 FARM\n" + c.records + ".MAR 9 End\n", layer), GISFILE_OK) << c.name;
        const std::string seen = Describe(layer);
        EXPECT_EQ(seen.substr(0, std::strlen(c.expected)), c.expected) << c.name << "\n" << seen;
        EXPECT_TRUE(seen.ends_with("|9 MAR End 0 0 0")) << c.name << ": reading went on";
        std::string asked;
        for (const TMessageBoxRequest& m : messages.Shown()) asked += m.IsQuestion() ? "?" : "!";
        EXPECT_EQ(asked, c.answer != 0 ? "?" : "") << c.name;
    }
}

// Line numbers count the file's lines: the pieces of a long line share its number, and a body
// that reads one line too far gives it back.
TEST(JobReader, LoadReportCountsWhatIsLeftOut) {
    TTestLanguage language;
    const std::string longLine = "\t45.6 -93.2" + std::string(110, ' ') + "x";
    const std::vector<std::string> causes = {
        ".JOB 1 FARM",      "stray text",    ".MAR 3 Gate", "\t0.5 0.5",    "\t45.5 -93.25",
        ".XYZ 1 odd",       "\tbody of odd", ".POL 5 N",    "\t45.5 -93.3", "\t45.5 200",
        "\t5000000 500000", "\t45.6 -93.3",  longLine,      "\t0.2 0.3",    ".GPL 6 N",
        "\t45.5 -93.3",     ".VERSION 2",    "\t45 -93",    ".JOB 2 X"};
    const std::vector<std::string> abandoned = {".JOB 1 F",         ".POL 5 N",     "\t45.5 -93.3",
                                                "\t5000000 500000", "\t45.6 -93.3", ".POL 6 N",
                                                "\t45.5 -93.3"};
    // clang-format off
    const TReportCase cases[] = {
        {"refused coordinates, unknown records, stray lines", JoinLines(causes, "\n"),
         {{LOAD_VERTEX_NEAR_ORIGIN, 3, LineAt(causes, "\t0.5 0.5")}, {LOAD_VERTEX_OUT_OF_RANGE, 1, LineAt(causes, "\t45.5 200")},
          {LOAD_VERTEX_PROJECTED, 1, LineAt(causes, "\t5000000 500000")}, {LOAD_UNKNOWN_RECORD, 2, LineAt(causes, ".XYZ 1 odd") + " (.XYZ)"},
          {LOAD_STRAY_LINE, 2, LineAt(causes, "stray text")}}, "", "boundary 1, generic 1, marker 1", GISFILE_OK, "n"},
        {"Yes gives up the boundary; its other lines are stray", JoinLines(abandoned, "\n"),
         {{LOAD_LINE_ABANDONED, 1, LineAt(abandoned, "\t5000000 500000")}, {LOAD_STRAY_LINE, 1, LineAt(abandoned, "\t45.6 -93.3")}},
         "", "boundary 1", GISFILE_OK, "y"},
        {"not a job file", "JOB 1 F\n.POL 5 N\n", {}, "at line 1: the first line does not start with \".JOB\"", "", GISFILE_ERR_OPEN},
    };
    // clang-format on
    for (const TReportCase& c : cases) {
        TMapLayer layer, plain;
        TGisFileJob job;
        TLoadReport report;
        job.SetLoadReport(&report);
        int result = -1;
        {
            TScriptedMessages messages(ScriptedAnswers(c.answers));
            result = LoadJobText(c.text, layer, &job);
        }
        ExpectReport(c, result, report);
        TScriptedMessages again(ScriptedAnswers(c.answers));
        LoadJobText(c.text, plain);
        EXPECT_EQ(Describe(layer), Describe(plain)) << c.name;
    }
}

TEST(JobReader, VertexBufferGrowsUntilMemoryRunsOut) {
    TTestLanguage language;
    const char* cases[][3] = {{".POL", "W17001 9\nW3081|48", "9 POL INC n=1701 v=0|1 MAR M 0 0 0"},
                              {".GPL", "W3080 9\nW3081|48", "9 GPL OPEN n=1700 v=0|1 MAR M 0 0 0"}};
    for (const auto& [record, message, expected] : cases) {
        std::string text = std::string(".JOB 1 A\n") + record + " 9 x\n";
        for (int i = 0; i < 1800; ++i) text += "\t45." + std::to_string(1000 + i) + " -93.5\n";
        TJobVertexBuffer::SetCapacityLimitForTesting(1700);
        TScriptedMessages messages;
        TMapLayer layer;
        EXPECT_EQ(LoadJobText(text + ".MAR 1 M\n", layer), GISFILE_OK) << record;
        TJobVertexBuffer::SetCapacityLimitForTesting(INT_MAX - TJobVertexBuffer::kGrowth);
        ASSERT_EQ(messages.Shown().size(), 1u) << record;
        EXPECT_EQ(messages.Shown()[0].strText + "|" + std::to_string(messages.Shown()[0].uFlags & 0xF0u),
                  message)
            << record;
        EXPECT_EQ(Describe(layer), expected) << record;
        EXPECT_EQ(static_cast<TFeatureLine*>(layer.m_Elements[0])->m_pPoints[1699].dLat, 45.2699) << record;
    }
}
}  // namespace
