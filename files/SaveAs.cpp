#include "app/Handler.h"
#include "app/NoticeLine.h"
#include "app/frmMain.h"
#include "base/RunTimeError.h"
#include "files/Dialog.h"
#include "files/FileOperations.h"
#include "files/ProjectInfo.h"
#include "files/StagedFile.h"

#include <algorithm>
#include <iterator>

using namespace Qt::StringLiterals;

namespace tracelet {

void frmMain::BtnSaveAs_Click() {
    Handler(this, u"BtnSaveAs"_s, [this] {
        szNewFolder.clear();
        Dialog(szProgramPath, szDrive, szDir, szNewFolder, this).exec();
        if (!szNewFolder.empty())
            SaveRecording(szDir + "\\" + szNewFolder);
    });
}

// All or nothing: an earlier recording in the folder stays until each file of this one is there.
void frmMain::SaveRecording(const std::string& folder) {
    StagedFile project(folder + "\\Project.tlp");
    StagedFile analog(folder + "\\AI.tld");
    StagedFile digital(folder + "\\DI.tld");
    ShowLosses();         // in place of what an earlier attempt left
    CreateFolder(folder); // it may be there already
    Files.Close(ProjectFileNum);
    std::vector<std::byte> tail = unwrittenStopRecord;
    std::ranges::copy(SavedPaths(folder + "\\AI.tld", folder + "\\DI.tld"), std::back_inserter(tail));
    project.CopyFrom(szProjectFileName, tail);
    try {
        if (SoftAIWritten)
            analog.CopyFrom(szAIFileName);
        if (FAIWritten)
            analog.CopyFrom(szFAIFileName);
        if (DIWritten)
            digital.CopyFrom(szDIFileName);
        analog.Place();
        digital.Place();
    } catch (const RunTimeError& error) {
        LabelNotice->Show(u"The recording was not saved: %1"_s.arg(QString::fromUtf8(error.what())));
        return;
    }
    project.Place();
}

} // namespace tracelet
