#include "core/base/Convert.h"
#include "core/disk/DiskRoom.h"
#include "window/chart/ZelGraph.h"
#include "window/ground/Handler.h"
#include "window/ground/NoInput.h"
#include "window/ground/NoticeLine.h"
#include "window/main/frmMain.h"
#include "window/widgets/PutSwitch.h"
#include "window/widgets/ZelButton.h"

#include <QCheckBox>
#include <QEventLoop>
#include <QPushButton>
#include <QScopeGuard>

#include <chrono>
#include <utility>

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

constexpr std::chrono::milliseconds DiskPoll{10};
constexpr std::uint32_t DiskWatch = 1000; // milliseconds between two looks at its room

const QString FastExcludesDigital = u"FAI can't run together with DI"_s;

// An empty text takes the red away.
void ShowFault(QCheckBox* saveBox, const QString& text) {
    saveBox->setToolTip(text);
    saveBox->setStyleSheet(text.isEmpty() ? QString()
                                          : u"QCheckBox { color: #C62828; font-weight: bold; }"_s);
}

} // namespace

void frmMain::ZelButton1_Change() {
    QString refusal;
    if (ZelAI1->DeviceNumber() < 0)
        refusal = u"No AI device is selected"_s;
    else if (ZelAI1->ScanChannelCount() < 1)
        refusal = u"No AI channel is selected"_s;
    else if (bDIEnabled && !M1.SoftMode)
        refusal = FastExcludesDigital;
    SwitchInput(ZelButton1, bAIEnabled, refusal);
}

void frmMain::ZelButton2_Change() {
    QString refusal;
    if (ZelDIO1->DeviceNumber() < 0)
        refusal = u"No DI device is selected"_s;
    else if (nDIPortCount <= 0)
        refusal = u"No DI Port is selected"_s;
    else if (bAIEnabled && !M1.SoftMode)
        refusal = FastExcludesDigital;
    SwitchInput(ZelButton2, bDIEnabled, refusal);
}

void frmMain::SwitchInput(ZelButton* button, bool& isInputEnabled, const QString& refusal) {
    const bool on = button->Value();
    if (on && !refusal.isEmpty()) {
        MsgBox(this, refusal);
        PutSwitch(button, false);
        isInputEnabled = false;
        return;
    }
    isInputEnabled = on;
    EnableControls(When::Switched);
    UpdatePlotListView();
}

void frmMain::CkAISave2Disk_Click() {
    bAISaveToDisk = CkAISave2Disk->isChecked();
    ShowNextStep();
}

void frmMain::CkDISave2Disk_Click() {
    bDISaveToDisk = CkDISave2Disk->isChecked();
    ShowNextStep();
}

void frmMain::BtnStart_Click() {
    if (isSystemRunning) {
        StopSession();
        return;
    }
    if (!bAIEnabled && !bDIEnabled) {
        MsgBox(this, u"No Operation is enabled"_s);
        return;
    }
    StartSession();
}

void frmMain::StartSession() {
    if (BtnSaveAs->isEnabled())
        recorder.SetAside();
    isSystemRunning = true;
    TickCount = 0;
    diskSeenAt = 0;
    recorder.ResetCounts();
    ClearRecordingFaults();
    LabelNotice->Show({});
    OfferUnsaved();
    ZelGraph1->ClearData();
    ForgetLosses();
    pace = {};
    diskFree = -1;
    ZelGraph1->SetNextX(0.0);
    BtnStart->setText(u"Stop"_s);
    EnableControls(When::Running);
    WriteProjectInfo();

    if (M1.SoftMode ? SoftPoolStart() : FAIStart()) {
        if (recorder.IsAsideUnsaved())
            LetUnsavedGo();
        recorder.DropAside();
        recorder.ResetCounts();
        StartTicks = surroundings.ticks();
        ShowStatus();
        return;
    }
    if (recorder.PutBack())
        BtnSaveAs->setEnabled(true);
    const QString reason = M1.SoftMode ? pollStartFault : ZelAI1->ErrorText();
    MsgBox(this, reason.isEmpty() ? u"Device start failed"_s : reason, u"BtnStart"_s);
    isSystemRunning = false;
    EnableControls(When::Idle);
    BtnStart->setText(u"Start"_s);
    OfferUnsaved();
}

