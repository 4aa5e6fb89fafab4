#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "pmh_test_support.h"

namespace {
// Random bytes without line ends: one long line.
std::string RandomLine(std::size_t n, unsigned seed) {
    std::mt19937 random(seed);
    std::string s(n, '\0');
    for (char& c : s) {
        c = static_cast<char>(random() & 0xFF);
        if (c == '\n') c = 'n';
    }
    return s;
}

std::string Repeat(const std::string& piece, std::size_t bytes) {
    std::string s;
    while (s.size() < bytes) s += piece;
    return s;
}

struct TBadCase {
    const char* name;
    std::string text;
    int result;
    int elements;  // -1: not checked
    double line2;  // the value line 2 leaves in the layer
};

TEST(PmhBadInput, ResultCodesWithoutCrashing) {
    const std::string h = HeaderText();
    const std::string a = SquareBlock("INC 5", 45.5, -93.3), b = SquareBlock("INC 6", 45.6, -93.3);
    std::string shortHeader = HeaderText("T 1 U 2 V");
    shortHeader.replace(shortHeader.find("0.00000000"), 10, "45.5");
    shortHeader.resize(shortHeader.size() - std::string("\n8 LITRES / HECTARE\n").size());
    const std::string letters = "T\n" + Repeat("abc\n", 6 * 4).substr(0, 6 * 4) + "abc\n2\n10\n\n" +
                                std::string(9, '\n') + "abc def ghi\n" +
                                Repeat("abc\n", 9 * 4).substr(0, 9 * 4) + "\nLITRES / HECTARE\n";
    const std::string megaLine = Repeat("45.5 -93.5 ", 1 << 20);
    const TBadCase cases[] = {
        {"empty file", "", GISFILE_ERR_OPEN, 0, 0},
        {"only line ends", Repeat("\r\n", 80), GISFILE_OK, 0, 0},
        {"header of 30 lines", shortHeader, GISFILE_ERR_OPEN, 0, 45.5},
        {"polygons inside a short header", shortHeader.substr(0, 40) + a + b, GISFILE_ERR_OPEN, 0, 45.5},
        {"CR line ends only", WithLineEnds(h + a, "\r"), GISFILE_ERR_OPEN, 0, 0},
        {"random bytes", RandomLine(5000, 1), GISFILE_ERR_OPEN, 0, 0},
        {"letters for every number", letters + a, GISFILE_OK, 1, 0},
        {"huge numbers",
         "T\n1e999\n-1e999\n1e-999\n1e308\n99999999999999\n-99999999999999\n" + h.substr(h.find("2\n10\n")) +
             a,
         GISFILE_OK, 1, HUGE_VAL},
        {"NUL bytes",
         std::string("\0\0\n", 3) + h.substr(h.find('\n') + 1) + std::string(".POL\0\n\0\n", 8) + a,
         GISFILE_OK, 2, 0},
        {"1 MB title line", megaLine + "\n" + h.substr(h.find('\n') + 1) + a + b, GISFILE_OK, 2, 0},
        {"1 MB line between blocks", h + a + megaLine + "\n" + b, GISFILE_OK, 2, 0},
        {"1 MB line inside a block", h + a + "45.5 -93.3\n" + megaLine + "\n45.6 -93.3\n" + b, GISFILE_OK, 2,
         0},
        {"garbage after the header", h + RandomLine(200000, 2) + "\n" + a, GISFILE_OK, 1, 0},
        {"garbage inside a block", h + ".POL\n" + RandomLine(100000, 3) + "\n" + b, GISFILE_OK, 2, 0},
    };
    for (const TBadCase& c : cases) {
        TScriptedMessages messages(std::vector<int>(20, IDNO));
        TMapLayer layer;
        EXPECT_EQ(LoadPmhText(c.text, layer), c.result) << c.name;
        if (c.elements >= 0) {
            EXPECT_EQ(layer.GetElementCount(), c.elements) << c.name;
        }
        EXPECT_EQ(layer.m_dPmhLine2, c.line2) << c.name;
        // Whatever was read can be written again.
        std::string bytes;
        EXPECT_EQ(WritePmh(layer, bytes), GISFILE_OK) << c.name;
    }
}

TEST(PmhBadInput, MissingFile) {
    TMapLayer layer;
    TGisFilePmh pmh;
    EXPECT_EQ(pmh.LoadFile("/nonexistent-folder/rates.pmh", &layer, nullptr), GISFILE_ERR_OPEN);
    EXPECT_EQ(pmh.LoadFile("/nonexistent-folder/rates.pmh", nullptr, nullptr), GISFILE_ERR_OPEN);
}

TEST(PmhBadInput, TenMillionVerticesInOneBlock) {
    // Memory follows the vertices actually read; the block after the big one is still found.
    constexpr int kVertices = 10000000;
    const std::string text = HeaderText() + ".POL\nINC 3\n" + Repeat("45 9\n", std::size_t{5} * kVertices) +
                             SquareBlock("INC 4", 45.5, -93.3) + ".END\n";
    TMapLayer layer;
    ASSERT_EQ(LoadPmhText(text, layer), GISFILE_OK);
    const struct {
        const char* id;
        int points;
        double rate;
    } expected[] = {{"1", kVertices, 3.0}, {"2", 5, 4.0}};
    ASSERT_EQ(layer.GetElementCount(), 2);
    for (int i = 0; i < 2; ++i) {
        const auto* line = dynamic_cast<const TFeatureLine*>(layer.m_Elements[i]);
        ASSERT_NE(line, nullptr) << i;
        EXPECT_EQ(line->m_strId, expected[i].id);
        EXPECT_EQ(line->m_iNumPoints, expected[i].points) << i;
        EXPECT_EQ(line->m_dValue, expected[i].rate) << i;
    }
}
}  // namespace
