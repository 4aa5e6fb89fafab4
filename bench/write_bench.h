#pragma once
// What the writer benchmarks share: a layer of polygons laid out as the comparison data are, and
// the loop that writes it once per iteration.

#include <benchmark/benchmark.h>

#include <cstdint>
#include <filesystem>
#include <string>

#include <tl_gis/gis/line_assembly.h>

// Adds count boundary polygons of 11 vertices, 1,000 to a column, each closed (its eleventh vertex
// repeats the first); every exclusionEvery-th is an exclusion ring (none for 0), lying inside
// no other. Named by their number when named is set, otherwise without an id.
inline void AddBenchPolygons(TMapLayer& layer, int count, int exclusionEvery, bool named) {
    for (int r = 0; r < count; ++r) {
        const double lat = 40.0 + (r % 1000) * 0.01, lon = -100.0 + (r / 1000) * 0.01;
        tagLOC ring[10];
        for (int k = 0; k < 10; ++k)
            ring[k] = {lat + (k < 5 ? 0 : 0.004), lon - (k < 5 ? k : 10 - k) * 0.001};
        const int bound = exclusionEvery > 0 && r % exclusionEvery == 0 ? BOUNDARY_EXC : BOUNDARY_INC;
        AddImportedLine(&layer, static_cast<int>(ELEMENT_LINE_BOUNDARY), bound, 10, ring,
                        named ? std::to_string(r).c_str() : "", true, COLOR_NONE, false, false, false);
    }
}

// Writes the layer to path with a fresh writer per iteration and reports the bytes written;
// the files are removed after (beside path, those with the extensions given).
template <class TWriter>
void RunWriteBenchmark(benchmark::State& state, TMapLayer& layer, const std::string& path,
                       std::initializer_list<const char*> companions = {}) {
    std::int64_t bytes = 0;
    for (auto _ : state) {
        TWriter writer;
        if (writer.WriteFile(path.c_str(), &layer) != 0) state.SkipWithError("write failed");
        state.PauseTiming();
        bytes = static_cast<std::int64_t>(std::filesystem::file_size(path));
        state.ResumeTiming();
    }
    state.SetBytesProcessed(state.iterations() * bytes);
    state.counters["MB"] = static_cast<double>(bytes) / 1e6;
    std::filesystem::remove(path);
    for (const char* extension : companions)
        std::filesystem::remove(std::filesystem::path(path).replace_extension(extension));
}
