// The drawing reader: a state machine fed one text line at a time. An entity is acted on when
// the group code 0 that starts the next one arrives; nothing is ever looked at twice.

#include <cmath>
#include <cstring>
#include <new>
#include <string>

#include <tl_gis/gis/coordinates.h>
#include <tl_gis/gis/dxf/gis_file_dxf.h>
#include <tl_gis/gis/line_assembly.h>
#include <tl_gis/platform/message_box.h>
#include <tl_gis/platform/numbers.h>
#include <tl_gis/platform/text_file.h>
#include "gis/coordinate_transform.h"
#include "gis/dxf/dxf_line_reader.h"
#include "gis/dxf/dxf_parse_state.h"
#include "gis/dxf/dxf_tables.h"
#include "gis/internal_results.h"
#include "gis/load_recording.h"
#include "platform/no_throw.h"

namespace {

constexpr int kVertexArrayStart = 1001;

// Text values end at a NUL byte, as the C strings they were read into did.
std::string_view TextValue(std::string_view value) {
    const void* nul = std::memchr(value.data(), '\0', value.size());
    return nul ? value.substr(0, static_cast<std::size_t>(static_cast<const char*>(nul) - value.data()))
               : value;
}

// A value that holds no number leaves the field as it was.
void ReadDouble(std::string_view value, double& field) {
    bool ok = false;
    const double v = ParseDouble(value, &ok);
    if (ok) field = v;
}

void ReadInt(std::string_view value, int& field) {
    bool ok = false;
    const int v = ParseInt(value, &ok);
    if (ok) field = v;
}

// Group code lines are nearly always a few digits after blanks; those are read here, anything
// else by the general conversion. Either way a line without a number keeps the code.
void ReadGroupCode(std::string_view line, int& code) {
    std::size_t i = 0;
    while (i < line.size() && line[i] == ' ') ++i;
    int value = 0;
    std::size_t j = i;
    for (; j < line.size() && j - i < 6 && line[j] >= '0' && line[j] <= '9'; ++j)
        value = value * 10 + (line[j] - '0');
    if (j > i && j == line.size())
        code = value;
    else
        ReadInt(line, code);
}

bool Is(const std::string& entity, std::string_view keyword) {
    return std::string_view(entity).starts_with(keyword);
}

// A binary drawing starts with this sentinel; nothing of it can be read as group lines.
constexpr std::string_view kBinarySentinel = "AutoCAD Binary DXF";

// Entities the reader takes nothing from, by the cause a load report counts them under.
constexpr TNamedCause kIgnoredEntities[] = {
    {"POINT", LOAD_DXF_POINT},         {"ARC", LOAD_DXF_ARC},
    {"CIRCLE", LOAD_DXF_CIRCLE},       {"ELLIPSE", LOAD_DXF_ELLIPSE},
    {"SPLINE", LOAD_DXF_SPLINE},       {"TEXT", LOAD_DXF_TEXT},
    {"MTEXT", LOAD_DXF_MTEXT},         {"HATCH", LOAD_DXF_HATCH},
    {"SOLID", LOAD_DXF_SOLID},         {"3DFACE", LOAD_DXF_3DFACE},
    {"DIMENSION", LOAD_DXF_DIMENSION},
};

// Entities that carry no drawing of their own: the frame of sections and blocks, the attributes
// and definitions an INSERT reads through its SEQEND, layer entries and viewports.
constexpr std::string_view kStructuralEntities[] = {"ATTRIB", "ATTDEF",     "BLOCK",    "ENDBLK",
                                                    "ENDSEC", "LWPOLYLINE", "VIEWPORT", "LAYER"};

}  // namespace

TDxfParseState s_DxfState;

int TGisFileDxf::s_iDefaultSingleBlockMode = 0;
int TGisFileDxf::s_iDefaultSprayOnlyMode = 1;

TGisFileDxf::TGisFileDxf()
    : m_iSingleBlockMode(s_iDefaultSingleBlockMode), m_iSprayOnlyMode(s_iDefaultSprayOnlyMode) {
    s_DxfState.bInPolyline = false;
    s_DxfState.bInLwPolyline = false;
}

