// tlgis demo and batch conversion, run as a user runs them: from a folder that is not the
// source tree, into fresh folders.

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "test_support.h"
#include "tool_run.h"

namespace {
namespace fs = std::filesystem;

// Every file the demo wrote that a format reads has its own check line, and none failed.
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
        if (ext != ".job" && ext != ".pmh" && ext != ".dxf" && ext != ".mif" && ext != ".shp" &&
            ext != ".geojson" && ext != ".kmz")
            continue;
        ++read;
        EXPECT_NE(r.strOut.find("  " + e.path().filename().string() + " "), std::string::npos) << e.path();
    }
    // GeoJSON and KMZ are written where the exchange module is built, and said to be skipped elsewhere.
    const bool exchange = r.strOut.find("field.geojson skipped") == std::string::npos;
    EXPECT_EQ(read, exchange ? 8 : 6) << "JOB, PMH, DXF, MIF, two shapefiles, GeoJSON and KMZ";
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
    // The tool joins folder and name with the system's own separator.
    const std::string out = "out" + std::string(1, static_cast<char>(fs::path::preferred_separator));
    RunToolCase(dir.Path(), {"batch", "convert 7.job missing.job 8.job -o out -f job --quiet", 1,
                             "7.job -> " + out + "7.job: ok\nmissing.job -> " + out +
                                 "missing.job: failed\n8.job -> " + out + "8.job: ok\n",
                             "cannot open missing.job (no such file) (6002)\ntlgis: 1 of 3 files failed",
                             "out/8.job", ".JOB 8 "});
}

}  // namespace
