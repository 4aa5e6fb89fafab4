#pragma once
// Helpers of the drawing tests: compact drawings, loading them, and one-line summaries.

#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "gis/dxf/gis_file_dxf.h"
#include "hostmap/map_layer.h"
#include "test_support.h"

// Expands "0 LINE|8 A41|10 10.5" into group lines: each code right-aligned in width columns on
// its own line, then its value, each line ended by eol.
inline std::string DxfGroups(const std::string& compact, const char* eol = "\n", int width = 3) {
    std::string out;
    std::istringstream in(compact);
    for (std::string group; std::getline(in, group, '|');) {
        const std::size_t space = group.find(' ');
        const std::string code = group.substr(0, space);
        out += std::string(code.size() < std::size_t(width) ? width - code.size() : 0, ' ') + code + eol;
        out += (space == std::string::npos ? "" : group.substr(space + 1)) + eol;
    }
    return out;
}

// A whole drawing whose ENTITIES section holds the compact groups.
inline std::string DxfWithEntities(const std::string& compact, const char* eol = "\n", int width = 3) {
    return DxfGroups(
        "0 SECTION|2 HEADER|9 $ACADVER|1 AC1009|0 ENDSEC|0 SECTION|2 ENTITIES|" + compact + "|0 ENDSEC|0 EOF",
        eol, width);
}

// Compact groups of entities, (x, y) = (longitude, latitude).
using TXY = std::pair<double, double>;
inline std::string XY(TXY p, const char* x = "10", const char* y = "20") {
    return std::string("|") + x + " " + std::to_string(p.first) + "|" + y + " " + std::to_string(p.second);
}
inline std::string Lw(const std::string& layer, const std::vector<TXY>& points, int flags = 0) {
    std::string g =
        "0 LWPOLYLINE|8 " + layer + "|90 " + std::to_string(points.size()) + "|70 " + std::to_string(flags);
    for (const TXY& p : points) g += XY(p);
    return g;
}
inline std::string Poly(const std::string& layer, const std::vector<TXY>& points, int flags = 0) {
    std::string g = "0 POLYLINE|8 " + layer + "|66 1|70 " + std::to_string(flags);
    for (const TXY& p : points) g += "|0 VERTEX|8 " + layer + XY(p);
    return g + "|0 SEQEND|8 " + layer;
}
inline std::string Line(const std::string& layer, TXY from, TXY to) {
    return "0 LINE|8 " + layer + XY(from) + XY(to, "11", "21");
}

// Writes the text to a scratch file, loads it into the layer and returns the result code.
inline int LoadDxfText(const std::string& text, TMapLayer& layer) {
    TTempDir dir;
    WriteFileBytes(dir.File("drawing.dxf"), text);
    return TGisFileDxf().LoadFile(dir.File("drawing.dxf").c_str(), &layer, nullptr);
}

// One word per element, in layer order: lines as "<class>/<points>" ("road/4", a closed
// square "boundary/5"), markers as "m<symbol>:<name>@<lat>,<lon>".
inline std::string DescribeLayer(const TMapLayer& layer) {
    static const std::pair<std::uint32_t, const char*> kClasses[] = {
        {ELEMENT_LINE_BOUNDARY, "boundary"}, {ELEMENT_LINE_AREA, "area"}, {ELEMENT_LINE_ROAD, "road"},
        {ELEMENT_LINE_WATER, "water"},       {ELEMENT_LINE_MISC, "misc"}, {ELEMENT_LINE_GENERIC, "generic"}};
    std::ostringstream out;
    for (const TMapElement* e : layer.m_Elements) {
        if (out.tellp() > 0) out << ' ';
        if (const auto* m = dynamic_cast<const TFeatureMarker*>(e)) {
            out << 'm' << e->GetLowBits() << ':' << m->m_strName << '@' << m->m_Loc.dLat << ','
                << m->m_Loc.dLon;
            continue;
        }
        const char* name = "other";
        for (const auto& [kind, text] : kClasses)
            if (e->GetKind() == kind) name = text;
        out << name << '/' << static_cast<const TFeatureLine*>(e)->m_iNumPoints;
    }
    return out.str();
}

// The colour and vertex count of every POLYLINE of a drawing, in file order: "1:4 6:0".
inline std::string DescribePolylines(const std::string& text) {
    std::istringstream in(text);
    std::string out, code, value;
    int vertices = -1;  // -1 outside a polyline
    bool wantColor = false;
    while (std::getline(in, code) && std::getline(in, value)) {
        if (!value.empty() && value.back() == '\r') value.pop_back();
        const int c = std::stoi(code);
        if (c == 0 && value == "POLYLINE") {
            out += out.empty() ? "" : " ";
            vertices = 0;
            wantColor = true;
        } else if (c == 0 && value == "VERTEX") {
            ++vertices;
        } else if (c == 0 && value == "SEQEND" && vertices >= 0) {
            out += ":" + std::to_string(vertices);
            vertices = -1;
        } else if (c == 62 && wantColor) {
            out += value;
            wantColor = false;
        }
    }
    return out;
}
