// Writing a layer as a MapInfo pair: the .mif header, markers, polygons and polylines. Recorded
// spray is written in mid_spray_writer.cpp.

#include <tl_gis/gis/geometry.h>
#include <tl_gis/gis/midmif/gis_file_midmif.h>
#include <tl_gis/platform/numbers.h>
#include "gis/midmif/mid_fields.h"
#include "gis/midmif/mif_style.h"
#include "platform/no_throw.h"

namespace {
// Everything before the delimiter line, and everything after it up to the first object.
constexpr std::string_view kMifHeadStart =
    "Version 300\n"
    "Charset \"WindowsLatin1\"\n";
constexpr std::string_view kMifHeadEnd =
    "Coordsys Earth Projection 1, 0\n"
    "COLUMNS 8\n"
    "Date Char(10)\n"
    "Time Char(11)\n"
    "Speed Decimal(5, 1)\n"
    "Heading Integer\n"
    "Altitude Integer\n"
    "SprayStatus Char(3)\n"
    "FlowRate Decimal(10, 4)\n"
    "ABC_Points Char(1)\n"
    "DATA\n"
    "\n";

// "  <longitude> <latitude>" and a line end.
void AppendMifPoint(std::string& out, const tagLOC& loc) {
    out += "  ";
    AppendFixed(out, loc.dLon, 6);
    out += ' ';
    AppendFixed(out, loc.dLat, 6);
    out += '\n';
}
}  // namespace

char TGisFileMidMif::Delimiter() {
    return MidDelimiterChar(s_eMidDelimiter);
}

int TGisFileMidMif::WriteFile(const char* path, TMapLayer* layer) {
    return RunWithoutThrowing([&] { return WriteMidMif(path, layer); },
                              [&] {
                                  m_MifFile.Close();
                                  m_MidFile.Close();
                              });
}

int TGisFileMidMif::WriteMidMif(const char* path, TMapLayer* layer) {
    if (path == nullptr || !m_MifFile.Open(path, TTextFile::modeCreate)) return GISFILE_ERR_OPEN;
    std::string midPath = path;
    ChangeExtension(midPath, ".mid");
    if (!m_MidFile.Open(midPath.c_str(), TTextFile::modeCreate)) return GISFILE_ERR_OPEN;

    std::string& head = m_strLine;
    head.assign(kMifHeadStart);
    head += "DELIMITER \"";
    head += Delimiter();
    head += "\"\n";
    head += kMifHeadEnd;
    WriteMif(head);

    int result = GISFILE_OK;
    if (layer != nullptr) {
        for (TMapElement* element : layer->m_Elements) {
            if (element == nullptr) continue;
            switch (element->m_dwType & ELEMENT_KIND_MASK) {
                case ELEMENT_LINE_BOUNDARY:
                case ELEMENT_LINE_AREA:
                    result = WriteFilePolygon(element);
                    break;
                case ELEMENT_MARKER:
                    result = WriteFileMarker(element);
                    break;
                case ELEMENT_SPRAY:
                case ELEMENT_SPRAY_ALT:
                    result = WriteFileSpray(element);
                    break;
                default:
                    break;
            }
        }
    }
    // The files stay open until the object is destroyed (a polyline may still follow); a
    // failure to write what has been buffered so far counts as a file that cannot be made.
    if (m_MifFile.HasWriteError() || m_MidFile.HasWriteError()) return GISFILE_ERR_OPEN;
    return result;
}

int TGisFileMidMif::WriteMidRecord(const char* text) {
    m_MidFile.WriteString(text != nullptr ? text : "");
    m_MidFile.WriteString("\n");
    return 0;
}

void TGisFileMidMif::FinishMidRow(std::string& row, int fieldsWritten) const {
    if (s_bMidCompleteRows)
        for (int i = fieldsWritten; i < kMidColumnCount; ++i) row += Delimiter();
    row += '\n';
}

