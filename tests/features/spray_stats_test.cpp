// Statistics runs, copies and extents of recorded spray runs.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <memory>

#include "features/buffer.h"
#include "features/feature_spray.h"

namespace {
const tagLOC kStart{45.5, -93.25};

void SetSeconds(tagSPRAYREC& rec, double secondsOfDay) {
    const int hundredths = static_cast<int>(secondsOfDay * 100.0 + 0.5);
    TSprayTime t;
    t.iYear = 2024;
    t.iMonth = 6;
    t.iDay = 1;
    t.iHour = hundredths / 360000;
    t.iMinute = hundredths / 6000 % 60;
    t.iSecond = hundredths / 100 % 60;
    t.iHundredths = hundredths % 100;
    PackSprayTime(t, rec);
}

// n samples flying north, spacing metres and one second apart, all with the given width.
std::unique_ptr<TFeatureSpray> MakeRun(int n, double spacing = 10.0, double width = 20.0) {
    auto spray = std::make_unique<TFeatureSpray>(n);
    for (int i = 0; i < n; ++i) {
        tagSPRAYREC& r = spray->m_pRecs[i];
        r.locPos = TLoc(kStart).Offset(0.0, i * spacing);
        r.dSwathWidth = width;
        r.bySpray = 1;
        SetSeconds(r, 14 * 3600.0 + i);
        TFeatureSpray::SwathEnds(r.locPos, 0.0, width, r.locSwathA, r.locSwathB);
        r.adChannel[0] = 100.0 + i;
    }
    return spray;
}

void SetWidth(TFeatureSpray& spray, int i, double width) {
    tagSPRAYREC& r = spray.m_pRecs[i];
    r.dSwathWidth = width;
    TFeatureSpray::SwathEnds(r.locPos, 0.0, width, r.locSwathA, r.locSwathB);
}

struct TStatsCase {
    const char* pszName;
    int iSamples;
    std::function<void(TFeatureSpray&)> setUp;
    int iFirst, iLast;
    int iSteps;
    double dAreaHa;
    double dChannel0;  // first channel output after the run
};

const TStatsCase kStatsCases[] = {
    {"no swath yet on the first two samples; a later empty swath does not stop counting", 6,
     [](TFeatureSpray& s) {
         SetWidth(s, 0, 0.0);
         SetWidth(s, 1, 0.0);
         SetWidth(s, 3, 0.0);
     },
     0, 5, 3, 0.01 + 0.01 + 0.02, 104.0},
    {"a 10.0 s gap counts, a 10.5 s gap does not", 4,
     [](TFeatureSpray& s) {
         SetSeconds(s.m_pRecs[1], 14 * 3600.0 + 10.0);
         SetSeconds(s.m_pRecs[2], 14 * 3600.0 + 20.5);
         SetSeconds(s.m_pRecs[3], 14 * 3600.0 + 21.0);
     },
     0, 3, 2, 0.04, 102.0},
    {"a gap across midnight is a gap", 3, [](TFeatureSpray& s) { SetSeconds(s.m_pRecs[2], 0.5); }, 0, 2, 1,
     0.02, 100.0},
    {"run 0..1 takes the later sample's width and channels", 10,
     [](TFeatureSpray& s) {
         SetWidth(s, 0, 10.0);
         SetWidth(s, 1, 30.0);
     },
     0, 1, 1, 0.03, 101.0},
    {"run 4..9 takes the mean width of each pair", 10,
     [](TFeatureSpray& s) {
         for (int i = 0; i < 10; ++i) SetWidth(s, i, i % 2 ? 30.0 : 10.0);
     },
     4, 9, 5, 0.10, 108.0},
    {"first + 1 > last counts nothing", 10, [](TFeatureSpray&) {}, 5, 5, 0, 0.0, 0.0},
    {"last past the samples stops at the last sample", 3, [](TFeatureSpray&) {}, 0, 50, 2, 0.04, 101.0},
};

TEST(SprayStats, Runs) {
    for (const TStatsCase& c : kStatsCases) {
        auto spray = MakeRun(c.iSamples);
        c.setUp(*spray);
        double channels[SPRAY_CHANNELS];
        std::fill(std::begin(channels), std::end(channels), -1.0);
        spray->ComputeSprayStats(c.iFirst, c.iLast, nullptr, channels);
        EXPECT_EQ(spray->m_iStepCount, c.iSteps) << c.pszName;
        EXPECT_EQ(spray->m_iRateCount, c.iSteps * SPRAY_CHANNELS) << c.pszName;
        EXPECT_NEAR(spray->m_dTotalArea, c.dAreaHa, 1e-9) << c.pszName;
        EXPECT_EQ(spray->m_bHasArea, c.iSteps > 0 ? 1 : 0) << c.pszName;
        EXPECT_EQ(channels[0], c.dChannel0) << c.pszName;
        EXPECT_EQ(channels[1], 0.0) << c.pszName;
        double sum = 0.0;
        for (int i = 0; i < spray->m_iStepCount; ++i) sum += spray->m_pdStepArea[i];
        EXPECT_NEAR(sum, spray->m_dTotalArea, 1e-12) << c.pszName;
    }
}

TEST(SprayStats, GrowsPast1000StepsKeepingEveryEntry) {
    const int n = 1500;
    auto spray = MakeRun(n);
    for (int i = 0; i < n; ++i) {
        tagSPRAYREC& r = spray->m_pRecs[i];
        r.bySpray = static_cast<std::uint8_t>(i % 2);
        r.sBoom = static_cast<std::int16_t>(i % 3 == 0);
        for (int c = 0; c < SPRAY_CHANNELS; ++c) {
            r.afActualRate[c] = static_cast<float>(i + c * 0.25);
            r.afTargetRate[c] = static_cast<float>(2 * i + c);
        }
    }
    spray->ComputeAllSprayStats();
    ASSERT_EQ(spray->m_iStepCount, n - 1);
    ASSERT_EQ(spray->m_iRateCount, (n - 1) * SPRAY_CHANNELS);
    EXPECT_EQ(spray->m_iStepAlloc, 2000);
    EXPECT_NEAR(spray->m_dTotalArea, (n - 1) * 0.02, 1e-7);
    int wrong = 0;
    for (int k = 1; k < n; ++k) {
        const int step = k - 1;
        wrong += spray->m_pbySprayFlag[step] != k % 2;
        wrong += spray->m_pbyBoomFlag[step] != (k % 3 == 0 ? 1 : 0);
        wrong += std::fabs(spray->m_pdStepArea[step] - 0.02) > 1e-10;
        for (int c = 0; c < SPRAY_CHANNELS; ++c) {
            wrong += spray->m_pdActualRate[step * SPRAY_CHANNELS + c] != static_cast<float>(k + c * 0.25);
            wrong += spray->m_pdTargetRate[step * SPRAY_CHANNELS + c] != static_cast<float>(2 * k + c);
        }
    }
    EXPECT_EQ(wrong, 0) << "entries differ from their samples after the arrays grew";

    // The next run starts again from the first entry and keeps the storage.
    spray->ComputeSprayStats(10, 13, nullptr, spray->m_adChannel);
    EXPECT_EQ(spray->m_iStepCount, 3);
    EXPECT_EQ(spray->m_iRateCount, 30);
    EXPECT_EQ(spray->m_iStepAlloc, 2000);
    EXPECT_EQ(spray->m_pdActualRate[0], 11.0);
}

TEST(SprayStats, LastCountedSampleGivesHeightAndCrew) {
    auto spray = MakeRun(4);
    const char* aircraft[] = {"A0", "A1", "A2", "A3"};
    for (int i = 0; i < 4; ++i) {
        tagSPRAYREC& r = spray->m_pRecs[i];
        r.sHeight = static_cast<std::int16_t>(10 + i);  // 12 on sample 2
        r.dAgl = 1.5 * i;
        SetSprayText(r.szAircraft, sizeof r.szAircraft, aircraft[i]);
        SetSprayText(r.szPilot, sizeof r.szPilot, std::string("Pilot") + aircraft[i]);
    }
    SetWidth(*spray, 2, 24.0);
    SetSeconds(spray->m_pRecs[3], 14 * 3600.0 + 40.0);  // step to sample 3 dropped
    spray->ComputeAllSprayStats();
    EXPECT_EQ(spray->m_iStepCount, 2);
    EXPECT_DOUBLE_EQ(spray->m_dHeight, 2.4);
    EXPECT_DOUBLE_EQ(spray->m_dAgl, 3.0);
    EXPECT_DOUBLE_EQ(spray->m_dSwathWidth, 24.0);
    EXPECT_EQ(spray->m_strAircraft, "A2");
    EXPECT_EQ(spray->m_strPilot, "PilotA2");
}

TEST(SprayElement, CloneIsIndependent) {
    for (int n : {0, 3}) {
        auto spray = MakeRun(n);
        for (int i = 0; i < n; ++i) {
            spray->m_pRecs[i].strFieldName = "North 40";
            SetSprayText(spray->m_pRecs[i].szPilot, sizeof spray->m_pRecs[i].szPilot, "J.Smith");
        }
        spray->m_strId = "run";
        spray->ComputeAllSprayStats();
        std::unique_ptr<TMapElement> copyElement(spray->Clone());
        auto* copy = dynamic_cast<TFeatureSpray*>(copyElement.get());
        ASSERT_NE(copy, nullptr) << n << " samples";
        EXPECT_EQ(copy->m_iNumRecs, n);
        EXPECT_EQ(copy->m_pRecs == nullptr, n == 0) << n << " samples";
        EXPECT_EQ(copy->m_strId, "run");
        EXPECT_EQ(copy->m_dwType, 0x0C000000u) << "writers know spray runs by this kind";
        EXPECT_NE(copy->m_dwFlags & 0x2000u, 0u);
        EXPECT_EQ(copy->m_dTotalArea, spray->m_dTotalArea);
        EXPECT_EQ(copy->m_iStepCount, 0) << "statistics arrays are not copied";
        for (int i = 0; i < n; ++i) {
            EXPECT_EQ(copy->m_pRecs[i].locPos.dLat, spray->m_pRecs[i].locPos.dLat);
            copy->m_pRecs[i].strFieldName = "changed";
            SetSprayText(copy->m_pRecs[i].szPilot, sizeof copy->m_pRecs[i].szPilot, "X");
            EXPECT_EQ(spray->m_pRecs[i].strFieldName, "North 40") << "sample " << i;
            EXPECT_STREQ(spray->m_pRecs[i].szPilot, "J.Smith") << "sample " << i;
        }
        // Self-assignment leaves the samples alone.
        *spray = *spray;
        EXPECT_EQ(spray->m_iNumRecs, n);
    }
}

TEST(SprayElement, ExtentsCoverSwathEndsOnly) {
    auto spray = MakeRun(3, 10.0, 20.0);
    spray->CalculateGeoExtents();
    const TLocRect& r = spray->m_rcExtents;
    double west = 180.0, east = -180.0;
    for (int i = 0; i < 3; ++i) {
        west = std::min({west, spray->m_pRecs[i].locSwathA.dLon, spray->m_pRecs[i].locSwathB.dLon});
        east = std::max({east, spray->m_pRecs[i].locSwathA.dLon, spray->m_pRecs[i].locSwathB.dLon});
    }
    EXPECT_EQ(r.dWest, west);
    EXPECT_EQ(r.dEast, east);
    EXPECT_EQ(r.dNorth, std::max(spray->m_pRecs[2].locSwathA.dLat, spray->m_pRecs[2].locSwathB.dLat));

    EXPECT_FALSE(spray->IsIn(r)) << "a spray run is never picked by a rectangle";

    spray->SetIncludeInExtents(false);
    spray->CalculateGeoExtents();
    EXPECT_TRUE(spray->m_rcExtents.IsEmpty());

    TFeatureSpray none;
    none.CalculateGeoExtents();
    EXPECT_TRUE(none.m_rcExtents.IsEmpty());
}

TEST(SprayTime, PacksAndUnpacks) {
    const TSprayTime cases[] = {
        {2024, 6, 1, 14, 3, 10, 50},  {1993, 1, 1, 0, 0, 0, 0}, {2120, 12, 31, 23, 59, 59, 99},
        {2008, 2, 29, 12, 30, 45, 7},  // year offset 15: all low nibble bits set
        {2009, 10, 15, 9, 5, 1, 1},    // year offset 16: first high bit
    };
    for (const TSprayTime& t : cases) {
        tagSPRAYREC rec;
        PackSprayTime(t, rec);
        const TSprayTime u = UnpackSprayTime(rec);
        EXPECT_TRUE(u.iYear == t.iYear && u.iMonth == t.iMonth && u.iDay == t.iDay && u.iHour == t.iHour &&
                    u.iMinute == t.iMinute && u.iSecond == t.iSecond && u.iHundredths == t.iHundredths)
            << FormatSprayTime(rec);
        EXPECT_TRUE(IsSprayTimeValid(rec)) << FormatSprayTime(rec);
    }
    tagSPRAYREC rec;
    PackSprayTime({2024, 6, 1, 14, 3, 10, 50}, rec);
    EXPECT_EQ(FormatSprayTime(rec), "2024-06-01T14:03:10.50");
    // Bit layout: 50 | 10 << 7 | 3 << 13 | 14 << 19 | 1 << 24 | (31 >> 4) << 29; month 6 | (31 & 15) << 4.
    EXPECT_EQ(rec.dwTimeStamp, 50u | 10u << 7 | 3u << 13 | 14u << 19 | 1u << 24 | 1u << 29);
    EXPECT_EQ(rec.byMonthYear, 6 | 15 << 4);
    EXPECT_DOUBLE_EQ(SprayTimeOfDay(rec), 14 * 3600 + 3 * 60 + 10.5);

    const std::uint32_t invalid[] = {100u, 60u << 7, 60u << 13, 24u << 19};
    for (std::uint32_t stamp : invalid) {
        rec.dwTimeStamp = stamp;
        EXPECT_FALSE(IsSprayTimeValid(rec)) << stamp;
    }
}

// A buffer hands back its one block while it is big enough, contents kept, and grows it when not.
TEST(Buffer, ReusesTheLargestBlock) {
    TBuffer buffer;
    EXPECT_EQ(buffer.GetBuffer(0), nullptr) << "no block was ever obtained";
    unsigned char* first = buffer.GetBuffer(100);
    ASSERT_NE(first, nullptr);
    first[99] = 99;
    EXPECT_EQ(buffer.GetBuffer(28), first);
    EXPECT_EQ(first[99], 99) << "contents are kept when the block is big enough";
    unsigned char* second = buffer.GetBuffer(200);
    ASSERT_NE(second, nullptr);
    EXPECT_EQ(buffer.m_nSize, 200u);
    buffer.Zero();
    EXPECT_EQ(second[199], 0);
}
}  // namespace
