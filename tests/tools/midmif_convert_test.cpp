// `tlgis convert` to MID/MIF pairs: the MID/MIF options, and flight spray as swaths and rows.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "test_support.h"

namespace {
const char* const kInput = "Version 300\nData\nPLINE 3\n-93 45\n-92.9 45\n-92.9 45.1\n";

TEST(MidMifConvert, OptionsReachTheWriter) {
    const struct {
        const char* pszName;
        std::string strOptions;
        int iExit;
        const char* pszDelimiterLine;  // expected in the .mif when the write succeeds
        const char* pszMid;
    } cases[] = {
        {"defaults", "", 0, "DELIMITER \",\"", "1\r\n"},
        {"tab", "--mid-delimiter tab", 0, "DELIMITER \"\t\"", "1\r\n"},
        {"space_any_case", "--mid-delimiter=SPACE", 0, "DELIMITER \" \"", "1\r\n"},
        {"complete_rows", "--mid-complete-rows --mid-delimiter comma", 0, "DELIMITER \",\"", "1,,,,,,,\r\n"},
        {"channels_in_range", "--mid-spray-channels 10 --single-block --metric", 0, "DELIMITER \",\"",
         "1\r\n"},
        {"unknown_delimiter", "--mid-delimiter semicolon", 2, nullptr, nullptr},
        {"channels_above_ten", "--mid-spray-channels 11", 2, nullptr, nullptr},
        {"channels_not_a_number", "--mid-spray-channels 2x", 2, nullptr, nullptr},
        {"channels_negative", "--mid-spray-channels -1", 2, nullptr, nullptr},
    };
    for (const auto& c : cases) {
        TTempDir dir;
        WriteFileBytes(dir.File("in.mif"), kInput);
        const std::string out = dir.File("out.mif");
        const TCommandResult r =
            RunCommand(ShellQuote(TLGIS_EXE) + " convert " + ShellQuote(dir.File("in.mif")) + " " +
                       ShellQuote(out) + " --quiet " + c.strOptions);
        EXPECT_EQ(r.iExit, c.iExit) << c.pszName << ": " << r.strErr;
        if (c.iExit != 0) continue;
        EXPECT_NE(ReadFileBytes(out).find(c.pszDelimiterLine), std::string::npos) << c.pszName;
        EXPECT_EQ(ReadFileBytes(dir.File("out.mid")), c.pszMid) << c.pszName;
    }
}

// Run A sprays three samples 100 m apart with channel-2 rates 10, 30 and 20 L/ha; run B is not
// spraying at its first sample and writes nothing.
const char* const kFlight =
    "run,time,lat,lon,heading,speed,spray,swath,height,rate,rate2\n"
    "A,2024-06-01T14:03:10.00,45.5,-93.25,0,50,1,20,100,5,10\n"
    "A,2024-06-01T14:03:11.00,45.500899753,-93.25,0,40,1,20,50,6,30\n"
    "A,2024-06-01T14:03:12.50,45.501799507,-93.25,0,60,1,20,0,7,20\n"
    "B,2024-06-01T14:04:00.00,45.6,-93.2,90,50,0,20,0,9,9\n"
    "B,2024-06-01T14:04:01.00,45.6,-93.199,90,50,1,20,0,9,9\n";

TEST(MidMifConvert, FlightSprayBecomesSwathsAndRows) {
    const struct {
        const char* pszName;
        const char* pszOptions;
        int iRegions;
        std::vector<std::string> rows;
    } cases[] = {
        {"defaults",
         "",
         1,
         {"06:01:2024,14:03:10.00,111.8,000,00328, ON,    0.0000, ",
          "06:01:2024,14:03:11.00, 89.5,000,00164, ON,    0.6414, ",
          "06:01:2024,14:03:12.50,134.2,000,00000, ON,    0.7483, "}},
        {"two_channels_pair_blocks",
         "--mid-spray-channels 2 --single-block",
         2,
         {"06:01:2024,14:03:10.00,111.8,000,00328, ON,    3.2072, ",
          "06:01:2024,14:03:11.00, 89.5,000,00164, ON,    3.2072, ",
          "06:01:2024,14:03:11.00, 89.5,000,00164, ON,    0.6414, ",
          "06:01:2024,14:03:12.50,134.2,000,00000, ON,    0.7483, "}},
        {"metric_tab",
         "--mid-spray-channels 2 --metric --mid-delimiter tab",
         1,
         {"06:01:2024\t14:03:10.00\t111.8\t000\t00328\t ON\t   30.0000\t ",
          "06:01:2024\t14:03:11.00\t 89.5\t000\t00164\t ON\t    6.0000\t ",
          "06:01:2024\t14:03:12.50\t134.2\t000\t00000\t ON\t    7.0000\t "}},
    };
    TTempDir dir;
    const std::string csv = dir.File("flight.csv");
    WriteFileBytes(csv, kFlight);
    for (const auto& c : cases) {
        const std::string out = dir.File(std::string(c.pszName) + ".mif");
        const TCommandResult r = RunCommand(ShellQuote(TLGIS_EXE) + " convert - " + ShellQuote(out) +
                                            " --spray " + ShellQuote(csv) + " --quiet " + c.pszOptions);
        ASSERT_EQ(r.iExit, 0) << c.pszName << ": " << r.strErr;
        const std::string mif = ReadFileBytes(out);
        int regions = 0;
        for (std::size_t at = mif.find("REGION"); at != std::string::npos; at = mif.find("REGION", at + 1))
            ++regions;
        EXPECT_EQ(regions, c.iRegions) << c.pszName << "\n" << mif;
        std::string rows;
        for (const std::string& row : c.rows) rows += row + "\r\n";
        EXPECT_EQ(ReadFileBytes(dir.File(std::string(c.pszName) + ".mid")), rows) << c.pszName;
    }
}
}  // namespace
