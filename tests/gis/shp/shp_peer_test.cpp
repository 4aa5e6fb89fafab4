// Shapefiles written by independent writers (pyshp, GDAL's ogr2ogr) from the same GeoJSON load
// with every vertex, part name, ring type and polygon area as they were written.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <functional>
#include <sstream>

#include "gis/gis_map.h"
#include "gis/language.h"
#include "shp_test_support.h"

using namespace shp_test;

namespace {
using TRing = std::vector<TXY>;

struct TShape {
    std::vector<TRing> Parts;
    std::vector<int> BoundTypes;  // expected per part: 18 lines, 16 and 17 rings; none for a point
};

// A closed ring of n vertices around a centre, clockwise (north up) when cw.
TRing Ring(double cx, double cy, double r, int n, bool cw) {
    TRing ring;
    for (int i = 0; i <= n; ++i) {
        const double a = (cw ? -1.0 : 1.0) * 2.0 * M_PI * (i % n) / n + 0.3;
        ring.push_back({cx + r * 1.4 * std::cos(a), cy + r * std::sin(a)});
    }
    return ring;
}

TRing Path(double x, double y, int n) {
    TRing path;
    for (int i = 0; i < n; ++i)
        path.push_back({x + i * 0.000123456789012345, y + i * i * 0.0000987654321098});
    return path;
}

// Points, lines (record 7 of three parts) and polygons, already in the shapefile's ring
// orientation so that no writer reorders vertices.
std::vector<std::vector<TShape>> MakeShapeSets() {
    std::vector<TShape> points, lines;
    for (int i = 1; i <= 12; ++i)
        points.push_back({{{{-93.25 - i * 0.001234567890123, 45.5 + i * 0.000987654321987}}}, {}});
    for (int i = 1; i <= 6; ++i) lines.push_back({{Path(-93.2 + i * 0.01, 45.45, 2 + i % 3)}, {18}});
    lines.push_back({{Path(-93.3, 45.4, 2), Path(-93.31, 45.41, 3), Path(-93.32, 45.42, 4)}, {18, 18, 18}});
    return {points,
            lines,
            {{{Ring(-93.25, 45.5, 0.01, 7, true), Ring(-93.25, 45.5, 0.003, 5, false)}, {16, 17}},
             {{Ring(-93.2, 45.52, 0.004, 11, true)}, {16}},
             {{Ring(-93.3, 45.48, 0.005, 6, true), Ring(-93.28, 45.48, 0.002, 4, true)}, {16, 16}}}};
}

std::string Num(double v, const char* format = "%.17g") {
    char buf[40];
    std::snprintf(buf, sizeof buf, format, v);
    return buf;
}

std::string PointList(const TRing& ring) {
    std::string s;
    for (const auto& [x, y] : ring) s += (s.empty() ? "[[" : ",[") + Num(x) + "," + Num(y) + "]";
    return s + "]";
}

std::string GeoJson(const std::vector<TShape>& shapes) {
    std::string js;
    for (const TShape& shape : shapes) {
        const bool point = shape.BoundTypes.empty(), polygons = !point && shape.BoundTypes[0] != 18;
        std::string coords;
        for (std::size_t p = 0; p < shape.Parts.size(); ++p)  // a hole joins the polygon before it
            coords += (p == 0                                  ? ""
                       : polygons && shape.BoundTypes[p] == 16 ? "],["
                                                               : ",") +
                      PointList(shape.Parts[p]);
        coords = point      ? coords.substr(1, coords.size() - 2)
                 : polygons ? "[[" + coords + "]]"
                            : "[" + coords + "]";
        js += std::string(js.empty() ? "" : ",") +
              R"({"type":"Feature","properties":{"NAME":"x"},"geometry":{"type":")" +
              (point      ? "Point"
               : polygons ? "MultiPolygon"
                          : "MultiLineString") +
              R"(","coordinates":)" + coords + "}}";
    }
    return R"({"type":"FeatureCollection","features":[)" + js + "]}";
}

// Elements as "id/bound type:" and their vertices to 13 decimals, finer than the 1e-12 degrees
// that must be kept.
std::string Vertex(double x, double y) {
    return " " + Num(x, "%.13f") + "," + Num(y, "%.13f");
}

std::string Expected(const std::vector<TShape>& shapes) {
    std::string out;
    for (std::size_t s = 0; s < shapes.size(); ++s)
        for (std::size_t p = 0; p < shapes[s].Parts.size(); ++p) {
            const std::vector<int>& bound = shapes[s].BoundTypes;
            out += bound.empty() ? "Point " + std::to_string(s + 1) + "/0:"
                                 : std::to_string(s + 1) + "." + std::to_string(p + 1) + "/" +
                                       std::to_string(bound[p]) + ":";
            for (const auto& [x, y] : shapes[s].Parts[p]) out += Vertex(x, y);
            out += "\n";
        }
    return out;
}

