// tlgis with drawings: info on any drawing, convert with the spray options.

#include <gtest/gtest.h>

#include <string>

#include "dxf_test_support.h"
#include "gis/gis_map.h"
#include "test_support.h"

namespace {

std::string Tool(const std::string& args) {
    return std::string(TLGIS_EXE) + " " + args;
}

TEST(DxfTool, InfoAndConvert) {
    TTempDir dir;
    const std::string in = dir.File("in.dxf"), out = dir.File("out.dxf"), binary = dir.File("binary.dxf");
    std::string bytes;
    for (int i = 0; i < 70000; ++i) bytes += static_cast<char>((i * 7919) % 251);
    WriteFileBytes(binary, bytes);
    WriteFileBytes(in, DxfWithEntities(PolylineGroups("F30", {{10.5, 45.2}, {10.6, 45.2}, {10.6, 45.3}}, 0) +
                                       "|" + LineGroups("A41", {10.5, 45.2}, {10.6, 45.3})));
    const struct {
        const char* name;
        std::string args;
        int exit;
        const char* output;  // expected in stdout or stderr
    } cases[] = {
        {"info", "info " + ShellQuote(in), 0, "boundary 1, generic 1"},
        {"info of a binary file named .dxf", "info " + ShellQuote(binary), 0, "Elements: 0"},
        {"convert", "convert --quiet " + ShellQuote(in) + " " + ShellQuote(out), 0, ""},
        {"convert with the spray options",
         "convert --quiet --single-block --spray-only 0 " + ShellQuote(in) + " " + ShellQuote(out), 0, ""},
        {"a bad spray-only value", "convert " + ShellQuote(in) + " " + ShellQuote(out) + " --spray-only 2", 2,
         "--spray-only takes 0 or 1"},
    };
    for (const auto& c : cases) {
        const TCommandResult r = RunCommand(Tool(c.args));
        EXPECT_EQ(r.iExit, c.exit) << c.name << ": " << r.strErr;
        EXPECT_NE((r.strOut + r.strErr).find(c.output), std::string::npos)
            << c.name << ": " << r.strOut << r.strErr;
    }
    // The boundary survives the round trip; the generic line is not written.
    TMapLayer layer;
    TGisMap map;
    ASSERT_EQ(map.LoadFile(out.c_str(), &layer, nullptr), 0);
    EXPECT_EQ(DescribeLayer(layer), "boundary/3");
}

}  // namespace
