#include "gis/midmif/mif_complete_writer.h"

#include <algorithm>
#include <cmath>

#include <tl_gis/gis/geometry.h>
#include <tl_gis/platform/numbers.h>
#include "gis/attribute_columns.h"
#include "gis/midmif/mid_fields.h"
#include "gis/midmif/mif_objects.h"
#include "gis/midmif/mif_style.h"

namespace {
// MapInfo's widest character column.
constexpr std::size_t kMaxCharWidth = 254;

bool IsAscii(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

// Whether the text (UTF-8; other bytes taken as Windows Latin 1) has a character Windows Latin 1
// cannot hold.
bool NeedsUtf8(std::string_view text) {
    if (IsAscii(text)) return false;
    const std::string utf8 = ToUtf8(text, ENCODING_UTF8);
    return ToUtf8(FromUtf8(utf8, ENCODING_WINDOWS_1252), ENCODING_WINDOWS_1252) != utf8;
}

// A ring or polyline with points to write: a line without any is left out, as by default.
bool HasPoints(const TFeatureLine& line) {
    return line.m_iNumPoints > 0 && line.m_pPoints != nullptr;
}

// The text in quotes, a quote inside written twice; a line end becomes a space, as a row is
// one line.
void AppendQuoted(std::string& row, std::string_view text) {
    row += '"';
    for (const char c : text) {
        if (c == '"') row += '"';
        row += c == '\n' || c == '\r' ? ' ' : c;
    }
    row += '"';
}

void AppendCharColumn(std::string& out, const char* name, std::size_t width) {
    out += name;
    out += " Char(";
    AppendInt(out, static_cast<long long>(std::clamp<std::size_t>(width, 1, kMaxCharWidth)));
    out += ")\n";
}

// The points of a ring or polyline; one point alone is written twice, since a MapInfo
// polyline or ring needs two.
void AppendVertices(std::string& out, const TFeatureLine& line) {
    AppendInt(out, std::max(line.m_iNumPoints, 2));
    out += '\n';
    for (int i = 0; i < line.m_iNumPoints; ++i) AppendMifVertex(out, line.m_pPoints[i]);
    if (line.m_iNumPoints == 1) AppendMifVertex(out, line.m_pPoints[0]);
}
}  // namespace

void TMifCompleteWriter::Plan(const TMapLayer& layer) {
    bool utf8 = false;
    const auto look = [&](std::string_view text, std::size_t& width) {
        width = std::max(width, text.size());
        utf8 = utf8 || NeedsUtf8(text);
    };
    std::vector<const TFeatureLine*> rings;
    bool holes = false;
    for (const TMapElement* element : layer.m_Elements) {
        if (const auto* line = dynamic_cast<const TFeatureLine*>(element)) {
            if (!HasPoints(*line)) continue;
            look(line->m_strId, m_nIdWidth);
            if (line->m_iBoundType != BOUNDARY_OPEN) rings.push_back(line);
            holes = holes || line->m_iBoundType == BOUNDARY_EXC;
        } else if (const auto* marker = dynamic_cast<const TFeatureMarker*>(element)) {
            look(marker->m_strId, m_nIdWidth);
            look(marker->m_strName, m_nNameWidth);
        } else if (const auto* point = dynamic_cast<const TFeaturePoint*>(element)) {
            look(point->m_strId, m_nIdWidth);
        }
    }
    m_eEncoding = utf8 ? ENCODING_UTF8 : ENCODING_WINDOWS_1252;
    // Without exclusion rings every ring is a polygon of its own, written as it comes.
    m_bGrouped = holes;
    if (!holes) return;
    m_Groups = GroupRingsIntoPolygons(rings);
    m_nNextOuter = 0;
    m_nNextAlone = static_cast<std::size_t>(std::count_if(
        rings.begin(), rings.end(), [](const TFeatureLine* r) { return r->m_iBoundType != BOUNDARY_EXC; }));
}

void TMifCompleteWriter::WriteHeader() {
    std::string columns;
    AppendCharColumn(columns, COMPLETE_COLUMN_ID, m_nIdWidth);
    AppendCharColumn(columns, COMPLETE_COLUMN_BOUND, 4);
    columns += COMPLETE_COLUMN_VALUE;
    columns += " Float\n";
    AppendCharColumn(columns, COMPLETE_COLUMN_NAME, m_nNameWidth);
    m_strOut.clear();
    // Datum 104 is WGS 84, which GDAL and QGIS then name.
    AppendMifHeader(m_strOut, m_eEncoding == ENCODING_UTF8 ? "Neutral" : "WindowsLatin1", m_cDelimiter,
                    "Earth Projection 1, 104", kMidCompleteColumnCount, columns);
    m_Mif.WriteString(m_strOut);
}

bool TMifCompleteWriter::WriteElement(const TMapElement& element) {
    if (const auto* line = dynamic_cast<const TFeatureLine*>(&element)) {
        if (HasPoints(*line)) WriteLine(*line);
        return true;
    }
    if (const auto* marker = dynamic_cast<const TFeatureMarker*>(&element)) {
        m_strOut.clear();
        AppendMifPointObject(m_strOut, marker->m_Loc, kMifMagenta, kMifMarkerSize);
        m_Mif.WriteString(m_strOut);
        // The system's row holds the name in its last field.
        WriteRow({}, marker->m_strName, marker->m_strId, 0, marker->m_dValue, marker->m_strName);
        return true;
    }
    if (const auto* point = dynamic_cast<const TFeaturePoint*>(&element)) {
        m_strOut.clear();
        AppendMifPointObject(m_strOut, point->m_Loc, kMifBlack, kMifPointSize);
        m_Mif.WriteString(m_strOut);
        WriteRow({}, {}, point->m_strId, 0, point->m_dValue, {});
        return true;
    }
    return false;
}

void TMifCompleteWriter::WriteLine(const TFeatureLine& line) {
    if (line.m_iBoundType == BOUNDARY_OPEN) return WriteOpenLine(line);
    if (!m_bGrouped) return WriteRegion(TPolygonGroup{&line, {}});
    // Each polygon is written where its outer ring stands in the layer; a hole goes with it.
    if (line.m_iBoundType != BOUNDARY_EXC) {
        if (m_nNextOuter < m_Groups.size() && m_Groups[m_nNextOuter].pOuter == &line)
            WriteRegion(m_Groups[m_nNextOuter++]);
    } else if (m_nNextAlone < m_Groups.size() && m_Groups[m_nNextAlone].pOuter == &line) {
        WriteRegion(m_Groups[m_nNextAlone++]);
    }
}

void TMifCompleteWriter::WriteRegion(const TPolygonGroup& group) {
    const TFeatureLine& outer = *group.pOuter;
    m_strOut = "REGION  ";
    AppendInt(m_strOut, static_cast<long long>(group.Holes.size() + 1));
    m_strOut += "\n  ";
    AppendVertices(m_strOut, outer);
    for (const TFeatureLine* hole : group.Holes) {
        m_strOut += "  ";
        AppendVertices(m_strOut, *hole);
    }
    AppendMifRegionStyle(m_strOut, outer.m_iBoundType == BOUNDARY_EXC ? kMifRed : kMifGreen,
                         ComputeCentroid(outer.m_pPoints, outer.m_iNumPoints));
    m_Mif.WriteString(m_strOut);
    WriteRow(outer.m_strId, {}, outer.m_strId, outer.m_iBoundType, outer.m_dValue, {});
}

void TMifCompleteWriter::WriteOpenLine(const TFeatureLine& line) {
    m_strOut = "PLINE  ";
    AppendVertices(m_strOut, line);
    AppendMifLineStyle(m_strOut, kMifBrown);
    m_Mif.WriteString(m_strOut);
    WriteRow(line.m_strId, {}, line.m_strId, BOUNDARY_OPEN, line.m_dValue, {});
}

void TMifCompleteWriter::WriteRow(std::string_view first, std::string_view last, std::string_view id,
                                  int boundType, double value, std::string_view name) {
    std::string& row = m_strRow;
    row.clear();
    AppendText(row, first);
    row.append(kMidColumnCount - 1, m_cDelimiter);
    AppendText(row, last);
    row += m_cDelimiter;
    AppendText(row, id);
    row += m_cDelimiter;
    AppendText(row, BoundTypeName(boundType));
    row += m_cDelimiter;
    // A value that is no number is left empty rather than written as one GDAL cannot read.
    if (std::isfinite(value)) row += FormatRoundTrip(value);
    row += m_cDelimiter;
    AppendText(row, name);
    row += '\n';
    m_Mid.WriteString(row);
}

void TMifCompleteWriter::AppendText(std::string& row, std::string_view text) const {
    if (IsAscii(text)) return AppendQuoted(row, text);
    AppendQuoted(row, m_eEncoding == ENCODING_UTF8
                          ? ToUtf8(text, ENCODING_UTF8)
                          : FromUtf8(ToUtf8(text, ENCODING_UTF8), ENCODING_WINDOWS_1252));
}
