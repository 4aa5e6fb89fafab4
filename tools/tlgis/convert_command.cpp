#include <string>

#include "commands.h"
#include "extensions.h"
#include "gis/gis_map.h"
#include "layer_loading.h"
#include "session.h"

int RunConvert(const TToolOptions& options) {
    if (options.positional.size() != 2) {
        PrintError("usage: tlgis convert IN OUT [options]  (IN may be '-' for an empty layer)");
        return kExitUsage;
    }
    const std::string& in = options.positional[0];
    const std::string& out = options.positional[1];
    const TLGIS_FILE_TYPE outType = TGisMap::GetGisFileType(out.c_str());
    if (outType == GIS_FILE_NONE || !TGisMap::CanWrite(outType)) {
        PrintError(DescribeFailure(out, outType, GISFILE_ERR_UNAVAILABLE, true));
        return 1;
    }
    std::string error;
    for (const TToolExtension& ext : ToolExtensions()) {
        if (ext.applyWriteOptions && !ext.applyWriteOptions(options, error)) {
            PrintError(error);
            return kExitUsage;
        }
    }
    TMapLayer layer;
    const TLoadOutcome loaded = LoadLayer(in, layer, options);
    if (loaded.iResult != 0) return 1;
    if (!AugmentLayer(layer, options)) return 1;
    int result = 0;
    bool written = false;
    for (const TToolExtension& ext : ToolExtensions()) {
        if (ext.writeLayer && ext.writeLayer(out, layer, options, result)) {
            written = true;
            break;
        }
    }
    if (!written) {
        TGisMap map;
        result = map.WriteFile(out.c_str(), &layer);
    }
    if (result != 0) {
        PrintError(DescribeFailure(out, outType, result, true));
        return 1;
    }
    if (!written) PrintNote("wrote " + out);
    for (const TToolExtension& ext : ToolExtensions())
        if (ext.afterWrite) ext.afterWrite(out, layer, options);
    return 0;
}
