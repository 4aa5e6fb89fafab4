// Reading the graphics of a .mif file: a line-by-line state machine that collects polylines,
// the first ring of each region and points.

#include <tl_gis/gis/coordinates.h>
#include <tl_gis/gis/line_assembly.h>
#include <tl_gis/gis/midmif/gis_file_midmif.h>
#include <tl_gis/platform/message_box.h>
#include <tl_gis/platform/numbers.h>
#include "gis/coordinate_transform.h"
#include "gis/internal_results.h"
#include "gis/load_recording.h"
#include "gis/midmif/mif_complete_reader.h"
#include "gis/midmif/mif_object_names.h"
#include "gis/midmif/mif_scan.h"
#include "platform/no_throw.h"

namespace {
// Where the reader is within an object. Shared by every reader in the process and kept from
// one load to the next; each load ends in MIF_STATE_DONE, which behaves as MIF_STATE_NONE.
enum TMifReadState {
    MIF_STATE_NONE = 0,
    MIF_STATE_REGION = 1,  // a REGION line was read: the next plain line is a point count
    MIF_STATE_COUNT = 2,   // a count is known: the next plain line is the first point
    MIF_STATE_POINTS = 3,  // collecting points
    MIF_STATE_DONE = 4,    // the end marker was handled
};
int s_iMifReadState = MIF_STATE_NONE;

// Largest point count accepted for one polyline or ring.
constexpr int kMaxMifVertices = 30000;

enum TMifKeyword { KW_NONE, KW_PLINE, KW_REGION, KW_IGNORED, KW_DATA, KW_POINT, KW_EOF };

struct TKeywordEntry {
    const char* pszText;
    TMifKeyword eKeyword;
};

// Compared with the start of a line, ignoring case; no keyword is a prefix of another.
const TKeywordEntry kKeywords[] = {
    {"PLINE", KW_PLINE},    {"REGION", KW_REGION},   {"COLUMNS", KW_IGNORED}, {"DATA", KW_DATA},
    {"PEN", KW_IGNORED},    {"BRUSH", KW_IGNORED},   {"CENTER", KW_IGNORED},  {"POINT", KW_POINT},
    {"SYMBOL", KW_IGNORED}, {"VERSION", KW_IGNORED}, {"*EOF", KW_EOF},
};

TMifKeyword MatchKeyword(std::string_view line) {
    // Point lines start with a digit or a sign: most lines leave here.
    const char c = line[0];
    if (!IsAsciiLetter(c) && c != '*') return KW_NONE;
    for (const TKeywordEntry& k : kKeywords)
        if (StartsWithNoCase(line, k.pszText)) return k.eKeyword;
    return KW_NONE;
}

// Objects of the DATA section the reader takes nothing from: Line and Multipoint objects, and
// those no profile reads. The parts of a Collection are objects of their own (its regions and
// polylines are read), so the Collection line is not one.
constexpr TMifObjectCause kLinesAndMultipoints[] = {{"LINE", LOAD_MIF_LINE},
                                                    {"MULTIPOINT", LOAD_MIF_MULTIPOINT}};

}  // namespace

bool TGisFileMidMif::IsValidFile(const char* path) {
    return HasFileExtension(path, "MIF");
}

int TGisFileMidMif::LoadFile(const char* path, TMapLayer* layer, GisProgressCallback progress) {
    return RunWithoutThrowing([&] { return ReadMif(path, layer, progress); },
                              [&] {
                                  m_MifFile.Close();
                                  ReleaseLocArray();
                                  s_iMifReadState = MIF_STATE_DONE;
                              });
}

int TGisFileMidMif::ReadMif(const char* path, TMapLayer* layer, GisProgressCallback progress) {
    int result = TGisFile::LoadFile(path, layer, progress);
    StartLoadReport(m_pLoadReport, LOAD_PLACE_LINE);
    if (!m_MifFile.Open(path, TTextFile::modeRead)) return GISFILE_ERR_OPEN;
    m_pLayer = layer;
    m_lLine = 0;
    m_bInData = false;
    // Hands every line to handle until it returns non-zero, reporting progress after each.
    const auto readLines = [&](auto&& handle) {
        std::string_view line;
        bool continuation = false;
        while (m_MifFile.ReadLineView(line)) {
            // Only the start of an overlong line matters; its further pieces are skipped.
            const bool piece = continuation;
            continuation = !m_MifFile.LastLineComplete();
            if (piece) continue;
            ++m_lLine;
            if (handle(line) != 0) break;
            UpdateProgressControl(m_MifFile);
        }
    };
    if (TGisFile::s_bCompleteProfile) {
        TMifCompleteReader reader(layer, m_pLoadReport, path, m_MifFile);
        readLines([&](std::string_view line) {
            const int answer = reader.ProcessLine(line, m_lLine);
            if (answer != 0 && m_pLoadReport != nullptr)
                NoteStop(answer, reader.StopPoint().dLat, reader.StopPoint().dLon);
            return answer;
        });
        reader.Finish();
        s_iMifReadState = MIF_STATE_DONE;
    } else {
        readLines([&](std::string_view line) { return ProcessMifLine(line, layer); });
        ProcessMifLine("*EOF", layer);
    }
    m_MifFile.Close();
    return result;
}

