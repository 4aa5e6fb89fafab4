// The drawing surface: locations to logical units (north up, east right, the scale rule),
// clipping, and SVG output that an XML parser accepts.

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

// Views of different sizes and hemispheres: centre and half-size in degrees.
struct TView {
    double lat, lon, halfLat, halfLon;
};
const TView kViews[] = {
    {45.0, 6.0, 0.01, 0.014},
    {-33.8, 151.2, 0.05, 0.05},
    {0.0, 0.0, 0.002, 0.01},
    {62.0, -100.0, 0.2, 0.1},
};

TLocRect ViewRect(const TView& v) {
    return TLocRect(v.lon - v.halfLon, v.lat + v.halfLat, v.lon + v.halfLon, v.lat - v.halfLat);
}

TEST(MapImage, NorthUpEastRightAndTheScale) {
    struct TDirection {
        const char* name;
        double bearing;
        int dx, dy;  // expected direction in logical units
    };
    const TDirection directions[] = {
        {"north", 0, 0, 1}, {"east", 90, 1, 0}, {"south", 180, 0, -1}, {"west", 270, -1, 0}};
    for (const TView& v : kViews) {
        const TMapImage image(ViewRect(v), 800);
        const double scale = image.GetScale();
        ASSERT_GT(scale, 0.0);
        const TLoc centre(v.lat, v.lon);
        EXPECT_EQ(image.Loc2LP(centre), (TPointLP{0, 0})) << "view at " << v.lat;
        for (const TDirection& d : directions)
            for (const double metres : {1.0, 25.0, 200.0}) {
                const TPointLP p = image.Loc2LP(centre.Offset(d.bearing, metres));
                const double units = metres * 100000.0 / scale;
                const double tolerance = 1.0 + units * 1e-4;
                EXPECT_NEAR(p.x, d.dx * units, tolerance)
                    << "view at " << v.lat << ", " << metres << " m " << d.name;
                EXPECT_NEAR(p.y, d.dy * units, tolerance)
                    << "view at " << v.lat << ", " << metres << " m " << d.name;
            }
    }
}

TEST(MapImage, VisibleRectangleAndClipping) {
    for (const TView& v : kViews) {
        const TLocRect view = ViewRect(v);
        const TMapImage image(view, 640);
        const TRectLP& vis = image.GetVisibleRect();
        EXPECT_LT(vis.left, 0) << v.lat;
        EXPECT_GT(vis.top, 0) << "y grows upward; view at " << v.lat;
        const TRectLP r = image.LocRect2LP(view);
        EXPECT_NEAR(r.left, vis.left, 1) << v.lat;
        EXPECT_NEAR(r.bottom, vis.bottom, 1) << v.lat;

        const TLoc farNorthEast(v.lat + 1.0, v.lon + 1.0);
        const TPointLP unclipped = image.Loc2LP(farNorthEast, false);
        const TPointLP clipped = image.Loc2LP(farNorthEast, true);
        EXPECT_GT(unclipped.y, vis.top) << v.lat;
        EXPECT_EQ(clipped.x, vis.right) << v.lat;
        EXPECT_EQ(clipped.y, vis.top) << v.lat;
    }
}

TEST(MapImage, WildLocationsDoNotOverflow) {
    const TMapImage image(ViewRect(kViews[0]), 800);
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    struct TCase {
        const char* name;
        tagLOC loc;
    };
    const std::vector<TCase> cases = {
        {"NaN", {nan, nan}}, {"infinity", {inf, -inf}}, {"huge", {1e300, -1e300}}};
    for (const TCase& c : cases) {
        const TPointLP p = image.Loc2LP(c.loc);
        EXPECT_LE(std::abs(static_cast<long long>(p.x)), 1000000000LL) << c.name;
        EXPECT_LE(std::abs(static_cast<long long>(p.y)), 1000000000LL) << c.name;
    }
    // Views that are a point, reversed or not numbers still give a usable surface.
    // So do a whole meridian or a whole parallel: the picture stays within 20:1.
    for (const TLocRect& view : {TLocRect(6, 45, 6, 45), TLocRect(7, 44, 6, 45), TLocRect(nan, nan, nan, nan),
                                 TLocRect(6, 89, 6, -89), TLocRect(-179, 0, 179, 0)}) {
        const TMapImage odd(view, 0);
        EXPECT_GT(odd.GetScale(), 0.0);
        EXPECT_GE(odd.GetWidthPx(), 16);
        EXPECT_LE(odd.GetHeightPx(), 20 * odd.GetWidthPx());
        EXPECT_LT(odd.GetVisibleRect().bottom, odd.GetVisibleRect().top);
    }
}

