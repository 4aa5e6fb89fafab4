#include "layer_loading.h"

#include <unistd.h>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <vector>

#include <tl_gis/gis/gis_map.h>
#include "extensions.h"
#include "session.h"
#include "utf8_paths.h"

namespace {
bool g_bProgressBar = false;
int g_iLastShown = -1;

// GDAL-style progress: "0...10...20...100 - done." on a pipe, a bar on a terminal. The bar
// remembers the last percentage shown, the pipe form the last 2.5 % mark.
void ShowProgress(int percent) {
    if (percent < 0) percent = 0;
    if (percent > 100) percent = 100;
    if (g_bProgressBar) {
        if (percent == g_iLastShown) return;
        g_iLastShown = percent;
        const int filled = percent / 4;
        std::fprintf(stderr, "\r[%.*s%*s] %3d%%", filled, "=========================", 25 - filled, "",
                     percent);
        std::fflush(stderr);
        return;
    }
    // One mark per 2.5 %: the tens as numbers, three dots between them.
    const int quarterSteps = percent * 4 / 10;
    if (g_iLastShown < 0) std::fputs("0", stderr);
    for (int step = std::max(g_iLastShown, 0) + 1; step <= quarterSteps; ++step) {
        if (step % 4 == 0)
            std::fprintf(stderr, "%d", step * 10 / 4);
        else
            std::fputs(".", stderr);
    }
    g_iLastShown = std::max(g_iLastShown, quarterSteps);
    std::fflush(stderr);
}

// Completes the display of a load at 100; a failed load only ends the line it started.
void FinishProgress(bool loaded) {
    if (loaded) {
        ShowProgress(100);
        std::fputs(g_bProgressBar ? "\n" : " - done.\n", stderr);
    } else if (g_iLastShown >= 0) {
        std::fputs("\n", stderr);
    }
    g_iLastShown = -1;
}

// A progress display is shown on a terminal unless --quiet, and on a pipe only with --progress.
bool WantProgress(const TToolOptions& options) {
    return options.Has("progress") || (isatty(STDERR_FILENO) && !options.Has("quiet"));
}
}  // namespace

std::string DescribeResult(int result, bool writing) {
    switch (result) {
        case 1:
            return writing ? "the output could not be created or completed"
                           : "the last point of a record looks projected; reading stopped there";
        case 2:
            return writing ? "the output could not be completed"
                           : "the last point of a record is outside the degree range; reading stopped there";
        case GISFILE_ERR_UNAVAILABLE:
            return writing ? "no format writes this file"
                           : "no format reads this file, the file has no status, or a DXF import was stopped "
                             "at the projected-coordinate question";
        case GISFILE_ERR_OPEN:
            return writing ? "cannot create the file"
                           : "cannot open the file, or it does not start as its format requires";
        default:
            return GetResultCodeText(result);
    }
}

std::string DescribeSkipped(const TLoadReport::TSkipped& skipped) {
    return std::to_string(skipped.lCount) + " " + TLoadReport::CauseText(skipped.eCause, skipped.lCount) +
           "; first: " + skipped.strFirst;
}

std::string DescribeStop(const TLoadReport::TStopped& stopped) {
    return std::string(stopped.bAfter ? "after " : "at ") + stopped.strAt + ": " + stopped.strReason;
}

namespace {
// The line for a load that is not complete.
std::string DescribeIncompleteLoad(const std::string& path, const TLoadOutcome& outcome) {
    const TLoadReport& report = outcome.Report;
    const std::string code = outcome.iResult != 0 ? " (" + std::to_string(outcome.iResult) + ")" : "";
    if (report.HasStopped())
        return "reading " + path + " stopped " + DescribeStop(report.GetStopped()) + code;
    if (outcome.iResult != 0) return DescribeFailure(path, outcome.iType, outcome.iResult, false);
    // Nothing was added although the file held data: say what there was.
    std::string why;
    const std::vector<TLoadReport::TSkipped> skipped = report.GetSkipped();
    for (std::size_t i = 0; i < skipped.size() && i < 3; ++i)
        why += (i > 0 ? "; " : "") + std::to_string(skipped[i].lCount) + " " +
               TLoadReport::CauseText(skipped[i].eCause, skipped[i].lCount);
    if (skipped.size() > 3) why += "; and more";
    return "reading " + path + " added nothing: " + why;
}
}  // namespace

