#pragma once
// Layers and settings for the MID/MIF writer tests.

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

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

// Path of a file under tests/data/midmif.
inline std::string MidMifDataFile(const std::string& name) {
    return std::string(TL_GIS_SOURCE_DIR) + "/tests/data/midmif/" + name;
}

// Compares the pair written at base.mif / base.mid with the golden pair of that name.
inline testing::AssertionResult SameAsGolden(const std::string& writtenBase, const std::string& goldenName) {
    for (const char* ext : {".mif", ".mid"}) {
        const std::string written = ReadFileBytes(writtenBase + ext);
        const std::string golden = ReadFileBytes(MidMifDataFile(goldenName + ext));
        if (golden.empty())
            return testing::AssertionFailure() << "golden " << goldenName << ext << " is missing";
        if (written != golden) {
            std::size_t at = 0;
            while (at < written.size() && at < golden.size() && written[at] == golden[at]) ++at;
            return testing::AssertionFailure()
                   << goldenName << ext << " differs at byte " << at << "\n--- written ---\n"
                   << written << "\n--- golden ---\n"
                   << golden;
        }
    }
    return testing::AssertionSuccess();
}
