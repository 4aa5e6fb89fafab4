#pragma once
// The body every reader benchmark shares: load one file into a fresh layer per iteration, with
// message boxes answered silently, and report bytes per second, the element count and the peak
// resident memory.

#include <benchmark/benchmark.h>

#include <sys/resource.h>

#include <cstdint>
#include <filesystem>
#include <string>

#include <tl_gis/hostmap/map_layer.h>
#include <tl_gis/platform/message_box.h>

inline double PeakRssMB() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) / 1024.0;
}

template <class TReader>
void RunReadBenchmark(benchmark::State& state, const std::string& path, const char* elementCounter) {
    const auto bytes = static_cast<std::int64_t>(std::filesystem::file_size(path));
    TScopedMessageHandler quiet([](const TMessageBoxRequest&) { return static_cast<int>(ANSWER_OK); });
    std::size_t elements = 0;
    for (auto _ : state) {
        TMapLayer layer;
        TReader reader;
        if (reader.LoadFile(path.c_str(), &layer, nullptr) != 0) state.SkipWithError("load failed");
        elements = layer.m_Elements.size();
        benchmark::DoNotOptimize(elements);
        state.PauseTiming();  // freeing the layer is not reading
        layer.RemoveAllElements();
        state.ResumeTiming();
    }
    state.SetBytesProcessed(state.iterations() * bytes);
    state.counters["MB"] = static_cast<double>(bytes) / 1e6;
    state.counters[elementCounter] = static_cast<double>(elements);
    state.counters["peak_rss_MB"] = PeakRssMB();
}
