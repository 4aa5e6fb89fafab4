#pragma once
// The text of .mif files as both profiles write it: the header and the objects' lines.
// Coordinates are longitude then latitude with six decimals.

#include <string>
#include <string_view>

#include <tl_gis/hostmap/loc.h>

// Everything from "Version 300" to the empty line after DATA: the charset, the delimiter, the
// coordinate system, and columnCount columns, the system's eight followed by the definition
// lines of the others (extraColumns).
void AppendMifHeader(std::string& out, std::string_view charset, char delimiter, std::string_view coordSys,
                     int columnCount, std::string_view extraColumns = {});
// "  <longitude> <latitude>" and a line end: a vertex of a region or polyline.
void AppendMifVertex(std::string& out, const tagLOC& loc);
// A POINT object with its SYMBOL line.
void AppendMifPointObject(std::string& out, const tagLOC& loc, unsigned long color, int size);
// The PEN, BRUSH and CENTER lines that end a region.
void AppendMifRegionStyle(std::string& out, unsigned long color, const tagLOC& centre);
// The PEN line of a polyline.
void AppendMifLineStyle(std::string& out, unsigned long color);
