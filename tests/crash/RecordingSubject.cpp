// A program that records until somebody kills it, and recovers what was left then.
//
//   recording_subject record FOLDER polled|paced MILLISECONDS
//       records in FOLDER/home, polled at MILLISECONDS or paced at 1 MS/s on 16 channels, and tells on lines
//       of its own how many scans it took in how many milliseconds; on an end of its input it stops, tells
//       "stopped SCANS LOST OVERRUNS GAP", GAP being the longest time in milliseconds that its window did not
//       answer, and dies
//   recording_subject recover FOLDER
//       saves what is found there as FOLDER/saved/0, 1 ...

#include "core/drivers/simulated/SimulatedBoards.h"
#include "core/recordings/LeftRecording.h"
#include "window/main/frmMain.h"
#include "window/widgets/ZelButton.h"

#include <QApplication>
#include <QCheckBox>
#include <QPushButton>
#include <QSocketNotifier>

#include <csignal>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include <unistd.h>

namespace {

using namespace tracelet;

constexpr std::int32_t FastChannels = 16;
constexpr std::int32_t PolledChannels = 3;

void StartRecording(frmMain& window, bool isPolled, std::int32_t interval) {
    window.M1.SoftMode = isPolled;
    window.nTimerInterval = interval;
    window.ZelAI1->SetScanChannelCount(isPolled ? PolledChannels : FastChannels);
    window.ZelAI1->SetSampleRate(1e6);
    window.bFAICyclic = true;
    window.nAISampleCnt = 250 * 16 * FastChannels;
    window.BuildPlots(false, true);
    window.ZelButton1->click();
    window.CkAISave2Disk->click();
    window.BtnStart->click();
}

int Record(int argc, char** argv, const std::string& folder) {
    QApplication application(argc, argv);
    QApplication::setStyle(QStringLiteral("Fusion"));
    frmMain::Surroundings surroundings;
    surroundings.boards = SimulatedBoards();
    surroundings.programFolder = QString::fromStdString(folder + "/home");
    surroundings.stateFolder = folder + "/state";
    frmMain window(std::move(surroundings));
    window.show();
    StartRecording(window, std::string(argv[3]) == "polled", std::atoi(argv[4]));

    QElapsedTimer sinceStart;
    QElapsedTimer sinceAnswer;
    qint64 longest = 0;
    sinceStart.start();
    sinceAnswer.start();
    QTimer teller;
    QObject::connect(&teller, &QTimer::timeout, &window, [&] {
        longest = std::max(longest, sinceAnswer.restart());
        std::printf("%d %lld\n", window.ScanCount, static_cast<long long>(sinceStart.elapsed()));
        std::fflush(stdout);
    });
    teller.setTimerType(Qt::PreciseTimer);
    teller.start(10);
    QSocketNotifier ending(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&ending, &QSocketNotifier::activated, &window, [&] {
        ending.setEnabled(false);
        window.BtnStart->click();
        std::printf("stopped %d %d %d %lld\n", window.ScanCount, window.LostScanCount, window.OverrunCount,
                    static_cast<long long>(longest));
        std::fflush(stdout);
        std::raise(SIGKILL);
    });
    return QApplication::exec();
}

int Recover(const std::string& folder) {
    const std::vector<std::string> parents{folder + "/home"};
    int number = 0;
    std::filesystem::create_directory(folder + "/saved");
    for (const LeftRecording& left : FindLeftRecordings(parents, folder + "/state")) {
        const std::string reason = SaveRecording(left.parts, folder + "/saved/" + std::to_string(number++));
        if (!reason.empty()) {
            std::fprintf(stderr, "%s\n", reason.c_str());
            return 1;
        }
    }
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    const std::string mode = argc > 2 ? argv[1] : "";
    if (mode == "record" && argc == 5)
        return Record(argc, argv, argv[2]);
    if (mode == "recover")
        return Recover(argv[2]);
    std::fprintf(stderr, "usage: see the head of this program\n");
    return 2;
}
