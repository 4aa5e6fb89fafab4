// The drawing surface: locations to logical units (north up, east right, the scale rule),
// clipping, and the recorded commands with their SVG text.

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <string>
#include <tuple>

#include <tl_gis/hostmap/map_image.h>
#include <tl_gis/hostmap/map_layer.h>

namespace {

TEST(MapImage, NorthUpEastRightScaleAndClipping) {
    for (const TLoc centre : {TLoc(45.0, 6.0), TLoc(-33.8, 151.2), TLoc(62.0, -100.0)}) {
        const TLocRect rect(centre.dLon - 0.014, centre.dLat + 0.01, centre.dLon + 0.014, centre.dLat - 0.01);
        const TMapImage image(rect, 800);
        const double units = 200.0 * 100000.0 / image.GetScale(), tolerance = 1.0 + units * 1e-4;
        for (const auto& [bearing, dx, dy] :
             {std::tuple{0.0, 0, 1}, {90.0, 1, 0}, {180.0, 0, -1}, {270.0, -1, 0}}) {
            const TPointLP p = image.Loc2LP(centre.Offset(bearing, 200.0));
            EXPECT_TRUE(std::abs(p.x - dx * units) <= tolerance && std::abs(p.y - dy * units) <= tolerance)
                << centre.dLat << " bearing " << bearing << ": " << p.x << " " << p.y;
        }
        const TRectLP& vis = image.GetVisibleRect();
        const TLoc farNorthEast(centre.dLat + 1.0, centre.dLon + 1.0);
        EXPECT_NEAR(image.LocRect2LP(rect).bottom, vis.bottom, 1) << centre.dLat;
        EXPECT_GT(image.Loc2LP(farNorthEast, false).y, vis.top) << centre.dLat;
        EXPECT_EQ(image.Loc2LP(farNorthEast, true), (TPointLP{vis.right, vis.top})) << centre.dLat;
    }
}

// An excluded boundary, a coloured line and a marker whose name needs escaping, drawn under a
// decimal-comma locale when the host has one.
TEST(MapImage, RecordsDrawingAndWritesSvg) {
    TMapImage image(TLocRect(151.19, -33.79, 151.21, -33.81), 800);
    TMapLayer layer;
    for (TFeatureLine* line :
         std::initializer_list<TFeatureLine*>{new TFeatureLineBoundary, new TFeatureLineMisc}) {
        const double a = -33.8, b = 151.2, s = 0.001;
        line->AdoptPoints(new tagLOC[5]{{a, b}, {a + s, b}, {a + s, b + s}, {a, b + s}, {a, b}}, 5, 5);
        line->m_iBoundType = BOUNDARY_EXC;
        line->SetLowBits(BOUNDARY_EXC);
        line->SetColor(0x00FF8000);
        layer.AddElement(line);
    }
    auto* marker = new TFeatureMarker;
    marker->m_Loc = TLoc(-33.8, 151.2);
    marker->m_strName = "<A&B> \"caf\xE9\"\x01";
    layer.AddElement(marker);

    const char* comma = nullptr;
    for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8", "fr_FR.utf8"})
        if (comma == nullptr && std::setlocale(LC_NUMERIC, name) != nullptr) comma = name;
    layer.Draw(image);
    const std::string svg = image.ToSvg("Field \"7\" & <co>");
    std::setlocale(LC_NUMERIC, "C");

    const auto& cmds = image.GetDC().Commands();
    ASSERT_EQ(cmds.size(), 4u);
    EXPECT_TRUE(cmds[0].eKind == TDrawCommand::Polygon && cmds[0].brush.iStyle == BRUSH_HATCHED)
        << "an excluded area";
    EXPECT_TRUE(cmds[1].eKind == TDrawCommand::Polyline && cmds[1].pen.dwColor == 0x00FF8000u)
        << "own colour";
    for (const char* text : {"stroke-width=\"1.0\"", "Field &quot;7&quot; &amp; &lt;co&gt;",
                             ">&lt;A&amp;B&gt; &quot;caf?&quot; <"})
        EXPECT_NE(svg.find(text), std::string::npos) << text << (comma ? comma : "") << "\n" << svg;
}

}  // namespace
