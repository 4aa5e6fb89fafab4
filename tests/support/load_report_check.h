#pragma once
// A load report in one line, so that a table of cases can state what each file must leave:
// "2 PointZ records not read (shape type 11); first: record 2 | stopped after record 4: ...".

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include <tl_gis/gis/gis_map.h>
#include <tl_gis/gis/load_report.h>
#include <tl_gis/platform/message_box.h>

struct TSkipWant {
    TLoadCause eCause;
    long long lCount;
    std::string strFirst;
};

inline std::string DescribeSkip(TLoadCause cause, long long count, const std::string& first) {
    return std::to_string(count) + " " + TLoadReport::CauseText(cause, count) + "; first: " + first;
}

// The skipped causes in report order, then the stop ("stopped at line 7: why") when there is one.
inline std::string DescribeReport(const TLoadReport& report) {
    std::string out;
    for (const TLoadReport::TSkipped& s : report.GetSkipped())
        out += (out.empty() ? "" : " | ") + DescribeSkip(s.eCause, s.lCount, s.strFirst);
    if (report.HasStopped()) {
        const TLoadReport::TStopped& stop = report.GetStopped();
        out += (out.empty() ? "" : " | ") + std::string("stopped ") + (stop.bAfter ? "after " : "at ") +
               stop.strAt + ": " + stop.strReason;
    }
    return out;
}

// The same line for what a case expects: the causes (in report order) and the stop, if any.
inline std::string DescribeWanted(const std::vector<TSkipWant>& skips, const std::string& stop = "") {
    std::string out;
    for (const TSkipWant& s : skips)
        out += (out.empty() ? "" : " | ") + DescribeSkip(s.eCause, s.lCount, s.strFirst);
    if (!stop.empty()) out += (out.empty() ? "" : " | ") + std::string("stopped ") + stop;
    return out;
}

// "boundary 2, point 1": what the report says was added.
inline std::string DescribeAdded(const TLoadReport& report) {
    std::string out;
    for (const auto& [kind, count] : report.GetAdded())
        out += (out.empty() ? "" : ", ") + kind + " " + std::to_string(count);
    return out;
}

// One row of a reader's report table: the file, what its report must list (the causes in report
// order, then where reading stopped, "at line 7: why", or nothing), the elements the load adds
// ("boundary 2, point 1"), its result and the answers to its questions ('y' or 'n' each).
struct TReportCase {
    const char* name;
    std::string text;
    std::vector<TSkipWant> skips;
    std::string stop;
    std::string added;
    int result = GISFILE_OK;
    const char* answers = "";
};

inline std::vector<int> ScriptedAnswers(const char* answers) {
    std::vector<int> script;
    for (const char* a = answers; *a != '\0'; ++a) script.push_back(*a == 'y' ? ANSWER_YES : ANSWER_NO);
    return script;
}

// Checks a load's result and report against its row.
inline void ExpectReport(const TReportCase& c, int result, const TLoadReport& report) {
    EXPECT_EQ(result, c.result) << c.name;
    EXPECT_EQ(DescribeReport(report), DescribeWanted(c.skips, c.stop)) << c.name;
    EXPECT_EQ(DescribeAdded(report), c.added) << c.name;
}

// A text file from its lines, and "line N" of the first of them that equals text.
inline std::string JoinLines(const std::vector<std::string>& lines, const char* eol = "\r\n") {
    std::string text;
    for (const std::string& line : lines) text += line + eol;
    return text;
}
inline std::string LineAt(const std::vector<std::string>& lines, const std::string& text) {
    const auto it = std::find(lines.begin(), lines.end(), text);
    EXPECT_NE(it, lines.end()) << text;
    return "line " + std::to_string(it - lines.begin() + 1);
}
