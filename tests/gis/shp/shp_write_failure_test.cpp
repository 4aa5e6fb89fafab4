// The export when things go wrong: a record too big for a scratch block, and texts that do not
// fit or are missing.

#include <gtest/gtest.h>

#include "shp_test_support.h"

using namespace shp_test;

// An element that claims more samples than any record can hold: the builder gives up before it
// reads them, and only that element is left out.
TEST(ShpWriteFailure, RecordTooBigForAScratchBlockSkipsItsElementOnly) {
    TMapLayer layer;
    AddSpray(layer, Straight(2, 0))->m_iNumRecs = 200000000;
    AddSpray(layer, Straight(3, 0));
    const TExport out = Export(layer, {ESRI_SPRAY_POLYLINES});
    EXPECT_EQ(out.iResult, GISFILE_OK);
    ASSERT_EQ(out.Spray.Shapes.size(), 1u);
    EXPECT_EQ(out.Spray.Shapes[0].Points.size(), 3u);
}

// Texts far longer than their fields are cut to them; no source file, a time out of range.
TEST(ShpWriteFailure, TextsThatDoNotFitOrAreMissing) {
    TMapLayer layer;
    tagSPRAYREC* r = AddSpray(layer, Straight(2, 30))->m_pRecs;
    r[0].dwTimeStamp |= 0x00F80000u | 0x7Fu;  // hour 31, 127 hundredths
    r[0].strFieldName.assign(20000, 'F');
    r[0].strOffset.assign(20000, 'O');
    SetSprayText(r[0].szPilot, sizeof r[0].szPilot, std::string(20000, 'P'));
    TWriteOptions options{.iSpray = ESRI_SPRAY_POINTS, .strSource = ""};
    options.strCompany.assign(20000, 'C');
    const TExport out = Export(layer, options);
    ASSERT_EQ(out.Spray.Rows.size(), 2u);
    const std::vector<std::string>& row = out.Spray.Rows[0];
    EXPECT_EQ(
        row[1] + "|" + row[2] + "|" + row[3] + "|" + row[5] + "|" + row[6] + "|" + row[7] + "|" + row[9],
        std::string(28, 'C') + "|                     N/A|    Date N/A| " + std::string(11, 'P') + "|" +
            std::string(20, 'F') + "|OOOOO|      Time N/A");
}
