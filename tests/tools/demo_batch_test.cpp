// tlgis demo and batch conversion, run as a user runs them: from a folder that is not the
// source tree, into fresh folders.

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "test_support.h"

namespace {
namespace fs = std::filesystem;

std::string InFolder(const TTempDir& dir, const std::string& args) {
    return "cd " + ShellQuote(dir.Path()) + " && " + ShellQuote(TLGIS_EXE) + " " + args;
}

TEST(TlgisDemo, WritesAndReadsBackEveryFileFromAnyFolder) {
    TTempDir dir;
    const TCommandResult r = RunCommand(InFolder(dir, "demo"));
    ASSERT_EQ(r.iExit, 0) << r.strOut << r.strErr;
    const fs::path out = fs::path(dir.Path()) / "tlgis-demo";
    for (const char* name :
         {"12.job", "field.pmh", "field.dxf", "field.mif", "field.mid", "field_Spray_Polys.shp",
          "field_Spray_Polys.dbf", "flight_NonSpray_PL.shp", "flight_NonSpray_PL.shx"})
        EXPECT_TRUE(fs::is_regular_file(out / name)) << name;
    EXPECT_TRUE(fs::is_regular_file(out / "field.svg"));
    EXPECT_TRUE(fs::is_regular_file(out / "flight.csv"));
    EXPECT_FALSE(fs::exists(out / "sample-input.job")) << "the sample input is left behind";
    // One check line per file read back, and none failed.
    for (const fs::directory_entry& e : fs::directory_iterator(out)) {
        const std::string ext = e.path().extension().string();
        if (ext == ".job" || ext == ".pmh" || ext == ".dxf" || ext == ".mif" || ext == ".shp") {
            EXPECT_NE(r.strOut.find(e.path().filename().string() + " "), std::string::npos)
                << e.path() << " was not read back:\n"
                << r.strOut;
        }
    }
    EXPECT_EQ(r.strOut.find("FAILED"), std::string::npos) << r.strOut;
    EXPECT_NE(r.strOut.find("12.job                       JOB     ok: boundary 3, marker 2, pattern 1"),
              std::string::npos)
        << r.strOut;

    // A second run into the same named folder overwrites and succeeds again.
    const TCommandResult again = RunCommand(InFolder(dir, "demo tlgis-demo"));
    EXPECT_EQ(again.iExit, 0) << again.strErr;
}

TEST(TlgisBatch, OneBadFileAmongGoodOnesFailsAloneAndInOrder) {
    TTempDir dir;
    const std::string job = ReadFileBytes(std::string(TL_GIS_SOURCE_DIR) + "/examples/field.job");
    WriteFileBytes(dir.Path() + "/7.job", job);
    WriteFileBytes(dir.Path() + "/8.job", job);
    const TCommandResult r =
        RunCommand(InFolder(dir, "convert 7.job missing.job 8.job -o out -f job --quiet"));
    EXPECT_EQ(r.iExit, 1) << r.strOut << r.strErr;
    // Every input gets its line, in the order given, and the good ones are written.
    const size_t seven = r.strOut.find("7.job -> out/7.job: ok");
    const size_t missing = r.strOut.find("missing.job -> out/missing.job: failed");
    const size_t eight = r.strOut.find("8.job -> out/8.job: ok");
    ASSERT_NE(seven, std::string::npos) << r.strOut;
    ASSERT_NE(missing, std::string::npos) << r.strOut;
    ASSERT_NE(eight, std::string::npos) << r.strOut;
    EXPECT_LT(seven, missing);
    EXPECT_LT(missing, eight);
    EXPECT_TRUE(fs::is_regular_file(fs::path(dir.Path()) / "out" / "8.job"));
    EXPECT_NE(r.strErr.find("(6002)"), std::string::npos) << r.strErr;
    EXPECT_NE(r.strErr.find("1 of 3 files failed"), std::string::npos) << r.strErr;
}

TEST(TlgisBatch, UsageErrors) {
    TTempDir dir;
    const struct {
        const char* args;
        const char* err;
    } cases[] = {
        {"convert -o out -f job", "usage: tlgis convert IN... -o DIR"},
        {"convert a.job -o out", "usage: tlgis convert IN... -o DIR"},
    };
    for (const auto& c : cases) {
        const TCommandResult r = RunCommand(InFolder(dir, c.args));
        EXPECT_EQ(r.iExit, 2) << c.args << "\n" << r.strErr;
        EXPECT_NE(r.strErr.find(c.err), std::string::npos) << c.args << "\n" << r.strErr;
    }
}
}  // namespace
