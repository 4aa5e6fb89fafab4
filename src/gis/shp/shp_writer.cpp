// The spray and boundary export: output names, source-file facts, the header placeholders and
// final headers, and the walk over the layer that hands each element to its record builder.

#include <cmath>

#include <tl_gis/features/feature_spray.h>
#include <tl_gis/gis/shp/gis_file_shp.h>
#include <tl_gis/platform/numbers.h>
#include "gis/shp/shp_file_io.h"
#include "platform/no_throw.h"
#include "platform/system_services.h"

namespace {
const char* SpraySuffix(int format) {
    switch (format) {
        case ESRI_SPRAY_POLYGONS:
            return "_Spray_Polys";
        case ESRI_SPRAY_POLYLINES:
            return "_Spray_PL";
        case ESRI_SPRAY_POINTS:
            return "_Spray_Pts";
        case ESRI_SPRAY_SPOTS:
            return "_Spray_Spot";
        default:
            return "";
    }
}

const char* NonSpraySuffix(int format) {
    switch (format) {
        case ESRI_NONSPRAY_POLYLINES:
            return "_NonSpray_PL";
        case ESRI_NONSPRAY_POINTS:
            return "_NonSpray_Pts";
        default:
            return "";
    }
}

bool IsFolderSeparator(char c) {
    return c == '\\' || c == '/';
}

// Everything from the last '.' of the whole path removed, a '.' in a folder name included: the
// system's programs name their outputs this way, and files beside them are found by it.
std::string WithoutExtension(const std::string& path) {
    return path.substr(0, path.rfind('.'));
}

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

void AppendTwoDigits(std::string& out, int value) {
    if (value < 10) out += '0';
    AppendInt(out, value);
}
}  // namespace

std::string TGisFileShp::GetSprayOutputStem(const std::string& target) {
    return WithoutExtension(target) + SpraySuffix(s_eESRISprayFormat);
}

std::string TGisFileShp::GetNonSprayOutputStem(const std::string& sourcePath) {
    return WithoutExtension(sourcePath) + NonSpraySuffix(s_eESRINonSprayFormat);
}

std::string TGisFileShp::GetSprayOutputFile(const std::string& target, const char* extension) {
    return ShpTriplePath(GetSprayOutputStem(target), extension);
}

std::string TGisFileShp::GetNonSprayOutputFile(const std::string& sourcePath, const char* extension) {
    return ShpTriplePath(GetNonSprayOutputStem(sourcePath), extension);
}

std::string TGisFileShp::FileutilGetName(const std::string& path) {
    // Cut at the first '.' of the whole path, then keep the last component; recorded data paths
    // come from either kind of system, so both slashes separate folders, and a drive's ':' does
    // when no slash is left.
    const std::string cut = path.substr(0, path.find('.'));
    std::size_t separator = std::string::npos;
    for (std::size_t i = cut.size(); i-- > 0;) {
        if (IsFolderSeparator(cut[i])) {
            separator = i;
            break;
        }
    }
    if (separator == std::string::npos) separator = cut.rfind(':');
    if (separator == std::string::npos) return "N/A";
    return cut.substr(separator + 1);
}

void TGisFileShp::ReadSourceFacts() {
    TLocalTime modified;
    if (!m_strSourceFile.empty() && GetFileModifiedTime(m_strSourceFile.c_str(), modified)) {
        m_strSourceDate.clear();
        AppendTwoDigits(m_strSourceDate, modified.iDay);
        m_strSourceDate += '/';
        AppendTwoDigits(m_strSourceDate, modified.iMonth);
        m_strSourceDate += '/';
        AppendInt(m_strSourceDate, modified.iYear);
    } else {
        m_strSourceDate = "Date N/A";
    }
    m_strSourcePath = m_strSourceFile;
    m_strSourceFile = FileutilGetName(m_strSourceFile);
}

int TGisFileShp::WriteFile(const char* path, TMapLayer* layer) {
    return RunWithoutThrowing([&] { return WriteShapes(path, layer); }, [&] { m_pIo->m_Out.Close(); });
}

int TGisFileShp::WriteShapes(const char* path, TMapLayer* layer) {
    m_LastPoint = tagLOC{};
    m_iShapeType = SprayShapeType(s_eESRISprayFormat);
    const bool created = m_pIo->m_Out.Create(GetSprayOutputStem(path != nullptr ? path : ""));
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
    int result = WriteSprayHeader(false);
    if (result == GISFILE_OK) {
        WriteSprayData();
        result = WriteSprayHeader(true);
    }
    m_pIo->m_Out.Close();
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

int TGisFileShp::WriteShpRecord(const unsigned char* record, int length) {
    return m_pIo->m_Out.WriteRecord(record, length);
}
