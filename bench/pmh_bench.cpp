// PMH writing and reading speed: a rate map of 100,000 polygons of 11 vertices each.

#include <benchmark/benchmark.h>

#include <unistd.h>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <numbers>
#include <string>
#include <vector>

#include <tl_gis/gis/line_assembly.h>
#include <tl_gis/gis/pmh/gis_file_pmh.h>
#include <tl_gis/platform/message_box.h>

namespace {
constexpr int kPolygons = 100000;
constexpr int kVertices = 11;  // ten corners and the first once more

std::string TempPath(const char* name) {
    const auto dir = std::filesystem::temp_directory_path() / ("tl_gis_bench_" + std::to_string(getpid()));
    std::filesystem::create_directories(dir);
    return (dir / name).string();
}

// Small closed rings on a grid, as a prescription map of 20 m cells has them, with rates 0 to 99.
void BuildRateMap(TMapLayer& layer) {
    layer.m_iRateUnits = 8;
    tagLOC ring[kVertices];
    for (int p = 0; p < kPolygons; ++p) {
        const double lat = 45.0 + (p / 400) * 2e-4, lon = -93.0 + (p % 400) * 3e-4;
        for (int i = 0; i < kVertices - 1; ++i) {
            const double a = i * 2.0 * std::numbers::pi / (kVertices - 1);
            ring[i] = {lat + 8e-5 * std::sin(a), lon + 1.1e-4 * std::cos(a)};
        }
        ring[kVertices - 1] = ring[0];
        layer.m_dValue = p % 100;
        AddImportedLine(&layer, static_cast<int>(ELEMENT_LINE_BOUNDARY), BOUNDARY_INC, kVertices, ring, "",
                        false, COLOR_NONE, false, false, false);
    }
}

void BM_WriteRateMap(benchmark::State& state) {
    TMapLayer layer;
    BuildRateMap(layer);
    const std::string path = TempPath("write.pmh");
    for (auto _ : state) {
        TGisFilePmh pmh;
        if (pmh.WriteFile(path.c_str(), &layer) != GISFILE_OK) state.SkipWithError("write failed");
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) *
                            static_cast<int64_t>(std::filesystem::file_size(path)));
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * kPolygons);
    std::filesystem::remove(path);
}
BENCHMARK(BM_WriteRateMap)->Unit(benchmark::kMillisecond);

void BM_ReadRateMap(benchmark::State& state) {
    const std::string path = TempPath("read.pmh");
    {
        TMapLayer layer;
        BuildRateMap(layer);
        TGisFilePmh pmh;
        if (pmh.WriteFile(path.c_str(), &layer) != GISFILE_OK) {
            state.SkipWithError("could not write the input");
            return;
        }
    }
    TScopedMessageHandler quiet([](const TMessageBoxRequest&) { return static_cast<int>(ANSWER_NO); });
    for (auto _ : state) {
        TMapLayer layer;
        TGisFilePmh pmh;
        if (pmh.LoadFile(path.c_str(), &layer, nullptr) != GISFILE_OK || layer.GetElementCount() != kPolygons)
            state.SkipWithError("read failed");
        benchmark::DoNotOptimize(layer.m_Elements.data());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) *
                            static_cast<int64_t>(std::filesystem::file_size(path)));
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * kPolygons);
    if (std::getenv("TL_GIS_BENCH_KEEP") == nullptr) std::filesystem::remove(path);
}
BENCHMARK(BM_ReadRateMap)->Unit(benchmark::kMillisecond);
}  // namespace
