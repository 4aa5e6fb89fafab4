#include "exchange_files.h"

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <new>

#include <tl_gis/gis/coordinates.h>
#include <tl_gis/platform/message_box.h>
#include <tl_gis/platform/result_codes.h>
#include "exchange_limits.h"
#include "geojson_reader.h"
#include "geojson_writer.h"
#include "kml_reader.h"
#include "kml_writer.h"
#include "kmz_archive.h"

namespace {
// A path given in UTF-8, on every system.
std::filesystem::path PathOf(const char* path) {
    const std::string_view text(path);
    return std::filesystem::path(std::u8string(text.begin(), text.end()));
}

void Stop(TLoadReport* report, std::string reason) {
    if (report != nullptr) report->Stop(0, false, std::move(reason));
}

// The whole file, when it can be read and is not larger than the readers take.
int ReadWholeFile(const char* path, std::string& bytes, TLoadReport* report) {
    std::error_code ec;
    const std::filesystem::path file = PathOf(path);
    const std::uintmax_t size = std::filesystem::file_size(file, ec);
    if (ec) return GISFILE_ERR_OPEN;
    if (size > EXCHANGE_MAX_BYTES) {
        Stop(report, "the file holds " + std::to_string(size >> 20) + " MiB; at most 256 MiB is read");
        return GISFILE_ERR_DATA;
    }
    std::ifstream in(file, std::ios::binary);
    if (!in) return GISFILE_ERR_OPEN;
    bytes.resize(static_cast<std::size_t>(size));
    in.read(bytes.data(), static_cast<std::streamsize>(size));
    bytes.resize(static_cast<std::size_t>(in.gcount()));
    return 0;
}

int WriteWholeFile(const char* path, const std::string& bytes) {
    std::ofstream out(PathOf(path), std::ios::binary | std::ios::trunc);
    const int openError = errno;
    if (!out) {
        ReportFileError(path, openError != 0 ? openError : EACCES, true);
        return GISFILE_ERR_OPEN;
    }
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    out.close();
    if (!out) {
        ReportFileError(path, errno != 0 ? errno : EIO, true);
        return GISFILE_ERR_OPEN;
    }
    return 0;
}

// Runs a load or write; what it throws (memory running out) becomes 6003.
template <class TRun>
int WithoutThrowing(TRun run, TLoadReport* report) {
    try {
        return run();
    } catch (const std::bad_alloc&) {
        Stop(report, "memory ran out");
    } catch (const std::exception& e) {
        Stop(report, e.what());
    } catch (...) {
        Stop(report, "an unknown failure");
    }
    return GISFILE_ERR_DATA;
}
}  // namespace

TExchangeFileType GetExchangeFileType(const char* path) {
    if (path == nullptr) return EXCHANGE_FILE_NONE;
    if (HasFileExtension(path, "GEOJSON") || HasFileExtension(path, "JSON")) return EXCHANGE_FILE_GEOJSON;
    if (HasFileExtension(path, "KML")) return EXCHANGE_FILE_KML;
    if (HasFileExtension(path, "KMZ")) return EXCHANGE_FILE_KMZ;
    return EXCHANGE_FILE_NONE;
}

const char* GetExchangeTypeName(int type) {
    switch (type) {
        case EXCHANGE_FILE_GEOJSON:
            return "GeoJSON";
        case EXCHANGE_FILE_KML:
            return "KML";
        case EXCHANGE_FILE_KMZ:
            return "KMZ";
        default:
            return nullptr;
    }
}

int TGisFileExchange::LoadFile(const char* path, TMapLayer* layer, GisProgressCallback progress) {
    return WithoutThrowing([&] { return Load(path, layer, progress); }, m_pLoadReport);
}

int TGisFileExchange::Load(const char* path, TMapLayer* layer, GisProgressCallback progress) {
    if (m_pLoadReport != nullptr) {
        m_pLoadReport->Clear();
        m_pLoadReport->SetPlaceUnit(LOAD_PLACE_FEATURE);
    }
    const int base = TGisFile::LoadFile(path, layer, progress);
    if (layer == nullptr) return GISFILE_ERR_DATA;
    std::string bytes;
    const int read = ReadWholeFile(path, bytes, m_pLoadReport);
    if (read != 0) return read;
    m_pLayer = layer;
    const int result = ReadText(bytes, *layer);
    return result != 0 ? result : base;
}

int TGisFileExchange::LoadBytes(std::string bytes, TMapLayer* layer) {
    return WithoutThrowing(
        [&] {
            if (m_pLoadReport != nullptr) {
                m_pLoadReport->Clear();
                m_pLoadReport->SetPlaceUnit(LOAD_PLACE_FEATURE);
            }
            if (layer == nullptr) return GISFILE_ERR_DATA;
            if (bytes.size() > EXCHANGE_MAX_BYTES) {
                Stop(m_pLoadReport, "more than 256 MiB");
                return GISFILE_ERR_DATA;
            }
            m_pLayer = layer;
            return ReadText(bytes, *layer);
        },
        m_pLoadReport);
}

