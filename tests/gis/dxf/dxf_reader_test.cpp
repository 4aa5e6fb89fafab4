// Reading drawings: layer classes, entity rules, sections, line ends, the projected-coordinate
// question, drawings written by ezdxf and GDAL, and damaged or hostile files, which end with a
// result code and nothing read out of bounds (the sanitizer build checks the latter).

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "gis/dxf/gis_file_dxf.h"
#include "test_support.h"

namespace {

// Expands "0 LINE|8 A41|10 10.5" into group lines: each code right-aligned in width columns on
// its own line, then its value, each line ended by eol.
std::string DxfGroups(const std::string& compact, const char* eol = "\n", std::size_t width = 3) {
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
std::string Drawing(const std::string& compact, const char* eol = "\n", std::size_t width = 3) {
    return DxfGroups(
        "0 SECTION|2 HEADER|9 $ACADVER|1 AC1009|0 ENDSEC|0 SECTION|2 ENTITIES|" + compact + "|0 ENDSEC|0 EOF",
        eol, width);
}

// Compact groups of entities, (x, y) = (longitude, latitude).
using TXY = std::pair<double, double>;
std::string XY(TXY p, const char* codes = "10 20") {
    return "|" + std::string(codes, 2) + " " + std::to_string(p.first) + "|" + (codes + 3) + " " +
           std::to_string(p.second);
}
std::string Lw(const std::string& layer, const std::vector<TXY>& points, int flags = 0) {
    std::string g =
        "0 LWPOLYLINE|8 " + layer + "|90 " + std::to_string(points.size()) + "|70 " + std::to_string(flags);
    for (const TXY& p : points) g += XY(p);
    return g;
}
std::string Poly(const std::string& layer, const std::vector<TXY>& points) {
    std::string g = "0 POLYLINE|8 " + layer + "|66 1";
    for (const TXY& p : points) g += "|0 VERTEX|8 " + layer + XY(p);
    return g + "|0 SEQEND|8 " + layer;
}
std::string Line(const std::string& layer, TXY from, TXY to) {
    return "0 LINE|8 " + layer + XY(from) + XY(to, "11 21");
}
// An insert carrying attributes (tag, value, x, y) closed by a SEQEND on seqendLayer.
std::string Insert(const std::vector<std::vector<std::string>>& attributes,
                   const std::string& seqendLayer = "0") {
    std::string g = "0 INSERT|8 0|2 SYMBOL|10 10.1|20 45.1|66 1";
    for (const auto& a : attributes)
        g += "|0 ATTRIB|8 0|10 " + a[2] + "|20 " + a[3] + "|1 " + a[1] + "|2 " + a[0];
    return g + "|0 SEQEND|8 " + seqendLayer;
}

// Loads a drawing and describes the layer it leaves, one word per element: lines as
// "<class>/<points>" ("road/4", a closed square "boundary/5"), markers as
// "m<symbol>:<name>@<lat>,<lon>".
std::string LoadPath(const std::string& path, int* result = nullptr) {
    static const std::pair<std::uint32_t, const char*> kClasses[] = {
        {ELEMENT_LINE_BOUNDARY, "boundary"}, {ELEMENT_LINE_AREA, "area"}, {ELEMENT_LINE_ROAD, "road"},
        {ELEMENT_LINE_WATER, "water"},       {ELEMENT_LINE_MISC, "misc"}, {ELEMENT_LINE_GENERIC, "generic"}};
    TMapLayer layer;
    const int r = TGisFileDxf().LoadFile(path.c_str(), &layer, nullptr);
    if (result) *result = r;
    std::ostringstream out;
    for (const TMapElement* e : layer.m_Elements) {
        out << (out.tellp() > 0 ? " " : "");
        if (const auto* m = dynamic_cast<const TFeatureMarker*>(e))
            out << 'm' << e->GetLowBits() << ':' << m->m_strName << '@' << m->m_Loc.dLat << ','
                << m->m_Loc.dLon;
        for (const auto& [kind, name] : kClasses)
            if (e->GetKind() == kind) out << name << '/' << static_cast<const TFeatureLine*>(e)->m_iNumPoints;
    }
    return out.str();
}

std::string Load(const std::string& text, int* result = nullptr) {
    TTempDir dir;
    WriteFileBytes(dir.File("drawing.dxf"), text);
    return LoadPath(dir.File("drawing.dxf"), result);
}

// Longitudes above 90 show a reader that swaps x and y: its latitudes would be out of range.
const std::vector<TXY> kSquare = {{100.5, 45.2}, {100.6, 45.2}, {100.6, 45.3}, {100.5, 45.3}};
const std::string kLine = Line("A41", {100.5, 45.2}, {100.6, 45.3});

TEST(DxfReader, LayersClassifyPolylines) {
    // "layers=layer read", one square on each layer in order. Layers named by a number keep the
    // class of the layer before them.
    std::istringstream cases(
        "A41=road/4;H12=water/4;F30=boundary/4;D50=area/4;C31=misc/4;RD-12=road/4;HYD=water/4;TRACT1=;"
        "CONTOUR=;LEGEND2=;NAME=;UNLISTED=boundary/4;a41=boundary/4;H12 0=water/4 water/4;"
        "A41 17=road/4 road/4;17=boundary/4;A41 ZIP 0=road/4 boundary/4;A41 CONTOUR 0=road/4 road/4;NAME 0=");
    for (std::string c; std::getline(cases, c, ';');) {
        for (const bool lightweight : {true, false}) {
            std::string body;
            std::istringstream names(c.substr(0, c.find('=')));
            for (std::string name; names >> name;)
                body += (body.empty() ? "" : "|") + (lightweight ? Lw(name, kSquare) : Poly(name, kSquare));
            EXPECT_EQ(Load(Drawing(body)), c.substr(c.find('=') + 1)) << c << (lightweight ? " LW" : "");
        }
    }
}

TEST(DxfReader, EntitiesSectionsDamageAndQuestions) {
    constexpr int kAnyResult = -1;
    const std::string street = Insert({{"TGR_NAME", "Main Street", "10.8", "45.5"}});
    const std::string mixed = Lw("A41", kSquare, 1) + "|" + Poly("H12", kSquare) + "|" + street + "|" + kLine;
    const char* const mixedLayer = "road/5 water/4 m56:Main Street@45.5,10.8 generic/2";
    const std::string utm = Line("A41", {500000, 5000000}, {500100, 5000100});
    std::string unended = Poly("F30", kSquare);
    unended.erase(unended.rfind("|0 SEQEND"));
    // A polyline on F30 through the corners of the square, each vertex with its extra groups.
    const auto vertices = [](const std::vector<std::string>& extras) {
        std::string g = "0 POLYLINE|8 F30|66 1";
        for (std::size_t i = 0; i < extras.size(); ++i) g += "|0 VERTEX|8 F30|" + extras[i] + XY(kSquare[i]);
        return Drawing(g + "|0 SEQEND|8 F30");
    };
    const auto h = [](const std::string& body) { return DxfGroups("0 SECTION|2 ENTITIES|" + body); };
    const std::string kLong(200000, 'v');
    std::mt19937 rng(7);
    std::string noise(1 << 20, '\0'), noLineEnds(3 << 20, '\0');
    for (char& c : noise) c = static_cast<char>(rng() & 0xFF);
    for (char& c : noLineEnds) c = static_cast<char>('\x80' + rng() % 64);
    const struct {
        const char* name;
        std::string text;
        std::string expected;
        int result = 0;
        int answer = 0;  // to each projected-coordinate question
        int questions = 0;
    } cases[] = {
        {"line", Drawing(kLine), "generic/2"},
        {"line near (0, 0)", Drawing(Line("A41", {0.5, 0.5}, {100.6, 45.3})), ""},
        {"vertex near (0, 0) dropped", Drawing(Poly("F30", {{100.5, 45.2}, {0.5, 0.5}, {100.6, 45.3}})),
         "boundary/2"},
        {"vertex flag closes", vertices({"70 1", "5 a", "5 b"}), "boundary/4"},
        {"bulge above 0.9 reopens", vertices({"70 1", "5 a", "42 0.95"}), "boundary/3"},
        {"bulge of 0.9 keeps it closed", vertices({"70 1", "42 0.9", "5 b"}), "boundary/4"},
        {"bulge of the first vertex carries over", vertices({"42 1", "5 a", "70 1"}), "boundary/3"},
        {"lightweight second vertex rejected",
         Drawing(Lw("A41", {{10.5, 45.2}, {0.5, 0.5}, {10.6, 45.3}, {10.5, 45.3}})), "road/3"},
        {"lightweight count far above its vertices",
         Drawing("0 LWPOLYLINE|8 A41|90 10000000|10 10.5|20 45.2|10 10.6|20 45.3|10 10.5|20 45.3"), "road/3"},
        {"attributed insert takes the last attribute",
         Drawing(Insert({{"ZIP", "55401", "10.7", "45.4"}, {"TGR_NAME", "Main Street", "10.8", "45.5"}})),
         "m56:Main Street@45.5,10.8"},
        {"attribute tag without a row", Drawing(Insert({{"ZIP", "55401", "10.7", "45.4"}})), ""},
        {"insert ending on a skipped layer", Drawing(Insert({{"TGR_NAME", "x", "10.8", "45.5"}}, "ZIP")), ""},
        {"a skipped lightweight polyline takes no later vertices",
         Drawing("0 LWPOLYLINE|8 ZIP|90 2|10 10.5|20 45.2|10 10.6|20 45.3|" + kLine), "generic/2"},
        {"blocks", DxfGroups("0 SECTION|2 BLOCKS|" + kLine + "|0 ENDSEC|0 EOF"), "generic/2"},
        {"CR LF and codes in eight columns", Drawing(mixed, "\r\n", 8), mixedLayer},
        {"codes without padding", Drawing(mixed, "\n", 0), mixedLayer},
        {"lightweight polyline cut short", h("0 LWPOLYLINE|8 A41|90 4|10 10.5|20 45.2|10 10.6"), ""},
        {"polyline without SEQEND", h(unended), ""},
        {"code without value at the end", h(kLine) + "  0\n", "generic/2"},
        {"a vertex outside any polyline", h("0 VERTEX|8 A41|10 10.5|20 45.2") + "  0\n", "",
         GISFILE_ERR_DATA},
        // A code line without a number keeps the code before it: 45.3 replaces the latitude 95.
        {"non-numeric group code",
         h("0 LINE|8 A41|10 10.5|20 45.2|11 10.6|21 95") + "twenty-one\n45.3\n  0\nEOF\n", "generic/2"},
        {"negative vertex count", h("0 LWPOLYLINE|8 A41|90 -5|10 10.5|20 45.2|10 10.6|20 45.3"), "road/1"},
        {"SEQEND and ATTRIB without an insert",
         h("0 SEQEND|8 0|0 ATTRIB|8 0|2 TGR_NAME|10 10.5|20 45.2|0 SEQEND|0 EOF"), ""},
        // A line longer than 65,536 characters keeps its start.
        {"10,000 characters", Drawing(Insert({{"TGR_NAME", kLong.substr(0, 10000), "10.8", "45.5"}})),
         "m56:" + kLong.substr(0, 10000) + "@45.5,10.8"},
        {"200,000 characters", Drawing(Insert({{"TGR_NAME", kLong, "10.8", "45.5"}})),
         "m56:" + kLong.substr(0, 65536) + "@45.5,10.8"},
        {"random bytes", noise, "", kAnyResult},
        {"random bytes without line ends", noLineEnds, "", kAnyResult},
        {"line, Yes stops", Drawing(kLine + "|" + utm + "|" + kLine), "generic/2", 6001, IDYES, 1},
        {"line, No asks again", Drawing(utm + "|" + utm + "|" + kLine), "generic/2", 0, IDNO, 2},
        {"lightweight vertex, No keeps the rest",
         Drawing(Lw("A41", {{10.5, 45.2}, {500000, 5000000}, {10.6, 45.3}})), "road/2", 0, IDNO, 1},
        {"insert, Yes", Drawing(Insert({{"TGR_NAME", "x", "500000", "5000000"}})), "", 6001, IDYES, 1},
        {"polyline vertices are never asked about", Drawing(Poly("F30", {{500000, 5000000}})), ""}};
    for (const auto& c : cases) {
        TScriptedMessages messages(std::vector<int>(c.questions, c.answer));
        int result = -1;
        EXPECT_EQ(Load(c.text, &result), c.expected) << c.name;
        EXPECT_TRUE(c.result == kAnyResult || result == c.result) << c.name << ": " << result;
        EXPECT_EQ(
            std::count_if(messages.Shown().begin(), messages.Shown().end(),
                          [](const TMessageBoxRequest& r) { return r.IsQuestion() && r.iTextId == 2039; }),
            c.questions)
            << c.name;
    }
}

TEST(DxfReader, TenMillionVerticesInOnePolyline) {
    TTempDir dir;
    {
        std::ofstream f(dir.File("huge.dxf"), std::ios::binary);
        f << DxfGroups("0 SECTION|2 ENTITIES|0 LWPOLYLINE|8 A41|90 10000000");
        std::string block;
        for (int i = 0; i < 10000; ++i) block += "10\n10.5\n20\n45.5\n";
        for (int i = 0; i < 1000; ++i) f << block;
        f << DxfGroups("0 ENDSEC|0 EOF");
    }
    int result = -1;
    EXPECT_EQ(LoadPath(dir.File("huge.dxf"), &result), "road/10000000");
    EXPECT_EQ(result, 0);
}

// Draws the same content in either release: R12 gives POLYLINE/VERTEX, R2000 LWPOLYLINE.
const char* const kEzdxfScript = R"PY(
import sys, ezdxf
version, out = sys.argv[1], sys.argv[2]
doc = ezdxf.new(version)
msp = doc.modelspace()
square = [(10.5, 45.2), (10.6, 45.2), (10.6, 45.3), (10.5, 45.3)]
def poly(layer, close=False, vertex_flag=False, bulge_at=None):
    pts = [(x, y, 1.0 if i == bulge_at else 0.0) for i, (x, y) in enumerate(square)]
    if version == "R12":
        p = msp.add_polyline2d([(x, y) for x, y, b in pts], dxfattribs={"layer": layer}, close=close)
        for v, (x, y, b) in zip(p.vertices, pts): v.dxf.bulge = b
        if vertex_flag: p.vertices[-1].dxf.flags = 1  # every vertex writes its flags: the last one decides
    else:
        msp.add_lwpolyline(pts, format="xyb", dxfattribs={"layer": layer}, close=close or vertex_flag)
for layer in ["A41", "H12", "17"]: poly(layer)
poly("F30", close=True)
for layer in ["0", "TRACT1", "ZIP", "CONTOUR", "LEGEND2", "NAME", "PEAK"]: poly(layer)
poly("H12", vertex_flag=True)
poly("H12", vertex_flag=True, bulge_at=3)
msp.add_line((10.5, 45.2), (10.6, 45.3), dxfattribs={"layer": "A41"})
block = doc.blocks.new(name="SIGN")  # in drawing units near (0, 0)
block.add_line((0, 0), (0.5, 0.5))
ref = msp.add_blockref("SIGN", (10.55, 45.25))
ref.add_attrib("ZIP", "55401", (10.56, 45.26))
ref.add_attrib("TGR_NAME", "Main Street", (10.57, 45.27))
doc.layout("Layout1").add_line((10.5, 45.2), (10.6, 45.3), dxfattribs={"layer": "A41"})
doc.saveas(out)
)PY";

// GDAL writes a line as LWPOLYLINE, a polygon as HATCH and a point as POINT, among tables and
// objects this reader has no use for.
const char* const kGeoJson = R"({"type":"FeatureCollection","features":[
{"type":"Feature","geometry":{"type":"LineString","coordinates":[[10.5,45.2],[10.6,45.3],[10.7,45.25]]}},
{"type":"Feature","geometry":{"type":"Polygon","coordinates":[[[10.5,45.2],[10.6,45.2],[10.6,45.3],[10.5,45.2]],
 [[10.55,45.22],[10.58,45.22],[10.58,45.25],[10.55,45.22]]]}},
{"type":"Feature","geometry":{"type":"Point","coordinates":[10.55,45.25]}},
{"type":"Feature","geometry":{"type":"MultiLineString","coordinates":[[[11.5,46.2],[11.6,46.3]],[[11.7,46.4],[11.8,46.5]]]}}]})";

