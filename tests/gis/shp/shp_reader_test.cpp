// The default-profile shapefile reader: hand-assembled main files (byte orders, shape types it
// passes over, ends of data, damage, the projected-coordinate question) with their result,
// elements, messages and load report; a hostile file of many skipped records costs no allocation
// per record; and files written by pyshp and GDAL load vertex for vertex.

#include <gtest/gtest.h>

#include <cstdio>
#include <sstream>

#include <tl_gis/gis/gis_map.h>
#include <tl_gis/gis/language.h>
#include "allocation_counter.h"
#include "load_report_check.h"
#include "shp_test_support.h"

using namespace shp_test;

namespace {
// A record of the shape type; the reader looks at the type only.
std::string Typed(std::uint32_t type) {
    std::string c;
    PutLE32(c, type);
    return c.append(32, '\0');
}

// The file, the answers to its questions ('y' or 'n'), the result, the elements ("id" for points,
// "id/bound type" for lines), the text every message shown holds (a damage box names the file
// too; nullptr: no message), and what the report lists: causes, stop and elements added ("-": not
// checked).
struct TShpCase {
    const char* name;
    std::string bytes;
    const char* answers;
    int result;
    std::string elements;
    const char* message;
    std::vector<TSkipWant> skips;
    std::string stop;
    std::string added;
};

struct TLoaded {
    int iResult = 0;
    std::string strElements;
    std::vector<TMessageBoxRequest> Shown;
};

TLoaded Load(const std::string& path, const std::vector<int>& script, TLoadReport* report) {
    TScriptedMessages messages(script);
    TMapLayer layer;
    TLoaded out;
    out.iResult = report != nullptr ? TGisMap().LoadFile(path.c_str(), &layer, nullptr, *report)
                                    : TGisMap().LoadFile(path.c_str(), &layer, nullptr);
    for (const TMapElement* e : layer.m_Elements) {
        const auto* line = dynamic_cast<const TFeatureLine*>(e);
        out.strElements += (out.strElements.empty() ? "" : " ") + e->m_strId +
                           (line ? "/" + std::to_string(line->m_iBoundType) : "");
    }
    out.Shown = messages.Shown();
    return out;
}
}  // namespace