std::string DescribeFailure(const std::string& path, int type, int result, bool writing) {
    std::string what;
    const TToolExtension* ext = ExtensionOfType(type);
    if (type == GIS_FILE_NONE) {
        what = "no format for " + path + " (use " + ToolFileExtensions() + ")";
    } else if (ext != nullptr ? !ext->strUnavailable.empty()
               : writing      ? !TGisMap::CanWrite(static_cast<TLGIS_FILE_TYPE>(type))
                              : !TGisMap::CanLoad(static_cast<TLGIS_FILE_TYPE>(type))) {
        what = std::string(writing ? "writing " : "reading ") + ToolTypeName(type) +
               " files is not available in this build: " + path;
        if (ext != nullptr) what += " (" + ext->strUnavailable + ")";
    } else if (result == GISFILE_ERR_OPEN || (!writing && result == GISFILE_ERR_UNAVAILABLE)) {
        std::error_code ec;
        if (!writing && !std::filesystem::exists(PathOf(path), ec))
            what = "cannot open " + path + " (no such file)";
        else
            what = std::string(writing ? "cannot write " : "cannot open ") + path;
    } else {
        what = std::string(writing ? "writing " : "reading ") + path +
               " failed: " + DescribeResult(result, writing);
    }
    return what + " (" + std::to_string(result) + ")";
}

bool AugmentLayer(TMapLayer& layer, const TToolOptions& options) {
    std::string error;
    for (const TToolExtension& ext : ToolExtensions()) {
        if (ext.augmentLayer && !ext.augmentLayer(layer, options, error)) {
            PrintError(error);
            return false;
        }
    }
    return true;
}

TLoadOutcome LoadLayer(const std::string& path, TMapLayer& layer, const TToolOptions& options, bool notes) {
    TLoadOutcome outcome;
    if (path == "-") return outcome;
    outcome.iType = ToolFileType(path);
    const bool wantProgress = WantProgress(options);
    g_bProgressBar = isatty(STDERR_FILENO) != 0;
    g_iLastShown = -1;
    std::error_code ec;
    if (!std::filesystem::is_regular_file(PathOf(path), ec)) {
        // Nothing to read: report it as the readers do for a file they cannot open.
        outcome.iResult = GISFILE_ERR_OPEN;
        PrintError(std::filesystem::exists(PathOf(path), ec)
                       ? "cannot open " + path + " (not a file) (6002)"
                       : "cannot open " + path + " (no such file) (6002)");
        return outcome;
    }
    ForgetProjectedAnswer();
    TFileReprojection reprojection;
    if (Reprojecting()) {
        const bool prepared = reprojection.Prepare(path, outcome.iType, options, outcome.strFailure);
        outcome.Crs = reprojection.GetUse();
        if (!prepared) {
            PrintError(outcome.strFailure);
            return outcome;
        }
    }
    const GisProgressCallback progress = wantProgress ? ShowProgress : nullptr;
    const TToolExtension* ext = ExtensionOfType(outcome.iType);
    if (ext != nullptr && ext->loadLayer)
        outcome.iResult = ext->loadLayer(path, layer, progress, outcome.Report);
    else
        outcome.iResult = TGisMap().LoadFile(path.c_str(), &layer, progress, outcome.Report);
    outcome.bRead = true;
    if (Reprojecting()) reprojection.Judge(path, outcome.Report, outcome.strFailure);
    if (wantProgress) FinishProgress(outcome.Complete());
    if (notes)
        for (const TLoadReport::TSkipped& skipped : outcome.Report.GetSkipped())
            PrintNote(path + ": " + DescribeSkipped(skipped));
    // A missing file: the base reports no status (6001) and the reader's open fails (6002).
    if (!outcome.Complete())
        PrintError(outcome.strFailure.empty() ? DescribeIncompleteLoad(path, outcome) : outcome.strFailure);
    return outcome;
}

int WriteLayer(const std::string& out, TMapLayer& layer, const TToolOptions& options, bool& written) {
    int result = 0;
    written = false;
    for (const TToolExtension& ext : ToolExtensions()) {
        if (ext.writeLayer && ext.writeLayer(out, layer, options, result)) {
            written = true;
            return result;
        }
    }
    // The writers report no progress while they run, so a write shows where it goes and, once
    // done, how long it took.
    const bool wantProgress = WantProgress(options);
    if (wantProgress) std::fprintf(stderr, "writing %s ... ", out.c_str());
    const auto start = std::chrono::steady_clock::now();
    TGisMap map;
    result = map.WriteFile(out.c_str(), &layer);
    if (wantProgress) {
        const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
        std::fprintf(stderr, result == 0 ? "done in %.2f s.\n" : "failed after %.2f s.\n", took.count());
    }
    return result;
}
