// The drawing surface: locations to logical units (north up, east right, the scale rule),
// clipping, the recorded commands and their SVG document.

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "hostmap/map_image.h"
#include "hostmap/map_layer.h"
#include "test_support.h"

namespace {

TEST(MapImage, NorthUpEastRightScaleAndClipping) {
    struct TView {
        double lat, lon, halfLat, halfLon;
    };
    const TView views[] = {{45.0, 6.0, 0.01, 0.014}, {-33.8, 151.2, 0.05, 0.05}, {62.0, -100.0, 0.2, 0.1}};
    for (const TView& v : views) {
        const TLocRect rect(v.lon - v.halfLon, v.lat + v.halfLat, v.lon + v.halfLon, v.lat - v.halfLat);
        const TMapImage image(rect, 800);
        const TLoc centre(v.lat, v.lon);
        EXPECT_EQ(image.Loc2LP(centre), (TPointLP{0, 0})) << v.lat;
        for (const double bearing : {0.0, 90.0, 180.0, 270.0}) {
            const TPointLP p = image.Loc2LP(centre.Offset(bearing, 200.0));
            const double units = 200.0 * 100000.0 / image.GetScale();
            EXPECT_NEAR(p.x, std::round(std::sin(bearing * M_PI / 180)) * units, 1.0 + units * 1e-4)
                << v.lat << " bearing " << bearing;
            EXPECT_NEAR(p.y, std::round(std::cos(bearing * M_PI / 180)) * units, 1.0 + units * 1e-4)
                << v.lat << " bearing " << bearing;
        }
        const TRectLP& vis = image.GetVisibleRect();
        EXPECT_NEAR(image.LocRect2LP(rect).bottom, vis.bottom, 1) << v.lat;
        const TLoc farNorthEast(v.lat + 1.0, v.lon + 1.0);
        EXPECT_GT(image.Loc2LP(farNorthEast, false).y, vis.top) << v.lat;
        EXPECT_EQ(image.Loc2LP(farNorthEast, true), (TPointLP{vis.right, vis.top})) << v.lat;
    }
}

TEST(MapImage, WildLocationsAndViews) {
    const double nan = std::numeric_limits<double>::quiet_NaN(),
                 inf = std::numeric_limits<double>::infinity();
    const TMapImage image(TLocRect(5.99, 45.01, 6.01, 44.99), 800);
    for (const tagLOC loc : {tagLOC{nan, nan}, {inf, -inf}, {1e300, -1e300}}) {
        const TPointLP p = image.Loc2LP(loc);
        EXPECT_LE(std::abs(static_cast<long long>(p.x)) + std::abs(static_cast<long long>(p.y)), 2000000000LL)
            << loc.dLat;
    }
    // A point, a reversed view, NaN, a whole meridian or parallel: still a surface within 20:1.
    for (const TLocRect& view : {TLocRect(6, 45, 6, 45), TLocRect(7, 44, 6, 45), TLocRect(nan, nan, nan, nan),
                                 TLocRect(6, 89, 6, -89), TLocRect(-179, 0, 179, 0)}) {
        const TMapImage odd(view, 0);
        EXPECT_GT(odd.GetScale(), 0.0) << view.dWest << " " << view.dNorth;
        EXPECT_GE(odd.GetWidthPx(), 16) << view.dWest << " " << view.dNorth;
        EXPECT_LE(odd.GetHeightPx(), 20 * odd.GetWidthPx()) << view.dWest << " " << view.dNorth;
    }
}

// An included, an excluded and an open boundary, a coloured line and a marker with a name that
// needs escaping, drawn under a decimal-comma locale when the host has one.
TEST(MapImage, RecordsDrawingAndWritesSvg) {
    const TLoc centre(-33.8, 151.2);
    TMapImage image(TLocRect(151.19, -33.79, 151.21, -33.81), 800);
    TMapLayer layer;
    const std::pair<TFeatureLine*, int> lines[] = {{new TFeatureLineBoundary, BOUNDARY_INC},
                                                   {new TFeatureLineBoundary, BOUNDARY_EXC},
                                                   {new TFeatureLineBoundary, BOUNDARY_OPEN},
                                                   {new TFeatureLineMisc, 0}};
    lines[3].first->SetColor(0x00FF8000);
    double offset = -0.004;
    for (const auto& [line, bound] : lines) {
        const double a = centre.dLat + offset, b = centre.dLon + offset, s = 0.001;
        line->AdoptPoints(new tagLOC[5]{{a, b}, {a + s, b}, {a + s, b + s}, {a, b + s}, {a, b}}, 5, 5);
        line->m_iBoundType = bound;
        line->SetLowBits(bound);
        line->CalculateGeoExtents();
        layer.AddElement(line);
        offset += 0.002;
    }
    auto* marker = new TFeatureMarker;
    marker->m_Loc = centre.Offset(45.0, 100.0);
    marker->m_strName = "<A&B> \"caf\xE9\"\x01";
    marker->CalculateGeoExtents();
    layer.AddElement(marker);

    const char* comma = nullptr;
    for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8", "fr_FR.utf8"})
        if (comma == nullptr && std::setlocale(LC_NUMERIC, name) != nullptr) comma = name;
    layer.Draw(image);
    const std::string svg = image.ToSvg("Field \"7\" & <co>");
    std::setlocale(LC_NUMERIC, "C");

    std::vector<int> kinds;
    for (const TDrawCommand& c : image.GetDC().Commands()) kinds.push_back(c.eKind);
    using K = TDrawCommand;
    EXPECT_EQ(kinds,
              (std::vector<int>{K::Polygon, K::Polygon, K::Polyline, K::Polyline, K::Ellipse, K::Text}));
    ASSERT_EQ(kinds.size(), 6u);
    EXPECT_EQ(image.GetDC().Commands()[1].brush.iStyle, BS_HATCHED) << "an excluded area is hatched";
    EXPECT_EQ(image.GetDC().Commands()[3].pen.dwColor, 0x00FF8000u) << "a line's own colour wins";
    EXPECT_NE(svg.find("stroke-width=\"1.0\""), std::string::npos) << (comma ? comma : "C");

    const std::string python = TL_GIS_PYTHON;
    if (!HaveProgram(python)) GTEST_SKIP() << python << " is not installed";
    TTempDir dir;
    WriteFileBytes(dir.File("map.svg"), svg);
    WriteFileBytes(dir.File("check.py"),
                   "import sys, xml.dom.minidom as m\n"
                   "d = m.parse(sys.argv[1]); s = d.documentElement\n"
                   "n = lambda t: len(d.getElementsByTagName(t))\n"
                   "print(n('polygon'), n('polyline'), n('ellipse'), n('text'))\n"
                   "print(d.getElementsByTagName('title')[0].firstChild.data)\n"
                   "print(d.getElementsByTagName('text')[0].firstChild.data)\n"
                   "e = d.getElementsByTagName('ellipse')[0]\n"
                   "print(float(e.getAttribute('cx')) > float(s.getAttribute('width')) / 2 and "
                   "float(e.getAttribute('cy')) < float(s.getAttribute('height')) / 2)\n");
    const TCommandResult r = RunCommand(ShellQuote(python) + " " + ShellQuote(dir.File("check.py")) + " " +
                                        ShellQuote(dir.File("map.svg")));
    ASSERT_EQ(r.iExit, 0) << r.strErr << "\n" << svg;
    EXPECT_EQ(r.strOut, "2 2 1 1\nField \"7\" & <co>\n<A&B> \"caf?\" \nTrue\n");
}

}  // namespace
