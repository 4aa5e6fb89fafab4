// Record builders of recorded spray: points, spot points, polylines and swath polygons, each
// shape with its table row.

#include <cmath>

#include <tl_gis/features/buffer.h>
#include <tl_gis/features/feature_spray.h>
#include <tl_gis/gis/shp/gis_file_shp.h>
#include <tl_gis/platform/numbers.h>
#include "gis/internal_results.h"
#include "gis/shp/shp_file_io.h"
#include "gis/shp/swath_runs.h"

namespace {
const std::string& OrNotAvailable(const std::string& text) {
    static const std::string kNotAvailable = "N/A";
    return text.empty() ? kNotAvailable : text;
}
}  // namespace

void TGisFileShp::SetPositionAttributes(double lat, double lon) {
    m_strPosLat.clear();
    AppendFixed(m_strPosLat, lat, 10);
    m_strPosLon.clear();
    AppendFixed(m_strPosLon, lon, 10);
}

void TGisFileShp::SetSampleAttributes(const tagSPRAYREC& sample) {
    m_strEventTime.clear();
    AppendEventTime(m_strEventTime, sample);
    m_strCustomer = m_strCompanyName;
    m_strFileName = m_strSourceFile;
    m_strFileDate = m_strSourceDate;
    m_strFieldName = !sample.strFieldName.empty() ? sample.strFieldName : OrNotAvailable(sample.strName);
    m_strOffset = sample.strOffset == "R" ? "Right" : sample.strOffset == "L" ? "Left" : sample.strOffset;
    m_strLineNum.clear();
    AppendInt(m_strLineNum, sample.sLine);
    m_dSpeed = sample.dSpeed;
    m_dTrack = sample.sTrack / 100.0;
    m_dSwathWidth = sample.dSwathWidth;
    m_dHeight = sample.sHeight / 5;
    m_dAgl = sample.dAgl;
    m_dActualRate = sample.afActualRate[0];
    m_dTargetRate = sample.afTargetRate[0];
    m_adSampleStat[0] = 0.0;
    m_abySampleFlag[0] = sample.bySpray;
    m_pdStatArea = m_adSampleStat;
    m_pbyStatSpray = m_abySampleFlag;
    m_pbyStatBoom = m_abySampleFlag;
    m_iStatCount = 1;
}

int TGisFileShp::DoSprayRec_Type1(const TFeatureSpray& spray) {
    return DoSprayPoints(spray, false);
}

int TGisFileShp::DoSprayRec_Spot_Type1(const TFeatureSpray& spray) {
    return DoSprayPoints(spray, true);
}

int TGisFileShp::DoSprayPoints(const TFeatureSpray& spray, bool firstOnly) {
    const int count = spray.m_pRecs != nullptr ? spray.m_iNumRecs : 0;
    if (count <= 0) return 0;
    TBuffer& buffer = m_RecordBuffer;  // reused from record to record
    unsigned char* block = ShpRecordBlock(buffer, SHP_POINT_RECORD_BYTES);
    if (block == nullptr) return RESULT_WRITE_FAILED;
    int result = 0;
    for (int i = 0; i < count; ++i) {
        const tagSPRAYREC& s = spray.m_pRecs[i];
        // The sample that ends a spraying stretch marks where spraying stopped.
        const bool candidate =
            s.bySpray != 0 || (i == count - 1 && i > 0 && spray.m_pRecs[i - 1].bySpray != 0);
        if (!candidate || !IsFinitePosition(s.locPos)) continue;
        if (s.locPos.dLat == m_LastPoint.dLat || s.locPos.dLon == m_LastPoint.dLon) continue;
        EncodeShpPointRecord(block, ++m_iShapeRecords, s.locPos);
        result = WriteShpRecord(block, SHP_POINT_RECORD_BYTES);
        m_LastPoint = s.locPos;
        SetSampleAttributes(s);
        m_strAircraft = OrNotAvailable(GetSprayText(s.szAircraft, sizeof s.szAircraft));
        m_strPilot = OrNotAvailable(GetSprayText(s.szPilot, sizeof s.szPilot));
        SetPositionAttributes(s.locPos.dLat, s.locPos.dLon);
        if (result == 0) WriteSprayDbfRecord();
        if (firstOnly) break;
    }
    return result;
}

