#include <gtest/gtest.h>

#include <cstring>

#include "test_support.h"

namespace {
const char* const kJob =
    ".JOB 12 FARM\r\n.VERSION 1\r\n"
    ".MAR 3 Gate\r\n\tTYPE 5\r\n\t45.5 -93.25\r\n"
    ".PAT 7 P\r\n\tEXPAND\r\n\tRIGHT\r\n\tSWIDTH 60\r\n\tFIELD_WIDTH 600\r\n\tOFFSET 10\r\n\tABLINES  2\r\n"
    "\tA 45.5 -93.2\r\n\tB 45.51 -93.2\r\n\tD 45.51 -93.19\r\n"
    ".POL 1 x\r\n\tINC\r\n\t45.5 -93.3\r\n\t45.6 -93.3\r\n\t45.6 -93.2\r\n";

std::string Tool(const std::string& args) {
    return ShellQuote(TLGIS_EXE) + " " + args + " --quiet";
}

TEST(JobTool, InfoReportsPatterns) {
    TTempDir dir;
    WriteFileBytes(dir.File("12.job"), kJob);
    const TCommandResult json = RunCommand(Tool("info --json " + ShellQuote(dir.File("12.job"))));
    ASSERT_EQ(json.iExit, 0) << json.strErr;
    const char* expected[] = {"\"pattern_kind\":\"EXPAND\"",
                              "\"direction\":\"RIGHT\"",
                              "\"swath_width_m\":18.288",
                              "\"field_width_m\":182.88",
                              "\"ab_lines\":2",
                              "\"A\":[45.5,-93.2]",
                              "\"D\":[45.51,-93.19]",
                              "\"symbol\":5",
                              "\"kind\":\"boundary\""};
    std::string compact;
    for (char c : json.strOut)
        if (c != ' ' && c != '\n') compact += c;
    for (const char* e : expected) EXPECT_NE(compact.find(e), std::string::npos) << e << "\n" << json.strOut;
    EXPECT_EQ(compact.find("\"C\":"), std::string::npos) << "invalid points are not listed";

    const TCommandResult text = RunCommand(Tool("info " + ShellQuote(dir.File("12.job"))));
    ASSERT_EQ(text.iExit, 0) << text.strErr;
    EXPECT_NE(text.strOut.find(
                  "Pattern 7: EXPAND RIGHT, swath 18.2880 m, field 182.8800 m, offset 3.0480 m, AB lines 2"),
              std::string::npos)
        << text.strOut;
}

TEST(JobTool, ConvertOptions) {
    struct TCase {
        const char* name;
        const char* output;
        const char* options;
        int exit;
        const char* firstLines;
    };
    const TCase cases[] = {
        {"default version 1", "34.job", "", 0, ".JOB 34 34\r\n.VERSION 1\r\n"},
        {"version 2", "34.job", "--job-version 2", 0, ".JOB 34 FARM\r\n.VERSION 2\r\n"},
        {"version 3", "North.job", "--job-version 3", 0, ".JOB 9999 9999\r\n.VERSION 3\r\n.JNM North\r\n"},
        {"bad version", "34.job", "--job-version 4", 2, ""},
        {"bad reduction", "34.job", "--reduction 5", 2, ""},
        {"bad tolerance", "34.job", "--decimation-m -1", 2, ""},
        {"reduction and tolerance", "34.job", "--reduction 2 --decimation-m 5000", 0, ".JOB 34 34\r\n"},
        {"name error", "1000.job", "", 1, ""},
    };
    for (const TCase& c : cases) {
        TTempDir dir;
        WriteFileBytes(dir.File("12.job"), kJob);
        const TCommandResult r = RunCommand(Tool("convert " + ShellQuote(dir.File("12.job")) + " " +
                                                 ShellQuote(dir.File(c.output)) + " " + c.options));
        EXPECT_EQ(r.iExit, c.exit) << c.name << "\n" << r.strErr;
        if (c.exit == 0) {
            const std::string bytes = ReadFileBytes(dir.File(c.output));
            EXPECT_EQ(bytes.substr(0, std::strlen(c.firstLines)), c.firstLines) << c.name;
        }
    }
    // A 50 km tolerance leaves the closed ring its two equal ends, written as one vertex.
    TTempDir dir;
    WriteFileBytes(dir.File("12.job"), kJob);
    ASSERT_EQ(RunCommand(Tool("convert " + ShellQuote(dir.File("12.job")) + " " +
                              ShellQuote(dir.File("5.job")) + " --reduction 2 --decimation-m 50000"))
                  .iExit,
              0);
    const std::string bytes = ReadFileBytes(dir.File("5.job"));
    EXPECT_EQ(bytes.substr(bytes.find(".POL")), ".POL 1 1\r\n\tINC\r\n\t45.500000 -93.300000\r\n") << bytes;
}
}  // namespace
