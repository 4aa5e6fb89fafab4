#pragma once
// Recorded spray as the spray table shows it: the swath polygons of a run, one for each stretch of
// nearly straight flight, and the values of a table row. The shapefile writer builds its swath
// polygons and rows from these; exporters of other formats use them to show the same polygons
// with the same values.

#include <tl_gis/export.h>
#include <cstdint>
#include <string>
#include <vector>

#include <tl_gis/features/feature_spray.h>

// The stretches of one run, in flight order: each goes on while the step headings stay within
// 45 degrees of its first step (one step each in single-block mode), and consecutive stretches
// share their boundary sample. A run narrower than 0.1 m at sample 1 has none, and a sample that
// is not spraying ends the run's stretches. Where the swath line of a later sample crosses the
// stretch's first one, the later sample's end that moved less is put onto the first one's, so
// that the polygon cannot fold over itself: this changes the samples.
class TL_GIS_API TSwathStretches {
public:
    TSwathStretches(TFeatureSpray& spray, bool singleBlock);
    // The next stretch, samples first..last; false when the run has no more.
    bool Next(int& first, int& last);

    // The ring of a stretch: out along the A ends of samples first..last, back along their B
    // ends, and the first A end again.
    static int RingPointCount(int first, int last) { return 2 * (last - first) + 3; }
    // The box of a stretch's ring.
    static TLocRect RingBox(const TFeatureSpray& spray, int first, int last);
    static const tagLOC& RingPoint(const TFeatureSpray& spray, int first, int last, int index) {
        const int steps = last - first;
        if (index <= steps) return spray.m_pRecs[first + index].locSwathA;
        if (index <= 2 * steps + 1) return spray.m_pRecs[last - (index - steps - 1)].locSwathB;
        return spray.m_pRecs[first].locSwathA;
    }

private:
    TFeatureSpray& m_Spray;
    bool m_bSingleBlock;
    int m_iStart = 0;
    bool m_bDone;
};

// Where the recorded data came from, as the CUSTOMER, FILE_NAME and FILE_DATE columns show it.
struct TSpraySource {
    std::string strCustomer;
    std::string strFileName = "N/A";       // the file's name without folder and extension
    std::string strFileDate = "Date N/A";  // its last change, dd/mm/yyyy in local time
};
// The source of recorded data read from its file (empty when unknown), for the company.
TL_GIS_API TSpraySource ReadSpraySource(const std::string& company, const std::string& sourcePath);

// A row's summary of the steps its shape stands for: their summed area, the spray flag of the
// last step and the boom flag of the first. Unknown when no step was counted.
struct TSprayStepSummary {
    bool bKnown = false;
    double dArea = 0.0;  // hectares
    std::uint8_t bySpray = 0;
    std::uint8_t byBoom = 0;
};
TL_GIS_API TSprayStepSummary SummarizeSpraySteps(const double* area, const std::uint8_t* spray,
                                                 const std::uint8_t* boom, int count);

// The values of one row of the spray table before units are chosen: speed in m/s, lengths in
// metres, area in hectares, rates in litres per hectare.
struct TSprayTableRow {
    std::string strCustomer;
    std::string strFileName;
    std::string strFileDate;
    std::string strAircraft;
    std::string strPilot;
    std::string strFieldName;
    std::string strOffset;
    std::string strLineNum;
    std::string strEventTime;
    std::string strPosLat;
    std::string strPosLon;
    double dSpeed = 0.0;
    double dTrack = 0.0;
    double dSwathWidth = 0.0;
    double dHeight = 0.0;
    double dAgl = 0.0;
    TSprayStepSummary Steps;
    bool bHasRates = false;
    double dTargetRate = 0.0;
    double dActualRate = 0.0;
};

// " hh:mm:ss.hh" of a sample's time, or "Time N/A" for a time stamp out of range.
TL_GIS_API void AppendSprayEventTime(std::string& out, const tagSPRAYREC& sample);
// The values a row takes from one sample: the source, time, field, offset, line, the numbers
// (height in whole metres, as sample rows show it), channel 1's rates and a step of no area
// whose spray and boom flags are the sample's spray flag.
TL_GIS_API void SetSampleRowValues(const tagSPRAYREC& sample, const TSpraySource& source,
                                   TSprayTableRow& row);
// POS_LAT and POS_LON of a row, ten decimals each.
TL_GIS_API void SetSprayRowPosition(TSprayTableRow& row, double lat, double lon);
// The row of the swath polygon of stretch first..last whose ring has the box: runs the run's
// statistics over the stretch (replacing the element's statistics members), then takes the last
// sample's values, the run's aircraft, pilot, swath width and heights, the centre of the box as
// the position, and channel 1's rates of the stretch's first step.
TL_GIS_API void SetSwathRowValues(TFeatureSpray& spray, int first, int last, const TLocRect& box,
                                  const TSpraySource& source, TSprayTableRow& row);

// One column of a row as the metric spray table holds it: a text, or a number (unknown when the
// statistics counted no step) with the table's decimals.
struct TSprayTableCell {
    const char* pszColumn;
    bool bNumber = false;
    bool bKnown = true;
    double dNumber = 0.0;
    int iDecimals = 0;
    std::string strText;
};
// The 22 columns of a swath polygon's row in metric units, SEGMENTID first; texts trimmed of the
// blanks that the table's fixed widths add.
TL_GIS_API std::vector<TSprayTableCell> GetMetricSprayTableCells(const TSprayTableRow& row,
                                                                 long long segmentId);

// The 8 columns of the non-spray row of the path that starts at the sample, in metric units:
// SAMPLEID, the sample's line, time and position, its speed in miles per hour, height and height
// above ground in metres.
TL_GIS_API std::vector<TSprayTableCell> GetMetricNonSprayTableCells(const tagSPRAYREC& sample,
                                                                    long long sampleId);
