#pragma once
// Objects of a .mif DATA section that no profile takes geometry from, with the cause a load
// report counts them under.

#include <span>
#include <string_view>

#include <tl_gis/platform/numbers.h>
#include "gis/load_recording.h"

inline constexpr TNamedCause kMifUncarriedObjects[] = {
    {"ARC", LOAD_MIF_ARC},         {"TEXT", LOAD_MIF_TEXT},
    {"RECT", LOAD_MIF_RECT},       {"ROUNDRECT", LOAD_MIF_ROUNDRECT},
    {"ELLIPSE", LOAD_MIF_ELLIPSE}, {"NONE", LOAD_MIF_NONE},
};

// The entry that names the word, ignoring case; null when none does.
inline const TNamedCause* FindNamedCause(std::span<const TNamedCause> table, std::string_view word) {
    for (const TNamedCause& entry : table)
        if (EqualsNoCase(word, entry.pszName)) return &entry;
    return nullptr;
}
