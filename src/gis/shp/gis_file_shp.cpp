#include <tl_gis/gis/shp/gis_file_shp.h>
#include "gis/shp/shp_file_io.h"
#include "platform/no_throw.h"

#include <new>

#include <tl_gis/gis/coordinates.h>
#include <tl_gis/gis/geometry.h>
#include <tl_gis/gis/language.h>
#include <tl_gis/gis/line_assembly.h>
#include <tl_gis/gis/load_report.h>
#include <tl_gis/platform/message_box.h>
#include <tl_gis/platform/numbers.h>
#include "gis/attribute_columns.h"
#include "gis/coordinate_transform.h"
#include "gis/load_recording.h"
#include "gis/shp/shp_record_reader.h"
#include "gis/text_ids.h"

ESRISPRAYFORMAT TGisFileShp::s_eESRISprayFormat = ESRI_SPRAY_POLYGONS;
ESRINONSPRAYFORMAT TGisFileShp::s_eESRINonSprayFormat = ESRI_NONSPRAY_POLYLINES;

namespace {
// Source text of the projected-coordinate question for polygons.
constexpr const char* kPolygonSource = "This SHP file";

// Gives the layer the chosen value of a record while its lines are added (they take the layer's
// value), and the layer its own value back afterwards.
class TLayerValueScope {
public:
    TLayerValueScope(TMapLayer& layer, const TChosenValues* chosen)
        : m_Layer(layer), m_dKept(layer.m_dValue) {
        if (chosen != nullptr && chosen->bHasValue) layer.m_dValue = chosen->dValue;
    }
    ~TLayerValueScope() { m_Layer.m_dValue = m_dKept; }
    TLayerValueScope(const TLayerValueScope&) = delete;
    TLayerValueScope& operator=(const TLayerValueScope&) = delete;

private:
    TMapLayer& m_Layer;
    double m_dKept;
};

// The cause under which records of a shape type the reader does not read are counted.
TLoadCause SkippedTypeCause(std::int32_t shapeType) {
    switch (shapeType) {
        case 0:
            return LOAD_SHP_NULL;
        case 8:
            return LOAD_SHP_MULTIPOINT;
        case 11:
            return LOAD_SHP_POINTZ;
        case 13:
            return LOAD_SHP_POLYLINEZ;
        case 15:
            return LOAD_SHP_POLYGONZ;
        case 18:
            return LOAD_SHP_MULTIPOINTZ;
        case 21:
            return LOAD_SHP_POINTM;
        case 23:
            return LOAD_SHP_POLYLINEM;
        case 25:
            return LOAD_SHP_POLYGONM;
        case 28:
            return LOAD_SHP_MULTIPOINTM;
        case 31:
            return LOAD_SHP_MULTIPATCH;
        default:
            return LOAD_SHP_UNKNOWN_TYPE;
    }
}
}  // namespace

TGisFileShp::TGisFileShp() : m_pIo(std::make_unique<TShpFileIo>()) {}

TGisFileShp::~TGisFileShp() = default;

bool TGisFileShp::IsValidFile(const char* path) {
    return HasFileExtension(path, "SHP");
}

int TGisFileShp::LoadFile(const char* path, TMapLayer* layer, GisProgressCallback progress) {
    return RunWithoutThrowing([&] { return ReadShapes(path, layer, progress); },
                              [&] {
                                  m_pIo->m_pReader.reset();
                                  m_pIo->m_pAttributes.reset();
                                  m_pIo->m_ShapeFile.Close();
                                  ReleaseLocArray();
                              });
}

int TGisFileShp::ReadShapes(const char* path, TMapLayer* layer, GisProgressCallback progress) {
    TGisFile::LoadFile(path, layer, progress);
    StartLoadReport(m_pLoadReport, LOAD_PLACE_RECORD);
    if (layer == nullptr || !m_pIo->m_ShapeFile.Open(path, TByteFile::modeRead)) {
        m_pIo->m_ShapeFile.Close();
        return GISFILE_ERR_OPEN;
    }
    m_strPath = path;
    m_pLayer = layer;
    m_strLineSource = DescribeSourceForPrompt(" SHP ");
    m_pIo->m_pReader = std::make_unique<TShpRecordReader>(m_pIo->m_ShapeFile);
    if (s_bCompleteProfile) {
        m_pIo->m_pReader->AcceptRecordZero();
        m_pIo->m_pAttributes = std::make_unique<TShpAttributeRows>();
        m_pIo->m_pAttributes->Open(m_strPath, m_pLoadReport);
    }
    int result = LoadHeader();
    if (result == GISFILE_OK) result = LoadData();
    m_pIo->m_pReader.reset();
    m_pIo->m_pAttributes.reset();
    ReleaseLocArray();
    m_pIo->m_ShapeFile.Close();
    return result;
}