int TGisFileExchange::WriteFile(const char* path, TMapLayer* layer) {
    return WithoutThrowing([&] { return Write(path, layer); }, nullptr);
}

int TGisFileExchange::Write(const char* path, TMapLayer* layer) {
    if (path == nullptr || layer == nullptr) return GISFILE_ERR_DATA;
    return WriteWholeFile(path, WriteText(*layer));
}

bool TGisFileGeoJson::IsValidFile(const char* path) {
    return GetExchangeFileType(path) == EXCHANGE_FILE_GEOJSON;
}

int TGisFileGeoJson::ReadText(std::string& bytes, TMapLayer& layer) {
    TLayerImport import(layer, m_pLoadReport, DescribeSourceForPrompt(FormatPart()));
    const TGeoJsonRead read =
        ReadGeoJson(bytes, import, m_pLoadReport, [this](std::int64_t position) { ShowProgress(position); });
    // A file that is not of the format leaves the layer as it was, its name included.
    if (layer.m_strLLB.empty() && read.iResult != GISFILE_ERR_OPEN) layer.m_strLLB = read.strName;
    return read.iResult;
}

std::string TGisFileGeoJson::WriteText(TMapLayer& layer) {
    return WriteGeoJsonText(ExportLayerFeatures(layer, m_Export), layer.m_strLLB);
}

bool TGisFileKml::IsValidFile(const char* path) {
    const TExchangeFileType type = GetExchangeFileType(path);
    return type == EXCHANGE_FILE_KML || type == EXCHANGE_FILE_KMZ;
}

int TGisFileKml::ReadText(std::string& bytes, TMapLayer& layer) {
    TLayerImport import(layer, m_pLoadReport, DescribeSourceForPrompt(FormatPart()));
    std::string unzipped;
    std::string* text = &bytes;
    double scale = 1.0;  // from a position in the KML to one in the file
    if (m_bKmz) {
        TKmzKml kmz = ReadKmzKml(bytes, import);
        if (!kmz.bOk) {
            Stop(m_pLoadReport, kmz.strError);
            return kmz.iResult;
        }
        unzipped = std::move(kmz.strKml);
        text = &unzipped;
        scale =
            unzipped.empty() ? 0.0 : static_cast<double>(bytes.size()) / static_cast<double>(unzipped.size());
    }
    const TKmlRead read = ReadKml(*text, import, m_pLoadReport, [this, scale](std::int64_t position) {
        ShowProgress(static_cast<std::int64_t>(static_cast<double>(position) * scale));
    });
    if (layer.m_strLLB.empty() && read.iResult != GISFILE_ERR_OPEN) layer.m_strLLB = read.strName;
    return read.iResult;
}

std::string TGisFileKml::WriteText(TMapLayer& layer) {
    TExportSettings settings = m_Export;
    settings.bSwathLines = true;
    std::string kml = WriteKmlText(ExportLayerFeatures(layer, settings), layer.m_strLLB);
    if (!m_bKmz) return kml;
    std::string archive;
    if (!WriteKmzArchive(kml, archive)) throw std::runtime_error("the KMZ archive could not be made");
    return archive;
}

std::unique_ptr<TGisFileExchange> CreateExchangeFile(TExchangeFileType type) {
    switch (type) {
        case EXCHANGE_FILE_GEOJSON:
            return std::make_unique<TGisFileGeoJson>();
        case EXCHANGE_FILE_KML:
        case EXCHANGE_FILE_KMZ:
            return std::make_unique<TGisFileKml>(type == EXCHANGE_FILE_KMZ);
        default:
            return nullptr;
    }
}

int LoadExchangeFile(const char* path, TMapLayer* layer, GisProgressCallback progress, TLoadReport& report) {
    return WithoutThrowing(
        [&] {
            std::unique_ptr<TGisFileExchange> file = CreateExchangeFile(GetExchangeFileType(path));
            if (file == nullptr) return GISFILE_ERR_UNAVAILABLE;
            file->SetLoadReport(&report);
            return file->LoadFile(path, layer, progress);
        },
        &report);
}

int WriteExchangeFile(const char* path, TMapLayer* layer, const TExportSettings& settings) {
    return WithoutThrowing(
        [&] {
            std::unique_ptr<TGisFileExchange> file = CreateExchangeFile(GetExchangeFileType(path));
            if (file == nullptr) return GISFILE_ERR_UNAVAILABLE;
            file->m_Export = settings;
            return file->WriteFile(path, layer);
        },
        nullptr);
}
