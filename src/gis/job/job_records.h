#pragma once
// Pieces of JOB records shared by the writer's files.

#include <string>

#include <tl_gis/hostmap/loc.h>

// "\t%.6lf %.6lf\n": latitude and longitude of a body line.
void AppendJobCoordinateLine(std::string& out, const tagLOC& loc);