int TGisFileShp::ReportDamage(const std::string& problem, int result) {
    std::string text = m_strPath;
    text += ": ";
    text += problem;
    text += result == GISFILE_ERR_OPEN ? ". The file is not loaded."
                                       : ". Loading stopped there; the shapes before it were loaded.";
    ShowMessageBox(text, GetText(TEXT_CAPTION), MSGBOX_OK | MSGBOX_ICONEXCLAMATION);
    return result;
}

int TGisFileShp::ReportDamagedRecord(int recordNumber, const std::string& problem) {
    std::string text = "record ";
    AppendInt(text, recordNumber);
    text += " is damaged: ";
    text += problem;
    NoteStop(recordNumber, false, "the record is damaged: " + problem);
    return ReportDamage(text, GISFILE_ERR_DATA);
}

void TGisFileShp::NoteStop(int recordNumber, bool after, const std::string& reason) {
    if (m_pLoadReport != nullptr) m_pLoadReport->Stop(recordNumber, after, reason);
}

void TGisFileShp::NoteEndOfData() {
    if (m_pLoadReport == nullptr) return;
    TShpRecordReader& reader = *m_pIo->m_pReader;
    const std::int64_t left = reader.GetBytesLeft();
    if (left <= 0) return;
    std::string note = reader.GetEndNote();
    if (note.empty()) {
        // Zero padding after the last record is no data; anything else behind a record number
        // of zero is.
        if (reader.IsRestZero()) return;
        note = "a record numbered 0 ends the data";
    }
    m_pLoadReport->Skip(LOAD_SHP_TRAILING_BYTES, reader.GetLastNumber(), left);
    m_pLoadReport->SetFirstNote(LOAD_SHP_TRAILING_BYTES, note);
}

void TGisFileShp::NoteStopAfterRecord(int recordNumber, const tagLOC& last, int coordClass) {
    if (m_pLoadReport == nullptr) return;
    std::string reason =
        IsUnmappedPair(last.dLat, last.dLon)
            ? std::string("the coordinate transform could not map its last point")
            : "its last point " + TLoadReport::PointText(last.dLat, last.dLon) +
                  (coordClass == COORD_PROJECTED ? " looks projected" : " is outside the degree range");
    // The records that follow are counted, not loaded, so that the report can say what is lost.
    TShpRecord record;
    std::string problem;
    long long following = 0;
    std::int32_t next = 0;
    while (m_pIo->m_pReader->Next(record, problem) == TShpRecordReader::READ_RECORD) {
        if (following++ == 0) next = record.iNumber;
    }
    if (following == 0) {
        reason += "; it was the last record";
    } else {
        reason += "; records ";
        AppendInt(reason, next);
        reason += ".. were not read, ";
        AppendInt(reason, following);
        reason += following == 1 ? " record" : " records";
    }
    m_pLoadReport->Stop(recordNumber, true, reason);
}

int TGisFileShp::LoadHeader() {
    std::string problem;
    if (!m_pIo->m_pReader->ReadHeader(m_pIo->m_Header, problem)) {
        NoteStop(0, false, problem);
        return ReportDamage(problem, GISFILE_ERR_OPEN);
    }
    if (m_pIo->m_Header.iFileCode != SHP_FILE_CODE) {
        std::string why = "the file does not start with the shapefile code 9994 (it has ";
        AppendInt(why, m_pIo->m_Header.iFileCode);
        why += ")";
        NoteStop(0, false, why);
        return ReportDamage(why, GISFILE_ERR_OPEN);
    }
    return GISFILE_OK;
}

int TGisFileShp::LoadData() {
    for (;;) {
        const int result = LoadRecord();
        UpdateProgressControl(m_pIo->m_pReader->GetPosition());
        if (result == SHP_END_OF_DATA) return GISFILE_OK;
        if (result != GISFILE_OK) return result;
    }
}

