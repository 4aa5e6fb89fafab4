#pragma once
// Character sets of attribute texts: Windows Latin 1 and UTF-8. The conversions themselves are
// declared in the public header, so that format modules built beside the library (the exchange
// formats) share them; the escaping form below serves the library's own writers.

#include <cstdint>
#include <string>
#include <string_view>

#include <tl_gis/platform/text_encoding.h>

// As FromUtf8, but a character the encoding cannot hold (a Unicode code point) is appended by
// escape instead, in the form the format has for it; invalid bytes still become '?'.
std::string FromUtf8(std::string_view text, TTextEncoding to, void (*escape)(std::uint32_t, std::string&));
// Appends the UTF-8 bytes of a Unicode code point.
void AppendUtf8(std::string& out, std::uint32_t codePoint);
