// Writing 100,000 boundary polygons of 11 vertices as a release 12 drawing, in the system's
// profile and the complete one.

#include <benchmark/benchmark.h>

#include <filesystem>
#include <string>

#include <tl_gis/gis/dxf/gis_file_dxf.h>
#include "write_bench.h"

namespace {
constexpr int kPolygons = 100000;

void BM_DxfWrite(benchmark::State& state) {
    TMapLayer layer;
    AddBenchPolygons(layer, kPolygons, 7, false);
    TGisFile::s_bCompleteProfile = state.range(0) != 0;
    RunWriteBenchmark<TGisFileDxf>(
        state, layer, (std::filesystem::temp_directory_path() / "tl_gis_dxf_write_bench.dxf").string());
    TGisFile::s_bCompleteProfile = false;
}
// complete:0 writes as the system does, complete:1 in the complete profile.
BENCHMARK(BM_DxfWrite)
    ->ArgName("complete")
    ->Arg(0)
    ->Arg(1)
    ->Unit(benchmark::kMillisecond)
    ->MinTime(3.0)
    ->UseRealTime();
}  // namespace
