// tlgis render: the picture of a job with a pattern and an exclusion, with and without the
// flight's spray, is well-formed SVG holding what a pilot expects to see.

#include <gtest/gtest.h>

#include <string>

#include "test_support.h"
#include "tool_run.h"

namespace {

// Python's XML parser fails on anything that is not well-formed; the script prints the hatched
// exclusions, whether spray strips are drawn, and the texts (markers, fields, scale bar, north).
const char* const kCountScript =
    "import sys, xml.etree.ElementTree as ET\n"
    "root = ET.parse(sys.argv[1]).getroot()\n"
    "ns = '{http://www.w3.org/2000/svg}'\n"
    "fills = [e.get('fill') for e in root.iter(ns + 'polygon')]\n"
    "print('hatched', fills.count('url(#hatch)'), 'sprayed', fills.count('#60d060') > 0)\n"
    "print('|'.join(e.text for e in root.iter(ns + 'text')))\n";

TEST(TlgisRender, FieldPictureHoldsItsElements) {
    SKIP_WITHOUT_LINUX_PEERS();
    if (!HaveProgram(TL_GIS_PYTHON))
        GTEST_SKIP() << TL_GIS_PYTHON " is missing; run scripts/install-test-tools.sh";
    const std::string examples = TL_GIS_SOURCE_DIR "/examples/";
    TTempDir dir;
    WriteFileBytes(dir.File("count.py"), kCountScript);
    const std::pair<std::string, const char*> cases[] = {
        {"", "hatched 1 sprayed False\nGate|Pump|FARM-1A|FARM-1B|100 m|N\n"},
        {" --spray " + ShellQuote(examples + "flight.csv"), "hatched 1 sprayed True\nGate|Pump|FARM-1A|"}};
    for (const auto& [options, expected] : cases) {
        const TCommandResult r = RunCommand(InFolder(
            dir.Path(), "render " + ShellQuote(examples + "field.job") + " field.svg --width 800" + options));
        ASSERT_EQ(r.iExit, 0) << options << "\n" << r.strErr;
        const TCommandResult parsed =
            RunCommand(InFolderCommand(dir.Path(), TL_GIS_PYTHON " count.py field.svg"));
        EXPECT_EQ(parsed.strOut.substr(0, std::string(expected).size()), expected)
            << "render" << options << "\n"
            << parsed.strErr;
    }
}

}  // namespace
