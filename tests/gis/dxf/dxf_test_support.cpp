#include "dxf_test_support.h"

#include <cstdio>
#include <cstdlib>

#include "gis/dxf/dxf_line_reader.h"
#include "gis/dxf/gis_file_dxf.h"
#include "platform/text_file.h"
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
    static const std::pair<std::uint32_t, const char*> kClasses[] = {
        {ELEMENT_LINE_BOUNDARY, "boundary"}, {ELEMENT_LINE_AREA, "area"}, {ELEMENT_LINE_ROAD, "road"},
        {ELEMENT_LINE_WATER, "water"},       {ELEMENT_LINE_MISC, "misc"}, {ELEMENT_LINE_GENERIC, "generic"}};
    std::string out;
    for (const TMapElement* e : layer.m_Elements) {
        if (!out.empty()) out += ' ';
        if (e->GetKind() == ELEMENT_MARKER) {
            const auto* m = static_cast<const TFeatureMarker*>(e);
            out += "m" + std::to_string(e->GetLowBits()) + ":" + m->m_strName + "@" + Number(m->m_Loc.dLat) +
                   "," + Number(m->m_Loc.dLon);
            continue;
        }
        const char* name = "other";
        for (const auto& [kind, text] : kClasses)
            if (e->GetKind() == kind) name = text;
        out += name + ("/" + std::to_string(static_cast<const TFeatureLine*>(e)->m_iNumPoints));
    }
    return out;
}

std::vector<std::pair<int, std::string>> ReadGroups(const std::string& text) {
    TTextFile file;
    file.OpenMemory(text);
    TDxfLineReader reader(file);
    std::vector<std::pair<int, std::string>> groups;
    std::string_view code, value;
    while (reader.Next(code)) {
        const int c = std::atoi(std::string(code).c_str());
        if (!reader.Next(value)) break;
        groups.emplace_back(c, std::string(value));
    }
    return groups;
}

std::string DescribePolylines(const std::string& text) {
    std::string out;
    int vertices = -1;
    bool inPolyline = false, wantColor = false;
    for (const auto& [code, value] : ReadGroups(text)) {
        if (code == 0 && value == "POLYLINE") {
            if (!out.empty()) out += ' ';
            inPolyline = wantColor = true;
            vertices = 0;
        } else if (code == 0 && value == "VERTEX") {
            ++vertices;
        } else if (code == 0 && value == "SEQEND" && inPolyline) {
            out += ":" + std::to_string(vertices);
            inPolyline = false;
        } else if (code == 62 && wantColor) {
            out += value;
            wantColor = false;
        }
    }
    return out;
}

std::string TDxfPeers::Missing() const {
    if (bEzdxf && bGdal) return std::string();
    return std::string("not checked by ") + (bEzdxf ? "" : "ezdxf ") + (bGdal ? "" : "GDAL's ogrinfo");
}

TDxfPeers FindDxfPeers() {
    TDxfPeers peers;
    peers.bEzdxf = HaveProgram(TL_GIS_PYTHON) &&
                   RunCommand(std::string(TL_GIS_PYTHON) + " -c 'import ezdxf'").iExit == 0;
    peers.bGdal = HaveProgram("ogrinfo");
    return peers;
}

std::string DxfPeerComplaints(const std::string& path, const TDxfPeers& peers) {
    static const char* const kAudit =
        "import sys, ezdxf\n"
        "doc = ezdxf.readfile(sys.argv[1])\n"
        "auditor = doc.audit()\n"
        "for e in auditor.errors: print(e.code, e.message)\n"
        "sys.exit(1 if auditor.has_errors else 0)\n";
    std::string complaints;
    if (peers.bEzdxf) {
        const TCommandResult audit =
            RunCommand(std::string(TL_GIS_PYTHON) + " -c " + ShellQuote(kAudit) + " " + ShellQuote(path));
        if (audit.iExit != 0) complaints += "ezdxf audit: " + audit.strOut + audit.strErr;
    }
    if (peers.bGdal) {
        const TCommandResult info = RunCommand("ogrinfo -al " + ShellQuote(path));
        // ogrinfo reports broken entities on stderr and still exits with 0.
        if (info.iExit != 0 || info.strErr.find("ERROR") != std::string::npos ||
            info.strOut.find("Feature Count") == std::string::npos)
            complaints += "ogrinfo -al: " + info.strOut.substr(0, 2000) + info.strErr;
    }
    return complaints;
}
