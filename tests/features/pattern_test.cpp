#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <set>

#include "features/pattern.h"

namespace {
const tagLOC kA{45.0, -93.0}, kB{45.01, -93.0};  // an AB line 1.1 km long heading north

TFeaturePattern MakePattern(int kind, std::initializer_list<std::pair<char, tagLOC>> points) {
    TFeaturePattern p;
    p.m_iKind = kind;
    for (const auto& [letter, loc] : points) p.m_aPoint[letter - 'A'].m_Loc = loc;
    p.CalculateGeoExtents();
    return p;
}

TEST(Pattern, PointRule) {
    struct TCase {
        tagLOC loc;
        bool valid;
    };
    const TCase cases[] = {{{0, 0}, false},         {{0.000001, 0}, false}, {{0.0000011, 0}, true},
                           {{0, -0.0000011}, true}, {{45, 200}, true},      {{45, 359.9}, true},
                           {{45, 360}, false},      {{90, 10}, false},      {{-89.9, -10}, true}};
    for (const TCase& c : cases)
        EXPECT_EQ(IsPatternPointValid(c.loc), c.valid) << c.loc.dLat << ", " << c.loc.dLon;
}

struct TExtentsCase {
    const char* name;
    int kind;
    int abLines;
    std::initializer_list<std::pair<char, tagLOC>> points;
    bool empty;
    TLocRect extents;
};

TEST(Pattern, ExtentsOfParticipatingPoints) {
    const tagLOC c{44.9, -93.2}, d{45.3, -92.8};
    const TExtentsCase cases[] = {
        {"A and B", BACK_TO_BACK, 1, {{'A', kA}, {'B', kB}}, false, {-93.0, 45.01, -93.0, 45.0}},
        {"no AB lines: A and B left out", BACK_TO_BACK, 0, {{'A', kA}, {'B', kB}}, true, {}},
        {"BACK_TO_BACK: C is no point",
         BACK_TO_BACK,
         2,
         {{'A', kA}, {'B', kB}, {'C', c}},
         false,
         {-93.0, 45.01, -93.0, 45.0}},
        {"RACETRACK: C counts",
         RACETRACK,
         1,
         {{'A', kA}, {'B', kB}, {'C', c}},
         false,
         {-93.2, 45.01, -93.0, 44.9}},
        {"MULTI_BACK_TO_BACK, one line",
         MULTI_BACK_TO_BACK,
         1,
         {{'A', kA}, {'B', kB}, {'C', c}},
         false,
         {-93.0, 45.01, -93.0, 45.0}},
        {"MULTI_BACK_TO_BACK, two lines",
         MULTI_BACK_TO_BACK,
         2,
         {{'A', kA}, {'B', kB}, {'C', c}},
         false,
         {-93.2, 45.01, -93.0, 44.9}},
        {"D with its line", EXPAND, 2, {{'A', kA}, {'B', kB}, {'D', d}}, false, {-93.0, 45.3, -92.8, 45.0}},
        {"D without its line",
         EXPAND,
         1,
         {{'A', kA}, {'B', kB}, {'D', d}},
         false,
         {-93.0, 45.01, -93.0, 45.0}},
        {"invalid points skipped",
         QUICK,
         9,
         {{'A', kA}, {'B', {95, 10}}, {'R', d}},
         false,
         {-93.0, 45.3, -92.8, 45.0}},
    };
    for (const TExtentsCase& cs : cases) {
        TFeaturePattern p = MakePattern(cs.kind, cs.points);
        p.m_iAbLines = cs.abLines;
        p.CalculateGeoExtents();
        EXPECT_EQ(p.m_rcExtents.IsEmpty(), cs.empty) << cs.name;
        if (!cs.empty) {
            EXPECT_DOUBLE_EQ(p.m_rcExtents.dWest, cs.extents.dWest) << cs.name;
            EXPECT_DOUBLE_EQ(p.m_rcExtents.dNorth, cs.extents.dNorth) << cs.name;
            EXPECT_DOUBLE_EQ(p.m_rcExtents.dEast, cs.extents.dEast) << cs.name;
            EXPECT_DOUBLE_EQ(p.m_rcExtents.dSouth, cs.extents.dSouth) << cs.name;
        }
    }
    TFeaturePattern hidden = MakePattern(BACK_TO_BACK, {{'A', kA}, {'B', kB}});
    hidden.SetIncludeInExtents(false);
    hidden.CalculateGeoExtents();
    EXPECT_TRUE(hidden.m_rcExtents.IsEmpty());
}

TEST(Pattern, HitTestOnTheAbSegment) {
    const TLocRect rect(-93.1, 45.1, -93.0, 45.0);
    struct TCase {
        const char* name;
        tagLOC a, b;
        bool in;
    };
    const TCase cases[] = {
        {"both west", {45.05, -93.3}, {45.06, -93.2}, false},
        {"both north", {45.2, -93.05}, {45.3, -93.02}, false},
        {"one end inside", {45.05, -93.05}, {46, -90}, true},
        {"across, ends outside", {45.05, -93.2}, {45.05, -92.9}, true},
        {"rectangle between A and B", {44.9, -93.05}, {45.2, -93.04}, true},
        {"diagonal through", {44.9, -93.2}, {45.2, -92.9}, true},
        {"diagonal past the corner", {44.95, -93.2}, {45.3, -93.05}, false},
        {"edge touched", {45.1, -93.3}, {45.1, -92.8}, true},
    };
    for (const TCase& c : cases) {
        EXPECT_EQ(IsSegmentInRect(c.a, c.b, rect), c.in) << c.name;
        TFeaturePattern p = MakePattern(BACK_TO_BACK, {{'A', c.a}, {'B', c.b}});
        EXPECT_EQ(p.IsIn(rect), c.in) << c.name;
    }
}

TEST(Pattern, ClipSegment) {
    const TRectLP rect{-100, 100, 100, -100};
    struct TCase {
        const char* name;
        TPointLP p1, p2;
        int result;
        TPointLP q1, q2;
    };
    const TCase cases[] = {
        {"inside", {0, 0}, {50, 50}, 0, {0, 0}, {50, 50}},
        {"inside, ordered by y", {50, 50}, {0, 0}, 0, {0, 0}, {50, 50}},
        {"left of it", {-200, 0}, {-150, 10}, -1, {-200, 0}, {-150, 10}},
        {"horizontal across", {200, 0}, {-200, 0}, 1, {-100, 0}, {100, 0}},
        {"horizontal inside", {-10, 0}, {10, 0}, 1, {-10, 0}, {10, 0}},
        {"vertical from below", {0, -200}, {0, 50}, 1, {0, -100}, {0, 50}},
        {"diagonal corner to corner", {-200, -200}, {200, 200}, 1, {-100, -100}, {100, 100}},
        {"out through the right", {0, 0}, {200, 100}, 1, {0, 0}, {100, 50}},
        {"out through the top", {0, 0}, {100, 200}, 1, {0, 0}, {50, 100}},
        {"misses the corner", {-200, 50}, {-50, 200}, -1, {-200, 50}, {-50, 200}},
    };
    for (const TCase& c : cases) {
        TPointLP a = c.p1, b = c.p2;
        EXPECT_EQ(ClipSegment(a, b, rect), c.result) << c.name;
        EXPECT_EQ(a, c.q1) << c.name;
        EXPECT_EQ(b, c.q2) << c.name;
    }
}

// The lines drawn with each of the three pens, and the index of every line beside the AB
// line in swath widths (positive to the west of a northward AB line).
struct TDrawn {
    int abPen = 0;
    int offsetPen = 0;
    int swathPen = 0;
    std::set<int> indexes;
    std::vector<TDrawCommand> lines;
};

TDrawn DrawPattern(const TFeaturePattern& p, const tagLOCRECT& view) {
    TMapImage image(view, 800);
    p.Draw(image);
    TDrawn d;
    const TPointLP a = image.Loc2LP(p.m_aPoint[0].m_Loc, false);
    const double step = p.m_dSwathWidth * 100000.0 / image.GetScale();
    for (const TDrawCommand& c : image.GetDC().Commands()) {
        if (c.eKind != TDrawCommand::Line) continue;
        d.lines.push_back(c);
        if (c.pen == g_penPatternAbLine) ++d.abPen;
        if (c.pen == g_penPatternSwath) ++d.swathPen;
        if (c.pen == TPen{PS_SOLID, 7, 0x0000FF}) ++d.offsetPen;
        const double offset =
            (p.m_dOffset * 100000.0 / image.GetScale()) * (p.m_iDirection == RIGHT ? -1 : 1);
        d.indexes.insert(static_cast<int>(std::lround((a.x - c.points[0].x - offset) / step)));
    }
    return d;
}

std::set<int> Range(int first, int last) {
    std::set<int> s;
    for (int i = first; i <= last; ++i) s.insert(i);
    return s;
}

struct TDrawCase {
    const char* name;
    int kind;
    int direction;
    double swath, field, offset;
    int abPen, offsetPen, swathPen;
    std::set<int> indexes;
};

TEST(Pattern, SwathLines) {
    const TLocRect view(-93.03, 45.02, -92.97, 44.99);
    const TDrawCase cases[] = {
        // Line 0 repeats the guidance line with the pen selected before it.
        {"10 lines from the field width", BACK_TO_BACK, LEFT, 18.288, 182.88, 0, 2, 0, 9, Range(0, 9)},
        {"2 lines", BACK_TO_BACK, LEFT, 18.288, 36.576, 0, 2, 0, 1, Range(0, 1)},
        {"field width 0 gives 10", BACK_TO_BACK, LEFT, 18.288, 0, 0, 2, 0, 9, Range(0, 9)},
        {"swath 0.5 m gives 10", BACK_TO_BACK, LEFT, 0.5, 500, 0, 2, 0, 9, Range(0, 9)},
        {"49 lines", RACETRACK, LEFT, 10, 490, 0, 2, 0, 48, Range(0, 48)},
        {"50 is too many: 10", RACETRACK, LEFT, 10, 500, 0, 2, 0, 9, Range(0, 9)},
        {"RIGHT lays them east", BACK_TO_BACK, RIGHT, 18.288, 54.864, 0, 2, 0, 2, Range(-2, 0)},
        {"offset line", SQUEEZE, LEFT, 18.288, 54.864, 3.0, 1, 2, 2, Range(0, 2)},
        {"offset to the right", SQUEEZE, RIGHT, 18.288, 54.864, 3.0, 1, 2, 2, Range(-2, 0)},
        {"EXPAND with 10: -5 to 4", EXPAND, LEFT, 18.288, 182.88, 0, 7, 0, 4, Range(-5, 4)},
        {"EXPAND with 7: -4 to 3", EXPAND, LEFT, 10, 70, 0, 6, 0, 3, Range(-4, 3)},
        {"REVERSE_RACETRACK like EXPAND", REVERSE_RACETRACK, LEFT, 10, 70, 0, 6, 0, 3, Range(-4, 3)},
    };
    for (const TDrawCase& c : cases) {
        TFeaturePattern p = MakePattern(c.kind, {{'A', kA}, {'B', kB}});
        p.m_iDirection = c.direction;
        p.m_dSwathWidth = c.swath;
        p.m_dFieldWidth = c.field;
        p.m_dOffset = c.offset;
        const TDrawn d = DrawPattern(p, view);
        EXPECT_EQ(d.abPen, c.abPen) << c.name;
        EXPECT_EQ(d.offsetPen, c.offsetPen) << c.name;
        EXPECT_EQ(d.swathPen, c.swathPen) << c.name;
        EXPECT_EQ(d.indexes, c.indexes) << c.name;
    }
}

TEST(Pattern, DrawingClipsToTheView) {
    // The AB line lies 39 m east of the view; the swath lines laid west from index 3 on reach in.
    const TLocRect view(-93.01, 45.02, -93.0, 44.99);
    TFeaturePattern p = MakePattern(BACK_TO_BACK, {{'A', {45.0, -92.9995}}, {'B', {45.01, -92.9995}}});
    p.m_dFieldWidth = 182.88;
    p.m_dOffset = 1.0;
    const TDrawn d = DrawPattern(p, view);
    EXPECT_EQ(d.abPen, 0);
    EXPECT_EQ(d.offsetPen, 0);
    EXPECT_EQ(d.swathPen, 7);
    TMapImage image(view, 800);
    for (const TDrawCommand& c : d.lines)
        for (const TPointLP& pt : c.points) {
            EXPECT_GE(pt.x, image.GetVisibleRect().left);
            EXPECT_LE(pt.x, image.GetVisibleRect().right);
            EXPECT_GE(pt.y, image.GetVisibleRect().bottom);
            EXPECT_LE(pt.y, image.GetVisibleRect().top);
        }
}

TEST(Pattern, AbLinesPointsAndHighlight) {
    const TLocRect view(-93.05, 45.05, -92.95, 44.95);
    struct TCase {
        const char* name;
        int kind;
        int abLines;
        int abLinesDrawn;  // AB-pen lines / 2 (each AB line and its line 0)
        int markers;
    };
    const tagLOC c{45.0, -93.02}, d{45.01, -93.02}, e{45.0, -92.98}, f{45.01, -92.98};
    const TCase cases[] = {
        {"no AB lines: line 1 still drawn, A and B not", BACK_TO_BACK, 0, 1, 0},
        {"one line", BACK_TO_BACK, 1, 1, 2},
        {"BACK_TO_BACK: C-D drawn, C no marker", BACK_TO_BACK, 2, 2, 3},
        {"RACETRACK: C a marker", RACETRACK, 2, 2, 4},
        {"three lines", RACETRACK, 3, 3, 6},
    };
    for (const TCase& cs : cases) {
        TFeaturePattern p =
            MakePattern(cs.kind, {{'A', kA}, {'B', kB}, {'C', c}, {'D', d}, {'E', e}, {'F', f}});
        p.m_iAbLines = cs.abLines;
        p.m_dFieldWidth = 36.576;  // two lines beside each AB line
        TMapImage image(view, 800);
        p.Draw(image);
        int ab = 0, markers = 0;
        for (const TDrawCommand& cmd : image.GetDC().Commands()) {
            if (cmd.eKind == TDrawCommand::Line && cmd.pen == g_penPatternAbLine) ++ab;
            if (cmd.eKind == TDrawCommand::Ellipse) ++markers;
        }
        EXPECT_EQ(ab, cs.abLinesDrawn * 2) << cs.name;
        EXPECT_EQ(markers, cs.markers) << cs.name;
        EXPECT_EQ(image.GetDC().GetPen(), TPen{}) << cs.name << ": the pen before drawing is restored";
    }
}
}  // namespace
