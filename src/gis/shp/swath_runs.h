#pragma once
// Cutting a recorded spray run into stretches of nearly straight flight, each of which the
// shapefile writer turns into one swath polygon, and the plane geometry that decides the cuts.

#include <tl_gis/features/feature_spray.h>

// Heading from the first position to the second, degrees clockwise from north in 0..360.
double HeadingBetween(double lat0, double lon0, double lat1, double lon1);
// Whether segment P0-P1 crosses segment Q0-Q1, the (latitude, longitude) pairs taken as plane
// coordinates; touching ends count as crossing.
bool SegmentsCross(const tagLOC& p0, const tagLOC& p1, const tagLOC& q0, const tagLOC& q1);
// Plane distance in metres for short spans, with one fixed length per degree.
double FlatDistance(double lat0, double lon0, double lat1, double lon1);

// True when the run is wide enough for swath polygons: two samples or more, and sample 1's
// swath ends at least 0.1 m apart.
bool HasSwathWidth(const TFeatureSpray& spray);

enum TSwathRunEnd {
    SWATH_RUN_DONE = 0,  // samples start..end form a run
    SWATH_RUN_STOP = 1,  // a sample inside the run is not spraying: no run here nor after
};

// Finds the run that starts at sample start: it goes on while the step headings stay within
// 45 degrees of its first step and ends early in single-block mode. Where the swath line of a
// later sample crosses the first one's, the later sample's end that moved less is put onto the
// first sample's end, so the polygon cannot fold over itself; this changes the samples.
TSwathRunEnd FindSwathRun(TFeatureSpray& spray, int start, bool singleBlock, int& end);
