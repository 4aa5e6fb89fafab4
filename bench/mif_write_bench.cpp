// Writing 100,000 boundary polygons of 11 vertices as a MapInfo pair, in the default and the
// complete profile (first argument), with every seventh an exclusion ring that lies inside no
// other or none (second argument).

#include <benchmark/benchmark.h>

#include <filesystem>
#include <string>

#include <tl_gis/gis/midmif/gis_file_midmif.h>
#include "write_bench.h"

namespace {
constexpr int kPolygons = 100000;

void BM_MifWrite(benchmark::State& state) {
    TMapLayer layer;
    AddBenchPolygons(layer, kPolygons, state.range(1) != 0 ? 7 : 0, true);
    TGisFile::s_bCompleteProfile = state.range(0) != 0;
    RunWriteBenchmark<TGisFileMidMif>(
        state, layer, (std::filesystem::temp_directory_path() / "tl_gis_mif_write_bench.mif").string(),
        {".mid"});
    TGisFile::s_bCompleteProfile = false;
}
BENCHMARK(BM_MifWrite)
    ->ArgsProduct({{0, 1}, {0, 1}})
    ->Unit(benchmark::kMillisecond)
    ->MinTime(3.0)
    ->UseRealTime();
}  // namespace
