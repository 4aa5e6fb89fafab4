#pragma once
// Attribute columns in the complete profile: the chosen id, value and name columns and the bound
// names. Declared in the public header, so that format modules built beside the library (the
// exchange formats) share them.

#include <tl_gis/gis/chosen_columns.h>