TGisFileDxf::~TGisFileDxf() = default;
TGisFileDxf::TGisFileDxf(const TGisFileDxf& other) = default;
TGisFileDxf& TGisFileDxf::operator=(const TGisFileDxf& other) = default;

bool TGisFileDxf::IsValidFile(const char* path) {
    return HasFileExtension(path, "DXF");
}

int TGisFileDxf::LoadFile(const char* path, TMapLayer* layer, GisProgressCallback progress) {
    return RunWithoutThrowing([&] { return ReadDrawing(path, layer, progress); }, [&] { ReleaseLocArray(); });
}

int TGisFileDxf::ReadDrawing(const char* path, TMapLayer* layer, GisProgressCallback progress) {
    int result = TGisFile::LoadFile(path, layer, progress);
    StartLoadReport(m_pLoadReport, LOAD_PLACE_LINE);
    TTextFile file;
    if (layer == nullptr || !file.Open(path, TTextFile::modeRead)) return GISFILE_ERR_OPEN;
    m_pLayer = layer;
    m_iLineState = 0;
    m_iGroupCode = 0;
    TDxfParseState& s = s_DxfState;
    s.strText.clear();
    s.bImport = true;
    s.strSection.clear();
    s.strOpenEntity.clear();
    s.bInBlocks = false;
    s.bInEntities = false;
    m_lEntityLine = m_lOpenLine = 0;
    m_bInsertPending = false;
    StartCompleteProfile(file.GetLength());

    TDxfLineReader reader(file);
    m_pLines = &reader;
    std::string_view line;
    bool more = reader.Next(line);
    if (more && line.starts_with(kBinarySentinel)) {
        if (m_pLoadReport != nullptr)
            m_pLoadReport->Stop(1, false,
                                "the file is a binary DXF (it starts with \"AutoCAD Binary DXF\"); "
                                "only ASCII DXF is read");
        more = false;
    }
    // Progress changes only when the position leaves the step it is in; lines within one step
    // need no report.
    std::int64_t stepStart = 0, stepEnd = 0;
    for (; more; more = reader.Next(line)) {
        result = ProcessDxfLine(line);
        if (result == GISFILE_ERR_CANCELLED) {
            result = GISFILE_ERR_UNAVAILABLE;
            break;
        }
        const std::int64_t position = file.GetPosition();
        if ((position < stepStart || position >= stepEnd) && m_iProgressStep > 0) {
            UpdateProgressControl(position);
            stepStart = position / m_iProgressStep * m_iProgressStep;
            stepEnd = stepStart + m_iProgressStep;
        }
    }
    NoteTaglessInsert();
    if (s.bComplete) FlushPendingPoint();
    m_pLines = nullptr;
    return result;
}

int TGisFileDxf::ProcessDxfLine(std::string_view line) {
    if (m_iLineState == 0) {
        ReadGroupCode(line, m_iGroupCode);
        int result = GISFILE_OK;
        if (m_iGroupCode == 0) {
            result = ProcessDxfEntity();
            ClearFields();
        }
        m_iLineState = 1;
        return result;
    }
    const int result = ProcessDxfGroup(m_iGroupCode, line);
    if (result != GISFILE_ERR_CANCELLED) m_iLineState = 0;
    return result;
}

