// How fast an analog recording becomes text, beside an fprintf loop over the same data: eight channels of
// noisy values, CPU time of the process, medians of alternating runs. Usage: text_bench [FILE [ROWS]]; the
// text goes into FILE, "/tmp/text_bench.xlt" by default, which is removed afterwards.

#include "base/LittleEndian.h"
#include "export/TextExport.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <random>
#include <string>

namespace {

using namespace tracelet;

constexpr std::size_t Channels = 8;
constexpr int Runs = 9;
constexpr double ScanInterval = 1e-5; // seconds

double CpuSeconds() {
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

// Sines of different heights under noise, in volts.
std::vector<std::byte> NoisyScans(std::size_t rows) {
    std::mt19937 random(1);
    std::normal_distribution<double> noise(0.0, 0.05);
    std::vector<std::byte> data;
    data.reserve(rows * Channels * sizeof(float));
    for (std::size_t row = 0; row < rows; ++row)
        for (std::size_t channel = 0; channel < Channels; ++channel) {
            const double phase = static_cast<double>(row) * 0.001 + static_cast<double>(channel);
            const double height = 10.0 / static_cast<double>(1 + channel);
            AppendLittleEndian(data, static_cast<float>(height * std::sin(phase) + noise(random)));
        }
    return data;
}

void WriteByPrintf(const std::string& path, const std::vector<std::byte>& data, std::size_t rows) {
    std::FILE* file = std::fopen(path.c_str(), "wb");
    if (file == nullptr)
        std::abort();
    double seconds = 0.0;
    for (std::size_t row = 0; row < rows; ++row) {
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

double Median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

void Remove(const std::string& path) {
    if (std::filesystem::is_regular_file(path))
        std::filesystem::remove(path);
}

// Both write a new file, so the removal of the one before is not measured.
template <typename Work>
double Measured(const std::string& path, const Work& work) {
    Remove(path);
    const double start = CpuSeconds();
    work();
    return CpuSeconds() - start;
}

} // namespace

int main(int argc, char** argv) {
    const std::string path = argc > 1 ? argv[1] : "/tmp/text_bench.xlt";
    const std::size_t rows = argc > 2 ? std::strtoull(argv[2], nullptr, 10) : 500000;
    const std::vector<std::byte> data = NoisyScans(rows);
    std::vector<double> byPrintf;
    std::vector<double> byTracelet;
    for (int run = 0; run < Runs; ++run) {
        byPrintf.push_back(Measured(path, [&] { WriteByPrintf(path, data, rows); }));
        byTracelet.push_back(Measured(path, [&] { WriteByTracelet(path, data); }));
    }
    const double printfRows = static_cast<double>(rows) / Median(byPrintf);
    const double traceletRows = static_cast<double>(rows) / Median(byTracelet);
    std::printf("%zu rows of %zu channels into %s, median of %d runs, CPU time\n", rows, Channels,
                path.c_str(), Runs);
    std::printf("fprintf loop   %10.0f rows/s\n", printfRows);
    std::printf("WriteAnalogText%10.0f rows/s\n", traceletRows);
    std::printf("ratio          %10.2f\n", traceletRows / printfRows);
    Remove(path);
}
