#include "core/files/Paths.h"
#include "core/recordings/SaveRecording.h"
#include "window/files/Dialog.h"
#include "window/files/SaveProgress.h"
#include "window/ground/Handler.h"
#include "window/ground/NoticeLine.h"
#include "window/main/frmMain.h"

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

std::string Save(frmMain& window, const LeftRecording& left, const std::string& folder) {
    try {
        return SaveWithProgress(&window, left.bytes, [&](const CopyProgress& progress) {
            return SaveRecording(left.parts, folder, progress);
        });
    } catch (const std::exception& error) {
        return error.what();
    }
}

} // namespace

void frmMain::FindUnsaved() {
    if (!isLoaded)
        return;
    const std::string parents[] = {szProgramPath, stateFolder,
                                   surroundings.stateFolder ? std::string() : GetTempDir()};
    leftRecordings = FindLeftRecordings(parents, stateFolder);
    OfferUnsaved();
}

void frmMain::OfferUnsaved(const QString& said) {
    if (isSystemRunning || leftRecordings.empty()) {
        LabelNotice->Offer({});
        if (!said.isEmpty())
            LabelNotice->Show(said);
        return;
    }
    const QString offer = QString::fromStdString(Describe(leftRecordings.front())) + u':';
    LabelNotice->Offer(said.isEmpty() ? offer : said + u". "_s + offer);
}

void frmMain::BtnNoticeSave_Click() {
    szNewFolder.clear();
    Dialog(szProgramPath, szDrive, szDir, szNewFolder, this).exec();
    if (szNewFolder.empty())
        return;
    const std::string folder = szDir + "\\" + szNewFolder;
    const std::string reason = Save(*this, leftRecordings.front(), folder);
    if (!reason.empty()) {
        OfferUnsaved(NotSavedText(reason));
        return;
    }
    Discard(leftRecordings.front());
    leftRecordings.erase(leftRecordings.begin());
    const QString path = QString::fromStdString(NativePath(folder));
    if (leftRecordings.empty()) {
        OfferUnsaved();
        LabelNotice->ShowFolder(u"Saved in"_s, path);
    } else {
        OfferUnsaved(u"Saved in "_s + path);
    }
}

void frmMain::BtnNoticeDiscard_Click() {
    Discard(leftRecordings.front());
    BtnNoticeLater_Click();
}

void frmMain::BtnNoticeLater_Click() {
    leftRecordings.erase(leftRecordings.begin());
    OfferUnsaved();
}

// The last unsaved recording makes room for the next one.
void frmMain::LetUnsavedGo() {
    std::erase_if(leftRecordings, [this](const LeftRecording& left) {
        return left.folder.sztmpPath == UnsavedFolder(stateFolder);
    });
}

} // namespace tracelet
