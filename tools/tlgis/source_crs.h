#pragma once
// Where the coordinate reference system of a file to be reprojected comes from.

#include <string>

struct TSourceCrs {
    std::string strDefinition;  // what PROJ is given; empty when the file names no CRS
    std::string strFrom;        // where it was found: "--crs", "field.prj", "field.mif"
};

// The CRS of the file at path, of the format type (TLGIS_FILE_TYPE): crsOption (the value of
// --crs: a definition, or a file that holds one) overrides what the file says; otherwise a
// shapefile's .prj beside it and a MIF header's CoordSys clause name it. False with one line in
// error, naming the file and what was not understood, when what names the CRS is empty or
// cannot be mapped; true with an empty definition when nothing names one.
bool FindSourceCrs(const std::string& path, int type, const std::string& crsOption, TSourceCrs& crs,
                   std::string& error);