std::string Loaded(const TMapLayer& layer) {
    std::string out;
    for (const TMapElement* e : layer.m_Elements) {
        const auto* line = dynamic_cast<const TFeatureLine*>(e);
        const auto* point = dynamic_cast<const TFeaturePoint*>(e);
        out += e->m_strId + "/" + std::to_string(line ? line->m_iBoundType : 0) + ":";
        if (point) out += Vertex(point->m_Loc.dLon, point->m_Loc.dLat);
        for (int i = 0; line && i < line->m_iNumPoints; ++i)
            out += Vertex(line->m_pPoints[i].dLon, line->m_pPoints[i].dLat);
        out += "\n";
    }
    return out;
}

// Ring areas as the library measures them: UTM zone 15 (the zone of the second vertex) from
// PROJ's cs2cs, shoelace, less 0.18 percent.
bool UtmAreas(const std::vector<const TRing*>& rings, std::vector<double>& areas, const TTempDir& dir) {
    std::string input;
    for (const TRing* ring : rings)
        for (const auto& [x, y] : *ring) input += Num(x) + " " + Num(y) + "\n";
    WriteFileBytes(dir.File("lonlat.txt"), input);
    const TCommandResult r =
        RunCommand("cs2cs -f %.6f +proj=longlat +datum=WGS84 +to +proj=utm +zone=15 +datum=WGS84 " +
                   ShellQuote(dir.File("lonlat.txt")));
    std::istringstream out(r.strOut);
    for (const TRing* ring : rings) {
        std::vector<TXY> en(ring->size());
        double z = 0, twice = 0;
        for (auto& [e, n] : en) out >> e >> n >> z;
        for (std::size_t i = 0; i + 1 < en.size(); ++i)
            twice += en[i].first * en[i + 1].second - en[i + 1].first * en[i].second;
        areas.push_back(std::fabs(twice) / 2.0 * (1.0 - 0.0018));
    }
    return r.iExit == 0 && static_cast<bool>(out);
}

void LoadWhatAPeerWrote(const std::function<std::string(const std::string&, const std::string&)>& command) {
    TTempDir dir;
    for (const std::vector<TShape>& shapes : MakeShapeSets()) {
        const std::string json = dir.File("in.geojson"),
                          shp = dir.File(std::to_string(shapes.size()) + ".shp");
        WriteFileBytes(json, GeoJson(shapes));
        const TCommandResult r = RunCommand(command(json, shp) + " 2>&1");
        ASSERT_EQ(r.iExit, 0) << r.strOut;
        EnsureLibraryStarted();
        TScriptedMessages messages;
        TMapLayer layer;
        ASSERT_EQ(TGisMap().LoadFile(shp.c_str(), &layer, nullptr), 0);
        EXPECT_TRUE(messages.Shown().empty());
        EXPECT_EQ(Loaded(layer), Expected(shapes));
        std::vector<const TRing*> rings;
        for (const TShape& shape : shapes)
            for (std::size_t p = 0; p < shape.Parts.size(); ++p)
                if (!shape.BoundTypes.empty() && shape.BoundTypes[p] != 18) rings.push_back(&shape.Parts[p]);
        std::vector<double> areas;
        if (rings.empty()) continue;
        if (!HaveProgram("cs2cs") || !UtmAreas(rings, areas, dir)) {
            std::printf("cs2cs (PROJ) is missing: polygon areas not compared\n");
            continue;
        }
        ASSERT_EQ(layer.m_Polygons.size(), rings.size());
        for (std::size_t i = 0; i < rings.size(); ++i)
            EXPECT_NEAR(layer.m_Polygons[i].dArea / areas[i], 1.0, 1e-6) << i;
    }
}

TEST(ShpPeers, FilesWrittenByPyshp) {
    if (RunCommand(std::string(TL_GIS_PYTHON) + " -c 'import shapefile'").iExit != 0)
        GTEST_SKIP() << "pyshp is missing for " TL_GIS_PYTHON " (scripts/install-test-tools.sh installs it)";
    LoadWhatAPeerWrote([](const std::string& json, const std::string& shp) {
        return std::string(TL_GIS_PYTHON) + R"( -c 'import json, sys, shapefile
w = shapefile.Writer(sys.argv[2])
w.field("NAME", "C")
for f in json.load(open(sys.argv[1]))["features"]:
    w.shape(f["geometry"]); w.record("x")
w.close()' )" + ShellQuote(json) +
               " " + ShellQuote(shp);
    });
}

TEST(ShpPeers, FilesWrittenByGdal) {
    if (!HaveProgram("ogr2ogr"))
        GTEST_SKIP() << "ogr2ogr (GDAL) is missing (scripts/install-test-tools.sh installs it)";
    LoadWhatAPeerWrote([](const std::string& json, const std::string& shp) {
        return "ogr2ogr -f 'ESRI Shapefile' " + ShellQuote(shp) + " " + ShellQuote(json);
    });
}
}  // namespace
