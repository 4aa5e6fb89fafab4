#include <tl_gis/hostmap/element_kinds.h>

namespace {
// Names by GetElementKindOrder; the last stands for every code not listed.
constexpr const char* kKindNames[] = {"boundary", "area",   "road",  "water", "misc",    "generic",
                                      "line",     "marker", "point", "spray", "pattern", "unknown"};
static_assert(sizeof kKindNames / sizeof kKindNames[0] == ELEMENT_KIND_ORDER_COUNT);
}  // namespace

const char* GetElementKindNameAt(int order) {
    if (order < 0 || order >= ELEMENT_KIND_ORDER_COUNT) order = ELEMENT_KIND_ORDER_COUNT - 1;
    return kKindNames[order];
}

const char* GetElementKindName(std::uint32_t kind) {
    return GetElementKindNameAt(GetElementKindOrder(kind));
}
