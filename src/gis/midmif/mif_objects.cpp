#include "gis/midmif/mif_objects.h"

#include <tl_gis/platform/numbers.h>
#include "gis/midmif/mif_style.h"

namespace {
constexpr std::string_view kSystemColumns =
    "Date Char(10)\n"
    "Time Char(11)\n"
    "Speed Decimal(5, 1)\n"
    "Heading Integer\n"
    "Altitude Integer\n"
    "SprayStatus Char(3)\n"
    "FlowRate Decimal(10, 4)\n"
    "ABC_Points Char(1)\n";

void AppendLonLat(std::string& out, const tagLOC& loc) {
    AppendFixed(out, loc.dLon, 6);
    out += ' ';
    AppendFixed(out, loc.dLat, 6);
}
}  // namespace

void AppendMifHeader(std::string& out, std::string_view charset, char delimiter, std::string_view coordSys,
                     int columnCount, std::string_view extraColumns) {
    out += "Version 300\nCharset \"";
    out += charset;
    out += "\"\nDELIMITER \"";
    out += delimiter;
    out += "\"\nCoordsys ";
    out += coordSys;
    out += "\nCOLUMNS ";
    AppendInt(out, columnCount);
    out += '\n';
    out += kSystemColumns;
    out += extraColumns;
    out += "DATA\n\n";
}

void AppendMifVertex(std::string& out, const tagLOC& loc) {
    out += "  ";
    AppendLonLat(out, loc);
    out += '\n';
}

void AppendMifPointObject(std::string& out, const tagLOC& loc, unsigned long color, int size) {
    out += "POINT ";
    AppendLonLat(out, loc);
    out += "\n   SYMBOL (";
    AppendInt(out, kMifMarkerShape);
    out += ", ";
    AppendInt(out, static_cast<long long>(color));
    out += ", ";
    AppendInt(out, size);
    out += ")\n";
}

void AppendMifRegionStyle(std::string& out, unsigned long color, const tagLOC& centre) {
    out += "    PEN (1,12,";
    AppendInt(out, static_cast<long long>(color));
    out += ")\n    BRUSH (52,";
    AppendInt(out, static_cast<long long>(color));
    out += ")\n    CENTER ";
    AppendLonLat(out, centre);
    out += '\n';
}

void AppendMifLineStyle(std::string& out, unsigned long color) {
    out += "    PEN (1,12,";
    AppendInt(out, static_cast<long long>(color));
    out += ")\n";
}
