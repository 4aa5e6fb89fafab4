// The complete profile's writing of drawings: a golden drawing, and layers of every kind that
// read back as they were written and open in GDAL and ezdxf with the same entities and vertices.

#include <gtest/gtest.h>

#include <cstdio>
#include <ctime>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include <tl_gis/features/feature_spray.h>
#include <tl_gis/gis/dxf/gis_file_dxf.h>
#include <tl_gis/gis/line_assembly.h>
#include "dxf_complete_support.h"
#include "dxf_layer_builders.h"
#include "gis/dxf/dxf_tables.h"
#include "platform/system_services.h"
#include "test_support.h"

namespace {

class DxfCompleteWriter : public TPinnedClockTest {};

using TBuild = std::function<void(TMapLayer&)>;

// A square ring of a field at (lat, lon), 0.002 degrees a side, with its closing vertex.
std::vector<tagLOC> Ring(double lat, double lon) {
    return {{lat, lon}, {lat, lon + 0.002}, {lat + 0.002, lon + 0.002}, {lat + 0.002, lon}, {lat, lon}};
}

// Every kind of line with every bound type (rings for 16 and 17, open lines for 18), lines whose
// vertices do not close them, and a line of one vertex.
void AllLines(TMapLayer& layer) {
    const std::uint32_t kinds[] = {ELEMENT_LINE_BOUNDARY, ELEMENT_LINE_AREA, ELEMENT_LINE_ROAD,
                                   ELEMENT_LINE_WATER,    ELEMENT_LINE_MISC, ELEMENT_LINE_GENERIC};
    double lat = 45.1;
    for (const std::uint32_t kind : kinds) {
        AddLine(layer, kind, BOUNDARY_INC, Ring(lat, -93.5), "");
        AddLine(layer, kind, BOUNDARY_EXC, Ring(lat + 0.0005, -93.4995), "");
        AddLine(layer, kind, BOUNDARY_OPEN, {{lat, -93.4}, {lat + 0.001, -93.399}, {lat + 0.0005, -93.3985}},
                "");
        lat += 0.01;
    }
    std::vector<tagLOC> open = Ring(45.2, -93.2);
    open.pop_back();
    AddLine(layer, ELEMENT_LINE_BOUNDARY, BOUNDARY_INC, open, "");  // a ring without its closing vertex
    AddLine(layer, ELEMENT_LINE_ROAD, BOUNDARY_OPEN, Ring(45.2, -93.1),
            "");  // an open line that ends where it began
    AddLine(layer, ELEMENT_LINE_AREA, BOUNDARY_INC, {{45.3, -93.1}, {45.3, -93.099}, {45.3, -93.1}}, "");
    AddLine(layer, ELEMENT_LINE_GENERIC, BOUNDARY_OPEN, {{45.123456789, -93.0}, {45.3, -93.000000001}}, "");
    AddLine(layer, ELEMENT_LINE_MISC, BOUNDARY_OPEN, {{45.4, -93.0}}, "");
}

// Markers with and without names, points, and a marker, a point and another marker at one
// position.
void MarkersAndPoints(TMapLayer& layer) {
    AddMarker(layer, "", "Gate", 3, {45.5, -93.5});
    AddMarker(layer, "", "", 56, {45.51, -93.5});
    AddMarker(layer, "", "Caf\xC3\xA9 50%", 0, {45.52, -93.5});
    AddPoint(layer, "", {45.53, -93.5});
    AddMarker(layer, "", "Well", 56, {45.54, -93.5});
    AddPoint(layer, "", {45.54, -93.5});
    AddMarker(layer, "", "", 2, {45.54, -93.5});
    AddMarker(layer, "", "Tank", 2, {45.54, -93.5});
}

void Field(TMapLayer& layer) {
    AddLine(layer, ELEMENT_LINE_BOUNDARY, BOUNDARY_INC, Ring(45.1, -93.5), "");
    AddLine(layer, ELEMENT_LINE_BOUNDARY, BOUNDARY_EXC, Ring(45.1005, -93.4995), "");
    AddLine(layer, ELEMENT_LINE_ROAD, BOUNDARY_OPEN, {{45.1, -93.49}, {45.102, -93.49}}, "");
    AddMarker(layer, "", "Gate \xC3\xA9", 3, {45.101, -93.499});
    AddPoint(layer, "", {45.1015, -93.4985});
    AddSprayRun(layer, 3, true);
}

// Writes the layer in the complete profile; returns the drawing's path in dir.
std::string WriteComplete(const TBuild& build, const TTempDir& dir, TMapLayer& layer) {
    TCompleteProfile profile;
    build(layer);
    const std::string path = dir.File("out.dxf");
    TGisFileDxf writer;
    writer.SetSprayOnlyMode(0);
    EXPECT_EQ(writer.WriteFile(path.c_str(), &layer), 0);
    return path;
}

std::string ReadComplete(const std::string& path) {
    TCompleteProfile profile;
    TMapLayer back;
    EXPECT_EQ(TGisFileDxf().LoadFile(path.c_str(), &back, nullptr), 0);
    return DescribeLayer(back, true);
}

std::string Fixed(double value) {
    char buf[64];
    std::snprintf(buf, sizeof buf, "%.6f", value);
    return buf;
}

// What a peer must list for the layer, one entity a line: "POLYLINE|layer|closed|x,y x,y" for a
// line (a ring without its closing vertex), "POINT|layer|x,y" and "TEXT|layer|x,y|text" for a
// marker's name; GDAL's features list the ring's closing vertex, read a line of one vertex as a
// point and a TEXT as a point with its text.
std::string PeerListing(const TMapLayer& layer, bool gdal) {
    std::string out;
    for (const TMapElement* e : layer.m_Elements) {
        if (const auto* line = dynamic_cast<const TFeatureLine*>(e)) {
            const int n = line->m_iNumPoints;
            const tagLOC* p = line->m_pPoints;
            const bool closed = e->GetLowBits() != BOUNDARY_OPEN && n >= 3 && p[0].dLat == p[n - 1].dLat &&
                                p[0].dLon == p[n - 1].dLon;
            out += (gdal ? n == 1 ? "POINT|" : "LINESTRING|" : "POLYLINE|") +
                   DxfLineLayerName(e->GetKind(), e->GetLowBits()) + "|" +
                   (gdal     ? ""
                    : closed ? "1|"
                             : "0|");
            for (int k = 0; k < (closed && !gdal ? n - 1 : n); ++k)
                out += (k ? " " : "") + Fixed(p[k].dLon) + "," + Fixed(p[k].dLat);
            out += "\n";
        } else if (const auto* m = dynamic_cast<const TFeatureMarker*>(e)) {
            const std::string layerName = DxfMarkerLayerName(e->GetLowBits());
            const std::string at = Fixed(m->m_Loc.dLon) + "," + Fixed(m->m_Loc.dLat);
            out += "POINT|" + layerName + "|" + at + "\n";
            if (!m->m_strName.empty())
                out += (gdal ? "POINT|" : "TEXT|") + layerName + "|" + at + "|" + m->m_strName + "\n";
        } else if (const auto* p = dynamic_cast<const TFeaturePoint*>(e)) {
            out += std::string("POINT|") + DXF_LAYER_POINTS + "|" + Fixed(p->m_Loc.dLon) + "," +
                   Fixed(p->m_Loc.dLat) + "\n";
        }
    }
    return out;
}

// GDAL's features as PeerListing writes them: "ogr2ogr -f CSV" gives the geometry as WKT, the
// layer and the text of each feature.
const char* const kGdalListing = R"PY(
import csv, re, subprocess, sys
rows = subprocess.run(["ogr2ogr", "-f", "CSV", "/vsistdout/", sys.argv[1], "-lco", "GEOMETRY=AS_WKT",
                       "-select", "Layer,Text"], capture_output=True, text=True, check=True).stdout
for row in csv.DictReader(rows.splitlines()):
    kind, numbers = row["WKT"].split(" ", 1)
    values = [float(v) for v in re.findall(r"-?[0-9.e+-]+", numbers)]
    xy = " ".join("%.6f,%.6f" % (values[i], values[i + 1]) for i in range(0, len(values), 2))
    print("|".join([kind, row["Layer"], xy] + ([row["Text"]] if row["Text"] else [])))
)PY";

