#pragma once
// The header lines of an application-rate map, apart from the file they are read from or
// written to.

#include <string>
#include <string_view>

#include <tl_gis/gis/pmh/gis_file_pmh.h>
#include <tl_gis/hostmap/map_layer.h>

constexpr int PMH_HEADER_LINES = 31;

// Line 1: trimmed, then split from the right at single blanks into the last word, a number, a
// word and a number; what remains before them is the first field.
void ReadPmhTitleLine(std::string_view line, TMapLayer& layer);
// Line 20: mid, min and max rate, separated by blanks.
void ReadPmhRateLine(std::string_view line, TMapLayer& layer);
// Line 31: the units code is the number before the first blank.
int ReadPmhUnitsLine(std::string_view line);

// Sets the layer's rate statistics from the rates of the elements written as polygons: min and
// max of the rates (min 0 when all are equal, both 0 without polygons) and mid halfway.
void ComputePmhRateStatistics(TMapLayer& layer);

// Appends the 31 header lines, each ended by '\n'; when the units code has no text, line 31 is
// left out (blank in the complete profile).
void AppendPmhHeader(std::string& out, const TMapLayer& layer);
