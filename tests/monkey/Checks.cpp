#include "tests/monkey/Checks.h"

#include "core/recordings/ProjectInfo.h"
#include "tests/monkey/Diary.h"
#include "window/chart/ZelGraph.h"
#include "window/main/frmMain.h"
#include "window/widgets/ZelButton.h"
#include "window/widgets/ZelLED.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QPushButton>
#include <QTreeWidget>

#include <cmath>
#include <fstream>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

constexpr long MostMiB = 4096; // sanitizers keep freed memory for a while

void CheckRunning(const frmMain& window) {
    Require(window.BtnStart->text() == u"Stop"_s, "a session runs: the button says Stop");
    Require(!window.FrameSet->isEnabled(), "a session runs: no device settings");
    Require(!window.ZelButton1->isEnabled() && !window.ZelButton2->isEnabled(),
            "a session runs: no switches");
    Require(!window.BtnHistory->isEnabled(), "a session runs: no history");
    Require(!window.BtnSaveAs->isEnabled(), "a session runs: no saving");
    Require(!window.bHistoryMode, "a session runs in acquisition mode only");
}

void CheckIdle(const frmMain& window) {
    Require(window.FrameSet->isEnabled() && window.BtnSet->isEnabled(), "idle: device settings");
    Require(window.FrameCmd->isEnabled(), "idle: signals");
    Require(window.ZelButton1->isEnabled() && window.ZelButton2->isEnabled(), "idle: switches");
    Require(window.BtnStart->isEnabled(), "idle: Start");
    Require(window.BtnHistory->isEnabled(), "idle: history");
    Require(window.CkAISave2Disk->isEnabled() == window.bAIEnabled, "idle: analog save box by its switch");
    Require(window.CkDISave2Disk->isEnabled() == window.bDIEnabled, "idle: digital save box by its switch");
    Require(window.BtnSaveAs->isEnabled() == (window.SoftAIWritten || window.FAIWritten || window.DIWritten),
            "idle: Save As by what was written");
    Require(!window.FrameHis->isEnabled(), "acquisition mode: no playback");
    const bool ticks = window.ZelHiResTimerCtl1->TimerExists(frmMain::PlayTimer) &&
                       window.ZelHiResTimerCtl1->TimerEnabled(frmMain::PlayTimer);
    Require(!ticks, "acquisition mode: nothing plays");
}

// What can be saved is told by the project file, all but the paths.
void CheckProjectFile(const frmMain& window) {
    if (!window.SoftAIWritten && !window.FAIWritten && !window.DIWritten)
        return;
    try {
        const ProjectInfo info = ReadProjectFile(window.szProjectFileName);
        // A failed digital read ends the session before its scan, which the tick still counts.
        Require(info.ScanCount == window.ScanCount || info.ScanCount + 1 == window.ScanCount,
                "the project file has the scans of the session");
        Require(std::isfinite(info.ScanInterval) && info.ScanInterval >= 0, "the interval is a time");
    } catch (const std::exception& error) {
        Fail(u"the project file of a stopped session does not read: "_s + QString::fromUtf8(error.what()));
    }
}

void CheckGraph(const frmMain& window) {
    const ZelGraph& graph = *window.ZelGraph1;
    Require(window.ListView1->topLevelItemCount() <= graph.PlotCount(), "no row without a plot");
    Require(!std::isnan(window.dDIVValue), "seconds a division are a number");
    Require(window.ZelLED1->Enabled(), "the display takes steps");
    Require(!window.isNumEditEventFired, "the display is not being written");
}

} // namespace

long ResidentMiB() {
    std::ifstream file("/proc/self/statm");
    long total = 0;
    long resident = 0;
    file >> total >> resident;
    return resident * (sysconf(_SC_PAGESIZE) / 1024) / 1024;
}

void CheckWindow(const frmMain& window) {
    CheckGraph(window);
    Require(window.ZelButton1->Value() == window.bAIEnabled, "the AI switch shows its state");
    Require(window.ZelButton2->Value() == window.bDIEnabled, "the DI switch shows its state");
    Require(window.bAISaveToDisk == window.CkAISave2Disk->isChecked(), "the analog save box shows its state");
    Require(window.bDISaveToDisk == window.CkDISave2Disk->isChecked(),
            "the digital save box shows its state");
    Require(ResidentMiB() < MostMiB, "memory is bounded");
    if (window.isSystemRunning)
        return CheckRunning(window);
    Require(window.BtnStart->text() == u"Start"_s, "no session runs: the button says Start");
    CheckProjectFile(window);
    if (window.bHistoryMode) {
        Require(!window.FrameSet->isEnabled() || !window.BtnStart->isEnabled(), "history mode: no session");
        Require(window.BtnModeSwitch->text() == u"Acquisition"_s, "history mode: the way back is offered");
    } else {
        CheckIdle(window);
    }
}

} // namespace tracelet