int TGisFileDxf::ProcessDxfGroup(int code, std::string_view value) {
    TDxfParseState& s = s_DxfState;
    switch (code) {
        case 0:
            s.strEntity.assign(TextValue(value));
            m_lEntityLine = CurrentLine();
            ProcessNewEntity();
            return GISFILE_OK;
        case 1:
            s.strText.assign(TextValue(value));
            if (s.bComplete && s.strHeaderVar == "$ACADVER") s.strAcadVersion = s.strText;
            return GISFILE_OK;
        case 2:
            s.strName.assign(TextValue(value));
            return GISFILE_OK;
        case 3:
            if (s.bComplete) TakeCompleteGroup3(TextValue(value));
            return GISFILE_OK;
        case 9:
            if (s.bComplete) s.strHeaderVar.assign(TextValue(value));
            return GISFILE_OK;
        case 8:
            s.strLayer.assign(TextValue(value));
            // Contour and legend layers are never taken, whatever the class table says.
            if (Is(s.strLayer, "CONT") || Is(s.strLayer, "LEGEND"))
                s.bImport = false;
            else
                AnalyzeLayer(s.strLayer);
            return GISFILE_OK;
        case 10:
            // In the complete profile a lightweight vertex ends where the next one starts, after
            // its bulge.
            if (s.bLwVertexPending) {
                const int result = FlushLightweightVertex();
                ReadDouble(value, s.dX0);
                return result;
            }
            ReadDouble(value, s.dX0);
            return GISFILE_OK;
        case 11:
            ReadDouble(value, s.dX1);
            return GISFILE_OK;
        case 21:
            ReadDouble(value, s.dY1);
            return GISFILE_OK;
        case 42:
            ReadDouble(value, s.dBulge);
            return GISFILE_OK;
        case 20:
            ReadDouble(value, s.dY0);
            if (s.bInLwPolyline && s.bImport) {
                if (!s.bComplete) return ProcessLightweightVertex();
                s.bLwVertexPending = true;
            }
            return GISFILE_OK;
        case 40:
            if (s.bComplete) ReadDouble(value, s.d40);
            return GISFILE_OK;
        case 50:
            if (s.bComplete) ReadDouble(value, s.d50);
            return GISFILE_OK;
        case 51:
            if (s.bComplete) ReadDouble(value, s.d51);
            return GISFILE_OK;
        case 72:
            if (s.bComplete) ReadInt(value, s.iAlign72);
            return GISFILE_OK;
        case 73:
            if (s.bComplete) ReadInt(value, s.iAlign73);
            return GISFILE_OK;
        case 67:
            ReadInt(value, s.iPaperSpace);
            if (s.iPaperSpace != 0) s.bImport = false;
            return GISFILE_OK;
        case 70:
            if (s.bComplete) ReadInt(value, s.iEntityFlags);
            if (s.bInPolyline || s.bInLwPolyline) {
                ReadInt(value, s.iFlags);
                s.bClosed = (s.iFlags & 1) != 0;
            }
            return GISFILE_OK;
        case 90:
            ReadInt(value, s.iVertexCount);
            return GISFILE_OK;
        default:
            return GISFILE_OK;
    }
}

// A lightweight polyline's vertex is complete at its group 20; the polyline ends with the
// vertex that reaches its count.
int TGisFileDxf::ProcessLightweightVertex() {
    TDxfParseState& s = s_DxfState;
    double lat = 0.0, lon = 0.0;
    if (ConvertToLL(s.dX0, s.dY0, &lat, &lon)) {
        if (AddVertex(lat, lon) && m_iNumLocs >= s.iVertexCount) return ProcessSeqEnd();
        return GISFILE_OK;
    }
    const int result = AskAboutCoordinate(lat, lon);
    if (result == GISFILE_ERR_CANCELLED) return result;
    NoteRefused(lat, lon, false, CurrentLine());
    // One vertex fewer to wait for, so the polyline still ends with the ones that remain.
    if (s.iVertexCount > 0) --s.iVertexCount;
    return result;
}

bool TGisFileDxf::PrepareVertexArray() {
    // An array of the starting size from the previous polyline serves as it is.
    if (m_pLocs != nullptr && m_iLocArraySize == kVertexArrayStart) return true;
    return AllocateLocArray(kVertexArrayStart);
}

int TGisFileDxf::ProcessNewEntity() {
    TDxfParseState& s = s_DxfState;
    s.iPaperSpace = 0;
    if (s.bComplete) StartCompleteEntity();
    if ((!s.bInBlocks && !s.bInEntities) || !Is(s.strEntity, "LWPOLYLINE")) return GISFILE_OK;
    NoteTaglessInsert();
    s.strOpenEntity = s.strEntity;
    m_lOpenLine = m_lEntityLine;
    if (!PrepareVertexArray()) return RESULT_NO_VERTEX_ARRAY;
    s.bInLwPolyline = true;
    m_iNumLocs = 0;
    s.bImport = true;
    s.dPendingBulge = 0.0;
    s.bLwVertexPending = false;
    return GISFILE_OK;
}

