#pragma once
// KMZ files: a zip archive whose KML is doc.kml, or else its first .kml file; images and other
// files beside it are the KML's resources. Archives are read and written in memory. What is
// read is capped: an entry larger than 256 MiB (whatever it claims) is not read, so a zip bomb
// ends with an error, and entries whose names leave the archive's folder are never used.

#include <string>

#include <tl_gis/platform/result_codes.h>
#include <string_view>

#include "layer_import.h"

struct TKmzKml {
    bool bOk = false;
    std::string strKml;    // the KML text
    std::string strEntry;  // its name in the archive
    std::string strError;  // why there is none
    int iResult = 0;       // then 6002 (no zip archive) or 6003 (no KML in it, or one not read)
};

// The KML of an archive; entries passed over are counted through the import at place 0.
TKmzKml ReadKmzKml(std::string_view archive, TLayerImport& import);

// An archive holding the KML as doc.kml; false when zipping fails.
bool WriteKmzArchive(std::string_view kml, std::string& archive);
