// The export when things go wrong: folders that cannot take the files, a record too big for a
// scratch block, and damaged or extreme spray data.

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>
#include <filesystem>
#include <limits>
#include <span>

#include "gis/gis_map.h"
#include "shp_test_support.h"

using namespace shp_test;

TEST(ShpWriteFailure, FoldersThatCannotTakeTheFiles) {
    const struct {
        const char* pszName;
        const char* pszTarget;
        const char* pszSource;
        bool bSprayComplete;  // the spray triple, written before the failing pass
    } cases[] = {
        {"target folder missing", "missing/f.shp", "flight.csv", false},
        {"source folder missing", "f.shp", "missing/flight.csv", true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.pszName);
        TTempDir dir;
        TMapLayer layer;
        AddSpray(layer, Straight(3, 0));
        TWriteOptions options;
        options.strSource = c.pszSource;
        const TExport out = Export(layer, options, dir, c.pszTarget);
        EXPECT_EQ(out.iResult, GISFILE_ERR_OPEN);
        ASSERT_EQ(out.Messages.size(), 1u);
        EXPECT_NE(out.Messages[0].strText.find("Cannot create"), std::string::npos);
        EXPECT_NE(out.Messages[0].strText.find("missing"), std::string::npos);
        EXPECT_EQ(out.Spray.Shapes.size(), c.bSprayComplete ? 1u : 0u);
    }
}

TEST(ShpWriteFailure, ReadOnlyFolder) {
    if (geteuid() == 0) GTEST_SKIP() << "running as root: a read-only folder does not stop root from writing";
    TTempDir dir;
    const std::string folder = dir.File("locked");
    ASSERT_EQ(mkdir(folder.c_str(), 0555), 0);
    TMapLayer layer;
    TScriptedMessages messages;
    TGisMap map;
    map.m_bWriteBoundaries = true;
    EXPECT_EQ(map.WriteFile((folder + "/f.shp").c_str(), &layer), GISFILE_ERR_OPEN);
    EXPECT_EQ(messages.Shown().size(), 1u);
    EXPECT_FALSE(std::filesystem::exists(folder + "/f_Spray_Polys.shp"));
}

// An element that claims more samples than any record can hold: the builder gives up before it
// reads them, and only that element is left out.
TEST(ShpWriteFailure, RecordTooBigForAScratchBlockSkipsItsElementOnly) {
    TMapLayer layer;
    TFeatureSpray* huge = AddSpray(layer, Straight(2, 0));
    huge->m_iNumRecs = 200000000;
    AddSpray(layer, Straight(3, 0));
    const TExport out = Export(layer, {ESRI_SPRAY_POLYLINES});
    EXPECT_EQ(out.iResult, GISFILE_OK);
    ASSERT_EQ(out.Spray.Shapes.size(), 1u);
    EXPECT_EQ(out.Spray.Shapes[0].Points.size(), 3u);
}

// Every form writes consistent triples (checked by Export) for data it cannot use.
TEST(ShpWriteFailure, BadSprayDataGivesConsistentFiles) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const struct {
        const char* pszName;
        void (*pfnAdd)(TMapLayer&, double);
    } cases[] = {
        {"no elements", [](TMapLayer&, double) {}},
        {"no samples", [](TMapLayer& l, double) { AddSpray(l, {}); }},
        {"one sample", [](TMapLayer& l, double) { AddSpray(l, Straight(1, 30)); }},
        {"NaN positions",
         [](TMapLayer& l, double nanValue) {
             tagSPRAYREC* r = AddSpray(l, Straight(4, 30, 20, {0, 1, 1, 0}))->m_pRecs;
             r[0].locPos.dLat = r[2].locPos.dLat = r[2].locPos.dLon = r[1].locSwathA.dLon = nanValue;
         }},
        {"times out of range and huge texts",
         [](TMapLayer& l, double) {
             TFeatureSpray* s = AddSpray(l, Straight(3, 30, 20, {0, 1, 1}));
             for (tagSPRAYREC& r : std::span(s->m_pRecs, 3)) {
                 r.dwTimeStamp |= 0x00F80000u | 0x7Fu;  // hour 31, 127 hundredths
                 r.strFieldName.assign(20000, 'F');
                 r.strOffset.assign(20000, 'O');
                 SetSprayText(r.szPilot, sizeof r.szPilot, std::string(20000, 'P'));
                 r.dSpeed = 1e300;
             }
         }},
    };
    for (int format : {0, 1, 2, 3, 7}) {
        for (const auto& c : cases) {
            SCOPED_TRACE(std::string(c.pszName) + ", format " + std::to_string(format));
            TMapLayer layer;
            c.pfnAdd(layer, nan);
            TWriteOptions options{format, format % 2};
            options.strCompany.assign(20000, 'C');
            const TExport out = Export(layer, options);
            EXPECT_EQ(out.iResult, GISFILE_OK);
            EXPECT_FALSE(out.Spray.strStem.empty());
        }
    }
}

TEST(ShpWriteFailure, TextsWithoutASourceFileOrTimeAreMarked) {
    TMapLayer layer;
    AddSpray(layer, Straight(2, 30))->m_pRecs[0].dwTimeStamp |= 0x00F80000u;  // hour 31
    const TExport out = Export(layer, {.iSpray = ESRI_SPRAY_POINTS, .strSource = ""});
    ASSERT_EQ(out.Spray.Table.Rows.size(), 2u);
    const std::vector<std::string>& row = out.Spray.Table.Rows[0];
    EXPECT_EQ(row[2] + "|" + row[3] + "|" + row[9], "                     N/A|    Date N/A|      Time N/A");
}
