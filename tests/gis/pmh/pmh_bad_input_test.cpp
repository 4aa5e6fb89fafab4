#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "pmh_test_support.h"

namespace {
std::string Repeat(const std::string& piece, std::size_t bytes) {
    std::string s;
    while (s.size() < bytes) s += piece;
    return s;
}

// Random bytes without line ends: one long line.
std::string RandomLine(std::size_t n, unsigned seed) {
    std::mt19937 random(seed);
    std::string s(n, '\0');
    for (char& c : s) c = static_cast<char>(random() % 255 + 1 + (random() % 255 + 1 == '\n'));
    return s;
}

TEST(PmhBadInput, ResultCodesWithoutCrashing) {
    const std::string h = HeaderText(), body = h.substr(h.find('\n') + 1);
    const std::string a = SquareBlock("INC 5", 45.5, -93.3), b = SquareBlock("INC 6", 45.6, -93.3);
    const std::string mb = Repeat("45.5 -93.5 ", 1 << 20);
    const struct {
        const char* name;
        std::string text;
        int result;
        int elements;
        double line2;  // what line 2 leaves in the layer, also when the header is cut short
    } cases[] = {
        {"empty file", "", GISFILE_ERR_OPEN, 0, 0},
        {"header of 30 lines", HeaderText("", "0 0 0", nullptr), GISFILE_ERR_OPEN, 0, 0.5},
        {"polygons in a short header", h.substr(0, 20) + a + b, GISFILE_ERR_OPEN, 0, 0.5},
        {"CR line ends", "T\r0.5\r" + Repeat("0\r", 40) + a, GISFILE_ERR_OPEN, 0, 0},
        {"random bytes", RandomLine(5000, 1), GISFILE_ERR_OPEN, 0, 0},
        {"letters for numbers", "T\n" + Repeat("abc\n", 4 * 30) + a + b, GISFILE_OK, 2, 0},
        {"huge numbers",
         "T\n1e999\n1e308\n-1e999\n1e-999\n99999999999999\n-99999999999999\n" + Repeat("1e999\n", 6 * 24) + a,
         GISFILE_OK, 1, HUGE_VAL},
        {"NUL bytes", std::string("\0\n", 2) + body + std::string(".POL\0\n\0\n", 8) + a, GISFILE_OK, 2, 0.5},
        {"1 MB title line", mb + "\n" + body + a + b, GISFILE_OK, 2, 0.5},
        {"1 MB line between blocks", h + a + mb + "\n" + b, GISFILE_OK, 2, 0.5},
        {"1 MB line inside a block", h + a + "45.5 -93.3\n" + mb + "\n45.6 -93.3\n" + b, GISFILE_OK, 2, 0.5},
        {"garbage inside a block", h + ".POL\n" + RandomLine(100000, 3) + "\n" + b, GISFILE_OK, 2, 0.5},
    };
    for (const auto& c : cases) {
        TScriptedMessages messages(std::vector<int>(20, IDNO));
        TMapLayer layer;
        EXPECT_EQ(LoadPmhText(c.text, layer), c.result) << c.name;
        EXPECT_EQ(layer.GetElementCount(), c.elements) << c.name;
        EXPECT_EQ(layer.m_dPmhLine2, c.line2) << c.name;
        std::string bytes;
        EXPECT_EQ(WritePmh(layer, bytes), GISFILE_OK) << c.name << ": what was read can be written";
    }
}

TEST(PmhBadInput, TenMillionVerticesInOneBlock) {
    // Memory follows the vertices actually read; the block after the big one is still found.
    constexpr int kVertices = 10000000;
    TMapLayer layer;
    ASSERT_EQ(LoadPmhText(HeaderText() + ".POL\nINC 3\n" + Repeat("45 9\n", std::size_t{5} * kVertices) +
                              SquareBlock("INC 4", 45.5, -93.3),
                          layer),
              GISFILE_OK);
    ASSERT_EQ(layer.GetElementCount(), 2);
    const auto* big = dynamic_cast<const TFeatureLine*>(layer.m_Elements[0]);
    ASSERT_NE(big, nullptr);
    EXPECT_EQ(big->m_iNumPoints, kVertices);
    EXPECT_EQ(layer.m_Elements[1]->m_strId + " " + std::to_string(layer.m_Elements[1]->m_dValue),
              "2 4.000000");
}
}  // namespace
