#include "app/frmMain.h"
#include "graph/frmGraphSet.h"

namespace tracelet {

void frmMain::BtnGraphSet_Click() {
    frmGraphSet(*this).exec();
    BuildPlots(bHistoryMode, false);
}

} // namespace tracelet
