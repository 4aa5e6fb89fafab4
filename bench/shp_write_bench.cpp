// Exporting shapefiles:
//  - 1,000,000 recorded samples (100 runs of 10,000, a turn every 50 samples) as swath
//    polygons with their attribute rows and the non-spray path;
//  - 100,000 polygons of 11 vertices read and written again (shp -> shp), timed against the
//    same round trip through ogr2ogr when GDAL is installed (reported as ogr2ogr_ratio, the
//    ogr2ogr time over ours).
// Each by default (argument 0) and in the complete profile (1), which groups the rings into
// polygons, writes a table row per polygon and a .prj and .cpg beside every triple.
//
//   cmake -S . -B build-release -G Ninja -DCMAKE_BUILD_TYPE=Release -DTL_GIS_BUILD_BENCH=ON
//   ninja -C build-release bench_shp_write_bench && build-release/bench/bench_shp_write_bench
//
// The export's extra peak memory is reported next to the size of the layer's samples: it
// should stay near the size of one record, whatever the layer holds.

#include <benchmark/benchmark.h>

#include <unistd.h>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include <tl_gis/features/feature_spray.h>
#include <tl_gis/gis/gis_map.h>
#include <tl_gis/gis/language.h>
#include <tl_gis/gis/shp/gis_file_shp.h>
#include <tl_gis/platform/message_box.h>
#include "bench_memory.h"

