// Drawings. Reading: layer classes, entity rules, line ends, the projected-coordinate question,
// drawings of ezdxf and GDAL, and damaged files (a result code, nothing read out of bounds).
// Writing: byte-exact drawings, polylines by mode, files that ezdxf and GDAL accept and this
// reader reads back.

#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>
#include <filesystem>
#include <functional>
#include <iomanip>
#include <limits>
#include <random>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <tl_gis/features/feature_spray.h>
#include <tl_gis/gis/dxf/gis_file_dxf.h>
#include <tl_gis/gis/gis_map.h>
#include <tl_gis/gis/line_assembly.h>
#include "allocation_counter.h"
#include "dxf_drawing_text.h"
#include "dxf_layer_builders.h"
#include "load_report_check.h"
#include "platform/system_services.h"
#include "test_support.h"

namespace {

// An insert carrying attributes (tag, value, x, y) closed by a SEQEND on seqendLayer.
std::string Insert(const std::vector<std::vector<std::string>>& attributes,
                   const std::string& seqendLayer = "0") {
    std::string g = "0 INSERT|8 0|2 SYMBOL|10 10.1|20 45.1|66 1";
    for (const auto& a : attributes)
        g += "|0 ATTRIB|8 0|10 " + a[2] + "|20 " + a[3] + "|1 " + a[1] + "|2 " + a[0];
    return g + "|0 SEQEND|8 " + seqendLayer;
}

// Loads the text of a drawing and describes the layer it leaves, one word per element: lines as
// "<class>/<points>" ("road/4", a closed square "boundary/5"), markers as
// "m<symbol>:<name>@<lat>,<lon>". A report, when given, is filled.
std::string Load(const std::string& text, int* result = nullptr, TLoadReport* report = nullptr) {
    static const std::pair<std::uint32_t, const char*> kClasses[] = {
        {ELEMENT_LINE_BOUNDARY, "boundary"}, {ELEMENT_LINE_AREA, "area"}, {ELEMENT_LINE_ROAD, "road"},
        {ELEMENT_LINE_WATER, "water"},       {ELEMENT_LINE_MISC, "misc"}, {ELEMENT_LINE_GENERIC, "generic"}};
    TTempDir dir;
    WriteFileBytes(dir.File("drawing.dxf"), text);
    TMapLayer layer;
    TGisFileDxf reader;
    reader.SetLoadReport(report);
    const int r = reader.LoadFile(dir.File("drawing.dxf").c_str(), &layer, nullptr);
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
    std::string tenMillion = h("0 LWPOLYLINE|8 A41|90 10000000");
    for (int i = 0; i < 10'000'000; ++i) tenMillion += "10\n10.5\n20\n45.5\n";
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
        {"ten million vertices in one polyline", std::move(tenMillion), "road/10000000"},
        {"random bytes", noise, "", kAnyResult},
        {"random bytes without line ends", noLineEnds, "", kAnyResult},
        {"line, Yes stops", Drawing(kLine + "|" + utm + "|" + kLine), "generic/2", 6001, ANSWER_YES, 1},
        {"line, No asks again", Drawing(utm + "|" + utm + "|" + kLine), "generic/2", 0, ANSWER_NO, 2},
        {"lightweight vertex, No keeps the rest",
         Drawing(Lw("A41", {{10.5, 45.2}, {500000, 5000000}, {10.6, 45.3}})), "road/2", 0, ANSWER_NO, 1},
        {"insert, Yes", Drawing(Insert({{"TGR_NAME", "x", "500000", "5000000"}})), "", 6001, ANSWER_YES, 1},
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
    SKIP_WITHOUT_LINUX_PEERS();
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
        EXPECT_EQ(Load(ReadFileBytes(dir.File("out.dxf")), &result), c.expected) << c.name;
        EXPECT_EQ(result, 0) << c.name;
    }
    if (!ezdxf || !gdal) GTEST_SKIP() << "ezdxf for " << TL_GIS_PYTHON << " or GDAL's ogr2ogr is missing";
}

