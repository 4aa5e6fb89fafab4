// tlgis with --spray: flight data joins the layer and is described.

#include <gtest/gtest.h>

#include <string>

#include "test_support.h"

namespace {
const char* const kFlight =
    "run,time,lat,lon,heading,speed,spray,swath,aircraft\n"
    "A,2024-06-01T14:03:10.00,45.5,-93.25,0,50,1,20,N512AG\n"
    "A,2024-06-01T14:03:11.00,45.500899753,-93.25,0,50,1,20,N512AG\n"  // 100 m north (geod)
    "A,2024-06-01T14:03:12.50,45.501799507,-93.25,0,50,0,20,N512AG\n"
    "B,2024-06-01T14:04:00.00,45.6,-93.2,90,50,0,0,N512AG\n";

std::string Tool(const std::string& args) {
    return std::string(TLGIS_EXE) + " " + args + " --quiet";
}

TEST(SprayTool, InfoDescribesEachRun) {
    TTempDir dir;
    const std::string csv = dir.File("flight.csv");
    WriteFileBytes(csv, kFlight);
    const TCommandResult text = RunCommand(Tool("info --spray " + ShellQuote(csv)));
    ASSERT_EQ(text.iExit, 0) << text.strErr;
    // Two steps of 100 m under a 20 m swath: 0.4 ha.
    EXPECT_NE(text.strOut.find(
                  "Spray run A: 3 samples, 2 spraying, 2024-06-01T14:03:10.00 to 2024-06-01T14:03:12.50, "
                  "0.4000 ha"),
              std::string::npos)
        << text.strOut;
    EXPECT_NE(text.strOut.find("Spray run B: 1 samples, 0 spraying"), std::string::npos) << text.strOut;
    EXPECT_NE(text.strOut.find("Elements: 2 (spray 2)"), std::string::npos) << text.strOut;

    const TCommandResult json = RunCommand(Tool("info - --json --spray " + ShellQuote(csv)));
    ASSERT_EQ(json.iExit, 0) << json.strErr;
    EXPECT_NE(json.strOut.find(
                  "\"kind\":\"spray\",\"type\":\"0x0C000000\",\"id\":\"A\",\"samples\":3,\"spraying\":2,"
                  "\"start\":\"2024-06-01T14:03:10.00\",\"end\":\"2024-06-01T14:03:12.50\",\"area_ha\":0.4"),
              std::string::npos)
        << json.strOut;
    EXPECT_NE(json.strOut.find("\"extents\":{\"west\":-93.25012"), std::string::npos) << json.strOut;
}

TEST(SprayTool, BadFlightFilesFailWithTheirReason) {
    TTempDir dir;
    const std::string csv = dir.File("bad.csv");
    WriteFileBytes(csv,
                   "run,time,lat,lon,heading,speed,spray,swath\n1,2024-06-01T14:03:10,45.5,x,0,50,1,20\n");
    const struct {
        std::string strArgs;
        const char* pszError;
    } cases[] = {
        {"info --spray " + ShellQuote(csv), "bad.csv: line 2, column lon: \"x\" is not a number"},
        {"info --spray " + ShellQuote(dir.File("none.csv")), "cannot open"},
        {"convert - " + ShellQuote(dir.File("out.shp")) + " --spray " + ShellQuote(csv), "tlgis:"},
    };
    for (const auto& c : cases) {
        const TCommandResult r = RunCommand(Tool(c.strArgs));
        EXPECT_NE(r.iExit, 0) << c.strArgs;
        EXPECT_NE(r.strErr.find(c.pszError), std::string::npos) << c.strArgs << ": " << r.strErr;
    }
}
}  // namespace
