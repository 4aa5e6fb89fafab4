// Writing an application-rate map: the header from the layer's PMH members and its line
// features as INC polygons with their rates.

#include <tl_gis/gis/language.h>
#include <tl_gis/gis/pmh/gis_file_pmh.h>
#include <tl_gis/platform/message_box.h>
#include <tl_gis/platform/numbers.h>
#include "gis/pmh/pmh_header.h"
#include "gis/text_ids.h"
#include "platform/no_throw.h"

namespace {
// Polygons are gathered into blocks of about this size before they go to the file.
constexpr std::size_t kWriteBlock = 1 << 16;

void AppendVertex(std::string& out, const tagLOC& loc) {
    AppendFixed(out, loc.dLat, 8);
    out += ' ';
    AppendFixed(out, loc.dLon, 8);
    out += '\n';
}
}  // namespace

void TGisFilePmh::writeALine(std::string_view text) {
    m_File.WriteString(text);
    m_File.WriteString("\n");
}

bool TGisFilePmh::writePMHeader(TMapLayer* layer) {
    ComputePmhRateStatistics(*layer);
    std::string out;
    AppendPmhHeader(out, *layer);
    return m_File.WriteString(out);
}

bool TGisFilePmh::writePMHPolygons(TMapLayer* layer) {
    std::string out;
    for (const TMapElement* element : layer->m_Elements) {
        // Markers, points and spray runs have no place in a rate map and are left out.
        const TFeatureLine* polygon = AsPmhPolygon(element);
        if (polygon == nullptr) continue;
        // Every polygon is written as an inclusion, whatever its bound type.
        out += ".POL\nINC ";
        AppendFixed(out, polygon->m_dValue, 8);
        out += '\n';
        if (polygon->m_pPoints != nullptr)
            for (int i = 0; i < polygon->m_iNumPoints; ++i) AppendVertex(out, polygon->m_pPoints[i]);
        if (out.size() >= kWriteBlock) {
            if (!m_File.WriteString(out)) return false;
            out.clear();
        }
    }
    m_File.WriteString(out);
    writeALine(".END");
    return !m_File.HasWriteError();
}

int TGisFilePmh::WriteFile(const char* path, TMapLayer* layer) {
    return RunWithoutThrowing([&] { return WriteRateMap(path, layer); }, [&] { m_File.Close(); });
}

int TGisFilePmh::WriteRateMap(const char* path, TMapLayer* layer) {
    std::string name = path != nullptr ? path : "";
    ChangeExtension(name, "pmh");
    if (!m_File.Open(name.c_str(), TTextFile::modeCreate)) {
        ReportFileError(name, m_File.GetOpenError(), true);
        return GISFILE_ERR_OPEN;
    }
    TMapLayer empty;
    TMapLayer* source = layer != nullptr ? layer : &empty;
    const bool written = writePMHeader(source) && writePMHPolygons(source);
    // Closing writes what is still buffered, so a full disk may only show here.
    if (!m_File.Close() || !written) {
        ShowMessageBox(GetText(TEXT_PMH_WRITE_FAILED), "", MSGBOX_OK, TEXT_PMH_WRITE_FAILED);
        return PMHFILE_ERR_WRITE;
    }
    return GISFILE_OK;
}
