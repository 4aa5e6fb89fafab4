// `tlgis convert` to MID/MIF pairs with the MID/MIF options.

#include <gtest/gtest.h>

#include <string>

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
}  // namespace