int TGisFileShp::EncodeSprayPath(const TFeatureSpray& spray, TShpPolyEncoder& encoder,
                                 unsigned char*& block) {
    const int count = spray.m_pRecs != nullptr ? spray.m_iNumRecs : 0;
    block =
        ShpRecordBlock(m_RecordBuffer, ShpPolyRecordBytes(static_cast<std::size_t>(count > 0 ? count : 0)));
    if (block == nullptr) return 0;
    // A position that is no number is passed over; the rest of the path still goes out.
    int finite = 0;
    for (int i = 0; i < count; ++i) finite += IsFinitePosition(spray.m_pRecs[i].locPos) ? 1 : 0;
    if (finite < 2) return 0;
    encoder.Begin(block, m_iShapeRecords + 1, SHPT_POLYLINE, finite);
    for (int i = 0; i < count; ++i)
        if (IsFinitePosition(spray.m_pRecs[i].locPos)) encoder.Add(spray.m_pRecs[i].locPos);
    return encoder.Finish();
}

int TGisFileShp::DoSprayRec_Type3(const TFeatureSpray& spray) {
    const int count = spray.m_pRecs != nullptr ? spray.m_iNumRecs : 0;
    if (count < 2 || spray.m_pRecs[0].bySpray != 1) return 0;
    TShpPolyEncoder encoder;
    unsigned char* block = nullptr;
    const int length = EncodeSprayPath(spray, encoder, block);
    if (block == nullptr) return RESULT_WRITE_FAILED;
    if (length == 0) return 0;
    ++m_iShapeRecords;
    const tagSPRAYREC& first = spray.m_pRecs[0];
    SetSampleAttributes(first);
    m_strAircraft = OrNotAvailable(spray.m_strAircraft);
    m_strPilot = OrNotAvailable(spray.m_strPilot);
    SetPositionAttributes(first.locPos.dLat, first.locPos.dLon);
    const int result = WriteShpRecord(block, length);
    if (result == 0) WriteSprayDbfRecord();
    return result;
}

int TGisFileShp::DoSprayRec_Type5(TFeatureSpray& spray) {
    if (!HasSwathWidth(spray)) return 0;
    const int count = spray.m_iNumRecs;
    const tagSPRAYREC* recs = spray.m_pRecs;
    TBuffer& buffer = m_RecordBuffer;  // reused from record to record
    TShpPolyEncoder encoder;
    int result = 0;
    for (int s = 0; s < count - 1;) {
        int e = s;
        if (FindSwathRun(spray, s, m_iSingleBlockMode != 0, e) == SWATH_RUN_STOP || e - s < 1) break;
        const int points = 2 * (e - s) + 3;
        unsigned char* block = ShpRecordBlock(buffer, ShpPolyRecordBytes(static_cast<std::size_t>(points)));
        if (block == nullptr) return RESULT_WRITE_FAILED;
        // Out along the A ends of the strip and back along its B ends, in that order whichever
        // way the ring then turns: programs reading these files expect the A edge first.
        encoder.Begin(block, m_iShapeRecords + 1, SHPT_POLYGON, points);
        for (int k = s; k <= e; ++k) encoder.Add(recs[k].locSwathA);
        for (int k = e; k >= s; --k) encoder.Add(recs[k].locSwathB);
        encoder.Add(recs[s].locSwathA);
        // The complete profile turns the ring clockwise, as the format has outer rings.
        if (s_bCompleteProfile && !encoder.IsClockwise()) encoder.ReversePoints();
        const int length = encoder.Finish();
        if (length > 0) {
            ++m_iShapeRecords;
            spray.ComputeSprayStats(s, e, nullptr, nullptr);
            const tagSPRAYREC& last = recs[e];
            SetSampleAttributes(last);
            m_strAircraft = OrNotAvailable(spray.m_strAircraft);
            m_strPilot = OrNotAvailable(spray.m_strPilot);
            const TLocRect& box = encoder.GetBox();
            SetPositionAttributes((box.dSouth + box.dNorth) / 2, (box.dWest + box.dEast) / 2);
            m_dTrack = static_cast<int>(last.sTrack / 100);
            m_dSwathWidth = spray.m_dSwathWidth;
            m_dHeight = spray.m_dHeight;
            m_dAgl = spray.m_dAgl;
            m_pdStatArea = spray.m_pdStepArea;
            m_pbyStatSpray = spray.m_pbySprayFlag;
            m_pbyStatBoom = spray.m_pbyBoomFlag;
            m_iStatCount = spray.m_iStepCount;
            m_pdRunActualRate = spray.m_pdActualRate;
            m_pdRunTargetRate = spray.m_pdTargetRate;
            result = WriteShpRecord(block, length);
            if (result == 0) WriteSprayDbfRecord();
        }
        s = e;
    }
    return result;
}
