// Damaged, hostile and huge drawings end with a result code, never a crash or a read out of
// bounds (the sanitizer build checks the latter).

#include <gtest/gtest.h>

#include <fstream>
#include <random>
#include <string>

#include "dxf_test_support.h"
#include "gis/dxf/gis_file_dxf.h"
#include "test_support.h"

namespace {

std::string RandomBytes(std::size_t n, unsigned seed, bool withLineEnds) {
    std::mt19937 rng(seed);
    std::string s(n, '\0');
    for (char& c : s) {
        c = static_cast<char>(rng() & 0xFF);
        if (!withLineEnds && (c == '\n' || c == '\r')) c = 'x';
    }
    return s;
}

TEST(DxfBadInput, EndsWithAResultCode) {
    const std::string head = "0 SECTION|2 ENTITIES|";
    const struct {
        const char* name;
        std::string text;
        int result;
        const char* expected;
    } cases[] = {
        {"empty file", "", 0, ""},
        {"only a code line", "  0\n", 0, ""},
        {"lightweight polyline cut short",
         DxfGroups(head + "0 LWPOLYLINE|8 A41|90 4|10 10.5|20 45.2|10 10.6"), 0, ""},
        {"polyline without SEQEND",
         DxfGroups(head +
                   "0 POLYLINE|8 F30|66 1|0 VERTEX|8 F30|10 10.5|20 45.2|0 VERTEX|8 F30|10 10.6|20 45.3"),
         0, ""},
        {"code without value at the end",
         DxfGroups(head + LineGroups("A41", {10.5, 45.2}, {10.6, 45.3})) + "  0\n", 0, "generic/2"},
        {"a vertex outside any polyline", DxfGroups(head + "0 VERTEX|8 A41|10 10.5|20 45.2") + "  0\n",
         GISFILE_ERR_DATA, ""},
        // A code line without a number keeps the code before it: 45.3 replaces the latitude 95.
        {"non-numeric group codes",
         DxfGroups(head + "0 LINE|8 A41|10 10.5|20 45.2|11 10.6|21 95") + "twenty-one\n45.3\n  0\nEOF\n", 0,
         "generic/2"},
        {"codes out of the int range",
         DxfGroups(head + "99999999999999 x|-99999999999 y|" + LineGroups("A41", {10.5, 45.2}, {10.6, 45.3}) +
                   "|0 EOF"),
         0, "generic/2"},
        {"numbers that are not numbers",
         DxfGroups(head +
                   "0 LWPOLYLINE|8 A41|90 x|70 y|10 nan|20 nan|10 -nan|20 1e-999|10 10.5|20 45.2|0 EOF"),
         0, "road/1"},
        {"negative vertex count",
         DxfGroups(head + "0 LWPOLYLINE|8 A41|90 -5|10 10.5|20 45.2|10 10.6|20 45.3|0 EOF"), 0, "road/1"},
        {"SEQEND and ATTRIB without an insert",
         DxfGroups(head + "0 SEQEND|8 0|0 ATTRIB|8 0|2 TGR_NAME|10 10.5|20 45.2|0 SEQEND|0 EOF"), 0, ""},
    };
    for (const auto& c : cases) {
        TMapLayer layer;
        EXPECT_EQ(LoadDxfText(c.text, layer), c.result) << c.name;
        EXPECT_EQ(DescribeLayer(layer), c.expected) << c.name;
    }
}

TEST(DxfBadInput, LongValuesAreTakenWithoutOverflow) {
    const struct {
        const char* name;
        std::size_t length;
        std::size_t kept;
    } cases[] = {
        {"10,000 characters", 10000, 10000},
        {"a line of 200,000 characters keeps its first 65,536", 200000, 65536},
    };
    for (const auto& c : cases) {
        const std::string text =
            DxfWithEntities("0 INSERT|8 0|66 1|0 ATTRIB|8 0|10 10.8|20 45.5|2 TGR_NAME|1 " +
                            std::string(c.length, 'v') + "|0 SEQEND|8 0");
        TMapLayer layer;
        EXPECT_EQ(LoadDxfText(text, layer), 0) << c.name;
        ASSERT_EQ(layer.GetElementCount(), 1) << c.name;
        EXPECT_EQ(static_cast<const TFeatureMarker*>(layer.m_Elements[0])->m_strName.size(), c.kept)
            << c.name;
    }
}

TEST(DxfBadInput, BinaryFilesNamedDxf) {
    const struct {
        const char* name;
        std::string bytes;
    } cases[] = {
        {"random bytes", RandomBytes(1 << 20, 7, true)},
        {"random bytes without line ends", RandomBytes(3 << 20, 11, false)},
        {"entities section then noise",
         DxfGroups("0 SECTION|2 ENTITIES|0 LWPOLYLINE|8 A41|90 3") + RandomBytes(1 << 16, 5, true)},
        {"NUL bytes", std::string(1000, '\0')},
        {"lone carriage returns", std::string(5000, '\r') + "0\rSECTION\r"},
    };
    for (const auto& c : cases) {
        TMapLayer layer;
        const int result = LoadDxfText(c.bytes, layer);
        EXPECT_TRUE(result == 0 || result == 1 || result == 2 || result == 1001 || result == GISFILE_ERR_DATA)
            << c.name << ": " << result;
    }
}

TEST(DxfBadInput, TenMillionVerticesInOnePolyline) {
    constexpr int kVertices = 10'000'000;
    TTempDir dir;
    const std::string path = dir.File("huge.dxf");
    {
        std::ofstream f(path, std::ios::binary);
        f << DxfGroups("0 SECTION|2 ENTITIES|0 LWPOLYLINE|8 A41|90 " + std::to_string(kVertices));
        const std::string vertex = "10\n10.5\n20\n45.5\n";
        std::string block;
        for (int i = 0; i < 10000; ++i) block += vertex;
        for (int i = 0; i < kVertices / 10000; ++i) f << block;
        f << DxfGroups("0 ENDSEC|0 EOF");
    }
    TMapLayer layer;
    TGisFileDxf reader;
    ASSERT_EQ(reader.LoadFile(path.c_str(), &layer, nullptr), 0);
    ASSERT_EQ(layer.GetElementCount(), 1);
    EXPECT_EQ(static_cast<const TFeatureLine*>(layer.m_Elements[0])->m_iNumPoints, kVertices);
}

}  // namespace
