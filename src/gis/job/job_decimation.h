#pragma once
// Douglas-Peucker decimation of the JOB writer, with tolerances in degrees.

#include <cstdint>

#include <tl_gis/hostmap/loc.h>

// Distance of p from the line through p1 and p2, in degrees, with longitudes scaled by the
// cosine of each point's own latitude.
double DistanceToLine(const tagLOC& p1, const tagLOC& p2, const tagLOC& p);

// Marks (sets to 1) every vertex between first and last that the decimation removes. Splits
// are visited depth first, the part before the farthest vertex first, from an explicit work
// list, so a line of any length needs no deep call stack.
void MarkDouglasPeucker(const tagLOC* points, std::uint8_t* marks, int first, int last, double tolerance);

// Removes vertices in place and returns the new count; the count unchanged when the tolerance
// is below 1e-6, count is below 3, or no memory for the marks can be had.
int DecimateLocArray(tagLOC* points, int count, double tolerance);

// Metres to degrees of latitude, as the writer converts its tolerances.
constexpr double JOB_DEGREES_PER_METRE = 8.999298684653504e-06;

// The tolerance of reduction pass t (t tenths of a metre).
inline double JobReductionTolerance(long long pass) {
    return static_cast<double>(pass) * 0.1 * JOB_DEGREES_PER_METRE;
}

// Decimates points in place with the tolerance of the first pass t = 1, 2, 3 ... that leaves
// fewer than limit vertices, and returns the new count. Gives the result of trying the passes
// one after another, but finds the pass from one ranking of the line's splits. Returns -1
// (points untouched) when no pass can bring the line under the limit or memory fails.
int ReduceBelowVertexLimit(tagLOC* points, int count, int limit);
