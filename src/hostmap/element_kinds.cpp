#include <tl_gis/hostmap/element_kinds.h>

namespace {
// Names by GetElementKindOrder; the last stands for every code not listed.
constexpr const char* kKindNames[] = {"boundary", "area",   "road",  "water", "misc",    "generic",
                                      "line",     "marker", "point", "spray", "pattern", "unknown"};
static_assert(sizeof kKindNames / sizeof kKindNames[0] == ELEMENT_KIND_ORDER_COUNT);
}  // namespace

int GetElementKindOrder(std::uint32_t kind) {
    // A switch, as a load report asks this of every element a load added.
    switch (kind & ELEMENT_KIND_MASK) {
        case ELEMENT_LINE_BOUNDARY:
            return 0;
        case ELEMENT_LINE_AREA:
            return 1;
        case ELEMENT_LINE_ROAD:
            return 2;
        case ELEMENT_LINE_WATER:
            return 3;
        case ELEMENT_LINE_MISC:
            return 4;
        case ELEMENT_LINE_GENERIC:
            return 5;
        case ELEMENT_LINE:
            return 6;
        case ELEMENT_MARKER:
            return 7;
        case ELEMENT_POINT:
            return 8;
        case ELEMENT_SPRAY:
        case ELEMENT_SPRAY_ALT:
            return 9;
        case ELEMENT_PATTERN:
            return 10;
        default:
            return ELEMENT_KIND_ORDER_COUNT - 1;
    }
}

const char* GetElementKindNameAt(int order) {
    if (order < 0 || order >= ELEMENT_KIND_ORDER_COUNT) order = ELEMENT_KIND_ORDER_COUNT - 1;
    return kKindNames[order];
}

const char* GetElementKindName(std::uint32_t kind) {
    return GetElementKindNameAt(GetElementKindOrder(kind));
}