// ezdxf's entities as PeerListing writes them, after an audit that must find no error.
const char* const kEzdxfListing = R"PY(
import sys, ezdxf
doc = ezdxf.readfile(sys.argv[1])
errors = doc.audit().errors
if errors: sys.exit("audit: " + "; ".join(e.message for e in errors))
def xy(p): return "%.6f,%.6f" % (p[0], p[1])
for e in doc.modelspace():
    kind, layer = e.dxftype(), e.dxf.layer
    if kind == "POLYLINE":
        print("|".join([kind, layer, "1" if e.is_closed else "0", " ".join(xy(v.dxf.location) for v in e.vertices)]))
    elif kind == "POINT":
        print("|".join([kind, layer, xy(e.dxf.location)]))
    else:
        print("|".join([kind, layer, xy(e.dxf.insert), e.plain_text()]))
)PY";

TEST_F(DxfCompleteWriter, GoldenDrawing) {
    TTempDir dir;
    TMapLayer layer;
    const std::string path = WriteComplete(Field, dir, layer);
    EXPECT_EQ(ReadFileBytes(path),
              ReadFileBytes(std::string(TL_GIS_SOURCE_DIR) + "/tests/data/dxf/complete_field.dxf"));
}

TEST_F(DxfCompleteWriter, ReadBackAndOpenInPeers) {
    SKIP_WITHOUT_LINUX_PEERS();
    const bool ezdxf = RunCommand(std::string(TL_GIS_PYTHON) + " -c 'import ezdxf'").iExit == 0;
    const bool gdal = HaveProgram("ogr2ogr");
    const struct {
        const char* name;
        TBuild build;
        const char* readBack = nullptr;  // what reading gives, when it is not the layer written
        bool peerTexts = true;           // whether the peers show the names as they are
    } cases[] = {
        {"every kind of line and bound type", AllLines},
        {"markers and points", MarkersAndPoints},
        // GDAL 3.6 and ezdxf 0.18 show a TEXT's \U+XXXX and %%% as they stand; this reader (and
        // the drawing programs) decode them.
        {"names beyond Windows Latin 1, and percent signs that look like codes",
         [](TMapLayer& l) {
             AddMarker(l, "", "snow \xE2\x98\x83 100%% %%d", 56, {45.5, -93.5});
         },
         nullptr, false},
        {"a line without vertices has nothing to draw",
         [](TMapLayer& l) { AddLine(l, ELEMENT_LINE_ROAD, BOUNDARY_OPEN, {}, ""); }, ""},
        {"a name's control characters come back as blanks",
         [](TMapLayer& l) {
             AddMarker(l, "", "two\nlines\tand a tab", 56, {45.5, -93.5});
         },
         "m56:two lines and a tab@45.500000,-93.500000"},
        {"recorded spray: swaths and tracks",
         [](TMapLayer& l) { AddSprayRun(l, 3, true), AddSprayRun(l, 2, false); },
         "area16/7(45.000000,-93.001000)(45.001000,-93.001000)(45.002000,-93.001000)(45.002000,-92.999000)"
         "(45.001000,-92.999000)(45.000000,-92.999000)(45.000000,-93.001000) "
         "generic18/2(45.000000,-93.000000)(45.001000,-93.000000) "
         "generic18/5(45.000000,-93.000000)(45.001000,-93.000000)(45.002000,-93.000000)(45.000000,-93.000000)"
         "(45.001000,-93.000000)"},
    };
    for (const auto& c : cases) {
        TTempDir dir;
        TMapLayer layer;
        const std::string path = WriteComplete(c.build, dir, layer);
        EXPECT_EQ(ReadComplete(path), c.readBack != nullptr ? c.readBack : DescribeLayer(layer, true))
            << c.name;
        if (c.readBack != nullptr) continue;  // the peers' listings follow the layer's elements

        // GDAL reports what it cannot read on stderr and still exits with 0.
        const TCommandResult info =
            gdal ? RunCommand("ogrinfo -al -q " + ShellQuote(path)) : TCommandResult{};
        EXPECT_EQ(info.strErr, "") << c.name;
        EXPECT_EQ(info.strOut.find("ERROR"), std::string::npos) << c.name << info.strOut;
        EXPECT_EQ(info.strOut.find("Warning"), std::string::npos) << c.name << info.strOut;
        for (const bool byGdal : {true, false}) {
            if (!(byGdal ? gdal : ezdxf)) continue;
            WriteFileBytes(dir.File("list.py"), byGdal ? kGdalListing : kEzdxfListing);
            const TCommandResult listed = RunCommand(
                std::string(TL_GIS_PYTHON) + " " + ShellQuote(dir.File("list.py")) + " " + ShellQuote(path));
            EXPECT_EQ(listed.iExit, 0) << c.name << listed.strErr;
            EXPECT_EQ(listed.strOut, c.peerTexts ? PeerListing(layer, byGdal) : listed.strOut)
                << c.name << byGdal;
        }
    }
    if (!ezdxf || !gdal) GTEST_SKIP() << "not checked by " << (ezdxf ? "" : "ezdxf ") << (gdal ? "" : "GDAL");
}

}  // namespace