TEST(ShpReader, LoadsOrRejectsEachFile) {
    const std::vector<TXY> four = {{-93.25, 45.5}, {-93.24, 45.5}, {-93.23, 45.5}, {-93.22, 45.5}};
    const std::string point = PointContent(-93.25, 45.5), cut = PolyContent(3, {0}, four);
    const auto mixed = [&](bool little) {
        return TShpBytes(little)
            .Record(12, point)
            .Record(7, PolyContent(3, {0, 2}, four))
            .Record(8, PolyContent(5, {0}, SquareRing(.01, 1)))
            .Bytes();
    };
    const auto afterPoint = [&](const std::string& content, std::int64_t words = -1) {
        return TShpBytes().Record(1, point).Record(2, content, words).Bytes();
    };
    const auto line = [&](std::vector<std::int32_t> parts, std::int64_t numParts = -1,
                          std::int64_t numPoints = -1) {
        return afterPoint(PolyContent(3, parts, four, numParts, numPoints));
    };
    const std::string utm =
        TShpBytes().Record(1, PolyContent(3, {0}, {{500000, 5000000}, {500100, 5000100}})).Bytes();
    const std::string skipped = TShpBytes()
                                    .Record(1, std::string(4, '\0'))
                                    .Record(2, PolyContent(15, {0}, four) + std::string(48, '\0'))
                                    .Record(3, MultiPointContent(four))
                                    .Record(4, point)
                                    .Raw(std::string(20, '\0'))
                                    .Bytes();
    TShpBytes types, ten, stops;
    types.Record(1, point).Record(2, Typed(11)).Record(3, Typed(11)).Record(4, std::string(4, '\0'));
    int number = 5;
    for (std::uint32_t type : {8u, 13u, 15u, 18u, 21u, 23u, 25u, 28u, 31u, 77u})
        types.Record(number++, Typed(type));
    std::string tenNames;
    for (int i = 1; i <= 10; ++i) {
        ten.Record(i, point);
        tenNames += (i > 1 ? " Point " : "Point ") + std::to_string(i);
    }
    stops.Record(1, point).Record(2, PolyContent(3, {0}, {{-93.25, 45.5}, {200, 95}}));
    for (int i = 3; i <= 5; ++i) stops.Record(i, point);
    const std::string kept = TShpBytes()
                                 .Record(1, PolyContent(3, {0}, {{-93.25, 45.5}, {10, 95}, {-93.2, 45.5}}))
                                 .Record(2, PointContent(500000, 5000000))
                                 .Record(3, PolyContent(3, {0}, {{-93.25, 45.5}, {200, 45}, {-93.2, 45.5}}))
                                 .Bytes();
    const std::string longer = "after record 1 (record 2 gives its content as 2000 bytes, but only " +
                               std::to_string(cut.size()) + " bytes of the file follow its header)";
    // clang-format off
    const TShpCase cases[] = {
        {"big-endian record headers", mixed(false), "", 0, "Point 12 7.1/18 7.2/18 8.1/16", nullptr, {}, "", "boundary 3, point 1"},
        {"little-endian record headers", mixed(true), "", 0, "Point 12 7.1/18 7.2/18 8.1/16", nullptr, {}, "", "-"},
        {"header only", TShpBytes().Bytes(), "", 0, "", nullptr, {}, "", "-"},
        {"every shape type it does not read", types.Bytes(), "", 0, "Point 1", nullptr,
         {{LOAD_SHP_NULL, 1, "record 4"}, {LOAD_SHP_MULTIPOINT, 1, "record 5"}, {LOAD_SHP_POINTZ, 2, "record 2"},
          {LOAD_SHP_POLYLINEZ, 1, "record 6"}, {LOAD_SHP_POLYGONZ, 1, "record 7"}, {LOAD_SHP_MULTIPOINTZ, 1, "record 8"},
          {LOAD_SHP_POINTM, 1, "record 9"}, {LOAD_SHP_POLYLINEM, 1, "record 10"}, {LOAD_SHP_POLYGONM, 1, "record 11"},
          {LOAD_SHP_MULTIPOINTM, 1, "record 12"}, {LOAD_SHP_MULTIPATCH, 1, "record 13"},
          {LOAD_SHP_UNKNOWN_TYPE, 1, "record 14 (shape type 77)"}}, "", "point 1"},
        {"null, PolygonZ and multipoint skipped, zero padding after the last record", skipped, "", 0, "Point 4", nullptr,
         {{LOAD_SHP_NULL, 1, "record 1"}, {LOAD_SHP_MULTIPOINT, 1, "record 3"}, {LOAD_SHP_POLYGONZ, 1, "record 2"}}, "", "point 1"},
        {"one counter-clockwise ring", TShpBytes().Record(4, PolyContent(5, {0}, SquareRing(.01, 0))).Bytes(), "", 0, "4.1/17", nullptr, {}, "", "-"},
        {"the only record is numbered 0", TShpBytes().Record(0, point).Bytes(), "", 0, "", nullptr,
         {{LOAD_SHP_TRAILING_BYTES, 28, "after the header, at byte 100 (a record numbered 0 ends the data)"}}, "", ""},
        {"points kept though not geographic", kept, "", 0, "1.1/18 Point 2 3.1/18", nullptr,
         {{LOAD_KEPT_OUT_OF_RANGE, 2, "record 1"}, {LOAD_KEPT_PROJECTED, 1, "record 2"}}, "", "boundary 2, point 1"},
        {"projected, answered No: loaded, ends with its class", utm, "nn", 1, "1.1/18", "", {{LOAD_KEPT_PROJECTED, 2, "record 1"}},
         "after record 1: its last point (5000100, 500100) looks projected; it was the last record", "boundary 1"},
        {"projected, answered No then Yes: stop", utm, "ny", 6080, "", "", {}, "", "-"},
        {"projected, answered Yes", utm, "y", GISFILE_ERR_CANCELLED, "", "", {},
         "at record 1: the projected-coordinate question about (5000000, 500000) was answered Yes; the rest of the file was not read", ""},
        {"a last point out of range stops the load", stops.Bytes(), "", 2, "Point 1 2.1/18", nullptr, {{LOAD_KEPT_OUT_OF_RANGE, 1, "record 2"}},
         "after record 2: its last point (95, 200) is outside the degree range; records 3.. were not read, 3 records", "boundary 1, point 1"},
        {"part index past the points", line({0, 5}), "", 6003, "Point 1", "starts at point 5 of 4", {},
         "at record 2: the record is damaged: part 2 starts at point 5 of 4: past the record's last point", "point 1"},
        {"negative part start", line({-1}), "", 6003, "Point 1", "starts at point -1", {}, "", "-"},
        {"parts going backwards", line({0, 3, 2}), "", 6003, "Point 1", "starts at point 2", {}, "", "-"},
        {"point count 2^31-1", line({0}, -1, 0x7FFFFFFF), "", 6003, "Point 1", "1 parts and 2147483647 points need", {}, "", "-"},
        {"part count 2^31-16", line({0}, 0x7FFFFFF0), "", 6003, "Point 1", "2147483632 parts and 4 points need", {}, "", "-"},
        // A record header or content that the file cannot complete ends the data.
        {"record length past the end", afterPoint(cut, 1000), "", 0, "Point 1", nullptr,
         {{LOAD_SHP_TRAILING_BYTES, static_cast<long long>(8 + cut.size()), longer}}, "", "point 1"},
        {"record length 2^31-1 words", afterPoint(cut, 0x7FFFFFFF), "", 0, "Point 1", nullptr, {}, "", "-"},
        {"file cut inside a record header", afterPoint("").substr(0, 133), "", 0, "Point 1", nullptr, {}, "", "-"},
        {"last record cut short", afterPoint(cut).substr(0, 200), "", 0, "Point 1", nullptr, {}, "", "-"},
        {"junk after ten records", ten.Raw("\x01junk").Bytes(), "", 0, tenNames, nullptr,
         {{LOAD_SHP_TRAILING_BYTES, 5, "after record 10 (the file ends 5 bytes into the header of the record after record 10)"}}, "", "point 10"},
        {"negative record length", afterPoint(cut, 0xFFFFFFFF), "", 6003, "Point 1", "a length cannot be negative", {}, "", "-"},
        {"record of no content", afterPoint(""), "", 6003, "Point 1", "0 bytes of content", {}, "", "-"},
        {"file cut inside the header", TShpBytes().Bytes().substr(0, 60), "", 6002, "", "fewer than the 100", {}, "", "-"},
        {"not a shapefile", TShpBytes().Record(1, point).Bytes(9995), "", GISFILE_ERR_OPEN, "", "", {},
         "at the file header: the file does not start with the shapefile code 9994 (it has 9995)", ""},
    };
    // clang-format on
    EnsureLibraryStarted();  // its notices are not the reader's
    for (const TShpCase& c : cases) {
        TTempDir dir;
        WriteFileBytes(dir.File("test.shp"), c.bytes);
        const std::vector<int> script = ScriptedAnswers(c.answers);
        TLoadReport report;
        const TLoaded with = Load(dir.File("test.shp"), script, &report);
        const TLoaded without = Load(dir.File("test.shp"), script, nullptr);
        EXPECT_EQ(with.iResult, c.result) << c.name;
        EXPECT_EQ(without.iResult, c.result) << c.name;
        EXPECT_EQ(with.strElements, c.elements) << c.name;
        EXPECT_EQ(without.strElements, c.elements) << c.name;
        EXPECT_EQ(with.Shown.size(), c.message ? std::max<std::size_t>(script.size(), 1) : 0) << c.name;
        for (const TMessageBoxRequest& m : with.Shown)
            EXPECT_TRUE(m.strText.find(c.message) != std::string::npos &&
                        (!script.empty() || m.strText.find("test.shp") != std::string::npos))
                << c.name << ": " << m.strText;
        if (c.added == "-") continue;
        EXPECT_EQ(DescribeReport(report), DescribeWanted(c.skips, c.stop)) << c.name;
        EXPECT_EQ(DescribeAdded(report), c.added) << c.name;
        EXPECT_EQ(report.IsIncomplete(), c.result != 0 || !c.stop.empty() || c.added.empty()) << c.name;
    }
}

