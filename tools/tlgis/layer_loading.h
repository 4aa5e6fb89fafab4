#pragma once
// Loading a file into a layer for a command, with the tool's progress display and error line.

#include <string>

#include <tl_gis/gis/load_report.h>
#include <tl_gis/hostmap/map_layer.h>
#include "options.h"
#include "reprojection.h"

struct TLoadOutcome {
    int iType = 0;
    int iResult = 0;
    TLoadReport Report;  // what the load added, passed over and where it stopped
    TCrsUse Crs;         // the CRS the coordinates were brought from, under reproject
    // Why the file was not read at all (its CRS could not be used), or what reprojection found
    // wrong after reading it; empty when neither.
    std::string strFailure;
    bool bRead = false;  // the library read the file

    // Whether the load did what a user would assume: result 0, read to the end, not empty when
    // the file held data, and, under reproject, every coordinate brought to WGS 84.
    bool Complete() const { return iResult == 0 && !Report.IsIncomplete() && strFailure.empty(); }
};

// Loads path into layer ("-" loads nothing). With notes, prints what the load passed over as
// notes, one line per cause with its count and first place. When the load is not complete,
// then prints one line saying why: "tlgis: cannot ... (code)", where it stopped, or what left
// it empty.
TLoadOutcome LoadLayer(const std::string& path, TMapLayer& layer, const TToolOptions& options,
                       bool notes = true);

// The report's lines as the tool shows them: "815 PointZ records not read (shape type 11);
// first: record 1", and "after record 40: its last point ..." for a stop.
std::string DescribeSkipped(const TLoadReport::TSkipped& skipped);
std::string DescribeStop(const TLoadReport::TStopped& stopped);

// A result code in the words of the operation it came from: a load's 1 and 2 are stops at a
// point that is not geographic, a writer's 1 an output it could not complete.
std::string DescribeResult(int result, bool writing);

// Lets every extension add to a loaded layer (--spray and the like); false after printing why.
bool AugmentLayer(TMapLayer& layer, const TToolOptions& options);

// The one-line explanation printed for a failed load or write.
std::string DescribeFailure(const std::string& path, int type, int result, bool writing);

// Writes the layer to out: through the extension that writes that format itself (which then
// reports its files and sets written), or through the dispatcher. Returns the result code.
int WriteLayer(const std::string& out, TMapLayer& layer, const TToolOptions& options, bool& written);
