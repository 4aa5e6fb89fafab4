// KMZ archives as other programs make them (the KML under another name, images beside it) load;
// hostile ones (sizes claimed, zip bombs, names leaving the folder) end with a clear error at once.

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <initializer_list>
#include <utility>

#include "exchange_test_support.h"

using namespace exchange_test;

namespace {
std::uint32_t Crc32(const std::string& bytes) {
    std::uint32_t crc = 0xFFFFFFFFu;
    for (unsigned char c : bytes) {
        crc ^= c;
        for (int k = 0; k < 8; ++k) crc = (crc >> 1) ^ (0xEDB88320u & (0u - (crc & 1u)));
    }
    return ~crc;
}

// Little-endian fields: {value, bytes}.
void Put(std::string& out, std::initializer_list<std::pair<std::uint32_t, int>> fields) {
    for (const auto& [value, bytes] : fields)
        for (int i = 0; i < bytes; ++i) out += static_cast<char>((value >> (8 * i)) & 0xFF);
}

struct TZipEntry {
    std::string strName;
    std::string strBytes;
    std::uint32_t uClaimedSize = 0;  // the uncompressed size the directory claims; 0 for the true one
};

// A zip archive of stored (uncompressed) entries: version 2.0, no flags, time 0, date 1980-01-01.
std::string StoredZip(const std::vector<TZipEntry>& entries) {
    std::string out, directory;
    for (const TZipEntry& e : entries) {
        const auto offset = static_cast<std::uint32_t>(out.size()), crc = Crc32(e.strBytes),
                   size = static_cast<std::uint32_t>(e.strBytes.size()),
                   claimed = e.uClaimedSize != 0 ? e.uClaimedSize : size,
                   name = static_cast<std::uint32_t>(e.strName.size());
        Put(out, {{0x04034b50, 4},
                  {20, 2},
                  {0, 2},
                  {0, 2},
                  {0, 2},
                  {0x21, 2},
                  {crc, 4},
                  {size, 4},
                  {claimed, 4},
                  {name, 2},
                  {0, 2}});
        out += e.strName + e.strBytes;
        Put(directory, {{0x02014b50, 4},
                        {20, 2},
                        {20, 2},
                        {0, 2},
                        {0, 2},
                        {0, 2},
                        {0x21, 2},
                        {crc, 4},
                        {size, 4},
                        {claimed, 4},
                        {name, 2},
                        {0, 2},
                        {0, 2},
                        {0, 2},
                        {0, 2},
                        {0, 4},
                        {offset, 4}});
        directory += e.strName;
    }
    const auto count = static_cast<std::uint32_t>(entries.size());
    const auto start = static_cast<std::uint32_t>(out.size()),
               length = static_cast<std::uint32_t>(directory.size());
    out += directory;
    Put(out, {{0x06054b50, 4}, {0, 2}, {0, 2}, {count, 2}, {count, 2}, {length, 4}, {start, 4}, {0, 2}});
    return out;
}

const std::string kField =
    R"(<kml xmlns="http://www.opengis.net/kml/2.2"><Document><name>Field</name><Placemark><name>North</name>)"
    "<Polygon><outerBoundaryIs><LinearRing><coordinates>-93.26,45.49 -93.26,45.51 -93.24,45.51 -93.24,45.49 "
    "-93.26,45.49</coordinates></LinearRing></outerBoundaryIs></Polygon></Placemark></Document></kml>";

struct TKmzCase {
    const char* pszName;
    std::vector<TZipEntry> Entries;
    int iResult;
    std::size_t nElements;
    TLoadCause eCause;
    std::string strStop;
};

TEST(Kmz, ReadsTheKmlOfArchivesAndRefusesHostileOnes) {
    const std::string png = "\x89PNG\r\n\x1a\n0000";
    const TLoadCause none = LOAD_CAUSE_COUNT;
    // clang-format off
    const TKmzCase cases[] = {
        {"doc_kml", {{"doc.kml", kField}}, 0, 1, none, ""},
        {"other_name_and_images",
         {{"files/icon.png", png}, {"fields/north.kml", kField}, {"files/x.jpg", png}}, 0, 1, none, ""},
        {"doc_kml_before_others", {{"a.kml", "<kml/>"}, {"doc.kml", kField}}, 0, 1, LOAD_KMZ_OTHER_KML, ""},
        {"name_leaving_the_folder", {{"../../evil.kml", kField}, {"sub/../../x.kml", kField}, {"ok/./y.kml", kField}},
         0, 1, LOAD_KMZ_UNSAFE_NAME, ""},
        {"only_unsafe_names", {{"/etc/field.kml", kField}, {"C:\\field.kml", kField}},
         GISFILE_ERR_DATA, 0, LOAD_KMZ_UNSAFE_NAME, "holds no KML file"},
        {"entry_claiming_gigabytes", {{"doc.kml", kField, 0xF0000000u}},
         GISFILE_ERR_DATA, 0, none, "at most 256 MiB of a KMZ is read"},
        {"images_only", {{"icon.png", png}}, GISFILE_ERR_DATA, 0, none, "holds no KML file"},
        {"no_zip_at_all", {}, GISFILE_ERR_OPEN, 0, none, "no zip archive"},
    };
    // clang-format on
    for (const TKmzCase& c : cases) {
        TMapLayer layer;
        TLoadReport report;
        const std::string bytes = c.Entries.empty() ? "PK no zip at all" : StoredZip(c.Entries);
        const int result = LoadBytes(EXCHANGE_FILE_KMZ, bytes, layer, report);
        EXPECT_EQ(result, c.iResult) << c.pszName;
        EXPECT_EQ(layer.m_Elements.size(), c.nElements) << c.pszName;
        if (c.eCause != LOAD_CAUSE_COUNT) {
            EXPECT_GT(report.GetCount(c.eCause), 0) << c.pszName;
        }
        EXPECT_EQ(report.HasStopped(), !c.strStop.empty()) << c.pszName;
        if (report.HasStopped()) {
            EXPECT_NE(report.GetStopped().strReason.find(c.strStop), std::string::npos)
                << c.pszName << ": " << report.GetStopped().strReason;
        }
    }
}

// 300 MiB of zeros deflated into a few hundred kilobytes: with the true size in its directory
// it is refused at the 256 MiB cap; claiming 1000 bytes, no more than those are unzipped and the
// entry fails its checksum. Both within seconds.
TEST(Kmz, ZipBombEndsAtTheCap) {
    SKIP_WITHOUT_LINUX_PEERS();
    if (!HaveProgram(TL_GIS_PYTHON)) GTEST_SKIP() << "no Python to make the archive";
    TTempDir dir;
    const std::string script = R"( -c 'import sys, zipfile, struct
z = zipfile.ZipFile(sys.argv[1], "w", zipfile.ZIP_DEFLATED)
with z.open("doc.kml", "w") as f:
    f.write(b"<kml>")
    for i in range(300): f.write(bytes(1 << 20))
z.close()
data = bytearray(open(sys.argv[1], "rb").read())
if sys.argv[2] == "lie":
    data[22:26] = struct.pack("<I", 1000)
    at = data.rfind(b"PK\x01\x02")
    data[at + 24:at + 28] = struct.pack("<I", 1000)
open(sys.argv[1], "wb").write(data)')";
    for (const char* how : {"true", "lie"}) {
        const std::string path = dir.File(std::string(how) + ".kmz");
        ASSERT_EQ(RunCommand(std::string(TL_GIS_PYTHON) + script + " " + ShellQuote(path) + " " + how).iExit,
                  0);
        TMapLayer layer;
        TLoadReport report;
        const auto start = std::chrono::steady_clock::now();
        EXPECT_EQ(LoadFile(path, layer, report), GISFILE_ERR_DATA) << how;
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10)) << how;
        const std::string expected = std::string(how) == "lie" ? "does not match its size" : "256 MiB";
        EXPECT_NE(report.GetStopped().strReason.find(expected), std::string::npos)
            << how << ": " << report.GetStopped().strReason;
    }
}
}  // namespace
