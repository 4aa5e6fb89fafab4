// The export when things go wrong: folders that cannot take the files, records too big for a
// scratch block, and damaged or extreme spray data;.

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>
#include <cmath>
#include <filesystem>
#include <limits>

#include "gis/gis_map.h"
#include "shp_write_support.h"
#include "test_support.h"

using namespace shp_write_test;

namespace {
bool Exists(const std::string& path) {
    return std::filesystem::exists(path);
}

// Shapes, index entries and table rows agree with each other and with the headers.
::testing::AssertionResult Consistent(const std::string& stem) {
    const TTriple t = ReadTriple(stem);
    if (t.strShp.size() < 100 || t.strShx.size() < 100)
        return ::testing::AssertionFailure() << stem << ": headers missing";
    const std::vector<TShape> shapes = ReadShapes(t.strShp);
    const TTable table = ReadTable(t.strDbf);
    const std::size_t entries = (t.strShx.size() - 100) / 8;
    const auto words = [](const std::string& b) {
        return static_cast<std::size_t>(
            static_cast<unsigned char>(b[24]) << 24 | static_cast<unsigned char>(b[25]) << 16 |
            static_cast<unsigned char>(b[26]) << 8 | static_cast<unsigned char>(b[27]));
    };
    if (words(t.strShp) * 2 != t.strShp.size() || words(t.strShx) * 2 != t.strShx.size())
        return ::testing::AssertionFailure() << stem << ": file length in the header differs from the file";
    if (entries != shapes.size() || table.Rows.size() != shapes.size() ||
        table.iRecordCount != static_cast<int>(shapes.size()))
        return ::testing::AssertionFailure()
               << stem << ": " << shapes.size() << " shapes, " << entries << " index entries, "
               << table.Rows.size() << " rows, header count " << table.iRecordCount;
    const std::size_t expected =
        static_cast<std::size_t>(table.iHeaderLength + table.iRecordLength * table.iRecordCount) + 1;
    if (t.strDbf.size() != expected || !table.bEndsWith1A)
        return ::testing::AssertionFailure() << stem << ": table of " << t.strDbf.size()
                                             << " bytes, expected " << expected << " ending in 0x1A";
    for (const TShape& s : shapes)
        for (const tagLOC& p : s.Points)
            if (!std::isfinite(p.dLat) || !std::isfinite(p.dLon))
                return ::testing::AssertionFailure()
                       << stem << ": shape " << s.iNumber << " has a position that is no number";
    return ::testing::AssertionSuccess();
}
}  // namespace

TEST(ShpWriteFailure, FoldersThatCannotTakeTheFiles) {
    TShpSettingsGuard settings;
    TTempDir dir;
    struct TCase {
        const char* pszName;
        std::string strTarget;
        std::string strSource;
    };
    const TCase cases[] = {
        {"target folder missing", dir.File("missing/f.shp"), dir.File("flight.csv")},
        {"source folder missing", dir.File("f.shp"), dir.File("missing/flight.csv")},
    };
    for (const TCase& c : cases) {
        TMapLayer layer;
        AddSpray(layer, MakeSpray(Straight(3, 0)));
        TScriptedMessages messages;
        TGisFileShp writer;
        writer.SetSourceFile(c.strSource);
        EXPECT_EQ(writer.WriteFile(c.strTarget.c_str(), &layer), GISFILE_ERR_OPEN) << c.pszName;
        ASSERT_EQ(messages.Shown().size(), 1u) << c.pszName;
        EXPECT_NE(messages.Shown()[0].strText.find("Cannot create"), std::string::npos) << c.pszName;
        EXPECT_NE(messages.Shown()[0].strText.find("missing"), std::string::npos) << c.pszName;
    }
    EXPECT_TRUE(Consistent(dir.File("f_Spray_Polys")))
        << "the spray triple before the failing pass is complete";
}

TEST(ShpWriteFailure, ReadOnlyFolder) {
    if (geteuid() == 0) GTEST_SKIP() << "running as root: a read-only folder does not stop root from writing";
    TShpSettingsGuard settings;
    TTempDir dir;
    const std::string folder = dir.File("locked");
    ASSERT_EQ(mkdir(folder.c_str(), 0555), 0);
    TMapLayer layer;
    TScriptedMessages messages;
    TGisMap map;
    map.m_bWriteBoundaries = true;
    EXPECT_EQ(map.WriteFile((folder + "/f.shp").c_str(), &layer), GISFILE_ERR_OPEN);
    EXPECT_EQ(messages.Shown().size(), 1u);
    EXPECT_FALSE(Exists(folder + "/f_Spray_Polys.shp"));
}