int TGisFileShp::LoadRecord() {
    TShpRecord record;
    std::string problem;
    switch (m_pIo->m_pReader->Next(record, problem)) {
        case TShpRecordReader::READ_END:
            NoteEndOfData();
            return SHP_END_OF_DATA;
        case TShpRecordReader::READ_DAMAGED:
        case TShpRecordReader::READ_NO_MEMORY:
            NoteStop(m_pIo->m_pReader->GetLastNumber(), true, problem);
            return ReportDamage(problem, GISFILE_ERR_DATA);
        case TShpRecordReader::READ_RECORD:
            break;
    }
    if (s_bCompleteProfile) return LoadCompleteRecord(record);
    switch (record.iShapeType) {
        case SHPT_POINT:
            m_pLayer->m_iShapeType = record.iShapeType;
            return OnPointRecord(record.pContent, record.nLength, record.iNumber);
        case SHPT_POLYLINE:
            m_pLayer->m_iShapeType = record.iShapeType;
            return OnPolylineRecord(record.pContent, record.nLength, record.iNumber);
        case SHPT_POLYGON:
            m_pLayer->m_iShapeType = record.iShapeType;
            return OnPolygonRecord(record.pContent, record.nLength, record.iNumber);
        default:
            // Null shapes, multipoints and the Z and M variants are passed over.
            NoteSkippedType(record);
            return GISFILE_OK;
    }
}

void TGisFileShp::NoteSkippedType(const TShpRecord& record) {
    m_pLayer->m_iShapeType = -1;
    if (m_pLoadReport == nullptr) return;
    const TLoadCause cause = SkippedTypeCause(record.iShapeType);
    if (m_pLoadReport->Skip(cause, record.iNumber) && cause == LOAD_SHP_UNKNOWN_TYPE) {
        std::string note = "shape type ";
        AppendInt(note, record.iShapeType);
        m_pLoadReport->SetFirstNote(cause, note);
    }
}

int TGisFileShp::OnPointRecord(const unsigned char* content, std::size_t length, int recordNumber) {
    tagLOC loc;
    std::string problem;
    if (!DecodeShpPoint(content, length, loc, problem)) return ReportDamagedRecord(recordNumber, problem);
    std::string id = "Point ";
    AppendInt(id, recordNumber);
    AddPointElement(loc, std::move(id), nullptr, recordNumber);
    return GISFILE_OK;
}

void TGisFileShp::AddPointElement(const tagLOC& loc, std::string id, const TChosenValues* chosen,
                                  int recordNumber) {
    // A transform installed by the host brings the pair to degrees first.
    tagLOC at = loc;
    MapCoordinatePair(at.dLat, at.dLon);
    TMapElement* element = nullptr;
    if (chosen != nullptr && chosen->bHasName) {
        // A named point is a marker: the name is what a map shows beside it.
        auto* marker = new (std::nothrow) TFeatureMarker;
        if (marker == nullptr) return;
        marker->m_strName = chosen->strName;
        marker->m_Loc = at;
        element = marker;
    } else {
        auto* point = new (std::nothrow) TFeaturePoint;
        if (point == nullptr) return;
        point->m_dwType = ELEMENT_POINT;
        point->m_Loc = at;
        element = point;
    }
    element->m_strId = chosen != nullptr && chosen->bHasId ? chosen->strId : std::move(id);
    if (chosen != nullptr && chosen->bHasValue) element->m_dValue = chosen->dValue;
    element->CalculateGeoExtents();
    m_pLayer->AddElement(element, ADD_ELEMENT_OWNED);
    NoteAdded(m_pLoadReport, element);
    // Points are taken without a test of their coordinates.
    if (m_pLoadReport != nullptr) NoteKept(ClassifyCoordinate(at.dLat, at.dLon), at, recordNumber);
}

int TGisFileShp::OnPolylineRecord(const unsigned char* content, std::size_t length, int recordNumber) {
    return OnPolyRecord(content, length, recordNumber, false);
}

int TGisFileShp::OnPolygonRecord(const unsigned char* content, std::size_t length, int recordNumber) {
    return OnPolyRecord(content, length, recordNumber, true);
}

int TGisFileShp::OnPolyRecord(const unsigned char* content, std::size_t length, int recordNumber,
                              bool polygon) {
    TShpPolyRecord record;
    std::string problem;
    if (!record.Decode(content, length, problem)) return ReportDamagedRecord(recordNumber, problem);
    return AddParts(record, recordNumber, polygon);
}

