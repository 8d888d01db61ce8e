#include "window/files/Dialog.h"
#include "window/ground/Handler.h"
#include "window/ground/NoticeLine.h"
#include "window/main/frmMain.h"

using namespace Qt::StringLiterals;

namespace tracelet {

void frmMain::BtnSaveAs_Click() {
    Handler(this, u"BtnSaveAs"_s, [this] {
        szNewFolder.clear();
        Dialog(szProgramPath, szDrive, szDir, szNewFolder, this).exec();
        if (szNewFolder.empty())
            return;
        ShowLosses(); // in place of what an earlier attempt left
        const std::string reason = recorder.SaveTo(szDir + "\\" + szNewFolder);
        if (!reason.empty())
            LabelNotice->Show(u"The recording was not saved: %1"_s.arg(QString::fromStdString(reason)));
    });
}

} // namespace tracelet