// "line N", N the line of the value of a group in the ENTITIES section of Drawing(entities): the
// header and the section's start take 14 lines, and each group two.
std::string At(const std::string& entities, const std::string& group, int offset = 0) {
    const std::size_t at = entities.find(group);
    EXPECT_NE(at, std::string::npos) << group << " is not in " << entities;
    return "line " + std::to_string(offset + 16 +
                                    2 * std::count(entities.begin(),
                                                   entities.begin() + static_cast<std::ptrdiff_t>(at), '|'));
}

TEST(DxfReader, LoadReportCountsWhatIsLeftOut) {
    const std::string proxy = "0 ACAD_\x01\xFF\\PROXY|8 0";
    const std::string kinds =
        "0 POINT|8 0|10 10.5|20 45.5|0 ARC|8 0|0 CIRCLE|8 0|0 CIRCLE|8 0|0 ELLIPSE|8 0|0 SPLINE|8 0|0 TEXT|8 "
        "0|0 MTEXT|8 0|0 HATCH|8 0|0 SOLID|8 0|0 3DFACE|8 0|0 DIMENSION|8 0|0 VIEWPORT|8 0|" +
        proxy + "|" + proxy + "|" + kLine;
    const std::string refused =
        Line("A41", {0.5, 0.5}, {10.5, 45.5}) + "|" + Line("A41", {10.5, 45.5}, {200, 95}) + "|" +
        Line("A41", {500000, 5000000}, {10.5, 45.5}) + "|" +
        Poly("F30", {kSquare[0], {0.5, 0.5}, {500000, 5000000}, kSquare[1], {200, 45}}) + "|" +
        Lw("H12", {kSquare[0], {100.5, 95}, kSquare[1], kSquare[2]});
    const std::string left = Line("ZIP", {10.5, 45.5}, {10.6, 45.6}) + "|" + Poly("CONTOUR", kSquare) +
                             "|0 LINE|8 A41|67 1" + XY({10.5, 45.5}) + XY({10.6, 45.6}, "11 21") + "|" +
                             Poly("NAME", kSquare) + "|" + kLine;
    const std::string inserts =
        "0 INSERT|8 0|2 B|10 10.1|20 45.1|" + kLine + "|" + Insert({{"FOO", "x", "10.8", "45.5"}}) + "|" +
        Insert({{"TGR_NAME", "x", "200", "95"}}) + "|" + Insert({{"TIC", "t", "10.8", "45.5"}});
    const std::string utm = Line("A41", {500000, 5000000}, {500100, 5000100}) + "|" + kLine;
    const TReportCase cases[] = {
        {"entity kinds it does not read",
         Drawing(kinds),
         {{LOAD_DXF_POINT, 1, At(kinds, "0 POINT")},
          {LOAD_DXF_ARC, 1, At(kinds, "0 ARC")},
          {LOAD_DXF_CIRCLE, 2, At(kinds, "0 CIRCLE")},
          {LOAD_DXF_ELLIPSE, 1, At(kinds, "0 ELLIPSE")},
          {LOAD_DXF_SPLINE, 1, At(kinds, "0 SPLINE")},
          {LOAD_DXF_TEXT, 1, At(kinds, "0 TEXT")},
          {LOAD_DXF_MTEXT, 1, At(kinds, "0 MTEXT")},
          {LOAD_DXF_HATCH, 1, At(kinds, "0 HATCH")},
          {LOAD_DXF_SOLID, 1, At(kinds, "0 SOLID")},
          {LOAD_DXF_3DFACE, 1, At(kinds, "0 3DFACE")},
          {LOAD_DXF_DIMENSION, 1, At(kinds, "0 DIMENSION")},
          // The name as read, every byte that is not printable ASCII written out.
          {LOAD_DXF_OTHER_ENTITY, 2, At(kinds, proxy) + " (ACAD_\\x01\\xFF\\x5CPROXY)"}},
         "",
         "generic 1"},
        {"coordinates refused, the vertex or the entity dropped",
         Drawing(refused),
         {{LOAD_VERTEX_NEAR_ORIGIN, 1, At(refused, "0 VERTEX|8 F30|10 0.5")},
          {LOAD_VERTEX_OUT_OF_RANGE, 2, At(refused, "0 VERTEX|8 F30|10 200")},
          {LOAD_VERTEX_PROJECTED, 1, At(refused, "0 VERTEX|8 F30|10 500000")},
          {LOAD_ENTITY_NEAR_ORIGIN, 1, At(refused, "0 LINE")},
          {LOAD_ENTITY_OUT_OF_RANGE, 1, At(refused, "0 LINE|8 A41|10 10.5")},
          {LOAD_ENTITY_PROJECTED, 1, At(refused, "0 LINE|8 A41|10 500000")}},
         "",
         "boundary 1, water 1",
         GISFILE_OK,
         "n"},
        {"layers, paper space and marker layers",
         Drawing(left),
         {{LOAD_DXF_LAYER_NOT_TAKEN, 2, At(left, "0 LINE|8 ZIP") + " (layer ZIP)"},
          {LOAD_DXF_PAPER_SPACE, 1, At(left, "0 LINE|8 A41|67")},
          {LOAD_DXF_MARKER_LAYER_LINE, 1, At(left, "0 POLYLINE|8 NAME")}},
         "",
         "generic 1"},
        {"inserts without attributes, with an unknown tag, out of range",
         Drawing(inserts),
         {{LOAD_ENTITY_OUT_OF_RANGE, 1,
           At(inserts, "0 INSERT|8 0|2 SYMBOL|10 10.1|20 45.1|66 1|0 ATTRIB|8 0|10 200")},
          {LOAD_DXF_INSERT_NO_TAG, 2, At(inserts, "0 INSERT|8 0|2 B") + " (no attributes)"}},
         "",
         "generic 1, marker 1"},
        {"a binary drawing",
         "AutoCAD Binary DXF\r\n\x1a" + std::string(1, '\0') + "\x00\x01SECTION\n",
         {},
         "at line 1: the file is a binary DXF (it starts with \"AutoCAD Binary DXF\"); only ASCII DXF is "
         "read",
         ""},
        {"projected, answered Yes",
         Drawing(utm),
         {},
         "at " + At(utm, kLine, -1) +
             ": the projected-coordinate question about (5000000, 500000) was answered Yes; the rest of the "
             "file was not read",
         "",
         GISFILE_ERR_UNAVAILABLE,
         "y"},
    };
    for (const TReportCase& c : cases) {
        TLoadReport report;
        int with = -1, without = -1;
        std::string withReport, withoutReport;
        {
            TScriptedMessages messages(ScriptedAnswers(c.answers));
            withReport = Load(c.text, &with, &report);
        }
        {
            TScriptedMessages messages(ScriptedAnswers(c.answers));
            withoutReport = Load(c.text, &without);
        }
        ExpectReport(c, with, report);
        EXPECT_EQ(withReport, withoutReport) << c.name;
        EXPECT_EQ(with, without) << c.name;
    }
}

