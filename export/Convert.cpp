#include "app/Handler.h"
#include "app/frmMain.h"
#include "devices/display/ZelGraph.h"
#include "export/ConvertFileDialog.h"
#include "export/ConvertProgress.h"
#include "export/TextExport.h"
#include "files/FileOperations.h"
#include "files/Paths.h"
#include "history/RecordingReader.h"

using namespace Qt::StringLiterals;

namespace tracelet {
namespace {

AnalogRecording AnalogOf(const frmMain& window) {
    AnalogRecording recording;
    for (std::int32_t i = 0; i < window.nHisAIChanCount; ++i)
        recording.plotNames.push_back(window.ZelGraph1->Plot(i).name.toStdString());
    recording.isAnalog = window.bHisAIAnalog;
    recording.scanInterval = window.ScanInterval;
    recording.dataBytes = BytesFrom(window.HisAIFileHandle, 0);
    return recording;
}

DigitalRecording DigitalOf(const frmMain& window) {
    DigitalRecording recording;
    recording.portStart = window.nHisDIPortStart;
    recording.portCount = window.nHisDIPortCount;
    recording.portMask = window.M1.HisDIPortMask;
    recording.scanInterval = window.ScanInterval;
    recording.scanCount = window.HisScanCount;
    return recording;
}

ReadBytes From(const SystemFile& file) {
    return
        [&file](std::int64_t offset, std::span<std::byte> bytes) { return ReadBlock(file, offset, bytes); };
}

// The progress of one file as that of both: from `start` on, `share` of the whole.
Progress PartOf(ConvertProgress& progress, double start, double share) {
    return [&progress, start, share](double fraction) { progress.Show(start + fraction * share); };
}

void WriteTexts(frmMain& window, const std::string& folder) {
    const SystemFile& digitalData = window.Files.File(frmMain::HisFileNumB); // a closed one reads as empty
    const auto analogBytes =
        static_cast<double>(window.bTextSaveAI ? BytesFrom(window.HisAIFileHandle, 0) : 0);
    const auto digitalBytes = static_cast<double>(window.bTextSaveDI ? BytesFrom(digitalData, 0) : 0);
    const double analogShare = analogBytes / (analogBytes + digitalBytes + 1);
    ConvertProgress progress(&window);
    if (window.bTextSaveAI) {
        TextFile file(NativePath(folder + "\\AI.xlt"));
        WriteAnalogText(file, AnalogOf(window), From(window.HisAIFileHandle),
                        PartOf(progress, 0, analogShare));
        file.Close();
    }
    if (window.bTextSaveDI) {
        TextFile file(NativePath(folder + "\\DI.xlt"));
        WriteDigitalText(file, DigitalOf(window), From(digitalData),
                         PartOf(progress, analogShare, 1 - analogShare));
        file.Close();
    }
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
