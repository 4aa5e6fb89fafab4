// Loading hand-assembled shapefiles: byte orders, skipped records, ends of data, damage.

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "gis/gis_map.h"
#include "gis/language.h"
#include "gis/shp/gis_file_shp.h"
#include "shp_test_files.h"
#include "test_support.h"

using namespace shp_test;

namespace {
const std::vector<TXY> kLine3 = {{-93.25, 45.5}, {-93.24, 45.51}, {-93.23, 45.5}};

struct TLoaded {
    int iResult = -1;
    std::vector<std::string> Elements;  // "id" for points, "id/bound type" for lines
    int iShapeType = 0;
    std::vector<TMessageBoxRequest> Messages;
};

TLoaded Load(const std::string& bytes, std::vector<int> answers = {}) {
    TTempDir dir;
    const std::string path = dir.File("test.shp");
    WriteFileBytes(path, bytes);
    EnsureLibraryStarted();  // its notices are not the reader's
    TScriptedMessages messages(std::move(answers));
    TMapLayer layer;
    TLoaded out;
    out.iResult = TGisMap().LoadFile(path.c_str(), &layer, nullptr);
    for (const TMapElement* e : layer.m_Elements) {
        if (const auto* line = dynamic_cast<const TFeatureLine*>(e))
            out.Elements.push_back(e->m_strId + "/" + std::to_string(line->m_iBoundType));
        else
            out.Elements.push_back(e->m_strId);
    }
    out.iShapeType = layer.m_iShapeType;
    out.Messages = messages.Shown();
    return out;
}

std::string Join(const std::vector<std::string>& v) {
    std::string s;
    for (const std::string& e : v) s += (s.empty() ? "" : " ") + e;
    return s;
}

struct TCraftedCase {
    const char* pszName;
    std::string strBytes;
    std::string strElements;
    int iShapeType;
};

std::string MixedRecords(bool little) {
    return TShpBytes(little)
        .Record(12, PointContent(-93.25, 45.5))
        .Record(7, PolyContent(3, {0, 2, 4},
                               {{-93.25, 45.5},
                                {-93.24, 45.5},
                                {-93.23, 45.5},
                                {-93.22, 45.5},
                                {-93.21, 45.5},
                                {-93.2, 45.5}}))
        .Record(8, PolyContent(5, {0}, SquareRing(0.01, true)))
        .Bytes();
}

TEST(ShpReader, CraftedFiles) {
    std::vector<TXY> twoRings = SquareRing(0.01, false);
    const std::vector<TXY> hole = SquareRing(0.002, false);
    twoRings.insert(twoRings.end(), hole.begin(), hole.end());
    std::vector<TXY> ringAndIsland = SquareRing(0.01, true);
    const std::vector<TXY> island = SquareRing(0.002, true, -93.3);
    ringAndIsland.insert(ringAndIsland.end(), island.begin(), island.end());

    const TCraftedCase cases[] = {
        {"big-endian record headers", MixedRecords(false), "Point 12 7.1/18 7.2/18 7.3/18 8.1/16", 5},
        {"little-endian record headers", MixedRecords(true), "Point 12 7.1/18 7.2/18 7.3/18 8.1/16", 5},
        {"header only", TShpBytes().Bytes(), "", 0},
        {"multipoint in the middle is skipped",
         TShpBytes()
             .Record(1, PointContent(-93.25, 45.5))
             .Record(2, MultiPointContent({{-93.2, 45.4}, {-93.1, 45.3}}))
             .Record(3, PointContent(-93.26, 45.51))
             .Bytes(),
         "Point 1 Point 3", 1},
        {"a skipped record last leaves shape type -1",
         TShpBytes()
             .Record(1, PointContent(-93.25, 45.5))
             .Record(2, MultiPointContent({{-93.2, 45.4}}))
             .Bytes(),
         "Point 1", -1},
        {"null shape and PolygonZ are skipped",
         TShpBytes()
             .Record(1, std::string(4, '\0'))
             .Record(2, PolyContent(15, {0}, SquareRing(0.01, true)) + std::string(48, '\0'))
             .Record(3, PolyContent(3, {0}, kLine3))
             .Bytes(),
         "3.1/18", 3},
        {"trailing zero bytes end the data",
         TShpBytes().Record(1, PointContent(-93.25, 45.5)).Raw(std::string(20, '\0')).Bytes(), "Point 1", 1},
        {"trailing zero bytes shorter than a record header",
         TShpBytes().Record(1, PointContent(-93.25, 45.5)).Raw(std::string(5, '\0')).Bytes(), "Point 1", 1},
        {"a record number of zero ends the data",
         TShpBytes().Record(1, PointContent(-93.25, 45.5)).Record(0, PointContent(1, 2)).Bytes(), "Point 1",
         1},
        {"one counter-clockwise ring is an exclusion",
         TShpBytes().Record(4, PolyContent(5, {0}, SquareRing(0.01, false))).Bytes(), "4.1/17", 5},
        {"first of two rings is an inclusion whatever its orientation, the hole goes by its own",
         TShpBytes().Record(5, PolyContent(5, {0, 5}, twoRings)).Bytes(), "5.1/16 5.2/17", 5},
        {"a clockwise second ring is an inclusion",
         TShpBytes().Record(6, PolyContent(5, {0, 5}, ringAndIsland)).Bytes(), "6.1/16 6.2/16", 5},
        {"a polyline without parts adds nothing", TShpBytes().Record(9, PolyContent(3, {}, {})).Bytes(), "",
         3},
    };
    for (const TCraftedCase& c : cases) {
        const TLoaded got = Load(c.strBytes);
        EXPECT_EQ(got.iResult, 0) << c.pszName;
        EXPECT_EQ(Join(got.Elements), c.strElements) << c.pszName;
        EXPECT_EQ(got.iShapeType, c.iShapeType) << c.pszName;
        EXPECT_TRUE(got.Messages.empty()) << c.pszName << ": " << got.Messages.front().strText;
    }
}

struct TDamagedCase {
    const char* pszName;
    std::string strBytes;
    int iResult;
    const char* pszMessage;  // must appear in the one message shown
};

TEST(ShpReader, DamagedFiles) {
    auto afterPoint = [](const std::string& content, std::int64_t words = -1) {
        return TShpBytes().Record(1, PointContent(-93.25, 45.5)).Record(2, content, words).Bytes();
    };
    const std::vector<TXY> four = {{-93.25, 45.5}, {-93.24, 45.5}, {-93.23, 45.5}, {-93.22, 45.5}};
    const std::string header = TShpBytes().Bytes();
    const TDamagedCase cases[] = {
        {"part index past the points", afterPoint(PolyContent(3, {0, 5}, four)), 6003,
         "record 2 is damaged: part 2 starts at point 5 of 4"},
        {"negative part start", afterPoint(PolyContent(3, {-1}, four)), 6003, "part 1 starts at point -1"},
        {"part starts going backwards", afterPoint(PolyContent(3, {0, 3, 2}, four)), 6003,
         "part 3 starts at point 2"},
        {"point count 2^31-1", afterPoint(PolyContent(3, {0}, four, -1, 0x7FFFFFFF)), 6003,
         "1 parts and 2147483647 points need"},
        {"part count 2^31-16", afterPoint(PolyContent(3, {0}, four, 0x7FFFFFF0, -1)), 6003,
         "2147483632 parts and 4 points need"},
        {"negative point count", afterPoint(PolyContent(3, {0}, four, -1, 0xFFFFFFFF)), 6003,
         "negative count"},
        {"record length past the end of file", afterPoint(PolyContent(3, {0}, four), 1000), 6003,
         "record 2 gives its content as 2000 bytes, but only 112 bytes"},
        {"negative record length", afterPoint(PolyContent(3, {0}, four), 0x80000000), 6003,
         "a length cannot be negative"},
        {"record length 2^31-1 words", afterPoint(PolyContent(3, {0}, four), 0x7FFFFFFF), 6003,
         "4294967294 bytes, but only"},
        {"empty record content", afterPoint("", 0), 6003, "record 2 has 0 bytes of content"},
        {"point record too short", afterPoint(std::string("\x01\0\0\0", 4) + std::string(8, '\0')), 6003,
         "a point record needs 20 bytes"},
        {"polyline too short for its counts",
         afterPoint(std::string("\x03\0\0\0", 4) + std::string(20, '\0')), 6003,
         "too few for its part and point counts"},
        {"file cut inside a record header",
         TShpBytes().Record(1, PointContent(-93.25, 45.5)).Raw(std::string("\0\0\0\x02\0", 5)).Bytes(), 6003,
         "ends 5 bytes into the header of the record after record 1"},
        {"file cut inside the header", header.substr(0, 60), 6002,
         "fewer than the 100 of a shapefile header"},
        {"empty file", "", 6002, "has 0 bytes"},
        {"wrong file code", TShpBytes().Bytes(9993), 6002,
         "does not start with the shapefile code 9994 (it has 9993)"},
    };
    for (const TDamagedCase& c : cases) {
        const TLoaded got = Load(c.strBytes);
        EXPECT_EQ(got.iResult, c.iResult) << c.pszName;
        ASSERT_EQ(got.Messages.size(), 1u) << c.pszName;
        EXPECT_NE(got.Messages[0].strText.find(c.pszMessage), std::string::npos)
            << c.pszName << ": " << got.Messages[0].strText;
        EXPECT_NE(got.Messages[0].strText.find("test.shp"), std::string::npos) << c.pszName;
        // Whatever came before the damage stays loaded.
        if (c.iResult == 6003) {
            EXPECT_EQ(Join(got.Elements), "Point 1") << c.pszName;
        }
    }
}

TEST(ShpReader, ProjectedCoordinatesAsk) {
    // UTM-like coordinates: every point is asked about.
    const std::string bytes =
        TShpBytes()
            .Record(1, PolyContent(3, {0}, {{500000, 5000000}, {500100, 5000100}, {500200, 5000000}}))
            .Record(2, PointContent(-93.25, 45.5))
            .Bytes();
    const TLoaded no = Load(bytes, {IDNO, IDNO, IDNO});
    EXPECT_EQ(no.iResult, 1) << "answering No loads the record and ends the load with its class";
    EXPECT_EQ(Join(no.Elements), "1.1/18");
    EXPECT_EQ(no.Messages.size(), 3u);

    const TLoaded yes = Load(bytes, {IDNO, IDYES});
    EXPECT_EQ(yes.iResult, 6080);
    EXPECT_EQ(Join(yes.Elements), "");
    EXPECT_EQ(yes.Messages.size(), 2u);

    const TLoaded polygon = Load(
        TShpBytes()
            .Record(3,
                    PolyContent(5, {0},
                                {{500000, 5000000}, {500000, 5000100}, {500100, 5000000}, {500000, 5000000}}))
            .Bytes(),
        {IDYES});
    EXPECT_EQ(polygon.iResult, 6080);
    ASSERT_EQ(polygon.Messages.size(), 1u);
    EXPECT_TRUE(polygon.Messages[0].IsQuestion());

    const TLoaded outOfRange =
        Load(TShpBytes().Record(4, PolyContent(3, {0}, {{-93.25, 45.5}, {200.0, 95.0}})).Bytes());
    EXPECT_EQ(outOfRange.iResult, 2) << "out of degree range, not projected: no question, class 2";
    EXPECT_EQ(Join(outOfRange.Elements), "4.1/18");
    EXPECT_TRUE(outOfRange.Messages.empty());
}

std::vector<int> g_Progress;
void RecordProgress(int percent) {
    g_Progress.push_back(percent);
}

TEST(ShpReader, ProgressFollowsTheFile) {
    TShpBytes bytes;
    for (int i = 1; i <= 200; ++i) bytes.Record(i, PointContent(-93.25 + i * 1e-4, 45.5));
    TTempDir dir;
    const std::string path = dir.File("p.shp");
    WriteFileBytes(path, bytes.Bytes());
    TMapLayer layer;
    g_Progress.clear();
    ASSERT_EQ(TGisMap().LoadFile(path.c_str(), &layer, &RecordProgress), 0);
    EXPECT_EQ(layer.m_Elements.size(), 200u);
    ASSERT_FALSE(g_Progress.empty());
    EXPECT_EQ(g_Progress.back(), 100);
    EXPECT_TRUE(std::is_sorted(g_Progress.begin(), g_Progress.end()));
}

}  // namespace

namespace {
// Every single-byte corruption of a small file ends in a result code, never a crash or an
// out-of-bounds read (the sanitizer build checks the latter).
TEST(ShpReader, SingleByteCorruptionsGiveResultCodes) {
    const std::string original = MixedRecords(false);
    TTempDir dir;
    const std::string path = dir.File("c.shp");
    EnsureLibraryStarted();
    TScriptedMessages messages;  // answers Yes: projected data stops at once
    int loads = 0;
    for (std::size_t at = 0; at < original.size(); ++at) {
        for (unsigned char value : {0x00, 0x7F, 0x80, 0xFF}) {
            std::string bytes = original;
            bytes[at] = static_cast<char>(value);
            WriteFileBytes(path, bytes);
            TMapLayer layer;
            const int result = TGisMap().LoadFile(path.c_str(), &layer, nullptr);
            const bool known = result == 0 || result == 1 || result == 2 || result == 6002 ||
                               result == 6003 || result == 6080;
            EXPECT_TRUE(known) << "byte " << at << " = " << int(value) << " gives " << result;
            ++loads;
        }
    }
    EXPECT_EQ(loads, static_cast<int>(original.size()) * 4);
}
}  // namespace
