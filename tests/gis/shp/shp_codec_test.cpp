// The record codec and the block reader, without a map.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "gis/shp/shp_codec.h"
#include "gis/shp/shp_record_reader.h"
#include "platform/byte_file.h"
#include "shp_test_files.h"

using namespace shp_test;

namespace {
const unsigned char* Bytes(const std::string& s) {
    return reinterpret_cast<const unsigned char*>(s.data());
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
