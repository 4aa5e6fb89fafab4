#pragma once
// Objects of a .mif DATA section that a reader counts in its load report, by the keyword that
// begins them.

#include <span>
#include <string_view>

#include <tl_gis/gis/load_report.h>
#include <tl_gis/platform/numbers.h>

struct TMifObjectCause {
    std::string_view name;
    TLoadCause eCause;
};

// Objects no profile takes geometry from.
inline constexpr TMifObjectCause kMifUncarriedObjects[] = {
    {"ARC", LOAD_MIF_ARC},         {"TEXT", LOAD_MIF_TEXT},
    {"RECT", LOAD_MIF_RECT},       {"ROUNDRECT", LOAD_MIF_ROUNDRECT},
    {"ELLIPSE", LOAD_MIF_ELLIPSE}, {"NONE", LOAD_MIF_NONE},
};

// The entry that names the word, ignoring case; null when none does.
inline const TMifObjectCause* FindObjectCause(std::span<const TMifObjectCause> table, std::string_view word) {
    for (const TMifObjectCause& entry : table)
        if (EqualsNoCase(word, entry.name)) return &entry;
    return nullptr;
}
