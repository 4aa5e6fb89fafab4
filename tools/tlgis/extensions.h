#pragma once
// How each format adds to the tool without editing shared files: a file of its own registers
// its convert options, its report fields and its layer additions with a static registrar.
//
//   static const TToolExtension kJob = RegisterToolExtension({
//       .name = "job", .valueOptions = {"job-version"}, .applyWriteOptions = &ApplyJobOptions, ...});

#include <functional>
#include <string>
#include <vector>

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
};

// Registers an extension; call from a static initialiser. Returns a token to keep.
int RegisterToolExtension(TToolExtension extension);
const std::vector<TToolExtension>& ToolExtensions();
