#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "dxf_test_support.h"
#include "gis/dxf/dxf_tables.h"
#include "gis/dxf/gis_file_dxf.h"
#include "test_support.h"

namespace {

const std::vector<TXY> kSquare = {{10.5, 45.2}, {10.6, 45.2}, {10.6, 45.3}, {10.5, 45.3}};

std::string Load(const std::string& body, int* result = nullptr) {
    TMapLayer layer;
    const int r = LoadDxfText(DxfWithEntities(body), layer);
    if (result) *result = r;
    return DescribeLayer(layer);
}

// An insert carrying attributes (tag, value, x, y) closed by a SEQEND on seqendLayer.
std::string InsertGroups(const std::vector<std::vector<std::string>>& attributes,
                         const std::string& seqendLayer = "0") {
    std::string g = "0 INSERT|8 0|2 SYMBOL|10 10.1|20 45.1|66 1";
    for (const auto& a : attributes)
        g += "|0 ATTRIB|8 0|10 " + a[2] + "|20 " + a[3] + "|1 " + a[1] + "|2 " + a[0];
    return g + "|0 SEQEND|8 " + seqendLayer;
}

TEST(DxfLayerClasses, PolylinesTakeTheClassOfTheirLayer) {
    const struct {
        const char* layer;
        const char* expected;
    } cases[] = {
        {"A41", "road/4"},
        {"H12", "water/4"},
        {"F30", "boundary/4"},
        {"D50", "area/4"},
        {"C31", "misc/4"},
        {"RD-12", "road/4"},
        {"RD7", "road/4"},
        {"HYD1A", "water/4"},
        {"HYD", "water/4"},
        {"TRACT1", ""},
        {"ZIP", ""},
        {"BLKGRP7", ""},
        {"BLK9", ""},
        {"Y-1", ""},
        {"CONTOUR", ""},
        {"LEGEND2", ""},
        {"NAME", ""},
        {"PEAK", ""},
        {"SPRAYBDY", "boundary/4"},
        {"UNLISTED", "boundary/4"},  // no row: the default class
        {"a41", "boundary/4"},       // names compare case-sensitively
    };
    for (const auto& c : cases) {
        EXPECT_EQ(Load(LwPolylineGroups(c.layer, kSquare)), c.expected) << "LWPOLYLINE on " << c.layer;
        EXPECT_EQ(Load(PolylineGroups(c.layer, kSquare)), c.expected) << "POLYLINE on " << c.layer;
    }
}

TEST(DxfLayerClasses, NumberedLayersKeepTheClassBeforeThem) {
    const struct {
        const char* name;
        std::string body;
        const char* expected;
    } cases[] = {
        {"water then 0", LwPolylineGroups("H12", kSquare) + "|" + LwPolylineGroups("0", kSquare),
         "water/4 water/4"},
        {"road then 17", PolylineGroups("A41", kSquare) + "|" + PolylineGroups("17", kSquare),
         "road/4 road/4"},
        {"17 first is the default class", LwPolylineGroups("17", kSquare), "boundary/4"},
        {"a skipped layer still classifies",
         LwPolylineGroups("A41", kSquare) + "|" + LwPolylineGroups("ZIP", kSquare) + "|" +
             LwPolylineGroups("0", kSquare),
         "road/4 boundary/4"},
        {"contour layers do not classify",
         LwPolylineGroups("A41", kSquare) + "|" + LwPolylineGroups("CONTOUR", kSquare) + "|" +
             LwPolylineGroups("0", kSquare),
         "road/4 road/4"},
        {"after NAME the line is dropped",
         LwPolylineGroups("NAME", kSquare) + "|" + LwPolylineGroups("0", kSquare), ""},
    };
    for (const auto& c : cases) EXPECT_EQ(Load(c.body), c.expected) << c.name;
}

TEST(DxfTables, EveryRowIsReachableByItsOwnPrefix) {
    ASSERT_EQ(s_iLayerClassCount, 226);
    ASSERT_EQ(s_iTagClassCount, 11);
    // An earlier row that is a prefix of a later one would hide it.
    for (int i = 0; i < s_iLayerClassCount; ++i)
        EXPECT_EQ(FindDxfLayerClass(s_aLayerClasses[i].szPrefix), &s_aLayerClasses[i])
            << s_aLayerClasses[i].szPrefix;
    for (int i = 0; i < s_iTagClassCount; ++i)
        EXPECT_EQ(FindDxfTagClass(s_aTagClasses[i].szPrefix), &s_aTagClasses[i]) << s_aTagClasses[i].szPrefix;
}

TEST(DxfEntities, RulesOfEachEntity) {
    const std::string lwClosed = LwPolylineGroups("A41", kSquare, 1);
    const std::string vertexFlag =
        "0 POLYLINE|8 F30|66 1|70 0|0 VERTEX|8 F30|70 1|10 10.5|20 45.2|0 VERTEX|8 F30|10 10.6|"
        "20 45.2|0 VERTEX|8 F30|10 10.6|20 45.3|0 SEQEND|8 F30";
    const std::string bulgeLate =
        "0 POLYLINE|8 F30|66 1|70 1|0 VERTEX|8 F30|70 1|10 10.5|20 45.2|0 VERTEX|8 F30|10 10.6|"
        "20 45.2|0 VERTEX|8 F30|42 0.95|10 10.6|20 45.3|0 SEQEND|8 F30";
    const std::string bulgeSmall =
        "0 POLYLINE|8 F30|66 1|0 VERTEX|8 F30|70 1|10 10.5|20 45.2|0 VERTEX|8 F30|42 0.9|"
        "10 10.6|20 45.2|0 VERTEX|8 F30|10 10.6|20 45.3|0 SEQEND|8 F30";
    // The bulge of the first vertex carries over and reopens the ring at every later vertex.
    const std::string bulgeCarried =
        "0 POLYLINE|8 F30|66 1|0 VERTEX|8 F30|42 1|10 10.5|20 45.2|0 VERTEX|8 F30|10 10.6|"
        "20 45.2|0 VERTEX|8 F30|70 1|10 10.6|20 45.3|0 SEQEND|8 F30";
    const std::string paperLine = "0 LINE|67 1|8 A41|10 10.5|20 45.2|11 10.6|21 45.3";
    const std::string paperLw = "0 LWPOLYLINE|67 1|8 A41|90 2|10 10.5|20 45.2|10 10.6|20 45.3";
    const std::string line = LineGroups("A41", {10.5, 45.2}, {10.6, 45.3});
    const struct {
        const char* name;
        std::string body;
        const char* expected;
    } cases[] = {
        {"line", line, "generic/2"},
        {"line on a skipped layer", LineGroups("ZIP", {10.5, 45.2}, {10.6, 45.3}), ""},
        {"line ignores the layer's class", LineGroups("NAME", {10.5, 45.2}, {10.6, 45.3}), "generic/2"},
        {"line near (0, 0)", LineGroups("A41", {0.5, 0.5}, {10.6, 45.3}), ""},
        {"vertex near (0, 0) dropped", PolylineGroups("F30", {{10.5, 45.2}, {0.5, 0.5}, {10.6, 45.3}}),
         "boundary/2"},
        {"polyline header flag alone leaves it open", PolylineGroups("F30", kSquare, 1), "boundary/4"},
        {"vertex flag closes", vertexFlag, "boundary/4"},
        {"bulge above 0.9 reopens", bulgeLate, "boundary/3"},
        {"bulge of 0.9 keeps it closed", bulgeSmall, "boundary/4"},
        {"bulge carries over to later vertices", bulgeCarried, "boundary/3"},
        {"lightweight closed", lwClosed, "road/5"},
        {"lightweight open", LwPolylineGroups("A41", kSquare, 0), "road/4"},
        {"lightweight second vertex rejected",
         "0 LWPOLYLINE|8 A41|90 4|10 10.5|20 45.2|10 0.5|20 0.5|10 10.6|20 45.3|10 10.5|20 45.3", "road/3"},
        {"lightweight last vertex rejected",
         "0 LWPOLYLINE|8 A41|90 3|10 10.5|20 45.2|10 10.6|20 45.3|10 0.5|20 0.5", "road/2"},
        {"lightweight count far above its vertices",
         "0 LWPOLYLINE|8 A41|90 10000000|10 10.5|20 45.2|10 10.6|20 45.3|10 10.5|20 45.3", "road/3"},
        {"paper-space line", paperLine, ""},
        {"paper-space lightweight polyline", paperLw, ""},
        {"attributed insert takes the last attribute",
         InsertGroups({{"ZIP", "55401", "10.7", "45.4"}, {"TGR_NAME", "Main Street", "10.8", "45.5"}}),
         "m56:Main Street@45.5,10.8"},
        {"attribute tag without a row", InsertGroups({{"ZIP", "55401", "10.7", "45.4"}}), ""},
        {"insert ending on a skipped layer",
         InsertGroups({{"TGR_NAME", "Main Street", "10.8", "45.5"}}, "ZIP"), ""},
        {"church symbol", InsertGroups({{"NM-CHURCH", "St Mary", "10.8", "45.5"}}), "m52:St Mary@45.5,10.8"},
        {"bare NM row", InsertGroups({{"NM-LAKE", "Pond", "10.8", "45.5"}}), "m56:Pond@45.5,10.8"},
        {"tic symbol", InsertGroups({{"TIC", "", "10.8", "45.5"}}), "m2:@45.5,10.8"},
        {"attribute near (0, 0)", InsertGroups({{"TGR_NAME", "x", "0.2", "0.3"}}), ""},
        {"insert without attributes", "0 INSERT|8 0|2 SYMBOL|10 10.1|20 45.1|" + line, "generic/2"},
        {"a skipped lightweight polyline takes no later vertices",
         "0 LWPOLYLINE|8 ZIP|90 2|10 10.5|20 45.2|10 10.6|20 45.3|" + line + "|" + line,
         "generic/2 generic/2"},
        {"an insert after a skipped polyline",
         PolylineGroups("ZIP", kSquare) + "|" + InsertGroups({{"TGR_NAME", "Main Street", "10.8", "45.5"}}),
         "m56:Main Street@45.5,10.8"},
        {"points, solids, texts and arcs are skipped",
         "0 POINT|8 A41|10 10.5|20 45.2|0 SOLID|8 A41|10 10.5|20 45.2|0 TEXT|8 A41|10 10.5|20 45.2|1 hi|0 "
         "ARC|8 A41|"
         "10 10.5|20 45.2|40 1",
         ""},
    };
    for (const auto& c : cases) EXPECT_EQ(Load(c.body), c.expected) << c.name;
}

TEST(DxfEntities, PositionsAreLongitudeThenLatitude) {
    TMapLayer layer;
    ASSERT_EQ(LoadDxfText(DxfWithEntities(LineGroups("A41", {10.5, 45.2}, {10.6, 45.3})), layer), 0);
    ASSERT_EQ(layer.GetElementCount(), 1);
    const auto* line = static_cast<const TFeatureLine*>(layer.m_Elements[0]);
    ASSERT_EQ(line->m_iNumPoints, 2);
    EXPECT_DOUBLE_EQ(line->m_pPoints[0].dLat, 45.2);
    EXPECT_DOUBLE_EQ(line->m_pPoints[0].dLon, 10.5);
    EXPECT_DOUBLE_EQ(line->m_pPoints[1].dLat, 45.3);
    EXPECT_DOUBLE_EQ(line->m_pPoints[1].dLon, 10.6);
    EXPECT_EQ(line->GetLowBits(), 0);
    EXPECT_EQ(layer.m_Polygons.size(), 1u);
}

TEST(DxfSections, OnlyBlocksAndEntitiesAreRead) {
    const std::string line = LineGroups("A41", {10.5, 45.2}, {10.6, 45.3});
    const struct {
        const char* name;
        std::string text;
        const char* expected;
    } cases[] = {
        {"header", DxfGroups("0 SECTION|2 HEADER|" + line + "|0 ENDSEC|0 EOF"), ""},
        {"tables", DxfGroups("0 SECTION|2 TABLES|" + line + "|0 ENDSEC|0 EOF"), ""},
        {"objects", DxfGroups("0 SECTION|2 OBJECTS|" + line + "|0 ENDSEC|0 EOF"), ""},
        {"outside any section", DxfGroups(line + "|0 EOF"), ""},
        {"blocks at geographic positions", DxfGroups("0 SECTION|2 BLOCKS|" + line + "|0 ENDSEC|0 EOF"),
         "generic/2"},
        {"blocks in drawing units",
         DxfGroups("0 SECTION|2 BLOCKS|0 BLOCK|2 B|10 0|20 0|" + LineGroups("A41", {0, 0}, {0.5, 0.5}) +
                   "|0 ENDBLK|0 ENDSEC|0 EOF"),
         ""},
        {"ENDSEC does not end a section", DxfGroups("0 SECTION|2 ENTITIES|0 ENDSEC|" + line + "|0 EOF"),
         "generic/2"},
    };
    for (const auto& c : cases) {
        TMapLayer layer;
        EXPECT_EQ(LoadDxfText(c.text, layer), 0) << c.name;
        EXPECT_EQ(DescribeLayer(layer), c.expected) << c.name;
    }
}

TEST(DxfLines, LineEndsAndCodePaddingDoNotMatter) {
    const std::string body = LwPolylineGroups("A41", kSquare, 1) + "|" + PolylineGroups("H12", kSquare) +
                             "|" + InsertGroups({{"TGR_NAME", "Main Street", "10.8", "45.5"}}) + "|" +
                             LineGroups("0", {10.5, 45.2}, {10.6, 45.3});
    const char* expected = "road/5 water/4 m56:Main Street@45.5,10.8 generic/2";
    const struct {
        const char* name;
        const char* eol;
        int width;
    } cases[] = {
        {"LF", "\n", 3}, {"CR LF", "\r\n", 3}, {"unpadded codes", "\n", 0}, {"wide codes", "\r\n", 8}};
    for (const auto& c : cases) {
        TMapLayer layer;
        EXPECT_EQ(LoadDxfText(DxfWithEntities(body, c.eol, c.width), layer), 0) << c.name;
        EXPECT_EQ(DescribeLayer(layer), expected) << c.name;
    }
}

TEST(DxfProjected, TheQuestionStopsOrSkips) {
    const std::string utmLine = LineGroups("A41", {500000, 5000000}, {500100, 5000100});
    const std::string line = LineGroups("A41", {10.5, 45.2}, {10.6, 45.3});
    const struct {
        const char* name;
        std::string text;
        std::vector<int> answers;
        int result;
        std::size_t questions;
        const char* expected;
    } cases[] = {
        {"line, Yes stops",
         DxfWithEntities(line + "|" + utmLine + "|" + line),
         {IDYES},
         6001,
         1,
         "generic/2"},
        {"line, No asks again",
         DxfWithEntities(utmLine + "|" + utmLine + "|" + line),
         {IDNO, IDNO},
         0,
         2,
         "generic/2"},
        {"lightweight vertex, Yes",
         DxfWithEntities(LwPolylineGroups("A41", {{10.5, 45.2}, {500000, 5000000}})),
         {IDYES},
         6001,
         1,
         ""},
        {"lightweight vertex, No keeps the rest",
         DxfWithEntities(LwPolylineGroups("A41", {{10.5, 45.2}, {500000, 5000000}, {10.6, 45.3}})),
         {IDNO},
         0,
         1,
         "road/2"},
        {"insert, Yes",
         DxfWithEntities(InsertGroups({{"TGR_NAME", "x", "500000", "5000000"}})),
         {IDYES},
         6001,
         1,
         ""},
        {"polyline vertices are never asked about",
         DxfWithEntities(PolylineGroups("F30", {{500000, 5000000}})),
         {},
         0,
         0,
         ""},
        {"out of range but small is skipped quietly",
         DxfWithEntities(LineGroups("A41", {10, 95}, {10, 45})),
         {},
         0,
         0,
         ""},
        // The load's result is that of its last line: here the code line after a skipped line.
        {"a skipped line as the last entity",
         DxfGroups("0 SECTION|2 ENTITIES|" + LineGroups("A41", {10, 95}, {10, 45})) + "  0\n",
         {},
         2,
         0,
         ""},
        {"No on the last entity", DxfGroups("0 SECTION|2 ENTITIES|" + utmLine) + "  0\n", {IDNO}, 1, 1, ""},
    };
    for (const auto& c : cases) {
        TScriptedMessages messages(c.answers);
        TMapLayer layer;
        EXPECT_EQ(LoadDxfText(c.text, layer), c.result) << c.name;
        std::size_t questions = 0;
        for (const TMessageBoxRequest& r : messages.Shown()) questions += r.IsQuestion() && r.iTextId == 2039;
        EXPECT_EQ(questions, c.questions) << c.name;
        EXPECT_EQ(DescribeLayer(layer), c.expected) << c.name;
    }
}

TEST(DxfFileNames, ExtensionDecides) {
    const struct {
        const char* path;
        bool valid;
    } cases[] = {{"field.dxf", true}, {"FIELD.Dxf", true},      {"C:\\data.old\\x.DXF", true},
                 {"field", false},    {"field.dxf.bak", false}, {"field.", false}};
    for (const auto& c : cases) EXPECT_EQ(TGisFileDxf::IsValidFile(c.path), c.valid) << c.path;
}

TEST(DxfLoad, MissingFileAndLoadingAddsToTheLayer) {
    TMapLayer layer;
    TGisFileDxf reader;
    EXPECT_EQ(reader.LoadFile("/nonexistent/field.dxf", &layer, nullptr), GISFILE_ERR_OPEN);
    const std::string text = DxfWithEntities(LineGroups("A41", {10.5, 45.2}, {10.6, 45.3}));
    ASSERT_EQ(LoadDxfText(text, layer), 0);
    ASSERT_EQ(LoadDxfText(text, layer), 0);
    EXPECT_EQ(DescribeLayer(layer), "generic/2 generic/2");
}

}  // namespace

