#include "gis/polygon_groups.h"

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

std::vector<TPolygonGroup> GroupRingsIntoPolygons(const std::vector<const TFeatureLine*>& rings) {
    std::vector<TPolygonGroup> groups;
    groups.reserve(rings.size());
    std::vector<const TFeatureLine*> exclusions;
    for (const TFeatureLine* ring : rings) {
        if (ring == nullptr) continue;
        if (ring->m_iBoundType == BOUNDARY_EXC) {
            exclusions.push_back(ring);
            continue;
        }
        groups.push_back({ring, {}});
    }
    // The boxes of the outer rings are needed only to place exclusion rings.
    if (exclusions.empty()) return groups;
    std::vector<TLocRect> outerBoxes;
    outerBoxes.reserve(groups.size());
    for (const TPolygonGroup& group : groups)
        outerBoxes.push_back(BoxOf(group.pOuter->m_pPoints, group.pOuter->m_iNumPoints));
    const std::size_t outers = groups.size();
    for (const TFeatureLine* hole : exclusions) {
        const TLocRect box = BoxOf(hole->m_pPoints, hole->m_iNumPoints);
        std::size_t best = outers;
        for (std::size_t g = 0; g < outers; ++g) {
            if (!BoxWithin(box, outerBoxes[g])) continue;
            if (best != outers && BoxArea(outerBoxes[g]) >= BoxArea(outerBoxes[best])) continue;
            const TFeatureLine* outer = groups[g].pOuter;
            if (IsRingInsideRing(hole->m_pPoints, hole->m_iNumPoints, outer->m_pPoints, outer->m_iNumPoints))
                best = g;
        }
        if (best != outers)
            groups[best].Holes.push_back(hole);
        else
            groups.push_back({hole, {}});
    }
    return groups;
}
