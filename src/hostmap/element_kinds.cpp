#include <tl_gis/hostmap/element_kinds.h>

namespace {
struct TKindName {
    std::uint32_t dwKind;
    const char* pszName;
};

// Both spray codes are one kind; the last row stands for every code not listed.
constexpr TKindName kKinds[] = {
    {ELEMENT_LINE_BOUNDARY, "boundary"},
    {ELEMENT_LINE_AREA, "area"},
    {ELEMENT_LINE_ROAD, "road"},
    {ELEMENT_LINE_WATER, "water"},
    {ELEMENT_LINE_MISC, "misc"},
    {ELEMENT_LINE_GENERIC, "generic"},
    {ELEMENT_LINE, "line"},
    {ELEMENT_MARKER, "marker"},
    {ELEMENT_POINT, "point"},
    {ELEMENT_SPRAY, "spray"},
    {ELEMENT_PATTERN, "pattern"},
    {0, "unknown"},
};
static_assert(sizeof kKinds / sizeof kKinds[0] == ELEMENT_KIND_ORDER_COUNT);
}  // namespace

int GetElementKindOrder(std::uint32_t kind) {
    kind &= ELEMENT_KIND_MASK;
    if (kind == ELEMENT_SPRAY_ALT) kind = ELEMENT_SPRAY;
    for (int i = 0; i < ELEMENT_KIND_ORDER_COUNT - 1; ++i)
        if (kKinds[i].dwKind == kind) return i;
    return ELEMENT_KIND_ORDER_COUNT - 1;
}

const char* GetElementKindNameAt(int order) {
    if (order < 0 || order >= ELEMENT_KIND_ORDER_COUNT) order = ELEMENT_KIND_ORDER_COUNT - 1;
    return kKinds[order].pszName;
}

const char* GetElementKindName(std::uint32_t kind) {
    return GetElementKindNameAt(GetElementKindOrder(kind));
}
