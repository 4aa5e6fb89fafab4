// Attribute tags of imported inserts: the tag of an insert's last attribute picks the symbol
// of the marker it becomes. NM-xxx rows come before the bare NM row.

#include <iterator>

#include <tl_gis/hostmap/element_kinds.h>
#include "gis/dxf/dxf_tables.h"

const TDxfTagClass s_aTagClasses[] = {
    {"TGR_NAME", ELEMENT_MARKER, 56},  {"NM-BU", ELEMENT_MARKER, 50},   {"NM-CMTRY", ELEMENT_MARKER, 53},
    {"NM-CHURCH", ELEMENT_MARKER, 52}, {"NM-MINE", ELEMENT_MARKER, 54}, {"NM-SCHOOL", ELEMENT_MARKER, 51},
    {"NM", ELEMENT_MARKER, 56},        {"SC-", ELEMENT_MARKER, 56},     {"WC-", ELEMENT_MARKER, 56},
    {"SECTNR", ELEMENT_MARKER, 56},    {"TIC", ELEMENT_MARKER, 2},
};

const int s_iTagClassCount = static_cast<int>(std::size(s_aTagClasses));

const TDxfTagClass* FindDxfTagClass(std::string_view tag) {
    for (const TDxfTagClass& row : s_aTagClasses)
        if (tag.starts_with(row.szPrefix)) return &row;
    return nullptr;
}
