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

// The group pairs of a drawing, for tests that look at a few groups only.
std::vector<std::pair<int, std::string>> ReadGroups(const std::string& text);
// The colour of every POLYLINE and its vertex count, in file order: "1:4 6:0".
std::string DescribePolylines(const std::string& text);

// The programs that check the drawings we write: ezdxf's audit and GDAL's ogrinfo.
struct TDxfPeers {
    bool bEzdxf = false;
    bool bGdal = false;
    // Why a check that needs both peers is incomplete; empty when both are installed.
    std::string Missing() const;
};
TDxfPeers FindDxfPeers();
// What the installed peers say against the drawing: ezdxf's audit errors, an ogrinfo -al
// failure, error or missing feature count. Empty when every installed peer accepts it.
std::string DxfPeerComplaints(const std::string& path, const TDxfPeers& peers);