// A file of 200,000 Null records loads with as many allocations as a file of one.
TEST(ShpReader, RepeatedCausesCostNoAllocationEach) {
    EnsureLibraryStarted();
    TTempDir dir;
    ExpectNoAllocationPerOccurrence(dir.File("nulls.shp"), LOAD_SHP_NULL, 200000, [&](int n) {
        TShpBytes b;
        for (int i = 1; i <= n; ++i) b.Record(i, std::string(4, '\0'));
        WriteFileBytes(dir.File("nulls.shp"), b.Bytes());
    });
}

// Writes points, lines (record 7 of three parts) and polygons (with a hole, and two outer rings)
// as GeoJSON, and as shapefiles through pyshp or GDAL. Rings already have the shapefile's
// orientation, so no writer reorders vertices. For each set it writes what loading must give:
// "id/bound type:" and every vertex to 13 decimals (finer than the 1e-12 degrees that must be
// kept), and the areas of the rings as the library measures them: UTM zone 15 (the zone of the
// second vertex) from PROJ's cs2cs, shoelace, less 0.18 percent.
static const char* const kGenerator = R"(
import json, math, os, shutil, subprocess, sys
folder, writer = sys.argv[1], sys.argv[2]
def ring(cx, cy, r, n, cw):
    a = [(-1 if cw else 1) * 2 * math.pi * (i % n) / n + 0.3 for i in range(n + 1)]
    return [[cx + r * 1.4 * math.cos(t), cy + r * math.sin(t)] for t in a]
