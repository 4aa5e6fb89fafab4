// tlgis render: the picture of a job with a pattern and an exclusion, with and without the
// flight's spray, is well-formed SVG holding what a pilot expects to see.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "test_support.h"

namespace {

// Counts of the SVG elements and texts, printed by Python's XML parser (which fails on
// anything that is not well-formed).
const char* const kCountScript =
    "import sys, xml.etree.ElementTree as ET\n"
    "root = ET.parse(sys.argv[1]).getroot()\n"
    "ns = '{http://www.w3.org/2000/svg}'\n"
    "fills = [e.get('fill') for e in root.iter(ns + 'polygon')]\n"
    "texts = [e.text for e in root.iter(ns + 'text')]\n"
    "print('hatched', sum(1 for f in fills if f == 'url(#hatch)'))\n"
    "print('sprayed', sum(1 for f in fills if f == '#60d060'))\n"
    "print('texts', '|'.join(texts))\n";

TEST(TlgisRender, FieldPictureHoldsItsElements) {
    const std::string python = TL_GIS_PYTHON;
    if (!HaveProgram(python))
        GTEST_SKIP() << python << " is not installed; run scripts/install-test-tools.sh";
    const std::string examples = std::string(TL_GIS_SOURCE_DIR) + "/examples/";
    TTempDir dir;
    WriteFileBytes(dir.File("count.py"), kCountScript);
    const struct {
        const char* name;
        std::string extra;
        std::vector<std::string> expected;
    } cases[] = {
        {"job alone", "", {"hatched 1", "sprayed 0", "Gate", "Pump", "FARM-1A", "|N\n"}},
        {"job and flight", " --spray " + ShellQuote(examples + "flight.csv"), {"hatched 1", "Gate", "|N\n"}},
    };
    for (const auto& c : cases) {
        const std::string svg = dir.File("field.svg");
        const TCommandResult r =
            RunCommand(ShellQuote(TLGIS_EXE) + " render " + ShellQuote(examples + "field.job") + " " +
                       ShellQuote(svg) + c.extra + " --width 800");
        ASSERT_EQ(r.iExit, 0) << c.name << "\n" << r.strErr;
        const TCommandResult parsed =
            RunCommand(python + " " + ShellQuote(dir.File("count.py")) + " " + ShellQuote(svg));
        ASSERT_EQ(parsed.iExit, 0) << c.name << ": not well-formed SVG\n" << parsed.strErr;
        for (const std::string& text : c.expected)
            EXPECT_NE(parsed.strOut.find(text), std::string::npos) << c.name << ": lacks '" << text << "'\n"
                                                                   << parsed.strOut;
        // A scale bar label in metres or kilometres.
        EXPECT_TRUE(parsed.strOut.find(" m|") != std::string::npos ||
                    parsed.strOut.find(" km|") != std::string::npos)
            << c.name << "\n"
            << parsed.strOut;
    }
    // With the flight, its spraying strips are drawn.
    const TCommandResult r =
        RunCommand(python + " " + ShellQuote(dir.File("count.py")) + " " + ShellQuote(dir.File("field.svg")));
    EXPECT_EQ(r.strOut.find("sprayed 0"), std::string::npos) << r.strOut;
}
}  // namespace
