// tlgis with drawings: info on any drawing, convert with the spray options.

#include <gtest/gtest.h>

#include <cstdlib>
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

// Polylines of the flight in examples/flight.csv: runs of 8 (not spraying), six of 14 (spraying)
// and 6 (not spraying), 98 samples in all.
std::string FlightPolylines(bool singleBlock, bool sprayOnly) {
    std::string out;
    const auto add = [&out](int times, const std::string& polyline) {
        for (int i = 0; i < times; ++i) out += polyline + " ";
    };
    const auto track = [&](int samples) {
        if (sprayOnly) return;
        if (singleBlock)
            add(samples - 1, "2:2");
        else
            add(1, "2:" + std::to_string(samples));
    };
    track(8);
    for (int run = 0; run < 6; ++run) singleBlock ? add(13, "1:4") : add(1, "1:28");
    track(6);
    return out + "6:98";
}

// Spray from flight data becomes swaths and tracks that the peers accept and this reader loads.
TEST(DxfTool, ConvertWritesSprayFromFlightData) {
    const std::string flight = std::string(TL_GIS_SOURCE_DIR) + "/examples/flight.csv";
    const TDxfPeers peers = FindDxfPeers();
    const struct {
        const char* options;
        bool singleBlock;
        bool sprayOnly;
    } cases[] = {
        {"", false, true},
        {"--spray-only 0", false, false},
        {"--single-block", true, true},
        {"--single-block --spray-only 0", true, false},
    };
    for (const auto& c : cases) {
        TTempDir dir;
        const std::string out = dir.File("flight.dxf");
        const TCommandResult r = RunCommand(Tool("convert --quiet - " + ShellQuote(out) + " --spray " +
                                                 ShellQuote(flight) + " " + c.options));
        ASSERT_EQ(r.iExit, 0) << c.options << ": " << r.strErr;
        const std::string expected = FlightPolylines(c.singleBlock, c.sprayOnly);
        EXPECT_EQ(DescribePolylines(ReadFileBytes(out)), expected) << c.options;
        EXPECT_EQ(DxfPeerComplaints(out, peers), "") << c.options;
        // Every polyline comes back as a line with the vertices written: the reader takes
        // closure from vertex flags only, and the writer closes through the polyline's flag.
        TMapLayer layer;
        TGisMap map;
        ASSERT_EQ(map.LoadFile(out.c_str(), &layer, nullptr), 0) << c.options;
        std::string expectedBack, back;
        for (std::size_t colon = expected.find(':'); colon != std::string::npos;
             colon = expected.find(':', colon + 1))
            expectedBack += std::to_string(std::atoi(expected.c_str() + colon + 1)) + " ";
        for (const TMapElement* e : layer.m_Elements)
            back += std::to_string(static_cast<const TFeatureLine*>(e)->m_iNumPoints) + " ";
        EXPECT_EQ(back, expectedBack) << c.options;
    }
    if (!peers.Missing().empty()) GTEST_SKIP() << peers.Missing();
}

}  // namespace
