#include <gtest/gtest.h>

#include <filesystem>

#include "../config_folder_guard.h"
#include "gis/line_assembly.h"
#include "pmh_test_support.h"

namespace {
// The layer of three_rates.pmh: header values, three line features of three kinds and bound
// types, and a marker, which has no place in the file.
void BuildGoldenLayer(TMapLayer& layer) {
    layer.m_strPmhField1 = "never written";
    layer.m_dPmhField2 = 3.5;
    layer.m_dPmhLine2 = 45.5;
    layer.m_dPmhLine3 = -93.25;
    layer.m_dPmhLine4 = 0.0001;
    layer.m_dPmhLine5 = 0.000125;
    layer.m_iPmhLine6 = 120;
    layer.m_iPmhLine7 = 80;
    layer.m_strPmhLine10 = "GLYPHOSATE 2 L";
    layer.m_strPmhLine30 = "NORTH BLOCK";
    layer.m_iRateUnits = 8;
    layer.m_dRateMid = layer.m_dRateMin = layer.m_dRateMax = 99.0;  // recomputed by the writer
    AddRatePolygon(layer, 5.0, {{45.5, -93.25}, {45.51, -93.25}, {45.51, -93.24}, {45.5, -93.25}});
    auto* marker = new TFeatureMarker;
    marker->m_dValue = 1000.0;
    marker->m_Loc = TLoc(45.4, -93.4);
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
    // The extension is always written in lower case.
    ASSERT_EQ(WritePmh(layer, bytes, "Rates.PMH"), GISFILE_OK);
    EXPECT_EQ(bytes, ReadFileBytes(std::string(TL_GIS_SOURCE_DIR) + "/tests/data/pmh/three_rates.pmh"));
    EXPECT_TRUE(messages.Shown().empty());
    EXPECT_EQ(layer.m_dRateMid, 17.5);
    EXPECT_EQ(layer.m_dRateMin, 5.0);
    EXPECT_EQ(layer.m_dRateMax, 30.0);
}

TEST(PmhWriter, ReadsBackWhatItWrote) {
    TMapLayer original;
    BuildGoldenLayer(original);
    std::string bytes;
    ASSERT_EQ(WritePmh(original, bytes), GISFILE_OK);
    TMapLayer layer;
    ASSERT_EQ(LoadPmhText(bytes, layer), GISFILE_OK);

    // Line 1 is written blank, so its fields come back empty.
    EXPECT_EQ(layer.m_strPmhField1, "");
    EXPECT_EQ(layer.m_dPmhField2, 0.0);
    EXPECT_EQ(layer.m_dPmhLine2, original.m_dPmhLine2);
    EXPECT_EQ(layer.m_dPmhLine3, original.m_dPmhLine3);
    EXPECT_EQ(layer.m_dPmhLine4, original.m_dPmhLine4);
    EXPECT_EQ(layer.m_dPmhLine5, original.m_dPmhLine5);
    EXPECT_EQ(layer.m_iPmhLine6, original.m_iPmhLine6);
    EXPECT_EQ(layer.m_iPmhLine7, original.m_iPmhLine7);
    EXPECT_EQ(layer.m_strPmhLine10, original.m_strPmhLine10);
    EXPECT_EQ(layer.m_strPmhLine30, original.m_strPmhLine30);
    EXPECT_EQ(layer.m_iRateUnits, original.m_iRateUnits);
    EXPECT_EQ(layer.m_dRateMid, 17.5);

    // Every line comes back as an inclusion with its rate, in order, ids counting from 1.
    std::vector<const TFeatureLine*> written;
    for (const TMapElement* e : original.m_Elements)
        if (const auto* line = dynamic_cast<const TFeatureLine*>(e)) written.push_back(line);
    ASSERT_EQ(layer.GetElementCount(), static_cast<int>(written.size()));
    for (std::size_t i = 0; i < written.size(); ++i) {
        const auto* line = dynamic_cast<const TFeatureLine*>(layer.m_Elements[i]);
        ASSERT_NE(line, nullptr) << i;
        EXPECT_EQ(line->m_strId, std::to_string(i + 1));
        EXPECT_EQ(line->m_iBoundType, BOUNDARY_INC) << i;
        EXPECT_EQ(line->m_dValue, written[i]->m_dValue) << i;
        // Open lines come back closed.
        const int n = written[i]->m_iNumPoints;
        const bool closed = written[i]->m_pPoints[0].dLat == written[i]->m_pPoints[n - 1].dLat &&
                            written[i]->m_pPoints[0].dLon == written[i]->m_pPoints[n - 1].dLon;
        ASSERT_EQ(line->m_iNumPoints, closed ? n : n + 1) << i;
        for (int v = 0; v < n; ++v) {
            EXPECT_NEAR(line->m_pPoints[v].dLat, written[i]->m_pPoints[v].dLat, 5e-9) << i << " vertex " << v;
            EXPECT_NEAR(line->m_pPoints[v].dLon, written[i]->m_pPoints[v].dLon, 5e-9) << i << " vertex " << v;
        }
    }
}

TEST(PmhWriter, RateLine) {
    struct TCase {
        const char* name;
        std::vector<double> rates;
        const char* line20;
    };
    const TCase cases[] = {
        {"all rates 20", {20, 20, 20}, "10.0000 0.0000 20.0000"},
        {"rates 5, 12.5, 30", {12.5, 5, 30}, "17.5000 5.0000 30.0000"},
        {"one rate", {7}, "3.5000 0.0000 7.0000"},
        {"negative rate", {-4, 6}, "1.0000 -4.0000 6.0000"},
        {"rates closer than 0.0001", {3, 3.00009}, "1.5000 0.0000 3.0001"},
        {"no polygons", {}, "0.0000 0.0000 0.0000"},
    };
    for (const TCase& c : cases) {
        TMapLayer layer;
        for (double rate : c.rates)
            AddRatePolygon(layer, rate, {{45.5, -93.25}, {45.51, -93.25}, {45.51, -93.24}});
        std::string bytes;
        ASSERT_EQ(WritePmh(layer, bytes), GISFILE_OK) << c.name;
        // Lines 1 to 19 take 102 + 2 and 18 further lines before line 20.
        std::size_t at = 0;
        for (int line = 1; line < 20; ++line) at = bytes.find("\r\n", at) + 2;
        EXPECT_EQ(bytes.substr(at, bytes.find("\r\n", at) - at), c.line20) << c.name;
    }
}

TEST(PmhWriter, UnitsLine) {
    struct TCase {
        int units;
        const char* tail;  // line 30 onwards
    };
    const TCase cases[] = {
        {1, "\r\n1 US GAL / ACRE\r\n.END\r\n"},      {2, "\r\n2 LBS / ACRE\r\n.END\r\n"},
        {8, "\r\n8 LITRES / HECTARE\r\n.END\r\n"},   {10, "\r\n10 KG / HECTARE\r\n.END\r\n"},
        {3, "0.0000 0.0000 0.0000\r\n\r\n.END\r\n"}, {0, "0.0000 0.0000 0.0000\r\n\r\n.END\r\n"},
    };
    for (const TCase& c : cases) {
        TMapLayer layer;
        layer.m_iRateUnits = c.units;
        std::string bytes;
        ASSERT_EQ(WritePmh(layer, bytes), GISFILE_OK) << c.units;
        const std::string tail(c.tail);
        EXPECT_EQ(bytes.substr(bytes.size() - tail.size()), tail) << "units " << c.units;
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
        const char* name;
        std::string path;
        int result;
        const char* message;
    };
    const TCase cases[] = {
        // Files that cannot be created: the standard file-error message.
        {"missing folder", dir.File("no/such/folder/a.pmh"), GISFILE_ERR_OPEN, "Cannot create "},
        {"a folder in the file's place", dir.File("folder.PMH"), GISFILE_ERR_OPEN, "Cannot create "},
        // Created, but the disk is full: the writer's own message.
        {"full disk", dir.File("full.pmh"), PMHFILE_ERR_WRITE, "The PMH file could not be written."},
    };
    for (const TCase& c : cases) {
        TScriptedMessages messages;
        TMapLayer layer;
        AddRatePolygon(layer, 5.0, {{45.5, -93.25}, {45.51, -93.25}, {45.51, -93.24}});
        TGisFilePmh pmh;
        EXPECT_EQ(pmh.WriteFile(c.path.c_str(), &layer), c.result) << c.name;
        ASSERT_EQ(messages.Shown().size(), 1u) << c.name;
        EXPECT_EQ(messages.Shown()[0].strText.rfind(c.message, 0), 0u)
            << c.name << ": " << messages.Shown()[0].strText;
        if (c.result == PMHFILE_ERR_WRITE) {
            EXPECT_EQ(messages.Shown()[0].iTextId, 3091) << c.name;
        }
    }
}
}  // namespace
