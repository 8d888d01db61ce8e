#include "window/graph/frmGraphSet.h"
#include "window/main/frmMain.h"

namespace tracelet {

void frmMain::BtnGraphSet_Click() {
    frmGraphSet(*this).exec();
    BuildPlots(bHistoryMode, false);
}

} // namespace tracelet
