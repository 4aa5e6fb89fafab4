#pragma once
// Element kind codes (upper 20 bits of an element's m_dwType), bound types and flag bits.

#include <tl_gis/export.h>
#include <cstdint>

constexpr std::uint32_t ELEMENT_KIND_MASK = 0xFFFFF000u;
constexpr std::uint32_t ELEMENT_LOW_MASK = 0x00000FFFu;

constexpr std::uint32_t ELEMENT_MARKER = 0x03000000u;
constexpr std::uint32_t ELEMENT_LINE = 0x04100000u;  // line of no particular class
constexpr std::uint32_t ELEMENT_LINE_BOUNDARY = 0x04101000u;
constexpr std::uint32_t ELEMENT_LINE_AREA = 0x04102000u;
constexpr std::uint32_t ELEMENT_LINE_ROAD = 0x04103000u;
constexpr std::uint32_t ELEMENT_LINE_WATER = 0x04104000u;
constexpr std::uint32_t ELEMENT_LINE_MISC = 0x0410D000u;
constexpr std::uint32_t ELEMENT_LINE_GENERIC = 0x0410F000u;
constexpr std::uint32_t ELEMENT_POINT = 0x05000000u;
constexpr std::uint32_t ELEMENT_SPRAY = 0x0C000000u;
constexpr std::uint32_t ELEMENT_SPRAY_ALT = 0x0C010000u;
constexpr std::uint32_t ELEMENT_PATTERN = 0x10000000u;

constexpr int BOUNDARY_INC = 16;
constexpr int BOUNDARY_EXC = 17;
constexpr int BOUNDARY_OPEN = 18;

// Bits of an element's flags word.
constexpr std::uint32_t ELEMENT_FLAG_PATTERN_A = 0x40u;
constexpr std::uint32_t ELEMENT_FLAG_PATTERN_B = 0x80u;
constexpr std::uint32_t ELEMENT_FLAG_SPRAY = 0x2000u;
constexpr std::uint32_t ELEMENT_FLAG_WRITER_LAYER = 0x10000u;

// Bits of an element's state word.
constexpr std::uint32_t ELEMENT_STATE_HIGHLIGHT = 0x1u;

// The colour value that means "no colour".
constexpr std::uint32_t COLOR_NONE = 0xFFFFFFFFu;

// Kinds in the order reports list them: boundary, area, road, water, misc, generic, line,
// marker, point, spray, pattern, then "unknown" for every other code.
constexpr int ELEMENT_KIND_ORDER_COUNT = 12;
// The position of a kind code (its high 20 bits) in that order; inline, as a load report asks
// it of every element a load adds.
constexpr int GetElementKindOrder(std::uint32_t kind) {
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
// The name of the kind at a position of that order, or of a kind code.
TL_GIS_API const char* GetElementKindNameAt(int order);
TL_GIS_API const char* GetElementKindName(std::uint32_t kind);