namespace {
constexpr int kRuns = 100;
constexpr int kSamplesPerRun = 10000;
constexpr int kPolygons = 100000;
constexpr int kVertices = 11;

const std::string& WorkDir() {
    static const std::string dir = [] {
        const std::string d = "/tmp/tl_gis_write_bench_" + std::to_string(getpid());
        std::filesystem::create_directories(d);
        return d;
    }();
    return dir;
}

std::unique_ptr<TMapLayer> MakeSprayLayer() {
    auto layer = std::make_unique<TMapLayer>();
    for (int r = 0; r < kRuns; ++r) {
        auto* spray = new TFeatureSpray(kSamplesPerRun);
        TLoc at(45.0 + 0.01 * (r % 10), -93.5 + 0.01 * (r / 10));
        double heading = 0.0;
        for (int i = 0; i < kSamplesPerRun; ++i) {
            if (i % 50 == 0) heading = heading == 0.0 ? 90.0 : 0.0;
            tagSPRAYREC& s = spray->m_pRecs[i];
            s.locPos = at;
            TFeatureSpray::SwathEnds(at, heading, 20.0, s.locSwathA, s.locSwathB);
            s.bySpray = i == kSamplesPerRun - 1 ? 0 : 1;  // a stop would end the run's polygons
            s.dSwathWidth = 20.0;
            s.dSpeed = 50.0;
            s.sHeight = 50;
            s.sLine = static_cast<std::int16_t>(r);
            s.afActualRate[0] = 50.0f;
            s.afTargetRate[0] = 48.0f;
            s.strFieldName = "North 40";
            s.strOffset = "R";
            TSprayTime t;
            t.iYear = 2024;
            t.iMonth = 6;
            t.iDay = 1;
            t.iHour = 10 + i / 3600;
            t.iMinute = (i / 60) % 60;
            t.iSecond = i % 60;
            PackSprayTime(t, s);
            at = at.Offset(heading, 0.5);
        }
        spray->CalculateGeoExtents();
        layer->AddElement(spray, ADD_ELEMENT_OWNED);
    }
    return layer;
}

// Sets the profile of one benchmark run, and the default back afterwards.
struct TBenchProfile {
    explicit TBenchProfile(std::int64_t complete) { TGisFile::s_bCompleteProfile = complete != 0; }
    ~TBenchProfile() { TGisFile::s_bCompleteProfile = false; }
};

void BM_ExportSwathPolygons(benchmark::State& state) {
    const TBenchProfile profile(state.range(0));
    EnsureLibraryStarted();
    TScopedMessageHandler quiet([](const TMessageBoxRequest&) { return static_cast<int>(ANSWER_OK); });
    const std::unique_ptr<TMapLayer> layer = MakeSprayLayer();
    const std::string target = WorkDir() + "/spray.shp";
    const std::string source = WorkDir() + "/flight.csv";
    long extraKb = 0;
    for (auto _ : state) {
        state.PauseTiming();
        ResetPeakMemory();
        const long baseKb = ReadStatusKb("VmRSS:");
        state.ResumeTiming();
        TGisFileShp writer;
        writer.SetSourceFile(source);
        const int result = writer.WriteFile(target.c_str(), layer.get());
        state.PauseTiming();
        extraKb = ReadStatusKb("VmHWM:") - baseKb;
        if (result != 0) state.SkipWithError("export failed");
        state.ResumeTiming();
    }
    const double samples = static_cast<double>(kRuns) * kSamplesPerRun;
    state.counters["samples_per_s"] =
        benchmark::Counter(samples, benchmark::Counter::kIsIterationInvariantRate);
    state.counters["extra_peak_MB"] = extraKb / 1024.0;
    state.counters["layer_samples_MB"] = samples * sizeof(tagSPRAYREC) / (1024.0 * 1024.0);
}
BENCHMARK(BM_ExportSwathPolygons)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->UseRealTime();

// 100,000 rings as a shapefile: written once by the library itself (boundary export), then
// read back and written again in each iteration.
const std::string& PolygonInput() {
    static const std::string path = [] {
        TMapLayer layer;
        for (int i = 0; i < kPolygons; ++i) {
            auto* ring = new TFeatureLineBoundary;
            auto* points = new tagLOC[kVertices + 1];
            const double cx = -93.5 + (i % 400) * 0.002, cy = 45.0 + (i / 400) * 0.002;
            for (int k = 0; k < kVertices; ++k) {
                const double a = -2.0 * M_PI * (k % (kVertices - 1)) / (kVertices - 1);
                points[k] = {cy + 0.0006 * std::sin(a), cx + 0.0008 * std::cos(a)};
            }
            ring->AdoptPoints(points, kVertices, kVertices);
            ring->m_iBoundType = BOUNDARY_INC;
            ring->CalculateGeoExtents();
            layer.AddElement(ring, ADD_ELEMENT_OWNED);
        }
        TGisFileShp writer;
        writer.m_iWriteMode = 0;
        writer.WriteFile((WorkDir() + "/rings.shp").c_str(), &layer);
        // Geometry only: the boundary table carries no rows for GDAL to copy.
        std::filesystem::remove(WorkDir() + "/rings_Spray_Polys.dbf");
        return WorkDir() + "/rings_Spray_Polys.shp";
    }();
    return path;
}

double Ogr2OgrSeconds(const std::string& input) {
    if (std::system("command -v ogr2ogr > /dev/null 2>&1") != 0) return 0.0;
    const std::string out = WorkDir() + "/ogr";
    std::filesystem::remove_all(out);
    const auto start = std::chrono::steady_clock::now();
    const std::string command = "ogr2ogr -f 'ESRI Shapefile' " + out + " " + input + " > /dev/null 2>&1";
    if (std::system(command.c_str()) != 0) return 0.0;
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void BM_ShpRoundTrip100kPolygons(benchmark::State& state) {
    EnsureLibraryStarted();
    TScopedMessageHandler quiet([](const TMessageBoxRequest&) { return static_cast<int>(ANSWER_NO); });
    const std::string& input = PolygonInput();
    const TBenchProfile profile(state.range(0));
    const std::string target = WorkDir() + "/copy.shp";
    double ours = 0.0;
    for (auto _ : state) {
        const auto start = std::chrono::steady_clock::now();
        TMapLayer layer;
        TGisMap map;
        map.m_bWriteBoundaries = true;
        if (map.LoadFile(input.c_str(), &layer, nullptr) != 0 || map.WriteFile(target.c_str(), &layer) != 0)
            state.SkipWithError("round trip failed");
        ours = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    }
    const double ogr = Ogr2OgrSeconds(input);
    state.counters["vertices_per_s"] = benchmark::Counter(static_cast<double>(kPolygons) * kVertices,
                                                          benchmark::Counter::kIsIterationInvariantRate);
    state.counters["ogr2ogr_s"] = ogr;
    state.counters["ogr2ogr_ratio"] = ours > 0.0 ? ogr / ours : 0.0;
}
BENCHMARK(BM_ShpRoundTrip100kPolygons)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->UseRealTime();
}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    if (std::getenv("TL_GIS_BENCH_KEEP") == nullptr) std::filesystem::remove_all(WorkDir());
    return 0;
}