def path(x, y, n):
    return [[x + i * 0.000123456789012345, y + i * i * 0.0000987654321098] for i in range(n)]
sets = {
    "points": [("Point", [-93.25 - i * 0.001234567890123, 45.5 + i * 0.000987654321987]) for i in range(1, 13)],
    "lines": [("MultiLineString", [path(-93.2 + i * 0.01, 45.45, 2 + i % 3)]) for i in range(1, 7)]
    + [("MultiLineString", [path(-93.3, 45.4, 2), path(-93.31, 45.41, 3), path(-93.32, 45.42, 4)])],
    "polygons": [("MultiPolygon", [[ring(-93.25, 45.5, 0.01, 7, 1), ring(-93.25, 45.5, 0.003, 5, 0)]]),
                 ("MultiPolygon", [[ring(-93.2, 45.52, 0.004, 11, 1)]]),
                 ("MultiPolygon", [[ring(-93.3, 45.48, 0.005, 6, 1)], [ring(-93.28, 45.48, 0.002, 4, 1)]])]}
for name, shapes in sets.items():
    stem = os.path.join(folder, name)
    geoms = [{"type": t, "coordinates": c} for t, c in shapes]
    feats = [{"type": "Feature", "properties": {"NAME": "x"}, "geometry": g} for g in geoms]
    json.dump({"type": "FeatureCollection", "features": feats}, open(stem + ".geojson", "w"))
    if writer == "gdal":
        subprocess.run(["ogr2ogr", "-f", "ESRI Shapefile", stem + ".shp", stem + ".geojson"], check=True)
    if writer == "pyshp":
        import shapefile
        w = shapefile.Writer(stem)
        w.field("NAME", "C")
        for g in geoms:
            w.shape(g)
            w.record("x")
        w.close()
    dump, rings = "", []
    for n, (t, c) in enumerate(shapes, 1):
        if t == "Point":
            dump += "Point %d/0: %.13f,%.13f\n" % (n, c[0], c[1])
            continue
        parts = [(p, 18) for p in c] if t != "MultiPolygon" else [(r, 17 if k else 16) for g in c for k, r in enumerate(g)]
        for k, (p, b) in enumerate(parts, 1):
            dump += "%d.%d/%d:" % (n, k, b) + "".join(" %.13f,%.13f" % (x, y) for x, y in p) + "\n"
            rings += [p] if b != 18 else []
    open(stem + ".txt", "w").write(dump)
    for r in rings if shutil.which("cs2cs") else []:
        cmd = "cs2cs -f %.6f +proj=longlat +datum=WGS84 +to +proj=utm +zone=15 +datum=WGS84"
        out = subprocess.run(cmd.split(), input="".join("%.17g %.17g\n" % (x, y) for x, y in r), capture_output=True, text=True).stdout
        en = [[float(v) for v in line.split()[:2]] for line in out.splitlines()]
        twice = sum(en[i][0] * en[i + 1][1] - en[i + 1][0] * en[i][1] for i in range(len(en) - 1))
        open(stem + ".areas", "a").write("%.6f\n" % (abs(twice) / 2 * (1 - 0.0018)))
)";

