// tlgis: read, inspect and convert the GIS files of the spraying system.

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "commands.h"
#include "extensions.h"
#include "options.h"
#include "session.h"
#include "utf8_paths.h"

namespace {
const char* const kUsageCommands =
    "Usage: tlgis COMMAND [ARGS] [OPTIONS]\n"
    "\n"
    "Commands:\n"
    "  info FILE [--json] [--points]   load FILE and describe what it holds\n"
    "  convert IN OUT [options]        load IN ('-' for nothing) and write OUT, format from its extension\n"
    "  render IN OUT.svg [--width PX]  draw the layer as an SVG picture with a scale bar and north arrow\n"
    "  demo [DIR]                      write every format from the built-in sample field and flight\n"
    "                                  into DIR (default ./tlgis-demo) and read each file back\n"
    "  help [COMMAND]                  show this text, or the options of a command\n"
    "\n"
    "Formats: .job (JOB), .pmh (PMH), .dxf (DXF), .mif (MID/MIF pair), .shp (shapefile)\n";

const char* const kUsageOptions =
    "\n"
    "Common options:\n"
    "  --projected stop|continue|ask|reproject\n"
    "                              the answer to 'the coordinates look projected: stop?', asked once per\n"
    "                              file and printed (default stop); ask asks on the terminal every time.\n"
    "                              stop (Yes): a SHP, DXF or MIF load stops there; a JOB or PMH load gives\n"
    "                              up that boundary or polyline and goes on.\n"
    "                              continue (No): SHP keeps the projected values and stops after a record\n"
    "                              whose last point is projected; DXF leaves out the entity or vertex; JOB\n"
    "                              and PMH drop the coordinate line; MIF stops reading all the same.\n"
    "                              (skip is taken as continue until the next release)\n"
    "                              reproject: coordinates are brought to WGS 84 latitude and longitude\n"
    "                              through PROJ from the CRS the file names (a shapefile's .prj, a MIF\n"
    "                              CoordSys) or --crs gives; projected coordinates with no CRS are an error\n"
    "  --crs CRS                   the CRS of the input, overriding the file's: EPSG:32615, a WKT file, a\n"
    "                              PROJ string; implies --projected reproject. It serves DXF and JOB too.\n"
    "                              Outputs need none: every format written holds WGS 84 degrees\n"
    "  --complete                  the complete profile: read everything a file holds that the map model\n"
    "                              can carry and write every element a format can hold, beyond what the\n"
    "                              spraying system's own programs read and write (see README); implies\n"
    "                              --projected reproject where tlgis is built with PROJ\n"
    "  --id-field NAME             the attribute column (or property) read as each element's id\n"
    "  --value-field NAME          the numeric column read as each polygon's value (a PMH rate)\n"
    "  --name-field NAME           the column read as a point's or marker's name; the three imply\n"
    "                              --complete\n"
    "  --config DIR                folder of Orvanta.ini and the language files\n"
    "  --lang NAME                 english, french, german, italian, portuguese or spanish\n"
    "  --progress                  show progress while loading and the time a write took\n"
    "  --quiet                     no notes\n";

// The commands, the formats (the library's five, then those of the extensions), the options.
void PrintUsage(std::FILE* out) {
    std::fputs(kUsageCommands, out);
    for (const TToolExtension& ext : ToolExtensions())
        if (!ext.formatsHelp.empty()) std::fprintf(out, "         %s\n", ext.formatsHelp.c_str());
    std::fputs(kUsageOptions, out);
}

const char* const kConvertHelp =
    "Usage: tlgis convert IN OUT [options]\n"
    "       tlgis convert IN... -o DIR -f FORMAT [options]\n"
    "Loads IN (or starts from an empty layer when IN is '-') and writes the layer to OUT in the\n"
    "format that OUT's extension selects. With -o, every IN is written to DIR under its own name\n"
    "with the extension FORMAT (job, pmh, dxf, mif, shp, geojson, kml or kmz); a failed file stops\n"
    "none of the others and makes the exit status 1.\n";

int Help(const TToolOptions& options) {
    if (!options.positional.empty() && options.positional[0] == "convert") {
        std::fputs(kConvertHelp, stdout);
        bool any = false;
        for (const TToolExtension& ext : ToolExtensions()) {
            for (const std::string& line : ext.convertHelp) {
                if (!any) std::fputs("\nOptions:\n", stdout);
                any = true;
                std::printf("  %s\n", line.c_str());
            }
        }
    } else {
        PrintUsage(stdout);
    }
    return 0;
}
}  // namespace

int main(int argc, char** argv) {
    // File names travel in UTF-8, on Windows too.
    std::vector<std::string> arguments = Utf8Arguments(argc, argv);
    std::vector<char*> utf8Argv;
    for (std::string& argument : arguments) utf8Argv.push_back(argument.data());
    utf8Argv.push_back(nullptr);
    argv = utf8Argv.data();
    TToolOptions options;
    std::string error;
    if (!ParseToolOptions(argc, argv, options, error)) {
        PrintError(error);
        PrintUsage(stderr);
        return kExitUsage;
    }
    if (options.Has("help") || options.strCommand == "help") return Help(options);
    if (options.Has("version")) {
        std::puts("tlgis 0.1.0");
        return 0;
    }
    if (options.strCommand.empty()) {
        PrintUsage(stderr);
        return kExitUsage;
    }
    if (!SetUpSession(options, error)) {
        PrintError(error);
        return kExitUsage;
    }
    if (options.strCommand == "info") return RunInfo(options);
    if (options.strCommand == "convert") return RunConvert(options);
    if (options.strCommand == "render") return RunRender(options);
    if (options.strCommand == "demo") return RunDemo(options);
    PrintError("unknown command '" + options.strCommand + "'");
    PrintUsage(stderr);
    return kExitUsage;
}
