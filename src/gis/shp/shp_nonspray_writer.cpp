// The second triple of a spray export: where the aircraft flew without spraying, as polylines
// (one per run that starts off) or points, with a small table of sample values.

#include <cmath>

#include <tl_gis/features/buffer.h>
#include <tl_gis/features/feature_spray.h>
#include <tl_gis/gis/language.h>
#include <tl_gis/gis/shp/gis_file_shp.h>
#include <tl_gis/platform/message_box.h>
#include <tl_gis/platform/numbers.h>
#include "gis/internal_results.h"
#include "gis/shp/shp_file_io.h"
#include "gis/text_format.h"
#include "gis/text_ids.h"

namespace {
constexpr double kNoPosition = 1e-10;

// Calls visit(spray) for every spray element of the marked layers of the map.
template <class TVisit>
int ForEachMarkedSpray(const TMap& map, TVisit visit) {
    for (const TMapElement* layerElement : map.m_Elements) {
        const auto* layer = dynamic_cast<const TMapLayer*>(layerElement);
        if (layer == nullptr || (layer->m_dwFlags & ELEMENT_FLAG_WRITER_LAYER) == 0) continue;
        for (const TMapElement* element : layer->m_Elements) {
            if ((element->m_dwFlags & ELEMENT_FLAG_SPRAY) == 0) continue;
            const auto* spray = dynamic_cast<const TFeatureSpray*>(element);
            if (spray == nullptr || spray->m_pRecs == nullptr) continue;
            const int result = visit(*spray);
            if (result != 0) return result;
        }
    }
    return 0;
}

}  // namespace

int TGisFileShp::CreateNonSprayData(const std::string& sourcePath, TMapLayer* layer) {
    if (!m_pIo->m_Out.Create(GetNonSprayOutputStem(sourcePath))) {
        m_pIo->m_Out.Close();
        return GISFILE_ERR_OPEN;
    }
    m_iNonSprayRecords = 0;
    m_iShapeRecords = 0;
    m_NonSprayBox.Clear();
    m_bNonSprayBoxSet = false;
    if (layer == nullptr) {
        const std::string table = m_pIo->m_Out.m_strTablePath;
        m_pIo->m_Out.Close();
        ShowMessageBox(FormatText(GetText(TEXT_NONSPRAY_NO_LAYER), {table}), GetText(TEXT_CAPTION),
                       MSGBOX_OK | MSGBOX_ICONEXCLAMATION, 5084);
        return RESULT_WRITE_REFUSED;
    }
    if (layer->GetElementCount() > 0) {
        m_Map.RemoveAllElements();
        layer->m_dwFlags |= ELEMENT_FLAG_WRITER_LAYER;
        // Borrowed: the layer belongs to the caller and outlives this writer's map.
        m_Map.AddElement(layer, ADD_ELEMENT_BORROWED);
    }
    int result = WriteNonSprayHeader(false);
    if (result == GISFILE_OK) {
        if (s_eESRINonSprayFormat == ESRI_NONSPRAY_POLYLINES)
            DoNonSprayRec_Type3();
        else if (s_eESRINonSprayFormat == ESRI_NONSPRAY_POINTS)
            DoNonSprayRec_Type1();
        result = WriteNonSprayHeader(true);
    }
    m_pIo->m_Out.Close();
    if (s_bCompleteProfile && result == GISFILE_OK && !m_pIo->m_Out.WriteSidecars()) return GISFILE_ERR_OPEN;
    return result;
}

int TGisFileShp::WriteNonSprayHeader(bool final) {
    unsigned char* header = m_HeaderBuffer.GetBuffer(SHP_HEADER_BYTES + 1);
    if (header == nullptr) return GISFILE_ERR_DATA;
    const int shapeType = s_eESRINonSprayFormat == ESRI_NONSPRAY_POLYLINES ? SHPT_POLYLINE
                          : s_eESRINonSprayFormat == ESRI_NONSPRAY_POINTS  ? SHPT_POINT
                                                                           : m_iShapeType;
    m_pIo->m_Out.WriteHeaders(final, shapeType, m_NonSprayBox, m_iShapeRecords, header);
    WriteNonSprayDbfFileHdr(final);
    return GISFILE_OK;
}

int TGisFileShp::DoNonSprayRec_Type1() {
    const int result = WriteNonSprayRec_Type1();
    if (result == 0) WriteDbfEnd();
    return result;
}

