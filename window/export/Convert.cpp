#include "core/export/TextExport.h"
#include "core/files/FileOperations.h"
#include "core/files/Paths.h"
#include "core/recordings/RecordingReader.h"
#include "window/chart/ZelGraph.h"
#include "window/export/ConvertFileDialog.h"
#include "window/export/ConvertProgress.h"
#include "window/ground/Handler.h"
#include "window/ground/NoticeLine.h"
#include "window/main/frmMain.h"

#include <QStringList>

#include <optional>
#include <utility>

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

// What the system cannot read ends the data; `failure` then keeps the reason.
ReadBytes From(const SystemFile& file, std::optional<RunTimeError>& failure) {
    return [&](std::int64_t offset, std::span<std::byte> bytes) {
        BlockRead read = ReadBlock(file, offset, bytes);
        failure = std::move(read.failure);
        return read.bytes;
    };
}

// Has `write` write one text. One whose data could not all be read does not stay; `unwritten` then tells.
template <typename Write>
void WriteText(const std::string& folder, const char* name, const SystemFile& data, QStringList& unwritten,
               Write write) {
    const std::string path = folder + "\\" + name;
    std::optional<RunTimeError> failure;
    TextFile file(NativePath(path));
    write(file, From(data, failure));
    file.Close();
    if (!failure)
        return;
    DeleteFile(path);
    unwritten.append(
        u"%1 was not written: %2"_s.arg(QLatin1String(name), QString::fromUtf8(failure->what())));
}

// The progress of one file as that of both: from `start` on, `share` of the whole.
Progress PartOf(ConvertProgress& progress, double start, double share) {
    return [&progress, start, share](double fraction) { progress.Show(start + fraction * share); };
}

void WriteTexts(frmMain& window, const std::string& folder) {
    const SystemFile& analogData = window.HisAIFileHandle;
    const SystemFile& digitalData = window.recording.digitalFile; // a closed one reads as empty
    const auto analogBytes = static_cast<double>(window.bTextSaveAI ? BytesFrom(analogData, 0) : 0);
    const auto digitalBytes = static_cast<double>(window.bTextSaveDI ? BytesFrom(digitalData, 0) : 0);
    const double analogShare = analogBytes / (analogBytes + digitalBytes + 1);
    ConvertProgress progress(&window);
    QStringList unwritten;
    if (window.bTextSaveAI)
        WriteText(folder, "AI.xlt", analogData, unwritten, [&](TextFile& file, const ReadBytes& read) {
            WriteAnalogText(file, AnalogOf(window), read, PartOf(progress, 0, analogShare));
        });
    if (window.bTextSaveDI)
        WriteText(folder, "DI.xlt", digitalData, unwritten, [&](TextFile& file, const ReadBytes& read) {
            WriteDigitalText(file, DigitalOf(window), read, PartOf(progress, analogShare, 1 - analogShare));
        });
    if (!unwritten.empty())
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
