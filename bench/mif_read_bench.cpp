// Reading a large .mif: 100,000 regions of 11 vertices (about 29 MB), laid out as other GIS
// programs write them, loaded into a fresh layer per iteration, in the default and the complete
// profile.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <filesystem>
#include <string>

#include <tl_gis/gis/gis_map.h>
#include <tl_gis/gis/midmif/gis_file_midmif.h>
#include "read_bench.h"

namespace {
constexpr int kRegions = 100000;

// Writes the test file once per process and returns its path.
const std::string& BenchFile() {
    static const std::string path = [] {
        const std::string p = (std::filesystem::temp_directory_path() / "tl_gis_mif_read_bench.mif").string();
        std::FILE* f = std::fopen(p.c_str(), "wb");
        if (f == nullptr) return p;
        std::fputs(
            "Version 300\nCharset \"WindowsLatin1\"\nDelimiter \",\"\nCoordSys Earth Projection 1, 0\n"
            "Columns 1\n  Name Char(10)\nData\n\n",
            f);
        // About 290 bytes a region: count, 11 points of 22 bytes, pen and brush.
        for (int r = 0; r < kRegions; ++r) {
            const double lat = 40.0 + (r % 1000) * 0.01, lon = -100.0 + (r / 1000) * 0.01;
            std::fputs("Region 1\n  11\n", f);
            for (int v = 0; v < 11; ++v) {
                const int k = v % 10;
                std::fprintf(f, "%.6f %.6f\n", lon - (k < 5 ? k : 10 - k) * 0.001, lat + (k < 5 ? 0 : 0.004));
            }
            std::fputs("    Pen (1,2,0)\n    Brush (1,0,16777215)\n", f);
        }
        std::fclose(f);
        // The .mid beside it: one quoted name per region, which the complete profile reads when
        // the column is chosen.
        std::string midPath = p;
        midPath.replace(midPath.size() - 4, 4, ".mid");
        if (std::FILE* mid = std::fopen(midPath.c_str(), "wb")) {
            for (int r = 0; r < kRegions; ++r) std::fprintf(mid, "\"r%d\"\n", r);
            std::fclose(mid);
        }
        return p;
    }();
    return path;
}

void BM_MifRead(benchmark::State& state) {
    RunReadBenchmark<TGisFileMidMif>(state, BenchFile(), "regions");
}
BENCHMARK(BM_MifRead)->Unit(benchmark::kMillisecond)->MinTime(3.0)->UseRealTime();

// The complete profile on the same file: without a chosen column (the .mid is not opened), and
// with the Name column chosen as each region's id (one .mid row read for every region).
void BM_MifReadComplete(benchmark::State& state) {
    TGisFile::s_bCompleteProfile = true;
    TGisFile::s_strIdField = state.range(0) != 0 ? "Name" : "";
    RunReadBenchmark<TGisFileMidMif>(state, BenchFile(), "regions");
    TGisFile::s_bCompleteProfile = false;
    TGisFile::s_strIdField.clear();
}
BENCHMARK(BM_MifReadComplete)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->MinTime(3.0)->UseRealTime();

// The reader alone: the same file with no layer, so no line is built or registered.
void BM_MifParseOnly(benchmark::State& state) {
    const std::string& path = BenchFile();
    const auto bytes = static_cast<std::int64_t>(std::filesystem::file_size(path));
    for (auto _ : state) {
        TGisFileMidMif reader;
        if (reader.LoadFile(path.c_str(), nullptr, nullptr) != 0) state.SkipWithError("load failed");
    }
    state.SetBytesProcessed(state.iterations() * bytes);
}
BENCHMARK(BM_MifParseOnly)->Unit(benchmark::kMillisecond)->MinTime(3.0)->UseRealTime();
}  // namespace
