#pragma once
// Drawings for the reader tests, written compactly: "0 LINE|8 A41|10 10.5" is one group per
// '|', its code before the first blank and its value after it.

#include <sstream>
#include <string>
#include <utility>
#include <vector>

// Expands "0 LINE|8 A41|10 10.5" into group lines: each code right-aligned in width columns on
// its own line, then its value, each line ended by eol.
inline std::string DxfGroups(const std::string& compact, const char* eol = "\n", std::size_t width = 3) {
    std::string out;
    std::istringstream in(compact);
    for (std::string group; std::getline(in, group, '|');) {
        const std::size_t space = group.find(' ');
        out += std::string(width > space ? width - space : 0, ' ') + group.substr(0, space) + eol;
        out += group.substr(space + 1) + eol;
    }
    return out;
}

// A whole drawing whose ENTITIES section holds the compact groups.
inline std::string Drawing(const std::string& compact, const char* eol = "\n", std::size_t width = 3) {
    return DxfGroups(
        "0 SECTION|2 HEADER|9 $ACADVER|1 AC1009|0 ENDSEC|0 SECTION|2 ENTITIES|" + compact + "|0 ENDSEC|0 EOF",
        eol, width);
}

// Compact groups of entities, (x, y) = (longitude, latitude).
using TXY = std::pair<double, double>;
inline std::string XY(TXY p, const char* codes = "10 20") {
    return "|" + std::string(codes, 2) + " " + std::to_string(p.first) + "|" + (codes + 3) + " " +
           std::to_string(p.second);
}
inline std::string Lw(const std::string& layer, const std::vector<TXY>& points, int flags = 0) {
    std::string g =
        "0 LWPOLYLINE|8 " + layer + "|90 " + std::to_string(points.size()) + "|70 " + std::to_string(flags);
    for (const TXY& p : points) g += XY(p);
    return g;
}
inline std::string Poly(const std::string& layer, const std::vector<TXY>& points) {
    std::string g = "0 POLYLINE|8 " + layer + "|66 1";
    for (const TXY& p : points) g += "|0 VERTEX|8 " + layer + XY(p);
    return g + "|0 SEQEND|8 " + layer;
}
inline std::string Line(const std::string& layer, TXY from, TXY to) {
    return "0 LINE|8 " + layer + XY(from) + XY(to, "11 21");
}