int TGisFileDxf::ProcessDxfEntity() {
    TDxfParseState& s = s_DxfState;
    const std::string& type = s.strEntity;
    if (Is(type, "EOF")) return GISFILE_OK;
    if (Is(type, "SECTION")) {
        // Sections are not closed by ENDSEC: a section lasts until the next one starts.
        s.strSection = s.strName;
        s.bInBlocks = s.strSection == "BLOCKS";
        s.bInEntities = Is(s.strSection, "ENTITIES");
        return GISFILE_OK;
    }
    if (!s.bInBlocks && !s.bInEntities) return GISFILE_OK;
    if (s.bComplete) {
        int result = GISFILE_OK;
        if (ProcessCompleteEntity(result)) return result;
    }
    if (Is(type, "POLYLINE")) {
        NoteTaglessInsert();
        s.strOpenEntity = type;
        m_lOpenLine = m_lEntityLine;
        if (!PrepareVertexArray()) return RESULT_NO_VERTEX_ARRAY;
        s.bInPolyline = true;
        m_iNumLocs = 0;
        s.bImport = true;
        s.bClosed = false;  // only the vertices' flags decide
        return GISFILE_OK;
    }
    if (Is(type, "VERTEX")) {
        if (!s.bImport) return GISFILE_OK;
        if (s.dBulge > 0.9) s.bClosed = false;
        double lat = 0.0, lon = 0.0;
        // A vertex that is no geographic position is dropped without a question.
        if (!ConvertToLL(s.dX0, s.dY0, &lat, &lon)) {
            NoteRefused(lat, lon, false, m_lEntityLine);
            return GISFILE_OK;
        }
        return AddVertex(lat, lon) ? GISFILE_OK : GISFILE_ERR_DATA;
    }
    if (Is(type, "POINT")) {
        NoteIgnoredEntity(type);
        return GISFILE_OK;
    }
    if (Is(type, "LINE")) {
        if (!s.bImport) {
            NoteNotTaken(m_lEntityLine);
            return GISFILE_OK;
        }
        tagLOC points[2];
        const bool valid0 = ConvertToLL(s.dX0, s.dY0, &points[0].dLat, &points[0].dLon);
        const bool valid1 = ConvertToLL(s.dX1, s.dY1, &points[1].dLat, &points[1].dLon);
        if (!valid0 || !valid1) {
            // The question is about the first point, whichever of the two was refused.
            const int result = AskAboutCoordinate(points[0].dLat, points[0].dLon);
            const tagLOC& refused = valid0 ? points[1] : points[0];
            if (result != GISFILE_ERR_CANCELLED) NoteRefused(refused.dLat, refused.dLon, true, m_lEntityLine);
            return result;
        }
        NoteAdded(m_pLoadReport, AddImportedLine(m_pLayer, static_cast<int>(ELEMENT_LINE_GENERIC), 0, 2,
                                                 points, "", false, COLOR_NONE, false, false, false));
        return GISFILE_OK;
    }
    if (Is(type, "INSERT")) {
        NoteTaglessInsert();
        s.strOpenEntity = type;
        s.bImport = true;
        m_lOpenLine = m_lEntityLine;
        m_bInsertPending = true;
        return GISFILE_OK;
    }
    if (Is(type, "SOLID") || Is(type, "TEXT") || Is(type, "ARC") || Is(type, "LAYER")) {
        NoteIgnoredEntity(type);
        return GISFILE_OK;
    }
    if (Is(type, "SEQEND")) return ProcessSeqEnd();
    // A lightweight polyline whose count was not reached (a vertex rejected or missing) ends
    // with its entity, keeping the vertices it has.
    if (Is(type, "LWPOLYLINE") && s.bInLwPolyline) return ProcessSeqEnd();
    NoteIgnoredEntity(type);
    return GISFILE_OK;
}

