// Record builders of recorded spray: points, spot points, polylines and swath polygons, each
// shape with its table row.

#include <cmath>

#include <tl_gis/features/buffer.h>
#include <tl_gis/features/feature_spray.h>
#include <tl_gis/gis/shp/gis_file_shp.h>
#include <tl_gis/platform/numbers.h>
#include "gis/internal_results.h"
#include "gis/shp/shp_file_io.h"

namespace {
const std::string& OrNotAvailable(const std::string& text) {
    static const std::string kNotAvailable = "N/A";
    return text.empty() ? kNotAvailable : text;
}
}  // namespace

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
        SetSampleRowValues(s, m_SpraySource, m_SprayRow);
        m_SprayRow.strAircraft = OrNotAvailable(GetSprayText(s.szAircraft, sizeof s.szAircraft));
        m_SprayRow.strPilot = OrNotAvailable(GetSprayText(s.szPilot, sizeof s.szPilot));
        SetSprayRowPosition(m_SprayRow, s.locPos.dLat, s.locPos.dLon);
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
    SetSampleRowValues(first, m_SpraySource, m_SprayRow);
    m_SprayRow.strAircraft = OrNotAvailable(spray.m_strAircraft);
    m_SprayRow.strPilot = OrNotAvailable(spray.m_strPilot);
    SetSprayRowPosition(m_SprayRow, first.locPos.dLat, first.locPos.dLon);
    const int result = WriteShpRecord(block, length);
    if (result == 0) WriteSprayDbfRecord();
    return result;
}

int TGisFileShp::DoSprayRec_Type5(TFeatureSpray& spray) {
    TBuffer& buffer = m_RecordBuffer;  // reused from record to record
    TShpPolyEncoder encoder;
    TSwathStretches stretches(spray, m_iSingleBlockMode != 0);
    int result = 0;
    int s = 0;
    int e = 0;
    while (stretches.Next(s, e)) {
        const int points = TSwathStretches::RingPointCount(s, e);
        unsigned char* block = ShpRecordBlock(buffer, ShpPolyRecordBytes(static_cast<std::size_t>(points)));
        if (block == nullptr) return RESULT_WRITE_FAILED;
        // Out along the A ends of the strip and back along its B ends, in that order whichever
        // way the ring then turns: programs reading these files expect the A edge first.
        encoder.Begin(block, m_iShapeRecords + 1, SHPT_POLYGON, points);
        for (int i = 0; i < points; ++i) encoder.Add(TSwathStretches::RingPoint(spray, s, e, i));
        // The complete profile turns the ring clockwise, as the format has outer rings.
        if (s_bCompleteProfile && !encoder.IsClockwise()) encoder.ReversePoints();
        const int length = encoder.Finish();
        if (length == 0) continue;
        ++m_iShapeRecords;
        SetSwathRowValues(spray, s, e, encoder.GetBox(), m_SpraySource, m_SprayRow);
        result = WriteShpRecord(block, length);
        if (result == 0) WriteSprayDbfRecord();
    }
    return result;
}