int TGisFileShp::DoNonSprayRec_Type3() {
    const int result = WriteNonSprayRec_Type3();
    if (result == 0) WriteDbfEnd();
    return result;
}

bool TGisFileShp::HasNonSprayData() const {
    const int found = ForEachMarkedSpray(m_Map, [](const TFeatureSpray& spray) {
        if (spray.m_iNumRecs <= 0 || spray.m_pRecs[0].bySpray != 0) return 0;
        for (int i = 0; i < spray.m_iNumRecs; ++i) {
            const tagLOC& p = spray.m_pRecs[i].locPos;
            if (std::fabs(p.dLat) > kNoPosition && std::fabs(p.dLon) > kNoPosition) return 1;
        }
        return 0;
    });
    return found != 0;
}

void TGisFileShp::SetNonSprayAttributes(const tagSPRAYREC& sample, double height) {
    m_strSampleLine.clear();
    AppendInt(m_strSampleLine, sample.sLine);
    m_strSampleTime.clear();
    AppendSprayEventTime(m_strSampleTime, sample);
    m_strSampleLat.clear();
    AppendFixed(m_strSampleLat, sample.locPos.dLat, 10);
    m_strSampleLon.clear();
    AppendFixed(m_strSampleLon, sample.locPos.dLon, 10);
    m_dSampleSpeed = sample.dSpeed;
    m_dSampleHeight = height;
    m_dSampleAgl = sample.dAgl;
}

int TGisFileShp::WriteESRINonSprayRecord(const unsigned char* record, int length, const TLocRect& box) {
    const int result = m_pIo->m_Out.WriteRecord(record, length);
    if (!m_bNonSprayBoxSet) {
        m_NonSprayBox = box;
        m_bNonSprayBoxSet = true;
    } else {
        m_NonSprayBox.ExpandExtents(box);
    }
    return result;
}

int TGisFileShp::WriteNonSprayRec_Type1() {
    if (!HasNonSprayData()) return 0;
    TBuffer& buffer = m_RecordBuffer;  // reused from record to record
    unsigned char* block = buffer.GetBuffer(static_cast<unsigned>(SHP_POINT_RECORD_BYTES));
    if (block == nullptr) return RESULT_WRITE_REFUSED;
    return ForEachMarkedSpray(m_Map, [&](const TFeatureSpray& spray) {
        const int count = spray.m_iNumRecs;
        for (int i = 0; i < count; ++i) {
            const tagSPRAYREC& s = spray.m_pRecs[i];
            // The last sample closes the path whether it sprays or not.
            if ((s.bySpray != 0 && i != count - 1) || !IsFinitePosition(s.locPos)) continue;
            if (s.locPos.dLat == m_LastPoint.dLat || s.locPos.dLon == m_LastPoint.dLon) continue;
            EncodeShpPointRecord(block, ++m_iShapeRecords, s.locPos);
            const int result =
                WriteESRINonSprayRecord(block, SHP_POINT_RECORD_BYTES,
                                        TLocRect(s.locPos.dLon, s.locPos.dLat, s.locPos.dLon, s.locPos.dLat));
            m_LastPoint = s.locPos;
            SetNonSprayAttributes(s, s.sHeight / 5);
            if (result == 0) {
                WriteNonSprayDbfRecord();
                ++m_iNonSprayRecords;
            }
        }
        return 0;
    });
}

int TGisFileShp::WriteNonSprayRec_Type3() {
    if (!HasNonSprayData()) return 0;
    TShpPolyEncoder encoder;
    return ForEachMarkedSpray(m_Map, [&](const TFeatureSpray& spray) -> int {
        const int count = spray.m_iNumRecs;
        if (count < 2 || spray.m_pRecs[0].bySpray != 0) return 0;
        unsigned char* block = nullptr;
        const int length = EncodeSprayPath(spray, encoder, block);
        if (block == nullptr) return RESULT_WRITE_REFUSED;
        // A path with fewer than two positions that are numbers is left out, row and all, so
        // that the table keeps one row per shape.
        if (length == 0) return 0;
        ++m_iShapeRecords;
        WriteESRINonSprayRecord(block, length, encoder.GetBox());
        SetNonSprayAttributes(spray.m_pRecs[0], spray.m_pRecs[0].sHeight / 5.0);
        WriteNonSprayDbfRecord();
        ++m_iNonSprayRecords;
        return 0;
    });
}