int TGisFileDxf::ProcessSeqEnd() {
    TDxfParseState& s = s_DxfState;
    int result = GISFILE_OK;
    if (s.bImport && (s.bInPolyline || s.bInLwPolyline)) {
        bool close = s.bClosed;
        int boundType = m_iBoundType;
        if (s.bComplete) close = FinishCompletePolyline(boundType);
        if (m_iNumLocs > 0) {
            const TFeatureLine* line = AddImportedLine(m_pLayer, m_iFeatureType, boundType, m_iNumLocs,
                                                       m_pLocs, "", close, COLOR_NONE, false, false, false);
            NoteAdded(m_pLoadReport, line);
            if (line == nullptr && m_iFeatureType == static_cast<int>(ELEMENT_MARKER) &&
                m_pLoadReport != nullptr)
                m_pLoadReport->Skip(LOAD_DXF_MARKER_LAYER_LINE, m_lOpenLine);
        }
    } else if (s.bImport && Is(s.strOpenEntity, "INSERT")) {
        result = ProcessInsert();
    } else if (!s.bImport && (s.bInPolyline || s.bInLwPolyline || Is(s.strOpenEntity, "INSERT"))) {
        NoteNotTaken(m_lOpenLine);
    }
    m_bInsertPending = false;
    // Any SEQEND ends the polyline, also one whose entities were not taken, so that a skipped
    // polyline cannot collect the vertices of what follows.
    s.bInPolyline = false;
    s.bInLwPolyline = false;
    s.bMesh = false;
    s.dPendingBulge = 0.0;
    s.strOpenEntity.clear();
    s.bImport = true;
    ClearFields();
    return result;
}

// At the SEQEND of an insert the fields hold its last attribute: tag, value and position.
int TGisFileDxf::ProcessInsert() {
    TDxfParseState& s = s_DxfState;
    double lat = 0.0, lon = 0.0;
    if (!ConvertToLL(s.dX0, s.dY0, &lat, &lon)) {
        const int result = AskAboutCoordinate(lat, lon);
        if (result != GISFILE_ERR_CANCELLED) NoteRefused(lat, lon, true, m_lOpenLine);
        return result;
    }
    if (const TDxfTagClass* row = FindDxfTagClass(s.strName)) {
        const std::size_t before = m_pLayer->m_Elements.size();
        AddImportedMarker(m_pLayer, row->iSymbol, TLoc(lat, lon), s.strText.c_str());
        if (m_pLoadReport != nullptr && m_pLayer->m_Elements.size() > before)
            m_pLoadReport->CountAdded(ELEMENT_MARKER);
    } else if (m_pLoadReport != nullptr && m_pLoadReport->Skip(LOAD_DXF_INSERT_NO_TAG, m_lOpenLine))
        m_pLoadReport->SetFirstNote(LOAD_DXF_INSERT_NO_TAG, "tag " + TLoadReport::EscapeText(s.strName));
    return GISFILE_OK;
}

void TGisFileDxf::AddImportedMarker(TMapLayer* layer, int symbol, const TLoc& at, const char* text) {
    if (layer == nullptr) return;
    auto* marker = new (std::nothrow) TFeatureMarker;
    if (marker == nullptr) return;
    marker->SetLowBits(symbol);
    marker->m_Loc = at;
    marker->m_strName = text != nullptr ? text : "";
    marker->CalculateGeoExtents();
    layer->AddElement(marker, ADD_ELEMENT_OWNED);
    ++layer->m_iMarkerCount;
}

int TGisFileDxf::AnalyzeLayer(std::string_view layer) {
    TDxfParseState& s = s_DxfState;
    // Layers named by a number (0, 17, ...) take the class of the layer before them.
    if (!layer.empty() && layer[0] >= '0' && layer[0] <= '9') {
        s.bImport = true;
        s.iLayerBound = 0;
        s.iLayerSymbol = -1;
        return GISFILE_OK;
    }
    if (!s.bLastLayerValid || layer != s.strLastLayer || s.bLastLayerComplete != s.bComplete) {
        s.strLastLayer.assign(layer);
        s.pLastLayerClass = s.bComplete ? FindDxfCompleteLayerClass(layer) : nullptr;
        if (s.pLastLayerClass == nullptr) s.pLastLayerClass = FindDxfLayerClass(layer);
        s.bLastLayerValid = true;
        s.bLastLayerComplete = s.bComplete;
        s.iLastLayerBound = s.bComplete ? DxfLayerBoundType(layer) : 0;
        s.iLastLayerSymbol = s.pLastLayerClass != nullptr && s.pLastLayerClass->dwKind == ELEMENT_MARKER
                                 ? DxfLayerMarkerSymbol(layer, *s.pLastLayerClass)
                                 : -1;
    }
    s.iLayerBound = s.iLastLayerBound;
    s.iLayerSymbol = s.iLastLayerSymbol;
    if (const TDxfLayerClass* row = s.pLastLayerClass) {
        m_iFeatureType = static_cast<int>(row->dwKind);
        s.bImport = row->byImport != 0;
        return GISFILE_OK;
    }
    s.bImport = true;
    m_iFeatureType = 0;
    return RESULT_DXF_UNKNOWN_LAYER;
}

