#pragma once
// Rings as polygon formats hold them: an outer ring and the holes inside it. The map model keeps
// every ring as a line of its own, inclusion (16) or exclusion (17); the complete profile's
// readers tell holes by containment and its writers put each exclusion ring back into the
// inclusion ring that contains it.

#include <vector>

#include <tl_gis/hostmap/features.h>

// Whether the point lies inside the ring (even-odd rule; the ring may or may not repeat its first
// vertex at the end). Points on the boundary may fall either way.
bool IsPointInRing(const tagLOC& point, const tagLOC* ring, int count);

// Whether the inner ring lies inside the outer one: its box within the outer box and a vertex of
// it inside the outer ring (rings that cross each other are not told apart).
bool IsRingInsideRing(const tagLOC* inner, int innerCount, const tagLOC* outer, int outerCount);

struct TPolygonGroup {
    const TFeatureLine* pOuter = nullptr;
    std::vector<const TFeatureLine*> Holes;
};

// Groups the rings in their order: every inclusion ring (and every ring of another bound type
// than 17) starts a group; each exclusion ring joins the smallest earlier-or-later inclusion
// ring that contains it, and is a group of its own when none does.
std::vector<TPolygonGroup> GroupRingsIntoPolygons(const std::vector<const TFeatureLine*>& rings);
