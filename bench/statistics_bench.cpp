// Statistics of a span of 100 million samples held by one plot: of all of them, and of spans that begin and
// end anywhere.

#include "core/samples/Statistics.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <random>
#include <vector>

namespace {

using namespace tracelet;

constexpr std::int64_t Held = 100'000'000;
constexpr double Step = 1e-6; ///< seconds
constexpr float Low = 4;

/// A line that may change at each sample: nothing of it can be passed over.
const SampleStore& HeldSamples() {
    static const SampleStore store = [] {
        SampleStore filled;
        filled.AddPlot();
        std::mt19937 random(1);
        std::vector<float> values(SampleStore::TileSize);
        for (std::int64_t at = 0; at < Held; at += SampleStore::TileSize) {
            std::ranges::generate(values, [&] { return random() % 2 == 0 ? Low : Low + 1; });
            filled.AppendEven(static_cast<double>(at) * Step, Step, SampleStore::TileSize, 1, values.data());
        }
        while (filled.SumUpMoments(Held))
            continue;
        return filled;
    }();
    return store;
}

template <typename Work>
void OverSpans(benchmark::State& bench, Work work) {
    const SampleStore& store = HeldSamples();
    constexpr double End = static_cast<double>(Held) * Step;
    std::mt19937 random(2);
    std::uniform_real_distribution<double> time(0, End);
    for (auto _ : bench) {
        const auto [from, to] =
            bench.range(0) == 0 ? std::pair(0.0, End) : std::minmax({time(random), time(random)});
        benchmark::DoNotOptimize(work(store, from, to));
    }
}

void Samples(benchmark::State& bench) {
    OverSpans(bench, [](const SampleStore& store, double from, double to) {
        return StatisticsBetween(store, 0, from, to);
    });
}

void Line(benchmark::State& bench) {
    OverSpans(bench, [](const SampleStore& store, double from, double to) {
        return LineStatisticsBetween(store, 0, from, to, static_cast<double>(Low));
    });
}

/// What it takes to sum them up, a sample.
void SumUp(benchmark::State& bench) {
    constexpr std::int64_t Count = 1 << 22;
    std::vector<float> values(SampleStore::TileSize, Low);
    for (auto _ : bench) {
        bench.PauseTiming();
        SampleStore store;
        store.AddPlot();
        for (std::int64_t at = 0; at < Count; at += SampleStore::TileSize)
            store.AppendEven(static_cast<double>(at) * Step, Step, SampleStore::TileSize, 1, values.data());
        bench.ResumeTiming();
        store.SumUpMoments(Count);
    }
    bench.counters["a_sample"] =
        benchmark::Counter(static_cast<double>(Count),
                           benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

BENCHMARK(SumUp)->Unit(benchmark::kMicrosecond);
BENCHMARK(Samples)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);
BENCHMARK(Line)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
