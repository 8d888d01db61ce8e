// How fast an analog recording becomes text, beside an fprintf loop over the same data: eight channels of
// noisy values into a new file each time.

#include "core/base/LittleEndian.h"
#include "core/export/TextExport.h"

#include <QTemporaryDir>
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>

namespace {

using namespace tracelet;

constexpr std::size_t Channels = 8;
constexpr std::size_t Rows = 250000;
constexpr double ScanInterval = 1e-5; // seconds

// Sines of different heights under noise, in volts.
std::vector<std::byte> NoisyScans() {
    std::mt19937 random(1);
    std::normal_distribution<double> noise(0.0, 0.05);
    std::vector<std::byte> data;
    data.reserve(Rows * Channels * sizeof(float));
    for (std::size_t row = 0; row < Rows; ++row)
        for (std::size_t channel = 0; channel < Channels; ++channel) {
            const double phase = static_cast<double>(row) * 0.001 + static_cast<double>(channel);
            const double height = 10.0 / static_cast<double>(1 + channel);
            AppendLittleEndian(data, static_cast<float>(height * std::sin(phase) + noise(random)));
        }
    return data;
}

void WriteByPrintf(const std::string& path, const std::vector<std::byte>& data) {
    std::FILE* file = std::fopen(path.c_str(), "wb");
    if (file == nullptr)
        std::abort();
    double seconds = 0.0;
    for (std::size_t row = 0; row < Rows; ++row) {
        const auto value = [&](std::size_t channel) {
            return static_cast<double>(
                ReadLittleEndian<float>(data, (row * Channels + channel) * sizeof(float)));
        };
        seconds += ScanInterval;
        std::fprintf(file, "\r\n%.15g\t%.7g\t%.7g\t%.7g\t%.7g\t%.7g\t%.7g\t%.7g\t%.7g", seconds, value(0),
                     value(1), value(2), value(3), value(4), value(5), value(6), value(7));
    }
    std::fclose(file);
}

void WriteByTracelet(const std::string& path, const std::vector<std::byte>& data) {
    const AnalogRecording recording{std::vector<std::string>(Channels, "AI"), true, ScanInterval,
                                    static_cast<std::int64_t>(data.size())};
    const auto read = [&](std::int64_t offset, std::span<std::byte> block) {
        const std::size_t count = std::min(block.size(), data.size() - static_cast<std::size_t>(offset));
        std::copy_n(data.begin() + offset, count, block.begin());
        return count;
    };
    TextFile file(path);
    WriteAnalogText(file, recording, read, [](double) {});
    file.Close();
}

using Writer = void (*)(const std::string& path, const std::vector<std::byte>& data);

void Write(benchmark::State& bench, Writer writer) {
    static const std::vector<std::byte> data = NoisyScans();
    const QTemporaryDir folder;
    const std::string path = folder.filePath(QStringLiteral("text.xlt")).toStdString();
    for (auto _ : bench) {
        writer(path, data);
        bench.PauseTiming(); // the removal of the file before is not measured
        std::remove(path.c_str());
        bench.ResumeTiming();
    }
    bench.SetItemsProcessed(bench.iterations() * std::int64_t{Rows});
}

void Often(benchmark::internal::Benchmark* bench) {
    bench->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime()->Repetitions(9)->ReportAggregatesOnly();
}

BENCHMARK_CAPTURE(Write, fprintf, WriteByPrintf)->Apply(Often);
BENCHMARK_CAPTURE(Write, tracelet, WriteByTracelet)->Apply(Often);

} // namespace
