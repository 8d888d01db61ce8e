#include "app/Handler.h"
#include "app/frmMain.h"
#include "base/RunTimeError.h"
#include "files/Dialog.h"
#include "files/FileOperations.h"
#include "files/ProjectInfo.h"

#include <optional>

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

void frmMain::SaveRecording(const std::string& folder) {
    const std::string project = folder + "\\Project.tlp";
    const std::string analog = folder + "\\AI.tld";
    const std::string digital = folder + "\\DI.tld";
    CreateFolder(folder); // it may be there already
    std::optional<RunTimeError> refusal;
    try {
        CopyWholeFile(szProjectFileName, project);
    } catch (const RunTimeError& error) {
        refusal = error; // the samples are worth keeping all the same
    }
    if (SoftAIWritten)
        CopyFile(szAIFileName, analog);
    if (FAIWritten)
        CopyFile(szFAIFileName, analog);
    if (DIWritten)
        CopyFile(szDIFileName, digital);

    Files.Close(ProjectFileNum);
    if (refusal) // a project that is there tells of an earlier recording and stays as it is
        throw *refusal;
    Files.Open(ProjectFileNum, project);
    Files.Seek(ProjectFileNum, Files.Length(ProjectFileNum));
    Files.PutBytes(ProjectFileNum, unwrittenStopRecord);
    Files.PutBytes(ProjectFileNum, SavedPaths(analog, digital));
    Files.Close(ProjectFileNum);
}

} // namespace tracelet