namespace {
std::vector<int> g_Progress;
void RecordProgress(int value) {
    g_Progress.push_back(value);
}

TEST(DxfLoad, ProgressFollowsEveryLine) {
    const std::string line = LineGroups("A41", {10.5, 45.2}, {10.6, 45.3});
    const struct {
        const char* name;
        std::string text;
    } cases[] = {
        {"under 100 bytes", DxfGroups("0 SECTION|2 ENTITIES|0 ENDSEC|0 EOF")},
        {"150 bytes or so", DxfWithEntities(line)},
        {"several steps per line", DxfWithEntities(line, "\r\n")},
        {"many lines per step",
         DxfWithEntities(line + "|" + line + "|" + line + "|" + line + "|" + line + "|" + line + "|" + line +
                         "|" + line + "|" + line + "|" + line)},
    };
    for (const auto& c : cases) {
        // The values a report after each line gives: the position at each line end over the
        // step of one hundredth of the file, whenever it changes.
        const std::size_t size = c.text.size();
        const std::size_t step = size / 100 ? size / 100 : 100000;
        std::vector<int> expected;
        int last = 0;
        for (std::size_t i = 0; i < size; ++i) {
            if (c.text[i] != '\n') continue;
            const int value = static_cast<int>((i + 1) / step);
            if (value != last) expected.push_back(value);
            last = value;
        }
        TTempDir dir;
        const std::string path = dir.File("p.dxf");
        WriteFileBytes(path, c.text);
        g_Progress.clear();
        TMapLayer layer;
        TGisFileDxf reader;
        EXPECT_EQ(reader.LoadFile(path.c_str(), &layer, &RecordProgress), 0) << c.name;
        EXPECT_EQ(g_Progress, expected) << c.name;
    }
}
}  // namespace
