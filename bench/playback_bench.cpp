// What opening, seeking and replaying a recording cost: opening one and seeking in it for data files of 4 MiB
// and of 4 GiB (holes), and a replay of 16 channels at 1,000,000 scans a second, with the processor's share
// of each 100 ms and how long the window was deaf at most. The replay needs 320 MB of disk.

#include "bench/BenchWindow.h"
#include "bench/Measure.h"
#include "core/recordings/ProjectInfo.h"
#include "window/chart/ZelGraph.h"
#include "window/widgets/ZelSlider.h"

#include <QApplication>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <random>

using namespace Qt::StringLiterals;

namespace {

using namespace tracelet;

constexpr std::int32_t Channels = 16;
constexpr std::int64_t BytesAScan = Channels * 4;
constexpr std::int32_t ScansASecond = 1'000'000;
constexpr int ReplayedSeconds = 5;

void WriteProject(const std::string& folder, std::int64_t scans) {
    ProjectInfo info;
    info.bHisAI = info.bHisAIAnalog = true;
    info.nHisAIChanCount = Channels;
    for (std::int32_t channel = 0; channel < Channels; ++channel)
        info.aiPlots.push_back({0xFFFF >> channel, 0, "AI " + std::to_string(channel)});
    info.HisAIChanIsThermo.resize(Channels);
    std::ofstream file(folder + "/Project.tlp", std::ios::binary);
    for (const auto& bytes :
         {ProjectHeader(info), StopRecord(static_cast<std::int32_t>(scans), 1.0 / ScansASecond),
          SavedPaths(folder + "\\AI.tld", folder + "\\DI.tld")})
        file.write(reinterpret_cast<const char*>(bytes.data()), std::ssize(bytes));
}

std::string SparseRecording(const std::string& folder, std::int64_t bytes) {
    std::filesystem::create_directories(folder);
    std::ofstream(folder + "/AI.tld", std::ios::binary);
    std::filesystem::resize_file(folder + "/AI.tld", static_cast<std::uintmax_t>(bytes));
    WriteProject(folder, bytes / BytesAScan);
    return folder + "/Project.tlp";
}

std::string NoisyRecording(const std::string& folder, int seconds) {
    std::filesystem::create_directories(folder);
    std::mt19937 random(1);
    std::normal_distribution<float> noise(0.0F, 0.5F);
    std::vector<float> second(std::size_t{ScansASecond} * Channels);
    for (std::size_t i = 0; i < second.size(); ++i)
        second[i] = 9.0F * std::sin(static_cast<float>(i / Channels % 10000) * 6.2832e-4F) + noise(random);
    std::ofstream file(folder + "/AI.tld", std::ios::binary);
    for (int i = 0; i < seconds; ++i)
        file.write(reinterpret_cast<const char*>(second.data()),
                   static_cast<std::streamsize>(second.size() * sizeof(float)));
    WriteProject(folder, std::int64_t{seconds} * ScansASecond);
    return folder + "/Project.tlp";
}

// Answers the file dialog that BtnHistory shows.
void OpenProject(frmMain& window, const std::string& path) {
    QTimer::singleShot(0, &window, [&] {
        auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
        dialog->findChild<QLineEdit*>(u"fileNameEdit"_s)->setText(QString::fromStdString(path));
        dialog->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Open)->click();
    });
    window.BtnHistory->click();
}

// MiB of the data file: 4 or 4096.
void Open(benchmark::State& bench) {
    const QTemporaryDir folder;
    const std::string path = SparseRecording(folder.path().toStdString(), bench.range(0) << 20);
    BenchWindow window;
    for (auto _ : bench)
        OpenProject(*window, path);
}

void Seek(benchmark::State& bench) {
    const QTemporaryDir folder;
    BenchWindow window;
    OpenProject(*window, SparseRecording(folder.path().toStdString(), bench.range(0) << 20));
    window->ZelSliderV->SetValue(100.0); // ten scans a tick: the place costs, not the amount
    double percent = 0;
    for (auto _ : bench) {
        percent = std::fmod(percent + 37.0, 95.0);
        window->ZelSliderR->MoveByUser(percent);
        window->HistoryTick();
    }
}

void Replay(benchmark::State& bench) {
    const QTemporaryDir folder;
    const std::string path = NoisyRecording(folder.path().toStdString(), ReplayedSeconds);
    for (auto _ : bench) {
        BenchWindow window;
        OpenProject(*window, path);
        double heard = measure::WallSeconds();
        double longest = 0;
        QTimer beat;
        QObject::connect(&beat, &QTimer::timeout, [&] {
            const double now = measure::WallSeconds();
            longest = std::max(longest, now - std::exchange(heard, now));
        });
        beat.start(1);
        const double cpu = measure::CpuSeconds();
        const double start = measure::WallSeconds();
        window->ChkPlay->click();
        while (window->isHisPlaying)
            QApplication::processEvents(QEventLoop::WaitForMoreEvents);
        const double wall = measure::WallSeconds() - start;
        bench.counters["cpu_ms_a_100ms"] = 100.0 * (measure::CpuSeconds() - cpu) / wall;
        bench.counters["speed"] = ReplayedSeconds / wall;
        bench.counters["deaf_ms"] = 1e3 * longest;
    }
}

void Sizes(benchmark::internal::Benchmark* bench) {
    bench->Arg(4)->Arg(4096)->Unit(benchmark::kMicrosecond)->Repetitions(9)->ReportAggregatesOnly();
}

BENCHMARK(Open)->Apply(Sizes);
BENCHMARK(Seek)->Apply(Sizes);
BENCHMARK(Replay)->Iterations(1)->Repetitions(5)->ReportAggregatesOnly();

} // namespace
