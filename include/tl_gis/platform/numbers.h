#pragma once
// Locale-independent number parsing and formatting shared by every format.
//
// Parsing follows the C library's text-to-number conversions: leading white space is skipped,
// the longest decimal prefix is taken, and a text without one counts as 0. Formatting gives
// exactly what printf's "%.Nf" gives in the C locale, whatever locale the host has set.

#include <tl_gis/export.h>
#include <cstdint>
#include <string>
#include <string_view>

// Longest leading decimal prefix as a double (atof/strtod style). ok, when given, says whether
// any number was found.
TL_GIS_API double ParseDouble(std::string_view text, bool* ok = nullptr);
// The unsigned decimal number at the start of [first, last), no blanks or sign before it, as
// std::from_chars reads it; returns its end, or first when there is none. Values beyond the
// double range saturate as strtod's do (infinity, or 0 for a tiny one).
TL_GIS_API const char* ScanUnsignedDouble(const char* first, const char* last, double& value);
// Longest leading decimal prefix as an integer (atoi style), saturated to the int range.
TL_GIS_API int ParseInt(std::string_view text, bool* ok = nullptr);
TL_GIS_API long long ParseInt64(std::string_view text, bool* ok = nullptr);

// Appends value with a fixed number of decimals, as "%.<decimals>f" does.
TL_GIS_API void AppendFixed(std::string& out, double value, int decimals);
TL_GIS_API std::string FormatFixed(double value, int decimals);
// Appends a decimal integer, as "%d" / "%ld" do.
TL_GIS_API void AppendInt(std::string& out, long long value);
// Appends value as "%<width>.<decimals>f" does: right-aligned, padded on the left with spaces.
TL_GIS_API void AppendFixedWidth(std::string& out, double value, int width, int decimals);
// Appends value as "%<width>d" (zeroPad false) or "%0<width>d" (zeros between the sign and the
// digits) does.
TL_GIS_API void AppendIntWidth(std::string& out, long long value, int width, bool zeroPad);
// Shortest text that reads back as the same double (for reports and JSON).
TL_GIS_API std::string FormatRoundTrip(double value);

// ASCII case-insensitive comparisons, independent of the locale.
TL_GIS_API bool EqualsNoCase(std::string_view a, std::string_view b);
TL_GIS_API bool StartsWithNoCase(std::string_view text, std::string_view prefix);
