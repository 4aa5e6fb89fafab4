// Writing MID/MIF pairs: golden files, paths, failures, complete rows read by GDAL.

#include <filesystem>
#include <functional>

#include "gis/gis_map.h"
#include "midmif_test_support.h"

namespace {
struct TGoldenCase {
    const char* pszName;
    MIDDELIMITER eDelimiter;
    std::function<void(TMapLayer&)> fill;
    int iSingleBlockMode = 0;
    int iSprayChans = 0;
};

void FillPolygons(TMapLayer& layer) {
    AddPolygon(layer, "pond", BOUNDARY_EXC, {{45.0, -93.0}, {45.0, -92.9}, {45.1, -92.9}, {45.1, -93.0}});
    AddPolygon<TFeatureLineArea>(layer, "field 7", BOUNDARY_INC,
                                 {{46.0, -94.0}, {46.0, -93.7}, {46.3, -94.0}});
    // Lines without points, and kinds the writer does not know, are left out of both files.
    AddPolygon(layer, "nothing", BOUNDARY_INC, {});
    AddPolygon<TFeatureLineRoad>(layer, "road", BOUNDARY_OPEN, {{1, 2}, {3, 4}});
    auto* point = new TFeaturePoint;
    point->m_Loc = TLoc(1, 2);
    layer.AddElement(point);
}

// A run with an impossible month and hour, a run whose first channel value suppresses the
// block row, and runs that write nothing: not spraying at the first sample, a single sample.
void FillSprayEdges(TMapLayer& layer) {
    TSprayTime bad;
    bad.iYear = 2020;
    bad.iMonth = 13;
    bad.iDay = 15;
    bad.iHour = 25;
    AddSpray(layer, {{TLoc(46.0, -94.0), TLoc(46.0, -94.002), bad},
                     {TLoc(46.001, -94.0), TLoc(46.001, -94.002), bad}});

    TSampleValues first{TLoc(47.0, -95.0), TLoc(47.0, -95.002), MarchTime(10, 50)};
    TSampleValues second{TLoc(47.002, -95.0), TLoc(47.002, -95.002), MarchTime(11, 0), 50, 7, 500, {8, 40}};
    AddSpray(layer, {first, second}, 1.0)->m_dwType = ELEMENT_SPRAY_ALT;

    TSampleValues idle = second;
    idle.bySpray = 0;
    AddSpray(layer, {idle, second});
    AddSpray(layer, {second});
}

const TGoldenCase kGoldenCases[] = {
    {"marker_tab", MID_DELIMITER_TAB, [](TMapLayer& l) { AddMarker(l, "B", 45.5, -93.25); }},
    {"polygons", MID_DELIMITER_COMMA, FillPolygons},
    // Channel 1 peaks at 30 L/ha: 3.2072 US gallons per acre in the block rows.
    {"spray_one_block", MID_DELIMITER_COMMA, [](TMapLayer& l) { AddThreeSampleSpray(l); }, 0, 2},
    {"spray_pair_blocks", MID_DELIMITER_COMMA, [](TMapLayer& l) { AddThreeSampleSpray(l); }, 1, 2},
    {"spray_edges", MID_DELIMITER_COMMA, FillSprayEdges, 0, 2},
};

using MidMifWriter = MidMifSettings;

TEST_F(MidMifWriter, GoldenPairsMatchByteForByte) {
    for (const TGoldenCase& c : kGoldenCases) {
        TGisFileMidMif::s_eMidDelimiter = c.eDelimiter;
        TGisFileMidMif::s_iDefaultSingleBlockMode = c.iSingleBlockMode;
        TGisFileMidMif::s_iMidSprayChans = c.iSprayChans;
        TMapLayer layer;
        c.fill(layer);
        TTempDir dir;
        TGisMap map;
        ASSERT_EQ(map.WriteFile(dir.File("out.mif").c_str(), &layer), 0) << c.pszName;
        ExpectSameAsGolden(dir.File("out"), c.pszName);
    }
}

TEST_F(MidMifWriter, DelimiterLineAndMarkerRowFollowTheSetting) {
    const struct {
        int iValue;
        const char* pszHeaderLine;
        const char* pszRow;
    } cases[] = {
        {0, "DELIMITER \",\"\r\n", ",,,,,,,A\r\n"},
        {1, "DELIMITER \"\t\"\r\n", "\t\t\t\t\t\t\tA\r\n"},
        {2, "DELIMITER \" \"\r\n", "       A\r\n"},
        {7, "DELIMITER \" \"\r\n", "       A\r\n"},
    };
    for (const auto& c : cases) {
        TGisFileMidMif::s_eMidDelimiter = static_cast<MIDDELIMITER>(c.iValue);
        TMapLayer layer;
        AddMarker(layer, "A", 1, 2);
        TTempDir dir;
        TGisMap map;
        ASSERT_EQ(map.WriteFile(dir.File("d.mif").c_str(), &layer), 0);
        EXPECT_NE(ReadFileBytes(dir.File("d.mif")).find(c.pszHeaderLine), std::string::npos)
            << "value " << c.iValue;
        EXPECT_EQ(ReadFileBytes(dir.File("d.mid")), c.pszRow) << "value " << c.iValue;
    }
}

TEST_F(MidMifWriter, MidFileIsNamedFromThePath) {
    TTempDir dir;
    std::filesystem::create_directories(dir.File("C:/data"));
    const struct {
        std::string strPath;
        std::string strMid;
    } cases[] = {
        {dir.File("C:\\data\\field.txt"), dir.File("C:\\data\\field.mid")},
        {dir.File("C:/data/field.txt"), dir.File("C:/data/field.mid")},
        {dir.File("plan.MIF"), dir.File("plan.mid")},
    };
    for (const auto& c : cases) {
        TMapLayer layer;
        AddMarker(layer, "A", 1, 2);
        // The host may name the pair by any path; the dispatcher would only take .mif names.
        {
            TGisFileMidMif writer;
            ASSERT_EQ(writer.WriteFile(c.strPath.c_str(), &layer), 0) << c.strPath;
        }
        EXPECT_EQ(ReadFileBytes(c.strPath).rfind("Version 300", 0), 0u) << c.strPath;
        EXPECT_EQ(ReadFileBytes(c.strMid), ",,,,,,,A\r\n") << c.strMid;
    }
}

TEST_F(MidMifWriter, UncreatableFilesGiveOpenError) {
    TTempDir dir;
    std::filesystem::create_directories(dir.File("taken.mid"));
    TMapLayer layer;
    AddMarker(layer, "A", 1, 2);
    TGisMap map;
    EXPECT_EQ(map.WriteFile(dir.File("no/such/folder/x.mif").c_str(), &layer), GISFILE_ERR_OPEN);
    // The .mif is created before the .mid fails.
    EXPECT_EQ(map.WriteFile(dir.File("taken.mif").c_str(), &layer), GISFILE_ERR_OPEN);
    EXPECT_TRUE(std::filesystem::exists(dir.File("taken.mif")));
}

TEST_F(MidMifWriter, PolylineDropsPointsSharingACoordinateWithTheNext) {
    TTempDir dir;
    const std::string path = dir.File("p.mif");
    TMapLayer layer;
    {
        // The files stay open until the writer is destroyed, so a polyline can follow a write.
        TGisFileMidMif writer;
        ASSERT_EQ(writer.WriteFile(path.c_str(), &layer), 0);
        const tagLOC points[] = {{1, 10}, {1, 11}, {2, 12}, {3, 12}, {4, 13}, {4, 13}};
        int token = 0;
        writer.WritePoly(nullptr, points, 0, 6);
        writer.WritePoly(&token, nullptr, 0, 6);
        writer.WritePoly(&token, points, 0, 6);
    }
    const std::string mif = ReadFileBytes(path);
    const std::string tail =
        "DATA\r\n\r\n\r\nPLINE  3\r\n  11.000000 1.000000\r\n  12.000000 3.000000\r\n  13.000000 4.000000\r\n"
        "    PEN (1,12,9127187)\r\n    SMOOTH\r\n";
    ASSERT_GE(mif.size(), tail.size());
    EXPECT_EQ(mif.substr(mif.size() - tail.size()), tail);
    EXPECT_EQ(ReadFileBytes(dir.File("p.mid")), "");
}

// Complete rows: every object has a row with one field per column, so GDAL reads them all.
class MidMifCompleteRows : public MidMifSettings {
protected:
    void SetUp() override {
        MidMifSettings::SetUp();
        if (!HaveProgram("ogrinfo"))
            GTEST_SKIP() << "ogrinfo (GDAL) is not installed; run scripts/install-test-tools.sh";
    }
};

TEST_F(MidMifCompleteRows, GdalReadsEveryObject) {
    for (const MIDDELIMITER delimiter : {MID_DELIMITER_COMMA, MID_DELIMITER_TAB, MID_DELIMITER_SPACE}) {
        for (const int mode : {0, 1}) {
            TGisFileMidMif::s_eMidDelimiter = delimiter;
            TGisFileMidMif::s_iDefaultSingleBlockMode = mode;
            TGisFileMidMif::s_iMidSprayChans = 2;
            TGisFileMidMif::s_bMidCompleteRows = true;
            TMapLayer layer;
            FillPolygons(layer);
            AddMarker(layer, "B", 45.5, -93.25);
            AddPolygon(layer, "a,b \"c\"", BOUNDARY_INC, {{45.0, -93.0}, {45.0, -92.9}, {45.1, -92.9}});
            AddThreeSampleSpray(layer);
            AddThreeSampleSpray(layer, 1.0);
            TTempDir dir;
            TGisMap map;
            ASSERT_EQ(map.WriteFile(dir.File("c.mif").c_str(), &layer), 0);
            const int objects = CountObjects(ReadFileBytes(dir.File("c.mif")));
            const TCommandResult r = RunCommand("ogrinfo -ro -al " + ShellQuote(dir.File("c.mif")));
            const std::string what = "delimiter " + std::to_string(delimiter) + " mode " +
                                     std::to_string(mode) + "\n" + r.strOut + r.strErr;
            EXPECT_EQ(r.iExit, 0) << what;
            EXPECT_EQ(r.strErr.find("ERROR"), std::string::npos) << what;
            int features = 0;
            for (const std::string& line : Lines(r.strOut)) features += line.rfind("OGRFeature(", 0) == 0;
            // Three polygons and a marker, then 1 or 2 regions per run and 2 sample points each.
            EXPECT_EQ(objects, mode == 0 ? 10 : 12) << what;
            EXPECT_EQ(features, objects) << what;
            for (const char* field :
                 {"Date (String) = pond", "ABC_Points (String) = B", "Date (String) = a,b \"c\"",
                  "FlowRate (Real) = 3.2072", "SprayStatus (String) =  ON", "Altitude (Integer) = 328"})
                EXPECT_NE(r.strOut.find(field), std::string::npos) << field << " in " << what;
        }
    }
}
}  // namespace
