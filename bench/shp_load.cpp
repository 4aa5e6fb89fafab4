// Loading a large polygon shapefile: 100,000 polygons of 11 vertices (1.1 M vertices, 23 MB),
// with the centroid and UTM area of every ring, as a host load does: by default (argument 0),
// in the complete profile (1), and in the complete profile with an ID column of the .dbf beside
// it taken as each ring's id (2).
//
//   cmake -S . -B build-release -G Ninja -DCMAKE_BUILD_TYPE=Release -DTL_GIS_BUILD_BENCH=ON
//   ninja -C build-release bench_shp_load && build-release/bench/bench_shp_load
//
// Reports vertices per second, and the peak resident memory of one load against the size of
// the vertex data (16 bytes per vertex).

#include <benchmark/benchmark.h>

#include <unistd.h>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

#include <tl_gis/gis/gis_file.h>
#include <tl_gis/gis/gis_map.h>
#include <tl_gis/gis/language.h>
#include <tl_gis/platform/message_box.h>
#include "bench_memory.h"
#include "gis/byte_order.h"
#include "gis/shp/dbf_table.h"

namespace {
constexpr int kPolygons = 100000;
constexpr int kVertices = 11;  // 10 corners and the closing vertex

std::string MakeShapefile() {
    const std::size_t content = 44 + 4 + 16 * kVertices;
    std::string bytes(100 + kPolygons * (8 + content), '\0');
    auto* p = reinterpret_cast<unsigned char*>(bytes.data());
    writeBE32(p, 9994);
    writeBE32(p + 24, static_cast<std::uint32_t>(bytes.size() / 2));
    writeLE32(p + 28, 1000);
    writeLE32(p + 32, 5);
    unsigned char* r = p + 100;
    for (int i = 0; i < kPolygons; ++i) {
        writeBE32(r, static_cast<std::uint32_t>(i + 1));
        writeBE32(r + 4, static_cast<std::uint32_t>(content / 2));
        unsigned char* c = r + 8;
        writeLE32(c, 5);
        writeLE32(c + 36, 1);
        writeLE32(c + 40, kVertices);
        writeLE32(c + 44, 0);
        const double cx = -93.5 + (i % 400) * 0.002, cy = 45.0 + (i / 400) * 0.002;
        for (int k = 0; k < kVertices; ++k) {
            const double a = -2.0 * M_PI * (k % (kVertices - 1)) / (kVertices - 1);
            writeLEDouble(c + 48 + 16 * k, cx + 0.0008 * std::cos(a));
            writeLEDouble(c + 56 + 16 * k, cy + 0.0006 * std::sin(a));
        }
        r += 8 + content;
    }
    return bytes;
}

// One ID (N 10) per polygon, 1..kPolygons.
std::string MakeIdTable() {
    static constexpr TDbfField kFields[] = {{"ID", 'N', 10, 0}};
    std::string bytes;
    AppendDbfHeader(bytes, kFields, kPolygons, {});
    TDbfRecordWriter record;
    for (int i = 0; i < kPolygons; ++i) {
        record.Begin(kFields);
        record.AddInteger(i + 1);
        bytes += record.Bytes();
    }
    return bytes + static_cast<char>(DBF_FILE_END);
}

std::string BenchStem() {
    return "/tmp/tl_gis_bench_" + std::to_string(getpid());
}

const std::string& ShapefilePath() {
    static const std::string path = [] {
        const std::string p = BenchStem() + ".shp";
        std::ofstream(p, std::ios::binary) << MakeShapefile();
        std::ofstream(BenchStem() + ".dbf", std::ios::binary) << MakeIdTable();
        return p;
    }();
    return path;
}

// Sets the profile of one benchmark run, and the default back afterwards.
struct TBenchProfile {
    explicit TBenchProfile(std::int64_t profile) {
        TGisFile::s_bCompleteProfile = profile > 0;
        TGisFile::s_strIdField = profile > 1 ? "ID" : "";
    }
    ~TBenchProfile() {
        TGisFile::s_bCompleteProfile = false;
        TGisFile::s_strIdField.clear();
    }
};

void BM_LoadPolygonShapefile(benchmark::State& state) {
    const std::string& path = ShapefilePath();
    const TBenchProfile profile(state.range(0));
    EnsureLibraryStarted();
    TScopedMessageHandler quiet([](const TMessageBoxRequest&) { return static_cast<int>(ANSWER_NO); });
    long peakKb = 0, baseKb = 0;
    for (auto _ : state) {
        state.PauseTiming();
        {
            // The peak resident size of this load alone: reset the high-water mark first.
            ResetPeakMemory();
        }
        baseKb = ReadStatusKb("VmRSS:");
        auto* layer = new TMapLayer;
        state.ResumeTiming();
        const int result = TGisMap().LoadFile(path.c_str(), layer, nullptr);
        state.PauseTiming();
        peakKb = ReadStatusKb("VmHWM:");
        if (result != 0 || layer->GetElementCount() != kPolygons) state.SkipWithError("load failed");
        delete layer;
        state.ResumeTiming();
    }
    const double vertexBytes = 16.0 * kPolygons * kVertices;
    state.SetItemsProcessed(state.iterations() * kPolygons * kVertices);
    state.counters["vertices_per_s"] = benchmark::Counter(static_cast<double>(kPolygons) * kVertices,
                                                          benchmark::Counter::kIsIterationInvariantRate);
    state.counters["peak_MB"] = (peakKb - baseKb) / 1024.0;
    state.counters["peak_per_vertex_data"] = (peakKb - baseKb) * 1024.0 / vertexBytes;
}
BENCHMARK(BM_LoadPolygonShapefile)->Arg(0)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond)->UseRealTime();
}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    if (std::getenv("TL_GIS_BENCH_KEEP") == nullptr) {
        std::remove(ShapefilePath().c_str());
        std::remove((BenchStem() + ".dbf").c_str());
    }
    return 0;
}
