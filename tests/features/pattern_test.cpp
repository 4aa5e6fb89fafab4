// Spray patterns: the recorded drawing of AB, offset and swath lines, clipped to the view.

#include <gtest/gtest.h>

#include <cmath>
#include <set>

#include <tl_gis/features/feature_pattern.h>

namespace {

// A pattern whose AB line runs 1.1 km north from a.
TFeaturePattern MakePattern(int kind, int direction, double swath, double field, double offset, tagLOC a) {
    TFeaturePattern p;
    p.m_iKind = kind;
    p.m_iDirection = direction;
    p.m_dSwathWidth = swath;
    p.m_dFieldWidth = field;
    p.m_dOffset = offset;
    p.m_aPoint[0].m_Loc = a;
    p.m_aPoint[1].m_Loc = {a.dLat + 0.01, a.dLon};
    return p;
}

// Lines drawn with each pen, and the index of each line beside the AB line in swath widths
// (positive to the west of a northward AB line). Every point must lie in the view.
struct TDrawn {
    int abPen = 0, offsetPen = 0, swathPen = 0;
    std::set<int> indexes;
};

TDrawn Draw(const TFeaturePattern& p, const TLocRect& view) {
    TMapImage image(view, 800);
    p.Draw(image);
    EXPECT_EQ(image.GetDC().GetPen(), TPen{}) << "the pen before drawing is restored";
    TDrawn d;
    const double unit = 100000.0 / image.GetScale();
    const double offset = p.m_dOffset * unit * (p.m_iDirection == RIGHT ? -1 : 1);
    const int ax = image.Loc2LP(p.m_aPoint[0].m_Loc, false).x;
    const TRectLP& vis = image.GetVisibleRect();
    for (const TDrawCommand& c : image.GetDC().Commands()) {
        if (c.eKind != TDrawCommand::Line) continue;
        d.abPen += c.pen == g_penPatternAbLine;
        d.swathPen += c.pen == g_penPatternSwath;
        d.offsetPen += c.pen == TPen{PEN_SOLID, 7, 0x0000FF};
        d.indexes.insert(
            static_cast<int>(std::lround((ax - c.points[0].x - offset) / (p.m_dSwathWidth * unit))));
        for (const TPointLP& pt : c.points)
            EXPECT_TRUE(pt.x >= vis.left && pt.x <= vis.right && pt.y >= vis.bottom && pt.y <= vis.top);
    }
    return d;
}

TEST(Pattern, SwathLines) {
    struct TCase {
        const char* name;
        int kind, direction;
        double swath, field, offset;
        int abPen, offsetPen, swathPen, first, last;
    };
    const TCase cases[] = {
        // Line 0 repeats the AB line with the AB pen.
        {"10 lines from the field width", BACK_TO_BACK, LEFT, 18.288, 182.88, 0, 2, 0, 9, 0, 9},
        {"2 lines", BACK_TO_BACK, LEFT, 18.288, 36.576, 0, 2, 0, 1, 0, 1},
        {"field width 0 gives 10", BACK_TO_BACK, LEFT, 18.288, 0, 0, 2, 0, 9, 0, 9},
        {"swath 0.5 m gives 10", BACK_TO_BACK, LEFT, 0.5, 500, 0, 2, 0, 9, 0, 9},
        {"49 lines", RACETRACK, LEFT, 10, 490, 0, 2, 0, 48, 0, 48},
        {"50 is too many: 10", RACETRACK, LEFT, 10, 500, 0, 2, 0, 9, 0, 9},
        {"offset line, RIGHT lays them east", SQUEEZE, RIGHT, 18.288, 54.864, 3.0, 1, 2, 2, -2, 0},
        {"EXPAND with 10: -5 to 4", EXPAND, LEFT, 18.288, 182.88, 0, 7, 0, 4, -5, 4},
        {"REVERSE_RACETRACK with 7: -4 to 3", REVERSE_RACETRACK, LEFT, 10, 70, 0, 6, 0, 3, -4, 3},
    };
    for (const TCase& c : cases) {
        const TDrawn d = Draw(MakePattern(c.kind, c.direction, c.swath, c.field, c.offset, {45.0, -93.0}),
                              TLocRect(-93.03, 45.02, -92.97, 44.99));
        EXPECT_TRUE(d.abPen == c.abPen && d.offsetPen == c.offsetPen && d.swathPen == c.swathPen &&
                    d.indexes.size() == std::size_t(c.last - c.first + 1) && *d.indexes.begin() == c.first &&
                    *d.indexes.rbegin() == c.last)
            << c.name << ": " << d.abPen << " " << d.offsetPen << " " << d.swathPen << " "
            << d.indexes.size();
    }
    // An AB line 39 m east of the view: only the swath lines laid west from index 3 on reach in.
    const TDrawn d = Draw(MakePattern(BACK_TO_BACK, LEFT, 18.288, 182.88, 1.0, {45.0, -92.9995}),
                          TLocRect(-93.01, 45.02, -93.0, 44.99));
    EXPECT_TRUE(d.abPen == 0 && d.offsetPen == 0 && d.swathPen == 7) << d.abPen << " " << d.swathPen;
}

}  // namespace
