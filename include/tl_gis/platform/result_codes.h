#pragma once
// Result codes of every load and write.

#include <tl_gis/export.h>
constexpr int GISFILE_OK = 0;
constexpr int GISFILE_ERR_UNAVAILABLE =
    6001;  // no format for the name, no file status, or a DXF import stopped
constexpr int GISFILE_ERR_OPEN =
    6002;  // cannot open or create, or the file does not start as its format must
constexpr int GISFILE_ERR_DATA = 6003;       // memory for a record, vertex array or work array unavailable
constexpr int GISFILE_ERR_CANCELLED = 6080;  // the user stopped an import of projected coordinates

// The JOB writer's own two results.
constexpr int JOBFILE_ERR_CREATE = 1;    // the output file cannot be created
constexpr int JOBFILE_ERR_NAME = -6001;  // the file name is not a usable job name

// A plain English description of a result code, for tools and logs.
TL_GIS_API const char* GetResultCodeText(int code);