// What comes while the stop hands over the rest or waits for the disk, the end of a one-shot buffer above
// all, finds it under way.
void frmMain::StopSession() {
    if (std::exchange(isStopping, true))
        return;
    const auto end = qScopeGuard([this] { isStopping = false; });
    const std::uint32_t elapsed = ScanCount >= 1 ? surroundings.ticks() - StartTicks : 0;
    StopInput();
    AwaitDisk();
    if (!M1.SoftMode && bAISaveToDisk)
        recorder.CloseFastFile();
    WriteStopRecord(elapsed);
    isSystemRunning = false;
    EnableControls(When::Idle);
    BtnStart->setText(u"Start"_s);
    if (!std::exchange(diskWarning, {}).isEmpty() || !recorder.ReadFault().empty())
        ShowTroubles();
    OfferUnsaved();
}

void frmMain::StopInput() {
    if (!M1.SoftMode) {
        if (!ZelAI1->StopBufferedAI(0)) // hands over all that the board had delivered
            LabelNotice->Show(ZelAI1->ErrorText());
        return;
    }
    if (ZelHiResTimerCtl1->TimerExists(PollTimer))
        ZelHiResTimerCtl1->SetTimerEnabled(PollTimer, false);
    silence.stop();
    if (pollReader)
        pollReader->LetGo();
}

// The window lives while a disk that stalls takes the rest. When the program ends meanwhile, the stop waits
// without it.
void frmMain::AwaitDisk() {
    SettleRecording();
    if (!recorder.IsBehind())
        return;
    const NoInput noInput;
    QEventLoop loop;
    QTimer poll;
    connect(&poll, &QTimer::timeout, &loop, [this, &loop] {
        SettleRecording();
        if (!recorder.IsBehind())
            loop.quit();
    });
    poll.start(DiskPoll);
    loop.exec();
}

// Before the disk is full, the last unsaved recording makes room.
void frmMain::WatchDisk() {
    const std::uint32_t elapsed = surroundings.ticks() - StartTicks;
    if (elapsed - diskSeenAt < DiskWatch || recorder.IsBehind())
        return;
    diskSeenAt = elapsed;
    const auto warning = [&] {
        diskFree = surroundings.freeBytes(sztmpPath);
        return QString::fromStdString(
            DiskRoomWarning(diskFree, static_cast<double>(recorder.SampleBytes()) * 1000.0 / elapsed));
    };
    QString present = warning();
    const std::string unsaved = UnsavedFolder(stateFolder);
    if (!present.isEmpty() && AreOnOneDisk(unsaved, sztmpPath)) {
        LetUnsavedGo();
        if (GiveUpUnsaved(unsaved))
            present = warning();
    }
    if (std::exchange(diskWarning, present) != present)
        ShowTroubles();
}

void frmMain::SettleRecording() {
    pace.Add(SessionSeconds(), ScanCount);
    const auto note = qScopeGuard([this] { NoteLosses(); });
    if (recorder.Settle()) {
        ShowRecordingFaults();
        if (!recorder.DiskFault().empty())
            ShowTroubles();
    }
    if (!isStopping)
        WatchDisk();
}

void frmMain::ShowRecordingFaults() {
    for (const auto& [input, saveBox] :
         {std::pair(Recorder::Analog, CkAISave2Disk), std::pair(Recorder::Digital, CkDISave2Disk)}) {
        const std::string& fault = recorder.Fault(input);
        ShowFault(saveBox,
                  fault.empty() ? QString() : u"Recording stopped: %1"_s.arg(QString::fromStdString(fault)));
    }
    if (!recorder.ReadFault().empty())
        ShowLostScans();
}

void frmMain::ShowLostScans() {
    ShowOnSaveBoxes(u"Scans are being lost: %1"_s.arg(QString::fromStdString(recorder.ReadFault())));
}

void frmMain::ClearRecordingFaults() {
    for (QCheckBox* saveBox : {CkAISave2Disk, CkDISave2Disk})
        ShowFault(saveBox, {});
}

void frmMain::ShowOnSaveBoxes(const QString& text) {
    if (bAIEnabled && bAISaveToDisk && recorder.Fault(Recorder::Analog).empty())
        ShowFault(CkAISave2Disk, text);
    if (bDIEnabled && bDISaveToDisk && recorder.Fault(Recorder::Digital).empty())
        ShowFault(CkDISave2Disk, text);
}

} // namespace tracelet
