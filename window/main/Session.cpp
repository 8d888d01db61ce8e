#include "core/base/Convert.h"
#include "window/chart/ZelGraph.h"
#include "window/ground/Handler.h"
#include "window/ground/NoticeLine.h"
#include "window/main/frmMain.h"
#include "window/widgets/PutSwitch.h"
#include "window/widgets/ZelButton.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>

#include <utility>

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

const QString FastExcludesDigital = u"FAI can't run together with DI"_s;

// An empty text takes the red away.
void ShowFault(QCheckBox* saveBox, const QString& text) {
    saveBox->setToolTip(text);
    saveBox->setStyleSheet(text.isEmpty() ? QString()
                                          : u"QCheckBox { color: #C62828; font-weight: bold; }"_s);
}

} // namespace

void frmMain::ZelButton1_Change() {
    if (!ZelButton1->Value()) {
        bAIEnabled = false;
        CkAISave2Disk->setEnabled(false);
        UpdatePlotListView();
        return;
    }
    QString refusal;
    if (ZelAI1->DeviceNumber() < 0)
        refusal = u"No AI device is selected"_s;
    else if (ZelAI1->ScanChannelCount() < 1)
        refusal = u"No AI channel is selected"_s;
    else if (bDIEnabled && !M1.SoftMode)
        refusal = FastExcludesDigital;
    if (!refusal.isEmpty()) {
        MsgBox(this, refusal);
        PutSwitch(ZelButton1, false);
        bAIEnabled = false;
        return;
    }
    bAIEnabled = true;
    CkAISave2Disk->setEnabled(true);
    UpdatePlotListView();
}

void frmMain::ZelButton2_Change() {
    if (!ZelButton2->Value()) {
        bDIEnabled = false;
        CkDISave2Disk->setEnabled(false);
        UpdatePlotListView();
        return;
    }
    QString refusal;
    if (ZelDIO1->DeviceNumber() < 0)
        refusal = u"No DI device is selected"_s;
    else if (nDIPortCount <= 0)
        refusal = u"No DI Port is selected"_s;
    else if (bAIEnabled && !M1.SoftMode)
        refusal = FastExcludesDigital;
    if (!refusal.isEmpty()) {
        MsgBox(this, refusal);
        PutSwitch(ZelButton2, false);
        bDIEnabled = false;
        return;
    }
    bDIEnabled = true;
    CkDISave2Disk->setEnabled(true);
    UpdatePlotListView();
}

void frmMain::CkAISave2Disk_Click() {
    bAISaveToDisk = CkAISave2Disk->isChecked();
}

void frmMain::CkDISave2Disk_Click() {
    bDISaveToDisk = CkDISave2Disk->isChecked();
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
    recorder.ResetCounts();
    ClearRecordingFaults();
    LabelNotice->Show({});
    ZelGraph1->ClearData();
    ZelGraph1->SetNextX(0.0);
    BtnStart->setText(u"Stop"_s);
    EnableSetCmdControls(false);
    BtnSaveAs->setEnabled(false);
    WriteProjectInfo();

    if (M1.SoftMode ? SoftPoolStart() : FAIStart()) {
        recorder.DropAside();
        recorder.ResetCounts();
        StartTicks = surroundings.ticks();
        return;
    }
    if (recorder.PutBack())
        BtnSaveAs->setEnabled(true);
    const QString reason = M1.SoftMode ? pollStartFault : ZelAI1->ErrorText();
    MsgBox(this, reason.isEmpty() ? u"Device start failed"_s : reason, u"BtnStart"_s);
    isSystemRunning = false;
    EnableSetCmdControls(true);
    BtnStart->setText(u"Start"_s);
}

void frmMain::StopSession() {
    const std::uint32_t elapsed = ScanCount >= 1 ? surroundings.ticks() - StartTicks : 0;
    if (M1.SoftMode) {
        if (ZelHiResTimerCtl1->TimerExists(PollTimer))
            ZelHiResTimerCtl1->SetTimerEnabled(PollTimer, false);
        silence.stop();
        if (pollReader)
            pollReader->LetGo();
    } else if (!StopFastInput()) {
        return;
    }
    WriteStopRecord(elapsed);
    isSystemRunning = false;
    EnableSetCmdControls(true);
    BtnStart->setText(u"Start"_s);
    BtnSaveAs->setEnabled(recorder.IsWritten());
}

void frmMain::EnableSetCmdControls(bool Enable) {
    for (QWidget* widget :
         std::initializer_list<QWidget*>{FrameSet, BtnSet, CkAISave2Disk, CkDISave2Disk, FrameCmd, ZelButton1,
                                         ZelButton2, BtnHistory, LabelAI, LabelAIOn, LabelDI, LabelDIOn})
        widget->setEnabled(Enable);
    if (!Enable)
        return;
    CkAISave2Disk->setEnabled(bAIEnabled);
    CkDISave2Disk->setEnabled(bDIEnabled);
}

void frmMain::SettleRecording() {
    if (recorder.Settle())
        ShowRecordingFaults();
}

void frmMain::ShowRecordingFaults() {
    for (const auto& [input, saveBox] :
         {std::pair(Recorder::Analog, CkAISave2Disk), std::pair(Recorder::Digital, CkDISave2Disk)}) {
        if (!recorder.Fault(input).empty())
            ShowFault(saveBox, u"Recording stopped: %1"_s.arg(QString::fromStdString(recorder.Fault(input))));
    }
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