TEST(ShpWriteFailure, RecordTooBigForAScratchBlockSkipsItsElementOnly) {
    TShpSettingsGuard settings;
    TGisFileShp::s_eESRISprayFormat = ESRI_SPRAY_POLYLINES;
    TTempDir dir;
    TMapLayer layer;
    // An element that claims more samples than any record can hold; the builder must give up
    // before it reads them.
    auto huge = MakeSpray(Straight(2, 0));
    huge->m_iNumRecs = 200000000;
    huge->m_rcExtents = TLocRect(-93.26, 45.51, -93.24, 45.49);
    layer.AddElement(huge.release(), ADD_ELEMENT_OWNED);
    AddSpray(layer, MakeSpray(Straight(3, 0)));
    TScriptedMessages quiet;
    TGisFileShp writer;
    writer.SetSourceFile(dir.File("flight.csv"));
    EXPECT_EQ(writer.WriteFile(dir.File("f.shp").c_str(), &layer), GISFILE_OK);
    const std::vector<TShape> shapes = ReadShapes(ReadFileBytes(dir.File("f_Spray_PL.shp")));
    ASSERT_EQ(shapes.size(), 1u);
    EXPECT_EQ(shapes[0].Points.size(), 3u);
    EXPECT_TRUE(Consistent(dir.File("f_Spray_PL")));
}

TEST(ShpWriteFailure, BadSprayDataGivesConsistentFiles) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    struct TBad {
        const char* pszName;
        void (*pfnAdd)(TMapLayer&, double);
    };
    const TBad bad[] = {
        {"no elements", [](TMapLayer&, double) {}},
        {"no samples", [](TMapLayer& l, double) { AddSpray(l, std::make_unique<TFeatureSpray>()); }},
        {"one sample", [](TMapLayer& l, double) { AddSpray(l, MakeSpray(Straight(1, 30))); }},
        {"NaN positions",
         [](TMapLayer& l, double nanValue) {
             auto s = MakeSpray(Straight(4, 30, 20, {0, 1, 1, 0}));
             for (int i = 0; i < 4; i += 2) s->m_pRecs[i].locPos.dLat = nanValue;
             s->m_pRecs[1].locSwathA.dLon = nanValue;
             s->m_pRecs[2].locPos.dLon = nanValue;
             AddSpray(l, std::move(s));
         }},
        {"times out of range and huge texts",
         [](TMapLayer& l, double) {
             auto s = MakeSpray(Straight(3, 30, 20, {0, 1, 1}));
             for (int i = 0; i < 3; ++i) {
                 tagSPRAYREC& r = s->m_pRecs[i];
                 r.dwTimeStamp |= 0x00F80000u | 0x7Fu;  // hour 31, 127 hundredths
                 r.strFieldName.assign(20000, 'F');
                 r.strOffset.assign(20000, 'O');
                 SetSprayText(r.szPilot, sizeof r.szPilot, std::string(20000, 'P'));
                 r.dSpeed = 1e300;
             }
             AddSpray(l, std::move(s));
         }},
    };
    for (int format : {0, 1, 2, 3, 7}) {
        for (const TBad& b : bad) {
            TShpSettingsGuard settings;
            SetShpFormats(format, format % 2);
            TTempDir dir;
            TMapLayer layer;
            b.pfnAdd(layer, nan);
            TScriptedMessages quiet;
            TGisFileShp writer;
            writer.SetCompanyName(std::string(20000, 'C'));
            writer.SetSourceFile(dir.File("flight.csv"));
            const std::string target = dir.File("f.shp");
            EXPECT_EQ(writer.WriteFile(target.c_str(), &layer), GISFILE_OK)
                << b.pszName << ", format " << format;
            EXPECT_TRUE(Consistent(TGisFileShp::GetSprayOutputStem(target)))
                << b.pszName << ", format " << format;
            const std::string nonSpray = TGisFileShp::GetNonSprayOutputStem(dir.File("flight.csv"));
            if (layer.GetElementCount() > 0) {
                EXPECT_TRUE(Consistent(nonSpray)) << b.pszName << ", format " << format;
            }
        }
    }
}

TEST(ShpWriteFailure, BadTimesAndLongTextsAreCutToTheirFields) {
    TShpSettingsGuard settings;
    TGisFileShp::s_eESRISprayFormat = ESRI_SPRAY_POINTS;
    TTempDir dir;
    TMapLayer layer;
    auto s = MakeSpray(Straight(2, 30));
    s->m_pRecs[0].dwTimeStamp |= 0x00F80000u;  // hour 31
    s->m_pRecs[0].strFieldName.assign(20000, 'F');
    AddSpray(layer, std::move(s));
    TScriptedMessages quiet;
    TGisFileShp writer;
    writer.SetCompanyName(std::string(30, 'C'));
    EXPECT_EQ(writer.WriteFile(dir.File("f.shp").c_str(), &layer), GISFILE_OK);
    const TTable table = ReadTable(ReadFileBytes(dir.File("f_Spray_Pts.dbf")));
    ASSERT_EQ(table.Rows.size(), 2u);
    EXPECT_EQ(table.Rows[0][1], std::string(28, 'C'));
    EXPECT_EQ(table.Rows[0][2], "                     N/A") << "no source file";
    EXPECT_EQ(table.Rows[0][3], "    Date N/A");
    EXPECT_EQ(table.Rows[0][6], std::string(20, 'F'));
    EXPECT_EQ(table.Rows[0][9], "      Time N/A");
    // Without a source file the non-spray triple is named from an empty base, in the current folder.
    for (const char* ext : {".shp", ".shx", ".dbf"})
        EXPECT_TRUE(std::filesystem::remove(std::string("_NonSpray_PL") + ext));
}
