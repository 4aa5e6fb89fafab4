// tlgis with drawings: info on any drawing, convert with the spray options.

#include <gtest/gtest.h>

#include <string>

#include "dxf_test_support.h"

namespace {

std::string Repeat(const std::string& word, int times) {
    std::string out;
    for (int i = 0; i < times; ++i) out += word + " ";
    return out;
}

TEST(DxfTool, InfoAndConvert) {
    TTempDir dir;
    const std::string in = ShellQuote(dir.File("in.dxf")), binary = ShellQuote(dir.File("binary.dxf"));
    const std::string out = ShellQuote(dir.File("out.dxf"));
    std::string bytes;
    for (int i = 0; i < 70000; ++i) bytes += static_cast<char>((i * 7919) % 251);
    WriteFileBytes(dir.File("binary.dxf"), bytes);
    WriteFileBytes(dir.File("in.dxf"),
                   DxfWithEntities(Poly("F30", {{10.5, 45.2}, {10.6, 45.2}, {10.6, 45.3}}) + "|" +
                                   Line("A41", {10.5, 45.2}, {10.6, 45.3})));
    // Flight spray: runs of 8 samples (not spraying), six of 14 (spraying) and 6 (not spraying).
    const std::string flight =
        " --spray " + ShellQuote(std::string(TL_GIS_SOURCE_DIR) + "/examples/flight.csv");
    const struct {
        const char* name;
        std::string args;
        int exit;
        std::string output;  // expected in stdout or stderr, or the polylines of the drawing written
    } cases[] = {
        {"info", "info " + in, 0, "boundary 1, generic 1"},
        {"info of a binary file named .dxf", "info " + binary, 0, "Elements: 0"},
        {"a bad spray-only value", "convert " + in + " " + out + " --spray-only 2", 2,
         "--spray-only takes 0 or 1"},
        {"flight spray in one block per run", "convert --quiet - " + out + flight, 0,
         Repeat("1:28", 6) + "6:98"},
        {"flight spray in pairs with the track",
         "convert --quiet - " + out + flight + " --single-block --spray-only 0", 0,
         Repeat("2:2", 7) + Repeat("1:4", 78) + Repeat("2:2", 5) + "6:98"},
    };
    for (const auto& c : cases) {
        const TCommandResult r = RunCommand(std::string(TLGIS_EXE) + " " + c.args);
        EXPECT_EQ(r.iExit, c.exit) << c.name << ": " << r.strErr;
        if (c.args.find("--spray ") != std::string::npos)
            EXPECT_EQ(DescribePolylines(ReadFileBytes(dir.File("out.dxf"))), c.output) << c.name;
        else
            EXPECT_NE((r.strOut + r.strErr).find(c.output), std::string::npos)
                << c.name << ": " << r.strOut << r.strErr;
    }
}

}  // namespace
