// GeoJSON (.geojson, .json) and KML (.kml, .kmz): formats beyond the library's five, from the
// exchange module built beside it. A build without the module's parsers still knows the names
// and says that these formats are not available, and why.

#include <string>

#include <tl_gis/gis/gis_file.h>
#include "extensions.h"
#include "session.h"

#ifdef TLGIS_HAVE_EXCHANGE
#include <tl_gis/gis/shp/spray_table.h>
#include "exchange_files.h"
#endif

namespace {
#ifdef TLGIS_HAVE_EXCHANGE
int FileType(const std::string& path) {
    return GetExchangeFileType(path.c_str());
}

const char* TypeName(int type) {
    return GetExchangeTypeName(type);
}

int LoadExchange(const std::string& path, TMapLayer& layer, GisProgressCallback progress,
                 TLoadReport& report) {
    return LoadExchangeFile(path.c_str(), &layer, progress, report);
}

bool WriteExchange(const std::string& out, TMapLayer& layer, const TToolOptions& options, int& result) {
    if (GetExchangeFileType(out.c_str()) == EXCHANGE_FILE_NONE) return false;
    TExportSettings settings;
    // The spray rows name their source as the shapefile's do: --source, else the --spray file.
    settings.Source = ReadSpraySource(options.Get("company"), options.Get("source", options.Get("spray")));
    settings.bSingleBlock = options.Has("single-block");
    result = WriteExchangeFile(out.c_str(), &layer, settings);
    if (result == 0) PrintNote("wrote " + out);
    return true;
}

constexpr const char* kUnavailable = "";
#else
// The names the module would take, so that the tool can say what is missing.
int FileType(const std::string& path) {
    if (HasFileExtension(path.c_str(), "GEOJSON") || HasFileExtension(path.c_str(), "JSON")) return 6;
    if (HasFileExtension(path.c_str(), "KML")) return 7;
    if (HasFileExtension(path.c_str(), "KMZ")) return 8;
    return 0;
}

const char* TypeName(int type) {
    return type == 6 ? "GeoJSON" : type == 7 ? "KML" : type == 8 ? "KMZ" : nullptr;
}

int LoadExchange(const std::string&, TMapLayer&, GisProgressCallback, TLoadReport&) {
    return GISFILE_ERR_UNAVAILABLE;
}

bool WriteExchange(const std::string& out, TMapLayer&, const TToolOptions&, int& result) {
    if (FileType(out) == 0) return false;
    result = GISFILE_ERR_UNAVAILABLE;
    return true;
}

const std::string kUnavailable = std::string("built without ") + TLGIS_EXCHANGE_MISSING;
#endif

const int kExchangeExtension = RegisterToolExtension({
    .name = "exchange",
    .valueOptions = {},
    .flagOptions = {},
    .convertHelp = {"GeoJSON and KML/KMZ take --company, --source and --single-block for the rows and "
                    "swaths of recorded spray, as shapefiles do"},
    .applyWriteOptions = {},
    .augmentLayer = {},
    .describeElementJson = {},
    .describeLayerJson = {},
    .describeLayerText = {},
    .writeLayer = &WriteExchange,
    .afterWrite = {},
    .fileType = &FileType,
    .typeName = &TypeName,
    .loadLayer = &LoadExchange,
    .fileExtensions = {".geojson", ".json", ".kml", ".kmz"},
    .formatsHelp =
        std::string(".geojson/.json (GeoJSON), .kml (KML), .kmz (KMZ)") +
        (std::string(kUnavailable).empty() ? ""
                                           : ": not available in this build, " + std::string(kUnavailable)),
    .strUnavailable = kUnavailable,
});
}  // namespace
