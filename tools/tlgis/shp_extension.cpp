// Shapefile additions to the tool: the export forms of recorded spray and of the non-spray
// path, boundary mode, the attribute units and texts, and the list of files written. The tool
// creates the writer itself, as a host does, so that every writer setting can be given.

#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include <tl_gis/gis/gis_map.h>
#include <tl_gis/gis/language.h>
#include <tl_gis/gis/shp/gis_file_shp.h>
#include "extensions.h"
#include "session.h"
#include "utf8_paths.h"

namespace {
struct TFormName {
    const char* pszName;
    int iValue;
};
constexpr TFormName kSprayForms[] = {
    {"polygons", ESRI_SPRAY_POLYGONS},
    {"polylines", ESRI_SPRAY_POLYLINES},
    {"points", ESRI_SPRAY_POINTS},
    {"spots", ESRI_SPRAY_SPOTS},
};
constexpr TFormName kNonSprayForms[] = {
    {"polylines", ESRI_NONSPRAY_POLYLINES},
    {"points", ESRI_NONSPRAY_POINTS},
};

template <std::size_t N>
bool ParseForm(const TToolOptions& options, const char* option, const TFormName (&forms)[N], int& value,
               std::string& error) {
    if (!options.HasValue(option)) return true;
    const std::string text = options.Get(option);
    std::string names;
    for (const TFormName& form : forms) {
        if (text == form.pszName) {
            value = form.iValue;
            return true;
        }
        names += names.empty() ? "" : ", ";
        names += form.pszName;
    }
    error = std::string("--") + option + " takes " + names + ", not '" + text + "'";
    return false;
}

bool ApplyShpOptions(const TToolOptions& options, std::string& error) {
    int spray = ESRI_SPRAY_POLYGONS;
    int nonSpray = ESRI_NONSPRAY_POLYLINES;
    if (!ParseForm(options, "spray-format", kSprayForms, spray, error) ||
        !ParseForm(options, "nonspray-format", kNonSprayForms, nonSpray, error))
        return false;
    TGisFileShp::s_eESRISprayFormat = static_cast<ESRISPRAYFORMAT>(spray);
    TGisFileShp::s_eESRINonSprayFormat = static_cast<ESRINONSPRAYFORMAT>(nonSpray);
    return true;
}

bool HasSpray(const TMapLayer& layer) {
    for (const TMapElement* e : layer.m_Elements)
        if ((e->m_dwType & ELEMENT_KIND_MASK) == ELEMENT_SPRAY) return true;
    return false;
}

namespace fs = std::filesystem;

std::string Absolute(const std::string& path) {
    std::error_code ec;
    const fs::path absolute = fs::absolute(PathOf(path), ec);
    return ec ? path : Utf8Of(absolute.lexically_normal());
}

// The files of a triple as the writer will name them: the main file's path, and its index and
// table beside it.
using TTripleNamer = std::string (*)(const std::string&, const char*);

// Where a user expects a triple named from path: beside it, its name without extension, then
// the suffix. The writer cuts at the path's last '.' and again at the stem's, so a '.' in a
// folder name, in the name before its extension, or in "./" and "../" moves or shortens it.
bool NamesAsExpected(const std::string& path, const std::string& suffix, TTripleNamer namer) {
    const fs::path given = PathOf(path);
    const fs::path expected =
        PathOf(Absolute(path)).parent_path() / PathOf(Utf8Of(given.stem()) + suffix + ".shp");
    return Absolute(namer(path, "shp")) == Utf8Of(expected.lexically_normal());
}

// The spelling of a path that the writer names as the user expects: as given, or else absolute
// (which drops "./" and "../"); the one given when neither does, with a note naming the files
// that will be written.
std::string ChoosePathSpelling(const std::vector<std::string>& spellings, const std::string& suffix,
                               TTripleNamer namer, const char* what) {
    for (const std::string& spelling : spellings)
        if (NamesAsExpected(spelling, suffix, namer)) return spelling;
    const std::string& chosen = spellings.front();
    PrintNote(std::string("the ") + what + " " + chosen +
              " holds a '.' in its name or folder, where the shapefile naming rule cuts: writing " +
              namer(chosen, "shp") + ", " + namer(chosen, "shx") + " and " + namer(chosen, "dbf"));
    return chosen;
}

std::string SpraySuffix() {
    const std::string stem = TGisFileShp::GetSprayOutputStem("x.shp");
    return stem.substr(1);
}

std::string NonSpraySuffix() {
    const std::string stem = TGisFileShp::GetNonSprayOutputStem("x.csv");
    return stem.substr(1);
}

// The source path as the writer needs it: with a folder, so that its name and date are found.
std::string SourcePath(const TToolOptions& options) {
    const std::string given = options.Get("source", options.Get("spray"));
    if (given.empty()) return given;
    return ChoosePathSpelling({Absolute(given), given}, NonSpraySuffix(), &TGisFileShp::GetNonSprayOutputFile,
                              "recorded data file");
}

void NoteTriple(const std::string& path, TTripleNamer namer) {
    for (const char* extension : {"shp", "shx", "dbf"}) PrintNote("wrote " + namer(path, extension));
}

bool WriteShapefile(const std::string& out, TMapLayer& layer, const TToolOptions& options, int& result) {
    if (TGisMap::GetGisFileType(out.c_str()) != GIS_FILE_SHP) return false;
    EnsureLibraryStarted();
    const bool boundaries = options.Has("boundaries") || !HasSpray(layer);
    if (!options.Has("boundaries") && boundaries)
        PrintNote(TGisFile::s_bCompleteProfile
                      ? "the layer holds no recorded spray: writing its boundaries, lines, markers and points"
                      : "the layer holds no recorded spray: writing its boundary lines");
    const std::string target =
        ChoosePathSpelling({out, Absolute(out)}, SpraySuffix(), &TGisFileShp::GetSprayOutputFile, "target");
    // The source names the non-spray triple, written only for a layer with recorded spray.
    const std::string source = HasSpray(layer) ? SourcePath(options) : std::string();
    TGisFileShp writer;
    writer.m_iWriteMode = boundaries ? 0 : 1;
    writer.SetMetric(options.Has("metric") ? 1 : 0);
    writer.SetCompanyName(options.Get("company"));
    writer.SetSourceFile(source);
    writer.SetSingleBlockMode(options.Has("single-block") ? 1 : 0);
    result = writer.WriteFile(target.c_str(), &layer);
    if (result != 0) return true;
    // The complete profile writes more beside each triple: the writer says what.
    if (TGisFile::s_bCompleteProfile) {
        for (const std::string& file : writer.GetWrittenFiles()) PrintNote("wrote " + file);
        return true;
    }
    NoteTriple(target, &TGisFileShp::GetSprayOutputFile);
    // The non-spray path follows whenever the layer holds recorded spray, in boundary mode too.
    if (HasSpray(layer)) NoteTriple(source, &TGisFileShp::GetNonSprayOutputFile);
    return true;
}

const int kShpExtension = RegisterToolExtension({
    .name = "shp",
    .valueOptions = {"spray-format", "nonspray-format", "company", "source"},
    .flagOptions = {"boundaries", "metric", "single-block"},
    .convertHelp =
        {
            "--spray-format F     recorded spray as polygons (default), polylines, points or spots",
            "--nonspray-format F  the flight path flown without spraying as polylines (default) or points",
            "--boundaries         write the layer's boundary lines (also when it holds no recorded spray)",
            "--metric             attribute tables in metric units (default US units)",
            "--company NAME       the CUSTOMER attribute of spray rows",
            "--source FILE        the recorded data file: names and dates the non-spray files and fills "
            "FILE_NAME and FILE_DATE (default the --spray file)",
            "--single-block       one swath polygon per step of a spray run",
        },
    .applyWriteOptions = &ApplyShpOptions,
    .augmentLayer = {},
    .describeElementJson = {},
    .describeLayerJson = {},
    .describeLayerText = {},
    .writeLayer = &WriteShapefile,
    .afterWrite = {},
});
}  // namespace
