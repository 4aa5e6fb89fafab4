#include <gtest/gtest.h>

#include "test_support.h"

namespace {
std::string Tool(const std::string& args) {
    return ShellQuote(TLGIS_EXE) + " " + args;
}

std::string Compact(const std::string& json) {
    std::string out;
    for (char c : json)
        if (c != ' ' && c != '\n') out += c;
    return out;
}

std::string RateFile() {
    std::string text =
        "FIELD 12.5 HA 3.25 L\r\n45.5\r\n-93.25\r\n0.0625000000\r\n0.0001250000\r\n120\r\n80\r\n2\r\n10\r\n"
        "GLYPHOSATE\r\n";
    for (int i = 11; i <= 19; ++i) text += "\r\n";
    text += "17.5000 5.0000 30.0000\r\n";
    for (int i = 21; i <= 29; ++i) text += "0.0000 0.0000 0.0000\r\n";
    text += "NORTH\r\n8 LITRES / HECTARE\r\n";
    text += ".POL\r\nINC 5\r\n45.5 -93.3\r\n45.6 -93.3\r\n45.6 -93.2\r\n";
    text += ".POL\r\nEXC 30\r\n45.52 -93.28\r\n45.58 -93.28\r\n45.58 -93.22\r\n.END\r\n";
    return text;
}

TEST(PmhTool, InfoShowsHeaderAndRates) {
    TTempDir dir;
    WriteFileBytes(dir.File("rates.pmh"), RateFile());
    const TCommandResult json = RunCommand(Tool("info --json --quiet " + ShellQuote(dir.File("rates.pmh"))));
    ASSERT_EQ(json.iExit, 0) << json.strErr;
    const std::string compact = Compact(json.strOut);
    const char* expected[] = {
        "\"pmh\":{\"field1\":\"FIELD\",\"field2\":12.5,\"field3\":\"HA\",\"field4\":3.25,\"field5\":\"L\","
        "\"line2\":45.5,\"line3\":-93.25,\"line4\":0.0625,\"line5\":0.000125,\"line6\":120,\"line7\":80,"
        "\"line10\":\"GLYPHOSATE\",\"rate_mid\":17.5,\"rate_min\":5,\"rate_max\":30,\"line30\":\"NORTH\","
        "\"rate_units\":8}",
        "\"id\":\"1\",\"bound\":16,",
        "\"value\":5",
        "\"id\":\"2\",\"bound\":17,",
        "\"value\":30",
    };
    for (const char* e : expected) EXPECT_NE(compact.find(e), std::string::npos) << e << "\n" << json.strOut;

    const TCommandResult text = RunCommand(Tool("info --quiet " + ShellQuote(dir.File("rates.pmh"))));
    ASSERT_EQ(text.iExit, 0) << text.strErr;
    EXPECT_NE(text.strOut.find("Rates:    mid 17.5000, min 5.0000, max 30.0000, units 8"), std::string::npos)
        << text.strOut;
}

TEST(PmhTool, Convert) {
    const char* const kJob =
        ".JOB 12 FARM\r\n.VERSION 1\r\n"
        ".MAR 3 Gate\r\n\t45.5 -93.25\r\n.MAR 4 Silo\r\n\t45.51 -93.25\r\n"
        ".PAT 7 P\r\n\tEXPAND\r\n\tA 45.5 -93.2\r\n\tB 45.51 -93.2\r\n"
        ".POL 1 x\r\n\tINC 12.5\r\n\t45.5 -93.3\r\n\t45.6 -93.3\r\n\t45.6 -93.2\r\n"
        ".POL 2 y\r\n\tEXC 4\r\n\t45.52 -93.28\r\n\t45.58 -93.28\r\n\t45.58 -93.22\r\n";
    struct TCase {
        const char* name;
        const char* input;
        const char* options;
        int exit;
        const char* inFile;  // expected in the PMH written
        const char* note;    // expected on stderr ("" for none)
    };
    const TCase cases[] = {
        {"JOB boundaries keep their rates", "12.job", "--pmh-units 10", 0,
         "10 KG / HECTARE\r\n.POL\r\nINC 12.50000000\r\n45.50000000 -93.30000000\r\n",
         "3 elements left out of the PMH file, which holds polygons only (marker 2, pattern 1)"},
        {"EXC written as INC", "12.job", "--pmh-units 10", 0,
         ".POL\r\nINC 4.00000000\r\n45.52000000 -93.28000000\r\n", ""},
        {"no units line", "12.job", "", 0, "0.0000 0.0000 0.0000\r\n\r\n.POL\r\nINC 12.50000000\r\n",
         "units code 0 has no units line"},
        {"PMH header carried over", "rates.pmh", "", 0, "\r\nGLYPHOSATE\r\n", ""},
        {"nothing left out of a PMH", "rates.pmh", "", 0, "8 LITRES / HECTARE\r\n.POL\r\n", "!left out"},
        {"bad units", "12.job", "--pmh-units 3", 2, nullptr, "--pmh-units takes 1, 2, 8 or 10, not '3'"},
        {"units not a number", "12.job", "--pmh-units 8x", 2, nullptr, "--pmh-units takes"},
    };
    for (const TCase& c : cases) {
        TTempDir dir;
        WriteFileBytes(dir.File("12.job"), kJob);
        WriteFileBytes(dir.File("rates.pmh"), RateFile());
        const TCommandResult r = RunCommand(Tool("convert " + ShellQuote(dir.File(c.input)) + " " +
                                                 ShellQuote(dir.File("out.pmh")) + " " + c.options));
        EXPECT_EQ(r.iExit, c.exit) << c.name << "\n" << r.strErr;
        if (c.inFile != nullptr) {
            EXPECT_NE(ReadFileBytes(dir.File("out.pmh")).find(c.inFile), std::string::npos) << c.name;
        }
        if (c.note[0] == '!') {
            EXPECT_EQ(r.strErr.find(c.note + 1), std::string::npos) << c.name << "\n" << r.strErr;
        } else {
            EXPECT_NE(r.strErr.find(c.note), std::string::npos) << c.name << "\n" << r.strErr;
        }
    }
}

TEST(PmhTool, SprayIsLeftOutWithANote) {
    TTempDir dir;
    const std::string csv = std::string(TL_GIS_SOURCE_DIR) + "/examples/flight.csv";
    const TCommandResult r = RunCommand(
        Tool("convert - " + ShellQuote(dir.File("out.pmh")) + " --pmh-units 8 --spray " + ShellQuote(csv)));
    ASSERT_EQ(r.iExit, 0) << r.strErr;
    EXPECT_NE(r.strErr.find(" left out of the PMH file, which holds polygons only (spray "),
              std::string::npos)
        << r.strErr;
    const std::string bytes = ReadFileBytes(dir.File("out.pmh"));
    EXPECT_EQ(bytes.substr(bytes.size() - 26), "8 LITRES / HECTARE\r\n.END\r\n");
}
}  // namespace