// A layer with one of everything drawn, written as SVG.
std::string DrawEverything(TMapImage& image, const TLoc& centre) {
    TMapLayer layer;
    auto ring = [&](TFeatureLine* line, int bound, double offset) {
        tagLOC* pts = new tagLOC[5];
        const double s = 0.001;
        pts[0] = {centre.dLat + offset, centre.dLon + offset};
        pts[1] = {centre.dLat + offset + s, centre.dLon + offset};
        pts[2] = {centre.dLat + offset + s, centre.dLon + offset + s};
        pts[3] = {centre.dLat + offset, centre.dLon + offset + s};
        pts[4] = pts[0];
        line->AdoptPoints(pts, 5, 5);
        line->m_iBoundType = bound;
        line->SetLowBits(bound);
        line->CalculateGeoExtents();
        layer.AddElement(line);
    };
    ring(new TFeatureLineBoundary, BOUNDARY_INC, -0.004);
    ring(new TFeatureLineBoundary, BOUNDARY_EXC, -0.002);
    ring(new TFeatureLineBoundary, BOUNDARY_OPEN, 0.0);
    ring(new TFeatureLineRoad, 0, 0.002);
    auto* coloured = new TFeatureLineMisc;
    coloured->SetColor(0x00FF8000);
    ring(coloured, 0, 0.003);

    auto* marker = new TFeatureMarker;
    marker->m_Loc = centre.Offset(45.0, 100.0);  // north-east of the centre
    marker->m_strName = std::string("<A&B> \"caf\xE9\"\x01");
    marker->CalculateGeoExtents();
    layer.AddElement(marker);
    auto* point = new TFeaturePoint;
    point->m_Loc = centre;
    point->CalculateGeoExtents();
    layer.AddElement(point);
    layer.Draw(image);

    TDeviceContext& dc = image.GetDC();
    dc.SetROP2(R2_MASKPEN);
    dc.SelectPen({PS_DOT, 3, 0x0000FF});
    dc.SelectBrush({BS_SOLID, 0x00FF00});
    dc.Rectangle({-10, 10, 10, -10});
    dc.MoveTo({0, 0});
    dc.LineTo({5, 5});
    dc.SelectPen({PS_NULL, 0, 0});
    dc.Ellipse({-3, 3, 3, -3});
    dc.TextOut({1, 1}, "plain");
    return image.ToSvg("Field \"7\" & <co>");
}

TEST(MapImage, RecordsWhatIsDrawn) {
    const TLoc centre(45.0, 6.0);
    TMapImage image(TLocRect(5.99, 45.01, 6.01, 44.99), 800);
    DrawEverything(image, centre);
    std::vector<int> kinds;
    for (const TDrawCommand& c : image.GetDC().Commands()) kinds.push_back(c.eKind);
    const std::vector<int> expected = {
        TDrawCommand::Polygon,   TDrawCommand::Polygon, TDrawCommand::Polyline, TDrawCommand::Polyline,
        TDrawCommand::Polyline,  TDrawCommand::Ellipse, TDrawCommand::Text,     TDrawCommand::Ellipse,
        TDrawCommand::Rectangle, TDrawCommand::Line,    TDrawCommand::Ellipse,  TDrawCommand::Text};
    EXPECT_EQ(kinds, expected);
    const auto& cmds = image.GetDC().Commands();
    ASSERT_EQ(cmds.size(), expected.size());
    EXPECT_EQ(cmds[1].brush.iStyle, BS_HATCHED) << "an excluded area is hatched";
    EXPECT_EQ(cmds[4].pen.dwColor, 0x00FF8000u) << "a line's own colour wins";
    EXPECT_EQ(cmds[8].iRop, R2_MASKPEN);
    EXPECT_EQ(cmds[9].points, (std::vector<TPointLP>{{0, 0}, {5, 5}}));
}

// The SVG is parsed back by Python's XML parser; the counts of shapes and the placement of
// the north-east marker are checked from the parsed document.
TEST(MapImage, SvgIsWellFormed) {
    const std::string python = TL_GIS_PYTHON;
    if (!HaveProgram(python)) GTEST_SKIP() << python << " is not installed";
    const TLoc centre(-33.8, 151.2);
    TMapImage image(TLocRect(151.19, -33.79, 151.21, -33.81), 800);
    const std::string svg = DrawEverything(image, centre);

    TTempDir dir;
    WriteFileBytes(dir.File("map.svg"), svg);
    WriteFileBytes(
        dir.File("check.py"),
        "import sys, xml.dom.minidom as m\n"
        "d = m.parse(sys.argv[1])\n"
        "svg = d.documentElement\n"
        "w, h = float(svg.getAttribute('width')), float(svg.getAttribute('height'))\n"
        "n = lambda t: len(d.getElementsByTagName(t))\n"
        "print('polygon=%d polyline=%d ellipse=%d rect=%d text=%d' % (n('polygon'), n('polyline'), "
        "n('ellipse'), n('rect'), n('text')))\n"
        "print('title=' + d.getElementsByTagName('title')[0].firstChild.data)\n"
        "t = d.getElementsByTagName('text')[0]\n"
        "print('marker=' + t.firstChild.data)\n"
        "e = d.getElementsByTagName('ellipse')[0]\n"
        "print('north-east=%s' % (float(e.getAttribute('cx')) > w / 2 and float(e.getAttribute('cy')) < h / "
        "2))\n");
    const TCommandResult r = RunCommand(ShellQuote(python) + " " + ShellQuote(dir.File("check.py")) + " " +
                                        ShellQuote(dir.File("map.svg")));
    ASSERT_EQ(r.iExit, 0) << r.strErr << "\n" << svg;
    EXPECT_EQ(r.strOut,
              "polygon=2 polyline=4 ellipse=3 rect=2 text=2\n"
              "title=Field \"7\" & <co>\n"
              "marker=<A&B> \"caf?\" \n"
              "north-east=True\n");
}

// Numbers in the SVG do not follow the host's locale.
TEST(MapImage, SvgNumbersIgnoreTheLocale) {
    const char* chosen = nullptr;
    for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8", "fr_FR.utf8"})
        if (std::setlocale(LC_NUMERIC, name) != nullptr) {
            chosen = name;
            break;
        }
    if (chosen == nullptr) GTEST_SKIP() << "no locale with a decimal comma is available";
    TMapImage image(TLocRect(5.99, 45.01, 6.01, 44.99), 800);
    const std::string svg = DrawEverything(image, TLoc(45.0, 6.0));
    std::setlocale(LC_NUMERIC, "C");
    EXPECT_NE(svg.find("stroke-width=\"1.0\""), std::string::npos) << chosen;
    EXPECT_EQ(svg.find("stroke-width=\"1,0\""), std::string::npos) << chosen;
}

}  // namespace
