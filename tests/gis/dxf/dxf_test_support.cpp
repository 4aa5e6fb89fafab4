#include "dxf_test_support.h"

#include <cstdio>

#include "gis/dxf/gis_file_dxf.h"
#include "test_support.h"

std::string DxfGroups(std::string_view compact, std::string_view eol, int codeWidth) {
    std::string out;
    std::size_t start = 0;
    while (start <= compact.size()) {
        std::size_t end = compact.find('|', start);
        if (end == std::string_view::npos) end = compact.size();
        const std::string_view group = compact.substr(start, end - start);
        if (!group.empty()) {
            const std::size_t space = group.find(' ');
            const std::string code(group.substr(0, space));
            char padded[16];
            std::snprintf(padded, sizeof padded, "%*s", codeWidth, code.c_str());
            out += padded;
            out += eol;
            if (space != std::string_view::npos) out += group.substr(space + 1);
            out += eol;
        }
        start = end + 1;
    }
    return out;
}

std::string DxfWithEntities(std::string_view compact, std::string_view eol, int codeWidth) {
    return DxfGroups("0 SECTION|2 HEADER|9 $ACADVER|1 AC1009|0 ENDSEC|0 SECTION|2 ENTITIES|" +
                         std::string(compact) + "|0 ENDSEC|0 EOF",
                     eol, codeWidth);
}

namespace {
std::string Number(double v) {
    char buf[32];
    std::snprintf(buf, sizeof buf, "%.9g", v);
    return buf;
}
}  // namespace

std::string LwPolylineGroups(const std::string& layer, const std::vector<TXY>& points, int flags) {
    std::string g =
        "0 LWPOLYLINE|8 " + layer + "|90 " + std::to_string(points.size()) + "|70 " + std::to_string(flags);
    for (const TXY& p : points) g += "|10 " + Number(p.first) + "|20 " + Number(p.second);
    return g;
}

std::string PolylineGroups(const std::string& layer, const std::vector<TXY>& points, int flags) {
    std::string g = "0 POLYLINE|8 " + layer + "|66 1|70 " + std::to_string(flags);
    for (const TXY& p : points)
        g += "|0 VERTEX|8 " + layer + "|10 " + Number(p.first) + "|20 " + Number(p.second);
    return g + "|0 SEQEND|8 " + layer;
}

std::string LineGroups(const std::string& layer, TXY from, TXY to) {
    return "0 LINE|8 " + layer + "|10 " + Number(from.first) + "|20 " + Number(from.second) + "|11 " +
           Number(to.first) + "|21 " + Number(to.second);
}

int LoadDxfText(const std::string& text, TMapLayer& layer) {
    TTempDir dir;
    const std::string path = dir.File("drawing.dxf");
    WriteFileBytes(path, text);
    TGisFileDxf reader;
    return reader.LoadFile(path.c_str(), &layer, nullptr);
}

std::string DescribeLayer(const TMapLayer& layer) {
    std::string out;
    for (const TMapElement* e : layer.m_Elements) {
        if (!out.empty()) out += ' ';
        switch (e->GetKind()) {
            case ELEMENT_LINE_BOUNDARY:
                out += "boundary";
                break;
            case ELEMENT_LINE_AREA:
                out += "area";
                break;
            case ELEMENT_LINE_ROAD:
                out += "road";
                break;
            case ELEMENT_LINE_WATER:
                out += "water";
                break;
            case ELEMENT_LINE_MISC:
                out += "misc";
                break;
            case ELEMENT_LINE_GENERIC:
                out += "generic";
                break;
            case ELEMENT_MARKER: {
                const auto* m = static_cast<const TFeatureMarker*>(e);
                out += "m" + std::to_string(e->GetLowBits()) + ":" + m->m_strName + "@" +
                       Number(m->m_Loc.dLat) + "," + Number(m->m_Loc.dLon);
                continue;
            }
            default:
                out += "other";
                break;
        }
        out += "/" + std::to_string(static_cast<const TFeatureLine*>(e)->m_iNumPoints);
    }
    return out;
}
