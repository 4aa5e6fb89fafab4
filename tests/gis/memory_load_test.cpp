// Every file loads from a memory folder as from disk and writes back the same bytes: the fuzz
// targets run on a memory folder, so a difference would have them test something else.

#include <gtest/gtest.h>

#include <cstdio>
#include <ctime>
#include <filesystem>
#include <string>
#include <vector>

#include <tl_gis/gis/gis_map.h>
#include <tl_gis/hostmap/map_layer.h>
#include "config_folder_guard.h"
#include "platform/memory_files.h"
#include "platform/system_services.h"
#include "shp/shp_test_files.h"
#include "test_support.h"

namespace fs = std::filesystem;
using namespace shp_test;

namespace {

struct TCase {
    std::string strName;   // where the bytes came from
    std::string strExt;    // the format's extension
    std::string strBytes;  // the file
    std::string strMid;    // the .mid beside a .mif, when there is one
};

// The files a load writes back, as a same-format conversion would; JOB output takes its job
// number from the name.
std::vector<std::string> CopyNames(const std::string& ext) {
    if (ext == "job") return {"12.job"};
    if (ext == "mif") return {"copy.mif", "copy.mid"};
    if (ext == "shp") return {};  // the shapefile writer exports spray, not what it reads
    return {"copy." + ext};
}

std::string ReplaceAll(std::string text, const std::string& from, const std::string& to) {
    for (auto at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
    return text;
}

// What one load and write back gave, with the folder's name taken out of the messages.
std::string Outcome(const TCase& c, const std::string& folder, bool answerYes) {
    TScriptedMessages messages(std::vector<int>(answerYes ? 0 : 100000, ANSWER_NO));
    TMapLayer layer;
    const std::string input = folder + "/input." + c.strExt;
    std::string out = "load " + std::to_string(TGisMap().LoadFile(input.c_str(), &layer, nullptr)) + "\n";
    for (const TMapElement* e : layer.m_Elements) {
        char line[200];
        std::snprintf(line, sizeof line, "%08x %.17g [%.17g %.17g %.17g %.17g] ", e->m_dwType, e->m_dValue,
                      e->m_rcExtents.dWest, e->m_rcExtents.dNorth, e->m_rcExtents.dEast,
                      e->m_rcExtents.dSouth);
        out += line + e->m_strId + "\n";
    }
    const std::vector<std::string> copies = CopyNames(c.strExt);
    if (!copies.empty() && layer.GetElementCount() > 0)
        out +=
            "write " + std::to_string(TGisMap().WriteFile((folder + "/" + copies[0]).c_str(), &layer)) + "\n";
    for (const TMessageBoxRequest& m : messages.Shown())
        out += "message " + m.strCaption + ": " + m.strText + "\n";
    return ReplaceAll(out, folder, "FOLDER");
}

std::vector<TCase> Cases() {
    std::vector<TCase> cases;
    const std::string source = TL_GIS_SOURCE_DIR;
    const auto addFolder = [&](const std::string& folder, const std::string& ext) {
        for (const auto& entry : fs::directory_iterator(source + "/" + folder)) {
            const fs::path path = entry.path();
            if (path.extension() == ".mid") continue;
            fs::path mid = path;
            mid.replace_extension(".mid");
            cases.push_back({folder + "/" + path.filename().string(), ext, ReadFileBytes(path.string()),
                             ext == "mif" && fs::exists(mid) ? ReadFileBytes(mid.string()) : ""});
        }
    };
    for (const char* ext : {"job", "dxf", "pmh"}) {
        addFolder(std::string("tests/data/") + ext, ext);
        addFolder(std::string("fuzz/corpus/") + ext, ext);
    }
    addFolder("tests/data/midmif", "mif");
    addFolder("fuzz/corpus/mif", "mif");

    // Shapefiles whose records the reader checks against the size of the file.
    const std::vector<TXY> four = {{-93.25, 45.5}, {-93.24, 45.5}, {-93.23, 45.5}, {-93.22, 45.5}};
    const std::string point = PointContent(-93.25, 45.5), line = PolyContent(3, {0}, four),
                      square = PolyContent(5, {0}, SquareRing(.01, 1));
    // clang-format off
    const std::pair<const char*, std::string> shapefiles[] = {
        {"points, lines, a polygon", TShpBytes().Record(1, point).Record(2, line).Record(3, square).Bytes()},
        {"record length past the end", TShpBytes().Record(1, point).Record(2, line, 1000).Bytes()},
        {"last record cut short", TShpBytes().Record(1, point).Record(2, line).Bytes().substr(0, 200)},
        {"junk after the last record", TShpBytes().Record(1, point).Raw("\x01junk").Bytes()},
        {"projected", TShpBytes().Record(1, PolyContent(3, {0}, {{500000, 5000000}, {500100, 5000100}})).Bytes()},
        {"file cut inside the header", TShpBytes().Bytes().substr(0, 60)},
    };
    // clang-format on
    for (const auto& [name, bytes] : shapefiles) cases.push_back({name, "shp", bytes, ""});
    return cases;
}

TEST(MemoryFolder, FilesLoadAndWriteAsOnDisk) {
    TConfigFolderGuard config(std::string(TL_GIS_SOURCE_DIR) + "/Config");  // messages in words
    {
        TScriptedMessages quiet;
        GetTlGisApp().InitInstance();
    }
    SetClockForTesting([] { return std::time_t{1741183629}; });  // the DXF writer stamps the time
    const std::vector<TCase> cases = Cases();
    ASSERT_GT(cases.size(), 40u);
    for (const TCase& c : cases)
        for (const bool answerYes : {false, true}) {
            SCOPED_TRACE(c.strName + (answerYes ? ", questions answered Yes" : ", questions answered No"));
            TTempDir disk;
            const TMemoryFolder memory("/tl_gis-test-memory");
            WriteFileBytes(disk.File("input." + c.strExt), c.strBytes);
            memory.Put("input." + c.strExt, c.strBytes);
            if (!c.strMid.empty()) {
                WriteFileBytes(disk.File("input.mid"), c.strMid);
                memory.Put("input.mid", c.strMid);
            }
            EXPECT_EQ(Outcome(c, memory.Path(), answerYes), Outcome(c, disk.Path(), answerYes));
            for (const std::string& copy : CopyNames(c.strExt)) {
                std::string written;
                const bool inMemory = memory.Get(copy, written);
                EXPECT_EQ(inMemory, fs::exists(disk.File(copy))) << copy;
                EXPECT_TRUE(!inMemory || written == ReadFileBytes(disk.File(copy))) << copy;
            }
        }
    SetClockForTesting({});
}

}  // namespace
