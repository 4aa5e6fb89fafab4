#include <cstdio>
#include <string>

#include <tl_gis/gis/gis_map.h>
#include "commands.h"
#include "extensions.h"
#include "layer_loading.h"
#include "layer_report.h"
#include "session.h"

namespace {
// True when an extension's option will add elements of its own (tlgis info --spray F.csv).
bool HasExtensionInput(const TToolOptions& options) {
    for (const TToolExtension& ext : ToolExtensions())
        for (const std::string& name : ext.valueOptions)
            if (ext.augmentLayer && options.HasValue(name)) return true;
    return false;
}
}  // namespace

int RunInfo(const TToolOptions& options) {
    // Without FILE the layer starts empty, which is useful when an option adds to it.
    const bool emptyStart = options.positional.empty() && HasExtensionInput(options);
    if (options.positional.size() != 1 && !emptyStart) {
        PrintError("usage: tlgis info FILE [--json] [--points]  (FILE may be '-' for an empty layer)");
        return kExitUsage;
    }
    const std::string path = emptyStart ? "-" : options.positional[0];
    TMapLayer layer;
    // The report goes to stdout with the rest, so no notes.
    const TLoadOutcome outcome = LoadLayer(path, layer, options, false);
    // A file whose CRS could not be used was not read: there is nothing to describe.
    if (!outcome.bRead && !outcome.strFailure.empty()) return 1;
    if (!AugmentLayer(layer, options)) return 1;
    TReportOptions report;
    report.bPoints = options.Has("points");
    if (options.Has("json"))
        std::fputs(LayerToJson(path, outcome, layer, report).c_str(), stdout);
    else
        std::fputs(LayerSummary(path, outcome, layer).c_str(), stdout);
    return outcome.Complete() ? 0 : 1;
}
