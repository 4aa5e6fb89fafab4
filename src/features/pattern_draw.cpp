// Painting a pattern: highlight, AB lines with their offset and swath lines, then the points.

#include <algorithm>
#include <cmath>
#include <cstdint>

#include <tl_gis/features/feature_pattern.h>

const TPen g_penPatternAbLine{PEN_SOLID, 7, 0x969696};
const TPen g_penPatternSwath{PEN_SOLID, 0, 0xC8C8C8};

namespace {
const TPen kOffsetPen{PEN_SOLID, 7, 0x0000FF};
const TPen kHighlightPen{PEN_SOLID, 0, 0x8C8C8C};
const TBrush kHighlightBrush{BRUSH_SOLID, 0xD2D2D2};

// p moved by a vector, each component truncated toward zero and kept within the int range.
TPointLP Moved(const TPointLP& p, double dx, double dy) {
    auto add = [](int base, double delta) {
        const double moved = static_cast<double>(base) + std::trunc(delta);
        if (!(moved > -2147483648.0)) return INT32_MIN;  // also NaN
        if (moved > 2147483647.0) return INT32_MAX;
        return static_cast<int>(moved);
    };
    return {add(p.x, dx), add(p.y, dy)};
}

void DrawSegment(TDeviceContext& dc, const TPointLP& a, const TPointLP& b) {
    dc.MoveTo(a);
    dc.LineTo(b);
}
}  // namespace

void TFeaturePattern::Draw(TMapImage& image) const {
    TDeviceContext& dc = image.GetDC();
    if ((m_dwState & ELEMENT_STATE_HIGHLIGHT) != 0) {
        TRectLP rect = image.LocRect2LP(m_rcExtents);
        rect.left -= 100;
        rect.right += 100;
        rect.top += 100;  // y grows upward
        rect.bottom -= 100;
        const TPen oldPen = dc.SelectPen(kHighlightPen);
        const TBrush oldBrush = dc.SelectBrush(kHighlightBrush);
        const int oldRop = dc.SetROP2(ROP_MASKPEN);
        dc.Rectangle(rect);
        dc.SetROP2(oldRop);
        dc.SelectBrush(oldBrush);
        dc.SelectPen(oldPen);
    }
    for (int line = 1; line <= PATTERN_MAX_AB_LINES; ++line) {
        const TFeatureMarker& first = m_aPoint[(line - 1) * 2];
        const TFeatureMarker& second = m_aPoint[(line - 1) * 2 + 1];
        if (!IsAbLineDrawn(line) || !IsPatternPointValid(first.m_Loc) || !IsPatternPointValid(second.m_Loc))
            continue;
        DrawAbLine(image, image.Loc2LP(first.m_Loc, false), image.Loc2LP(second.m_Loc, false));
    }
    for (int i = 0; i < PATTERN_POINT_COUNT; ++i)
        if (IsPointParticipating(i) && IsPatternPointValid(m_aPoint[i].m_Loc)) m_aPoint[i].Draw(image);
}

void TFeaturePattern::DrawAbLine(TMapImage& image, TPointLP p1, TPointLP p2) const {
    TDeviceContext& dc = image.GetDC();
    const TRectLP& visible = image.GetVisibleRect();
    const double unitsPerMetre = 100000.0 / image.GetScale();
    const double dx = static_cast<double>(static_cast<std::int64_t>(p2.x) - p1.x);
    const double dy = static_cast<double>(static_cast<std::int64_t>(p2.y) - p1.y);
    double len = std::sqrt(dx * dx + dy * dy);
    if (len == 0.0) len = 1e-8;

    double swath = m_dSwathWidth * unitsPerMetre;
    double offset = m_dOffset * unitsPerMetre;
    if (m_iDirection == RIGHT) {
        swath = -swath;
        offset = -offset;
    }
    // Both vectors are perpendicular to p1 -> p2: on its left for LEFT, on its right for RIGHT.
    const double stepX = -swath * dy / len, stepY = swath * dx / len;
    const double offsetX = -offset * dy / len, offsetY = offset * dx / len;

    int firstIndex = 0, endIndex = 0;
    GetSwathLineRange(firstIndex, endIndex);

    const TPen remembered = dc.GetPen();
    if (ClipSegment(p1, p2, visible) >= 0) {
        dc.SelectPen(g_penPatternAbLine);
        DrawSegment(dc, p1, p2);
    }
    if (m_dOffset != 0.0) {
        p1 = Moved(p1, offsetX, offsetY);
        p2 = Moved(p2, offsetX, offsetY);
        if (ClipSegment(p1, p2, visible) >= 0) {
            dc.SelectPen(kOffsetPen);
            DrawSegment(dc, p1, p2);
        }
    }
    // Index 0 repeats the guidance line with the pen selected last; later lines use the swath pen.
    for (int i = firstIndex; i < endIndex; ++i) {
        TPointLP a = Moved(p1, i * stepX, i * stepY);
        TPointLP b = Moved(p2, i * stepX, i * stepY);
        if (ClipSegment(a, b, visible) >= 0) DrawSegment(dc, a, b);
        if (i == 0) dc.SelectPen(g_penPatternSwath);
    }
    dc.SelectPen(remembered);
}
