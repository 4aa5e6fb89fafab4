#pragma once
// Spray runs for the drawing writer tests, and the pinned clock of golden drawings.

#include <gtest/gtest.h>

#include <cstdint>
#include <ctime>
#include <vector>

#include <tl_gis/features/feature_spray.h>
#include <tl_gis/gis/line_assembly.h>
#include "layer_builders.h"
#include "platform/system_services.h"
#include "test_support.h"

// Golden drawings carry a local time stamp: pin the clock (5 March 2025 14:07:09 UTC) and the zone.
class TPinnedClockTest : public ::testing::Test {
protected:
    void SetUp() override {
        UseUtcAsLocalTime();
        SetClockForTesting([] { return std::time_t{1741183629}; });
    }
    void TearDown() override { SetClockForTesting({}); }
};

using layer_test::AddLine, layer_test::AddMarker, layer_test::AddPoint;

// A run of samples heading north along longitude -93 from latitude 45, one every 0.001 degrees,
// with the swath reaching 0.001 degrees to either side (A west, B east).
inline TFeatureSpray* AddSprayRun(TMapLayer& layer, int samples, bool spraying) {
    auto* spray = new TFeatureSpray(samples);
    for (int i = 0; i < samples; ++i) {
        const double lat = 45.0 + 0.001 * i;
        spray->m_pRecs[i].locPos = {lat, -93.0};
        spray->m_pRecs[i].locSwathA = {lat, -93.001};
        spray->m_pRecs[i].locSwathB = {lat, -92.999};
        spray->m_pRecs[i].bySpray = spraying ? 1 : 0;
    }
    spray->CalculateGeoExtents();
    layer.AddElement(spray);
    return spray;
}
