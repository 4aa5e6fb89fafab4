#include <gtest/gtest.h>

#include "pmh_test_support.h"

namespace {
struct TPolygonSeen {
    const char* id;
    int bound;
    double rate;
    int points;
};

struct TReadCase {
    const char* name;
    std::string text;
    std::vector<TPolygonSeen> polygons;
};

TEST(PmhReader, PolygonBlocks) {
    const std::string h = HeaderText();
    const TReadCase cases[] = {
        {"ids in file order, rings closed",
         h + SquareBlock("INC 5", 45.5, -93.3) + SquareBlock("INC 12.5", 45.6, -93.3) + ".END\n",
         {{"1", BOUNDARY_INC, 5, 5}, {"2", BOUNDARY_INC, 12.5, 5}}},
        {"EXC and OPEN blocks",
         h + SquareBlock("EXC 7.25", 45.5, -93.3) + SquareBlock("OPEN", 45.6, -93.3) + ".END\n",
         {{"1", BOUNDARY_EXC, 7.25, 5}, {"2", BOUNDARY_OPEN, 0, 4}}},
        {".polygon opens a block",
         h + SquareBlock("INC 3", 45.5, -93.3, ".polygon") + ".END\n",
         {{"1", BOUNDARY_INC, 3, 5}}},
        {".E ends the block but not the body",
         h + SquareBlock("INC 1", 45.5, -93.3) + ".E\n" + SquareBlock("INC 2", 45.6, -93.3),
         {{"1", BOUNDARY_INC, 1, 5}, {"2", BOUNDARY_INC, 2, 5}}},
        {".end in lower case ends the body",
         h + SquareBlock("INC 1", 45.5, -93.3) + ".end\n" + SquareBlock("INC 2", 45.6, -93.3),
         {{"1", BOUNDARY_INC, 1, 5}}},
        {"stray lines between blocks",
         h + "45.1 -93.1\nnote\n" + SquareBlock("INC 4", 45.5, -93.3) + ".XYZ\n45.2 -93.2\n.END\n",
         {{"1", BOUNDARY_INC, 4, 5}}},
        {"no .END", h + SquareBlock("INC 4", 45.5, -93.3), {{"1", BOUNDARY_INC, 4, 5}}},
        {"block without vertices",
         h + ".POL\nINC 9\n.POL\n.END\n",
         {{"1", BOUNDARY_INC, 9, 0}, {"2", BOUNDARY_INC, 0, 0}}},
        {"no polygons", h + ".END\n", {}},
        // Units 3 writes no line 31: the first ".POL" is taken for it, and that block's lines
        // are stray lines up to the next ".POL".
        {"units line missing",
         HeaderText("", "0.0000 0.0000 0.0000", nullptr) + SquareBlock("INC 1", 45.5, -93.3) +
             SquareBlock("INC 2", 45.6, -93.3) + ".END\n",
         {{"1", BOUNDARY_INC, 2, 5}}},
    };
    for (const TReadCase& c : cases) {
        for (const char* lineEnd : {"\n", "\r\n"}) {
            const std::string label = std::string(c.name) + (lineEnd[1] ? " (CR LF)" : " (LF)");
            TMapLayer layer;
            ASSERT_EQ(LoadPmhText(WithLineEnds(c.text, lineEnd), layer), GISFILE_OK) << label;
            ASSERT_EQ(layer.GetElementCount(), static_cast<int>(c.polygons.size())) << label;
            for (std::size_t i = 0; i < c.polygons.size(); ++i) {
                const auto* line = dynamic_cast<const TFeatureLineBoundary*>(layer.m_Elements[i]);
                ASSERT_NE(line, nullptr) << label;
                EXPECT_EQ(line->m_strId, c.polygons[i].id) << label;
                EXPECT_EQ(line->m_iBoundType, c.polygons[i].bound) << label;
                EXPECT_EQ(line->m_dValue, c.polygons[i].rate) << label;
                EXPECT_EQ(line->m_iNumPoints, c.polygons[i].points) << label;
            }
        }
    }
}

TEST(PmhReader, HeaderValues) {
    const std::string text =
        "  NORTH FIELD 12.5 HA 3.25 L \t\n45.12345678\n-93.5\n0.0001250000\n0.0000900000\n120\n-7\n2\n10\n"
        "GLYPHOSATE 2 L   \n\n\n\n\n\n\n\n\n\n17.5000 5.0000 30.0000\n0.0000 0.0000 0.0000\n0.0000 0.0000 "
        "0.0000\n\n\n\n\n\n\n\nZONES\t \n10 KG / HECTARE\n.END\n";
    for (const char* lineEnd : {"\n", "\r\n"}) {
        TMapLayer layer;
        ASSERT_EQ(LoadPmhText(WithLineEnds(text, lineEnd), layer), GISFILE_OK) << lineEnd[1];
        EXPECT_EQ(layer.m_strPmhField1, "NORTH FIELD");
        EXPECT_EQ(layer.m_dPmhField2, 12.5);
        EXPECT_EQ(layer.m_strPmhField3, "HA");
        EXPECT_EQ(layer.m_dPmhField4, 3.25);
        EXPECT_EQ(layer.m_strPmhField5, "L");
        EXPECT_EQ(layer.m_dPmhLine2, 45.12345678);
        EXPECT_EQ(layer.m_dPmhLine3, -93.5);
        EXPECT_EQ(layer.m_dPmhLine4, 0.000125);
        EXPECT_EQ(layer.m_dPmhLine5, 0.00009);
        EXPECT_EQ(layer.m_iPmhLine6, 120);
        EXPECT_EQ(layer.m_iPmhLine7, -7);
        EXPECT_EQ(layer.m_strPmhLine10, "GLYPHOSATE 2 L");
        EXPECT_EQ(layer.m_dRateMid, 17.5);
        EXPECT_EQ(layer.m_dRateMin, 5.0);
        EXPECT_EQ(layer.m_dRateMax, 30.0);
        EXPECT_EQ(layer.m_strPmhLine30, "ZONES");
        EXPECT_EQ(layer.m_iRateUnits, 10);
    }
}

TEST(PmhReader, TitleLineFields) {
    struct TCase {
        const char* line;
        const char* field1;
        double field2;
        const char* field3;
        double field4;
        const char* field5;
    };
    const TCase cases[] = {
        {"", "", 0, "", 0, ""},
        {"A FARM NAME 40 HA 2.5 L", "A FARM NAME", 40, "HA", 2.5, "L"},
        {"HA 2 L", "", 0, "HA", 2, "L"},
        {"L", "", 0, "", 0, "L"},
        // Blanks are not collapsed: the doubled blank leaves "X " for the first field.
        {"X  1 Y 2 Z", "X ", 1, "Y", 2, "Z"},
        {"A 1 B 2  Z", "A 1", 0, "2", 0, "Z"},
        {"F abc G 1e3x H", "F", 0, "G", 1000, "H"},
    };
    for (const TCase& c : cases) {
        TMapLayer layer;
        ASSERT_EQ(LoadPmhText(HeaderText(c.line) + ".END\n", layer), GISFILE_OK) << c.line;
        EXPECT_EQ(layer.m_strPmhField1, c.field1) << c.line;
        EXPECT_EQ(layer.m_dPmhField2, c.field2) << c.line;
        EXPECT_EQ(layer.m_strPmhField3, c.field3) << c.line;
        EXPECT_EQ(layer.m_dPmhField4, c.field4) << c.line;
        EXPECT_EQ(layer.m_strPmhField5, c.field5) << c.line;
    }
}

TEST(PmhReader, RateAndUnitsLines) {
    struct TCase {
        const char* line20;
        const char* line31;
        double mid, min, max;
        int units;
    };
    const TCase cases[] = {
        {"12", "8", 12, 0, 0, 8},
        {"1 2", "2 LBS / ACRE", 1, 2, 0, 2},
        {"abc 2 3", "LBS 2", 0, 2, 3, 0},
        {"1  2 3", " 8 LITRES", 1, 0, 2, 0},
        {"-1.5 -2.5 -3.5 9", "1x", -1.5, -2.5, -3.5, 1},
    };
    for (const TCase& c : cases) {
        TMapLayer layer;
        ASSERT_EQ(LoadPmhText(HeaderText("", c.line20, c.line31), layer), GISFILE_OK) << c.line20;
        EXPECT_EQ(layer.m_dRateMid, c.mid) << c.line20;
        EXPECT_EQ(layer.m_dRateMin, c.min) << c.line20;
        EXPECT_EQ(layer.m_dRateMax, c.max) << c.line20;
        EXPECT_EQ(layer.m_iRateUnits, c.units) << c.line31;
    }
}
}  // namespace
