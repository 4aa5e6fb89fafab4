// tlgis demo and batch conversion, run as a user runs them: from a folder that is not the
// source tree, into fresh folders.

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "test_support.h"
#include "tool_run.h"

namespace {
namespace fs = std::filesystem;

TEST(TlgisDemo, WritesAndReadsBackEveryFileFromAnyFolder) {
    TTempDir dir;
    const TCommandResult r = RunCommand(InFolder(dir.Path(), "demo"));
    ASSERT_EQ(r.iExit, 0) << r.strOut << r.strErr;
    const fs::path out = fs::path(dir.Path()) / "tlgis-demo";
    for (const char* name : {"field.mid", "field_Spray_Polys.dbf", "flight_NonSpray_PL.shx", "field.svg"})
        EXPECT_TRUE(fs::is_regular_file(out / name)) << name;
    int read = 0;
    for (const fs::directory_entry& e : fs::directory_iterator(out)) {
        const std::string ext = e.path().extension().string();
        if (ext != ".job" && ext != ".pmh" && ext != ".dxf" && ext != ".mif" && ext != ".shp") continue;
        ++read;
        EXPECT_NE(r.strOut.find(e.path().filename().string() + " "), std::string::npos)
            << e.path() << " was not read back:\n"
            << r.strOut;
    }
    EXPECT_EQ(read, 6) << "JOB, PMH, DXF, MIF and two shapefiles:\n" << r.strOut;
    EXPECT_EQ(r.strOut.find("FAILED"), std::string::npos) << r.strOut;
    EXPECT_NE(r.strOut.find("12.job                       JOB     ok: boundary 3, marker 2, pattern 1"),
              std::string::npos)
        << r.strOut;
}

TEST(TlgisBatch, OneBadFileAmongGoodOnesFailsAloneAndInOrder) {
    TTempDir dir;
    const std::string job = ReadFileBytes(TL_GIS_SOURCE_DIR "/examples/field.job");
    WriteFileBytes(dir.File("7.job"), job);
    WriteFileBytes(dir.File("8.job"), job);
    const TCommandResult r =
        RunCommand(InFolder(dir.Path(), "convert 7.job missing.job 8.job -o out -f job --quiet"));
    EXPECT_EQ(r.iExit, 1) << r.strOut << r.strErr;
    const std::size_t seven = r.strOut.find("7.job -> out/7.job: ok");
    const std::size_t missing = r.strOut.find("missing.job -> out/missing.job: failed");
    const std::size_t eight = r.strOut.find("8.job -> out/8.job: ok");
    EXPECT_TRUE(seven < missing && missing < eight && eight != std::string::npos) << r.strOut;
    EXPECT_TRUE(fs::is_regular_file(fs::path(dir.Path()) / "out" / "8.job"));
    EXPECT_NE(r.strErr.find("(6002)"), std::string::npos) << r.strErr;
    EXPECT_NE(r.strErr.find("1 of 3 files failed"), std::string::npos) << r.strErr;
}

}  // namespace
