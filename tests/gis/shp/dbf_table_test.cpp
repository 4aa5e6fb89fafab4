// The attribute tables' fixed layout: the four field lists with their descriptors, the header
// bytes, and how the record writer fits texts and numbers into their widths.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "gis/shp/dbf_table.h"
#include "shp_test_files.h"

namespace {
struct TTableCase {
    const char* pszName;
    TDbfTable eTable;
    bool bMetric;
    int iHeaderLength;
    int iRecordLength;
    std::vector<std::string> Names;  // as stored in the descriptors
};

const std::vector<std::string> kSprayFirst13 = {
    "SEGMENTID", "CUSTOMER", "FILE_NAME",  "FILE_DATE", "AIRCRAFT", "PILOT",    "FIELD_NAME",
    "OFFSET",    "LINE_NUM", "EVENT_TIME", "POS_LAT",   "POS_LON",  "SPEED_MPH"};

std::vector<std::string> Join(std::vector<std::string> a, const std::vector<std::string>& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

const TTableCase kTables[] = {
    {"spray US", DBF_TABLE_SPRAY, false, 737, 261,
     Join(kSprayFirst13, {"TRK_FT", "SWIDTH_FT", "HGT_FT", "AGL_FT", "AREA_US", "TSRATE_US", "ASRATE_US",
                          "SPRAY_STAT", "BOOM_STAT"})},
    {"spray metric", DBF_TABLE_SPRAY, true, 737, 261,
     Join(kSprayFirst13, {"TRK_M", "SWIDTH_M", "HGT_M", "AGL_M", "AREA_M", "TSRATE_LTR", "ASRATE_LTR",
                          "SPRAY_STAT", "BOOM_STAT"})},
    {"non-spray US",
     DBF_TABLE_NONSPRAY,
     false,
     289,
     86,
     {"SAMPLEID", "LINE_NUM", "EVENT_TIME", "POS_LAT", "POS_LON", "SPEED_MPH", "HGT_ELLIPF", "AGL_FT"}},
    {"non-spray metric",
     DBF_TABLE_NONSPRAY,
     true,
     289,
     86,
     {"SAMPLEID", "LINE_NUM", "EVENT_TIME", "POS_LAT", "POS_LON", "SPEED_MPH", "HGT_ELLIPM", "AGL_M"}},
    {"boundaries", DBF_TABLE_NONE, false, 33, 1, {}},
};

// Widths, types and decimals of the spray table, column by column.
const char kSprayTypes[] = "CCCCCCCCCCCCNNNNNNNNCC";
const int kSprayWidths[] = {8, 28, 24, 12, 12, 12, 20, 5, 5, 14, 17, 17, 8, 8, 8, 8, 8, 10, 10, 10, 8, 8};
const int kSprayDecimals[] = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 1, 1, 1, 6, 6, 6, 0, 0};
}  // namespace

TEST(DbfTable, HeadersOfEveryTable) {
    for (const TTableCase& c : kTables) {
        std::string bytes;
        AppendDbfHeader(bytes, GetDbfFields(c.eTable, c.bMetric), 0x01020304u, {121, 3, 5});
        std::string expected;
        expected += '\x03';
        expected += "\x79\x03\x05";  // 5 March 2021
        shp_test::PutLE32(expected, 0x01020304u);
        expected += static_cast<char>(c.iHeaderLength & 0xFF);
        expected += static_cast<char>(c.iHeaderLength >> 8);
        expected += static_cast<char>(c.iRecordLength & 0xFF);
        expected += static_cast<char>(c.iRecordLength >> 8);
        expected.append(20, '\0');
        ASSERT_EQ(bytes.size(), static_cast<std::size_t>(c.iHeaderLength)) << c.pszName;
        EXPECT_EQ(bytes.substr(0, 32), expected) << c.pszName;
        EXPECT_EQ(bytes.back(), '\x0D') << c.pszName;
        ASSERT_EQ((bytes.size() - 33) / 32, c.Names.size()) << c.pszName;
        for (std::size_t i = 0; i < c.Names.size(); ++i) {
            const std::string d = bytes.substr(32 + 32 * i, 32);
            std::string name = c.Names[i];
            name.resize(11, '\0');
            EXPECT_EQ(d.substr(0, 11), name) << c.pszName << " field " << i + 1;
            if (c.eTable == DBF_TABLE_SPRAY) {
                EXPECT_EQ(d[11], kSprayTypes[i]) << c.pszName << " field " << i + 1;
                EXPECT_EQ(d[16], kSprayWidths[i]) << c.pszName << " field " << i + 1;
                EXPECT_EQ(d[17], kSprayDecimals[i]) << c.pszName << " field " << i + 1;
            }
            EXPECT_EQ(d.substr(12, 4) + d.substr(18), std::string(18, '\0'))
                << c.pszName << " field " << i + 1;
        }
    }
}

TEST(DbfRecordWriter, FitsEveryValueIntoItsWidth) {
    static const TDbfField kFields[] = {{"T", 'C', 8, 0}, {"N", 'N', 10, 6}};
    struct TCase {
        const char* pszName;
        void (*pfnFill)(TDbfRecordWriter&);
        const char* pszExpected;  // deletion byte and both fields
    };
    const TCase cases[] = {
        {"serial 1", [](TDbfRecordWriter& w) { w.AddInteger(1); }, "        1          "},
        {"eight-digit serial", [](TDbfRecordWriter& w) { w.AddInteger(12345678); }, " 12345678          "},
        {"nine digits keep the leftmost", [](TDbfRecordWriter& w) { w.AddInteger(123456789); },
         " 12345678          "},
        {"short text padded left", [](TDbfRecordWriter& w) { w.AddText("N5AG"); }, "     N5AG          "},
        {"long text cut", [](TDbfRecordWriter& w) { w.AddText(std::string(20000, 'x')); },
         " xxxxxxxx          "},
        {"area of 1.5 ha in acres",
         [](TDbfRecordWriter& w) {
             w.AddText("");
             w.AddNumber(1.5 * 2.471053828349333, 6);
         },
         "           3.706581"},
        {"50 L/ha in gallons per acre",
         [](TDbfRecordWriter& w) {
             w.AddText("");
             w.AddNumber(50 * 0.10690663552904765, 6);
         },
         "           5.345332"},
        {"number wider than its field",
         [](TDbfRecordWriter& w) {
             w.AddText("");
             w.AddNumber(123456.5, 6);
         },
         "         123456.500"},
        {"NaN stays blank",
         [](TDbfRecordWriter& w) {
             w.AddText("");
             w.AddNumber(std::numeric_limits<double>::quiet_NaN(), 6);
         },
         "                   "},
        {"flags",
         [](TDbfRecordWriter& w) {
             w.AddFlag(1);
             w.AddFlag(0);
         },
         "        T         F"},
        {"extra values are dropped",
         [](TDbfRecordWriter& w) {
             w.AddText("a");
             w.AddText("b");
             w.AddText("c");
         },
         "        a         b"},
    };
    TDbfRecordWriter writer;
    for (const TCase& c : cases) {
        writer.Begin(kFields);
        c.pfnFill(writer);
        EXPECT_EQ(writer.Bytes(), c.pszExpected) << c.pszName;
    }
}
