#pragma once
// Helpers of the drawing tests: compact drawings, loading them, and one-line layer summaries.

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "hostmap/map_layer.h"

// Expands "0 LINE|8 A41|10 10.5" into group lines: each code right-aligned in three columns on
// its own line, then its value, each line ended by eol. codeWidth sets the right alignment of
// the codes (0: none).
std::string DxfGroups(std::string_view compact, std::string_view eol = "\n", int codeWidth = 3);
// A whole drawing whose ENTITIES section holds the compact groups.
std::string DxfWithEntities(std::string_view compact, std::string_view eol = "\n", int codeWidth = 3);

// Compact groups of entities, (x, y) = (longitude, latitude).
using TXY = std::pair<double, double>;
std::string LwPolylineGroups(const std::string& layer, const std::vector<TXY>& points, int flags = 0);
std::string PolylineGroups(const std::string& layer, const std::vector<TXY>& points, int flags = 0);
std::string LineGroups(const std::string& layer, TXY from, TXY to);

// Writes the text to a scratch file, loads it into the layer and returns the result code.
int LoadDxfText(const std::string& text, TMapLayer& layer);

// One word per element, in layer order: lines as "<class>/<points>" ("road/4", a closed
// square "boundary/5"), markers as "m<symbol>:<name>@<lat>,<lon>".
std::string DescribeLayer(const TMapLayer& layer);
