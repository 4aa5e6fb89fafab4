// Boundary (".POL") and polyline (".GPL") bodies. Static, so that the PMH reader can hand its
// polygon blocks to the same code.

#include <string>

#include <tl_gis/gis/coordinates.h>
#include <tl_gis/gis/job/gis_file_job.h>
#include <tl_gis/gis/language.h>
#include <tl_gis/gis/line_assembly.h>
#include <tl_gis/platform/message_box.h>
#include <tl_gis/platform/numbers.h>
#include "gis/coordinate_transform.h"
#include "gis/internal_results.h"
#include "gis/job/job_body.h"
#include "gis/job/job_vertex_buffer.h"
#include "gis/load_recording.h"
#include "gis/text_format.h"
#include "gis/text_ids.h"

namespace {
// The result a body reader returns when its first vertex buffer cannot be had.

struct TLineBody {
    int iBoundType = BOUNDARY_INC;
    double dValue = 0.0;
    std::uint32_t dwColor = COLOR_NONE;
    bool bHasColor = false;
    bool bRgbFlag1 = false;
    bool bRgbFlag2 = false;
};

// Token 2 of an "RGB:" line holds "r,g,b,"; tokens 3 and 4 the two flags, commas and blanks
// around them ignored.
void ReadColorLine(TLineBody& body) {
    unsigned long values[3] = {};
    int found = 0;
    std::string_view rest = JobToken(1);
    while (!rest.empty() && found < 3) {
        const auto comma = rest.find(',');
        const std::string_view piece = rest.substr(0, comma);
        rest = comma == std::string_view::npos ? std::string_view() : rest.substr(comma + 1);
        if (piece.empty()) continue;
        // A negative number counts as over 255.
        values[found++] = static_cast<unsigned long>(static_cast<unsigned int>(ParseInt(piece)));
    }
    body.dwColor = COLOR_NONE;
    if (found == 3 && values[0] <= 255 && values[1] <= 255 && values[2] <= 255)
        body.dwColor = static_cast<std::uint32_t>(values[0] + 256 * values[1] + 65536 * values[2]);
    auto cleaned = [](std::string_view token) {
        std::string s;
        for (char c : token)
            if (c != ',' && c != ' ') s += c;
        return s;
    };
    body.bRgbFlag1 = cleaned(JobToken(2)) == "1";
    body.bRgbFlag2 = cleaned(JobToken(3)) == "0";
    body.bHasColor = true;
}

void ShowMemoryExhausted(int firstTextId, const char* id) {
    std::string format = GetText(firstTextId);
    format += '\n';
    format += GetText(TEXT_JOB_MEMORY_DETAIL);
    ShowMessageBox(FormatText(format, {id}), "", MSGBOX_OK | MSGBOX_ICONEXCLAMATION, firstTextId);
}

int ReadLineBody(TTextFile& file, TMapLayer* layer, const char* id, bool boundary, TLoadReport* report) {
    TJobVertexBuffer vertices;
    if (!vertices.Allocate()) return RESULT_JOB_NO_VERTEX_BUFFER;
    const std::string lineId = id != nullptr ? id : "";
    TLineBody body;
    int result = 0;
    bool cancelled = false;

    ReadJobBody(file, [&]() {
        const std::string_view first = JobToken(0);
        if (StartsWithNoCase(first, "INC") || StartsWithNoCase(first, "EXC") ||
            StartsWithNoCase(first, "OPE")) {
            if (boundary) {
                if (StartsWithNoCase(first, "OPE")) {
                    body.iBoundType = BOUNDARY_OPEN;
                } else {
                    body.iBoundType = StartsWithNoCase(first, "INC") ? BOUNDARY_INC : BOUNDARY_EXC;
                    body.dValue = ParseDouble(JobToken(1));
                }
            }
            return true;
        }
        if (boundary && StartsWithNoCase(first, "RGB:")) {
            ReadColorLine(body);
            return true;
        }
        double lat = ParseDouble(first);
        double lon = ParseDouble(JobToken(1));
        MapCoordinatePair(lat, lon);
        if (IsAcceptedJobCoordinate(lat, lon)) {
            if (vertices.Append(lat, lon)) return true;
            ShowMemoryExhausted(boundary ? TEXT_JOB_POLYGON_MEMORY : TEXT_JOB_POLYLINE_MEMORY,
                                lineId.c_str());
            return false;  // the rest of the body is skipped by the caller as stray lines
        }
        result = ClassifyCoordinate(lat, lon);
        if (result == COORD_PROJECTED &&
            PromptProjectedCoordinate(file.GetFilePath().c_str(), lat, lon) == ANSWER_YES) {
            if (report != nullptr) report->Skip(LOAD_LINE_ABANDONED, GetJobLine());
            cancelled = true;
            return false;
        }
        if (report != nullptr) report->Skip(RefusedCoordinateCause(lat, lon, false), GetJobLine());
        return true;
    });
    if (cancelled) return GISFILE_ERR_CANCELLED;

    const int count = vertices.Count();
    const tagLOC* points = vertices.Data();
    if (boundary) {
        bool close = false;
        if (count > 0 && body.iBoundType != BOUNDARY_OPEN)
            close = points[0].dLat != points[count - 1].dLat || points[0].dLon != points[count - 1].dLon;
        layer->m_dValue = body.dValue;
        NoteAdded(report, AddImportedLine(layer, static_cast<int>(ELEMENT_LINE_BOUNDARY), body.iBoundType,
                                          count, points, lineId.c_str(), close, body.dwColor, body.bRgbFlag1,
                                          body.bRgbFlag2, body.bHasColor));
    } else {
        layer->m_dValue = 0.0;
        NoteAdded(report, AddImportedLine(layer, static_cast<int>(ELEMENT_LINE_GENERIC), BOUNDARY_OPEN, count,
                                          points, lineId.c_str(), false, COLOR_NONE, false, false, false));
    }
    return result;
}

// A body read for a reader that counts its lines itself: the count goes on from its line.
int ReadCountedLineBody(TTextFile& file, TMapLayer* layer, const char* id, bool boundary, TLoadReport* report,
                        long long* line) {
    if (line != nullptr) SetJobNextLine(*line + 1);
    const int result = ReadLineBody(file, layer, id, boundary, report);
    if (line != nullptr) *line = GetJobNextLine() - 1;
    return result;
}
}  // namespace

int TGisFileJob::ReadPolygon(TTextFile& file, TMapLayer* layer, const char* id, const char* name) {
    return ReadPolygon(file, layer, id, name, nullptr);
}

int TGisFileJob::ReadPolyline(TTextFile& file, TMapLayer* layer, const char* id, const char* name) {
    return ReadPolyline(file, layer, id, name, nullptr);
}

int TGisFileJob::ReadPolygon(TTextFile& file, TMapLayer* layer, const char* id, const char*,
                             TLoadReport* report, long long* line) {
    if (layer == nullptr) return GISFILE_ERR_DATA;
    return ReadCountedLineBody(file, layer, id, true, report, line);
}

int TGisFileJob::ReadPolyline(TTextFile& file, TMapLayer* layer, const char* id, const char*,
                              TLoadReport* report, long long* line) {
    if (layer == nullptr) return GISFILE_ERR_DATA;
    return ReadCountedLineBody(file, layer, id, false, report, line);
}
