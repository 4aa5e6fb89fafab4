// Shapefiles written by independent writers (pyshp, GDAL's ogr2ogr) load with every vertex,
// part name, ring type and polygon area as they were written.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <sstream>
#include <string>
#include <vector>

#include "gis/gis_map.h"
#include "gis/language.h"
#include "test_support.h"

namespace {
using TRing = std::vector<std::pair<double, double>>;  // (x = longitude, y = latitude)

struct TShape {
    std::vector<TRing> Parts;
    std::vector<int> BoundTypes;  // expected per part; points have none
};

struct TShapeSet {
    const char* pszName;     // file stem
    const char* pszPyshp;    // pyshp shape type constant
    const char* pszGeoJson;  // GeoJSON geometry type
    std::vector<TShape> Shapes;
};

// A ring of n vertices around a centre, clockwise when cw (north up), closed.
TRing Ring(double cx, double cy, double r, int n, bool cw) {
    TRing ring;
    for (int i = 0; i < n; ++i) {
        const double a = (cw ? -1.0 : 1.0) * 2.0 * M_PI * i / n + 0.3;
        ring.push_back({cx + r * 1.4 * std::cos(a), cy + r * std::sin(a)});
    }
    ring.push_back(ring.front());
    return ring;
}

TRing Path(double x, double y, int n) {
    TRing path;
    for (int i = 0; i < n; ++i)
        path.push_back({x + i * 0.000123456789012345, y + i * i * 0.0000987654321098});
    return path;
}

std::vector<TShapeSet> MakeShapeSets(bool withSingleCounterClockwise) {
    TShapeSet points{"points", "POINT", "Point", {}};
    for (int i = 1; i <= 12; ++i)
        points.Shapes.push_back({{{{-93.25 - i * 0.001234567890123, 45.5 + i * 0.000987654321987}}}, {}});

    TShapeSet lines{"lines", "POLYLINE", "MultiLineString", {}};
    for (int i = 1; i <= 6; ++i) lines.Shapes.push_back({{Path(-93.2 + i * 0.01, 45.45, 2 + i % 3)}, {18}});
    lines.Shapes.push_back(
        {{Path(-93.3, 45.4, 2), Path(-93.31, 45.41, 3), Path(-93.32, 45.42, 4)}, {18, 18, 18}});

    TShapeSet polygons{"polygons", "POLYGON", "MultiPolygon", {}};
    polygons.Shapes.push_back(
        {{Ring(-93.25, 45.5, 0.01, 7, true), Ring(-93.25, 45.5, 0.003, 5, false)}, {16, 17}});
    polygons.Shapes.push_back({{Ring(-93.2, 45.52, 0.004, 11, true)}, {16}});
    polygons.Shapes.push_back(
        {{Ring(-93.3, 45.48, 0.005, 6, true), Ring(-93.28, 45.48, 0.002, 4, true)}, {16, 16}});
    if (withSingleCounterClockwise) polygons.Shapes.push_back({{Ring(-93.22, 45.47, 0.004, 9, false)}, {17}});
    return {points, lines, polygons};
}

std::string Num(double v) {
    char buf[40];
    std::snprintf(buf, sizeof buf, "%.17g", v);
    return buf;
}

std::string PointList(const TRing& ring) {
    std::string s = "[";
    for (const auto& [x, y] : ring) s += (s.size() > 1 ? ",[" : "[") + Num(x) + "," + Num(y) + "]";
    return s + "]";
}

std::string PyshpScript(const TShapeSet& set, const std::string& path) {
    std::string py = "import shapefile\nw = shapefile.Writer(" + ShellQuote(path) + ", shapeType=shapefile." +
                     set.pszPyshp + ")\nw.field('NAME', 'C')\n";
    for (const TShape& shape : set.Shapes) {
        if (std::string(set.pszPyshp) == "POINT") {
            py += "w.point(" + Num(shape.Parts[0][0].first) + "," + Num(shape.Parts[0][0].second) + ")\n";
        } else {
            py += std::string(std::string(set.pszPyshp) == "POLYGON" ? "w.poly([" : "w.line([");
            for (const TRing& part : shape.Parts) py += PointList(part) + ",";
            py += "])\n";
        }
        py += "w.record('x')\n";
    }
    return py + "w.close()\n";
}

std::string GeoJson(const TShapeSet& set) {
    std::string js = "{\"type\":\"FeatureCollection\",\"features\":[";
    bool first = true;
    for (const TShape& shape : set.Shapes) {
        js += first ? "" : ",";
        first = false;
        js += "{\"type\":\"Feature\",\"properties\":{\"NAME\":\"x\"},\"geometry\":{\"type\":\"";
        js += set.pszGeoJson;
        js += "\",\"coordinates\":";
        if (std::string(set.pszGeoJson) == "Point") {
            js += "[" + Num(shape.Parts[0][0].first) + "," + Num(shape.Parts[0][0].second) + "]";
        } else {
            js += "[";
            for (std::size_t p = 0; p < shape.Parts.size(); ++p) {
                // Each ring of a multipolygon is a polygon of its own unless it is a hole.
                const bool polygon = std::string(set.pszGeoJson) == "MultiPolygon";
                const bool hole = polygon && shape.BoundTypes[p] == 17;
                if (p > 0) js += hole ? "," : (polygon ? "]," : ",");
                if (polygon && !hole) js += "[";
                js += PointList(shape.Parts[p]);
            }
            js += std::string(std::string(set.pszGeoJson) == "MultiPolygon" ? "]" : "") + "]";
        }
        js += "}}";
    }
    return js + "]}";
}

// Areas of the rings as the library measures them: UTM zone of the second vertex (15 here),
// shoelace, less 0.18 percent. The projection comes from PROJ's cs2cs.
bool UtmAreas(const std::vector<const TRing*>& rings, std::vector<double>& areas, const TTempDir& dir) {
    std::string input;
    for (const TRing* ring : rings)
        for (const auto& [x, y] : *ring) input += Num(x) + " " + Num(y) + "\n";
    const std::string in = dir.File("lonlat.txt");
    WriteFileBytes(in, input);
    const TCommandResult r = RunCommand(
        "cs2cs -f %.6f +proj=longlat +datum=WGS84 +to +proj=utm +zone=15 +datum=WGS84 " + ShellQuote(in));
    if (r.iExit != 0) return false;
    std::istringstream out(r.strOut);
    for (const TRing* ring : rings) {
        std::vector<std::pair<double, double>> en;
        for (std::size_t i = 0; i < ring->size(); ++i) {
            double e = 0, n = 0, z = 0;
            out >> e >> n >> z;
            en.push_back({e, n});
        }
        double twice = 0.0;
        for (std::size_t i = 0; i + 1 < en.size(); ++i)
            twice += en[i].first * en[i + 1].second - en[i + 1].first * en[i].second;
        areas.push_back(std::fabs(twice) / 2.0 * (1.0 - 0.0018));
    }
    return static_cast<bool>(out);
}

void ExpectLoadedAsWritten(const std::string& path, const TShapeSet& set, const char* writer,
                           const TTempDir& dir) {
    EnsureLibraryStarted();
    TScriptedMessages messages;
    TMapLayer layer;
    ASSERT_EQ(TGisMap().LoadFile(path.c_str(), &layer, nullptr), 0) << writer << " " << set.pszName;
    EXPECT_TRUE(messages.Shown().empty()) << writer << " " << set.pszName;
    std::size_t e = 0;
    std::vector<const TRing*> rings;
    for (std::size_t s = 0; s < set.Shapes.size(); ++s) {
        const TShape& shape = set.Shapes[s];
        const std::string record = std::to_string(s + 1);
        if (shape.BoundTypes.empty()) {
            ASSERT_LT(e, layer.m_Elements.size()) << writer << " " << set.pszName;
            const auto* point = dynamic_cast<const TFeaturePoint*>(layer.m_Elements[e++]);
            ASSERT_NE(point, nullptr);
            EXPECT_EQ(point->m_strId, "Point " + record) << writer;
            EXPECT_NEAR(point->m_Loc.dLon, shape.Parts[0][0].first, 1e-12) << writer << " point " << record;
            EXPECT_NEAR(point->m_Loc.dLat, shape.Parts[0][0].second, 1e-12) << writer << " point " << record;
            continue;
        }
        for (std::size_t p = 0; p < shape.Parts.size(); ++p) {
            const std::string name = record + "." + std::to_string(p + 1);
            ASSERT_LT(e, layer.m_Elements.size()) << writer << " " << set.pszName << " " << name;
            const auto* line = dynamic_cast<const TFeatureLine*>(layer.m_Elements[e++]);
            ASSERT_NE(line, nullptr);
            EXPECT_EQ(line->m_strId, name) << writer;
            EXPECT_EQ(line->m_iBoundType, shape.BoundTypes[p]) << writer << " " << name;
            const TRing& part = shape.Parts[p];
            ASSERT_EQ(line->m_iNumPoints, static_cast<int>(part.size())) << writer << " " << name;
            int off = 0;
            for (std::size_t i = 0; i < part.size(); ++i)
                off += std::fabs(line->m_pPoints[i].dLon - part[i].first) > 1e-12 ||
                       std::fabs(line->m_pPoints[i].dLat - part[i].second) > 1e-12;
            EXPECT_EQ(off, 0) << writer << " " << name << ": vertices differ";
            if (shape.BoundTypes[p] != 18) rings.push_back(&part);
        }
    }
    EXPECT_EQ(e, layer.m_Elements.size()) << writer << " " << set.pszName;
    if (rings.empty()) return;
    std::vector<double> areas;
    if (!HaveProgram("cs2cs") || !UtmAreas(rings, areas, dir)) {
        std::printf("cs2cs (PROJ) is missing: polygon areas not compared\n");
        return;
    }
    ASSERT_EQ(layer.m_Polygons.size(), rings.size());
    for (std::size_t i = 0; i < rings.size(); ++i)
        EXPECT_NEAR(layer.m_Polygons[i].dArea / areas[i], 1.0, 1e-6) << writer << " ring " << i;
}

TEST(ShpPeers, FilesWrittenByPyshp) {
    if (RunCommand(std::string(TL_GIS_PYTHON) + " -c 'import shapefile'").iExit != 0)
        GTEST_SKIP() << "pyshp is missing for " TL_GIS_PYTHON " (scripts/install-test-tools.sh installs it)";
    TTempDir dir;
    for (const TShapeSet& set : MakeShapeSets(true)) {
        const std::string stem = dir.File(set.pszName);
        const std::string script = dir.File(std::string(set.pszName) + ".py");
        WriteFileBytes(script, PyshpScript(set, stem));
        const TCommandResult r = RunCommand(std::string(TL_GIS_PYTHON) + " " + ShellQuote(script));
        ASSERT_EQ(r.iExit, 0) << r.strErr;
        ExpectLoadedAsWritten(stem + ".shp", set, "pyshp", dir);
    }
}

TEST(ShpPeers, FilesWrittenByGdal) {
    if (!HaveProgram("ogr2ogr"))
        GTEST_SKIP() << "ogr2ogr (GDAL) is missing (scripts/install-test-tools.sh installs it)";
    TTempDir dir;
    // GDAL writes rings in the shapefile's orientation whatever it is given; the shapes here
    // already have it, so the vertices keep their order.
    for (const TShapeSet& set : MakeShapeSets(false)) {
        const std::string json = dir.File(std::string(set.pszName) + ".geojson");
        const std::string shp = dir.File(std::string(set.pszName) + ".shp");
        WriteFileBytes(json, GeoJson(set));
        const TCommandResult r =
            RunCommand("ogr2ogr -f 'ESRI Shapefile' " + ShellQuote(shp) + " " + ShellQuote(json) + " 2>&1");
        ASSERT_EQ(r.iExit, 0) << r.strOut << r.strErr;
        ExpectLoadedAsWritten(shp, set, "GDAL", dir);
    }
}
}  // namespace
