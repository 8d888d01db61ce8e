// Commands that are not built yet: their widgets are there and do nothing.

#include "app/frmMain.h"

namespace tracelet {

void frmMain::BtnHistory_Click() {}
void frmMain::BtnModeSwitch_Click() {}
void frmMain::ChkPlay_Click() {}
void frmMain::BtnStop_Click() {}
void frmMain::BtnAccelerate_Click() {}
void frmMain::ZelSliderV_Change(double) {}
void frmMain::ZelSliderR_Change(double) {}
void frmMain::HistoryTick() {}
void frmMain::BtnHisConvert_Click() {}
void frmMain::BtnClearGraph_Click() {}
void frmMain::BtnGraphSet_Click() {}
void frmMain::ConnectGraph() {}

} // namespace tracelet
