// Reading a large release 12 drawing: 100,000 POLYLINE entities of 11 vertices on a classified
// layer, in the system's profile and the complete one, set against a bare fgets + strtod pass
// over the same file.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include <tl_gis/gis/dxf/gis_file_dxf.h>
#include "read_bench.h"

namespace {
constexpr int kPolylines = 100000;
constexpr int kVertices = 11;

// Writes the drawing once per process (CR LF line ends) and returns its path.
const std::string& BenchFile() {
    static const std::string path = [] {
        const std::string p = (std::filesystem::temp_directory_path() / "tl_gis_dxf_read_bench.dxf").string();
        std::FILE* f = std::fopen(p.c_str(), "wb");
        if (f == nullptr) return p;
        std::fputs("  0\r\nSECTION\r\n  2\r\nENTITIES\r\n", f);
        for (int r = 0; r < kPolylines; ++r) {
            const double lat = 40.0 + (r % 1000) * 0.01, lon = -100.0 + (r / 1000) * 0.01;
            std::fputs(
                "  0\r\nPOLYLINE\r\n  8\r\nF30\r\n 62\r\n3\r\n  6\r\nCONTINUOUS\r\n 66\r\n1\r\n 70\r\n1\r\n",
                f);
            for (int v = 0; v < kVertices; ++v) {
                const int k = v % 10;
                std::fprintf(f,
                             "  0\r\nVERTEX\r\n  8\r\nF30\r\n 62\r\n3\r\n  6\r\nCONTINUOUS\r\n "
                             "10\r\n%.6f\r\n 20\r\n%.6f\r\n",
                             lon - (k < 5 ? k : 10 - k) * 0.001, lat + (k < 5 ? 0 : 0.004));
            }
            std::fputs("  0\r\nSEQEND\r\n", f);
        }
        std::fputs("  0\r\nENDSEC\r\n  0\r\nEOF\r\n", f);
        std::fclose(f);
        return p;
    }();
    return path;
}

// complete:0 reads as the system does, complete:1 in the complete profile.
void BM_DxfRead(benchmark::State& state) {
    const bool saved = TGisFile::s_bCompleteProfile;
    TGisFile::s_bCompleteProfile = state.range(0) != 0;
    RunReadBenchmark<TGisFileDxf>(state, BenchFile(), "polylines");
    TGisFile::s_bCompleteProfile = saved;
}
BENCHMARK(BM_DxfRead)
    ->ArgName("complete")
    ->Arg(0)
    ->Arg(1)
    ->Unit(benchmark::kMillisecond)
    ->MinTime(3.0)
    ->UseRealTime();

// The yardstick: every line read with fgets, codes with strtol and values with strtod.
void BM_FgetsStrtod(benchmark::State& state) {
    const std::string& path = BenchFile();
    const auto bytes = static_cast<std::int64_t>(std::filesystem::file_size(path));
    for (auto _ : state) {
        std::FILE* f = std::fopen(path.c_str(), "rb");
        if (f == nullptr) {
            state.SkipWithError("cannot open");
            break;
        }
        char line[512];
        double sum = 0.0;
        long codes = 0;
        bool value = false;
        while (std::fgets(line, sizeof line, f) != nullptr) {
            if (value)
                sum += std::strtod(line, nullptr);
            else
                codes += std::strtol(line, nullptr, 10);
            value = !value;
        }
        std::fclose(f);
        benchmark::DoNotOptimize(sum);
        benchmark::DoNotOptimize(codes);
    }
    state.SetBytesProcessed(state.iterations() * bytes);
}
BENCHMARK(BM_FgetsStrtod)->Unit(benchmark::kMillisecond)->MinTime(3.0)->UseRealTime();
}  // namespace
