#include "core/files/Paths.h"
#include "window/files/Dialog.h"
#include "window/files/SaveProgress.h"
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
        ShowTroubles(); // in place of what an earlier attempt left
        const std::string reason =
            SaveWithProgress(this, recorder.SampleBytes(), [this](const CopyProgress& progress) {
                return recorder.SaveTo(szDir + "\\" + szNewFolder, progress);
            });
        if (!reason.empty())
            LabelNotice->Show(NotSavedText(reason));
        else
            LabelNotice->ShowFolder(u"Saved in"_s,
                                    QString::fromStdString(NativePath(szDir + "\\" + szNewFolder)));
        ShowStatus();
    });
}

} // namespace tracelet
