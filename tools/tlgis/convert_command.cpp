#include <cstdio>
#include <filesystem>
#include <string>

#include <tl_gis/gis/gis_map.h>
#include "commands.h"
#include "extensions.h"
#include "layer_loading.h"
#include "session.h"
#include "utf8_paths.h"

namespace {
// Loads in and writes out; 0 when written, 1 after printing why not.
int ConvertOne(const std::string& in, const std::string& out, const TToolOptions& options) {
    const int outType = ToolFileType(out);
    const TToolExtension* outFormat = ExtensionOfType(outType);
    if (outType == GIS_FILE_NONE ||
        (outFormat != nullptr ? !outFormat->strUnavailable.empty()
                              : !TGisMap::CanWrite(static_cast<TLGIS_FILE_TYPE>(outType)))) {
        PrintError(DescribeFailure(out, outType, GISFILE_ERR_UNAVAILABLE, true));
        return 1;
    }
    TMapLayer layer;
    const TLoadOutcome loaded = LoadLayer(in, layer, options);
    // A load that stopped early or found nothing it reads is not converted.
    if (!loaded.Complete()) return 1;
    if (!AugmentLayer(layer, options)) return 1;
    bool written = false;
    const int result = WriteLayer(out, layer, options, written);
    if (result != 0) {
        PrintError(DescribeFailure(out, outType, result, true));
        return 1;
    }
    if (!written) PrintNote("wrote " + out);
    for (const TToolExtension& ext : ToolExtensions())
        if (ext.afterWrite) ext.afterWrite(out, layer, options);
    return 0;
}

// Batch use: every input goes to DIR/<its name>.<format>, in order; a failure stops none.
int ConvertBatch(const TToolOptions& options) {
    namespace fs = std::filesystem;
    std::string format = options.Get("f", options.Get("format"));
    if (!format.empty() && format[0] == '.') format.erase(0, 1);
    if (format.empty() || options.positional.empty()) {
        PrintError("usage: tlgis convert IN... -o DIR -f FORMAT  (an extension of " + ToolFileExtensions() +
                   ")");
        return kExitUsage;
    }
    const fs::path dir = PathOf(options.Get("o"));
    std::error_code ec;
    fs::create_directories(dir, ec);
    if (!fs::is_directory(dir, ec)) {
        PrintError("cannot make the folder " + Utf8Of(dir));
        return 1;
    }
    int failed = 0;
    for (const std::string& in : options.positional) {
        const std::string out = Utf8Of((dir / PathOf(in).filename()).replace_extension(format));
        const int status = ConvertOne(in, out, options);
        std::printf("%s -> %s: %s\n", in.c_str(), out.c_str(), status == 0 ? "ok" : "failed");
        if (status != 0) ++failed;
    }
    if (failed != 0)
        PrintError(std::to_string(failed) + " of " + std::to_string(options.positional.size()) +
                   " files failed");
    return failed == 0 ? 0 : 1;
}
}  // namespace

int RunConvert(const TToolOptions& options) {
    std::string error;
    for (const TToolExtension& ext : ToolExtensions()) {
        if (ext.applyWriteOptions && !ext.applyWriteOptions(options, error)) {
            PrintError(error);
            return kExitUsage;
        }
    }
    if (options.HasValue("o")) return ConvertBatch(options);
    if (options.positional.size() != 2) {
        PrintError(
            "usage: tlgis convert IN OUT [options]  (IN may be '-' for an empty layer), or "
            "tlgis convert IN... -o DIR -f FORMAT");
        return kExitUsage;
    }
    return ConvertOne(options.positional[0], options.positional[1], options);
}
