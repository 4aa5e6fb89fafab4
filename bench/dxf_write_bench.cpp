// Writing 100,000 boundary polygons of 11 vertices as a release 12 drawing, in the system's
// profile and the complete one.

#include <benchmark/benchmark.h>

#include <filesystem>
#include <string>

#include <tl_gis/gis/dxf/gis_file_dxf.h>
#include <tl_gis/gis/line_assembly.h>

namespace {
constexpr int kPolygons = 100000;

void BM_DxfWrite(benchmark::State& state) {
    TMapLayer layer;
    for (int r = 0; r < kPolygons; ++r) {
        const double lat = 40.0 + (r % 1000) * 0.01, lon = -100.0 + (r / 1000) * 0.01;
        tagLOC ring[10];
        for (int k = 0; k < 10; ++k)
            ring[k] = {lat + (k < 5 ? 0 : 0.004), lon - (k < 5 ? k : 10 - k) * 0.001};
        // Closed: the eleventh vertex repeats the first.
        AddImportedLine(&layer, static_cast<int>(ELEMENT_LINE_BOUNDARY), r % 7 ? 16 : 17, 10, ring, "", true,
                        COLOR_NONE, false, false, false);
    }
    const std::string path = (std::filesystem::temp_directory_path() / "tl_gis_dxf_write_bench.dxf").string();
    std::int64_t bytes = 0;
    const bool saved = TGisFile::s_bCompleteProfile;
    TGisFile::s_bCompleteProfile = state.range(0) != 0;
    for (auto _ : state) {
        TGisFileDxf writer;
        if (writer.WriteFile(path.c_str(), &layer) != 0) state.SkipWithError("write failed");
        state.PauseTiming();
        bytes = static_cast<std::int64_t>(std::filesystem::file_size(path));
        state.ResumeTiming();
    }
    TGisFile::s_bCompleteProfile = saved;
    state.SetBytesProcessed(state.iterations() * bytes);
    state.counters["MB"] = static_cast<double>(bytes) / 1e6;
    std::filesystem::remove(path);
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
