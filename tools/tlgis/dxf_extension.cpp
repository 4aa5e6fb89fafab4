// The drawing writer's options: how recorded spray becomes swath polygons.

#include <tl_gis/gis/dxf/gis_file_dxf.h>
#include "extensions.h"

namespace {
bool ApplyDxfOptions(const TToolOptions& options, std::string& error) {
    TGisFileDxf::s_iDefaultSingleBlockMode = options.Has("single-block") ? 1 : 0;
    const std::string sprayOnly = options.Get("spray-only", "1");
    if (sprayOnly != "0" && sprayOnly != "1") {
        error = "--spray-only takes 0 or 1, not '" + sprayOnly + "'";
        return false;
    }
    TGisFileDxf::s_iDefaultSprayOnlyMode = sprayOnly == "1" ? 1 : 0;
    return true;
}

const int kDxfExtension = RegisterToolExtension({
    .name = "dxf",
    .valueOptions = {"spray-only"},
    .flagOptions = {"single-block"},
    .convertHelp = {"--single-block      DXF: one swath polygon per pair of spray samples",
                    "--spray-only 0|1    DXF: 0 also draws the track flown while not spraying (default 1)"},
    .applyWriteOptions = &ApplyDxfOptions,
    .augmentLayer = {},
    .describeElementJson = {},
    .describeLayerJson = {},
    .describeLayerText = {},
    .writeLayer = {},
    .afterWrite = {},
});
}  // namespace