int TGisFileMidMif::ProcessMifLine(const char* line, TMapLayer* layer) {
    return ProcessMifLine(std::string_view(line != nullptr ? line : ""), layer);
}

int TGisFileMidMif::ProcessMifLine(std::string_view line, TMapLayer* layer) {
    if (layer != nullptr) m_pLayer = layer;
    line = MifLineText(line);
    if (line.empty()) return 0;

    switch (MatchKeyword(line)) {
        case KW_PLINE: {
            SaveCurrentPolyline();
            std::size_t i = 5;
            while (i < line.size() && !IsMifBlank(line[i])) ++i;
            m_iExpectedVertices = ParseInt(line.substr(i));
            s_iMifReadState = MIF_STATE_COUNT;
            // PLINE MULTIPLE has sections where a count would be; the report says so when that
            // stops the reading.
            while (i < line.size() && IsMifBlank(line[i])) ++i;
            m_bMultiplePline = StartsWithNoCase(line.substr(i), "MULTIPLE");
            return 0;
        }
        case KW_REGION:
            SaveCurrentPolyline();
            s_iMifReadState = MIF_STATE_REGION;
            if (m_pLoadReport != nullptr) NoteRegionRings(line);
            return 0;
        case KW_DATA:
            m_iObjectNumber = 0;
            m_bInData = true;
            return 0;
        case KW_POINT:
            SaveCurrentPolyline();
            ProcessPointKeyword(line, layer);
            if (m_pLoadReport != nullptr) m_pLoadReport->Skip(LOAD_MIF_POINT, m_lLine);
            return 0;
        case KW_EOF:
            SaveCurrentPolyline();
            s_iMifReadState = MIF_STATE_DONE;
            return 0;
        case KW_IGNORED:
            return 0;
        case KW_NONE:
            break;
    }
    // Point lines, the bulk of a file, start with a digit or a sign.
    if (IsAsciiLetter(line[0]) && m_bInData && m_pLoadReport != nullptr) NoteUnreadObject(line);
    return ProcessPlainLine(line);
}

void TGisFileMidMif::NoteUnreadObject(std::string_view line) {
    // A line that an open object takes as its count or a point is not an object of its own.
    if (s_iMifReadState == MIF_STATE_REGION || s_iMifReadState == MIF_STATE_COUNT ||
        (s_iMifReadState == MIF_STATE_POINTS && m_pLocs != nullptr && m_iVerticesHeld < m_iExpectedVertices))
        return;
    const std::string_view word = FirstWord(line);
    const TMifObjectCause* object = FindObjectCause(kLinesAndMultipoints, word);
    if (object == nullptr) object = FindObjectCause(kMifUncarriedObjects, word);
    if (object != nullptr) m_pLoadReport->Skip(object->eCause, m_lLine);
}

// Only the first ring of a region is read; the region line gives how many it has.
void TGisFileMidMif::NoteRegionRings(std::string_view line) {
    std::size_t i = 6;  // after "REGION"
    while (i < line.size() && !IsMifBlank(line[i])) ++i;
    while (i < line.size() && IsCSpace(line[i])) ++i;
    // Most regions have one ring.
    if (i + 1 == line.size() && line[i] == '1') return;
    const int rings = ParseInt(line.substr(i));
    if (rings > 1) m_pLoadReport->Skip(LOAD_MIF_REGION_RING, m_lLine, rings - 1);
}

