// What differs between the systems the library runs on (separators, drive letters, CR LF, file
// dates, the configuration folder, non-ASCII names, files past 2 GiB), checked on both alike.

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include <tl_gis/gis/gis_map.h>
#include <tl_gis/gis/language.h>
#include <tl_gis/platform/text_file.h>
#include "config_folder_guard.h"
#include "platform/byte_file.h"
#include "platform/system_services.h"
#include "shp/shp_test_support.h"
#include "test_support.h"

namespace fs = std::filesystem;
using namespace shp_test;

namespace {

const std::string kSeparator(1, static_cast<char>(fs::path::preferred_separator));
// "Feld Müller" in UTF-8, as the library takes names.
const std::string kFieldFolder = "Feld M\xC3\xBCller";

bool Exists(const std::string& name) {
    std::error_code ec;
    return fs::exists(Utf8Path(name), ec);
}

TMapLayer& SampleField() {
    static TMapLayer layer;
    static const int loaded = TGisMap().LoadFile(TL_GIS_SOURCE_DIR "/examples/field.job", &layer, nullptr);
    EXPECT_EQ(loaded, 0);
    return layer;
}

TEST(SystemPaths, DriveLettersAndBackslashesNameTheOutputs) {
    const auto changed = [](std::string path, const char* ext) { return ChangeExtension(path, ext); };
    const struct {
        std::string made, expected;
    } cases[] = {
        {changed("C:\\data\\field.job", "pmh"), "C:\\data\\field.pmh"},
        {changed("C:\\data\\field.mif", ".mid"), "C:\\data\\field.mid"},
        {changed("C:\\data\\field", "pmh"), "C:\\data\\field.pmh"},
        // The cut is at the last '.' of the whole path, a folder's included.
        {changed("C:\\data.v2\\field", "pmh"), "C:\\data.pmh"},
        {TGisFileShp::GetSprayOutputFile("C:\\data\\field12.shp", "dbf"),
         "C:\\data\\field12_Spray_Polys.dbf"},
        {TGisFileShp::GetNonSprayOutputFile("C:\\data\\run\\flight.log", "shx"),
         "C:\\data\\run\\flight_NonSpray_PL.shx"},
        {TGisFileShp::GetNonSprayOutputFile("D:flight.csv", "shp"), "D:flight_NonSpray_PL.shp"},
    };
    for (const auto& c : cases) EXPECT_EQ(c.made, c.expected);
}

// Each writer puts its files into a folder named with a non-ASCII letter, reached through the
// system's own separator, and the readers load them back from there. Every line of every text
// file ends in one CR LF: no bare LF, no CR doubled by a text-mode stream.
TEST(SystemPaths, NonAsciiFolderWithTheSystemsSeparatorAndOneCrLf) {
    TTempDir dir;
    const std::string folder = dir.Path() + kSeparator + kFieldFolder;
    ASSERT_TRUE(fs::create_directory(Utf8Path(folder)));
    const std::vector<std::vector<const char*>> cases = {
        // The target first, then the other files that must exist; the first is loaded back.
        {"12.job"},
        {"field.pmh"},
        {"field.dxf"},
        {"field.mif", "field.mid"},
        {"field.shp", "field_Spray_Polys.shp", "field_Spray_Polys.shx", "field_Spray_Polys.dbf"},
    };
    for (const auto& files : cases) {
        SCOPED_TRACE(files[0]);
        TScriptedMessages quiet;
        TGisMap map;
        map.m_bWriteBoundaries = true;
        EXPECT_EQ(map.WriteFile((folder + kSeparator + files[0]).c_str(), &SampleField()), 0);
        const bool shapefile = files.size() > 2;
        for (std::size_t i = shapefile ? 1 : 0; i < files.size(); ++i) {
            const std::string path = folder + kSeparator + files[i];
            ASSERT_TRUE(Exists(path)) << files[i];
            const std::string bytes = ReadFileBytes(path);
            std::size_t feeds = 0, pairs = 0;
            for (std::size_t k = 0; k < bytes.size(); ++k) {
                feeds += bytes[k] == '\n';
                pairs += bytes[k] == '\n' && k > 0 && bytes[k - 1] == '\r';
            }
            EXPECT_TRUE(shapefile || (feeds > 2 && pairs == feeds && bytes.find("\r\r") == std::string::npos))
                << files[i] << ": " << feeds << " LF, " << pairs << " CR LF";
        }
        TMapLayer back;
        EXPECT_EQ(map.LoadFile((folder + kSeparator + files[shapefile ? 1 : 0]).c_str(), &back, nullptr), 0);
        EXPECT_FALSE(back.m_Elements.empty());
    }
}

// Noon UTC on 5 March 2021 is 5 March in every zone within twelve hours of it.
constexpr std::time_t kFifthOfMarch2021Noon = 1614945600;

// FILE_DATE is the recorded data file's last-write date, in local time, "dd/mm/yyyy"; the table
// header's date bytes are the clock's when it is written.
TEST(SystemClock, SourceFileDateAndTableDate) {
    UseUtcAsLocalTime();
    SetClockForTesting([] { return kFifthOfMarch2021Noon; });
    TTempDir dir;
    ASSERT_TRUE(fs::create_directory(Utf8Path(dir.File(kFieldFolder))));
    const std::string source = kFieldFolder + "/flight.csv";
    WriteFileBytes(dir.File(source), "recorded\n");
    const auto noon = std::chrono::system_clock::from_time_t(kFifthOfMarch2021Noon);
    fs::last_write_time(Utf8Path(dir.File(source)), std::chrono::file_clock::from_sys(noon));

    TMapLayer layer;
    AddSpray(layer, Straight(3, 30.0));
    const TExport out = Export(layer, {.iSpray = ESRI_SPRAY_POINTS, .strSource = source}, dir);
    SetClockForTesting({});
    ASSERT_EQ(out.iResult, 0);
    ASSERT_FALSE(out.Spray.Rows.empty());
    std::size_t column = 0;
    while (column < out.Spray.Names.size() && out.Spray.Names[column] != "FILE_DATE") ++column;
    ASSERT_LT(column, out.Spray.Names.size());
    EXPECT_EQ(out.Spray.Rows[0][column], "  05/03/2021");  // a C12 field, right-aligned
    EXPECT_EQ(out.Spray.strDbf.substr(1, 3), std::string("\x79\x03\x05"));
    EXPECT_EQ(out.NonSpray.strDbf.substr(1, 3), std::string("\x79\x03\x05"));
}

// "Config\Orvanta.ini" is found relative to the working folder, however the folder is spelt.
TEST(Configuration, FoundRelativeToTheWorkingFolder) {
    TTempDir dir;
    ASSERT_TRUE(fs::create_directory(dir.File("Config")));
    WriteFileBytes(dir.File("Config/Orvanta.ini"), "[Settings]\r\nLanguage=german\r\n");
    WriteFileBytes(dir.File("Config/lang_german.ini"), "5054\tAchtung\r\n");
    std::vector<std::string> spellings = {"Config", "Config/", "./Config"};
#ifdef _WIN32
    spellings.insert(spellings.end(), {"Config\\", ".\\Config"});
#endif
    const fs::path before = fs::current_path();
    fs::current_path(dir.Path());
    for (const std::string& spelling : spellings) {
        TConfigFolderGuard config(spelling);
        GetTlGisApp().InitInstance();
        EXPECT_STREQ(GetText(5054), "Achtung") << spelling;
    }
    fs::current_path(before);
}

// A byte file and a text file keep 64-bit positions and lengths: a sparse file with one line
// written 3 GiB into it.
TEST(LargeFiles, PositionsAndLengthsPastTwoGibibytes) {
    TTempDir dir;
    constexpr std::int64_t kAt = std::int64_t{3} << 30;
    const fs::space_info space = fs::space(dir.Path());
    if (space.available < static_cast<std::uintmax_t>(kAt) + (std::uintmax_t{1} << 30))
        GTEST_SKIP() << "the temporary folder's file system has no room for a 3 GiB file";
    const std::string path = dir.File("large.bin");
    const std::string line = "past two gibibytes\r\n";
    {
        TByteFile out;
        ASSERT_TRUE(out.Open(path.c_str(), TByteFile::modeCreate));
        ASSERT_TRUE(out.Seek(kAt));
        ASSERT_TRUE(out.Write(line.data(), line.size()));
        EXPECT_EQ(out.GetPosition(), kAt + static_cast<std::int64_t>(line.size()));
        ASSERT_TRUE(out.Close()) << "the file system cannot hold a file this large";
    }
    std::int64_t size = 0;
    ASSERT_TRUE(TByteFile::GetStatus(path.c_str(), size));
    EXPECT_EQ(size, kAt + static_cast<std::int64_t>(line.size()));

    TByteFile in;
    ASSERT_TRUE(in.Open(path.c_str(), TByteFile::modeRead));
    EXPECT_EQ(in.GetLength(), size);
    ASSERT_TRUE(in.Seek(kAt + 5));
    char word[3] = {};
    EXPECT_EQ(in.Read(word, 3), 3u);
    EXPECT_EQ(std::string(word, 3), "two");
    EXPECT_EQ(in.GetPosition(), kAt + 8);

    TTextFile text;
    ASSERT_TRUE(text.Open(path.c_str(), TTextFile::modeRead));
    EXPECT_EQ(text.GetLength(), size);
    ASSERT_TRUE(text.Seek(kAt));
    std::string read;
    ASSERT_TRUE(text.ReadLine(read));
    EXPECT_EQ(read, "past two gibibytes");
    EXPECT_EQ(text.GetPosition(), size);
}

}  // namespace
