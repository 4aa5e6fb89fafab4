// The complete profile's reading of drawings: curves within their tolerance, texts and their
// codes, every entity rule in one table with what the load report says, and drawings of ezdxf
// with bulges, CIRCLE, ARC, POINT, TEXT and MTEXT.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <tl_gis/gis/dxf/gis_file_dxf.h>
#include <tl_gis/gis/load_report.h>
#include <tl_gis/hostmap/geodesy.h>
#include "dxf_complete_support.h"
#include "dxf_drawing_text.h"
#include "gis/dxf/dxf_curves.h"
#include "gis/dxf/dxf_text.h"
#include "load_report_check.h"
#include "test_support.h"

namespace {

struct TVertex {
    double x, y, bulge = 0.0;
    int flags = 0;
};

std::string Num(double v) {
    std::ostringstream out;
    out.precision(17);
    out << v;
    return out.str();
}

std::string VertexGroups(const TVertex& v) {
    return "|10 " + Num(v.x) + "|20 " + Num(v.y) + (v.bulge != 0.0 ? "|42 " + Num(v.bulge) : "");
}
std::string LwB(const std::string& layer, const std::vector<TVertex>& vertices, int flags = 0) {
    std::string g =
        "0 LWPOLYLINE|8 " + layer + "|90 " + std::to_string(vertices.size()) + "|70 " + std::to_string(flags);
    for (const TVertex& v : vertices) g += VertexGroups(v);
    return g;
}
std::string PolyB(const std::string& layer, const std::vector<TVertex>& vertices, int flags = 0) {
    std::string g = "0 POLYLINE|8 " + layer + "|66 1|70 " + std::to_string(flags);
    for (const TVertex& v : vertices)
        g +=
            "|0 VERTEX|8 " + layer + (v.flags != 0 ? "|70 " + std::to_string(v.flags) : "") + VertexGroups(v);
    return g + "|0 SEQEND|8 " + layer;
}
std::string Circle(const std::string& layer, double x, double y, const std::string& radius) {
    return "0 CIRCLE|8 " + layer + "|10 " + Num(x) + "|20 " + Num(y) + "|40 " + radius;
}
std::string Arc(const std::string& layer, double x, double y, double radius, double from, double to) {
    return "0 ARC|8 " + layer + "|10 " + Num(x) + "|20 " + Num(y) + "|40 " + Num(radius) + "|50 " +
           Num(from) + "|51 " + Num(to);
}
std::string Point(const std::string& layer, double x, double y) {
    return "0 POINT|8 " + layer + "|10 " + Num(x) + "|20 " + Num(y);
}
std::string Text(const std::string& layer, double x, double y, const std::string& text) {
    return "0 TEXT|8 " + layer + "|10 " + Num(x) + "|20 " + Num(y) + "|40 0.0001|1 " + text;
}

// Loads a drawing's text in the complete profile (or the system's) and describes the layer.
std::string Load(const std::string& text, TLoadReport* report = nullptr, bool complete = true,
                 int* result = nullptr, TMapLayer* into = nullptr) {
    TCompleteProfile profile(complete);
    TTempDir dir;
    WriteFileBytes(dir.File("drawing.dxf"), text);
    TMapLayer own;
    TMapLayer& layer = into != nullptr ? *into : own;
    TGisFileDxf reader;
    reader.SetLoadReport(report);
    const int r = reader.LoadFile(dir.File("drawing.dxf").c_str(), &layer, nullptr);
    if (result != nullptr) *result = r;
    return DescribeLayer(layer);
}

using TCauseCounts = std::vector<std::pair<TLoadCause, long long>>;
std::string DescribeCauses(const TCauseCounts& causes) {
    std::string out;
    for (const auto& [cause, count] : causes)
        out += (out.empty() ? "" : "; ") + std::to_string(count) + " " + TLoadReport::CauseText(cause, count);
    return out;
}
std::string DescribeCauses(const TLoadReport& report) {
    TCauseCounts causes;
    for (const TLoadReport::TSkipped& s : report.GetSkipped()) causes.emplace_back(s.eCause, s.lCount);
    return DescribeCauses(causes);
}

// Metres per degree of latitude (y) and longitude (x) about a place, for distances across a field.
struct TLocalScale {
    explicit TLocalScale(const tagLOC& at)
        : ky(GeoDistance(at.dLat - 0.0005, at.dLon, at.dLat + 0.0005, at.dLon) / 0.001),
          kx(GeoDistance(at.dLat, at.dLon - 0.0005, at.dLat, at.dLon + 0.0005) / 0.001) {}
    double ky, kx;
};

// Distance in metres from a position to the segment a-b.
double MetresToSegment(const TLocalScale& k, const tagLOC& p, const tagLOC& a, const tagLOC& b) {
    const double ax = (a.dLon - p.dLon) * k.kx, ay = (a.dLat - p.dLat) * k.ky;
    const double bx = (b.dLon - p.dLon) * k.kx, by = (b.dLat - p.dLat) * k.ky;
    const double dx = bx - ax, dy = by - ay, length2 = dx * dx + dy * dy;
    const double t = length2 > 0.0 ? std::clamp(-(ax * dx + ay * dy) / length2, 0.0, 1.0) : 0.0;
    return std::hypot(ax + t * dx, ay + t * dy);
}

// Every vertex of a bulge's arc lies on the true arc, at most 2 degrees of arc from the next, and
// no chord strays more than 0.1 m from the arc, at any latitude and size of field: chords up to
// 0.1 degree (11 km) and radii up to 10 km.
TEST(DxfComplete, BulgeArcsStayWithinTolerance) {
    for (const double lat : {1.5, 45.0, 80.0}) {
        for (const double chord : {0.0001, 0.01, 0.05, 0.1}) {
            for (const double bulge : {0.01, 0.5, 1.0, 3.0, -1.0}) {
                const std::string name =
                    "lat " + Num(lat) + ", chord " + Num(chord) + " degrees, bulge " + Num(bulge);
                TMapLayer layer;
                Load(Drawing(LwB("F30", {{10.0, lat, bulge}, {10.0 + chord, lat}})), nullptr, true, nullptr,
                     &layer);
                ASSERT_EQ(layer.GetElementCount(), 1) << name;
                const auto* line = static_cast<const TFeatureLine*>(layer.m_Elements[0]);
                const int n = line->m_iNumPoints;
                // The true arc: the circle through both ends and the point the bulge's sagitta
                // (chord times bulge over 2) off the chord's middle, to its right for a positive bulge.
                const double half = chord / 2.0, sagitta = -bulge * chord / 2.0;
                const double cx = 10.0 + half, cy = lat + (sagitta * sagitta - half * half) / (2.0 * sagitta);
                const double x0 = 10.0, y0 = lat;
                const double r = std::hypot(x0 - cx, y0 - cy);
                const double sweep = 4.0 * std::atan(std::fabs(bulge));
                EXPECT_GE(n, static_cast<int>(std::ceil(sweep / (2.0 * std::numbers::pi / 180.0))) + 1)
                    << name;
                EXPECT_EQ(line->m_pPoints[0].dLon, 10.0) << name;
                EXPECT_EQ(line->m_pPoints[n - 1].dLon, 10.0 + chord) << name;
                double worst = 0.0, widest = 0.0;
                for (int k = 0; k < n; ++k) {
                    const tagLOC& v = line->m_pPoints[k];
                    EXPECT_NEAR(std::hypot(v.dLon - cx, v.dLat - cy), r, 1e-9 * (1.0 + r))
                        << name << " vertex " << k;
                    if (k == 0) continue;
                    const tagLOC& u = line->m_pPoints[k - 1];
                    const double a0 = std::atan2(u.dLat - cy, u.dLon - cx),
                                 a1 = std::atan2(v.dLat - cy, v.dLon - cx);
                    double step = std::fabs(a1 - a0);
                    if (step > std::numbers::pi) step = 2.0 * std::numbers::pi - step;
                    widest = std::max(widest, step);
                    // The arc's farthest point from a chord is its middle.
                    const double mid = a0 + std::remainder(a1 - a0, 2.0 * std::numbers::pi) / 2.0;
                    const tagLOC onArc{cy + r * std::sin(mid), cx + r * std::cos(mid)};
                    worst = std::max(worst, MetresToSegment(TLocalScale(onArc), onArc, u, v));
                }
                EXPECT_LE(widest, 2.0 * std::numbers::pi / 180.0 + 1e-9) << name;
                EXPECT_LE(worst, DXF_CURVE_TOLERANCE_M) << name;
            }
        }
    }
}

TEST(DxfComplete, TextsAndNames) {
    // Texts as names: codes, escapes and MTEXT formatting.
    const struct {
        const char* value;
        TTextEncoding encoding;
        bool mtext;
        const char* name;
    } toName[] = {
        {"Gate", ENCODING_WINDOWS_1252, false, "Gate"},
        {"Caf\xE9", ENCODING_WINDOWS_1252, false, "Caf\xC3\xA9"},
        {"Caf\xC3\xA9", ENCODING_UTF8, false, "Caf\xC3\xA9"},
        {"45%%d 3%%p1 %%c5 100%%% %%uunder%%u %%065", ENCODING_WINDOWS_1252, false,
         "45\xC2\xB0 3\xC2\xB1"
         "1 \xE2\x8C\x80"
         "5 100% under A"},
        {"snow \\U+2603 \\u+00e9 \\U+12", ENCODING_WINDOWS_1252, false, "snow \xE2\x98\x83 \xC3\xA9 \\U+12"},
        {"one\\Ptwo {\\fArial|b1;bold} \\H2.5;big \\S1^2; \\\\ \\{x\\} a\\~b", ENCODING_WINDOWS_1252, true,
         "one two bold big 1/2 \\ {x} a b"},
        {"one\\Ptwo {x}", ENCODING_WINDOWS_1252, false, "one\\Ptwo {x}"},
        {"cut \\fArial", ENCODING_WINDOWS_1252, true, "cut "},
    };
    for (const auto& c : toName) EXPECT_EQ(DxfTextToName(c.value, c.encoding, c.mtext), c.name) << c.value;

    // Names written as texts, cut to a length where no escape is cut short.
    EXPECT_EQ(DxfNameToText("Caf\xC3\xA9 \xE2\x98\x83\n100%%d", 255), "Caf\xE9 \\U+2603 100%%%%d");
    EXPECT_EQ(DxfNameToText(std::string(250, 'a') + "\xE2\x98\x83", 255), std::string(250, 'a'));
}

TEST(DxfComplete, EntityRules) {
    const double x = 10.5, y = 45.2, d = 0.002;  // a field-sized square of 2 thousandths of a degree
    const std::vector<TVertex> square = {{x, y}, {x + d, y}, {x + d, y + d}, {x, y + d}};
    std::vector<TVertex> repeated = square;
    repeated.push_back(square[0]);
    std::vector<TVertex> lastBulged = square;
    lastBulged.back().bulge = 1.0;
    const std::string header1252 =
        "0 SECTION|2 HEADER|9 $ACADVER|1 AC1015|9 $DWGCODEPAGE|3 ANSI_1252|0 ENDSEC|";
    const std::string header2007 = "0 SECTION|2 HEADER|9 $ACADVER|1 AC1021|0 ENDSEC|";
    const auto withHeader = [](const std::string& header, const std::string& entities) {
        return DxfGroups(header + "0 SECTION|2 ENTITIES|" + entities + "|0 ENDSEC|0 EOF");
    };
    std::string circles;
    for (int i = 0; i < 2000; ++i) circles += (i ? "|" : "") + Circle("0", 10.5, 45.0, "10");
    const struct {
        const char* name;
        std::string text;
        const char* expected;
        TCauseCounts causes = {};
        const char* answers = "";
    } cases[] = {
        {"closed lightweight polyline ends on its first vertex", Drawing(LwB("F30", square, 1)),
         "boundary16/5"},
        {"which it may repeat", Drawing(LwB("F30", repeated, 1)), "boundary16/5"},
        {"open lightweight polyline", Drawing(LwB("F30", square)), "boundary18/4"},
        {"POLYLINE closed by its header", Drawing(PolyB("F30", square, 1)), "boundary16/5"},
        {"not by a vertex flag",
         Drawing(PolyB("F30", {{x, y}, {x + d, y, 0.0, 1}, {x + d, y + d}, {x, y + d}})), "boundary18/4"},
        {"bulge: half a circle in 2 degree steps", Drawing(LwB("F30", {{x, y, 1.0}, {x + d, y}})),
         "boundary18/91"},
        {"bulge of a POLYLINE vertex", Drawing(PolyB("F30", {{x, y, -1.0}, {x + d, y}, {x + d, y + d}})),
         "boundary18/92"},
        {"a quarter circle", Drawing(LwB("F30", {{x, y, std::tan(std::numbers::pi / 8)}, {x + d, y}})),
         "boundary18/46"},
        {"the last vertex's bulge closes a closed polyline", Drawing(LwB("F30", lastBulged, 1)),
         "boundary16/94"},
        {"and is dropped on an open one", Drawing(LwB("F30", lastBulged)), "boundary18/4"},
        {"a refused vertex takes its arc with it",
         Drawing(LwB("F30", {{x, y, 1.0}, {0.5, 0.5, 1.0}, {x + d, y}, {x + d, y + d}})),
         "boundary18/3",
         {{LOAD_VERTEX_NEAR_ORIGIN, 1}}},
        {"CIRCLE: a closed ring", Drawing(Circle("H12", x, y, "0.001")), "water16/181"},
        {"ARC: its sweep, counter-clockwise",
         Drawing(Arc("A41", x, y, 0.001, 0, 90) + "|" + Arc("A41", x, y, 0.001, 350, 10) + "|" +
                 Arc("A41", x, y, 0.001, 90, 90)),
         "road18/46 road18/11 road18/181"},
        {"CIRCLE and ARC without a usable radius",
         Drawing(Circle("0", x, y, "0") + "|" + Circle("0", x, y, "-1") + "|" + Circle("0", x, y, "nan") +
                 "|" + Circle("0", x, y, "inf") + "|0 ARC|8 0|10 10.5|20 45.2|40 0.001|50 inf"),
         "",
         {{LOAD_DXF_BAD_CURVE, 5}}},
        {"bulges that are no usable number draw straight segments",
         Drawing(LwB("F30",
                     {{x, y, std::nan("")}, {x + d, y, HUGE_VAL}, {x + d, y + d, 1e308}, {x, y + d, -0.0}})),
         "boundary18/4"},
        {"curves the size of the world lie out of range, their vertices far from degrees",
         Drawing(Circle("0", x, y, "1e300") + "|" + Arc("0", x, y, 1e300, 1e300, -1e300)),
         "",
         {{LOAD_VERTEX_PROJECTED, 2 * DXF_CURVE_MAX_SEGMENTS + 1}}},
        {"a ring past the pole keeps what lies in range",
         Drawing(Circle("0", x, 89.99955, "0.001")),
         "boundary16/118",
         {{LOAD_VERTEX_OUT_OF_RANGE, 63}}},
        {"POINT", Drawing(Point("0", x, y)), "p@45.2,10.5"},
        {"a TEXT at the POINT's position names it", Drawing(Point("0", x, y) + "|" + Text("0", x, y, "Gate")),
         "m56:Gate@45.2,10.5"},
        {"a TEXT elsewhere is a marker of its own",
         Drawing(Point("0", x, y) + "|" + Text("0", x + d, y, "Gate")), "p@45.2,10.5 m56:Gate@45.2,10.502"},
        {"so is one before the POINT", Drawing(Text("0", x, y, "Gate") + "|" + Point("0", x, y)),
         "m56:Gate@45.2,10.5 p@45.2,10.5"},
        {"marker layers: POINTs are markers of their symbol",
         Drawing(Point("NAME", x, y) + "|" + Point("PEAK", x, y) + "|" + Point("MARKER_3", x, y) + "|" +
                 Point("MARKER_", x, y) + "|" + Point("MARKER_3", x, y) + "|" + Text("0", x, y, "Gate") +
                 "|" + Text("MARKER_7", x, y, "Well")),
         "m56:@45.2,10.5 m55:@45.2,10.5 m3:@45.2,10.5 m56:@45.2,10.5 m3:Gate@45.2,10.5 m7:Well@45.2,10.5"},
        {"TEXT aligned at its second point, MTEXT in parts",
         Drawing("0 TEXT|8 0|10 10.5|20 45.2|11 10.6|21 45.3|72 1|1 Centred|0 TEXT|8 0|10 10.5|20 45.2|11 "
                 "10.6|21 45.3|72 5|1 Fitted|0 MTEXT|8 0|10 10.5|20 45.2|3 {\\fArial;Long }|3 text, |1 "
                 "two\\Plines"),
         "m56:Centred@45.3,10.6 m56:Fitted@45.2,10.5 m56:Long text, two lines@45.2,10.5"},
        {"texts in the code page", withHeader(header1252, Text("0", x, y, "Caf\xE9 \\U+2603")),
         "m56:Caf\xC3\xA9 \xE2\x98\x83@45.2,10.5"},
        {"and in UTF-8 from release 2007", withHeader(header2007, Text("0", x, y, "Caf\xC3\xA9")),
         "m56:Caf\xC3\xA9@45.2,10.5"},
        {"the layer's name gives the bound type",
         Drawing(LwB("BOUNDARY_EXC", square, 1) + "|" + LwB("ROAD_INC", square) + "|" +
                 LwB("AREA_OPEN", square, 1) + "|" + LwB("WATER", square, 1) + "|" + LwB("MISC_INC", square) +
                 "|" + LwB("GENERIC_OPEN", square) + "|" + LwB("SPRAY_SWATHS", square, 1) + "|" +
                 LwB("SPRAY_TRACK", square) + "|" + LwB("17", square, 1)),
         "boundary17/5 road16/4 area18/5 water16/5 misc16/4 generic18/4 area16/5 generic18/4 generic16/5"},
        {"meshes make no line",
         Drawing(PolyB("F30", square, 64) + "|" + PolyB("F30", square, 16) + "|" + PolyB("F30", square, 1)),
         "boundary16/5",
         {{LOAD_DXF_POLYLINE_MESH, 2}}},
        {"a spline's frame is left out, its fitted vertices kept",
         Drawing(PolyB(
             "F30", {{x, y, 0, 16}, {x + d, y, 0, 16}, {x, y, 0, 8}, {x + d, y, 0, 8}, {x + d, y + d, 0, 8}},
             4)),
         "boundary18/3"},
        {"what is still not carried",
         Drawing("0 SPLINE|8 0|0 HATCH|8 0|0 ELLIPSE|8 0|0 3DFACE|8 0|0 DIMENSION|8 0|" + Point("0", x, y)),
         "p@45.2,10.5",
         {{LOAD_DXF_ELLIPSE, 1},
          {LOAD_DXF_SPLINE, 1},
          {LOAD_DXF_HATCH, 1},
          {LOAD_DXF_3DFACE, 1},
          {LOAD_DXF_DIMENSION, 1}}},
        {"layers not taken and paper space",
         Drawing(Point("ZIP", x, y) + "|" + Text("ZIP", x, y, "Zip") + "|" +
                 Circle("CONTOUR", x, y, "0.001") + "|0 POINT|8 0|67 1|10 10.5|20 45.2|" +
                 Circle("NAME", x, y, "0.001")),
         "",
         {{LOAD_DXF_LAYER_NOT_TAKEN, 3}, {LOAD_DXF_PAPER_SPACE, 1}, {LOAD_DXF_MARKER_LAYER_LINE, 1}}},
        {"positions that are not geographic",
         Drawing(Point("0", 0.5, 0.5) + "|" + Text("0", 200, 45, "x") + "|" +
                 Circle("0", 500000, 5000000, "1")),
         "",
         {{LOAD_ENTITY_NEAR_ORIGIN, 1}, {LOAD_ENTITY_OUT_OF_RANGE, 1}, {LOAD_ENTITY_PROJECTED, 1}},
         "n"},
        {"a projected lightweight vertex, answered No",
         Drawing(LwB("F30", {{x, y}, {500000, 5000000}, {x + d, y}})),
         "boundary18/2",
         {{LOAD_VERTEX_PROJECTED, 1}},
         "n"},
    };
    for (const auto& c : cases) {
        TScriptedMessages messages(ScriptedAnswers(c.answers));
        TLoadReport report;
        int result = -1;
        EXPECT_EQ(Load(c.text, &report, true, &result), c.expected) << c.name;
        EXPECT_EQ(result, 0) << c.name;
        EXPECT_EQ(DescribeCauses(report), DescribeCauses(c.causes)) << c.name;
    }

    // The curves of a load stop at its limit of curve vertices, which a few thousand circles of a
    // whole country pass.
    TLoadReport report;
    TMapLayer layer;
    Load(Drawing(circles), &report, true, nullptr, &layer);
    const long long limited = report.GetCount(LOAD_DXF_CURVE_LIMIT);
    EXPECT_GT(limited, 0);
    EXPECT_EQ(layer.GetElementCount() + limited, 2000);

    // The same drawing read in the system's profile straight after reads as it always did.
    const std::string drawing = Drawing(LwB("AREA_EXC", square, 1) + "|" + Point("0", x, y));
    EXPECT_EQ(Load(drawing), "area17/5 p@45.2,10.5");
    EXPECT_EQ(Load(drawing, nullptr, false), "boundary0/5");
}

// ezdxf draws in both releases: closed polylines with bulges, CIRCLE, ARC, POINT with a TEXT at
// its position, a lone TEXT and (release 2000) an MTEXT. It prints the entities it wrote, each
// curve as its straight pieces and its arcs cut finely (points on the true circle, chords
// within 1 mm of it); every vertex read must lie within 0.1 m of those pieces, and they within
// 0.1 m of the line read.
const char* const kEzdxfCurves = R"PY(
import sys, ezdxf
version, out = sys.argv[1], sys.argv[2]
doc = ezdxf.new(version)
msp = doc.modelspace()
pts = [(10.5, 45.2, 0.0), (10.6, 45.2, 1.0), (10.6, 45.3, 0.0), (10.5, 45.3, -0.4)]
if version == "R12":
    p = msp.add_polyline2d([(x, y) for x, y, b in pts], dxfattribs={"layer": "F30"}, close=True)
    for v, (x, y, b) in zip(p.vertices, pts): v.dxf.bulge = b
    msp.add_polyline2d([(10.7, 45.2), (10.8, 45.25)], dxfattribs={"layer": "A41"})
else:
    msp.add_lwpolyline(pts, format="xyb", dxfattribs={"layer": "F30"}, close=True)
    msp.add_lwpolyline([(10.7, 45.2, 0.3), (10.8, 45.25, 0.0)], format="xyb", dxfattribs={"layer": "A41"})
    msp.add_mtext("Note\\Ptwo lines", dxfattribs={"insert": (10.65, 45.35)})
msp.add_circle((10.55, 45.25), 0.01, dxfattribs={"layer": "H12"})
msp.add_circle((10.55, 45.25), 0.0004, dxfattribs={"layer": "H12"})
msp.add_arc((10.55, 45.25), 0.02, 30, 300, dxfattribs={"layer": "A41"})
msp.add_point((10.57, 45.27))
msp.add_text("Gate", dxfattribs={"insert": (10.57, 45.27)})
msp.add_point((10.58, 45.28))
msp.add_text("Lone", dxfattribs={"insert": (10.59, 45.29)})
doc.saveas(out)
def pieces(e):
    if e.dxftype() in ("CIRCLE", "ARC"): return [list(e.flattening(1e-8))]
    return [[p.dxf.start, p.dxf.end] if p.dxftype() == "LINE" else list(p.flattening(1e-8))
            for p in e.virtual_entities()]
for e in msp:
    kind = e.dxftype()
    if kind in ("POLYLINE", "LWPOLYLINE", "CIRCLE", "ARC"):
        print("line " + " | ".join(" ".join("%.12f,%.12f" % (v.x, v.y) for v in p) for p in pieces(e)))
    else:
        print(kind.lower())
)PY";

