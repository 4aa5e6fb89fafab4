#include <tl_gis/gis/gis_map.h>
#include "platform/no_throw.h"

#include <memory>

#include <tl_gis/gis/language.h>
#include "gis/format_table.h"

TLGIS_FILE_TYPE TGisMap::GetGisFileType(const char* path) {
    for (const TGisFormat* f = GisFormatsBegin(); f != GisFormatsEnd(); ++f)
        if (HasFileExtension(path, f->pszExtension)) return f->eType;
    return GIS_FILE_NONE;
}

int TGisMap::LoadFile(const char* path, TMapLayer* layer, GisProgressCallback progress) {
    return RunWithoutThrowing([&] { return LoadWithFormat(path, layer, progress, nullptr); });
}

int TGisMap::LoadFile(const char* path, TMapLayer* layer, GisProgressCallback progress, TLoadReport& report) {
    report.Clear();
    return RunWithoutThrowing([&] { return LoadWithFormat(path, layer, progress, &report); });
}

int TGisMap::LoadWithFormat(const char* path, TMapLayer* layer, GisProgressCallback progress,
                            TLoadReport* report) {
    EnsureLibraryStarted();
    const TGisFormat* format = FindGisFormat(GetGisFileType(path));
    if (format == nullptr || format->pfnCreateReader == nullptr || layer == nullptr)
        return GISFILE_ERR_UNAVAILABLE;
    std::unique_ptr<TGisFile> reader(format->pfnCreateReader());
    if (!reader) return GISFILE_ERR_UNAVAILABLE;
    reader->SetLoadReport(report);
    return reader->LoadFile(path, layer, progress);
}

int TGisMap::WriteFile(const char* path, TMapLayer* layer) {
    return RunWithoutThrowing([&] { return WriteWithFormat(path, layer); });
}

int TGisMap::WriteWithFormat(const char* path, TMapLayer* layer) {
    EnsureLibraryStarted();
    const TGisFormat* format = FindGisFormat(GetGisFileType(path));
    if (format == nullptr || format->pfnCreateWriter == nullptr) return GISFILE_ERR_UNAVAILABLE;
    std::unique_ptr<TGisFile> writer(format->pfnCreateWriter());
    if (!writer) return GISFILE_ERR_UNAVAILABLE;
    if (format->pfnPrepareWriter != nullptr) format->pfnPrepareWriter(*writer, *this);
    return writer->WriteFile(path, layer);
}

bool TGisMap::CanLoad(TLGIS_FILE_TYPE type) {
    const TGisFormat* f = FindGisFormat(type);
    return f != nullptr && f->pfnCreateReader != nullptr;
}

bool TGisMap::CanWrite(TLGIS_FILE_TYPE type) {
    const TGisFormat* f = FindGisFormat(type);
    return f != nullptr && f->pfnCreateWriter != nullptr;
}

const char* TGisMap::GetTypeName(TLGIS_FILE_TYPE type) {
    const TGisFormat* f = FindGisFormat(type);
    return f != nullptr ? f->pszName : "none";
}

const char* GetResultCodeText(int code) {
    switch (code) {
        case GISFILE_OK:
            return "done";
        case GISFILE_ERR_UNAVAILABLE:
            return "no format handles this file, or the file has no status";
        case GISFILE_ERR_OPEN:
            return "cannot open or create the file, or it does not start as its format requires";
        case GISFILE_ERR_DATA:
            return "the data could not be processed (memory for a record or vertex array)";
        case GISFILE_ERR_CANCELLED:
            return "import stopped at the projected-coordinate question";
        case 1:
            return "a write could not create or complete its output, or a shapefile load stopped after a "
                   "record whose last point looks projected";
        case 2:
            return "a shapefile load stopped after a record whose last point is outside the degree range";
        case JOBFILE_ERR_NAME:
            return "the file name is not a valid job name";
        default:
            return "unknown result";
    }
}
