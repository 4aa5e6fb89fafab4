// A layer of every element kind written as GeoJSON, KML and KMZ and read back: the same
// elements, in the same order, with the same kinds, bounds, ids, values, colours, names,
// symbols and vertices (to the nine decimals written); what the writer adds for display only is
// what the reader says it passed over.

#include <gtest/gtest.h>

#include "exchange_test_support.h"

using namespace exchange_test;

namespace {
struct TRoundTrip {
    const char* pszFile;
    long long lSwathLinesSkipped;  // written for the eye in KML only
};

class ExchangeRoundTrip : public ::testing::TestWithParam<TRoundTrip> {};

TEST_P(ExchangeRoundTrip, ReadsBackTheLayerItWrote) {
    const TRoundTrip& c = GetParam();
    TTempDir dir;
    const std::string path = dir.File(c.pszFile);
    TMapLayer written;
    FillEveryKind(written);
    ASSERT_EQ(WriteExchangeFile(path.c_str(), &written, {}), 0);

    TMapLayer read;
    TLoadReport report;
    ASSERT_EQ(LoadFile(path, read, report), 0);
    EXPECT_TRUE(SameLayer(written, read));
    EXPECT_EQ(report.GetCount(LOAD_FEATURE_SWATH_LINE), c.lSwathLinesSkipped);
    EXPECT_FALSE(report.HasStopped());

    // Written again from what was read, the file is the same byte for byte.
    const std::string again = dir.File(std::string("again_") + c.pszFile);
    ASSERT_EQ(WriteExchangeFile(again.c_str(), &read, {}), 0);
    EXPECT_EQ(ReadFileBytes(path), ReadFileBytes(again));
}

INSTANTIATE_TEST_SUITE_P(Formats, ExchangeRoundTrip,
                         ::testing::Values(TRoundTrip{"layer.geojson", 0}, TRoundTrip{"layer.kml", 19},
                                           TRoundTrip{"layer.kmz", 19}),
                         [](const auto& info) {
                             std::string name = info.param.pszFile;
                             return name.substr(name.find('.') + 1);
                         });

// The chosen properties read the ids, values and names that other programs wrote under their
// own names, and a hole shares its polygon's id and value.
TEST(ExchangeRoundTrip, ChosenPropertiesGiveIdsValuesAndNames) {
    const std::string geojson = R"({"type":"FeatureCollection","features":[
{"type":"Feature","properties":{"FIELD_ID":"F7","RATE":"12.5"},"geometry":{"type":"Polygon","coordinates":[
 [[-93.26,45.49],[-93.26,45.51],[-93.24,45.51],[-93.24,45.49],[-93.26,45.49]],
 [[-93.255,45.495],[-93.25,45.495],[-93.25,45.5],[-93.255,45.495]]]}},
{"type":"Feature","properties":{"FIELD_ID":"W1","LABEL":"Well"},"geometry":{"type":"Point","coordinates":[-93.25,45.5]}}]})";
    TGisFile::s_strIdField = "field_id";
    TGisFile::s_strValueField = "rate";
    TGisFile::s_strNameField = "label";
    TMapLayer layer;
    TLoadReport report;
    const int result = LoadBytes(EXCHANGE_FILE_GEOJSON, geojson, layer, report);
    TGisFile::s_strIdField = TGisFile::s_strValueField = TGisFile::s_strNameField = "";
    ASSERT_EQ(result, 0);
    ASSERT_EQ(layer.m_Elements.size(), 3u);
    const auto* outer = dynamic_cast<const TFeatureLine*>(layer.m_Elements[0]);
    const auto* hole = dynamic_cast<const TFeatureLine*>(layer.m_Elements[1]);
    const auto* well = dynamic_cast<const TFeatureMarker*>(layer.m_Elements[2]);
    ASSERT_TRUE(outer && hole && well);
    EXPECT_EQ(outer->m_iBoundType, BOUNDARY_INC);
    EXPECT_EQ(hole->m_iBoundType, BOUNDARY_EXC);
    EXPECT_EQ(outer->m_strId, "F7");
    EXPECT_EQ(hole->m_strId, "F7");
    EXPECT_EQ(outer->m_dValue, 12.5);
    EXPECT_EQ(hole->m_iNumPoints, 4);
    EXPECT_EQ(well->m_strName, "Well");
    EXPECT_EQ(well->m_strId, "W1");
}
}  // namespace
