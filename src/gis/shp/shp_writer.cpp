// The spray and boundary export: source-file facts, the header placeholders and final headers,
// and the walk over the layer that hands each element to its record builder; after a spray
// export, the non-spray pass.

#include <tl_gis/features/feature_spray.h>
#include <tl_gis/gis/shp/gis_file_shp.h>
#include <tl_gis/platform/numbers.h>
#include "gis/shp/shp_file_io.h"
#include "platform/no_throw.h"

namespace {
int SprayShapeType(int format) {
    switch (format) {
        case ESRI_SPRAY_POLYLINES:
            return SHPT_POLYLINE;
        case ESRI_SPRAY_POINTS:
        case ESRI_SPRAY_SPOTS:
            return SHPT_POINT;
        default:
            return SHPT_POLYGON;
    }
}
}  // namespace

void TGisFileShp::ReadSourceFacts() {
    m_SpraySource = ReadSpraySource(m_strCompanyName, m_strSourceFile);
    m_strSourcePath = m_strSourceFile;
    m_strSourceFile = m_SpraySource.strFileName;
}

int TGisFileShp::WriteFile(const char* path, TMapLayer* layer) {
    return RunWithoutThrowing([&] { return WriteShapes(path, layer); }, [&] { m_pIo->m_Out.Close(); });
}

const std::vector<std::string>& TGisFileShp::GetWrittenFiles() const {
    return m_pIo->m_Out.m_Written;
}

int TGisFileShp::WriteShapes(const char* path, TMapLayer* layer) {
    const std::string target = path != nullptr ? path : "";
    // The complete profile's boundary triple holds polygons only; its lines and points go beside it.
    const bool completeBoundaries = s_bCompleteProfile && m_iWriteMode == 0;
    m_LastPoint = tagLOC{};
    m_iShapeType = completeBoundaries ? SHPT_POLYGON : SprayShapeType(s_eESRISprayFormat);
    m_pIo->m_Out.m_Written.clear();
    const bool created = m_pIo->m_Out.Create(GetSprayOutputStem(target));
    if (!created) {
        m_pIo->m_Out.Close();
        return GISFILE_ERR_OPEN;
    }
    m_bHasSpray = false;
    if (layer != nullptr) {
        for (const TMapElement* e : layer->m_Elements)
            if ((e->m_dwType & ELEMENT_KIND_MASK) == ELEMENT_SPRAY) m_bHasSpray = true;
    }
    ReadSourceFacts();
    m_pLayer = layer;
    m_iShapeRecords = 0;
    if (completeBoundaries) PrepareCompletePolygons();
    int result = WriteSprayHeader(false);
    if (result == GISFILE_OK) {
        WriteSprayData();
        result = WriteSprayHeader(true);
    }
    m_pIo->m_Out.Close();
    if (s_bCompleteProfile && result == GISFILE_OK && !m_pIo->m_Out.WriteSidecars())
        result = GISFILE_ERR_OPEN;
    if (completeBoundaries && result == GISFILE_OK && layer != nullptr)
        result = WriteCompanionTriples(target);
    if (!m_bHasSpray) return result;
    m_lDbfSerial = 0;
    m_iWriteMode = 2;
    return CreateNonSprayData(m_strSourcePath, layer);
}

int TGisFileShp::WriteSprayHeader(bool final) {
    unsigned char* header = m_HeaderBuffer.GetBuffer(SHP_HEADER_BYTES + 1);
    if (header == nullptr) return GISFILE_ERR_DATA;
    // A layer without extents (nothing in it counts) gets a zero box rather than the markers
    // of an empty rectangle.
    TLocRect box;
    if (m_pLayer != nullptr && !m_pLayer->m_rcExtents.IsEmpty()) box = m_pLayer->m_rcExtents;
    m_pIo->m_Out.WriteHeaders(final, m_iShapeType, box, m_iShapeRecords, header);
    WriteSprayDbfFileHdr(final);
    return GISFILE_OK;
}

int TGisFileShp::WriteSprayData() {
    m_iShapeRecords = 0;
    int result = 0;
    if (s_bCompleteProfile && m_iWriteMode == 0) {
        result = WriteCompletePolygons();
        WriteDbfEnd();
        return result;
    }
    const std::size_t count = m_pLayer != nullptr ? m_pLayer->m_Elements.size() : 0;
    for (std::size_t i = 0; i < count; ++i) {
        TMapElement* element = m_pLayer->m_Elements[i];
        const std::uint32_t kind = element->m_dwType & ELEMENT_KIND_MASK;
        if ((kind == ELEMENT_LINE_BOUNDARY || kind == ELEMENT_LINE_AREA) && m_iWriteMode == 0) {
            if (const auto* line = dynamic_cast<const TFeatureLine*>(element)) result = DoBoundaryRec(*line);
        } else if (kind == ELEMENT_SPRAY && m_iWriteMode == 1) {
            auto* spray = dynamic_cast<TFeatureSpray*>(element);
            if (spray == nullptr) continue;
            switch (s_eESRISprayFormat) {
                case ESRI_SPRAY_POLYLINES:
                    result = DoSprayRec_Type3(*spray);
                    break;
                case ESRI_SPRAY_POINTS:
                    result = DoSprayRec_Type1(*spray);
                    break;
                case ESRI_SPRAY_SPOTS:
                    result = DoSprayRec_Spot_Type1(*spray);
                    break;
                default:
                    result = DoSprayRec_Type5(*spray);
                    break;
            }
        }
    }
    WriteDbfEnd();
    return result;
}
