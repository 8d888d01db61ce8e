#include "core/files/Paths.h"
#include "window/chart/ZelGraph.h"
#include "window/ground/StatusLine.h"
#include "window/main/frmMain.h"

#include <algorithm>
#include <cmath>
#include <utility>

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

QString LossText(const SampleLoss& loss) {
    const QString reason = QString::fromStdString(loss.reason);
    if (loss.scans == SampleLoss::Unknown)
        return u"Samples lost: %1"_s.arg(reason);
    return (loss.scans == 1 ? u"%1 scan lost: %2"_s : u"%1 scans lost: %2"_s).arg(loss.scans).arg(reason);
}

} // namespace

void frmMain::ShowStatus() {
    LabelStatus->Show(bHistoryMode ? PlaybackStatus() : AcquisitionStatus());
    const QString title = bHistoryMode && !recording.project.empty()
                              ? QString::fromStdString(RecordingName(recording.project)) + u" – Tracelet"_s
                              : u"Tracelet"_s;
    if (windowTitle() != title)
        setWindowTitle(title);
}

SessionStatus frmMain::AcquisitionStatus() const {
    SessionStatus status;
    status.boards = BoardsInUse();
    status.isUnsaved = recorder.IsUnsaved();
    status.losses = lossesSeen;
    status.lastLoss = lastLoss;
    status.scans = ScanCount;
    if (recorder.IsWritten())
        status.bytes = recorder.SampleBytes();
    if (!isSystemRunning)
        return status;
    const bool isAIRecorded = bAIEnabled && bAISaveToDisk;
    const bool isDIRecorded = bDIEnabled && bDISaveToDisk;
    status.doing =
        isAIRecorded || isDIRecorded ? SessionStatus::Doing::Recording : SessionStatus::Doing::Running;
    if (bAIEnabled && bDIEnabled && isAIRecorded != isDIRecorded)
        status.recorded = isAIRecorded ? "AI" : "DI";
    status.fault = recorder.Fault(Recorder::Analog);
    if (status.fault.empty())
        status.fault = recorder.Fault(Recorder::Digital);
    status.time = SessionSeconds();
    status.asked = ScansAskedASecond();
    status.reached = pace.ScansPerSecond();
    if (diskFree >= 0 && status.bytes > 0)
        status.diskLasts = static_cast<double>(diskFree) * status.time / static_cast<double>(status.bytes);
    return status;
}

SessionStatus frmMain::PlaybackStatus() const {
    SessionStatus status;
    status.doing = isHisPlayPaused ? SessionStatus::Doing::Paused
                   : isHisPlaying  ? SessionStatus::Doing::Playing
                                   : SessionStatus::Doing::Open;
    status.recording = RecordingName(recording.project);
    status.boards = recording.session.boards;
    status.time = static_cast<double>(HisScanIndex) * ScanInterval;
    status.length = HisScanCount * ScanInterval;
    status.scans = HisScanCount;
    status.losses = CountsOf(recording.session.losses);
    return status;
}

std::vector<SessionFacts::Board> frmMain::BoardsInUse() const {
    std::vector<SessionFacts::Board> boards;
    if (ZelAI1->DeviceNumber() >= 0 && (bAIEnabled || !bDIEnabled))
        boards.push_back({ZelAI1->BoardInfo().name, ZelAI1->BoardInfo().simulated});
    if (bDIEnabled && ZelDIO1->Board())
        boards.push_back({ZelDIO1->Board()->Info().name, ZelDIO1->Board()->Info().simulated});
    return boards;
}

double frmMain::SessionSeconds() const {
    return (surroundings.ticks() - StartTicks) / 1000.0;
}

double frmMain::ScansAskedASecond() const {
    if (M1.SoftMode)
        return 1000.0 / nTimerInterval;
    return ZelAI1->SampleRate() / std::max(ZelAI1->ScanChannelCount(), 1);
}

// A loss that goes on stretches its mark.
void frmMain::NoteLosses() {
    const LossCounts losses{LostScanCount, OverrunCount, recorder.MissedTickCount};
    const std::vector<SampleLoss>& told = recorder.Events().losses;
    if (losses == lossesSeen || told.empty())
        return;
    lossesSeen = losses;
    lastLoss = SessionSeconds();
    const double time = M1.SoftMode ? lastLoss : ZelGraph1->NextX();
    if (std::exchange(lossesMarked, told.size()) != told.size())
        lossStart = time;
    ZelGraph1->MarkLoss(lossStart, time, LossText(told.back()));
}

void frmMain::ForgetLosses() {
    lossesSeen = {};
    lossesMarked = 0;
    lastLoss = -1.0;
    ZelGraph1->ClearLossMarks();
}

void frmMain::MarkRecordedLosses() {
    ZelGraph1->ClearLossMarks();
    for (const SampleLoss& loss : recording.session.losses) {
        const double time = loss.nextScan * ScanInterval;
        if (std::isfinite(time))
            ZelGraph1->MarkLoss(time, time, LossText(loss));
    }
}

} // namespace tracelet
