// The record codec and the block reader, without a map.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "gis/byte_order.h"
#include "gis/shp/shp_codec.h"
#include "gis/shp/shp_record_reader.h"
#include "platform/byte_file.h"
#include "shp_test_files.h"

using namespace shp_test;

namespace {
const unsigned char* Bytes(const std::string& s) {
    return reinterpret_cast<const unsigned char*>(s.data());
}

TEST(ByteOrder, ReadsAndWritesKnownBytes) {
    const unsigned char be[4] = {0x00, 0x00, 0x27, 0x0A};  // 9994
    EXPECT_EQ(readBE32(be), 9994u);
    EXPECT_EQ(readLE32(be), 0x0A270000u);
    const unsigned char neg[4] = {0xFF, 0xFF, 0xFF, 0xFE};
    EXPECT_EQ(readBEInt32(neg), -2);
    EXPECT_EQ(readLEInt32(neg), -16777217);
    const unsigned char one[8] = {0, 0, 0, 0, 0, 0, 0xF0, 0x3F};  // 1.0
    EXPECT_EQ(readLEDouble(one), 1.0);
    const unsigned char le16[2] = {0xE1, 0x02};
    EXPECT_EQ(readLE16(le16), 737u);

    unsigned char out[8] = {};
    writeBE32(out, 9994);
    EXPECT_EQ(std::string(reinterpret_cast<char*>(out), 4), std::string("\0\0\x27\x0A", 4));
    writeLEInt32(out, -2);
    EXPECT_EQ(std::string(reinterpret_cast<char*>(out), 4), std::string("\xFE\xFF\xFF\xFF", 4));
    writeLEDouble(out, -93.25);
    std::string expected;
    PutLEDouble(expected, -93.25);
    EXPECT_EQ(std::string(reinterpret_cast<char*>(out), 8), expected);
    writeLE16(out, 261);
    EXPECT_EQ(out[0], 5);
    EXPECT_EQ(out[1], 1);
}

TEST(ShpCodec, RecordHeaderOrderFromTheFirstRecord) {
    struct TCase {
        bool bLittle;
        std::int32_t iNumber;
        TShpByteOrder eOrder;
    };
    const TCase cases[] = {
        {false, 1, SHP_ORDER_BIG},
        {true, 1, SHP_ORDER_LITTLE},
        {true, 0xFFFFFF, SHP_ORDER_LITTLE},
        {true, 0x1000000, SHP_ORDER_BIG},  // beyond the limit: taken as big
        // Files start numbering at 1; a big-endian first number of 256 reads as a small
        // little-endian one, so the rule takes it as little-endian.
        {false, 0x100, SHP_ORDER_LITTLE},
    };
    for (const TCase& c : cases) {
        std::string head;
        if (c.bLittle) {
            PutLE32(head, static_cast<std::uint32_t>(c.iNumber));
            PutLE32(head, 10);
        } else {
            PutBE32(head, static_cast<std::uint32_t>(c.iNumber));
            PutBE32(head, 10);
        }
        EXPECT_EQ(DetectShpRecordOrder(Bytes(head)), c.eOrder) << c.iNumber << (c.bLittle ? " LE" : " BE");
        const TShpRecordHeader rh =
            DecodeShpRecordHeader(Bytes(head), c.bLittle ? SHP_ORDER_LITTLE : SHP_ORDER_BIG);
        EXPECT_EQ(rh.iNumber, c.iNumber);
        EXPECT_EQ(rh.iContentWords, 10);
    }
}

TEST(ShpCodec, PolyRecordParts) {
    const std::vector<TXY> points = {{1, 10}, {2, 20}, {3, 30}, {4, 40}, {5, 50}};
    const std::string content = PolyContent(3, {0, 2, 2}, points);
    TShpPolyRecord rec;
    std::string problem;
    ASSERT_TRUE(rec.Decode(Bytes(content), content.size(), problem)) << problem;
    ASSERT_EQ(rec.GetPartCount(), 3);
    EXPECT_EQ(rec.GetPointCount(), 5);
    const int expected[][2] = {{0, 2}, {2, 2}, {2, 5}};
    for (int p = 0; p < 3; ++p) {
        EXPECT_EQ(rec.GetPartStart(p), expected[p][0]) << "part " << p;
        EXPECT_EQ(rec.GetPartEnd(p), expected[p][1]) << "part " << p;
    }
    tagLOC locs[3];
    rec.CopyPoints(2, 3, locs);
    EXPECT_EQ(locs[0].dLat, 30.0);
    EXPECT_EQ(locs[0].dLon, 3.0);
    EXPECT_EQ(locs[2].dLat, 50.0);
    // One byte short of its last point is damage, not a shorter record.
    EXPECT_FALSE(rec.Decode(Bytes(content), content.size() - 1, problem));
}

// Records of sizes around the block size come out whole and in order, whatever the block.
TEST(ShpRecordReader, RecordsStraddlingBlocks) {
    TShpBytes shp;
    std::vector<int> sizes;
    for (int i = 1; i <= 60; ++i) {
        const int n = (i * 37) % 23;  // 0..22 points
        std::vector<TXY> pts;
        for (int k = 0; k < n; ++k) pts.push_back({i + k * 0.001, -i - k * 0.001});
        shp.Record(i, PolyContent(3, {0}, pts));
        sizes.push_back(n);
    }
    const std::string bytes = shp.Bytes();
    for (std::size_t block : {64u, 100u, 333u, 4096u, 1u << 20}) {
        TByteFile file;
        file.OpenMemory(bytes);
        TShpRecordReader reader(file, block);
        TShpHeader header;
        std::string problem;
        ASSERT_TRUE(reader.ReadHeader(header, problem)) << block;
        TShpRecord record;
        int count = 0;
        TShpRecordReader::TStatus status;
        while ((status = reader.Next(record, problem)) == TShpRecordReader::READ_RECORD) {
            ++count;
            TShpPolyRecord poly;
            ASSERT_TRUE(poly.Decode(record.pContent, record.nLength, problem)) << problem;
            EXPECT_EQ(record.iNumber, count) << "block " << block;
            EXPECT_EQ(poly.GetPointCount(), sizes[static_cast<std::size_t>(count - 1)]) << "block " << block;
            if (poly.GetPointCount() > 0) {
                tagLOC last;
                poly.CopyPoints(poly.GetPointCount() - 1, 1, &last);
                EXPECT_DOUBLE_EQ(last.dLon, count + (poly.GetPointCount() - 1) * 0.001) << "block " << block;
            }
        }
        EXPECT_EQ(status, TShpRecordReader::READ_END) << problem;
        EXPECT_EQ(count, 60) << "block " << block;
        EXPECT_EQ(reader.GetPosition(), static_cast<std::int64_t>(bytes.size()));
        EXPECT_EQ(reader.GetByteOrder(), SHP_ORDER_BIG);
    }
}
}  // namespace
