// What the main window's controls tell of themselves.

#include "window/aids/Tips.h"
#include "window/main/frmMain.h"
#include "window/widgets/ZelButton.h"
#include "window/widgets/ZelLED.h"
#include "window/widgets/ZelSlider.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>

using namespace Qt::StringLiterals;

namespace tracelet {

QString frmMain::WhatGoesFirst(const QString& otherwise) const {
    if (isSystemRunning)
        return u"Stop the session first"_s;
    if (!bHistoryMode)
        return otherwise;
    return ChkPlay->isChecked() || isHisPlayPaused ? u"Stop the playback first"_s
                                                   : u"A recording is open: press Acquisition first"_s;
}

void frmMain::SetUpTips() {
    const QString analog = u"Turn analog input on or off"_s;
    const QString digital = u"Turn digital input on or off"_s;
    const QString noRecording = u"Open a recording first: History..."_s;
    const struct {
        QWidget* control;
        QString what;
        QString waitsFor = {}; ///< while nothing else goes first
    } table[] = {
        {BtnStart, u"Start a session, or stop the one that runs (F5)"_s},
        {BtnModeSwitch, u"Go from the recording to acquisition, or back"_s, noRecording},
        {BtnSaveAs, u"Save what was recorded in a folder (Ctrl+S)"_s,
         u"There is nothing to save: tick a Save2Disk box, then press Start"_s},
        {BtnHistory, u"Open a saved recording (Ctrl+O)"_s},
        {BtnExit, u"Leave the program (Ctrl+Q)"_s},
        {ZelButton1, analog},
        {LabelAI, analog},
        {LabelAIOn, analog},
        {ZelButton2, digital},
        {LabelDI, digital},
        {LabelDIOn, digital},
        {BtnSet, u"Choose boards, channels, ports and rates"_s},
        {CkAISave2Disk, u"Record analog input while a session runs"_s, u"Turn on AI first"_s},
        {CkDISave2Disk, u"Record digital input while a session runs"_s, u"Turn on DI first"_s},
        {BtnGraphSet, u"Choose colours and line styles of the plots, and ranges of the axes"_s},
        {BtnClearGraph, u"Empty the chart; what is recorded stays"_s},
        {LabelGraphHint, u"Right-click the graph to choose what the mouse does: zoom or pan"_s},
        {ListView1, u"The plots in the chart and their lines"_s},
        {ZelLED1, u"Seconds a division of the time axis"_s},
        {ChkPlay, u"Play or pause"_s, noRecording},
        {BtnAccelerate, u"Double the speed"_s, noRecording},
        {BtnStop, u"Stop and go back to the start"_s, noRecording},
        {ZelSliderR, u"Position in the recording"_s, noRecording},
        {ZelSliderV, u"Speed of the playback"_s, noRecording},
        {BtnHisConvert, u"Write the recording as text for a spreadsheet"_s, noRecording},
    };
    auto* tips = new Tips(this);
    for (const auto& [control, what, waitsFor] : table)
        tips->Add(control, what, [this, otherwise = waitsFor] { return WhatGoesFirst(otherwise); });
}

} // namespace tracelet
