#include "window/ground/EnableAll.h"
#include "window/main/frmMain.h"
#include "window/widgets/ZelButton.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>

using namespace Qt::StringLiterals;

namespace tracelet {

void frmMain::EnableControls(When when) {
    EnableAsOf(when);
    LabelAIOn->setText(bAIEnabled ? u"On"_s : u"Off"_s);
    LabelDIOn->setText(bDIEnabled ? u"On"_s : u"Off"_s);
    ShowNextStep();
    ShowStatus();
}

void frmMain::EnableAsOf(When when) {
    // clang-format off
    switch (when) { // what a row does not name stays as it is
    case When::Switched:  EnableAll({CkAISave2Disk}, bAIEnabled);
                          return EnableAll({CkDISave2Disk}, bDIEnabled);
    case When::Running:   EnableSetCmdControls(false);
                          return EnableAll({BtnSaveAs}, false);
    case When::Idle:      EnableSetCmdControls(true);
                          return EnableAll({BtnSaveAs}, recorder.IsWritten());
    case When::Opened:    EnableHisControls(true);
                          EnableAll({BtnModeSwitch}, true);
                          return EnableAll({FrameSet, BtnStart, BtnSaveAs}, false);
    case When::Left:      EnableHisControls(false);
                          EnableAll({FrameSet, BtnStart, FrameCmd}, true);
                          EnableAll({BtnModeSwitch}, false);
                          return EnableAll({BtnSaveAs}, recorder.IsWritten());
    case When::Reentered: EnableHisControls(true);
                          return EnableAll({BtnStart, FrameCmd}, false);
    case When::Playing:   return EnableAll({BtnModeSwitch, FrameCmd, BtnHisConvert}, false);
    case When::Paused:    return EnableAll({BtnModeSwitch}, true);
    case When::Ended:     return EnableAll({BtnModeSwitch, FrameCmd, BtnHisConvert}, true);
    }
    // clang-format on
}

void frmMain::EnableSetCmdControls(bool Enable) {
    EnableAll({FrameSet, BtnSet, CkAISave2Disk, CkDISave2Disk, FrameCmd, ZelButton1, ZelButton2, BtnHistory,
               LabelAI, LabelAIOn, LabelDI, LabelDIOn},
              Enable);
    if (Enable)
        EnableAsOf(When::Switched);
}

void frmMain::EnableHisControls(bool value) {
    EnableAll({FrameHis, Label15, Label16, Label14, ChkPlay, BtnAccelerate, BtnStop, Label1, Label2, Label6,
               BtnHisConvert},
              value);
}

} // namespace tracelet
