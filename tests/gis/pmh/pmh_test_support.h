#pragma once
// Helpers of the PMH tests: files from text and layers of rate polygons.

#include <string>
#include <vector>

#include "gis/pmh/gis_file_pmh.h"
#include "test_support.h"

// Loads PMH text (written as bytes to a temporary file) into the layer; returns the result.
int LoadPmhText(const std::string& text, TMapLayer& layer);
// Writes the layer to name in a temporary folder; returns the result and the bytes written.
int WritePmh(TMapLayer& layer, std::string& bytes, const std::string& name = "rates.pmh");
// Adds a boundary line with a rate, as a reader would.
void AddRatePolygon(TMapLayer& layer, double rate, const std::vector<tagLOC>& vertices,
                    int boundType = BOUNDARY_INC);

// The 31 header lines with the given lines 1, 20 and 31 (none when null), the others as written
// for an empty layer; then a polygon block: the keyword, the rate line, a square at (lat, lon).
std::string HeaderText(const std::string& line1 = "", const std::string& line20 = "0 0 0",
                       const char* line31 = "8 LITRES / HECTARE");
std::string SquareBlock(const std::string& rateLine, double lat, double lon, const char* keyword = ".POL");
