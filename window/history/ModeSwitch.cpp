#include "window/chart/ZelGraph.h"
#include "window/ground/NoticeLine.h"
#include "window/main/frmMain.h"

#include <QPushButton>

#include <limits>

using namespace Qt::StringLiterals;

namespace tracelet {

void frmMain::BtnModeSwitch_Click() {
    bHistoryMode = !bHistoryMode;
    if (!bHistoryMode)
        EnterAcquisitionMode();
    else if (bHisFileExist)
        ReenterHistoryMode();
    BuildPlots(bHistoryMode, true);
}

void frmMain::EnterAcquisitionMode() {
    LabelNotice->Show({});
    ZelGraph1->SetMemoryBudget(std::numeric_limits<std::int64_t>::max()); // what the machine allows
    EnableControls(When::Left);
    BtnModeSwitch->setText(u"History Mode"_s);
    ZelGraph1->ClearLossMarks();
    recording.CloseFiles();
    if (ZelHiResTimerCtl1->TimerExists(PlayTimer))
        ZelHiResTimerCtl1->SetTimerEnabled(PlayTimer, false);
    isHisPlaying = false; // left in a pause; the pause itself is kept, with its place
}

// Shows the recording that was open before. Its data files stay closed: playing it ends at the first tick.
void frmMain::ReenterHistoryMode() {
    MarkRecordedLosses();
    EnableControls(When::Reentered);
    BtnModeSwitch->setText(u"Acquisition"_s);
}

} // namespace tracelet
