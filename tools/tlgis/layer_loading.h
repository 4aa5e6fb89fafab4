#pragma once
// Loading a file into a layer for a command, with the tool's progress display and error line.

#include <string>

#include <tl_gis/hostmap/map_layer.h>
#include "options.h"

struct TLoadOutcome {
    int iType = 0;
    int iResult = 0;
};

// Loads path into layer ("-" loads nothing). Prints "tlgis: cannot ... (code)" on failure.
TLoadOutcome LoadLayer(const std::string& path, TMapLayer& layer, const TToolOptions& options);

// Lets every extension add to a loaded layer (--spray and the like); false after printing why.
bool AugmentLayer(TMapLayer& layer, const TToolOptions& options);

// The one-line explanation printed for a failed load or write.
std::string DescribeFailure(const std::string& path, int type, int result, bool writing);

// Writes the layer to out: through the extension that writes that format itself (which then
// reports its files and sets written), or through the dispatcher. Returns the result code.
int WriteLayer(const std::string& out, TMapLayer& layer, const TToolOptions& options, bool& written);
