// Loading hand-assembled main files (byte orders, skipped records, ends of data, damage, the
// projected-coordinate question), and shapefiles written by independent writers (pyshp, GDAL's
// ogr2ogr) with every vertex, part name, ring type and polygon area as they were written.

#include <gtest/gtest.h>

#include <cstdio>
#include <sstream>

#include <tl_gis/gis/gis_map.h>
#include <tl_gis/gis/language.h>
#include "shp_test_support.h"

using namespace shp_test;

// A record of the type with the points, parts and (to damage it) counts given.
static std::string Poly(std::uint32_t type, const std::vector<TXY>& points,
                        std::vector<std::int32_t> parts = {0}, std::int64_t numParts = -1,
                        std::int64_t numPoints = -1) {
    return PolyContent(type, parts, points, numParts, numPoints);
}

// Each file is loaded, its questions answered No (n) or Yes (y); the elements are "id" for points
// and "id/bound type" for lines, and every message shown must contain the text given (and a
// damage report the file's name).
TEST(ShpReader, LoadsOrRejectsEachFile) {
    const std::vector<TXY> four = {{-93.25, 45.5}, {-93.24, 45.5}, {-93.23, 45.5}, {-93.22, 45.5}};
    const std::string point = PointContent(-93.25, 45.5);
    const auto mixed = [&](bool little) {
        return TShpBytes(little)
            .Record(12, point)
            .Record(7, Poly(3, four, {0, 2}))
            .Record(8, Poly(5, SquareRing(.01, 1)));
    };
    const auto afterPoint = [&](const std::string& content, std::int64_t words = -1) {
        return TShpBytes().Record(1, point).Record(2, content, words).Bytes();
    };
    const std::string utm = TShpBytes().Record(1, Poly(3, {{500000, 5000000}, {500100, 5000100}})).Bytes();
    const std::string skipped = TShpBytes()
                                    .Record(1, std::string(4, '\0'))
                                    .Record(2, Poly(15, four) + std::string(48, '\0'))
                                    .Record(3, MultiPointContent(four))
                                    .Record(4, point)
                                    .Raw(std::string(20, '\0'))
                                    .Bytes();
    TShpBytes tenPoints;
    std::string tenNames;
    for (int i = 1; i <= 10; ++i) {
        tenPoints.Record(i, point);
        tenNames += (i > 1 ? " Point " : "Point ") + std::to_string(i);
    }
    const std::tuple<const char*, std::string, int, const char*, const char*, const char*> cases[] = {
        {"big-endian record headers", mixed(false).Bytes(), 0, "Point 12 7.1/18 7.2/18 8.1/16", nullptr, ""},
        {"little-endian record headers", mixed(true).Bytes(), 0, "Point 12 7.1/18 7.2/18 8.1/16", nullptr,
         ""},
        {"header only", TShpBytes().Bytes(), 0, "", nullptr, ""},
        {"null, PolygonZ and multipoint skipped, trailing zeros", skipped, 0, "Point 4", nullptr, ""},
        {"one counter-clockwise ring", TShpBytes().Record(4, Poly(5, SquareRing(.01, 0))).Bytes(), 0,
         "4.1/17", nullptr, ""},
        {"projected, answered no: loaded, ends with its class", utm, 1, "1.1/18", "", "nn"},
        {"projected, answered yes: stop", utm, 6080, "", "", "ny"},
        {"out of degree range", afterPoint(Poly(3, {{0, 0}, {200, 95}})), 2, "Point 1 2.1/18", nullptr, ""},
        {"part index past the points", afterPoint(Poly(3, four, {0, 5})), 6003, "Point 1",
         "starts at point 5 of 4", ""},
        {"negative part start", afterPoint(Poly(3, four, {-1})), 6003, "Point 1", "starts at point -1", ""},
        {"parts going backwards", afterPoint(Poly(3, four, {0, 3, 2})), 6003, "Point 1", "starts at point 2",
         ""},
        {"point count 2^31-1", afterPoint(Poly(3, four, {0}, -1, 0x7FFFFFFF)), 6003, "Point 1",
         "1 parts and 2147483647 points need", ""},
        {"part count 2^31-16", afterPoint(Poly(3, four, {0}, 0x7FFFFFF0)), 6003, "Point 1",
         "2147483632 parts and 4 points need", ""},
        // A record header or content that the file cannot complete ends the data.
        {"record length past the end", afterPoint(Poly(3, four), 1000), 0, "Point 1", nullptr, ""},
        {"record length 2^31-1 words", afterPoint(Poly(3, four), 0x7FFFFFFF), 0, "Point 1", nullptr, ""},
        {"file cut inside a record header", afterPoint("").substr(0, 133), 0, "Point 1", nullptr, ""},
        {"last record cut short", afterPoint(Poly(3, four)).substr(0, 200), 0, "Point 1", nullptr, ""},
        {"junk after ten records", tenPoints.Raw("\x01junk").Bytes(), 0, tenNames.c_str(), nullptr, ""},
        {"negative record length", afterPoint(Poly(3, four), 0xFFFFFFFF), 6003, "Point 1",
         "a length cannot be negative", ""},
        {"record of no content", afterPoint(""), 6003, "Point 1", "0 bytes of content", ""},
        {"file cut inside the header", TShpBytes().Bytes().substr(0, 60), 6002, "", "fewer than the 100", ""},
    };
    for (const auto& [name, bytes, result, elements, message, answers] : cases) {
        TTempDir dir;
        WriteFileBytes(dir.File("test.shp"), bytes);
        EnsureLibraryStarted();  // its notices are not the reader's
        std::vector<int> script;
        for (const char* a = answers; *a != '\0'; ++a) script.push_back(*a == 'y' ? ANSWER_YES : ANSWER_NO);
        TScriptedMessages messages(script);
        TMapLayer layer;
        EXPECT_EQ(TGisMap().LoadFile(dir.File("test.shp").c_str(), &layer, nullptr), result) << name;
        std::string loaded;
        for (const TMapElement* e : layer.m_Elements) {
            const auto* line = dynamic_cast<const TFeatureLine*>(e);
            loaded += (loaded.empty() ? "" : " ") + e->m_strId +
                      (line ? "/" + std::to_string(line->m_iBoundType) : "");
        }
        EXPECT_EQ(loaded, elements) << name;
        EXPECT_EQ(messages.Shown().size(), message ? std::max<std::size_t>(script.size(), 1) : 0) << name;
        for (const TMessageBoxRequest& m : messages.Shown())
            EXPECT_TRUE(m.strText.find(message) != std::string::npos &&
                        (!script.empty() || m.strText.find("test.shp") != std::string::npos))
                << name << ": " << m.strText;
    }
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
    if (RunCommand(std::string(TL_GIS_PYTHON) + " -c 'import shapefile'").iExit != 0)
        GTEST_SKIP() << "pyshp is missing for " TL_GIS_PYTHON " (scripts/install-test-tools.sh installs it)";
    LoadWhatAPeerWrote("pyshp");
}

TEST(ShpReader, FilesWrittenByGdal) {
    SKIP_WITHOUT_LINUX_PEERS();
    if (!HaveProgram("ogr2ogr"))
        GTEST_SKIP() << "ogr2ogr (GDAL) is missing (scripts/install-test-tools.sh installs it)";
    LoadWhatAPeerWrote("gdal");
}
