// JOB reading and writing speed: option 0 reduction of a layer twice the vertex total, a
// 10 MB file read, and decimation of a million-vertex line.

#include <benchmark/benchmark.h>

#include <unistd.h>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include <tl_gis/gis/job/gis_file_job.h>
#include <tl_gis/gis/line_assembly.h>
#include <tl_gis/platform/message_box.h>
#include "gis/job/job_decimation.h"

namespace {
// A file in a folder of this run (the writer takes the job number from the file name).
std::string TempPath(const char* name) {
    const auto dir = std::filesystem::temp_directory_path() / ("tl_gis_bench_" + std::to_string(getpid()));
    std::filesystem::create_directories(dir);
    return (dir / name).string();
}

// A field edge as recorded: a slow curve with a metre of noise, one vertex every 1.4 m.
std::vector<tagLOC> RecordedLine(int n, double lat, unsigned seed) {
    std::mt19937 random(seed);
    std::normal_distribution<double> noise(0.0, 1.0);
    std::vector<tagLOC> line(static_cast<std::size_t>(n));
    for (int i = 0; i < n; ++i) {
        const double northM = 40.0 * std::sin(i * 0.004) + noise(random);
        line[static_cast<std::size_t>(i)] = {lat + northM / 111320.0, -93.0 + i * 2e-5};
    }
    return line;
}

void BM_WriteReducedToTheTotal(benchmark::State& state) {
    // lines x vertices = 197,802: twice the 98,901 vertices a file may hold.
    const int lines = static_cast<int>(state.range(0));
    const int vertices = 197802 / lines;
    TMapLayer layer;
    for (int i = 0; i < lines; ++i) {
        const std::vector<tagLOC> line =
            RecordedLine(vertices, 45.0 + i * 0.001, static_cast<unsigned>(i + 1));
        AddImportedLine(&layer, static_cast<int>(ELEMENT_LINE_BOUNDARY), BOUNDARY_OPEN, vertices, line.data(),
                        "", false, COLOR_NONE, false, false, false);
    }
    TScopedMessageHandler quiet([](const TMessageBoxRequest&) { return static_cast<int>(ANSWER_OK); });
    TGisFile::s_iCompatible = REDUCE_ALL_LIMITS;
    const std::string path = TempPath("1.job");
    int written = 0;
    for (auto _ : state) {
        TGisFileJob job;
        if (job.WriteFile(path.c_str(), &layer) != GISFILE_OK) state.SkipWithError("write failed");
        written = job.m_iJobVertices;
    }
    TGisFile::s_iCompatible = REDUCE_BY_TOLERANCE;
    std::filesystem::remove(path);
    state.counters["vertices_written"] = written;
}
BENCHMARK(BM_WriteReducedToTheTotal)->Arg(99)->Arg(198)->Unit(benchmark::kMillisecond);

void BM_Read10MB(benchmark::State& state) {
    const std::string path = TempPath("read.job");
    std::string text = ".JOB 1 FARM\r\n.VERSION 1\r\n\r\n";
    int polygon = 0;
    while (text.size() < 10u * 1024 * 1024) {
        text += ".POL " + std::to_string(++polygon) + " p\r\n\tINC\r\n";
        char line[64];
        for (int i = 0; i < 500; ++i) {
            std::snprintf(line, sizeof line, "\t%.6f %.6f\r\n",
                          45.0 + polygon * 1e-3 + std::sin(i * 0.0126) * 1e-3,
                          -93.0 + std::cos(i * 0.0126) * 1e-3);
            text += line;
        }
    }
    std::FILE* f = std::fopen(path.c_str(), "wb");
    std::fwrite(text.data(), 1, text.size(), f);
    std::fclose(f);
    for (auto _ : state) {
        TMapLayer layer;
        TGisFileJob job;
        if (job.LoadFile(path.c_str(), &layer, nullptr) != GISFILE_OK) state.SkipWithError("read failed");
        benchmark::DoNotOptimize(layer.m_Elements.data());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(text.size()));
    std::filesystem::remove(path);
}
BENCHMARK(BM_Read10MB)->Unit(benchmark::kMillisecond);

void BM_DecimateMillion(benchmark::State& state) {
    const std::vector<tagLOC> original = RecordedLine(1000000, 45.0, 7);
    std::vector<tagLOC> work;
    for (auto _ : state) {
        work = original;
        benchmark::DoNotOptimize(
            DecimateLocArray(work.data(), static_cast<int>(work.size()), 0.5 * JOB_DEGREES_PER_METRE));
    }
}
BENCHMARK(BM_DecimateMillion)->Unit(benchmark::kMillisecond);
}  // namespace