int TGisFileDxf::AskAboutCoordinate(double lat, double lon) {
    const int kind = ClassifyCoordinate(lat, lon);
    if (kind != COORD_PROJECTED) return kind;
    const std::string source = DescribeSourceForPrompt(" DXF ");
    if (PromptProjectedCoordinate(source.c_str(), lat, lon) != ANSWER_YES) return 1;
    if (m_pLoadReport != nullptr)
        m_pLoadReport->Stop(CurrentLine(), false,
                            "the projected-coordinate question about " + TLoadReport::PointText(lat, lon) +
                                " was answered Yes; the rest of the file was not read");
    return GISFILE_ERR_CANCELLED;
}

long long TGisFileDxf::CurrentLine() const {
    return m_pLines != nullptr ? m_pLines->GetLineNumber() : 0;
}

void TGisFileDxf::NoteRefused(double lat, double lon, bool wholeEntity, long long line) {
    if (m_pLoadReport == nullptr) return;
    if (s_DxfState.iPaperSpace != 0)
        m_pLoadReport->Skip(LOAD_DXF_PAPER_SPACE, line);
    else
        m_pLoadReport->Skip(RefusedCoordinateCause(lat, lon, wholeEntity), line);
}

void TGisFileDxf::NoteNotTaken(long long line) {
    if (m_pLoadReport == nullptr) return;
    if (s_DxfState.iPaperSpace != 0) {
        m_pLoadReport->Skip(LOAD_DXF_PAPER_SPACE, line);
    } else if (m_pLoadReport->Skip(LOAD_DXF_LAYER_NOT_TAKEN, line)) {
        m_pLoadReport->SetFirstNote(LOAD_DXF_LAYER_NOT_TAKEN,
                                    "layer " + TLoadReport::EscapeText(s_DxfState.strLayer));
    }
}

void TGisFileDxf::NoteIgnoredEntity(const std::string& type) {
    if (m_pLoadReport == nullptr) return;
    for (std::string_view structural : kStructuralEntities)
        if (type == structural) return;
    for (const TNamedCause& e : kIgnoredEntities) {
        if (type == e.pszName) {
            m_pLoadReport->Skip(e.eCause, m_lEntityLine);
            return;
        }
    }
    if (m_pLoadReport->Skip(LOAD_DXF_OTHER_ENTITY, m_lEntityLine))
        m_pLoadReport->SetFirstNote(LOAD_DXF_OTHER_ENTITY, TLoadReport::EscapeText(type));
}

// An INSERT with no attributes has no SEQEND: it makes no marker, which is told when the next
// compound entity replaces it or the drawing ends.
void TGisFileDxf::NoteTaglessInsert() {
    if (!m_bInsertPending) return;
    m_bInsertPending = false;
    if (m_pLoadReport != nullptr && m_pLoadReport->Skip(LOAD_DXF_INSERT_NO_TAG, m_lOpenLine))
        m_pLoadReport->SetFirstNote(LOAD_DXF_INSERT_NO_TAG, "no attributes");
}

void TGisFileDxf::ClearFields() {
    TDxfParseState& s = s_DxfState;
    if (!s.strOpenEntity.empty()) return;
    s.strText.clear();
    s.strName.clear();
    s.dX0 = s.dY0 = s.dX1 = s.dY1 = 0.0;
    s.dBulge = 0.0;
    s.iFlags = 0;
}

bool TGisFileDxf::ConvertToLL(double x, double y, double* lat, double* lon) const {
    if (s_DxfState.iPaperSpace != 0) {
        *lat = *lon = 0.0;
        return false;
    }
    *lat = y;
    *lon = x;
    MapCoordinatePair(*lat, *lon);
    // Points within one degree of (0, 0) are taken for drawing units, not positions.
    const double a = std::fabs(*lat), b = std::fabs(*lon);
    return a <= 90.0 && b <= 180.0 && (a > 1.0 || b > 1.0);
}
