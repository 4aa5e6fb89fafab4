#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <tuple>

#include <tl_gis/gis/line_assembly.h>
#include <tl_gis/gis/pmh/gis_file_pmh.h>
#include <tl_gis/platform/numbers.h>
#include "../config_folder_guard.h"
#include "load_report_check.h"
#include "test_support.h"

namespace {
int LoadPmhText(const std::string& text, TMapLayer& layer) {
    TTempDir dir;
    WriteFileBytes(dir.File("in.pmh"), text);
    return TGisFilePmh().LoadFile(dir.File("in.pmh").c_str(), &layer, nullptr);
}

int WritePmh(TMapLayer& layer, std::string& bytes, const std::string& name = "rates.pmh") {
    TTempDir dir;
    std::string path = dir.File(name);
    const int result = TGisFilePmh().WriteFile(path.c_str(), &layer);
    bytes = ReadFileBytes(ChangeExtension(path, "pmh"));
    return result;
}

void AddRatePolygon(TMapLayer& layer, double rate, std::vector<tagLOC> vertices, int boundType = BOUNDARY_INC,
                    std::uint32_t kind = ELEMENT_LINE_BOUNDARY) {
    layer.m_dValue = rate;
    AddImportedLine(&layer, static_cast<int>(kind), boundType, static_cast<int>(vertices.size()),
                    vertices.data(), "", false, COLOR_NONE, false, false, false);
}

// Header lines 1 to 31 as written for an empty layer, line 31 only when asked for.
std::string HeaderText(bool unitsLine = true) {
    std::string text = "\n0.5\n0\n0\n0\n0\n0\n2\n10\nPRODUCT\n" + std::string(9, '\n');
    for (int i = 20; i <= 29; ++i) text += "0 0 0\n";
    return text + "MAP\n" + (unitsLine ? "8 LITRES / HECTARE\n" : "");
}

// A polygon block: the keyword, the rate line and a square at (lat, -93.3).
std::string SquareBlock(const std::string& rateLine, double lat, const char* keyword = ".POL") {
    std::string text = std::string(keyword) + "\n" + rateLine + "\n";
    for (const auto& [dLat, dLon] : {std::pair{0.0, 0.0}, {0.01, 0.0}, {0.01, 0.01}, {0.0, 0.01}})
        text += FormatFixed(lat + dLat, 8) + " " + FormatFixed(-93.3 + dLon, 8) + "\n";
    return text;
}

std::string Repeat(const std::string& piece, std::size_t times) {
    std::string s;
    for (std::size_t i = 0; i < times; ++i) s += piece;
    return s;
}

// Id, bound, rate and vertex count of every polygon, then the rate units.
std::string Polygons(const TMapLayer& layer) {
    std::string out;
    for (const TMapElement* e : layer.m_Elements) {
        const auto& line = dynamic_cast<const TFeatureLineBoundary&>(*e);
        const char* bounds[] = {"INC", "EXC", "OPEN"};
        out += e->m_strId + " " + bounds[line.m_iBoundType - BOUNDARY_INC] + " " +
               FormatRoundTrip(e->m_dValue) + " n=" + std::to_string(line.m_iNumPoints) + "|";
    }
    return out + "units " + std::to_string(layer.m_iRateUnits);
}

// The header's 31 lines are counted, and the polygon blocks go on from there.
TEST(PmhReader, LoadReportCountsWhatIsLeftOut) {
    std::string header = HeaderText();
    const std::string cut = header.substr(0, header.find("PRODUCT\n") + 8) + "\n\n";
    const std::string noUnits = HeaderText(false) + SquareBlock("INC 5", 45.5) + ".POL\nINC 7\n" +
                                "45.61 -93.3\n45.62 -93.3\n45.61 200\n.X odd\n.END\n";
    // clang-format off
    const TReportCase cases[] = {
        {"a header cut short", cut, {}, "at line 13: the file ends after 12 lines, inside the header of 31 lines", "", GISFILE_ERR_OPEN},
        // Without a units line the first ".POL" is taken for it, and that polygon's lines are stray.
        {"no units line", noUnits, {{LOAD_VERTEX_OUT_OF_RANGE, 1, "line 41"}, {LOAD_STRAY_LINE, 6, "line 32"}}, "", "boundary 1"},
    };
    // clang-format on
    for (const TReportCase& c : cases) {
        TTempDir dir;
        WriteFileBytes(dir.File("in.pmh"), c.text);
        TMapLayer layer, plain;
        TLoadReport report;
        ExpectReport(c, TGisMap().LoadFile(dir.File("in.pmh").c_str(), &layer, nullptr, report), report);
        EXPECT_EQ(LoadPmhText(c.text, plain), c.result) << c.name;
        EXPECT_EQ(Polygons(layer), Polygons(plain)) << c.name;
    }
}

// Each file in LF and CR LF: its result, the polygons read, and line 2 as read (also when the
// header is cut short); what was read can be written.
TEST(PmhReader, PolygonBlocksAndBadInput) {
    const std::string h = HeaderText(), a = SquareBlock("INC 5", 45.5), b = SquareBlock("INC 6", 45.6);
    const std::string huge =
        "T\n1e999\n1e308\n-1e999\n1e-999\n99999999999999\n-99999999999999\n" + Repeat("1e999\n", 24) + a;
    // clang-format off
    const std::tuple<const char*, std::string, int, const char*, double> cases[] = {
        {"INC, EXC and OPEN blocks up to .end", h + a + SquareBlock("EXC 7.25", 45.6) + SquareBlock("OPEN", 45.7) + ".end\n" + b,
         GISFILE_OK, "1 INC 5 n=5|2 EXC 7.25 n=5|3 OPEN 0 n=4|units 8", 0.5},
        {".polygon opens a block", h + SquareBlock("INC 3", 45.5, ".polygon"), GISFILE_OK, "1 INC 3 n=5|units 8", 0.5},
        {".E does not end the body", h + a + ".E\n" + b, GISFILE_OK, "1 INC 5 n=5|2 INC 6 n=5|units 8", 0.5},
        // Without line 31 the first ".POL" is taken for it, and that block's lines are stray lines.
        {"units line missing", HeaderText(false) + a + b, GISFILE_OK, "1 INC 6 n=5|units 0", 0.5},
        {"header of 30 lines", HeaderText(false), GISFILE_ERR_OPEN, "units 0", 0.5},
        {"letters for numbers", "T\n" + Repeat("abc\n", 4 * 30) + a + b, GISFILE_OK, "1 INC 5 n=5|2 INC 6 n=5|units 0", 0},
        {"huge numbers", huge, GISFILE_OK, "1 INC 5 n=5|units 1", HUGE_VAL},
        {"1 MB title line", Repeat("45.5 -93.5 ", 100000) + h + a + b, GISFILE_OK, "1 INC 5 n=5|2 INC 6 n=5|units 8", 0.5},
    };
    // clang-format on
    for (const auto& [name, text, result, polygons, line2] : cases) {
        std::string crlf;
        for (char ch : text) crlf += ch == '\n' ? std::string("\r\n") : std::string(1, ch);
        for (const std::string& input : {text, crlf}) {
            SCOPED_TRACE(std::string(name) + (input == crlf ? " (CR LF)" : " (LF)"));
            TMapLayer layer;
            EXPECT_EQ(LoadPmhText(input, layer), result);
            EXPECT_EQ(Polygons(layer), polygons);
            EXPECT_EQ(layer.m_dPmhLine2, line2);
            std::string bytes;
            if (text.size() < 100000) {  // the big ones take time
                EXPECT_EQ(WritePmh(layer, bytes), GISFILE_OK);
            }
        }
    }
}

// three_rates.pmh is this layer: header values, line features of three kinds and bound types,
// and a marker, which a rate map leaves out.
TEST(PmhWriter, MatchesHandWrittenFileAndReadsBack) {
    TScriptedMessages messages;
    TMapLayer layer, back;
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
    layer.AddElement(new TFeatureMarker, ADD_ELEMENT_OWNED);
    AddRatePolygon(layer, 12.5, {{45.123456789, -93.0000004}, {45.13, -93.0000004}, {45.13, -92.99}},
                   BOUNDARY_EXC);
    AddRatePolygon(layer, 30.0, {{45.6, -93.3}, {45.61, -93.3}, {45.61, -93.29}}, BOUNDARY_OPEN,
                   ELEMENT_LINE_GENERIC);
    std::string bytes;
    ASSERT_EQ(WritePmh(layer, bytes, "Rates.PMH"), GISFILE_OK);  // written as Rates.pmh
    EXPECT_EQ(bytes, ReadFileBytes(std::string(TL_GIS_SOURCE_DIR) + "/tests/data/pmh/three_rates.pmh"));
    EXPECT_TRUE(messages.Shown().empty());

    ASSERT_EQ(LoadPmhText(bytes, back), GISFILE_OK);
    EXPECT_EQ(Polygons(back), "1 INC 5 n=4|2 INC 12.5 n=4|3 INC 30 n=4|units 8");
    std::string header;
    for (double v : {back.m_dPmhLine2, back.m_dPmhLine3, back.m_dPmhLine4, back.m_dPmhLine5, back.m_dRateMid})
        header += FormatRoundTrip(v) + " ";
    EXPECT_EQ(header + std::to_string(back.m_iPmhLine6) + " " + std::to_string(back.m_iPmhLine7) + "|" +
                  back.m_strPmhLine10 + "|" + back.m_strPmhLine30,
              "45.5 -93.25 1e-04 0.000125 17.5 120 80|GLYPHOSATE 2 L|NORTH BLOCK");
    EXPECT_EQ(back.m_strPmhField1 + back.m_strPmhField3 + back.m_strPmhField5, "")
        << "line 1 is written blank";
}

TEST(PmhWriter, RateAndUnitsLines) {
    // name, rates, units, line 20, the lines from 30 on
    const std::tuple<const char*, std::vector<double>, int, const char*, const char*> cases[] = {
        {"all rates 20, units 3: no line 31", {20, 20}, 3, "10.0000 0.0000 20.0000", "0.0000\r\n\r\n.POL"},
        {"rates closer than 0.0001", {3, 3.00009}, 1, "1.5000 0.0000 3.0001", "\r\n1 US GAL / ACRE\r\n.POL"},
        {"no polygons", {}, 2, "0.0000 0.0000 0.0000", "\r\n2 LBS / ACRE\r\n.END"},
    };
    for (const auto& [name, rates, units, line20, tail] : cases) {
        TMapLayer layer;
        layer.m_iRateUnits = units;
        for (double rate : rates)
            AddRatePolygon(layer, rate, {{45.5, -93.25}, {45.51, -93.25}, {45.51, -93.24}});
        std::string bytes;
        ASSERT_EQ(WritePmh(layer, bytes), GISFILE_OK) << name;
        const std::size_t at = bytes.find(line20);
        EXPECT_EQ(
            std::count(bytes.begin(), bytes.begin() + static_cast<long>(std::min(at, bytes.size())), '\n'),
            19)
            << name << ": line 20";
        EXPECT_NE(bytes.find(tail), std::string::npos) << name;
    }
}

TEST(PmhWriter, FullDiskGivesItsOwnMessage) {
#ifdef _WIN32
    GTEST_SKIP() << "Windows has no /dev/full to stand for a full disk";
#endif
    TConfigFolderGuard config(std::string(TL_GIS_SOURCE_DIR) + "/Config");
    TScriptedMessages messages;
    GetTlGisApp().InitInstance();
    TTempDir dir;
    std::filesystem::create_symlink("/dev/full", dir.File("full.pmh"));
    TMapLayer layer;
    AddRatePolygon(layer, 5.0, {{45.5, -93.25}, {45.51, -93.25}, {45.51, -93.24}});
    EXPECT_EQ(TGisFilePmh().WriteFile(dir.File("full.pmh").c_str(), &layer), PMHFILE_ERR_WRITE);
    EXPECT_EQ(messages.Shown().back().strText + " " + std::to_string(messages.Shown().back().iTextId),
              "The PMH file could not be written. 3091");
}
}  // namespace
