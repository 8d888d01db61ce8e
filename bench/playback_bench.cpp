// What opening, seeking and replaying a recording cost. First the median time to open one and to seek in it,
// for data files of 4 MiB and of 4 GiB (mostly holes). Then a replay of 16 channels at 1,000,000 scans a
// second: the processor's share of each 100 ms, and how long the window was deaf at most.
// Usage: playback_bench [SECONDS]; the replay lasts 5 seconds by default and needs 64 MB of disk for each.

#include "app/frmMain.h"
#include "devices/display/ZelGraph.h"
#include "devices/display/ZelSlider.h"
#include "devices/drivers/simulated/SimulatedBoards.h"
#include "files/ProjectInfo.h"

#include <QApplication>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <random>

namespace {

using namespace tracelet;

constexpr std::int32_t Channels = 16;
constexpr std::int64_t BytesAScan = Channels * 4;
constexpr std::int32_t ScansASecond = 1'000'000;
constexpr int Repeats = 21;

double CpuSeconds() {
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

double Median(std::vector<double> values) {
    std::nth_element(values.begin(), values.begin() + std::ssize(values) / 2, values.end());
    return values[values.size() / 2];
}

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

// Seconds from the accepted file dialog to the opened recording.
double OpenProject(frmMain& window, const std::string& path) {
    QElapsedTimer clock;
    QTimer::singleShot(0, &window, [&] {
        auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
        dialog->findChild<QLineEdit*>(u"fileNameEdit"_qs)->setText(QString::fromStdString(path));
        clock.start();
        dialog->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Open)->click();
    });
    window.BtnHistory->click();
    return static_cast<double>(clock.nsecsElapsed()) * 1e-9;
}

double Seek(frmMain& window, double percent) {
    QElapsedTimer clock;
    clock.start();
    window.ZelSliderR->MoveByUser(percent);
    window.HistoryTick();
    return static_cast<double>(clock.nsecsElapsed()) * 1e-9;
}

void MeasureSize(frmMain& window, const char* name, const std::string& path) {
    std::vector<double> opening;
    std::vector<double> seeking;
    for (int i = 0; i < Repeats; ++i) {
        opening.push_back(OpenProject(window, path));
        window.ZelSliderV->SetValue(100.0); // ten scans a tick: the place costs, not the amount
        seeking.push_back(Seek(window, 5.0 + 4.0 * i));
    }
    std::printf("%s: open %.3f ms, seek and first tick %.3f ms\n", name, 1e3 * Median(opening),
                1e3 * Median(seeking));
}

void MeasureReplay(frmMain& window, const std::string& path) {
    OpenProject(window, path);
    double longest = 0.0;
    QElapsedTimer heard;
    QTimer beat;
    QObject::connect(&beat, &QTimer::timeout, [&] {
        if (heard.isValid())
            longest = std::max(longest, static_cast<double>(heard.nsecsElapsed()) * 1e-9);
        heard.start();
    });
    beat.start(1);
    const double cpu = CpuSeconds();
    QElapsedTimer clock;
    clock.start();
    window.ChkPlay->click();
    while (window.isHisPlaying)
        QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    const double wall = static_cast<double>(clock.nsecsElapsed()) * 1e-9;
    std::printf("replay: %.2f s of recording in %.2f s, %.1f ms of processor time a 100 ms, deaf for %.1f ms "
                "at most, "
                "%lld points a plot\n",
                static_cast<double>(window.HisScanCount) * window.ScanInterval, wall,
                100.0 * (CpuSeconds() - cpu) / wall, 1e3 * longest,
                static_cast<long long>(window.ZelGraph1->PointCount(0)));
}

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    const int seconds = argc > 1 ? std::max(1, std::atoi(argv[1])) : 5;
    QTemporaryDir folder;
    const std::string root = folder.path().toStdString();
    frmMain::Surroundings surroundings;
    surroundings.boards = SimulatedBoards();
    surroundings.programFolder = folder.path();
    frmMain window(std::move(surroundings));
    window.show();
    MeasureSize(window, "4 MiB", SparseRecording(root + "/small", std::int64_t{4} << 20));
    MeasureSize(window, "4 GiB", SparseRecording(root + "/large", std::int64_t{4} << 30));
    MeasureReplay(window, NoisyRecording(root + "/noisy", seconds));
    return 0;
}