void TGisFileMidMif::AppendMidText(std::string& row, std::string_view text) const {
    const std::size_t start = row.size();
    row += text;
    if (s_bMidCompleteRows) QuoteMidField(row, start, Delimiter());
}

void TGisFileMidMif::WriteMifPoint(const tagLOC& loc, unsigned long color, int size) {
    std::string& out = m_strLine;
    out = "POINT ";
    AppendFixed(out, loc.dLon, 6);
    out += ' ';
    AppendFixed(out, loc.dLat, 6);
    out += "\n   SYMBOL (";
    AppendInt(out, kMifMarkerShape);
    out += ", ";
    AppendInt(out, static_cast<long long>(color));
    out += ", ";
    AppendInt(out, size);
    out += ")\n";
    WriteMif(out);
}

int TGisFileMidMif::WriteFileMarker(TMapElement* element) {
    const auto* marker = dynamic_cast<const TFeatureMarker*>(element);
    if (marker == nullptr) return 0;
    WriteMifPoint(marker->m_Loc, kMifMagenta, kMifMarkerSize);

    // Seven empty fields, then the name in the last column.
    std::string& out = m_strLine;
    out.assign(kMidColumnCount - 1, Delimiter());
    AppendMidText(out, marker->m_strName);
    FinishMidRow(out, kMidColumnCount);
    m_MidFile.WriteString(out);
    return 0;
}

int TGisFileMidMif::WriteFilePolygon(TMapElement* element) {
    const auto* line = dynamic_cast<const TFeatureLine*>(element);
    // A line without points has no region to write.
    if (line == nullptr || line->m_iNumPoints < 1 || line->m_pPoints == nullptr) return 0;
    const int boundType = static_cast<int>(line->m_dwType & ELEMENT_LOW_MASK);
    WritePolyline(line->m_pPoints, line->m_iNumPoints, boundType == BOUNDARY_EXC ? kMifRed : kMifGreen, true);
    std::string& row = m_strLine;
    row.clear();
    AppendMidText(row, line->m_strId);
    FinishMidRow(row, 1);
    m_MidFile.WriteString(row);
    return 0;
}

int TGisFileMidMif::WritePolyline(const tagLOC* points, int count, unsigned long color, bool close) {
    if (points == nullptr || count < 1) return 0;
    std::string& out = m_strLine;
    out = "REGION  1\n  ";
    AppendInt(out, close ? count + 1 : count);
    out += '\n';
    for (int i = 0; i < count; ++i) AppendMifPoint(out, points[i]);
    if (close) AppendMifPoint(out, points[0]);
    out += "    PEN (1,12,";
    AppendInt(out, static_cast<long long>(color));
    out += ")\n    BRUSH (52,";
    AppendInt(out, static_cast<long long>(color));
    out += ")\n    CENTER ";
    const tagLOC centre = ComputeCentroid(points, count);
    AppendFixed(out, centre.dLon, 6);
    out += ' ';
    AppendFixed(out, centre.dLat, 6);
    out += '\n';
    WriteMif(out);
    return 0;
}

void TGisFileMidMif::WritePoly(int* unused, const tagLOC* points, int /*reserved*/, int count) {
    if (unused == nullptr || points == nullptr || count < 1) return;
    std::string& out = m_strLine;
    out.clear();
    int kept = 0;
    std::string body;
    for (int i = 0; i < count; ++i) {
        // A point that shares its latitude or its longitude with the next one is dropped.
        const bool last = i == count - 1;
        if (!last && (points[i].dLat == points[i + 1].dLat || points[i].dLon == points[i + 1].dLon)) continue;
        AppendMifPoint(body, points[i]);
        ++kept;
    }
    out = "\nPLINE  ";
    AppendInt(out, kept);
    out += '\n';
    out += body;
    out += "    PEN (1,12,";
    AppendInt(out, static_cast<long long>(kMifBrown));
    out += ")\n    SMOOTH\n";
    WriteMif(out);
}