// A drawing of 100,000 CIRCLE entities loads with as many allocations as one of a single CIRCLE.
TEST(DxfReader, RepeatedCausesCostNoAllocationEach) {
    TTempDir dir;
    ExpectNoAllocationPerOccurrence(dir.File("c.dxf"), LOAD_DXF_CIRCLE, 100000, [&](int n) {
        std::string circles;
        for (int k = 0; k < n; ++k) circles += "0 CIRCLE|8 0|10 10.5|20 45.5|";
        WriteFileBytes(dir.File("c.dxf"), Drawing(circles + "0 LINE|8 0"));
    });
}

class DxfWriter : public TPinnedClockTest {};

// The drawing of a layer made by build, written in the given modes.
std::string Write(const std::function<void(TMapLayer&)>& build, int singleBlock = 0, int sprayOnly = 1,
                  int* result = nullptr) {
    TMapLayer layer;
    build(layer);
    TGisFileDxf writer;
    writer.SetSingleBlockMode(singleBlock);
    writer.SetSprayOnlyMode(sprayOnly);
    TTempDir dir;
    const int r = writer.WriteFile(dir.File("out.dxf").c_str(), &layer);
    if (result) *result = r;
    return ReadFileBytes(dir.File("out.dxf"));
}

// The colour and vertex count of every POLYLINE of a drawing, in file order: "1:4 6:0".
std::string DescribePolylines(const std::string& text) {
    std::istringstream in(text);
    std::string out, code, value, color;
    int vertices = -1;  // -1 outside a polyline
    while (std::getline(in, code) && std::getline(in, value)) {
        value.erase(value.find_last_not_of('\r') + 1);
        if (std::stoi(code) == 62 && color.empty()) color = value;
        if (std::stoi(code) != 0) continue;
        if (value == "POLYLINE") vertices = 0, color.clear();
        if (value == "VERTEX") ++vertices;
        if (value == "SEQEND" && vertices >= 0)
            out += (out.empty() ? "" : " ") + color + ":" + std::to_string(vertices), vertices = -1;
    }
    return out;
}

