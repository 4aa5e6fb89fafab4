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
        .Record(8, Content(5, Square(.01, true)))
        .Bytes();
}

std::string AfterPoint(const std::string& content, std::int64_t words = -1) {
    return TShpBytes().Record(1, kPoint).Record(2, content, words).Bytes();
}

// Each file is loaded, its questions answered No (n) or Yes (y); the elements are "id" for points
// and "id/bound type" for lines, and every message shown must contain the text given (and a
// damage report the file's name).
TEST(ShpReader, LoadsOrRejectsEachFile) {
    const std::string utm = TShpBytes().Record(1, Content(3, {{500000, 5000000}, {500100, 5000100}})).Bytes();
    const std::string multipoint =
        TShpBytes().Record(1, kPoint).Record(2, Content(8, kFour)).Record(3, kPoint).Bytes();
    const std::string nullAndZ = TShpBytes()
                                     .Record(1, std::string(4, '\0'))
                                     .Record(2, Content(15, kFour) + std::string(48, '\0'))
                                     .Record(3, kPoint)
                                     .Bytes();
    const std::string rings =
        TShpBytes()
            .Record(4, Content(5, Square(.01, false)))
            .Record(5, Content(5, Square(.01, false) + Square(.002, false), {0, 5}))
            .Record(6, Content(5, Square(.01, true) + Square(.002, true, -93.3), {0, 5}))
            .Bytes();
    const struct {
        const char* pszName;
        std::string strBytes;
        int iResult;
        const char* pszElements;
        const char* pszMessage;  // nullptr: no message
        const char* pszAnswers;
    } cases[] = {
        {"big-endian record headers", Mixed(false), 0, "Point 12 7.1/18 7.2/18 8.1/16", nullptr, ""},
        {"little-endian record headers", Mixed(true), 0, "Point 12 7.1/18 7.2/18 8.1/16", nullptr, ""},
        {"header only", TShpBytes().Bytes(), 0, "", nullptr, ""},
        {"multipoint in the middle", multipoint, 0, "Point 1 Point 3", nullptr, ""},
        {"null shape and PolygonZ skipped", nullAndZ, 0, "Point 3", nullptr, ""},
        {"trailing zero bytes", TShpBytes().Record(1, kPoint).Record(-1, std::string(20, '\0')).Bytes(), 0,
         "Point 1", nullptr, ""},
        {"rings by orientation", rings, 0, "4.1/17 5.1/16 5.2/17 6.1/16 6.2/16", nullptr, ""},
        {"projected, answered no: loaded, ends with its class", utm, 1, "1.1/18", "projected grid", "nn"},
        {"projected, answered yes: stop", utm, 6080, "", "projected grid", "ny"},
        {"out of degree range, not projected", AfterPoint(Content(3, {{0, 0}, {200, 95}})), 2,
         "Point 1 2.1/18", nullptr, ""},
        {"part index past the points", AfterPoint(Content(3, kFour, {0, 5})), 6003, "Point 1",
         "record 2 is damaged: part 2 starts at point 5 of 4", ""},
        {"negative part start", AfterPoint(Content(3, kFour, {-1})), 6003, "Point 1", "starts at point -1",
         ""},
        {"parts going backwards", AfterPoint(Content(3, kFour, {0, 3, 2})), 6003, "Point 1",
         "starts at point 2", ""},
        {"point count 2^31-1", AfterPoint(Content(3, kFour, {0}, -1, 0x7FFFFFFF)), 6003, "Point 1",
         "1 parts and 2147483647 points need", ""},
        {"part count 2^31-16", AfterPoint(Content(3, kFour, {0}, 0x7FFFFFF0)), 6003, "Point 1",
         "2147483632 parts and 4 points need", ""},
        {"record length past the end", AfterPoint(Content(3, kFour), 1000), 6003, "Point 1",
         "record 2 gives its content as 2000 bytes, but only 112 bytes", ""},
        {"record length 2^31-1 words", AfterPoint(Content(3, kFour), 0x7FFFFFFF), 6003, "Point 1",
         "4294967294 bytes, but only", ""},
        {"point record too short", AfterPoint(kPoint.substr(0, 12)), 6003, "Point 1",
         "a point record needs 20 bytes", ""},
        {"file cut inside a record header",
         TShpBytes().Record(1, kPoint).Record(-1, {"\0\0\0\x02\0", 5}).Bytes(), 6003, "Point 1",
         "ends 5 bytes into the header of the record after record 1", ""},
        {"file cut inside the header", TShpBytes().Bytes().substr(0, 60), 6002, "",
         "fewer than the 100 of a shapefile", ""},
        {"wrong file code", TShpBytes().Bytes(9993), 6002, "", "shapefile code 9994 (it has 9993)", ""},
    };
    for (const auto& c : cases) {
        TTempDir dir;
        WriteFileBytes(dir.File("test.shp"), c.strBytes);
        EnsureLibraryStarted();  // its notices are not the reader's
        std::vector<int> answers;
        for (const char* a = c.pszAnswers; *a != '\0'; ++a) answers.push_back(*a == 'y' ? IDYES : IDNO);
        TScriptedMessages messages(answers);
        TMapLayer layer;
        EXPECT_EQ(TGisMap().LoadFile(dir.File("test.shp").c_str(), &layer, nullptr), c.iResult) << c.pszName;
        std::string elements;
        for (const TMapElement* e : layer.m_Elements) {
            const auto* line = dynamic_cast<const TFeatureLine*>(e);
            elements += (elements.empty() ? "" : " ") + e->m_strId +
                        (line ? "/" + std::to_string(line->m_iBoundType) : "");
        }
        EXPECT_EQ(elements, c.pszElements) << c.pszName;
        EXPECT_EQ(messages.Shown().size(), c.pszMessage ? std::max<std::size_t>(answers.size(), 1) : 0)
            << c.pszName;
        for (const TMessageBoxRequest& m : messages.Shown())
            EXPECT_TRUE(m.strText.find(c.pszMessage) != std::string::npos &&
                        (!answers.empty() || m.strText.find("test.shp") != std::string::npos))
                << c.pszName << ": " << m.strText;
    }
}

// Records around the block size come out whole and in order, whatever the block.
TEST(ShpRecordReader, RecordsStraddlingBlocks) {
    TShpBytes shp;
    for (int i = 1; i <= 60; ++i) shp.Record(i, Content(3, std::vector<TXY>(i * 37 % 23, {i, -i})));
    const std::string bytes = shp.Bytes();
    for (std::size_t block : {64u, 100u, 333u, 4096u}) {
        TByteFile file;
        file.OpenMemory(bytes);
        TShpRecordReader reader(file, block);
        TShpHeader header;
        TShpRecord record;
        TShpPolyRecord poly;
        std::string problem;
        int n = 0;
        ASSERT_TRUE(reader.ReadHeader(header, problem)) << block;
        while (reader.Next(record, problem) == TShpRecordReader::READ_RECORD &&
               poly.Decode(record.pContent, record.nLength, problem)) {
            tagLOC last{};
            if (poly.GetPointCount() > 0) poly.CopyPoints(poly.GetPointCount() - 1, 1, &last);
            EXPECT_TRUE(record.iNumber == ++n && poly.GetPointCount() == n * 37 % 23 &&
                        (poly.GetPointCount() == 0 || last.dLon == n))
                << "block " << block << ", record " << n;
        }
        EXPECT_EQ(n, 60) << "block " << block << ": " << problem;
    }
}
}  // namespace
