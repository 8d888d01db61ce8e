#include "core/base/RunTimeError.h"
#include "core/files/FileOperations.h"
#include "core/files/StagedFile.h"
#include "core/recordings/ProjectInfo.h"
#include "window/files/Dialog.h"
#include "window/ground/Handler.h"
#include "window/ground/NoticeLine.h"
#include "window/main/frmMain.h"

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
