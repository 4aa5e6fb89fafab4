// Writing 100,000 boundary polygons of 11 vertices as a MapInfo pair, in the default and the
// complete profile (first argument), with every seventh an exclusion ring that lies inside no
// other or none (second argument).

#include <benchmark/benchmark.h>

#include <filesystem>
#include <string>

#include <tl_gis/gis/line_assembly.h>
#include <tl_gis/gis/midmif/gis_file_midmif.h>

namespace {
constexpr int kPolygons = 100000;

void BM_MifWrite(benchmark::State& state) {
    TGisFile::s_bCompleteProfile = state.range(0) != 0;
    TMapLayer layer;
    for (int r = 0; r < kPolygons; ++r) {
        const double lat = 40.0 + (r % 1000) * 0.01, lon = -100.0 + (r / 1000) * 0.01;
        tagLOC ring[10];
        for (int k = 0; k < 10; ++k)
            ring[k] = {lat + (k < 5 ? 0 : 0.004), lon - (k < 5 ? k : 10 - k) * 0.001};
        // Closed: the eleventh vertex repeats the first.
        const int bound = state.range(1) != 0 && r % 7 == 0 ? BOUNDARY_EXC : BOUNDARY_INC;
        AddImportedLine(&layer, static_cast<int>(ELEMENT_LINE_BOUNDARY), bound, 10, ring,
                        std::to_string(r).c_str(), true, COLOR_NONE, false, false, false);
    }
    const std::string path = (std::filesystem::temp_directory_path() / "tl_gis_mif_write_bench.mif").string();
    std::int64_t bytes = 0;
    for (auto _ : state) {
        TGisFileMidMif writer;
        if (writer.WriteFile(path.c_str(), &layer) != 0) state.SkipWithError("write failed");
        state.PauseTiming();
        bytes = static_cast<std::int64_t>(std::filesystem::file_size(path));
        state.ResumeTiming();
    }
    TGisFile::s_bCompleteProfile = false;
    state.SetBytesProcessed(state.iterations() * bytes);
    state.counters["MB"] = static_cast<double>(bytes) / 1e6;
    std::filesystem::remove(path);
    std::filesystem::remove(std::filesystem::path(path).replace_extension(".mid"));
}
BENCHMARK(BM_MifWrite)
    ->ArgsProduct({{0, 1}, {0, 1}})
    ->Unit(benchmark::kMillisecond)
    ->MinTime(3.0)
    ->UseRealTime();
}  // namespace
