#include "gis/polygon_groups.h"

#include <algorithm>
#include <cmath>

namespace {
TLocRect BoxOf(const tagLOC* points, int count) {
    TLocRect box;
    box.InitExtents();
    // ExpandExtents point by point, inline: every ring of a layer passes here.
    for (int i = 0; i < count; ++i) {
        box.dWest = std::min(box.dWest, points[i].dLon);
        box.dEast = std::max(box.dEast, points[i].dLon);
        box.dSouth = std::min(box.dSouth, points[i].dLat);
        box.dNorth = std::max(box.dNorth, points[i].dLat);
    }
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
        // About one box per cell, the cells shaped like the area the boxes cover.
        const double width = m_World.dEast - m_World.dWest, height = m_World.dNorth - m_World.dSouth;
        const double n = static_cast<double>(boxes.size());
        const double columns = width > 0 && height > 0 ? std::sqrt(n * width / height) : std::sqrt(n);
        m_nColumns = std::clamp<std::size_t>(static_cast<std::size_t>(std::min(columns, double{kMaxSide})), 1,
                                             kMaxSide);
        m_nRows = std::clamp<std::size_t>(static_cast<std::size_t>(n / static_cast<double>(m_nColumns)), 1,
                                          kMaxSide);
        // Each cell's outer rings in one array: counted first, then placed.
        m_CellStart.assign(m_nColumns * m_nRows + 1, 0);
        ForEachCell(boxes, true, [&](std::size_t cell, std::size_t) { ++m_CellStart[cell + 1]; });
        for (std::size_t c = 1; c < m_CellStart.size(); ++c) m_CellStart[c] += m_CellStart[c - 1];
        m_Entries.resize(m_CellStart.back());
        std::vector<std::size_t> next(m_CellStart.begin(), m_CellStart.end() - 1);
        ForEachCell(boxes, false, [&](std::size_t cell, std::size_t g) { m_Entries[next[cell]++] = g; });
    }

    // Calls visit with every outer ring whose box may hold the box given, in ascending order.
    template <class Visit>
    void ForEachCandidate(const TLocRect& box, Visit&& visit) const {
        std::size_t a = 0, aEnd = 0;
        if (IsUsable(box)) {
            const std::size_t cell = Row(box.dSouth) * m_nColumns + Column(box.dWest);
            a = m_CellStart[cell];
            aEnd = m_CellStart[cell + 1];
        }
        std::size_t b = 0;
        while (a < aEnd || b < m_Everywhere.size()) {
            if (b == m_Everywhere.size() || (a < aEnd && m_Entries[a] < m_Everywhere[b]))
                visit(m_Entries[a++]);
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
    static std::size_t Index(double value, double low, double high, std::size_t cells) {
        if (!(high > low) || !(value > low)) return 0;
        const double at = (value - low) / (high - low) * static_cast<double>(cells);
        return at >= static_cast<double>(cells - 1) ? cells - 1 : static_cast<std::size_t>(at);
    }
    std::size_t Column(double lon) const { return Index(lon, m_World.dWest, m_World.dEast, m_nColumns); }
    std::size_t Row(double lat) const { return Index(lat, m_World.dSouth, m_World.dNorth, m_nRows); }

    // Calls place with each cell a box covers and the box's number. Boxes of no use to the grid,
    // and large ones, go to the rings every lookup visits (on the first pass).
    template <class Place>
    void ForEachCell(const std::vector<TLocRect>& boxes, bool first, Place&& place) {
        for (std::size_t g = 0; g < boxes.size(); ++g) {
            const TLocRect& box = boxes[g];
            const std::size_t x0 = Column(box.dWest), x1 = Column(box.dEast);
            const std::size_t y0 = Row(box.dSouth), y1 = Row(box.dNorth);
            if (!IsUsable(box) || (x1 - x0 + 1) * (y1 - y0 + 1) > kMaxCellsPerBox) {
                if (first) m_Everywhere.push_back(g);
                continue;
            }
            for (std::size_t y = y0; y <= y1; ++y)
                for (std::size_t x = x0; x <= x1; ++x) place(y * m_nColumns + x, g);
        }
    }

    TLocRect m_World;
    std::size_t m_nColumns = 1;
    std::size_t m_nRows = 1;
    std::vector<std::size_t> m_CellStart;  // cell c holds m_Entries[m_CellStart[c] .. m_CellStart[c + 1])
    std::vector<std::size_t> m_Entries;
    std::vector<std::size_t> m_Everywhere;
};
}  // namespace

std::vector<TPolygonGroup> GroupRingsIntoPolygons(const std::vector<const TFeatureLine*>& rings) {
    std::vector<TPolygonGroup> groups;
    groups.reserve(rings.size());
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
