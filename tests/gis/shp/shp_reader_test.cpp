// Loading hand-assembled main files: byte orders, skipped records, ends of data, damage, the
// projected-coordinate question, and records split across read blocks.

#include <gtest/gtest.h>

#include "gis/gis_map.h"
#include "gis/language.h"
#include "gis/shp/shp_record_reader.h"
#include "platform/byte_file.h"
#include "shp_test_support.h"

using namespace shp_test;

namespace {
struct TLoaded {
    int iResult = -1;
    std::string strElements;  // "id" for points, "id/bound type" for lines
    int iShapeType = 0;
    std::vector<TMessageBoxRequest> Messages;
};

TLoaded Load(const std::string& bytes, std::vector<int> answers = {}) {
    TTempDir dir;
    WriteFileBytes(dir.File("test.shp"), bytes);
    EnsureLibraryStarted();  // its notices are not the reader's
    TScriptedMessages messages(std::move(answers));
    TMapLayer layer;
    TLoaded out{
        TGisMap().LoadFile(dir.File("test.shp").c_str(), &layer, nullptr), "", layer.m_iShapeType, {}};
    for (const TMapElement* e : layer.m_Elements) {
        const auto* line = dynamic_cast<const TFeatureLine*>(e);
        out.strElements += (out.strElements.empty() ? "" : " ") + e->m_strId +
                           (line ? "/" + std::to_string(line->m_iBoundType) : "");
    }
    out.Messages = messages.Shown();
    return out;
}

// A square around (45.5, cx); clockwise with north up runs west, north, east.
std::vector<TXY> Square(double half, bool clockwise, double cx = -93.25) {
    std::vector<TXY> ring = {{cx - half, 45.5 - half},
                             {cx - half, 45.5 + half},
                             {cx + half, 45.5 + half},
                             {cx + half, 45.5 - half},
                             {cx - half, 45.5 - half}};
    if (!clockwise) std::reverse(ring.begin(), ring.end());
    return ring;
}

std::vector<TXY> operator+(std::vector<TXY> a, const std::vector<TXY>& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

const std::vector<TXY> kFour = {{-93.25, 45.5}, {-93.24, 45.5}, {-93.23, 45.5}, {-93.22, 45.5}};
const std::string kPoint = Content(1, {{-93.25, 45.5}});

std::string Mixed(bool little) {
    return TShpBytes{little}
        .Record(12, kPoint)
        .Record(7, Content(3, kFour, {0, 2}))
        .Record(8, Content(5, Square(.01, 1)))
        .Bytes();
}

TEST(ShpReader, CraftedFiles) {
    const std::string multipoint = Content(8, {{-93.2, 45.4}});
    const struct {
        const char* pszName;
        std::string strBytes;
        const char* pszElements;
        int iShapeType;
    } cases[] = {
        {"big-endian record headers", Mixed(false), "Point 12 7.1/18 7.2/18 8.1/16", 5},
        {"little-endian record headers", Mixed(true), "Point 12 7.1/18 7.2/18 8.1/16", 5},
        {"header only", TShpBytes().Bytes(), "", 0},
        {"multipoint in the middle",
         TShpBytes().Record(1, kPoint).Record(2, multipoint).Record(3, kPoint).Bytes(), "Point 1 Point 3", 1},
        {"skipped record last", TShpBytes().Record(1, kPoint).Record(2, multipoint).Bytes(), "Point 1", -1},
        {"null shape and PolygonZ skipped",
         TShpBytes()
             .Record(1, std::string(4, '\0'))
             .Record(2, Content(15, Square(.01, 1)) + std::string(48, '\0'))
             .Record(3, Content(3, kFour))
             .Bytes(),
         "3.1/18", 3},
        {"trailing zero bytes", TShpBytes().Record(1, kPoint).Raw(std::string(20, '\0')).Bytes(), "Point 1",
         1},
        {"trailing zeros shorter than a record header",
         TShpBytes().Record(1, kPoint).Raw(std::string(5, '\0')).Bytes(), "Point 1", 1},
        {"rings by orientation",
         TShpBytes()
             .Record(4, Content(5, Square(.01, 0)))
             .Record(5, Content(5, Square(.01, 0) + Square(.002, 0), {0, 5}))
             .Record(6, Content(5, Square(.01, 1) + Square(.002, 1, -93.3), {0, 5}))
             .Bytes(),
         "4.1/17 5.1/16 5.2/17 6.1/16 6.2/16", 5},
        {"polyline without parts", TShpBytes().Record(9, Content(3, {}, {})).Bytes(), "", 3},
    };
    for (const auto& c : cases) {
        const TLoaded got = Load(c.strBytes);
        EXPECT_EQ(got.iResult, 0) << c.pszName;
        EXPECT_EQ(got.strElements, c.pszElements) << c.pszName;
        EXPECT_EQ(got.iShapeType, c.iShapeType) << c.pszName;
        EXPECT_TRUE(got.Messages.empty()) << c.pszName;
    }
}

TEST(ShpReader, DamagedFiles) {
    const auto afterPoint = [](const std::string& content, std::int64_t words = -1) {
        return TShpBytes().Record(1, kPoint).Record(2, content, words).Bytes();
    };
    const struct {
        const char* pszName;
        std::string strBytes;
        int iResult;
        const char* pszMessage;  // part of the one message shown
    } cases[] = {
        {"part index past the points", afterPoint(Content(3, kFour, {0, 5})), 6003,
         "record 2 is damaged: part 2 starts at point 5 of 4"},
        {"negative part start", afterPoint(Content(3, kFour, {-1})), 6003, "part 1 starts at point -1"},
        {"parts going backwards", afterPoint(Content(3, kFour, {0, 3, 2})), 6003, "part 3 starts at point 2"},
        {"point count 2^31-1", afterPoint(Content(3, kFour, {0}, -1, 0x7FFFFFFF)), 6003,
         "1 parts and 2147483647 points"},
        {"part count 2^31-16", afterPoint(Content(3, kFour, {0}, 0x7FFFFFF0)), 6003,
         "2147483632 parts and 4 points"},
        {"negative point count", afterPoint(Content(3, kFour, {0}, -1, 0xFFFFFFFF)), 6003, "negative count"},
        {"record length past the end", afterPoint(Content(3, kFour), 1000), 6003,
         "record 2 gives its content as 2000 bytes, but only 112 bytes"},
        {"record length 2^31-1 words", afterPoint(Content(3, kFour), 0x7FFFFFFF), 6003,
         "4294967294 bytes, but only"},
        {"negative record length", afterPoint("", 0x80000000), 6003, "a length cannot be negative"},
        {"point record too short", afterPoint(kPoint.substr(0, 12)), 6003, "a point record needs 20 bytes"},
        {"polyline too short for its counts", afterPoint(Content(3, {}).substr(0, 24)), 6003,
         "too few for its part and point counts"},
        {"file cut inside a record header",
         TShpBytes().Record(1, kPoint).Raw(std::string("\0\0\0\x02\0", 5)).Bytes(), 6003,
         "ends 5 bytes into the header of the record after record 1"},
        {"file cut inside the header", TShpBytes().Bytes().substr(0, 60), 6002,
         "fewer than the 100 of a shapefile header"},
        {"wrong file code", TShpBytes().Bytes(9993), 6002, "shapefile code 9994 (it has 9993)"},
    };
    for (const auto& c : cases) {
        const TLoaded got = Load(c.strBytes);
        EXPECT_EQ(got.iResult, c.iResult) << c.pszName;
        ASSERT_EQ(got.Messages.size(), 1u) << c.pszName;
        EXPECT_NE(got.Messages[0].strText.find(c.pszMessage), std::string::npos)
            << c.pszName << ": " << got.Messages[0].strText;
        EXPECT_NE(got.Messages[0].strText.find("test.shp"), std::string::npos) << c.pszName;
        EXPECT_EQ(got.strElements, c.iResult == 6003 ? "Point 1" : "") << c.pszName;
    }
}

TEST(ShpReader, ProjectedCoordinatesAsk) {
    const std::string utm =
        TShpBytes().Record(1, Content(3, {{500000, 5000000}, {500100, 5000100}})).Record(2, kPoint).Bytes();
    const struct {
        const char* pszName;
        std::string strBytes;
        std::vector<int> Answers;
        int iResult;
        const char* pszElements;
        std::size_t nQuestions;
    } cases[] = {
        {"answered no: the record loads, the load ends with its class", utm, {IDNO, IDNO}, 1, "1.1/18", 2},
        {"answered yes: stop", utm, {IDNO, IDYES}, 6080, "", 2},
        {"out of degree range, not projected",
         TShpBytes().Record(4, Content(3, {{-93.25, 45.5}, {200, 95}})).Bytes(),
         {},
         2,
         "4.1/18",
         0},
    };
    for (const auto& c : cases) {
        const TLoaded got = Load(c.strBytes, c.Answers);
        EXPECT_EQ(got.iResult, c.iResult) << c.pszName;
        EXPECT_EQ(got.strElements, c.pszElements) << c.pszName;
        EXPECT_EQ(got.Messages.size(), c.nQuestions) << c.pszName;
    }
}

// Records around the block size come out whole and in order, whatever the block.
TEST(ShpRecordReader, RecordsStraddlingBlocks) {
    TShpBytes shp;
    for (int i = 1; i <= 60; ++i)
        shp.Record(i, Content(3, std::vector<TXY>(static_cast<std::size_t>(i * 37 % 23), {i, -i})));
    const std::string bytes = shp.Bytes();
    for (std::size_t block : {64u, 100u, 333u, 4096u}) {
        TByteFile file;
        file.OpenMemory(bytes);
        TShpRecordReader reader(file, block);
        TShpHeader header;
        TShpRecord record;
        TShpPolyRecord poly;
        std::string problem;
        int count = 0;
        ASSERT_TRUE(reader.ReadHeader(header, problem)) << block;
        while (reader.Next(record, problem) == TShpRecordReader::READ_RECORD &&
               poly.Decode(record.pContent, record.nLength, problem)) {
            tagLOC last{};
            if (poly.GetPointCount() > 0) poly.CopyPoints(poly.GetPointCount() - 1, 1, &last);
            EXPECT_TRUE(record.iNumber == ++count && poly.GetPointCount() == count * 37 % 23 &&
                        (poly.GetPointCount() == 0 || last.dLon == count))
                << "block " << block << ", record " << count;
        }
        EXPECT_EQ(count, 60) << "block " << block << ": " << problem;
    }
}
}  // namespace
