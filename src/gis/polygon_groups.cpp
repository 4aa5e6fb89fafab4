#include "gis/polygon_groups.h"

#include <algorithm>
#include <cmath>

namespace {
TLocRect BoxOf(const tagLOC* points, int count) {
    TLocRect box;
    box.InitExtents();
    for (int i = 0; i < count; ++i) box.ExpandExtents(points[i]);
    return box;
}

bool BoxWithin(const TLocRect& inner, const TLocRect& outer) {
    return inner.dWest >= outer.dWest && inner.dEast <= outer.dEast && inner.dSouth >= outer.dSouth &&
           inner.dNorth <= outer.dNorth;
}

double BoxArea(const TLocRect& box) {
    return (box.dEast - box.dWest) * (box.dNorth - box.dSouth);
}
}  // namespace

bool IsPointInRing(const tagLOC& point, const tagLOC* ring, int count) {
    if (ring == nullptr || count < 3) return false;
    bool inside = false;
    for (int i = 0, j = count - 1; i < count; j = i++) {
        const tagLOC& a = ring[i];
        const tagLOC& b = ring[j];
        if ((a.dLat > point.dLat) != (b.dLat > point.dLat) &&
            point.dLon < (b.dLon - a.dLon) * (point.dLat - a.dLat) / (b.dLat - a.dLat) + a.dLon)
            inside = !inside;
    }
    return inside;
}

bool IsRingInsideRing(const tagLOC* inner, int innerCount, const tagLOC* outer, int outerCount) {
    if (inner == nullptr || outer == nullptr || innerCount < 1 || outerCount < 3) return false;
    if (!BoxWithin(BoxOf(inner, innerCount), BoxOf(outer, outerCount))) return false;
    // A hole may touch its outer ring at a vertex, so any vertex inside will do.
    for (int i = 0; i < innerCount; ++i)
        if (IsPointInRing(inner[i], outer, outerCount)) return true;
    return false;
}

namespace {
// The outer rings' boxes in a grid, so that a ring looks only at the outer rings whose box covers
// its south-west corner instead of at all of them: a layer of tens of thousands of polygons
// and exclusion rings is grouped in milliseconds.
class TOuterGrid {
public:
    explicit TOuterGrid(const std::vector<TLocRect>& boxes) {
        m_World.InitExtents();
        for (const TLocRect& box : boxes)
            if (IsUsable(box)) m_World.ExpandExtents(box);
        m_nSide = std::clamp<std::size_t>(
            static_cast<std::size_t>(std::sqrt(static_cast<double>(boxes.size()))), 1, kMaxSide);
        m_Cells.resize(m_nSide * m_nSide);
        for (std::size_t g = 0; g < boxes.size(); ++g) {
            const TLocRect& box = boxes[g];
            const std::size_t x0 = Column(box.dWest), x1 = Column(box.dEast);
            const std::size_t y0 = Row(box.dSouth), y1 = Row(box.dNorth);
            // Boxes of no use to the grid, and large ones, are looked at by every ring.
            if (!IsUsable(box) || (x1 - x0 + 1) * (y1 - y0 + 1) > kMaxCellsPerBox) {
                m_Everywhere.push_back(g);
                continue;
            }
            for (std::size_t y = y0; y <= y1; ++y)
                for (std::size_t x = x0; x <= x1; ++x) m_Cells[y * m_nSide + x].push_back(g);
        }
    }

    // Calls visit with every outer ring whose box may hold the box given, in ascending order.
    template <class Visit>
    void ForEachCandidate(const TLocRect& box, Visit&& visit) const {
        const std::vector<std::size_t> none;
        const std::vector<std::size_t>& cell =
            IsUsable(box) ? m_Cells[Row(box.dSouth) * m_nSide + Column(box.dWest)] : none;
        std::size_t a = 0, b = 0;
        while (a < cell.size() || b < m_Everywhere.size()) {
            if (b == m_Everywhere.size() || (a < cell.size() && cell[a] < m_Everywhere[b]))
                visit(cell[a++]);
            else
                visit(m_Everywhere[b++]);
        }
    }

private:
    static constexpr std::size_t kMaxSide = 512;
    static constexpr std::size_t kMaxCellsPerBox = 64;

    static bool IsUsable(const TLocRect& box) {
        return std::isfinite(box.dWest) && std::isfinite(box.dEast) && std::isfinite(box.dSouth) &&
               std::isfinite(box.dNorth) && box.dWest <= box.dEast && box.dSouth <= box.dNorth;
    }
    std::size_t Index(double value, double low, double high) const {
        if (!(high > low) || !(value > low)) return 0;
        const double at = (value - low) / (high - low) * static_cast<double>(m_nSide);
        return at >= static_cast<double>(m_nSide - 1) ? m_nSide - 1 : static_cast<std::size_t>(at);
    }
    std::size_t Column(double lon) const { return Index(lon, m_World.dWest, m_World.dEast); }
    std::size_t Row(double lat) const { return Index(lat, m_World.dSouth, m_World.dNorth); }

    TLocRect m_World;
    std::size_t m_nSide = 1;
    std::vector<std::vector<std::size_t>> m_Cells;
    std::vector<std::size_t> m_Everywhere;
};
}  // namespace

std::vector<TPolygonGroup> GroupRingsIntoPolygons(const std::vector<const TFeatureLine*>& rings) {
    std::vector<TPolygonGroup> groups;
    std::vector<const TFeatureLine*> exclusions;
    for (const TFeatureLine* ring : rings) {
        if (ring == nullptr) continue;
        if (ring->m_iBoundType == BOUNDARY_EXC)
            exclusions.push_back(ring);
        else
            groups.push_back({ring, {}});
    }
    if (exclusions.empty()) return groups;
    const std::size_t outers = groups.size();
    std::vector<TLocRect> outerBoxes;
    outerBoxes.reserve(outers);
    for (const TPolygonGroup& group : groups)
        outerBoxes.push_back(BoxOf(group.pOuter->m_pPoints, group.pOuter->m_iNumPoints));
    const TOuterGrid grid(outerBoxes);
    for (const TFeatureLine* hole : exclusions) {
        const TLocRect box = BoxOf(hole->m_pPoints, hole->m_iNumPoints);
        std::size_t best = outers;
        grid.ForEachCandidate(box, [&](std::size_t g) {
            if (!BoxWithin(box, outerBoxes[g])) return;
            if (best != outers && BoxArea(outerBoxes[g]) >= BoxArea(outerBoxes[best])) return;
            const TFeatureLine* outer = groups[g].pOuter;
            if (IsRingInsideRing(hole->m_pPoints, hole->m_iNumPoints, outer->m_pPoints, outer->m_iNumPoints))
                best = g;
        });
        if (best != outers)
            groups[best].Holes.push_back(hole);
        else
            groups.push_back({hole, {}});
    }
    return groups;
}
