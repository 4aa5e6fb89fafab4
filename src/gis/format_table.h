#pragma once
// The table of the five formats: one row each, the only place that knows them all.

#include <tl_gis/gis/gis_map.h>

struct TGisFormat {
    TLGIS_FILE_TYPE eType;
    const char* pszExtension;  // compared with the text after the last '.', ignoring case
    const char* pszName;
    TGisFile* (*pfnCreateReader)();  // null while this build cannot read the type
    TGisFile* (*pfnCreateWriter)();  // null while this build cannot write it
    // Passes the dispatcher's settings on to a writer before it writes (may be null).
    void (*pfnPrepareWriter)(TGisFile& writer, const TGisMap& map);
};

// The row of a type, or null for GIS_FILE_NONE and unknown values.
const TGisFormat* FindGisFormat(int type);
// All rows, in type order.
const TGisFormat* GisFormatsBegin();
const TGisFormat* GisFormatsEnd();
