// From starting the program to its first painted window, and the memory it holds when idle, beside a program
// that shows an empty Qt Widgets window, and beside one whose window has a line of text. All stand beside
// this one.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <string>

namespace {

double WallSeconds() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

struct Told {
    double painted = 0;  // seconds after the start
    double resident = 0; // MiB
};

Told Start(const std::string& program, const char* idleSeconds) {
    const std::filesystem::path folder = std::filesystem::read_symlink("/proc/self/exe").parent_path();
    const std::string command = "exec '" + (folder / program).string() + "' " + idleSeconds;
    const double start = WallSeconds();
    std::FILE* output = popen(command.c_str(), "r");
    if (output == nullptr)
        std::abort();
    Told told;
    if (std::fscanf(output, "%lf", &told.painted) != 1)
        std::abort();
    told.painted -= start;
    if (*idleSeconds != '0' && std::fscanf(output, "%lf", &told.resident) != 1)
        std::abort();
    pclose(output);
    return told;
}

void Painted(benchmark::State& bench, const std::string& program) {
    for (auto _ : bench)
        bench.SetIterationTime(Start(program, "0").painted);
}

void Idle(benchmark::State& bench, const std::string& program) {
    for (auto _ : bench) {
        const Told told = Start(program, "1.5");
        bench.SetIterationTime(told.painted);
        bench.counters["resident_MiB"] = told.resident;
    }
}

void Often(benchmark::internal::Benchmark* bench) {
    bench->Iterations(3)
        ->Repetitions(15)
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond)
        ->ReportAggregatesOnly();
}

void Once(benchmark::internal::Benchmark* bench) {
    bench->Iterations(1)
        ->Repetitions(5)
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond)
        ->ReportAggregatesOnly();
}

BENCHMARK_CAPTURE(Painted, empty, "start_empty")->Apply(Often);
BENCHMARK_CAPTURE(Painted, text, "start_text")->Apply(Often);
BENCHMARK_CAPTURE(Painted, tracelet, "start_tracelet")->Apply(Often);
BENCHMARK_CAPTURE(Idle, empty, "start_empty")->Apply(Once);
BENCHMARK_CAPTURE(Idle, tracelet, "start_tracelet")->Apply(Once);

} // namespace

int main(int argc, char** argv) {
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