TEST(DxfReader, DrawingsOfEzdxfAndGdal) {
    TTempDir dir;
    WriteFileBytes(dir.File("draw.py"), kEzdxfScript);
    WriteFileBytes(dir.File("in.geojson"), kGeoJson);
    const std::string python = std::string(TL_GIS_PYTHON) + " " + ShellQuote(dir.File("draw.py"));
    const std::string out = ShellQuote(dir.File("out.dxf"));
    const bool ezdxf = RunCommand(std::string(TL_GIS_PYTHON) + " -c 'import ezdxf'").iExit == 0;
    const bool gdal = HaveProgram("ogr2ogr");
    const struct {
        const char* name;
        bool available;
        std::string command;
        const char* expected;
    } cases[] = {// Release 12 closes a polyline by a vertex flag only, and a bulge above 0.9 opens it again.
                 {"ezdxf R12", ezdxf, python + " R12 " + out,
                  "road/4 water/4 water/4 boundary/4 boundary/4 water/5 water/4 generic/2 m56:Main "
                  "Street@45.27,10.57"},
                 {"ezdxf R2000", ezdxf, python + " R2000 " + out,
                  "road/4 water/4 water/4 boundary/5 boundary/4 water/5 water/5 generic/2 m56:Main "
                  "Street@45.27,10.57"},
                 // GDAL puts everything on layer 0, which keeps the default class.
                 {"GDAL", gdal, "ogr2ogr -f DXF " + out + " " + ShellQuote(dir.File("in.geojson")),
                  "boundary/3 boundary/2 boundary/2"}};
    for (const auto& c : cases) {
        if (!c.available) continue;
        std::filesystem::remove(dir.File("out.dxf"));
        const TCommandResult made = RunCommand(c.command);
        ASSERT_EQ(made.iExit, 0) << c.name << ": " << made.strErr;
        int result = -1;
        EXPECT_EQ(LoadPath(dir.File("out.dxf"), &result), c.expected) << c.name;
        EXPECT_EQ(result, 0) << c.name;
    }
    if (!ezdxf || !gdal) GTEST_SKIP() << "ezdxf for " << TL_GIS_PYTHON << " or GDAL's ogr2ogr is missing";
}

}  // namespace
