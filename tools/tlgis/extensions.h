#pragma once
// How each format adds to the tool without editing shared files: a file of its own registers
// its convert options, its report fields and its layer additions with a static registrar.
//
//   static const TToolExtension kJob = RegisterToolExtension({
//       .name = "job", .valueOptions = {"job-version"}, .applyWriteOptions = &ApplyJobOptions, ...});

#include <functional>
#include <string>
#include <vector>

#include <tl_gis/gis/gis_file.h>
#include <tl_gis/gis/load_report.h>
#include <tl_gis/hostmap/map_layer.h>
#include "options.h"

class TJsonWriter;
struct TReportOptions;

struct TToolExtension {
    std::string name;
    // Options of this extension that take a value (--name VALUE).
    std::vector<std::string> valueOptions;
    // Options of this extension that take no value (--name).
    std::vector<std::string> flagOptions;
    // Help lines for `tlgis help convert`, one option each.
    std::vector<std::string> convertHelp;
    // Sets the library's export settings from the options before a write; false with an error
    // message on a bad value (the tool then exits with status 2).
    std::function<bool(const TToolOptions&, std::string& error)> applyWriteOptions;
    // Adds elements to a freshly loaded layer (e.g. spray from a flight file); false with an error.
    std::function<bool(TMapLayer&, const TToolOptions&, std::string& error)> augmentLayer;
    // Writes the JSON members of an element this extension knows; false when it does not know it.
    std::function<bool(TJsonWriter&, const TMapElement&, const TReportOptions&)> describeElementJson;
    // Adds members to the JSON "layer" object.
    std::function<void(TJsonWriter&, const TMapLayer&)> describeLayerJson;
    // Adds lines to the human summary.
    std::function<void(std::string& out, const TMapLayer&)> describeLayerText;
    // Writes the layer itself, for writers whose settings the dispatcher does not carry: false
    // when it leaves this output to the dispatcher, true with the library's result code set.
    std::function<bool(const std::string& out, TMapLayer&, const TToolOptions&, int& result)> writeLayer;
    // Runs after a successful write (e.g. to print the extra files written).
    std::function<void(const std::string& out, const TMapLayer&, const TToolOptions&)> afterWrite;

    // Formats beyond the library's five (the members after this one have defaults, so that the
    // extensions of the library's formats need not name them). The file type number of a path this extension
    // reads and writes (0 for none), and the name of such a type ("GeoJSON").
    std::function<int(const std::string& path)> fileType = {};
    std::function<const char*(int type)> typeName = {};
    // Reads a file of such a type into the layer, filling the report; returns the result code.
    std::function<int(const std::string& path, TMapLayer&, GisProgressCallback, TLoadReport&)> loadLayer = {};
    // The extensions of its files (".geojson"), and a line for `tlgis help`'s list of formats.
    std::vector<std::string> fileExtensions = {};
    std::string formatsHelp = {};
    // Why its formats are not available in this build; empty when they are.
    std::string strUnavailable = {};
};

// Registers an extension; call from a static initialiser. Returns a token to keep.
int RegisterToolExtension(TToolExtension extension);
const std::vector<TToolExtension>& ToolExtensions();

// The file type of a path: the library's (1 JOB .. 5 SHP), or an extension's; 0 for none.
int ToolFileType(const std::string& path);
// The extension that adds a file type, or null for the library's own and for none.
const TToolExtension* ExtensionOfType(int type);
// The short name of a file type ("JOB", "GeoJSON"; "none").
const char* ToolTypeName(int type);
// The extensions of every format the tool knows: ".job, .pmh, .dxf, .mif, .shp, .geojson, ...".
std::string ToolFileExtensions();
