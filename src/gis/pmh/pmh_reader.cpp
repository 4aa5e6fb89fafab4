// Reading an application-rate map: the header into the layer's PMH members, then the polygon
// blocks, which share their syntax with the boundary bodies of JOB files.

#include <tl_gis/gis/job/gis_file_job.h>
#include <tl_gis/gis/load_report.h>
#include <tl_gis/gis/pmh/gis_file_pmh.h>
#include <tl_gis/platform/numbers.h>
#include "gis/load_recording.h"
#include "gis/pmh/pmh_header.h"
#include "platform/no_throw.h"

namespace {
// No header value needs more; the rest of a longer line is skipped, so a damaged file cannot
// make a line take more memory than this.
constexpr std::size_t kMaxLineChars = TTextFile::kMaxViewLine;
}  // namespace

bool TGisFilePmh::IsValidFile(const char* path) {
    return HasFileExtension(path, "PMH");
}

bool TGisFilePmh::ReadLine(TTextFile& file, std::string& text) {
    if (!file.ReadLine(text, kMaxLineChars)) return false;
    ++m_lLine;
    const std::size_t end = text.find_last_not_of(" \t\r\n\v\f");
    text.resize(end == std::string::npos ? 0 : end + 1);
    return true;
}

bool TGisFilePmh::ReadHeader(TTextFile& file, TMapLayer* layer) {
    std::string line;
    for (int number = 1; number <= PMH_HEADER_LINES; ++number) {
        if (!ReadLine(file, line)) return false;
        switch (number) {
            case 1:
                ReadPmhTitleLine(line, *layer);
                break;
            case 2:
                layer->m_dPmhLine2 = ParseDouble(line);
                break;
            case 3:
                layer->m_dPmhLine3 = ParseDouble(line);
                break;
            case 4:
                layer->m_dPmhLine4 = ParseDouble(line);
                break;
            case 5:
                layer->m_dPmhLine5 = ParseDouble(line);
                break;
            case 6:
                layer->m_iPmhLine6 = ParseInt(line);
                break;
            case 7:
                layer->m_iPmhLine7 = ParseInt(line);
                break;
            case 10:
                layer->m_strPmhLine10 = line;
                break;
            case 20:
                ReadPmhRateLine(line, *layer);
                break;
            case 30:
                layer->m_strPmhLine30 = line;
                break;
            case 31:
                layer->m_iRateUnits = ReadPmhUnitsLine(line);
                break;
            default:
                break;  // fixed or empty lines
        }
    }
    return true;
}

int TGisFilePmh::LoadFile(const char* path, TMapLayer* layer, GisProgressCallback progress) {
    return RunWithoutThrowing([&] { return ReadRateMap(path, layer, progress); }, [&] { ReleaseLocArray(); });
}

int TGisFilePmh::ReadRateMap(const char* path, TMapLayer* layer, GisProgressCallback progress) {
    const int provisional = TGisFile::LoadFile(path, layer, progress);
    StartLoadReport(m_pLoadReport, LOAD_PLACE_LINE);
    if (layer == nullptr) return GISFILE_ERR_OPEN;
    TTextFile file;
    if (!file.Open(path, TTextFile::modeRead)) return GISFILE_ERR_OPEN;
    m_pLayer = layer;
    m_lLine = 0;
    if (!ReadHeader(file, layer)) {
        if (m_pLoadReport != nullptr) {
            std::string reason = "the file ends after ";
            AppendInt(reason, m_lLine);
            m_pLoadReport->Stop(m_lLine + 1, false, reason + " lines, inside the header of 31 lines");
        }
        return GISFILE_ERR_OPEN;
    }

    std::string line;
    std::string id;
    int polygons = 0;
    while (ReadLine(file, line)) {
        // Only the first three characters count: ".polygon" opens a block, ".E" ends nothing.
        if (StartsWithNoCase(line, ".PO")) {
            id.clear();
            AppendInt(id, ++polygons);
            // A block with refused coordinates still adds what it read; the load goes on.
            TGisFileJob::ReadPolygon(file, layer, id.c_str(), "", m_pLoadReport, &m_lLine);
        } else if (StartsWithNoCase(line, ".EN")) {
            break;
        } else if (m_pLoadReport != nullptr && !line.empty()) {
            m_pLoadReport->Skip(LOAD_STRAY_LINE, m_lLine);
        }
        UpdateProgressControl(file);
    }
    return provisional;
}