TEST(DxfComplete, DrawingsOfEzdxf) {
    SKIP_WITHOUT_LINUX_PEERS();
    if (RunCommand(std::string(TL_GIS_PYTHON) + " -c 'import ezdxf'").iExit != 0)
        GTEST_SKIP() << "ezdxf for " << TL_GIS_PYTHON << " is missing";
    TTempDir dir;
    WriteFileBytes(dir.File("draw.py"), kEzdxfCurves);
    for (const char* version : {"R12", "R2000"}) {
        const TCommandResult made =
            RunCommand(std::string(TL_GIS_PYTHON) + " " + ShellQuote(dir.File("draw.py")) + " " + version +
                       " " + ShellQuote(dir.File("out.dxf")));
        ASSERT_EQ(made.iExit, 0) << made.strErr;
        TLoadReport report;
        TMapLayer layer;
        int result = -1;
        Load(ReadFileBytes(dir.File("out.dxf")), &report, true, &result, &layer);
        EXPECT_EQ(result, 0) << version;
        EXPECT_EQ(DescribeCauses(report), "") << version;
        // Each curve as its pieces; the POINT with its TEXT makes one marker.
        std::vector<std::vector<std::vector<tagLOC>>> curves;
        long long others = 0;
        std::istringstream printed(made.strOut);
        for (std::string line; std::getline(printed, line);) {
            if (!line.starts_with("line ")) {
                ++others;
                continue;
            }
            curves.emplace_back(1);
            std::istringstream values(line.substr(5));
            for (std::string xy; values >> xy;)
                if (xy == "|")
                    curves.back().emplace_back();
                else
                    curves.back().back().push_back({std::stod(xy.substr(xy.find(',') + 1)), std::stod(xy)});
        }
        EXPECT_NE(DescribeLayer(layer).find("m56:Gate@45.27,10.57"), std::string::npos)
            << DescribeLayer(layer);
        EXPECT_EQ(report.GetAddedTotal(), static_cast<long long>(curves.size()) + others - 1) << version;
        std::vector<std::vector<tagLOC>> lines;
        for (const TMapElement* e : layer.m_Elements)
            if (const auto* l = dynamic_cast<const TFeatureLine*>(e))
                lines.emplace_back(l->m_pPoints, l->m_pPoints + l->m_iNumPoints);
        ASSERT_EQ(lines.size(), curves.size()) << version;
        for (std::size_t i = 0; i < curves.size(); ++i) {
            const TLocalScale scale(lines[i][0]);  // the curves are a few kilometres across
            const auto distance = [&scale](const tagLOC& p, const std::vector<tagLOC>& line) {
                double best = MetresToSegment(scale, p, line[0], line[0]);
                for (std::size_t k = 1; k < line.size(); ++k)
                    best = std::min(best, MetresToSegment(scale, p, line[k - 1], line[k]));
                return best;
            };
            double worst = 0.0;
            for (const tagLOC& p : lines[i]) {
                double best = 1e300;
                for (const std::vector<tagLOC>& piece : curves[i]) best = std::min(best, distance(p, piece));
                worst = std::max(worst, best);
            }
            for (const std::vector<tagLOC>& piece : curves[i])
                for (const tagLOC& p : piece) worst = std::max(worst, distance(p, lines[i]));
            EXPECT_LE(worst, DXF_CURVE_TOLERANCE_M)
                << version << " curve " << i << ": " << DescribeLayer(layer);
        }
    }
}

}  // namespace
