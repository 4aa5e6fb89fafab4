#include <gtest/gtest.h>

#include <filesystem>

#include "../config_folder_guard.h"
#include "gis/line_assembly.h"
#include "pmh_test_support.h"

namespace {
// The layer of three_rates.pmh: header values, line features of three kinds and bound types, and
// a marker, which a rate map leaves out.
void BuildGoldenLayer(TMapLayer& layer) {
    layer.m_strPmhField1 = "never written";
    layer.m_dPmhLine2 = 45.5;
    layer.m_dPmhLine3 = -93.25;
    layer.m_dPmhLine4 = 0.0001;
    layer.m_dPmhLine5 = 0.000125;
    layer.m_iPmhLine6 = 120;
    layer.m_iPmhLine7 = 80;
    layer.m_strPmhLine10 = "GLYPHOSATE 2 L";
    layer.m_strPmhLine30 = "NORTH BLOCK";
    layer.m_iRateUnits = 8;
    AddRatePolygon(layer, 5.0, {{45.5, -93.25}, {45.51, -93.25}, {45.51, -93.24}, {45.5, -93.25}});
    auto* marker = new TFeatureMarker;
    marker->m_dValue = 1000.0;
    layer.AddElement(marker, ADD_ELEMENT_OWNED);
    AddRatePolygon(layer, 12.5, {{45.123456789, -93.0000004}, {45.13, -93.0000004}, {45.13, -92.99}},
                   BOUNDARY_EXC);
    const tagLOC open[] = {{45.6, -93.3}, {45.61, -93.3}, {45.61, -93.29}};
    layer.m_dValue = 30.0;
    AddImportedLine(&layer, static_cast<int>(ELEMENT_LINE_GENERIC), BOUNDARY_OPEN, 3, open, "G", false,
                    COLOR_NONE, false, false, false);
}

TEST(PmhWriter, MatchesHandWrittenFile) {
    TScriptedMessages messages;
    TMapLayer layer;
    BuildGoldenLayer(layer);
    std::string bytes;
    ASSERT_EQ(WritePmh(layer, bytes, "Rates.PMH"), GISFILE_OK);  // written as Rates.pmh
    EXPECT_EQ(bytes, ReadFileBytes(std::string(TL_GIS_SOURCE_DIR) + "/tests/data/pmh/three_rates.pmh"));
    EXPECT_TRUE(messages.Shown().empty());
    EXPECT_EQ(layer.m_dRateMid, 17.5) << "the writer keeps the statistics in the layer";
}

TEST(PmhWriter, ReadsBackWhatItWrote) {
    // Closed rings and header values: reading the file and writing it again gives the same bytes.
    TMapLayer original, layer;
    BuildGoldenLayer(original);
    original.m_Elements.resize(1);  // keep the closed ring only (the layer still owns the rest)
    AddRatePolygon(original, 0.12345678, {{-45.5, 170.25}, {-45.6, 170.25}, {-45.6, 170.3}, {-45.5, 170.25}});
    std::string bytes, again;
    ASSERT_EQ(WritePmh(original, bytes), GISFILE_OK);
    ASSERT_EQ(LoadPmhText(bytes, layer), GISFILE_OK);
    layer.m_dRateMid = layer.m_dRateMin = layer.m_dRateMax = -1.0;
    ASSERT_EQ(WritePmh(layer, again), GISFILE_OK);
    EXPECT_EQ(again, bytes);
    EXPECT_EQ(layer.m_strPmhField1 + "|" + layer.m_strPmhField3 + "|" + layer.m_strPmhField5, "||")
        << "line 1 is written blank";
    ASSERT_EQ(layer.GetElementCount(), 2);
    EXPECT_EQ(layer.m_Elements[1]->m_strId, "2");
}

TEST(PmhWriter, RateAndUnitsLines) {
    struct TCase {
        const char* name;
        std::vector<double> rates;
        int units;
        const char* line20;
        const char* tail;  // from line 30
    };
    const TCase cases[] = {
        {"all rates 20", {20, 20, 20}, 8, "10.0000 0.0000 20.0000", "\r\n8 LITRES / HECTARE\r\n.POL"},
        {"rates 5, 12.5, 30", {12.5, 5, 30}, 1, "17.5000 5.0000 30.0000", "\r\n1 US GAL / ACRE\r\n.POL"},
        {"rates closer than 0.0001", {3, 3.00009}, 10, "1.5000 0.0000 3.0001", "\r\n10 KG / HECTARE\r\n.POL"},
        {"no polygons, units 2", {}, 2, "0.0000 0.0000 0.0000", "\r\n2 LBS / ACRE\r\n.END"},
        {"units 3: no line 31", {-4, 6}, 3, "1.0000 -4.0000 6.0000", "0.0000\r\n\r\n.POL"},
    };
    for (const TCase& c : cases) {
        TMapLayer layer;
        layer.m_iRateUnits = c.units;
        for (double rate : c.rates)
            AddRatePolygon(layer, rate, {{45.5, -93.25}, {45.51, -93.25}, {45.51, -93.24}});
        std::string bytes;
        ASSERT_EQ(WritePmh(layer, bytes), GISFILE_OK) << c.name;
        std::size_t line20 = 0;
        for (int line = 1; line < 20; ++line) line20 = bytes.find("\r\n", line20) + 2;
        EXPECT_EQ(bytes.substr(line20, bytes.find('\r', line20) - line20), c.line20) << c.name;
        EXPECT_NE(bytes.find(std::string(c.tail)), std::string::npos) << c.name;
    }
}

TEST(PmhWriter, FileThatCannotBeWritten) {
    TConfigFolderGuard config(std::string(TL_GIS_SOURCE_DIR) + "/Config");
    TScriptedMessages quiet;
    GetTlGisApp().InitInstance();
    TTempDir dir;
    std::filesystem::create_directory(dir.File("folder.pmh"));
    std::filesystem::create_symlink("/dev/full", dir.File("full.pmh"));
    struct TCase {
        std::string path;
        int result;
        const char* message;
    };
    const TCase cases[] = {
        {dir.File("no/such/folder/a.pmh"), GISFILE_ERR_OPEN, "Cannot create "},
        {dir.File("folder.PMH"), GISFILE_ERR_OPEN, "Cannot create "},
        // Created, but the disk is full: the writer's own message, text 3091.
        {dir.File("full.pmh"), PMHFILE_ERR_WRITE, "The PMH file could not be written."},
    };
    for (const TCase& c : cases) {
        TScriptedMessages messages;
        TMapLayer layer;
        AddRatePolygon(layer, 5.0, {{45.5, -93.25}, {45.51, -93.25}, {45.51, -93.24}});
        EXPECT_EQ(TGisFilePmh().WriteFile(c.path.c_str(), &layer), c.result) << c.path;
        ASSERT_EQ(messages.Shown().size(), 1u) << c.path;
        EXPECT_EQ(messages.Shown()[0].strText.rfind(c.message, 0), 0u) << messages.Shown()[0].strText;
        EXPECT_EQ(messages.Shown()[0].iTextId, c.result == PMHFILE_ERR_WRITE ? 3091 : 0) << c.path;
    }
}
}  // namespace
