// Recorded spray: distances and step areas, statistics runs, copies, extents; the record buffer.

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <vector>

#include <tl_gis/features/buffer.h>
#include <tl_gis/features/feature_spray.h>
#include <tl_gis/hostmap/geodesy.h>

namespace {

using TChanges = std::vector<std::pair<int, double>>;  // sample index, new value

// n samples flying north 10 m and one second apart from 14:00, 20 m wide, height 10 + i in 0.2 m
// units, channel 0 100 + i; then the given swath widths and seconds of the day.
std::unique_ptr<TFeatureSpray> MakeRun(int n, const TChanges& widths = {}, const TChanges& seconds = {}) {
    auto spray = std::make_unique<TFeatureSpray>(n);
    std::vector<double> width(n, 20.0), second(n);
    for (int i = 0; i < n; ++i) second[i] = 50400.0 + i;
    for (const auto& [i, w] : widths) width[i] = w;
    for (const auto& [i, s] : seconds) second[i] = s;
    for (int i = 0; i < n; ++i) {
        tagSPRAYREC& r = spray->m_pRecs[i];
        const int h = static_cast<int>(second[i] * 100.0 + 0.5);
        PackSprayTime({2024, 6, 1, h / 360000, h / 6000 % 60, h / 100 % 60, h % 100}, r);
        r.locPos = TLoc(45.5, -93.25).Offset(0.0, i * 10.0);
        r.dSwathWidth = width[i];
        TFeatureSpray::SwathEnds(r.locPos, 0.0, width[i], r.locSwathA, r.locSwathB);
        r.bySpray = 1;
        r.adChannel[0] = 100.0 + i;
        r.sHeight = static_cast<std::int16_t>(10 + i);
    }
    return spray;
}

// Ends of geodesics on WGS84 from PROJ's geod, e.g. for 1000 m on azimuth 45:
//   echo "45.5 -93.25 45 1000" | geod +ellps=WGS84 -f %.12f
// The mean-latitude formula is meant for 10 m to 10 km, so nothing longer is compared.
TEST(GeoDistance, AgreesWithTheGeodesicAndGivesStepAreas) {
    struct TCase {
        double lat2, lon2, metres, lat1 = 45.5, lon1 = -93.25;
    };
    // clang-format off
    const TCase cases[] = {
        {45.500089975352, -93.250000000000, 10},   {45.499934196159, -93.249912741241, 10},
        {45.500636218199, -93.249095276020, 100},  {45.506361856293, -93.240951843051, 1000},
        {45.499999283462, -93.237205414974, 1000}, {45.589974640574, -93.250000000000, 10000},
        {45.434162535538, -93.162842661162, 10000}, {-33.921179018306, 151.190753216400, 2500, -33.9, 151.2},
        {60.122415893946, 10.622111210764, 5000, 60.1, 10.7},
    };
    // clang-format on
    for (const TCase& c : cases) {
        const double d = GeoDistance(c.lat1, c.lon1, c.lat2, c.lon2);
        EXPECT_NEAR(d / c.metres, 1.0, 1e-6) << c.lat2 << "," << c.lon2;
        tagSPRAYREC a, b;
        a.locPos = {c.lat1, c.lon1}, a.dSwathWidth = 10.0;
        b.locPos = {c.lat2, c.lon2}, b.dSwathWidth = 30.0;
        double distance = 0.0, area = TFeatureSpray::StepArea(a, b, &distance);
        EXPECT_TRUE(std::abs(area / (c.metres * 20 / 10000) - 1.0) < 1e-6 && distance == d)
            << c.lat2 << "," << c.lon2;
    }
}

TEST(SprayStats, Runs) {
    struct TCase {
        const char* name;
        int samples;
        TChanges widths, seconds;
        int first, last, steps;
        double areaHa, channel0, height;  // channel 0 output and height after the run
    };
    // clang-format off
    const TCase cases[] = {
        {"swath ends coincide on samples 0 and 1, not on 3", 6, {{0, 0}, {1, 0}, {3, 0}}, {},
         0, 5, 3, 0.04, 104, 3.0},
        {"a 10.0 s gap counts, a 10.5 s gap does not", 4, {}, {{1, 50410}, {2, 50420.5}, {3, 50421}},
         0, 3, 2, 0.04, 102, 2.6},
        {"a gap across midnight", 3, {}, {{2, 0.5}}, 0, 2, 1, 0.02, 100, 2.2},
        {"run 0..1 takes the later sample's width and channels", 10, {{0, 10}, {1, 30}}, {},
         0, 1, 1, 0.03, 101, 2.2},
        {"run 4..9 takes the mean width of each pair", 10, {{4, 10}, {5, 30}, {6, 10}, {7, 30}, {8, 10}, {9, 30}}, {},
         4, 9, 5, 0.10, 108, 3.8},
        {"first + 1 > last", 10, {}, {}, 5, 5, 0, 0.0, 0, 0.0},
        {"last past the samples; height 12 is 2.4 m", 3, {}, {}, 0, 50, 2, 0.04, 101, 2.4},
    };
    // clang-format on
    for (const TCase& c : cases) {
        auto spray = MakeRun(c.samples, c.widths, c.seconds);
        double channels[SPRAY_CHANNELS] = {-1, -1};
        spray->ComputeSprayStats(c.first, c.last, nullptr, channels);
        double sum = 0.0;
        for (int i = 0; i < spray->m_iStepCount; ++i) sum += spray->m_pdStepArea[i];
        EXPECT_TRUE(spray->m_iStepCount == c.steps && spray->m_iRateCount == c.steps * SPRAY_CHANNELS)
            << c.name;
        EXPECT_TRUE(std::abs(spray->m_dTotalArea - c.areaHa) < 1e-9 && std::abs(sum - c.areaHa) < 1e-9)
            << c.name << ": " << spray->m_dTotalArea << " " << sum;
        EXPECT_TRUE(channels[0] == c.channel0 && std::abs(spray->m_dHeight - c.height) < 1e-12)
            << c.name << ": " << channels[0] << " " << spray->m_dHeight;
    }
}

TEST(SprayStats, GrowsPast1000StepsKeepingEveryEntry) {
    const int n = 1500;
    auto spray = MakeRun(n);
    for (int i = 0; i < n; ++i) {
        spray->m_pRecs[i].bySpray = static_cast<std::uint8_t>(i % 2);
        for (int c = 0; c < SPRAY_CHANNELS; ++c)
            spray->m_pRecs[i].afActualRate[c] = static_cast<float>(i + c);
    }
    spray->ComputeAllSprayStats();
    ASSERT_EQ(spray->m_iStepCount, n - 1);
    int wrong = 0;
    for (int k = 1; k < n; ++k) {
        wrong += spray->m_pbySprayFlag[k - 1] != k % 2;
        for (int c = 0; c < SPRAY_CHANNELS; ++c)
            wrong += spray->m_pdActualRate[(k - 1) * SPRAY_CHANNELS + c] != k + c;
    }
    EXPECT_EQ(wrong, 0) << "entries differ from their samples after the arrays grew";
    spray->ComputeSprayStats(10, 13, nullptr, spray->m_adChannel);
    EXPECT_EQ(spray->m_iStepCount, 3);
    EXPECT_EQ(spray->m_pdActualRate[0], 11.0) << "a new run starts from the first entry";
}

TEST(SprayElement, CloneIsIndependentAndExtentsCoverSwathEnds) {
    auto spray = MakeRun(3);
    spray->m_pRecs[1].strFieldName = "North 40";
    std::unique_ptr<TMapElement> element(spray->Clone());
    auto* copy = dynamic_cast<TFeatureSpray*>(element.get());
    ASSERT_TRUE(copy != nullptr && copy->m_iNumRecs == 3);
    copy->m_pRecs[1].strFieldName = "changed";
    EXPECT_EQ(spray->m_pRecs[1].strFieldName, "North 40");

    spray->CalculateGeoExtents();
    const TLocRect& r = spray->m_rcExtents;
    EXPECT_TRUE(r.dWest < -93.25 - 1e-4 && r.dEast > -93.25 + 1e-4) << "the swath ends, 10 m either side";
    EXPECT_FALSE(spray->IsIn(r)) << "a spray run is never picked by a rectangle";
    spray->SetIncludeInExtents(false);
    spray->CalculateGeoExtents();
    EXPECT_TRUE(spray->m_rcExtents.IsEmpty());
}

// A buffer hands back its block, contents kept, while it is big enough, and grows it when not.
TEST(Buffer, ReusesTheLargestBlock) {
    TBuffer buffer;
    EXPECT_EQ(buffer.GetBuffer(0), nullptr) << "no block was ever obtained";
    unsigned char* first = buffer.GetBuffer(100);
    ASSERT_NE(first, nullptr);
    first[99] = 99;
    EXPECT_TRUE(buffer.GetBuffer(28) == first && first[99] == 99);
    unsigned char* second = buffer.GetBuffer(200);
    ASSERT_TRUE(second != nullptr && buffer.m_nSize == 200u);
    buffer.Zero();
    EXPECT_EQ(second[199], 0);
}

}  // namespace
