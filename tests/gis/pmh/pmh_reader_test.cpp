#include <gtest/gtest.h>

#include <tuple>

#include "gis/numbers.h"
#include "pmh_test_support.h"

namespace {
std::string WithCrLf(const std::string& text) {
    std::string out;
    for (char c : text) out += c == '\n' ? std::string("\r\n") : std::string(1, c);
    return out;
}

TEST(PmhReader, PolygonBlocks) {
    struct TSeen {
        int bound;
        double rate;
        int points;
    };
    struct TCase {
        const char* name;
        std::string text;
        std::vector<TSeen> polygons;  // ids are 1, 2, ... in this order
    };
    const std::string h = HeaderText();
    const TCase cases[] = {
        {"INC, EXC and OPEN blocks",
         h + SquareBlock("INC 5", 45.5, -93.3) + SquareBlock("EXC 7.25", 45.6, -93.3) +
             SquareBlock("OPEN", 45.7, -93.3) + ".END\n",
         {{BOUNDARY_INC, 5, 5}, {BOUNDARY_EXC, 7.25, 5}, {BOUNDARY_OPEN, 0, 4}}},
        {".polygon opens a block", h + SquareBlock("INC 3", 45.5, -93.3, ".polygon"), {{BOUNDARY_INC, 3, 5}}},
        {".E does not end the body",
         h + SquareBlock("INC 1", 45.5, -93.3) + ".E\n" + SquareBlock("INC 2", 45.6, -93.3),
         {{BOUNDARY_INC, 1, 5}, {BOUNDARY_INC, 2, 5}}},
        {".end does",
         h + SquareBlock("INC 1", 45.5, -93.3) + ".end\n" + SquareBlock("INC 2", 45.6, -93.3),
         {{BOUNDARY_INC, 1, 5}}},
        {"stray lines between blocks",
         h + "45.1 -93.1\n" + SquareBlock("INC 4", 45.5, -93.3) + ".XYZ\n45.2 -93.2\n",
         {{BOUNDARY_INC, 4, 5}}},
        {"blocks without vertices", h + ".POL\nINC 9\n.POL\n", {{BOUNDARY_INC, 9, 0}, {BOUNDARY_INC, 0, 0}}},
        // Without line 31 the first ".POL" is taken for it (units 0), and that block's lines are
        // stray lines up to the next ".POL".
        {"units line missing",
         HeaderText("", "0 0 0", nullptr) + SquareBlock("INC 1", 45.5, -93.3) +
             SquareBlock("INC 2", 45.6, -93.3),
         {{BOUNDARY_INC, 2, 5}}},
    };
    for (const TCase& c : cases) {
        for (const std::string& text : {c.text, WithCrLf(c.text)}) {
            const std::string label = std::string(c.name) + (text == c.text ? " (LF)" : " (CR LF)");
            TMapLayer layer;
            ASSERT_EQ(LoadPmhText(text, layer), GISFILE_OK) << label;
            ASSERT_EQ(layer.GetElementCount(), static_cast<int>(c.polygons.size())) << label;
            for (std::size_t i = 0; i < c.polygons.size(); ++i) {
                const auto* line = dynamic_cast<const TFeatureLineBoundary*>(layer.m_Elements[i]);
                ASSERT_NE(line, nullptr) << label;
                EXPECT_EQ(line->m_strId, std::to_string(i + 1)) << label;
                EXPECT_EQ(line->m_iBoundType, c.polygons[i].bound) << label;
                EXPECT_EQ(line->m_dValue, c.polygons[i].rate) << label;
                EXPECT_EQ(line->m_iNumPoints, c.polygons[i].points) << label;
            }
            EXPECT_EQ(layer.m_iRateUnits, c.text.find("LITRES") != std::string::npos ? 8 : 0) << label;
        }
    }
}

TEST(PmhReader, HeaderLines) {
    struct TCase {
        const char* line1;
        const char* line20;
        const char* line31;
        std::string fields1;  // the five fields of line 1, joined by '|'
        double mid, min, max;
        int units;
    };
    const TCase cases[] = {
        {"  A FARM 40 HA 2.5 L \t", "17.5 5 30", "10 KG / HECTARE", "A FARM|40|HA|2.5|L", 17.5, 5, 30, 10},
        {"HA 2 L", "12", "2 LBS / ACRE", "|0|HA|2|L", 12, 0, 0, 2},
        // Blanks are not collapsed: a doubled blank leaves an empty field.
        {"X  1 Y 2 Z", "1  2 3", " 8 LITRES", "X |1|Y|2|Z", 1, 0, 2, 0},
        {"A 1 B 2  Z", "abc 2 3 4", "1x", "A 1|0|2|0|Z", 0, 2, 3, 1},
    };
    for (const TCase& c : cases) {
        TMapLayer layer;
        ASSERT_EQ(LoadPmhText(HeaderText(c.line1, c.line20, c.line31), layer), GISFILE_OK) << c.line1;
        EXPECT_EQ(layer.m_strPmhField1 + "|" + FormatRoundTrip(layer.m_dPmhField2) + "|" +
                      layer.m_strPmhField3 + "|" + FormatRoundTrip(layer.m_dPmhField4) + "|" +
                      layer.m_strPmhField5,
                  c.fields1);
        EXPECT_EQ(std::tie(layer.m_dRateMid, layer.m_dRateMin, layer.m_dRateMax),
                  std::tie(c.mid, c.min, c.max))
            << c.line20;
        EXPECT_EQ(layer.m_iRateUnits, c.units) << c.line31;
        EXPECT_EQ(layer.m_dPmhLine2, 0.5) << c.line1;
        EXPECT_EQ(layer.m_strPmhLine10 + "|" + layer.m_strPmhLine30, "PRODUCT|MAP") << c.line1;
    }
}
}  // namespace