static std::string Vertex(double x, double y) {
    char buf[80];
    std::snprintf(buf, sizeof buf, " %.13f,%.13f", x, y);
    return buf;
}

static void LoadWhatAPeerWrote(const char* writer) {
    TTempDir dir;
    const TCommandResult made = RunPeerScript(dir, kGenerator, writer);
    ASSERT_EQ(made.iExit, 0) << made.strOut;
    for (const std::string name : {"points", "lines", "polygons"}) {
        SCOPED_TRACE(name);
        const std::string stem = dir.File(name);
        EnsureLibraryStarted();
        TScriptedMessages messages;
        TMapLayer layer;
        ASSERT_EQ(TGisMap().LoadFile((stem + ".shp").c_str(), &layer, nullptr), 0);
        EXPECT_TRUE(messages.Shown().empty());
        std::string loaded;
        for (const TMapElement* e : layer.m_Elements) {
            const auto* line = dynamic_cast<const TFeatureLine*>(e);
            const auto* point = dynamic_cast<const TFeaturePoint*>(e);
            loaded += e->m_strId + "/" + std::to_string(line ? line->m_iBoundType : 0) + ":";
            if (point) loaded += Vertex(point->m_Loc.dLon, point->m_Loc.dLat);
            for (int i = 0; line && i < line->m_iNumPoints; ++i)
                loaded += Vertex(line->m_pPoints[i].dLon, line->m_pPoints[i].dLat);
            loaded += "\n";
        }
        EXPECT_EQ(loaded, ReadFileBytes(stem + ".txt"));
        std::istringstream areas(ReadFileBytes(stem + ".areas"));
        std::size_t i = 0;
        for (double area; areas >> area; ++i) {
            ASSERT_LT(i, layer.m_Polygons.size()) << "one polygon record per ring";
            EXPECT_NEAR(layer.m_Polygons[i].dArea / area, 1.0, 1e-6) << "ring " << i;
        }
        EXPECT_TRUE(i == 0 || i == layer.m_Polygons.size()) << "one polygon record per ring";
        if (name == "polygons" && !HaveProgram("cs2cs"))
            std::printf("cs2cs (PROJ) is missing: areas not compared\n");
    }
}

TEST(ShpReader, FilesWrittenByPyshp) {
    SKIP_WITHOUT_LINUX_PEERS();
    SKIP_WITHOUT_PEER("pyshp");
    LoadWhatAPeerWrote("pyshp");
}

TEST(ShpReader, FilesWrittenByGdal) {
    SKIP_WITHOUT_LINUX_PEERS();
    SKIP_WITHOUT_PEER("gdal");
    LoadWhatAPeerWrote("gdal");
}