std::string GoldenPath(const std::string& name) {
    return std::string(TL_GIS_SOURCE_DIR) + "/tests/data/dxf/" + name;
}

const char* const kGoldens[] = {"boundary_exclusion.dxf",  "markers_only.dxf",        "spray_one_block.dxf",
                                "spray_single_blocks.dxf", "nonspray_spray_only.dxf", "nonspray_track.dxf",
                                "one_sample.dxf"};

TEST_F(DxfWriter, GoldenDrawings) {
    const struct {
        std::function<void(TMapLayer&)> build;
        int singleBlock = 0;
        int sprayOnly = 1;
    } cases[] = {{[](TMapLayer& l) {
                     AddLine(l, ELEMENT_LINE_BOUNDARY, BOUNDARY_EXC,
                             {{45.123456789, -93.5}, {45.2, -93.5}, {45.2, -93.4}, {45.123456789, -93.4}},
                             "");
                 }},
                 {[](TMapLayer& l) {
                     AddMarker(l, "", "Gate", 56, {45.5, 10.8}), AddMarker(l, "", "Well", 56, {45.6, 10.9});
                 }},
                 {[](TMapLayer& l) { AddSprayRun(l, 3, true); }, 0, 1},
                 {[](TMapLayer& l) { AddSprayRun(l, 3, true); }, 1, 1},
                 {[](TMapLayer& l) { AddSprayRun(l, 3, false); }, 0, 1},
                 {[](TMapLayer& l) { AddSprayRun(l, 3, false); }, 0, 0},
                 {[](TMapLayer& l) { AddSprayRun(l, 1, true); }, 0, 0}};
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        int result = -1;
        EXPECT_EQ(Write(cases[i].build, cases[i].singleBlock, cases[i].sprayOnly, &result),
                  ReadFileBytes(GoldenPath(kGoldens[i])))
            << kGoldens[i];
        EXPECT_EQ(result, 0) << kGoldens[i];
    }
}

// Polygons by kind and bound type (other lines and markers are not written); spray by the first
// sample's flag and the mode, with the track outline gathering every sample of every run. An
// unusable clock leaves the time stamp empty, and a coordinate too wide for a value line is
// cut, never spilled.
TEST_F(DxfWriter, PolylinesByMode) {
    SetClockForTesting([] { return std::numeric_limits<std::time_t>::max(); });
    const auto polygons = [](TMapLayer& l) {
        const std::vector<tagLOC> ring = {{45.1, 10.1}, {45.2, 10.1}, {45.2, 10.2}, {45.1, 10.1}};
        AddLine(l, ELEMENT_LINE_BOUNDARY, BOUNDARY_INC, ring, "");
        AddLine(l, ELEMENT_LINE_AREA, BOUNDARY_OPEN, ring, "");
        AddLine(l, ELEMENT_LINE_AREA, 0, {{45.1, 1e300}, {45.2, 10.1}}, "");
        AddLine(l, ELEMENT_LINE_AREA, BOUNDARY_EXC, ring, "");
        for (const std::uint32_t kind : {ELEMENT_LINE_ROAD, ELEMENT_LINE_WATER, ELEMENT_LINE_GENERIC})
            AddLine(l, kind, BOUNDARY_EXC, ring, "");
        AddMarker(l, "", "Gate", 56, {45.5, 10.8});
    };
    const auto runs = [](TMapLayer& l) {
        AddSprayRun(l, 4, true)->m_pRecs[0].bySpray = 0;
        AddSprayRun(l, 3, true)->m_dwType = ELEMENT_SPRAY_ALT | 5;
        AddSprayRun(l, 3, false);
    };
    const std::string text = Write(polygons);
    EXPECT_EQ(text.rfind("999\r\nCreated by TOLVIX mapping software \r\n", 0), 0u) << text.substr(0, 80);
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) EXPECT_LE(line.size(), 83u) << line;
    EXPECT_EQ(DescribePolylines(text), "3:4 3:4 3:2 1:4 6:0");
    EXPECT_EQ(DescribePolylines(Write(runs, 0, 0)), "2:4 1:6 2:3 6:10");
    EXPECT_EQ(DescribePolylines(Write(runs, 1, 1)), "1:4 1:4 6:10");
    EXPECT_EQ(DescribePolylines(Write(runs, 1, 0)), "2:2 2:2 2:2 1:4 1:4 2:2 2:2 6:10");
    TMapLayer layer;
    EXPECT_EQ(TGisFileDxf().WriteFile("/nonexistent-folder/out.dxf", &layer), 1);
}

