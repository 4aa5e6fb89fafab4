// Recorded spray in MID/MIF pairs: rate units and channels, block modes, row layouts, and
// complete rows that give every object its row.

#include <functional>
#include <string>
#include <vector>

#include "gis/gis_map.h"
#include "midmif_test_support.h"

namespace {
struct TWritten {
    std::string strMif;
    std::string strMid;
};

TWritten WriteLayer(TMapLayer& layer) {
    TTempDir dir;
    TGisMap map;
    const int result = map.WriteFile(dir.File("s.mif").c_str(), &layer);
    EXPECT_EQ(result, 0);
    return {ReadFileBytes(dir.File("s.mif")), ReadFileBytes(dir.File("s.mid"))};
}

// "regions R points P: rate|rate|..." with the flow-rate field (the seventh) of each row, unpadded.
std::string Summarise(const TWritten& w) {
    int regions = 0, points = 0;
    for (const std::string& line : Lines(w.strMif)) {
        regions += line.rfind("REGION", 0) == 0;
        points += line.rfind("POINT", 0) == 0;
    }
    std::string out = "regions " + std::to_string(regions) + " points " + std::to_string(points) + ":";
    const char* separator = " ";
    for (const std::string& row : Lines(w.strMid)) {
        std::istringstream fields(row);
        std::string rate;
        for (int i = 0; i < 7; ++i) std::getline(fields, rate, ',');
        out += separator + rate.erase(0, rate.find_first_not_of(' '));
        separator = "|";
    }
    return out;
}

struct TSprayCase {
    const char* pszName;
    std::function<void(TFeatureSpray&, TGisFileMidMif&)> change;
    const char* pszExpected;
};

using Spray = TFeatureSpray;
using Writer = TGisFileMidMif;

const TSprayCase kSprayCases[] = {
    {"defaults_us_gallons", [](Spray&, Writer&) {}, "regions 1 points 0: 3.2072|0.6414|0.7483"},
    {"metric_as_recorded", [](Spray&, Writer& w) { w.m_bMetric = 1; },
     "regions 1 points 0: 30.0000|6.0000|7.0000"},
    {"mass_in_pounds", [](Spray& s, Writer&) { s.m_iRateUnits = 6; },
     "regions 1 points 0: 26.7654|5.3531|6.2453"},
    {"other_units_as_recorded", [](Spray& s, Writer&) { s.m_iRateUnits = 5; },
     "regions 1 points 0: 30.0000|6.0000|7.0000"},
    {"no_channels_rate_zero", [](Spray&, Writer&) { Writer::s_iMidSprayChans = 0; },
     "regions 1 points 0: 0.0000|0.6414|0.7483"},
    {"three_channels_peak_of_channel_2",
     [](Spray& s, Writer&) {
         Writer::s_iMidSprayChans = 3;
         s.m_pRecs[1].afActualRate[2] = 100;
     },
     "regions 1 points 0: 10.6907|0.6414|0.7483"},
    {"channels_beyond_ten_stop_at_ten",
     [](Spray& s, Writer&) {
         Writer::s_iMidSprayChans = 40;
         s.m_pRecs[2].afActualRate[9] = 10;
     },
     "regions 1 points 0: 1.0691|0.6414|0.7483"},
    // Peaks are taken per block: the first pair peaks at 30, the second at 30 too, then 20 alone.
    {"pair_blocks_peak_per_block",
     [](Spray& s, Writer& w) {
         w.SetSingleBlockMode(1);
         s.m_pRecs[1].afActualRate[1] = 0;
     },
     "regions 2 points 0: 1.0691|2.1381|0.6414|0.7483"},
    {"channel_value_set_no_block_rows",
     [](Spray& s, Writer& w) {
         w.SetSingleBlockMode(1);
         s.m_adChannel[0] = 0.5;
     },
     "regions 2 points 0: 0.6414|0.7483"},
    {"no_channel_0_rate_no_sample_rows",
     [](Spray& s, Writer&) {
         for (int i = 0; i < 3; ++i) s.m_pRecs[i].afActualRate[0] = 0;
     },
     "regions 1 points 0: 3.2072"},
    {"first_sample_rate_alone_gives_all_rows",
     [](Spray& s, Writer&) { s.m_pRecs[1].afActualRate[0] = s.m_pRecs[2].afActualRate[0] = 0; },
     "regions 1 points 0: 3.2072|0.0000|0.0000"},
    {"later_samples_not_spraying_still_rowed", [](Spray& s, Writer&) { s.m_pRecs[1].bySpray = 0; },
     "regions 1 points 0: 3.2072|0.6414|0.7483"},
    // Complete rows: a row for every region, a point for every sample row.
    {"complete_rows_give_regions_rows",
     [](Spray& s, Writer& w) {
         Writer::s_bMidCompleteRows = true;
         w.SetSingleBlockMode(1);
         s.m_adChannel[0] = 0.5;
     },
     "regions 2 points 2: 0.0000|0.0000|0.6414|0.7483"},
};

using MidSprayWriter = MidMifSettings;

TEST_F(MidSprayWriter, RowsCarryTheExpectedRates) {
    for (const TSprayCase& c : kSprayCases) {
        Reset();
        TGisFileMidMif::s_iMidSprayChans = 2;
        TMapLayer layer;
        TFeatureSpray* spray = AddThreeSampleSpray(layer);
        TTempDir dir;
        const std::string path = dir.File("s.mif");
        {
            TGisFileMidMif writer;
            c.change(*spray, writer);
            ASSERT_EQ(writer.WriteFile(path.c_str(), &layer), 0) << c.pszName;
        }
        EXPECT_EQ(Summarise({ReadFileBytes(path), ReadFileBytes(dir.File("s.mid"))}), c.pszExpected)
            << c.pszName;
    }
}

TEST_F(MidSprayWriter, SprayRowUnderEachSeparator) {
    const struct {
        MIDDELIMITER eDelimiter;
        bool bComplete;
        const char* pszRow;
    } cases[] = {
        {MID_DELIMITER_TAB, true, "03:15:2020\t14:03:10.50\t111.8\t007\t00328\t ON\t    3.2072\t "},
        {MID_DELIMITER_SPACE, false, "03:15:2020 14:03:10.50 111.8 007 00328  ON     3.2072  "},
        // The padding of numbers and texts would split fields under a space separator.
        {MID_DELIMITER_SPACE, true, "03:15:2020 14:03:10.50 111.8 007 00328 \" ON\" \"    3.2072\" \" \""},
    };
    for (const auto& c : cases) {
        TGisFileMidMif::s_eMidDelimiter = c.eDelimiter;
        TGisFileMidMif::s_bMidCompleteRows = c.bComplete;
        TGisFileMidMif::s_iMidSprayChans = 2;
        TMapLayer layer;
        AddThreeSampleSpray(layer);
        const std::vector<std::string> rows = Lines(WriteLayer(layer).strMid);
        ASSERT_EQ(rows.size(), 3u) << c.eDelimiter << " " << c.bComplete;
        EXPECT_EQ(rows[0], c.pszRow) << c.eDelimiter << " " << c.bComplete;
    }
}

}  // namespace
