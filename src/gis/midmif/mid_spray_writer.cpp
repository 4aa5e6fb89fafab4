// Recorded spray as swath regions with their .mid rows.

#include <algorithm>
#include <climits>
#include <memory>
#include <new>

#include <tl_gis/features/feature_spray.h>
#include <tl_gis/gis/midmif/gis_file_midmif.h>
#include "gis/internal_results.h"
#include "gis/midmif/mid_fields.h"
#include "gis/midmif/mif_style.h"

void TGisFileMidMif::WriteSprayRow(const tagSPRAYREC& sample, std::string_view date, double flowRate) {
    TMidSprayRow row;
    row.dwTimeStamp = sample.dwTimeStamp;
    row.dSpeed = sample.dSpeed;
    row.iHeading = sample.sHeading;
    row.iHeight = sample.sHeight;
    row.dFlowRate = flowRate;
    std::string& out = m_strLine;
    out.clear();
    AppendMidSprayRow(out, date, Delimiter(), row, MidCompleteRows());
    FinishMidRow(out, kMidColumnCount);
    m_MidFile.WriteString(out);
}

int TGisFileMidMif::WriteFileSpray(TMapElement* element) {
    const auto* spray = dynamic_cast<const TFeatureSpray*>(element);
    if (spray == nullptr || spray->m_pRecs == nullptr) return 0;
    const int count = spray->m_iNumRecs;
    const tagSPRAYREC* samples = spray->m_pRecs;
    // The first sample's flag speaks for the whole run: a run that was not spraying has no swath.
    if (count < 2 || samples[0].bySpray == 0) return 0;

    std::string date;
    AppendMidDate(date, samples[0].byMonthYear, samples[0].dwTimeStamp);
    const int channels = std::clamp(s_iMidSprayChans, 0, SPRAY_CHANNELS);
    // Runs whose first channel value is set carry no block rows and no block peaks.
    const bool blockRows = spray->m_adChannel[0] == 0.0;
    const auto convert = [&](double rate) { return ConvertMidRate(rate, m_bMetric, spray->m_iRateUnits); };

    // One block over all samples, or one block per pair of consecutive samples. The outline
    // array is sized once for the largest block: side A forward, side B back, and the closing
    // point that the region repeats.
    const bool oneBlock = m_iSingleBlockMode == 0;
    const int blockSamples = oneBlock ? count : 2;
    if (blockSamples > (INT_MAX - 2) / 2) return RESULT_WRITE_FAILED;
    std::unique_ptr<tagLOC[]> outline(new (std::nothrow)
                                          tagLOC[2 * static_cast<std::size_t>(blockSamples) + 2]);
    if (!outline) return RESULT_WRITE_FAILED;

    const int lastStart = oneBlock ? 0 : count - 2;
    for (int first = 0; first <= lastStart; ++first) {
        const int last = first + blockSamples - 1;
        double peaks[SPRAY_CHANNELS] = {};
        int points = 0;
        for (int s = first; s <= last; ++s) {
            outline[points++] = samples[s].locSwathA;
            if (!blockRows) continue;
            for (int c = 0; c < channels; ++c)
                peaks[c] = std::max(peaks[c], double{samples[s].afActualRate[c]});
        }
        for (int s = last; s >= first; --s) outline[points++] = samples[s].locSwathB;
        WritePolyline(outline.get(), points, kMifRed, true);
        // Complete rows give every region its row, with the rate 0 that a run without block peaks has.
        if (blockRows || MidCompleteRows())
            WriteSprayRow(samples[first], date, channels > 0 ? convert(peaks[channels - 1]) : 0.0);
    }

    // A row for each sample after the first, with its own first-channel rate, once any sample
    // recorded a rate. Complete rows give each of them a point at the sample's position.
    const bool anyRate =
        std::any_of(samples, samples + count, [](const tagSPRAYREC& s) { return s.afActualRate[0] > 0.0f; });
    if (!anyRate) return 0;
    for (int s = 1; s < count; ++s) {
        if (MidCompleteRows()) WriteMifPoint(samples[s].locPos, kMifRed, kMifSampleSize);
        WriteSprayRow(samples[s], date, convert(samples[s].afActualRate[0]));
    }
    return 0;
}