TEST_F(DxfWriter, PeersAcceptWhatIsWrittenAndTheReaderReadsItBack) {
    // Squares with their closing vertex, some of them exclusions.
    TMapLayer layer;
    for (int i = 0; i < 40; ++i) {
        const double a = 44.0 + (i % 10) * 0.01, o = -95.0 + (i / 10) * 0.01;
        AddLine(layer, i % 3 ? ELEMENT_LINE_BOUNDARY : ELEMENT_LINE_AREA, i % 4 ? BOUNDARY_INC : BOUNDARY_EXC,
                {{a, o}, {a + 0.005, o}, {a + 0.005, o + 0.005}, {a, o + 0.005}, {a, o}}, "");
    }
    TTempDir dir;
    const std::string path = dir.File("field.dxf");
    TGisMap map;
    ASSERT_EQ(map.WriteFile(path.c_str(), &layer), 0);
    TMapLayer back;
    ASSERT_EQ(map.LoadFile(path.c_str(), &back, nullptr), 0);
    // Six decimals are written; the rings come back open, with their closing vertex.
    const auto points = [](const TMapLayer& l) {
        std::ostringstream out;
        out << std::fixed << std::setprecision(6);
        for (const TMapElement* e : l.m_Elements) {
            const auto* line = static_cast<const TFeatureLine*>(e);
            for (int k = 0; k < line->m_iNumPoints; ++k)
                out << line->m_pPoints[k].dLat << ',' << line->m_pPoints[k].dLon << ' ';
            out << ";\n";
        }
        return out.str();
    };
    EXPECT_EQ(points(back), points(layer));

    std::string files = ShellQuote(path);
    for (const char* name : kGoldens) files += " " + ShellQuote(GoldenPath(name));
    const bool ezdxf = RunCommand(std::string(TL_GIS_PYTHON) + " -c 'import ezdxf'").iExit == 0;
    const bool gdal = HaveProgram("ogrinfo");
    const char* const audit = R"PY(import sys, ezdxf
errors = [(f, e.code, e.message) for f in sys.argv[1:] for e in ezdxf.readfile(f).audit().errors]
sys.exit(str(errors) if errors else 0))PY";
    const TCommandResult audited =
        RunCommand(std::string(TL_GIS_PYTHON) + " -c " + ShellQuote(audit) + " " + files);
    EXPECT_TRUE(!ezdxf || audited.iExit == 0) << audited.strOut << audited.strErr;
    // ogrinfo reports broken entities on stderr and still exits with 0.
    const TCommandResult info =
        RunCommand("for f in " + files + "; do ogrinfo -al \"$f\" || echo ERROR; done");
    EXPECT_TRUE(!gdal || (info.strErr + info.strOut).find("ERROR") == std::string::npos)
        << info.strOut << info.strErr;
    if (!ezdxf || !gdal)
        GTEST_SKIP() << "not checked by " << (ezdxf ? "" : "ezdxf ") << (gdal ? "" : "ogrinfo");
}
}  // namespace
