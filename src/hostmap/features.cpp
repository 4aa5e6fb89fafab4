#include <tl_gis/hostmap/features.h>

#include <algorithm>
#include <cstring>
#include <vector>

#include <tl_gis/hostmap/map_image.h>

TFeatureLine::~TFeatureLine() {
    delete[] m_pPoints;
}

TFeatureLine::TFeatureLine(const TFeatureLine& other) : TFeatureVector(other) {
    *this = other;
}

TFeatureLine& TFeatureLine::operator=(const TFeatureLine& other) {
    if (this == &other) return *this;
    TFeatureVector::operator=(other);
    tagLOC* copy = nullptr;
    if (other.m_pPoints != nullptr && other.m_iPointsAlloc > 0) {
        copy = new tagLOC[static_cast<std::size_t>(other.m_iPointsAlloc)];
        std::copy(other.m_pPoints, other.m_pPoints + other.m_iPointsAlloc, copy);
    }
    delete[] m_pPoints;
    m_pPoints = copy;
    m_iNumPoints = copy ? other.m_iNumPoints : 0;
    m_iPointsAlloc = copy ? other.m_iPointsAlloc : 0;
    m_locCentroid = other.m_locCentroid;
    m_iBoundType = other.m_iBoundType;
    m_bHasColor = other.m_bHasColor;
    m_bRgbFlag1 = other.m_bRgbFlag1;
    m_bRgbFlag2 = other.m_bRgbFlag2;
    m_dwColor = other.m_dwColor;
    return *this;
}

void TFeatureLine::AdoptPoints(tagLOC* points, int count, int alloc) {
    if (points != m_pPoints) delete[] m_pPoints;
    m_pPoints = points;
    m_iNumPoints = points ? count : 0;
    m_iPointsAlloc = points ? alloc : 0;
}

void TFeatureLine::CalculateGeoExtents() {
    m_rcExtents.InitExtents();
    if (!IncludeInExtents()) return;
    for (int i = 0; i < m_iNumPoints; ++i) m_rcExtents.ExpandExtents(m_pPoints[i]);
}

namespace {
struct TLineStyle {
    TPen pen;
    TBrush brush;
};

TLineStyle StyleFor(std::uint32_t kind, int boundType) {
    switch (kind) {
        case ELEMENT_LINE_BOUNDARY:
            if (boundType == BOUNDARY_EXC) return {{PEN_SOLID, 0, 0x0000C0}, {BRUSH_HATCHED, 0x0000D0}};
            if (boundType == BOUNDARY_OPEN) return {{PEN_SOLID, 0, 0x006000}, {BRUSH_NULL, 0}};
            return {{PEN_SOLID, 0, 0x008000}, {BRUSH_SOLID, 0xC8F0C8}};
        case ELEMENT_LINE_AREA:
            return {{PEN_SOLID, 0, 0x4080A0}, {BRUSH_SOLID, 0xB4DCF0}};
        case ELEMENT_LINE_ROAD:
            return {{PEN_SOLID, 0, 0x13458B}, {BRUSH_NULL, 0}};
        case ELEMENT_LINE_WATER:
            return {{PEN_SOLID, 0, 0xC06000}, {BRUSH_NULL, 0}};
        case ELEMENT_LINE_MISC:
            return {{PEN_DASH, 0, 0x808080}, {BRUSH_NULL, 0}};
        default:
            return {{PEN_SOLID, 0, 0x202020}, {BRUSH_NULL, 0}};
    }
}
}  // namespace

void TFeatureLine::Draw(TMapImage& image) const {
    if (m_iNumPoints < 2 || m_pPoints == nullptr) return;
    TLineStyle style = StyleFor(GetKind(), m_iBoundType);
    std::uint32_t color = 0;
    if (GetColor(color)) style.pen.dwColor = color;
    std::vector<TPointLP> points(static_cast<std::size_t>(m_iNumPoints));
    for (int i = 0; i < m_iNumPoints; ++i)
        points[static_cast<std::size_t>(i)] = image.Loc2LP(m_pPoints[i], false);
    TDeviceContext& dc = image.GetDC();
    const TPen oldPen = dc.SelectPen(style.pen);
    const TBrush oldBrush = dc.SelectBrush(style.brush);
    if (style.brush.iStyle != BRUSH_NULL && m_iNumPoints >= 3)
        dc.Polygon(points.data(), m_iNumPoints);
    else
        dc.Polyline(points.data(), m_iNumPoints);
    dc.SelectBrush(oldBrush);
    dc.SelectPen(oldPen);
}

void TFeatureMarker::CalculateGeoExtents() {
    m_rcExtents.InitExtents();
    if (IncludeInExtents()) m_rcExtents.ExpandExtents(m_Loc);
}

void TFeatureMarker::Draw(TMapImage& image) const {
    const TPointLP p = image.Loc2LP(m_Loc, false);
    // A marker keeps its size on screen: about 5 pixels across whatever the zoom.
    const int r = std::max(1, (image.GetVisibleRect().right - image.GetVisibleRect().left) /
                                  std::max(1, image.GetWidthPx()) * 5);
    TDeviceContext& dc = image.GetDC();
    const TPen oldPen = dc.SelectPen({PEN_SOLID, 0, 0x800080});
    const TBrush oldBrush = dc.SelectBrush({BRUSH_SOLID, 0xFF00FF});
    dc.Ellipse({p.x - r, p.y + r, p.x + r, p.y - r});
    if (!m_strName.empty()) dc.DrawLabel({p.x + r * 2, p.y}, m_strName);
    dc.SelectBrush(oldBrush);
    dc.SelectPen(oldPen);
}

void TFeaturePoint::CalculateGeoExtents() {
    m_rcExtents.InitExtents();
    if (IncludeInExtents()) m_rcExtents.ExpandExtents(m_Loc);
}

void TFeaturePoint::Draw(TMapImage& image) const {
    const TPointLP p = image.Loc2LP(m_Loc, false);
    const int r = std::max(1, (image.GetVisibleRect().right - image.GetVisibleRect().left) /
                                  std::max(1, image.GetWidthPx()) * 2);
    TDeviceContext& dc = image.GetDC();
    const TPen oldPen = dc.SelectPen({PEN_SOLID, 0, 0x000000});
    const TBrush oldBrush = dc.SelectBrush({BRUSH_SOLID, 0x000000});
    dc.Ellipse({p.x - r, p.y + r, p.x + r, p.y - r});
    dc.SelectBrush(oldBrush);
    dc.SelectPen(oldPen);
}
