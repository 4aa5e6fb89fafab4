#pragma once
// Layers and settings for the MID/MIF writer tests.

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

#include "features/feature_spray.h"
#include "gis/midmif/gis_file_midmif.h"
#include "test_support.h"

// Restores the writer's class settings after each test.
class MidMifSettings : public testing::Test {
protected:
    void SetUp() override { Reset(); }
    void TearDown() override { Reset(); }
    static void Reset() {
        TGisFileMidMif::s_eMidDelimiter = MID_DELIMITER_COMMA;
        TGisFileMidMif::s_iMidSprayChans = 0;
        TGisFileMidMif::s_bMidCompleteRows = false;
        TGisFileMidMif::s_iDefaultMetric = 0;
        TGisFileMidMif::s_iDefaultSingleBlockMode = 0;
    }
};

inline void AddMarker(TMapLayer& layer, const std::string& name, double lat, double lon) {
    auto* marker = new TFeatureMarker;
    marker->m_strName = name;
    marker->m_Loc = TLoc(lat, lon);
    layer.AddElement(marker);
}

template <class TLine = TFeatureLineBoundary>
void AddPolygon(TMapLayer& layer, const std::string& id, int boundType, const std::vector<tagLOC>& points) {
    auto* line = new TLine;
    auto* copy = new tagLOC[points.size() + 1];
    std::copy(points.begin(), points.end(), copy);
    line->AdoptPoints(copy, static_cast<int>(points.size()), static_cast<int>(points.size()) + 1);
    line->SetLowBits(boundType);
    line->m_strId = id;
    layer.AddElement(line);
}

// One recorded sample for a writer test: position of the swath ends, time, and the fields the
// .mid rows show. The sample position lies halfway between the swath ends.
struct TSampleValues {
    tagLOC locA;
    tagLOC locB;
    TSprayTime time;
    double dSpeed = 0;
    int iHeading = 0;
    int iHeight = 0;       // units of 0.2 m
    float afRate[3] = {};  // channels 0..2, litres per hectare
    std::uint8_t bySpray = 1;
};

inline TFeatureSpray* AddSpray(TMapLayer& layer, const std::vector<TSampleValues>& samples,
                               double channel0 = 0) {
    auto* spray = new TFeatureSpray(static_cast<int>(samples.size()));
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const TSampleValues& s = samples[i];
        tagSPRAYREC& rec = spray->m_pRecs[i];
        rec.locSwathA = s.locA;
        rec.locSwathB = s.locB;
        rec.locPos = TLoc((s.locA.dLat + s.locB.dLat) / 2, (s.locA.dLon + s.locB.dLon) / 2);
        PackSprayTime(s.time, rec);
        rec.dSpeed = s.dSpeed;
        rec.sHeading = static_cast<std::int16_t>(s.iHeading);
        rec.sHeight = static_cast<std::int16_t>(s.iHeight);
        std::copy(std::begin(s.afRate), std::end(s.afRate), rec.afActualRate);
        rec.bySpray = s.bySpray;
    }
    spray->m_adChannel[0] = channel0;
    layer.AddElement(spray);
    return spray;
}

// 15 March 2020 at 14:03, plus seconds and hundredths.
inline TSprayTime MarchTime(int second, int hundredths) {
    TSprayTime t;
    t.iYear = 2020, t.iMonth = 3, t.iDay = 15, t.iHour = 14, t.iMinute = 3;
    t.iSecond = second, t.iHundredths = hundredths;
    return t;
}

// Three spraying samples flying north along longitude -93 with a 0.001 degree swath to the west:
// speeds 50, 40 and 60 m/s, headings 7, 8, 9, heights 100, 50 and 0 m, channel-0 rates 5, 6
// and 7 and channel-1 rates 10, 30 and 20 litres per hectare.
inline TFeatureSpray* AddThreeSampleSpray(TMapLayer& layer, double channel0 = 0) {
    std::vector<TSampleValues> samples;
    const double speeds[] = {50, 40, 60};
    const int heights[] = {500, 250, 0};
    const float rates1[] = {10, 30, 20};
    for (int i = 0; i < 3; ++i) {
        TSampleValues s;
        s.locA = TLoc(45.0 + 0.001 * i, -93.0);
        s.locB = TLoc(45.0 + 0.001 * i, -93.001);
        s.time = MarchTime(10 + (i + 1) / 2, i % 2 == 0 ? 50 : 0);
        s.dSpeed = speeds[i];
        s.iHeading = 7 + i;
        s.iHeight = heights[i];
        s.afRate[0] = static_cast<float>(5 + i);
        s.afRate[1] = rates1[i];
        samples.push_back(s);
    }
    return AddSpray(layer, samples, channel0);
}

// The lines of a text without their line ends.
inline std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        lines.push_back(line);
    }
    return lines;
}

// Graphic objects of a .mif: the lines that open a region, point or polyline.
inline int CountObjects(const std::string& mif) {
    int objects = 0;
    for (const std::string& line : Lines(mif))
        if (line.rfind("REGION", 0) == 0 || line.rfind("POINT", 0) == 0 || line.rfind("PLINE", 0) == 0)
            ++objects;
    return objects;
}

// Path of a file under tests/data/midmif.
inline std::string MidMifDataFile(const std::string& name) {
    return std::string(TL_GIS_SOURCE_DIR) + "/tests/data/midmif/" + name;
}

// Compares the pair written at base.mif / base.mid with the golden pair of that name.
inline void ExpectSameAsGolden(const std::string& writtenBase, const std::string& goldenName) {
    for (const char* ext : {".mif", ".mid"}) {
        const std::string golden = ReadFileBytes(MidMifDataFile(goldenName + ext));
        EXPECT_FALSE(golden.empty()) << goldenName << ext;
        EXPECT_EQ(ReadFileBytes(writtenBase + ext), golden) << goldenName << ext;
    }
}