int TGisFileShp::AddParts(const TShpPolyRecord& record, int recordNumber, bool polygon,
                          const TChosenValues* chosen) {
    int lastClass = COORD_GEOGRAPHIC;
    tagLOC last{};
    const int parts = record.GetPartCount();
    std::string name;
    // The chosen value goes to the lines through the layer's value, which the layer keeps.
    const TLayerValueScope value(*m_pLayer, chosen);
    for (int p = 0; p < parts; ++p) {
        const int start = record.GetPartStart(p);
        const int count = record.GetPartEnd(p) - start;
        const int partType = record.GetPartType(p);
        if (partType > SHP_PART_RING) {
            if (m_pLoadReport != nullptr) m_pLoadReport->Skip(LOAD_SHP_MULTIPATCH_UNKNOWN_PART, recordNumber);
            continue;
        }
        // One vertex array serves every part: it is replaced only when a part needs more room,
        // so a file of many small rings costs no allocation per ring.
        if (m_pLocs == nullptr || m_iLocArraySize < count + 1) {
            if (!AllocateLocArray(count + 1)) return GISFILE_ERR_DATA;
        }
        record.CopyPoints(start, count, m_pLocs);
        for (int i = 0; i < count; ++i) {
            tagLOC& loc = m_pLocs[i];
            MapCoordinatePair(loc.dLat, loc.dLon);
            lastClass = ClassifyCoordinate(loc.dLat, loc.dLon);
            if (lastClass == COORD_GEOGRAPHIC) continue;
            if (lastClass == COORD_PROJECTED &&
                PromptProjectedCoordinate(polygon ? kPolygonSource : m_strLineSource.c_str(), loc.dLat,
                                          loc.dLon) == ANSWER_YES) {
                NoteStop(recordNumber, false,
                         "the projected-coordinate question about " +
                             TLoadReport::PointText(loc.dLat, loc.dLon) +
                             " was answered Yes; the rest of the file was not read");
                return GISFILE_ERR_CANCELLED;
            }
            if (m_pLoadReport != nullptr) NoteKept(lastClass, loc, recordNumber);
        }
        if (count > 0) last = m_pLocs[count - 1];
        name.clear();
        if (chosen != nullptr && chosen->bHasId) {
            name = chosen->strId;
        } else {
            AppendInt(name, recordNumber);
            name += '.';
            AppendInt(name, p + 1);
        }
        if (partType == SHP_PART_TRIANGLE_STRIP || partType == SHP_PART_TRIANGLE_FAN) {
            AddTriangles(count, partType == SHP_PART_TRIANGLE_FAN, name,
                         chosen == nullptr || !chosen->bHasId);
            continue;
        }
        int boundType = BOUNDARY_OPEN;
        if (partType == SHP_PART_OUTER_RING || partType == SHP_PART_FIRST_RING) {
            boundType = BOUNDARY_INC;
        } else if (partType == SHP_PART_INNER_RING) {
            boundType = BOUNDARY_EXC;
        } else if (polygon) {
            // The first ring of a record is its outer ring; later rings go by their orientation.
            boundType =
                (parts > 1 && p == 0) || IsRingClockwise(m_pLocs, count) ? BOUNDARY_INC : BOUNDARY_EXC;
        }
        NoteAdded(m_pLoadReport,
                  AddImportedLine(m_pLayer, static_cast<int>(ELEMENT_LINE_BOUNDARY), boundType, count,
                                  m_pLocs, name.c_str(), false, COLOR_NONE, false, false, false));
    }
    // The complete profile has already skipped a record whose last point is not geographic.
    if (s_bCompleteProfile) return GISFILE_OK;
    // A last point that is not geographic ends the load after this record.
    if (lastClass != COORD_GEOGRAPHIC) NoteStopAfterRecord(recordNumber, last, lastClass);
    return lastClass;
}

void TGisFileShp::NoteKept(int coordClass, const tagLOC& loc, int recordNumber) {
    if (coordClass == COORD_GEOGRAPHIC) return;
    if (IsUnmappedPair(loc.dLat, loc.dLon)) {
        m_pLoadReport->Skip(LOAD_COORD_UNMAPPED, recordNumber);
        return;
    }
    m_pLoadReport->Skip(coordClass == COORD_PROJECTED ? LOAD_KEPT_PROJECTED : LOAD_KEPT_OUT_OF_RANGE,
                        recordNumber);
}
