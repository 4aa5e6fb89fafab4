// tlgis demo [DIR]: writes every format from the sample job and flight that travel inside the
// tool, then reads each written file back and prints one line of what it holds.

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include <tl_gis/gis/gis_map.h>
#include "commands.h"
#include "extensions.h"
#include "layer_loading.h"
#include "layer_render.h"
#include "layer_report.h"
#include "session.h"
#include "utf8_paths.h"

std::string_view DemoJobFile();
std::string_view DemoFlightFile();

namespace {
namespace fs = std::filesystem;

struct TDemoOutput {
    const char* name;
    bool withSpray;  // the flight's spray runs join the job's layer for this file
};

// The job is named by its job number, as job files must be. The job and the rate map hold the field as
// planned; the drawings, MapInfo tables, shapefiles, web map and Google Earth file also show what
// was flown.
const TDemoOutput kOutputs[] = {
    {"12.job", false},   {"field.pmh", false},    {"field.dxf", true}, {"field.mif", true},
    {"field.shp", true}, {"field.geojson", true}, {"field.kmz", true},
};

bool WriteBytes(const fs::path& path, std::string_view bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return static_cast<bool>(out.flush());
}

// "boundary 3, marker 2, pattern 1": the element kinds of a layer with their counts.
std::string CountKinds(const TMapLayer& layer) {
    std::map<std::string, int> counts;
    for (const TMapElement* e : layer.m_Elements) ++counts[ElementKindName(*e)];
    if (counts.empty()) return "no elements";
    std::string text;
    for (const auto& [kind, count] : counts) {
        if (!text.empty()) text += ", ";
        text += kind + " " + std::to_string(count);
    }
    return text;
}

// Loads the sample job and, when asked, the flight's spray runs, as `tlgis convert` would.
bool LoadDemoLayer(const fs::path& job, const fs::path& flight, bool withSpray, TMapLayer& layer,
                   const TToolOptions& common) {
    TToolOptions options = common;
    if (withSpray) {
        options.values["spray"] = Utf8Of(flight);
        options.values["source"] = Utf8Of(flight);
    }
    if (!LoadLayer(Utf8Of(job), layer, options).Complete()) return false;
    return AugmentLayer(layer, options);
}

bool WriteDemoFile(const fs::path& dir, const TDemoOutput& output, const TToolOptions& common) {
    const fs::path target = dir / output.name;
    const int type = ToolFileType(Utf8Of(target));
    const TToolExtension* extension = ExtensionOfType(type);
    const bool available = extension != nullptr ? extension->strUnavailable.empty()
                                                : TGisMap::CanWrite(static_cast<TLGIS_FILE_TYPE>(type));
    if (!available) {
        std::printf("  %-12s skipped: writing %s files is not available in this build\n", output.name,
                    ToolTypeName(type));
        return true;
    }
    TToolOptions options = common;
    if (output.withSpray) options.values["source"] = Utf8Of(dir / "flight.csv");
    std::string error;
    for (const TToolExtension& ext : ToolExtensions()) {
        if (ext.applyWriteOptions && !ext.applyWriteOptions(options, error)) {
            PrintError(error);
            return false;
        }
    }
    TMapLayer layer;
    if (!LoadDemoLayer(dir / "sample-input.job", dir / "flight.csv", output.withSpray, layer, common))
        return false;
    bool written = false;
    const int result = WriteLayer(Utf8Of(target), layer, options, written);
    if (result != 0) {
        PrintError(DescribeFailure(Utf8Of(target), type, result, true));
        return false;
    }
    return true;
}

// Every file of a readable format in the folder, by name.
std::vector<fs::path> ReadableFiles(const fs::path& dir) {
    std::vector<fs::path> files;
    std::error_code ec;
    for (const fs::directory_entry& entry : fs::directory_iterator(dir, ec)) {
        if (!entry.is_regular_file(ec)) continue;
        const int type = ToolFileType(Utf8Of(entry.path()));
        const TToolExtension* extension = ExtensionOfType(type);
        if (type != GIS_FILE_NONE && (extension == nullptr || extension->strUnavailable.empty()))
            files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    return files;
}

// Reads one written file back; prints "name  TYPE  what it holds" and returns whether it loaded.
bool CheckReadBack(const fs::path& file, const TToolOptions& common) {
    TMapLayer layer;
    const TLoadOutcome loaded = LoadLayer(Utf8Of(file), layer, common);
    const std::string name = Utf8Of(file.filename());
    const char* typeName = ToolTypeName(loaded.iType);
    if (!loaded.Complete()) {
        std::printf("  %-28s %-7s FAILED (%d)\n", name.c_str(), typeName, loaded.iResult);
        return false;
    }
    std::printf("  %-28s %-7s ok: %s\n", name.c_str(), typeName, CountKinds(layer).c_str());
    return true;
}
}  // namespace

int RunDemo(const TToolOptions& options) {
    if (options.positional.size() > 1) {
        PrintError("usage: tlgis demo [DIR]  (default ./tlgis-demo)");
        return kExitUsage;
    }
    const fs::path dir = options.positional.empty() ? fs::path("tlgis-demo") : PathOf(options.positional[0]);
    std::error_code ec;
    fs::create_directories(dir, ec);
    if (ec || !fs::is_directory(dir, ec)) {
        PrintError("cannot make the folder " + Utf8Of(dir));
        return 1;
    }
    // The sample job is read from a copy beside the outputs, removed once every file is written;
    // the flight stays, as the recorded data file that the spray exports name.
    const fs::path jobIn = dir / "sample-input.job";
    if (!WriteBytes(jobIn, DemoJobFile()) || !WriteBytes(dir / "flight.csv", DemoFlightFile())) {
        PrintError("cannot write the sample data into " + Utf8Of(dir));
        return 1;
    }
    // Notes from the library go to stderr; keep them in step with the lines printed here.
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    TToolOptions common = options;
    common.positional.clear();
    common.flags.push_back("quiet");
    SetQuietNotes(true);

    std::printf("Writing the sample field and flight into %s\n", Utf8Of(dir).c_str());
    bool ok = true;
    for (const TDemoOutput& output : kOutputs) ok = WriteDemoFile(dir, output, common) && ok;
    {
        TMapLayer layer;
        if (LoadDemoLayer(jobIn, dir / "flight.csv", true, layer, common)) {
            layer.CalculateGeoExtents();
            if (!RenderLayerSvg(layer, Utf8Of(dir / "field.svg"), "Sample field and flight", 1000)) {
                PrintError("cannot write " + Utf8Of(dir / "field.svg"));
                ok = false;
            }
        } else
            ok = false;
    }
    fs::remove(jobIn, ec);

    std::printf("Reading every written file back:\n");
    for (const fs::path& file : ReadableFiles(dir)) ok = CheckReadBack(file, common) && ok;
    const fs::path svg = dir / "field.svg";
    if (fs::is_regular_file(svg, ec))
        std::printf("  %-28s %-7s ok: %ju bytes, open it in a browser\n", "field.svg", "SVG",
                    static_cast<std::uintmax_t>(fs::file_size(svg, ec)));
    std::printf(ok ? "Done: every file was written and read back.\n" : "Some files failed; see above.\n");
    return ok ? 0 : 1;
}
