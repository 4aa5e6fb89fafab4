#include <gtest/gtest.h>

#include "test_support.h"

namespace {
std::string Tool(const std::string& args) {
    return ShellQuote(TLGIS_EXE) + " " + args;
}

const char* const kRates =
    "FIELD 12.5 HA 3.25 L\r\n45.5\r\n-93.25\r\n0.0625\r\n0.000125\r\n120\r\n80\r\n2\r\n10\r\nGLYPHOSATE\r\n"
    "\r\n\r\n\r\n\r\n\r\n\r\n\r\n\r\n\r\n17.5 5 30\r\n\r\n\r\n\r\n\r\n\r\n\r\n\r\n\r\n\r\nNORTH\r\n8 "
    "LITRES\r\n"
    ".POL\r\nINC 5\r\n45.5 -93.3\r\n45.6 -93.3\r\n45.6 -93.2\r\n.POL\r\nEXC 30\r\n45.52 -93.28\r\n45.58 "
    "-93.2\r\n";

TEST(PmhTool, InfoShowsHeaderAndRates) {
    TTempDir dir;
    WriteFileBytes(dir.File("rates.pmh"), kRates);
    const TCommandResult r = RunCommand(Tool("info --json --quiet " + ShellQuote(dir.File("rates.pmh"))));
    ASSERT_EQ(r.iExit, 0) << r.strErr;
    std::string json;
    for (char c : r.strOut)
        if (c != ' ' && c != '\n') json += c;
    for (const char* expected :
         {"\"pmh\":{\"field1\":\"FIELD\",\"field2\":12.5,\"field3\":\"HA\",\"field4\":3.25,\"field5\":\"L\","
          "\"line2\":45.5,\"line3\":-93.25,\"line4\":0.0625,\"line5\":0.000125,\"line6\":120,\"line7\":80,"
          "\"line10\":\"GLYPHOSATE\",\"rate_mid\":17.5,\"rate_min\":5,\"rate_max\":30,\"line30\":\"NORTH\","
          "\"rate_units\":8}",
          "\"id\":\"1\",\"bound\":16,", "\"value\":5}", "\"id\":\"2\",\"bound\":17,", "\"value\":30}"})
        EXPECT_NE(json.find(expected), std::string::npos) << expected << "\n" << r.strOut;
}

TEST(PmhTool, Convert) {
    const char* const kJob =
        ".JOB 12 FARM\r\n.MAR 3 Gate\r\n\t45.5 -93.25\r\n.MAR 4 Silo\r\n\t45.51 -93.25\r\n.PAT 7 P\r\n\tA "
        "45.5 -93.2\r\n"
        ".POL 1 x\r\n\tINC 12.5\r\n\t45.5 -93.3\r\n\t45.6 -93.3\r\n.POL 2 y\r\n\tEXC 4\r\n\t45.52 -93.28\r\n";
    const struct {
        const char* name;
        const char* input;
        const char* options;
        int exit;
        const char* written;  // expected in the file
        const char* note;     // expected on stderr; '!' first: not expected
    } cases[] = {
        {"JOB rates, EXC written as INC", "12.job", "--pmh-units 10", 0,
         "10 KG / HECTARE\r\n.POL\r\nINC 12.50000000\r\n45.50000000 -93.30000000\r\n"
         "45.60000000 -93.30000000\r\n45.50000000 -93.30000000\r\n"
         ".POL\r\nINC 4.00000000\r\n45.52000000 -93.28000000\r\n.END\r\n",
         "3 elements left out of the PMH file, which holds polygons only (marker 2, pattern 1)"},
        {"no units line", "12.job", "", 0, "0.0000 0.0000 0.0000\r\n\r\n.POL\r\n",
         "units code 0 has no units line"},
        {"PMH header carried over", "rates.pmh", "", 0, "\r\nGLYPHOSATE\r\n", "!left out"},
        {"bad units", "12.job", "--pmh-units 3", 2, "", "--pmh-units takes 1, 2, 8 or 10, not '3'"},
    };
    for (const auto& c : cases) {
        TTempDir dir;
        WriteFileBytes(dir.File("12.job"), kJob);
        WriteFileBytes(dir.File("rates.pmh"), kRates);
        const TCommandResult r = RunCommand(Tool("convert " + ShellQuote(dir.File(c.input)) + " " +
                                                 ShellQuote(dir.File("out.pmh")) + " " + c.options));
        EXPECT_EQ(r.iExit, c.exit) << c.name << "\n" << r.strErr;
        EXPECT_NE(ReadFileBytes(dir.File("out.pmh")).find(c.written), std::string::npos) << c.name;
        EXPECT_EQ(r.strErr.find(c.note + (c.note[0] == '!')) == std::string::npos, c.note[0] == '!')
            << c.name << "\n"
            << r.strErr;
    }
}
}  // namespace
