#pragma once
// Character sets of attribute texts. The system writes Windows Latin 1; modern files declare
// their set (a shapefile's .cpg, a MIF header's Charset) and are mostly UTF-8. The complete
// profile keeps texts in UTF-8 inside the library and converts at the file. Public, so that
// format modules built beside the library convert the same way.

#include <tl_gis/export.h>
#include <string>
#include <string_view>

enum TTextEncoding {
    ENCODING_UTF8,
    ENCODING_WINDOWS_1252,  // Windows Latin 1, which ISO 8859-1 files also read as
};

// The encoding a declaration names ("UTF-8", "65001", "1252", "CP1252", "Windows-1252",
// "WindowsLatin1", "ISO-8859-1", "Latin1", "88591", ignoring case, blanks and quotes); false for
// one the library does not know.
TL_GIS_API bool EncodingFromName(std::string_view name, TTextEncoding& encoding);

// The text in UTF-8: Windows Latin 1 converted byte by byte; UTF-8 checked, each byte of an
// invalid sequence taken as Windows Latin 1.
TL_GIS_API std::string ToUtf8(std::string_view text, TTextEncoding from);
// UTF-8 text in the encoding; characters it cannot hold become '?'.
TL_GIS_API std::string FromUtf8(std::string_view text, TTextEncoding to);
