// tlgis render: the picture of a job with a pattern and an exclusion, with and without the
// flight's spray, is well-formed SVG holding what a pilot expects to see.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "test_support.h"
#include "tool_run.h"

namespace {

// Python's XML parser fails on anything that is not well-formed; the script prints what it counted.
const char* const kCountScript =
    "import sys, xml.etree.ElementTree as ET\n"
    "root = ET.parse(sys.argv[1]).getroot()\n"
    "ns = '{http://www.w3.org/2000/svg}'\n"
    "fills = [e.get('fill') for e in root.iter(ns + 'polygon')]\n"
    "print('hatched', fills.count('url(#hatch)'), 'sprayed', fills.count('#60d060') > 0)\n"
    "print('texts', '|'.join(e.text for e in root.iter(ns + 'text')))\n";

TEST(TlgisRender, FieldPictureHoldsItsElements) {
    const std::string python = TL_GIS_PYTHON;
    if (!HaveProgram(python))
        GTEST_SKIP() << python << " is not installed; run scripts/install-test-tools.sh";
    const std::string examples = TL_GIS_SOURCE_DIR "/examples/";
    TTempDir dir;
    WriteFileBytes(dir.File("count.py"), kCountScript);
    const struct {
        const char* name;
        std::string extra;
        std::vector<std::string> expected;
    } cases[] = {
        {"job alone", "", {"hatched 1 sprayed False", "Gate", "Pump", "FARM-1A", "|N\n"}},
        {"job and flight",
         " --spray " + ShellQuote(examples + "flight.csv"),
         {"hatched 1 sprayed True", "Gate"}},
    };
    for (const auto& c : cases) {
        const TCommandResult r = RunCommand(InFolder(
            dir.Path(), "render " + ShellQuote(examples + "field.job") + " field.svg --width 800" + c.extra));
        ASSERT_EQ(r.iExit, 0) << c.name << "\n" << r.strErr;
        const TCommandResult parsed =
            RunCommand("cd " + ShellQuote(dir.Path()) + " && " + python + " count.py field.svg");
        ASSERT_EQ(parsed.iExit, 0) << c.name << ": not well-formed SVG\n" << parsed.strErr;
        for (const std::string& text : c.expected)
            EXPECT_NE(parsed.strOut.find(text), std::string::npos) << c.name << ": lacks '" << text << "'\n"
                                                                   << parsed.strOut;
        EXPECT_TRUE(parsed.strOut.find(" m|") != std::string::npos ||
                    parsed.strOut.find(" km|") != std::string::npos)
            << c.name << ": no scale bar\n"
            << parsed.strOut;
    }
}

}  // namespace