int TGisFileMidMif::NoteStop(int result, double y, double x) {
    std::string text;
    switch (result) {
        case RESULT_MIF_VERTEX_COUNT:
            text = "a point count of ";
            AppendInt(text, m_iExpectedVertices);
            text += ", outside 1 to 30000";
            if (m_bMultiplePline) text += " (a PLINE MULTIPLE object, which is not read)";
            break;
        case RESULT_NO_VERTEX_ARRAY:
            text = "no memory for ";
            AppendInt(text, m_iExpectedVertices);
            text += " points";
            break;
        case COORD_OUT_OF_RANGE:
            if (IsUnmappedPair(y, x)) {
                m_pLoadReport->Skip(LOAD_COORD_UNMAPPED, m_lLine);
                text = "a point the coordinate transform could not map";
                break;
            }
            text = "a point " + TLoadReport::PointText(y, x) + " is outside the degree range";
            break;
        default:
            text = "a point " + TLoadReport::PointText(y, x) + " looks projected (answered " +
                   (result == ANSWER_YES ? "Yes" : "No") + "; either answer ends the reading)";
            break;
    }
    if (m_MifFile.IsOpen() && m_MifFile.PeekChar() >= 0) {
        text += "; lines ";
        AppendInt(text, m_lLine + 1);
        text += ".. were not read";
    } else {
        text += "; it was the last line";
    }
    m_pLoadReport->Stop(m_lLine, false, text);
    return result;
}

int TGisFileMidMif::ProcessPlainLine(std::string_view line) {
    switch (s_iMifReadState) {
        case MIF_STATE_REGION:
            m_iExpectedVertices = ParseInt(line);
            s_iMifReadState = MIF_STATE_COUNT;
            return 0;
        case MIF_STATE_COUNT:
            // The count is checked before anything is allocated for it.
            if (m_iExpectedVertices < 1 || m_iExpectedVertices > kMaxMifVertices)
                return m_pLoadReport != nullptr ? NoteStop(RESULT_MIF_VERTEX_COUNT) : RESULT_MIF_VERTEX_COUNT;
            if (!AllocateLocArray(m_iExpectedVertices))
                return m_pLoadReport != nullptr ? NoteStop(RESULT_NO_VERTEX_ARRAY) : RESULT_NO_VERTEX_ARRAY;
            m_iVerticesHeld = 0;
            s_iMifReadState = MIF_STATE_POINTS;
            return StorePointLine(line);
        case MIF_STATE_POINTS:
            return StorePointLine(line);
        default:
            return 0;
    }
}

int TGisFileMidMif::StorePointLine(std::string_view line) {
    // Lines after the last expected point (SMOOTH, further rings of a region) are ignored.
    if (m_pLocs == nullptr || m_iVerticesHeld >= m_iExpectedVertices || m_iVerticesHeld >= m_iLocArraySize)
        return 0;
    double x = 0.0, y = 0.0;
    // A line without two numbers (a point list cut short) is skipped.
    if (!ScanTwoDoubles(line, x, y)) return 0;
    MapCoordinatePair(y, x);
    switch (ClassifyCoordinate(y, x)) {
        case COORD_GEOGRAPHIC:
            m_pLocs[m_iVerticesHeld++] = {y, x};
            return 0;
        case COORD_PROJECTED: {
            // Either answer ends the reading: the import cannot go on with projected values.
            const int answer = PromptProjectedCoordinate(DescribeSourceForPrompt(" MID/MIF ").c_str(), y, x);
            return m_pLoadReport != nullptr ? NoteStop(answer, y, x) : answer;
        }
        default:
            return m_pLoadReport != nullptr ? NoteStop(COORD_OUT_OF_RANGE, y, x) : COORD_OUT_OF_RANGE;
    }
}

void TGisFileMidMif::ProcessPointKeyword(std::string_view line, TMapLayer* layer) {
    tagLOC at = PointKeywordLocation(line);
    if (!MapCoordinatePair(at.dLat, at.dLon)) {
        if (m_pLoadReport != nullptr) m_pLoadReport->Skip(LOAD_COORD_UNMAPPED, m_lLine);
        return;
    }
    if (layer != nullptr) layer->AddCentroid(at);
}

void TGisFileMidMif::SaveCurrentPolyline() {
    if (m_pLocs == nullptr) return;
    ++m_iObjectNumber;
    std::string name;
    AppendInt(name, m_iObjectNumber);
    NoteAdded(m_pLoadReport, AddImportedLine(m_pLayer, static_cast<int>(ELEMENT_LINE_BOUNDARY), BOUNDARY_INC,
                                             m_iVerticesHeld, m_pLocs, name.c_str(), false, COLOR_NONE, false,
                                             false, false));
    ReleaseLocArray();
    m_iVerticesHeld = 0;
}
