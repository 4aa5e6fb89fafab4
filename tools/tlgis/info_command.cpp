#include <cstdio>
#include <string>

#include "commands.h"
#include "gis/gis_map.h"
#include "layer_loading.h"
#include "layer_report.h"
#include "session.h"

int RunInfo(const TToolOptions& options) {
    if (options.positional.size() != 1) {
        PrintError("usage: tlgis info FILE [--json] [--points]");
        return kExitUsage;
    }
    const std::string& path = options.positional[0];
    TMapLayer layer;
    const TLoadOutcome outcome = LoadLayer(path, layer, options);
    if (!AugmentLayer(layer, options)) return 1;
    TReportOptions report;
    report.bPoints = options.Has("points");
    if (options.Has("json"))
        std::fputs(LayerToJson(path, outcome.iType, outcome.iResult, layer, report).c_str(), stdout);
    else
        std::fputs(LayerSummary(path, outcome.iType, outcome.iResult, layer).c_str(), stdout);
    return outcome.iResult == 0 ? 0 : 1;
}
