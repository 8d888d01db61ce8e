#include "core/export/RecordingTexts.h"
#include "core/files/FileOperations.h"
#include "core/files/Paths.h"
#include "window/chart/ZelGraph.h"
#include "window/export/ConvertFileDialog.h"
#include "window/export/ConvertProgress.h"
#include "window/ground/Handler.h"
#include "window/ground/NoticeLine.h"
#include "window/main/frmMain.h"

#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

std::vector<std::string> AnalogNames(const frmMain& window) {
    std::vector<std::string> names;
    names.reserve(static_cast<std::size_t>(std::max(window.nHisAIChanCount, 0)));
    for (std::int32_t i = 0; i < window.nHisAIChanCount; ++i)
        names.push_back(window.ZelGraph1->Plot(i).name.toStdString());
    return names;
}

void WriteTexts(frmMain& window, const std::string& folder) {
    ConvertProgress progress(&window);
    QStringList unwritten;
    for (const std::string& text : WriteRecordingTexts(window.recording, AnalogNames(window), folder,
                                                       {window.bTextSaveAI, window.bTextSaveDI},
                                                       [&](double fraction) { progress.Show(fraction); }))
        unwritten.append(QString::fromStdString(text));
    if (unwritten.empty()) {
        window.LabelNotice->ShowFolder(u"Converted into"_s, QString::fromStdString(NativePath(folder)));
        return;
    }
    RemoveFolder(folder); // unless a text stands in it
    window.LabelNotice->Show(unwritten.join(u"; "_s));
}

} // namespace

void frmMain::BtnHisConvert_Click() {
    Handler(this, u"Convert"_s, [this] {
        const TextSave save{szTextSaveDrive, szTextSaveDir, szTextSaveFolder, bTextSaveAI, bTextSaveDI};
        ConvertFileDialog(szProgramPath, save, bHisAI, bHisDI, this).exec();
        if (!bTextSaveAI && !bTextSaveDI)
            return;
        const std::string folder = szTextSaveDir + "\\" + szTextSaveFolder;
        // After Cancel that is the base folder, which must not come back if it was deleted meanwhile.
        if (szTextSaveFolder.empty() || !CreateFolder(folder)) {
            MsgBox(this, u"Create Directory Fail"_s);
            return;
        }
        HisScanIndex = 0; // the data are read from their start; the next fresh play seeks there anyway
        WriteTexts(*this, folder);
    });
}

} // namespace tracelet
