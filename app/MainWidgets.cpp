#include "app/MainWidgets.h"

#include "app/Named.h"
#include "devices/display/ZelButton.h"
#include "devices/display/ZelGraph.h"
#include "devices/display/ZelLED.h"
#include "devices/display/ZelSlider.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>

namespace tracelet {

void MainWidgets::Build(QWidget& window) {
    ZelGraph1 = Named<ZelGraph>("ZelGraph1", &window);
    FrameListView = Named<QWidget>("FrameListView", &window);
    ListView1 = Named<QTreeWidget>("ListView1", FrameListView);
    ListView1->setHeaderLabels({u" Chan"_qs, u" Line"_qs});
    Picture4 = Named<QWidget>("Picture4", FrameListView);
    ZelLED1 = Named<ZelLED>("ZelLED1", Picture4);

    FrameSet = Named<QGroupBox>("FrameSet", u"Device"_qs, &window);
    BtnSet = Named<QPushButton>("BtnSet", u"&Setting..."_qs, FrameSet);
    CkAISave2Disk = Named<QCheckBox>("CkAISave2Disk", u"AI Save2Disk"_qs, FrameSet);
    CkDISave2Disk = Named<QCheckBox>("CkDISave2Disk", u"DI Save2Disk"_qs, FrameSet);

    FrameCmd = Named<QGroupBox>("FrameCmd", u"Signal"_qs, &window);
    ZelButton1 = Named<ZelButton>("ZelButton1", FrameCmd);
    ZelButton2 = Named<ZelButton>("ZelButton2", FrameCmd);
    LabelAI = Named<QLabel>("LabelAI", u"AI"_qs, FrameCmd);
    LabelAIOn = Named<QLabel>("LabelAIOn", FrameCmd);
    LabelDI = Named<QLabel>("LabelDI", u"DI"_qs, FrameCmd);
    LabelDIOn = Named<QLabel>("LabelDIOn", FrameCmd);

    FrameGraph = Named<QGroupBox>("FrameGraph", u"Graph"_qs, &window);
    BtnGraphSet = Named<QPushButton>("BtnGraphSet", u"Setting..."_qs, FrameGraph);
    BtnClearGraph = Named<QPushButton>("BtnClearGraph", u"Clear Graph"_qs, FrameGraph);

    FrameHis = Named<QGroupBox>("FrameHis", u"History Playback"_qs, &window);
    ChkPlay = Named<QCheckBox>("ChkPlay", u"4"_qs, FrameHis);
    BtnAccelerate = Named<QPushButton>("BtnAccelerate", FrameHis);
    BtnStop = Named<QPushButton>("BtnStop", FrameHis);
    BtnHisConvert = Named<QPushButton>("BtnHisConvert", u"Convert"_qs, FrameHis);
    ZelSliderR = Named<ZelSlider>("ZelSliderR", Qt::Horizontal, FrameHis);
    ZelSliderV = Named<ZelSlider>("ZelSliderV", Qt::Horizontal, FrameHis);
    Label1 = Named<QLabel>("Label1", u"0%"_qs, FrameHis);
    Label2 = Named<QLabel>("Label2", u"Position"_qs, FrameHis);
    Label6 = Named<QLabel>("Label6", u"100%"_qs, FrameHis);
    Label14 = Named<QLabel>("Label14", u"High"_qs, FrameHis);
    Label15 = Named<QLabel>("Label15", u"Slow"_qs, FrameHis);
    Label16 = Named<QLabel>("Label16", u"Play Speed"_qs, FrameHis);
    FrameHis->setEnabled(false);

    BtnStart = Named<QPushButton>("BtnStart", u"Start"_qs, &window);
    BtnModeSwitch = Named<QPushButton>("BtnModeSwitch", u"History Mode"_qs, &window);
    BtnModeSwitch->setEnabled(false);
    BtnSaveAs = Named<QPushButton>("BtnSaveAs", u"Save As"_qs, &window);
    BtnHistory = Named<QPushButton>("BtnHistory", u"&History..."_qs, &window);
    BtnExit = Named<QPushButton>("BtnExit", u"&Exit"_qs, &window);
}

} // namespace tracelet
