// The ".POL" records of boundary, area and generic lines.

#include <memory>
#include <string>

#include <tl_gis/gis/geometry.h>
#include <tl_gis/gis/job/gis_file_job.h>
#include <tl_gis/platform/numbers.h>
#include <tl_gis/platform/text_file.h>
#include "gis/job/job_records.h"

namespace {
bool SameVertex(const tagLOC& a, const tagLOC& b) {
    return a.dLat == b.dLat && a.dLon == b.dLon;
}

const char* BoundKeyword(int boundType) {
    if (boundType == BOUNDARY_EXC) return "EXC";
    if (boundType == BOUNDARY_OPEN) return "OPEN";
    return "INC";
}

// "\tRGB: %03u,%03u,%03u, %u, %u\n" with the colour, or 999s when only the flags are set.
void AppendColorLine(std::string& out, const TFeatureLine& line) {
    std::uint32_t color = COLOR_NONE;
    unsigned r = 999, g = 999, b = 999;
    if (line.GetColor(color)) {
        r = color & 0xFF;
        g = (color >> 8) & 0xFF;
        b = (color >> 16) & 0xFF;
    } else if (!line.m_bRgbFlag1 && !line.m_bRgbFlag2) {
        return;
    }
    auto threeDigits = [&out](unsigned v) {
        if (v < 100) out += '0';
        if (v < 10) out += '0';
        AppendInt(out, v);
    };
    out += "\tRGB: ";
    threeDigits(r);
    out += ',';
    threeDigits(g);
    out += ',';
    threeDigits(b);
    out += ", ";
    out += line.m_bRgbFlag1 ? '1' : '0';
    out += ", ";
    out += line.m_bRgbFlag2 ? '0' : '1';
    out += '\n';
}

// The record line and keyword line of a ".POL" record, with room for its vertex lines.
std::string StartLineRecord(int number, const std::string& id, const char* keyword, int count) {
    std::string out;
    out.reserve(64 + static_cast<std::size_t>(count > 0 ? count : 0) * 26);
    out += ".POL ";
    AppendInt(out, number);
    out += ' ';
    out += id;
    out += "\n\t";
    out += keyword;
    out += '\n';
    return out;
}
}  // namespace

void AppendJobCoordinateLine(std::string& out, const tagLOC& loc) {
    out += '\t';
    AppendFixed(out, loc.dLat, 6);
    out += ' ';
    AppendFixed(out, loc.dLon, 6);
    out += '\n';
}

void TGisFileJob::WriteOnePolygon(int number, int count, const TFeatureLine* line, tagLOC* vertices,
                                  TTextFile& file) {
    const std::unique_ptr<tagLOC[]> owned(vertices);
    if (line == nullptr) return;
    std::string out = StartLineRecord(number, line->m_strId, BoundKeyword(line->m_iBoundType), count);
    AppendColorLine(out, *line);
    if (vertices != nullptr && count > 0) {
        if (line->m_iBoundType != BOUNDARY_OPEN) {
            // Inclusion rings go out clockwise, all others counter-clockwise, never closed twice.
            const int n = SameVertex(vertices[0], vertices[count - 1]) && count > 1 ? count - 1 : count;
            const bool clockwise = IsRingClockwise(vertices, n);
            const bool forward = line->m_iBoundType == BOUNDARY_INC ? clockwise : !clockwise;
            for (int i = 0; i < n; ++i) AppendJobCoordinateLine(out, vertices[forward ? i : n - 1 - i]);
        } else {
            // Repeated vertices are dropped, and so is a last vertex that closes the line.
            for (int i = 0; i + 1 < count; ++i)
                if (!SameVertex(vertices[i], vertices[i + 1])) AppendJobCoordinateLine(out, vertices[i]);
            if (!SameVertex(vertices[count - 1], vertices[0]))
                AppendJobCoordinateLine(out, vertices[count - 1]);
        }
    }
    file.WriteString(out);
}

void TGisFileJob::WriteOnePolyline(int number, int count, const TFeatureLine* line, tagLOC* vertices,
                                   TTextFile& file) {
    const std::unique_ptr<tagLOC[]> owned(vertices);
    if (line == nullptr) return;
    std::string out = StartLineRecord(number, line->m_strId, "OPEN", count);
    if (vertices != nullptr)
        for (int i = 0; i < count; ++i) AppendJobCoordinateLine(out, vertices[i]);
    file.WriteString(out);
}
