#pragma once
// Helpers of the PMH tests: files from text, layers of rate polygons, and the header text the
// writer produces for a layer without header values.

#include <string>
#include <vector>

#include "gis/pmh/gis_file_pmh.h"
#include "test_support.h"

// Loads PMH text (written as bytes to a temporary file) into the layer; returns the result.
int LoadPmhText(const std::string& text, TMapLayer& layer);
// Writes the layer to name in a temporary folder; returns the result and the bytes of the file
// made (empty when none was).
int WritePmh(TMapLayer& layer, std::string& bytes, const std::string& name = "rates.pmh");

// Adds a boundary line with a rate, as a reader would.
TFeatureLine* AddRatePolygon(TMapLayer& layer, double rate, const std::vector<tagLOC>& vertices,
                             int boundType = BOUNDARY_INC);

// A file's text from lines given with '\n', with the line end given.
std::string WithLineEnds(const std::string& text, const char* lineEnd);
// The 31 lines of a header with the given lines 1, 20 and 31 (none when null); the others as
// the writer leaves them for an empty layer. Lines end with '\n'.
std::string HeaderText(const std::string& line1 = "", const std::string& line20 = "0.0000 0.0000 0.0000",
                       const char* line31 = "8 LITRES / HECTARE");
// A polygon block: ".POL", "INC rate", then a square of four vertices at (lat, lon).
std::string SquareBlock(const std::string& rateLine, double lat, double lon, const char* keyword = ".POL");
