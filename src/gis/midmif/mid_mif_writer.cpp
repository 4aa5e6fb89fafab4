// Writing a layer as a MapInfo pair: the .mif header, markers, polygons and polylines. Recorded
// spray is written in mid_spray_writer.cpp.

#include <tl_gis/gis/geometry.h>
#include <tl_gis/gis/midmif/gis_file_midmif.h>
#include <tl_gis/platform/numbers.h>
#include "gis/midmif/mid_fields.h"
#include "gis/midmif/mif_complete_writer.h"
#include "gis/midmif/mif_objects.h"
#include "gis/midmif/mif_style.h"
#include "platform/no_throw.h"

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

    int result = GISFILE_OK;
    if (s_bCompleteProfile) {
        TMifCompleteWriter writer(m_MifFile, m_MidFile, Delimiter());
        if (layer != nullptr) writer.Plan(*layer);
        writer.WriteHeader();
        if (layer != nullptr) {
            for (TMapElement* element : layer->m_Elements) {
                if (element == nullptr) continue;
                if (writer.WriteElement(*element))
                    result = GISFILE_OK;
                else if (const std::uint32_t kind = element->GetKind();
                         kind == ELEMENT_SPRAY || kind == ELEMENT_SPRAY_ALT)
                    result = WriteFileSpray(element);
            }
        }
    } else {
        std::string& head = m_strLine;
        head.clear();
        AppendMifHeader(head, "WindowsLatin1", Delimiter(), "Earth Projection 1, 0", kMidColumnCount);
        WriteMif(head);
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
    const int columns = s_bCompleteProfile ? kMidCompleteColumnCount : kMidColumnCount;
    if (MidCompleteRows())
        for (int i = fieldsWritten; i < columns; ++i) row += Delimiter();
    row += '\n';
}

void TGisFileMidMif::AppendMidText(std::string& row, std::string_view text) const {
    const std::size_t start = row.size();
    row += text;
    if (MidCompleteRows()) QuoteMidField(row, start, Delimiter());
}

void TGisFileMidMif::WriteMifPoint(const tagLOC& loc, unsigned long color, int size) {
    std::string& out = m_strLine;
    out.clear();
    AppendMifPointObject(out, loc, color, size);
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
    for (int i = 0; i < count; ++i) AppendMifVertex(out, points[i]);
    if (close) AppendMifVertex(out, points[0]);
    AppendMifRegionStyle(out, color, ComputeCentroid(points, count));
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
        AppendMifVertex(body, points[i]);
        ++kept;
    }
    out = "\nPLINE  ";
    AppendInt(out, kept);
    out += '\n';
    out += body;
    AppendMifLineStyle(out, kMifBrown);
    out += "    SMOOTH\n";
    WriteMif(out);
}
