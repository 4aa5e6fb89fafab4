#pragma once
// Character sets of attribute texts: Windows Latin 1 and UTF-8. Declared in the public header,
// so that format modules built beside the library (the exchange formats) share them.

#include <tl_gis/platform/text_encoding.h>
