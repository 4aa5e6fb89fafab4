// A layer of every element kind written as GeoJSON, KML and KMZ and read back gives the same
// elements (kinds, bounds, ids, values, colours, names, symbols, vertices to the nine decimals
// written), and writes again to the same bytes; what the writer adds for display only is what
// the reader says it passed over.

#include <gtest/gtest.h>

#include <tl_gis/gis/chosen_columns.h>
#include "complete_profile.h"
#include "exchange_test_support.h"

using namespace exchange_test;

namespace {
TEST(ExchangeRoundTrip, ReadsBackTheLayerItWrote) {
    // The swath guide lines are written for the eye in KML only.
    const std::pair<const char*, long long> cases[] = {
        {"layer.geojson", 0}, {"layer.kml", 19}, {"layer.kmz", 19}};
    for (const auto& [file, swathLines] : cases) {
        SCOPED_TRACE(file);
        TTempDir dir;
        TMapLayer written, read;
        FillEveryKind(written);
        ASSERT_EQ(WriteExchangeFile(dir.File(file).c_str(), &written, {}), 0);
        TLoadReport report;
        ASSERT_EQ(LoadFile(dir.File(file), read, report), 0);
        EXPECT_EQ(LayerText(read), LayerText(written));
        EXPECT_EQ(report.GetCount(LOAD_FEATURE_SWATH_LINE), swathLines);
        EXPECT_FALSE(report.HasStopped());
        const std::string again = dir.File(std::string("again_") + file);
        ASSERT_EQ(WriteExchangeFile(again.c_str(), &read, {}), 0);
        EXPECT_EQ(ReadFileBytes(dir.File(file)), ReadFileBytes(again));
    }
}

// The chosen properties read the ids, values and names that other programs wrote under their
// own names, and a hole shares its polygon's id and value.
TEST(ExchangeRoundTrip, ChosenPropertiesGiveIdsValuesAndNames) {
    const std::string geojson = R"({"type":"FeatureCollection","features":[
{"type":"Feature","properties":{"FIELD_ID":"F7","RATE":"12.5"},"geometry":{"type":"Polygon","coordinates":[
 [[-93.26,45.49],[-93.26,45.51],[-93.24,45.51],[-93.24,45.49],[-93.26,45.49]],
 [[-93.255,45.495],[-93.25,45.495],[-93.25,45.5],[-93.255,45.495]]]}},
{"type":"Feature","properties":{"FIELD_ID":"W1","LABEL":"Well"},"geometry":{"type":"Point","coordinates":[-93.25,45.5]}}]})";
    TMapLayer layer;
    TLoadReport report;
    {
        const TCompleteProfile columns(true, "field_id", "rate", "label");
        ASSERT_EQ(LoadBytes(EXCHANGE_FILE_GEOJSON, geojson, layer, report), 0);
    }
    std::string got;
    for (const TMapElement* e : layer.m_Elements) {
        got += std::string(GetElementKindName(e->GetKind())) + " " + e->m_strId + " " +
               std::to_string(e->m_dValue);
        if (const auto* line = dynamic_cast<const TFeatureLine*>(e))
            got += std::string(" ") + BoundTypeName(line->m_iBoundType) + " " +
                   std::to_string(line->m_iNumPoints);
        if (const auto* marker = dynamic_cast<const TFeatureMarker*>(e)) got += " " + marker->m_strName;
        got += "\n";
    }
    EXPECT_EQ(got, "boundary F7 12.500000 INC 5\nboundary F7 12.500000 EXC 4\nmarker W1 0.000000 Well\n");
}
}  // namespace
