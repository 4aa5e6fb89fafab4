// Writes the data sets the comparison benchmarks run on, through the library's own writers:
//
//   make_bench_data polygons OUT.(shp|dxf|mif|job|pmh) [COUNT]   COUNT boundaries of 11 vertices
//   make_bench_data flight OUT.csv [SAMPLES]                      a flight of SAMPLES samples
//   make_bench_data idtable OUT.dbf [COUNT]                       a table of one ID field, 1..COUNT
//
// Polygons are ten-sided rings on a 400-column grid near 45 N 93.5 W; the flight flies 200 m
// passes back and forth over the same area, spraying on every other pass.

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include <tl_gis/gis/gis_map.h>
#include <tl_gis/gis/line_assembly.h>
#include <tl_gis/gis/midmif/gis_file_midmif.h>
#include <tl_gis/platform/message_box.h>
#include <tl_gis/platform/numbers.h>
#include "gis/shp/dbf_table.h"

namespace {
constexpr int kCorners = 10;

int WritePolygons(const char* out, long count) {
    TMapLayer layer;
    std::vector<tagLOC> ring(kCorners);
    const double pi = std::acos(-1.0);
    for (long i = 0; i < count; ++i) {
        const double lon = -93.5 + (i % 400) * 0.002, lat = 45.0 + (i / 400) * 0.002;
        for (int k = 0; k < kCorners; ++k) {
            const double a = -2.0 * pi * k / kCorners;
            ring[k] = {lat + 0.0006 * std::sin(a), lon + 0.0008 * std::cos(a)};
        }
        const std::string id = std::to_string(i + 1);
        if (AddImportedLine(&layer, ELEMENT_LINE_BOUNDARY, BOUNDARY_INC, kCorners, ring.data(), id.c_str(),
                            true, COLOR_NONE, false, false, false) == nullptr)
            return 3;
    }
    layer.CalculateGeoExtents();
    TGisMap map;
    map.m_bWriteBoundaries = true;              // a shapefile of the boundaries, there being no spray
    TGisFileMidMif::s_bMidCompleteRows = true;  // rows that other GIS programs read to the end
    const int result = map.WriteFile(out, &layer);
    if (result != 0) std::fprintf(stderr, "make_bench_data: writing %s failed (%d)\n", out, result);
    return result == 0 ? 0 : 1;
}

// The boundary shapefile's own table has no fields, and GDAL will not write a MIF without one;
// this table gives the other programs one ID per shape.
int WriteIdTable(const char* out, long count) {
    static constexpr TDbfField kFields[] = {{"ID", 'N', 10, 0}};
    std::string bytes;
    AppendDbfHeader(bytes, kFields, static_cast<std::uint32_t>(count), GetDbfDateToday());
    TDbfRecordWriter record;
    for (long i = 0; i < count; ++i) {
        record.Begin(kFields);
        record.AddInteger(i + 1);
        bytes += record.Bytes();
    }
    bytes += static_cast<char>(DBF_FILE_END);
    std::FILE* f = std::fopen(out, "wb");
    if (f == nullptr) return 1;
    const bool ok = std::fwrite(bytes.data(), 1, bytes.size(), f) == bytes.size();
    return std::fclose(f) == 0 && ok ? 0 : 1;
}

int WriteFlight(const char* out, long samples) {
    std::FILE* f = std::fopen(out, "wb");
    if (f == nullptr) return 1;
    std::fputs("run,time,lat,lon,heading,speed,spray,swath,height,rate,target\n", f);
    const long perPass = 100;  // 2 m apart at 50 m/s, 25 samples a second
    std::string row;
    for (long i = 0; i < samples; ++i) {
        const long pass = i / perPass, step = i % perPass;
        const bool north = pass % 2 == 0;
        const double lat = 45.0 + (north ? step : perPass - 1 - step) * 0.000018;
        const double lon = -93.5 + (pass % 2000) * 0.000234;
        const long centi = i * 4;  // hundredths of a second
        const long s = centi / 100, h = 8 + s / 3600;
        char time[40];
        std::snprintf(time, sizeof time, "2024-06-01T%02ld:%02ld:%02ld.%02ld", h % 24, (s / 60) % 60, s % 60,
                      centi % 100);
        row.clear();
        row += std::to_string(pass / 50) + "," + time + ",";
        AppendFixed(row, lat, 7);
        row += ",";
        AppendFixed(row, lon, 7);
        row += north ? ",0,50,1,18.288,20,50,50\n" : ",180,50,0,18.288,20,0,50\n";
        std::fputs(row.c_str(), f);
    }
    return std::fclose(f) == 0 ? 0 : 1;
}
}  // namespace

int main(int argc, char** argv) {
    if (argc < 3) {
        std::fputs(
            "usage: make_bench_data polygons OUT [COUNT] | flight OUT.csv [SAMPLES] | idtable OUT.dbf "
            "[COUNT]\n",
            stderr);
        return 2;
    }
    const std::string what = argv[1];
    const long count = argc > 3 ? std::atol(argv[3]) : (what == "flight" ? 1000000 : 100000);
    if (what == "polygons") return WritePolygons(argv[2], count);
    if (what == "flight") return WriteFlight(argv[2], count);
    if (what == "idtable") return WriteIdTable(argv[2], count);
    std::fputs("make_bench_data: say polygons, flight or idtable\n", stderr);
    return 2;
}
