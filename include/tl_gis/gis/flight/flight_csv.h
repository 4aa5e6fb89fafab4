#pragma once
// Recorded spray from a flight-data CSV file, so that spray runs can be made without the
// aircraft's own recorder.
//
// One sample per row after a header row, fields separated by commas (a field may be quoted
// with "..." and "" inside). Required columns: run, time, lat, lon, heading, speed, spray,
// swath; optional: height, agl, line, track, boom, rate/target (channel 1), rate2..rate10,
// target2..target10, field, aircraft, pilot, offset. Column names ignore case; unknown columns
// are ignored. Rows with the same run value form one spray run, in file order; runs come in
// the order of their first row.

#include <tl_gis/export.h>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include <tl_gis/features/feature_spray.h>

class TTextFile;

// Longest row accepted; a longer one is an error, found without reading the rest of it.
constexpr std::size_t FLIGHT_CSV_MAX_LINE = 64 * 1024;

struct TFlightImport {
    // GISFILE_OK, GISFILE_ERR_OPEN (file cannot be opened) or GISFILE_ERR_DATA (bad content).
    int iResult = 0;
    // What went wrong, naming the line and the column; empty on success.
    std::string strError;
    // The runs read, with swath ends and extents set; empty after any error.
    std::vector<std::unique_ptr<TFeatureSpray>> Sprays;
};

TL_GIS_API TFlightImport ReadFlightCsv(TTextFile& file);
TL_GIS_API TFlightImport ReadFlightCsvFile(const char* path);
